#pragma once

#include <QByteArray>
#include <QList>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>

// A small HTTPS/1.1 server for tests, on the caller's event loop: it records every complete
// request and then answers with a status, closes the connection, or never answers.
class TestHttpsServer : public QTcpServer
{
    Q_OBJECT

public:
    enum class Behaviour
    {
        Answer,
        Close,
        NeverAnswer
    };

    struct Request
    {
        QByteArray head; // request line and headers
        QByteArray body;
    };

    TestHttpsServer(const QSslCertificate &certificate, const QSslKey &key)
        : _certificate(certificate), _key(key)
    {
    }

    void setBehaviour(Behaviour behaviour, int status = 200)
    {
        _behaviour = behaviour;
        _status = status;
    }
    QList<Request> requests;
    int failedHandshakes = 0; // accepted connections whose TLS handshake failed

protected:
    void incomingConnection(qintptr socketDescriptor) override;

private:
    void readFrom(class QSslSocket *socket);

    QSslCertificate _certificate;
    QSslKey _key;
    Behaviour _behaviour = Behaviour::Answer;
    int _status = 200;
};
