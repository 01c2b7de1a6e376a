#pragma once

#include <Quorvelle/Widgets/VXBezierPath.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QRectF>

// The NSBezierPath(Quorvelle) category.
namespace VXBezierPathQuorvelle {

// A rounded rectangle whose stroke of lineWidth stays inside rect: the rectangle is inset by
// half the width on every side, the radii shrink by the same amount, and the path carries
// the width.
QV_WIDGETS_EXPORT VXBezierPath bezierPathWithRoundedRectInsideBounds(const QRectF &rect,
                                                                     double xRadius, double yRadius,
                                                                     double lineWidth);

} // namespace VXBezierPathQuorvelle
