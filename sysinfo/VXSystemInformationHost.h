#pragma once

#include "VXSystemInformationSeam.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

// Shared by the two halves of VXSystemInformation: where system files are read from, and
// the process-wide caches.
namespace VXSystemInformation::Host {

// A system path under the current root (see Seam::setRoot).
QString path(const QString &absolutePath);
// The file's bytes, or std::nullopt when it cannot be read.
std::optional<QByteArray> readFile(const QString &absolutePath);
// The file's first line without its line break, or a null string.
QString readLine(const QString &absolutePath);
// The value of KEY= in an os-release style file (quotes removed), or a null string.
QString shellVariable(const QByteArray &text, const QByteArray &key);

struct Caches
{
    QString humanMachineType;
    std::optional<QByteArray> macAddress;
    QString macAddressString;
    QString humanReadableRAMSizeString;
    QString systemVersionString;
    int cpu64BitCapable = -1;
};
Caches &caches();

} // namespace VXSystemInformation::Host
