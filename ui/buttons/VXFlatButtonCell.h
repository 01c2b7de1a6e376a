#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

// The kit's filled push button: rounded corners, a white title with a soft shadow, the
// product's blue, darker while pressed and pale when disabled. Drawn without artwork.
class QV_WIDGETS_EXPORT VXFlatButtonCell : public Quorvelle::ButtonCell
{
public:
    // Made in code: no colours (no fill) until they are set.
    VXFlatButtonCell();
    // Made from a window description: the palette's colours.
    explicit VXFlatButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatButtonCell() override;

    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    std::optional<VXColor> regularColor() const;
    void setRegularColor(const std::optional<VXColor> &color);
    std::optional<VXColor> pressedColor() const;
    void setPressedColor(const std::optional<VXColor> &color);
    std::optional<VXColor> disabledColor() const;
    void setDisabledColor(const std::optional<VXColor> &color);

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
    VXFlatButtonCell(const VXFlatButtonCell &other);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
