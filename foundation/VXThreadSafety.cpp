#include "VXThreadSafety.h"

#include "Bundle.h"
#include "VXThreadSafeBundleProxy.h"

#include <QPointer>

using Quorvelle::Bundle;

namespace {

// The monitor of the lock map; held only inside take and release, never while a
// per-identifier lock is awaited.
std::recursive_mutex &lockMapMonitor()
{
    static std::recursive_mutex m;
    return m;
}

QHash<QString, VXThreadSafety::LockMapEntry> &lockMapStorage()
{
    static auto *map = new QHash<QString, VXThreadSafety::LockMapEntry>;
    return *map;
}

struct Delegate
{
    std::mutex mutex;
    QPointer<QObject> object;
    const QMetaObject *metaObject = nullptr;
};

Delegate &delegate()
{
    static auto *d = new Delegate;
    return *d;
}

// Shared by lookups by path and by class: only the finding or creation of the bundle is
// guarded by the identifier's lock.
template <class Lookup>
VXThreadSafeBundleProxy *lockedLookup(const QString &identifier, Lookup &&lookup)
{
    // Gives the use back even when the lookup throws.
    struct Use
    {
        const QString &identifier;
        std::shared_ptr<std::recursive_mutex> lock = VXThreadSafety::lockForIdentifier(identifier);
        ~Use() { VXThreadSafety::releaseLockForIdentifier(identifier); }
    } use{identifier};
    std::lock_guard guard(*use.lock);
    return VXThreadSafeBundleProxy::proxyWithBundle(lookup());
}

} // namespace

namespace VXThreadSafety {

QHash<QString, LockMapEntry> lockMap()
{
    std::lock_guard guard(lockMapMonitor());
    return lockMapStorage();
}

quint64 useCountForIdentifier(const QString &identifier)
{
    std::lock_guard guard(lockMapMonitor());
    return lockMapStorage().value(identifier).useCount;
}

std::shared_ptr<std::recursive_mutex> lockForIdentifier(const QString &identifier)
{
    std::lock_guard guard(lockMapMonitor());
    LockMapEntry &entry = lockMapStorage()[identifier];
    if (!entry.lock)
        entry.lock = std::make_shared<std::recursive_mutex>();
    ++entry.useCount;
    return entry.lock;
}

void releaseLockForIdentifier(const QString &identifier)
{
    std::lock_guard guard(lockMapMonitor());
    auto &map = lockMapStorage();
    const auto it = map.find(identifier);
    if (it == map.end())
        return;
    if (it->useCount != 1)
        --it->useCount;
    else
        map.erase(it);
}

QString lockIdentifierForImagePath(const QString &imagePath)
{
    const QLatin1StringView framework(".framework/");
    qsizetype at = imagePath.lastIndexOf(framework, -1, Qt::CaseInsensitive);
    if (at >= 0)
        return imagePath.left(at + framework.size() - 1);
    at = imagePath.lastIndexOf(QLatin1StringView("/Contents/"), -1, Qt::CaseInsensitive);
    if (at >= 0)
        return imagePath.left(at);
    return imagePath;
}

QString lockIdentifierForClass(const QMetaObject *aClass)
{
    return lockIdentifierForImagePath(Bundle::imagePathForClass(aClass));
}

QString lockIdentifierForMainBundle()
{
    const QMetaObject *delegateClass = nullptr;
    {
        Delegate &d = delegate();
        std::lock_guard guard(d.mutex);
        if (d.object)
            delegateClass = d.metaObject;
    }
    if (!delegateClass)
        return QStringLiteral("VXThreadSafeMainBundle");
    return lockIdentifierForClass(delegateClass);
}

void setApplicationDelegate(QObject *object)
{
    Delegate &d = delegate();
    std::lock_guard guard(d.mutex);
    d.object = object;
    d.metaObject = object ? object->metaObject() : nullptr;
}

QObject *applicationDelegate()
{
    Delegate &d = delegate();
    std::lock_guard guard(d.mutex);
    return d.object.data();
}

VXThreadSafeBundleProxy *threadSafeBundleWithPath(const QString &path)
{
    if (path == lockIdentifierForMainBundle())
        return threadSafeMainBundle();
    return lockedLookup(path, [&] { return Bundle::bundleWithPath(path); });
}

VXThreadSafeBundleProxy *threadSafeBundleForClass(const QMetaObject *aClass)
{
    const QString identifier = lockIdentifierForClass(aClass);
    if (identifier == lockIdentifierForMainBundle())
        return threadSafeMainBundle();
    return lockedLookup(identifier, [&] { return Bundle::bundleForClass(aClass); });
}

} // namespace VXThreadSafety
