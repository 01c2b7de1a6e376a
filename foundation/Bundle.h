#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

#include <QMetaObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>
#include <optional>

namespace Quorvelle {

/**
 * A resource root: a folder with an info dictionary, localised strings (Qt Linguist .qm
 * files in `translations/`, named `<module>_<localisation>.qm`) and resources.
 *
 * Bundles are created once per folder and live for the whole process, so a Bundle pointer
 * never dangles. A Bundle is not safe to use from several threads at once (it loads its
 * translations lazily): hold monitor() around every use, or go through
 * VXThreadSafeBundleProxy, which does exactly that.
 */
class QV_FOUNDATION_EXPORT Bundle
{
public:
    Bundle(const Bundle &) = delete;
    Bundle &operator=(const Bundle &) = delete;
    /** Bundles are never destroyed before the process ends. */
    ~Bundle();

    /**
     * The running application's bundle: its installed data folder, `share/<program name>`
     * beside its `bin/` folder, when there is one, else the program's own folder (a build
     * tree). Like every bundle, it reads its info dictionary from Info.ini in the folder.
     */
    static Bundle *mainBundle();
    /**
     * The bundle of an existing folder (the main bundle for the program's own folder);
     * nullptr when the path is not a folder.
     */
    static Bundle *bundleWithPath(const QString &path);
    /**
     * The bundle of the image (program or shared library) that holds the class: the
     * enclosing ".framework" or "/Contents/" folder when the image lies in one, else the
     * image's own folder; the program's classes belong to the main bundle and the kit's own
     * to the kit's data folder (share/quorvelle-kit). nullptr when the image cannot be found.
     */
    static Bundle *bundleForClass(const QMetaObject *aClass);
    /** File path of the executable image that holds the class; empty when unknown. */
    static QString imagePathForClass(const QMetaObject *aClass);

    /** The language every bundle can answer in, whatever .qm files it has. */
    static QString developmentLocalization() { return QStringLiteral("en"); }

    /** The bundle's folder, absolute. */
    QString bundlePath() const;
    /**
     * The bundle's Info.ini as a dictionary (keys such as "CFBundleIdentifier",
     * "CFBundleShortVersionString"); empty when the bundle has none.
     */
    PropertyValue::Dictionary infoDictionary() const;
    /** One value of infoDictionary(); std::nullopt when the key is absent. */
    std::optional<PropertyValue> objectForInfoDictionaryKey(const QString &key) const;

    /** The development localisation plus every localisation with .qm files, sorted. */
    QStringList localizations() const;
    /**
     * localizations() that match the user's preferred languages, in the user's order,
     * ending with the development localisation when no preference matched it.
     */
    QStringList preferredLocalizations() const;

    /**
     * The translation of key in the context table (empty table: "Localizable") for the
     * first preferred localisation, falling back to the development localisation's files.
     * A missing key gives value when that is non-empty, else the key itself.
     */
    QString localizedStringForKey(const QString &key, const QString &value, const QString &table);
    /**
     * The same in a given localisation (falling back to the development localisation's
     * files): a library's texts in the language the application chose.
     */
    QString localizedStringForKey(const QString &key, const QString &value, const QString &table,
                                  const QString &localization);

    /**
     * The path of a resource file: the bundle's folder, "/", the name, "." and the type (no
     * dot and type for an empty type), when that file exists inside the bundle; empty
     * otherwise.


     */
    QString pathForResource(const QString &name, const QString &type) const;

    /**
     * The bundle's own recursive monitor: everyone who synchronises on this bundle
     * takes this one.
     */
    std::recursive_mutex &monitor() const;

    /**
     * Orders available localisations by a preference list (either "de-DE" or "de_DE"
     * style; a preference also matches its bare language). Unmatched preferences are
     * skipped; the development localisation closes the list if nothing chose it.
     */
    static QStringList preferredLocalizationsFromArray(const QStringList &localizations,
                                                       const QStringList &preferences);
    /** "zh-Hans-CN" → "zh_CN", "de-DE" → "de_DE", "en" → "en": the form used in file names. */
    static QString normalizedLocalization(const QString &name);

    /**
     * The user's preferred UI languages (LANGUAGE, LC_ALL, LANG as Qt reads them), or the
     * list given to setPreferredLanguagesForTesting.
     */
    static QStringList userPreferredLanguages();
    /**
     * Replaces the user's languages for every bundle (std::nullopt restores them), so that an
     * application's tests see the same localisation on every machine.
     */
    static void setPreferredLanguagesForTesting(std::optional<QStringList> languages);

private:
    Bundle(QString path, PropertyValue::Dictionary info);
    void loadTranslations(const QString &localization);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Quorvelle
