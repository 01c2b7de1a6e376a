#include "VXFlatBorderedButtonCell.h"

#include "VXBezierPath.h"
#include "VXBezierPathQuorvelle.h"
#include "VXButtonCellQuorvelle.h"
#include "VXFlatButtonCell.h"

#include <QPainter>

VXFlatBorderedButtonCell::VXFlatBorderedButtonCell()
{
    setupDefaultColors();
}

VXFlatBorderedButtonCell::VXFlatBorderedButtonCell(const ButtonCellCoding &coding)
    : VXGeneralButtonCell(coding)
{
    setupDefaultColors();
}

void VXFlatBorderedButtonCell::setupDefaultColors()
{
    const VXColor border =
        VXColor::colorWithCalibratedRed(189.0 / 255.0, 195.0 / 255.0, 205.0 / 255.0, 1.0);
    _borderColor = border;
    _hoverBorderColor = border;
    _highlightColor =
        VXColor::colorWithCalibratedRed(234.0 / 255.0, 236.0 / 255.0, 239.0 / 255.0, 1.0);
    _fillColor = VXColor::whiteColor();
    _hoverFillColor = VXColor::whiteColor();
}

std::unique_ptr<ButtonCell> VXFlatBorderedButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new VXFlatBorderedButtonCell(*this));
}

std::optional<VXColor> VXFlatBorderedButtonCell::buttonFillColor() const
{
    if (VXButtonCellQuorvelle::isHighlightedOrPressed(*this))
        return _highlightColor;
    return hasHover() ? _hoverFillColor : _fillColor;
}

std::optional<VXColor> VXFlatBorderedButtonCell::buttonBorderColor() const
{
    return hasHover() ? _hoverBorderColor : _borderColor;
}

void VXFlatBorderedButtonCell::drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *)
{
    // Inset so that the one-point border lies inside the frame.
    const VXBezierPath path = VXBezierPathQuorvelle::bezierPathWithRoundedRectInsideBounds(
        frame, cornerRadius(), cornerRadius(), 1.0);
    if (const auto fill = buttonFillColor())
        path.fill(painter, *fill);
    if (const auto border = buttonBorderColor())
        path.stroke(painter, *border);
}

void VXFlatBorderedButtonCell::drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                                     QWidget *controlView)
{
    VXGeneralButtonCell::drawInteriorWithFrame(painter, flatInteriorFrame(cellFrame), controlView);
}

QRectF VXFlatBorderedButtonCell::drawTitle(QPainter &painter, const VXAttributedString &title,
                                           const QRectF &frame, QWidget *controlView)
{
    return VXGeneralButtonCell::drawTitle(painter, title, flatTitleFrame(frame), controlView);
}

QSizeF VXFlatBorderedButtonCell::cellSizeForBounds(const QRectF &bounds) const
{
    if (bounds.width() >= 20.0) {
        const QSizeF size =
            VXGeneralButtonCell::cellSizeForBounds(bounds.adjusted(10.0, 0.0, -10.0, 0.0));
        return {size.width() + 20.0, size.height()};
    }
    const QSizeF size = VXGeneralButtonCell::cellSizeForBounds(bounds);
    return {std::max(bounds.width(), size.width()), size.height()};
}
