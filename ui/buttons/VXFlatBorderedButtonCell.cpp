#include "VXFlatBorderedButtonCell.h"

#include "VXBezierPath.h"
#include "VXBezierPathQuorvelle.h"
#include "VXButtonCellQuorvelle.h"
#include "VXFlatButtonCell.h"
#include "VXFlatCellGeometry.h"

#include <QPainter>

using Quorvelle::ButtonCell;
using Quorvelle::ButtonCellCoding;
using Quorvelle::flatInteriorFrame;
using Quorvelle::flatTitleFrame;

struct VXFlatBorderedButtonCell::Private
{
    std::optional<VXColor> _borderColor;
    std::optional<VXColor> _hoverBorderColor;
    std::optional<VXColor> _highlightColor;
    std::optional<VXColor> _fillColor;
    std::optional<VXColor> _hoverFillColor;
};

VXFlatBorderedButtonCell::VXFlatBorderedButtonCell() : d(std::make_unique<Private>())
{
    setupDefaultColors();
}

VXFlatBorderedButtonCell::VXFlatBorderedButtonCell(const ButtonCellCoding &coding)
    : VXGeneralButtonCell(coding), d(std::make_unique<Private>())
{
    setupDefaultColors();
}

VXFlatBorderedButtonCell::~VXFlatBorderedButtonCell() = default;

VXFlatBorderedButtonCell::VXFlatBorderedButtonCell(const VXFlatBorderedButtonCell &other)
    : VXGeneralButtonCell(other), d(std::make_unique<Private>(*other.d))
{
}

void VXFlatBorderedButtonCell::setupDefaultColors()
{
    const VXColor border =
        VXColor::colorWithCalibratedRed(189.0 / 255.0, 195.0 / 255.0, 205.0 / 255.0, 1.0);
    d->_borderColor = border;
    d->_hoverBorderColor = border;
    d->_highlightColor =
        VXColor::colorWithCalibratedRed(234.0 / 255.0, 236.0 / 255.0, 239.0 / 255.0, 1.0);
    d->_fillColor = VXColor::whiteColor();
    d->_hoverFillColor = VXColor::whiteColor();
}

std::unique_ptr<ButtonCell> VXFlatBorderedButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new VXFlatBorderedButtonCell(*this));
}

std::optional<VXColor> VXFlatBorderedButtonCell::buttonFillColor() const
{
    if (VXButtonCellQuorvelle::isHighlightedOrPressed(*this))
        return d->_highlightColor;
    return hasHover() ? d->_hoverFillColor : d->_fillColor;
}

std::optional<VXColor> VXFlatBorderedButtonCell::buttonBorderColor() const
{
    return hasHover() ? d->_hoverBorderColor : d->_borderColor;
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

std::optional<VXColor> VXFlatBorderedButtonCell::borderColor() const
{
    return d->_borderColor;
}

void VXFlatBorderedButtonCell::setBorderColor(const std::optional<VXColor> &color)
{
    d->_borderColor = color;
}

std::optional<VXColor> VXFlatBorderedButtonCell::hoverBorderColor() const
{
    return d->_hoverBorderColor;
}

void VXFlatBorderedButtonCell::setHoverBorderColor(const std::optional<VXColor> &color)
{
    d->_hoverBorderColor = color;
}

std::optional<VXColor> VXFlatBorderedButtonCell::highlightColor() const
{
    return d->_highlightColor;
}

void VXFlatBorderedButtonCell::setHighlightColor(const std::optional<VXColor> &color)
{
    d->_highlightColor = color;
}

std::optional<VXColor> VXFlatBorderedButtonCell::fillColor() const
{
    return d->_fillColor;
}

void VXFlatBorderedButtonCell::setFillColor(const std::optional<VXColor> &color)
{
    d->_fillColor = color;
}

std::optional<VXColor> VXFlatBorderedButtonCell::hoverFillColor() const
{
    return d->_hoverFillColor;
}

void VXFlatBorderedButtonCell::setHoverFillColor(const std::optional<VXColor> &color)
{
    d->_hoverFillColor = color;
}
