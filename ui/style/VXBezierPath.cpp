#include "VXBezierPath.h"

#include "VXColorConvertion.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace {
// Control-point distance of a cubic Bézier quarter circle, as a fraction of the radius.
constexpr double kappa = 0.55228474983079356;
} // namespace

VXBezierPath VXBezierPath::bezierPathWithRect(const QRectF &rect)
{
    VXBezierPath path;
    const QRectF r = rect.normalized();
    path.moveToPoint(r.topLeft());
    path.lineToPoint(r.topRight());
    path.lineToPoint(r.bottomRight());
    path.lineToPoint(r.bottomLeft());
    path.closePath();
    return path;
}

VXBezierPath VXBezierPath::bezierPathWithRoundedRect(const QRectF &rect, double xRadius,
                                                     double yRadius)
{
    const QRectF r = rect.normalized();
    const double rx = std::clamp(xRadius, 0.0, r.width() / 2.0);
    const double ry = std::clamp(yRadius, 0.0, r.height() / 2.0);
    if (!(rx > 0.0) || !(ry > 0.0)) // also catches NaN radii
        return bezierPathWithRect(r);
    const double l = r.left(), t = r.top(), rt = r.right(), b = r.bottom();
    const double kx = rx * kappa, ky = ry * kappa;
    VXBezierPath path;
    path.moveToPoint({l + rx, t});
    path.lineToPoint({rt - rx, t});
    path.curveToPoint({rt, t + ry}, {rt - rx + kx, t}, {rt, t + ry - ky});
    path.lineToPoint({rt, b - ry});
    path.curveToPoint({rt - rx, b}, {rt, b - ry + ky}, {rt - rx + kx, b});
    path.lineToPoint({l + rx, b});
    path.curveToPoint({l, b - ry}, {l + rx - kx, b}, {l, b - ry + ky});
    path.lineToPoint({l, t + ry});
    path.curveToPoint({l + rx, t}, {l, t + ry - ky}, {l + rx - kx, t});
    path.closePath();
    return path;
}

VXBezierPath VXBezierPath::bezierPathWithOvalInRect(const QRectF &rect)
{
    const QRectF r = rect.normalized();
    const double rx = r.width() / 2.0, ry = r.height() / 2.0;
    const double cx = r.center().x(), cy = r.center().y();
    const double kx = rx * kappa, ky = ry * kappa;
    VXBezierPath path;
    path.moveToPoint({cx + rx, cy});
    path.curveToPoint({cx, cy + ry}, {cx + rx, cy + ky}, {cx + kx, cy + ry});
    path.curveToPoint({cx - rx, cy}, {cx - kx, cy + ry}, {cx - rx, cy + ky});
    path.curveToPoint({cx, cy - ry}, {cx - rx, cy - ky}, {cx - kx, cy - ry});
    path.curveToPoint({cx + rx, cy}, {cx + kx, cy - ry}, {cx + rx, cy - ky});
    path.closePath();
    return path;
}

void VXBezierPath::moveToPoint(QPointF point)
{
    Element e;
    e.type = VXMoveToBezierPathElement;
    e.points[0] = point;
    m_elements.append(e);
}

void VXBezierPath::lineToPoint(QPointF point)
{
    // A line needs a figure to belong to; the platform starts one at the point itself.
    if (m_elements.isEmpty())
        moveToPoint(point);
    Element e;
    e.type = VXLineToBezierPathElement;
    e.points[0] = point;
    m_elements.append(e);
}

void VXBezierPath::curveToPoint(QPointF endPoint, QPointF controlPoint1, QPointF controlPoint2)
{
    if (m_elements.isEmpty())
        moveToPoint(endPoint);
    Element e;
    e.type = VXCurveToBezierPathElement;
    e.points[0] = controlPoint1;
    e.points[1] = controlPoint2;
    e.points[2] = endPoint;
    m_elements.append(e);
}

void VXBezierPath::relativeLineToPoint(QPointF offset)
{
    lineToPoint(currentPoint() + offset);
}

void VXBezierPath::closePath()
{
    if (m_elements.isEmpty())
        return;
    Element e;
    e.type = VXClosePathBezierPathElement;
    m_elements.append(e);
}

void VXBezierPath::removeAllPoints()
{
    m_elements.clear();
}

VXBezierPath::Element VXBezierPath::elementAtIndex(std::int64_t index) const
{
    if (index < 0 || index >= m_elements.size())
        return {VXClosePathBezierPathElement, {}};
    return m_elements.at(qsizetype(index));
}

QPointF VXBezierPath::currentPoint() const
{
    if (m_elements.isEmpty())
        return {};
    const Element &last = m_elements.last();
    if (last.type == VXCurveToBezierPathElement)
        return last.points[2];
    if (last.type != VXClosePathBezierPathElement)
        return last.points[0];
    // After a close, the current point is the start of the figure just closed.
    for (qsizetype i = m_elements.size() - 1; i >= 0; --i) {
        if (m_elements.at(i).type == VXMoveToBezierPathElement)
            return m_elements.at(i).points[0];
    }
    return {};
}

QRectF VXBezierPath::bounds() const
{
    return toQPainterPath().boundingRect();
}

void VXBezierPath::setLineDash(const double *pattern, std::int64_t count, double phase)
{
    m_dash.clear();
    if (pattern && count > 0)
        m_dash = QList<double>(pattern, pattern + count);
    m_dashPhase = phase;
}

QPen VXBezierPath::pen(const VXColor &color) const
{
    QPen pen(VXColorConvertion::newCGColor(color));
    // A negative or non-finite width has no drawing; the default width stands in.
    pen.setWidthF(std::isfinite(m_lineWidth) && m_lineWidth >= 0.0 ? m_lineWidth : 1.0);
    pen.setCapStyle(Qt::FlatCap);
    pen.setMiterLimit(10.0);
    switch (m_lineJoin) {
    case VXRoundLineJoinStyle:
        pen.setJoinStyle(Qt::RoundJoin);
        break;
    case VXBevelLineJoinStyle:
        pen.setJoinStyle(Qt::BevelJoin);
        break;
    case VXMiterLineJoinStyle:
        pen.setJoinStyle(Qt::SvgMiterJoin);
        break;
    }
    // A pattern with a negative entry, or with nothing but zeros, draws nothing sensible:
    // the line stays solid. Qt measures dashes in pen widths, the kit in points, and an odd
    // pattern repeats with on and off swapped, as in PostScript.
    // Non-finite entries would leave the dasher without progress.
    const bool usable =
        !m_dash.isEmpty() &&
        std::all_of(m_dash.begin(), m_dash.end(),
                    [](double d) { return std::isfinite(d) && d >= 0.0; }) &&
        std::any_of(m_dash.begin(), m_dash.end(), [](double d) { return d > 0.0; }) &&
        std::isfinite(m_dashPhase);
    if (usable) {
        const double unit = pen.widthF() > 0.0 ? pen.widthF() : 1.0;
        QList<qreal> pattern;
        const int repeats = m_dash.size() % 2 ? 2 : 1;
        for (int r = 0; r < repeats; ++r) {
            for (double d : m_dash)
                pattern.append(d / unit);
        }
        pen.setDashPattern(pattern);
        pen.setDashOffset(m_dashPhase / unit);
    }
    return pen;
}

void VXBezierPath::fill(QPainter &painter, const VXColor &color) const
{
    painter.fillPath(toQPainterPath(), VXColorConvertion::newCGColor(color));
}

void VXBezierPath::stroke(QPainter &painter, const VXColor &color) const
{
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen(color));
    painter.drawPath(toQPainterPath());
    painter.restore();
}

QPainterPath VXBezierPath::toQPainterPath() const
{
    QPainterPath path;
    for (const Element &e : m_elements) {
        switch (e.type) {
        case VXMoveToBezierPathElement:
            path.moveTo(e.points[0]);
            break;
        case VXLineToBezierPathElement:
            path.lineTo(e.points[0]);
            break;
        case VXCurveToBezierPathElement:
            path.cubicTo(e.points[0], e.points[1], e.points[2]);
            break;
        case VXClosePathBezierPathElement:
            path.closeSubpath();
            break;
        }
    }
    return path;
}
