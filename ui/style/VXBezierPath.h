#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>

#include <cstdint>

/**
 * \file
 * VXBezierPath, a path that carries its stroke settings, and its element and join kinds.
 */

class QPainter;
class QPen;

/** The kind of a path element. */
enum VXBezierPathElement
{
    VXMoveToBezierPathElement = 0,    ///< Starts a figure at points[0].
    VXLineToBezierPathElement = 1,    ///< A straight line to points[0].
    VXCurveToBezierPathElement = 2,   ///< A cubic curve: control points 0 and 1, end point 2.
    VXClosePathBezierPathElement = 3, ///< A line back to the figure's start; no points.
};

/** How the segments of a stroked path meet. */
enum VXLineJoinStyle
{
    VXMiterLineJoinStyle = 0, ///< Sharp corners (miter limit 10, beyond which they are cut).
    VXRoundLineJoinStyle = 1, ///< Round corners.
    VXBevelLineJoinStyle = 2, ///< Cut-off corners.
};

/**
 * A path as the kit's drawing code builds it: its elements plus the stroke settings that
 * travel with it (line width, dash pattern and phase, line join), which QPainterPath does
 * not carry. Coordinates are those of the painter it is drawn with, so the same path is
 * y-down in a widget and y-up under a flipping transform.
 */
class QV_WIDGETS_EXPORT VXBezierPath
{
public:
    /** One element of a path. */
    struct Element
    {
        VXBezierPathElement type = VXMoveToBezierPathElement; ///< What the element does.
        /** Move and line: points[0]; curve: control 1, control 2, end point; close: none. */
        QPointF points[3];
    };

    /** An empty path with a line width of 1, no dash and mitred joins. */
    static VXBezierPath bezierPath() { return {}; }
    /** A closed rectangle. */
    static VXBezierPath bezierPathWithRect(const QRectF &rect);
    /**
     * A closed rectangle with elliptical corners. Radii are clamped to half the rectangle's
     * width and height; 0 gives a plain rectangle.
     */
    static VXBezierPath bezierPathWithRoundedRect(const QRectF &rect, double xRadius,
                                                  double yRadius);
    /** A closed ellipse that touches the rectangle's edges, made of four curves. */
    static VXBezierPath bezierPathWithOvalInRect(const QRectF &rect);

    /** Starts a new figure at point. */
    void moveToPoint(QPointF point);
    /** Adds a line to point; on an empty path the figure starts at point itself. */
    void lineToPoint(QPointF point);
    /** Adds a cubic curve to endPoint; on an empty path the figure starts at endPoint. */
    void curveToPoint(QPointF endPoint, QPointF controlPoint1, QPointF controlPoint2);
    /** Adds a line by offset from the current point (the origin when the path is empty). */
    void relativeLineToPoint(QPointF offset);
    /** Closes the current figure; does nothing on an empty path. */
    void closePath();
    /** Drops every element; width, dash and join stay. */
    void removeAllPoints();

    /** The number of elements. */
    std::int64_t elementCount() const { return m_elements.size(); }
    /** The element at index; an index outside the path gives a close element without points. */
    Element elementAtIndex(std::int64_t index) const;
    /** Whether the path has no elements. */
    bool isEmpty() const { return m_elements.isEmpty(); }
    /**
     * Where the next element starts: the last element's end point, the start of the figure
     * just closed, or (0, 0) for an empty path.
     */
    QPointF currentPoint() const;
    /** The smallest rectangle around the path's outline (the stroke's width not included). */
    QRectF bounds() const;

    /** The stroke width in the painter's units (1 by default). */
    double lineWidth() const { return m_lineWidth; }
    /** Sets the stroke width. */
    void setLineWidth(double width) { m_lineWidth = width; }
    /** How stroked segments meet (mitred by default). */
    VXLineJoinStyle lineJoinStyle() const { return m_lineJoin; }
    /** Sets how stroked segments meet. */
    void setLineJoinStyle(VXLineJoinStyle style) { m_lineJoin = style; }
    /**
     * Sets the dash pattern: count lengths of pattern (copied; on, off, on, ...) in the
     * painter's units, starting phase units into it. A null pattern or a count of 0 gives a
     * solid line, and so does a pattern of zeros or with a negative length.
     */
    void setLineDash(const double *pattern, std::int64_t count, double phase);
    /** The dash pattern; empty for a solid line. */
    QList<double> lineDash() const { return m_dash; }
    /** How far into the dash pattern a stroke starts. */
    double lineDashPhase() const { return m_dashPhase; }

    /** Fills the path's inside (even-odd rule) in color. */
    void fill(QPainter &painter, const VXColor &color) const;
    /** Strokes the path in color with its width, dash and join and flat caps. */
    void stroke(QPainter &painter, const VXColor &color) const;
    /** The pen a stroke uses: this path's width, dash, join, flat caps and miter limit 10. */
    QPen pen(const VXColor &color) const;

    /** The elements as a QPainterPath, as they are (an open figure stays open). */
    QPainterPath toQPainterPath() const;

private:
    QList<Element> m_elements;
    double m_lineWidth = 1.0;
    VXLineJoinStyle m_lineJoin = VXMiterLineJoinStyle;
    QList<double> m_dash;
    double m_dashPhase = 0.0;
};
