#include "VXBezierPathConversion.h"

namespace VXBezierPathConversion {

std::optional<QPainterPath> newCGPath(const VXBezierPath &path)
{
    if (path.elementCount() < 1)
        return std::nullopt;
    QPainterPath result;
    bool closed = true;
    for (std::int64_t i = 0; i < path.elementCount(); ++i) {
        const VXBezierPath::Element e = path.elementAtIndex(i);
        switch (e.type) {
        case VXMoveToBezierPathElement:
            result.moveTo(e.points[0]);
            break;
        case VXLineToBezierPathElement:
            result.lineTo(e.points[0]);
            closed = false;
            break;
        case VXCurveToBezierPathElement:
            result.cubicTo(e.points[0], e.points[1], e.points[2]);
            closed = false;
            break;
        case VXClosePathBezierPathElement:
            result.closeSubpath();
            closed = true;
            break;
        }
    }
    // Drawing-layer fills and clips treat a figure as a region, so an open last figure is
    // closed.
    if (!closed)
        result.closeSubpath();
    return result;
}

} // namespace VXBezierPathConversion
