#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <chrono>

class QNetworkAccessManager;
class QNetworkReply;
class VXReachabilityBackend;

// Can the vendor's account service be reached? A YES/NO state that follows the system's
// reachability notices for the service's host and confirms a return to reachability with
// an HTTP request for "/ping.html". Main thread only.
//
// Every change of state emits reachabilityChanged(): it is this program's
// kVXNetworkReachabilityChangedNotification; the sender is the reachability object and
// the new state is read from isReachable().
class VXNetworkReachability : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool reachable READ isReachable WRITE setReachable NOTIFY reachabilityChanged)

public:
    // Probe timings: the platform's default request time-out, and the pause after a failed
    // probe before the next one.
    struct Timings
    {
        std::chrono::milliseconds probeTimeout{60000};
        std::chrono::milliseconds retryDelay{10000};
    };

    // The shared instance, created on the first call (which runs the synchronous first
    // test of the account-service host) and kept for the life of the process.
    static VXNetworkReachability *reachability();
    // Starts resolving the account-service host ahead of the first reachability() call,
    // which then waits only for what is left of the lookup. No Qt object is needed.
    static void startResolvingAccountHost();

    // Reachability of pingURL's host through backend (taken over). The first test runs
    // here, synchronously.
    VXNetworkReachability(VXReachabilityBackend *backend, const QUrl &pingURL,
                          QObject *parent = nullptr);
    VXNetworkReachability(VXReachabilityBackend *backend, const QUrl &pingURL, Timings timings,
                          QObject *parent = nullptr);
    ~VXNetworkReachability() override;

    // Reachable and no connection has to be brought up first.
    static bool isReachableFlags(quint32 flags) { return (flags & 6) == 2; }

    bool isReachable() const { return _isReachable; }
    // Stores and announces a new state; the current state again announces nothing.
    void setReachable(bool reachable);

    void onHostReachable();
    void onHostUnreachable();
    void startReachabilityConnection();
    void invalidateReachabilityConnection();

Q_SIGNALS:
    void reachabilityChanged();

private:
    void connectionDidReceiveResponse();
    void connectionDidFailWithError();

    bool _isReachable = false;
    QPointer<QNetworkReply> connection;

    VXReachabilityBackend *_backend = nullptr;
    QUrl _pingURL;
    Timings _timings;
    QNetworkAccessManager *_network = nullptr;
    QTimer _retryTimer; // the delayed startReachabilityConnection, cancellable
};
