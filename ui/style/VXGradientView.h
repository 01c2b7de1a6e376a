#pragma once

#include "VXColor.h"

#include <QWidget>

#include <cstdint>
#include <mutex>
#include <optional>

// A background band: a two-colour linear gradient (or a solid fill when both colours are
// equal) over the view, optionally with rounded corners, and a one-point line along the
// top and the bottom edge, each with an optional dash pattern.
class VXGradientView : public QWidget
{
    Q_OBJECT
public:
    explicit VXGradientView(QWidget *parent = nullptr);
    // initWithFrame: a view at frame (parent coordinates).
    explicit VXGradientView(const QRect &frame, QWidget *parent = nullptr);
    ~VXGradientView() override;

    // Colours: std::nullopt is "no colour". Setting a property does not repaint by itself.
    std::optional<VXColor> startGradientColor() const;
    void setStartGradientColor(const std::optional<VXColor> &color);
    std::optional<VXColor> finishGradientColor() const;
    void setFinishGradientColor(const std::optional<VXColor> &color);
    std::optional<VXColor> topLineColor() const;
    void setTopLineColor(const std::optional<VXColor> &color);
    std::optional<VXColor> bottomLineColor() const;
    void setBottomLineColor(const std::optional<VXColor> &color);
    // Degrees counter-clockwise from the positive x axis: 270 puts the start colour at the
    // top, 90 at the bottom.
    double gradientAngle() const { return _gradientAngle; }
    void setGradientAngle(double angle) { _gradientAngle = angle; }
    double cornerRadius() const { return _cornerRadius; }
    void setCornerRadius(double radius) { _cornerRadius = radius; }

    // The dash arrays are only referenced: the caller keeps them alive while the view may
    // draw. A null pointer means a solid line.
    void setTopLineDash(const double *dash, std::int64_t count);
    void setBottomLineDash(const double *dash, std::int64_t count);

    // Paints the whole view into painter, whose coordinates are the widget's; the rect
    // argument of drawRect: is not used, so there is none.
    void drawRect(QPainter &painter) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void setDefaults();

    // Colour properties are atomic: a mutex around each read and write.
    mutable std::mutex _colorLock;
    std::optional<VXColor> startGradientColor_;
    std::optional<VXColor> finishGradientColor_;
    std::optional<VXColor> topLineColor_;
    std::optional<VXColor> bottomLineColor_;
    double _gradientAngle = 270.0;
    const double *_topLineDashStyle = nullptr;
    const double *_bottomLineDashStyle = nullptr;
    std::int64_t _topLineDashCount = 0;
    std::int64_t _bottomLineDashCount = 0;
    double _cornerRadius = 0.0;
};
