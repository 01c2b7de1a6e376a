#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

/**
 * The kit's flat radio button: a white ring with a grey edge and a blue centre dot when
 * chosen (greyed when disabled), the title in the kit's regular font, and optionally a
 * tinted shape in the product's blue behind the whole chosen row. Use it for the rows of a
 * VXMatrix, which sets the selection style of all of them. The cell is a radio button
 * (ButtonCell::RadioButton) whichever way it is made.
 */
class QV_WIDGETS_EXPORT VXFlatRadioButtonCell : public Quorvelle::ButtonCell
{
public:
    /** Made in code, selection style 0. */
    VXFlatRadioButtonCell();
    /** Made from a window description, selection style 0. */
    explicit VXFlatRadioButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatRadioButtonCell() override;

    /** A copy with the same selection style and settings. */
    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    /**
     * The shape behind the chosen row: 1 a rounded rectangle, 2 a tag pointing right (for
     * a list of choices that leads to a detail on the right), anything else none.
     */
    uint selectionStyle() const;
    /** Sets the shape behind the chosen row; the button must be repainted. */
    void setSelectionStyle(uint style);
    /** How far the ring is moved right: 5 points with a selection shape, else 0. */
    double imageXOffset() const;
    /** How far the title is moved right: imageXOffset() plus 3 points. */
    double titleXOffset() const { return imageXOffset() + 3.0; }

    /** Draws the ring and, when on, its dot into frame; image is ignored. */
    void drawImage(QPainter &painter, const std::optional<VXImage> &image, const QRectF &frame,
                   QWidget *controlView) override;
    /** Draws the title in the kit's regular font, moved by titleXOffset(). */
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    /** Draws ring and title, then, when on, the selection shape over the whole frame. */
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    /** The ring, where drawImage puts it. */
    QPainterPath focusRingMaskForFrame(const QRectF &cellFrame) const override;
    /** Room for the title as it is drawn: in the kit's regular font, moved by titleXOffset. */
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    /** Copies the selection style and settings; for copy(). */
    VXFlatRadioButtonCell(const VXFlatRadioButtonCell &other);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
