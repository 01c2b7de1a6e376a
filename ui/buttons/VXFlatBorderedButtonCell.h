#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/VXGeneralButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

/**
 * The kit's secondary push button: white, with a thin grey-blue rounded border (4-point
 * corners), pale grey while pressed, with hover colours of its own for border and fill
 * (shown in a VXTrackingButton). Both constructors give the same default colours.
 */
class QV_WIDGETS_EXPORT VXFlatBorderedButtonCell : public VXGeneralButtonCell
{
    Q_GADGET

public:
    /** Made in code, with the default colours. */
    VXFlatBorderedButtonCell();
    /** Made from a window description, with the default colours. */
    explicit VXFlatBorderedButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXFlatBorderedButtonCell() override;

    /** A copy with the same colours and settings. */
    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;
    /** This class, whose bundle would hold artwork (the kit's: none). */
    const QMetaObject *cellClass() const override { return &staticMetaObject; }

    /** The border's colour (default RGB 189, 195, 205 of 255); std::nullopt draws none. */
    std::optional<VXColor> borderColor() const;
    /** Sets the border's colour. */
    void setBorderColor(const std::optional<VXColor> &color);
    /** The border's colour while the mouse is over the button (default: as borderColor). */
    std::optional<VXColor> hoverBorderColor() const;
    /** Sets the border's hover colour. */
    void setHoverBorderColor(const std::optional<VXColor> &color);
    /** The fill while pressed (default RGB 234, 236, 239 of 255). */
    std::optional<VXColor> highlightColor() const;
    /** Sets the pressed fill. */
    void setHighlightColor(const std::optional<VXColor> &color);
    /** The fill (default white); std::nullopt draws none. */
    std::optional<VXColor> fillColor() const;
    /** Sets the fill. */
    void setFillColor(const std::optional<VXColor> &color);
    /** The fill while the mouse is over the button (default white). */
    std::optional<VXColor> hoverFillColor() const;
    /** Sets the hover fill. */
    void setHoverFillColor(const std::optional<VXColor> &color);

    /** The fill for the current look: pressed, else hover, else regular. */
    std::optional<VXColor> buttonFillColor() const;
    /** The border for the current look: hover or regular (the border has no pressed colour). */
    std::optional<VXColor> buttonBorderColor() const;
    /** The corner radius: 4 points. */
    double cornerRadius() const { return 4.0; }

    /** Fills and strokes the rounded face, the one-point border inside the frame. */
    void drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *controlView) override;
    /** Draws image and title inset by 10 points on the left and right. */
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    /** Draws the title one point higher than a plain cell. */
    QRectF drawTitle(QPainter &painter, const VXAttributedString &title, const QRectF &frame,
                     QWidget *controlView) override;
    /** The plain cell's size plus 10 points of padding on each side. */
    QSizeF cellSizeForBounds(const QRectF &bounds) const override;

protected:
    /** Copies the colours and settings; for copy(). */
    VXFlatBorderedButtonCell(const VXFlatBorderedButtonCell &other);

private:
    void setupDefaultColors();
    struct Private;
    std::unique_ptr<Private> d;
};
