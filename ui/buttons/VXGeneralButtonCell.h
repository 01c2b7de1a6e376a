#pragma once

#include <Quorvelle/Widgets/VXButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QObject>

#include <memory>

namespace Quorvelle {
class Bundle;
}

// Draws a button's background from artwork: a left cap, a stretched centre and a right cap,
// or one template cut into the same three pieces, each in a normal, hover and pressed look.
// The images are found by a naming rule from one base name in the bundle of the cell's
// class and loaded on first use. A subclass names its artwork (baseResourceImageName) and
// may choose the mode and the slicing.
class QV_WIDGETS_EXPORT VXGeneralButtonCell : public VXButtonCell
{
    Q_GADGET

public:
    VXGeneralButtonCell();
    explicit VXGeneralButtonCell(const Quorvelle::ButtonCellCoding &coding);
    ~VXGeneralButtonCell() override;

    std::unique_ptr<Quorvelle::ButtonCell> copy() const override;

    // The class whose bundle holds the artwork: the actual class of the cell.
    virtual const QMetaObject *cellClass() const { return &staticMetaObject; }

    // Lazily loaded: a missing image is looked up again at the next request.
    std::optional<VXImage> leftPartImageNormal() const;
    std::optional<VXImage> leftPartImageHover() const;
    std::optional<VXImage> leftPartImagePressed() const;
    std::optional<VXImage> centerPartImageNormal() const;
    std::optional<VXImage> centerPartImageHover() const;
    std::optional<VXImage> centerPartImagePressed() const;
    std::optional<VXImage> rightPartImageNormal() const;
    std::optional<VXImage> rightPartImageHover() const;
    std::optional<VXImage> rightPartImagePressed() const;
    std::optional<VXImage> templateImageNormal() const;
    std::optional<VXImage> templateImageHover() const;
    std::optional<VXImage> templateImagePressed() const;
    void setLeftPartImageNormal(const std::optional<VXImage> &image);
    void setLeftPartImageHover(const std::optional<VXImage> &image);
    void setLeftPartImagePressed(const std::optional<VXImage> &image);
    void setCenterPartImageNormal(const std::optional<VXImage> &image);
    void setCenterPartImageHover(const std::optional<VXImage> &image);
    void setCenterPartImagePressed(const std::optional<VXImage> &image);
    void setRightPartImageNormal(const std::optional<VXImage> &image);
    void setRightPartImageHover(const std::optional<VXImage> &image);
    void setRightPartImagePressed(const std::optional<VXImage> &image);
    void setTemplateImageNormal(const std::optional<VXImage> &image);
    void setTemplateImageHover(const std::optional<VXImage> &image);
    void setTemplateImagePressed(const std::optional<VXImage> &image);

    bool hasHover() const { return VXButtonCell::hasHover(); }
    // A null name (the default) means no artwork.
    virtual QString baseResourceImageName() const { return {}; }
    virtual bool useSingleImageTemplate() const { return true; }
    virtual double sideSegmentWidth() const;
    virtual Quorvelle::Bundle *resourcesBundle() const;
    double centerSegmentWidth() const;

    // The image of the current look: pressed (even when missing) while highlighted, hover
    // when the mouse is over the button and there is one, else normal.
    std::optional<VXImage> buttonTemplateImage() const;
    std::optional<VXImage> leftSideSegment() const;
    std::optional<VXImage> rightSideSegment() const;
    std::optional<VXImage> centerSegment() const;

    QString resourceImageNameWithNameConsideringControlState(const QString &name) const;
    // Forgets every image and redraws: for subclasses whose artwork name or bundle changed.
    void invalidateResources();

    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                               QWidget *controlView) override;
    using Quorvelle::ButtonCell::drawImage;
    // Draws the source part of the image (its own coordinates) scaled into the destination,
    // the way up the current coordinates say (upright when they grow upwards).
    void drawPartOfImage(QPainter &painter, const std::optional<VXImage> &image,
                         const QRectF &source, const QRectF &destination) const;
    void drawImage(QPainter &painter, const std::optional<VXImage> &image,
                   const QRectF &destination) const;

protected:
    VXGeneralButtonCell(const VXGeneralButtonCell &other);

private:
    std::optional<VXImage> load(std::optional<VXImage> &slot, const char *suffix) const;
    std::optional<VXImage> look(const std::optional<VXImage> &normal,
                                const std::optional<VXImage> &hover,
                                const std::optional<VXImage> &pressed) const;

    struct Private;
    std::unique_ptr<Private> d;
};
