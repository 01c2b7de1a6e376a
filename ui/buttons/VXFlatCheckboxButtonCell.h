#pragma once

#include "ButtonCell.h"
#include "VXColor.h"

// The kit's flat check box: a rounded box, a tick and a dash drawn with paths in the
// palette's colours, and the title restyled beside it. The cell's own image is never drawn.
class VXFlatCheckboxButtonCell : public ButtonCell
{
public:
    // Made in code: no title colour or font.
    VXFlatCheckboxButtonCell();
    // Made from a window description: black titles in the kit's font for the control size.
    explicit VXFlatCheckboxButtonCell(const ButtonCellCoding &coding);

    std::unique_ptr<ButtonCell> copy() const override;

    std::optional<VXColor> titleColor() const { return _titleColor; }
    void setTitleColor(const std::optional<VXColor> &color) { _titleColor = color; }
    std::optional<VXFont> titleFont() const { return _titleFont; }
    void setTitleFont(const std::optional<VXFont> &font) { _titleFont = font; }

    void drawImage(QPainter &painter, const std::optional<VXImage> &image, const QRectF &frame,
                   QWidget *controlView) override;
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    // Room for the title as it is drawn: in titleFont, moved right by 3.
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    VXFlatCheckboxButtonCell(const VXFlatCheckboxButtonCell &) = default;

private:
    std::optional<VXColor> _titleColor;
    std::optional<VXFont> _titleFont;
};
