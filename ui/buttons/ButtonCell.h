#pragma once

#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/VXFont.h>
#include <Quorvelle/Widgets/VXImageCreation.h>
#include <Quorvelle/Widgets/VXRuntime.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QByteArray>
#include <QPainterPath>
#include <QRectF>
#include <QSizeF>
#include <QVariant>
#include <QWidget>

#include <memory>
#include <optional>

class QObject;
class QPainter;

namespace Quorvelle {

// What a window description says about a cell: a cell made from it is "decoded" (the
// platform's initWithCoder:), which some cells answer with defaults of their own.
//
// A frozen-layout value type: its members are part of the kit's ABI.
struct ButtonCellCoding
{
    int buttonType = 7;
    int controlSize = 0;
    bool bordered = true;
    bool enabled = true;
    int state = 0;
    QString title;
};

// The look state of one push button, check box or radio button and its drawing into a
// frame of the view that shows it. Cells are plain values: they draw with any QPainter, so
// they can be rendered and probed without a window.
class QV_WIDGETS_EXPORT ButtonCell
{
public:
    enum CellState : int
    {
        MixedState = -1,
        OffState = 0,
        OnState = 1
    };
    // Which parts of the look follow the state (showsStateBy) or the highlight (highlightsBy).
    enum CellMask : quint64
    {
        NoCellMask = 0,
        ContentsCellMask = 1,
        PushInCellMask = 2,
        ChangeGrayCellMask = 4,
        ChangeBackgroundCellMask = 8,
    };
    enum ButtonType : int
    {
        MomentaryLightButton = 0,
        PushOnPushOffButton = 1,
        ToggleButton = 2,
        SwitchButton = 3,
        RadioButton = 4,
        MomentaryChangeButton = 5,
        OnOffButton = 6,
        MomentaryPushInButton = 7,
    };
    enum ImagePosition : int
    {
        NoImage = 0,
        ImageOnly = 1,
        ImageLeft = 2,
        ImageRight = 3,
        ImageBelow = 4,
        ImageAbove = 5,
        ImageOverlaps = 6,
    };
    enum ControlSize : int
    {
        RegularControlSize = 0,
        SmallControlSize = 1,
        MiniControlSize = 2
    };
    enum BackgroundStyle : int
    {
        BackgroundStyleLight = 0,
        BackgroundStyleDark = 1,
        BackgroundStyleRaised = 2,
        BackgroundStyleLowered = 3,
    };
    enum TextAlignment : quint64
    {
        LeftTextAlignment = 0,
        RightTextAlignment = 1,
        CenterTextAlignment = 2,
        JustifiedTextAlignment = 3,
        NaturalTextAlignment = 4,
    };

    ButtonCell();
    explicit ButtonCell(const ButtonCellCoding &coding);
    virtual ~ButtonCell();

    // copyWithZone:
    virtual std::unique_ptr<ButtonCell> copy() const;

    // Makes a cell of a class named in a window description (nullptr for an unknown name).
    static std::unique_ptr<ButtonCell> cellWithClassName(const QString &className,
                                                         const ButtonCellCoding &coding);

    QObject *target() const;
    void setTarget(QObject *target);
    QByteArray action() const;
    void setAction(const QByteArray &action);
    bool allowsMixedState() const;
    void setAllowsMixedState(bool allows);
    int state() const;
    // Any value other than off and mixed is on; mixed falls to on where it is not allowed.
    void setState(int state);
    std::optional<VXImage> image() const;
    void setImage(const std::optional<VXImage> &image);
    std::optional<VXImage> alternateImage() const;
    void setAlternateImage(const std::optional<VXImage> &image);
    QString title() const;
    // The plain title in the cell's font and alignment.
    void setTitle(const QString &title);
    VXAttributedString attributedTitle() const;
    void setAttributedTitle(const VXAttributedString &title);
    VXAttributedString attributedAlternateTitle() const;
    void setAttributedAlternateTitle(const VXAttributedString &title);
    quint64 alignment() const;
    void setAlignment(quint64 alignment);
    int bezelStyle() const;
    void setBezelStyle(int style);
    int gradientType() const;
    void setGradientType(int type);
    // The state as a number; setting a number sets the state, nothing sets it off.
    virtual QVariant objectValue() const;
    void setObjectValue(const QVariant &value);
    quint64 showsStateBy() const;
    void setShowsStateBy(quint64 mask);
    quint64 highlightsBy() const;
    void setHighlightsBy(quint64 mask);
    int imagePosition() const;
    void setImagePosition(int position);
    int imageScaling() const;
    void setImageScaling(int scaling);
    int controlSize() const;
    void setControlSize(int size);
    VXFont font() const;
    void setFont(const VXFont &font);
    bool isBezeled() const;
    void setBezeled(bool bezeled);
    bool isBordered() const;
    void setBordered(bool bordered);
    int backgroundStyle() const;
    void setBackgroundStyle(int style);
    bool isEnabled() const;
    void setEnabled(bool enabled);
    bool isHighlighted() const;
    void setHighlighted(bool highlighted);
    int buttonType() const;
    // Sets the masks the platform gives each type, as setButtonType: does.
    void setButtonType(int type);
    qint64 tag() const;
    void setTag(qint64 tag);
    QWidget *controlView() const;
    void setControlView(QWidget *view);

    // Check boxes and radio buttons draw a mark beside the title instead of a bezel.
    bool drawsMark() const;
    // Whether a view's coordinates grow downwards (every plain widget's do).
    static bool isFlipped(const QWidget *view);

    // The drawing entry. It goes through the class's method table, where an addition may
    // have exchanged it.
    virtual void drawWithFrame(QPainter &painter, const QRectF &cellFrame, QWidget *controlView);
    virtual void drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *controlView);
    virtual void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                       QWidget *controlView);
    virtual void drawImage(QPainter &painter, const std::optional<VXImage> &image,
                           const QRectF &frame, QWidget *controlView);
    virtual QRectF drawTitle(QPainter &painter, const VXAttributedString &title,
                             const QRectF &frame, QWidget *controlView);
    virtual QSizeF cellSizeForBounds(const QRectF &bounds) const;
    virtual QRectF titleRectForBounds(const QRectF &bounds) const;
    virtual QRectF imageRectForBounds(const QRectF &bounds) const;
    // The outline a keyboard focus ring follows: a mark's edge for check boxes and radio
    // buttons, empty for push cells (their view draws the style's focus frame).
    virtual QPainterPath focusRingMaskForFrame(const QRectF &cellFrame) const;

    // The exchangeable entries of the class.
    using DrawMethod = void(ButtonCell &, QPainter &, const QRectF &, QWidget *);
    static VXMethodTable<DrawMethod> &methods();
    // The drawing the platform gives every cell: bezel when bordered, then the interior.
    static void systemDrawWithFrame(ButtonCell &cell, QPainter &painter, const QRectF &cellFrame,
                                    QWidget *controlView);

protected:
    ButtonCell(const ButtonCell &other);
    ButtonCell &operator=(const ButtonCell &other);

    // The image and title the current state shows.
    std::optional<VXImage> imageForState() const;
    VXAttributedString titleForState() const;
    double markSide() const;
    QSizeF titleSizeForWidth(double width) const;
    QSizeF imageSize() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Quorvelle
