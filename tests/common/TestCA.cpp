#include "TestCA.h"

#include "Sandbox.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSslConfiguration>

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::optional<TestCA> TestCA::create(const QString &dir, const QString &hostName)
{
    // The one recipe for throwaway CAs, shared with the sandbox, the demo and the benchmarks.
    QProcess process;
    QDir().mkpath(dir);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(Sandbox::scriptsDir() + QStringLiteral("/qv-ca"), {dir, hostName});
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        qWarning("scripts/qv-ca failed for %s", qPrintable(dir));
        return std::nullopt;
    }

    TestCA ca;
    ca._ca = QSslCertificate(readFile(dir + QStringLiteral("/ca.crt")), QSsl::Pem);
    ca._serverCertificate =
        QSslCertificate(readFile(dir + QStringLiteral("/server.crt")), QSsl::Pem);
    ca._serverKey = QSslKey(readFile(dir + QStringLiteral("/server.key")), QSsl::Ec, QSsl::Pem);
    if (ca._ca.isNull() || ca._serverCertificate.isNull() || ca._serverKey.isNull())
        return std::nullopt;
    return ca;
}

void TestCA::trustInThisProcess() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificate(_ca);
    QSslConfiguration::setDefaultConfiguration(configuration);
}
