#pragma once

#include <Quorvelle/Foundation/PropertyValue.h>
#include <Quorvelle/SystemInformation/SystemInformationExport.h>

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

/**
 * \file
 * Questions about the machine and its installed software.
 */

/** The family of a model identifier (modelIdentifierType()). */
enum VXModelIdentifierType : std::uint64_t
{
    VXModelIdentifierTypeUnknown = 0,    ///< Any other identifier, or none.
    VXModelIdentifierTypeIMac = 1,       ///< An identifier starting with "iMac".
    VXModelIdentifierTypeMacMini = 2,    ///< An identifier starting with "Macmini".
    VXModelIdentifierTypeMacBook = 3,    ///< "MacBook", but not "MacBookAir".
    VXModelIdentifierTypeMacBookAir = 4, ///< An identifier starting with "MacBookAir".
};

/**
 * Questions about the machine and its installed software, answered from the running Linux
 * system (sysfs, /proc, /etc, XDG desktop entries, the hardware report tool `lshw`).
 *
 * Conventions: a string result that may be absent is a null QString (isNull()); a byte
 * blob or parsed report that may be absent is std::nullopt (an empty blob is a result).
 * No call throws; every failure turns into the neutral result of its function.
 * The cached values are process-wide and never dropped; an empty answer is not cached, so
 * a later call asks again. The functions may be called from any thread, but the cached
 * ones are meant to be first asked from one thread (the GUI thread) at start-up.
 */
namespace VXSystemInformation {

/** \name Hardware identity */
///@{
/**
 * The machine's model as the firmware stores it (device-tree "model", else the DMI product
 * name); a null QString when the firmware does not tell.
 */
QV_SYSTEMINFORMATION_EXPORT QString machineType();
/**
 * The model's name for people, from the hardware report ("Model Name"), "Mac" when the
 * report has none. Cached.
 */
QV_SYSTEMINFORMATION_EXPORT QString humanMachineType();
/**
 * The six bytes of the primary network port's hardware address (the hardware-backed
 * interface of lowest index); std::nullopt when there is none. Cached.
 */
QV_SYSTEMINFORMATION_EXPORT std::optional<QByteArray> macAddress();
/** macAddress() as "aa:bb:cc:dd:ee:ff" in lower case; a null QString when there is none. */
QV_SYSTEMINFORMATION_EXPORT QString macAddressString();
/**
 * Size in bytes of the physical disk that holds the root file system (through partitions,
 * LVM, LUKS and RAID); 0 for a disk image, an overlay or tmpfs, or when unknown.
 */
QV_SYSTEMINFORMATION_EXPORT std::uint64_t hddSize();
/**
 * The installed memory as the hardware report states it ("16GiB"); "N/A" when the report
 * has none. Cached.
 */
QV_SYSTEMINFORMATION_EXPORT QString humanReadableRAMSizeString();
/**
 * The processor's nominal clock in Hz (the clock it is sold with, not a turbo maximum); 0
 * when unknown.
 */
QV_SYSTEMINFORMATION_EXPORT std::int64_t processorClockSpeed();
/** processorClockSpeed() in whole MHz; 0 when unknown. */
QV_SYSTEMINFORMATION_EXPORT std::int64_t processorClockSpeedInMHz();
/** The number of processors (logical CPUs) the machine can bring up; 0 when unknown. */
QV_SYSTEMINFORMATION_EXPORT std::uint32_t countProcessors();
/** Whether the processor runs 64-bit code (always true in a 64-bit program). */
QV_SYSTEMINFORMATION_EXPORT bool is64BitCapable();
/** Whether the machine is a PowerPC. */
QV_SYSTEMINFORMATION_EXPORT bool isPowerPC();
/** Whether the processor is a PowerPC G3 (750 family); false on other machines. */
QV_SYSTEMINFORMATION_EXPORT bool isG3();
/** Whether the processor is a PowerPC G4 (7400 and 7450 families); false on other machines. */
QV_SYSTEMINFORMATION_EXPORT bool isG4();
/** Whether the processor is a PowerPC G5 (970 family); false on other machines. */
QV_SYSTEMINFORMATION_EXPORT bool isG5();
/** "G3", "G4", "G5", "PowerPC pre-G3" for another PowerPC, or "Non-PowerPC". */
QV_SYSTEMINFORMATION_EXPORT QString powerPCTypeString();
/**
 * The machine's serial number; a null QString when the firmware does not tell (on most PCs
 * only root may read it).
 */
QV_SYSTEMINFORMATION_EXPORT QString computerSerialNumber();
/**
 * The computer's name as the user set it (the pretty host name), else the host name; a
 * null QString when neither is set.
 */
QV_SYSTEMINFORMATION_EXPORT QString computerName();
/**
 * The model identifier (DMI product name, else device-tree model); a null QString when the
 * firmware does not tell.
 */
QV_SYSTEMINFORMATION_EXPORT QString modelIdentifier();
/** The family of a model identifier, by its prefix in any case. */
QV_SYSTEMINFORMATION_EXPORT VXModelIdentifierType
modelIdentifierTypeFromModelIdentifier(const QString &modelIdentifier);
/** The family of this machine's modelIdentifier(). */
QV_SYSTEMINFORMATION_EXPORT VXModelIdentifierType modelIdentifierType();
///@}

/**
 * \name Hardware report
 * The hardware report tool (`lshw`), run anew on each call (it may take a second). Arguments
 * use the report vocabulary ("-xml", "-detailLevel" `<level>`, data-type names such as
 * "SPHardwareDataType"); the runner translates them for the tool.
 */
///@{
/**
 * The tool's output for the arguments; std::nullopt when the tool cannot be started (a
 * line in the system log says why).
 */
QV_SYSTEMINFORMATION_EXPORT std::optional<QByteArray>
systemProfilerGetDataWithArguments(const QStringList &arguments);
/**
 * The report on the data types, as text or as a property list (XML); std::nullopt when the
 * tool cannot be started.
 */
QV_SYSTEMINFORMATION_EXPORT std::optional<QByteArray>
systemProfileOfDataTypes(const QStringList &dataTypes, bool xmlFormat);
/** The text report on the data types; a null QString when there is none or it is not UTF-8. */
QV_SYSTEMINFORMATION_EXPORT QString
stringWithSystemProfileOfDataTypes(const QStringList &dataTypes);
/**
 * The report on the data types as an array with one dictionary per data type
 * ("_dataType", "_items"); std::nullopt when there is no readable report.
 */
QV_SYSTEMINFORMATION_EXPORT std::optional<PropertyValue::Array>
arrayWithSystemProfileOfDataTypes(const QStringList &dataTypes);
/**
 * The whole report at a detail level as an array; std::nullopt when it is not a property
 * list (on Linux the tool's text report never is).
 */
QV_SYSTEMINFORMATION_EXPORT std::optional<PropertyValue::Array>
arrayWithSystemProfileOfLevel(const QString &level);
/** Saves the whole report at a detail level as XML to the file; false when that fails. */
QV_SYSTEMINFORMATION_EXPORT bool saveSystemProfileOfLevel(const QString &level,
                                                          const QString &path);
/**
 * The value after the label (such as "Model Name: ") in the hardware report, up to the
 * line's end; "N/A" when the report or the label is missing.
 */
QV_SYSTEMINFORMATION_EXPORT QString systemProfileValueForKey(const QString &key);
/**
 * \overload
 * Gives `defaultValue` when the report or the label is missing.
 */
QV_SYSTEMINFORMATION_EXPORT QString systemProfileValueForKey(const QString &key,
                                                             const QString &defaultValue);
///@}

/** \name System version */
///@{
/** The kernel's name ("Linux"). */
QV_SYSTEMINFORMATION_EXPORT QString operatingSystemString();
/**
 * The distribution's name and version for people (os-release's PRETTY_NAME, "Debian
 * GNU/Linux 12 (bookworm)"); a null QString when it is not set.
 */
QV_SYSTEMINFORMATION_EXPORT QString humanReadableSystemVersionString();
/**
 * The kernel release as major.minor.patch ("6.1.0"). Cached; a null QString (not cached)
 * when the release does not start with three numbers.

 */
QV_SYSTEMINFORMATION_EXPORT QString systemVersionString();
///@{
/**
 * Whether the system is at least the named release of the suite's original platform; true
 * on every system the kit runs on (they exist for code shared with that platform).
 */
QV_SYSTEMINFORMATION_EXPORT bool isSnowLeopardOrGreater();
QV_SYSTEMINFORMATION_EXPORT bool isLionOrGreater();
QV_SYSTEMINFORMATION_EXPORT bool isMountainLionOrGreater();
QV_SYSTEMINFORMATION_EXPORT bool isMavericksOrGreater();
///@}
///@}

/** \name Installed software */
///@{
/**
 * The desktop-entry files of every installed application (XDG rules: the user's entries
 * hide the system's, hidden entries and entries whose program is missing are left out);
 * empty when there are none.
 */
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allApplicationsPathsWithLaunchServices();
/** Applications the hardware report lists; empty on Linux, whose tool lists none. */
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allApplicationsPathsWithSystemProfiler();
/**
 * Preference-pane bundles in the user's, the machine's, the network's and the system's
 * Library/PreferencePanes folders; empty when there are none (the usual case on Linux).
 */
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allPreferencePanesPaths();
/**
 * allApplicationsPathsWithLaunchServices(), or, when that is empty, the ".app" packages in
 * the user's, the machine's and the system's Applications folders.
 */
QV_SYSTEMINFORMATION_EXPORT QSet<QString> allApplicationsPaths();
/**
 * The desktop-entry name of the default web browser (the handler of http links, "firefox"
 * for firefox.desktop); a null QString when there is none.
 */
QV_SYSTEMINFORMATION_EXPORT QString defaultWebBrowser();
///@}

} // namespace VXSystemInformation
