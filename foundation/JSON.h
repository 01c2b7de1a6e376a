#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

#include <QByteArray>
#include <QString>

#include <optional>

/**
 * Lenient JSON reading and compact JSON writing over PropertyValue trees, for the suite's
 * payloads and settings. The readers accept what the suite's services send (see
 * \ref foundation for what lenient means); a text that cannot be read, or whose top level
 * is the other kind, gives std::nullopt, and the reason goes to the system log. A null
 * QString stands for a nil text and also gives std::nullopt. Every function is
 * thread-safe (no shared state).
 */
namespace JSON {

/**
 * Reads a JSON object into a dictionary; std::nullopt when the text is not one (or is a
 * null QString). Every number comes back as a double, `true`/`false` (in any case) as
 * booleans, and `null` as the null marker, or, with `ignoreNull`, not at all: the member
 * or element is left out.
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QString &string, bool ignoreNull);
/**
 * \overload
 * Keeps `null` members as the null marker.
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QString &string);
/** Reads a JSON object, leaving out every member and element that is `null`. */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONStringIgnoringNulls(const QString &string);
/**
 * \overload
 * The same reading straight from UTF-8 bytes, with the results and log lines of reading
 * QString::fromUtf8(bytes); a null QByteArray stands for a nil text.
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QByteArray &utf8, bool ignoreNull);
/**
 * \overload
 * From UTF-8 bytes, keeping `null` members as the null marker.
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QByteArray &utf8);

/**
 * Reads a JSON array into a list of values; std::nullopt when the text is not one. Values
 * are read as by dictionaryWithJSONString().
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array> arrayWithJSONString(const QString &string,
                                                                             bool ignoreNull);
/**
 * \overload
 * Keeps `null` elements as the null marker.
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array> arrayWithJSONString(const QString &string);
/** Reads a JSON array, leaving out every member and element that is `null`. */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array>
arrayWithJSONStringIgnoringNulls(const QString &string);
/**
 * \overload
 * From UTF-8 bytes; a null QByteArray stands for a nil text.
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array> arrayWithJSONString(const QByteArray &utf8,
                                                                             bool ignoreNull);
/**
 * \overload
 * From UTF-8 bytes, keeping `null` elements as the null marker.
 */
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array>
arrayWithJSONString(const QByteArray &utf8);

/**
 * Compact JSON text of a dictionary: no whitespace, members in the dictionary's order,
 * booleans as 1/0, integers exact, dates, data, NaN and infinities as `null`. Keys are
 * written as they are, unescaped: a key with a quote or backslash gives text no reader
 * accepts.
 */
QV_FOUNDATION_EXPORT QString JSONString(const PropertyValue::Dictionary &dictionary);
/**
 * \overload
 * Compact JSON text of an array.
 */
QV_FOUNDATION_EXPORT QString JSONString(const PropertyValue::Array &array);
/** The same text as UTF-8, byte for byte JSONString(x).toUtf8(), written without the QString. */
QV_FOUNDATION_EXPORT QByteArray JSONUtf8(const PropertyValue::Dictionary &dictionary);
/**
 * \overload
 * The text of an array as UTF-8.
 */
QV_FOUNDATION_EXPORT QByteArray JSONUtf8(const PropertyValue::Array &array);

} // namespace JSON
