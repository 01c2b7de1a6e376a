#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>
#include <QMetaType>

class QColor;

// A colour value as the kit's drawing code sees it: a colour space and its components as
// exact doubles. QColor keeps 16 bits per channel, which would round the palette's decimal
// components, so colours stay in this form until the moment they are drawn (newCGColor).
// Equality is the platform's colour equality: same space, equal components.
class QV_WIDGETS_EXPORT VXColor
{
public:
    enum class ColorSpace
    {
        CalibratedRGB,   // red, green, blue, alpha
        CalibratedWhite, // white, alpha
    };

    // Transparent black in the grey space (the platform's clear colour).
    VXColor();

    static VXColor colorWithCalibratedRed(double red, double green, double blue, double alpha);
    static VXColor colorWithCalibratedWhite(double white, double alpha);
    // An RGB colour with QColor's components (used for the desktop palette's colours).
    static VXColor colorWithQColor(const QColor &color);

    ColorSpace colorSpace() const { return m_space; }
    // 4 for RGB, 2 for grey; the alpha is always the last component.
    int numberOfComponents() const;
    const double *components() const { return m_components; }
    QList<double> componentList() const;
    double alphaComponent() const;
    // The same colour with only its alpha replaced.
    VXColor colorWithAlphaComponent(double alpha) const;

    bool operator==(const VXColor &other) const;
    bool operator!=(const VXColor &other) const { return !(*this == other); }

    // The platform's standard colours.
    static VXColor whiteColor();  // grey 1.0
    static VXColor blackColor();  // grey 0.0
    static VXColor clearColor();  // grey 0.0, alpha 0.0
    static VXColor blueColor();   // RGB 0, 0, 1
    static VXColor redColor();    // RGB 1, 0, 0
    static VXColor orangeColor(); // RGB 1, 0.5, 0

    // System colours, read from the application's palette when asked (so they follow the
    // desktop theme).
    static VXColor controlHighlightColor();    // QPalette::Light
    static VXColor controlShadowColor();       // QPalette::Dark
    static VXColor disabledControlTextColor(); // QPalette::Disabled, QPalette::ButtonText
    static VXColor controlTextColor();         // QPalette::Active, QPalette::ButtonText

private:
    ColorSpace m_space = ColorSpace::CalibratedWhite;
    double m_components[4] = {0.0, 0.0, 0.0, 0.0};
};

Q_DECLARE_METATYPE(VXColor)
