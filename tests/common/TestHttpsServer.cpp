#include "TestHttpsServer.h"

#include <QSslSocket>

QByteArray TestHttpsServer::Request::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return QByteArray();
}

TestHttpsServer::TestHttpsServer(const QSslCertificate &certificate, const QSslKey &key,
                                 QObject *parent)
    : QTcpServer(parent), _certificate(certificate), _key(key)
{
}

void TestHttpsServer::setBehaviour(Behaviour behaviour, int status, const QByteArray &body)
{
    _behaviour = behaviour;
    _status = status;
    _responseBody = body;
}

void TestHttpsServer::incomingConnection(qintptr socketDescriptor)
{
    auto *socket = new QSslSocket(this);
    if (!socket->setSocketDescriptor(socketDescriptor)) {
        delete socket;
        return;
    }
    socket->setLocalCertificate(_certificate);
    socket->setPrivateKey(_key);
    socket->setPeerVerifyMode(QSslSocket::VerifyNone); // clients bring no certificate
    connect(socket, &QSslSocket::readyRead, this, [this, socket] { readFrom(socket); });
    connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QSslSocket::errorOccurred, this, [this, socket] {
        if (!socket->isEncrypted())
            ++_failedHandshakes;
    });
    socket->startServerEncryption();
}

void TestHttpsServer::readFrom(QSslSocket *socket)
{
    QByteArray buffer = socket->property("buffer").toByteArray() + socket->readAll();
    socket->setProperty("buffer", buffer);
    const qsizetype headerEnd = buffer.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return;

    Request request;
    const QList<QByteArray> lines = buffer.left(headerEnd).split('\n');
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    request.method = requestLine.value(0);
    request.target = requestLine.value(1);
    qsizetype contentLength = 0;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QByteArray line = lines.at(i).trimmed();
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            continue;
        const QByteArray name = line.left(colon).trimmed();
        const QByteArray value = line.mid(colon + 1).trimmed();
        request.headers.append({name, value});
        if (name.compare("Content-Length", Qt::CaseInsensitive) == 0)
            contentLength = value.toLongLong();
    }
    if (buffer.size() - (headerEnd + 4) < contentLength)
        return; // the body is still on its way
    request.body = buffer.mid(headerEnd + 4, contentLength);
    socket->setProperty("buffer", buffer.mid(headerEnd + 4 + contentLength));
    _requests.append(request);

    switch (_behaviour) {
    case Behaviour::Answer: {
        const QByteArray response =
            "HTTP/1.1 " + QByteArray::number(_status) +
            " Test\r\nContent-Length: " + QByteArray::number(_responseBody.size()) +
            "\r\nConnection: close\r\n\r\n" + _responseBody;
        socket->write(response);
        socket->disconnectFromHost();
        break;
    }
    case Behaviour::Close:
        socket->abort();
        socket->deleteLater();
        break;
    case Behaviour::NeverAnswer:
        break;
    }
    Q_EMIT requestReceived();
}
