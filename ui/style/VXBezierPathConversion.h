#pragma once

#include <Quorvelle/Widgets/VXBezierPath.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QPainterPath>

#include <optional>

// The NSBezierPath(Conversion) category.
namespace VXBezierPathConversion {

// The drawing path of a kit path, or nothing for a path without elements. An open final
// figure (one that ends with a line or a curve) comes back closed.
QV_WIDGETS_EXPORT std::optional<QPainterPath> newCGPath(const VXBezierPath &path);

} // namespace VXBezierPathConversion
