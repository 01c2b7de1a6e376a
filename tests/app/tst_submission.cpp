// The survey's trip to the account service. The whole test runs inside a bubblewrap
// sandbox: a private network where the account host resolves (through the sandbox's own
// /etc/hosts) to loopback, a real HTTPS server of the test on port 443 with a throwaway
// CA trusted by this process only, and an empty /Library and home folder for the
// removal that follows every submission.
#include "Sandbox.h"
#include "TestCA.h"
#include "TestHttpsServer.h"
#include "VXUninstallSurveyController.h"

#include "JSON.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

const QString kAccountHost = QStringLiteral("account.brelltan.net");

// Something for the removal to take away, so that a test can see it happened.
QString makeInstalledMarker()
{
    const QString dir = QDir::homePath() + QStringLiteral("/Library/Application Support/Quorvelle");
    QDir().mkpath(dir);
    QFile file(dir + QStringLiteral("/installed"));
    file.open(QIODevice::WriteOnly);
    return dir;
}

// Runs the event loop until the queued quit of proceedUninstall arrives; 0 when it did.
int awaitQuitRequest()
{
    QTimer::singleShot(15000, QCoreApplication::instance(), [] { QCoreApplication::exit(99); });
    return QCoreApplication::exec();
}

} // namespace

class TestSubmission : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void body_data();
    void body();
    void failuresLeadToRemoval_data();
    void failuresLeadToRemoval();

private:
    QTemporaryDir _dir;
    std::optional<TestCA> _ca;
    std::optional<TestCA> _untrustedCa;
    std::unique_ptr<TestHttpsServer> _server;
};

void TestSubmission::initTestCase()
{
    QVERIFY(Sandbox::insideSandbox());
    QVERIFY(_dir.isValid());
    QVERIFY(QDir(_dir.path()).mkpath(QStringLiteral("trusted")));
    QVERIFY(QDir(_dir.path()).mkpath(QStringLiteral("untrusted")));
    _ca = TestCA::create(_dir.path() + QStringLiteral("/trusted"), {kAccountHost});
    QVERIFY(_ca);
    _untrustedCa = TestCA::create(_dir.path() + QStringLiteral("/untrusted"), {kAccountHost});
    QVERIFY(_untrustedCa);
    _ca->trustInThisProcess();
    _server = std::make_unique<TestHttpsServer>(_ca->serverCertificate(), _ca->serverKey());
    QVERIFY(_server->listenOn(QHostAddress::LocalHost, 443));
}

void TestSubmission::body_data()
{
    QTest::addColumn<QString>("comment");
    QTest::newRow("plain") << QStringLiteral("Too expensive");
    QTest::newRow("form delimiters") << QStringLiteral("a&b=c+d&uninstallData=x");
    QTest::newRow("non-ASCII") << QStringLiteral(u"Grüße, ☃ 日本 — ok");
    QTest::newRow("empty") << QString();
}

void TestSubmission::body()
{
    QFETCH(QString, comment);
    _server->setBehaviour(TestHttpsServer::Behaviour::Answer, 200);
    _server->clearRequests();

    VXUninstallSurveyController controller;
    controller.setUninstallingReason(1);
    controller.setComment(comment);
    const QByteArray json = JSON::JSONString(controller.uninstallData()).toUtf8();
    controller.uninstall();
    QCOMPARE(awaitQuitRequest(), 0);

    QCOMPARE(_server->requests().size(), 1);
    const TestHttpsServer::Request request = _server->requests().first();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.target, QByteArray("/mac/uninstall-survey"));
    QCOMPARE(request.header("Host"), kAccountHost.toUtf8());
    // Exactly the field name, one "=" and the JSON text: no escaping, no line end.
    QCOMPARE(request.body, QByteArray("uninstallData=") + json);
    QVERIFY(request.body.contains(comment.toUtf8()));
    QJsonParseError error;
    const QJsonDocument sent = QJsonDocument::fromJson(request.body.mid(14), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QVERIFY(sent.object().contains(QStringLiteral("comment")));
    QCOMPARE(sent.object().value(QStringLiteral("comment")).toString(), comment);
    QCOMPARE(sent.object().value(QStringLiteral("other")).toInt(), 1);
}

void TestSubmission::failuresLeadToRemoval_data()
{
    QTest::addColumn<int>("behaviour");
    QTest::addColumn<bool>("listening");
    QTest::addColumn<bool>("trusted");
    QTest::addColumn<int>("minRequests");
    QTest::addColumn<int>("maxRequests");

    QTest::newRow("answers 200") << int(TestHttpsServer::Behaviour::Answer) << true << true << 1
                                 << 1;
    QTest::newRow("answers 500") << int(TestHttpsServer::Behaviour::Answer) << true << true << 1
                                 << 1;
    // Qt sends the request again a few times when the connection drops before any answer.
    QTest::newRow("closes the connection")
        << int(TestHttpsServer::Behaviour::Close) << true << true << 1 << 4;
    QTest::newRow("never answers")
        << int(TestHttpsServer::Behaviour::NeverAnswer) << true << true << 1 << 1;
    QTest::newRow("nobody listening")
        << int(TestHttpsServer::Behaviour::Answer) << false << true << 0 << 0;
    // Certificate verification stays on: a server the system does not trust gets nothing.
    QTest::newRow("untrusted certificate")
        << int(TestHttpsServer::Behaviour::Answer) << true << false << 0 << 0;
}

void TestSubmission::failuresLeadToRemoval()
{
    QFETCH(int, behaviour);
    QFETCH(bool, listening);
    QFETCH(bool, trusted);
    QFETCH(int, minRequests);
    QFETCH(int, maxRequests);

    const TestCA &ca = trusted ? *_ca : *_untrustedCa;
    TestHttpsServer server(ca.serverCertificate(), ca.serverKey());
    _server->close();
    if (listening)
        QVERIFY(server.listenOn(QHostAddress::LocalHost, 443));
    server.setBehaviour(TestHttpsServer::Behaviour(behaviour),
                        QByteArray(QTest::currentDataTag()).contains("500") ? 500 : 200);

    const QString installed = makeInstalledMarker();
    VXUninstallSurveyController::setSubmissionTimeoutForTesting(1500);
    VXUninstallSurveyController controller;
    controller.setUninstallingReason(3);
    controller.uninstall();
    VXUninstallSurveyController::setSubmissionTimeoutForTesting(60000);
    QCOMPARE(awaitQuitRequest(), 0);

    QVERIFY(server.requests().size() >= minRequests);
    QVERIFY(server.requests().size() <= maxRequests);
    if (!trusted)
        QVERIFY(server.failedHandshakes() > 0);
    QVERIFY(!QFileInfo::exists(installed));

    server.close();
    QVERIFY(_server->listenOn(QHostAddress::LocalHost, 443));
}

int main(int argc, char *argv[])
{
    if (!Sandbox::insideSandbox()) {
        QCoreApplication app(argc, argv);
        if (!Sandbox::available()) {
            std::puts("SKIP: bubblewrap cannot build a sandbox here");
            return 0;
        }
        Sandbox::Options options;
        options.hosts.insert(kAccountHost, QStringLiteral("127.0.0.1"));
        options.tmpfs = {QStringLiteral("/Library"), QStringLiteral("/home/tester")};
        options.environment.insert(QStringLiteral("HOME"), QStringLiteral("/home/tester"));
        const QStringList arguments = app.arguments().mid(1);
        const Sandbox::Result result = Sandbox::runSelf(arguments, options);
        std::fwrite(result.standardOutput.constData(), 1, size_t(result.standardOutput.size()),
                    stdout);
        std::fwrite(result.standardError.constData(), 1, size_t(result.standardError.size()),
                    stderr);
        return result.finished ? result.exitCode : 1;
    }
    QCoreApplication app(argc, argv);
    TestSubmission test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_submission.moc"
