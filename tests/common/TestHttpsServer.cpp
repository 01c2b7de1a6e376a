#include "TestHttpsServer.h"

#include <QSslSocket>

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
            ++failedHandshakes;
    });
    socket->startServerEncryption();
}

void TestHttpsServer::readFrom(QSslSocket *socket)
{
    const QByteArray buffer = socket->property("buffer").toByteArray() + socket->readAll();
    socket->setProperty("buffer", buffer);
    const qsizetype headerEnd = buffer.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return;
    const QByteArray head = buffer.left(headerEnd);
    qsizetype contentLength = 0;
    for (const QByteArray &line : head.split('\n')) {
        if (line.toLower().startsWith("content-length:"))
            contentLength = line.mid(15).trimmed().toLongLong();
    }
    if (buffer.size() - (headerEnd + 4) < contentLength)
        return; // the body is still on its way
    socket->setProperty("buffer", buffer.mid(headerEnd + 4 + contentLength));
    requests.append({head, buffer.mid(headerEnd + 4, contentLength)});

    if (_behaviour == Behaviour::Answer) {
        socket->write("HTTP/1.1 " + QByteArray::number(_status) +
                      " Test\r\nContent-Length: 2\r\nConnection: close\r\n\r\nOK");
        socket->disconnectFromHost();
    } else if (_behaviour == Behaviour::Close) {
        socket->abort();
        socket->deleteLater();
    }
}
