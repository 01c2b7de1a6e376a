#include "VXCoordinates.h"

namespace VXCoordinates {

QTransform yUpToWidget(double height)
{
    return QTransform(1.0, 0.0, 0.0, -1.0, 0.0, height);
}

} // namespace VXCoordinates
