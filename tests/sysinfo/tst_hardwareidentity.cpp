#include "FakeMachine.h"
#include "VXSystemInformation.h"

#include <QTest>

using namespace VXSystemInformation;

using Files = QMap<QString, QByteArray>;
Q_DECLARE_METATYPE(Files)

namespace {
void build(const FakeMachine &machine, const Files &files)
{
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        if (it.value().startsWith("->"))
            machine.link(QString::fromUtf8(it.value().mid(2)), it.key());
        else if (it.key().endsWith(QLatin1Char('/')))
            machine.mkdir(it.key());
        else
            machine.write(it.key(), it.value());
    }
}

// One network interface in sysfs; a hardware-backed one has a device link.
Files interface(const QString &name, int index, const QByteArray &address, bool hardware)
{
    const QString dir = QStringLiteral("/sys/class/net/") + name;
    Files files{{dir + QStringLiteral("/ifindex"), QByteArray::number(index) + '\n'},
                {dir + QStringLiteral("/address"), address + '\n'}};
    if (hardware) {
        files.insert(QStringLiteral("/sys/devices/pci0/net") + QString::number(index) +
                         QLatin1Char('/'),
                     {});
        files.insert(dir + QStringLiteral("/device"),
                     "->../../../devices/pci0/net" + QByteArray::number(index));
    }
    return files;
}

// Null (nothing known) and empty are different answers.
#define COMPARE_TEXT(actual, expected)                                                             \
    do {                                                                                           \
        const QString a_ = (actual), e_ = (expected);                                              \
        QCOMPARE(a_, e_);                                                                          \
        QCOMPARE(a_.isNull(), e_.isNull());                                                        \
    } while (false)

Files merged(std::initializer_list<Files> parts)
{
    Files all;
    for (const Files &part : parts)
        all.insert(part);
    return all;
}
} // namespace

class TestHardwareIdentity : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firmwareIdentity_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<QString>("machineType");
        QTest::addColumn<QString>("modelIdentifier");
        QTest::addColumn<QString>("serial");
        QTest::addColumn<QString>("computerName");

        const QString dt = QStringLiteral("/sys/firmware/devicetree/base/");
        const QString dmi = QStringLiteral("/sys/class/dmi/id/");
        const QString host = QStringLiteral("/proc/sys/kernel/hostname");
        QTest::newRow("device tree keeps its zero byte in the model")
            << Files{{dt + QStringLiteral("model"), QByteArray("MacBookPro8,1\0", 14)},
                     {dt + QStringLiteral("serial-number"), QByteArray("C02FX1\0", 7)},
                     {host, "studio\n"}}
            << QStringLiteral("MacBookPro8,1") + QChar(0) << QStringLiteral("MacBookPro8,1")
            << QStringLiteral("C02FX1") << QStringLiteral("studio");
        QTest::newRow("DMI without its line break")
            << Files{{dmi + QStringLiteral("product_name"), "iMac12,2\n"},
                     {dmi + QStringLiteral("product_serial"), "W80123\n"},
                     {host, "desk\n"},
                     {QStringLiteral("/etc/machine-info"), "PRETTY_HOSTNAME=\"Anna's iMac\"\n"}}
            << QStringLiteral("iMac12,2") << QStringLiteral("iMac12,2") << QStringLiteral("W80123")
            << QStringLiteral("Anna's iMac");
        QTest::newRow("device tree model first, DMI product for the identifier")
            << Files{{dt + QStringLiteral("model"), QByteArray("Board\0", 6)},
                     {dmi + QStringLiteral("product_name"), "Macmini5,1\n"}}
            << QStringLiteral("Board") + QChar(0) << QStringLiteral("Macmini5,1") << QString()
            << QString();
        QTest::newRow("firmware tells nothing")
            << Files{{dmi + QStringLiteral("product_serial"), "\n"},
                     {QStringLiteral("/etc/machine-info"), "PRETTY_HOSTNAME=\n"},
                     {host, "plain\n"}}
            << QString() << QString() << QString() << QStringLiteral("plain");
    }
    void firmwareIdentity()
    {
        QFETCH(Files, files);
        QFETCH(QString, machineType);
        QFETCH(QString, modelIdentifier);
        QFETCH(QString, serial);
        QFETCH(QString, computerName);
        FakeMachine machine;
        build(machine, files);
        COMPARE_TEXT(VXSystemInformation::machineType(), machineType);
        COMPARE_TEXT(VXSystemInformation::modelIdentifier(), modelIdentifier);
        COMPARE_TEXT(computerSerialNumber(), serial);
        COMPARE_TEXT(VXSystemInformation::computerName(), computerName);
    }

    void modelFamily_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<quint64>("type");
        QTest::newRow("air before its own prefix")
            << QStringLiteral("MacBookAir4,2") << quint64(VXModelIdentifierTypeMacBookAir);
        QTest::newRow("pro is a macbook")
            << QStringLiteral("MacBookPro8,1") << quint64(VXModelIdentifierTypeMacBook);
        QTest::newRow("bare macbook")
            << QStringLiteral("macbook") << quint64(VXModelIdentifierTypeMacBook);
        QTest::newRow("upper case") << QStringLiteral("IMAC") << quint64(VXModelIdentifierTypeIMac);
        QTest::newRow("imac") << QStringLiteral("iMac12,2") << quint64(VXModelIdentifierTypeIMac);
        QTest::newRow("mini") << QStringLiteral("Macmini5,1")
                              << quint64(VXModelIdentifierTypeMacMini);
        QTest::newRow("tower") << QStringLiteral("MacPro5,1")
                               << quint64(VXModelIdentifierTypeUnknown);
        QTest::newRow("prefix only at the start")
            << QStringLiteral("xMacBookAir") << quint64(VXModelIdentifierTypeUnknown);
        QTest::newRow("empty") << QStringLiteral("") << quint64(VXModelIdentifierTypeUnknown);
        QTest::newRow("null") << QString() << quint64(VXModelIdentifierTypeUnknown);
    }
    void modelFamily()
    {
        QFETCH(QString, identifier);
        QFETCH(quint64, type);
        QCOMPARE(quint64(modelIdentifierTypeFromModelIdentifier(identifier)), type);
    }

    void machineFamilyFromFirmware()
    {
        FakeMachine machine;
        machine.write(QStringLiteral("/sys/class/dmi/id/product_name"), "MacBookAir6,2\n");
        QCOMPARE(modelIdentifierType(), VXModelIdentifierTypeMacBookAir);
    }

    void hardwareAddress_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<QByteArray>("address"); // empty: none
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("printed");

        const QByteArray six = QByteArray::fromHex("001a2b3c4d5e");
        QTest::newRow("lowest-numbered hardware port")
            << merged({interface(QStringLiteral("lo"), 1, "00:00:00:00:00:00", false),
                       interface(QStringLiteral("wlan0"), 3, "00:1a:2b:3c:4d:5f", true),
                       interface(QStringLiteral("eth0"), 2, "00:1A:2B:3C:4D:5E", true)})
            << six << QStringLiteral("00:1a:2b:3c:4d:5e") << QByteArray();
        QTest::newRow("only virtual interfaces")
            << merged({interface(QStringLiteral("lo"), 1, "00:00:00:00:00:00", false),
                       interface(QStringLiteral("br0"), 2, "02:42:ac:11:00:02", false)})
            << QByteArray() << QString() << QByteArray();
        QTest::newRow("five-byte address")
            << interface(QStringLiteral("eth0"), 2, "00:1a:2b:3c:4d", true)
            << QByteArray::fromHex("001a2b3c4d") << QString() << QByteArray();
        QTest::newRow("unreadable address text")
            << interface(QStringLiteral("eth0"), 2, "not-an-address", true) << QByteArray()
            << QString() << QByteArray();
        QTest::newRow("no network class") << Files{{QStringLiteral("/sys/"), {}}} << QByteArray()
                                          << QString() << QByteArray("IOMasterPort returned 2\n");
        QTest::newRow("device gone")
            << Files{{QStringLiteral("/sys/class/net/eth0/ifindex"), "2\n"},
                     {QStringLiteral("/sys/class/net/eth0/device"), "->../../../devices/gone"}}
            << QByteArray() << QString()
            << QByteArray("IORegistryEntryGetParentEntry returned 2\n");
    }
    void hardwareAddress()
    {
        QFETCH(Files, files);
        QFETCH(QByteArray, address);
        QFETCH(QString, text);
        QFETCH(QByteArray, printed);
        FakeMachine machine;
        build(machine, files);
        StdoutCapture capture;
        const std::optional<QByteArray> blob = macAddress();
        QCOMPARE(capture.text(), printed);
        // A missing address is looked up again, diagnostics and all.
        StdoutCapture again;
        const QString string = macAddressString();
        QCOMPARE(again.text(), blob ? QByteArray() : printed);
        QCOMPARE(blob.value_or(QByteArray()), address);
        QCOMPARE(blob.has_value(), !address.isEmpty());
        COMPARE_TEXT(string, text);
    }

    void hardwareAddressCache()
    {
        FakeMachine machine;
        // Nothing found is not remembered: the port appearing later is seen.
        StdoutCapture capture;
        QVERIFY(!macAddress());
        QCOMPARE(capture.text(), QByteArray("IOMasterPort returned 2\n"));
        build(machine, interface(QStringLiteral("eth0"), 2, "00:1a:2b:3c:4d:5e", true));
        QCOMPARE(macAddressString(), QStringLiteral("00:1a:2b:3c:4d:5e"));
        // A found address is kept even when the interface changes.
        build(machine, interface(QStringLiteral("eth0"), 2, "02:00:00:00:00:01", true));
        QCOMPARE(macAddress().value_or(QByteArray()), QByteArray::fromHex("001a2b3c4d5e"));
        QCOMPARE(macAddressString(), QStringLiteral("00:1a:2b:3c:4d:5e"));
    }

    void rootDiskSize_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<quint64>("size");

        const QByteArray mountLine = "29 1 %1 / / rw,relatime shared:1 - %2 %3 rw\n";
        auto mounts = [&](const char *number, const char *type, const char *source) {
            return QByteArray("20 29 0:20 / /proc rw - proc proc rw\n") +
                   QString::fromLatin1(mountLine)
                       .arg(QLatin1String(number), QLatin1String(type), QLatin1String(source))
                       .toLatin1();
        };
        const QString mountinfo = QStringLiteral("/proc/self/mountinfo");
        const QString sda = QStringLiteral("/sys/devices/pci0/block/sda");
        const Files disk{{sda + QStringLiteral("/size"), "1000\n"},
                         {sda + QStringLiteral("/sda2/size"), "400\n"},
                         {sda + QStringLiteral("/sda2/partition"), "2\n"}};

        QTest::newRow("partition: the whole disk counts")
            << merged({disk,
                       {{mountinfo, mounts("8:2", "ext4", "/dev/sda2")},
                        {QStringLiteral("/sys/dev/block/8:2"),
                         "->../../devices/pci0/block/sda/sda2"}}})
            << quint64(1000 * 512);
        QTest::newRow("unpartitioned disk")
            << merged({disk,
                       {{mountinfo, mounts("8:0", "ext4", "/dev/sda")},
                        {QStringLiteral("/sys/dev/block/8:0"), "->../../devices/pci0/block/sda"}}})
            << quint64(1000 * 512);
        QTest::newRow("anonymous device number, found by source")
            << merged({disk,
                       {{mountinfo, mounts("0:33", "btrfs", "/dev/sda2")},
                        {QStringLiteral("/sys/class/block/sda2"),
                         "->../../devices/pci0/block/sda/sda2"}}})
            << quint64(1000 * 512);
        QTest::newRow("the last mount over / wins")
            << merged({disk,
                       {{mountinfo,
                         mounts("7:0", "ext4", "/dev/loop0") + mounts("8:0", "ext4", "/dev/sda")},
                        {QStringLiteral("/sys/dev/block/8:0"), "->../../devices/pci0/block/sda"}}})
            << quint64(1000 * 512);
        QTest::newRow("disk image")
            << Files{{mountinfo, mounts("7:0", "ext4", "/dev/loop0")},
                     {QStringLiteral("/sys/devices/virtual/block/loop0/size"), "2048\n"},
                     {QStringLiteral("/sys/devices/virtual/block/loop0/loop/backing_file"),
                      "/img\n"},
                     {QStringLiteral("/sys/dev/block/7:0"), "->../../devices/virtual/block/loop0"}}
            << quint64(0);
        QTest::newRow("partition of a disk image")
            << Files{{mountinfo, mounts("259:0", "ext4", "/dev/loop0p1")},
                     {QStringLiteral("/sys/devices/virtual/block/loop0/size"), "2048\n"},
                     {QStringLiteral("/sys/devices/virtual/block/loop0/loop0p1/partition"), "1\n"},
                     {QStringLiteral("/sys/dev/block/259:0"),
                      "->../../devices/virtual/block/loop0/loop0p1"}}
            << quint64(0);
        QTest::newRow("no block device")
            << Files{{mountinfo, mounts("0:45", "overlay", "overlay")}} << quint64(0);
        QTest::newRow("no mount table") << Files{} << quint64(0);
    }
    void rootDiskSize()
    {
        QFETCH(Files, files);
        QFETCH(quint64, size);
        FakeMachine machine;
        build(machine, files);
        QCOMPARE(quint64(hddSize()), size);
    }

    void processor_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<qint64>("hz");
        QTest::addColumn<qint64>("mhz");
        QTest::addColumn<uint>("count");

        const QString maxFreq =
            QStringLiteral("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
        const QString cpuinfo = QStringLiteral("/proc/cpuinfo");
        const QString possible = QStringLiteral("/sys/devices/system/cpu/possible");
        QTest::newRow("firmware maximum") << Files{{maxFreq, "2000000\n"},
                                                   {cpuinfo, "cpu MHz\t\t: 800.000\n"},
                                                   {possible, "0-3\n"}}
                                          << qint64(2000000000) << qint64(2000) << 4u;
        QTest::newRow("current speed when no maximum")
            << Files{{cpuinfo, "processor\t: 0\ncpu MHz\t\t: 2096.027\n"}, {possible, "0-3,6\n"}}
            << qint64(2096027000) << qint64(2096) << 5u;
        QTest::newRow("below one megahertz")
            << Files{{maxFreq, "999\n"}, {possible, "0\n"}} << qint64(999000) << qint64(0) << 1u;
        // The clock is a signed 32-bit answer: faster processors wrap, and the division
        // truncates toward zero.
        QTest::newRow("wraps past 2^31 Hz") << Files{{maxFreq, "2660000\n"}, {possible, "0-1"}}
                                            << qint64(-1634967296) << qint64(-1634) << 2u;
        QTest::newRow("nothing known") << Files{} << qint64(0) << qint64(0) << 0u;
        QTest::newRow("malformed ranges")
            << Files{{possible, "3-1\n"}} << qint64(0) << qint64(0) << 0u;
    }
    void processor()
    {
        QFETCH(Files, files);
        QFETCH(qint64, hz);
        QFETCH(qint64, mhz);
        QFETCH(uint, count);
        FakeMachine machine;
        build(machine, files);
        QCOMPARE(processorClockSpeed(), hz);
        QCOMPARE(processorClockSpeedInMHz(), mhz);
        QCOMPARE(countProcessors(), count);
    }

    void processorFamily_data()
    {
        QTest::addColumn<QByteArray>("arch");
        QTest::addColumn<QByteArray>("cpu");
        QTest::addColumn<QString>("family");
        QTest::addColumn<bool>("powerPC");

        QTest::newRow("x86") << QByteArray("x86_64\n") << QByteArray()
                             << QStringLiteral("Non-PowerPC") << false;
        QTest::newRow("G3") << QByteArray("ppc\n") << QByteArray("750CXe") << QStringLiteral("G3")
                            << true;
        QTest::newRow("G4 7400") << QByteArray("ppc\n") << QByteArray("7400, altivec supported")
                                 << QStringLiteral("G4") << true;
        QTest::newRow("G4 7447") << QByteArray("ppc\n") << QByteArray("7447A, altivec supported")
                                 << QStringLiteral("G4") << true;
        QTest::newRow("G5") << QByteArray("ppc64\n") << QByteArray("PPC970FX, altivec supported")
                            << QStringLiteral("G5") << true;
        QTest::newRow("970") << QByteArray("ppc64\n") << QByteArray("970MP") << QStringLiteral("G5")
                             << true;
        QTest::newRow("older PowerPC") << QByteArray("ppc\n") << QByteArray("604e")
                                       << QStringLiteral("PowerPC pre-G3") << true;
        QTest::newRow("architecture unknown")
            << QByteArray() << QByteArray("750") << QStringLiteral("Non-PowerPC") << false;
    }
    void processorFamily()
    {
        QFETCH(QByteArray, arch);
        QFETCH(QByteArray, cpu);
        QFETCH(QString, family);
        QFETCH(bool, powerPC);
        FakeMachine machine;
        if (!arch.isEmpty())
            machine.write(QStringLiteral("/proc/sys/kernel/arch"), arch);
        machine.write(QStringLiteral("/proc/cpuinfo"), "processor\t: 0\ncpu\t\t: " + cpu + "\n");
        QCOMPARE(powerPCTypeString(), family);
        QCOMPARE(isPowerPC(), powerPC);
        QCOMPARE(int(isG3()) + int(isG4()) + int(isG5()), family.size() == 2 ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(TestHardwareIdentity)
#include "tst_hardwareidentity.moc"
