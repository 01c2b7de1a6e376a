#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QChar>
#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

/**
 * The kit's small shared string operations. Class operations are plain functions;
 * operations on a string take that string as their first argument. Where an operation can
 * give no string at all (nil), the result is std::optional and std::nullopt is that case.
 */
namespace QuorvelleString {

/**
 * A size in bytes for people, in powers of 1024 ("512 bytes", "1.5 KB", "3.2 MB"), from the
 * localised unit strings of the kit's bundle, which are looked up once, on the first call of
 * any of these three. Binary sizes use the user's decimal separator.
 */
QV_FOUNDATION_EXPORT QString stringWithBinaryFileSize(quint64 size);
/**
 * A size in bytes for people, in powers of 1000 ("Zero bytes", "998 bytes", "12 KB",
 * "4.2 MB"); the decimal separator is always ".".
 */
QV_FOUNDATION_EXPORT QString stringWithFileSize(quint64 size);
/** A number of days for people, rounded down to days, weeks, months or years ("1 week"). */
QV_FOUNDATION_EXPORT QString stringWithNumberOfDays(quint64 days);

/** A new random UUID: 36 upper-case characters in groups of 8-4-4-4-12. */
QV_FOUNDATION_EXPORT QString stringWithUUID();
/**
 * Accepts 32 (or, by an old quirk, 31) hexadecimal digits, optionally grouped by "-" in
 * the canonical places and optionally in braces; parenthesised forms never pass.
 */
QV_FOUNDATION_EXPORT bool isValidUUID(const QString &string);

/** How much of a date or a time stringFromDate() writes, in the user's locale. */
enum class DateFormatterStyle
{
    NoStyle,     ///< Left out.
    ShortStyle,  ///< The locale's short form ("24.11.26", "10:42").
    MediumStyle, ///< Abbreviated month, no weekday; time with seconds, without zone.
    LongStyle,   ///< Full month, no weekday; time with seconds and zone.
    FullStyle    ///< Everything the locale's long form has, the weekday too.
};
/**
 * In the user's locale (QLocale()), date then time, joined by ", ". An invalid date gives
 * an empty string.
 */
QV_FOUNDATION_EXPORT QString stringFromDate(const QDateTime &date, DateFormatterStyle timeStyle,
                                            DateFormatterStyle dateStyle);
/**
 * \overload
 * Short time, medium date.
 */
QV_FOUNDATION_EXPORT QString stringFromDate(const QDateTime &date);

/** Removes every UTF-16 unit that is in the set. */
QV_FOUNDATION_EXPORT QString stringByRemovingCharactersInSet(const QString &string,
                                                             const QString &characterSet);
/**
 * \overload
 * Removes every UTF-16 unit for which the predicate holds.
 */
QV_FOUNDATION_EXPORT QString stringByRemovingCharactersInSet(

    const QString &string, const std::function<bool(QChar)> &characterSet);

/** Reverses UTF-16 units one by one (a surrogate pair comes out swapped). */
QV_FOUNDATION_EXPORT QString invertedString(const QString &string);

/** MD5 of the UTF-8 bytes up to the first zero byte: 32 upper-case hexadecimal digits. */
QV_FOUNDATION_EXPORT QString MD5Hash(const QString &string);

/**
 * Joins with exactly one "/" unless the receiver already ends with one; the component
 * itself is not examined.
 */
QV_FOUNDATION_EXPORT QString urlStringByAppendingPathComponent(const QString &string,
                                                               const QString &component);

/**
 * Percent-escapes the UTF-8 bytes of everything but letters, digits, - _ . ! ~ * ' ( )
 * and the already-escaped-looking "%" and "#"; hexadecimal digits are upper case.
 */
QV_FOUNDATION_EXPORT QString URLEncodedString(const QString &string);
/**
 * Replaces every escape; std::nullopt when an escape is malformed or the escaped bytes are
 * not valid UTF-8.
 */
QV_FOUNDATION_EXPORT std::optional<QString> URLDecodedString(const QString &string);

/** Whole-string match of ".+@.+\..+", where "." matches no line terminator. */
QV_FOUNDATION_EXPORT bool isValidEmailAddress(const QString &string);

} // namespace QuorvelleString
