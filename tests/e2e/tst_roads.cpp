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

// What the suite's removal takes away: exact items (with their contents) and file-name
// prefixes. Everything else on the fake machine must stay.
const QStringList kRemovedItems = {
    QStringLiteral("/Library/Application Support/Quorvelle"),
    QStringLiteral("/Library/Caches/com.varnix.Quorvelle"),
    QStringLiteral("/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist"),
    QStringLiteral("/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist"),
    QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus"),
    QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"),
    QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon"),
    QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist"),
    QStringLiteral("/Library/Caches/net.brelltan.Quorvelle"),
    kUserHome + QStringLiteral("/Library/Application Support/Quorvelle"),
    kUserHome + QStringLiteral("/Library/Application Support/Quorvelle Helper"),
    kUserHome + QStringLiteral("/Library/Saved Application State/com.varnix.Quorvelle.savedState"),
    kUserHome + QStringLiteral("/Library/LaunchAgents/com.varnix.Quorvelle.Helper"),
    kUserHome + QStringLiteral("/Library/LaunchAgents/com.varnix.Quorvelle.Helper.plist"),
    kUserHome + QStringLiteral("/Library/LaunchAgents/net.brelltan.Quorvelle.Helper"),
    kUserHome + QStringLiteral("/Library/LaunchAgents/net.brelltan.Quorvelle.Helper.plist"),
    kUserHome +
        QStringLiteral("/Library/Saved Application State/net.brelltan.Quorvelle.savedState"),
};
const QStringList kRemovedPrefixes = {
    kUserHome + QStringLiteral("/Library/Preferences/com.varnix.Quorvelle"),
    kUserHome + QStringLiteral("/Library/Caches/com.varnix.Quorvelle"),
    kUserHome + QStringLiteral("/Library/Preferences/net.brelltan.Quorvelle"),
    kUserHome + QStringLiteral("/Library/Caches/net.brelltan.Quorvelle"),
};

QStringList afterRemoval(const QStringList &before)
{
    QStringList after;
    for (const QString &path : before) {
        bool gone = false;
        for (const QString &item : kRemovedItems)
            gone = gone || path == item || path.startsWith(item + QLatin1Char('/'));
        for (const QString &prefix : kRemovedPrefixes)
            gone = gone || path.startsWith(prefix);
        if (!gone)
            after.append(path);
    }
    return after;
}

std::optional<QString> run(const QString &program, const QStringList &arguments,
                           int timeoutMs = 30000)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace

class tst_Roads : public QObject
{
    Q_OBJECT

    QString _sandbox;
    QString _bin;
    QProcess _xvfb;
    QString _display;

    QProcessEnvironment displayEnvironment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.remove(QStringLiteral("XAUTHORITY"));
        env.insert(QStringLiteral("DISPLAY"), _display);
        env.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        return env;
    }

    QString x(const QString &tool, const QStringList &arguments, int timeoutMs = 30000)
    {
        QProcess process;
        process.setProcessEnvironment(displayEnvironment());
        process.start(tool, arguments);
        if (!process.waitForFinished(timeoutMs)) {
            process.kill();
            process.waitForFinished();
        }
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    // One launch of the uninstaller in a fresh sandbox, watched from the X server's side.
    struct Launch
    {
        QTemporaryDir stage;
        QStringList before;
        QProcess program;
        QProcess mapSpy;
        QByteArray mapEvents;
        QString window;

        bool windowMapped()
        {
            while (mapSpy.waitForReadyRead(300))
                mapEvents += mapSpy.readAllStandardOutput();
            return mapEvents.contains("MapNotify");
        }
        ~Launch()
        {
            for (QProcess *p : {&program, &mapSpy}) {
                if (p->state() != QProcess::NotRunning) {
                    p->kill();
                    p->waitForFinished();
                }
            }
        }
    };

    std::unique_ptr<Launch> launch(const QStringList &options)
    {
        auto l = std::make_unique<Launch>();
        if (!run(_sandbox, {QStringLiteral("prepare"), l->stage.path()}))
            return nullptr;
        l->before = list(l->stage.path());
        // Every window mapped on the display shows up here.
        l->mapSpy.setProcessEnvironment(displayEnvironment());
        l->mapSpy.start(QStringLiteral("stdbuf"),
                        {QStringLiteral("-oL"), QStringLiteral("xev"), QStringLiteral("-root"),
                         QStringLiteral("-event"), QStringLiteral("substructure")});
        l->mapSpy.waitForStarted();
        QTest::qWait(300);
        l->program.setProcessEnvironment(displayEnvironment());
        l->program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        l->program.start(_sandbox,
                         QStringList{QStringLiteral("run"), l->stage.path(), _bin} + options +
                             QStringList{QStringLiteral("--"),
                                         kUserHome + QStringLiteral("/uninstall-info.json")});
        return l;
    }

    bool waitForWindow(Launch &l)
    {
        l.window = x(QStringLiteral("timeout"),
                     {QStringLiteral("20"), QStringLiteral("xdotool"), QStringLiteral("search"),
                      QStringLiteral("--sync"), QStringLiteral("--onlyvisible"),
                      QStringLiteral("--name"), kTitle})
                       .section(QLatin1Char('\n'), 0, 0);
        if (l.window.isEmpty())
            return false;
        x(QStringLiteral("xdotool"),
          {QStringLiteral("windowfocus"), QStringLiteral("--sync"), l.window});
        return true;
    }

    void keys(const QStringList &keys)
    {
        for (const QString &key : keys) {
            x(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
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

    static QByteArray out(Launch &l, const char *name)
    {
        QFile file(l.stage.filePath(QStringLiteral("out/")) + QLatin1String(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // The survey's request: the request line the stand-in service logged and the body.
    static QList<QByteArray> surveyRequest(Launch &l)
    {
        const QByteArray log = out(l, "service.log");
        const QByteArray head =
            "POST https://account." QV_EXPECTED_DOMAIN "/mac/uninstall-survey\n";
        const qsizetype at = log.indexOf(head);
        if (at < 0)
            return {};
        QByteArray body = log.mid(at + head.size());
        body.chop(1); // the log's own line end
        return {head, body};
    }

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *tool : {"bwrap", "Xvfb", "xdotool", "xev", "python3", "openssl"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                QSKIP(qPrintable(QStringLiteral("%1 is missing (scripts/setup installs it)")
                                     .arg(QString::fromLatin1(tool))));
        }
        _sandbox = qEnvironmentVariable("QV_SOURCE_DIR") + QStringLiteral("/scripts/qv-sandbox");
        _bin = qEnvironmentVariable("QV_BINARY_DIR") + QStringLiteral("/bin");
        QVERIFY(QFile::exists(_bin + QStringLiteral("/QuorvelleUninstaller")));
        for (int n = 90; n < 140 && _display.isEmpty(); ++n) {
            if (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(n)) ||
                QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n)))
                continue;
            _xvfb.start(QStringLiteral("Xvfb"),
                        {QStringLiteral(":%1").arg(n), QStringLiteral("-screen"),
                         QStringLiteral("0"), QStringLiteral("1024x768x24"),
                         QStringLiteral("-nolisten"), QStringLiteral("tcp")});
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n)) ||
                                         _xvfb.state() == QProcess::NotRunning,
                                     10000);
            if (_xvfb.state() == QProcess::Running)
                _display = QStringLiteral(":%1").arg(n);
        }
        QVERIFY(!_display.isEmpty());
        // A keyboard that has the comment's letters: xdotool would otherwise remap spare keys
        // on the fly, which races with the program reading the new key map.
        x(QStringLiteral("setxkbmap"), {QStringLiteral("de")});
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
        QVERIFY(out(*l, "service.log").isEmpty());
    }

    // The service answers (whatever it answers): the survey as the user filled it reaches it,
    // then the product goes.
    void online_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::newRow("service answers 200") << QStringList();
        QTest::newRow("service answers 500")
            << QStringList{QStringLiteral("--status"), QStringLiteral("500")};
        // A service that never answers: the test build gives up after a few seconds instead
        // of a minute, and the removal follows all the same.
        QTest::newRow("service never answers")
            << QStringList{QStringLiteral("--silent"), QStringLiteral("--program"),
                           QStringLiteral("QuorvelleUninstallerShortTimeout")};
    }
    void online()
    {
        QFETCH(QStringList, options);
        auto l = launch(options);
        QVERIFY(l);
        QVERIFY(waitForWindow(*l));
        QVERIFY(l->windowMapped());
        // Features reason, two of its boxes, then a comment with non-ASCII text.
        keys({QStringLiteral("alt+f"), QStringLiteral("alt+c"), QStringLiteral("alt+s"),
              QStringLiteral("alt+t")});
        const QString comment = QStringLiteral("Zu langsam, äöü ß € & a=b + c");
        x(QStringLiteral("xdotool"),
          {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("80"), comment});
        QTest::qWait(300);
        keys({QStringLiteral("alt+u")});
        QVERIFY(finished(*l, 60000));

        const QList<QByteArray> request = surveyRequest(*l);
        QCOMPARE(request.size(), 2);
        const QByteArray body = request.at(1);
        QVERIFY2(body.startsWith("uninstallData={"), body.constData());
        QVERIFY2(body.endsWith('}'), body.constData()); // nothing after the JSON text
        // Sent as raw UTF-8, not percent-encoded.
        QVERIFY2(body.contains(comment.toUtf8()), body.constData());
        QJsonParseError error;
        const QJsonObject payload =
            QJsonDocument::fromJson(body.mid(int(qstrlen("uninstallData="))), &error).object();
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

    // The offer opens the partner's page and leaves everything in place.
    void offer()
    {
        auto l = launch({});
        QVERIFY(l);
        QVERIFY(waitForWindow(*l));
        keys({QStringLiteral("alt+o"), QStringLiteral("alt+g")});
        QVERIFY(finished(*l));
        QCOMPARE(out(*l, "browser.log"), QByteArray(QV_EXPECTED_OFFER "\n"));
        QVERIFY(surveyRequest(*l).isEmpty());
        QCOMPARE(list(l->stage.path()), l->before);
    }
};

QTEST_GUILESS_MAIN(tst_Roads)
#include "tst_roads.moc"
