// Removal of the suite, run against the real fixed paths inside a bubblewrap sandbox:
// /Library, the home folder and an "outside" folder are test-owned temporary folders
// bound into a sandbox whose root is a tmpfs. The test re-runs itself inside, calls
// proceedUninstall() there and compares the trees before and after.
#include "LogCapture.h"
#include "Sandbox.h"
#include "VXSearchPath.h"
#include "VXUninstallSurveyController.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

namespace {

const QString kHomeInside = QStringLiteral("/home/tester");

const QString kTail =
    QStringLiteral("launchctl remove com.varnix.Quorvelle.AntiVirus; launchctl remove "
                   "com.varnix.Quorvelle.plugin.AntiTheft.daemon; launchctl remove "
                   "net.brelltan.Quorvelle.plugin.AntiTheft.daemon");

// Inside the sandbox: the whole removal as the window would start it, then wait until
// the detached privileged shell is gone and report the log lines on standard output.
int runInsideSandbox(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    LogCapture capture;
    VXUninstallSurveyController controller;
    QTimer::singleShot(20000, &app, [] { QCoreApplication::exit(3); });
    controller.proceedUninstall();
    const int quitCode = QCoreApplication::exec();

    // In the private pid namespace, pid 1 is the sandbox's init and we are the only
    // other process once the privileged shell has finished.
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        const QStringList pids =
            QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs);
        if (pids.size() <= 2 || waited.elapsed() > 20000)
            break;
        QThread::msleep(20);
    }
    for (const QString &line : capture.lines())
        std::printf("LOG %s\n", line.toUtf8().constData());
    return quitCode;
}

} // namespace

class TestRemoval : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchPath_data();
    void searchPath();
    void removalInSandbox_data();
    void removalInSandbox();
};

void TestRemoval::searchPath_data()
{
    QTest::addColumn<int>("directory");
    QTest::addColumn<int>("mask");
    QTest::addColumn<bool>("expand");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("user library") << int(NSLibraryDirectory) << int(NSUserDomainMask) << true
                                  << QStringList{QStringLiteral("/home/someone/Library")};
    QTest::newRow("user library, tilde kept") << int(NSLibraryDirectory) << int(NSUserDomainMask)
                                              << false << QStringList{QStringLiteral("~/Library")};
    QTest::newRow("local caches") << int(NSCachesDirectory) << int(NSLocalDomainMask) << true
                                  << QStringList{QStringLiteral("/Library/Caches")};
    QTest::newRow("caches, user and local in order")
        << int(NSCachesDirectory) << int(NSUserDomainMask | NSLocalDomainMask) << true
        << QStringList{QStringLiteral("/home/someone/Library/Caches"),
                       QStringLiteral("/Library/Caches")};
    QTest::newRow("library everywhere")
        << int(NSLibraryDirectory) << int(NSAllDomainsMask) << true
        << QStringList{QStringLiteral("/home/someone/Library"), QStringLiteral("/Library"),
                       QStringLiteral("/Network/Library"), QStringLiteral("/System/Library")};
    QTest::newRow("unknown kind") << 999 << int(NSAllDomainsMask) << true << QStringList();
    QTest::newRow("no domain") << int(NSLibraryDirectory) << 0 << true << QStringList();
}

void TestRemoval::searchPath()
{
    QFETCH(int, directory);
    QFETCH(int, mask);
    QFETCH(bool, expand);
    QFETCH(QStringList, expected);
    const QByteArray oldHome = qgetenv("HOME");
    qputenv("HOME", "/home/someone");
    const QStringList result = NSSearchPathForDirectoriesInDomains(directory, mask, expand);
    qputenv("HOME", oldHome);
    QCOMPARE(result, expected);
}

// Items are written as "path" (a file), "path/" (a folder) or "path -> target" (a link).
// "~" is the home folder inside the sandbox.
void TestRemoval::removalInSandbox_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QStringList>("removed"); // items expected gone, with all they hold
    QTest::addColumn<QStringList>("log");

    const QString p7 =
        QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon");

    QTest::newRow("nothing installed")
        << QStringList{QStringLiteral("/Library/LaunchDaemons/org.other.plist"),
                       QStringLiteral("/Library/Application Support/Quorvelle2/"),
                       QStringLiteral("~/Library/Preferences/org.other.plist")}
        << QStringList() << QStringList();

    QTest::newRow("only the AntiTheft daemon folder")
        << QStringList{p7 + QStringLiteral("/"), p7 + QStringLiteral("/run.sh"),
                       QStringLiteral("/Library/LaunchDaemons/org.other.plist")}
        << QStringList{p7}
        << QStringList{QStringLiteral("Command: rm -rf '") + p7 + QStringLiteral("'; ") + kTail};

    QTest::newRow("every system-wide item, links inside not followed")
        << QStringList{QStringLiteral("/Library/Application Support/Quorvelle/"),
                       QStringLiteral("/Library/Application Support/Quorvelle/data/db"),
                       QStringLiteral(
                           "/Library/Application Support/Quorvelle/keep -> /outside/keep.txt"),
                       QStringLiteral(
                           "/Library/Application Support/Quorvelle/tree -> /outside/tree"),
                       QStringLiteral("/Library/Application Support/quorvelle/"),
                       QStringLiteral("/Library/Caches/com.varnix.Quorvelle/"),
                       QStringLiteral("/Library/Caches/com.varnix.Quorvelle.extra"),
                       QStringLiteral("/Library/LaunchDaemons/"
                                      "com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist"),
                       QStringLiteral(
                           "/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist"),
                       QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus/"),
                       QStringLiteral(
                           "/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"),
                       p7 + QStringLiteral("/"),
                       QStringLiteral("/Library/LaunchDaemons/"
                                      "net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist"),
                       QStringLiteral("/outside/keep.txt"),
                       QStringLiteral("/outside/tree/"),
                       QStringLiteral("/outside/tree/inner.txt")}
        << QStringList{QStringLiteral("/Library/Application Support/Quorvelle"),
                       QStringLiteral("/Library/Caches/com.varnix.Quorvelle"),
                       QStringLiteral("/Library/LaunchDaemons/"
                                      "com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist"),
                       QStringLiteral(
                           "/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist"),
                       QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus"),
                       QStringLiteral(
                           "/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"),
                       p7,
                       QStringLiteral("/Library/LaunchDaemons/"
                                      "net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist")}
        << QStringList{
               QStringLiteral(
                   "Command: rm -rf '/Library/Application Support/Quorvelle'; "
                   "rm -rf '/Library/Caches/com.varnix.Quorvelle'; "
                   "rm -rf "
                   "'/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist'; "
                   "rm -rf '/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist'; "
                   "rm -rf '/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus'; "
                   "rm -rf '/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist'; "
                   "rm -rf '") +
               p7 +
               QStringLiteral("'; "
                              "rm -rf "
                              "'/Library/LaunchDaemons/"
                              "net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist'; ") +
               kTail};

    QTest::newRow("a dangling link is not an existing item")
        << QStringList{QStringLiteral("/Library/Caches/com.varnix.Quorvelle -> /outside/gone")}
        << QStringList() << QStringList();

    QTest::newRow("user parts: prefixes, case variants, links")
        << QStringList{QStringLiteral("~/Library/Application Support/Quorvelle/"),
                       QStringLiteral("~/Library/Application Support/Quorvelle/settings"),
                       QStringLiteral(
                           "~/Library/Application Support/Quorvelle/keep -> /outside/keep.txt"),
                       QStringLiteral("~/Library/Application Support/Quorvelle Helper/"),
                       QStringLiteral("~/Library/Application Support/Quorvelle Helper 2/"),
                       QStringLiteral("~/Library/Preferences/com.varnix.Quorvelle"),
                       QStringLiteral("~/Library/Preferences/com.varnix.Quorvelle.plist"),
                       QStringLiteral("~/Library/Preferences/com.varnix.Quorvelle.Helper.plist"),
                       QStringLiteral("~/Library/Preferences/com.varnix.quorvelle.plist"),
                       QStringLiteral("~/Library/Preferences/com.varnix.QuorvelleZ/"),
                       QStringLiteral("~/Library/Preferences/net.brelltan.Quorvelle.plist"),
                       QStringLiteral("~/Library/Preferences/net.brelltan.QUORVELLE.plist"),
                       QStringLiteral("~/Library/Preferences/org.other.plist"),
                       QStringLiteral("~/Library/Caches/com.varnix.Quorvelle/"),
                       QStringLiteral("~/Library/Caches/com.varnix.Quorvelle/blob"),
                       QStringLiteral(
                           "~/Library/Caches/com.varnix.Quorvelle.tree -> /outside/tree"),
                       QStringLiteral("~/Library/Caches/net.brelltan.Quorvelle.Helper/"),
                       QStringLiteral("~/Library/Caches/Net.brelltan.Quorvelle/"),
                       QStringLiteral(
                           "~/Library/Saved Application State/com.varnix.Quorvelle.savedState/"),
                       QStringLiteral(
                           "~/Library/Saved Application State/com.varnix.Quorvelle.savedState/w"),
                       QStringLiteral(
                           "~/Library/Saved Application State/net.brelltan.Quorvelle.savedState/"),
                       QStringLiteral(
                           "~/Library/Saved Application State/net.brelltan.Quorvelle.savedState2/"),
                       QStringLiteral("~/Library/LaunchAgents/com.varnix.Quorvelle.Helper"),
                       QStringLiteral("~/Library/LaunchAgents/com.varnix.Quorvelle.Helper.plist"),
                       QStringLiteral("~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper/"),
                       QStringLiteral("~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper.plist "
                                      "-> /outside/agent.plist"),
                       QStringLiteral(
                           "~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper.plist.bak"),
                       QStringLiteral("/Library/Caches/net.brelltan.Quorvelle/"),
                       QStringLiteral("/Library/Caches/net.brelltan.Quorvelle/index"),
                       QStringLiteral("/Library/Caches/net.brelltan.Quorvelle.other"),
                       QStringLiteral("~/Documents/Quorvelle notes.txt"),
                       QStringLiteral("/outside/keep.txt"),
                       QStringLiteral("/outside/agent.plist"),
                       QStringLiteral("/outside/tree/"),
                       QStringLiteral("/outside/tree/inner.txt")}
        << QStringList{QStringLiteral("~/Library/Application Support/Quorvelle"),
                       QStringLiteral("~/Library/Application Support/Quorvelle Helper"),
                       QStringLiteral("~/Library/Preferences/com.varnix.Quorvelle"),
                       QStringLiteral("~/Library/Preferences/com.varnix.Quorvelle.plist"),
                       QStringLiteral("~/Library/Preferences/com.varnix.Quorvelle.Helper.plist"),
                       QStringLiteral("~/Library/Preferences/com.varnix.QuorvelleZ"),
                       QStringLiteral("~/Library/Preferences/net.brelltan.Quorvelle.plist"),
                       QStringLiteral("~/Library/Caches/com.varnix.Quorvelle"),
                       QStringLiteral("~/Library/Caches/com.varnix.Quorvelle.tree"),
                       QStringLiteral("~/Library/Caches/net.brelltan.Quorvelle.Helper"),
                       QStringLiteral(
                           "~/Library/Saved Application State/com.varnix.Quorvelle.savedState"),
                       QStringLiteral(
                           "~/Library/Saved Application State/net.brelltan.Quorvelle.savedState"),
                       QStringLiteral("~/Library/LaunchAgents/com.varnix.Quorvelle.Helper"),
                       QStringLiteral("~/Library/LaunchAgents/com.varnix.Quorvelle.Helper.plist"),
                       QStringLiteral("~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper"),
                       QStringLiteral("~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper.plist"),
                       QStringLiteral("/Library/Caches/net.brelltan.Quorvelle")}
        << QStringList();
}

void TestRemoval::removalInSandbox()
{
    QFETCH(QStringList, items);
    QFETCH(QStringList, removed);
    QFETCH(QStringList, log);
    if (!Sandbox::available())
        QSKIP("bubblewrap cannot build a sandbox here");
    if (::geteuid() != 0)
        QSKIP("the privileged part runs without a consent dialog only as root");

    QTemporaryDir root;
    QVERIFY(root.isValid());
    const QString host = root.path();
    // Where a path inside the sandbox lives on the host, as the snapshot names it.
    const auto relative = [](const QString &inside) {
        if (inside.startsWith(u'~'))
            return QStringLiteral("home") + inside.mid(1);
        return inside.mid(1);
    };
    for (const QString &dir :
         {QStringLiteral("Library"), QStringLiteral("home"), QStringLiteral("outside")})
        QVERIFY(QDir(host).mkpath(dir));

    for (const QString &item : items) {
        const qsizetype arrow = item.indexOf(QStringLiteral(" -> "));
        const QString path = host + u'/' + relative(arrow < 0 ? item : item.left(arrow));
        if (path.endsWith(u'/')) {
            QVERIFY(QDir().mkpath(path));
            continue;
        }
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        if (arrow >= 0) {
            QVERIFY(QFile::link(item.mid(arrow + 4), path));
        } else {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(item.toUtf8());
        }
    }

    const QMap<QString, QString> before = Sandbox::snapshot(host);
    QMap<QString, QString> expected = before;
    for (const QString &gone : removed) {
        const QString key = relative(gone);
        QVERIFY2(expected.contains(key), qPrintable(key));
        expected.removeIf([&key](const auto &entry) {
            return entry.key() == key || entry.key().startsWith(key + u'/');
        });
    }

    Sandbox::Options options;
    options.binds = {{host + QStringLiteral("/Library"), QStringLiteral("/Library")},
                     {host + QStringLiteral("/home"), kHomeInside},
                     {host + QStringLiteral("/outside"), QStringLiteral("/outside")}};
    options.environment.insert(QStringLiteral("HOME"), kHomeInside);
    const Sandbox::Result result =
        Sandbox::runSelf({QStringLiteral("--remove-inside-sandbox")}, options);
    QVERIFY2(result.finished, result.standardError.constData());
    QCOMPARE(result.exitCode, 0); // the application was asked to quit

    QStringList logged;
    for (const QByteArray &line : result.standardOutput.split('\n')) {
        if (line.startsWith("LOG "))
            logged.append(QString::fromUtf8(line.mid(4)));
    }
    const QMap<QString, QString> after = Sandbox::snapshot(host);
    // A readable account of the run: what was logged and what went.
    for (const QString &line : logged)
        qInfo("logged: %s", qPrintable(line));
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (!after.contains(it.key()))
            qInfo("removed: %s", qPrintable(it.key()));
    }
    QCOMPARE(logged, log);
    QCOMPARE(after, expected);
}

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--remove-inside-sandbox") == 0) {
        if (!Sandbox::insideSandbox())
            return 2; // never touch the real machine's folders
        return runInsideSandbox(argc, argv);
    }
    QCoreApplication app(argc, argv);
    TestRemoval test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_removal.moc"
