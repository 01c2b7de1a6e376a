#include "Sandbox.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <sys/stat.h>

namespace {

Sandbox::Result run(const QStringList &command, const Sandbox::Options &options,
                    const QString &roBind = {})
{
    Sandbox::Result result;
    QStringList args = QStringLiteral("--unshare-all --die-with-parent --new-session --ro-bind "
                                      "/usr /usr --ro-bind /etc /etc --proc /proc --dev /dev "
                                      "--tmpfs /tmp")
                           .split(u' ');
    // The merged-/usr links of the host, recreated inside.
    for (const char *link : {"bin", "sbin", "lib", "lib32", "lib64", "libx32"}) {
        const QFileInfo info(QStringLiteral("/") + QLatin1String(link));
        if (info.isSymLink())
            args << QStringLiteral("--symlink") << info.symLinkTarget().mid(1) << info.filePath();
        else if (info.isDir())
            args << QStringLiteral("--ro-bind") << info.filePath() << info.filePath();
    }
    QTemporaryFile hostsFile; // must live until bwrap has set the sandbox up
    if (!options.hosts.isEmpty()) {
        if (!hostsFile.open())
            return result;
        hostsFile.write("127.0.0.1 localhost\n");
        for (auto it = options.hosts.cbegin(); it != options.hosts.cend(); ++it)
            hostsFile.write(it.value().toUtf8() + ' ' + it.key().toUtf8() + '\n');
        hostsFile.flush();
        args << QStringLiteral("--ro-bind") << hostsFile.fileName() << QStringLiteral("/etc/hosts");
    }
    for (const QString &dir : options.tmpfs)
        args << QStringLiteral("--tmpfs") << dir;
    if (!roBind.isEmpty())
        args << QStringLiteral("--ro-bind") << roBind << roBind;
    for (const auto &[host, inside] : options.binds)
        args << QStringLiteral("--bind") << host << inside;
    args << QStringLiteral("--clearenv") << QStringLiteral("--setenv") << QStringLiteral("PATH")
         << QStringLiteral("/usr/sbin:/usr/bin:/sbin:/bin");
    for (auto it = options.environment.cbegin(); it != options.environment.cend(); ++it)
        args << QStringLiteral("--setenv") << it.key() << it.value();
    args << QStringLiteral("--chdir") << QStringLiteral("/") << QStringLiteral("--") << command;

    QProcess bwrap;
    bwrap.start(QStandardPaths::findExecutable(QStringLiteral("bwrap")), args);
    const bool ended = bwrap.waitForFinished(120000);
    if (!ended) {
        bwrap.kill();
        bwrap.waitForFinished(5000);
    }
    result.finished = ended && bwrap.exitStatus() == QProcess::NormalExit;
    result.exitCode = bwrap.exitCode();
    result.standardOutput = bwrap.readAllStandardOutput();
    result.standardError = bwrap.readAllStandardError();
    return result;
}

} // namespace

bool Sandbox::available()
{
    static const bool ok = !QStandardPaths::findExecutable(QStringLiteral("bwrap")).isEmpty() &&
                           run({QStringLiteral("/bin/true")}, {}).exitCode == 0;
    return ok;
}

Sandbox::Result Sandbox::runSelf(const QStringList &arguments, Options options)
{
    const QString program = QCoreApplication::applicationFilePath();
    options.environment.insert(QStringLiteral("QV_SANDBOXED"), QStringLiteral("1"));
    options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return run(QStringList{program} + arguments, options, QFileInfo(program).absolutePath());
}

bool Sandbox::insideSandbox()
{
    return qEnvironmentVariable("QV_SANDBOXED") == QStringLiteral("1");
}

QMap<QString, QString> Sandbox::snapshot(const QString &root)
{
    QMap<QString, QString> tree;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories); // does not descend through links
    while (it.hasNext()) {
        const QString path = it.next();
        struct stat st;
        if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
            continue;
        const QString mode = QString::number(st.st_mode & 07777, 8);
        QString entry = QStringLiteral("dir ") + mode;
        if (S_ISLNK(st.st_mode)) {
            entry = QStringLiteral("link -> ") + QFile::symLinkTarget(path);
        } else if (!S_ISDIR(st.st_mode)) {
            QFile file(path);
            QCryptographicHash hash(QCryptographicHash::Sha256);
            if (file.open(QIODevice::ReadOnly))
                hash.addData(&file);
            entry =
                QStringLiteral("file %1 %2").arg(mode, QString::fromLatin1(hash.result().toHex()));
        }
        tree.insert(QDir(root).relativeFilePath(path), entry);
    }
    return tree;
}
