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

    void rootDiskSize_data()
    {
        QTest::addColumn<QByteArray>("mounts");
        QTest::addColumn<quint64>("size");
        QTest::newRow("partition: the whole disk counts") << mount("8:2", "/dev/sda2") << 512000ull;
        QTest::newRow("disk image") << mount("7:0", "/dev/loop0") << 0ull;
        QTest::newRow("no block device") << mount("0:45", "overlay") << 0ull;
    }
    void rootDiskSize()
    {
        QFETCH(QByteArray, mounts);
        FakeMachine machine({{QStringLiteral("/proc/self/mountinfo"), mounts},
                             {QStringLiteral("/sys/devices/sda/size"), "1000\n"},
                             {QStringLiteral("/sys/devices/sda/sda2/size"), "400\n"},
                             {QStringLiteral("/sys/devices/sda/sda2/partition"), "2\n"},
                             {QStringLiteral("/sys/dev/block/8:2"), "->../../devices/sda/sda2"},
                             {QStringLiteral("/sys/devices/loop0/size"), "2048\n"},
                             {QStringLiteral("/sys/dev/block/7:0"), "->../../devices/loop0"}});
        QTEST(quint64(hddSize()), "size");
    }
};

QTEST_GUILESS_MAIN(TestHardwareIdentity)
#include "tst_hardwareidentity.moc"
