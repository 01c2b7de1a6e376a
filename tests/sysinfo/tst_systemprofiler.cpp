// The hardware report tool as the queries run it (a fake tool records its arguments), its
// reports as text and as property lists, and the property-list reader and writer.
#include "FakeMachine.h"
#include "LogCapture.h"
#include "PropertyListXml.h"

#include <functional>

using namespace VXSystemInformation;

namespace {
// The lister's text: only the machine's product and the system memory's size are relabelled
// (the memory node numbered, as the lister numbers nodes of one kind).
const QByteArray kListerText = "vm\n    product: ThinkPad X1\n  *-memory:0\n"
                               "       description: System memory\n       size: 16GiB\n"
                               "     *-bank:0\n          product: M471A1K43CB1\n";

const QByteArray kListerXml = R"(<?xml version="1.0" standalone="yes" ?>
<list><node id="vm" class="system"><product>ThinkPad X1</product>
  <capabilities><capability id="smp">SMP</capability></capabilities>
  <node id="memory" class="memory"><size units="bytes">17179869184</size></node>
  <node id="network" class="network"><logicalname>eth0</logicalname></node>
</node></list>
)";

QByteArray plist(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body +
           "</plist>\n";
}

using Query = std::function<QString(const FakeMachine &)>;

PropertyValue::Array items(const PropertyValue &dataType)
{
    return dataType.value(u"_items"_s).value_or(PropertyValue()).toArray();
}
} // namespace

Q_DECLARE_METATYPE(Query)

class TestSystemProfiler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // One query against a report tool printing `output`: the arguments the tool got, then
    // the answer. Values for keys come from the first matching line; the report is saved as
    // the tool prints it (without personal details through the lister's own level; nothing
    // printed is no file); a lister tree nested as deep as no machine is, is no report and
    // must not exhaust the stack; application items without a path are skipped.
    void reportQueries_data()
    {
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<Query>("query");
        QTest::addColumn<QByteArray>("arguments");
        QTest::addColumn<QString>("answer");
        const QByteArray lister = "-class\nsystem\n-class\nmemory\n-class\nprocessor\n";
        const auto valueOf = [](const QString &key) -> Query {
            return [key](const FakeMachine &) { return systemProfileValueForKey(key, u"dflt"_s); };
        };
        const Query model = valueOf(u"Model Name: "_s), memory = valueOf(u"Memory: "_s);
        const auto save = [](const QString &level) -> Query {
            return [level](const FakeMachine &machine) {
                QFile saved(machine.resolve(u"%/saved.xml"_s));
                const bool done = saveSystemProfileOfLevel(level, saved.fileName());
                return u"%1 %2"_s.arg(done).arg(saved.open(QIODevice::ReadOnly)
                                                    ? QString::fromUtf8(saved.readAll())
                                                    : u"(no file)"_s);
            };
        };
        const auto tree = [](int depth) {
            return "<list>" + QByteArray("<node class=\"system\">").repeated(depth) +
                   QByteArray("</node>").repeated(depth) + "</list>";
        };
        const Query hardware = [](const FakeMachine &) {
            const auto report = arrayWithSystemProfileOfDataTypes({u"SPHardwareDataType"_s});
            return report ? QString::number(items(report->at(0)).size()) : u"(none)"_s;
        };
        const Query applications = [](const FakeMachine &) {
            return QStringList(allApplicationsPathsWithSystemProfiler().values()).join(u' ');
        };
        const QByteArray apps = "<dict><key>_dataType</key><string>SPApplicationsDataType</string>";

        QTest::newRow("lister's system memory") << kListerText << memory << lister << u"16GiB"_s;
        QTest::newRow("saved without personal details")
            << QByteArray("<list/>\n") << save(u"mini"_s) << QByteArray("-xml\n-sanitize\n")
            << u"1 <list/>\n"_s;
        const QByteArray hardwareArguments = "-xml\n" + lister;
        QTest::newRow("too deep") << tree(300) << hardware << hardwareArguments << u"(none)"_s;
        QTest::newRow("stack-exhausting") << tree(200000) << hardware << hardwareArguments
                                          << u"(none)"_s;
        const QByteArray appArguments = "-xml\n"; // the whole report
        QTest::newRow("application items with paths")
            << plist("<array>" + apps +
                     "<key>_items</key><array><dict/><dict><key>path</key><string>"
                     "/A.app</string></dict></array></dict></array>")
            << applications << appArguments << u"/A.app"_s;
        QTest::newRow("no applications entry")
            << kListerXml << applications << appArguments << QString();
    }
    void reportQueries()
    {
        QFETCH(QByteArray, output);
        QFETCH(Query, query);
        FakeMachine machine;
        machine.reportTool(output);
        QTEST(query(machine), "answer");
        QTEST(machine.reportToolArguments(), "arguments");
    }

    void runnerAndCaches()
    {
        FakeMachine machine;
        LogCapture log;
        // Exit status and standard error are the tool's business; output is returned.
        machine.reportTool("partial", 3);
        QCOMPARE(systemProfilerGetDataWithArguments({}), std::optional<QByteArray>("partial"));
        QCOMPARE(machine.reportToolArguments(), QByteArray("\n"));
        QVERIFY(log.lines().isEmpty());

        Seam::setReportToolPath(machine.resolve(u"%/missing-tool"_s));
        QVERIFY(!systemProfilerGetDataWithArguments({u"-xml"_s}));
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().first().startsWith(
            u"An exception is caught when running system_profiler tool: "_s));
        // The default text is remembered; a later, better report is not seen.
        QCOMPARE(humanMachineType(), u"Mac"_s);
        QCOMPARE(humanReadableRAMSizeString(), u"N/A"_s);
        machine.reportTool("Model Name: iMac\nMemory: 8 GB\n");
        QCOMPARE(humanMachineType(), u"Mac"_s);
        QCOMPARE(humanReadableRAMSizeString(), u"N/A"_s);
    }

    void xmlReports()
    {
        FakeMachine machine;
        machine.reportTool(kListerXml);
        // Each data type's classes asked once; a data type asked twice is reported once.
        const auto report =
            arrayWithSystemProfileOfDataTypes({u"SPStorageDataType"_s, u"SPHardwareDataType"_s,
                                               u"SPNetworkDataType"_s, u"SPHardwareDataType"_s});
        QCOMPARE(machine.reportToolArguments(),
                 QByteArray("-xml\n-class\ndisk\n-class\nvolume\n-class\nsystem\n-class\nmemory\n"
                            "-class\nprocessor\n-class\nnetwork\n"));
        QCOMPARE(report.value_or(PropertyValue::Array()).size(), 3);
        QCOMPARE(items(report->at(0)), PropertyValue::Array());
        // The machine and its memory: the lister's fields with their units, nothing else.
        using Dictionary = PropertyValue::Dictionary;
        QCOMPARE(items(report->at(1)),
                 (PropertyValue::Array{
                     Dictionary{{u"_name"_s, u"vm"_s}, {u"product"_s, u"ThinkPad X1"_s}},
                     Dictionary{{u"_name"_s, u"memory"_s}, {u"size"_s, u"17179869184 bytes"_s}}}));
        QCOMPARE(items(report->at(2)).size(), 1);
        // A tree whose root is the machine's node, without the list around it.
        machine.reportTool(R"(<node id="pc" class="system"><product>P</product></node>)");
        QCOMPARE(items(arrayWithSystemProfileOfDataTypes({u"SPHardwareDataType"_s})
                           .value_or(PropertyValue::Array{PropertyValue()})
                           .at(0)),
                 PropertyValue::Array{Dictionary({{u"_name"_s, u"pc"_s}, {u"product"_s, u"P"_s}})});

        // Without "-xml" the level report goes to the reader as it is; text is no array.
        machine.reportTool(kListerText);
        QVERIFY(!arrayWithSystemProfileOfLevel(u"full"_s));
        machine.reportTool(plist("<array><string>a</string></array>"));
        QCOMPARE(arrayWithSystemProfileOfLevel(QString()),
                 std::optional(PropertyValue::Array{u"a"}));
    }

    // Read, then written and read again: the same value (reals to the last bit).
    void propertyList_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<PropertyValue>("value"); // null: no value read
        const PropertyValue::Dictionary kinds{
            {u"u"_s, quint64(18446744073709551615ull)},
            {u"i"_s, qint64(-42)},
            {u"s"_s, u"a & b"_s},
            {u"x"_s, QByteArray("\x00\x01\xff", 3)},
            {u"d"_s, QDateTime(QDate(2024, 5, 1), QTime(12, 30), Qt::UTC)},
            {u"a"_s, PropertyValue::Array{false, 0.1 + 0.2}}};
        QTest::newRow("every kind")
            << plist("<dict><key>u</key><integer>18446744073709551615</integer><key>i</key>"
                     "<integer> -42 </integer><key>s</key><string>a &amp; b</string><key>x</key>"
                     "<data>\n  AAH/\n</data><key>d</key><date>2024-05-01T12:30:00Z</date>"
                     "<key>a</key><array><false/><real>0.30000000000000004</real></array></dict>")
            << PropertyValue(kinds);
        // Dictionaries and arrays nested 200 deep are read, 260 deep not.
        PropertyValue nested(PropertyValue::Array{});
        for (int level = 0; level < 100; ++level)
            nested = PropertyValue::Dictionary{{u"k"_s, PropertyValue::Array{nested}}};
        const QByteArray open = "<dict><key>k</key><array>", close = "</array></dict>";
        QTest::newRow("deep") << plist(open.repeated(100) + "<array/>" + close.repeated(100))
                              << nested;
        QTest::newRow("too deep") << plist(open.repeated(130) + close.repeated(130))
                                  << PropertyValue();
        QTest::newRow("bad integer") << plist("<integer>12x</integer>") << PropertyValue();
    }
    void propertyList()
    {
        QFETCH(QByteArray, xml);
        QFETCH(PropertyValue, value);
        const std::optional<PropertyValue> read = Quorvelle::PropertyListXml::read(xml);
        QCOMPARE(read.has_value(), !value.isNull());
        if (read) {
            QCOMPARE(*read, value);
            QCOMPARE(Quorvelle::PropertyListXml::read(Quorvelle::PropertyListXml::write(*read)),
                     std::optional(value));
        }
    }
};

QTEST_GUILESS_MAIN(TestSystemProfiler)
#include "tst_systemprofiler.moc"
