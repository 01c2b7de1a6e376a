#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QColor>

// The NSColor(Convertion) category.
namespace VXColorConvertion {

// The drawing colour of a kit colour, converted in the colour's own space: a grey stays a
// grey (QColor::fromRgbF(w, w, w, a)), no device or generic RGB conversion is made. The
// result is a value the caller owns.
QV_WIDGETS_EXPORT QColor newCGColor(const VXColor &color);

} // namespace VXColorConvertion
