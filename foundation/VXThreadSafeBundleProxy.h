#pragma once

#include <Quorvelle/Foundation/Bundle.h>
#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/**
 * Serialises every call to a Bundle under that bundle's own recursive monitor, so a bundle
 * can be used from any thread.
 *
 * Ownership: each Bundle has exactly one shared proxy, handed out by proxyWithBundle() and
 * kept for the life of the process (bundles live that long too), so callers never free a
 * proxy and the same bundle always yields the same proxy. initWithBundle() makes a separate,
 * caller-owned proxy; it takes the same monitor, so both serialise against each other.
 *
 * A handle of one pointer: its layout is part of the kit's ABI.
 */
class QV_FOUNDATION_EXPORT VXThreadSafeBundleProxy
{
public:
    /** The bundle's shared proxy; nullptr for a null bundle. */
    static VXThreadSafeBundleProxy *proxyWithBundle(Quorvelle::Bundle *bundle);
    /** A new proxy owned by the caller; nullptr for a null bundle. */
    static std::unique_ptr<VXThreadSafeBundleProxy> initWithBundle(Quorvelle::Bundle *bundle);

    VXThreadSafeBundleProxy(const VXThreadSafeBundleProxy &) = delete;
    VXThreadSafeBundleProxy &operator=(const VXThreadSafeBundleProxy &) = delete;

    /**
     * Runs f(Bundle &) under the bundle's monitor and returns its result by value (a
     * reference into the bundle would outlive the lock). The monitor is released when f
     * throws.
     */
    template <class F> auto perform(F &&f)
    {
        std::lock_guard guard(_bundle->monitor());
        return std::invoke(std::forward<F>(f), *_bundle);
    }

    /** Bundle::localizedStringForKey() under the monitor. */
    QString localizedStringForKey(const QString &key, const QString &value, const QString &table);
    /** Bundle::objectForInfoDictionaryKey() under the monitor. */
    std::optional<PropertyValue> objectForInfoDictionaryKey(const QString &key);
    /** Bundle::infoDictionary() under the monitor. */
    PropertyValue::Dictionary infoDictionary();
    /** Bundle::pathForResource() under the monitor. */
    QString pathForResource(const QString &name, const QString &type);
    /** Bundle::localizations() under the monitor. */
    QStringList localizations();
    /** Bundle::preferredLocalizations() under the monitor. */
    QStringList preferredLocalizations();
    /** Bundle::bundlePath() under the monitor. */
    QString bundlePath();

    /** The wrapped bundle, for identity checks; using it directly bypasses the monitor. */
    Quorvelle::Bundle *bundle() const { return _bundle; }

private:
    explicit VXThreadSafeBundleProxy(Quorvelle::Bundle *bundle) : _bundle(bundle) {}

    Quorvelle::Bundle *const _bundle; // never null; bundles outlive every proxy
};
