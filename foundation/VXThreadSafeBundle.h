#pragma once

/**
 * \file
 * Thread-safe access to the application's bundle, the way most code uses it:
 * `VXThreadSafety::threadSafeMainBundle()->localizedStringForKey(...)`,
 * `->objectForInfoDictionaryKey(...)`, `->pathForResource(...)`, and VXLocalizedString().
 * The machinery (lock map, bundles by path or class) is in VXThreadSafety.h, the language
 * operations in VXPrefferedLanguage.h.
 */

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>
#include <Quorvelle/Foundation/VXThreadSafeBundleProxy.h>

#include <QMetaObject>
#include <QObject>
#include <QString>

#include <optional>

namespace VXThreadSafety {
/**
 * The proxy around the main bundle (the folder of the running program), created on first
 * use and kept for the life of the process.
 */
QV_FOUNDATION_EXPORT VXThreadSafeBundleProxy *threadSafeMainBundle();
} // namespace VXThreadSafety

/**
 * The localised string for the key from the default strings table ("Localizable") of the
 * bundle that holds the object's class, or of the main bundle when object is null. A
 * missing key returns the key itself.
 */
QV_FOUNDATION_EXPORT QString VXLocalizedString(const QString &key, const QObject *object = nullptr);
