#pragma once

#include "Tools.h"

#include <QMap>

// Re-runs the calling test inside the bare sandbox of scripts/qv-sandbox (bubblewrap, a
// fresh tmpfs root: /usr and /etc read-only, private /proc, /dev and /tmp, every namespace,
// network: loopback only, unshared), where only the binds the caller names reach the host.
class Sandbox
{
public:
    struct Options
    {
        QList<QPair<QString, QString>> binds; // host path -> path inside, writable
        QStringList tmpfs;                    // empty writable folders inside
        QMap<QString, QString> hosts;         // host name -> address, as /etc/hosts
        QMap<QString, QString> environment;   // added to a cleared environment
    };

    using Result = Tools::Outcome;

    // True when bubblewrap is installed and can build a sandbox here.
    static bool available();
    // The program's own folder is bound read-only and QV_SANDBOXED=1 is set inside.
    static Result runSelf(const QStringList &arguments, Options options);
    static bool insideSandbox();
    // scripts/qv-sandbox with these arguments (prepare, run, list, ...), to its end.
    static Result script(const QStringList &arguments);
    // The harness's scripts folder (qv-sandbox, qv-ca, account-service).
    static QString scriptsDir();

    // The tree below root as relative path -> "dir <mode>", "file <mode> <sha256>" or
    // "link -> <target>" or "special <mode>" (FIFOs, devices: never opened); links are never
    // followed.
    static QMap<QString, QString> snapshot(const QString &root);
};
