#include "FakeMachine.h"

#include <QCoreApplication>

#include <cstdio>

using namespace VXSystemInformation;

#define ENTRY "[Desktop Entry]\nType=Application\nName=Editor\nExec=true %u\n"
#define APPS "/usr/share/applications/"

namespace {
// Empty folders ("/"-terminated) or files ("path=content"); "~" is the home folder, "%" the
// scratch folder. A leading "+" marks a path the query must find.
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

// In the fresh process: every answer that comes from the desktop's database, one a line,
// after the name of its query.
int printAnswers()
{
    Seam::setRoot(qEnvironmentVariable("QV_FAKE_ROOT"));
    QStringList lines;
    const QSet<QString> queries[] = {allApplicationsPaths(),
                                     allApplicationsPathsWithLaunchServices(),
                                     allPreferencePanesPaths()};
    for (int query = 0; query < 3; ++query) {
        for (const QString &path : queries[query])
            lines << QString::number(query) + u'\t' + path;
    }
    std::fputs(lines.join(u'\n').toUtf8().constData(), stdout);
    return 0;
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
        QTest::addColumn<QStringList>("environment");
        QTest::newRow("no desktop entries: the folders; Foo.APP neither added nor entered")
            << 0
            << QByteArrayList{"+/Applications/Foo.app/",
                              "/Applications/Foo.APP/Inner.app/",
                              "+/Applications/Utilities/Bar.app/",
                              "+/System/Applications/S.app/",
                              "/Network/Applications/Remote.app/",
                              "+~/Applications/Mine.app/",
                              "/Applications/plain-file.app=no folder"}
            << QStringList();
        QTest::newRow("application entries, sub-folders too, hidden ones not")
            << 1
            << QByteArrayList{"+" APPS "e.desktop=" ENTRY,
                              "+" APPS "kde4/t.desktop=[Desktop Entry]\nType = Application\n"
                              "Exec=true\nNoDisplay=true\n",
                              APPS "gone.desktop=" ENTRY "Hidden=true\n",
                              "+/usr/local/share/applications/local.desktop=" ENTRY}
            << QStringList();
        QTest::newRow("relative data folders are ignored")
            << 1
            << QByteArrayList{"%/rel/applications/relative.desktop=" ENTRY,
                              "%/relhome/applications/relative-home.desktop=" ENTRY,
                              "+~/.local/share/applications/home.desktop=" ENTRY,
                              "+" APPS "e.desktop=" ENTRY}
            << QStringList{u"XDG_DATA_DIRS=rel:%/root/usr/share"_s, u"XDG_DATA_HOME=relhome"_s};
        QTest::newRow("panes in sub-folders, not inside a pane")
            << 2 << QByteArrayList{"+/Library/PreferencePanes/A.prefPane/",
                                   "/Library/PreferencePanes/A.prefPane/B.prefPane/",
                                   "+/Library/PreferencePanes/Sub/C.prefpane/",
                                   "+/Library/PreferencePanes/Loose.prefPane=a file",
                                   "+/Network/Library/PreferencePanes/N.prefPane/",
                                   "+~/Library/PreferencePanes/MINE.PREFPANE/"}
            << QStringList();
    }
    void inventory()
    {
        QFETCH(int, query);
        QFETCH(QByteArrayList, tree);
        QFETCH(QStringList, environment);
        QStringList found;
        FakeMachine machine(files(tree, &found));
        QStringList expected;
        for (const QString &path : found)
            expected << QString::number(query) + u'\t' + machine.resolve(path);
        QStringList answers = machine.answersOfFreshProcess(environment)
                                  .filter(QRegularExpression(u"^%1\t"_s.arg(query)));
        answers.sort();
        expected.sort();
        QCOMPARE(answers, expected);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "--answers") == 0)
        return printAnswers();
    TestInventory test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_inventory.moc"
