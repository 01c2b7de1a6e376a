// The uninstaller as the suite starts it, in a throwaway machine: no window and removal when
// the account service is out of reach; survey, submission and removal when it answers;
// the offer, which removes nothing; and every fault a user's machine can throw at it. Each
// road checks the fake machine before and after.
#include "Sandbox.h"
#include "VXSuiteItems.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString kUserHome = u"/home/alex"_s;
const QString kTitle = u"Uninstall Quorvelle"_s;

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ');
}

// Whether the removal takes path away, by the uninstaller's own item table: the item itself
// with everything below it, or every name that begins with a prefix item.
bool isSuiteItem(const QString &path, bool systemWide)
{
    // A prefix covers every name of its folder that begins with it, and what lies below.
    const auto covers = [&path](const QString &item, bool prefix) {
        return prefix ? path.startsWith(item) : path == item || path.startsWith(item + u'/');
    };
    if (systemWide)
        return std::ranges::any_of(VXSuiteItems::kSystemWidePaths, [&](std::string_view item) {
            return covers(QString::fromUtf8(item), false);
        });
    return std::ranges::any_of(VXSuiteItems::kUserItems, [&](const VXSuiteItems::UserItem &item) {
        const QString base = item.base == VXSuiteItems::Base::UserLibrary
                                 ? kUserHome + u"/Library/"_s
                                 : u"/Library/Caches/"_s;
        return covers(base + QString::fromUtf8(item.relative),
                      item.how == VXSuiteItems::How::ByPrefix);
    });
}

// The machine after the removal: the per-user items always go, the system-wide ones only
// with consent; what the user may not delete stays.
QStringList afterRemoval(const QStringList &before, bool systemGone = true,
                         const QStringList &stays = {})
{
    QStringList after;
    for (const QString &path : before) {
        const bool gone = (systemGone && isSuiteItem(path, true)) || isSuiteItem(path, false);
        if (!gone || stays.contains(path))
            after.append(path);
    }
    return after;
}

// Every item of the fake machine with its kind, mode and content hash, by its path inside.
QMap<QString, QString> machine(const QString &stage)
{
    QMap<QString, QString> items;
    for (const auto &[folder, inside] :
         {std::pair(u"/root"_s, u"/"_s), std::pair(u"/home"_s, kUserHome + u'/')}) {
        const QMap<QString, QString> tree = Sandbox::snapshot(stage + folder);
        for (auto it = tree.cbegin(); it != tree.cend(); ++it)
            items.insert(inside + it.key(), it.value());
    }
    return items;
}

} // namespace

// What a fault row does at the window (none: the window must never appear).
enum class Action
{
    None,
    Survey,          // answer and press Uninstall
    DoubleUninstall, // press Uninstall again twice while the survey is being sent
    OfferDuringSend, // press the offer while the survey is being sent
    CloseThenSurvey, // the window's close button first, then answer and press Uninstall
};
// What the service must have seen of the survey.
enum class Survey
{
    None,       // nothing (no window, or the connection was refused)
    Full,       // once, with the information file's keys
    InfoIgnored // once, without any key of the information file
};
// The uninstaller's options, a change to the stage before the run, what is done at the
// window, what the service must have seen, seconds from launch to the end, and whether the
// system-wide items go.
using FaultRow = std::tuple<QStringList, QString, Action, Survey, int, bool>;
Q_DECLARE_METATYPE(FaultRow)

class tst_Roads : public QObject
{
    Q_OBJECT

    QString _sandbox, _bin, _program, _tools, _display;
    QProcess _xvfb;

    QProcessEnvironment displayEnvironment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(u"QT_QPA_PLATFORM"_s);
        env.remove(u"XAUTHORITY"_s);
        env.insert(u"DISPLAY"_s, _display);
        env.insert(u"LANG"_s, u"C.UTF-8"_s);
        return env;
    }

    // An X tool on the test display; its standard output.
    QString x(const QStringList &command)
    {
        return QString::fromUtf8(
                   Tools::run(command.first(), command.mid(1), 30000, displayEnvironment()).output)
            .trimmed();
    }

    // One launch of the uninstaller in a fresh sandbox, watched from the X server's side.
    struct Launch
    {
        QTemporaryDir stage;
        QStringList before;
        QMap<QString, QString> snapshot; // machine() before the run
        QProcess program, mapSpy;
        QByteArray mapEvents;
        QElapsedTimer clock;

        bool windowMapped()
        {
            while (mapSpy.waitForReadyRead(300))
                mapEvents += mapSpy.readAllStandardOutput();
            return mapEvents.contains("MapNotify");
        }
        QByteArray out(const char *name) const
        {
            return Tools::readFile(stage.filePath(u"out/"_s) + QLatin1String(name));
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

    std::unique_ptr<Launch>
    launch(const QStringList &options, const std::function<void(const QString &)> &twist = {},
           const QStringList &arguments = {kUserHome + u"/uninstall-info.json"_s},
           QProcess::ProcessChannelMode channels = QProcess::MergedChannels)
    {
        auto l = std::make_unique<Launch>();
        const Sandbox::Result prepared = Sandbox::script({u"prepare"_s, l->stage.path(), _tools});
        if (prepared.exitCode != 0) {
            qWarning("%s", prepared.errors.constData());
            return nullptr;
        }
        if (twist)
            twist(l->stage.path());
        l->before = list(l->stage.path());
        if (l->before.isEmpty()) // every comparison with it would hold trivially
            return nullptr;
        l->snapshot = machine(l->stage.path());
        // Every window mapped on the display shows up here.
        l->mapSpy.setProcessEnvironment(displayEnvironment());
        l->mapSpy.start(u"stdbuf"_s, words("-oL xev -root -event substructure"));
        l->mapSpy.waitForStarted();
        QTest::qWait(300);
        l->program.setProcessEnvironment(displayEnvironment());
        l->program.setProcessChannelMode(channels);
        l->clock.start();
        l->program.start(_sandbox, QStringList{u"run"_s, l->stage.path(), _bin, u"--program"_s,
                                               _program, u"--tools"_s, _tools} +
                                       options + QStringList{u"--"_s} + arguments);
        return l;
    }

    QString waitForWindow()
    {
        const QString window =
            x(words("timeout 20 xdotool search --sync --onlyvisible --name") << kTitle)
                .section(u'\n', 0, 0);
        if (!window.isEmpty())
            x(words("xdotool windowfocus --sync") << window);
        return window;
    }

    void keys(const char *keys)
    {
        for (const QString &key : words(keys)) {
            x({u"xdotool"_s, u"key"_s, key});
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

    // The two buttons sit in the window's bottom corners: a click at `at` from the left
    // edge, or from the right one when negative. The offer road clicks at the same place, so
    // a layout that moves them fails there instead of silently missing here.
    static constexpr int kOffer = 88, kUninstall = -60;
    void click(const QString &window, int at, int count)
    {
        const QString size = x(words("xdotool getwindowgeometry --shell") << window);
        const auto value = [&size](const char *key) {
            const QString k = QLatin1String(key) + u'=';
            return size.mid(size.indexOf(k) + k.size()).section(u'\n', 0, 0).toInt();
        };
        const int px = at < 0 ? value("WIDTH") + at : at;
        x(words("xdotool mousemove --window")
          << window << QString::number(px) << QString::number(value("HEIGHT") - 28)
          << words("click --delay 80 --repeat") << QString::number(count) << u"1"_s);
    }

    QStringList list(const QString &stage)
    {
        const Sandbox::Result listed = Sandbox::script({u"list"_s, stage});
        return QString::fromUtf8(listed.exitCode == 0 ? listed.output : "")
            .split(u'\n', Qt::SkipEmptyParts);
    }

private Q_SLOTS:
    void initTestCase()
    {
        for (const QString &tool : words("bwrap Xvfb xdotool xev xprop python3 openssl")) {
            if (QStandardPaths::findExecutable(tool).isEmpty())
                QSKIP(qPrintable(tool + u" is missing (scripts/setup installs it)"_s));
        }
        _sandbox = qEnvironmentVariable("QV_SOURCE_DIR") + u"/scripts/qv-sandbox"_s;
        _tools = qEnvironmentVariable("QV_BINARY_DIR") + u"/bin"_s;
        // The build's program, another build's (e.g. an older one, to see which faults it
        // had), or the installed one of the unpacked package (its root is the sandbox's
        // program folder, so the program finds its data folder as installed).
        _bin = qEnvironmentVariable("QV_PACKAGE_ROOT");
        _program = u"usr/bin/quorvelle-uninstaller"_s;
        if (_bin.isEmpty()) {
            _bin = qEnvironmentVariable("QV_PROGRAM_DIR", _tools);
            _program = u"quorvelle-uninstaller"_s;
        }
        QVERIFY(QFile::exists(_bin + u'/' + _program));
        // Xvfb picks a free display itself and says which on its standard output: choosing
        // one here raced with other servers starting on the same machine.
        _xvfb.start(u"Xvfb"_s, words("-displayfd 1 -screen 0 1024x768x24 -nolisten tcp"));
        QTRY_VERIFY_WITH_TIMEOUT(_xvfb.canReadLine() || _xvfb.state() == QProcess::NotRunning,
                                 30000);
        if (_xvfb.state() == QProcess::Running)
            _display = u':' + QString::fromLatin1(_xvfb.readLine().trimmed());
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

    // The service answers: the survey as the user filled it reaches it, then the product
    // goes.
    void online()
    {
        auto l = launch({});
        QVERIFY(l);
        const QString window = waitForWindow();
        QVERIFY(!window.isEmpty());
        QVERIFY(l->windowMapped());

        // A task bar ties the window to its desktop entry: WM_CLASS's class is the entry's
        // StartupWMClass. And the window has an icon of its own.
        const QString entryPath =
            qEnvironmentVariableIsSet("QV_PACKAGE_ROOT")
                ? _bin + QStringLiteral("/usr/share/applications/" QV_DESKTOP_ID ".desktop")
                : QStringLiteral(QV_BUILD_DESKTOP_ENTRY);
        const QString startupClass = QSettings(entryPath, QSettings::IniFormat)
                                         .value(u"Desktop Entry/StartupWMClass"_s)
                                         .toString();
        QVERIFY2(!startupClass.isEmpty(), qPrintable(entryPath));
        // WM_CLASS(STRING) = "instance", "class"
        const QString wmClass = x(words("xprop -id") << window << u"WM_CLASS"_s);
        QCOMPARE(wmClass.section(u'"', -2, -2), startupClass);
        // (The icon is given just after the window is mapped.)
        QString icon;
        QTRY_VERIFY2_WITH_TIMEOUT((icon = x(words("xprop -id") << window << u"_NET_WM_ICON"_s))
                                          .startsWith(u"_NET_WM_ICON(CARDINAL)"_s) &&
                                      icon.contains(u"Icon (64 x 64)"_s),
                                  qPrintable(icon.left(200)), 5000);
        // Features reason, two of its boxes, then a comment with non-ASCII text.
        keys("alt+f alt+c alt+s alt+t");
        const QString comment = u"Zu langsam, äöü ß € & a=b + c"_s;
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
        QJsonObject expected = QJsonDocument::fromJson(R"({"userName":"Alex Example",
            "installationId":"D2F1-77A0","productVersion":"2.0.1","license":"trial","other":0,
            "fairPrice":0,"featureSatisfaction":1,"easeofUse":1,"supportQuality":0,
            "featureIssues":{"easeofUse":1,"computerSlowedDown":1}})")
                                   .object();
        expected.insert(u"version"_s, QStringLiteral(QV_EXPECTED_VERSION));
        expected.insert(u"comment"_s, comment);
        QCOMPARE(payload, expected);
        QCOMPARE(list(l->stage.path()), afterRemoval(l->before));
        // Qt's note about the form's default content type is not the user's business.
        QVERIFY2(!l->program.readAll().contains("content-type"), "Qt's warning reached stderr");
    }

    // Options answer or are refused before anything else happens: no window, nothing
    // sent, nothing removed, even with the service out of reach.
    void commandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("output"); // on standard output, or standard error for 2
        QTest::newRow("help") << words("--help") << 0 << u"[file]"_s;
        QTest::newRow("version") << words("--version") << 0
                                 << QStringLiteral("quorvelle-uninstaller " QV_EXPECTED_VERSION
                                                   "\n");
        QTest::newRow("unknown option before the file")
            << QStringList{u"--remove-now"_s, kUserHome + u"/uninstall-info.json"_s} << 2
            << u"Unknown option 'remove-now'"_s;
        QTest::newRow("Qt option")
            << words("-platform offscreen") << 2 << u"Unknown option 'platform'"_s;
    }
    void commandLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QString, output);
        // Standard error read by the test instead of shown.
        auto l = launch({u"--offline"_s}, {}, arguments, QProcess::SeparateChannels);
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
        const QString window = waitForWindow();
        QVERIFY(!window.isEmpty());
        keys("alt+o");
        click(window, kOffer, 1);
        QVERIFY(finished(*l));
        QCOMPARE(l->out("browser.log"), QByteArray(QV_EXPECTED_OFFER "\n"));
        QVERIFY(l->surveyBody().isEmpty());
        QCOMPARE(list(l->stage.path()), l->before);
    }

    // Every fault ends the same way: the process ends by itself, in time, with exactly the
    // suite's items gone (the system-wide ones only with consent), at most one privileged
    // request, and the survey sent at most once and only to the account service.
    void faults_data()
    {
        QTest::addColumn<FaultRow>("row");
        const auto row = [](const char *name, const QStringList &options, const char *twist,
                            Action action, Survey survey, int bound, bool systemGone = true) {
            QTest::newRow(name) << FaultRow{
                options, QString::fromLatin1(twist), action, survey, bound, systemGone};
        };
        const Action none = Action::None, answer = Action::Survey;
        // The short-timeout build: the silent service costs 3 s, not a minute.
        const QStringList silent = words("--silent --program QuorvelleUninstallerShortTimeout");
        // A runaway read fails fast under a cap on the address space; AddressSanitizer
        // reserves terabytes of it up front and cannot start under any cap.
#ifdef __SANITIZE_ADDRESS__
        const QStringList capped;
#else
        const QStringList capped = words("--memory-limit 4096");
#endif
        const QStringList offline = words("--offline"), consent = words("--as-user yes --offline");

        row("offline", offline, "", none, Survey::None, 20);
        row("consent given", consent, "", none, Survey::None, 20);
        row("consent refused", words("--as-user no --offline"), "", none, Survey::None, 20, false);
        row("user item the user may not delete", consent, "locked", none, Survey::None, 20);
        row("link inside a listed folder", offline, "link", none, Survey::None, 20);
        row("service 500", words("--status 500"), "", answer, Survey::Full, 40);
        row("service silent", silent, "", answer, Survey::Full, 45);
        row("untrusted certificate", words("--untrusted"), "", answer, Survey::None, 40);
        row("redirect to another host",
            words("--redirect https://collector.example.org/mac/uninstall-survey"), "", answer,
            Survey::Full, 40);
        row("resolver black-holed", words("--offline --resolver-blackhole"), "", none, Survey::None,
            25);
        row("information file unreadable", words("--as-user yes"), "unreadable", answer,
            Survey::InfoIgnored, 40);
        row("information file of 1 MiB", capped, "large", answer, Survey::Full, 40);
        row("information file oversized", capped, "oversized", answer, Survey::InfoIgnored, 40);
        row("information file is a FIFO", {}, "fifo", answer, Survey::InfoIgnored, 40);
        row("information file is a device", capped, "device", answer, Survey::InfoIgnored, 40);
        // Consent refused keeps the system-wide items, so a second removal would show as a
        // second consent request and "Command:" line.
        row("Uninstall again during the send", words("--as-user no") + silent, "",
            Action::DoubleUninstall, Survey::Full, 45, false);
        row("offer during the send", silent, "", Action::OfferDuringSend, Survey::Full, 45);
        row("close button", {}, "", Action::CloseThenSurvey, Survey::Full, 45);
    }

    void faults()
    {
        QFETCH(FaultRow, row);
        const auto [options, twist, action, survey, bound, systemGone] = row;
        if (options.contains(u"--as-user"_s) && ::geteuid() != 0)
            QSKIP("the ordinary-user road needs root to build its polkit sandbox");

        const QString suite = u"/Library/Application Support/Quorvelle"_s;
        const auto is = [&twist](const char *name) { return twist == QLatin1String(name); };
        const QString locked = kUserHome + suite + u"/Plugins"_s;
        QStringList stays; // suite items that must survive
        if (is("locked"))
            stays = {kUserHome + suite, locked, locked + u"/locked.dat"_s};
        QString infoPath = kUserHome + u"/uninstall-info.json"_s;
        if (is("device"))
            infoPath = u"/dev/zero"_s;
        if (is("fifo"))
            infoPath = kUserHome + u"/uninstall-info.fifo"_s;
        const auto change = [&](const QString &stage) {
            const QString home = stage + u"/home"_s;
            const QString json = home + u"/uninstall-info.json"_s;
            if (is("unreadable"))
                QFile::setPermissions(json, {});
            if (is("fifo"))
                ::mkfifo(QFile::encodeName(home + u"/uninstall-info.fifo"_s), 0644);
            if (is("large") || is("oversized")) {
                // Valid JSON with the user's name and one long value.
                const qint64 size = is("large") ? 1024 * 1024 : 64 * 1024 * 1024 + 1;
                QFile file(json);
                if (file.open(QIODevice::WriteOnly)) {
                    const QByteArray head = "{\"userName\":\"Alex Example\",\"pad\":\"";
                    file.write(head + QByteArray(size - head.size() - 2, 'x') + "\"}");
                }
            }
            if (is("locked")) {
                // A folder the user may not change, inside one of the suite's folders.
                const QString plugins = home + suite + u"/Plugins"_s;
                QDir().mkpath(plugins);
                QFile(plugins + u"/locked.dat"_s).open(QIODevice::WriteOnly);
                QFile::setPermissions(plugins, QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                                   QFileDevice::ReadOther | QFileDevice::ExeOther);
            }
            if (is("link"))
                QFile::link(kUserHome + u"/Documents"_s, home + suite + u"/Notes"_s);
        };
        auto l = launch(options, change, {infoPath});
        QVERIFY(l);

        if (action != Action::None) {
            const QString window = waitForWindow();
            QVERIFY(!window.isEmpty());
            if (action == Action::CloseThenSurvey) {
                x({u"python3"_s,
                   qEnvironmentVariable("QV_SOURCE_DIR") + u"/tests/e2e/close-window"_s, window});
                QTest::qWait(1000);
                QCOMPARE(l->program.state(), QProcess::Running);
                QVERIFY(!waitForWindow().isEmpty()); // still shown, still usable
            }
            keys("alt+o");
            if (action == Action::DoubleUninstall || action == Action::OfferDuringSend) {
                // With the mouse, as a person would: Qt holds back input during the send and
                // delivers it afterwards.
                click(window, kUninstall, 1);
                QTest::qWait(500);
                if (action == Action::DoubleUninstall)
                    click(window, kUninstall, 2);
                else
                    click(window, kOffer, 1);
            } else {
                keys("alt+u");
            }
        }
        const bool ended = finished(*l, bound * 1000);
        const qint64 took = l->clock.elapsed();
        const QByteArray output = l->program.readAll();
        QVERIFY2(ended, output.constData());
        QVERIFY2(took <= bound * 1000, qPrintable(QString::number(took)));
        qInfo("ended by itself after %.1f s", double(took) / 1000);

        if (action == Action::None)
            QVERIFY(!l->windowMapped());
        QVERIFY2(output.count("Command: ") <= 1, output.constData());
        QCOMPARE(l->out("browser.log"), QByteArray());
        const QByteArray log = l->out("service.log");
        // Only the account service ever sees the survey, and at most once.
        QVERIFY2(!log.contains("collector.example.org"), log.constData());
        QCOMPARE(log.count("POST "), survey == Survey::None ? 0 : 1);
        if (survey == Survey::InfoIgnored) {
            const QByteArray body = l->surveyBody();
            QVERIFY2(body.startsWith("uninstallData={") && !body.contains("userName"),
                     body.constData());
        }
        if (survey == Survey::Full)
            QVERIFY2(l->surveyBody().contains("\"userName\":\"Alex Example\""), log.constData());
        // The computer-wide caches item is removed with the user's rights only: an ordinary
        // user may not, so it stays.
        if (options.contains(u"--as-user"_s))
            for (const QString &path : l->before)
                if (path.startsWith(u"/Library/Caches/net.brelltan.Quorvelle"_s))
                    stays << path;
        const QStringList expected = afterRemoval(l->before, systemGone, stays);
        QCOMPARE(list(l->stage.path()), expected);
        // What stays is unchanged too: kind, mode and content.
        QMap<QString, QString> unchanged = l->snapshot;
        unchanged.removeIf(
            [&expected](const auto &item) { return !expected.contains(item.key()); });
        QCOMPARE(machine(l->stage.path()), unchanged);
    }
};

QTEST_GUILESS_MAIN(tst_Roads)
#include "tst_roads.moc"
