// The suite's removal: the privileged command as the removal composes it and as the
// helper's gate lets it through, and the removal itself against the real fixed paths inside
// a bubblewrap sandbox: /Library, the home folder and an "outside" folder are test-owned
// temporary folders bound in. The test re-runs itself inside, calls proceedUninstall()
// there and compares the trees.
#include "LogCapture.h"
#include "Sandbox.h"
#include "VXSuiteItems.h"
#include "VXUninstallSurveyController.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

namespace {

// The command as the removal writes it, spelled out here independently of the composer.
QString expectedCommand(int mask)
{
    const QStringList paths = {
        QStringLiteral("/Library/Application Support/Quorvelle"),
        QStringLiteral("/Library/Caches/com.varnix.Quorvelle"),
        QStringLiteral("/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist"),
        QStringLiteral("/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist"),
        QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus"),
        QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"),
        QStringLiteral("/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon"),
        QStringLiteral(
            "/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist")};
    QString command;
    for (int i = 0; i < paths.size(); ++i)
        if (mask & (1 << i))
            command += QStringLiteral("rm -rf '%1'; ").arg(paths.at(i));
    return command +
           QStringLiteral("launchctl remove com.varnix.Quorvelle.AntiVirus; launchctl remove "
                          "com.varnix.Quorvelle.plugin.AntiTheft.daemon; launchctl remove "
                          "net.brelltan.Quorvelle.plugin.AntiTheft.daemon");
}

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

} // namespace

class TestRemoval : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;

private Q_SLOTS:
    // Every command the removal can compose is one the helper accepts, and nothing else is.
    void composedCommands()
    {
        QVERIFY(VXSuiteItems::composeCommand([](std::string_view) { return false; }).empty());
        for (int mask = 1; mask < 256; ++mask) {
            int index = 0;
            const std::string composed = VXSuiteItems::composeCommand(
                [&](std::string_view) { return (mask & (1 << index++)) != 0; });
            QCOMPARE(QString::fromStdString(composed), expectedCommand(mask));
            QVERIFY(VXSuiteItems::isComposedCommand(composed));
        }
    }

    void helperRefuses_data()
    {
        QTest::addColumn<QString>("command");
        const QString one = expectedCommand(1);
        const QString piece = QStringLiteral("rm -rf '/Library/Application Support/Quorvelle'; ");
        const QString tail = expectedCommand(0);
        QTest::newRow("empty") << QString();
        QTest::newRow("tail alone") << tail;
        QTest::newRow("no tail") << piece;
        QTest::newRow("another command") << QStringLiteral("touch %1");
        QTest::newRow("appended command") << one + QStringLiteral("; touch %1");
        QTest::newRow("prepended command") << QStringLiteral("touch %1; ") + one;
        QTest::newRow("trailing line end") << one + u'\n';
        QTest::newRow("piece twice") << piece + one;
        QTest::newRow("pieces out of order")
            << QStringLiteral("rm -rf '/Library/Caches/com.varnix.Quorvelle'; ") + piece + tail;
        QTest::newRow("other path") << QStringLiteral("rm -rf '/'; ") + tail;
        QTest::newRow("quote breaking out") << piece + QStringLiteral("touch %1 '; ") + tail;
    }
    // Refused text: a message on standard error, a non-zero exit, and nothing run. Only
    // refusals are tried here: an accepted command would remove the real machine's items.
    void helperRefuses()
    {
        QFETCH(QString, command);
        const QString marker = _dir.filePath(QStringLiteral("ran"));
        QFile::remove(marker);
        command.replace(QStringLiteral("%1"), marker);
        QVERIFY(!VXSuiteItems::isComposedCommand(command.toStdString()));
        QProcess helper;
        helper.start(QCoreApplication::applicationDirPath() +
                         QStringLiteral("/quorvelle-privileged-helper"),
                     {command});
        QVERIFY(helper.waitForFinished(10000));
        QCOMPARE(helper.exitStatus(), QProcess::NormalExit);
        QVERIFY(helper.exitCode() != 0);
        QVERIFY(helper.readAllStandardError().contains("refused"));
        QVERIFY(!QFile::exists(marker));
    }

    // Items are "path" (a file), "path/" (a folder) or "path -> target" (a link), one a
    // line; "~" is the home folder inside. What precedes a "|" must be gone afterwards, with
    // all it holds; everything else must stay as it was.
    void removalInSandbox_data()
    {
        QTest::addColumn<QString>("items");
        QTest::addColumn<QString>("log");

        const QString other = QStringLiteral("/Library/LaunchDaemons/org.other.plist\n");
        QTest::newRow("nothing installed") << other + QStringLiteral(R"(
/Library/Application Support/Quorvelle2/
/Library/Caches/com.varnix.Quorvelle -> /outside/gone)")
                                           << QString();
        QTest::newRow("only one daemon folder")
            << other + QStringLiteral("/Library/LaunchDaemons/"
                                      "net.brelltan.Quorvelle.plugin.AntiTheft.daemon|/run.sh")
            << QStringLiteral("Command: ") + expectedCommand(1 << 6);

        // In the command's order; links inside are removed, never followed.
        const QString system = QStringLiteral(R"(/Library/Application Support/Quorvelle|/
/Library/Caches/com.varnix.Quorvelle|/
/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist|
/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist|
/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus|/
/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist|
/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon|/
/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist|)");
        QTest::newRow("every system-wide item") << system + QStringLiteral(R"(
/Library/Application Support/Quorvelle/tree -> /outside/tree
/Library/Application Support/quorvelle/
/Library/Caches/com.varnix.Quorvelle.x
/outside/tree/inner.txt)") << QStringLiteral("Command: ") + expectedCommand(255);

        // Exact items and name prefixes, compared case-sensitively; links are not followed;
        // the walk descends into nested folders and skips only "." and "..".
        QTest::newRow("user parts") << QStringLiteral(R"(
~/Library/Application Support/Quorvelle|/keep -> /outside/keep.txt
~/Library/Application Support/Quorvelle Helper|/a/b/.h
~/Library/Application Support/Quorvelle Helper/a/..x
~/Library/Application Support/Quorvelle Helper 2/
~/Library/Preferences/com.varnix.Quorvelle.plist|
~/Library/Preferences/com.varnix.QuorvelleZ|/x
~/Library/Preferences/com.varnix.quorvelle.plist
~/Library/Preferences/net.brelltan.Quorvelle.plist|
~/Library/Caches/com.varnix.Quorvelle.tree| -> /outside/tree
~/Library/Caches/net.brelltan.Quorvelle.Helper|/
~/Library/Caches/Net.brelltan.Quorvelle/
~/Library/Saved Application State/com.varnix.Quorvelle.savedState|/
~/Library/Saved Application State/net.brelltan.Quorvelle.savedState|/
~/Library/LaunchAgents/com.varnix.Quorvelle.Helper|
~/Library/LaunchAgents/com.varnix.Quorvelle.Helper.plist|
~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper|/
~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper.plist| -> /outside/agent.plist
~/Library/LaunchAgents/net.brelltan.Quorvelle.Helper.plist.bak
/Library/Caches/net.brelltan.Quorvelle|/index
~/Documents/Quorvelle notes.txt
/outside/keep.txt
/outside/agent.plist
/outside/tree/inner.txt)") << QString();
    }
    void removalInSandbox()
    {
        QFETCH(QString, items);
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
        QStringList removed;
        for (QString item : items.split(u'\n', Qt::SkipEmptyParts)) {
            const qsizetype mark = item.indexOf(u'|');
            if (mark >= 0)
                removed << item.left(mark);
            item.remove(u'|');
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
