#pragma once

#include <QObject>
#include <QString>

// The host-reachability service behind VXNetworkReachability, kept behind an interface so
// tests can feed flag values and fire change notices.
//
// Flags follow the usual reachability bit layout: bit 2 "reachable", bit 4 "a connection
// must first be brought up". Only the bits VXNetworkReachability looks at are defined.
class VXReachabilityBackend : public QObject
{
    Q_OBJECT

public:
    enum Flag : quint32
    {
        Reachable = 2,
        ConnectionRequired = 4,
    };

    using QObject::QObject;

    // Makes the target for a host name. False when the name yields no target; the caller
    // then never asks for flags or notices.
    virtual bool createTarget(const QString &host) = 0;
    // The target's flags now, synchronously. A failed query answers 0.
    virtual quint32 currentFlags() = 0;
    // Starts delivering flagsChanged() on the event loop of the calling thread.
    virtual void schedule() = 0;

Q_SIGNALS:
    // The target's flags differ from the ones last seen.
    void flagsChanged(quint32 flags);
};
