#include "TestHttpsServer.h"
#include "VXNetworkReachability.h"
#include "platform/VXNetlinkReachability.h"

#include <QSignalSpy>
#include <QTcpSocket>
#include <QTest>

using namespace std::chrono_literals;

namespace {

// Feeds the flag values and notices a system reachability service would deliver.
class FakeBackend : public VXReachabilityBackend
{
public:
    bool hasTarget = true, scheduled = false;
    quint32 flags = 0;

    bool createTarget(const QString &) override { return hasTarget; }
    quint32 currentFlags() override { return flags; }
    void schedule() override { scheduled = true; }
    void notice(quint32 newFlags)
    {
        flags = newFlags;
        Q_EMIT flagsChanged(newFlags);
    }
};

// The account service's ping page on loopback, served by the shared stand-in over plain
// HTTP: answers every request with a fixed status, or never answers at all (status 0).
class PingServer : public TestHttpsServer
{
public:
    PingServer()
    {
        setStatus(404);
        listen(QHostAddress::LocalHost);
    }
    void setStatus(int status)
    {
        setBehaviour(status ? Behaviour::Answer : Behaviour::NeverAnswer, status);
    }
    QUrl url() const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/ping.html").arg(serverPort()));
    }
};

constexpr quint32 R = VXReachabilityBackend::Reachable;
constexpr quint32 C = VXReachabilityBackend::ConnectionRequired;

} // namespace

class tst_Reachability : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The first state comes from the back end's flags and is no change; notices then drive
    // it, and a lost host is probed until an answer (any status) or a reachability notice
    // brings it back. Without a target nothing ever makes it reachable.
    void transitions_data()
    {
        QTest::addColumn<bool>("hasTarget");
        QTest::addColumn<quint32>("first");
        QTest::addColumn<int>("serverStatus");
        QTest::addColumn<QList<quint32>>("notices");
        QTest::addColumn<bool>("reachable");
        QTest::addColumn<int>("changes");
        QTest::addColumn<int>("probes");
        const QList<quint32> none;
        QTest::newRow("first: reachable") << true << R << 404 << none << true << 0 << 0;
        QTest::newRow("first: reachable + other bits")
            << true << (R | 1u | 8u | 0x10000u) << 404 << none << true << 0 << 0;
        QTest::newRow("first: connection required")
            << true << (R | C) << 404 << none << false << 0 << 0;
        QTest::newRow("first: no flags") << true << 0u << 404 << none << false << 0 << 0;
        QTest::newRow("no target") << false << R << 404 << QList<quint32>{R} << false << 0 << 0;
        QTest::newRow("lost, 404 answers")
            << true << R << 404 << QList<quint32>{0} << true << 2 << 1;
        QTest::newRow("lost, 302 answers")
            << true << R << 302 << QList<quint32>{R | C} << true << 2 << 1;
        QTest::newRow("lost, silent server")
            << true << R << 0 << QList<quint32>{0} << false << 1 << 1;
        QTest::newRow("lost twice, one probe")
            << true << R << 0 << QList<quint32>{0, C} << false << 1 << 1;
        QTest::newRow("lost, notice back")
            << true << R << 0 << QList<quint32>{0, R} << true << 2 << 1;
        QTest::newRow("reachable again")
            << true << R << 0 << QList<quint32>{R, R} << true << 0 << 0;
    }
    void transitions()
    {
        QFETCH(bool, hasTarget);
        QFETCH(quint32, first);
        QFETCH(int, serverStatus);
        QFETCH(QList<quint32>, notices);
        QFETCH(bool, reachable);
        QFETCH(int, changes);
        QFETCH(int, probes);
        PingServer server;
        server.setStatus(serverStatus);
        auto *backend = new FakeBackend;
        backend->hasTarget = hasTarget;
        backend->flags = first;
        VXNetworkReachability reachability(backend, server.url());
        QSignalSpy spy(&reachability, &VXNetworkReachability::reachabilityChanged);
        QCOMPARE(backend->scheduled, hasTarget);
        if (notices.isEmpty())
            QCOMPARE(reachability.isReachable(), reachable);
        for (quint32 flags : notices) {
            backend->notice(flags);
            QTest::qWait(100); // lets a started probe reach the server
        }
        if (reachable)
            QTRY_VERIFY(reachability.isReachable());
        QTest::qWait(200);
        QCOMPARE(reachability.isReachable(), reachable);
        QCOMPARE(spy.count(), changes);
        QCOMPARE(server.requests.size(), probes);
        for (const TestHttpsServer::Request &request : server.requests)
            QVERIFY2(request.head.startsWith("GET /ping.html HTTP/1.1\r\n"),
                     request.head.constData());
    }

    // A failed probe waits, retries after the delay, and a reachability notice during the
    // wait cancels the retry.
    void retryAfterFailure()
    {
        auto *backend = new FakeBackend;
        backend->flags = R;
        VXNetworkReachability::Timings timings;
        timings.retryDelay = 300ms;
        PingServer server;
        const QUrl refused = server.url();
        server.close(); // nobody listens there any more: connection refused
        VXNetworkReachability reachability(backend, refused, timings);
        QSignalSpy spy(&reachability, &VXNetworkReachability::reachabilityChanged);
        backend->notice(0);
        QCOMPARE(spy.count(), 1);
        QVERIFY(!reachability.isReachable());

        // The server comes up on the refused port: only the retry can find it.
        QVERIFY(server.listen(QHostAddress::LocalHost, quint16(refused.port())));
        QTRY_COMPARE_WITH_TIMEOUT(server.requests.size(), 1, 5000);
        QTRY_VERIFY(reachability.isReachable());
        QCOMPARE(spy.count(), 2);

        // Lost again with nobody listening; back by notice before the retry is due.
        server.close();
        backend->notice(0);
        QTest::qWait(100);
        backend->notice(R);
        QVERIFY(server.listen(QHostAddress::LocalHost, quint16(refused.port())));
        QTest::qWait(600);
        QVERIFY(server.requests.size() == 1); // the cancelled retry never asked
        QCOMPARE(spy.count(), 4);
    }

    // The Linux back end: names that cannot be looked up yield no target; resolvable
    // names with a route are reachable.
    void linuxHostNames_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("target");
        QTest::addColumn<quint32>("flags");
        QTest::newRow("loopback name") << QStringLiteral("localhost") << true << R;
        QTest::newRow("reserved, never resolves") << QStringLiteral("host.invalid") << true << 0u;
        QTest::newRow("empty") << QString() << false << 0u;
        QTest::newRow("empty label") << QStringLiteral("account..example") << false << 0u;
        QTest::newRow("long label") << QString(64, QLatin1Char('a')) << false << 0u;
        QTest::newRow("too long") << QString(254, QLatin1Char('a')) << false << 0u;
    }
    void linuxHostNames()
    {
        QFETCH(QString, host);
        QFETCH(bool, target);
        QFETCH(quint32, flags);
        VXNetlinkReachability backend;
        QCOMPARE(backend.createTarget(host), target);
        if (!target)
            return;
        QCOMPARE(backend.currentFlags(), flags);
    }
};

QTEST_GUILESS_MAIN(tst_Reachability)
#include "tst_reachability.moc"
