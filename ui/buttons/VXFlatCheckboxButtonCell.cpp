#include "VXFlatCheckboxButtonCell.h"

#include "VXBezierPath.h"
#include "VXQuorvelleColor.h"
#include "VXQuorvelleFont.h"
#include "VXShortcuts.h"

#include <QPainter>
#include <QTransform>

using Quorvelle::ButtonCell;
using Quorvelle::ButtonCellCoding;

namespace {

double titleFontSizeFor(int controlSize)
{
    switch (controlSize) {
    case ButtonCell::RegularControlSize:
        return QuorvelleFont::quorvelleRegularFontSize();
    case ButtonCell::SmallControlSize:
        return QuorvelleFont::quorvelleSmallFontSize();
    case ButtonCell::MiniControlSize:
        return QuorvelleFont::quorvelleMiniFontSize();
    default:
        return 0.0;
    }
}

} // namespace

struct VXFlatCheckboxButtonCell::Private
{
    std::optional<VXColor> _titleColor;
    std::optional<VXFont> _titleFont;
};

VXFlatCheckboxButtonCell::VXFlatCheckboxButtonCell() : d(std::make_unique<Private>())
{
    setButtonType(SwitchButton);
}

VXFlatCheckboxButtonCell::VXFlatCheckboxButtonCell(const ButtonCellCoding &coding)
    : ButtonCell(coding), d(std::make_unique<Private>())
{
    d->_titleColor = VXColor::blackColor();
    d->_titleFont = QuorvelleFont::quorvelleRegularFontWithSize(titleFontSizeFor(controlSize()));
    setButtonType(SwitchButton);
}

VXFlatCheckboxButtonCell::~VXFlatCheckboxButtonCell() = default;

VXFlatCheckboxButtonCell::VXFlatCheckboxButtonCell(const VXFlatCheckboxButtonCell &other)
    : ButtonCell(other), d(std::make_unique<Private>(*other.d))
{
}

std::unique_ptr<ButtonCell> VXFlatCheckboxButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new VXFlatCheckboxButtonCell(*this));
}

void VXFlatCheckboxButtonCell::drawImage(QPainter &painter, const std::optional<VXImage> &,
                                         const QRectF &frame, QWidget *controlView)
{
    QRectF markFrame = frame;
    std::optional<QTransform> transform;
    if (isFlipped(controlView)) {
        // The marks are laid out growing upwards, from the frame's bottom edge.
        QTransform flip;
        flip.translate(0, frame.y() + frame.height());
        flip.scale(1.0, -1.0);
        painter.setTransform(flip, true);
        transform = flip;
        markFrame.moveTop(0.0);
    }

    const QRectF box = markFrame.adjusted(0.5, 0.5, -0.5, -0.5);
    VXBezierPath path = VXBezierPath::bezierPathWithRoundedRect(box, 3.0, 3.0);
    path.fill(painter, isEnabled() ? VXColor::whiteColor()
                                   : QuorvelleColor::quorvelleLightGrayDisabledControlColor());
    path.stroke(painter, isEnabled() ? QuorvelleColor::quorvelleGrayColor()
                                     : QuorvelleColor::quorvelleGrayDisabledControlColor());

    const double bx = box.x(), by = box.y(), bw = box.width(), bh = box.height();
    if (state() == OnState) {
        const VXColor tick = isEnabled() ? QuorvelleColor::quorvelleBlueColor()
                                         : QuorvelleColor::quorvelleBlueDisabledControlColor();
        path.removeAllPoints();
        path.setLineWidth(2.0);
        // The start adds the box's y twice; the tick's place depends on it.
        path.moveToPoint(QPointF(bx + bw / 3.5, by + by + bh * 0.5));
        path.relativeLineToPoint(QPointF(bw / 6.0, bh / -5.0));
        path.relativeLineToPoint(QPointF(bw / 3.0, bh * 0.5));
        path.stroke(painter, tick);
    } else if (state() == MixedState) {
        // The dash has no disabled colour.
        path.removeAllPoints();
        path.setLineWidth(2.0);
        path.moveToPoint(QPointF(bx + bw * 0.5 + bw * -0.25, by + bh * 0.5 + 0.5));
        path.relativeLineToPoint(QPointF(bw * 0.5, 0.0));
        path.stroke(painter, QuorvelleColor::quorvelleBlueColor());
    }

    if (transform)
        painter.setTransform(transform->inverted(), true);
}

QRectF VXFlatCheckboxButtonCell::drawTitle(QPainter &painter, const VXAttributedString &title,
                                           const QRectF &frame, QWidget *controlView)
{
    VXAttributedString drawn = title;
    if (isEnabled() && d->_titleColor)
        VXShortcuts::setColor(drawn, *d->_titleColor);
    if (d->_titleFont)
        VXShortcuts::setAttribute(drawn, VXFontAttributeName, QVariant::fromValue(*d->_titleFont));
    QRectF titleFrame = frame.translated(3.0, 0.0);
    if (d->_titleFont && d->_titleFont->fontName().startsWith(QLatin1String("HelveticaNeue")))
        titleFrame.translate(0.0, -1.0);
    return ButtonCell::drawTitle(painter, drawn, titleFrame, controlView);
}

QSizeF VXFlatCheckboxButtonCell::cellSizeForBounds(const QRectF &bounds) const
{
    VXFlatCheckboxButtonCell measured(*this);
    if (d->_titleFont)
        measured.setFont(*d->_titleFont);
    const QSizeF size = measured.ButtonCell::cellSizeForBounds(bounds);
    return {size.width() + 3.0, size.height() + 2.0};
}

std::optional<VXColor> VXFlatCheckboxButtonCell::titleColor() const
{
    return d->_titleColor;
}

void VXFlatCheckboxButtonCell::setTitleColor(const std::optional<VXColor> &color)
{
    d->_titleColor = color;
}

std::optional<VXFont> VXFlatCheckboxButtonCell::titleFont() const
{
    return d->_titleFont;
}

void VXFlatCheckboxButtonCell::setTitleFont(const std::optional<VXFont> &font)
{
    d->_titleFont = font;
}
