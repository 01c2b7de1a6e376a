#include "VXBezierPathQuorvelle.h"

namespace VXBezierPathQuorvelle {

VXBezierPath bezierPathWithRoundedRectInsideBounds(const QRectF &rect, double xRadius,
                                                   double yRadius, double lineWidth)
{
    // A stroke is centred on the path: moving the path in by half the width keeps the whole
    // stroke inside rect, and shrinking the radii as much keeps its outer edge on the
    // requested curve.
    const double inset = lineWidth * 0.5;
    const QRectF inner = rect.adjusted(inset, inset, -inset, -inset);
    VXBezierPath path =
        VXBezierPath::bezierPathWithRoundedRect(inner, xRadius - inset, yRadius - inset);
    path.setLineWidth(lineWidth);
    return path;
}

} // namespace VXBezierPathQuorvelle
