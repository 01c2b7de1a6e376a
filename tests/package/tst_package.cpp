// The Debian packages as shipped, unpacked with dpkg-deb -x: the kit's runtime package, its
// development package, its API reference and the uninstaller, each with exactly its files (the
// reference's by pattern), all under /usr; the policy naming the helper where the package
// puts it, a hidden desktop entry with its icon and AppStream metadata, every package's
// copyright file and changelog, dependencies computed from the binaries (the uninstaller's on
// the kit through the kit's shlibs file), no path of the machine that built them inside any
// file, and nothing that lintian or appstreamcli find wrong.
#include "Tools.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kProgram = u"/usr/bin/quorvelle-uninstaller"_s;
const QString kHelper = u"/usr/libexec/quorvelle/quorvelle-privileged-helper"_s;
const QString kDesktopId = QStringLiteral(QV_EXPECTED_DESKTOP_ID);
const QString kEntry = u"/usr/share/applications/"_s + kDesktopId + u".desktop"_s;
const QString kPolicy = u"/usr/share/polkit-1/actions/net.brelltan.Quorvelle.policy"_s;
const QString kUninstaller = u"quorvelle-uninstaller"_s, kKit = u"libquorvelle-kit2"_s,
              kKitDev = u"libquorvelle-kit-dev"_s, kKitDoc = u"libquorvelle-kit-doc"_s,
              kDesigner = u"quorvelle-kit-designer-plugin"_s;
const QString kVersion = QStringLiteral(QV_EXPECTED_VERSION);
const QString kMetainfo = u"/usr/share/metainfo/"_s + kDesktopId + u".metainfo.xml"_s;
const QString kFloor = kKit + u" (>= "_s + kVersion + u')'; // the kit's shlibs dependency

// The package build's folder, and every package unpacked together into one root.
const QString kPackageDir = qEnvironmentVariable("QV_PACKAGE_DIR");
const QString kRoot = kPackageDir + u"/root"_s;
// One package unpacked on its own.
QString unpacked(const QString &package)
{
    return kPackageDir + u"/unpacked/"_s + package;
}

// Every package the build made; lintian checks each of them.
QStringList debs()
{
    const QDir folder(kPackageDir + u"/deb"_s);
    QStringList paths;
    for (const QString &name : folder.entryList({u"*.deb"_s}))
        paths.append(folder.filePath(name));
    return paths;
}

// The package file of one package; empty when the build made none or several.
QString deb(const QString &package)
{
    const QStringList all = debs().filter(
        QRegularExpression(u"/"_s + QRegularExpression::escape(package) + u"_[^/]*\\.deb$"_s));
    return all.size() == 1 ? all.first() : QString();
}

// Standard output of a command that must succeed; `failed` otherwise.
QString run(const QString &program, const QStringList &arguments,
            const QString &failed = u"(failed)"_s)
{
    const Tools::Outcome outcome = Tools::run(program, arguments);
    return outcome.exitCode == 0 ? QString::fromUtf8(outcome.output).trimmed() : failed;
}

QString controlField(const char *field, const QString &package = kUninstaller)
{
    return run(u"dpkg-deb"_s, {u"-f"_s, deb(package), QLatin1String(field)}, u"(none)"_s);
}

QByteArray contents(const QString &path)
{
    return Tools::readFile(path, "(unreadable)");
}

// Files and links (dangling ones too: the development package's links point into the
// runtime package) under a folder, as absolute paths of the installed system.
QStringList packagedFiles(const QString &folder = kRoot)
{
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::System | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(it.next().mid(folder.size()));
    files.sort();
    return files;
}

// The folder of the architecture's libraries, as Debian names it.
QString libraryFolder()
{
    return u"/usr/lib/"_s + run(u"dpkg-architecture"_s, {u"-qDEB_HOST_MULTIARCH"_s}) + u'/';
}

QStringList documents(const QString &package)
{
    const QString doc = u"/usr/share/doc/"_s + package + u'/';
    return {doc + u"copyright"_s, doc + u"changelog.gz"_s};
}

// The translations compiled from resources/translations/<group>_<lang>.ts.
QStringList translations(const QString &folder, const QString &group)
{
    QStringList files;
    const QDir sources(qEnvironmentVariable("QV_SOURCE_DIR") + u"/resources/translations"_s);
    for (const QFileInfo &ts : sources.entryInfoList({group + u"_*.ts"_s}))
        files.append(folder + ts.completeBaseName() + u".qm"_s);
    return files;
}

// Of an XML file, the start elements `wanted` chooses to describe, each by that description.
template <typename Describe> QStringList describedElements(const QString &path, Describe wanted)
{
    QStringList found;
    const QString error = Tools::forEachElement(path, [&](QXmlStreamReader &xml) {
        if (const QString description = wanted(xml); !description.isNull())
            found.append(description);
    });
    return error.isNull() ? found : QStringList{error};
}

} // namespace

class tst_Package : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(!debs().isEmpty(), "no packages: the package_build test makes them");
        QStringList names;
        for (const QString &file : debs())
            names.append(QFileInfo(file).fileName().section(u'_', 0, 0));
        QCOMPARE(names, (QStringList{kKitDev, kKitDoc, kKit, kDesigner, kUninstaller}));
        QVERIFY(QFileInfo(kRoot).isDir());
        // Built in the calling build folder, not in the source tree's build/.
        QVERIFY(QFile::exists(kPackageDir + u"/build/CMakeCache.txt"_s));
    }

    void fileList_data()
    {
        QTest::addColumn<QString>("package");
        QTest::addColumn<QStringList>("expected");
        const QString lib = libraryFolder(), cmake = lib + u"cmake/QuorvelleKit/"_s;
        const QString data = u"/usr/share/quorvelle-uninstaller/"_s;
        const QStringList modules{u"Foundation"_s, u"SystemInformation"_s, u"Widgets"_s};
        QStringList kit = documents(kKit), dev = documents(kKitDev);
        kit << u"/usr/share/lintian/overrides/"_s + kKit << u"/usr/share/quorvelle-kit/Info.ini"_s
            << translations(u"/usr/share/quorvelle-kit/translations/"_s, u"strings"_s);
        dev << cmake + u"QuorvelleKitConfig.cmake"_s << cmake + u"QuorvelleKitConfigVersion.cmake"_s
            << cmake + u"QuorvelleWidgetsLoad.cpp"_s;
        for (const QString &module : modules) {
            const QString library = lib + u"libQuorvelle"_s + module;
            kit << library + u".so.2"_s << library + u".so."_s + kVersion;
            dev << library + u".so"_s << cmake + u"QuorvelleKit"_s + module + u"Targets.cmake"_s
                << cmake + u"QuorvelleKit"_s + module + u"Targets-release.cmake"_s
                << lib + u"pkgconfig/Quorvelle"_s + module + u".pc"_s;
        }
        // The headers the build tree's include folder offers, nothing more or less.
        const QString include = qEnvironmentVariable("QV_BINARY_DIR") + u"/include"_s;
        QDirIterator headers(include + u"/Quorvelle"_s, {u"*.h"_s}, QDir::Files,
                             QDirIterator::Subdirectories);
        while (headers.hasNext())
            dev << u"/usr/include"_s + headers.next().mid(include.size());
        QStringList program = documents(kUninstaller);
        program << kProgram << kHelper << kEntry << kMetainfo << kPolicy
                << u"/usr/share/icons/hicolor/scalable/apps/"_s + kDesktopId + u".svg"_s
                << data + u"SurveyWindow.ui"_s << data + u"Info.ini"_s
                << u"/usr/share/man/man1/quorvelle-uninstaller.1.gz"_s
                << u"/usr/share/lintian/overrides/quorvelle-uninstaller"_s;
        for (const QString &group : {u"window"_s, u"strings"_s, u"removal"_s})
            program += translations(data + u"translations/"_s, group);
        QTest::newRow("runtime") << kKit << kit;
        QTest::newRow("development") << kKitDev << dev;
        QTest::newRow("uninstaller") << kUninstaller << program;
        QTest::newRow("designer plugin")
            << kDesigner
            << documents(kDesigner) +
                   QStringList{lib + u"qt6/plugins/designer/quorvellekitwidgets.so"_s};
    }
    void fileList()
    {
        QFETCH(QString, package);
        QFETCH(QStringList, expected);
        // Only /usr at the top: nothing in /etc, /opt or /usr/local.
        QCOMPARE(QDir(unpacked(package))
                     .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                 QStringList{u"usr"_s});
        QStringList files = packagedFiles(unpacked(package));
        // The bundle's images, whatever the window needs, belong too.
        files.removeIf([](const QString &f) {
            return f.startsWith(u"/usr/share/quorvelle-uninstaller/images/"_s);
        });
        expected.sort();
        QCOMPARE(files, expected);
        for (const QString &program : {kProgram, kHelper})
            QVERIFY2(package != kUninstaller || QFileInfo(kRoot + program).isExecutable(),
                     qPrintable(program));
    }

    // The API reference: Doxygen's pages (their names are Doxygen's, so checked by pattern and
    // by a few pages the reference must have), every page's links ending in the package, and
    // the system's jQuery in place of a copy of it.
    void documentationPackage()
    {
        const QString html = u"/usr/share/doc/"_s + kKitDoc + u"/html/"_s;
        const QStringList files = packagedFiles(unpacked(kKitDoc));
        const QStringList docs =
            documents(kKitDoc) + QStringList{u"/usr/share/doc-base/"_s + kKitDoc};
        // Doxygen names the index of destructors functions_func_~.html.
        const QRegularExpression page(u"^[A-Za-z0-9_.~-]+\\.(html|css|js|png|svg)$"_s);
        for (const QString &file : files)
            QVERIFY2(docs.contains(file) ||
                         (file.startsWith(html) && page.match(file.mid(html.size())).hasMatch()),
                     qPrintable(file));
        for (const QString &doc : docs)
            QVERIFY2(files.contains(doc), qPrintable(doc));
        for (const char *name :
             {"index.html", "foundation.html", "systeminformation.html", "classVXCryptor.html",
              "namespaceJSON.html", "namespaceVXSystemInformation.html", "doxygen.css"})
            QVERIFY2(files.contains(html + QLatin1String(name)), name);

        const QFileInfo jquery(unpacked(kKitDoc) + html + u"jquery.js"_s);
        QCOMPARE(jquery.symLinkTarget(),
                 unpacked(kKitDoc) + u"/usr/share/javascript/jquery/jquery.js"_s);

        // Every page's own links lead to a file of the package.
        const QRegularExpression link(u"(?:href|src)=\"([A-Za-z0-9_.-]+)(?:#[^\"]*)?\""_s);
        for (const QString &file : files.filter(QRegularExpression(u"\\.html$"_s))) {
            const QString text = QString::fromUtf8(contents(unpacked(kKitDoc) + file));
            for (const QRegularExpressionMatch &match : link.globalMatch(text))
                QVERIFY2(files.contains(html + match.captured(1)),
                         qPrintable(file + u" → "_s + match.captured(1)));
        }
        QCOMPARE(controlField("Section", kKitDoc), u"doc"_s);
        QCOMPARE(controlField("Architecture", kKitDoc), u"all"_s);
        QCOMPARE(controlField("Depends", kKitDoc), u"libjs-jquery"_s);
    }

    // pkexec picks the action by the program's absolute path.
    void policyNamesInstalledHelper()
    {
        QCOMPARE(describedElements(kRoot + kPolicy,
                                   [](QXmlStreamReader &xml) {
                                       return xml.name() == "annotate"_L1 &&
                                                      xml.attributes().value("key"_L1) ==
                                                          "org.freedesktop.policykit.exec.path"_L1
                                                  ? xml.readElementText()
                                                  : QString();
                                   }),
                 QStringList{kHelper});
    }

    void noBuildPaths()
    {
        QList<QByteArray> forbidden;
        for (const char *variable : {"QV_SOURCE_DIR", "QV_BINARY_DIR", "QV_PACKAGE_DIR"})
            forbidden.append(
                QFile::encodeName(QDir(qEnvironmentVariable(variable)).canonicalPath()));
        for (const QString &file : packagedFiles()) {
            // A link into another package (the reference's jQuery) has no content here.
            if (QFileInfo(kRoot + file).isSymLink() && !QFileInfo::exists(kRoot + file))
                continue;
            QFile f(kRoot + file);
            QVERIFY2(f.open(QIODevice::ReadOnly), qPrintable(file));
            const QByteArray content = f.readAll();
            for (const QByteArray &path : forbidden)
                QVERIFY2(!path.isEmpty() && !content.contains(path),
                         qPrintable(file + u" holds "_s + QString::fromUtf8(path)));
        }
    }

    void desktopEntry()
    {
        if (!QStandardPaths::findExecutable(u"desktop-file-validate"_s).isEmpty())
            QCOMPARE(run(u"desktop-file-validate"_s, {kRoot + kEntry}), QString());
        const QSettings entry(kRoot + kEntry, QSettings::IniFormat);
        QCOMPARE(entry.value(u"Desktop Entry/NoDisplay"_s).toString(), u"true"_s);
        QCOMPARE(entry.value(u"Desktop Entry/Icon"_s).toString(), kDesktopId);
        const QString command = entry.value(u"Desktop Entry/Exec"_s).toString().section(u' ', 0, 0);
        QVERIFY2(QFileInfo(kRoot + u"/usr/bin/"_s + command).isExecutable(), qPrintable(command));
    }

    void control()
    {
        // The kit: shlibs for its dependents, ldconfig by trigger.
        QCOMPARE(controlField("Section", kKit), u"libs"_s);
        const QString kitDepends = controlField("Depends", kKit);
        for (const char *package : {"libqt6widgets6", "libssl3", "libglib2.0-0", "libfontconfig1"})
            QVERIFY2(kitDepends.contains(QLatin1String(package)), qPrintable(kitDepends));
        QVERIFY2(!kitDepends.contains(kKit), qPrintable(kitDepends));
        QTemporaryDir control;
        QCOMPARE(Tools::run(u"dpkg-deb"_s, {u"-e"_s, deb(kKit), control.path()}).exitCode, 0);
        QStringList lines = QString::fromUtf8(contents(control.filePath(u"shlibs"_s)))
                                .split(u'\n', Qt::SkipEmptyParts);
        lines.sort();
        QCOMPARE(lines, (QStringList{u"libQuorvelleFoundation 2 "_s + kFloor,
                                     u"libQuorvelleSystemInformation 2 "_s + kFloor,
                                     u"libQuorvelleWidgets 2 "_s + kFloor}));
        QVERIFY(!QFile::exists(control.filePath(u"postinst"_s)));
        QVERIFY(contents(control.filePath(u"triggers"_s)).contains("activate-noawait ldconfig\n"));
        // The development files: exactly this runtime and Qt's development files.
        QCOMPARE(controlField("Section", kKitDev), u"libdevel"_s);
        QCOMPARE(controlField("Depends", kKitDev),
                 kKit + u" (= "_s + kVersion + u"), qt6-base-dev"_s);

        // The Designer plugin: the kit's library at least as new as this release, through the
        // runtime package's shlibs; it serves Designer without needing it.
        const QString designerDepends = controlField("Depends", kDesigner);
        QVERIFY2(designerDepends.split(u", "_s).contains(kFloor), qPrintable(designerDepends));
        QCOMPARE(controlField("Enhances", kDesigner), u"designer-qt6"_s);

        // Computed from the binaries, plus what the program starts by name. Qt's own
        // translations and the SVG plug-ins (the window's own icon) are only recommended:
        // the program works without them.
        const QString depends = controlField("Depends");
        for (const char *package : {"libqt6widgets6", "libqt6network6", "libc6", "pkexec"})
            QVERIFY2(depends.contains(QLatin1String(package)), qPrintable(depends));
        QVERIFY2(depends.split(u", "_s).contains(kFloor), qPrintable(depends));
        QVERIFY2(!depends.contains("qt6-translations-l10n"_L1), qPrintable(depends));
        QCOMPARE(controlField("Recommends").split(u", "_s, Qt::SkipEmptyParts),
                 (QStringList{u"qt6-translations-l10n"_s, u"xdg-utils"_s, u"libqt6svg6"_s}));
        QCOMPARE(controlField("Architecture"), run(u"dpkg"_s, {u"--print-architecture"_s}));
    }

    // Debian's own checker, at its strictest: every tag counts, informational and pedantic
    // ones too (unstripped or unhardened binaries, a missing copyright file or changelog,
    // long description lines, ...). The package's overrides each carry their reason.
    void lintian()
    {
        const QDir overridesFolder(kRoot + u"/usr/share/lintian/overrides"_s);
        for (const QFileInfo &file : overridesFolder.entryInfoList(QDir::Files)) {
            bool reasoned = false;
            for (const QByteArray &line : contents(file.filePath()).split('\n')) {
                if (line.startsWith('#'))
                    reasoned = true;
                else if (!line.trimmed().isEmpty())
                    QVERIFY2(std::exchange(reasoned, false), line.constData());
            }
        }
        if (QStandardPaths::findExecutable(u"lintian"_s).isEmpty())
            QSKIP("lintian is missing (scripts/setup installs it)");
        for (const QString &package : debs()) {
            // Tags are printed on standard output; standard error has lintian's own notes
            // (such as running as root), shown only with a failure.
            const Tools::Outcome lintian = Tools::run(
                u"lintian"_s, {u"--pedantic"_s, u"--display-info"_s, u"--tag-display-limit"_s,
                               u"0"_s, u"--color=never"_s, package});
            QVERIFY2(lintian.exitCode == 0 && lintian.output.trimmed().isEmpty(),
                     qPrintable(QFileInfo(package).fileName() + u":\n"_s +
                                QString::fromUtf8(lintian.output + lintian.errors)));
        }
    }

    // The changelog is in Debian's format (dpkg's parser reads it) and its newest entry is
    // this version; the AppStream release is that entry.
    void changelogAndMetainfo()
    {
        QTemporaryDir scratch;
        const QString changelog = scratch.filePath(u"changelog"_s);
        const Tools::Outcome unzipped = Tools::run(
            u"gzip"_s, {u"-dc"_s, kRoot + u"/usr/share/doc/quorvelle-uninstaller/changelog.gz"_s});
        QFile text(changelog);
        QVERIFY(unzipped.exitCode == 0 && text.open(QIODevice::WriteOnly) &&
                text.write(unzipped.output) > 0);
        text.close();
        const auto parsed = [&](const char *field) {
            return run(u"dpkg-parsechangelog"_s,
                       {u"-l"_s, changelog, u"-S"_s, QLatin1String(field)});
        };
        const QString version = controlField("Version");
        QCOMPARE(parsed("Version"), version);
        QCOMPARE(parsed("Source"), controlField("Package"));
        const QDate released =
            QDateTime::fromString(parsed("Date"), Qt::RFC2822Date).toUTC().date();
        QVERIFY(released.isValid());

        if (!QStandardPaths::findExecutable(u"appstreamcli"_s).isEmpty()) {
            // Errors, warnings and hints; only the pedantic level is left out (it asks for
            // a lower-case identifier, and the identifier is the desktop entry's name).
            const Tools::Outcome validate =
                Tools::run(u"appstreamcli"_s, {u"validate"_s, u"--no-net"_s, kRoot + kMetainfo});
            const QString report = QString::fromUtf8(validate.output + validate.errors);
            QVERIFY2(validate.exitCode == 0 &&
                         !report.contains(QRegularExpression(u"^\\s*[EWI]: "_s,
                                                             QRegularExpression::MultilineOption)),
                     qPrintable(report));
        }
        QStringList found =
            describedElements(kRoot + kMetainfo, [](QXmlStreamReader &xml) -> QString {
                const QXmlStreamAttributes a = xml.attributes();
                if (xml.name() == "component"_L1)
                    return u"component "_s + a.value("type"_L1).toString();
                if (xml.name() == "release"_L1)
                    return u"release "_s + a.value("version"_L1).toString() + u' ' +
                           a.value("date"_L1).toString();
                if (xml.name() == "id"_L1 || xml.name() == "launchable"_L1) {
                    // The name first: reading the text moves the reader past the element.
                    const QString name = xml.name().toString();
                    return name + u' ' + xml.readElementText();
                }
                return QString();
            });
        found.sort();
        QCOMPARE(found,
                 (QStringList{u"component desktop-application"_s, u"id "_s + kDesktopId,
                              u"launchable "_s + kDesktopId + u".desktop"_s,
                              u"release "_s + version + u' ' + released.toString(Qt::ISODate)}));
    }

    // Qt's own translations are only recommended: without them Qt's texts are English,
    // the program's own still follow the language, and nothing else is said or changed.
    void withoutQtTranslations_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QString>("qtText");
        QTest::newRow("installed") << false << u"Unbekannte Option 'bogus'."_s;
        QTest::newRow("missing") << true << u"Unknown option 'bogus'."_s;
    }
    void withoutQtTranslations()
    {
        QFETCH(bool, hidden);
        QFETCH(QString, qtText);
        const QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        if (!QFile::exists(translations + u"/qtbase_de.qm"_s))
            QSKIP("Qt's German translation is not installed (qt6-translations-l10n)");
        if (QStandardPaths::findExecutable(u"bwrap"_s).isEmpty())
            QSKIP("bwrap is missing (scripts/setup installs it)");
        QStringList arguments{u"exec"_s, u"--ro-bind"_s, kRoot, u"/opt/package"_s};
        if (hidden)
            arguments << u"--tmpfs"_s << translations;
        // The kit's libraries where the installed system has them on the loader's path.
        arguments << u"--setenv"_s << u"LD_LIBRARY_PATH"_s << u"/opt/package"_s + libraryFolder()
                  << u"--setenv"_s << u"LANG"_s << u"de_DE.UTF-8"_s << u"--setenv"_s
                  << u"LANGUAGE"_s << u"de"_s << u"--"_s << u"/opt/package"_s + kProgram
                  << u"--bogus"_s;
        const Tools::Outcome outcome =
            Tools::run(qEnvironmentVariable("QV_SOURCE_DIR") + u"/scripts/qv-sandbox"_s, arguments);
        QCOMPARE(outcome.exitCode, 2);
        QCOMPARE(QString::fromUtf8(outcome.errors),
                 u"quorvelle-uninstaller: "_s + qtText +
                     u"\nWeitere Informationen mit »quorvelle-uninstaller --help«.\n"_s);
        QCOMPARE(outcome.output, QByteArray());
    }
};

QTEST_GUILESS_MAIN(tst_Package)
#include "tst_package.moc"
