#include "QuorvelleString.h"
#include "Tools.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>
#include <locale.h>

using namespace QuorvelleString;

using namespace Qt::StringLiterals;

using SizeText = QString (*)(quint64);
Q_DECLARE_METATYPE(SizeText)

namespace {
// Pairs of an input and its expected text (nullptr: no result); non-UTF-8 input as \x escapes.
void addStringRows(std::initializer_list<const char *> pairs)
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("valid");
    for (auto it = pairs.begin(); it != pairs.end(); it += 2)
        QTest::addRow("%s", it[0])
            << QString::fromUtf8(it[0]) << QString::fromUtf8(it[1]) << bool(it[1]);
}

// A German locale compiled into folder (no root needed; localedef's warnings about the
// sources are not failures as long as the locale was written).
bool makeLocale(const QString &folder)
{
    const int exitCode =
        Tools::run(u"localedef"_s, {u"-i"_s, u"de_DE"_s, u"-f"_s, u"UTF-8"_s, folder}).exitCode;
    return (exitCode == 0 || exitCode == 1) && QFile::exists(folder + u"/LC_NUMERIC"_s);
}

} // namespace

class TestStrings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizes_data()
    {
        QTest::addColumn<SizeText>("text");
        QTest::addColumn<quint64>("size");
        QTest::addColumn<QString>("expected");
        // Sizes and their texts, "size=text;..."; M is the largest size.
        const auto rows = [](SizeText text, const char *table) {
            for (const QString &row : QString::fromUtf8(table).split(u';')) {
                const QString size = row.section(u'=', 0, 0), expected = row.section(u'=', 1);
                QTest::addRow("%s", qPrintable(row))
                    << text << (size == u"M" ? ~quint64(0) : size.toULongLong()) << expected;
            }
        };
        rows(stringWithBinaryFileSize, "0=0 bytes;1=1 byte;1022=1022 bytes;1023=1.0 KB;"
                                       "1047552=1.0 MB;M=16777216.0 TB");
        rows(stringWithFileSize,
             "1=1 bytes;998=998 bytes;999=1 KB;1499=1 KB;1500=2 KB;998499=998 KB;"
             "998500=1.0 MB;999000000=1.0 GB;M=18446744.1 TB");
        rows(stringWithNumberOfDays, "0=0 days;1=1 day;6=6 days;7=1 week;13=1 week;14=2 weeks;"
                                     "29=4 weeks;30=1 month;59=1 month;60=2 months;364=12 months;"
                                     "365=1 year;729=1 year;730=2 years;M=50539024859478223 years");
    }
    void sizes()
    {
        QFETCH(SizeText, text);
        QFETCH(quint64, size);
        QFETCH(QString, expected);
        QCOMPARE(text(size), expected);
        // Binary sizes follow the user's decimal separator, decimal ones keep the point.
        if (text != stringWithNumberOfDays) {
            QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
            const QString german = text(size);
            QLocale::setDefault(QLocale::c());
            QCOMPARE(german,
                     text == stringWithBinaryFileSize ? expected.replace(u'.', u',') : expected);
        }
    }

    // The unit strings are looked up once per process, so the German ones are checked in a
    // child process of this test that starts with a German environment. Its C library
    // locale is German too (the system's, or one made here with localedef), so a number
    // formatted through LC_NUMERIC would show "1,5 MB" and fail.
    void germanUnitStrings()
    {
        if (!qEnvironmentVariableIsSet("QV_STRINGS_GERMAN_CHILD")) {
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            QTemporaryDir locales;
            if (const locale_t german = newlocale(LC_ALL_MASK, "de_DE.UTF-8", locale_t(nullptr)))
                freelocale(german);
            else if (makeLocale(locales.filePath(u"de_DE.UTF-8"_s)))
                environment.insert(u"LOCPATH"_s, locales.path());
            else
                QSKIP("no German C library locale: de_DE.UTF-8 is not generated and localedef "
                      "could not make one (package locales)");
            environment.insert(u"QV_STRINGS_GERMAN_CHILD"_s, u"1"_s);
            environment.insert(u"LANGUAGE"_s, u"de"_s);
            environment.insert(u"LC_ALL"_s, u"de_DE.UTF-8"_s);
            const Tools::Outcome child = Tools::run(QCoreApplication::applicationFilePath(),
                                                    {u"germanUnitStrings"_s}, 60000, environment);
            QVERIFY2(child.exitCode == 0, (child.output + child.errors).constData());
            return;
        }
        QVERIFY2(std::setlocale(LC_ALL, "de_DE.UTF-8"), "the German locale did not load");
        QCOMPARE(std::localeconv()->decimal_point, ",");
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QStringList texts{stringWithFileSize(0),          stringWithBinaryFileSize(1),
                                stringWithBinaryFileSize(1536), stringWithFileSize(1500000),
                                stringWithNumberOfDays(1),      stringWithNumberOfDays(3),
                                stringWithNumberOfDays(20),     stringWithNumberOfDays(100),
                                stringWithNumberOfDays(800)};
        QCOMPARE(texts.join(u'|'),
                 u"0 Bytes|1 Byte|1,5 KB|1.5 MB|1 Tag|3 Tage|2 Wochen|3 Monate|2 Jahre"_s);
    }

    void validity_data()
    {
        QTest::addColumn<bool>("email"); // else a UUID
        QTest::addColumn<QString>("input");
        QTest::addColumn<bool>("valid");
        const auto rows = [](bool email, bool valid, std::initializer_list<const char *> inputs) {
            for (const char *input : inputs)
                QTest::addRow("%s", input) << email << QString::fromUtf8(input) << valid;
        };
        // 31 digits pass, and so do braces inside.
        rows(false, true,
             {"6ba7b810-9dad-11d1-80b4-00c04fd430c8", "6BA7B8109DAD11D180B400C04FD430C8",
              "{6BA7B8109DAD11D180B400C04FD430C8}", "{6ba7b810-9dad-11d1-80b4-00c04fd430c8}",
              "6BA7B8109DAD11D180B4-0C04FD430C8", "6BA7B810-9DAD-11D1-80B4-00C04FD43}C8"});
        rows(false, false,
             {"(6BA7B810-9DAD-11D1-80B4-00C04FD430C8)", "{6BA7B8109DAD11D180B400C04FD430C8)",
              "6BA7B8109-DAD-11D1-80B4-00C04FD430C8", "GBA7B810-9DAD-11D1-80B4-00C04FD430C8",
              "6BA7B8109DAD11D180B400C04FD430C", "6BA7B810-9DAD-11D1-80B4-00C04FD430C\xd9\xa1"});
        rows(true, true, {"a@b.c", "a@@b.c", " a@b.c ", "\xc3\xa4@b.c"});
        rows(true, false, {"a@b", "@b.c", "a@.c", "a@b.", "a@b.c\n", "a@b.c\xe2\x80\xa8"});
    }

    void validity()
    {
        QFETCH(bool, email);
        QFETCH(QString, input);
        QTEST(email ? isValidEmailAddress(input) : isValidUUID(input), "valid");
    }

    void md5_data()
    {
        addStringRows({"", "D41D8CD98F00B204E9800998ECF8427E", "abc",
                       "900150983CD24FB0D6963F7D28E17F72", "\xc3\xa9",
                       "66DDCD97CFDEABB2F6FB8A999B4BC76F"});
    }
    void md5()
    {
        QFETCH(QString, input);
        QTEST(MD5Hash(input), "expected");
        // Bytes after a zero byte do not count.
        QTEST(MD5Hash(input + QChar(0) + u"tail"_s), "expected");
    }

    void urlCoding()
    {
        QString ascii;
        QString expected;
        for (int b = 0; b < 128; ++b) {
            ascii += QChar(b);
            expected += isalnum(b) || QByteArrayView("-_.!~*'()%#").contains(char(b))
                            ? QString(QChar(b))
                            : u"%%1"_s.arg(b, 2, 16, QChar(u'0')).toUpper();
        }
        QCOMPARE(URLEncodedString(ascii), expected);
        QCOMPARE(URLEncodedString(u"\u00e9\u20ac\U0001F600"_s), u"%C3%A9%E2%82%AC%F0%9F%98%80"_s);
        // A leading byte-order mark is a character like any other.
        QCOMPARE(URLDecodedString(u"%EF%BB%BFa"_s), QChar(0xfeff) + u"a"_s);
    }

    void urlDecoding_data()
    {
        // A lone high byte, an overlong form and a code point past U+10FFFF are no UTF-8.
        addStringRows({"a+b", "a+b", "%c3%a9x", "\xc3\xa9x", "\xc3\xa9%41", "\xc3\xa9\x41", "%zz",
                       nullptr, "a%4", nullptr, "%C3", nullptr, "%C0%AF", nullptr, "%F4%90%80%80",
                       nullptr, "%80", nullptr});
    }
    void urlDecoding()
    {
        QFETCH(QString, input);
        QFETCH(QString, expected);
        QFETCH(bool, valid);
        QCOMPARE(URLDecodedString(input), valid ? std::optional(expected) : std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestStrings)
#include "tst_strings.moc"
