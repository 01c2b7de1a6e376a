#pragma once

#include "ButtonCell.h"
#include "VXColor.h"

// The kit's filled push button: rounded corners, a white title with a soft shadow, the
// product's blue, darker while pressed and pale when disabled. Drawn without artwork.
class VXFlatButtonCell : public ButtonCell
{
public:
    // Made in code: no colours (no fill) until they are set.
    VXFlatButtonCell() = default;
    // Made from a window description: the palette's colours.
    explicit VXFlatButtonCell(const ButtonCellCoding &coding);

    std::unique_ptr<ButtonCell> copy() const override;

    std::optional<VXColor> regularColor() const { return _regularColor; }
    void setRegularColor(const std::optional<VXColor> &color) { _regularColor = color; }
    std::optional<VXColor> pressedColor() const { return _pressedColor; }
    void setPressedColor(const std::optional<VXColor> &color) { _pressedColor = color; }
    std::optional<VXColor> disabledColor() const { return _disabledColor; }
    void setDisabledColor(const std::optional<VXColor> &color) { _disabledColor = color; }

    // Pressed wins over disabled.
    std::optional<VXColor> buttonColor() const;
    VXShadow titleShadow() const;
    VXAttributedString titleForDrawingFromTitle(const VXAttributedString &title) const;

    void drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *controlView) override;
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    void drawImage(QPainter &painter, const std::optional<VXImage> &image, const QRectF &frame,
                   QWidget *controlView) override;
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    VXFlatButtonCell(const VXFlatButtonCell &) = default;

private:
    std::optional<VXColor> _regularColor;
    std::optional<VXColor> _pressedColor;
    std::optional<VXColor> _disabledColor;
};

// The padding both flat looks share: the interior 10 points in from each side, starting one
// point down at full height; the title one point higher than the platform puts it.
QRectF flatInteriorFrame(const QRectF &cellFrame);
QRectF flatTitleFrame(const QRectF &titleFrame);

// An image of the same size in which the source's shape is one solid colour.
VXImage etchedImageWithSolidColor(const VXImage &image, const VXColor &color, bool flip,
                                  bool innerShadow);
