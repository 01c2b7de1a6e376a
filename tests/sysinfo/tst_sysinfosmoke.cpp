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
        const std::optional<QByteArray> address = macAddress();
        QCOMPARE(macAddressString(), address && address->size() == 6
                                         ? QString::fromLatin1(address->toHex(':'))
                                         : QString());
        struct utsname names;
        QCOMPARE(uname(&names), 0);
        QCOMPARE(operatingSystemString(), QString::fromUtf8(names.sysname));
        QVERIFY(countProcessors() >= sysconf(_SC_NPROCESSORS_ONLN));
        QVERIFY(!humanMachineType().isEmpty() && !computerName().isEmpty());
        QVERIFY(!arrayWithSystemProfileOfLevel(QString())); // the lister's text is no list
        for (const QString &path : allApplicationsPaths() + allPreferencePanesPaths())
            QVERIFY2(QFileInfo::exists(path), qPrintable(path));
    }
};

QTEST_GUILESS_MAIN(TestSysinfoSmoke)
#include "tst_sysinfosmoke.moc"
