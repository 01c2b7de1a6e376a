#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <optional>

namespace Quorvelle {
class Bundle;
}
class QPainter;

/**
 * An image that knows the name it was looked up by (a cell compares names to tell its
 * artwork apart), with up to two representations of different pixel densities.
 */
class QV_WIDGETS_EXPORT VXImage
{
public:
    /** A null image without a name; isValid() is false. */
    VXImage() = default;
    /** An image of name with one representation. */
    VXImage(QString name, QImage image) : m_name(std::move(name)), m_image(std::move(image)) {}

    /** The name it was looked up by. */
    QString name() const { return m_name; }
    /** The representation for the application's screens (the "\@2x" one where they are dense). */
    QImage image() const { return m_image; }
    /**
     * Adds the same image at another density (set its QImage::devicePixelRatio), which
     * drawInRect takes where the device it draws on is closer to that density.
     */
    void setAlternateRepresentation(QImage image) { m_alternate = std::move(image); }
    /** The size in points: pixels divided by the image's device pixel ratio. */
    QSizeF size() const;
    /** False for a null image. */
    bool isValid() const { return !m_image.isNull(); }

    /**
     * Draws the part source of the image (in points; an empty rect is the whole image)
     * scaled into dest, from the least dense representation that is dense enough for the
     * device the painter paints on, times its scale. A null image draws nothing.
     */
    void drawInRect(QPainter &painter, const QRectF &dest, const QRectF &source = {}) const;

private:
    const QImage &representationFor(const QPainter &painter) const;

    QString m_name;
    QImage m_image;
    QImage m_alternate;
};

/**
 * Looking images up by name. Image files are PNGs in a bundle's images/ folder,
 * "\<name\>.png" (or the name itself when it already ends in ".png"), with an optional
 * "\<name\>\@2x.png" for dense screens that the image then carries as its second
 * representation. The application's named images are the main bundle's.
 */
namespace VXImageCreation {

/** The application's named image (the main bundle's images/ folder), or std::nullopt. */
QV_WIDGETS_EXPORT std::optional<VXImage> imageNamed(const QString &name);
/**
 * \overload
 * With a bundle: that bundle's image of that name only; with nullptr: the
 * application's named image.
 */
QV_WIDGETS_EXPORT std::optional<VXImage> imageNamed(const QString &name, Quorvelle::Bundle *bundle);
/**
 * \overload
 * As above, then the application's named image when that gave nothing and
 * fallBackToMainBundle is set.
 */
QV_WIDGETS_EXPORT std::optional<VXImage> imageNamed(const QString &name, Quorvelle::Bundle *bundle,
                                                    bool fallBackToMainBundle);

} // namespace VXImageCreation
