// The privileged helper's gate: every command the removal can compose passes it, and no
// other text does.
#include "VXSuiteItems.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

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

class TestPrivilegedRun : public QObject
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
        QTest::newRow("quote breaking out")
            << QStringLiteral("rm -rf '/Library/Application Support/Quorvelle'; touch %1 '; ") +
                   tail;
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
};

QTEST_GUILESS_MAIN(TestPrivilegedRun)
#include "tst_privilegedrun.moc"
