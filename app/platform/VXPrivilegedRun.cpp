#include "VXPrivilegedRun.h"

#include "VXConfiguration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

namespace VXPrivilegedRun {

bool runsAsSuperuser()
{
    return ::geteuid() == 0;
}

bool obtainConsent()
{
    if (runsAsSuperuser())
        return true;
    QProcess pkcheck;
    pkcheck.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    pkcheck.start(QStringLiteral("pkcheck"),
                  {QStringLiteral("--action-id"), QString::fromUtf16(kActionId),
                   QStringLiteral("--process"), QString::number(QCoreApplication::applicationPid()),
                   QStringLiteral("--allow-user-interaction")});
    // The user may take as long as they like over the password dialog.
    if (!pkcheck.waitForFinished(-1))
        return false;
    return pkcheck.exitStatus() == QProcess::NormalExit && pkcheck.exitCode() == 0;
}

QString helperPath()
{
    // Installed, the helper sits at a fixed place relative to the program (libexec beside
    // bin), whatever the prefix; from the build tree it sits beside the program.
    const QString program = QCoreApplication::applicationDirPath();
    const QString installed =
        QDir::cleanPath(program + u'/' + QStringView(QV_CONFIG_HELPER_FROM_PROGRAM).toString() +
                        QStringLiteral("/quorvelle-privileged-helper"));
    if (QFileInfo(installed).isExecutable())
        return installed;
    const QString beside = program + QStringLiteral("/quorvelle-privileged-helper");
    return QFileInfo(beside).isExecutable() ? beside : installed;
}

bool runDetached(const QString &command)
{
    if (runsAsSuperuser())
        return QProcess::startDetached(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command},
                                       QStringLiteral("/"));
    // pkexec refuses to serve an orphan (its parent must be the one asking), and a
    // detached process is an orphan: a shell stays behind as its parent. With the
    // consent just given (auth_admin_keep) pkexec runs without asking again.
    return QProcess::startDetached(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"), QStringLiteral("pkexec \"$0\" \"$1\""), helperPath(), command},
        QStringLiteral("/"));
}

} // namespace VXPrivilegedRun
