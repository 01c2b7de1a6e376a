// The uninstaller as the suite starts it, in a throwaway machine: no window and removal when
// the account service is out of reach; survey, submission and removal when it answers;
// the offer, which removes nothing. Each road checks the fake machine before and after.
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

namespace {

const QString kUserHome = QStringLiteral("/home/alex");
const QString kTitle = QStringLiteral("Uninstall Quorvelle");

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

// What the suite's removal takes away: exact items (with their contents) and file-name
// prefixes ("*"). Everything else on the fake machine must stay.
QStringList removedItems()
{
    QStringList items = {QStringLiteral("/Library/Application Support/Quorvelle"),
                         QStringLiteral("/Library/Caches/com.varnix.Quorvelle"),
                         QStringLiteral("/Library/Caches/net.brelltan.Quorvelle")};
    for (const QString &name :
         words("com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist "
               "com.varnix.Quorvelle.AntiVirus.plist net.brelltan.Quorvelle.AntiVirus "
               "net.brelltan.Quorvelle.AntiVirus.plist "
               "net.brelltan.Quorvelle.plugin.AntiTheft.daemon "
               "net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist"))
        items << QStringLiteral("/Library/LaunchDaemons/") + name;
    for (const QString &name :
         words("LaunchAgents/com.varnix.Quorvelle.Helper "
               "LaunchAgents/com.varnix.Quorvelle.Helper.plist "
               "LaunchAgents/net.brelltan.Quorvelle.Helper "
               "LaunchAgents/net.brelltan.Quorvelle.Helper.plist "
               "Preferences/com.varnix.Quorvelle* Caches/com.varnix.Quorvelle* "
               "Preferences/net.brelltan.Quorvelle* Caches/net.brelltan.Quorvelle*"))
        items << kUserHome + QStringLiteral("/Library/") + name;
    for (const char *name :
         {"Application Support/Quorvelle", "Application Support/Quorvelle Helper",
          "Saved Application State/com.varnix.Quorvelle.savedState",
          "Saved Application State/net.brelltan.Quorvelle.savedState"})
        items << kUserHome + QStringLiteral("/Library/") + QLatin1String(name);
    return items;
}

QStringList afterRemoval(const QStringList &before)
{
    QStringList after;
    for (const QString &path : before) {
        bool gone = false;
        for (const QString &item : removedItems()) {
            gone = gone || path == item || path.startsWith(item + QLatin1Char('/')) ||
                   (item.endsWith(QLatin1Char('*')) && path.startsWith(item.chopped(1)));
        }
        if (!gone)
            after.append(path);
    }
    return after;
}

std::optional<QString> run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(30000))
        process.kill();
    process.waitForFinished();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace

class tst_Roads : public QObject
{
    Q_OBJECT

    QString _sandbox, _bin, _program, _display;
    bool _captureErrors = false; // standard error read by the test instead of shown
    QProcess _xvfb;

    QProcessEnvironment displayEnvironment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.remove(QStringLiteral("XAUTHORITY"));
        env.insert(QStringLiteral("DISPLAY"), _display);
        env.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        return env;
    }

    // An X tool on the test display; its standard output.
    QString x(const QStringList &command)
    {
        QProcess process;
        process.setProcessEnvironment(displayEnvironment());
        process.start(command.first(), command.mid(1));
        if (!process.waitForFinished(30000))
            process.kill();
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    // One launch of the uninstaller in a fresh sandbox, watched from the X server's side.
    struct Launch
    {
        QTemporaryDir stage;
        QStringList before;
        QProcess program, mapSpy;
        QByteArray mapEvents;

        bool windowMapped()
        {
            while (mapSpy.waitForReadyRead(300))
                mapEvents += mapSpy.readAllStandardOutput();
            return mapEvents.contains("MapNotify");
        }
        QByteArray out(const char *name) const
        {
            QFile file(stage.filePath(QStringLiteral("out/")) + QLatin1String(name));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }
        // The body of the survey's request as the stand-in service logged it; empty if none.
        QByteArray surveyBody() const
        {
            const QByteArray log = out("service.log");
            const QByteArray head =
                "POST https://account." QV_EXPECTED_DOMAIN "/mac/uninstall-survey\n";
            const qsizetype at = log.indexOf(head);
            return at < 0 ? QByteArray() : log.mid(at + head.size()).chopped(1);
        }
        ~Launch()
        {
            for (QProcess *p : {&program, &mapSpy}) {
                p->kill();
                p->waitForFinished();
            }
        }
    };

    std::unique_ptr<Launch> launch(const QStringList &options,
                                   const QStringList &arguments = {
                                       kUserHome + QStringLiteral("/uninstall-info.json")})
    {
        auto l = std::make_unique<Launch>();
        if (!run(_sandbox, {QStringLiteral("prepare"), l->stage.path()}))
            return nullptr;
        l->before = list(l->stage.path());
        // Every window mapped on the display shows up here.
        l->mapSpy.setProcessEnvironment(displayEnvironment());
        l->mapSpy.start(QStringLiteral("stdbuf"), words("-oL xev -root -event substructure"));
        l->mapSpy.waitForStarted();
        QTest::qWait(300);
        l->program.setProcessEnvironment(displayEnvironment());
        l->program.setProcessChannelMode(_captureErrors ? QProcess::SeparateChannels
                                                        : QProcess::ForwardedErrorChannel);
        l->program.start(_sandbox, QStringList{QStringLiteral("run"), l->stage.path(), _bin,
                                               QStringLiteral("--program"), _program} +
                                       options + QStringList{QStringLiteral("--")} + arguments);
        return l;
    }

    bool waitForWindow()
    {
        const QString window =
            x(words("timeout 20 xdotool search --sync --onlyvisible --name") << kTitle)
                .section(QLatin1Char('\n'), 0, 0);
        if (window.isEmpty())
            return false;
        x(words("xdotool windowfocus --sync") << window);
        return true;
    }

    void keys(const char *keys)
    {
        for (const QString &key : words(keys)) {
            x({QStringLiteral("xdotool"), QStringLiteral("key"), key});
            QTest::qWait(150);
        }
    }

    bool finished(Launch &l, int timeoutMs = 30000)
    {
        const bool ended =
            l.program.state() == QProcess::NotRunning || l.program.waitForFinished(timeoutMs);
        l.windowMapped(); // collects the last events before the spy goes
        l.mapSpy.kill();
        l.mapSpy.waitForFinished();
        return ended && l.program.exitStatus() == QProcess::NormalExit && l.program.exitCode() == 0;
    }

    QStringList list(const QString &stage)
    {
        return run(_sandbox, {QStringLiteral("list"), stage})
            .value_or(QString())
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private Q_SLOTS:
    void initTestCase()
    {
        for (const QString &tool : words("bwrap Xvfb xdotool xev python3 openssl")) {
            if (QStandardPaths::findExecutable(tool).isEmpty())
                QSKIP(qPrintable(tool + QStringLiteral(" is missing (scripts/setup installs it)")));
        }
        _sandbox = qEnvironmentVariable("QV_SOURCE_DIR") + QStringLiteral("/scripts/qv-sandbox");
        // The build's program, or the installed one of the unpacked package (its root is
        // the sandbox's program folder, so the program finds its data folder as installed).
        _bin = qEnvironmentVariable("QV_PACKAGE_ROOT");
        _program = QStringLiteral("usr/bin/quorvelle-uninstaller");
        if (_bin.isEmpty()) {
            _bin = qEnvironmentVariable("QV_BINARY_DIR") + QStringLiteral("/bin");
            _program = QStringLiteral("QuorvelleUninstaller");
        }
        QVERIFY(QFile::exists(_bin + u'/' + _program));
        for (int n = 90; n < 140 && _display.isEmpty(); ++n) {
            const QString socket = QStringLiteral("/tmp/.X11-unix/X%1").arg(n);
            if (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(n)) || QFile::exists(socket))
                continue;
            _xvfb.start(QStringLiteral("Xvfb"), QStringList{QStringLiteral(":%1").arg(n)} +
                                                    words("-screen 0 1024x768x24 -nolisten tcp"));
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(socket) || _xvfb.state() == QProcess::NotRunning,
                                     10000);
            if (_xvfb.state() == QProcess::Running)
                _display = QStringLiteral(":%1").arg(n);
        }
        QVERIFY(!_display.isEmpty());
        // A keyboard that has the comment's letters: xdotool would otherwise remap spare keys
        // on the fly, which races with the program reading the new key map.
        x(words("setxkbmap de"));
    }

    void cleanupTestCase()
    {
        _xvfb.terminate();
        _xvfb.waitForFinished();
    }

    // Out of reach: the product goes at once and no window is ever mapped.
    void offline()
    {
        auto l = launch({QStringLiteral("--offline")});
        QVERIFY(l);
        QVERIFY(finished(*l));
        QVERIFY(!l->windowMapped());
        QCOMPARE(list(l->stage.path()), afterRemoval(l->before));
        QVERIFY(l->out("service.log").isEmpty());
    }

    // The service answers (whatever it answers) or not: the survey as the user filled it
    // reaches it, then the product goes.
    void online_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("service answers 200") << QStringList();
        QTest::newRow("service answers 500") << words("--status 500");
        // The test build gives up after a few seconds instead of a minute.
        QTest::newRow("service never answers")
            << words("--silent --program QuorvelleUninstallerShortTimeout");
    }
    void online()
    {
        QFETCH(QStringList, options);
        auto l = launch(options);
        QVERIFY(l);
        QVERIFY(waitForWindow());
        QVERIFY(l->windowMapped());
        // Features reason, two of its boxes, then a comment with non-ASCII text.
        keys("alt+f alt+c alt+s alt+t");
        const QString comment = QStringLiteral("Zu langsam, äöü ß € & a=b + c");
        x(words("xdotool type --delay 80") << comment);
        QTest::qWait(300);
        keys("alt+u");
        QVERIFY(finished(*l, 60000));

        // Raw UTF-8 after the field name, not percent-encoded, and nothing after the JSON.
        const QByteArray body = l->surveyBody();
        QVERIFY2(body.startsWith("uninstallData={") && body.endsWith('}'), body.constData());
        QVERIFY2(body.contains(comment.toUtf8()), body.constData());
        QJsonParseError error;
        const QJsonObject payload = QJsonDocument::fromJson(body.mid(14), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        const QJsonObject expected{
            {QStringLiteral("userName"), QStringLiteral("Alex Example")},
            {QStringLiteral("installationId"), QStringLiteral("D2F1-77A0")},
            {QStringLiteral("productVersion"), QStringLiteral("2.0.1")},
            {QStringLiteral("license"), QStringLiteral("trial")},
            {QStringLiteral("version"), QStringLiteral(QV_EXPECTED_VERSION)},
            {QStringLiteral("comment"), comment},
            {QStringLiteral("other"), 0},
            {QStringLiteral("fairPrice"), 0},
            {QStringLiteral("featureSatisfaction"), 1},
            {QStringLiteral("easeofUse"), 1},
            {QStringLiteral("supportQuality"), 0},
            {QStringLiteral("featureIssues"),
             QJsonObject{{QStringLiteral("easeofUse"), 1},
                         {QStringLiteral("computerSlowedDown"), 1}}},
        };
        QCOMPARE(payload, expected);
        QCOMPARE(list(l->stage.path()), afterRemoval(l->before));
    }

    // Options answer or are refused before anything else happens: no window, nothing
    // sent, nothing removed, even with the service out of reach.
    void commandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("output"); // on standard output, or standard error for 2
        QTest::newRow("help") << words("--help") << 0 << QStringLiteral("[file]");
        QTest::newRow("version") << words("--version") << 0
                                 << QStringLiteral("quorvelle-uninstaller " QV_EXPECTED_VERSION
                                                   "\n");
        QTest::newRow("unknown option before the file")
            << QStringList{QStringLiteral("--remove-now"),
                           kUserHome + QStringLiteral("/uninstall-info.json")}
            << 2 << QStringLiteral("Unknown option 'remove-now'");
        QTest::newRow("Qt option")
            << words("-platform offscreen") << 2 << QStringLiteral("Unknown option 'platform'");
    }
    void commandLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, output);
        _captureErrors = true;
        auto l = launch({QStringLiteral("--offline")}, arguments);
        _captureErrors = false;
        QVERIFY(l);
        QVERIFY(l->program.waitForFinished(30000));
        QCOMPARE(l->program.exitCode(), exitCode);
        const QString printed = QString::fromUtf8(
            exitCode == 0 ? l->program.readAllStandardOutput() : l->program.readAllStandardError());
        QVERIFY2(printed.contains(output), qPrintable(printed));
        QVERIFY(!l->windowMapped());
        QCOMPARE(list(l->stage.path()), l->before);
    }

    // The offer opens the partner's page and leaves everything in place.
    void offer()
    {
        auto l = launch({});
        QVERIFY(l);
        QVERIFY(waitForWindow());
        keys("alt+o alt+g");
        QVERIFY(finished(*l));
        QCOMPARE(l->out("browser.log"), QByteArray(QV_EXPECTED_OFFER "\n"));
        QVERIFY(l->surveyBody().isEmpty());
        QCOMPARE(list(l->stage.path()), l->before);
    }
};

QTEST_GUILESS_MAIN(tst_Roads)
#include "tst_roads.moc"
