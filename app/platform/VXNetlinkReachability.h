#pragma once

#include "VXReachabilityBackend.h"

#include <QSocketNotifier>

#include <chrono>
#include <memory>

// Linux host reachability: a host is reachable when its name resolves and the kernel has
// a route to one of its addresses. Nothing is sent: the route is asked for with an
// unconnected UDP connect(). There is no dial-up notion here, so ConnectionRequired is
// never reported. Change notices come from a NETLINK_ROUTE socket (links, routes,
// addresses) watched on the event loop; each burst re-runs the test and reports only a
// change of flags.
class VXNetlinkReachability : public VXReachabilityBackend
{
    Q_OBJECT

public:
    // A resolver that does not answer must not hold the launch: past this bound the
    // host counts as not resolvable.
    static constexpr std::chrono::milliseconds kResolveTimeout{1000};

    explicit VXNetlinkReachability(QObject *parent = nullptr);
    ~VXNetlinkReachability() override;

    bool createTarget(const QString &host) override;
    quint32 currentFlags() override;
    void schedule() override;

    // A name that can never be resolved yields no target: empty, longer than 253
    // characters, an empty label or one over 63 characters, or characters outside
    // letters, digits, '-', '.', and ':' (for address literals).
    static bool isValidHostName(const QString &host);
    // Resolution bounded by timeout, then a route check for every address found.
    static quint32 flagsForHost(const QByteArray &host, std::chrono::milliseconds timeout);
    // Starts resolving host now, on the resolver's own thread, so that the first
    // flagsForHost for that host (whose time-out still counts from its own call) finds the
    // answer ready or on its way. The launch does this for the account host before it
    // builds the window. A later call replaces an unclaimed earlier one; safe from any
    // thread, and before any Qt object exists.
    static void startLookup(const QByteArray &host);

private:
    void readNotices();

    QByteArray _host;
    int _netlinkSocket = -1;
    std::unique_ptr<QSocketNotifier> _notifier;
    quint32 _lastFlags = 0;
};
