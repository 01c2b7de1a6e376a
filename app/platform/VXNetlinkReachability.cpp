#include "VXNetlinkReachability.h"

#include <QRegularExpression>

#include <arpa/inet.h>
#include <asm/types.h>
#include <cerrno>
#include <ctime>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <mutex>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

// One asynchronous lookup. Its strings and hints must outlive the lookup, which may run on
// in the resolver's thread after we stopped waiting, so it is heap-held.
struct Lookup
{
    QByteArray host;
    addrinfo hints{};
    gaicb request{};
};

// Submits a lookup of host to the resolver's thread; null when it refused.
Lookup *submitLookup(const QByteArray &host)
{
    auto *lookup = new Lookup;
    lookup->host = host;
    lookup->hints.ai_family = AF_UNSPEC;
    lookup->hints.ai_socktype = SOCK_DGRAM;
    lookup->request.ar_name = lookup->host.constData();
    lookup->request.ar_request = &lookup->hints;
    gaicb *list[] = {&lookup->request};
    if (getaddrinfo_a(GAI_NOWAIT, list, 1, nullptr) != 0) {
        delete lookup;
        return nullptr;
    }
    return lookup;
}

// The lookup startLookup began and nobody has claimed yet.
std::mutex earlyMutex;
Lookup *earlyLookup = nullptr;

Lookup *claimEarlyLookup(const QByteArray &host)
{
    const std::lock_guard lock(earlyMutex);
    if (!earlyLookup || earlyLookup->host != host)
        return nullptr;
    return std::exchange(earlyLookup, nullptr);
}

// Ends a lookup nobody waits for. One still running owns its buffers until it is called
// off, so one that cannot be called off is left to it.
void abandon(Lookup *lookup)
{
    if (gai_error(&lookup->request) == EAI_INPROGRESS) {
        const int cancel = gai_cancel(&lookup->request);
        if (cancel == EAI_CANCELED) {
            delete lookup;
            return;
        }
        if (cancel != EAI_ALLDONE)
            return;
    }
    // Finished (perhaps while being called off): its answer, if any, is ours to free.
    if (gai_error(&lookup->request) == 0)
        freeaddrinfo(lookup->request.ar_result);
    delete lookup;
}

bool hasRoute(const addrinfo *ai)
{
    sockaddr_storage address{};
    if (ai->ai_addrlen > sizeof(address))
        return false;
    memcpy(&address, ai->ai_addr, ai->ai_addrlen);
    // Any port will do: connect() on a datagram socket only picks a route and sends nothing.
    if (address.ss_family == AF_INET)
        reinterpret_cast<sockaddr_in *>(&address)->sin_port = htons(80);
    else if (address.ss_family == AF_INET6)
        reinterpret_cast<sockaddr_in6 *>(&address)->sin6_port = htons(80);
    else
        return false;
    const int fd = ::socket(address.ss_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    const bool routed = ::connect(fd, reinterpret_cast<sockaddr *>(&address), ai->ai_addrlen) == 0;
    ::close(fd);
    return routed;
}

} // namespace

VXNetlinkReachability::VXNetlinkReachability(QObject *parent) : VXReachabilityBackend(parent) {}

VXNetlinkReachability::~VXNetlinkReachability()
{
    _notifier.reset();
    if (_netlinkSocket >= 0)
        ::close(_netlinkSocket);
}

bool VXNetlinkReachability::isValidHostName(const QString &host)
{
    if (host.isEmpty() || host.size() > 253)
        return false;
    static const QRegularExpression allowed(QStringLiteral("^[A-Za-z0-9.:-]+$"));
    if (!allowed.match(host).hasMatch())
        return false;
    if (host.contains(QLatin1Char(':')))
        return true; // an IPv6 literal has no labels
    QString labels = host;
    if (labels.endsWith(QLatin1Char('.')))
        labels.chop(1); // the root label
    const QStringList parts = labels.split(QLatin1Char('.'));
    for (const QString &label : parts) {
        if (label.isEmpty() || label.size() > 63)
            return false;
    }
    return true;
}

bool VXNetlinkReachability::createTarget(const QString &host)
{
    if (!isValidHostName(host))
        return false;
    _host = host.toLatin1();
    return true;
}

quint32 VXNetlinkReachability::currentFlags()
{
    _lastFlags = flagsForHost(_host, kResolveTimeout);
    return _lastFlags;
}

quint32 VXNetlinkReachability::flagsForHost(const QByteArray &host,
                                            std::chrono::milliseconds timeout)
{
    if (host.isEmpty())
        return 0;
    Lookup *lookup = claimEarlyLookup(host);
    if (!lookup)
        lookup = submitLookup(host);
    if (!lookup)
        return 0;

    const auto deadline = std::chrono::steady_clock::now() + timeout;
    int state = EAI_INPROGRESS;
    while ((state = gai_error(&lookup->request)) == EAI_INPROGRESS) {
        const auto left = deadline - std::chrono::steady_clock::now();
        if (left <= std::chrono::nanoseconds::zero())
            break;
        const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(left).count();
        const timespec wait{time_t(ns / 1000000000), long(ns % 1000000000)};
        const gaicb *const waitList[] = {&lookup->request};
        gai_suspend(waitList, 1, &wait); // woken by completion, time-out or a signal
    }

    if (state == EAI_INPROGRESS) {
        // Black-holed resolver. If the lookup cannot be called off it still owns its
        // buffers, so they are left to it rather than freed under its feet.
        if (gai_cancel(&lookup->request) == EAI_CANCELED)
            delete lookup;
        return 0;
    }

    quint32 flags = 0;
    if (state == 0) {
        for (const addrinfo *ai = lookup->request.ar_result; ai; ai = ai->ai_next) {
            if (hasRoute(ai)) {
                flags = Reachable;
                break;
            }
        }
        freeaddrinfo(lookup->request.ar_result);
    }
    delete lookup;
    return flags;
}

void VXNetlinkReachability::startLookup(const QByteArray &host)
{
    if (host.isEmpty())
        return;
    Lookup *lookup = submitLookup(host);
    Lookup *replaced = nullptr;
    {
        const std::lock_guard lock(earlyMutex);
        replaced = std::exchange(earlyLookup, lookup);
    }
    if (replaced)
        abandon(replaced);
}

void VXNetlinkReachability::schedule()
{
    if (_notifier)
        return;
    _netlinkSocket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (_netlinkSocket < 0)
        return; // no notices: the state stays as the first test left it
    sockaddr_nl local{};
    local.nl_family = AF_NETLINK;
    local.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE | RTMGRP_IPV4_IFADDR |
                      RTMGRP_IPV6_IFADDR;
    if (::bind(_netlinkSocket, reinterpret_cast<sockaddr *>(&local), sizeof(local)) != 0) {
        ::close(_netlinkSocket);
        _netlinkSocket = -1;
        return;
    }
    _notifier = std::make_unique<QSocketNotifier>(_netlinkSocket, QSocketNotifier::Read);
    connect(_notifier.get(), &QSocketNotifier::activated, this,
            &VXNetlinkReachability::readNotices);
}

void VXNetlinkReachability::readNotices()
{
    // One change usually arrives as a burst of messages; their content does not matter,
    // only that something changed, so the whole burst is drained and tested once.
    char buffer[8192];
    bool any = false;
    for (;;) {
        const ssize_t n = ::recv(_netlinkSocket, buffer, sizeof(buffer), 0);
        if (n > 0) {
            any = true;
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno == ENOBUFS) {
            any = true; // messages were lost: something changed all the same
            continue;
        }
        break;
    }
    if (!any)
        return;
    const quint32 before = _lastFlags;
    if (currentFlags() != before)
        Q_EMIT flagsChanged(_lastFlags);
}
