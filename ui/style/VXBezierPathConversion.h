#pragma once

#include <Quorvelle/Widgets/VXBezierPath.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QPainterPath>

#include <optional>

/** Turning a kit path into a path Qt draws. */
namespace VXBezierPathConversion {

/**
 * The QPainterPath of a kit path (a value the caller owns), or std::nullopt for a path
 * without elements. An open final figure (one that ends with a line or a curve) comes back
 * closed. The stroke settings are not part of it; use VXBezierPath::pen for those.
 */
QV_WIDGETS_EXPORT std::optional<QPainterPath> newCGPath(const VXBezierPath &path);

} // namespace VXBezierPathConversion
