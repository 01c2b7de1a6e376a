#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QColor>

/** Turning a kit colour into a colour Qt draws. */
namespace VXColorConvertion {

/**
 * The QColor to draw a kit colour with (a value the caller owns), converted in the colour's
 * own space: RGB as QColor::fromRgbF(r, g, b, a), a grey as fromRgbF(w, w, w, a); no device
 * or generic RGB conversion is made. Components outside 0..1 are clamped.
 */
QV_WIDGETS_EXPORT QColor newCGColor(const VXColor &color);

} // namespace VXColorConvertion
