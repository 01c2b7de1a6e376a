#include "VXColor.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

VXColor::VXColor() = default;

VXColor VXColor::colorWithCalibratedRed(double red, double green, double blue, double alpha)
{
    VXColor c;
    c.m_space = ColorSpace::CalibratedRGB;
    c.m_components[0] = red;
    c.m_components[1] = green;
    c.m_components[2] = blue;
    c.m_components[3] = alpha;
    return c;
}

VXColor VXColor::colorWithCalibratedWhite(double white, double alpha)
{
    VXColor c;
    c.m_space = ColorSpace::CalibratedWhite;
    c.m_components[0] = white;
    c.m_components[1] = alpha;
    return c;
}

VXColor VXColor::colorWithQColor(const QColor &color)
{
    const QColor rgb = color.toRgb();
    return colorWithCalibratedRed(rgb.redF(), rgb.greenF(), rgb.blueF(), rgb.alphaF());
}

int VXColor::numberOfComponents() const
{
    return m_space == ColorSpace::CalibratedRGB ? 4 : 2;
}

QList<double> VXColor::componentList() const
{
    return QList<double>(m_components, m_components + numberOfComponents());
}

double VXColor::alphaComponent() const
{
    return m_components[numberOfComponents() - 1];
}

VXColor VXColor::colorWithAlphaComponent(double alpha) const
{
    VXColor c = *this;
    c.m_components[numberOfComponents() - 1] = alpha;
    return c;
}

bool VXColor::operator==(const VXColor &other) const
{
    return m_space == other.m_space &&
           std::equal(m_components, m_components + numberOfComponents(), other.m_components);
}

VXColor VXColor::whiteColor()
{
    return colorWithCalibratedWhite(1.0, 1.0);
}

VXColor VXColor::blackColor()
{
    return colorWithCalibratedWhite(0.0, 1.0);
}

VXColor VXColor::clearColor()
{
    return colorWithCalibratedWhite(0.0, 0.0);
}

VXColor VXColor::blueColor()
{
    return colorWithCalibratedRed(0.0, 0.0, 1.0, 1.0);
}

VXColor VXColor::redColor()
{
    return colorWithCalibratedRed(1.0, 0.0, 0.0, 1.0);
}

VXColor VXColor::orangeColor()
{
    return colorWithCalibratedRed(1.0, 0.5, 0.0, 1.0);
}

namespace {
// The application's palette; a default palette before the application object exists.
QPalette currentPalette()
{
    return QGuiApplication::instance() ? QGuiApplication::palette() : QPalette();
}
} // namespace

VXColor VXColor::controlHighlightColor()
{
    return colorWithQColor(currentPalette().color(QPalette::Active, QPalette::Light));
}

VXColor VXColor::controlShadowColor()
{
    return colorWithQColor(currentPalette().color(QPalette::Active, QPalette::Dark));
}

VXColor VXColor::disabledControlTextColor()
{
    return colorWithQColor(currentPalette().color(QPalette::Disabled, QPalette::ButtonText));
}

VXColor VXColor::controlTextColor()
{
    return colorWithQColor(currentPalette().color(QPalette::Active, QPalette::ButtonText));
}
