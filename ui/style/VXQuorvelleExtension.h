#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QModelIndex>

#include <cstdint>

class QKeyEvent;
class QTableView;
class QTreeView;
class QWidget;

/**
 * What the item-view helpers need to know of the application: its navigation bar. An
 * application that has one implements this and registers it with
 * QuorvelleExtension::setApplicationDelegate.
 */
class QV_WIDGETS_EXPORT VXNavigationBarDelegate
{
public:
    virtual ~VXNavigationBarDelegate() = default;
    /** The widget of the navigation bar, or nullptr when there is none now. */
    virtual QWidget *navigationBar() const = 0;
};

/**
 * Helpers for QTreeView and QTableView that work in rows and items. In a tree view a "row"
 * is the visible row (expanded items counted, collapsed ones not) and an "item" is the
 * QModelIndex of column 0; an invalid index stands for no item. A null view gives a
 * neutral result (an invalid index, -1, nothing done).
 */
namespace QuorvelleExtension {

/**
 * The selected item: the current index's item when its row is selected, else the last
 * selected row's; an invalid index when nothing is selected.
 */
QV_WIDGETS_EXPORT QModelIndex selectedItem(const QTreeView *outlineView);
/** Selects the item's visible row and scrolls to it; an item that is not shown is ignored. */
QV_WIDGETS_EXPORT void selectItem(QTreeView *outlineView, const QModelIndex &item);
/** The visible row of an item, -1 when it is not shown (a collapsed parent hides it). */
QV_WIDGETS_EXPORT std::int64_t rowForItem(const QTreeView *outlineView, const QModelIndex &item);

/**
 * Selects exactly that row (replacing the selection) and scrolls it into view; a negative
 * row, VXNotFound or a row past the end is ignored.
 */
QV_WIDGETS_EXPORT void selectRow(QTableView *tableView, std::int64_t row);
/**
 * \overload
 * Selects a visible row of a tree view.
 */
QV_WIDGETS_EXPORT void selectRow(QTreeView *outlineView, std::int64_t row);

/**
 * Whether a table should let the application's navigation bar handle a key: true for the
 * left arrow when the table has the focus, is not editing, and the delegate's navigation
 * bar is in the same window. A table's keyPressEvent asks this and passes the event on.
 */
QV_WIDGETS_EXPORT bool shouldHandleEvent(const QTableView *tableView, const QKeyEvent *event);
/**
 * The characters a key event stands for: its text, or for the arrow keys, which have none,
 * a private-use character (up U+F700, down U+F701, left U+F702, right U+F703), so key
 * handling can compare one string; empty for a null event or another key without text.
 */
QV_WIDGETS_EXPORT QString charactersOfKeyEvent(const QKeyEvent *event);

/**
 * Registers the application's delegate, asked for its navigation bar on every
 * shouldHandleEvent call. Not owned: unregister (nullptr) before destroying it. nullptr,
 * the default, has no navigation bar.
 */
QV_WIDGETS_EXPORT void setApplicationDelegate(VXNavigationBarDelegate *delegate);
/** The registered delegate, or nullptr. */
QV_WIDGETS_EXPORT VXNavigationBarDelegate *applicationDelegate();

} // namespace QuorvelleExtension
