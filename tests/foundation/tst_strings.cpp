#include "QuorvelleString.h"

#include <QCoreApplication>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace QuorvelleString;

namespace {
struct Row
{
    const char *input;
    const char *expected; // nullptr: no result
};

// Rows named after their input; non-UTF-8 input is given as \x escapes.
void addStringRows(std::initializer_list<Row> rows)
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("valid");
    for (const Row &row : rows)
        QTest::addRow("%s", row.input) << QString::fromUtf8(row.input)
                                       << QString::fromUtf8(row.expected) << bool(row.expected);
}

void addSizeRows(std::initializer_list<std::pair<quint64, const char *>> rows)
{
    QTest::addColumn<quint64>("size");
    QTest::addColumn<QString>("expected");
    for (const auto &[size, text] : rows)
        QTest::addRow("%llu", static_cast<unsigned long long>(size))
            << size << QString::fromUtf8(text);
}

QString withGermanLocale(const std::function<QString()> &call)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString result = call();
    QLocale::setDefault(QLocale::c());
    return result;
}
} // namespace

class TestStrings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void binarySizes_data()
    {
        addSizeRows({{0, "0 bytes"},
                     {1, "1 byte"},
                     {1022, "1022 bytes"},
                     {1023, "1.0 KB"},
                     {1536, "1.5 KB"},
                     {1047551, "1023.0 KB"},
                     {1047552, "1.0 MB"},
                     {1048576, "1.0 MB"},
                     {1610612736, "1.5 GB"},
                     {quint64(1) << 40, "1.0 TB"},
                     {~quint64(0), "16777216.0 TB"}});
    }
    void binarySizes()
    {
        QFETCH(quint64, size);
        QFETCH(QString, expected);
        QCOMPARE(stringWithBinaryFileSize(size), expected);
        // The user's decimal separator.
        QCOMPARE(withGermanLocale([=] { return stringWithBinaryFileSize(size); }),
                 expected.replace(QLatin1Char('.'), QLatin1Char(',')));
    }

    void decimalSizes_data()
    {
        addSizeRows({{0, "0 bytes"},
                     {1, "1 bytes"},
                     {998, "998 bytes"},
                     {999, "1 KB"},
                     {1499, "1 KB"},
                     {1500, "2 KB"},
                     {998499, "998 KB"},
                     {998500, "1.0 MB"},
                     {1500000, "1.5 MB"},
                     {998940000, "998.9 MB"},
                     {999000000, "1.0 GB"},
                     {1000000000000, "1.0 TB"},
                     {~quint64(0), "18446744.1 TB"}});
    }
    void decimalSizes()
    {
        QFETCH(quint64, size);
        QFETCH(QString, expected);
        QCOMPARE(stringWithFileSize(size), expected);
        QCOMPARE(withGermanLocale([=] { return stringWithFileSize(size); }), expected);
    }

    void days_data()
    {
        addSizeRows({{0, "0 days"},
                     {1, "1 day"},
                     {6, "6 days"},
                     {7, "1 week"},
                     {13, "1 week"},
                     {14, "2 weeks"},
                     {29, "4 weeks"},
                     {30, "1 month"},
                     {59, "1 month"},
                     {60, "2 months"},
                     {364, "12 months"},
                     {365, "1 year"},
                     {729, "1 year"},
                     {730, "2 years"},
                     {1095, "3 years"},
                     {~quint64(0), "50539024859478223 years"}});
    }
    void days()
    {
        QFETCH(quint64, size);
        QTEST(stringWithNumberOfDays(size), "expected");
    }

    // The unit strings are looked up once per process, so the German ones are checked in a
    // child process of this test that starts with a German environment.
    void germanUnitStrings()
    {
        if (!qEnvironmentVariableIsSet("QV_STRINGS_GERMAN_CHILD")) {
            QProcess child;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("QV_STRINGS_GERMAN_CHILD"), QStringLiteral("1"));
            environment.insert(QStringLiteral("LANGUAGE"), QStringLiteral("de"));
            environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
            child.setProcessEnvironment(environment);
            child.setProcessChannelMode(QProcess::MergedChannels);
            child.start(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("germanUnitStrings")});
            QVERIFY(child.waitForFinished(60000));
            QVERIFY2(child.exitCode() == 0, child.readAll().constData());
            return;
        }
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QStringList texts{stringWithFileSize(0),          stringWithBinaryFileSize(1),
                                stringWithBinaryFileSize(1536), stringWithFileSize(1500000),
                                stringWithNumberOfDays(1),      stringWithNumberOfDays(3),
                                stringWithNumberOfDays(20),     stringWithNumberOfDays(100),
                                stringWithNumberOfDays(800)};
        QCOMPARE(
            texts.join(QLatin1Char('|')),
            QStringLiteral("0 Bytes|1 Byte|1,5 KB|1.5 MB|1 Tag|3 Tage|2 Wochen|3 Monate|2 Jahre"));
    }

    void uuidAcceptance_data()
    {
        addStringRows({{"6BA7B810-9DAD-11D1-80B4-00C04FD430C8", ""},
                       {"6ba7b810-9dad-11d1-80b4-00c04fd430c8", ""},
                       {"6BA7B8109DAD11D180B400C04FD430C8", ""},
                       {"{6BA7B8109DAD11D180B400C04FD430C8}", ""},
                       {"{6BA7B810-9DAD-11D1-80B4-00C04FD430C8}", ""},
                       {"(6BA7B810-9DAD-11D1-80B4-00C04FD430C8)", nullptr},
                       {"(6BA7B8109DAD11D180B400C04FD430C8)", nullptr},
                       {"{6BA7B8109DAD11D180B400C04FD430C8)", nullptr},
                       {"6BA7B8109DAD11D180B4-0C04FD430C8", ""},     // 31 digits pass
                       {"6BA7B810-9DAD-11D1-80B4-00C04FD43}C8", ""}, // so do braces inside
                       {"6BA7B81-9DAD11D180B-00C04FD430C8", nullptr},
                       {"6BA7B8109-DAD-11D1-80B4-00C04FD430C8", nullptr},
                       {"GBA7B810-9DAD-11D1-80B4-00C04FD430C8", nullptr},
                       {"6BA7B8109DAD11D180B400C04FD430C", nullptr},
                       {"6BA7B8109DAD11D180B400C04FD430C80000", nullptr},
                       {"6BA7B\xd9\xa1"
                        "109DAD11D180B400C04FD430C8",
                        nullptr},
                       {"", nullptr}});
    }
    void uuidAcceptance()
    {
        QFETCH(QString, input);
        QTEST(isValidUUID(input), "valid");
    }

    void newUUID()
    {
        static const QRegularExpression shape(QRegularExpression::anchoredPattern(
            QStringLiteral("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}")));
        const QString a = stringWithUUID();
        QVERIFY2(shape.match(a).hasMatch() && isValidUUID(a), qPrintable(a));
        QVERIFY(a != stringWithUUID());
    }

    void md5_data()
    {
        addStringRows({{"", "D41D8CD98F00B204E9800998ECF8427E"},
                       {"abc", "900150983CD24FB0D6963F7D28E17F72"},
                       {"message digest", "F96B697D7CB7938D525A2F31AAF161D0"},
                       {"\xc3\xa9", "66DDCD97CFDEABB2F6FB8A999B4BC76F"},
                       {"\xf0\x9f\x98\x80", "2A02EAC39D716A70ECF37579185927B6"}});
    }
    void md5()
    {
        QFETCH(QString, input);
        QTEST(MD5Hash(input), "expected");
        // Bytes after a zero byte do not count.
        QTEST(MD5Hash(input + QChar(0) + QStringLiteral("tail")), "expected");
    }

    void urlCodingOfEveryByte()
    {
        QString ascii;
        QString expected;
        for (int b = 0; b < 128; ++b) {
            ascii += QChar(b);
            expected += isalnum(b) || QByteArrayView("-_.!~*'()%#").contains(char(b))
                            ? QString(QChar(b))
                            : QStringLiteral("%%1").arg(b, 2, 16, QLatin1Char('0')).toUpper();
        }
        QCOMPARE(URLEncodedString(ascii), expected);
        // U+0000 to U+00FF go round, but "%": left unescaped, it reads as an escape again.
        QString all;
        for (int c = 0; c < 256; ++c)
            all += c == '%' ? QString() : QString(QChar(c));
        QCOMPARE(URLDecodedString(URLEncodedString(all)), all);
        // Escaped, every ASCII byte decodes to itself and a lone high byte is no UTF-8.
        for (int b = 0; b < 256; ++b) {
            const auto decoded =
                URLDecodedString(QStringLiteral("%%1").arg(b, 2, 16, QLatin1Char('0')));
            QCOMPARE(decoded, b < 0x80 ? std::optional(QString(QChar(b))) : std::nullopt);
        }
        // A leading byte-order mark is a character like any other.
        QCOMPARE(URLDecodedString(QStringLiteral("%EF%BB%BFa")),
                 QChar(0xfeff) + QStringLiteral("a"));
    }

    void urlEncoding_data()
    {
        addStringRows({{";/?:@&=+$,", "%3B%2F%3F%3A%40%26%3D%2B%24%2C"},
                       {"aZ09-_.!~*'()%#", "aZ09-_.!~*'()%#"},
                       {" \"<>[\\]^`{|}", "%20%22%3C%3E%5B%5C%5D%5E%60%7B%7C%7D"},
                       {"\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", "%C3%A9%E2%82%AC%F0%9F%98%80"}});
    }
    void urlEncoding()
    {
        QFETCH(QString, input);
        QTEST(URLEncodedString(input), "expected");
    }

    void urlDecoding_data()
    {
        addStringRows({{"a+b", "a+b"},
                       {"%c3%a9x", "\xc3\xa9x"},
                       {"\xc3\xa9%41", "\xc3\xa9"
                                       "A"},
                       {"%zz", nullptr},
                       {"a%4", nullptr},
                       {"%", nullptr},
                       {"%C3", nullptr},
                       {"%C3a%A9", nullptr},
                       {"%C0%AF", nullptr},
                       {"%ED%A0%80", nullptr},
                       {"%F4%90%80%80", nullptr}});
    }
    void urlDecoding()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QFETCH(bool, valid);
        QCOMPARE(URLDecodedString(input), valid ? std::optional(expected) : std::nullopt);
    }

    void email_data()
    {
        addStringRows({{"a@b.c", ""},
                       {"a@b", nullptr},
                       {"@b.c", nullptr},
                       {"a@.c", nullptr},
                       {"a@b.", nullptr},
                       {"a@@b.c", ""},
                       {" a@b.c ", ""},
                       {"\xc3\xa4@b.c", ""},
                       {"a@b.c\n", nullptr},
                       {"a\nx@b.c", nullptr},
                       {"a@b\r.c", nullptr},
                       {"a@b.c\xe2\x80\xa8", nullptr},
                       {"", nullptr}});
    }
    void email()
    {
        QFETCH(QString, input);
        QTEST(isValidEmailAddress(input), "valid");
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
                                                 [](QChar c) { return c.isSpace(); }),
                 QStringLiteral("abc"));
        const QString base = QStringLiteral("http://h/a");
        QCOMPARE(urlStringByAppendingPathComponent(base + u'/', QStringLiteral("b")),
                 base + QStringLiteral("/b"));
        QCOMPARE(urlStringByAppendingPathComponent(base, QStringLiteral("b")),
                 base + QStringLiteral("/b"));
        QCOMPARE(urlStringByAppendingPathComponent(base + u'/', QStringLiteral("/b")),
                 base + QStringLiteral("//b"));
    }

    void dates()
    {
        const QDateTime date(QDate(2001, 1, 2), QTime(15, 4, 5));
        using S = DateFormatterStyle;
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(stringFromDate(date), QStringLiteral("Jan 2, 2001, 3:04 PM"));
        QCOMPARE(stringFromDate(date, S::MediumStyle, S::LongStyle),
                 QStringLiteral("January 2, 2001, 3:04:05 PM"));
        QCOMPARE(stringFromDate(QDateTime()), QString());
        QCOMPARE(
            withGermanLocale([&] { return stringFromDate(date, S::ShortStyle, S::FullStyle); }),
            QStringLiteral("Dienstag, 2. Januar 2001, 15:04"));
    }
};

QTEST_GUILESS_MAIN(TestStrings)
#include "tst_strings.moc"
