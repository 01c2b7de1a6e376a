#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

#include <QByteArray>
#include <QString>

#include <optional>

// Lenient JSON reading and compact JSON writing over PropertyValue trees.
// A null QString stands for a nil text. Results are std::nullopt for "nil".
namespace JSON {

QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QString &string, bool ignoreNull);
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QString &string);
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONStringIgnoringNulls(const QString &string);
// The same reading straight from UTF-8 bytes, with the results and log lines of reading
// QString::fromUtf8(bytes); a null QByteArray stands for a nil text.
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QByteArray &utf8, bool ignoreNull);
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Dictionary>
dictionaryWithJSONString(const QByteArray &utf8);

QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array> arrayWithJSONString(const QString &string,
                                                                             bool ignoreNull);
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array> arrayWithJSONString(const QString &string);
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array>
arrayWithJSONStringIgnoringNulls(const QString &string);
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array> arrayWithJSONString(const QByteArray &utf8,
                                                                             bool ignoreNull);
QV_FOUNDATION_EXPORT std::optional<PropertyValue::Array>
arrayWithJSONString(const QByteArray &utf8);

// Compact JSON text: no whitespace, booleans as 1/0, keys unescaped.
QV_FOUNDATION_EXPORT QString JSONString(const PropertyValue::Dictionary &dictionary);
QV_FOUNDATION_EXPORT QString JSONString(const PropertyValue::Array &array);
// The same text as UTF-8, byte for byte JSONString(x).toUtf8(), written without the QString.
QV_FOUNDATION_EXPORT QByteArray JSONUtf8(const PropertyValue::Dictionary &dictionary);
QV_FOUNDATION_EXPORT QByteArray JSONUtf8(const PropertyValue::Array &array);

} // namespace JSON
