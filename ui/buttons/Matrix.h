#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>
#include <QWidget>

#include <memory>

namespace Quorvelle {

class Button;

/**
 * A radio group: its rows are the radio-type Button children (ButtonCell::RadioButton)
 * among its direct children, in the order they stand from top to bottom, in one column.
 * They are exclusive among themselves as siblings (Qt's auto-exclusive buttons); other
 * children (such as detail boxes below a choice) are no rows. The matrix does not lay its
 * children out: give it a layout. Assistive tools see it as a group, named by the label
 * whose buddy it is.
 */
class QV_WIDGETS_EXPORT Matrix : public QWidget
{
    Q_OBJECT

public:
    /** An empty group. */
    explicit Matrix(QWidget *parent = nullptr);
    ~Matrix() override;

    /** The rows' buttons from top to bottom. */
    QList<Button *> cells() const;
    /** The number of rows. */
    int numberOfRows() const { return int(cells().size()); }
    /** The row of a button, -1 when it is no row of this group. */
    int rowOfCell(const Button *cell) const;
    /** The button of a row; nullptr outside the rows or for a column other than 0. */
    Button *cellAtRow(int row, int column) const;
    /** The button that is on, or nullptr when none is chosen. */
    Button *selectedCell() const;

    /**
     * Redraws the button of one row after its look changed; a row's Button calls it instead
     * of repainting itself. Never called from a paint event.
     */
    virtual void drawCellAtRow(int row, int column);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Quorvelle
