#include "Sandbox.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QStandardPaths>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

// The one sandbox recipe lives in scripts/qv-sandbox; this is its C++ front for tests that
// re-run themselves inside.
Sandbox::Result run(const QStringList &command, const Sandbox::Options &options)
{
    QStringList args{u"exec"_s};
    for (auto it = options.hosts.cbegin(); it != options.hosts.cend(); ++it)
        args << u"--host"_s << it.key() << it.value();
    for (const QString &dir : options.tmpfs)
        args << u"--tmpfs"_s << dir;
    // The program's own folder and the harness's scripts (throwaway CA and the like) are
    // reachable inside, read-only.
    for (const QString &dir : {QCoreApplication::applicationDirPath(), Sandbox::scriptsDir()})
        args << u"--ro-bind"_s << dir << dir;
    for (const auto &[host, inside] : options.binds)
        args << u"--bind"_s << host << inside;
    for (auto it = options.environment.cbegin(); it != options.environment.cend(); ++it)
        args << u"--setenv"_s << it.key() << it.value();
    args << u"--"_s << command;
    return Sandbox::script(args);
}

} // namespace

Sandbox::Result Sandbox::script(const QStringList &arguments)
{
    return Tools::run(scriptsDir() + u"/qv-sandbox"_s, arguments, 120000);
}

bool Sandbox::available()
{
    static const bool ok = !QStandardPaths::findExecutable(u"bwrap"_s).isEmpty() &&
                           run({u"/bin/true"_s}, {}).exitCode == 0;
    return ok;
}

Sandbox::Result Sandbox::runSelf(const QStringList &arguments, Options options)
{
    options.environment.insert(u"QV_SANDBOXED"_s, u"1"_s);
    options.environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    return run(QStringList{QCoreApplication::applicationFilePath()} + arguments, options);
}

QString Sandbox::scriptsDir()
{
    return QStringLiteral(QV_SOURCE_DIR "/scripts");
}

bool Sandbox::insideSandbox()
{
    return qEnvironmentVariable("QV_SANDBOXED") == u"1"_s;
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
        QString entry = u"dir "_s + mode;
        if (S_ISLNK(st.st_mode)) {
            entry = u"link -> "_s + QFile::symLinkTarget(path);
        } else if (!S_ISDIR(st.st_mode) && !S_ISREG(st.st_mode)) {
            entry = u"special "_s + mode; // a FIFO would block a reader
        } else if (!S_ISDIR(st.st_mode)) {
            QFile file(path);
            QCryptographicHash hash(QCryptographicHash::Sha256);
            if (file.open(QIODevice::ReadOnly))
                hash.addData(&file);
            entry = u"file %1 %2"_s.arg(mode, QString::fromLatin1(hash.result().toHex()));
        }
        tree.insert(QDir(root).relativeFilePath(path), entry);
    }
    return tree;
}
