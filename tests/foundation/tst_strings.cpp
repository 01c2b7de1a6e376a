#include "QuorvelleString.h"

#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using namespace QuorvelleString;

namespace {
const QString kCanonical = QStringLiteral("6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
const QString kDigits = QStringLiteral("6BA7B8109DAD11D180B400C04FD430C8");

// Escaped exactly when not a letter, digit or one of -_.!~*'()%#.
QString expectedEscape(uchar byte)
{
    if (isalnum(byte) || QByteArrayView("-_.!~*'()%#").contains(char(byte)))
        return QString(QLatin1Char(char(byte)));
    return QStringLiteral("%%1").arg(int(byte), 2, 16, QLatin1Char('0')).toUpper();
}
} // namespace

class TestStrings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void uuidAcceptance_data()
    {
        QTest::addColumn<QString>("string");
        QTest::addColumn<bool>("valid");
        QString misplaced = kCanonical;
        std::swap(misplaced[8], misplaced[9]); // dash one place late
        QString dashForDigit = kDigits;
        dashForDigit[20] = QLatin1Char('-');
        QTest::newRow("canonical") << kCanonical << true;
        QTest::newRow("lower case") << kCanonical.toLower() << true;
        QTest::newRow("32 digits") << kDigits << true;
        QTest::newRow("braced digits") << QLatin1Char('{') + kDigits + QLatin1Char('}') << true;
        QTest::newRow("braced canonical")
            << QLatin1Char('{') + kCanonical + QLatin1Char('}') << true;
        QTest::newRow("parenthesised canonical")
            << QLatin1Char('(') + kCanonical + QLatin1Char(')') << false;
        QTest::newRow("parenthesised digits")
            << QLatin1Char('(') + kDigits + QLatin1Char(')') << false;
        QTest::newRow("brace closed by parenthesis")
            << QLatin1Char('{') + kDigits + QLatin1Char(')') << false;
        QTest::newRow("31 digits and a dash") << dashForDigit << true;
        QTest::newRow("canonical with a digit as dash")
            << QString(kCanonical).replace(30, 1, QLatin1Char('-')) << true;
        QTest::newRow("canonical with a brace for a digit")
            << QString(kCanonical).replace(35, 1, QLatin1Char('}')) << true;
        QTest::newRow("30 digits and two dashes")
            << QString(kDigits).replace(3, 1, QLatin1Char('-')).replace(7, 1, QLatin1Char('-'))
            << false;
        QTest::newRow("misplaced dash") << misplaced << false;
        QTest::newRow("non-hex digit")
            << QString(kCanonical).replace(0, 1, QLatin1Char('G')) << false;
        QTest::newRow("31 digits alone") << kDigits.left(31) << false;
        QTest::newRow("33 digits") << kDigits + QLatin1Char('0') << false;
        QTest::newRow("36 without dashes") << kDigits + QStringLiteral("0000") << false;
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("non-Latin digit") << QString(kDigits).replace(5, 1, QChar(0x0661)) << false;
    }
    void uuidAcceptance()
    {
        QFETCH(QString, string);
        QTEST(isValidUUID(string), "valid");
    }

    void newUUID()
    {
        static const QRegularExpression shape(QRegularExpression::anchoredPattern(
            QStringLiteral("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}")));
        const QString a = stringWithUUID();
        QVERIFY2(shape.match(a).hasMatch(), qPrintable(a));
        QVERIFY(isValidUUID(a));
        QVERIFY(a != stringWithUUID());
    }

    void md5_data()
    {
        QTest::addColumn<QString>("string");
        QTest::addColumn<QString>("digest");
        QTest::newRow("empty") << QString() << QStringLiteral("D41D8CD98F00B204E9800998ECF8427E");
        QTest::newRow("abc") << QStringLiteral("abc")
                             << QStringLiteral("900150983CD24FB0D6963F7D28E17F72");
        QTest::newRow("message digest") << QStringLiteral("message digest")
                                        << QStringLiteral("F96B697D7CB7938D525A2F31AAF161D0");
        QTest::newRow("utf-8") << QStringLiteral("\u00e9")
                               << QStringLiteral("66DDCD97CFDEABB2F6FB8A999B4BC76F");
        QTest::newRow("outside the BMP") << QString::fromUtf8("\xf0\x9f\x98\x80")
                                         << QStringLiteral("2A02EAC39D716A70ECF37579185927B6");
        QTest::newRow("stops at a zero") << QString::fromUtf16(u"a\0bc", 4)
                                         << QStringLiteral("0CC175B9C0F1B6A831C399E269772661");
    }
    void md5()
    {
        QFETCH(QString, string);
        QTEST(MD5Hash(string), "digest");
    }

    void urlEncodingOfEveryByte()
    {
        QString all;
        QString expected;
        for (int b = 0; b < 128; ++b) {
            all += QChar(b);
            expected += expectedEscape(uchar(b));
        }
        QCOMPARE(URLEncodedString(all), expected);
        // Every character from U+0000 to U+00FF and back, but "%": it stays unescaped, so
        // decoding would read it as the start of an escape.
        all.clear();
        for (int c = 0; c < 256; ++c) {
            if (c != '%')
                all += QChar(c);
        }
        QCOMPARE(URLDecodedString(URLEncodedString(all)), all);
        // Every byte value escaped: ASCII decodes to itself, a lone high byte is no UTF-8.
        for (int b = 0; b < 256; ++b) {
            const QString escaped = QStringLiteral("%%1").arg(b, 2, 16, QLatin1Char('0'));
            const std::optional<QString> decoded = URLDecodedString(escaped.toUpper());
            QCOMPARE(decoded.has_value(), b < 0x80);
            if (decoded)
                QCOMPARE(*decoded, QString(QChar(b)));
        }
    }

    void urlCoding_data()
    {
        QTest::addColumn<QString>("plain");
        QTest::addColumn<QString>("encoded");
        QTest::newRow("reserved") << QStringLiteral(";/?:@&=+$,")
                                  << QStringLiteral("%3B%2F%3F%3A%40%26%3D%2B%24%2C");
        QTest::newRow("kept") << QStringLiteral("aZ09-_.!~*'()%#")
                              << QStringLiteral("aZ09-_.!~*'()%#");
        QTest::newRow("unsafe") << QStringLiteral(" \"<>[\\]^`{|}")
                                << QStringLiteral("%20%22%3C%3E%5B%5C%5D%5E%60%7B%7C%7D");
        QTest::newRow("utf-8") << QStringLiteral("\u00e9\u20ac")
                               << QStringLiteral("%C3%A9%E2%82%AC");
        QTest::newRow("surrogate pair")
            << QString::fromUtf8("\xf0\x9f\x98\x80") << QStringLiteral("%F0%9F%98%80");
    }
    void urlCoding()
    {
        QFETCH(QString, plain);
        QFETCH(QString, encoded);
        QCOMPARE(URLEncodedString(plain), encoded);
        if (!plain.contains(QLatin1Char('%')))
            QCOMPARE(URLDecodedString(encoded), plain);
    }

    void urlDecoding_data()
    {
        QTest::addColumn<QString>("encoded");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<QString>("plain");
        QTest::newRow("empty") << QString() << true << QString();
        QTest::newRow("plus stays") << QStringLiteral("a+b") << true << QStringLiteral("a+b");
        QTest::newRow("lower-case hex")
            << QStringLiteral("%c3%a9x") << true << QStringLiteral("\u00e9x");
        QTest::newRow("zero byte")
            << QStringLiteral("a%00") << true << QString::fromUtf16(u"a\0", 2);
        QTest::newRow("byte order mark kept")
            << QStringLiteral("%EF%BB%BFa") << true << QStringLiteral("\ufeffa");
        QTest::newRow("unescaped non-ASCII")
            << QStringLiteral("\u00e9%41") << true << QStringLiteral("\u00e9A");
        QTest::newRow("not hex") << QStringLiteral("%zz") << false << QString();
        QTest::newRow("one digit") << QStringLiteral("a%4") << false << QString();
        QTest::newRow("lone percent") << QStringLiteral("%") << false << QString();
        QTest::newRow("truncated sequence") << QStringLiteral("%C3") << false << QString();
        QTest::newRow("sequence split by text") << QStringLiteral("%C3a%A9") << false << QString();
        QTest::newRow("overlong") << QStringLiteral("%C0%AF") << false << QString();
        QTest::newRow("surrogate") << QStringLiteral("%ED%A0%80") << false << QString();
        QTest::newRow("beyond U+10FFFF") << QStringLiteral("%F4%90%80%80") << false << QString();
    }
    void urlDecoding()
    {
        QFETCH(QString, encoded);
        QFETCH(bool, valid);
        const std::optional<QString> decoded = URLDecodedString(encoded);
        QCOMPARE(decoded.has_value(), valid);
        if (valid)
            QTEST(*decoded, "plain");
    }

    void email_data()
    {
        QTest::addColumn<QString>("string");
        QTest::addColumn<bool>("valid");
        QTest::newRow("a@b.c") << QStringLiteral("a@b.c") << true;
        QTest::newRow("a@b") << QStringLiteral("a@b") << false;
        QTest::newRow("@b.c") << QStringLiteral("@b.c") << false;
        QTest::newRow("a@.c") << QStringLiteral("a@.c") << false;
        QTest::newRow("a@b.") << QStringLiteral("a@b.") << false;
        QTest::newRow("two @") << QStringLiteral("a@@b.c") << true;
        QTest::newRow("spaces count") << QStringLiteral(" a@b.c ") << true;
        QTest::newRow("non-ASCII") << QStringLiteral("\u00e4@\u00f6.\u00fc") << true;
        QTest::newRow("line feed") << QStringLiteral("a@b.c\n") << false;
        QTest::newRow("line feed inside") << QStringLiteral("a\nx@b.c") << false;
        QTest::newRow("carriage return") << QStringLiteral("a@b\r.c") << false;
        QTest::newRow("line separator") << QStringLiteral("a@b.c\u2028") << false;
        QTest::newRow("empty") << QString() << false;
    }
    void email()
    {
        QFETCH(QString, string);
        QTEST(isValidEmailAddress(string), "valid");
    }

    void smallOperations()
    {
        QCOMPARE(invertedString(QString()), QString());
        QCOMPARE(invertedString(QStringLiteral("abc")), QStringLiteral("cba"));
        QCOMPARE(invertedString(QString::fromUtf16(u"a\xd83d\xde00")),
                 QString::fromUtf16(u"\xde00\xd83d"
                                    u"a"));

        QCOMPARE(stringByRemovingCharactersInSet(QStringLiteral("a-b_c-"), QStringLiteral("-_")),
                 QStringLiteral("abc"));
        QCOMPARE(stringByRemovingCharactersInSet(QStringLiteral(" a b\tc\n"),
                                                 [](QChar ch) { return ch.isSpace(); }),
                 QStringLiteral("abc"));

        QCOMPARE(
            urlStringByAppendingPathComponent(QStringLiteral("http://h/a/"), QStringLiteral("b")),
            QStringLiteral("http://h/a/b"));
        QCOMPARE(
            urlStringByAppendingPathComponent(QStringLiteral("http://h/a"), QStringLiteral("b")),
            QStringLiteral("http://h/a/b"));
        QCOMPARE(
            urlStringByAppendingPathComponent(QStringLiteral("http://h/a/"), QStringLiteral("/b")),
            QStringLiteral("http://h/a//b"));
        QCOMPARE(urlStringByAppendingPathComponent(QString(), QStringLiteral("b")),
                 QStringLiteral("/b"));
    }

    void dates()
    {
        const QDateTime date(QDate(2001, 1, 2), QTime(15, 4, 5));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(stringFromDate(date), QStringLiteral("Jan 2, 2001, 3:04 PM"));
        using S = DateFormatterStyle;
        QCOMPARE(stringFromDate(date, S::NoStyle, S::LongStyle), QStringLiteral("January 2, 2001"));
        QCOMPARE(stringFromDate(date, S::MediumStyle, S::NoStyle), QStringLiteral("3:04:05 PM"));
        QVERIFY(
            stringFromDate(date, S::NoStyle, S::FullStyle).startsWith(QLatin1String("Tuesday")));
        QCOMPARE(stringFromDate(date, S::NoStyle, S::NoStyle), QString());
        QCOMPARE(stringFromDate(QDateTime()), QString());

        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        QCOMPARE(stringFromDate(date, S::ShortStyle, S::ShortStyle),
                 QStringLiteral("02.01.01, 15:04"));
        QVERIFY(
            stringFromDate(date, S::NoStyle, S::FullStyle).startsWith(QLatin1String("Dienstag")));
        QLocale::setDefault(QLocale::c());
    }
};

QTEST_GUILESS_MAIN(TestStrings)
#include "tst_strings.moc"
