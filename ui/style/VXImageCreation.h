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

// An image that knows the name it was looked up by (the button cells compare it).
class QV_WIDGETS_EXPORT VXImage
{
public:
    VXImage() = default;
    VXImage(QString name, QImage image) : m_name(std::move(name)), m_image(std::move(image)) {}

    QString name() const { return m_name; }
    // The representation for the application's screens (the "@2x" one where they are dense).
    QImage image() const { return m_image; }
    // Another representation of the same image at another density, which drawInRect takes
    // where the device it draws on is closer to that density.
    void setAlternateRepresentation(QImage image) { m_alternate = std::move(image); }
    // In points: pixels divided by the image's device pixel ratio.
    QSizeF size() const;
    bool isValid() const { return !m_image.isNull(); }

    // Draws the part source of the image (in points; an empty rect is the whole image)
    // scaled into dest, from the representation that suits the painter's device pixels.
    void drawInRect(QPainter &painter, const QRectF &dest, const QRectF &source = {}) const;

private:
    const QImage &representationFor(const QPainter &painter) const;

    QString m_name;
    QImage m_image;
    QImage m_alternate;
};

// The NSImage(VXImageCreation) category. Image files are PNGs in a bundle's images/ folder,
// "<name>.png" (or the name itself when it already carries ".png"); the application's
// named images are the main bundle's.
namespace VXImageCreation {

// The application's named image (the main bundle's images/ folder), or nullopt.
QV_WIDGETS_EXPORT std::optional<VXImage> imageNamed(const QString &name);
// With no bundle: imageNamed(name). With a bundle: that bundle's image of that name only.
QV_WIDGETS_EXPORT std::optional<VXImage> imageNamed(const QString &name, Quorvelle::Bundle *bundle);
// As above, then the application's named image when that gave nothing and the flag is set.
QV_WIDGETS_EXPORT std::optional<VXImage> imageNamed(const QString &name, Quorvelle::Bundle *bundle,
                                                    bool fallBackToMainBundle);

} // namespace VXImageCreation
