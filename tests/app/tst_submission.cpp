// The survey's trip to the account service, run inside a bubblewrap sandbox: the account
// host resolves to loopback, where a real HTTPS server of the test listens on port 443 with
// a throwaway CA trusted by this process only; /Library and the home folder are empty.
#include "Sandbox.h"
#include "TestCA.h"
#include "TestHttpsServer.h"
#include "VXUninstallSurveyController.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString kAccountHost = u"account.brelltan.net"_s;
using B = TestHttpsServer::Behaviour;

} // namespace

class TestSubmission : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;
    std::optional<TestCA> _ca, _untrustedCa;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(Sandbox::insideSandbox());
        _ca = TestCA::create(_dir.filePath(u"t"_s), kAccountHost);
        _untrustedCa = TestCA::create(_dir.filePath(u"u"_s), kAccountHost);
        QVERIFY(_ca && _untrustedCa);
        _ca->trustInThisProcess();
    }

    // Whatever becomes of the request, the removal follows. (A 500 answer, a silent service and
    // a redirect to another host are rows of the roads' fault matrix.)
    void failuresLeadToRemoval_data()
    {
        QTest::addColumn<B>("behaviour");
        QTest::addColumn<int>("status"); // 0: nobody listening
        QTest::addColumn<bool>("trusted");
        QTest::addColumn<int>("maxRequests");
        // Qt sends the request again a few times when the connection drops before any answer.
        QTest::newRow("closes the connection") << B::Close << 200 << true << 4;
        QTest::newRow("nobody listening") << B::Answer << 0 << true << 0;
        // Certificate verification stays on: a server the system does not trust gets nothing.
        QTest::newRow("untrusted certificate") << B::Answer << 200 << false << 0;
        // The survey carries the user's name: a redirect may not take it down to plain HTTP
        // (followed, it would reach the plain server).
        QTest::newRow("redirect down to HTTP") << B::Redirect << 200 << true << 1;
    }
    void failuresLeadToRemoval()
    {
        QFETCH(B, behaviour);
        QFETCH(int, status);
        QFETCH(bool, trusted);
        QFETCH(int, maxRequests);
        const TestCA &ca = trusted ? *_ca : *_untrustedCa;
        TestHttpsServer server(ca.serverCertificate(), ca.serverKey());
        if (status != 0)
            QVERIFY(server.listen(QHostAddress::LocalHost, 443));
        server.setBehaviour(behaviour, status);
        TestHttpsServer plain;
        QVERIFY(plain.listen(QHostAddress::LocalHost, 8080));
        server.setRedirectLocation("http://" + kAccountHost.toUtf8() +
                                   ":8080/mac/uninstall-survey");

        const QString installed = QDir::homePath() + u"/Library/Application Support/Quorvelle"_s;
        QVERIFY(QDir().mkpath(installed));
        VXUninstallSurveyController::setSubmissionTimeoutForTesting(1500);
        VXUninstallSurveyController controller;
        controller.setUninstallingReason(3);
        controller.uninstall();
        VXUninstallSurveyController::setSubmissionTimeoutForTesting(60000);
        // The event loop runs until the queued quit of proceedUninstall arrives.
        QTimer::singleShot(15000, &controller, [] { QCoreApplication::exit(99); });
        QCOMPARE(QCoreApplication::exec(), 0);

        QVERIFY(server.requests.size() >= qMin(maxRequests, 1));
        QVERIFY(server.requests.size() <= maxRequests);
        QCOMPARE(plain.requests.size(), 0);
        QCOMPARE(server.failedHandshakes > 0, !trusted);
        QVERIFY(!QFileInfo::exists(installed));
    }
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (Sandbox::insideSandbox()) {
        TestSubmission test;
        return QTest::qExec(&test, argc, argv);
    }
    if (!Sandbox::available()) {
        std::puts("SKIP: bubblewrap cannot build a sandbox here");
        return 0;
    }
    Sandbox::Options options;
    options.hosts.insert(kAccountHost, u"127.0.0.1"_s);
    options.tmpfs = {u"/Library"_s, u"/home/tester"_s};
    options.environment.insert(u"HOME"_s, u"/home/tester"_s);
    const Sandbox::Result result = Sandbox::runSelf(app.arguments().mid(1), options);
    std::fwrite(result.output.constData(), 1, size_t(result.output.size()), stdout);
    std::fwrite(result.errors.constData(), 1, size_t(result.errors.size()), stderr);
    return result.exitCode < 0 ? 1 : result.exitCode;
}

#include "tst_submission.moc"
