#include "VXFlatRadioButtonCell.h"

#include "VXBezierPath.h"
#include "VXQuorvelleColor.h"
#include "VXQuorvelleFont.h"
#include "VXShortcuts.h"

#include <QPainter>

using Quorvelle::ButtonCell;
using Quorvelle::ButtonCellCoding;

struct VXFlatRadioButtonCell::Private
{
    uint _selectionStyle = 0;
};

VXFlatRadioButtonCell::VXFlatRadioButtonCell() : d(std::make_unique<Private>())
{
    setButtonType(RadioButton);
}

VXFlatRadioButtonCell::VXFlatRadioButtonCell(const ButtonCellCoding &coding)
    : ButtonCell(coding), d(std::make_unique<Private>())
{
    setButtonType(RadioButton);
}

VXFlatRadioButtonCell::~VXFlatRadioButtonCell() = default;

VXFlatRadioButtonCell::VXFlatRadioButtonCell(const VXFlatRadioButtonCell &other)
    : ButtonCell(other), d(std::make_unique<Private>(*other.d))
{
}

std::unique_ptr<ButtonCell> VXFlatRadioButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new VXFlatRadioButtonCell(*this));
}

void VXFlatRadioButtonCell::drawImage(QPainter &painter, const std::optional<VXImage> &,
                                      const QRectF &frame, QWidget *)
{
    const QRectF ring = frame.adjusted(0.5, 0.5, -0.5, -0.5).translated(imageXOffset(), 0.0);
    const VXBezierPath path = VXBezierPath::bezierPathWithOvalInRect(ring);
    path.fill(painter, isEnabled() ? VXColor::whiteColor()
                                   : QuorvelleColor::quorvelleLightGrayDisabledControlColor());
    path.stroke(painter, isEnabled() ? QuorvelleColor::quorvelleGrayColor()
                                     : QuorvelleColor::quorvelleGrayDisabledControlColor());
    if (state() == OnState) {
        // A centre dot a third of the mark.
        const QRectF dot = ring.adjusted(ring.width() / 3.0, ring.height() / 3.0,
                                         -ring.width() / 3.0, -ring.height() / 3.0);
        VXBezierPath::bezierPathWithOvalInRect(dot).fill(
            painter, isEnabled() ? QuorvelleColor::quorvelleBlueColor()
                                 : QuorvelleColor::quorvelleBlueDisabledControlColor());
    }
}

QRectF VXFlatRadioButtonCell::drawTitle(QPainter &painter, const VXAttributedString &title,
                                        const QRectF &frame, QWidget *controlView)
{
    VXAttributedString drawn = title;
    const VXFont font =
        QuorvelleFont::quorvelleRegularFontWithSize(QuorvelleFont::quorvelleRegularFontSize());
    VXShortcuts::setAttribute(drawn, VXFontAttributeName, QVariant::fromValue(font));
    QRectF titleFrame = frame.translated(titleXOffset(), 0.0);
    if (font.fontName().startsWith(QLatin1String("HelveticaNeue")))
        titleFrame.translate(0.0, -1.0);
    return ButtonCell::drawTitle(painter, drawn, titleFrame, controlView);
}

void VXFlatRadioButtonCell::drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                                  QWidget *controlView)
{
    ButtonCell::drawInteriorWithFrame(painter, cellFrame, controlView);
    if (state() != OnState)
        return;
    const VXColor stroke = QuorvelleColor::quorvelleBlueColor();
    const VXColor fill = stroke.colorWithAlphaComponent(0.1);
    const QRectF r = cellFrame.adjusted(0.5, 0.5, -0.5, -0.5);
    const double rx = r.x(), ry = r.y(), rw = r.width(), rh = r.height();
    VXBezierPath path;
    switch (d->_selectionStyle) {
    case 2:
        // Rounded on the left, pointed on the right; the zero-length segment is harmless.
        path.setLineJoinStyle(VXRoundLineJoinStyle);
        path.moveToPoint(QPointF(rx + 10.0, ry));
        path.curveToPoint(QPointF(rx, ry + 10.0), QPointF(rx, ry), QPointF(rx, ry));
        path.relativeLineToPoint(QPointF(0.0, rh - 20.0));
        path.curveToPoint(QPointF(rx + 10.0, ry + rh), QPointF(rx, ry + rh), QPointF(rx, ry + rh));
        path.lineToPoint(QPointF(rx + 10.0, ry + rh));
        path.relativeLineToPoint(QPointF(rw - 10.0 - rh * 0.5, 0.0));
        path.relativeLineToPoint(QPointF(rh * 0.5, -rh * 0.5));
        path.relativeLineToPoint(QPointF(-rh * 0.5, -rh * 0.5));
        path.closePath();
        break;
    case 1:
        path = VXBezierPath::bezierPathWithRoundedRect(r, 5.0, 5.0);
        break;
    default:
        return;
    }
    path.stroke(painter, stroke);
    path.fill(painter, fill);
}

QPainterPath VXFlatRadioButtonCell::focusRingMaskForFrame(const QRectF &cellFrame) const
{
    return ButtonCell::focusRingMaskForFrame(cellFrame).translated(imageXOffset(), 0.0);
}

QSizeF VXFlatRadioButtonCell::cellSizeForBounds(const QRectF &bounds) const
{
    VXFlatRadioButtonCell measured(*this);
    measured.setFont(
        QuorvelleFont::quorvelleRegularFontWithSize(QuorvelleFont::quorvelleRegularFontSize()));
    const QSizeF size = measured.ButtonCell::cellSizeForBounds(bounds);
    return {size.width() + titleXOffset(), size.height() + 2.0};
}

uint VXFlatRadioButtonCell::selectionStyle() const
{
    return d->_selectionStyle;
}

void VXFlatRadioButtonCell::setSelectionStyle(uint style)
{
    d->_selectionStyle = style;
}

double VXFlatRadioButtonCell::imageXOffset() const
{
    return d->_selectionStyle == 0 ? 0.0 : 5.0;
}
