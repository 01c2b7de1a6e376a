#include "VXGradientView.h"

#include "VXBezierPath.h"
#include "VXColorConvertion.h"
#include "VXCoordinates.h"

#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <mutex>
#include <numbers>

struct VXGradientView::Private
{
    // Colour properties are atomic: a mutex around each read and write.
    std::mutex _colorLock;
    std::optional<VXColor> startGradientColor_;
    std::optional<VXColor> finishGradientColor_;
    std::optional<VXColor> topLineColor_;
    std::optional<VXColor> bottomLineColor_;
    double _gradientAngle = 270.0;
    const double *_topLineDashStyle = nullptr;
    const double *_bottomLineDashStyle = nullptr;
    std::int64_t _topLineDashCount = 0;
    std::int64_t _bottomLineDashCount = 0;
    double _cornerRadius = 0.0;
};

VXGradientView::VXGradientView(QWidget *parent) : QWidget(parent), d(std::make_unique<Private>())
{
    setDefaults();
}

VXGradientView::VXGradientView(const QRect &frame, QWidget *parent)
    : QWidget(parent), d(std::make_unique<Private>())
{
    setGeometry(frame);
    setDefaults();
}

VXGradientView::~VXGradientView() = default;

void VXGradientView::setDefaults()
{
    d->startGradientColor_ = VXColor::controlHighlightColor();
    d->finishGradientColor_ = VXColor::controlShadowColor();
    d->topLineColor_ = VXColor::whiteColor();
    d->bottomLineColor_ = VXColor::disabledControlTextColor();
    d->_gradientAngle = 270.0;
    d->_cornerRadius = 0.0;
}

std::optional<VXColor> VXGradientView::startGradientColor() const
{
    std::lock_guard lock(d->_colorLock);
    return d->startGradientColor_;
}

void VXGradientView::setStartGradientColor(const std::optional<VXColor> &color)
{
    std::lock_guard lock(d->_colorLock);
    d->startGradientColor_ = color;
}

std::optional<VXColor> VXGradientView::finishGradientColor() const
{
    std::lock_guard lock(d->_colorLock);
    return d->finishGradientColor_;
}

void VXGradientView::setFinishGradientColor(const std::optional<VXColor> &color)
{
    std::lock_guard lock(d->_colorLock);
    d->finishGradientColor_ = color;
}

namespace {

QColor toQColor(const std::optional<VXColor> &color)
{
    return color ? VXColorConvertion::newCGColor(*color) : QColor();
}

std::optional<VXColor> fromQColor(const QColor &color)
{
    if (!color.isValid())
        return std::nullopt;
    return VXColor::colorWithQColor(color);
}

} // namespace

QColor VXGradientView::startGradientQColor() const
{
    return toQColor(startGradientColor());
}

void VXGradientView::setStartGradientColor(const QColor &color)
{
    setStartGradientColor(fromQColor(color));
    update();
}

QColor VXGradientView::finishGradientQColor() const
{
    return toQColor(finishGradientColor());
}

void VXGradientView::setFinishGradientColor(const QColor &color)
{
    setFinishGradientColor(fromQColor(color));
    update();
}

QColor VXGradientView::topLineQColor() const
{
    return toQColor(topLineColor());
}

void VXGradientView::setTopLineColor(const QColor &color)
{
    setTopLineColor(fromQColor(color));
    update();
}

QColor VXGradientView::bottomLineQColor() const
{
    return toQColor(bottomLineColor());
}

void VXGradientView::setBottomLineColor(const QColor &color)
{
    setBottomLineColor(fromQColor(color));
    update();
}

std::optional<VXColor> VXGradientView::topLineColor() const
{
    std::lock_guard lock(d->_colorLock);
    return d->topLineColor_;
}

void VXGradientView::setTopLineColor(const std::optional<VXColor> &color)
{
    std::lock_guard lock(d->_colorLock);
    d->topLineColor_ = color;
}

std::optional<VXColor> VXGradientView::bottomLineColor() const
{
    std::lock_guard lock(d->_colorLock);
    return d->bottomLineColor_;
}

void VXGradientView::setBottomLineColor(const std::optional<VXColor> &color)
{
    std::lock_guard lock(d->_colorLock);
    d->bottomLineColor_ = color;
}

void VXGradientView::setTopLineDash(const double *dash, std::int64_t count)
{
    d->_topLineDashStyle = dash;
    d->_topLineDashCount = count;
}

void VXGradientView::setBottomLineDash(const double *dash, std::int64_t count)
{
    d->_bottomLineDashStyle = dash;
    d->_bottomLineDashCount = count;
}

void VXGradientView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawRect(painter);
}

void VXGradientView::drawRect(QPainter &painter) const
{
    const std::optional<VXColor> start = startGradientColor();
    const std::optional<VXColor> finish = finishGradientColor();
    const std::optional<VXColor> topColor = topLineColor();
    const std::optional<VXColor> bottomColor = bottomLineColor();

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    // Everything below is in the view's y-up terms: (x, y) is the bottom-left corner and
    // y + h the top edge.
    painter.setTransform(VXCoordinates::yUpToWidget(height()), true);
    const double x = 0.0, y = 0.0, w = width(), h = height();
    const QRectF bounds(x, y, w, h);
    // The view paints only inside its bounds, whatever device the painter is on.
    painter.setClipRect(bounds, Qt::IntersectClip);

    std::optional<VXBezierPath> shape;
    if (d->_cornerRadius != 0.0 && std::isfinite(d->_cornerRadius))
        shape = VXBezierPath::bezierPathWithRoundedRect(bounds, d->_cornerRadius, d->_cornerRadius);
    const QPainterPath area = shape ? shape->toQPainterPath() : [&] {
        QPainterPath p;
        p.addRect(bounds);
        return p;
    }();

    if (start == finish) {
        if (start)
            painter.fillPath(area, VXColorConvertion::newCGColor(*start));
    } else if (start && finish && std::isfinite(d->_gradientAngle)) {
        // The gradient's axis runs through the centre at the angle, long enough that the
        // rectangle's extreme corners (or edges) get the pure start and finish colours.
        const double radians = d->_gradientAngle * std::numbers::pi / 180.0;
        const double dx = std::cos(radians), dy = std::sin(radians);
        const double half = (std::abs(w * dx) + std::abs(h * dy)) / 2.0;
        const QPointF centre = bounds.center();
        QLinearGradient gradient(centre - QPointF(dx, dy) * half, centre + QPointF(dx, dy) * half);
        gradient.setColorAt(0.0, VXColorConvertion::newCGColor(*start));
        gradient.setColorAt(1.0, VXColorConvertion::newCGColor(*finish));
        painter.fillPath(area, gradient);
    }
    // A missing colour on one side leaves nothing to blend: no fill.

    // One path for both lines; a dash set for the top line stays on it for the bottom one.
    VXBezierPath line;
    line.setLineWidth(1.0);
    if (topColor) {
        if (d->_topLineDashStyle)
            line.setLineDash(d->_topLineDashStyle, d->_topLineDashCount, 0.0);
        line.moveToPoint({x, y + h});
        line.lineToPoint({x + w, y + h});
        line.stroke(painter, *topColor);
    }
    line.removeAllPoints();
    if (bottomColor) {
        if (d->_bottomLineDashStyle)
            line.setLineDash(d->_bottomLineDashStyle, d->_bottomLineDashCount, 0.0);
        line.moveToPoint({x, y});
        line.lineToPoint({x + w, y});
        line.stroke(painter, *bottomColor);
    }
    painter.restore();
}

double VXGradientView::gradientAngle() const
{
    return d->_gradientAngle;
}

void VXGradientView::setGradientAngle(double angle)
{
    d->_gradientAngle = angle;
}

double VXGradientView::cornerRadius() const
{
    return d->_cornerRadius;
}

void VXGradientView::setCornerRadius(double radius)
{
    d->_cornerRadius = radius;
}
