#include "FakeMachine.h"

using namespace VXSystemInformation;

namespace {
// One network interface; a hardware-backed one has a device link.
Files interface(const QString &name, int index, const QByteArray &address, bool hardware)
{
    const QString dir = QStringLiteral("/sys/class/net/") + name;
    Files files{{dir + QStringLiteral("/ifindex"), QByteArray::number(index)},
                {dir + QStringLiteral("/address"), address + '\n'}};
    if (hardware) {
        files.insert(QStringLiteral("/sys/devices/nic%1/").arg(index), {});
        files.insert(dir + QStringLiteral("/device"),
                     "->../../../devices/nic" + QByteArray::number(index));
    }
    return files;
}

QByteArray mount(const char *number, const char *source)
{
    return QByteArray("29 1 ") + number + " / / rw shared:1 - ext4 " + source + " rw\n";
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
        QTest::newRow("device tree model keeps its zero byte, DMI names the identifier")
            << Files{{dt + QStringLiteral("model"), QByteArray("Board\0", 6)},
                     {dt + QStringLiteral("serial-number"), QByteArray("C02FX1\0", 7)},
                     {dmi + QStringLiteral("product_name"), "Macmini5,1\n"},
                     {host, "studio\n"}}
            << QStringLiteral("Board") + QChar(0) << QStringLiteral("Macmini5,1")
            << QStringLiteral("C02FX1") << QStringLiteral("studio");
        QTest::newRow("DMI without its line break, the name people gave")
            << Files{{dmi + QStringLiteral("product_name"), "iMac12,2\n"},
                     {dmi + QStringLiteral("product_serial"), "W80123\n"},
                     {host, "desk\n"},
                     {QStringLiteral("/etc/machine-info"), "PRETTY_HOSTNAME=\"Anna's iMac\"\n"}}
            << QStringLiteral("iMac12,2") << QStringLiteral("iMac12,2") << QStringLiteral("W80123")
            << QStringLiteral("Anna's iMac");
        QTest::newRow("firmware tells nothing")
            << Files{{dmi + QStringLiteral("product_serial"), "\n"},
                     {QStringLiteral("/etc/machine-info"), "PRETTY_HOSTNAME=\n"},
                     {host, "plain\n"}}
            << QString() << QString() << QString() << QStringLiteral("plain");
    }
    void firmwareIdentity()
    {
        QFETCH(Files, files);
        FakeMachine machine;
        machine.build(files);
        COMPARE_TEXT(machineType(), FETCHED(QString, machineType));
        COMPARE_TEXT(modelIdentifier(), FETCHED(QString, modelIdentifier));
        COMPARE_TEXT(computerSerialNumber(), FETCHED(QString, serial));
        COMPARE_TEXT(computerName(), FETCHED(QString, computerName));
    }

    void modelFamily_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<quint64>("type");
        const auto row = [](const char *id, VXModelIdentifierType type) {
            QTest::newRow(id) << QString::fromLatin1(id) << quint64(type);
        };
        row("MacBookAir4,2", VXModelIdentifierTypeMacBookAir); // before its own prefix
        row("MacBookPro8,1", VXModelIdentifierTypeMacBook);
        row("IMAC", VXModelIdentifierTypeIMac);
        row("Macmini5,1", VXModelIdentifierTypeMacMini);
        row("MacPro5,1", VXModelIdentifierTypeUnknown);
        row("xMacBookAir", VXModelIdentifierTypeUnknown);
        row("", VXModelIdentifierTypeUnknown);
    }
    void modelFamily()
    {
        QFETCH(QString, identifier);
        QCOMPARE(quint64(modelIdentifierTypeFromModelIdentifier(identifier)),
                 FETCHED(quint64, type));
    }

    void hardwareAddress_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<QByteArray>("address"); // empty: none
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("printed");

        Files ports = interface(QStringLiteral("lo"), 1, "00:00:00:00:00:00", false);
        ports.insert(interface(QStringLiteral("wlan0"), 3, "00:1a:2b:3c:4d:5f", true));
        ports.insert(interface(QStringLiteral("eth0"), 2, "00:1A:2B:3C:4D:5E", true));
        QTest::newRow("lowest-numbered hardware port")
            << ports << QByteArray::fromHex("001a2b3c4d5e") << QStringLiteral("00:1a:2b:3c:4d:5e")
            << QByteArray();
        QTest::newRow("only virtual interfaces")
            << interface(QStringLiteral("br0"), 2, "02:42:ac:11:00:02", false) << QByteArray()
            << QString() << QByteArray();
        QTest::newRow("five-byte address")
            << interface(QStringLiteral("eth0"), 2, "00:1a:2b:3c:4d", true)
            << QByteArray::fromHex("001a2b3c4d") << QString() << QByteArray();
        QTest::newRow("no network class") << Files{{QStringLiteral("/sys/"), {}}} << QByteArray()
                                          << QString() << QByteArray("IOMasterPort returned 2\n");
        QTest::newRow("device gone")
            << Files{{QStringLiteral("/sys/class/net/eth0/ifindex"), "2"},
                     {QStringLiteral("/sys/class/net/eth0/device"), "->../../../devices/gone"}}
            << QByteArray() << QString()
            << QByteArray("IORegistryEntryGetParentEntry returned 2\n");
    }
    void hardwareAddress()
    {
        QFETCH(Files, files);
        QFETCH(QByteArray, address);
        QFETCH(QByteArray, printed);
        FakeMachine machine;
        machine.build(files);
        StdoutCapture capture;
        const std::optional<QByteArray> blob = macAddress();
        QCOMPARE(capture.text(), printed);
        QCOMPARE(blob.value_or(QByteArray()), address);
        QCOMPARE(blob.has_value(), !address.isEmpty());
        // A missing address is looked up again, diagnostics and all.
        StdoutCapture again;
        COMPARE_TEXT(macAddressString(), FETCHED(QString, text));
        QCOMPARE(again.text(), blob ? QByteArray() : printed);
    }

    void hardwareAddressCache()
    {
        FakeMachine machine;
        StdoutCapture capture;
        QVERIFY(!macAddress());
        QCOMPARE(capture.text(), QByteArray("IOMasterPort returned 2\n"));
        machine.build(interface(QStringLiteral("eth0"), 2, "00:1a:2b:3c:4d:5e", true));
        QCOMPARE(macAddressString(), QStringLiteral("00:1a:2b:3c:4d:5e"));
        machine.build(interface(QStringLiteral("eth0"), 2, "02:00:00:00:00:01", true));
        QCOMPARE(macAddress().value_or(QByteArray()), QByteArray::fromHex("001a2b3c4d5e"));
        QCOMPARE(macAddressString(), QStringLiteral("00:1a:2b:3c:4d:5e"));
    }

    void rootDiskSize_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<quint64>("size");

        const QString mountinfo = QStringLiteral("/proc/self/mountinfo");
        const Files disk{{QStringLiteral("/sys/devices/sda/size"), "1000\n"},
                         {QStringLiteral("/sys/devices/sda/sda2/size"), "400\n"},
                         {QStringLiteral("/sys/devices/sda/sda2/partition"), "2\n"},
                         {QStringLiteral("/sys/dev/block/8:2"), "->../../devices/sda/sda2"},
                         {QStringLiteral("/sys/class/block/sda2"), "->../../devices/sda/sda2"}};
        const auto with = [](Files files, const QString &key, const QByteArray &value) {
            files.insert(key, value);
            return files;
        };
        QTest::newRow("partition: the whole disk counts")
            << with(disk, mountinfo, mount("8:2", "/dev/sda2")) << quint64(1000 * 512);
        QTest::newRow("anonymous device number, found by source")
            << with(disk, mountinfo, mount("0:33", "/dev/sda2")) << quint64(1000 * 512);
        QTest::newRow("the last mount over / wins")
            << with(disk, mountinfo, mount("0:45", "overlay") + mount("8:2", "/dev/sda2"))
            << quint64(1000 * 512);
        QTest::newRow("disk image")
            << Files{{mountinfo, mount("7:0", "/dev/loop0")},
                     {QStringLiteral("/sys/devices/loop0/size"), "2048\n"},
                     {QStringLiteral("/sys/dev/block/7:0"), "->../../devices/loop0"}}
            << quint64(0);
        QTest::newRow("no block device")
            << with(disk, mountinfo, mount("0:45", "overlay")) << quint64(0);
    }
    void rootDiskSize()
    {
        QFETCH(Files, files);
        FakeMachine machine;
        machine.build(files);
        QCOMPARE(quint64(hddSize()), FETCHED(quint64, size));
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
        QTest::newRow("firmware maximum")
            << Files{{maxFreq, "2000000\n"}, {cpuinfo, "cpu MHz\t: 800.000\n"}, {possible, "0-3\n"}}
            << qint64(2000000000) << qint64(2000) << 4u;
        QTest::newRow("current speed when no maximum")
            << Files{{cpuinfo, "processor\t: 0\ncpu MHz\t\t: 2096.027\n"}, {possible, "0-3,6\n"}}
            << qint64(2096027000) << qint64(2096) << 5u;
        // A signed 32-bit answer: faster clocks wrap, and the division truncates toward zero.
        QTest::newRow("wraps past 2^31 Hz") << Files{{maxFreq, "2660000\n"}, {possible, "0"}}
                                            << qint64(-1634967296) << qint64(-1634) << 1u;
        QTest::newRow("nothing known")
            << Files{{possible, "3-1\n"}} << qint64(0) << qint64(0) << 0u;
    }
    void processor()
    {
        QFETCH(Files, files);
        FakeMachine machine;
        machine.build(files);
        QCOMPARE(processorClockSpeed(), FETCHED(qint64, hz));
        QCOMPARE(processorClockSpeedInMHz(), FETCHED(qint64, mhz));
        QCOMPARE(countProcessors(), FETCHED(uint, count));
    }

    void processorFamily_data()
    {
        QTest::addColumn<QByteArray>("arch");
        QTest::addColumn<QByteArray>("cpu");
        QTest::addColumn<QString>("family");
        const auto row = [](const char *arch, const char *cpu, const char *family) {
            QTest::addRow("%s %s", arch, cpu)
                << QByteArray(arch) << QByteArray(cpu) << QString::fromLatin1(family);
        };
        row("x86_64", "", "Non-PowerPC");
        row("", "750", "Non-PowerPC"); // architecture unknown
        row("ppc", "740/750", "G3");
        row("ppc", "7447A, altivec supported", "G4");
        row("ppc64", "PPC970FX, altivec supported", "G5");
        row("ppc", "604e", "PowerPC pre-G3");
    }
    void processorFamily()
    {
        QFETCH(QByteArray, arch);
        QFETCH(QString, family);
        FakeMachine machine;
        if (!arch.isEmpty())
            machine.write(QStringLiteral("/proc/sys/kernel/arch"), arch + '\n');
        machine.write(QStringLiteral("/proc/cpuinfo"),
                      "cpu\t\t: " + FETCHED(QByteArray, cpu) + '\n');
        QCOMPARE(powerPCTypeString(), family);
        QCOMPARE(isPowerPC(), arch.startsWith("ppc"));
        QCOMPARE(int(isG3()) + int(isG4()) + int(isG5()), family.size() == 2 ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(TestHardwareIdentity)
#include "tst_hardwareidentity.moc"
