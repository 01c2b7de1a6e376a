// Every query against the machine the tests run on returns, with a plausible value or its
// neutral result. The answers are printed, so a run doubles as a report on this machine.
#include "VXSystemInformation.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <sys/statvfs.h>
#include <sys/utsname.h>
#include <unistd.h>

using namespace VXSystemInformation;

namespace {
// A text answer is nil or says something, a listed path exists; cleanup() checks.
QStringList emptyAnswers;

QString shown(const char *query, const QString &value)
{
    qInfo().noquote() << query << "=" << (value.isNull() ? QStringLiteral("nil") : value);
    if (!value.isNull() && value.isEmpty())
        emptyAnswers << QString::fromLatin1(query);
    return value;
}
qint64 shown(const char *query, qint64 value)
{
    return shown(query, QString::number(value)).toLongLong();
}
QSet<QString> shown(const char *query, const QSet<QString> &paths)
{
    QStringList sorted(paths.cbegin(), paths.cend());
    sorted.sort();
    shown(query, QString::number(sorted.size()) + QStringLiteral(" path(s) ") +
                     sorted.join(QLatin1Char(' ')));
    for (const QString &path : std::as_const(sorted)) {
        if (!QFileInfo::exists(path))
            emptyAnswers << path;
    }
    return paths;
}
} // namespace

class TestSysinfoSmoke : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(std::exchange(emptyAnswers, {}), QStringList()); }

    void hardware()
    {
        shown("machineType", machineType());
        QVERIFY(!shown("humanMachineType", humanMachineType()).isEmpty());
        QVERIFY(!shown("humanReadableRAMSizeString", humanReadableRAMSizeString()).isEmpty());
        const std::optional<QByteArray> address = macAddress();
        shown("macAddress", address ? QString::fromLatin1(address->toHex()) : QString());
        QCOMPARE(shown("macAddressString", macAddressString()),
                 address && address->size() == 6 ? QString::fromLatin1(address->toHex(':'))
                                                 : QString());

        const quint64 disk = quint64(shown("hddSize", qint64(hddSize())));
        struct statvfs root;
        if (disk > 0 && statvfs("/", &root) == 0)
            QVERIFY(disk >= quint64(root.f_blocks) * root.f_frsize);
        QCOMPARE(shown("processorClockSpeedInMHz", processorClockSpeedInMHz()),
                 shown("processorClockSpeed", processorClockSpeed()) / 1000000);
        QVERIFY(shown("countProcessors", countProcessors()) >= sysconf(_SC_NPROCESSORS_ONLN));
        QVERIFY(shown("is64BitCapable", is64BitCapable()) || sizeof(void *) < 8);

        struct utsname names;
        QCOMPARE(uname(&names), 0);
        const bool ppc = QByteArray(names.machine).startsWith("ppc");
        QCOMPARE(isPowerPC(), ppc);
        if (!ppc)
            QCOMPARE(shown("powerPCTypeString", powerPCTypeString()),
                     QStringLiteral("Non-PowerPC"));
        shown("computerSerialNumber", computerSerialNumber());
        QVERIFY(!shown("computerName", computerName()).isEmpty());
        shown("modelIdentifier", modelIdentifier());
        QVERIFY(shown("modelIdentifierType", qint64(modelIdentifierType())) <= 4);
    }

    void software()
    {
        struct utsname names;
        QCOMPARE(uname(&names), 0);
        QCOMPARE(shown("operatingSystemString", operatingSystemString()),
                 QString::fromUtf8(names.sysname));
        shown("humanReadableSystemVersionString", humanReadableSystemVersionString());
        const QString version = shown("systemVersionString", systemVersionString());
        QVERIFY(QString::fromUtf8(names.release).startsWith(version));
        QVERIFY(
            QRegularExpression(QStringLiteral("^\\d+\\.\\d+\\.\\d+$")).match(version).hasMatch());
        QVERIFY(isSnowLeopardOrGreater() && isLionOrGreater() && isMountainLionOrGreater() &&
                isMavericksOrGreater());

        // The lister's plain text is no property list; its XML tree becomes one.
        QVERIFY(!arrayWithSystemProfileOfLevel(QString()));
        const auto hardware =
            arrayWithSystemProfileOfDataTypes({QStringLiteral("SPHardwareDataType")});
        QVERIFY(hardware && hardware->size() == 1);

        const QSet<QString> desktop = shown("allApplicationsPathsWithLaunchServices",
                                            allApplicationsPathsWithLaunchServices());
        shown("allApplicationsPathsWithSystemProfiler", allApplicationsPathsWithSystemProfiler());
        shown("allPreferencePanesPaths", allPreferencePanesPaths());
        QVERIFY(shown("allApplicationsPaths", allApplicationsPaths()).contains(desktop));
        shown("defaultWebBrowser", defaultWebBrowser());
    }
};

QTEST_GUILESS_MAIN(TestSysinfoSmoke)
#include "tst_sysinfosmoke.moc"
