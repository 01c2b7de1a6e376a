#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QColor>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <optional>

// A background band: a two-colour linear gradient (or a solid fill when both colours are
// equal) over the view, optionally with rounded corners, and a one-point line along the
// top and the bottom edge, each with an optional dash pattern.
class QV_WIDGETS_EXPORT VXGradientView : public QWidget
{
    Q_OBJECT
    // The properties a window description or Designer sets. A colour property is a QColor:
    // an invalid one is "no colour".
    Q_PROPERTY(QColor startGradientColor READ startGradientQColor WRITE setStartGradientColor)
    Q_PROPERTY(QColor finishGradientColor READ finishGradientQColor WRITE setFinishGradientColor)
    Q_PROPERTY(QColor topLineColor READ topLineQColor WRITE setTopLineColor)
    Q_PROPERTY(QColor bottomLineColor READ bottomLineQColor WRITE setBottomLineColor)
    Q_PROPERTY(double gradientAngle READ gradientAngle WRITE setGradientAngle)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius)

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
    // The same colours as QColor (an invalid QColor: no colour). Unlike the setters above,
    // these repaint, as a Qt property's setter does.
    QColor startGradientQColor() const;
    void setStartGradientColor(const QColor &color);
    QColor finishGradientQColor() const;
    void setFinishGradientColor(const QColor &color);
    QColor topLineQColor() const;
    void setTopLineColor(const QColor &color);
    QColor bottomLineQColor() const;
    void setBottomLineColor(const QColor &color);
    // Degrees counter-clockwise from the positive x axis: 270 puts the start colour at the
    // top, 90 at the bottom.
    double gradientAngle() const;
    void setGradientAngle(double angle);
    double cornerRadius() const;
    void setCornerRadius(double radius);

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

    struct Private;
    std::unique_ptr<Private> d;
};
