#include "FakeMachine.h"
#include "LogCapture.h"

using namespace VXSystemInformation;

#define ENTRY "[Desktop Entry]\nType=Application\nName=Editor\n"

namespace {
// Empty folders ("/"-terminated) or files ("path=content"); "~" is the home folder.
Files files(const QByteArrayList &paths)
{
    Files result;
    for (const QByteArray &path : paths) {
        const qsizetype split = path.contains('=') ? path.indexOf('=') : path.size();
        result.insert(QString::fromUtf8(path.left(split)), path.mid(split + 1));
    }
    return result;
}
} // namespace

class TestInventory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inventory_data()
    {
        QTest::addColumn<int>("query"); // 0 applications, 1 desktop entries, 2 panes
        QTest::addColumn<QByteArrayList>("tree");
        QTest::addColumn<QByteArrayList>("found");
        QTest::newRow("no desktop entries: the folders; Foo.APP neither added nor entered")
            << 0 << QByteArrayList{"/Applications/Foo.app/Contents/bin/",
                                   "/Applications/Foo.APP/Inner.app/",
                                   "/Applications/Utilities/Deep/Bar.app/",
                                   "/System/Applications/Sys.app/",
                                   "/Network/Applications/Remote.app/",
                                   "~/Applications/Mine.app/",
                                   "/Applications/plain-file.app=no folder"}
            << QByteArrayList{"/Applications/Foo.app", "/Applications/Utilities/Deep/Bar.app",
                              "/System/Applications/Sys.app", "~/Applications/Mine.app"};
        QTest::newRow("the desktop-entry answer stands alone")
            << 0
            << QByteArrayList{"/Applications/Foo.app/",
                              "~/.local/share/applications/e.desktop=" ENTRY}
            << QByteArrayList{"~/.local/share/applications/e.desktop"};
        QTest::newRow("desktop entries of applications, shown ones only")
            << 1
            << QByteArrayList{"/usr/share/applications/e.desktop=" ENTRY,
                              "/usr/share/applications/vendor/tool.desktop=# c\n[Desktop "
                              "Entry]\nName=Tool\nType = Application\n",
                              "/usr/share/applications/link.desktop=[Desktop Entry]\nType=Link\n",
                              "/usr/share/applications/gone.desktop=" ENTRY "Hidden=true\n"}
            << QByteArrayList{"/usr/share/applications/e.desktop",
                              "/usr/share/applications/vendor/tool.desktop"};
        QTest::newRow("panes in sub-folders, not inside a pane")
            << 2
            << QByteArrayList{"/Library/PreferencePanes/Top.prefPane/Contents/Inner.prefPane/",
                              "/Library/PreferencePanes/Vendor/Sub.prefpane/",
                              "/Library/PreferencePanes/Loose.prefPane=a file",
                              "~/Library/PreferencePanes/MINE.PREFPANE/"}
            << QByteArrayList{"/Library/PreferencePanes/Top.prefPane",
                              "/Library/PreferencePanes/Vendor/Sub.prefpane",
                              "/Library/PreferencePanes/Loose.prefPane",
                              "~/Library/PreferencePanes/MINE.PREFPANE"};
    }
    void inventory()
    {
        QFETCH(int, query);
        QFETCH(QByteArrayList, tree);
        QFETCH(QByteArrayList, found);
        FakeMachine machine(files(tree));
        QSet<QString> expected;
        for (const QByteArray &path : found)
            expected.insert(machine.resolve(QString::fromUtf8(path)));
        QCOMPARE(query == 0   ? allApplicationsPaths()
                 : query == 1 ? allApplicationsPathsWithLaunchServices()
                              : allPreferencePanesPaths(),
                 expected);
    }

    void defaultBrowser_data()
    {
        QTest::addColumn<QByteArray>("handlers");
        QTest::addColumn<QString>("browser");
        QTest::newRow("blank stays encoded")
            << QByteArray("My Browser.desktop;") << QStringLiteral("My%20Browser");
        QTest::newRow("first installed handler")
            << QByteArray("absent.desktop;web.desktop") << QStringLiteral("web");
        QTest::newRow("no handler installed") << QByteArray("absent.desktop") << QString();
    }
    void defaultBrowser()
    {
        QFETCH(QByteArray, handlers);
        QFETCH(QString, browser);
        FakeMachine machine(files({"/usr/share/applications/web.desktop=" ENTRY,
                                   "/usr/share/applications/My Browser.desktop=" ENTRY,
                                   "~/.config/mimeapps.list=[Added Associations]\n"
                                   "x-scheme-handler/http=web.desktop\n[Default Applications]\n"
                                   "x-scheme-handler/https=web.desktop\nx-scheme-handler/http=" +
                                       handlers}));
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
