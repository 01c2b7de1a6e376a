#include "VXThreadSafeBundleProxy.h"

#include <QHash>

using Quorvelle::Bundle;

VXThreadSafeBundleProxy *VXThreadSafeBundleProxy::proxyWithBundle(Bundle *bundle)
{
    if (!bundle)
        return nullptr;
    // One proxy per bundle, never freed: bundles are process-lifetime objects.
    static std::mutex mutex;
    static auto *proxies = new QHash<Bundle *, VXThreadSafeBundleProxy *>;
    std::lock_guard guard(mutex);
    VXThreadSafeBundleProxy *&proxy = (*proxies)[bundle];
    if (!proxy)
        proxy = new VXThreadSafeBundleProxy(bundle);
    return proxy;
}

std::unique_ptr<VXThreadSafeBundleProxy> VXThreadSafeBundleProxy::initWithBundle(Bundle *bundle)
{
    if (!bundle)
        return nullptr;
    return std::unique_ptr<VXThreadSafeBundleProxy>(new VXThreadSafeBundleProxy(bundle));
}

QString VXThreadSafeBundleProxy::localizedStringForKey(const QString &key, const QString &value,
                                                       const QString &table)
{
    return perform([&](Bundle &b) { return b.localizedStringForKey(key, value, table); });
}

std::optional<PropertyValue> VXThreadSafeBundleProxy::objectForInfoDictionaryKey(const QString &key)
{
    return perform([&](Bundle &b) { return b.objectForInfoDictionaryKey(key); });
}

PropertyValue::Dictionary VXThreadSafeBundleProxy::infoDictionary()
{
    return perform([](Bundle &b) { return b.infoDictionary(); });
}

QString VXThreadSafeBundleProxy::pathForResource(const QString &name, const QString &type)
{
    return perform([&](Bundle &b) { return b.pathForResource(name, type); });
}

QStringList VXThreadSafeBundleProxy::localizations()
{
    return perform([](Bundle &b) { return b.localizations(); });
}

QStringList VXThreadSafeBundleProxy::preferredLocalizations()
{
    return perform([](Bundle &b) { return b.preferredLocalizations(); });
}

QString VXThreadSafeBundleProxy::bundlePath()
{
    return perform([](Bundle &b) { return b.bundlePath(); });
}
