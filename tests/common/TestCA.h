#pragma once

#include <QSslCertificate>
#include <QSslKey>
#include <QString>

#include <optional>

// A throwaway certificate authority and one server certificate for hostName signed by it,
// made by scripts/qv-ca (the one recipe, also used by the sandbox) in a folder the caller owns
// (made if missing).
// Nothing is trusted until the caller calls trustInThisProcess().
class TestCA
{
public:
    static std::optional<TestCA> create(const QString &dir, const QString &hostName);

    QSslCertificate serverCertificate() const { return _serverCertificate; }
    QSslKey serverKey() const { return _serverKey; }

    // Requests made afterwards by this process trust the CA; the program's code is unchanged.
    void trustInThisProcess() const;

private:
    QSslCertificate _ca, _serverCertificate;
    QSslKey _serverKey;
};
