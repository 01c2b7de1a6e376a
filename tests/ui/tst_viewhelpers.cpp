#include "VXAttributedString.h"
#include "VXQuorvelleExtension.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using namespace QuorvelleExtension;

// key, text, table focused, editing, bar (0 none, 1 same window, 2 another window), the
// characters of the key, whether the table handles it
using KeyRow = std::tuple<int, QString, bool, bool, int, QString, bool>;
Q_DECLARE_METATYPE(KeyRow)

namespace {
struct CountingDelegate : VXNavigationBarDelegate
{
    QWidget *bar = nullptr;
    mutable int asked = 0;
    QWidget *navigationBar() const override
    {
        ++asked;
        return bar;
    }
};

QList<int> selectedRows(const QAbstractItemView &view)
{
    QList<int> rows;
    for (const QModelIndex &i : view.selectionModel()->selectedRows())
        rows.append(i.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

} // namespace

class TestViewHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectRowOnTable()
    {
        QStandardItemModel model(50, 2);
        QTableView view;
        view.setModel(&model);
        view.resize(200, 120);
        view.show();
        for (int row : {1, 2})
            view.selectionModel()->select(model.index(row, 0),
                                          QItemSelectionModel::Select | QItemSelectionModel::Rows);

        for (std::int64_t ignored :
             {std::int64_t(-1), std::int64_t(VXNotFound), std::int64_t(50)}) {
            selectRow(&view, ignored);
            QCOMPARE(selectedRows(view), (QList<int>{1, 2}));
            QCOMPARE(view.verticalScrollBar()->value(), 0);
        }
        selectRow(&view, 40);
        QCOMPARE(selectedRows(view), QList<int>{40});
        QVERIFY(view.viewport()->rect().intersects(view.visualRect(model.index(40, 0))));
    }

    void outlineItems()
    {
        QStandardItemModel model;
        auto *a = new QStandardItem(u"A"_s);
        a->appendRow(new QStandardItem(u"a1"_s));
        a->appendRow(new QStandardItem(u"a2"_s));
        model.appendRow(a);
        model.appendRow(new QStandardItem(u"B"_s));
        QTreeView view;
        view.setModel(&model);
        const QModelIndex a2 = model.index(1, 0, a->index()), b = model.index(1, 0);

        QVERIFY(!selectedItem(&view).isValid());
        QCOMPARE(rowForItem(&view, a2), -1);
        selectItem(&view, a2); // not shown: nothing happens
        QVERIFY(!selectedItem(&view).isValid());
        QCOMPARE(rowForItem(&view, b), 1);

        view.expand(a->index());
        QCOMPARE(rowForItem(&view, a2), 2);
        QCOMPARE(rowForItem(&view, b), 3);
        selectItem(&view, a2);
        QCOMPARE(selectedItem(&view), a2);
        selectRow(&view, 3);
        QCOMPARE(selectedItem(&view), b);
        QCOMPARE(view.selectionModel()->selectedRows().size(), 1);
    }

    void shouldHandleEvent_data()
    {
        QTest::addColumn<KeyRow>("row");
        const auto row = [](const char *name, int key, QString text, bool focused, bool editing,
                            int bar, QString characters, bool expected) {
            QTest::newRow(name) << KeyRow{key, text, focused, editing, bar, characters, expected};
        };
        const QString left(QChar(0xF702));
        row("left arrow", Qt::Key_Left, {}, true, false, 1, left, true);
        row("right arrow", Qt::Key_Right, {}, true, false, 1, QString(QChar(0xF703)), false);
        row("up arrow", Qt::Key_Up, {}, true, false, 1, QString(QChar(0xF700)), false);
        row("not focused", Qt::Key_Left, {}, false, false, 1, left, false);
        row("editing", Qt::Key_Left, {}, true, true, 1, left, false);
        row("bar elsewhere", Qt::Key_Left, {}, true, false, 2, left, false);
    }

    void shouldHandleEvent()
    {
        QFETCH(KeyRow, row);
        const auto [key, text, focused, editing, bar, characters, expected] = row;

        QWidget window, otherWindow;
        auto *layout = new QVBoxLayout(&window);
        auto *navigation = new QWidget;
        auto *other = new QWidget;
        auto *table = new QTableView;
        auto *elsewhere = new QWidget;
        for (QWidget *widget : {navigation, other, static_cast<QWidget *>(table)})
            layout->addWidget(widget);
        (new QVBoxLayout(&otherWindow))->addWidget(elsewhere);
        QStandardItemModel model(3, 1);
        table->setModel(&model);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        (focused ? static_cast<QWidget *>(table) : other)->setFocus();
        if (editing)
            table->edit(model.index(0, 0));

        CountingDelegate delegate;
        delegate.bar = bar == 1 ? navigation : bar == 2 ? elsewhere : nullptr;
        setApplicationDelegate(&delegate);
        const QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCOMPARE(charactersOfKeyEvent(&event), characters);
        QCOMPARE(QuorvelleExtension::shouldHandleEvent(table, &event), expected);
        QCOMPARE(delegate.asked, 1); // asked on every call, whatever the answer
        setApplicationDelegate(nullptr);
    }
};

QTEST_MAIN(TestViewHelpers)
#include "tst_viewhelpers.moc"
