#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

// The kit's flat radio button: a ring with a centre dot in the palette's colours, and
// optionally a tinted shape behind the whole selected row (selectionStyle 1: a rounded
// rectangle, 2: a tag pointing right; anything else: none).
class QV_WIDGETS_EXPORT VXFlatRadioButtonCell : public Quorvelle::ButtonCell
{
public:
    VXFlatRadioButtonCell();
    explicit VXFlatRadioButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatRadioButtonCell() override;

    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    uint selectionStyle() const;
    void setSelectionStyle(uint style);
    double imageXOffset() const;
    double titleXOffset() const { return imageXOffset() + 3.0; }

    void drawImage(QPainter &painter, const std::optional<VXImage> &image, const QRectF &frame,
                   QWidget *controlView) override;
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    // The ring, where drawImage puts it.
    QPainterPath focusRingMaskForFrame(const QRectF &cellFrame) const override;
    // Room for the title as it is drawn: in the kit's regular font, moved by titleXOffset.
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    VXFlatRadioButtonCell(const VXFlatRadioButtonCell &other);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
