#include "VXQuorvelleExtension.h"

#include "VXAttributedString.h"

#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QTableView>
#include <QTreeView>

namespace QuorvelleExtension {

namespace {

VXNavigationBarDelegate *delegate = nullptr;

// The first visible item of the outline, then each one below it: the outline's rows.
QModelIndex itemAtRow(const QTreeView *outlineView, std::int64_t row)
{
    const QAbstractItemModel *model = outlineView->model();
    if (!model || row < 0)
        return {};
    QModelIndex index = model->index(0, 0, outlineView->rootIndex());
    for (std::int64_t i = 0; index.isValid() && i < row; ++i)
        index = outlineView->indexBelow(index);
    return index;
}

} // namespace

std::int64_t rowForItem(const QTreeView *outlineView, const QModelIndex &item)
{
    if (!outlineView || !outlineView->model() || !item.isValid() ||
        item.model() != outlineView->model())
        return -1;
    const QModelIndex target = item.siblingAtColumn(0);
    QModelIndex index = outlineView->model()->index(0, 0, outlineView->rootIndex());
    for (std::int64_t row = 0; index.isValid(); ++row) {
        if (index == target)
            return row;
        index = outlineView->indexBelow(index);
    }
    return -1;
}

QModelIndex selectedItem(const QTreeView *outlineView)
{
    if (!outlineView || !outlineView->selectionModel())
        return {};
    const QModelIndexList rows = outlineView->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return {};
    // The platform's selected row is the last one selected.
    const QModelIndex current = outlineView->selectionModel()->currentIndex().siblingAtColumn(0);
    return rows.contains(current) ? current : rows.last();
}

void selectItem(QTreeView *outlineView, const QModelIndex &item)
{
    selectRow(outlineView, rowForItem(outlineView, item));
}

namespace {
bool ignoredRow(std::int64_t row)
{
    return row < 0 || std::uint64_t(row) == VXNotFound;
}

void selectAndScroll(QAbstractItemView *view, const QModelIndex &index)
{
    view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                       QItemSelectionModel::Rows);
    view->scrollTo(index);
}
} // namespace

void selectRow(QTableView *tableView, std::int64_t row)
{
    if (!tableView || ignoredRow(row) || !tableView->model() || !tableView->selectionModel() ||
        row >= tableView->model()->rowCount(tableView->rootIndex()))
        return;
    selectAndScroll(tableView, tableView->model()->index(int(row), 0, tableView->rootIndex()));
}

void selectRow(QTreeView *outlineView, std::int64_t row)
{
    if (!outlineView || ignoredRow(row) || !outlineView->selectionModel())
        return;
    const QModelIndex index = itemAtRow(outlineView, row);
    if (index.isValid())
        selectAndScroll(outlineView, index);
}

QString charactersOfKeyEvent(const QKeyEvent *event)
{
    if (!event)
        return {};
    if (!event->text().isEmpty())
        return event->text();
    // The platform reports the arrow keys as characters of its function-key range.
    switch (event->key()) {
    case Qt::Key_Up:
        return QString(QChar(0xF700));
    case Qt::Key_Down:
        return QString(QChar(0xF701));
    case Qt::Key_Left:
        return QString(QChar(0xF702));
    case Qt::Key_Right:
        return QString(QChar(0xF703));
    default:
        return {};
    }
}

namespace {
// QAbstractItemView tells whether an editor is open only to its subclasses; a pointer to
// that member, taken inside a subclass, may be called on any view.
struct EditingStateReader : QTableView
{
    static bool isEditing(const QAbstractItemView *view)
    {
        QAbstractItemView::State (QAbstractItemView::*state)() const = &EditingStateReader::state;
        return (view->*state)() == EditingStateReader::EditingState;
    }
};
} // namespace

bool shouldHandleEvent(const QTableView *tableView, const QKeyEvent *event)
{
    QWidget *navigationBar = delegate ? delegate->navigationBar() : nullptr;
    if (!tableView || !event)
        return false;
    const QString characters = charactersOfKeyEvent(event);
    if (characters.size() != 1 || characters.at(0) != QChar(0xF702))
        return false;
    if (tableView->window()->focusWidget() != tableView)
        return false;
    if (EditingStateReader::isEditing(tableView))
        return false;
    return navigationBar && navigationBar->window() == tableView->window();
}

void setApplicationDelegate(VXNavigationBarDelegate *newDelegate)
{
    delegate = newDelegate;
}

VXNavigationBarDelegate *applicationDelegate()
{
    return delegate;
}

} // namespace QuorvelleExtension
