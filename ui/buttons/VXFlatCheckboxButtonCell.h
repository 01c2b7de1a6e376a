#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

/**
 * The kit's flat check box: a white rounded box with a grey edge, a blue tick when on and a
 * blue dash when mixed, drawn with paths in the palette's colours (greyed when disabled),
 * and the title restyled beside it. The cell's own image is never drawn. The cell is a
 * check box (ButtonCell::SwitchButton) whichever way it is made.
 */
class QV_WIDGETS_EXPORT VXFlatCheckboxButtonCell : public Quorvelle::ButtonCell
{
public:
    /** Made in code: the title keeps its own colour and font. */
    VXFlatCheckboxButtonCell();
    /** Made from a window description: black titles in the kit's regular font for the size. */
    explicit VXFlatCheckboxButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatCheckboxButtonCell() override;

    /** A copy with the same title style and settings. */
    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    /** The colour of an enabled title; std::nullopt keeps the title's own. */
    std::optional<VXColor> titleColor() const;
    /** Sets the colour of an enabled title. */
    void setTitleColor(const std::optional<VXColor> &color);
    /** The font of the title; std::nullopt keeps the title's own. */
    std::optional<VXFont> titleFont() const;
    /** Sets the font of the title (the size hint follows it). */
    void setTitleFont(const std::optional<VXFont> &font);

    /** Draws the box and its tick or dash into frame; image is ignored. */
    void drawImage(QPainter &painter, const std::optional<VXImage> &image, const QRectF &frame,
                   QWidget *controlView) override;
    /** Draws the title in titleColor and titleFont, 3 points further right. */
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    /** Room for the title as it is drawn: in titleFont, moved right by 3. */
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    /** Copies the title style and settings; for copy(). */
    VXFlatCheckboxButtonCell(const VXFlatCheckboxButtonCell &other);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
