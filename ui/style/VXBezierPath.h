#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>

#include <cstdint>

class QPainter;
class QPen;

enum VXBezierPathElement
{
    VXMoveToBezierPathElement = 0,
    VXLineToBezierPathElement = 1,
    VXCurveToBezierPathElement = 2,
    VXClosePathBezierPathElement = 3,
};

enum VXLineJoinStyle
{
    VXMiterLineJoinStyle = 0,
    VXRoundLineJoinStyle = 1,
    VXBevelLineJoinStyle = 2,
};

// A path as the kit's drawing code builds it: elements plus the stroke attributes that
// travel with the path (line width, dash pattern and phase, line join), which QPainterPath
// does not carry. Coordinates are those of the painter it is drawn with.
class QV_WIDGETS_EXPORT VXBezierPath
{
public:
    struct Element
    {
        VXBezierPathElement type = VXMoveToBezierPathElement;
        // moveto/lineto: points[0]; curveto: control 1, control 2, end point; close: none.
        QPointF points[3];
    };

    static VXBezierPath bezierPath() { return {}; }
    static VXBezierPath bezierPathWithRect(const QRectF &rect);
    // Radii are clamped to half the rectangle's width and height; 0 gives a plain rectangle.
    static VXBezierPath bezierPathWithRoundedRect(const QRectF &rect, double xRadius,
                                                  double yRadius);
    static VXBezierPath bezierPathWithOvalInRect(const QRectF &rect);

    void moveToPoint(QPointF point);
    void lineToPoint(QPointF point);
    void curveToPoint(QPointF endPoint, QPointF controlPoint1, QPointF controlPoint2);
    // Relative to the current point (the origin when the path is empty).
    void relativeLineToPoint(QPointF offset);
    void closePath();
    // Drops every element; width, dash and join stay.
    void removeAllPoints();

    std::int64_t elementCount() const { return m_elements.size(); }
    Element elementAtIndex(std::int64_t index) const;
    bool isEmpty() const { return m_elements.isEmpty(); }
    QPointF currentPoint() const;
    QRectF bounds() const;

    double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width) { m_lineWidth = width; }
    VXLineJoinStyle lineJoinStyle() const { return m_lineJoin; }
    void setLineJoinStyle(VXLineJoinStyle style) { m_lineJoin = style; }
    // count entries of pattern (copied); a null pattern or a count of 0 gives a solid line.
    void setLineDash(const double *pattern, std::int64_t count, double phase);
    QList<double> lineDash() const { return m_dash; }
    double lineDashPhase() const { return m_dashPhase; }

    void fill(QPainter &painter, const VXColor &color) const;
    void stroke(QPainter &painter, const VXColor &color) const;
    // The pen a stroke uses: this path's width, dash, join, flat caps, miter limit 10.
    QPen pen(const VXColor &color) const;

    // The elements as they are (an open figure stays open).
    QPainterPath toQPainterPath() const;

private:
    QList<Element> m_elements;
    double m_lineWidth = 1.0;
    VXLineJoinStyle m_lineJoin = VXMiterLineJoinStyle;
    QList<double> m_dash;
    double m_dashPhase = 0.0;
};
