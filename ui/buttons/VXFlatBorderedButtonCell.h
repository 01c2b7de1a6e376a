#pragma once

#include "VXColor.h"
#include "VXGeneralButtonCell.h"

// The kit's white push button with a thin grey-blue rounded border, pale grey while
// pressed, with hover colours of its own for border and fill (shown in a VXTrackingButton).
class VXFlatBorderedButtonCell : public VXGeneralButtonCell
{
    Q_GADGET

public:
    VXFlatBorderedButtonCell();
    explicit VXFlatBorderedButtonCell(const ButtonCellCoding &coding);

    std::unique_ptr<ButtonCell> copy() const override;
    const QMetaObject *cellClass() const override { return &staticMetaObject; }

    std::optional<VXColor> borderColor() const { return _borderColor; }
    void setBorderColor(const std::optional<VXColor> &color) { _borderColor = color; }
    std::optional<VXColor> hoverBorderColor() const { return _hoverBorderColor; }
    void setHoverBorderColor(const std::optional<VXColor> &color) { _hoverBorderColor = color; }
    std::optional<VXColor> highlightColor() const { return _highlightColor; }
    void setHighlightColor(const std::optional<VXColor> &color) { _highlightColor = color; }
    std::optional<VXColor> fillColor() const { return _fillColor; }
    void setFillColor(const std::optional<VXColor> &color) { _fillColor = color; }
    std::optional<VXColor> hoverFillColor() const { return _hoverFillColor; }
    void setHoverFillColor(const std::optional<VXColor> &color) { _hoverFillColor = color; }

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
    VXFlatBorderedButtonCell(const VXFlatBorderedButtonCell &) = default;

private:
    void setupDefaultColors();
    std::optional<VXColor> _borderColor;
    std::optional<VXColor> _hoverBorderColor;
    std::optional<VXColor> _highlightColor;
    std::optional<VXColor> _fillColor;
    std::optional<VXColor> _hoverFillColor;
};
