#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

// Runs a command inside a bubblewrap sandbox whose root is a fresh tmpfs: the system's
// /usr (and its /bin, /lib links) and /etc are read-only, /proc, /dev and /tmp are
// private, every namespace (network included: loopback only) is unshared, and only the
// binds the caller names reach the host. Mount points are created in the sandbox's own
// root, so nothing is ever created on the host.
class Sandbox
{
public:
    struct Options
    {
        QList<QPair<QString, QString>> binds;   // host path -> path inside, writable
        QList<QPair<QString, QString>> roBinds; // host path -> path inside, read-only
        QStringList tmpfs;                      // empty writable folders inside
        QMap<QString, QString> hosts;           // host name -> address, as /etc/hosts
        QString certificatesDir;                // replaces /etc/ssl/certs when set
        QMap<QString, QString> environment;     // added to a cleared environment
        QString workingDirectory;               // inside; "/" when empty
        int timeoutMs = 120000;
    };

    struct Result
    {
        bool finished = false; // false: it did not start or ran past the time-out
        int exitCode = -1;
        QByteArray standardOutput;
        QByteArray standardError;
    };

    // True when bubblewrap is installed and can build a sandbox here.
    static bool available();

    static Result run(const QStringList &command, const Options &options);

    // Re-runs the calling program inside a sandbox with the given arguments; the
    // program's own folder is bound read-only at the same place and QV_SANDBOXED=1 is
    // set, so the program can tell that it runs inside.
    static Result runSelf(const QStringList &arguments, Options options);
    static bool insideSandbox();

    // The tree below root as relative path -> description: "dir <mode>",
    // "file <mode> <sha256>", "link -> <target>". Links are described, never followed.
    static QMap<QString, QString> snapshot(const QString &root);
};
