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

QByteArray mount(const char *number, const char *type, const char *source)
{
    return QByteArray("29 1 ") + number + " / / rw shared:1 - " + type + " " + source + " rw\n";
}

// A block device: its size in sectors, its number and, for a partition, its number in the
// disk. Its folder sits where sysfs puts it, a partition inside its disk's.
Files block(const QString &path, const char *number, const char *sectors, bool partition = false)
{
    const QString dir = QStringLiteral("/sys/devices/") + path;
    Files files{{dir + QStringLiteral("/size"), QByteArray(sectors) + '\n'},
                {QStringLiteral("/sys/dev/block/") + QLatin1String(number),
                 "->../../devices/" + path.toUtf8()},
                {QStringLiteral("/sys/class/block/") + QFileInfo(path).fileName(),
                 "->../../devices/" + path.toUtf8()}};
    if (partition)
        files.insert(dir + QStringLiteral("/partition"), "1\n");
    return files;
}

// A mapped device (LVM, encryption) named `name` on the device at `lower`.
Files mapped(const QString &dm, const char *number, const char *sectors, const QByteArray &name,
             const QString &lower)
{
    Files files = block(QStringLiteral("virtual/block/") + dm, number, sectors);
    files.insert(QStringLiteral("/sys/devices/virtual/block/%1/dm/name").arg(dm), name + '\n');
    files.insert(QStringLiteral("/sys/devices/virtual/block/%1/slaves/%2")
                     .arg(dm, QFileInfo(lower).fileName()),
                 "->../../../../" + lower.toUtf8());
    return files;
}

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
    void modelFamily_data()
    {
        QTest::addColumn<quint64>("type");
        QTest::newRow("MacBookAir4,2")
            << quint64(VXModelIdentifierTypeMacBookAir); // before MacBook
        QTest::newRow("MacBookPro8,1") << quint64(VXModelIdentifierTypeMacBook);
        QTest::newRow("IMAC") << quint64(VXModelIdentifierTypeIMac);
        QTest::newRow("Macmini5,1") << quint64(VXModelIdentifierTypeMacMini);
        QTest::newRow("xMacBookAir") << quint64(VXModelIdentifierTypeUnknown);
        QTest::newRow("") << quint64(VXModelIdentifierTypeUnknown);
    }
    void modelFamily()
    {
        const QString identifier = QString::fromLatin1(QTest::currentDataTag());
        QTEST(quint64(modelIdentifierTypeFromModelIdentifier(identifier)), "type");
    }

    void hardwareAddress_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<QByteArray>("address"); // empty: none
        QTest::addColumn<QString>("text");

        Files ports = interface(QStringLiteral("lo"), 1, "00:00:00:00:00:00", false);
        ports.insert(interface(QStringLiteral("wlan0"), 3, "00:1a:2b:3c:4d:5f", true));
        ports.insert(interface(QStringLiteral("eth0"), 2, "00:1A:2B:3C:4D:5E", true));
        QTest::newRow("lowest-numbered hardware port")
            << ports << QByteArray::fromHex("001a2b3c4d5e") << QStringLiteral("00:1a:2b:3c:4d:5e");
        QTest::newRow("no primary interface")
            << interface(QStringLiteral("br0"), 2, "02:42:ac:11:00:02", false) << QByteArray()
            << QString();
        QTest::newRow("five-byte address")
            << interface(QStringLiteral("eth0"), 2, "00:1a:2b:3c:4d", true)
            << QByteArray::fromHex("001a2b3c4d") << QString();
    }
    void hardwareAddress()
    {
        QFETCH(Files, files);
        QFETCH(QByteArray, address);
        QFETCH(QString, text);
        FakeMachine machine(files);
        QCOMPARE(macAddress(), address.isEmpty() ? std::nullopt : std::optional(address));
        QCOMPARE(macAddressString(), text);
        QCOMPARE(macAddressString().isNull(), text.isNull());
    }

    // A missing address is looked up again; a found one is kept even when the port changes.
    void hardwareAddressCache()
    {
        FakeMachine machine;
        QVERIFY(!macAddress());
        machine.build(interface(QStringLiteral("eth0"), 2, "00:1a:2b:3c:4d:5e", true));
        QCOMPARE(macAddressString(), QStringLiteral("00:1a:2b:3c:4d:5e"));
        machine.build(interface(QStringLiteral("eth0"), 2, "02:00:00:00:00:01", true));
        QCOMPARE(macAddress().value_or(QByteArray()), QByteArray::fromHex("001a2b3c4d5e"));
        QCOMPARE(macAddressString(), QStringLiteral("00:1a:2b:3c:4d:5e"));
    }

    // Each disk has its own size, so the wrong one shows: sda 1000 sectors, nvme0n1 3000.
    void rootDiskSize_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<quint64>("size");
        const QString sda = QStringLiteral("pci0/ata1/block/sda");
        const QString nvme = QStringLiteral("pci0/nvme/nvme0/nvme0n1");
        const Files disks = merged(
            {block(sda, "8:0", "1000"), block(sda + QStringLiteral("/sda2"), "8:2", "400", true),
             block(nvme, "259:0", "3000"),
             block(nvme + QStringLiteral("/nvme0n1p3"), "259:3", "2500", true),
             block(QStringLiteral("virtual/block/loop0"), "7:0", "2048")});
        const auto machine = [&](const QByteArray &mounts, const Files &more = {}) {
            return merged({disks, more, {{QStringLiteral("/proc/self/mountinfo"), mounts}}});
        };
        QTest::newRow("SATA partition: the whole disk")
            << machine(mount("8:2", "ext4", "/dev/sda2")) << 512000ull;
        QTest::newRow("NVMe partition: the whole disk")
            << machine(mount("259:3", "ext4", "/dev/nvme0n1p3")) << 1536000ull;
        QTest::newRow("whole disk, no partition table")
            << machine(mount("8:0", "xfs", "/dev/sda")) << 512000ull;
        QTest::newRow("LVM on a disk: the disk, not the volume")
            << machine(mount("254:1", "ext4", "/dev/mapper/vg-root"),
                       mapped(QStringLiteral("dm-1"), "254:1", "300", "vg-root",
                              QStringLiteral("pci0/ata1/block/sda/sda2")))
            << 512000ull;
        const Files luks = merged({mapped(QStringLiteral("dm-0"), "254:0", "2400", "cryptroot",
                                          nvme + QStringLiteral("/nvme0n1p3")),
                                   mapped(QStringLiteral("dm-1"), "254:1", "2000", "vg-root",
                                          QStringLiteral("virtual/block/dm-0"))});
        QTest::newRow("btrfs on LUKS: by the mapper link")
            << machine(mount("0:31", "btrfs", "/dev/mapper/cryptroot"),
                       merged({luks,
                               {{QStringLiteral("/dev/mapper/cryptroot"), "->../dm-0"},
                                {QStringLiteral("/dev/dm-0"), ""}}}))
            << 1536000ull;
        QTest::newRow("btrfs on LVM on LUKS: by the mapper name")
            << machine(mount("0:31", "btrfs", "/dev/mapper/vg-root"), luks) << 1536000ull;
        QTest::newRow("ext4 on LUKS")
            << machine(mount("254:0", "ext4", "/dev/dm-0"), luks) << 1536000ull;
        QTest::newRow("disk image") << machine(mount("7:0", "ext4", "/dev/loop0")) << 0ull;
        QTest::newRow("encrypted disk image")
            << machine(mount("254:2", "ext4", "/dev/mapper/img"),
                       mapped(QStringLiteral("dm-2"), "254:2", "2000", "img",
                              QStringLiteral("virtual/block/loop0")))
            << 0ull;
        QTest::newRow("overlay") << machine(mount("0:45", "overlay", "overlay")) << 0ull;
        QTest::newRow("unknown mapper name")
            << machine(mount("0:31", "btrfs", "/dev/mapper/absent"), luks) << 0ull;
    }
    void rootDiskSize()
    {
        QFETCH(Files, files);
        FakeMachine machine(files);
        QTEST(quint64(hddSize()), "size");
    }

    void processorClock_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<qint64>("hz");
        const QString cpufreq = QStringLiteral("/sys/devices/system/cpu/cpu0/cpufreq/");
        const QString cpuinfo = QStringLiteral("/proc/cpuinfo");
        QTest::newRow("2.6 GHz, P-state driver: nominal, not turbo")
            << Files{{cpufreq + QStringLiteral("base_frequency"), "2600000\n"},
                     {cpufreq + QStringLiteral("cpuinfo_max_freq"), "4400000\n"}}
            << 2600000000ll;
        QTest::newRow("4.7 GHz, highest state")
            << Files{{cpufreq + QStringLiteral("cpuinfo_max_freq"), "4700000\n"}} << 4700000000ll;
        QTest::newRow("ACPI driver's turbo state 1 MHz above nominal")
            << Files{{cpufreq + QStringLiteral("scaling_available_frequencies"),
                      "2661000 2660000 2000000 1600000 \n"},
                     {cpufreq + QStringLiteral("cpuinfo_max_freq"), "2661000\n"}}
            << 2660000000ll;
        QTest::newRow("collaborative performance control")
            << Files{{QStringLiteral("/sys/devices/system/cpu/cpu0/acpi_cppc/nominal_freq"),
                      "3700\n"},
                     {cpufreq + QStringLiteral("cpuinfo_max_freq"), "4850000\n"}}
            << 3700000000ll;
        QTest::newRow("virtual machine: the brand's clock")
            << Files{{cpuinfo, "processor\t: 0\nmodel name\t: Intel(R) Xeon(R) CPU @ 2.60GHz\n"
                               "cpu MHz\t\t: 2593.906\n"}}
            << 2600000000ll;
        QTest::newRow("virtual machine: the first processor's clock")
            << Files{{cpuinfo, "processor\t: 0\nmodel name\t: AMD EPYC\ncpu MHz\t\t: 4700.000\n"
                               "processor\t: 1\ncpu MHz\t\t: 3100.000\n"}}
            << 4700000000ll;
        QTest::newRow("PowerPC") << Files{{cpuinfo,
                                           "processor\t: 0\ncpu\t\t: 7447A, altivec supported\n"
                                           "clock\t\t: 1250.000000MHz\n"}}
                                 << 1250000000ll;
        QTest::newRow("nothing known") << Files{{cpuinfo, "processor\t: 0\n"}} << 0ll;
    }
    void processorClock()
    {
        QFETCH(Files, files);
        QFETCH(qint64, hz);
        FakeMachine machine(files);
        QCOMPARE(processorClockSpeed(), hz);
        QCOMPARE(processorClockSpeedInMHz(), hz / 1000000);
    }

    void powerPCFamily_data()
    {
        QTest::addColumn<QByteArray>("arch");
        QTest::addColumn<QByteArray>("cpu");
        QTest::addColumn<QString>("family");
        const QString g3 = QStringLiteral("G3"), g4 = QStringLiteral("G4");
        QTest::newRow("740/750") << QByteArray("ppc") << QByteArray("740/750") << g3;
        QTest::newRow("745/755 is a G3") << QByteArray("ppc") << QByteArray("745/755") << g3;
        QTest::newRow("750FX") << QByteArray("ppc") << QByteArray("750FX") << g3;
        QTest::newRow("7400 is a G4") << QByteArray("ppc") << QByteArray("7400") << g4;
        QTest::newRow("7400 (1.1)") << QByteArray("ppc") << QByteArray("7400 (1.1)") << g4;
        QTest::newRow("7410") << QByteArray("ppc") << QByteArray("7410, altivec supported") << g4;
        QTest::newRow("7447A") << QByteArray("ppc") << QByteArray("7447A, altivec supported") << g4;
        QTest::newRow("7455") << QByteArray("ppc") << QByteArray("7455") << g4;
        QTest::newRow("PPC970MP") << QByteArray("ppc64")
                                  << QByteArray("PPC970MP, altivec supported")
                                  << QStringLiteral("G5");
        QTest::newRow("604e") << QByteArray("ppc") << QByteArray("604e")
                              << QStringLiteral("PowerPC pre-G3");
        QTest::newRow("POWER9") << QByteArray("ppc64le")
                                << QByteArray("POWER9 (raw), altivec supported")
                                << QStringLiteral("PowerPC pre-G3");
        QTest::newRow("x86-64") << QByteArray("x86_64") << QByteArray("7400")
                                << QStringLiteral("Non-PowerPC");
    }
    void powerPCFamily()
    {
        QFETCH(QByteArray, arch);
        QFETCH(QByteArray, cpu);
        QFETCH(QString, family);
        FakeMachine machine({{QStringLiteral("/proc/sys/kernel/arch"), arch + '\n'},
                             {QStringLiteral("/proc/cpuinfo"),
                              "processor\t: 0\ncpu\t\t: " + cpu + "\nclock\t\t: 1000MHz\n"}});
        QCOMPARE(powerPCTypeString(), family);
        QCOMPARE(isPowerPC(), arch.startsWith("ppc"));
        QCOMPARE(isG3() + isG4() + isG5(), int(family.size() == 2));
    }

    // Device-tree firmware stores zero-terminated strings; DMI's sysfs files end in a line
    // break. machineType keeps the device tree's bytes as they are.
    void firmwareIdentity_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<QString>("machine");
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("serial");
        QTest::addColumn<quint64>("type");
        const QString dt = QStringLiteral("/sys/firmware/devicetree/base/");
        const QString dmi = QStringLiteral("/sys/class/dmi/id/");
        QTest::newRow("device tree")
            << Files{{dt + QStringLiteral("model"), QByteArray("PowerMac7,3\0", 12)},
                     {dt + QStringLiteral("serial-number"), QByteArray("G8435\0\0\0", 8)}}
            << QString::fromUtf8("PowerMac7,3\0", 12) << QStringLiteral("PowerMac7,3")
            << QStringLiteral("G8435") << quint64(VXModelIdentifierTypeUnknown);
        QTest::newRow("DMI") << Files{{dmi + QStringLiteral("product_name"), "MacBookAir4,2\n"},
                                      {dmi + QStringLiteral("product_serial"), "C02F1234\n"}}
                             << QStringLiteral("MacBookAir4,2") << QStringLiteral("MacBookAir4,2")
                             << QStringLiteral("C02F1234")
                             << quint64(VXModelIdentifierTypeMacBookAir);
        QTest::newRow("DMI, serial for root only")
            << Files{{dmi + QStringLiteral("product_name"), "Macmini5,1\n"}}
            << QStringLiteral("Macmini5,1") << QStringLiteral("Macmini5,1") << QString()
            << quint64(VXModelIdentifierTypeMacMini);
        QTest::newRow("neither") << Files{} << QString() << QString() << QString()
                                 << quint64(VXModelIdentifierTypeUnknown);
    }
    void firmwareIdentity()
    {
        QFETCH(Files, files);
        QFETCH(QString, serial);
        FakeMachine machine(files);
        QTEST(machineType(), "machine");
        QTEST(modelIdentifier(), "model");
        QCOMPARE(computerSerialNumber(), serial);
        QCOMPARE(computerSerialNumber().isNull(), serial.isNull());
        QTEST(quint64(modelIdentifierType()), "type");
    }
};

QTEST_GUILESS_MAIN(TestHardwareIdentity)
#include "tst_hardwareidentity.moc"
