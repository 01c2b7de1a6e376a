#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QString>
#include <QStringList>

#include <optional>

/**
 * The application's language: the first of the main bundle's preferred localisations, for
 * choices that depend on it (a font for Chinese, Japanese and Korean text, an English-only
 * link). Thread-safe.
 */
namespace VXPrefferedLanguage {

/**
 * The first preferred localisation of the main bundle in underscore form ("de", "zh_CN");
 * the legacy name "English" reads as "en", and an empty list as "en" (the development
 * localisation, which every bundle can answer in).
 */
QV_FOUNDATION_EXPORT QString preferredApplicationLocalization();
/** Whether preferredApplicationLocalization() is "en". */
QV_FOUNDATION_EXPORT bool isEnglishLanguagePreferred();
/**
 * Whether the localisation at launch is "ko", "ja" or "zh_CN". Computed once per process:
 * a later change of language is seen only after a restart.
 */
QV_FOUNDATION_EXPORT bool isPreferredLanguageHieroglyphic();

/**
 * \overload
 * The rule itself, over a given list of preferred localisations.
 */
QV_FOUNDATION_EXPORT QString
preferredApplicationLocalization(const QStringList &preferredLocalizations);
/** Whether the localisation is exactly "ko", "ja" or "zh_CN" (not "zh_TW", not "zh"). */
QV_FOUNDATION_EXPORT bool isHieroglyphicLocalization(const QString &localization);

/**
 * Replaces the main bundle's preferred localisations as the source of the functions above
 * (std::nullopt restores it). For tests.
 */
QV_FOUNDATION_EXPORT void
setPreferredLocalizationsForTesting(std::optional<QStringList> localizations);

} // namespace VXPrefferedLanguage
