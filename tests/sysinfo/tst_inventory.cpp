#include "FakeMachine.h"
#include "LogCapture.h"

using namespace VXSystemInformation;

namespace {
QSet<QString> under(const QString &prefix, const QStringList &paths)
{
    QSet<QString> set;
    for (const QString &path : paths)
        set.insert(prefix + path);
    return set;
}

const QByteArray kApplicationEntry =
    "[Desktop Entry]\nType=Application\nName=Editor\nExec=editor\n";
} // namespace

class TestInventory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void directoryScan()
    {
        FakeMachine machine;
        for (const char *dir :
             {"/Applications/Foo.app/Contents/bin/", "/Applications/Foo.APP/Inner.app/",
              "/Applications/Utilities/Bar.app/", "/Applications/Games/Deep/Game.app/",
              "/Applications/Games/Case.App/Inner.app/", "/System/Applications/Sys.app/",
              "/Network/Applications/Remote.app/", "~/Applications/Mine.app/"})
            machine.write(QString::fromLatin1(dir), {});
        machine.write(QStringLiteral("/Applications/plain-file.app"), "not a directory");
        machine.write(QStringLiteral("/Applications/Linked"), "->Utilities");

        const QSet<QString> expected =
            under(machine.rootPath(), {QStringLiteral("/Applications/Foo.app"),
                                       QStringLiteral("/Applications/Utilities/Bar.app"),
                                       QStringLiteral("/Applications/Games/Deep/Game.app"),
                                       QStringLiteral("/System/Applications/Sys.app")}) +
            under(machine.homePath(), {QStringLiteral("/Applications/Mine.app")});
        // No desktop entries at all: the folders are all there is.
        QVERIFY(allApplicationsPathsWithLaunchServices().isEmpty());
        QCOMPARE(allApplicationsPaths(), expected);

        // Once the desktop-entry database answers, its answer stands alone.
        machine.write(QStringLiteral("~/.local/share/applications/editor.desktop"),
                      kApplicationEntry);
        QCOMPARE(allApplicationsPaths(),
                 under(machine.homePath(),
                       {QStringLiteral("/.local/share/applications/editor.desktop")}));
    }

    void desktopEntries()
    {
        FakeMachine machine;
        const QString system = QStringLiteral("/usr/share/applications/");
        machine.write(system + QStringLiteral("editor.desktop"), kApplicationEntry);
        machine.write(system + QStringLiteral("vendor/tool.desktop"),
                      "# comment\n[Desktop Entry]\nName=Tool\nType = Application\n");
        machine.write(system + QStringLiteral("link.desktop"),
                      "[Desktop Entry]\nType=Link\nURL=x\n");
        machine.write(system + QStringLiteral("gone.desktop"), kApplicationEntry + "Hidden=true\n");
        machine.write(system + QStringLiteral("action-only.desktop"),
                      "[Desktop Action new]\nType=Application\n[Desktop Entry]\nType=Service\n");
        machine.write(system + QStringLiteral("mimeinfo.cache"), "[MIME Cache]\n");
        machine.write(QStringLiteral("/usr/local/share/applications/local.desktop"),
                      kApplicationEntry);
        qputenv("XDG_DATA_HOME", (machine.scratchPath() + QStringLiteral("/data")).toUtf8());
        machine.write(QStringLiteral("~/../data/applications/mine.desktop"), kApplicationEntry);
        machine.write(QStringLiteral("~/.local/share/applications/ignored.desktop"),
                      kApplicationEntry);

        QSet<QString> expected = under(
            machine.rootPath(), {system + QStringLiteral("editor.desktop"),
                                 system + QStringLiteral("vendor/tool.desktop"),
                                 QStringLiteral("/usr/local/share/applications/local.desktop")});
        expected.insert(
            QFileInfo(machine.scratchPath() + QStringLiteral("/data/applications/mine.desktop"))
                .absoluteFilePath());
        QCOMPARE(allApplicationsPathsWithLaunchServices(), expected);
        qunsetenv("XDG_DATA_HOME");
    }

    void preferencePanes()
    {
        FakeMachine machine;
        for (const char *dir :
             {"/Library/PreferencePanes/Top.prefPane/Contents/Inner.prefPane/",
              "/Library/PreferencePanes/Vendor/Sub.prefpane/", "/Library/PreferencePanes/Other/",
              "/System/Library/PreferencePanes/Sys.prefPane/",
              "/Network/Library/PreferencePanes/Net.prefPane/",
              "~/Library/PreferencePanes/MINE.PREFPANE/"})
            machine.write(QString::fromLatin1(dir), {});
        machine.write(QStringLiteral("/Library/PreferencePanes/Other/Loose.prefPane"), "a file");
        const QSet<QString> expected =
            under(machine.rootPath(),
                  {QStringLiteral("/Library/PreferencePanes/Top.prefPane"),
                   QStringLiteral("/Library/PreferencePanes/Vendor/Sub.prefpane"),
                   QStringLiteral("/Library/PreferencePanes/Other/Loose.prefPane"),
                   QStringLiteral("/System/Library/PreferencePanes/Sys.prefPane"),
                   QStringLiteral("/Network/Library/PreferencePanes/Net.prefPane")}) +
            under(machine.homePath(), {QStringLiteral("/Library/PreferencePanes/MINE.PREFPANE")});
        QCOMPARE(allPreferencePanesPaths(), expected);
    }

    void defaultBrowser_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("browser");

        const QString user = QStringLiteral("~/.config/mimeapps.list");
        QTest::newRow("blank stays encoded")
            << user
            << QByteArray("[Default Applications]\nx-scheme-handler/http=My Browser.desktop;\n")
            << QStringLiteral("My%20Browser");
        QTest::newRow("first installed handler")
            << user
            << QByteArray("[Added Associations]\nx-scheme-handler/http=web.desktop\n"
                          "[Default Applications]\nx-scheme-handler/https=web.desktop\n"
                          "x-scheme-handler/http=absent.desktop;web.desktop\n")
            << QStringLiteral("web");
        QTest::newRow("system-wide list")
            << QStringLiteral("/etc/xdg/mimeapps.list")
            << QByteArray("[Default Applications]\nx-scheme-handler/http=web.desktop\n")
            << QStringLiteral("web");
        QTest::newRow("no handler")
            << user
            << QByteArray(
                   "[Default "
                   "Applications]\ntext/html=web.desktop\nx-scheme-handler/http=absent.desktop\n")
            << QString();
    }
    void defaultBrowser()
    {
        QFETCH(QString, list);
        QFETCH(QByteArray, content);
        QFETCH(QString, browser);
        FakeMachine machine;
        machine.write(QStringLiteral("/usr/share/applications/web.desktop"), kApplicationEntry);
        machine.write(QStringLiteral("/usr/share/applications/My Browser.desktop"),
                      kApplicationEntry);
        machine.write(list, content);
        LogCapture log;
        const QString answer = defaultWebBrowser();
        QCOMPARE(answer, browser);
        QCOMPARE(answer.isNull(), browser.isNull());
        QCOMPARE(log.lines(), browser.isNull()
                                  ? QStringList{QStringLiteral(
                                        "Error while trying to get default Web browser: 2")}
                                  : QStringList{});
    }
};

QTEST_GUILESS_MAIN(TestInventory)
#include "tst_inventory.moc"
