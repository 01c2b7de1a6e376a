#pragma once

// Geometry and artwork the two flat looks share (VXFlatButtonCell, VXFlatBorderedButtonCell).

#include "VXColor.h"
#include "VXImageCreation.h"

#include <QRectF>

namespace Quorvelle {

// The padding both flat looks share: the interior 10 points in from each side, starting one
// point down at full height; the title one point higher than the platform puts it.
QRectF flatInteriorFrame(const QRectF &cellFrame);
QRectF flatTitleFrame(const QRectF &titleFrame);

// An image of the same size in which the source's shape is one solid colour.
VXImage etchedImageWithSolidColor(const VXImage &image, const VXColor &color, bool flip,
                                  bool innerShadow);

} // namespace Quorvelle
