#include "VXNetworkReachability.h"

#include "VXProductInformation.h"
#include "platform/VXNetlinkReachability.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace {

QUrl accountPingURL()
{
    return VXProductInformation::accountServiceURLWithPath(QStringLiteral("/ping.html"));
}

} // namespace

VXNetworkReachability *VXNetworkReachability::reachability()
{
    // Never destroyed: the target stays scheduled for the life of the process.
    static VXNetworkReachability *shared =
        new VXNetworkReachability(new VXNetlinkReachability, accountPingURL());
    return shared;
}

void VXNetworkReachability::startResolvingAccountHost()
{
    const QString host = accountPingURL().host();
    if (VXNetlinkReachability::isValidHostName(host))
        VXNetlinkReachability::startLookup(host.toLatin1());
}

VXNetworkReachability::VXNetworkReachability(VXReachabilityBackend *backend, const QUrl &pingURL,
                                             QObject *parent)
    : VXNetworkReachability(backend, pingURL, Timings(), parent)
{
}

VXNetworkReachability::VXNetworkReachability(VXReachabilityBackend *backend, const QUrl &pingURL,
                                             Timings timings, QObject *parent)
    : QObject(parent), _backend(backend), _pingURL(pingURL), _timings(timings)
{
    _backend->setParent(this);
    _retryTimer.setSingleShot(true);
    _retryTimer.setInterval(_timings.retryDelay);
    connect(&_retryTimer, &QTimer::timeout, this,
            &VXNetworkReachability::startReachabilityConnection);

    if (!_backend->createTarget(_pingURL.host()))
        return; // no target: NO for good, nothing scheduled
    if (isReachableFlags(_backend->currentFlags()))
        _isReachable = true; // the starting state, not a change: nobody is told
    connect(_backend, &VXReachabilityBackend::flagsChanged, this, [this](quint32 flags) {
        if (isReachableFlags(flags))
            onHostReachable();
        else
            onHostUnreachable();
    });
    _backend->schedule();
}

VXNetworkReachability::~VXNetworkReachability()
{
    invalidateReachabilityConnection();
}

void VXNetworkReachability::setReachable(bool reachable)
{
    if (reachable == _isReachable)
        return;
    _isReachable = reachable;
    Q_EMIT reachabilityChanged();
}

void VXNetworkReachability::onHostReachable()
{
    invalidateReachabilityConnection();
    _retryTimer.stop();
    setReachable(true);
}

void VXNetworkReachability::onHostUnreachable()
{
    // While unreachable a probe (or its retry) is already on its way; never a second one.
    if (!_isReachable)
        return;
    setReachable(false);
    invalidateReachabilityConnection();
    startReachabilityConnection();
}

void VXNetworkReachability::startReachabilityConnection()
{
    if (!_network)
        _network = new QNetworkAccessManager(this);
    QNetworkRequest request(_pingURL);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    // A redirect is an answer too; following it could only turn that answer into a failure.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setTransferTimeout(int(_timings.probeTimeout.count()));
    QNetworkReply *reply = _network->get(request);
    connection = reply;
    // The headers are the response; the body is never read.
    connect(reply, &QNetworkReply::metaDataChanged, this,
            &VXNetworkReachability::connectionDidReceiveResponse);
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        if (reply != connection)
            return;
        if (reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
            connectionDidReceiveResponse(); // an error page still proves the server answers
        else
            connectionDidFailWithError();
    });
}

void VXNetworkReachability::invalidateReachabilityConnection()
{
    if (!connection)
        return;
    QNetworkReply *reply = connection;
    connection = nullptr;
    reply->disconnect(this);
    // Called from the reply's own signals too, where the reply is still busy with itself:
    // the cancel is queued.
    QMetaObject::invokeMethod(
        reply,
        [reply] {
            if (!reply->isFinished())
                reply->abort();
            reply->deleteLater();
        },
        Qt::QueuedConnection);
}

void VXNetworkReachability::connectionDidReceiveResponse()
{
    if (!connection || !connection->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
        return;
    onHostReachable(); // cancels the connection
}

void VXNetworkReachability::connectionDidFailWithError()
{
    invalidateReachabilityConnection();
    _retryTimer.start();
}
