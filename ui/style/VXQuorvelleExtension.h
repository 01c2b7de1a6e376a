#pragma once

#include <QModelIndex>

#include <cstdint>

class QKeyEvent;
class QTableView;
class QTreeView;
class QWidget;

// What a view helper needs to know of the application's delegate: its navigation bar.
class VXNavigationBarDelegate
{
public:
    virtual ~VXNavigationBarDelegate() = default;
    virtual QWidget *navigationBar() const = 0;
};

// The NSOutlineView(QuorvelleExtension) and NSTableView(QuorvelleExtension) categories.
// An outline's "row" is the visible row (expanded items counted, collapsed ones not) and
// its "item" is the QModelIndex of column 0; an invalid index is "nil".
namespace QuorvelleExtension {

// The item at the selected (current) row, or an invalid index.
QModelIndex selectedItem(const QTreeView *outlineView);
// Selects the item's visible row and scrolls to it; an item that is not shown is ignored.
void selectItem(QTreeView *outlineView, const QModelIndex &item);
// The visible row of an item, -1 when it is not shown.
std::int64_t rowForItem(const QTreeView *outlineView, const QModelIndex &item);

// Selects exactly that row (replacing the selection) and scrolls it into view; a negative
// row, VXNotFound or a row past the end is ignored.
void selectRow(QTableView *tableView, std::int64_t row);
void selectRow(QTreeView *outlineView, std::int64_t row);

// Whether the table should pass a left-arrow key on to the application's navigation bar.
bool shouldHandleEvent(const QTableView *tableView, const QKeyEvent *event);
// The characters of a key event as the platform reports them: the event's text, or for
// keys without text the platform's function-key character (left arrow: U+F702).
QString charactersOfKeyEvent(const QKeyEvent *event);

// The application's delegate, asked for its navigation bar on every shouldHandleEvent call.
// Not owned; nullptr (the default) has no navigation bar.
void setApplicationDelegate(VXNavigationBarDelegate *delegate);
VXNavigationBarDelegate *applicationDelegate();

} // namespace QuorvelleExtension
