#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QPair>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>

// A small HTTPS/1.1 server for tests, on the caller's event loop: it records every
// complete request and then behaves as told (answer with a status, close the connection
// without answering, or never answer).
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
        QByteArray method;
        QByteArray target; // path and query as sent
        QList<QPair<QByteArray, QByteArray>> headers;
        QByteArray body;
        QByteArray header(const QByteArray &name) const;
    };

    TestHttpsServer(const QSslCertificate &certificate, const QSslKey &key,
                    QObject *parent = nullptr);

    void setBehaviour(Behaviour behaviour, int status = 200, const QByteArray &body = "OK");
    bool listenOn(const QHostAddress &address = QHostAddress::LocalHost, quint16 port = 0)
    {
        return listen(address, port);
    }

    QList<Request> requests() const { return _requests; }
    void clearRequests() { _requests.clear(); }
    // Connections that were accepted but failed their TLS handshake.
    int failedHandshakes() const { return _failedHandshakes; }

Q_SIGNALS:
    void requestReceived();

protected:
    void incomingConnection(qintptr socketDescriptor) override;

private:
    void readFrom(class QSslSocket *socket);

    QSslCertificate _certificate;
    QSslKey _key;
    Behaviour _behaviour = Behaviour::Answer;
    int _status = 200;
    QByteArray _responseBody = "OK";
    QList<Request> _requests;
    int _failedHandshakes = 0;
};
