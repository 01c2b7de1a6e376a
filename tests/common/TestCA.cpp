#include "TestCA.h"

#include <QFile>
#include <QProcess>
#include <QSslConfiguration>

namespace {

bool openssl(const QString &dir, const QString &arguments, const QString &subject = {})
{
    QProcess process;
    process.setWorkingDirectory(dir);
    process.setProcessChannelMode(QProcess::MergedChannels);
    QStringList args = arguments.split(u' ');
    if (!subject.isEmpty())
        args << QStringLiteral("-subj") << subject;
    process.start(QStringLiteral("openssl"), args);
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit &&
        process.exitCode() == 0)
        return true;
    qWarning("openssl %s failed: %s", qPrintable(arguments), process.readAll().constData());
    return false;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::optional<TestCA> TestCA::create(const QString &dir, const QString &hostName)
{
    QFile ext(dir + QStringLiteral("/server.ext"));
    if (!ext.open(QIODevice::WriteOnly))
        return std::nullopt;
    ext.write("basicConstraints=critical,CA:FALSE\nkeyUsage=critical,digitalSignature\n"
              "extendedKeyUsage=serverAuth\nsubjectAltName=DNS:" +
              hostName.toUtf8() + ",IP:127.0.0.1\n");
    ext.close();
    const QString ecKey =
        QStringLiteral("-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -keyout ");
    if (!openssl(dir,
                 QStringLiteral("req -x509 ") + ecKey +
                     QStringLiteral("ca.key -out ca.pem -days 2 -addext "
                                    "basicConstraints=critical,CA:TRUE -addext "
                                    "keyUsage=critical,keyCertSign,cRLSign"),
                 QStringLiteral("/CN=Throwaway test CA")) ||
        !openssl(dir, QStringLiteral("req ") + ecKey + QStringLiteral("server.key -out server.csr"),
                 QStringLiteral("/CN=") + hostName) ||
        !openssl(dir,
                 QStringLiteral("x509 -req -in server.csr -CA ca.pem -CAkey ca.key "
                                "-CAcreateserial -out server.pem -days 2 -extfile server.ext")))
        return std::nullopt;

    TestCA ca;
    ca._ca = QSslCertificate(readFile(dir + QStringLiteral("/ca.pem")), QSsl::Pem);
    ca._serverCertificate =
        QSslCertificate(readFile(dir + QStringLiteral("/server.pem")), QSsl::Pem);
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
