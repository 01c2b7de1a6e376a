// The machine's hardware and kernel facts, read from fake machines (sysfs, /proc, firmware
// files), and once from the real machine against what the kernel itself says.
#include "FakeMachine.h"

#include <sys/utsname.h>
#include <unistd.h>

using namespace VXSystemInformation;

namespace {
// One network interface; a hardware-backed one has a device link.
Files interface(const QString &name, int index, const QByteArray &address, bool hardware)
{
    const QString dir = u"/sys/class/net/"_s + name;
    Files files{{dir + u"/ifindex"_s, QByteArray::number(index)},
                {dir + u"/address"_s, address + '\n'}};
    if (hardware) {
        files.insert(u"/sys/devices/nic%1/"_s.arg(index), {});
        files.insert(dir + u"/device"_s, "->../../../devices/nic" + QByteArray::number(index));
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
    const QString dir = u"/sys/devices/"_s + path;
    Files files{
        {dir + u"/size"_s, QByteArray(sectors) + '\n'},
        {u"/sys/dev/block/"_s + QLatin1String(number), "->../../devices/" + path.toUtf8()},
        {u"/sys/class/block/"_s + QFileInfo(path).fileName(), "->../../devices/" + path.toUtf8()}};
    if (partition)
        files.insert(dir + u"/partition"_s, "1\n");
    return files;
}

// A mapped device (LVM, encryption) named `name` on the device at `lower`.
Files mapped(const QString &dm, const char *number, const char *sectors, const QByteArray &name,
             const QString &lower)
{
    Files files = block(u"virtual/block/"_s + dm, number, sectors);
    files.insert(u"/sys/devices/virtual/block/%1/dm/name"_s.arg(dm), name + '\n');
    files.insert(u"/sys/devices/virtual/block/%1/slaves/%2"_s.arg(dm, QFileInfo(lower).fileName()),
                 "->../../../../" + lower.toUtf8());
    return files;
}

// A null string, which the queries answer for "none", shown apart from an empty one.
QString shown(const QString &answer)
{
    return answer.isNull() ? u"(nil)"_s : answer;
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
    // Against the machine the tests run on: consistent with the kernel, or neutral.
    void realMachine()
    {
        struct utsname names;
        QCOMPARE(uname(&names), 0);
        QCOMPARE(operatingSystemString(), QString::fromUtf8(names.sysname));
        QVERIFY(countProcessors() >= sysconf(_SC_NPROCESSORS_ONLN));
        QVERIFY(!humanMachineType().isEmpty() && !computerName().isEmpty());
        QVERIFY(!arrayWithSystemProfileOfLevel(QString())); // the lister's text is no list
        // The drawing code's release tests: every Qt 6 desktop postdates those releases.
        QVERIFY(isSnowLeopardOrGreater() && isLionOrGreater() && isMountainLionOrGreater() &&
                isMavericksOrGreater());
        for (const QString &path : allApplicationsPaths() + allPreferencePanesPaths())
            QVERIFY2(QFileInfo::exists(path), qPrintable(path));
    }

    void hardwareAddress_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<QByteArray>("address"); // empty: none
        QTest::addColumn<QString>("text");
        Files ports = interface(u"lo"_s, 1, "00:00:00:00:00:00", false);
        ports.insert(interface(u"wlan0"_s, 3, "00:1a:2b:3c:4d:5f", true));
        ports.insert(interface(u"eth0"_s, 2, "00:1A:2B:3C:4D:FF", true));
        QTest::newRow("lowest-numbered hardware port")
            << ports << QByteArray::fromHex("001a2b3c4dff") << u"00:1a:2b:3c:4d:ff"_s;
        QTest::newRow("five-byte address") << interface(u"eth0"_s, 2, "00:1a:2b:3c:4d", true)
                                           << QByteArray::fromHex("001a2b3c4d") << QString();
    }
    void hardwareAddress()
    {
        QFETCH(Files, files);
        QFETCH(QByteArray, address);
        QFETCH(QString, text);
        FakeMachine machine(files);
        QCOMPARE(macAddress(), address.isEmpty() ? std::nullopt : std::optional(address));
        QCOMPARE(shown(macAddressString()), shown(text));
    }

    // Each disk has its own size, so the wrong one shows: sda 1000 sectors, nvme0n1 3000.
    void rootDiskSize_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<quint64>("size");
        const QString sda = u"pci0/ata1/block/sda"_s, nvme = u"pci0/nvme/nvme0/nvme0n1"_s;
        const Files disks = merged(
            {block(sda, "8:0", "1000"), block(sda + u"/sda2"_s, "8:2", "400", true),
             block(nvme, "259:0", "3000"), block(nvme + u"/nvme0n1p3"_s, "259:3", "2500", true)});
        const auto machine = [&](const QByteArray &mounts, const Files &more = {}) {
            return merged({disks, more, {{u"/proc/self/mountinfo"_s, mounts}}});
        };
        QTest::newRow("kernel's /dev/root: by the number")
            << machine(mount("8:2", "ext4", "/dev/root")) << 512000ull;
        QTest::newRow("btrfs on a partition: by the device's name")
            << machine(mount("0:31", "btrfs", "/dev/sda2")) << 512000ull;
        const Files luks =
            merged({mapped(u"dm-0"_s, "254:0", "2400", "cryptroot", nvme + u"/nvme0n1p3"_s),
                    mapped(u"dm-1"_s, "254:1", "2000", "vg-root", u"virtual/block/dm-0"_s)});
        // A cut line (no source) mounted over "/" later is skipped: it would name sda.
        QTest::newRow("btrfs on LUKS: by the mapper link")
            << machine(mount("0:31", "btrfs", "/dev/mapper/cryptroot") + "30 29 8:0 / / rw - xfs\n",
                       merged({luks,
                               {{u"/dev/mapper/cryptroot"_s, "->../dm-0"}, {u"/dev/dm-0"_s, ""}}}))
            << 1536000ull;
        QTest::newRow("btrfs on LVM on LUKS: by the mapper name")
            << machine(mount("0:31", "btrfs", "/dev/mapper/vg-root"), luks) << 1536000ull;
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

    // The clock, and the processors the machine can bring up (as ranges; anything malformed
    // is unknown).
    void processors_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<qint64>("hz");
        QTest::addColumn<uint>("count");
        const QString cpu = u"/sys/devices/system/cpu/"_s, cpufreq = cpu + u"cpu0/cpufreq/"_s;
        const QString cpuinfo = u"/proc/cpuinfo"_s, possible = cpu + u"possible"_s;
        QTest::newRow("2.6 GHz, P-state driver: nominal, not turbo; ranges and a single one")
            << Files{{cpufreq + u"base_frequency"_s, "2600000\n"},
                     {cpufreq + u"cpuinfo_max_freq"_s, "4400000\n"},
                     {possible, "0-3,6\n"}}
            << 2600000000ll << 5u;
        QTest::newRow("ACPI driver's turbo state 1 MHz above nominal; backwards range")
            << Files{{cpufreq + u"scaling_available_frequencies"_s,
                      "2661000 2660000 2000000 1600000 \n"},
                     {cpufreq + u"cpuinfo_max_freq"_s, "2661000\n"},
                     {possible, "3-1\n"}}
            << 2660000000ll << 0u;
        QTest::newRow("virtual machine: the brand's clock")
            << Files{{cpuinfo, "processor\t: 0\nmodel name\t: Intel(R) Core(TM) i7 CPU 920 @ "
                               "2.67GHz\ncpu MHz\t\t: 2593.906\n"}}
            << 2670000000ll << 0u;
        // Whole MHz are cut, not rounded: 2399.999 MHz is 2399.
        QTest::newRow("virtual machine: the first processor's clock")
            << Files{{cpuinfo, "processor\t: 0\nmodel name\t: AMD EPYC\ncpu MHz\t\t: 2399.999\n"
                               "processor\t: 1\ncpu MHz\t\t: 3100.000\n"}}
            << 2399999000ll << 0u;
        QTest::newRow("PowerPC") << Files{{cpuinfo, "processor\t: 0\ncpu\t\t: 7447A, altivec "
                                                    "supported\nclock\t\t: 1250.000000MHz\n"}}
                                 << 1250000000ll << 0u;
        QTest::newRow("nothing known") << Files{{cpuinfo, "processor\t: 0\n"}} << 0ll << 0u;
    }
    void processors()
    {
        QFETCH(Files, files);
        QFETCH(qint64, hz);
        FakeMachine machine(files);
        QCOMPARE(processorClockSpeed(), hz);
        QCOMPARE(processorClockSpeedInMHz(), hz / 1000000);
        QTEST(uint(countProcessors()), "count");
    }

    void powerPCFamily_data()
    {
        QTest::addColumn<QByteArray>("arch");
        QTest::addColumn<QByteArray>("cpu");
        QTest::addColumn<QString>("family");
        const QString g3 = u"G3"_s, g4 = u"G4"_s, older = u"PowerPC pre-G3"_s;
        const QByteArray ppc = "ppc";
        QTest::newRow("745/755 is a G3") << ppc << QByteArray("745/755") << g3;
        QTest::newRow("7447A") << ppc << QByteArray("7447A, altivec supported") << g4;
        QTest::newRow("604e") << ppc << QByteArray("604e") << older;
        QTest::newRow("x86-64") << QByteArray("x86_64") << QByteArray("7400") << u"Non-PowerPC"_s;
    }
    void powerPCFamily()
    {
        QFETCH(QByteArray, arch);
        QFETCH(QByteArray, cpu);
        QFETCH(QString, family);
        FakeMachine machine(
            {{u"/proc/sys/kernel/arch"_s, arch + '\n'},
             {u"/proc/cpuinfo"_s, "processor\t: 0\ncpu\t\t: " + cpu + "\nclock\t\t: 1000MHz\n"}});
        QCOMPARE(powerPCTypeString(), family);
        QCOMPARE(isPowerPC(), arch.startsWith("ppc"));
        QCOMPARE(isG3() + isG4() + isG5(), int(family.size() == 2));
        // A 64-bit program runs on a 64-bit processor, whatever /proc/cpuinfo lists.
        QVERIFY(is64BitCapable());
    }

    // Device-tree firmware stores zero-terminated strings (machineType keeps its bytes),
    // DMI's sysfs files end in a line break; the kernel's name and release come from
    // /proc/sys/kernel (never the real machine's), the distribution's name from os-release.
    // Answers: machine type, model, serial, family, kernel, release, distribution; "(nil)"
    // is a null string (the release is compared as text only).
    void identity_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<QStringList>("answers");
        const QString dt = u"/sys/firmware/devicetree/base/"_s, dmi = u"/sys/class/dmi/id/"_s;
        const QString powerMac = QString::fromUtf8("PowerMac7,3\0", 12), nil = shown({});
        const QString unknown = QString::number(VXModelIdentifierTypeUnknown);
        QTest::newRow("device tree; kernel and distribution described")
            << Files{{dt + u"model"_s, QByteArray("PowerMac7,3\0", 12)},
                     {dt + u"serial-number"_s, QByteArray("G8435\0\0\0", 8)},
                     {u"/proc/sys/kernel/ostype"_s, "Testix\n"},
                     {u"/proc/sys/kernel/osrelease"_s, "4.19.7-fake\n"},
                     {u"/etc/os-release"_s, "NAME=T\nPRETTY_NAME=\"Testix 12 (alpha)\"\n"}}
            << QStringList{powerMac,   u"PowerMac7,3"_s, u"G8435"_s,           unknown,
                           u"Testix"_s, u"4.19.7"_s,      u"Testix 12 (alpha)"_s};
        QTest::newRow("device tree, empty serial; no patch level, empty quoted name")
            << Files{{dt + u"model"_s, QByteArray("PowerMac7,3\0", 12)},
                     {dt + u"serial-number"_s, QByteArray("\0", 1)},
                     {u"/proc/sys/kernel/osrelease"_s, "6.1\n"},
                     {u"/usr/lib/os-release"_s, "PRETTY_NAME=''\n"}}
            << QStringList{powerMac, u"PowerMac7,3"_s, nil, unknown, nil, u""_s, u""_s};
        QTest::newRow("DMI")
            << Files{{dmi + u"product_name"_s, "MacBookAir4,2\n"},
                     {dmi + u"product_serial"_s, "C02F1234\n"}}
            << QStringList{u"MacBookAir4,2"_s, u"MacBookAir4,2"_s, u"C02F1234"_s,
                           QString::number(VXModelIdentifierTypeMacBookAir), nil, u""_s, nil};
    }
    void identity()
    {
        QFETCH(Files, files);
        FakeMachine machine(files);
        QTEST((QStringList{shown(machineType()), shown(modelIdentifier()),
                           shown(computerSerialNumber()), QString::number(modelIdentifierType()),
                           shown(operatingSystemString()), systemVersionString(),
                           shown(humanReadableSystemVersionString())}),
              "answers");
    }
};

QTEST_GUILESS_MAIN(TestHardwareIdentity)
#include "tst_hardwareidentity.moc"
