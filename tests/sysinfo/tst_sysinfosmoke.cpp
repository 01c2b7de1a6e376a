// Queries against the machine the tests run on answer consistently with what the kernel says,
// or with their neutral result.
#include "VXSystemInformation.h"

#include <QFileInfo>
#include <QTest>

#include <sys/utsname.h>
#include <unistd.h>

using namespace VXSystemInformation;

class TestSysinfoSmoke : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersArePlausible()
    {
        for (const QString &answer : {machineType(), macAddressString(), computerSerialNumber(),
                                      modelIdentifier(), defaultWebBrowser()})
            QVERIFY2(answer.isNull() || !answer.isEmpty(), qPrintable(answer)); // nil or text
        const std::optional<QByteArray> address = macAddress();
        QCOMPARE(macAddressString(), address && address->size() == 6
                                         ? QString::fromLatin1(address->toHex(':'))
                                         : QString());
        struct utsname names;
        QCOMPARE(uname(&names), 0);
        QCOMPARE(operatingSystemString(), QString::fromUtf8(names.sysname));
        QVERIFY(QString::fromUtf8(names.release).startsWith(systemVersionString()));
        QVERIFY(countProcessors() >= sysconf(_SC_NPROCESSORS_ONLN));
        QVERIFY(!humanMachineType().isEmpty() && !computerName().isEmpty());
        // The lister's plain text is no property list.
        QVERIFY(!arrayWithSystemProfileOfLevel(QString()));
        for (const QString &path : allApplicationsPaths() + allPreferencePanesPaths())
            QVERIFY2(QFileInfo::exists(path), qPrintable(path));
    }
};

QTEST_GUILESS_MAIN(TestSysinfoSmoke)
#include "tst_sysinfosmoke.moc"
