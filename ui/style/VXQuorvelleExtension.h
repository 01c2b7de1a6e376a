#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QModelIndex>

#include <cstdint>

class QKeyEvent;
class QTableView;
class QTreeView;
class QWidget;

// What a view helper needs to know of the application's delegate: its navigation bar.
class QV_WIDGETS_EXPORT VXNavigationBarDelegate
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
QV_WIDGETS_EXPORT QModelIndex selectedItem(const QTreeView *outlineView);
// Selects the item's visible row and scrolls to it; an item that is not shown is ignored.
QV_WIDGETS_EXPORT void selectItem(QTreeView *outlineView, const QModelIndex &item);
// The visible row of an item, -1 when it is not shown.
QV_WIDGETS_EXPORT std::int64_t rowForItem(const QTreeView *outlineView, const QModelIndex &item);

// Selects exactly that row (replacing the selection) and scrolls it into view; a negative
// row, VXNotFound or a row past the end is ignored.
QV_WIDGETS_EXPORT void selectRow(QTableView *tableView, std::int64_t row);
QV_WIDGETS_EXPORT void selectRow(QTreeView *outlineView, std::int64_t row);

// Whether the table should pass a left-arrow key on to the application's navigation bar.
QV_WIDGETS_EXPORT bool shouldHandleEvent(const QTableView *tableView, const QKeyEvent *event);
// The characters of a key event as the platform reports them: the event's text, or for
// keys without text the platform's function-key character (left arrow: U+F702).
QV_WIDGETS_EXPORT QString charactersOfKeyEvent(const QKeyEvent *event);

// The application's delegate, asked for its navigation bar on every shouldHandleEvent call.
// Not owned; nullptr (the default) has no navigation bar.
QV_WIDGETS_EXPORT void setApplicationDelegate(VXNavigationBarDelegate *delegate);
QV_WIDGETS_EXPORT VXNavigationBarDelegate *applicationDelegate();

} // namespace QuorvelleExtension
