#pragma once

#include <QRectF>
#include <QTransform>

// The one place where geometry given in the platform's y-up view coordinates (origin at
// the bottom-left corner, y growing upwards) meets Qt's y-down widget coordinates.
namespace VXCoordinates {

// Maps y-up coordinates of a view of the given height to its y-down widget coordinates:
// y-up (x, y) lands at (x, height - y). Set it on a painter to draw y-up geometry.
QTransform yUpToWidget(double height);

} // namespace VXCoordinates
