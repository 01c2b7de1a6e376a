#include "JSON.h"
#include "LogCapture.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <ctime>
#include <limits>
#include <locale.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

using Dict = PropertyValue::Dictionary;
using Arr = PropertyValue::Array;
using MaybeValue = std::optional<PropertyValue>;
Q_DECLARE_METATYPE(MaybeValue)

namespace QTest {
template <> char *toString(const MaybeValue &value)
{
    QString text;
    QDebug(&text) << (value ? *value : PropertyValue(u"nil"));
    return qstrdup(text.toUtf8().constData());
}
} // namespace QTest

namespace {

QString t(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

PropertyValue D(std::initializer_list<std::pair<const char *, PropertyValue>> members)
{
    Dict d;
    for (const auto &[key, value] : members)
        d.insert(t(key), value);
    return d;
}

const QString logLine = u"VXJSONScanner Error: Could not parse json: %1."_s;
const QString valueAtEnd = logLine.arg(u"scanJSONValue:ignoreNull:"_s);
const QString emptyMember = logLine.arg(u"scanJSONObject:ignoreNull:"_s);

// The calling thread's CPU time in nanoseconds: unlike wall time, it does not grow while
// other programs have the processor.
qint64 threadCpuTime()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

} // namespace

class TestJSON : public QObject
{
    Q_OBJECT

    // Rows of json, ignoreNull, expected (no value: nothing read) and the log lines.
    static void row(const char *name, const QString &json, MaybeValue expected = {},
                    const QStringList &log = {}, bool ignoreNull = false)
    {
        QTest::newRow(name) << json << ignoreNull << expected << log;
    }
private Q_SLOTS:
    void readDictionary_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<bool>("ignoreNull");
        QTest::addColumn<MaybeValue>("expected");
        QTest::addColumn<QStringList>("log");
        row("mixed", t("  {\"a\":[1,2.5,-3e2],\"b\":\"x\\u0041y\"}"),
            D({{"a", Arr{1.0, 2.5, -300.0}}, {"b", u"xAy"}}));
        row("preamble and trailing text", t("garbage{\"a\":1} trailing"), D({{"a", 1.0}}));
        row("no comma", t("{\"a\":1 \"b\":2}"), D({{"a", 1.0}, {"b", 2.0}}));
        row("nulls dropped deep",
            t("{\"a\":{\"b\":[null,{\"c\":null,\"d\":[[null]]}],\"e\":null}}"),
            D({{"a", D({{"b", Arr{D({{"d", Arr{PropertyValue(Arr{})}}})}}})}}), {}, true);
        row("literal case", t("{\"a\":TRUE,\"b\":FALSE,\"c\":nULL,\"d\":fal\u017fe}"),
            D({{"a", true}, {"b", false}, {"c", PropertyValue::null()}, {"d", false}}));
        row("escapes", t("{\"a\":\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u00e9\\uD83D\\uDE00\"}"),
            D({{"a", u"\"\\/\b\f\n\r\té\U0001F600"}}));
        row("unicode whitespace", t("{\u00a0\"a\"\u2028:\u3000 -0.5e-1\r\n}"), D({{"a", -0.05}}));
        // Other number shapes are held to the C library in readNumbers.
        row("capital exponent", t("{\"a\":1E2}"), D({{"a", 100.0}}));
        row("trailing backslash", t("{\"a\":\"abc\\"));
        row("unterminated string", t("{\"a\":\"abc"), {}, {emptyMember});
        row("value at end", t("{\"a\": "), {}, {valueAtEnd});
        const QString deep = QString(1023, u'[') + QString(1023, u']');
        PropertyValue nested = Arr{};
        for (int k = 0; k < 1022; ++k)
            nested = Arr{nested};
        row("nesting at the limit", u"{\"a\":"_s + deep + u"}"_s, D({{"a", nested}}));
        row("nesting past the limit", u"{\"a\":["_s + deep + u"]}"_s);
    }

    void readDictionary()
    {
        QFETCH(QString, json);
        QFETCH(bool, ignoreNull);
        LogCapture capture;
        MaybeValue result;
        if (const auto d = JSON::dictionaryWithJSONString(json, ignoreNull))
            result = *d;
        QTEST(result, "expected");
        QTEST(capture.lines(), "log");
    }

    // One long string value costs time in proportion to its length. Each size's cost per
    // unit (the thread's CPU time, best of a few reads, so that a busy machine does not
    // decide) is held against
    // the size ten times smaller, up to 10^7 units; every string must read back exactly. A
    // key comes first, so the value starts inside a block already in use and outgrows it.
    void readLongStrings_data()
    {
        QTest::addColumn<bool>("utf8");
        QTest::addColumn<QString>("written"); // one unit as it stands in the text
        QTest::addColumn<QChar>("unit");      // what it reads as
        for (const bool utf8 : {false, true}) {
            const char *entry = utf8 ? "UTF-8" : "QString";
            QTest::addRow("%s, ASCII", entry) << utf8 << u"x"_s << QChar(u'x');
            QTest::addRow("%s, escapes", entry) << utf8 << u"\\t"_s << QChar(u'\t');
            QTest::addRow("%s, two-byte characters", entry) << utf8 << u"\u00e9"_s << QChar(0xe9);
        }
    }

    void readLongStrings()
    {
        QFETCH(bool, utf8);
        QFETCH(QString, written);
        QFETCH(QChar, unit);
#ifdef __GLIBC__
        // Freed memory stays with the allocator instead of going back to the system, so
        // that after the first read of a size every read writes into pages touched before.
        // Otherwise only the large sizes pay for the kernel's first touch of fresh pages,
        // which in an optimised build costs several times the reading itself.
        mallopt(M_MMAP_MAX, 0);
        mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
#endif
        double previousCost = 0;
        for (qsizetype units = 10'000; units <= 10'000'000; units *= 10) {
            const QString text = u"{\"k\":\""_s + written.repeated(units) + u"\"}"_s;
            const QByteArray bytes = text.toUtf8();
            qint64 best = std::numeric_limits<qint64>::max();
            for (int run = 0; run < std::max<qsizetype>(3, 100'000 / units); ++run) {
                const qint64 start = threadCpuTime();
                const auto read = utf8 ? JSON::dictionaryWithJSONString(bytes)
                                       : JSON::dictionaryWithJSONString(text);
                best = std::min(best, threadCpuTime() - start);
                QVERIFY(read);
                QCOMPARE(read->value(u"k"_s).toString(), QString(units, unit));
            }
            const double cost = double(best) / double(units);
            if (previousCost > 0) {
                QVERIFY2(
                    cost < 4 * previousCost,
                    qPrintable(
                        u"%1 ns per unit for %2 units, %3 for a tenth"_s.arg(cost).arg(units).arg(
                            previousCost)));
            }
            previousCost = cost;
        }
    }

    // Objects large enough to be indexed, keys in random order with
    // duplicates and nulls, and many short strings that share a hash slot now and then.
    // The oracle inserts member after member, so a later duplicate replaces the earlier.
    void readLargeObjects_data()
    {
        QTest::addColumn<int>("members");
        QTest::addColumn<int>("distinctKeys");
        QTest::addColumn<bool>("ignoreNull");
        QTest::newRow("ordered") << 300 << 0 << false;
        QTest::newRow("duplicates") << 300 << 120 << false;
        QTest::newRow("duplicates, nulls ignored") << 5000 << 1500 << true;
        QTest::newRow("all distinct") << 5000 << 1000000 << false;
    }

    void readLargeObjects()
    {
        QFETCH(int, members);
        QFETCH(int, distinctKeys);
        QFETCH(bool, ignoreNull);
        QRandomGenerator random(members);
        QString json = QStringLiteral("{");
        Dict expected;
        for (int n = 0; n < members; ++n) {
            const QString key =
                QStringLiteral("k%1").arg(distinctKeys ? random.bounded(distinctKeys) : n,
                                          distinctKeys ? 0 : 6, 10, QChar(u'0'));
            const int kind = random.bounded(7);
            const QString text = QString::number(random.bounded(100000), 36);
            const PropertyValue value = kind == 0  ? PropertyValue::null()
                                        : kind < 4 ? PropertyValue(text)
                                                   : PropertyValue(double(random.bounded(1000)));
            json += QStringLiteral("\"%1\":%2,")
                        .arg(key, kind == 0  ? QStringLiteral("null")
                                  : kind < 4 ? u'"' + text + u'"'
                                             : QString::number(value.toDouble()));
            if (!(ignoreNull && value.isNull()))
                expected.insert(key, value);
        }
        json += u'}';
        QCOMPARE(JSON::dictionaryWithJSONString(json, ignoreNull), expected);
    }

    // Numbers of every shape against the C library's own conversion: short and long
    // digit strings, fractions, exponents near and past the exact range, signs.
    void readNumbers()
    {
        QRandomGenerator random(7);
        QStringList texts;
        for (int n = 0; n < 4000; ++n) {
            QString text = random.bounded(2) ? QStringLiteral("-") : QString();
            for (int k = random.bounded(1, 22); k > 0; --k)
                text += QChar(u'0' + random.bounded(10));
            if (random.bounded(2)) {
                text += u'.';
                for (int k = random.bounded(0, 20); k > 0; --k)
                    text += QChar(u'0' + random.bounded(10));
            }
            if (random.bounded(2))
                text += QStringLiteral("e%1").arg(random.bounded(-340, 340));
            texts.append(text);
        }
        // Read from a QString and from UTF-8 bytes.
        const QString text = u'[' + texts.join(u',') + u']';
        const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
        for (const auto &read :
             {JSON::arrayWithJSONString(text), JSON::arrayWithJSONString(text.toUtf8())}) {
            QVERIFY(read);
            QCOMPARE(read->size(), texts.size());
            for (qsizetype k = 0; k < texts.size(); ++k) {
                const double expected = strtod_l(texts[k].toLatin1().constData(), nullptr, cLocale);
                QVERIFY2(read->at(k).toDouble() == expected &&
                             std::signbit(read->at(k).toDouble()) == std::signbit(expected),
                         qPrintable(texts[k]));
            }
        }
        freelocale(cLocale);
    }

    // The byte entries read what the QString entries read of Qt's conversion of the same
    // bytes: same result, same log lines. Ends of the tables above, and bytes whose
    // non-ASCII characters stand where the reader decides something.
    void readUtf8_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        // A byte-order mark, other spaces, next line, three-byte characters with odd and even
        // lead bytes, keys and escapes beyond ASCII, pairs and halves, preamble and tail,
        // invalid and cut sequences, and rows of the table above. Other malformed bytes are
        // the fuzz target's.
        for (const char *row :
             {"{\"a\":1,\"b\":[1,2.5e3,-0],\"c\":{\"d\":null}}", "\xef\xbb\xbf{\"bom\":1}",
              "{\"a\":\xc2\xa0\xe2\x80\xa8\xe3\x80\x80 1}", "{\"a\":\xc2\x85[1]}",
              "[\"\xf0\x9f\x98\x80x\xc3\xa9\xe6\x97\xa5\"]", "[\"\xe3\x81\x82\xe1\x80\x80\"]",
              "{\"\xc3\xa9\xf0\x9f\x98\x80\":\"v\"}", "[\"\\\xc3\xa9\\\xf0\x9f\x98\x80\"]",
              "[\"\\u\xc3\xa9\xc3\xa9\"]", "[\"\\ud83d\\ude00\\ud83d\"]", "x\xc3\xa9{\"a\":1}\xff",
              "{\"a\":\"\xe2\x82\"}", "[1,\"\xc3\xa9", "1,2]", "{\"a\":\"abc"})
            QTest::newRow(row) << QByteArray(row);
    }

    void readUtf8()
    {
        QFETCH(QByteArray, bytes);
        const QString converted = QString::fromUtf8(bytes);
        const auto compare = [](auto fromBytes, auto fromString) {
            LogCapture bytesLog;
            const auto result = fromBytes();
            const QStringList bytesLines = bytesLog.lines();
            LogCapture stringLog;
            QCOMPARE(result, fromString());
            QCOMPARE(bytesLines, stringLog.lines());
        };
        for (bool ignoreNull : {false, true}) {
            compare([&] { return JSON::dictionaryWithJSONString(bytes, ignoreNull); },
                    [&] { return JSON::dictionaryWithJSONString(converted, ignoreNull); });
            compare([&] { return JSON::arrayWithJSONString(bytes, ignoreNull); },
                    [&] { return JSON::arrayWithJSONString(converted, ignoreNull); });
        }
    }

    // Numbers are written as plain decimal text: an integral value as Qt writes it with no
    // decimals (its exact digits, however large), any other in a text that reads back as
    // the same double, by both writers. The standard library reads the text back.
    void writeNumbers_data()
    {
        QTest::addColumn<double>("number");
        QTest::addColumn<QString>("plain"); // the text of an integral value

        // Integral values: digit-count edges, 2^53 and 2^63 and their neighbours, the largest.
        for (const QByteArray &text :
             QByteArray("1 -12 100000 999999999999 1e12 9999999999999 1200000 1e15 -1e15 "
                        "9007199254740991 0x1p53 9007199254740994 -0x1p53 9223372036854774784 "
                        "0x1p63 -0x1p63 0x1p64 1e21 1e23 -1.234567890123e30 1e300 "
                        "1.7976931348623157e308 -1.7976931348623157e308")
                 .split(' ')) {
            const double d = std::strtod(text.constData(), nullptr);
            QTest::addRow("%s", text.constData()) << d << QString::number(d, 'f', 0);
        }
        QTest::newRow("0") << 0.0 << u"0"_s;
        // The sign is kept, so the text reads back as the same double (Qt writes "0").
        QTest::newRow("-0") << -0.0 << u"-0"_s;

        for (const double d :
             {0.5, -1.5, 0.1, 1e-7, 123456.789, 0x1p52 - 0.5, std::numeric_limits<double>::min(),
              std::numeric_limits<double>::denorm_min()})
            QTest::addRow("%.17g", d) << d << QString();
    }

    void writeNumbers()
    {
        QFETCH(double, number);
        QFETCH(QString, plain);
        const Arr array{number};
        const QString text = JSON::JSONString(array);
        QCOMPARE(JSON::JSONUtf8(array), text.toUtf8());
        QVERIFY(text.startsWith(u'[') && text.endsWith(u']'));
        const QByteArray written = text.mid(1, text.size() - 2).toLatin1();
        if (!plain.isEmpty())
            QCOMPARE(written, plain.toLatin1());
        double readBack = 0;
        const auto [end, error] = std::from_chars(written.cbegin(), written.cend(), readBack);
        QVERIFY(error == std::errc() && end == written.cend());
        QCOMPARE(readBack, number);
        QCOMPARE(std::signbit(readBack), std::signbit(number));
        // Our own reader agrees, also on a few hundred digits.
        const auto read = JSON::arrayWithJSONString(text);
        QVERIFY(read && read->size() == 1);
        QCOMPARE(read->first().toDouble(), number);
        QCOMPARE(std::signbit(read->first().toDouble()), std::signbit(number));
    }

    // The UTF-8 writer must give Qt's own conversion of the QString text, lone surrogates
    // included. Besides four fixed rows: one key holding a one-element array of the same
    // text, with a special unit at the edges of eight-unit blocks and of long runs, whose
    // QString text is built by the eight replacements made one after the other.
    void writeUtf8_data()
    {
        QTest::addColumn<PropertyValue>("value");
        QTest::addColumn<QString>("json");

        QTest::newRow("eight escapes")
            << PropertyValue(Arr{u"\\\"/\b\f\n\r\t"}) << t("[\"\\\\\\\"\\/\\b\\f\\n\\r\\t\"]");
        QTest::newRow("others raw") << PropertyValue(Arr{u"\x01\x1f\u00e9\u2028\U0001F600"})
                                    << t("[\"\x01\x1f\u00e9\u2028\U0001F600\"]");
        QTest::newRow("kinds and numbers")
            << PropertyValue(Arr{true, false, 0.5, PropertyValue::null(), -5,
                                 std::numeric_limits<quint64>::max(), 1e21, -0.0, 1e-7,
                                 123456789012.0, std::nan(""), QDateTime::currentDateTimeUtc()})
            << t("[1,0,0.5,null,-5,18446744073709551615,1000000000000000000000,-0,1e-07,"
                 "123456789012,null,null]");
        QTest::newRow("nested") << D({{"a", Arr{D({}), Arr{}, u""}}, {"b", D({{"c", 1}})}})
                                << t("{\"a\":[{},[],\"\"],\"b\":{\"c\":1}}");
        const auto escaped = [](QString s) {
            const QString from = u"\\\"/\b\f\n\r\t"_s, to = u"\\\"/bfnrt"_s;
            for (qsizetype k = 0; k < from.size(); ++k) // the backslash first
                s.replace(from[k], u'\\' + QString(to[k]));
            return s;
        };
        const auto addRow = [&](const QByteArray &name, const QString &s) {
            QTest::newRow(name.constData()) << PropertyValue(Dict{{s, Arr{s}}})
                                            << u"{\""_s + s + u"\":[\""_s + escaped(s) + u"\"]}"_s;
        };
        // Escaped, control, two-, three- and four-byte characters (with odd and even bits
        // where the masks cut), then a pair and its two lone halves.
        QStringList specials;
        for (const QChar c : u"\"/\\\b\v\r\u00e9\u00a8\u65e5"_s)
            specials.append(c);
        specials << u"\U0001F643"_s << u"\U0001F600"_s << QChar(0xd800) << QChar(0xdc00);
        // Units that need nothing but a copy, the edges of the tested ranges among them.
        const QString plain = u"ab z~\x7f.0-\x01\x07\x0e[]"_s;
        for (qsizetype n = 0; n < specials.size(); ++n) {
            const QString &special = specials[n];
            for (const qsizetype length : {16, 17, 4099}) {
                for (const qsizetype at :
                     {qsizetype(0), qsizetype(7), qsizetype(8), length - special.size()}) {
                    QString s = plain.repeated(400).left(length);
                    s.replace(at, special.size(), special);
                    addRow(u"special %1 at %2 of %3"_s.arg(n).arg(at).arg(length).toUtf8(), s);
                }
            }
            // Texts written in several pieces, a pair or a lone surrogate on either side of
            // 16 K units, where a piece may end.
            for (const qsizetype at : {16382, 16383, 16384}) {
                QString s = plain.repeated(3000);
                s.replace(at, special.size(), special);
                if (n >= specials.size() - 3)
                    addRow(u"special %1 at %2 of a long text"_s.arg(n).arg(at).toUtf8(), s);
            }
        }
        addRow("swapped pair", u"a"_s + QChar(0xdc00) + QChar(0xd800) + u"b"_s);
        addRow("lone high before an escape", QChar(0xd800) + u"\n"_s);
        addRow("only non-ASCII", u"\u00e9\u65e5\U0001F600\u00e9\u65e5\U0001F600\u00e9\u65e5"_s);
        // Many short values, so that the output grows between and inside them.
        Arr many;
        QString manyText = u"["_s;
        for (int k = 0; k < 3000; ++k) {
            const QString s = specials[k % specials.size()] + QString::number(k);
            many.append(s);
            manyText += (k ? u",\""_s : u"\""_s) + escaped(s) + u'"';
        }
        QTest::newRow("many values") << PropertyValue(many) << manyText + u']';
    }

    void writeUtf8()
    {
        QFETCH(PropertyValue, value);
        QFETCH(QString, json);
        const QString text = value.isArray() ? JSON::JSONString(value.toArray())
                                             : JSON::JSONString(value.toDictionary());
        QCOMPARE(text, json);
        QCOMPARE(value.isArray() ? JSON::JSONUtf8(value.toArray())
                                 : JSON::JSONUtf8(value.toDictionary()),
                 text.toUtf8());
        // The reader takes the written value back (keys are written unescaped, so only the
        // value): escapes and long runs at the edges of its buffers and blocks.
        if (value.isDictionary()) {
            const Arr inner = value.toDictionary().begin().value().toArray();
            QCOMPARE(JSON::arrayWithJSONString(JSON::JSONString(inner)), inner);
        }
    }
};

QTEST_GUILESS_MAIN(TestJSON)
#include "tst_json.moc"
