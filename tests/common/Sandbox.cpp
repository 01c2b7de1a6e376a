#include "Sandbox.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QStandardPaths>

#include <sys/stat.h>

namespace {

// The one sandbox recipe lives in scripts/qv-sandbox; this is its C++ front for tests that
// re-run themselves inside.
Sandbox::Result run(const QStringList &command, const Sandbox::Options &options)
{
    QStringList args{QStringLiteral("exec")};
    for (auto it = options.hosts.cbegin(); it != options.hosts.cend(); ++it)
        args << QStringLiteral("--host") << it.key() << it.value();
    for (const QString &dir : options.tmpfs)
        args << QStringLiteral("--tmpfs") << dir;
    // The program's own folder and the harness's scripts (throwaway CA and the like) are
    // reachable inside, read-only.
    for (const QString &dir : {QCoreApplication::applicationDirPath(), Sandbox::scriptsDir()})
        args << QStringLiteral("--ro-bind") << dir << dir;
    for (const auto &[host, inside] : options.binds)
        args << QStringLiteral("--bind") << host << inside;
    for (auto it = options.environment.cbegin(); it != options.environment.cend(); ++it)
        args << QStringLiteral("--setenv") << it.key() << it.value();
    args << QStringLiteral("--") << command;
    return Sandbox::script(args);
}

} // namespace

Sandbox::Result Sandbox::script(const QStringList &arguments)
{
    QProcess sandbox;
    sandbox.start(scriptsDir() + QStringLiteral("/qv-sandbox"), arguments);
    const bool ended = sandbox.waitForFinished(120000);
    if (!ended) {
        sandbox.kill();
        sandbox.waitForFinished(5000);
    }
    return {ended && sandbox.exitStatus() == QProcess::NormalExit, sandbox.exitCode(),
            sandbox.readAllStandardOutput(), sandbox.readAllStandardError()};
}

bool Sandbox::available()
{
    static const bool ok = !QStandardPaths::findExecutable(QStringLiteral("bwrap")).isEmpty() &&
                           run({QStringLiteral("/bin/true")}, {}).exitCode == 0;
    return ok;
}

Sandbox::Result Sandbox::runSelf(const QStringList &arguments, Options options)
{
    options.environment.insert(QStringLiteral("QV_SANDBOXED"), QStringLiteral("1"));
    options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return run(QStringList{QCoreApplication::applicationFilePath()} + arguments, options);
}

QString Sandbox::scriptsDir()
{
    return QStringLiteral(QV_SOURCE_DIR "/scripts");
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
        } else if (!S_ISDIR(st.st_mode) && !S_ISREG(st.st_mode)) {
            entry = QStringLiteral("special ") + mode; // a FIFO would block a reader
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
