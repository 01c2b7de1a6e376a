#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/VXThreadSafeBundle.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <memory>
#include <mutex>

class VXThreadSafeBundleProxy;

/**
 * Thread-safe bundles: proxies around the main bundle and around bundles found by path or
 * by class, and the machinery under them (per-bundle lookup locks kept in a
 * reference-counted lock map, lock identifiers of classes and of the main bundle). Every
 * function here may be called from any thread.
 */
namespace VXThreadSafety {

/**
 * One lock map entry: the recursive lock that guards the lookup of one bundle and the
 * number of callers currently holding the entry (at least 1 while it exists).
 */
struct LockMapEntry
{
    std::shared_ptr<std::recursive_mutex> lock; ///< The lock; stays valid while held.
    quint64 useCount = 0;                       ///< Takes not yet given back.
};

/** A copy of the process-wide lock map, taken under its monitor. */
QV_FOUNDATION_EXPORT QHash<QString, LockMapEntry> lockMap();
/** The entry's use count; 0 when the identifier has no entry. */
QV_FOUNDATION_EXPORT quint64 useCountForIdentifier(const QString &identifier);

/**
 * The identifier's recursive lock, taking one use of its entry (created on first take). The
 * returned pointer keeps the lock alive even after the entry has gone.
 */
QV_FOUNDATION_EXPORT std::shared_ptr<std::recursive_mutex>
lockForIdentifier(const QString &identifier);
/** Gives back one use; the last one removes the entry. Unknown identifiers are ignored. */
QV_FOUNDATION_EXPORT void releaseLockForIdentifier(const QString &identifier);

/**
 * The path up to and including the last ".framework" followed by "/", else the path before
 * the last "/Contents/" (both ignoring case), else the whole path.
 */
QV_FOUNDATION_EXPORT QString lockIdentifierForImagePath(const QString &imagePath);
/** lockIdentifierForImagePath of the image holding the class; empty when it is unknown. */
QV_FOUNDATION_EXPORT QString lockIdentifierForClass(const QMetaObject *aClass);
/**
 * "VXThreadSafeMainBundle" without an application delegate, else the identifier of the
 * delegate's class.
 */
QV_FOUNDATION_EXPORT QString lockIdentifierForMainBundle();

/**
 * Registers the application's delegate, whose class then names the main bundle's lock
 * (lockIdentifierForMainBundle()). Not owned; a destroyed delegate reads as none.

 */
QV_FOUNDATION_EXPORT void setApplicationDelegate(QObject *delegate);
/** The registered application delegate; nullptr when none is (or it was destroyed). */
QV_FOUNDATION_EXPORT QObject *applicationDelegate();

/**
 * The shared proxy of the bundle at the path (the main bundle's when the path is
 * lockIdentifierForMainBundle()); nullptr when there is no bundle there.
 */
QV_FOUNDATION_EXPORT VXThreadSafeBundleProxy *threadSafeBundleWithPath(const QString &path);
/** The shared proxy of the bundle holding the class; nullptr when there is none. */
QV_FOUNDATION_EXPORT VXThreadSafeBundleProxy *threadSafeBundleForClass(const QMetaObject *aClass);

} // namespace VXThreadSafety
