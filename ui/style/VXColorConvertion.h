#pragma once

#include "VXColor.h"

#include <QColor>

// The NSColor(Convertion) category.
namespace VXColorConvertion {

// The drawing colour of a kit colour, converted in the colour's own space: a grey stays a
// grey (QColor::fromRgbF(w, w, w, a)), no device or generic RGB conversion is made. The
// result is a value the caller owns.
QColor newCGColor(const VXColor &color);

} // namespace VXColorConvertion
