#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QColor>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <optional>

/**
 * A background band for headers and panels: a two-colour linear gradient (or a solid fill
 * when both colours are equal) over the view, optionally with rounded corners, and a
 * one-point line along the top and the bottom edge, each with an optional dash pattern.
 *
 * Its defaults follow the desktop theme: the palette's Light to Dark from top to bottom, a
 * white top line and a bottom line in the disabled text colour. The colour accessors are
 * thread-safe. Bad values give neutral results: a non-finite angle draws no gradient, a
 * non-finite corner radius square corners.
 */
class QV_WIDGETS_EXPORT VXGradientView : public QWidget
{
    Q_OBJECT
    // The properties a window description or Designer sets. A colour property is a QColor:
    // an invalid one is "no colour".
    /** The start colour for Designer and window descriptions; an invalid QColor is none. */
    Q_PROPERTY(QColor startGradientColor READ startGradientQColor WRITE setStartGradientColor)
    /** The finish colour; an invalid QColor is none. */
    Q_PROPERTY(QColor finishGradientColor READ finishGradientQColor WRITE setFinishGradientColor)
    /** The top line's colour; an invalid QColor draws no line. */
    Q_PROPERTY(QColor topLineColor READ topLineQColor WRITE setTopLineColor)
    /** The bottom line's colour; an invalid QColor draws no line. */
    Q_PROPERTY(QColor bottomLineColor READ bottomLineQColor WRITE setBottomLineColor)
    /** The gradient's direction in degrees (see gradientAngle()). */
    Q_PROPERTY(double gradientAngle READ gradientAngle WRITE setGradientAngle)
    /** The corner radius in points. */
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius)

public:
    /** A view with the default colours, angle 270 and square corners. */
    explicit VXGradientView(QWidget *parent = nullptr);
    /**
     * \overload
     * Placed at frame, in the parent's coordinates.
     */
    explicit VXGradientView(const QRect &frame, QWidget *parent = nullptr);
    ~VXGradientView() override;

    /**
     * The colour at the gradient's start; std::nullopt is no colour. Neither colour set:
     * no fill; only one of them set: no fill either (there is nothing to blend).
     */
    std::optional<VXColor> startGradientColor() const;
    /** Sets the start colour. The VXColor setters do not repaint: call update(). */
    void setStartGradientColor(const std::optional<VXColor> &color);
    /** The colour at the gradient's end; std::nullopt is no colour. */
    std::optional<VXColor> finishGradientColor() const;
    /** Sets the finish colour (equal to the start colour: a solid fill). */
    void setFinishGradientColor(const std::optional<VXColor> &color);
    /** The colour of the line along the top edge; std::nullopt draws none. */
    std::optional<VXColor> topLineColor() const;
    /** Sets the top line's colour. */
    void setTopLineColor(const std::optional<VXColor> &color);
    /** The colour of the line along the bottom edge; std::nullopt draws none. */
    std::optional<VXColor> bottomLineColor() const;
    /** Sets the bottom line's colour. */
    void setBottomLineColor(const std::optional<VXColor> &color);
    /** The start colour as a QColor (invalid when there is none), for the Qt property. */
    QColor startGradientQColor() const;
    /**
     * \overload
     * Sets the start colour from a QColor (invalid: none) and, unlike the VXColor setters,
     * repaints, as a Qt property's setter does.
     */
    void setStartGradientColor(const QColor &color);
    /** The finish colour as a QColor (invalid when there is none). */
    QColor finishGradientQColor() const;
    /**
     * \overload
     * Sets the finish colour from a QColor (invalid: none) and repaints.
     */
    void setFinishGradientColor(const QColor &color);
    /** The top line's colour as a QColor (invalid when there is none). */
    QColor topLineQColor() const;
    /**
     * \overload
     * Sets the top line's colour from a QColor (invalid: none) and repaints.
     */
    void setTopLineColor(const QColor &color);
    /** The bottom line's colour as a QColor (invalid when there is none). */
    QColor bottomLineQColor() const;
    /**
     * \overload
     * Sets the bottom line's colour from a QColor (invalid: none) and repaints.
     */
    void setBottomLineColor(const QColor &color);
    /**
     * The gradient's direction in degrees, counted counter-clockwise from the positive x
     * axis in y-up terms: 270 (the default) puts the start colour on the top row, 90 on the
     * bottom row, 0 on the left.
     */
    double gradientAngle() const;
    /** Sets the gradient's direction. */
    void setGradientAngle(double angle);
    /** The radius of the fill's corners in points; 0 (the default) is square. */
    double cornerRadius() const;
    /** Sets the corner radius; it is clamped to half the view's width and height. */
    void setCornerRadius(double radius);

    /**
     * Dashes the top line: count lengths in points (on, off, ...). The array is only
     * referenced, not copied: the caller keeps it alive while the view may draw. A null
     * pointer means a solid line.
     */
    void setTopLineDash(const double *dash, std::int64_t count);
    /** Dashes the bottom line, as setTopLineDash. */
    void setBottomLineDash(const double *dash, std::int64_t count);

    /**
     * Paints the whole view with painter, whose coordinates are the widget's (y-down):
     * what paintEvent does, so a test or a print can render the view into any device.
     */
    void drawRect(QPainter &painter) const;

protected:
    /** Paints the view through drawRect. */
    void paintEvent(QPaintEvent *event) override;

private:
    void setDefaults();

    struct Private;
    std::unique_ptr<Private> d;
};
