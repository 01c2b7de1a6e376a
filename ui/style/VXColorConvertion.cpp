#include "VXColorConvertion.h"

#include <algorithm>

namespace VXColorConvertion {

namespace {
// QColor refuses components outside 0..1 (an invalid colour); the nearest drawable colour
// is the neutral answer.
float channel(double value)
{
    return float(std::clamp(value, 0.0, 1.0));
}
} // namespace

QColor newCGColor(const VXColor &color)
{
    const double *c = color.components();
    if (color.colorSpace() == VXColor::ColorSpace::CalibratedWhite)
        return QColor::fromRgbF(channel(c[0]), channel(c[0]), channel(c[0]), channel(c[1]));
    return QColor::fromRgbF(channel(c[0]), channel(c[1]), channel(c[2]), channel(c[3]));
}

} // namespace VXColorConvertion
