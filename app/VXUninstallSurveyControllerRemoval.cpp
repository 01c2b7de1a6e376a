// Removal of the suite: the system-wide parts through one privileged shell command, then
// the user's own files directly, then termination.
#include "VXUninstallSurveyController.h"

#include "VXSuiteItems.h"
#include "platform/VXPrivilegedRun.h"

#include <Quorvelle/Foundation/VXLog.h>
#include <Quorvelle/Foundation/VXSearchPath.h>

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
    // Termination is final: one consent request and one removal per run, whatever input
    // or second call arrives while the first one is under way.
    if (_removalStarted)
        return;
    _removalStarted = true;
    _actionStarted = true;
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
    const QString command =
        QString::fromStdString(VXSuiteItems::composeCommand([](std::string_view path) {
            return fileExistsAtPath(QString::fromUtf8(path.data(), qsizetype(path.size())));
        }));
    if (command.isEmpty())
        return;

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
    // The computer-wide caches folder: its item is removed with the user's rights only and
    // may simply stay.
    const QString caches = lastEntry(NSCachesDirectory, NSLocalDomainMask);
    for (const VXSuiteItems::UserItem &item : VXSuiteItems::kUserItems) {
        const QString path =
            (item.base == VXSuiteItems::Base::UserLibrary ? library : caches) + u'/' +
            QString::fromUtf8(item.relative.data(), qsizetype(item.relative.size()));
        if (item.how == VXSuiteItems::How::ByPrefix)
            removeFilesWithPathPrefix(path);
        else
            removeItemAtPath(path);
    }
    // Where there is no launchctl the shell just fails; the result is not looked at.
    const int ignored = std::system(std::string(VXSuiteItems::kUserLaunchctlCommand).c_str());
    Q_UNUSED(ignored);
}
