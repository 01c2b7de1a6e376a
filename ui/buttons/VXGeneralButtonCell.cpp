#include "VXGeneralButtonCell.h"

#include "Bundle.h"
#include "VXSystemInformation.h"

#include <QFileInfo>
#include <QPainter>
#include <QTransform>

using Quorvelle::ButtonCell;

using Quorvelle::Bundle;

struct VXGeneralButtonCell::Private
{
    std::optional<VXImage> _leftPartImageNormal;
    std::optional<VXImage> _leftPartImageHover;
    std::optional<VXImage> _leftPartImagePressed;
    std::optional<VXImage> _centerPartImageNormal;
    std::optional<VXImage> _centerPartImageHover;
    std::optional<VXImage> _centerPartImagePressed;
    std::optional<VXImage> _rightPartImageNormal;
    std::optional<VXImage> _rightPartImageHover;
    std::optional<VXImage> _rightPartImagePressed;
    std::optional<VXImage> _templateImageNormal;
    std::optional<VXImage> _templateImageHover;
    std::optional<VXImage> _templateImagePressed;
};

VXGeneralButtonCell::VXGeneralButtonCell() : d(std::make_unique<Private>()) {}

VXGeneralButtonCell::VXGeneralButtonCell(const Quorvelle::ButtonCellCoding &coding)
    : VXButtonCell(coding), d(std::make_unique<Private>())
{
}

VXGeneralButtonCell::~VXGeneralButtonCell() = default;

VXGeneralButtonCell::VXGeneralButtonCell(const VXGeneralButtonCell &other)
    : VXButtonCell(other), d(std::make_unique<Private>(*other.d))
{
}

std::unique_ptr<ButtonCell> VXGeneralButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new VXGeneralButtonCell(*this));
}

std::optional<VXImage> VXGeneralButtonCell::load(std::optional<VXImage> &slot,
                                                 const char *suffix) const
{
    if (slot)
        return slot;
    const QString base = baseResourceImageName();
    if (base.isNull())
        return std::nullopt;
    slot = VXImageCreation::imageNamed(base + QLatin1String(suffix), resourcesBundle());
    return slot;
}

std::optional<VXImage> VXGeneralButtonCell::leftPartImageNormal() const
{
    return load(d->_leftPartImageNormal, "_left");
}
std::optional<VXImage> VXGeneralButtonCell::leftPartImageHover() const
{
    return load(d->_leftPartImageHover, "_left_hover");
}
std::optional<VXImage> VXGeneralButtonCell::leftPartImagePressed() const
{
    return load(d->_leftPartImagePressed, "_left_pressed");
}
std::optional<VXImage> VXGeneralButtonCell::centerPartImageNormal() const
{
    return load(d->_centerPartImageNormal, "_center");
}
std::optional<VXImage> VXGeneralButtonCell::centerPartImageHover() const
{
    return load(d->_centerPartImageHover, "_center_hover");
}
std::optional<VXImage> VXGeneralButtonCell::centerPartImagePressed() const
{
    return load(d->_centerPartImagePressed, "_center_pressed");
}
std::optional<VXImage> VXGeneralButtonCell::rightPartImageNormal() const
{
    return load(d->_rightPartImageNormal, "_right");
}
std::optional<VXImage> VXGeneralButtonCell::rightPartImageHover() const
{
    return load(d->_rightPartImageHover, "_right_hover");
}
std::optional<VXImage> VXGeneralButtonCell::rightPartImagePressed() const
{
    return load(d->_rightPartImagePressed, "_right_pressed");
}
std::optional<VXImage> VXGeneralButtonCell::templateImageNormal() const
{
    return load(d->_templateImageNormal, "");
}
std::optional<VXImage> VXGeneralButtonCell::templateImageHover() const
{
    return load(d->_templateImageHover, "_hover");
}
std::optional<VXImage> VXGeneralButtonCell::templateImagePressed() const
{
    return load(d->_templateImagePressed, "_pressed");
}

Bundle *VXGeneralButtonCell::resourcesBundle() const
{
    // The bundle of the actual class, so a subclass elsewhere finds its own artwork; one
    // that cannot be used gives way to the main bundle.
    Bundle *bundle = Bundle::bundleForClass(cellClass());
    if (bundle) {
        const QFileInfo folder(bundle->bundlePath());
        if (folder.isDir() && folder.isReadable())
            return bundle;
    }
    return Bundle::mainBundle();
}

std::optional<VXImage> VXGeneralButtonCell::look(const std::optional<VXImage> &normal,
                                                 const std::optional<VXImage> &hover,
                                                 const std::optional<VXImage> &pressed) const
{
    if (isHighlighted())
        return pressed;
    if (hasHover() && hover)
        return hover;
    return normal;
}

std::optional<VXImage> VXGeneralButtonCell::buttonTemplateImage() const
{
    if (isHighlighted())
        return templateImagePressed();
    return look(templateImageNormal(), hasHover() ? templateImageHover() : std::nullopt,
                std::nullopt);
}

std::optional<VXImage> VXGeneralButtonCell::leftSideSegment() const
{
    if (isHighlighted())
        return leftPartImagePressed();
    return look(leftPartImageNormal(), hasHover() ? leftPartImageHover() : std::nullopt,
                std::nullopt);
}

std::optional<VXImage> VXGeneralButtonCell::rightSideSegment() const
{
    if (isHighlighted())
        return rightPartImagePressed();
    return look(rightPartImageNormal(), hasHover() ? rightPartImageHover() : std::nullopt,
                std::nullopt);
}

std::optional<VXImage> VXGeneralButtonCell::centerSegment() const
{
    if (isHighlighted())
        return centerPartImagePressed();
    return look(centerPartImageNormal(), hasHover() ? centerPartImageHover() : std::nullopt,
                std::nullopt);
}

double VXGeneralButtonCell::sideSegmentWidth() const
{
    if (useSingleImageTemplate())
        return 0.0;
    const auto left = leftSideSegment();
    return left ? left->size().width() : 0.0;
}

double VXGeneralButtonCell::centerSegmentWidth() const
{
    if (useSingleImageTemplate()) {
        const auto image = buttonTemplateImage();
        return (image ? image->size().width() : 0.0) - 2 * sideSegmentWidth();
    }
    const auto centre = centerSegment();
    return centre ? centre->size().width() : 0.0;
}

QString
VXGeneralButtonCell::resourceImageNameWithNameConsideringControlState(const QString &name) const
{
    if (isHighlighted())
        return name + QLatin1String("_pressed");
    if (hasHover())
        return name + QLatin1String("_hover");
    return name;
}

void VXGeneralButtonCell::invalidateResources()
{
    setLeftPartImageNormal(std::nullopt);
    setLeftPartImageHover(std::nullopt);
    setLeftPartImagePressed(std::nullopt);
    setCenterPartImageNormal(std::nullopt);
    setCenterPartImageHover(std::nullopt);
    setCenterPartImagePressed(std::nullopt);
    setRightPartImageNormal(std::nullopt);
    setRightPartImageHover(std::nullopt);
    setRightPartImagePressed(std::nullopt);
    setTemplateImageNormal(std::nullopt);
    setTemplateImageHover(std::nullopt);
    setTemplateImagePressed(std::nullopt);
    if (QWidget *view = controlView())
        view->update();
}

void VXGeneralButtonCell::drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                                QWidget *controlView)
{
    const double x = cellFrame.x(), y = cellFrame.y();
    const double w = cellFrame.width(), h = cellFrame.height();
    // The artwork is drawn in upward-growing coordinates, so a flipped view turns them
    // round first. The frame's y stays as it is: the pieces land on the frame when it
    // starts at 0, as a cell filling its button does.
    std::optional<QTransform> transform;
    if (isFlipped(controlView)) {
        QTransform flip;
        flip.translate(0, y + h);
        flip.scale(1.0, -1.0);
        painter.setTransform(flip, true);
        transform = flip;
    }

    const bool singleTemplate = useSingleImageTemplate();
    const std::optional<VXImage> templateImage =
        singleTemplate ? buttonTemplateImage() : std::nullopt;
    const double templateWidth = templateImage ? templateImage->size().width() : 0.0;
    const double templateHeight = templateImage ? templateImage->size().height() : 0.0;
    const double s = sideSegmentWidth();
    QRectF destination(x, y, s, h);
    QRectF source(0, 0, 0, 0);

    if (singleTemplate) {
        source.setWidth(sideSegmentWidth());
        source.setHeight(templateHeight);
        drawPartOfImage(painter, templateImage, source, destination);
    } else {
        drawImage(painter, leftSideSegment(), destination);
    }

    destination = QRectF(destination.x() + s, y, w - 2 * sideSegmentWidth(), h);
    if (singleTemplate) {
        source =
            QRectF(source.x() + source.width(), source.y(), centerSegmentWidth(), source.height());
        drawPartOfImage(painter, templateImage, source, destination);
    } else {
        drawImage(painter, centerSegment(), destination);
    }

    destination = QRectF(destination.x() + destination.width(), y, sideSegmentWidth(), h);
    if (singleTemplate) {
        source = QRectF(templateWidth - sideSegmentWidth(), source.y(), sideSegmentWidth(),
                        source.height());
        drawPartOfImage(painter, templateImage, source, destination);
    } else {
        drawImage(painter, rightSideSegment(), destination);
    }

    if (transform)
        painter.setTransform(transform->inverted(), true);
    VXButtonCell::drawInteriorWithFrame(painter, cellFrame, controlView);
}

void VXGeneralButtonCell::drawPartOfImage(QPainter &painter, const std::optional<VXImage> &image,
                                          const QRectF &source, const QRectF &destination) const
{
    if (!image || source.width() <= 0 || source.height() <= 0 || destination.width() <= 0 ||
        destination.height() <= 0)
        return;
    // Both system generations draw the same: source over, full opacity, no flipping of
    // their own. The image's top row goes to the destination's top in upward-growing
    // coordinates, i.e. its larger y.
    (void)VXSystemInformation::isSnowLeopardOrGreater();
    painter.save();
    painter.translate(0, destination.top() + destination.bottom());
    painter.scale(1.0, -1.0);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setOpacity(1.0);
    image->drawInRect(painter, destination, source);
    painter.restore();
}

void VXGeneralButtonCell::drawImage(QPainter &painter, const std::optional<VXImage> &image,
                                    const QRectF &destination) const
{
    if (!image)
        return;
    drawPartOfImage(painter, image, QRectF(QPointF(0, 0), image->size()), destination);
}

void VXGeneralButtonCell::setLeftPartImageNormal(const std::optional<VXImage> &image)
{
    d->_leftPartImageNormal = image;
}

void VXGeneralButtonCell::setLeftPartImageHover(const std::optional<VXImage> &image)
{
    d->_leftPartImageHover = image;
}

void VXGeneralButtonCell::setLeftPartImagePressed(const std::optional<VXImage> &image)
{
    d->_leftPartImagePressed = image;
}

void VXGeneralButtonCell::setCenterPartImageNormal(const std::optional<VXImage> &image)
{
    d->_centerPartImageNormal = image;
}

void VXGeneralButtonCell::setCenterPartImageHover(const std::optional<VXImage> &image)
{
    d->_centerPartImageHover = image;
}

void VXGeneralButtonCell::setCenterPartImagePressed(const std::optional<VXImage> &image)
{
    d->_centerPartImagePressed = image;
}

void VXGeneralButtonCell::setRightPartImageNormal(const std::optional<VXImage> &image)
{
    d->_rightPartImageNormal = image;
}

void VXGeneralButtonCell::setRightPartImageHover(const std::optional<VXImage> &image)
{
    d->_rightPartImageHover = image;
}

void VXGeneralButtonCell::setRightPartImagePressed(const std::optional<VXImage> &image)
{
    d->_rightPartImagePressed = image;
}

void VXGeneralButtonCell::setTemplateImageNormal(const std::optional<VXImage> &image)
{
    d->_templateImageNormal = image;
}

void VXGeneralButtonCell::setTemplateImageHover(const std::optional<VXImage> &image)
{
    d->_templateImageHover = image;
}

void VXGeneralButtonCell::setTemplateImagePressed(const std::optional<VXImage> &image)
{
    d->_templateImagePressed = image;
}
