// The Debian packages as shipped, unpacked with dpkg-deb -x: the kit's runtime package, its
// development package, its API reference and the uninstaller, each with exactly its files (the
// reference's by pattern), all under /usr; the

// policy naming the helper where the package puts it, a hidden desktop entry with its icon
// and AppStream metadata, every package's copyright file and changelog, dependencies
// computed from the binaries (the uninstaller's on the kit through the kit's shlibs file),
// no path of the machine that built them inside any file, and nothing that lintian or
// appstreamcli find wrong.
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <filesystem>
#include <optional>

#include <utility>

namespace {

const QString kProgram = QStringLiteral("/usr/bin/quorvelle-uninstaller");
const QString kHelper = QStringLiteral("/usr/libexec/quorvelle/quorvelle-privileged-helper");
const QString kDesktopId = QStringLiteral(QV_EXPECTED_DESKTOP_ID);
const QString kDoc = QStringLiteral("/usr/share/doc/quorvelle-uninstaller/");
const QString kOverrides = QStringLiteral("/usr/share/lintian/overrides/quorvelle-uninstaller");
const QString kUninstaller = QStringLiteral("quorvelle-uninstaller");
const QString kKit = QStringLiteral("libquorvelle-kit2");
const QString kKitDev = QStringLiteral("libquorvelle-kit-dev");
const QString kKitDoc = QStringLiteral("libquorvelle-kit-doc");
const QString kDesigner = QStringLiteral("quorvelle-kit-designer-plugin");
const QString kVersion = QStringLiteral(QV_EXPECTED_VERSION);
const QString kMetainfo =
    QStringLiteral("/usr/share/metainfo/") + kDesktopId + QStringLiteral(".metainfo.xml");

QString packageDir()
{
    return qEnvironmentVariable("QV_PACKAGE_DIR");
}

QString root()
{
    return packageDir() + QStringLiteral("/root");
}

// Every package the build made; lintian checks each of them.
QStringList debs()
{
    const QDir folder(packageDir() + QStringLiteral("/deb"));
    QStringList paths;
    for (const QString &name : folder.entryList({QStringLiteral("*.deb")}))
        paths.append(folder.filePath(name));
    return paths;
}

// The package file of one package; empty when the build made none or several.
QString deb(const QString &package = kUninstaller)
{
    const QStringList all =
        debs().filter(QRegularExpression(QStringLiteral("/") + QRegularExpression::escape(package) +
                                         QStringLiteral("_[^/]*\\.deb$")));
    return all.size() == 1 ? all.first() : QString();
}

// One package unpacked on its own.
QString unpacked(const QString &package)
{
    return packageDir() + QStringLiteral("/unpacked/") + package;
}

struct Outcome
{
    int exitCode = -1; // -1: it did not start or did not end
    QByteArray output; // standard output
    QByteArray errors; // standard error
};

Outcome execute(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    Outcome outcome;
    if (process.waitForFinished(300000) && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.output = process.readAllStandardOutput();
    outcome.errors = process.readAllStandardError();
    return outcome;
}

// Standard output of a command that must succeed; nothing on failure.
std::optional<QString> run(const QString &program, const QStringList &arguments)
{
    const Outcome outcome = execute(program, arguments);
    if (outcome.exitCode != 0)
        return std::nullopt;
    return QString::fromUtf8(outcome.output).trimmed();
}

QString controlField(const char *field, const QString &package = kUninstaller)
{
    return run(QStringLiteral("dpkg-deb"),
               {QStringLiteral("-f"), deb(package), QLatin1String(field)})
        .value_or(QStringLiteral("(none)"));
}

// Files and links (dangling ones too: the development package's links point into the
// runtime package) under a folder, as absolute paths of the installed system.
QStringList packagedFiles(const QString &folder = root())
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
    return QStringLiteral("/usr/lib/") +
           run(QStringLiteral("dpkg-architecture"), {QStringLiteral("-qDEB_HOST_MULTIARCH")})
               .value_or(QStringLiteral("(unknown)")) +
           u'/';
}

QStringList documents(const QString &package)
{
    const QString doc = QStringLiteral("/usr/share/doc/") + package + u'/';
    return {doc + QStringLiteral("copyright"), doc + QStringLiteral("changelog.gz")};
}

// The translations compiled from resources/translations/<group>_<lang>.ts.
QStringList translations(const QString &folder, const QString &group)
{
    QStringList files;
    const QDir sources(qEnvironmentVariable("QV_SOURCE_DIR") +
                       QStringLiteral("/resources/translations"));
    for (const QFileInfo &ts : sources.entryInfoList({group + QStringLiteral("_*.ts")}))
        files.append(folder + ts.completeBaseName() + QStringLiteral(".qm"));
    return files;
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
        QVERIFY(QFileInfo(root()).isDir());
        // Built in the calling build folder, not in the source tree's build/.
        QVERIFY(QFile::exists(packageDir() + QStringLiteral("/build/CMakeCache.txt")));
    }

    void fileList_data()
    {
        QTest::addColumn<QString>("package");
        QTest::addColumn<QStringList>("expected");

        const QString lib = libraryFolder();
        const QStringList libraries = {QStringLiteral("libQuorvelleFoundation"),
                                       QStringLiteral("libQuorvelleSystemInformation"),
                                       QStringLiteral("libQuorvelleWidgets")};
        QStringList kit = documents(kKit);
        kit << QStringLiteral("/usr/share/lintian/overrides/") + kKit
            << QStringLiteral("/usr/share/quorvelle-kit/Info.ini");
        kit += translations(QStringLiteral("/usr/share/quorvelle-kit/translations/"),
                            QStringLiteral("strings"));
        for (const QString &library : libraries)
            kit << lib + library + QStringLiteral(".so.2")
                << lib + library + QStringLiteral(".so.") + kVersion;
        kit.sort();
        QTest::newRow("runtime") << kKit << kit;

        // The headers the build tree's include folder offers, nothing more or less.
        QStringList dev = documents(kKitDev);
        const QString include = qEnvironmentVariable("QV_BINARY_DIR") + QStringLiteral("/include");
        QDirIterator headers(include + QStringLiteral("/Quorvelle"), {QStringLiteral("*.h")},
                             QDir::Files, QDirIterator::Subdirectories);
        while (headers.hasNext())
            dev << QStringLiteral("/usr/include") + headers.next().mid(include.size());
        const QString cmake = lib + QStringLiteral("cmake/QuorvelleKit/");
        dev << cmake + QStringLiteral("QuorvelleKitConfig.cmake")
            << cmake + QStringLiteral("QuorvelleKitConfigVersion.cmake")
            << cmake + QStringLiteral("QuorvelleWidgetsLoad.cpp");
        for (const QString &module :
             {QStringLiteral("Foundation"), QStringLiteral("SystemInformation"),
              QStringLiteral("Widgets")}) {
            dev << cmake + QStringLiteral("QuorvelleKit") + module + QStringLiteral("Targets.cmake")
                << cmake + QStringLiteral("QuorvelleKit") + module +
                       QStringLiteral("Targets-release.cmake")
                << lib + QStringLiteral("pkgconfig/Quorvelle") + module + QStringLiteral(".pc");
        }
        for (const QString &library : libraries)
            dev << lib + library + QStringLiteral(".so");
        dev.sort();
        QTest::newRow("development") << kKitDev << dev;

        const QString data = QStringLiteral("/usr/share/quorvelle-uninstaller/");
        QStringList program = documents(kUninstaller);
        program << kProgram << kHelper
                << QStringLiteral("/usr/share/applications/") + kDesktopId +
                       QStringLiteral(".desktop")
                << QStringLiteral("/usr/share/icons/hicolor/scalable/apps/") + kDesktopId +
                       QStringLiteral(".svg")
                << kMetainfo
                << QStringLiteral("/usr/share/polkit-1/actions/net.brelltan.Quorvelle.policy")
                << data + QStringLiteral("SurveyWindow.ui") << data + QStringLiteral("Info.ini")
                << QStringLiteral("/usr/share/man/man1/quorvelle-uninstaller.1.gz") << kOverrides;
        for (const QString &group :
             {QStringLiteral("window"), QStringLiteral("strings"), QStringLiteral("removal")})
            program += translations(data + QStringLiteral("translations/"), group);
        program.sort();
        QTest::newRow("uninstaller") << kUninstaller << program;

        QStringList designer = documents(kDesigner);
        designer << lib + QStringLiteral("qt6/plugins/designer/quorvellekitwidgets.so");
        designer.sort();
        QTest::newRow("designer plugin") << kDesigner << designer;
    }
    void fileList()
    {
        QFETCH(QString, package);
        QFETCH(QStringList, expected);
        // Only /usr at the top: nothing in /etc, /opt or /usr/local.
        QCOMPARE(QDir(unpacked(package))
                     .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                 QStringList{QStringLiteral("usr")});
        QStringList files = packagedFiles(unpacked(package));
        // The bundle's images, whatever the window needs, belong too.
        files.removeIf([&](const QString &f) {
            return f.startsWith(QStringLiteral("/usr/share/quorvelle-uninstaller/images/"));
        });
        QCOMPARE(files, expected);
        if (package == kUninstaller) {
            for (const QString &program : {kProgram, kHelper})
                QVERIFY2(QFileInfo(root() + program).isExecutable(), qPrintable(program));
        }
    }

    // The API reference: Doxygen's pages (their names are Doxygen's, so checked by pattern and
    // by a few pages the reference must have), every page's links ending in the package, and
    // the system's jQuery in place of a copy of it.
    void documentationPackage()
    {
        const QString html = QStringLiteral("/usr/share/doc/") + kKitDoc + QStringLiteral("/html/");
        const QStringList files = packagedFiles(unpacked(kKitDoc));
        QStringList docs = documents(kKitDoc);
        docs << QStringLiteral("/usr/share/doc-base/") + kKitDoc;

        const QRegularExpression page(QStringLiteral("^[A-Za-z0-9_.-]+\\.(html|css|js|png|svg)$"));
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

        const QFileInfo jquery(unpacked(kKitDoc) + html + QStringLiteral("jquery.js"));
        QVERIFY(jquery.isSymLink());
        QCOMPARE(QFile::symLinkTarget(jquery.filePath()),
                 unpacked(kKitDoc) + QStringLiteral("/usr/share/javascript/jquery/jquery.js"));
        QVERIFY2(std::filesystem::read_symlink(QFile::encodeName(jquery.filePath()).toStdString())
                     .is_relative(),
                 "a link within /usr is relative");

        // Every page's own links lead to a file of the package.
        const QRegularExpression link(
            QStringLiteral("(?:href|src)=\"([A-Za-z0-9_.-]+)(?:#[^\"]*)?\""));
        for (const QString &file : files) {
            if (!file.endsWith(QStringLiteral(".html")))
                continue;
            QFile pageFile(unpacked(kKitDoc) + file);
            QVERIFY(pageFile.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(pageFile.readAll());
            for (const QRegularExpressionMatch &match : link.globalMatch(text)) {
                const QString target = html + match.captured(1);
                QVERIFY2(files.contains(target), qPrintable(file + QStringLiteral(" → ") + target));
            }
        }

        QCOMPARE(controlField("Section", kKitDoc), QStringLiteral("doc"));
        QCOMPARE(controlField("Architecture", kKitDoc), QStringLiteral("all"));
        QCOMPARE(controlField("Depends", kKitDoc), QStringLiteral("libjs-jquery"));
    }

    // The links of a shared library: the loader's name in the runtime package, the linker's

    // in the development package, both ending at the one file.
    void libraryLinks()
    {
        const QString lib = root() + libraryFolder();
        for (const char *library : {"Foundation", "SystemInformation", "Widgets"}) {
            const QString base = lib + QStringLiteral("libQuorvelle") + QLatin1String(library);
            QCOMPARE(QFileInfo(base + QStringLiteral(".so")).symLinkTarget(),
                     QFileInfo(base + QStringLiteral(".so.2")).absoluteFilePath());
            QCOMPARE(QFileInfo(base + QStringLiteral(".so.2")).canonicalFilePath(),
                     base + QStringLiteral(".so.") + kVersion);
            QVERIFY(QFileInfo(base + QStringLiteral(".so.") + kVersion).isFile());
        }
    }

    // pkexec picks the action by the program's absolute path.
    void policyNamesInstalledHelper()
    {
        QFile policy(root() +
                     QStringLiteral("/usr/share/polkit-1/actions/net.brelltan.Quorvelle.policy"));
        QVERIFY(policy.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&policy);
        QStringList paths;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement &&
                xml.name() == QLatin1String("annotate") &&
                xml.attributes().value(QLatin1String("key")) ==
                    QLatin1String("org.freedesktop.policykit.exec.path"))
                paths.append(xml.readElementText());
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(paths, QStringList{kHelper});
    }

    void noBuildPaths()
    {
        QList<QByteArray> forbidden;
        for (const char *variable : {"QV_SOURCE_DIR", "QV_BINARY_DIR", "QV_PACKAGE_DIR"})
            forbidden.append(
                QFile::encodeName(QDir(qEnvironmentVariable(variable)).canonicalPath()));
        for (const QString &file : packagedFiles()) {
            // A link into another package (the reference's jQuery) has no content here.
            if (QFileInfo(root() + file).isSymLink() && !QFileInfo::exists(root() + file))
                continue;
            QFile f(root() + file);
            QVERIFY2(f.open(QIODevice::ReadOnly), qPrintable(file));

            const QByteArray content = f.readAll();
            for (const QByteArray &path : forbidden)
                QVERIFY2(!path.isEmpty() && !content.contains(path),
                         qPrintable(file + QStringLiteral(" holds ") + QString::fromUtf8(path)));
        }
    }

    void desktopEntry()
    {
        const QString entry = root() + QStringLiteral("/usr/share/applications/") + kDesktopId +
                              QStringLiteral(".desktop");
        if (!QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate")).isEmpty())
            QCOMPARE(run(QStringLiteral("desktop-file-validate"), {entry})
                         .value_or(QStringLiteral("(invalid)")),
                     QString());
        QFile file(entry);
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        QMap<QString, QString> keys;
        for (const QByteArray &line : file.readAll().split('\n')) {
            const qsizetype eq = line.indexOf('=');
            if (eq > 0)
                keys.insert(QString::fromUtf8(line.left(eq)), QString::fromUtf8(line.mid(eq + 1)));
        }
        QCOMPARE(keys.value(QStringLiteral("NoDisplay")), QStringLiteral("true"));
        QCOMPARE(keys.value(QStringLiteral("Icon")), kDesktopId);
        const QString command = keys.value(QStringLiteral("Exec")).section(u' ', 0, 0);
        QVERIFY2(QFileInfo(root() + QStringLiteral("/usr/bin/") + command).isExecutable(),
                 qPrintable(command));
    }

    void control()
    {
        // The kit: shlibs for its dependents, ldconfig by trigger.
        QCOMPARE(controlField("Section", kKit), QStringLiteral("libs"));
        const QString kitDepends = controlField("Depends", kKit);
        for (const char *package : {"libqt6widgets6", "libssl3", "libglib2.0-0", "libfontconfig1"})
            QVERIFY2(kitDepends.contains(QLatin1String(package)), qPrintable(kitDepends));
        QVERIFY2(!kitDepends.contains(kKit), qPrintable(kitDepends));
        QTemporaryDir control;
        QCOMPARE(
            execute(QStringLiteral("dpkg-deb"), {QStringLiteral("-e"), deb(kKit), control.path()})
                .exitCode,
            0);
        QFile shlibs(control.filePath(QStringLiteral("shlibs")));
        QVERIFY(shlibs.open(QIODevice::ReadOnly | QIODevice::Text));
        QStringList lines = QString::fromUtf8(shlibs.readAll()).split(u'\n', Qt::SkipEmptyParts);
        lines.sort();
        const QString floor = kKit + QStringLiteral(" (>= ") + kVersion + u')';
        QCOMPARE(lines, (QStringList{QStringLiteral("libQuorvelleFoundation 2 ") + floor,
                                     QStringLiteral("libQuorvelleSystemInformation 2 ") + floor,
                                     QStringLiteral("libQuorvelleWidgets 2 ") + floor}));
        QVERIFY(!QFile::exists(control.filePath(QStringLiteral("postinst"))));
        QFile triggers(control.filePath(QStringLiteral("triggers")));
        QVERIFY(triggers.open(QIODevice::ReadOnly | QIODevice::Text));
        QVERIFY(triggers.readAll().contains("activate-noawait ldconfig\n"));
        // The development files: exactly this runtime and Qt's development files.
        QCOMPARE(controlField("Section", kKitDev), QStringLiteral("libdevel"));
        QCOMPARE(controlField("Depends", kKitDev),
                 kKit + QStringLiteral(" (= ") + kVersion + QStringLiteral("), qt6-base-dev"));

        // The Designer plugin: the kit's library at least as new as this release, through the
        // runtime package's shlibs; it serves Designer without needing it.
        const QString kitFloor = kKit + QStringLiteral(" (>= ") + kVersion + u')';
        const QString designerDepends = controlField("Depends", kDesigner);
        QVERIFY2(designerDepends.split(QStringLiteral(", ")).contains(kitFloor),
                 qPrintable(designerDepends));
        QCOMPARE(controlField("Enhances", kDesigner), QStringLiteral("designer-qt6"));

        // Computed from the binaries, plus what the program starts by name. Qt's own
        // translations and the SVG plug-ins (the window's own icon) are only recommended:
        // the program works without them.
        const QString depends = controlField("Depends");
        for (const char *package : {"libqt6widgets6", "libqt6network6", "libc6", "pkexec"})
            QVERIFY2(depends.contains(QLatin1String(package)), qPrintable(depends));
        QVERIFY2(depends.split(QStringLiteral(", ")).contains(floor), qPrintable(depends));
        QVERIFY2(!depends.contains(QLatin1String("qt6-translations-l10n")), qPrintable(depends));
        const QStringList recommends =
            controlField("Recommends").split(QStringLiteral(", "), Qt::SkipEmptyParts);
        QCOMPARE(recommends,
                 (QStringList{QStringLiteral("qt6-translations-l10n"), QStringLiteral("xdg-utils"),
                              QStringLiteral("libqt6svg6")}));
        QCOMPARE(controlField("Architecture"),
                 run(QStringLiteral("dpkg"), {QStringLiteral("--print-architecture")})
                     .value_or(QString()));
    }

    // Debian's own checker, at its strictest: every tag counts, informational and pedantic
    // ones too (unstripped or unhardened binaries, a missing copyright file or changelog,
    // long description lines, ...). The package's overrides each carry their reason.
    void lintian()
    {
        const QDir overridesFolder(root() + QStringLiteral("/usr/share/lintian/overrides"));
        for (const QFileInfo &file : overridesFolder.entryInfoList(QDir::Files)) {
            QFile overrides(file.filePath());
            QVERIFY(overrides.open(QIODevice::ReadOnly | QIODevice::Text));
            bool reasoned = false;
            for (const QByteArray &line : overrides.readAll().split('\n')) {
                if (line.startsWith('#'))
                    reasoned = true;
                else if (!line.trimmed().isEmpty())
                    QVERIFY2(std::exchange(reasoned, false), line.constData());
            }
        }
        if (QStandardPaths::findExecutable(QStringLiteral("lintian")).isEmpty())
            QSKIP("lintian is missing (scripts/setup installs it)");
        for (const QString &package : debs()) {
            // Tags are printed on standard output; standard error has lintian's own notes
            // (such as running as root), shown only with a failure.
            const Outcome lintian =
                execute(QStringLiteral("lintian"),
                        {QStringLiteral("--pedantic"), QStringLiteral("--display-info"),
                         QStringLiteral("--tag-display-limit"), QStringLiteral("0"),
                         QStringLiteral("--color=never"), package});
            QVERIFY2(lintian.exitCode == 0 && lintian.output.trimmed().isEmpty(),
                     qPrintable(QFileInfo(package).fileName() + QStringLiteral(":\n") +
                                QString::fromUtf8(lintian.output + lintian.errors)));
        }
    }

    // The changelog is in Debian's format (dpkg's parser reads it) and its newest entry is
    // this version; the AppStream release is that entry.
    void changelogAndMetainfo()
    {
        QTemporaryDir scratch;
        const QString changelog = scratch.filePath(QStringLiteral("changelog"));
        const Outcome unzipped =
            execute(QStringLiteral("gzip"),
                    {QStringLiteral("-dc"), root() + kDoc + QStringLiteral("changelog.gz")});
        QCOMPARE(unzipped.exitCode, 0);
        QFile text(changelog);
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write(unzipped.output) > 0);
        text.close();
        const auto parsed = [&](const char *field) {
            return run(QStringLiteral("dpkg-parsechangelog"),
                       {QStringLiteral("-l"), changelog, QStringLiteral("-S"),
                        QLatin1String(field)})
                .value_or(QStringLiteral("(unreadable)"));
        };
        const QString version = controlField("Version");
        QCOMPARE(parsed("Version"), version);
        QCOMPARE(parsed("Source"), controlField("Package"));
        const QDate released =
            QDateTime::fromString(parsed("Date"), Qt::RFC2822Date).toUTC().date();
        QVERIFY(released.isValid());

        const QString metainfo = root() + kMetainfo;
        if (!QStandardPaths::findExecutable(QStringLiteral("appstreamcli")).isEmpty()) {
            // Errors, warnings and hints; only the pedantic level is left out (it asks for
            // a lower-case identifier, and the identifier is the desktop entry's name).
            const Outcome validate =
                execute(QStringLiteral("appstreamcli"),
                        {QStringLiteral("validate"), QStringLiteral("--no-net"), metainfo});
            const QString report = QString::fromUtf8(validate.output + validate.errors);
            QVERIFY2(validate.exitCode == 0 &&
                         !report.contains(QRegularExpression(QStringLiteral("^\\s*[EWI]: "),
                                                             QRegularExpression::MultilineOption)),
                     qPrintable(report));
        }
        QFile file(metainfo);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QMap<QString, QStringList> found; // element (or element@attribute) -> values
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            const QString name = xml.name().toString();
            if (name == QLatin1String("component"))
                found[QStringLiteral("type")].append(
                    xml.attributes().value(QLatin1String("type")).toString());
            else if (name == QLatin1String("release"))
                found[QStringLiteral("release")].append(
                    xml.attributes().value(QLatin1String("version")).toString() + u' ' +
                    xml.attributes().value(QLatin1String("date")).toString());
            else if (name == QLatin1String("launchable"))
                found[name].append(xml.readElementText());
            else if (name == QLatin1String("id"))
                found[name].append(xml.readElementText());
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(found.value(QStringLiteral("type")),
                 QStringList{QStringLiteral("desktop-application")});
        QCOMPARE(found.value(QStringLiteral("id")), QStringList{kDesktopId});
        const QStringList launchable = found.value(QStringLiteral("launchable"));
        QCOMPARE(launchable, QStringList{kDesktopId + QStringLiteral(".desktop")});
        QVERIFY(QFile::exists(root() + QStringLiteral("/usr/share/applications/") +
                              launchable.first()));
        QCOMPARE(found.value(QStringLiteral("release")),
                 QStringList{version + u' ' + released.toString(Qt::ISODate)});
    }

    // Qt's own translations are only recommended: without them Qt's texts are English,
    // the program's own still follow the language, and nothing else is said or changed.
    void withoutQtTranslations_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QString>("qtText");
        QTest::newRow("installed") << false << QStringLiteral("Unbekannte Option 'bogus'.");
        QTest::newRow("missing") << true << QStringLiteral("Unknown option 'bogus'.");
    }
    void withoutQtTranslations()
    {
        QFETCH(bool, hidden);
        QFETCH(QString, qtText);
        const QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        if (!QFile::exists(translations + QStringLiteral("/qtbase_de.qm")))
            QSKIP("Qt's German translation is not installed (qt6-translations-l10n)");
        if (QStandardPaths::findExecutable(QStringLiteral("bwrap")).isEmpty())
            QSKIP("bwrap is missing (scripts/setup installs it)");
        QStringList arguments{QStringLiteral("exec"), QStringLiteral("--ro-bind"), root(),
                              QStringLiteral("/opt/package")};
        if (hidden)
            arguments << QStringLiteral("--tmpfs") << translations;
        // The kit's libraries where the installed system has them on the loader's path.
        arguments << QStringLiteral("--setenv") << QStringLiteral("LD_LIBRARY_PATH")
                  << QStringLiteral("/opt/package") + libraryFolder();
        arguments << QStringLiteral("--setenv") << QStringLiteral("LANG")
                  << QStringLiteral("de_DE.UTF-8") << QStringLiteral("--setenv")
                  << QStringLiteral("LANGUAGE") << QStringLiteral("de") << QStringLiteral("--")
                  << QStringLiteral("/opt/package") + kProgram << QStringLiteral("--bogus");
        const Outcome outcome =
            execute(qEnvironmentVariable("QV_SOURCE_DIR") + QStringLiteral("/scripts/qv-sandbox"),
                    arguments);
        QCOMPARE(outcome.exitCode, 2);
        QCOMPARE(QString::fromUtf8(outcome.errors),
                 QStringLiteral("quorvelle-uninstaller: ") + qtText +
                     QStringLiteral("\nWeitere Informationen mit »quorvelle-uninstaller "
                                    "--help«.\n"));
        QCOMPARE(outcome.output, QByteArray());
    }
};

QTEST_GUILESS_MAIN(tst_Package)
#include "tst_package.moc"
