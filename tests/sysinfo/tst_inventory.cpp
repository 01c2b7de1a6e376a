#include "FakeMachine.h"
#include "LogCapture.h"

using namespace VXSystemInformation;

#define ENTRY "[Desktop Entry]\nType=Application\nName=Editor\n"

namespace {
// Empty folders ("/"-terminated) or files ("path=content"); "~" is the home folder. A leading
// "+" marks a path the query must find.
Files files(const QByteArrayList &paths, QStringList *found = nullptr)
{
    Files result;
    for (QByteArray path : paths) {
        const bool wanted = path.startsWith('+');
        path.remove(0, wanted ? 1 : 0);
        const qsizetype split = path.contains('=') ? path.indexOf('=') : path.size();
        const QString name = QString::fromUtf8(path.left(split));
        result.insert(name, path.mid(split + 1));
        if (wanted)
            found->append(name.endsWith(u'/') ? name.chopped(1) : name);
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
        QTest::newRow("no desktop entries: the folders; Foo.APP neither added nor entered")
            << 0
            << QByteArrayList{"+/Applications/Foo.app/",
                              "/Applications/Foo.APP/Inner.app/",
                              "+/Applications/Utilities/Bar.app/",
                              "+/System/Applications/S.app/",
                              "/Network/Applications/Remote.app/",
                              "+~/Applications/Mine.app/",
                              "/Applications/plain-file.app=no folder"};
        QTest::newRow("the desktop-entry answer stands alone")
            << 0
            << QByteArrayList{"/Applications/Foo.app/",
                              "+~/.local/share/applications/e.desktop=" ENTRY};
        QTest::newRow("desktop entries of applications, shown ones only")
            << 1
            << QByteArrayList{"+/usr/share/applications/e.desktop=" ENTRY,
                              "+/usr/share/applications/sub/t.desktop=[Desktop Entry]\n"
                              "Type = Application\n",
                              "/usr/share/applications/link.desktop=[Desktop Entry]\nType=Link\n",
                              "/usr/share/applications/gone.desktop=" ENTRY "Hidden=true\n"};
        QTest::newRow("panes in sub-folders, not inside a pane")
            << 2
            << QByteArrayList{"+/Library/PreferencePanes/A.prefPane/",
                              "/Library/PreferencePanes/A.prefPane/B.prefPane/",
                              "+/Library/PreferencePanes/Sub/C.prefpane/",
                              "+/Library/PreferencePanes/Loose.prefPane=a file",
                              "+~/Library/PreferencePanes/MINE.PREFPANE/"};
    }
    void inventory()
    {
        QFETCH(int, query);
        QFETCH(QByteArrayList, tree);
        QStringList found;
        FakeMachine machine(files(tree, &found));
        QSet<QString> expected;
        for (const QString &path : found)
            expected.insert(machine.resolve(path));
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
