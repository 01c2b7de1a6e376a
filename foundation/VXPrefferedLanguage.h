#pragma once

// The application's language as seen by the rest of the program: the first of the main
// bundle's preferred localisations.

#include <QString>
#include <QStringList>

#include <optional>

namespace VXPrefferedLanguage {

// The first preferred localisation of the main bundle in underscore form ("de", "zh_CN");
// the legacy name "English" reads as "en", and an empty list as "en" (the development
// localisation, which every bundle can answer in).
QString preferredApplicationLocalization();
// Whether preferredApplicationLocalization() is "en".
bool isEnglishLanguagePreferred();
// Whether the localisation at launch is "ko", "ja" or "zh_CN". Computed once per process:
// a later change of language is seen only after a restart.
bool isPreferredLanguageHieroglyphic();

// The rules themselves, over a given list of preferred localisations.
QString preferredApplicationLocalization(const QStringList &preferredLocalizations);
bool isHieroglyphicLocalization(const QString &localization);

// Replaces the main bundle's preferred localisations as the source of the functions above
// (std::nullopt restores it). For tests.
void setPreferredLocalizationsForTesting(std::optional<QStringList> localizations);

} // namespace VXPrefferedLanguage
