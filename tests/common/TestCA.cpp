#include "TestCA.h"

#include "Sandbox.h"

#include <QDir>
#include <QSslConfiguration>

using namespace Qt::StringLiterals;

using Tools::readFile;

std::optional<TestCA> TestCA::create(const QString &dir, const QString &hostName)
{
    // The one recipe for throwaway CAs, shared with the sandbox, the demo and the benchmarks.
    QDir().mkpath(dir);
    const Tools::Outcome made =
        Tools::run(Sandbox::scriptsDir() + u"/qv-ca"_s, {dir, hostName}, 60000);
    if (made.exitCode != 0) {
        qWarning("scripts/qv-ca failed for %s: %s", qPrintable(dir), made.errors.constData());
        return std::nullopt;
    }

    TestCA ca;
    ca._ca = QSslCertificate(readFile(dir + u"/ca.crt"_s), QSsl::Pem);
    ca._serverCertificate = QSslCertificate(readFile(dir + u"/server.crt"_s), QSsl::Pem);
    ca._serverKey = QSslKey(readFile(dir + u"/server.key"_s), QSsl::Ec, QSsl::Pem);
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
