#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

/**
 * The kit's filled push button: a rounded rectangle (4-point corners) in the product's blue,
 * darker while pressed and pale when disabled, with a white title and a soft shadow below
 * it. Drawn without artwork; an image is drawn white, in the title's place or beside it.
 *
 * Made from a window description (the ButtonCellCoding constructor, or
 * Button::setCellClass("VXFlatButtonCell")) it has the palette's colours; made in code
 * (the default constructor) it has none, and draws no face until they are set.
 */
class QV_WIDGETS_EXPORT VXFlatButtonCell : public Quorvelle::ButtonCell
{
public:
    /** Made in code: no colours (no face) until they are set. */
    VXFlatButtonCell();
    /**
     * Made from a window description: quorvelleBlueColor, quorvelleDarkBlueColor pressed,
     * and a pale blue (RGB 137, 187, 222 of 255) disabled.
     */
    explicit VXFlatButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatButtonCell() override;

    /** A copy with the same colours and settings. */
    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    /** The face's colour when enabled and not pressed; std::nullopt draws no face. */
    std::optional<VXColor> regularColor() const;
    /** Sets the face's regular colour. */
    void setRegularColor(const std::optional<VXColor> &color);
    /** The face's colour while pressed (or on, for a toggling type). */
    std::optional<VXColor> pressedColor() const;
    /** Sets the face's pressed colour. */
    void setPressedColor(const std::optional<VXColor> &color);
    /** The face's colour when disabled. */
    std::optional<VXColor> disabledColor() const;
    /** Sets the face's disabled colour. */
    void setDisabledColor(const std::optional<VXColor> &color);

    /** The face's colour for the current look; pressed wins over disabled. */
    std::optional<VXColor> buttonColor() const;
    /** The title's shadow: one point below, blur 1, the shadow's default colour. */
    VXShadow titleShadow() const;
    /** The title as drawn: white, with titleShadow(). */
    VXAttributedString titleForDrawingFromTitle(const VXAttributedString &title) const;

    /** Fills the rounded face in buttonColor(). */
    void drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *controlView) override;
    /** Draws image and title inset by 10 points on the left and right. */
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    /** Draws the title white with its shadow, one point higher than a plain cell. */
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    /** Draws the image's shape in white; nothing without an image. */
    void drawImage(QPainter &painter, const std::optional<VXImage> &image, const QRectF &frame,
                   QWidget *controlView) override;
    /** The plain cell's size plus 10 points of padding on each side (15 beside an image). */
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    /** Copies the colours and settings; for copy(). */
    VXFlatButtonCell(const VXFlatButtonCell &other);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
