// Sizes and day counts. Kept apart from the other string operations because these alone
// need the bundle's localised strings.
#include "QuorvelleString.h"

#include "KitBundle.h"
#include "VXThreadSafeBundle.h"
#include "VXThreadSafeBundleProxy.h"

#include <QLocale>

#include <array>
#include <cstdio>

#include <locale.h>

namespace {

enum Unit
{
    ZeroBytes,
    OneByte,
    Bytes,
    BinaryKB,
    DecimalKB,
    MB,
    GB,
    TB,
    OneDay,
    Days,
    OneWeek,
    Weeks,
    OneMonth,
    Months,
    OneYear,
    Years,
    UnitCount
};

// In the order they are looked up; marked so that lupdate finds the keys.
constexpr std::array<const char *, UnitCount> kKeys = {
    QT_TRANSLATE_NOOP("Localizable", "0 bytes"),    QT_TRANSLATE_NOOP("Localizable", "1 byte"),
    QT_TRANSLATE_NOOP("Localizable", "%llu bytes"), QT_TRANSLATE_NOOP("Localizable", "%1.1f KB"),
    QT_TRANSLATE_NOOP("Localizable", "%llu KB"),    QT_TRANSLATE_NOOP("Localizable", "%1.1f MB"),
    QT_TRANSLATE_NOOP("Localizable", "%1.1f GB"),   QT_TRANSLATE_NOOP("Localizable", "%1.1f TB"),
    QT_TRANSLATE_NOOP("Localizable", "1 day"),      QT_TRANSLATE_NOOP("Localizable", "%llu days"),
    QT_TRANSLATE_NOOP("Localizable", "1 week"),     QT_TRANSLATE_NOOP("Localizable", "%llu weeks"),
    QT_TRANSLATE_NOOP("Localizable", "1 month"),    QT_TRANSLATE_NOOP("Localizable", "%llu months"),
    QT_TRANSLATE_NOOP("Localizable", "1 year"),     QT_TRANSLATE_NOOP("Localizable", "%llu years"),
};

// Looked up once, on first use, and kept for the life of the process. A function-local
// static makes the first use safe from any thread. The main bundle's texts come first; where
// it has none (an application that ships no unit strings), the kit's own, in the language
// the application's bundle chose.
const std::array<QString, UnitCount> &units()
{
    static const std::array<QString, UnitCount> table = [] {
        std::array<QString, UnitCount> strings;
        VXThreadSafeBundleProxy *main = VXThreadSafety::threadSafeMainBundle();
        VXThreadSafeBundleProxy *kit =
            VXThreadSafeBundleProxy::proxyWithBundle(Quorvelle::kitBundle());
        const QString localization = main->preferredLocalizations().constFirst();
        for (int i = 0; i < UnitCount; ++i) {
            const QString key = QString::fromLatin1(kKeys[size_t(i)]);
            QString text = VXLocalizedString(key, nullptr);
            if (text == key && kit && kit != main) {
                text = kit->perform([&](Quorvelle::Bundle &bundle) {
                    return bundle.localizedStringForKey(key, QString(), QString(), localization);
                });
            }
            strings[size_t(i)] = text;
        }
        return strings;
    }();
    return table;
}

enum class Argument
{
    Unsigned,
    Real
};

// One printf conversion of a format that holds exactly one, with its text around it.
struct Conversion
{
    QString prefix;
    QString suffix;
    QByteArray directive; // "%", flags, width and precision; no length modifier or conversion
    char conversion = 0;
};

// A translated format is data, not code: it may only hold one conversion of the kind the
// key has, with a modest width and precision. Anything else is refused (std::nullopt).
std::optional<Conversion> parseFormat(const QString &format, Argument argument)
{
    Conversion result;
    bool found = false;
    QString *text = &result.prefix;
    const qsizetype length = format.size();
    for (qsizetype i = 0; i < length; ++i) {
        const QChar ch = format.at(i);
        if (ch != QLatin1Char('%')) {
            *text += ch;
            continue;
        }
        if (i + 1 < length && format.at(i + 1) == QLatin1Char('%')) {
            *text += ch;
            ++i;
            continue;
        }
        if (found)
            return std::nullopt;
        found = true;
        QByteArray directive("%");
        ++i;
        while (i < length && QStringView(u"-+ #0").contains(format.at(i)))
            directive += char(format.at(i++).unicode());
        int digits = 0;
        while (i < length && format.at(i).isDigit() && format.at(i).unicode() < 0x80) {
            directive += char(format.at(i++).unicode());
            if (++digits > 2)
                return std::nullopt;
        }
        if (i < length && format.at(i) == QLatin1Char('.')) {
            directive += '.';
            ++i;
            digits = 0;
            while (i < length && format.at(i).isDigit() && format.at(i).unicode() < 0x80) {
                directive += char(format.at(i++).unicode());
                if (++digits > 2)
                    return std::nullopt;
            }
        }
        while (i < length && QStringView(u"hlLqjzt").contains(format.at(i)))
            ++i;
        if (i >= length)
            return std::nullopt;
        const char16_t conversion = format.at(i).unicode();
        const QStringView allowed =
            argument == Argument::Unsigned ? QStringView(u"udioxX") : QStringView(u"fFeEgGaA");
        if (!allowed.contains(QChar(conversion)))
            return std::nullopt;
        result.conversion = char(conversion);
        result.directive = directive;
        text = &result.suffix;
    }
    if (!found)
        return std::nullopt;
    return result;
}

// printf's numbers follow LC_NUMERIC, which anything in the process may set (QCoreApplication
// sets it from the environment). The rules fix "." here and put in the user's separator
// themselves where they want it, so the conversion runs in the C locale, for this thread
// only and just for this call.
class CNumericLocale
{
public:
    CNumericLocale()
    {
        static const locale_t c = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
        if (c)
            m_previous = uselocale(c);
    }
    ~CNumericLocale()
    {
        if (m_previous)
            uselocale(m_previous);
    }
    CNumericLocale(const CNumericLocale &) = delete;
    CNumericLocale &operator=(const CNumericLocale &) = delete;

private:
    locale_t m_previous = locale_t(nullptr);
};

QString formatNumber(const Conversion &c, Argument argument, quint64 integer, double real)
{
    char buffer[512];
    const CNumericLocale cLocale;
    if (argument == Argument::Unsigned) {
        const QByteArray directive = c.directive + "ll" + c.conversion;
        std::snprintf(buffer, sizeof buffer, directive.constData(),
                      static_cast<unsigned long long>(integer));
    } else {
        const QByteArray directive = c.directive + c.conversion;
        std::snprintf(buffer, sizeof buffer, directive.constData(), real);
    }
    return QString::fromLatin1(buffer);
}

// printf semantics for the unit formats; with localized, the decimal separator is the
// user's (QLocale()), otherwise always ".".
QString format(Unit unit, Argument argument, quint64 integer, double real, bool localized)
{
    std::optional<Conversion> c = parseFormat(units()[unit], argument);
    if (!c)
        c = parseFormat(QString::fromLatin1(kKeys[unit]), argument);
    QString number = formatNumber(*c, argument, integer, real);
    if (localized && argument == Argument::Real)
        number.replace(QLatin1Char('.'), QLocale().decimalPoint());
    return c->prefix + number + c->suffix;
}

QString formatUnsigned(Unit unit, quint64 value, bool localized = false)
{
    return format(unit, Argument::Unsigned, value, 0.0, localized);
}

QString formatReal(Unit unit, double value, bool localized)
{
    return format(unit, Argument::Real, 0, value, localized);
}

} // namespace

namespace QuorvelleString {

QString stringWithBinaryFileSize(quint64 size)
{
    if (size == 1)
        return units()[OneByte];
    // 0 goes through the format too, not through the "0 bytes" entry.
    if (size <= 1022)
        return formatUnsigned(Bytes, size, true);
    double value = double(size) * 0.0009765625;
    if (value < 1023.0)
        return formatReal(BinaryKB, value, true);
    value *= 0.0009765625;
    if (value < 1023.0)
        return formatReal(MB, value, true);
    value *= 0.0009765625;
    if (value < 1023.0)
        return formatReal(GB, value, true);
    return formatReal(TB, value * 0.0009765625, true);
}

QString stringWithFileSize(quint64 size)
{
    if (size == 0)
        return units()[ZeroBytes];
    if (size <= 998)
        return formatUnsigned(Bytes, size);
    const auto kilobytes = static_cast<quint64>(double(size) / 1000.0 + 0.5);
    if (kilobytes <= 998)
        return formatUnsigned(DecimalKB, kilobytes);
    // From the rounded kilobytes, not from the byte count.
    double value = double(kilobytes) / 1000.0;
    if (value < 999.0)
        return formatReal(MB, value, false);
    value /= 1000.0;
    if (value < 999.0)
        return formatReal(GB, value, false);
    return formatReal(TB, value / 1000.0, false);
}

QString stringWithNumberOfDays(quint64 days)
{
    if (days == 1)
        return units()[OneDay];
    if (days < 7)
        return formatUnsigned(Days, days);
    if (days < 14)
        return units()[OneWeek];
    if (days < 30)
        return formatUnsigned(Weeks, days / 7);
    if (days < 60)
        return units()[OneMonth];
    if (days < 365)
        return formatUnsigned(Months, days / 30);
    if (days < 730)
        return units()[OneYear];
    return formatUnsigned(Years, days / 365);
}

} // namespace QuorvelleString
