// The stand-in account service as a program, for the sandbox, the demo and the benchmarks:
// HTTPS (the survey) and plain HTTP (the reachability ping) on loopback. It prints every
// request it receives and appends it, body as raw bytes, to a log file:
//   <METHOD> <scheme>://<Host><path>
//   <body>
//
// usage: qv-account-service --cert C --key K --log FILE [--status 200] [--silent]
//                           [--redirect URL] [--ready FILE]
// It listens on loopback's ports 443 (HTTPS) and 80 (HTTP).
#include "TestHttpsServer.h"
#include "Tools.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

using Tools::readFile;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const auto option = [&parser](const char *name, const char *fallback = nullptr) {
        QCommandLineOption o(QLatin1String(name), QString(), u"value"_s);
        if (fallback)
            o.setDefaultValue(QLatin1String(fallback));
        parser.addOption(o);
        return o;
    };
    const auto cert = option("cert"), key = option("key"), log = option("log");
    const auto status = option("status", "200"), redirect = option("redirect");
    const auto ready = option("ready");
    const QCommandLineOption silent(u"silent"_s);
    parser.addOption(silent);
    parser.process(app);

    const QSslCertificate certificate(readFile(parser.value(cert)), QSsl::Pem);
    const QSslKey privateKey(readFile(parser.value(key)), QSsl::Ec, QSsl::Pem);
    if (certificate.isNull() || privateKey.isNull()) {
        std::fprintf(stderr, "qv-account-service: cannot read the certificate or key\n");
        return 2;
    }
    QFile logFile(parser.value(log));
    if (!logFile.open(QIODevice::Append)) {
        std::fprintf(stderr, "qv-account-service: cannot open the log\n");
        return 2;
    }

    TestHttpsServer secure(certificate, privateKey), plain;
    for (TestHttpsServer *server : {&secure, &plain}) {
        if (parser.isSet(silent))
            server->setBehaviour(TestHttpsServer::Behaviour::NeverAnswer);
        else if (parser.isSet(redirect))
            server->setBehaviour(TestHttpsServer::Behaviour::Redirect);
        else
            server->setBehaviour(TestHttpsServer::Behaviour::Answer, parser.value(status).toInt());
        server->setRedirectLocation(parser.value(redirect).toUtf8());
        server->onRequest = [&logFile](const TestHttpsServer::Request &request) {
            const QByteArray url =
                (request.secure ? "https://" : "http://") + request.header("host") + request.path();
            logFile.write(request.method() + ' ' + url + '\n' + request.body + '\n');
            logFile.flush();
            std::printf("account service: %s %s (%lld bytes)\n", request.method().constData(),
                        url.constData(), static_cast<long long>(request.body.size()));
            if (!request.body.isEmpty())
                std::printf("account service received: %s\n", request.body.constData());
            std::fflush(stdout);
        };
    }
    if (!secure.listen(QHostAddress::LocalHost, 443) ||
        !plain.listen(QHostAddress::LocalHost, 80)) {
        std::fprintf(stderr, "qv-account-service: cannot listen\n");
        return 2;
    }
    if (parser.isSet(ready)) {
        QFile file(parser.value(ready));
        file.open(QIODevice::WriteOnly);
    }
    return QCoreApplication::exec();
}
