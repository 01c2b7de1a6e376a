// The example of the SystemInformation guide (docs/api/systeminformation.md).
#include "Snippets.h"

//! [about]
#include <Quorvelle/Foundation/QuorvelleString.h>
#include <Quorvelle/SystemInformation/VXSystemInformation.h>

QStringList Snippets::aboutThisComputer()
{
    using namespace VXSystemInformation;
    const auto orUnknown = [](const QString &text) {
        return text.isEmpty() ? QStringLiteral("unknown") : text;
    };
    const std::uint64_t disk = hddSize(); // 0: not known
    return {
        QStringLiteral("Model: ") + humanMachineType(),            // "Mac" when not known
        QStringLiteral("Memory: ") + humanReadableRAMSizeString(), // "N/A" when not known
        QStringLiteral("System: ") + orUnknown(humanReadableSystemVersionString()),
        QStringLiteral("Kernel: ") + orUnknown(systemVersionString()),
        QStringLiteral("Disk: ") +
            (disk ? QuorvelleString::stringWithFileSize(disk) : QStringLiteral("unknown")),
        QStringLiteral("Applications: ") + QString::number(allApplicationsPaths().size()),
    };
}
//! [about]
