#include "TestHttpsServer.h"

#include <QSslSocket>
#include <QUrl>

QByteArray TestHttpsServer::Request::header(const QByteArray &name) const
{
    for (const QByteArray &line : head.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed().toLower() == name.toLower())
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

void TestHttpsServer::incomingConnection(qintptr socketDescriptor)
{
    const bool secure = !_certificate.isNull();
    QTcpSocket *socket = secure ? new QSslSocket(this) : new QTcpSocket(this);
    if (!socket->setSocketDescriptor(socketDescriptor)) {
        delete socket;
        return;
    }
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readFrom(socket); });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    if (auto *ssl = qobject_cast<QSslSocket *>(socket)) {
        ssl->setLocalCertificate(_certificate);
        ssl->setPrivateKey(_key);
        ssl->setPeerVerifyMode(QSslSocket::VerifyNone); // clients bring no certificate
        connect(ssl, &QSslSocket::errorOccurred, this, [this, ssl] {
            if (!ssl->isEncrypted())
                ++failedHandshakes;
        });
        ssl->startServerEncryption();
    }
}

void TestHttpsServer::readFrom(QTcpSocket *socket)
{
    const QByteArray buffer = socket->property("buffer").toByteArray() + socket->readAll();
    socket->setProperty("buffer", buffer);
    const qsizetype headerEnd = buffer.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return;
    Request request{buffer.left(headerEnd), {}, qobject_cast<QSslSocket *>(socket) != nullptr};
    const qsizetype contentLength = request.header("content-length").toLongLong();
    if (buffer.size() - (headerEnd + 4) < contentLength)
        return; // the body is still on its way
    socket->setProperty("buffer", buffer.mid(headerEnd + 4 + contentLength));
    request.body = buffer.mid(headerEnd + 4, contentLength);
    requests.append(request);
    if (onRequest)
        onRequest(request);

    QByteArray status = QByteArray::number(_status) + " Test";
    QByteArray extra;
    if (_behaviour == Behaviour::Redirect &&
        request.header("host") != QUrl(QString::fromUtf8(_location)).host().toUtf8()) {
        status = "307 Temporary Redirect";
        extra = "Location: " + _location + "\r\n";
    }
    if (_behaviour == Behaviour::Answer || _behaviour == Behaviour::Redirect) {
        socket->write("HTTP/1.1 " + status + "\r\n" + extra +
                      "Content-Length: 2\r\nConnection: close\r\n\r\nOK");
        socket->disconnectFromHost();
    } else if (_behaviour == Behaviour::Close) {
        socket->abort();
        socket->deleteLater();
    }
}
