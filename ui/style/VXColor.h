#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>
#include <QMetaType>

class QColor;

/**
 * A colour as the kit's drawing code sees it: a colour space and its components as exact
 * doubles. QColor keeps 16 bits per channel, which would round the palette's decimal
 * components, so colours stay in this form until they are drawn
 * (VXColorConvertion::newCGColor gives the QColor). Components are kept as given, also
 * outside 0..1; conversion clamps them. Stored in a QVariant for attributed strings.
 */
class QV_WIDGETS_EXPORT VXColor
{
public:
    /** The colour space, which fixes the number and meaning of the components. */
    enum class ColorSpace
    {
        CalibratedRGB,   ///< Red, green, blue, alpha.
        CalibratedWhite, ///< White (grey level), alpha.
    };

    /** Transparent black in the grey space, the same as clearColor(). */
    VXColor();

    /** An RGB colour; components from 0 to 1. */
    static VXColor colorWithCalibratedRed(double red, double green, double blue, double alpha);
    /** A grey from 0 (black) to 1 (white). */
    static VXColor colorWithCalibratedWhite(double white, double alpha);
    /** An RGB colour with a QColor's components, for colours that come from Qt (the palette). */
    static VXColor colorWithQColor(const QColor &color);

    /** The colour's space. */
    ColorSpace colorSpace() const { return m_space; }
    /** 4 for RGB, 2 for grey; the alpha is always the last component. */
    int numberOfComponents() const;
    /** The numberOfComponents() components, alpha last; valid while the colour lives. */
    const double *components() const { return m_components; }
    /** The components as a list, alpha last. */
    QList<double> componentList() const;
    /** The alpha component, 0 (transparent) to 1 (opaque). */
    double alphaComponent() const;
    /** The same colour with only its alpha replaced. */
    VXColor colorWithAlphaComponent(double alpha) const;

    /**
     * Colours are equal when they have the same space and exactly equal components: a grey
     * never equals the RGB colour that looks the same.
     */
    bool operator==(const VXColor &other) const;
    /** The opposite of operator==. */
    bool operator!=(const VXColor &other) const { return !(*this == other); }

    /** Opaque white (grey 1). */
    static VXColor whiteColor();
    /** Opaque black (grey 0). */
    static VXColor blackColor();
    /** Transparent black (grey 0, alpha 0). */
    static VXColor clearColor();
    /** Pure blue (RGB 0, 0, 1). */
    static VXColor blueColor();
    /** Pure red (RGB 1, 0, 0). */
    static VXColor redColor();
    /** Orange (RGB 1, 0.5, 0). */
    static VXColor orangeColor();

    /**
     * The application palette's QPalette::Light, read when asked, so it follows the desktop
     * theme (a default palette before the application object exists).
     */
    static VXColor controlHighlightColor();
    /** The application palette's QPalette::Dark, read when asked. */
    static VXColor controlShadowColor();
    /** The application palette's disabled QPalette::ButtonText, read when asked. */
    static VXColor disabledControlTextColor();
    /** The application palette's active QPalette::ButtonText, read when asked. */
    static VXColor controlTextColor();

private:
    ColorSpace m_space = ColorSpace::CalibratedWhite;
    double m_components[4] = {0.0, 0.0, 0.0, 0.0};
};

Q_DECLARE_METATYPE(VXColor)
