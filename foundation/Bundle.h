#pragma once

#include "PropertyValue.h"

#include <QHash>
#include <QMetaObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class QTranslator;

// A resource root: a folder with an info dictionary, localised strings (Qt Linguist .qm
// files in translations/, named <module>_<localisation>.qm) and resources.
//
// Bundles are created once per folder and live for the whole process, so a Bundle pointer
// never dangles. A Bundle is not safe to use from several threads at once (it loads its
// translations lazily): hold monitor() around every use, or go through
// VXThreadSafeBundleProxy, which does exactly that.
class Bundle
{
public:
    Bundle(const Bundle &) = delete;
    Bundle &operator=(const Bundle &) = delete;
    ~Bundle();

    // The installed data folder of the running program (share/quorvelle-uninstaller
    // beside its bin/ folder) when there is one, else the program's own folder; its info
    // dictionary is compiled in.
    static Bundle *mainBundle();
    // The bundle of an existing folder (the main bundle for the program's own folder);
    // nullptr when the path is not a folder.
    static Bundle *bundleWithPath(const QString &path);
    // The bundle of the image (program or shared library) that holds the class: the
    // enclosing ".framework" or "/Contents/" folder when the image lies in one, else the
    // image's own folder. nullptr when the image cannot be found.
    static Bundle *bundleForClass(const QMetaObject *aClass);
    // File path of the executable image that holds the class; empty when unknown.
    static QString imagePathForClass(const QMetaObject *aClass);

    // The language every bundle can answer in, whatever .qm files it has.
    static QString developmentLocalization() { return QStringLiteral("en"); }

    QString bundlePath() const { return m_path; }
    PropertyValue::Dictionary infoDictionary() const { return m_info; }
    std::optional<PropertyValue> objectForInfoDictionaryKey(const QString &key) const;

    // The development localisation plus every localisation with .qm files, sorted.
    QStringList localizations() const { return m_localizations; }
    // localizations() that match the user's preferred languages, in the user's order,
    // ending with the development localisation when no preference matched it.
    QStringList preferredLocalizations() const;

    // The translation of key in the context table (empty table: "Localizable") for the
    // first preferred localisation, falling back to the development localisation's files.
    // A missing key gives value when that is non-empty, else the key itself.
    QString localizedStringForKey(const QString &key, const QString &value, const QString &table);

    // <bundle>/<name>.<type> (just <name> for an empty type) when that file exists inside
    // the bundle; empty otherwise.
    QString pathForResource(const QString &name, const QString &type) const;

    // The bundle's own recursive monitor: everyone who synchronises on this bundle
    // takes this one.
    std::recursive_mutex &monitor() const { return m_monitor; }

    // Orders available localisations by a preference list (either "de-DE" or "de_DE"
    // style; a preference also matches its bare language). Unmatched preferences are
    // skipped; the development localisation closes the list if nothing chose it.
    static QStringList preferredLocalizationsFromArray(const QStringList &localizations,
                                                       const QStringList &preferences);
    // "zh-Hans-CN" → "zh_CN", "de-DE" → "de_DE", "en" → "en": the form used in file names.
    static QString normalizedLocalization(const QString &name);

    // The user's preferred UI languages (LANGUAGE, LC_ALL, LANG as Qt reads them), or the
    // list given to setPreferredLanguagesForTesting.
    static QStringList userPreferredLanguages();
    static void setPreferredLanguagesForTesting(std::optional<QStringList> languages);

private:
    Bundle(QString path, PropertyValue::Dictionary info);
    void loadTranslations(const QString &localization);

    const QString m_path;
    const PropertyValue::Dictionary m_info;
    QStringList m_localizations;
    QHash<QString, QStringList> m_qmFiles; // localisation -> its .qm files
    bool m_translationsLoaded = false;
    QString m_loadedLocalization;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
    mutable std::recursive_mutex m_monitor;
};
