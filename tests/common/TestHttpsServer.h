#pragma once

#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>

#include <functional>

// The one stand-in for the account service: a small HTTP/1.1 server on the caller's event
// loop, over TLS when given a certificate and plain otherwise. It records every complete
// request and then answers with a status, redirects, closes the connection, or never
// answers. Tests use it in-process; qv-account-service wraps it as a program for the
// sandbox, the demo and the benchmarks.
class TestHttpsServer : public QTcpServer
{
    Q_OBJECT

public:
    enum class Behaviour
    {
        Answer,
        Close,
        NeverAnswer,
        Redirect // 307 to the redirect location, unless the request is already for its host
    };

    struct Request
    {
        QByteArray head; // request line and headers
        QByteArray body;
        bool secure = false;

        QByteArray method() const { return head.left(head.indexOf(' ')); }
        QByteArray path() const { return head.split('\n').constFirst().split(' ').value(1); }
        QByteArray header(const QByteArray &name) const;
    };

    TestHttpsServer() = default; // plain HTTP
    TestHttpsServer(const QSslCertificate &certificate, const QSslKey &key)
        : _certificate(certificate), _key(key)
    {
    }

    void setBehaviour(Behaviour behaviour, int status = 200)
    {
        _behaviour = behaviour;
        _status = status;
    }
    void setRedirectLocation(const QByteArray &location) { _location = location; }
    QList<Request> requests;
    int failedHandshakes = 0; // accepted connections whose TLS handshake failed
    std::function<void(const Request &)> onRequest; // called for every complete request

protected:
    void incomingConnection(qintptr socketDescriptor) override;

private:
    void readFrom(class QTcpSocket *socket);

    QSslCertificate _certificate;
    QSslKey _key;
    Behaviour _behaviour = Behaviour::Answer;
    int _status = 200;
    QByteArray _location;
};
