#include "QuorvelleString.h"

#include <QCryptographicHash>
#include <QLocale>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QUuid>

#include <algorithm>

namespace {
int hexValue(char16_t ch)
{
    if (ch >= u'0' && ch <= u'9')
        return ch - u'0';
    if (ch >= u'A' && ch <= u'F')
        return ch - u'A' + 10;
    if (ch >= u'a' && ch <= u'f')
        return ch - u'a' + 10;
    return -1;
}

bool isAsciiLetterOrNumber(uchar c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
} // namespace

namespace QuorvelleString {

QString stringWithUUID()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

bool isValidUUID(const QString &string)
{
    const qsizetype length = string.size();
    if (length == 0)
        return false;

    // The opening character is compared by its low eight bits only.
    const char first = char(string.at(0).unicode() & 0xff);
    qsizetype offset = -1; // -1: no dash positions to check
    if (first == '(' || first == '{') {
        const QChar closing = QLatin1Char(first == '(' ? ')' : '}');
        if (length == 34 && string.at(33) == closing)
            offset = -1;
        else if (length == 38 && string.at(37) == closing)
            offset = 1;
        else
            return false;
    } else if (length == 36) {
        offset = 0;
    } else if (length != 32) {
        return false;
    }
    if (offset >= 0) {
        for (const qsizetype dash : {8, 13, 18, 23}) {
            if (string.at(offset + dash) != QLatin1Char('-'))
                return false;
        }
    }

    // Braces and dashes are skipped anywhere, parentheses nowhere.
    int digits = 0;
    for (const QChar ch : string) {
        if (ch == QLatin1Char('-') || ch == QLatin1Char('{') || ch == QLatin1Char('}'))
            continue;
        if (digits == 32)
            return false;
        if (hexValue(ch.unicode()) < 0)
            return false;
        ++digits;
    }
    // The count is judged by half of it minus one, which lets 31 digits pass as well.
    return digits == 31 || digits == 32;
}

namespace {
QString withoutWeekday(QString format)
{
    static const QRegularExpression weekday(QStringLiteral("d{3,4}[,.]?\\s*"));
    return format.remove(weekday).trimmed();
}

QString dateFormat(const QLocale &locale, DateFormatterStyle style)
{
    switch (style) {
    case DateFormatterStyle::NoStyle:
        return {};
    case DateFormatterStyle::ShortStyle:
        return locale.dateFormat(QLocale::ShortFormat);
    case DateFormatterStyle::MediumStyle:
        return withoutWeekday(locale.dateFormat(QLocale::LongFormat))
            .replace(QLatin1String("MMMM"), QLatin1String("MMM"));
    case DateFormatterStyle::LongStyle:
        return withoutWeekday(locale.dateFormat(QLocale::LongFormat));
    case DateFormatterStyle::FullStyle:
        return locale.dateFormat(QLocale::LongFormat);
    }
    return {};
}

QString timeFormat(const QLocale &locale, DateFormatterStyle style)
{
    switch (style) {
    case DateFormatterStyle::NoStyle:
        return {};
    case DateFormatterStyle::ShortStyle:
        return locale.timeFormat(QLocale::ShortFormat);
    case DateFormatterStyle::MediumStyle: {
        static const QRegularExpression zone(QStringLiteral("\\s*t+"));
        return locale.timeFormat(QLocale::LongFormat).remove(zone).trimmed();
    }
    case DateFormatterStyle::LongStyle:
    case DateFormatterStyle::FullStyle:
        return locale.timeFormat(QLocale::LongFormat);
    }
    return {};
}
} // namespace

// Qt's locale data has short and long forms only: medium is the long date without the
// weekday and with abbreviated month names, and the long time without the zone.
QString stringFromDate(const QDateTime &date, DateFormatterStyle timeStyle,
                       DateFormatterStyle dateStyle)
{
    if (!date.isValid())
        return {};
    const QLocale locale;
    const QDateTime local = date.toLocalTime();
    QStringList parts;
    if (const QString format = dateFormat(locale, dateStyle); !format.isEmpty())
        parts << locale.toString(local.date(), format);
    if (const QString format = timeFormat(locale, timeStyle); !format.isEmpty())
        parts << locale.toString(local.time(), format);
    return parts.join(QLatin1String(", "));
}

QString stringFromDate(const QDateTime &date)
{
    return stringFromDate(date, DateFormatterStyle::ShortStyle, DateFormatterStyle::MediumStyle);
}

QString stringByRemovingCharactersInSet(const QString &string, const QString &characterSet)
{
    return stringByRemovingCharactersInSet(
        string, [&characterSet](QChar ch) { return characterSet.contains(ch); });
}

QString stringByRemovingCharactersInSet(const QString &string,
                                        const std::function<bool(QChar)> &characterSet)
{
    QString result = string;
    result.removeIf(characterSet);
    return result;
}

QString invertedString(const QString &string)
{
    QString result = string;
    std::reverse(result.begin(), result.end());
    return result;
}

QString MD5Hash(const QString &string)
{
    QByteArray bytes = string.toUtf8();
    if (const qsizetype zero = bytes.indexOf('\0'); zero >= 0)
        bytes.truncate(zero);
    return QString::fromLatin1(
        QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().toUpper());
}

QString urlStringByAppendingPathComponent(const QString &string, const QString &component)
{
    if (string.endsWith(QLatin1Char('/')))
        return string + component;
    return string + QLatin1Char('/') + component;
}

QString URLEncodedString(const QString &string)
{
    // Letters, digits and the unreserved marks stay; so do "%" and "#", which a URL may
    // already legitimately contain. Everything else, the reserved ";/?:@&=+$," included, is
    // escaped byte by byte.
    static constexpr QByteArrayView kKept("-_.!~*'()%#");
    static constexpr char kHex[] = "0123456789ABCDEF";
    const QByteArray utf8 = string.toUtf8();
    QString result;
    result.reserve(utf8.size() * 3);
    for (const char c : utf8) {
        const auto byte = uchar(c);
        if (isAsciiLetterOrNumber(byte) || kKept.contains(c)) {
            result += QLatin1Char(c);
        } else {
            result += QLatin1Char('%');
            result += QLatin1Char(kHex[byte >> 4]);
            result += QLatin1Char(kHex[byte & 0xf]);
        }
    }
    return result;
}

std::optional<QString> URLDecodedString(const QString &string)
{
    QString result;
    result.reserve(string.size());
    QByteArray escaped;
    const qsizetype length = string.size();
    qsizetype i = 0;
    while (i < length) {
        if (string.at(i) != QLatin1Char('%')) {
            result += string.at(i++);
            continue;
        }
        // A run of escapes is decoded as one byte sequence, so a character may span them.
        escaped.clear();
        while (i < length && string.at(i) == QLatin1Char('%')) {
            if (i + 2 >= length)
                return std::nullopt;
            const int high = hexValue(string.at(i + 1).unicode());
            const int low = hexValue(string.at(i + 2).unicode());
            if (high < 0 || low < 0)
                return std::nullopt;
            escaped += char(high * 16 + low);
            i += 3;
        }
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                         QStringDecoder::Flag::ConvertInitialBom);
        const QString decoded = decoder.decode(escaped);
        if (decoder.hasError())
            return std::nullopt;
        result += decoded;
    }
    return result;
}

bool isValidEmailAddress(const QString &string)
{
    // "." of the pattern language this rule was written in stops at every line terminator.
    static const QRegularExpression email(QRegularExpression::anchoredPattern(
        QStringLiteral("[^\\n\\x0B\\f\\r\\x{85}\\x{2028}\\x{2029}]+@"
                       "[^\\n\\x0B\\f\\r\\x{85}\\x{2028}\\x{2029}]+\\."
                       "[^\\n\\x0B\\f\\r\\x{85}\\x{2028}\\x{2029}]+")));
    return email.match(string).hasMatch();
}

} // namespace QuorvelleString
