// Every query against the machine the tests run on answers with a value consistent with what
// the kernel says, or with its neutral result.
#include "VXSystemInformation.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <sys/statvfs.h>
#include <sys/utsname.h>
#include <unistd.h>

using namespace VXSystemInformation;

class TestSysinfoSmoke : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersArePlausible()
    {
        for (const QString &answer :
             {machineType(), macAddressString(), powerPCTypeString(), computerSerialNumber(),
              modelIdentifier(), humanReadableSystemVersionString(), defaultWebBrowser()})
            QVERIFY2(answer.isNull() || !answer.isEmpty(), qPrintable(answer)); // nil or text
        struct utsname names;
        QCOMPARE(uname(&names), 0);
        const std::optional<QByteArray> address = macAddress();
        QCOMPARE(macAddressString(), address && address->size() == 6
                                         ? QString::fromLatin1(address->toHex(':'))
                                         : QString());
        struct statvfs root;
        if (hddSize() > 0 && statvfs("/", &root) == 0)
            QVERIFY(hddSize() >= quint64(root.f_blocks) * root.f_frsize); // disk holds volume
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
        QVERIFY(isSnowLeopardOrGreater() && isLionOrGreater() && isMountainLionOrGreater() &&
                isMavericksOrGreater());
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
