#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/VXGeneralButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

// The kit's white push button with a thin grey-blue rounded border, pale grey while
// pressed, with hover colours of its own for border and fill (shown in a VXTrackingButton).
class QV_WIDGETS_EXPORT VXFlatBorderedButtonCell : public VXGeneralButtonCell
{
    Q_GADGET

public:
    VXFlatBorderedButtonCell();
    explicit VXFlatBorderedButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatBorderedButtonCell() override;

    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;
    const QMetaObject *cellClass() const override { return &staticMetaObject; }

    std::optional<VXColor> borderColor() const;
    void setBorderColor(const std::optional<VXColor> &color);
    std::optional<VXColor> hoverBorderColor() const;
    void setHoverBorderColor(const std::optional<VXColor> &color);
    std::optional<VXColor> highlightColor() const;
    void setHighlightColor(const std::optional<VXColor> &color);
    std::optional<VXColor> fillColor() const;
    void setFillColor(const std::optional<VXColor> &color);
    std::optional<VXColor> hoverFillColor() const;
    void setHoverFillColor(const std::optional<VXColor> &color);

    std::optional<VXColor> buttonFillColor() const;
    // The border has no pressed colour.
    std::optional<VXColor> buttonBorderColor() const;
    double cornerRadius() const { return 4.0; }

    void drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *controlView) override;
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    VXFlatBorderedButtonCell(const VXFlatBorderedButtonCell &other);

private:
    void setupDefaultColors();
    struct Private;
    std::unique_ptr<Private> d;
};
