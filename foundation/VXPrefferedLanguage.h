#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

// The application's language as seen by the rest of the program: the first of the main
// bundle's preferred localisations.

#include <QString>
#include <QStringList>

#include <optional>

namespace VXPrefferedLanguage {

// The first preferred localisation of the main bundle in underscore form ("de", "zh_CN");
// the legacy name "English" reads as "en", and an empty list as "en" (the development
// localisation, which every bundle can answer in).
QV_FOUNDATION_EXPORT QString preferredApplicationLocalization();
// Whether preferredApplicationLocalization() is "en".
QV_FOUNDATION_EXPORT bool isEnglishLanguagePreferred();
// Whether the localisation at launch is "ko", "ja" or "zh_CN". Computed once per process:
// a later change of language is seen only after a restart.
QV_FOUNDATION_EXPORT bool isPreferredLanguageHieroglyphic();

// The rules themselves, over a given list of preferred localisations.
QV_FOUNDATION_EXPORT QString
preferredApplicationLocalization(const QStringList &preferredLocalizations);
QV_FOUNDATION_EXPORT bool isHieroglyphicLocalization(const QString &localization);

// Replaces the main bundle's preferred localisations as the source of the functions above
// (std::nullopt restores it). For tests.
QV_FOUNDATION_EXPORT void
setPreferredLocalizationsForTesting(std::optional<QStringList> localizations);

} // namespace VXPrefferedLanguage
