// Removal of the suite against the real fixed paths inside a bubblewrap sandbox: /Library,
// the home folder and an "outside" folder are test-owned temporary folders bound in. The
// test re-runs itself inside, calls proceedUninstall() there and compares the trees.
#include "LogCapture.h"
#include "Sandbox.h"
#include "VXSearchPath.h"
#include "VXUninstallSurveyController.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

namespace {

// Inside the sandbox: the removal as the window starts it; then wait until the detached
// privileged shell is gone (pid 1 and we are left) and print the log lines.
int runInsideSandbox(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    LogCapture capture;
    VXUninstallSurveyController controller;
    QTimer::singleShot(20000, &app, [] { QCoreApplication::exit(3); });
    controller.proceedUninstall();
    const int quitCode = QCoreApplication::exec();
    QElapsedTimer waited;
    waited.start();
    while (QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs).size() >
               2 &&
           waited.elapsed() < 20000)
        QThread::msleep(20);
    for (const QString &line : capture.lines())
        std::printf("LOG %s\n", line.toUtf8().constData());
    return quitCode;
}

QStringList prefixed(const QString &prefix, const QStringList &names)
{
    QStringList out;
    for (const QString &name : names)
        out << prefix + name;
    return out;
}

} // namespace

class TestRemoval : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchPath_data()
    {
        QTest::addColumn<int>("directory");
        QTest::addColumn<int>("mask");
        QTest::addColumn<bool>("expand");
        QTest::addColumn<QStringList>("expected");
        const QString home = QStringLiteral("/home/someone");
        QTest::newRow("tilde kept") << int(NSLibraryDirectory) << int(NSUserDomainMask) << false
                                    << QStringList{QStringLiteral("~/Library")};
        QTest::newRow("caches, user then local")
            << int(NSCachesDirectory) << int(NSUserDomainMask | NSLocalDomainMask) << true
            << QStringList{home + QStringLiteral("/Library/Caches"),
                           QStringLiteral("/Library/Caches")};
        QTest::newRow("library everywhere")
            << int(NSLibraryDirectory) << int(NSAllDomainsMask) << true
            << QStringList{home + QStringLiteral("/Library"), QStringLiteral("/Library"),
                           QStringLiteral("/Network/Library"), QStringLiteral("/System/Library")};
        QTest::newRow("unknown kind") << 999 << int(NSAllDomainsMask) << true << QStringList();
        QTest::newRow("no domain") << int(NSLibraryDirectory) << 0 << true << QStringList();
    }
    void searchPath()
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

    // Items are "path" (a file), "path/" (a folder) or "path -> target" (a link); "~" is the
    // home folder inside. removed: items expected gone, with all they hold.
    void removalInSandbox_data()
    {
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QStringList>("removed");
        QTest::addColumn<QString>("log");

        const QString tail =
            QStringLiteral("launchctl remove com.varnix.Quorvelle.AntiVirus; launchctl remove "
                           "com.varnix.Quorvelle.plugin.AntiTheft.daemon; launchctl remove "
                           "net.brelltan.Quorvelle.plugin.AntiTheft.daemon");
        const QString daemons = QStringLiteral("/Library/LaunchDaemons/");
        const QString p7 =
            daemons + QStringLiteral("net.brelltan.Quorvelle.plugin.AntiTheft.daemon");
        const QString other = daemons + QStringLiteral("org.other.plist");
        QTest::newRow("nothing installed")
            << QStringList{other, QStringLiteral("/Library/Application Support/Quorvelle2/"),
                           QStringLiteral("/Library/Caches/com.varnix.Quorvelle -> /outside/gone")}
            << QStringList() << QString();
        QTest::newRow("only one daemon folder")
            << QStringList{p7 + QStringLiteral("/run.sh"), other} << QStringList{p7}
            << QStringLiteral("Command: rm -rf '%1'; %2").arg(p7, tail);

        // In the command's order; links inside are removed, never followed.
        const QStringList system =
            QStringList{QStringLiteral("/Library/Application Support/Quorvelle/"),
                        QStringLiteral("/Library/Caches/com.varnix.Quorvelle/")} +
            prefixed(daemons,
                     {QStringLiteral("com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist"),
                      QStringLiteral("com.varnix.Quorvelle.AntiVirus.plist"),
                      QStringLiteral("net.brelltan.Quorvelle.AntiVirus/"),
                      QStringLiteral("net.brelltan.Quorvelle.AntiVirus.plist"),
                      QStringLiteral("net.brelltan.Quorvelle.plugin.AntiTheft.daemon/"),
                      QStringLiteral("net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist")});
        QString command = QStringLiteral("Command: ");
        QStringList gone;
        for (QString item : system) {
            if (item.endsWith(u'/'))
                item.chop(1);
            command += QStringLiteral("rm -rf '%1'; ").arg(item);
            gone << item;
        }
        QTest::newRow("every system-wide item")
            << system + QStringList{QStringLiteral("/Library/Application Support/Quorvelle/"
                                                   "tree -> /outside/tree"),
                                    QStringLiteral("/Library/Application Support/quorvelle/"),
                                    QStringLiteral("/Library/Caches/com.varnix.Quorvelle.x"),
                                    QStringLiteral("/outside/tree/inner.txt")}
            << gone << command + tail;

        // Exact items and name prefixes, compared case-sensitively; links are not followed.
        const QString lib = QStringLiteral("~/Library/");
        const QStringList userGone = prefixed(
            lib, {QStringLiteral("Application Support/Quorvelle"),
                  QStringLiteral("Application Support/Quorvelle Helper"),
                  QStringLiteral("Preferences/com.varnix.Quorvelle.plist"),
                  QStringLiteral("Preferences/com.varnix.QuorvelleZ"),
                  QStringLiteral("Preferences/net.brelltan.Quorvelle.plist"),
                  QStringLiteral("Caches/com.varnix.Quorvelle.tree"),
                  QStringLiteral("Caches/net.brelltan.Quorvelle.Helper"),
                  QStringLiteral("Saved Application State/com.varnix.Quorvelle.savedState"),
                  QStringLiteral("Saved Application State/net.brelltan.Quorvelle.savedState"),
                  QStringLiteral("LaunchAgents/com.varnix.Quorvelle.Helper"),
                  QStringLiteral("LaunchAgents/com.varnix.Quorvelle.Helper.plist"),
                  QStringLiteral("LaunchAgents/net.brelltan.Quorvelle.Helper"),
                  QStringLiteral("LaunchAgents/net.brelltan.Quorvelle.Helper.plist")});
        QStringList userItems = prefixed(
            lib, {QStringLiteral("Application Support/Quorvelle/keep -> /outside/keep.txt"),
                  QStringLiteral("Application Support/Quorvelle Helper/"),
                  QStringLiteral("Application Support/Quorvelle Helper 2/"),
                  QStringLiteral("Preferences/com.varnix.Quorvelle.plist"),
                  QStringLiteral("Preferences/com.varnix.QuorvelleZ/x"),
                  QStringLiteral("Preferences/com.varnix.quorvelle.plist"),
                  QStringLiteral("Preferences/net.brelltan.Quorvelle.plist"),
                  QStringLiteral("Preferences/net.brelltan.QUORVELLE.plist"),
                  QStringLiteral("Caches/com.varnix.Quorvelle.tree -> /outside/tree"),
                  QStringLiteral("Caches/net.brelltan.Quorvelle.Helper/"),
                  QStringLiteral("Caches/Net.brelltan.Quorvelle/"),
                  QStringLiteral("Saved Application State/com.varnix.Quorvelle.savedState/"),
                  QStringLiteral("Saved Application State/net.brelltan.Quorvelle.savedState/"),
                  QStringLiteral("Saved Application State/net.brelltan.Quorvelle.savedState2/"),
                  QStringLiteral("LaunchAgents/com.varnix.Quorvelle.Helper"),
                  QStringLiteral("LaunchAgents/com.varnix.Quorvelle.Helper.plist"),
                  QStringLiteral("LaunchAgents/net.brelltan.Quorvelle.Helper/"),
                  QStringLiteral("LaunchAgents/net.brelltan.Quorvelle.Helper.plist -> "
                                 "/outside/agent.plist"),
                  QStringLiteral("LaunchAgents/net.brelltan.Quorvelle.Helper.plist.bak")});
        userItems << QStringLiteral("/Library/Caches/net.brelltan.Quorvelle/index")
                  << QStringLiteral("~/Documents/Quorvelle notes.txt")
                  << QStringLiteral("/outside/keep.txt") << QStringLiteral("/outside/agent.plist")
                  << QStringLiteral("/outside/tree/inner.txt");
        QTest::newRow("user parts")
            << userItems
            << userGone + QStringList{QStringLiteral("/Library/Caches/net.brelltan.Quorvelle")}
            << QString();
    }
    void removalInSandbox()
    {
        QFETCH(QStringList, items);
        QFETCH(QStringList, removed);
        QFETCH(QString, log);
        if (!Sandbox::available())
            QSKIP("bubblewrap cannot build a sandbox here");
        if (::geteuid() != 0)
            QSKIP("the privileged part runs without a consent dialog only as root");

        QTemporaryDir root;
        const QString host = root.path();
        // Where a path inside the sandbox lives on the host, as the snapshot names it.
        const auto relative = [](const QString &inside) {
            return inside.startsWith(u'~') ? QStringLiteral("home") + inside.mid(1) : inside.mid(1);
        };
        for (const char *dir : {"Library", "home", "outside"})
            QVERIFY(QDir(host).mkpath(QLatin1String(dir)));
        for (const QString &item : items) {
            const qsizetype arrow = item.indexOf(QStringLiteral(" -> "));
            const QString path = host + u'/' + relative(arrow < 0 ? item : item.left(arrow));
            QVERIFY(QDir().mkpath(path.endsWith(u'/') ? path : QFileInfo(path).path()));
            if (arrow >= 0) {
                QVERIFY(QFile::link(item.mid(arrow + 4), path));
            } else if (!path.endsWith(u'/')) {
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
                         {host + QStringLiteral("/home"), QStringLiteral("/home/tester")},
                         {host + QStringLiteral("/outside"), QStringLiteral("/outside")}};
        options.environment.insert(QStringLiteral("HOME"), QStringLiteral("/home/tester"));
        const Sandbox::Result result =
            Sandbox::runSelf({QStringLiteral("--remove-inside-sandbox")}, options);
        QVERIFY2(result.finished, result.standardError.constData());
        QCOMPARE(result.exitCode, 0); // the application was asked to quit
        QStringList logged;
        for (const QByteArray &line : result.standardOutput.split('\n')) {
            if (line.startsWith("LOG "))
                logged.append(QString::fromUtf8(line.mid(4)));
        }
        QCOMPARE(logged, log.isEmpty() ? QStringList() : QStringList{log});
        QCOMPARE(Sandbox::snapshot(host), expected);
    }
};

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--remove-inside-sandbox") == 0)
        return Sandbox::insideSandbox() ? runInsideSandbox(argc, argv) : 2;
    QCoreApplication app(argc, argv);
    TestRemoval test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_removal.moc"
