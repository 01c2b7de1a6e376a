#pragma once

#include <Quorvelle/Foundation/PropertyValue.h>
#include <Quorvelle/SystemInformation/SystemInformationExport.h>

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
// The cached values are process-wide and never dropped.
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
QV_SYSTEMINFORMATION_EXPORT QString machineType();
QV_SYSTEMINFORMATION_EXPORT QString humanMachineType();
QV_SYSTEMINFORMATION_EXPORT std::optional<QByteArray> macAddress();
QV_SYSTEMINFORMATION_EXPORT QString macAddressString();
QV_SYSTEMINFORMATION_EXPORT std::uint64_t hddSize();
QV_SYSTEMINFORMATION_EXPORT QString humanReadableRAMSizeString();
QV_SYSTEMINFORMATION_EXPORT std::int64_t processorClockSpeed();
QV_SYSTEMINFORMATION_EXPORT std::int64_t processorClockSpeedInMHz();
QV_SYSTEMINFORMATION_EXPORT std::uint32_t countProcessors();
QV_SYSTEMINFORMATION_EXPORT bool is64BitCapable();
QV_SYSTEMINFORMATION_EXPORT bool isPowerPC();
QV_SYSTEMINFORMATION_EXPORT bool isG3();
QV_SYSTEMINFORMATION_EXPORT bool isG4();
QV_SYSTEMINFORMATION_EXPORT bool isG5();
QV_SYSTEMINFORMATION_EXPORT QString powerPCTypeString();
QV_SYSTEMINFORMATION_EXPORT QString computerSerialNumber();
QV_SYSTEMINFORMATION_EXPORT QString computerName();
QV_SYSTEMINFORMATION_EXPORT QString modelIdentifier();
QV_SYSTEMINFORMATION_EXPORT VXModelIdentifierType
modelIdentifierTypeFromModelIdentifier(const QString &modelIdentifier);
QV_SYSTEMINFORMATION_EXPORT VXModelIdentifierType modelIdentifierType();

// The hardware report tool. Arguments use the report vocabulary ("-xml", "-detailLevel"
// <level>, data-type names such as "SPHardwareDataType"); the runner translates them for
// the tool.
QV_SYSTEMINFORMATION_EXPORT std::optional<QByteArray>
systemProfilerGetDataWithArguments(const QStringList &arguments);
QV_SYSTEMINFORMATION_EXPORT std::optional<QByteArray>
systemProfileOfDataTypes(const QStringList &dataTypes, bool xmlFormat);
QV_SYSTEMINFORMATION_EXPORT QString
stringWithSystemProfileOfDataTypes(const QStringList &dataTypes);
QV_SYSTEMINFORMATION_EXPORT std::optional<PropertyValue::Array>
arrayWithSystemProfileOfDataTypes(const QStringList &dataTypes);
QV_SYSTEMINFORMATION_EXPORT std::optional<PropertyValue::Array>
arrayWithSystemProfileOfLevel(const QString &level);
QV_SYSTEMINFORMATION_EXPORT bool saveSystemProfileOfLevel(const QString &level,
                                                          const QString &path);
QV_SYSTEMINFORMATION_EXPORT QString systemProfileValueForKey(const QString &key);
QV_SYSTEMINFORMATION_EXPORT QString systemProfileValueForKey(const QString &key,
                                                             const QString &defaultValue);

// System version
QV_SYSTEMINFORMATION_EXPORT QString operatingSystemString();
QV_SYSTEMINFORMATION_EXPORT QString humanReadableSystemVersionString();
QV_SYSTEMINFORMATION_EXPORT QString systemVersionString();
QV_SYSTEMINFORMATION_EXPORT bool isSnowLeopardOrGreater();
QV_SYSTEMINFORMATION_EXPORT bool isLionOrGreater();
QV_SYSTEMINFORMATION_EXPORT bool isMountainLionOrGreater();
QV_SYSTEMINFORMATION_EXPORT bool isMavericksOrGreater();

// Installed software
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allApplicationsPathsWithLaunchServices();
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allApplicationsPathsWithSystemProfiler();
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allPreferencePanesPaths();
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allApplicationsPaths();
QV_SYSTEMINFORMATION_EXPORT QString defaultWebBrowser();

} // namespace VXSystemInformation
