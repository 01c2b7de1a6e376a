#include "Tools.h"

#include <QProcess>

Tools::Outcome Tools::run(const QString &program, const QStringList &arguments, int timeoutMs,
                          const QProcessEnvironment &environment, const QString &folder)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    if (!environment.isEmpty())
        process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Outcome outcome;
    if (process.waitForFinished(timeoutMs) && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    else
        process.kill();
    process.waitForFinished(5000);
    outcome.output = process.readAllStandardOutput();
    outcome.errors = process.readAllStandardError();
    return outcome;
}

QByteArray Tools::readFile(const QString &path, const QByteArray &fallback)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : fallback;
}
