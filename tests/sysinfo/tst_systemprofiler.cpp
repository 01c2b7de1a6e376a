#include "FakeMachine.h"
#include "LogCapture.h"
#include "PropertyListXml.h"

using namespace VXSystemInformation;

namespace {
// The lister's text: only the machine's product and the system memory's size are relabelled.
const QByteArray kListerText = "vm\n    product: ThinkPad X1\n  *-memory\n"
                               "       description: System memory\n       size: 16GiB\n"
                               "     *-bank:0\n          product: M471A1K43CB1\n";

const QByteArray kListerXml = R"(<?xml version="1.0" standalone="yes" ?>
<list><node id="vm" class="system"><product>ThinkPad X1</product>
  <node id="memory" class="memory"><size units="bytes">17179869184</size></node>
  <node id="network" class="network"><logicalname>eth0</logicalname></node>
</node></list>
)";

QByteArray plist(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body +
           "</plist>\n";
}
} // namespace

class TestSystemProfiler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueForKey_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        const QString model = QStringLiteral("Model Name: ");
        const QString memory = QStringLiteral("Memory: ");
        QTest::newRow("first occurrence, up to the line break")
            << QByteArray("Model Name:   Mac  \nModel Name: iMac\n") << model
            << QStringLiteral("  Mac  ");
        QTest::newRow("last line without line break loses a character")
            << QByteArray("Model Name: iMac\nMemory: 8 GB") << memory << QStringLiteral("8 G");
        QTest::newRow("nothing before the line break")
            << QByteArray("Model Name: \nMemory: 1\n") << model << QStringLiteral("dflt");
        QTest::newRow("key ends the report")
            << QByteArray("x Model Name: ") << model << QStringLiteral("dflt");
        QTest::newRow("lister's machine product")
            << kListerText << model << QStringLiteral("ThinkPad X1");
        QTest::newRow("lister's system memory") << kListerText << memory << QStringLiteral("16GiB");
    }
    void valueForKey()
    {
        QFETCH(QByteArray, report);
        QFETCH(QString, key);
        FakeMachine machine;
        machine.reportTool(report);
        QTEST(systemProfileValueForKey(key, QStringLiteral("dflt")), "value");
        QCOMPARE(machine.reportToolArguments(),
                 QByteArray("-class\nsystem\n-class\nmemory\n-class\nprocessor\n"));
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

        Seam::setReportToolPath(machine.resolve(QStringLiteral("%/missing-tool")));
        QVERIFY(!systemProfilerGetDataWithArguments({QStringLiteral("-xml")}));
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().first().startsWith(
            QStringLiteral("An exception is caught when running system_profiler tool: ")));
        // The default text is remembered; a later, better report is not seen.
        QCOMPARE(humanMachineType(), QStringLiteral("Mac"));
        QCOMPARE(humanReadableRAMSizeString(), QStringLiteral("N/A"));
        machine.reportTool("Model Name: iMac\nMemory: 8 GB\n");
        QCOMPARE(humanMachineType(), QStringLiteral("Mac"));
        QCOMPARE(humanReadableRAMSizeString(), QStringLiteral("N/A"));
    }

    void xmlReports()
    {
        FakeMachine machine;
        machine.reportTool(kListerXml);
        const auto hardware =
            arrayWithSystemProfileOfDataTypes({QStringLiteral("SPHardwareDataType")});
        QCOMPARE(hardware.value_or(PropertyValue::Array()).size(), 1);
        const auto items = hardware->at(0).value(QStringLiteral("_items"))->toArray();
        QCOMPARE(items.size(), 2); // the machine and its memory, not the network port
        QCOMPARE(items.at(1).value(QStringLiteral("size")), PropertyValue(u"17179869184 bytes"));

        // Without "-xml" the level report goes to the reader as it is; text is no array.
        machine.reportTool(kListerText);
        QVERIFY(!arrayWithSystemProfileOfLevel(QStringLiteral("full")));
        machine.reportTool(plist("<array><string>a</string></array>"));
        QCOMPARE(arrayWithSystemProfileOfLevel(QString()),
                 std::optional(PropertyValue::Array{u"a"}));
    }

    // A lister tree nested as deep as a machine could never be is no report, and must not
    // exhaust the stack.
    void deepListerTree_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<int>("items"); // -1: no report
        QTest::newRow("deep but plausible") << 200 << 200;
        QTest::newRow("too deep") << 300 << -1;
        QTest::newRow("stack-exhausting") << 200000 << -1;
    }
    void deepListerTree()
    {
        QFETCH(int, depth);
        QFETCH(int, items);
        FakeMachine machine;
        machine.reportTool("<list>" + QByteArray("<node class=\"system\">").repeated(depth) +
                           QByteArray("</node>").repeated(depth) + "</list>");
        const auto report =
            arrayWithSystemProfileOfDataTypes({QStringLiteral("SPHardwareDataType")});
        QCOMPARE(report.has_value(), items >= 0);
        if (report)
            QCOMPARE(report->at(0).value(QStringLiteral("_items"))->toArray().size(), items);
    }

    void applicationsReport_data()
    {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<QSet<QString>>("paths");
        const QByteArray apps = "<dict><key>_dataType</key><string>SPApplicationsDataType</string>";
        const auto path = [](const QByteArray &value) {
            return "<dict><key>path</key><string>" + value + "</string></dict>";
        };
        // Items without a path are skipped.
        QTest::newRow("items with paths")
            << plist("<array>" + apps + "<key>_items</key><array>" + path("/A.app") +
                     "<dict/></array></dict></array>")
            << QSet<QString>{QStringLiteral("/A.app")};
        QTest::newRow("items not an array")
            << plist("<array>" + apps + "<key>_items</key><dict/></dict></array>")
            << QSet<QString>();
        QTest::newRow("no applications entry") << kListerXml << QSet<QString>();
    }
    void applicationsReport()
    {
        QFETCH(QByteArray, report);
        FakeMachine machine;
        machine.reportTool(report);
        QTEST(allApplicationsPathsWithSystemProfiler(), "paths");
    }

    void propertyList_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<PropertyValue>("value"); // null: no value read
        const PropertyValue::Dictionary kinds{
            {QStringLiteral("u"), quint64(18446744073709551615ull)},
            {QStringLiteral("s"), QStringLiteral("a & b")},
            {QStringLiteral("x"), QByteArray("\x00\x01\xff", 3)},
            {QStringLiteral("a"), PropertyValue::Array{false, 2.5}}};
        QTest::newRow("every kind")
            << plist("<dict><key>u</key><integer>18446744073709551615</integer><key>s</key>"
                     "<string>a &amp; b</string><key>x</key><data>\n  "
                     "AAH/\n</data><key>a</key><array><false/>"
                     "<real>2.5</real></array></dict>")
            << PropertyValue(kinds);
        QTest::newRow("key without value") << plist("<dict><key>k</key></dict>") << PropertyValue();
        QTest::newRow("bad integer") << plist("<integer>12x</integer>") << PropertyValue();
    }
    void propertyList()
    {
        QFETCH(QByteArray, xml);
        QFETCH(PropertyValue, value);
        const std::optional<PropertyValue> read = Quorvelle::PropertyListXml::read(xml);
        QCOMPARE(read.has_value(), !value.isNull());
        if (read)
            QCOMPARE(*read, value);
    }
};

QTEST_GUILESS_MAIN(TestSystemProfiler)
#include "tst_systemprofiler.moc"
