#pragma once

#include <Quorvelle/Widgets/VXButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QObject>

#include <memory>

namespace Quorvelle {
class Bundle;
}

/**
 * A push cell whose face is artwork: a left cap, a stretched centre and a right cap, or one
 * template image cut into the same three pieces, each in a normal, hover and pressed look.
 *
 * A subclass names its artwork with baseResourceImageName(); the pieces are then PNG
 * files in the images/ folder of the bundle of the subclass's class (cellClass(),
 * resourcesBundle()) named by suffixes: `<base>_left`, `<base>_center`, `<base>_right` (each
 * also with `_hover` and `_pressed`), or for a template `<base>`, `<base>_hover`,
 * `<base>_pressed`. They are loaded on first use; a missing image is looked up again at the
 * next request. A subclass in an application declares Q_GADGET and overrides cellClass()
 * so its artwork is found in the application's bundle.
 */
class QV_WIDGETS_EXPORT VXGeneralButtonCell : public VXButtonCell
{
    Q_GADGET

public:
    /** A cell made in code, without artwork until a subclass names it. */
    VXGeneralButtonCell();
    /** A cell decoded from a window description's settings. */
    explicit VXGeneralButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXGeneralButtonCell() override;

    /** A copy with the same settings and loaded images. */
    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    /**
     * The class whose bundle holds the artwork: a subclass returns its own staticMetaObject
     * (with Q_GADGET), so the lookup follows the actual class of the cell.
     */
    virtual const QMetaObject *cellClass() const { return &staticMetaObject; }

    /** The left cap (`<base>_left`), loaded on first use; std::nullopt when missing. */
    std::optional<VXImage> leftPartImageNormal() const;
    /** The left cap under the mouse (`<base>_left_hover`). */
    std::optional<VXImage> leftPartImageHover() const;
    /** The left cap while pressed (`<base>_left_pressed`). */
    std::optional<VXImage> leftPartImagePressed() const;
    /** The centre piece (`<base>_center`), stretched to the width between the caps. */
    std::optional<VXImage> centerPartImageNormal() const;
    /** The centre piece under the mouse (`<base>_center_hover`). */
    std::optional<VXImage> centerPartImageHover() const;
    /** The centre piece while pressed (`<base>_center_pressed`). */
    std::optional<VXImage> centerPartImagePressed() const;
    /** The right cap (`<base>_right`). */
    std::optional<VXImage> rightPartImageNormal() const;
    /** The right cap under the mouse (`<base>_right_hover`). */
    std::optional<VXImage> rightPartImageHover() const;
    /** The right cap while pressed (`<base>_right_pressed`). */
    std::optional<VXImage> rightPartImagePressed() const;
    /** The whole template (`<base>`). */
    std::optional<VXImage> templateImageNormal() const;
    /** The template under the mouse (`<base>_hover`). */
    std::optional<VXImage> templateImageHover() const;
    /** The template while pressed (`<base>_pressed`). */
    std::optional<VXImage> templateImagePressed() const;
    /** Sets the left cap; std::nullopt makes the next request load it again. */
    void setLeftPartImageNormal(const std::optional<VXImage> &image);
    /** Sets the left cap's hover look. */
    void setLeftPartImageHover(const std::optional<VXImage> &image);
    /** Sets the left cap's pressed look. */
    void setLeftPartImagePressed(const std::optional<VXImage> &image);
    /** Sets the centre piece. */
    void setCenterPartImageNormal(const std::optional<VXImage> &image);
    /** Sets the centre piece's hover look. */
    void setCenterPartImageHover(const std::optional<VXImage> &image);
    /** Sets the centre piece's pressed look. */
    void setCenterPartImagePressed(const std::optional<VXImage> &image);
    /** Sets the right cap. */
    void setRightPartImageNormal(const std::optional<VXImage> &image);
    /** Sets the right cap's hover look. */
    void setRightPartImageHover(const std::optional<VXImage> &image);
    /** Sets the right cap's pressed look. */
    void setRightPartImagePressed(const std::optional<VXImage> &image);
    /** Sets the template. */
    void setTemplateImageNormal(const std::optional<VXImage> &image);
    /** Sets the template's hover look. */
    void setTemplateImageHover(const std::optional<VXImage> &image);
    /** Sets the template's pressed look. */
    void setTemplateImagePressed(const std::optional<VXImage> &image);

    /** Whether the mouse is over the cell's VXTrackingButton. */
    bool hasHover() const { return VXButtonCell::hasHover(); }
    /** The base name of the artwork; a null name (the default) means no artwork. */
    virtual QString baseResourceImageName() const { return {}; }
    /** Whether the face is one template (the default) rather than three images. */
    virtual bool useSingleImageTemplate() const { return true; }
    /**
     * The width of each cap in points: the left cap's width for three images; 0 for a
     * template unless a subclass says where to cut it.
     */
    virtual double sideSegmentWidth() const;
    /**
     * The bundle that holds the artwork: the bundle of cellClass() when its folder can be
     * read, else the application's main bundle.
     */
    virtual Quorvelle::Bundle *resourcesBundle() const;
    /** The width of the centre piece in the artwork (template width minus both caps). */
    double centerSegmentWidth() const;

    /**
     * The template of the current look: pressed (even when missing) while highlighted,
     * hover when the mouse is over the button and there is one, else normal.
     */
    std::optional<VXImage> buttonTemplateImage() const;
    /** The left cap of the current look, chosen as buttonTemplateImage() is. */
    std::optional<VXImage> leftSideSegment() const;
    /** The right cap of the current look. */
    std::optional<VXImage> rightSideSegment() const;
    /** The centre piece of the current look. */
    std::optional<VXImage> centerSegment() const;

    /** name with the suffix of the current look: `_pressed`, `_hover` or none. */
    QString resourceImageNameWithNameConsideringControlState(const QString &name) const;
    /** Forgets every image and redraws: for subclasses whose artwork name or bundle changed. */
    void invalidateResources();

    /** Draws the three pieces over the frame, then the title and image as a plain cell. */
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    using Quorvelle::ButtonCell::drawImage;
    /**
     * Draws the source part of the image (its own coordinates, in points) scaled into the
     * destination, upright when the painter's coordinates grow upwards (as they do inside
     * drawInteriorWithFrame). Nothing for a missing image or an empty rectangle.
     */
    void drawPartOfImage(QPainter &painter, const std::optional<VXImage> &image,
                         const QRectF &source, const QRectF &destination) const;
    /** Draws the whole image scaled into the destination, as drawPartOfImage does. */
    void drawImage(QPainter &painter, const std::optional<VXImage> &image,
                   const QRectF &destination) const;

protected:
    /** Copies the settings and loaded images; for copy(). */
    VXGeneralButtonCell(const VXGeneralButtonCell &other);

private:
    std::optional<VXImage> load(std::optional<VXImage> &slot, const char *suffix) const;
    std::optional<VXImage> look(const std::optional<VXImage> &normal,
                                const std::optional<VXImage> &hover,
                                const std::optional<VXImage> &pressed) const;

    struct Private;
    std::unique_ptr<Private> d;
};
