#include "TestCA.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSslConfiguration>

namespace {

bool runOpenssl(const QString &dir, const QStringList &arguments)
{
    QProcess openssl;
    openssl.setWorkingDirectory(dir);
    openssl.setProcessChannelMode(QProcess::MergedChannels);
    openssl.start(QStringLiteral("openssl"), arguments);
    if (!openssl.waitForFinished(60000) || openssl.exitStatus() != QProcess::NormalExit ||
        openssl.exitCode() != 0) {
        qWarning("openssl %s failed: %s", qPrintable(arguments.join(u' ')),
                 openssl.readAll().constData());
        return false;
    }
    return true;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::optional<TestCA> TestCA::create(const QString &dir, const QStringList &dnsNames,
                                     const QStringList &ipAddresses)
{
    QStringList names;
    for (const QString &name : dnsNames)
        names << QStringLiteral("DNS:") + name;
    for (const QString &ip : ipAddresses)
        names << QStringLiteral("IP:") + ip;
    QFile ext(dir + QStringLiteral("/server.ext"));
    if (!ext.open(QIODevice::WriteOnly))
        return std::nullopt;
    ext.write("basicConstraints=critical,CA:FALSE\n"
              "keyUsage=critical,digitalSignature\n"
              "extendedKeyUsage=serverAuth\n"
              "subjectAltName=" +
              names.join(u',').toUtf8() + "\n");
    ext.close();

    const QStringList ecKey = {
        QStringLiteral("-newkey"), QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
        QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes")};
    if (!runOpenssl(dir, QStringList{QStringLiteral("req"), QStringLiteral("-x509")} + ecKey +
                             QStringList{QStringLiteral("-keyout"), QStringLiteral("ca.key"),
                                         QStringLiteral("-out"), QStringLiteral("ca.pem"),
                                         QStringLiteral("-days"), QStringLiteral("2"),
                                         QStringLiteral("-subj"),
                                         QStringLiteral("/CN=Throwaway test CA"),
                                         QStringLiteral("-addext"),
                                         QStringLiteral("basicConstraints=critical,CA:TRUE"),
                                         QStringLiteral("-addext"),
                                         QStringLiteral("keyUsage=critical,keyCertSign,cRLSign")}))
        return std::nullopt;
    const QString commonName = dnsNames.isEmpty() ? ipAddresses.value(0) : dnsNames.first();
    if (!runOpenssl(dir,
                    QStringList{QStringLiteral("req")} + ecKey +
                        QStringList{QStringLiteral("-keyout"), QStringLiteral("server.key"),
                                    QStringLiteral("-out"), QStringLiteral("server.csr"),
                                    QStringLiteral("-subj"), QStringLiteral("/CN=") + commonName}))
        return std::nullopt;
    if (!runOpenssl(dir,
                    {QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"),
                     QStringLiteral("server.csr"), QStringLiteral("-CA"), QStringLiteral("ca.pem"),
                     QStringLiteral("-CAkey"), QStringLiteral("ca.key"),
                     QStringLiteral("-CAcreateserial"), QStringLiteral("-out"),
                     QStringLiteral("server.pem"), QStringLiteral("-days"), QStringLiteral("2"),
                     QStringLiteral("-extfile"), QStringLiteral("server.ext")}))
        return std::nullopt;

    TestCA ca;
    ca._dir = dir;
    ca._ca = QSslCertificate(readFile(ca.caCertificatePath()), QSsl::Pem);
    ca._serverCertificate = QSslCertificate(readFile(ca.serverCertificatePath()), QSsl::Pem);
    ca._serverKey = QSslKey(readFile(ca.serverKeyPath()), QSsl::Ec, QSsl::Pem);
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

QString TestCA::makeCertificatesDir() const
{
    const QString certs = _dir + QStringLiteral("/certs");
    QProcess cp;
    cp.start(QStringLiteral("cp"), {QStringLiteral("-a"), QStringLiteral("/etc/ssl/certs"), certs});
    if (!cp.waitForFinished(60000) || cp.exitCode() != 0)
        return QString();
    if (!QFile::copy(caCertificatePath(), certs + QStringLiteral("/quorvelle-test-ca.pem")))
        return QString();
    return runOpenssl(certs, {QStringLiteral("rehash"), QStringLiteral(".")}) ? certs : QString();
}
