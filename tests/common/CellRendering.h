#pragma once

// Offscreen renders of cells and widgets for pixel probes (header only: the harness library
// itself stays free of widgets).

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QWidget>

namespace CellRendering {

// Draws through `draw(painter)` into a transparent image of the given size.
template <typename Draw> QImage render(const QSize &size, Draw draw)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    return image;
}

// What the widget paints, at one pixel per point.
inline QImage grab(QWidget *widget)
{
    QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// Colours equal within a tolerance per channel (antialiasing and rounding).
inline bool near(const QColor &a, const QColor &b, int tolerance = 3)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance && qAbs(a.alpha() - b.alpha()) <= tolerance;
}

inline QColor pixel(const QImage &image, double x, double y)
{
    return image.pixelColor(int(x), int(y));
}

} // namespace CellRendering
