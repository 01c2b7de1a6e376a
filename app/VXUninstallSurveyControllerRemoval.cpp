// Removal of the suite: the system-wide parts through one privileged shell command, then
// the user's own files directly, then termination.
#include "VXUninstallSurveyController.h"

#include "VXLog.h"
#include "VXSearchPath.h"
#include "VXSuiteItems.h"
#include "platform/VXPrivilegedRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Anything at the path as the user sees it; a dangling link counts as nothing.
bool fileExistsAtPath(const QString &path)
{
    return QFileInfo::exists(path);
}

// Deletes a file, a link (never its target) or a folder with everything in it. Failures
// are ignored: what cannot be removed stays.
void removeItemAtPath(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    struct stat st;
    if (::lstat(native.constData(), &st) != 0)
        return;
    if (S_ISDIR(st.st_mode)) {
        const QStringList entries = QDir(path).entryList(QDir::AllEntries | QDir::Hidden |
                                                         QDir::System | QDir::NoDotAndDotDot);
        for (const QString &entry : entries)
            removeItemAtPath(path + u'/' + entry);
        ::rmdir(native.constData());
    } else {
        ::unlink(native.constData());
    }
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
