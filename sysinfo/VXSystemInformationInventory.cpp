// The inventory of installed applications and preference panes.
#include "VXSystemInformation.h"
#include "VXSystemInformationHost.h"

#include "DesktopEntries.h"
#include "VXSearchPath.h"

#include <QDir>
#include <QFileInfo>

namespace VXSystemInformation {
namespace {

// The standard folders of a kind, the user's in the home folder and the others under the
// root the queries read.
QStringList searchPathForDirectoriesInDomains(int directory, int domainMask)
{
    QStringList paths;
    for (const QString &path : NSSearchPathForDirectoriesInDomains(directory, domainMask, false))
        paths << (path.startsWith(u'~') ? QDir::homePath() + path.mid(1) : Host::path(path));
    return paths;
}

QFileInfoList entriesOf(const QString &dir)
{
    return QDir(dir).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::Name);
}

// A directory shown to people as one item: an application bundle, whatever the case of its
// extension. Symbolic links are never followed, so the walks stay inside their trees.
bool isFilePackage(const QFileInfo &entry)
{
    return entry.isDir() && !entry.isSymLink() &&
           entry.fileName().endsWith(QLatin1String(".app"), Qt::CaseInsensitive);
}

void scanApplications(const QString &dir, QSet<QString> &paths)
{
    for (const QFileInfo &entry : entriesOf(dir)) {
        const QString path = dir + QLatin1Char('/') + entry.fileName();
        if (isFilePackage(entry)) {
            if (path.endsWith(QLatin1String(".app")))
                paths.insert(path);
        } else if (entry.isDir() && !entry.isSymLink()) {
            scanApplications(path, paths);
        }
    }
}

void scanPreferencePanes(const QString &base, const QString &relative, QSet<QString> &paths)
{
    const QString dir = relative.isEmpty() ? base : base + QLatin1Char('/') + relative;
    for (const QFileInfo &entry : entriesOf(dir)) {
        const QString childRelative =
            relative.isEmpty() ? entry.fileName() : relative + QLatin1Char('/') + entry.fileName();
        if (entry.suffix().toLower() == QLatin1String("prefpane"))
            paths.insert(base + QLatin1Char('/') + childRelative);
        else if (entry.isDir() && !entry.isSymLink())
            scanPreferencePanes(base, childRelative, paths);
    }
}

} // namespace

QSet<QString> allApplicationsPathsWithLaunchServices()
{
    // The desktop's application database: one desktop entry per installed application.
    const QStringList files = Quorvelle::DesktopEntries::applicationFiles();
    return QSet<QString>(files.cbegin(), files.cend());
}

QSet<QString> allApplicationsPathsWithSystemProfiler()
{
    const std::optional<PropertyValue::Array> report =
        arrayWithSystemProfileOfDataTypes({QStringLiteral("SPApplicationsDataType")});
    QSet<QString> paths;
    if (!report)
        return paths;
    for (const PropertyValue &entry : *report) {
        if (!entry.isDictionary() ||
            entry.value(QStringLiteral("_dataType")) != PropertyValue(u"SPApplicationsDataType"))
            continue;
        const std::optional<PropertyValue> items = entry.value(QStringLiteral("_items"));
        if (!items || !items->isArray())
            return paths;
        for (const PropertyValue &item : *items->arrayPtr()) {
            const std::optional<PropertyValue> path = item.value(QStringLiteral("path"));
            if (path && path->isString())
                paths.insert(path->toString());
        }
        return paths;
    }
    return paths;
}

QSet<QString> allPreferencePanesPaths()
{
    QSet<QString> paths;
    for (const QString &dir :
         searchPathForDirectoriesInDomains(NSPreferencePanesDirectory, NSAllDomainsMask))
        scanPreferencePanes(dir, QString(), paths);
    return paths;
}

QSet<QString> allApplicationsPaths()
{
    QSet<QString> paths = allApplicationsPathsWithLaunchServices();
    if (isSnowLeopardOrGreater() && !paths.isEmpty())
        return paths;
    for (const QString &dir : searchPathForDirectoriesInDomains(
             NSApplicationDirectory, NSUserDomainMask | NSLocalDomainMask | NSSystemDomainMask))
        scanApplications(dir, paths);
    return paths;
}

} // namespace VXSystemInformation
