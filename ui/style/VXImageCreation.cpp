#include "VXImageCreation.h"

#include "Bundle.h"
#include "VXSystemRelease.h"

#include <QGuiApplication>
#include <QPainter>

using Quorvelle::Bundle;

QSizeF VXImage::size() const
{
    return m_image.deviceIndependentSize();
}

void VXImage::drawInRect(QPainter &painter, const QRectF &dest, const QRectF &source) const
{
    if (m_image.isNull())
        return;
    const double ratio = m_image.devicePixelRatio();
    const QRectF pixels = source.isEmpty()
                              ? QRectF(QPointF(0, 0), QSizeF(m_image.size()))
                              : QRectF(source.topLeft() * ratio, source.size() * ratio);
    painter.drawImage(dest, m_image, pixels);
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

// The bundle's own lookup by name: like the path road, but on a high-density screen it
// takes the double-resolution file "<name>@2x.png" when the bundle has one.
std::optional<VXImage> imageForResource(const Bundle *bundle, const QString &name)
{
    const QString path = pathForImageResource(bundle, name);
    if (path.isEmpty())
        return std::nullopt;
    auto *app = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    const double screenRatio = app ? app->devicePixelRatio() : 1.0;
    if (screenRatio > 1.0 && !name.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        const QString hiDpi = bundle->pathForResource(
            QStringLiteral("images/") + name + QStringLiteral("@2x"), QStringLiteral("png"));
        QImage image(hiDpi);
        if (!image.isNull()) {
            image.setDevicePixelRatio(2.0);
            return VXImage(name, image);
        }
    }
    return readImage(name, path);
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
