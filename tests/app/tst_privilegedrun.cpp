// Consent and the privileged run through a real polkit: the test starts its own system
// bus and polkitd in a private pid and mount namespace (tmpfs over /run/dbus, the rules
// and the actions folders, so the host's daemons and files are untouched), with a rules
// file that grants or refuses our action, and runs the system-wide removal there as an
// unprivileged user.
#include "LogCapture.h"
#include "Sandbox.h"
#include "VXSuiteItems.h"
#include "VXUninstallSurveyController.h"
#include "platform/VXPrivilegedRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <unistd.h>

namespace {

const char kRemoveAsUser[] = "--remove-as-user";

// As the unprivileged user inside a chroot with its own /Library: the system-wide part of
// the removal, reporting its log lines.
int removeAsUser()
{
    LogCapture capture;
    VXUninstallSurveyController controller;
    controller.uninstallPriviledgedParts();
    for (const QString &line : capture.lines())
        std::printf("LOG %s\n", line.toUtf8().constData());
    return 0;
}

bool polkitAvailable()
{
    if (::geteuid() != 0)
        return false;
    for (const QString &tool :
         QStringLiteral("unshare setpriv chroot dbus-daemon dbus-send pkcheck pkexec").split(u' '))
        if (QStandardPaths::findExecutable(tool).isEmpty())
            return false;
    return QFileInfo::exists(QStringLiteral("/usr/lib/polkit-1/polkitd")) &&
           QFileInfo(QStringLiteral("/run/dbus")).isDir() &&
           QFileInfo::exists(QCoreApplication::applicationDirPath() +
                             QStringLiteral("/../app/generated/net.brelltan.Quorvelle.policy"));
}

} // namespace

class TestPrivilegedRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void composedCommands();
    void helperRefuses_data();
    void helperRefuses();
    void removalAsUser_data();
    void removalAsUser();

private:
    QTemporaryDir _dir;
};

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
} // namespace

// Every command the removal can compose is one the helper accepts, and nothing else is.
void TestPrivilegedRun::composedCommands()
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

void TestPrivilegedRun::helperRefuses_data()
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
    QTest::newRow("quote breaking out")
        << QStringLiteral("rm -rf '/Library/Application Support/Quorvelle'; touch %1 '; ") + tail;
}

// Refused text: a message on standard error, a non-zero exit, and nothing run. Only
// refusals are tried here: an accepted command would remove the real machine's items.
void TestPrivilegedRun::helperRefuses()
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

void TestPrivilegedRun::removalAsUser_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("asked");
    QTest::addColumn<bool>("logged");
    QTest::addColumn<QStringList>("after");

    const QStringList installed = {
        QStringLiteral("Library/Application Support/Quorvelle/data"),
        QStringLiteral("Library/LaunchDaemons/net.brelltan.Quorvelle.AntiVirus.plist"),
        QStringLiteral("Library/LaunchDaemons/org.other.plist")};
    // The tree's files and empty folders.
    const QString other = QStringLiteral("Library/LaunchDaemons/org.other.plist");
    QTest::newRow("granted: removed")
        << QStringLiteral("yes") << installed << 1 << true
        << QStringList{QStringLiteral("Library/Application Support"), other};
    QTest::newRow("refused: everything stays")
        << QStringLiteral("no") << installed << 1 << true << installed;
    QTest::newRow("nothing installed: nobody asked")
        << QStringLiteral("yes") << QStringList{other} << 0 << false << QStringList{other};
}

void TestPrivilegedRun::removalAsUser()
{
    QFETCH(QString, result);
    QFETCH(QStringList, items);
    QFETCH(int, asked);
    QFETCH(bool, logged);
    QFETCH(QStringList, after);
    if (!polkitAvailable())
        QSKIP("needs root and the polkit tools");

    // The shared throwaway machine, as an ordinary user whose consent a private polkitd
    // answers; its /Library holds only this row's items. A pkcheck in front of the real
    // one counts the consent requests.
    const QString bin = QCoreApplication::applicationDirPath();
    QTemporaryDir stage;
    QCOMPARE(Sandbox::script({QStringLiteral("prepare"), stage.path(), bin}).exitCode, 0);
    QDir library(stage.filePath(QStringLiteral("root/Library")));
    QVERIFY(library.removeRecursively() && library.mkpath(QStringLiteral(".")));
    for (const QString &item : items) {
        const QString path = stage.filePath(QStringLiteral("root/") + item);
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QFile pkcheck(stage.filePath(QStringLiteral("stubbin/pkcheck")));
    QVERIFY(pkcheck.open(QIODevice::WriteOnly));
    pkcheck.write("#!/bin/sh\necho asked >> /out/consent-asked\nexec /usr/bin/pkcheck \"$@\"\n");
    pkcheck.close();
    QVERIFY(pkcheck.setPermissions(pkcheck.permissions() | QFileDevice::ExeOwner |
                                   QFileDevice::ExeOther));

    const Sandbox::Result run =
        Sandbox::script({QStringLiteral("run"), stage.path(), bin, QStringLiteral("--as-user"),
                         result, QStringLiteral("--offline"), QStringLiteral("--program"),
                         QFileInfo(QCoreApplication::applicationFilePath()).fileName(),
                         QStringLiteral("--"), QLatin1String(kRemoveAsUser)});
    QVERIFY2(run.finished, run.standardError.constData());
    QCOMPARE(run.exitCode, 0);
    QStringList log;
    for (const QByteArray &line : run.standardOutput.split('\n'))
        if (line.startsWith("LOG "))
            log << QString::fromUtf8(line.mid(4));
    QFile consents(stage.filePath(QStringLiteral("out/consent-asked")));
    const int consentRequests =
        consents.open(QIODevice::ReadOnly) ? int(consents.readAll().count('\n')) : 0;
    QCOMPARE(consentRequests, asked);
    QCOMPARE(log.size(), logged ? 1 : 0);
    if (logged)
        QVERIFY(log.first().startsWith(
            QStringLiteral("Command: rm -rf '/Library/Application Support/Quorvelle'; ")));

    // The tree's files and empty folders.
    QStringList tree;
    QDirIterator it(stage.filePath(QStringLiteral("root")), QDir::AllEntries | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        if (info.isFile() || QDir(info.filePath()).isEmpty())
            tree << QDir(stage.filePath(QStringLiteral("root"))).relativeFilePath(info.filePath());
    }
    tree.sort();
    QCOMPARE(tree, after);
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], kRemoveAsUser) == 0)
        return removeAsUser();
    TestPrivilegedRun test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_privilegedrun.moc"
