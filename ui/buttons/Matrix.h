#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>
#include <QWidget>

#include <memory>

namespace Quorvelle {

class Button;

// A radio group: its rows are the radio buttons among its direct children, in the order
// they stand from top to bottom (one column). They are exclusive among themselves as
// siblings; other children (such as a reason's detail boxes) are no rows.
class QV_WIDGETS_EXPORT Matrix : public QWidget
{
    Q_OBJECT

public:
    explicit Matrix(QWidget *parent = nullptr);
    ~Matrix() override;

    QList<Button *> cells() const;
    int numberOfRows() const { return int(cells().size()); }
    int rowOfCell(const Button *cell) const;
    Button *cellAtRow(int row, int column) const;
    Button *selectedCell() const;

    // Redraws the cell of one row after its look changed.
    virtual void drawCellAtRow(int row, int column);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Quorvelle
