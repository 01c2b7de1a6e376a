#pragma once

#include <Quorvelle/Widgets/Matrix.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

/**
 * The kit's radio group for VXFlatRadioButtonCell rows: it gives its selection style to
 * every flat radio cell among its rows (also to rows added later) and redraws itself whole
 * whenever one of them changes, so the shape behind the chosen row moves at once.
 */
class QV_WIDGETS_EXPORT VXMatrix : public Quorvelle::Matrix
{
    Q_OBJECT
    /**
     * The VXFlatRadioButtonCell::selectionStyle of every flat radio row: 0 none, 1 a rounded
     * rectangle, 2 a tag pointing right behind the chosen row.
     */
    Q_PROPERTY(uint selectionStyle READ selectionStyle WRITE setSelectionStyle)

public:
    /** An empty group with selection style 0. */
    explicit VXMatrix(QWidget *parent = nullptr);
    ~VXMatrix() override;

    /** Redraws the row's button and the whole group. */
    void drawCellAtRow(int row, int column) override;

    /** The selection style given to the rows. */
    uint selectionStyle() const;
    /** Sets the selection style of every flat radio row and repaints. */
    void setSelectionStyle(uint style);

protected:
    /** Gives a row polished after the style was set the group's style. */
    void childEvent(QChildEvent *event) override;

private:
    void applySelectionStyle();
    struct Private;
    std::unique_ptr<Private> d;
};
