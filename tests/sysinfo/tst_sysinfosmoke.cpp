// Every query against the machine the tests run on: each returns, with a plausible value or
// its neutral result. The values are printed, so a run doubles as a report of this machine.
#include "VXSystemInformation.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <sys/statvfs.h>
#include <sys/utsname.h>
#include <unistd.h>

using namespace VXSystemInformation;

namespace {
void show(const char *query, const QString &value)
{
    qInfo().noquote() << query << "="
                      << (value.isNull() ? QStringLiteral("nil")
                                         : QLatin1Char('"') + value + QLatin1Char('"'));
}
void showNumber(const char *query, qint64 value)
{
    show(query, QString::number(value));
}
void showPaths(const char *query, const QSet<QString> &paths)
{
    QStringList sorted(paths.cbegin(), paths.cend());
    sorted.sort();
    show(query, QStringLiteral("%1 path(s) %2")
                    .arg(sorted.size())
                    .arg(sorted.mid(0, 3).join(QStringLiteral(", "))));
    for (const QString &path : std::as_const(sorted))
        QVERIFY2(QFileInfo::exists(path), qPrintable(path));
}
} // namespace

class TestSysinfoSmoke : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hardware()
    {
        const QString model = machineType();
        show("machineType", model);
        QVERIFY(model.isNull() || !model.isEmpty());
        show("humanMachineType", humanMachineType());
        QVERIFY(!humanMachineType().isEmpty());
        show("humanReadableRAMSizeString", humanReadableRAMSizeString());
        QVERIFY(!humanReadableRAMSizeString().isEmpty());

        const std::optional<QByteArray> address = macAddress();
        show("macAddress", address ? QString::fromLatin1(address->toHex()) : QString());
        show("macAddressString", macAddressString());
        if (address && address->size() == 6)
            QCOMPARE(macAddressString(), QString::fromLatin1(address->toHex(':')));
        else
            QVERIFY(macAddressString().isNull());

        const quint64 disk = hddSize();
        showNumber("hddSize", qint64(disk));
        struct statvfs root;
        if (disk > 0 && statvfs("/", &root) == 0)
            QVERIFY(disk >= quint64(root.f_blocks) * root.f_frsize);

        showNumber("processorClockSpeed", processorClockSpeed());
        showNumber("processorClockSpeedInMHz", processorClockSpeedInMHz());
        QCOMPARE(processorClockSpeedInMHz(), processorClockSpeed() / 1000000);
        showNumber("countProcessors", countProcessors());
        QVERIFY(countProcessors() >= uint(sysconf(_SC_NPROCESSORS_ONLN)));
        show("is64BitCapable", is64BitCapable() ? QStringLiteral("YES") : QStringLiteral("NO"));
        QCOMPARE(is64BitCapable(), sizeof(void *) == 8 || is64BitCapable());

        struct utsname names;
        QCOMPARE(uname(&names), 0);
        const bool ppc = QByteArray(names.machine).startsWith("ppc");
        show("powerPCTypeString", powerPCTypeString());
        QCOMPARE(isPowerPC(), ppc);
        if (!ppc)
            QCOMPARE(powerPCTypeString(), QStringLiteral("Non-PowerPC"));

        show("computerSerialNumber", computerSerialNumber());
        QVERIFY(computerSerialNumber().isNull() || !computerSerialNumber().isEmpty());
        show("computerName", computerName());
        QVERIFY(!computerName().isEmpty());
        show("modelIdentifier", modelIdentifier());
        showNumber("modelIdentifierType", qint64(modelIdentifierType()));
        QVERIFY(modelIdentifierType() <= VXModelIdentifierTypeMacBookAir);
    }

    void software()
    {
        struct utsname names;
        QCOMPARE(uname(&names), 0);
        show("operatingSystemString", operatingSystemString());
        QCOMPARE(operatingSystemString(), QString::fromUtf8(names.sysname));
        show("humanReadableSystemVersionString", humanReadableSystemVersionString());
        show("systemVersionString", systemVersionString());
        QVERIFY(QString::fromUtf8(names.release).startsWith(systemVersionString()));
        QVERIFY(QRegularExpression(QStringLiteral("^\\d+\\.\\d+\\.\\d+$"))
                    .match(systemVersionString())
                    .hasMatch());
        QVERIFY(isSnowLeopardOrGreater() && isLionOrGreater() && isMountainLionOrGreater() &&
                isMavericksOrGreater());

        // The lister's plain text is no property list.
        QVERIFY(!arrayWithSystemProfileOfLevel(QString()));
        const auto hardware =
            arrayWithSystemProfileOfDataTypes({QStringLiteral("SPHardwareDataType")});
        QVERIFY(hardware && hardware->size() == 1);
        showNumber("hardware report items",
                   hardware->at(0).value(QStringLiteral("_items"))->toArray().size());

        showPaths("allApplicationsPathsWithLaunchServices",
                  allApplicationsPathsWithLaunchServices());
        showPaths("allApplicationsPathsWithSystemProfiler",
                  allApplicationsPathsWithSystemProfiler());
        showPaths("allPreferencePanesPaths", allPreferencePanesPaths());
        showPaths("allApplicationsPaths", allApplicationsPaths());
        QVERIFY(allApplicationsPaths().contains(allApplicationsPathsWithLaunchServices()));
        const QString browser = defaultWebBrowser();
        show("defaultWebBrowser", browser);
        QVERIFY(browser.isNull() || !browser.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSysinfoSmoke)
#include "tst_sysinfosmoke.moc"
