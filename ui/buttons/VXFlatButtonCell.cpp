#include "VXFlatButtonCell.h"
#include "VXFlatCellGeometry.h"

#include "VXBezierPath.h"
#include "VXButtonCellQuorvelle.h"
#include "VXColorConvertion.h"
#include "VXQuorvelleColor.h"
#include "VXShortcuts.h"

#include <QPainter>

using Quorvelle::ButtonCell;
using Quorvelle::ButtonCellCoding;
using Quorvelle::etchedImageWithSolidColor;
using Quorvelle::flatInteriorFrame;
using Quorvelle::flatTitleFrame;

struct VXFlatButtonCell::Private
{
    std::optional<VXColor> _regularColor;
    std::optional<VXColor> _pressedColor;
    std::optional<VXColor> _disabledColor;
};

VXFlatButtonCell::VXFlatButtonCell() : d(std::make_unique<Private>()) {}

VXFlatButtonCell::VXFlatButtonCell(const ButtonCellCoding &coding)
    : ButtonCell(coding), d(std::make_unique<Private>())
{
    d->_regularColor = QuorvelleColor::quorvelleBlueColor();
    d->_pressedColor = QuorvelleColor::quorvelleDarkBlueColor();
    d->_disabledColor =
        VXColor::colorWithCalibratedRed(137.0 / 255.0, 187.0 / 255.0, 222.0 / 255.0, 1.0);
}

VXFlatButtonCell::~VXFlatButtonCell() = default;

VXFlatButtonCell::VXFlatButtonCell(const VXFlatButtonCell &other)
    : ButtonCell(other), d(std::make_unique<Private>(*other.d))
{
}

std::unique_ptr<ButtonCell> VXFlatButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new VXFlatButtonCell(*this));
}

std::optional<VXColor> VXFlatButtonCell::buttonColor() const
{
    if (VXButtonCellQuorvelle::isHighlightedOrPressed(*this))
        return d->_pressedColor;
    return isEnabled() ? d->_regularColor : d->_disabledColor;
}

VXShadow VXFlatButtonCell::titleShadow() const
{
    VXShadow shadow;
    shadow.shadowOffset = QSizeF(0.0, -1.0);
    shadow.shadowBlurRadius = 1.0;
    return shadow;
}

VXAttributedString VXFlatButtonCell::titleForDrawingFromTitle(const VXAttributedString &title) const
{
    VXAttributedString drawn = title;
    VXShortcuts::setAttribute(drawn, VXShadowAttributeName, QVariant::fromValue(titleShadow()));
    VXShortcuts::setColor(drawn, VXColor::whiteColor());
    return drawn;
}

void VXFlatButtonCell::drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *)
{
    const VXBezierPath path = VXBezierPath::bezierPathWithRoundedRect(frame, 4.0, 4.0);
    if (const auto color = buttonColor())
        path.fill(painter, *color);
}

void VXFlatButtonCell::drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                             QWidget *controlView)
{
    ButtonCell::drawInteriorWithFrame(painter, flatInteriorFrame(cellFrame), controlView);
}

QRectF VXFlatButtonCell::drawTitle(QPainter &painter, const VXAttributedString &title,
                                   const QRectF &frame, QWidget *controlView)
{
    return ButtonCell::drawTitle(painter, titleForDrawingFromTitle(title), flatTitleFrame(frame),
                                 controlView);
}

void VXFlatButtonCell::drawImage(QPainter &painter, const std::optional<VXImage> &image,
                                 const QRectF &frame, QWidget *)
{
    if (!image)
        return;
    const VXImage etched = etchedImageWithSolidColor(*image, VXColor::whiteColor(), false, false);
    etched.drawInRect(painter, frame, QRectF(QPointF(0, 0), etched.size()));
}

QSizeF VXFlatButtonCell::cellSizeForBounds(const QRectF &bounds) const
{
    const bool imageBeside =
        image() && (imagePosition() == ImageLeft || imagePosition() == ImageRight);
    const double margin = imageBeside ? 30.0 : 20.0;
    if (bounds.width() >= margin) {
        const QSizeF size = ButtonCell::cellSizeForBounds(
            QRectF(bounds.x(), bounds.y(), bounds.width() - margin, bounds.height()));
        return {size.width() + margin, size.height()};
    }
    const QSizeF size = ButtonCell::cellSizeForBounds(bounds);
    return {std::max(bounds.width(), size.width()), size.height()};
}

namespace Quorvelle {

QRectF flatInteriorFrame(const QRectF &cellFrame)
{
    QRectF interior = cellFrame.adjusted(10.0, 1.0, -10.0, -1.0);
    interior.setHeight(interior.height() + 2.0);
    return interior;
}

QRectF flatTitleFrame(const QRectF &titleFrame)
{
    // One point higher, for the shadow below the flat button's title.
    return titleFrame.adjusted(0.0, 1.0, 0.0, -1.0).translated(0.0, -2.0);
}

VXImage etchedImageWithSolidColor(const VXImage &image, const VXColor &color, bool, bool)
{
    // Keep the source's coverage (alpha), paint every covered pixel in the colour.
    QImage etched = image.image().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&etched);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(etched.rect(), VXColorConvertion::newCGColor(color));
    painter.end();
    return VXImage(image.name(), etched);
}

} // namespace Quorvelle

std::optional<VXColor> VXFlatButtonCell::regularColor() const
{
    return d->_regularColor;
}

void VXFlatButtonCell::setRegularColor(const std::optional<VXColor> &color)
{
    d->_regularColor = color;
}

std::optional<VXColor> VXFlatButtonCell::pressedColor() const
{
    return d->_pressedColor;
}

void VXFlatButtonCell::setPressedColor(const std::optional<VXColor> &color)
{
    d->_pressedColor = color;
}

std::optional<VXColor> VXFlatButtonCell::disabledColor() const
{
    return d->_disabledColor;
}

void VXFlatButtonCell::setDisabledColor(const std::optional<VXColor> &color)
{
    d->_disabledColor = color;
}
