#include "VXThreadSafeBundle.h"

#include "Bundle.h"
#include "VXThreadSafeBundleProxy.h"
#include "VXThreadSafety.h"

using Quorvelle::Bundle;

namespace VXThreadSafety {

VXThreadSafeBundleProxy *threadSafeMainBundle()
{
    // Thread-safe static initialisation also covers a first call off the main thread.
    static VXThreadSafeBundleProxy *const proxy =
        VXThreadSafeBundleProxy::proxyWithBundle(Bundle::mainBundle());
    return proxy;
}

} // namespace VXThreadSafety

QString VXLocalizedString(const QString &key, const QObject *object)
{
    VXThreadSafeBundleProxy *bundle =
        object ? VXThreadSafety::threadSafeBundleForClass(object->metaObject())
               : VXThreadSafety::threadSafeMainBundle();
    if (!bundle)
        return key;
    return bundle->localizedStringForKey(key, QString(), QString());
}
