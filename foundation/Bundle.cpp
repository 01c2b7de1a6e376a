#include "Bundle.h"

#include "KitBundle.h"
#include "VXThreadSafety.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QSettings>
#include <QTranslator>

#include <dlfcn.h>
#include <link.h>

#include <vector>

namespace Quorvelle {

struct Bundle::Private
{
    QString path;
    PropertyValue::Dictionary info;
    QStringList localizations;
    QHash<QString, QStringList> qmFiles; // localisation -> its .qm files
    bool translationsLoaded = false;
    QString loadedLocalization;
    std::vector<std::unique_ptr<QTranslator>> translators;
    mutable std::recursive_mutex monitor;
};

namespace {

// Bundles are never freed, so the registry is allocated once and left alone at exit.
struct Registry
{
    std::mutex mutex;
    QHash<QString, Bundle *> bundles; // by canonical folder path
    Bundle *main = nullptr;
};

Registry &registry()
{
    static Registry *r = new Registry;
    return *r;
}

QString executablePath()
{
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
}

QString programFolder()
{
    if (QCoreApplication::instance())
        return QFileInfo(QCoreApplication::applicationDirPath()).canonicalFilePath();
    return QFileInfo(executablePath()).absolutePath();
}

// Installed, an application's resources live in its data folder, named after its program
// file, at a fixed place relative to the program (share/<name> beside bin/), so any prefix
// works; run from a build tree, they sit beside the program.
QString mainBundlePath()
{
    const QString program = programFolder();
    const QFileInfo installed(program + QStringLiteral("/" QV_DATA_FROM_PROGRAM "/") +
                              QFileInfo(executablePath()).fileName());
    return installed.isDir() ? installed.canonicalFilePath() : program;
}

// The folder of the kit's own libraries (this one's).
QString kitLibraryFolder()
{
    static const QString folder = [] {
        Dl_info info{};
        if (!dladdr(reinterpret_cast<const void *>(&kitLibraryFolder), &info) || !info.dli_fname)
            return QString();
        return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalPath();
    }();
    return folder;
}

// A shared library of the kit itself, whose classes belong to the kit's bundle.
bool isKitLibrary(const QString &imagePath)
{
    const QFileInfo image(imagePath);
    return image.fileName().startsWith(QLatin1String("libQuorvelle")) &&
           !kitLibraryFolder().isEmpty() && image.canonicalPath() == kitLibraryFolder();
}

// Info.ini beside a non-main bundle's resources: its top-level keys, strings as strings and
// comma lists as arrays of strings.
PropertyValue::Dictionary infoDictionaryFromFile(const QString &folder)
{
    PropertyValue::Dictionary info;
    const QString file = folder + QStringLiteral("/Info.ini");
    if (!QFileInfo(file).isFile())
        return info;
    QSettings settings(file, QSettings::IniFormat);
    const QStringList keys = settings.childKeys();
    for (const QString &key : keys) {
        const QVariant v = settings.value(key);
        if (v.typeId() == QMetaType::QStringList) {
            PropertyValue::Array items;
            const QStringList list = v.toStringList();
            for (const QString &item : list)
                items.append(item);
            info.insert(key, items);
        } else {
            info.insert(key, v.toString());
        }
    }
    return info;
}

// <module>_<localisation>.qm; the localisation is a language ("de") optionally followed by
// a territory ("zh_CN"). The module part is matched lazily so "zh_CN" is not split.
const QRegularExpression &qmNamePattern()
{
    static const QRegularExpression re(
        QStringLiteral("^(.+?)_([a-z]{2,3}(?:_[A-Z]{2}|_[0-9]{3})?)\\.qm$"));
    return re;
}

std::optional<QStringList> &preferredLanguagesOverride()
{
    static std::optional<QStringList> languages;
    return languages;
}

std::mutex &preferredLanguagesMutex()
{
    static std::mutex m;
    return m;
}

} // namespace

Bundle::Bundle(QString path, PropertyValue::Dictionary info) : d(std::make_unique<Private>())
{
    d->path = std::move(path);
    d->info = std::move(info);
    QDir dir(d->path + QStringLiteral("/translations"));
    const QStringList names = dir.entryList({QStringLiteral("*.qm")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        const QRegularExpressionMatch m = qmNamePattern().match(name);
        if (m.hasMatch())
            d->qmFiles[m.captured(2)].append(dir.filePath(name));
    }
    d->localizations = d->qmFiles.keys();
    if (!d->localizations.contains(developmentLocalization()))
        d->localizations.append(developmentLocalization());
    d->localizations.sort();
}

Bundle::~Bundle() = default;

QString Bundle::bundlePath() const
{
    return d->path;
}

PropertyValue::Dictionary Bundle::infoDictionary() const
{
    return d->info;
}

QStringList Bundle::localizations() const
{
    return d->localizations;
}

std::recursive_mutex &Bundle::monitor() const
{
    return d->monitor;
}

Bundle *Bundle::mainBundle()
{
    Registry &r = registry();
    std::lock_guard guard(r.mutex);
    if (!r.main) {
        const QString path = mainBundlePath();
        r.main = new Bundle(path, infoDictionaryFromFile(path));
        r.bundles.insert(path, r.main);
    }
    return r.main;
}

Bundle *kitBundle()
{
    static Bundle *const kit = [] {
        const QString libraries = kitLibraryFolder();
        if (libraries.isEmpty())
            return static_cast<Bundle *>(nullptr);
        const QFileInfo data(libraries + QStringLiteral("/" QV_KIT_DATA_FROM_LIBRARY));
        return Bundle::bundleWithPath(data.isDir() ? data.filePath() : libraries);
    }();
    return kit;
}

Bundle *Bundle::bundleWithPath(const QString &path)
{
    if (path.isEmpty())
        return nullptr;
    const QFileInfo info(path);
    if (!info.isDir())
        return nullptr;
    const QString canonical = info.canonicalFilePath();
    // The program's own folder maps to the main bundle too, also when the bundle's
    // resources live in the installed data folder.
    Bundle *main = mainBundle();
    if (canonical == main->d->path || canonical == programFolder())
        return main;
    Registry &r = registry();
    std::lock_guard guard(r.mutex);
    Bundle *&bundle = r.bundles[canonical];
    if (!bundle)
        bundle = new Bundle(canonical, infoDictionaryFromFile(canonical));
    return bundle;
}

QString Bundle::imagePathForClass(const QMetaObject *aClass)
{
    if (!aClass)
        return {};
    Dl_info info{};
    link_map *map = nullptr;
    if (!dladdr1(static_cast<const void *>(aClass), &info, reinterpret_cast<void **>(&map),
                 RTLD_DL_LINKMAP))
        return {};
    // The program itself has an empty name in the link map (dladdr would report argv[0]).
    if (map && map->l_name && map->l_name[0])
        return QFile::decodeName(map->l_name);
    return executablePath();
}

Bundle *Bundle::bundleForClass(const QMetaObject *aClass)
{
    const QString image = imagePathForClass(aClass);
    if (image.isEmpty())
        return nullptr;
    const QString enclosing = VXThreadSafety::lockIdentifierForImagePath(image);
    if (enclosing == image && isKitLibrary(image))
        return kitBundle();
    return bundleWithPath(enclosing != image ? enclosing : QFileInfo(image).absolutePath());
}

std::optional<PropertyValue> Bundle::objectForInfoDictionaryKey(const QString &key) const
{
    const auto it = d->info.constFind(key);
    if (it == d->info.constEnd())
        return std::nullopt;
    return *it;
}

QStringList Bundle::preferredLocalizations() const
{
    return preferredLocalizationsFromArray(d->localizations, userPreferredLanguages());
}

void Bundle::loadTranslations(const QString &localization)
{
    d->translators.clear();
    QStringList files = d->qmFiles.value(localization);
    if (localization != developmentLocalization())
        files += d->qmFiles.value(developmentLocalization());
    for (const QString &file : files) {
        auto translator = std::make_unique<QTranslator>();
        if (translator->load(file))
            d->translators.push_back(std::move(translator));
    }
    d->loadedLocalization = localization;
    d->translationsLoaded = true;
}

QString Bundle::localizedStringForKey(const QString &key, const QString &value,
                                      const QString &table)
{
    return localizedStringForKey(key, value, table, preferredLocalizations().constFirst());
}

QString Bundle::localizedStringForKey(const QString &key, const QString &value,
                                      const QString &table, const QString &localization)
{
    const QString fallback = value.isEmpty() ? key : value;
    if (key.isEmpty())
        return fallback;
    if (!d->translationsLoaded || localization != d->loadedLocalization)
        loadTranslations(localization);
    const QByteArray context = table.isEmpty() ? QByteArrayLiteral("Localizable") : table.toUtf8();
    const QByteArray source = key.toUtf8();
    for (const auto &translator : d->translators) {
        const QString text = translator->translate(context.constData(), source.constData());
        if (!text.isNull())
            return text;
    }
    return fallback;
}

QString Bundle::pathForResource(const QString &name, const QString &type) const
{
    if (name.isEmpty())
        return {};
    QString file = name;
    if (!type.isEmpty())
        file += type.startsWith(u'.') ? type : QLatin1Char('.') + type;
    const QString path = QDir::cleanPath(d->path + QLatin1Char('/') + file);
    // A name such as "../x" must not reach outside the bundle.
    if (!path.startsWith(d->path + QLatin1Char('/')))
        return {};
    return QFileInfo::exists(path) ? path : QString();
}

QString Bundle::normalizedLocalization(const QString &name)
{
    const QString base = name.section(u'.', 0, 0).section(u'@', 0, 0); // "de_DE.UTF-8@euro"
    static const QRegularExpression separator(QStringLiteral("[-_]"));
    const QStringList parts = base.split(separator);
    const QString language = parts.constFirst();
    static const QRegularExpression languagePattern(QStringLiteral("^[A-Za-z]{2,3}$"));
    if (!languagePattern.match(language).hasMatch())
        return name; // "English", "C": leave legacy and odd names alone
    QString result = language.toLower();
    static const QRegularExpression territoryPattern(QStringLiteral("^(?:[A-Za-z]{2}|[0-9]{3})$"));
    for (qsizetype i = 1; i < parts.size(); ++i) {
        if (territoryPattern.match(parts[i]).hasMatch()) {
            result += QLatin1Char('_') + parts[i].toUpper();
            break;
        }
    }
    return result;
}

QStringList Bundle::preferredLocalizationsFromArray(const QStringList &localizations,
                                                    const QStringList &preferences)
{
    QStringList result;
    for (const QString &preference : preferences) {
        const QString full = normalizedLocalization(preference);
        const QString language = full.section(u'_', 0, 0);
        for (const QString &candidate : {full, language}) {
            if (localizations.contains(candidate)) {
                if (!result.contains(candidate))
                    result.append(candidate);
                break;
            }
        }
    }
    if (!result.contains(developmentLocalization()))
        result.append(developmentLocalization());
    return result;
}

QStringList Bundle::userPreferredLanguages()
{
    {
        std::lock_guard guard(preferredLanguagesMutex());
        if (preferredLanguagesOverride())
            return *preferredLanguagesOverride();
    }
    // Read once: the user's choice is fixed for the life of the process.
    static const QStringList system = QLocale::system().uiLanguages();
    return system;
}

void Bundle::setPreferredLanguagesForTesting(std::optional<QStringList> languages)
{
    std::lock_guard guard(preferredLanguagesMutex());
    preferredLanguagesOverride() = std::move(languages);
}

} // namespace Quorvelle
