// The Debian package as shipped, unpacked with dpkg-deb -x: exactly the files the program
// needs, all under /usr, the policy naming the helper where the package puts it, a hidden
// desktop entry with its icon and AppStream metadata, the copyright file and changelog,
// dependencies computed from the binaries, no path of the machine that built it inside any
// file, and nothing that lintian or appstreamcli find wrong.
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

#include <optional>
#include <utility>

namespace {

const QString kProgram = QStringLiteral("/usr/bin/quorvelle-uninstaller");
const QString kHelper = QStringLiteral("/usr/libexec/quorvelle/quorvelle-privileged-helper");
const QString kDesktopId = QStringLiteral(QV_EXPECTED_DESKTOP_ID);
const QString kDoc = QStringLiteral("/usr/share/doc/quorvelle-uninstaller/");
const QString kOverrides = QStringLiteral("/usr/share/lintian/overrides/quorvelle-uninstaller");
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

QString deb()
{
    const QStringList all = debs();
    return all.size() == 1 ? all.first() : QString();
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

QString controlField(const char *field)
{
    return run(QStringLiteral("dpkg-deb"), {QStringLiteral("-f"), deb(), QLatin1String(field)})
        .value_or(QStringLiteral("(none)"));
}

QStringList packagedFiles()
{
    QStringList files;
    QDirIterator it(root(), QDir::Files | QDir::System | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(it.next().mid(root().size()));
    files.sort();
    return files;
}

} // namespace

class tst_Package : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(!deb().isEmpty(), "no package: the package_build test makes it");
        QVERIFY(QFileInfo(root()).isDir());
        // Built in the calling build folder, not in the source tree's build/.
        QVERIFY(QFile::exists(packageDir() + QStringLiteral("/build/CMakeCache.txt")));
    }

    void fileList()
    {
        // Only /usr at the top: nothing in /etc, /opt or /usr/local.
        QCOMPARE(QDir(root()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                 QStringList{QStringLiteral("usr")});
        const QString data = QStringLiteral("/usr/share/quorvelle-uninstaller/");
        QStringList expected = {
            kProgram,
            kHelper,
            QStringLiteral("/usr/share/applications/") + kDesktopId + QStringLiteral(".desktop"),
            QStringLiteral("/usr/share/icons/hicolor/scalable/apps/") + kDesktopId +
                QStringLiteral(".svg"),
            kMetainfo,
            QStringLiteral("/usr/share/polkit-1/actions/net.brelltan.Quorvelle.policy"),
            data + QStringLiteral("SurveyWindow.ui"),
            QStringLiteral("/usr/share/man/man1/quorvelle-uninstaller.1.gz"),
            kDoc + QStringLiteral("copyright"),
            kDoc + QStringLiteral("changelog.gz"),
            kOverrides,
        };
        const QDir sources(qEnvironmentVariable("QV_SOURCE_DIR") +
                           QStringLiteral("/resources/translations"));
        for (const QFileInfo &ts : sources.entryInfoList({QStringLiteral("*.ts")}))
            expected.append(data + QStringLiteral("translations/") + ts.completeBaseName() +
                            QStringLiteral(".qm"));
        expected.sort();
        QStringList files = packagedFiles();
        // The bundle's images, whatever the window needs, belong too.
        files.removeIf(
            [&](const QString &f) { return f.startsWith(data + QStringLiteral("images/")); });
        QCOMPARE(files, expected);
        for (const QString &program : {kProgram, kHelper})
            QVERIFY2(QFileInfo(root() + program).isExecutable(), qPrintable(program));
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
            QFile f(root() + file);
            QVERIFY(f.open(QIODevice::ReadOnly));
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
        // Computed from the binaries, plus what the program starts by name. Qt's own
        // translations are only recommended: the program works without them.
        const QString depends = controlField("Depends");
        for (const char *package : {"libqt6widgets6", "libqt6network6", "libc6", "pkexec"})
            QVERIFY2(depends.contains(QLatin1String(package)), qPrintable(depends));
        QVERIFY2(!depends.contains(QLatin1String("qt6-translations-l10n")), qPrintable(depends));
        const QStringList recommends =
            controlField("Recommends").split(QStringLiteral(", "), Qt::SkipEmptyParts);
        QCOMPARE(recommends, (QStringList{QStringLiteral("qt6-translations-l10n"),
                                          QStringLiteral("xdg-utils")}));
        QCOMPARE(controlField("Architecture"),
                 run(QStringLiteral("dpkg"), {QStringLiteral("--print-architecture")})
                     .value_or(QString()));
    }

    // Debian's own checker, at its strictest: every tag counts, informational and pedantic
    // ones too (unstripped or unhardened binaries, a missing copyright file or changelog,
    // long description lines, ...). The package's overrides each carry their reason.
    void lintian()
    {
        QFile overrides(root() + kOverrides);
        QVERIFY(overrides.open(QIODevice::ReadOnly | QIODevice::Text));
        bool reasoned = false;
        for (const QByteArray &line : overrides.readAll().split('\n')) {
            if (line.startsWith('#'))
                reasoned = true;
            else if (!line.trimmed().isEmpty())
                QVERIFY2(std::exchange(reasoned, false), line.constData());
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
