#include "VXImageCreation.h"

#include "Bundle.h"
#include "VXSystemRelease.h"

#include <QGuiApplication>
#include <QPaintEngine>
#include <QPainter>

#include <cmath>

using Quorvelle::Bundle;

QSizeF VXImage::size() const
{
    return m_image.deviceIndependentSize();
}

const QImage &VXImage::representationFor(const QPainter &painter) const
{
    if (m_alternate.isNull())
        return m_image;
    // Device pixels per point where the image lands: the ratio of the device the engine
    // really paints on (a widget rendered into an image paints on the image) times the scale
    // of the painter's transform (a flip does not scale).
    const QPaintDevice *target =
        painter.paintEngine() ? painter.paintEngine()->paintDevice() : painter.device();
    const double device = target ? target->devicePixelRatioF() : 1.0;
    const double wanted = device * std::sqrt(std::abs(painter.worldTransform().determinant()));
    // The least dense representation that is dense enough, else the densest.
    const QImage &low =
        m_image.devicePixelRatio() <= m_alternate.devicePixelRatio() ? m_image : m_alternate;
    const QImage &high = &low == &m_image ? m_alternate : m_image;
    return low.devicePixelRatio() >= wanted - 1e-6 ? low : high;
}

void VXImage::drawInRect(QPainter &painter, const QRectF &dest, const QRectF &source) const
{
    if (m_image.isNull())
        return;
    const QImage &image = representationFor(painter);
    const double ratio = image.devicePixelRatio();
    const QRectF pixels = source.isEmpty()
                              ? QRectF(QPointF(0, 0), QSizeF(image.size()))
                              : QRectF(source.topLeft() * ratio, source.size() * ratio);
    painter.drawImage(dest, image, pixels);
}

namespace VXImageCreation {

namespace {

// The bundle's file for an image name: images/<name>.png, or images/<name> when the name
// already ends in ".png".
QString pathForImageResource(const Bundle *bundle, const QString &name)
{
    if (name.isEmpty())
        return {};
    const QString base = QStringLiteral("images/") + name;
    if (name.endsWith(QLatin1String(".png"), Qt::CaseInsensitive))
        return bundle->pathForResource(base, QString());
    return bundle->pathForResource(base, QStringLiteral("png"));
}

std::optional<VXImage> readImage(const QString &name, const QString &path)
{
    if (path.isEmpty())
        return std::nullopt;
    QImage image(path);
    if (image.isNull())
        return std::nullopt;
    return VXImage(name, image);
}

// The bundle's own lookup by name: like the path road, but it also reads the
// double-resolution file "<name>@2x.png" when the bundle has one. The image carries both;
// image() is the one for the application's screens, and drawing picks by the device.
std::optional<VXImage> imageForResource(const Bundle *bundle, const QString &name)
{
    const QString path = pathForImageResource(bundle, name);
    if (path.isEmpty())
        return std::nullopt;
    std::optional<VXImage> plain = readImage(name, path);
    if (!plain || name.endsWith(QLatin1String(".png"), Qt::CaseInsensitive))
        return plain;
    // Most images have no double-resolution file: no path, no read (Qt warns on an empty one).
    const QString densePath = bundle->pathForResource(
        QStringLiteral("images/") + name + QStringLiteral("@2x"), QStringLiteral("png"));
    QImage dense = densePath.isEmpty() ? QImage() : QImage(densePath);
    if (dense.isNull())
        return plain;
    dense.setDevicePixelRatio(2.0);
    auto *app = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    const double screenRatio = app ? app->devicePixelRatio() : 1.0;
    if (screenRatio > 1.0) {
        VXImage image(name, dense);
        image.setAlternateRepresentation(plain->image());
        return image;
    }
    plain->setAlternateRepresentation(dense);
    return plain;
}

} // namespace

std::optional<VXImage> imageNamed(const QString &name)
{
    Bundle *main = Bundle::mainBundle();
    return main ? imageForResource(main, name) : std::nullopt;
}

std::optional<VXImage> imageNamed(const QString &name, Bundle *bundle)
{
    if (!bundle)
        return imageNamed(name);
    if (VXSystemRelease::isLionOrGreater())
        return imageForResource(bundle, name);
    const QString path = pathForImageResource(bundle, name);
    if (path.isEmpty())
        return std::nullopt;
    return readImage(name, path);
}

std::optional<VXImage> imageNamed(const QString &name, Bundle *bundle, bool fallBackToMainBundle)
{
    std::optional<VXImage> image = imageNamed(name, bundle);
    if (!image && fallBackToMainBundle)
        image = imageNamed(name);
    return image;
}

} // namespace VXImageCreation
