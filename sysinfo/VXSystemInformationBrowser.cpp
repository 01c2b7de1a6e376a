// The default web browser.
#include "VXSystemInformation.h"

#include "DesktopEntries.h"
#include "VXLog.h"

#include <QUrl>

#include <cerrno>

namespace VXSystemInformation {

QString defaultWebBrowser()
{
    const QString entry =
        Quorvelle::DesktopEntries::defaultApplicationFile(QStringLiteral("x-scheme-handler/http"));
    if (entry.isNull()) {
        VXLog(
            QStringLiteral("Error while trying to get default Web browser: %1").arg(long(ENOENT)));
        return QString();
    }
    // The name is taken from the entry's URL text, so blanks stay percent-encoded.
    const QStringList components =
        QUrl::fromLocalFile(entry).toString(QUrl::FullyEncoded).split(QLatin1Char('/'));
    QString last;
    for (const QString &component : components) {
        const qsizetype dot = component.lastIndexOf(QLatin1Char('.'));
        if (dot > 0 && component.mid(dot + 1) == QLatin1String("desktop"))
            last = component.left(dot);
    }
    return last.isEmpty() ? QString() : last;
}

} // namespace VXSystemInformation
