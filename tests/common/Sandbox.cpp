#include "Sandbox.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <memory>
#include <sys/stat.h>

namespace {

QString bwrapPath()
{
    return QStandardPaths::findExecutable(QStringLiteral("bwrap"));
}

} // namespace

bool Sandbox::available()
{
    static const bool ok = [] {
        if (bwrapPath().isEmpty())
            return false;
        Options options;
        options.timeoutMs = 20000;
        return run({QStringLiteral("/bin/true")}, options).exitCode == 0;
    }();
    return ok;
}

Sandbox::Result Sandbox::run(const QStringList &command, const Options &options)
{
    Result result;
    QStringList args = {
        QStringLiteral("--unshare-all"), QStringLiteral("--die-with-parent"),
        QStringLiteral("--new-session"), QStringLiteral("--ro-bind"),
        QStringLiteral("/usr"),          QStringLiteral("/usr"),
        QStringLiteral("--ro-bind"),     QStringLiteral("/etc"),
        QStringLiteral("/etc"),          QStringLiteral("--proc"),
        QStringLiteral("/proc"),         QStringLiteral("--dev"),
        QStringLiteral("/dev"),          QStringLiteral("--tmpfs"),
        QStringLiteral("/tmp"),
    };
    // The merged-/usr links of the host, recreated inside.
    for (const char *link : {"bin", "sbin", "lib", "lib32", "lib64", "libx32"}) {
        const QFileInfo info(QStringLiteral("/") + QLatin1String(link));
        if (info.isSymLink())
            args << QStringLiteral("--symlink") << info.symLinkTarget().mid(1) << info.filePath();
        else if (info.isDir())
            args << QStringLiteral("--ro-bind") << info.filePath() << info.filePath();
    }

    // Files handed to bwrap must live until it has set the sandbox up.
    std::unique_ptr<QTemporaryFile> hostsFile;
    if (!options.hosts.isEmpty()) {
        hostsFile = std::make_unique<QTemporaryFile>();
        if (!hostsFile->open())
            return result;
        QByteArray text = "127.0.0.1 localhost\n::1 localhost\n";
        for (auto it = options.hosts.cbegin(); it != options.hosts.cend(); ++it)
            text += it.value().toUtf8() + ' ' + it.key().toUtf8() + '\n';
        hostsFile->write(text);
        hostsFile->flush();
        args << QStringLiteral("--ro-bind") << hostsFile->fileName()
             << QStringLiteral("/etc/hosts");
    }
    if (!options.certificatesDir.isEmpty())
        args << QStringLiteral("--ro-bind") << options.certificatesDir
             << QStringLiteral("/etc/ssl/certs");
    for (const QString &dir : options.tmpfs)
        args << QStringLiteral("--tmpfs") << dir;
    for (const auto &[host, inside] : options.roBinds)
        args << QStringLiteral("--ro-bind") << host << inside;
    for (const auto &[host, inside] : options.binds)
        args << QStringLiteral("--bind") << host << inside;

    args << QStringLiteral("--clearenv") << QStringLiteral("--setenv") << QStringLiteral("PATH")
         << QStringLiteral("/usr/sbin:/usr/bin:/sbin:/bin");
    for (auto it = options.environment.cbegin(); it != options.environment.cend(); ++it)
        args << QStringLiteral("--setenv") << it.key() << it.value();
    args << QStringLiteral("--chdir")
         << (options.workingDirectory.isEmpty() ? QStringLiteral("/") : options.workingDirectory);
    args << QStringLiteral("--") << command;

    QProcess bwrap;
    bwrap.start(bwrapPath(), args);
    if (!bwrap.waitForStarted(10000))
        return result;
    if (!bwrap.waitForFinished(options.timeoutMs)) {
        bwrap.kill();
        bwrap.waitForFinished(5000);
        result.standardOutput = bwrap.readAllStandardOutput();
        result.standardError = bwrap.readAllStandardError();
        return result;
    }
    result.finished = bwrap.exitStatus() == QProcess::NormalExit;
    result.exitCode = bwrap.exitCode();
    result.standardOutput = bwrap.readAllStandardOutput();
    result.standardError = bwrap.readAllStandardError();
    return result;
}

Sandbox::Result Sandbox::runSelf(const QStringList &arguments, Options options)
{
    const QString program = QCoreApplication::applicationFilePath();
    const QString dir = QFileInfo(program).absolutePath();
    options.roBinds.prepend({dir, dir});
    options.environment.insert(QStringLiteral("QV_SANDBOXED"), QStringLiteral("1"));
    if (!options.environment.contains(QStringLiteral("QT_QPA_PLATFORM")))
        options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return run(QStringList{program} + arguments, options);
}

bool Sandbox::insideSandbox()
{
    return qEnvironmentVariable("QV_SANDBOXED") == QStringLiteral("1");
}

QMap<QString, QString> Sandbox::snapshot(const QString &root)
{
    QMap<QString, QString> tree;
    const QDir base(root);
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories); // does not descend through links
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = base.relativeFilePath(path);
        struct stat st;
        if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
            continue;
        const QString mode = QString::number(st.st_mode & 07777, 8);
        if (S_ISLNK(st.st_mode)) {
            tree.insert(relative, QStringLiteral("link -> ") + QFile::symLinkTarget(path));
        } else if (S_ISDIR(st.st_mode)) {
            tree.insert(relative, QStringLiteral("dir ") + mode);
        } else {
            QFile file(path);
            QCryptographicHash hash(QCryptographicHash::Sha256);
            if (file.open(QIODevice::ReadOnly))
                hash.addData(&file);
            tree.insert(
                relative,
                QStringLiteral("file %1 %2").arg(mode, QString::fromLatin1(hash.result().toHex())));
        }
    }
    return tree;
}
