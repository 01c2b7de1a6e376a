#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

// The kit's flat check box: a rounded box, a tick and a dash drawn with paths in the
// palette's colours, and the title restyled beside it. The cell's own image is never drawn.
class QV_WIDGETS_EXPORT VXFlatCheckboxButtonCell : public Quorvelle::ButtonCell
{
public:
    // Made in code: no title colour or font.
    VXFlatCheckboxButtonCell();
    // Made from a window description: black titles in the kit's font for the control size.
    explicit VXFlatCheckboxButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatCheckboxButtonCell() override;

    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    std::optional<VXColor> titleColor() const;
    void setTitleColor(const std::optional<VXColor> &color);
    std::optional<VXFont> titleFont() const;
    void setTitleFont(const std::optional<VXFont> &font);

    void drawImage(QPainter &painter, const std::optional<VXImage> &image, const QRectF &frame,
                   QWidget *controlView) override;
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    // Room for the title as it is drawn: in titleFont, moved right by 3.
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    VXFlatCheckboxButtonCell(const VXFlatCheckboxButtonCell &other);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
