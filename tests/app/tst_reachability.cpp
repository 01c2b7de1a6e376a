#include "TestHttpsServer.h"
#include "VXNetworkReachability.h"
#include "platform/VXNetlinkReachability.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

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

constexpr quint32 R = VXReachabilityBackend::Reachable;
constexpr quint32 C = VXReachabilityBackend::ConnectionRequired;
using B = TestHttpsServer::Behaviour;

} // namespace

// has a target, first flags, the ping page's status (0: no answer), notices, then: reachable,
// changes signalled, probes sent
using TransitionRow = std::tuple<bool, quint32, int, QList<quint32>, bool, int, int>;
Q_DECLARE_METATYPE(TransitionRow)

class tst_Reachability : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The first state comes from the back end's flags and is no change; notices then drive
    // it, and a lost host is probed until an answer (any status) or a reachability notice
    // brings it back. Without a target nothing ever makes it reachable.
    void transitions_data()
    {
        QTest::addColumn<TransitionRow>("row");
        using N = QList<quint32>;
        const N none;
        // Bits other than the two that count change nothing.
        QTest::newRow("first: reachable + other bits")
            << TransitionRow{true, (R | 1u | 8u | 0x10000u), 404, none, true, 0, 0};
        QTest::newRow("first: connection required")
            << TransitionRow{true, (R | C), 404, none, false, 0, 0};
        QTest::newRow("first: no flags") << TransitionRow{true, 0u, 404, none, false, 0, 0};
        QTest::newRow("no target") << TransitionRow{false, R, 404, N{R}, false, 0, 0};
        QTest::newRow("lost, 404 answers") << TransitionRow{true, R, 404, N{0}, true, 2, 1};
        QTest::newRow("lost, 302 answers") << TransitionRow{true, R, 302, N{R | C}, true, 2, 1};
        QTest::newRow("lost, silent server") << TransitionRow{true, R, 0, N{0}, false, 1, 1};
        QTest::newRow("lost twice, one probe") << TransitionRow{true, R, 0, N{0, C}, false, 1, 1};
        QTest::newRow("lost, notice back") << TransitionRow{true, R, 0, N{0, R}, true, 2, 1};
        QTest::newRow("reachable again") << TransitionRow{true, R, 0, N{R, R}, true, 0, 0};
    }
    void transitions()
    {
        QFETCH(TransitionRow, row);
        const auto [hasTarget, first, serverStatus, notices, reachable, changes, probes] = row;
        // The account service's ping page on loopback: a fixed status, or no answer (0).
        TestHttpsServer server;
        server.setBehaviour(serverStatus ? B::Answer : B::NeverAnswer, serverStatus);
        QVERIFY(server.listen(QHostAddress::LocalHost));
        auto *backend = new FakeBackend;
        backend->hasTarget = hasTarget;
        backend->flags = first;
        VXNetworkReachability reachability(
            backend, QUrl(u"http://127.0.0.1:%1/ping.html"_s.arg(server.serverPort())));
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

    // The Linux back end: names that cannot be looked up yield no target; resolvable
    // names with a route are reachable.
    void linuxHostNames_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("target");
        QTest::addColumn<quint32>("flags");
        QTest::newRow("loopback name") << u"localhost"_s << true << R;
        QTest::newRow("reserved, never resolves") << u"host.invalid"_s << true << 0u;
        QTest::newRow("empty") << QString() << false << 0u;
        QTest::newRow("empty label") << u"account..example"_s << false << 0u;
        QTest::newRow("long label") << QString(64, u'a') << false << 0u;
        QTest::newRow("too long") << QString(254, u'a') << false << 0u;
    }
    void linuxHostNames()
    {
        QFETCH(QString, host);
        QFETCH(bool, target);
        QFETCH(quint32, flags);
        VXNetlinkReachability backend;
        QCOMPARE(backend.createTarget(host), target);
        if (target)
            QCOMPARE(backend.currentFlags(), flags);
    }

    // A lookup started ahead answers only for its own host, and the latest one counts.
    void earlyLookup_data()
    {
        QTest::addColumn<QStringList>("early");
        QTest::addColumn<QString>("asked");
        QTest::addColumn<quint32>("flags");
        const QString loop = u"localhost"_s, never = u"host.invalid"_s;
        QTest::newRow("claimed") << QStringList{loop} << loop << R;
        QTest::newRow("another host's, resolving") << QStringList{loop} << never << 0u;
        QTest::newRow("another host's, failing") << QStringList{never} << loop << R;
        QTest::newRow("replaced by a later one") << QStringList{never, loop} << loop << R;
        QTest::newRow("replaced, asked for the first") << QStringList{loop, never} << loop << R;
    }
    void earlyLookup()
    {
        QFETCH(QStringList, early);
        QFETCH(QString, asked);
        QFETCH(quint32, flags);
        for (const QString &host : std::as_const(early))
            VXNetlinkReachability::startLookup(host.toLatin1());
        QCOMPARE(VXNetlinkReachability::flagsForHost(asked.toLatin1(), std::chrono::seconds(5)),
                 flags);
    }
};

QTEST_GUILESS_MAIN(tst_Reachability)
#include "tst_reachability.moc"
