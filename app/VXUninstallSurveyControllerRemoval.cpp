// Removal of the suite: the system-wide parts through one privileged shell command, then
// the user's own files directly, then termination.
#include "VXUninstallSurveyController.h"

#include "VXLog.h"
#include "VXSearchPath.h"
#include "platform/VXPrivilegedRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char16_t *const kSystemWidePaths[] = {
    u"/Library/Application Support/Quorvelle",
    u"/Library/Caches/com.varnix.Quorvelle",
    u"/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist",
    u"/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist",
    u"/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus",
    u"/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist",
    u"/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon",
    u"/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist",
};

// Only three jobs are unloaded: the AntiVirus job of the second family keeps running
// until the next restart, only its files go.
const char16_t kLaunchctlTail[] =
    u"launchctl remove com.varnix.Quorvelle.AntiVirus; "
    u"launchctl remove com.varnix.Quorvelle.plugin.AntiTheft.daemon; "
    u"launchctl remove net.brelltan.Quorvelle.plugin.AntiTheft.daemon";

// Anything at the path as the user sees it; a dangling link counts as nothing.
bool fileExistsAtPath(const QString &path)
{
    return QFileInfo::exists(path);
}

// Empties the folder open at `folder` and closes it, the way rm -rf walks: relative to
// the folder's descriptor, one unlinkat per entry, in the order the folder lists them.
// Relative calls cannot be redirected by a link swapped into the path above, and a
// sub-folder is opened with O_NOFOLLOW, so a link is only ever removed itself.
void removeFolderContents(int folder)
{
    DIR *stream = ::fdopendir(folder);
    if (!stream) {
        ::close(folder);
        return;
    }
    const int fd = ::dirfd(stream);
    while (const dirent *entry = ::readdir(stream)) {
        const char *name = entry->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        bool isFolder = entry->d_type == DT_DIR;
        if (entry->d_type == DT_UNKNOWN) {
            // Some file systems do not report the type in the listing.
            struct stat st;
            if (::fstatat(fd, name, &st, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            isFolder = S_ISDIR(st.st_mode);
        }
        if (!isFolder) {
            ::unlinkat(fd, name, 0);
            continue;
        }
        const int child =
            ::openat(fd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
        // A folder that cannot be opened (no permission, too many open descriptors at
        // extreme depth) is still tried: it may be empty.
        if (child >= 0)
            removeFolderContents(child);
        ::unlinkat(fd, name, AT_REMOVEDIR);
    }
    ::closedir(stream);
}

// Deletes a file, a link (never its target) or a folder with everything in it. Failures
// are ignored: what cannot be removed stays.
void removeItemAtPath(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    const int folder =
        ::open(native.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (folder >= 0) {
        removeFolderContents(folder);
        ::rmdir(native.constData());
        return;
    }
    // Not a folder (ENOTDIR, or ELOOP for a link): the item itself goes. A folder that
    // cannot be opened may still be empty and removable.
    if (errno == ENOTDIR || errno == ELOOP)
        ::unlink(native.constData());
    else if (errno != ENOENT)
        ::rmdir(native.constData());
}

// Full paths of the items in the prefix's folder whose names begin with its last
// component, compared case-sensitively, sorted by name.
QStringList completePath(const QString &prefix)
{
    const int slash = int(prefix.lastIndexOf(u'/'));
    const QString folder = slash < 0 ? QStringLiteral(".") : prefix.left(slash > 0 ? slash : 1);
    const QString start = prefix.mid(slash + 1);
    QStringList matches;
    const QStringList entries = QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &entry : entries) {
        if (entry.startsWith(start, Qt::CaseSensitive))
            matches.append(slash < 0 ? entry : prefix.left(slash + 1) + entry);
    }
    return matches;
}

QString lastEntry(int directory, int domainMask)
{
    const QStringList paths = NSSearchPathForDirectoriesInDomains(directory, domainMask, true);
    return paths.isEmpty() ? QString() : paths.last();
}

} // namespace

QString VXUninstallSurveyController::uninstallInfoPath() const
{
    QMutexLocker locker(&_uninstallInfoPathLock);
    return _uninstallInfoPath;
}

void VXUninstallSurveyController::setUninstallInfoPath(const QString &path)
{
    {
        QMutexLocker locker(&_uninstallInfoPathLock);
        _uninstallInfoPath = path;
    }
    Q_EMIT uninstallInfoPathChanged(path);
}

bool VXUninstallSurveyController::applicationOpenFile(const QString &path)
{
    setUninstallInfoPath(path);
    return true;
}

void VXUninstallSurveyController::proceedUninstall()
{
    if (_surveyWindow)
        _surveyWindow->hide();
    uninstallPriviledgedParts();
    uninstallUserParts();
    // Queued, so the request also holds when the event loop has not started yet.
    if (QCoreApplication::instance())
        QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                                  Qt::QueuedConnection);
}

void VXUninstallSurveyController::uninstallPriviledgedParts()
{
    QString command;
    for (const char16_t *path : kSystemWidePaths) {
        const QString p = QString::fromUtf16(path);
        // Quoted but not escaped: none of the fixed paths holds a quote.
        if (fileExistsAtPath(p))
            command += QStringLiteral("rm -rf '%1'; ").arg(p);
    }
    if (command.isEmpty())
        return;
    command += QString::fromUtf16(kLaunchctlTail);

    const bool consented = VXPrivilegedRun::obtainConsent();
    // The log line is the one trace of the attempt, so it is written whatever the answer.
    VXLog(QStringLiteral("Command: %1").arg(command));
    if (consented)
        VXPrivilegedRun::runDetached(command);
}

void VXUninstallSurveyController::removeFilesWithPathPrefix(const QString &prefix)
{
    const QStringList matches = completePath(prefix);
    for (const QString &match : matches)
        removeItemAtPath(match);
}

void VXUninstallSurveyController::uninstallUserParts()
{
    const QString library = lastEntry(NSLibraryDirectory, NSUserDomainMask);
    const QString caches = lastEntry(NSCachesDirectory, NSLocalDomainMask);
    const auto inLibrary = [&library](const char16_t *relative) {
        return library + u'/' + QString::fromUtf16(relative);
    };

    removeItemAtPath(inLibrary(u"Application Support/Quorvelle"));
    removeItemAtPath(inLibrary(u"Application Support/Quorvelle Helper"));
    removeFilesWithPathPrefix(inLibrary(u"Preferences/com.varnix.Quorvelle"));
    removeFilesWithPathPrefix(inLibrary(u"Caches/com.varnix.Quorvelle"));
    removeItemAtPath(inLibrary(u"Saved Application State/com.varnix.Quorvelle.savedState"));
    removeItemAtPath(inLibrary(u"LaunchAgents/com.varnix.Quorvelle.Helper"));
    removeItemAtPath(inLibrary(u"LaunchAgents/com.varnix.Quorvelle.Helper.plist"));
    removeItemAtPath(inLibrary(u"LaunchAgents/net.brelltan.Quorvelle.Helper"));
    removeItemAtPath(inLibrary(u"LaunchAgents/net.brelltan.Quorvelle.Helper.plist"));
    removeItemAtPath(inLibrary(u"Saved Application State/net.brelltan.Quorvelle.savedState"));
    // A computer-wide folder removed with the user's rights only: it may simply stay.
    removeItemAtPath(caches + QStringLiteral("/net.brelltan.Quorvelle"));
    removeFilesWithPathPrefix(inLibrary(u"Preferences/net.brelltan.Quorvelle"));
    removeFilesWithPathPrefix(inLibrary(u"Caches/net.brelltan.Quorvelle"));
    // Where there is no launchctl the shell just fails; the result is not looked at.
    const int ignored = std::system("/bin/launchctl remove net.brelltan.Quorvelle.Helper");
    Q_UNUSED(ignored);
}
