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

int powerPCSubtype(const QByteArray &cpuinfo)
{
    for (const QByteArray &line : cpuinfo.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || line.left(colon).trimmed() != "cpu")
            continue;
        QByteArray model = line.mid(colon + 1).trimmed();
        // The kernel writes the 970 family as "PPC970FX" and the others bare ("7447A").
        if (model.startsWith("PPC"))
            model = model.mid(3);
        if (model.startsWith("740") || model.startsWith("750"))
            return 9;
        if (model.startsWith("7400") || model.startsWith("7410"))
            return 10;
        if (model.startsWith("744") || model.startsWith("745"))
            return 11;
        if (model.startsWith("970"))
            return 100;
        return 0;
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
    if (source.startsWith("/dev/")) {
        const QString name = QString::fromUtf8(source.mid(source.lastIndexOf('/') + 1));
        const QString byName = Host::path(QStringLiteral("/sys/class/block/") + name);
        if (!name.isEmpty() && QFileInfo::exists(byName))
            return QFileInfo(byName).canonicalFilePath();
    }
    return QString();
}

qint64 clockFromFirmware()
{
    const QString maxKHz =
        Host::readLine(QStringLiteral("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq"));
    bool ok = false;
    const qint64 kHz = maxKHz.trimmed().toLongLong(&ok);
    if (ok && kHz > 0)
        return kHz * 1000;
    const std::optional<QByteArray> cpuinfo = Host::readFile(QStringLiteral("/proc/cpuinfo"));
    if (!cpuinfo)
        return 0;
    for (const QByteArray &line : cpuinfo->split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || line.left(colon).trimmed() != "cpu MHz")
            continue;
        const double mhz = line.mid(colon + 1).trimmed().toDouble(&ok);
        if (ok && mhz > 0 && mhz < 1e9)
            return std::llround(mhz * 1e6);
        break;
    }
    return 0;
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
    // A partition's directory sits inside its disk's; the disk is the whole medium.
    const QString whole = QFileInfo::exists(device + QStringLiteral("/partition"))
                              ? QFileInfo(device).absolutePath()
                              : device;
    // A root on a loop device lives in a disk image, whose size says nothing about the disk.
    if (QFileInfo(whole).fileName().startsWith(QLatin1String("loop")) ||
        QFileInfo::exists(whole + QStringLiteral("/loop")))
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
    const qint64 hz = clockFromFirmware();
    if (hz <= 0)
        return 0;
    // The answer is a signed 32-bit quantity, widened with its sign.
    return std::int64_t(std::int32_t(std::uint32_t(std::uint64_t(hz))));
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
    return isPowerPCOfSubtypes({9});
}
bool isG4()
{
    return isPowerPCOfSubtypes({10, 11});
}
bool isG5()
{
    return isPowerPCOfSubtypes({100});
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
