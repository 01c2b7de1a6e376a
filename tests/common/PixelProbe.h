#pragma once

// Pixel probes for drawing tests: draw offscreen, then ask what colour lies at a point the
// drawing rules fix. Header only: the harness library itself stays free of widgets.

#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QTest>
#include <QWidget>

namespace PixelProbe {

// Draws through `draw(painter)`, antialiased as the widgets paint, into an image of `size`
// points at `ratio` device pixels per point.
template <typename Draw>
QImage render(QSize size, Draw draw, double ratio = 1.0, QColor fill = Qt::transparent)
{
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(fill);
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

// The colour at device pixel (x, y), un-premultiplied.
inline QColor at(const QImage &image, double x, double y)
{
    return image.pixelColor(int(x), int(y));
}

// Every channel within tolerance (antialiasing and rounding).
inline bool near(const QColor &a, const QColor &b, int tolerance = 3)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance && qAbs(a.alpha() - b.alpha()) <= tolerance;
}

// Counts the paint events of the widgets it filters and collects their regions.
struct PaintSpy : QObject
{
    int paints = 0;
    QRegion painted;
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            ++paints;
            painted += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }
};

} // namespace PixelProbe

// QVERIFY2 with both colours in the message.
#define QV_COMPARE_COLOR(actual, expected, tolerance)                                              \
    QVERIFY2(PixelProbe::near((actual), (expected), (tolerance)),                                  \
             qPrintable((actual).name(QColor::HexArgb) + QStringLiteral(" != ") +                  \
                        QColor(expected).name(QColor::HexArgb)))
