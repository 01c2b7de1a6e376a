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
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// The command as the removal writes it, spelled out here independently of the composer.
QString expectedCommand(int mask)
{
    const QStringList paths = {
        u"/Library/Application Support/Quorvelle"_s,
        u"/Library/Caches/com.varnix.Quorvelle"_s,
        u"/Library/LaunchDaemons/com.varnix.Quorvelle.plugin.AntiTheft.daemon.plist"_s,
        u"/Library/LaunchDaemons/com.varnix.Quorvelle.AntiVirus.plist"_s,
        u"/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus"_s,
        u"/Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"_s,
        u"/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon"_s,
        QStringLiteral(
            "/Library/LaunchDaemons/net.brelltan.Quorvelle.plugin.AntiTheft.daemon.plist")};
    QString command;
    for (int i = 0; i < paths.size(); ++i)
        if (mask & (1 << i))
            command += u"rm -rf '%1'; "_s.arg(paths.at(i));
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
    while (QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs).size() > 2 &&
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
        const QString piece = u"rm -rf '/Library/Application Support/Quorvelle'; "_s;
        const QString tail = expectedCommand(0);
        QTest::newRow("empty") << QString();
        QTest::newRow("tail alone") << tail;
        QTest::newRow("no tail") << piece;
        QTest::newRow("another command") << u"touch %1"_s;
        QTest::newRow("appended command") << one + u"; touch %1"_s;
        QTest::newRow("prepended command") << u"touch %1; "_s + one;
        QTest::newRow("trailing line end") << one + u'\n';
        QTest::newRow("piece twice") << piece + one;
        QTest::newRow("pieces out of order")
            << u"rm -rf '/Library/Caches/com.varnix.Quorvelle'; "_s + piece + tail;
        QTest::newRow("other path") << u"rm -rf '/'; "_s + tail;
        QTest::newRow("quote breaking out") << piece + u"touch %1 '; "_s + tail;
    }
    // Refused text: a message on standard error, a non-zero exit, and nothing run. Only
    // refusals are tried here: an accepted command would remove the real machine's items.
    void helperRefuses()
    {
        QFETCH(QString, command);
        const QString marker = _dir.filePath(u"ran"_s);
        QFile::remove(marker);
        command.replace(u"%1"_s, marker);
        QVERIFY(!VXSuiteItems::isComposedCommand(command.toStdString()));
        const Tools::Outcome helper =
            Tools::run(QCoreApplication::applicationDirPath() + u"/quorvelle-privileged-helper"_s,
                       {command}, 10000);
        QVERIFY(helper.exitCode > 0); // ended by itself, with a failure
        QVERIFY(helper.errors.contains("refused"));
        QVERIFY(!QFile::exists(marker));
    }

    // Items are "path" (a file), "path/" (a folder) or "path -> target" (a link), one a
    // line; "~" is the home folder inside. What precedes a "|" must be gone afterwards, with
    // all it holds; everything else must stay as it was.
    void removalInSandbox_data()
    {
        QTest::addColumn<QString>("items");
        QTest::addColumn<QString>("log");

        const QString other = u"/Library/LaunchDaemons/org.other.plist\n"_s;
        QTest::newRow("nothing installed") << other + QStringLiteral(R"(
/Library/Application Support/Quorvelle2/
/Library/Caches/com.varnix.Quorvelle -> /outside/gone)")
                                           << QString();
        QTest::newRow("only one daemon folder")
            << other + QStringLiteral("/Library/LaunchDaemons/"
                                      "net.brelltan.Quorvelle.plugin.AntiTheft.daemon|/run.sh")
            << u"Command: "_s + expectedCommand(1 << 6);

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
/outside/tree/inner.txt)") << u"Command: "_s + expectedCommand(255);

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
            return inside.startsWith(u'~') ? u"home"_s + inside.mid(1) : inside.mid(1);
        };
        for (const char *dir : {"Library", "home", "outside"})
            QVERIFY(QDir(host).mkpath(QLatin1String(dir)));
        QStringList removed;
        for (QString item : items.split(u'\n', Qt::SkipEmptyParts)) {
            const qsizetype mark = item.indexOf(u'|');
            if (mark >= 0)
                removed << item.left(mark);
            item.remove(u'|');
            const qsizetype arrow = item.indexOf(u" -> "_s);
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
        options.binds = {{host + u"/Library"_s, u"/Library"_s},
                         {host + u"/home"_s, u"/home/tester"_s},
                         {host + u"/outside"_s, u"/outside"_s}};
        options.environment.insert(u"HOME"_s, u"/home/tester"_s);
        const Sandbox::Result result = Sandbox::runSelf({u"--remove-inside-sandbox"_s}, options);
        // 0: the application was asked to quit.
        QVERIFY2(result.exitCode == 0, result.errors.constData());
        QStringList logged;
        for (const QByteArray &line : result.output.split('\n')) {
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
