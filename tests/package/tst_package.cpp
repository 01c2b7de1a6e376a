// The Debian package as shipped, unpacked with dpkg-deb -x: exactly the files the program
// needs, all under /usr, the policy naming the helper where the package puts it, a hidden
// desktop entry with its icon, dependencies computed from the binaries, and no path of
// the machine that built it inside any file.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QTest>
#include <QXmlStreamReader>

#include <optional>

namespace {

const QString kHelper = QStringLiteral("/usr/libexec/quorvelle/quorvelle-privileged-helper");
const QString kDesktopId = QStringLiteral(QV_EXPECTED_DESKTOP_ID);

QString packageDir()
{
    return qEnvironmentVariable("QV_PACKAGE_DIR");
}

QString root()
{
    return packageDir() + QStringLiteral("/root");
}

QString deb()
{
    const QStringList debs =
        QDir(packageDir() + QStringLiteral("/deb")).entryList({QStringLiteral("*.deb")});
    return debs.size() == 1 ? packageDir() + QStringLiteral("/deb/") + debs.first() : QString();
}

// Standard output of a command that must succeed; nothing on failure.
std::optional<QString> run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
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
    }

    void fileList()
    {
        // Only /usr at the top: nothing in /etc, /opt or /usr/local.
        QCOMPARE(QDir(root()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                 QStringList{QStringLiteral("usr")});
        const QString data = QStringLiteral("/usr/share/quorvelle-uninstaller/");
        QStringList expected = {
            QStringLiteral("/usr/bin/quorvelle-uninstaller"),
            kHelper,
            QStringLiteral("/usr/share/applications/") + kDesktopId + QStringLiteral(".desktop"),
            QStringLiteral("/usr/share/icons/hicolor/scalable/apps/") + kDesktopId +
                QStringLiteral(".svg"),
            QStringLiteral("/usr/share/polkit-1/actions/net.brelltan.Quorvelle.policy"),
            data + QStringLiteral("SurveyWindow.ui"),
            QStringLiteral("/usr/share/man/man1/quorvelle-uninstaller.1.gz"),
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
        for (const QString &program : {QStringLiteral("/usr/bin/quorvelle-uninstaller"), kHelper})
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
        const QString depends = run(QStringLiteral("dpkg-deb"),
                                    {QStringLiteral("-f"), deb(), QStringLiteral("Depends")})
                                    .value_or(QString());
        // Computed from the binaries, plus what the program starts or loads by name.
        for (const char *package :
             {"libqt6widgets6", "libqt6network6", "libc6", "pkexec", "qt6-translations-l10n"})
            QVERIFY2(depends.contains(QLatin1String(package)), qPrintable(depends));
        QCOMPARE(run(QStringLiteral("dpkg-deb"),
                     {QStringLiteral("-f"), deb(), QStringLiteral("Architecture")})
                     .value_or(QStringLiteral("(none)")),
                 run(QStringLiteral("dpkg"), {QStringLiteral("--print-architecture")})
                     .value_or(QString()));
    }
};

QTEST_GUILESS_MAIN(tst_Package)
#include "tst_package.moc"
