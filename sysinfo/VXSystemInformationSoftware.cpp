// The hardware report tool, the system version, the application inventory and the default
// web browser.
#include "VXSystemInformation.h"
#include "VXSystemInformationHost.h"

#include "PropertyListXml.h"
#include "ReportToolAdapter.h"
#include "VXLog.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringDecoder>
#include <QUrl>

#include <cerrno>
#include <sys/utsname.h>

namespace VXSystemInformation {
namespace {

std::optional<PropertyValue::Array> parseReportArray(const std::optional<QByteArray> &data)
{
    if (!data || data->isEmpty())
        return std::nullopt;
    const std::optional<PropertyValue> parsed = PropertyListXml::read(*data);
    if (!parsed || !parsed->isArray())
        return std::nullopt;
    return parsed->toArray();
}

// A kernel fact from /proc/sys/kernel, or from uname() when reading the real machine.
QString kernelValue(const QString &name, const char *(*fromUname)(const utsname &))
{
    const QString value = Host::readLine(QStringLiteral("/proc/sys/kernel/") + name);
    if (!value.isNull() || !Seam::root().isEmpty())
        return value;
    utsname names;
    if (uname(&names) != 0)
        return QString();
    return QString::fromUtf8(fromUname(names));
}

// The drawing code picks its modern look from these release tests. The running
// user-interface framework decides: every desktop with Qt 6 postdates the releases they name.
bool runningFrameworkIsModern()
{
    return QLibraryInfo::version().majorVersion() >= 6;
}

enum Domain : unsigned
{
    UserDomain = 1,
    LocalDomain = 2,
    NetworkDomain = 4,
    SystemDomain = 8
};
enum DirectoryKind
{
    ApplicationDirectory = 1,
    PreferencePanesDirectory = 22
};

// The user's domain lives under $HOME, the others under the (seam) root.
QStringList searchPathForDirectoriesInDomains(DirectoryKind kind, unsigned domains)
{
    const QString sub = kind == ApplicationDirectory ? QStringLiteral("/Applications")
                                                     : QStringLiteral("/Library/PreferencePanes");
    QStringList paths;
    if (domains & UserDomain)
        paths << QDir::homePath() + sub;
    if (domains & LocalDomain)
        paths << Host::path(sub);
    if (domains & NetworkDomain)
        paths << Host::path(QStringLiteral("/Network") + sub);
    if (domains & SystemDomain)
        paths << Host::path(QStringLiteral("/System") + sub);
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

QString environmentDirectory(const char *variable, const QString &fallback)
{
    const QString value = qEnvironmentVariable(variable);
    return value.isEmpty() ? fallback : value;
}

QStringList environmentDirectories(const char *variable, const QString &fallback)
{
    QStringList dirs;
    for (const QString &dir :
         environmentDirectory(variable, fallback).split(QLatin1Char(':'), Qt::SkipEmptyParts))
        dirs << Host::path(dir);
    return dirs;
}

// The XDG data directories, the user's own first.
QStringList dataDirectories()
{
    return QStringList{environmentDirectory("XDG_DATA_HOME",
                                            QDir::homePath() + QStringLiteral("/.local/share"))} +
           environmentDirectories("XDG_DATA_DIRS", QStringLiteral("/usr/local/share:/usr/share"));
}

// The entries of one group of a desktop-entry style file.
QMap<QByteArray, QByteArray> desktopGroup(const QByteArray &text, const QByteArray &group)
{
    QMap<QByteArray, QByteArray> keys;
    bool inGroup = false;
    for (const QByteArray &raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) {
            inGroup = line == '[' + group + ']';
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inGroup || line.startsWith('#') || equals <= 0)
            continue;
        const QByteArray key = line.left(equals).trimmed();
        if (!keys.contains(key))
            keys.insert(key, line.mid(equals + 1).trimmed());
    }
    return keys;
}

void collectDesktopEntries(const QString &dir, QSet<QString> &paths)
{
    for (const QFileInfo &entry : entriesOf(dir)) {
        if (entry.isDir()) {
            if (!entry.isSymLink())
                collectDesktopEntries(entry.filePath(), paths);
            continue;
        }
        if (entry.suffix() != QLatin1String("desktop"))
            continue;
        QFile file(entry.filePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const auto keys = desktopGroup(file.readAll(), "Desktop Entry");
        // A hidden entry is the desktop's way of saying the application was removed.
        if (keys.value("Type") == "Application" && keys.value("Hidden") != "true")
            paths.insert(entry.absoluteFilePath());
    }
}

// The installed desktop entry of a desktop-file id, or a null string.
QString desktopEntryPath(const QString &id)
{
    for (const QString &dir : dataDirectories()) {
        const QString path = dir + QStringLiteral("/applications/") + id;
        if (QFileInfo(path).isFile())
            return path;
    }
    return QString();
}

// The handler for "http" in the mimeapps.list files, in their order of precedence; the
// first listed handler that is installed wins.
QString defaultHttpHandlerEntry()
{
    QStringList lists;
    lists << environmentDirectory("XDG_CONFIG_HOME",
                                  QDir::homePath() + QStringLiteral("/.config")) +
                 QStringLiteral("/mimeapps.list");
    for (const QString &dir : environmentDirectories("XDG_CONFIG_DIRS", QStringLiteral("/etc/xdg")))
        lists << dir + QStringLiteral("/mimeapps.list");
    for (const QString &dir : dataDirectories())
        lists << dir + QStringLiteral("/applications/mimeapps.list");
    for (const QString &list : std::as_const(lists)) {
        QFile file(list);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray handlers =
            desktopGroup(file.readAll(), "Default Applications").value("x-scheme-handler/http");
        for (const QByteArray &id : handlers.split(';')) {
            const QString path = id.trimmed().isEmpty()
                                     ? QString()
                                     : desktopEntryPath(QString::fromUtf8(id.trimmed()));
            if (!path.isNull())
                return path;
        }
    }
    return QString();
}

} // namespace

std::optional<QByteArray> systemProfilerGetDataWithArguments(const QStringList &arguments)
{
    QProcess task;
    task.setProgram(Seam::reportToolPath());
    if (!arguments.isEmpty())
        task.setArguments(ReportToolAdapter::toolArguments(arguments));
    // Only standard output is ours; the tool's diagnostics go where ours go.
    task.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    task.setInputChannelMode(QProcess::ForwardedInputChannel);
    // The lister translates its labels; the readers look for the untranslated ones.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    task.setProcessEnvironment(environment);
    task.start(QIODevice::ReadOnly);
    // Not being able to start the tool is the one failure worth reporting; what it prints
    // and how it ends are its own business.
    if (!task.waitForStarted(-1)) {
        VXLog(QStringLiteral("An exception is caught when running system_profiler tool: %1")
                  .arg(task.errorString()));
        return std::nullopt;
    }
    QByteArray output;
    while (task.waitForReadyRead(-1))
        output += task.readAllStandardOutput();
    task.waitForFinished(-1);
    output += task.readAllStandardOutput();
    return output;
}

std::optional<QByteArray> systemProfileOfDataTypes(const QStringList &dataTypes, bool xmlFormat)
{
    QStringList arguments;
    if (xmlFormat)
        arguments << QStringLiteral("-xml");
    arguments << dataTypes;
    const std::optional<QByteArray> output = systemProfilerGetDataWithArguments(arguments);
    if (!output)
        return output;
    return xmlFormat ? ReportToolAdapter::toPropertyList(*output, dataTypes)
                     : ReportToolAdapter::relabelText(*output);
}

QString stringWithSystemProfileOfDataTypes(const QStringList &dataTypes)
{
    const std::optional<QByteArray> data = systemProfileOfDataTypes(dataTypes, false);
    if (!data || data->isEmpty())
        return QString();
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(*data);
    // Text that is not UTF-8 is no text at all.
    return decoder.hasError() ? QString() : text;
}

std::optional<PropertyValue::Array> arrayWithSystemProfileOfDataTypes(const QStringList &dataTypes)
{
    return parseReportArray(systemProfileOfDataTypes(dataTypes, true));
}

std::optional<PropertyValue::Array> arrayWithSystemProfileOfLevel(const QString &level)
{
    // No "-xml" here: whatever the tool prints goes to the property-list reader as it is.
    QStringList arguments;
    if (!level.isNull())
        arguments << QStringLiteral("-detailLevel") << level;
    return parseReportArray(systemProfilerGetDataWithArguments(arguments));
}

bool saveSystemProfileOfLevel(const QString &level, const QString &path)
{
    QStringList arguments{QStringLiteral("-xml"), QStringLiteral("-detailLevel")};
    if (!level.isNull())
        arguments << level;
    const std::optional<QByteArray> data = systemProfilerGetDataWithArguments(arguments);
    if (!data || data->isEmpty())
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(*data) != data->size())
        return false;
    return file.commit();
}

QString systemProfileValueForKey(const QString &key)
{
    return systemProfileValueForKey(key, QStringLiteral("N/A"));
}

QString systemProfileValueForKey(const QString &key, const QString &defaultValue)
{
    const QString text = stringWithSystemProfileOfDataTypes({QStringLiteral("SPHardwareDataType")});
    if (text.isEmpty())
        return defaultValue;
    const qsizetype found = text.indexOf(key);
    if (found < 0)
        return defaultValue;
    const qsizetype start = found + key.size();
    const qsizetype newline = text.indexOf(QLatin1Char('\n'), start);
    // Without a line break behind it, the value stops one character short of the end.
    const qsizetype end = newline >= 0 ? newline : text.size() - 1;
    if (end <= start)
        return defaultValue;
    return text.mid(start, end - start);
}

QString operatingSystemString()
{
    return kernelValue(QStringLiteral("ostype"),
                       [](const utsname &u) -> const char * { return u.sysname; });
}

QString humanReadableSystemVersionString()
{
    for (const QString &file :
         {QStringLiteral("/etc/os-release"), QStringLiteral("/usr/lib/os-release")}) {
        if (const auto text = Host::readFile(file))
            return Host::shellVariable(*text, "PRETTY_NAME");
    }
    return QString();
}

QString systemVersionString()
{
    QString &cache = Host::caches().systemVersionString;
    if (!cache.isEmpty())
        return cache;
    // The kernel's release: major, minor and patch level lead its text ("6.1.0-18-amd64").
    const QString release = kernelValue(QStringLiteral("osrelease"),
                                        [](const utsname &u) -> const char * { return u.release; });
    static const QRegularExpression leading(QStringLiteral("^(\\d+)\\.(\\d+)\\.(\\d+)"));
    const QRegularExpressionMatch match = leading.match(release);
    if (!match.hasMatch())
        return QString();
    int parts[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        parts[i] = match.captured(i + 1).toInt(&ok);
        if (!ok)
            return QString();
    }
    cache = QString::asprintf("%d.%d.%d", parts[0], parts[1], parts[2]);
    return cache;
}

bool isSnowLeopardOrGreater()
{
    return runningFrameworkIsModern();
}
bool isLionOrGreater()
{
    return runningFrameworkIsModern();
}
bool isMountainLionOrGreater()
{
    return runningFrameworkIsModern();
}
bool isMavericksOrGreater()
{
    return runningFrameworkIsModern();
}

QSet<QString> allApplicationsPathsWithLaunchServices()
{
    // The desktop-entry database: every application entry under the XDG data directories.
    QSet<QString> paths;
    for (const QString &dir : dataDirectories())
        collectDesktopEntries(dir + QStringLiteral("/applications"), paths);
    return paths;
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
    for (const QString &dir : searchPathForDirectoriesInDomains(PreferencePanesDirectory, 0xFFFF))
        scanPreferencePanes(dir, QString(), paths);
    return paths;
}

QSet<QString> allApplicationsPaths()
{
    QSet<QString> paths = allApplicationsPathsWithLaunchServices();
    if (isSnowLeopardOrGreater() && !paths.isEmpty())
        return paths;
    for (const QString &dir : searchPathForDirectoriesInDomains(
             ApplicationDirectory, UserDomain | LocalDomain | SystemDomain))
        scanApplications(dir, paths);
    return paths;
}

QString defaultWebBrowser()
{
    const QString entry = defaultHttpHandlerEntry();
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
