#pragma once

#include "PropertyValue.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

// Questions about the machine and its installed software, answered from the running Linux
// system (sysfs, /proc, /etc, XDG desktop entries, the hardware report tool).
//
// Conventions: a string result that may be absent is a null QString (isNull()); a byte
// blob or parsed report that may be absent is std::nullopt (an empty blob is a result).
// No call throws; every failure turns into the neutral result of its function.
// The cached values are process-wide and never dropped (Seam::resetCaches() aside).
enum VXModelIdentifierType : std::uint64_t
{
    VXModelIdentifierTypeUnknown = 0,
    VXModelIdentifierTypeIMac = 1,
    VXModelIdentifierTypeMacMini = 2,
    VXModelIdentifierTypeMacBook = 3,
    VXModelIdentifierTypeMacBookAir = 4,
};

namespace VXSystemInformation {

// Hardware identity
QString machineType();
QString humanMachineType();
std::optional<QByteArray> macAddress();
QString macAddressString();
std::uint64_t hddSize();
QString humanReadableRAMSizeString();
std::int64_t processorClockSpeed();
std::int64_t processorClockSpeedInMHz();
std::uint32_t countProcessors();
bool is64BitCapable();
bool isPowerPC();
bool isG3();
bool isG4();
bool isG5();
QString powerPCTypeString();
QString computerSerialNumber();
QString computerName();
QString modelIdentifier();
VXModelIdentifierType modelIdentifierTypeFromModelIdentifier(const QString &modelIdentifier);
VXModelIdentifierType modelIdentifierType();

// The hardware report tool. Arguments use the report vocabulary ("-xml", "-detailLevel"
// <level>, data-type names such as "SPHardwareDataType"); the runner translates them for
// the tool (see ReportToolAdapter).
std::optional<QByteArray> systemProfilerGetDataWithArguments(const QStringList &arguments);
std::optional<QByteArray> systemProfileOfDataTypes(const QStringList &dataTypes, bool xmlFormat);
QString stringWithSystemProfileOfDataTypes(const QStringList &dataTypes);
std::optional<PropertyValue::Array> arrayWithSystemProfileOfDataTypes(const QStringList &dataTypes);
std::optional<PropertyValue::Array> arrayWithSystemProfileOfLevel(const QString &level);
bool saveSystemProfileOfLevel(const QString &level, const QString &path);
QString systemProfileValueForKey(const QString &key);
QString systemProfileValueForKey(const QString &key, const QString &defaultValue);

// System version
QString operatingSystemString();
QString humanReadableSystemVersionString();
QString systemVersionString();
bool isSnowLeopardOrGreater();
bool isLionOrGreater();
bool isMountainLionOrGreater();
bool isMavericksOrGreater();

// Installed software
QSet<QString> allApplicationsPathsWithLaunchServices();
QSet<QString> allApplicationsPathsWithSystemProfiler();
QSet<QString> allPreferencePanesPaths();
QSet<QString> allApplicationsPaths();
QString defaultWebBrowser();

// Where the queries look. Only tests change these, to give the queries a fake machine;
// the program itself never calls them. Not thread-safe: set before querying.
namespace Seam {
// Prefix put before every system path read (/sys, /proc, /etc, /usr/share, /Applications,
// /Library, ...). Empty (the default) means the real root. The user's own folders still come
// from $HOME and the XDG_* variables, which a test sets itself.
void setRoot(const QString &root);
QString root();
// The report tool's program; default "/usr/bin/lshw".
void setReportToolPath(const QString &path);
QString reportToolPath();
// Forget every cached answer, so a test can ask a different fake machine.
void resetCaches();
// Real machine again, caches cleared.
void reset();
} // namespace Seam

} // namespace VXSystemInformation
