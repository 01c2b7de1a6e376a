#pragma once

#include <QList>
#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <QStringList>

#include <optional>

// A throwaway certificate authority and one server certificate signed by it, made with
// the openssl command in a folder the caller owns. Nothing is trusted until the caller
// asks: either in this process only (trustInThisProcess) or for a sandbox, through a
// rehashed copy of the system's certificate folder (makeCertificatesDir).
class TestCA
{
public:
    // dnsNames and ipAddresses become the server certificate's subject alternative names.
    static std::optional<TestCA> create(const QString &dir, const QStringList &dnsNames,
                                        const QStringList &ipAddresses = {
                                            QStringLiteral("127.0.0.1")});

    QString caCertificatePath() const { return _dir + QStringLiteral("/ca.pem"); }
    QString serverCertificatePath() const { return _dir + QStringLiteral("/server.pem"); }
    QString serverKeyPath() const { return _dir + QStringLiteral("/server.key"); }

    QSslCertificate caCertificate() const { return _ca; }
    QSslCertificate serverCertificate() const { return _serverCertificate; }
    QSslKey serverKey() const { return _serverKey; }

    // Adds the CA to this process's default TLS configuration (requests made afterwards
    // trust it); the program's own code is left as it is.
    void trustInThisProcess() const;

    // A copy of /etc/ssl/certs with the CA added and the hash links rebuilt, to be bound
    // over /etc/ssl/certs inside a sandbox. Returns the folder, or an empty string.
    QString makeCertificatesDir() const;

private:
    QString _dir;
    QSslCertificate _ca;
    QSslCertificate _serverCertificate;
    QSslKey _serverKey;
};
