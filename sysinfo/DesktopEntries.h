#pragma once

#include <QString>
#include <QStringList>

// The desktop's application database: installed desktop entries and the mime defaults
// among them, as GIO reads them from the XDG data and config directories of the
// environment (user entries hide system ones of the same desktop-file ID, Hidden=true
// removes an entry, mimeapps.list in all its places, mimeinfo.cache as the last resort).
namespace Quorvelle::DesktopEntries {

// The files of every installed application entry.
QStringList applicationFiles();

// The file of the entry that opens the given content type (for a URL scheme,
// "x-scheme-handler/<scheme>"), or a null string when there is none.
QString defaultApplicationFile(const QString &contentType);

} // namespace Quorvelle::DesktopEntries
