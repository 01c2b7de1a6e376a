#pragma once

// Pixel probes for drawing tests: render into an image, then ask what colour lies at a
// point the drawing rules fix.

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QString>

#include <cstdlib>
#include <functional>

namespace PixelProbe {

// A transparent (or filled) ARGB image of size points at the given device pixel ratio.
inline QImage canvas(int width, int height, double ratio = 1.0, QColor fill = Qt::transparent)
{
    QImage image(int(width * ratio), int(height * ratio), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(fill);
    return image;
}

inline QImage render(int width, int height, double ratio,
                     const std::function<void(QPainter &)> &draw, QColor fill = Qt::transparent)
{
    QImage image = canvas(width, height, ratio, fill);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    return image;
}

// The colour at device pixel (x, y), un-premultiplied.
inline QColor at(const QImage &image, int x, int y)
{
    return image.pixelColor(x, y);
}

// Every channel within tolerance (0..255 units).
inline bool near(const QColor &a, const QColor &b, int tolerance = 2)
{
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance &&
           std::abs(a.alpha() - b.alpha()) <= tolerance;
}

inline QString describe(const QColor &c)
{
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(c.red())
        .arg(c.green())
        .arg(c.blue())
        .arg(c.alpha());
}

} // namespace PixelProbe

// QVERIFY2 with both colours in the message.
#define QV_COMPARE_COLOR(actual, expected, tolerance)                                              \
    QVERIFY2(PixelProbe::near((actual), (expected), (tolerance)),                                  \
             qPrintable(PixelProbe::describe(actual) + QStringLiteral(" != ") +                    \
                        PixelProbe::describe(expected)))
