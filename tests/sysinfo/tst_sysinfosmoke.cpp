// Every query against the machine the tests run on returns, with a plausible value or its
// neutral result. The answers are printed, so a run doubles as a report on this machine.
#include "VXSystemInformation.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <sys/statvfs.h>
#include <sys/utsname.h>
#include <unistd.h>

using namespace VXSystemInformation;

namespace {
QString text(const QSet<QString> &paths)
{
    QStringList sorted(paths.cbegin(), paths.cend());
    sorted.sort();
    return QString::number(sorted.size()) + QStringLiteral(" path(s) ") +
           sorted.join(QLatin1Char(' '));
}
} // namespace

class TestSysinfoSmoke : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyQueryAnswers()
    {
        const auto n = [](qint64 v) { return QString::number(v); };
        const QList<std::pair<const char *, std::function<QString()>>> queries{
            {"machineType", machineType},
            {"humanMachineType", humanMachineType},
            {"humanReadableRAMSizeString", humanReadableRAMSizeString},
            {"macAddressString", macAddressString},
            {"hddSize", [&] { return n(qint64(hddSize())); }},
            {"processorClockSpeed", [&] { return n(processorClockSpeed()); }},
            {"processorClockSpeedInMHz", [&] { return n(processorClockSpeedInMHz()); }},
            {"countProcessors", [&] { return n(countProcessors()); }},
            {"is64BitCapable", [&] { return n(is64BitCapable()); }},
            {"powerPCTypeString", powerPCTypeString},
            {"computerSerialNumber", computerSerialNumber},
            {"computerName", computerName},
            {"modelIdentifier", modelIdentifier},
            {"modelIdentifierType", [&] { return n(qint64(modelIdentifierType())); }},
            {"operatingSystemString", operatingSystemString},
            {"humanReadableSystemVersionString", humanReadableSystemVersionString},
            {"systemVersionString", systemVersionString},
            {"isMavericksOrGreater", [&] { return n(isMavericksOrGreater()); }},
            {"allApplicationsPathsWithLaunchServices",
             [] { return text(allApplicationsPathsWithLaunchServices()); }},
            {"allApplicationsPathsWithSystemProfiler",
             [] { return text(allApplicationsPathsWithSystemProfiler()); }},
            {"allPreferencePanesPaths", [] { return text(allPreferencePanesPaths()); }},
            {"allApplicationsPaths", [] { return text(allApplicationsPaths()); }},
            {"defaultWebBrowser", defaultWebBrowser}};
        for (const auto &[name, query] : queries) {
            const QString answer = query();
            qInfo().noquote() << name << "=" << (answer.isNull() ? QStringLiteral("nil") : answer);
            QVERIFY2(answer.isNull() || !answer.isEmpty(), name); // nil or saying something
        }
    }

    void answersArePlausible()
    {
        struct utsname names;
        QCOMPARE(uname(&names), 0);
        const std::optional<QByteArray> address = macAddress();
        QCOMPARE(macAddressString(), address && address->size() == 6
                                         ? QString::fromLatin1(address->toHex(':'))
                                         : QString());
        struct statvfs root;
        if (hddSize() > 0 && statvfs("/", &root) == 0)
            QVERIFY(hddSize() >=
                    quint64(root.f_blocks) * root.f_frsize); // the disk holds the volume
        QCOMPARE(processorClockSpeedInMHz(), processorClockSpeed() / 1000000);
        QVERIFY(countProcessors() >= sysconf(_SC_NPROCESSORS_ONLN));
        QVERIFY(is64BitCapable() || sizeof(void *) < 8);
        QCOMPARE(isPowerPC(), QByteArray(names.machine).startsWith("ppc"));
        QVERIFY(!humanMachineType().isEmpty() && !humanReadableRAMSizeString().isEmpty());
        QVERIFY(!computerName().isEmpty());
        QCOMPARE(operatingSystemString(), QString::fromUtf8(names.sysname));
        QVERIFY(QString::fromUtf8(names.release).startsWith(systemVersionString()));
        QVERIFY(QRegularExpression(QStringLiteral("^\\d+\\.\\d+\\.\\d+$"))
                    .match(systemVersionString())
                    .hasMatch());
        QVERIFY(isSnowLeopardOrGreater() && isLionOrGreater() && isMountainLionOrGreater());
        // The lister's plain text is no property list; its XML tree becomes one.
        QVERIFY(!arrayWithSystemProfileOfLevel(QString()));
        QCOMPARE(arrayWithSystemProfileOfDataTypes({QStringLiteral("SPHardwareDataType")})
                     .value_or(PropertyValue::Array())
                     .size(),
                 1);
        for (const QString &path : allApplicationsPaths() + allPreferencePanesPaths())
            QVERIFY2(QFileInfo::exists(path), qPrintable(path));
        QVERIFY(allApplicationsPaths().contains(allApplicationsPathsWithLaunchServices()));
    }
};

QTEST_GUILESS_MAIN(TestSysinfoSmoke)
#include "tst_sysinfosmoke.moc"
