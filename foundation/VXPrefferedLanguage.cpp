#include "VXPrefferedLanguage.h"

#include "Bundle.h"
#include "VXThreadSafeBundleProxy.h"
#include "VXThreadSafety.h"

#include <mutex>

using Quorvelle::Bundle;

namespace {

std::mutex &overrideMutex()
{
    static std::mutex m;
    return m;
}

std::optional<QStringList> &localizationsOverride()
{
    static std::optional<QStringList> list;
    return list;
}

QStringList mainBundlePreferredLocalizations()
{
    {
        std::lock_guard guard(overrideMutex());
        if (localizationsOverride())
            return *localizationsOverride();
    }
    return VXThreadSafety::threadSafeMainBundle()->preferredLocalizations();
}

} // namespace

namespace VXPrefferedLanguage {

QString preferredApplicationLocalization(const QStringList &preferredLocalizations)
{
    if (preferredLocalizations.isEmpty())
        return Bundle::developmentLocalization();
    const QString first = preferredLocalizations.constFirst();
    if (first == QLatin1StringView("English"))
        return QStringLiteral("en");
    return Bundle::normalizedLocalization(first);
}

bool isHieroglyphicLocalization(const QString &localization)
{
    return localization == QLatin1StringView("ko") || localization == QLatin1StringView("ja") ||
           localization == QLatin1StringView("zh_CN");
}

QString preferredApplicationLocalization()
{
    return preferredApplicationLocalization(mainBundlePreferredLocalizations());
}

bool isEnglishLanguagePreferred()
{
    return preferredApplicationLocalization() == QLatin1StringView("en");
}

bool isPreferredLanguageHieroglyphic()
{
    static std::once_flag once;
    static bool hieroglyphic = false;
    std::call_once(once, [] {
        hieroglyphic = isHieroglyphicLocalization(preferredApplicationLocalization());
    });
    return hieroglyphic;
}

void setPreferredLocalizationsForTesting(std::optional<QStringList> localizations)
{
    std::lock_guard guard(overrideMutex());
    localizationsOverride() = std::move(localizations);
}

} // namespace VXPrefferedLanguage
