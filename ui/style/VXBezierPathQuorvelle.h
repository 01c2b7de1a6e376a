#pragma once

#include <Quorvelle/Widgets/VXBezierPath.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QRectF>

/** The kit's own path shapes. */
namespace VXBezierPathQuorvelle {

/**
 * A rounded rectangle whose stroke of lineWidth stays inside rect, so a border drawn with
 * it is not clipped by the widget: the rectangle is inset by half the width on every side,
 * the radii shrink by the same amount, and the path carries the width.
 */
QV_WIDGETS_EXPORT VXBezierPath bezierPathWithRoundedRectInsideBounds(const QRectF &rect,
                                                                     double xRadius, double yRadius,
                                                                     double lineWidth);

} // namespace VXBezierPathQuorvelle
