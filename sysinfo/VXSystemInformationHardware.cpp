// Hardware identity, read from sysfs (DMI, device tree, block and network classes), /proc
// and the hardware report tool.
#include "VXSystemInformation.h"
#include "VXSystemInformationHost.h"

#include "VXLog.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <limits>
#include <sys/utsname.h>

namespace VXSystemInformation {
namespace {

const QString kDeviceTree = QStringLiteral("/sys/firmware/devicetree/base");
const QString kDmi = QStringLiteral("/sys/class/dmi/id");

// sysfs ends attribute text with a line break that is not part of the firmware's value.
QByteArray withoutLineBreak(QByteArray bytes)
{
    if (bytes.endsWith('\n'))
        bytes.chop(1);
    return bytes;
}

// Device-tree string properties carry their terminating zero byte.
QString zeroTerminated(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    return QString::fromUtf8(end < 0 ? bytes : bytes.left(end));
}

QString nonEmpty(const QString &s)
{
    return s.isEmpty() ? QString() : s;
}

// The five diagnostics of the address lookup go to standard output, unbuffered from the
// caller's point of view.
void printDiagnostic(const char *format, int status)
{
    std::printf(format, status);
    std::fflush(stdout);
}

std::optional<QByteArray> parseHardwareAddress(const QByteArray &text)
{
    const QByteArray trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    QByteArray bytes;
    for (const QByteArray &part : trimmed.split(':')) {
        bool ok = false;
        const uint octet = part.toUInt(&ok, 16);
        if (!ok || part.size() > 2 || octet > 0xff)
            return std::nullopt;
        bytes.append(char(octet));
    }
    return bytes;
}

struct HostBasicInfo
{
    int cpuType = 0;
    int cpuSubtype = 0;
};

constexpr int kCpuTypePowerPC = 18;

constexpr int kSubtypePowerPC750 = 9;
constexpr int kSubtypePowerPC7400 = 10;
constexpr int kSubtypePowerPC7450 = 11;
constexpr int kSubtypePowerPC970 = 100;

// The processor names the kernel prints on the "cpu" line of /proc/cpuinfo, by family. The
// names are matched whole: "7400" is a G4 while "740/750" is a G3, and "745/755" is a G3
// while "7455" is a G4. Any other PowerPC (601, 603e, POWER, e500...) has no family here.
int powerPCSubtypeOfName(const QByteArray &name)
{
    static const struct
    {
        const char *name;
        int subtype;
    } names[] = {
        {"740/750", kSubtypePowerPC750},  {"750", kSubtypePowerPC750},
        {"750CX", kSubtypePowerPC750},    {"750CXe", kSubtypePowerPC750},
        {"750CL", kSubtypePowerPC750},    {"750FX", kSubtypePowerPC750},
        {"750GX", kSubtypePowerPC750},    {"745/755", kSubtypePowerPC750},
        {"7400", kSubtypePowerPC7400},    {"7400 (1.1)", kSubtypePowerPC7400},
        {"7410", kSubtypePowerPC7400},    {"7441", kSubtypePowerPC7450},
        {"7445", kSubtypePowerPC7450},    {"7447", kSubtypePowerPC7450},
        {"7447A", kSubtypePowerPC7450},   {"7447/7457", kSubtypePowerPC7450},
        {"7448", kSubtypePowerPC7450},    {"7450", kSubtypePowerPC7450},
        {"7451", kSubtypePowerPC7450},    {"7455", kSubtypePowerPC7450},
        {"7457", kSubtypePowerPC7450},    {"PPC970", kSubtypePowerPC970},
        {"PPC970FX", kSubtypePowerPC970}, {"PPC970MP", kSubtypePowerPC970},
        {"PPC970GX", kSubtypePowerPC970},
    };
    for (const auto &entry : names) {
        if (name == entry.name)
            return entry.subtype;
    }
    return 0;
}

int powerPCSubtype(const QByteArray &cpuinfo)
{
    for (const QByteArray &line : cpuinfo.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || line.left(colon).trimmed() != "cpu")
            continue;
        // The name may be followed by features: "7447A, altivec supported".
        QByteArray name = line.mid(colon + 1);
        const qsizetype comma = name.indexOf(',');
        if (comma >= 0)
            name.truncate(comma);
        return powerPCSubtypeOfName(name.trimmed());
    }
    return 0;
}

// The processor's architecture (from the kernel) and, on PowerPC, its model from
// /proc/cpuinfo. Fails when the architecture cannot be learnt.
std::optional<HostBasicInfo> hostBasicInfo()
{
    QString arch = Host::readLine(QStringLiteral("/proc/sys/kernel/arch"));
    if (arch.isNull() && Seam::root().isEmpty()) {
        struct utsname names;
        if (uname(&names) == 0)
            arch = QString::fromUtf8(names.machine);
    }
    if (arch.isEmpty())
        return std::nullopt;
    HostBasicInfo info;
    if (arch.startsWith(QLatin1String("ppc")) || arch.startsWith(QLatin1String("powerpc"))) {
        info.cpuType = kCpuTypePowerPC;
        info.cpuSubtype =
            powerPCSubtype(Host::readFile(QStringLiteral("/proc/cpuinfo")).value_or(QByteArray()));
    }
    return info;
}

bool isPowerPCOfSubtypes(std::initializer_list<int> subtypes)
{
    const std::optional<HostBasicInfo> info = hostBasicInfo();
    if (!info || info->cpuType != kCpuTypePowerPC)
        return false;
    return subtypes.size() == 0 ||
           std::find(subtypes.begin(), subtypes.end(), info->cpuSubtype) != subtypes.end();
}

// The block device behind the root mount: by its device number, else by its source name
// (file systems such as btrfs report an anonymous device number).
QString rootBlockDeviceDirectory()
{
    const std::optional<QByteArray> mountinfo =
        Host::readFile(QStringLiteral("/proc/self/mountinfo"));
    if (!mountinfo)
        return QString();
    QByteArray deviceNumber, source;
    for (const QByteArray &line : mountinfo->split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype separator = fields.indexOf("-");
        if (fields.size() < 5 || fields.at(4) != "/" || separator < 0 ||
            separator + 2 >= fields.size())
            continue;
        // A later line mounted over "/" hides the earlier ones.
        deviceNumber = fields.at(2);
        source = fields.at(separator + 2);
    }
    if (!deviceNumber.isEmpty() && !deviceNumber.startsWith("0:")) {
        const QString byNumber =
            Host::path(QStringLiteral("/sys/dev/block/") + QString::fromLatin1(deviceNumber));
        if (QFileInfo::exists(byNumber))
            return QFileInfo(byNumber).canonicalFilePath();
    }
    if (!source.startsWith("/dev/"))
        return QString();
    // The source names the device node, often through a link (/dev/mapper/root,
    // /dev/disk/by-uuid/...); the device's own name is what sysfs lists.
    QString name = QFileInfo(Host::path(QString::fromUtf8(source))).canonicalFilePath();
    name = name.isEmpty() ? QString::fromUtf8(source.mid(source.lastIndexOf('/') + 1))
                          : QFileInfo(name).fileName();
    const QString byName = Host::path(QStringLiteral("/sys/class/block/") + name);
    if (!name.isEmpty() && QFileInfo::exists(byName))
        return QFileInfo(byName).canonicalFilePath();
    // A mapped device known only by its mapper name: sysfs keeps that name in dm/name.
    if (source.startsWith("/dev/mapper/")) {
        const QString mapped = QString::fromUtf8(source.mid(12));
        const QString classDir = Host::path(QStringLiteral("/sys/class/block"));
        for (const QString &device : QDir(classDir).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            if (Host::readLine(QStringLiteral("/sys/class/block/") + device +
                               QStringLiteral("/dm/name")) == mapped)
                return QFileInfo(classDir + QLatin1Char('/') + device).canonicalFilePath();
        }
    }
    return QString();
}

// The physical disk under a block device: a partition lies in its disk; a mapped or
// assembled device (LVM, encryption, software RAID) lies on the devices in its slaves/
// folder, of which the first by name is followed. Gives a null string for a disk image
// (loop device) anywhere on the way, and for chains that do not end.
QString physicalDisk(QString device)
{
    for (int step = 0; step < 32; ++step) {
        if (QFileInfo::exists(device + QStringLiteral("/partition")))
            device = QFileInfo(device).absolutePath();
        if (QFileInfo(device).fileName().startsWith(QLatin1String("loop")) ||
            QFileInfo::exists(device + QStringLiteral("/loop")))
            return QString();
        const QStringList slaves =
            QDir(device + QStringLiteral("/slaves"))
                .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System, QDir::Name);
        if (slaves.isEmpty())
            return device;
        device =
            QFileInfo(device + QStringLiteral("/slaves/") + slaves.first()).canonicalFilePath();
        if (device.isEmpty())
            return QString();
    }
    return QString();
}

// A positive whole number in the first line of a sysfs file, or 0.
qint64 sysfsNumber(const QString &path)
{
    bool ok = false;
    const qint64 value = Host::readLine(path).trimmed().toLongLong(&ok);
    return ok && value > 0 ? value : 0;
}

// The clock in Hz from a /proc/cpuinfo value with its unit: "2.60GHz", "1250.000000MHz", or
// a bare number of MHz.
qint64 clockFromText(QByteArray text)
{
    text = text.trimmed();
    double scale = 1e6;
    if (text.endsWith("GHz")) {
        scale = 1e9;
        text.chop(3);
    } else if (text.endsWith("MHz")) {
        text.chop(3);
    }
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !(value > 0) || value * scale > 1e15)
        return 0;
    return std::llround(value * scale);
}

// The processor's nominal clock, the one it is sold with, not the turbo maximum it reaches
// for short bursts on some cores. Sources from the most to the least exact.
qint64 clockFromFirmware()
{
    const QString cpu0 = QStringLiteral("/sys/devices/system/cpu/cpu0");
    // Intel's P-state driver states the nominal clock; its cpuinfo_max_freq is the turbo.
    if (const qint64 kHz = sysfsNumber(cpu0 + QStringLiteral("/cpufreq/base_frequency")))
        return kHz * 1000;
    // Firmware with collaborative performance control (AMD, ARM servers) states it in MHz.
    if (const qint64 mHz = sysfsNumber(cpu0 + QStringLiteral("/acpi_cppc/nominal_freq")))
        return mHz * 1000000;
    // The ACPI driver's highest state is the nominal clock, except that it lists turbo as a
    // state 1 MHz above nominal.
    const QList<QByteArray> states =
        Host::readLine(cpu0 + QStringLiteral("/cpufreq/scaling_available_frequencies"))
            .toLatin1()
            .simplified()
            .split(' ');
    if (states.size() >= 2 && states.at(0).toLongLong() - states.at(1).toLongLong() == 1000 &&
        states.at(1).toLongLong() > 0)
        return states.at(1).toLongLong() * 1000;
    if (const qint64 kHz = sysfsNumber(cpu0 + QStringLiteral("/cpufreq/cpuinfo_max_freq")))
        return kHz * 1000;
    // Without a frequency driver (virtual machines, PowerPC): the nominal clock in the
    // processor's brand name ("... CPU @ 2.60GHz"), else the reported clock of the first one.
    const std::optional<QByteArray> cpuinfo = Host::readFile(QStringLiteral("/proc/cpuinfo"));
    if (!cpuinfo)
        return 0;
    qint64 reported = 0;
    for (const QByteArray &line : cpuinfo->split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArray key = line.left(colon).trimmed();
        const QByteArray value = line.mid(colon + 1);
        if (key == "model name") {
            const qsizetype at = value.lastIndexOf('@');
            if (at >= 0 && value.trimmed().endsWith("GHz"))
                return clockFromText(value.mid(at + 1));
        } else if ((key == "cpu MHz" || key == "clock") && reported == 0) {
            reported = clockFromText(value);
        } else if (key == "processor" && reported != 0) {
            break; // the first processor has been described in full
        }
    }
    return reported;
}

} // namespace

QString machineType()
{
    // Firmware with a device tree names the model there, byte for byte (its terminating
    // zero included); PC firmware says it in DMI.
    if (const auto model = Host::readFile(kDeviceTree + QStringLiteral("/model")))
        return QString::fromUtf8(*model);
    if (const auto product = Host::readFile(kDmi + QStringLiteral("/product_name")))
        return QString::fromUtf8(withoutLineBreak(*product));
    return QString();
}

QString humanMachineType()
{
    QString &cache = Host::caches().humanMachineType;
    // Only a non-empty answer is kept; the default text counts as one.
    if (cache.isEmpty())
        cache = systemProfileValueForKey(QStringLiteral("Model Name: "), QStringLiteral("Mac"));
    return cache;
}

QString humanReadableRAMSizeString()
{
    QString &cache = Host::caches().humanReadableRAMSizeString;
    if (cache.isEmpty())
        cache = systemProfileValueForKey(QStringLiteral("Memory: "));
    return cache;
}

std::optional<QByteArray> macAddress()
{
    std::optional<QByteArray> &cache = Host::caches().macAddress;
    if (cache)
        return cache;

    const QString netPath = Host::path(QStringLiteral("/sys/class/net"));
    DIR *dir = opendir(QFile::encodeName(netPath).constData());
    if (!dir) {
        printDiagnostic("IOMasterPort returned %d\n", errno);
        return std::nullopt;
    }
    QStringList names;
    int listingError = 0;
    for (;;) {
        errno = 0;
        const dirent *entry = readdir(dir);
        if (!entry) {
            listingError = errno;
            break;
        }
        const QString name = QFile::decodeName(entry->d_name);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names.append(name);
    }
    closedir(dir);
    if (listingError != 0) {
        printDiagnostic("IOServiceGetMatchingServices returned %d\n", listingError);
        return std::nullopt;
    }

    // The primary port: the hardware-backed interface the kernel registered first. Virtual
    // interfaces (loopback, bridges, tunnels) have no device behind them.
    QString primary;
    qint64 lowestIndex = 0;
    for (const QString &name : std::as_const(names)) {
        const QString interfaceDir = netPath + QLatin1Char('/') + name;
        if (!QFileInfo(interfaceDir + QStringLiteral("/device")).isSymLink() &&
            !QFileInfo(interfaceDir + QStringLiteral("/device")).isDir())
            continue;
        bool ok = false;
        const qint64 index =
            Host::readLine(QStringLiteral("/sys/class/net/") + name + QStringLiteral("/ifindex"))
                .trimmed()
                .toLongLong(&ok);
        if (ok && (primary.isNull() || index < lowestIndex)) {
            primary = name;
            lowestIndex = index;
        }
    }

    std::optional<QByteArray> value;
    if (!primary.isNull()) {
        const QByteArray device =
            QFile::encodeName(netPath + QLatin1Char('/') + primary + QStringLiteral("/device"));
        char resolved[PATH_MAX];
        if (realpath(device.constData(), resolved)) {
            const auto text = Host::readFile(QStringLiteral("/sys/class/net/") + primary +
                                             QStringLiteral("/address"));
            if (text)
                value = parseHardwareAddress(*text);
        } else {
            printDiagnostic("IORegistryEntryGetParentEntry returned %d\n", errno);
        }
    }
    cache = value;
    return value;
}

QString macAddressString()
{
    QString &cache = Host::caches().macAddressString;
    if (!cache.isEmpty())
        return cache;
    const std::optional<QByteArray> address = macAddress();
    if (!address || address->size() != 6)
        return QString();
    const auto *b = reinterpret_cast<const unsigned char *>(address->constData());
    cache = QString::asprintf("%02x:%02x:%02x:%02x:%02x:%02x", b[0], b[1], b[2], b[3], b[4], b[5]);
    return cache;
}

std::uint64_t hddSize()
{
    const QString device = rootBlockDeviceDirectory();
    if (device.isEmpty())
        return 0;
    const QString whole = physicalDisk(device);
    if (whole.isEmpty())
        return 0;
    QFile sizeFile(whole + QStringLiteral("/size"));
    if (!sizeFile.open(QIODevice::ReadOnly))
        return 0;
    bool ok = false;
    const quint64 sectors = sizeFile.readAll().trimmed().toULongLong(&ok);
    // sysfs counts 512-byte sectors whatever the device's own block size.
    if (!ok || sectors > std::numeric_limits<std::uint64_t>::max() / 512)
        return 0;
    return sectors * 512;
}

std::int64_t processorClockSpeed()
{
    // Hz in 64 bits: today's clocks are well past what 32 bits hold.
    return clockFromFirmware();
}

std::int64_t processorClockSpeedInMHz()
{
    return processorClockSpeed() / 1000000;
}

std::uint32_t countProcessors()
{
    // "possible" lists every processor the host can bring up, as ranges ("0-3,6").
    const QString possible = Host::readLine(QStringLiteral("/sys/devices/system/cpu/possible"));
    std::uint32_t count = 0;
    for (const QString &range : possible.trimmed().split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QStringList ends = range.split(QLatin1Char('-'));
        bool okFirst = false, okLast = true;
        const uint first = ends.first().toUInt(&okFirst);
        const uint last = ends.size() == 2 ? ends.at(1).toUInt(&okLast) : first;
        if (!okFirst || !okLast || ends.size() > 2 || last < first)
            return 0;
        count += last - first + 1;
    }
    return count;
}

bool is64BitCapable()
{
    if constexpr (sizeof(void *) >= 8) {
        return true;
    } else {
        int &cached = Host::caches().cpu64BitCapable;
        if (cached == -1) {
            const QString path = Host::path(QStringLiteral("/proc/cpuinfo"));
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly)) {
                VXLog(QStringLiteral("sysctl error: %1").arg(errno));
                cached = 0;
            } else {
                // x86 names long mode "lm" among the processor's flags.
                cached = 0;
                for (const QByteArray &line : file.readAll().split('\n')) {
                    if (line.startsWith("flags") && line.split(' ').contains("lm")) {
                        cached = 1;
                        break;
                    }
                }
            }
        }
        return cached != 0;
    }
}

bool isPowerPC()
{
    return isPowerPCOfSubtypes({});
}
bool isG3()
{
    return isPowerPCOfSubtypes({kSubtypePowerPC750});
}
bool isG4()
{
    return isPowerPCOfSubtypes({kSubtypePowerPC7400, kSubtypePowerPC7450});
}
bool isG5()
{
    return isPowerPCOfSubtypes({kSubtypePowerPC970});
}

QString powerPCTypeString()
{
    if (isG3())
        return QStringLiteral("G3");
    if (isG4())
        return QStringLiteral("G4");
    if (isG5())
        return QStringLiteral("G5");
    if (isPowerPC())
        return QStringLiteral("PowerPC pre-G3");
    return QStringLiteral("Non-PowerPC");
}

QString computerSerialNumber()
{
    if (const auto serial = Host::readFile(kDeviceTree + QStringLiteral("/serial-number")))
        return nonEmpty(zeroTerminated(*serial));
    // Only root may read the DMI serial; for everyone else the firmware does not tell.
    if (const auto serial = Host::readFile(kDmi + QStringLiteral("/product_serial")))
        return nonEmpty(QString::fromUtf8(withoutLineBreak(*serial)).trimmed());
    return QString();
}

QString computerName()
{
    // The name people gave the machine, when there is one, else its host name.
    if (const auto info = Host::readFile(QStringLiteral("/etc/machine-info"))) {
        const QString pretty = Host::shellVariable(*info, "PRETTY_HOSTNAME");
        if (!pretty.isEmpty())
            return pretty;
    }
    return nonEmpty(Host::readLine(QStringLiteral("/proc/sys/kernel/hostname")));
}

QString modelIdentifier()
{
    std::optional<QByteArray> bytes = Host::readFile(kDmi + QStringLiteral("/product_name"));
    if (bytes)
        bytes = withoutLineBreak(*bytes);
    else
        bytes = Host::readFile(kDeviceTree + QStringLiteral("/model"));
    if (!bytes || bytes->isEmpty())
        return QString();
    return zeroTerminated(*bytes);
}

VXModelIdentifierType modelIdentifierTypeFromModelIdentifier(const QString &identifier)
{
    const QString lower = identifier.toLower();
    // "macbookair" before its own prefix "macbook".
    if (lower.startsWith(QLatin1String("macbookair")))
        return VXModelIdentifierTypeMacBookAir;
    if (lower.startsWith(QLatin1String("macbook")))
        return VXModelIdentifierTypeMacBook;
    if (lower.startsWith(QLatin1String("macmini")))
        return VXModelIdentifierTypeMacMini;
    if (lower.startsWith(QLatin1String("imac")))
        return VXModelIdentifierTypeIMac;
    return VXModelIdentifierTypeUnknown;
}

VXModelIdentifierType modelIdentifierType()
{
    return modelIdentifierTypeFromModelIdentifier(modelIdentifier());
}

} // namespace VXSystemInformation
