#pragma once

#include "VXAttributedString.h"
#include "VXFont.h"
#include "VXImageCreation.h"
#include "VXRuntime.h"

#include <QByteArray>
#include <QPainterPath>
#include <QPointer>
#include <QRectF>
#include <QSizeF>
#include <QVariant>
#include <QWidget>

#include <memory>
#include <optional>

class QObject;
class QPainter;

// What a window description says about a cell: a cell made from it is "decoded" (the
// platform's initWithCoder:), which some cells answer with defaults of their own.
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
class ButtonCell
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

    QObject *target() const { return _target; }
    void setTarget(QObject *target) { _target = target; }
    QByteArray action() const { return _action; }
    void setAction(const QByteArray &action) { _action = action; }
    bool allowsMixedState() const { return _allowsMixedState; }
    void setAllowsMixedState(bool allows);
    int state() const { return _state; }
    // Any value other than off and mixed is on; mixed falls to on where it is not allowed.
    void setState(int state);
    std::optional<VXImage> image() const { return _image; }
    void setImage(const std::optional<VXImage> &image) { _image = image; }
    std::optional<VXImage> alternateImage() const { return _alternateImage; }
    void setAlternateImage(const std::optional<VXImage> &image) { _alternateImage = image; }
    QString title() const { return _attributedTitle.string(); }
    // The plain title in the cell's font and alignment.
    void setTitle(const QString &title);
    VXAttributedString attributedTitle() const { return _attributedTitle; }
    void setAttributedTitle(const VXAttributedString &title) { _attributedTitle = title; }
    VXAttributedString attributedAlternateTitle() const { return _attributedAlternateTitle; }
    void setAttributedAlternateTitle(const VXAttributedString &title)
    {
        _attributedAlternateTitle = title;
    }
    quint64 alignment() const { return _alignment; }
    void setAlignment(quint64 alignment);
    int bezelStyle() const { return _bezelStyle; }
    void setBezelStyle(int style) { _bezelStyle = style; }
    int gradientType() const { return _gradientType; }
    void setGradientType(int type) { _gradientType = type; }
    // The state as a number; setting a number sets the state, nothing sets it off.
    virtual QVariant objectValue() const { return QVariant::fromValue(qint64(_state)); }
    void setObjectValue(const QVariant &value);
    quint64 showsStateBy() const { return _showsStateBy; }
    void setShowsStateBy(quint64 mask) { _showsStateBy = mask; }
    quint64 highlightsBy() const { return _highlightsBy; }
    void setHighlightsBy(quint64 mask) { _highlightsBy = mask; }
    int imagePosition() const { return _imagePosition; }
    void setImagePosition(int position) { _imagePosition = position; }
    int imageScaling() const { return _imageScaling; }
    void setImageScaling(int scaling) { _imageScaling = scaling; }
    int controlSize() const { return _controlSize; }
    void setControlSize(int size) { _controlSize = size; }
    VXFont font() const { return _font; }
    void setFont(const VXFont &font);
    bool isBezeled() const { return _bezeled; }
    void setBezeled(bool bezeled) { _bezeled = bezeled; }
    bool isBordered() const { return _bordered; }
    void setBordered(bool bordered) { _bordered = bordered; }
    int backgroundStyle() const { return _backgroundStyle; }
    void setBackgroundStyle(int style) { _backgroundStyle = style; }
    bool isEnabled() const { return _enabled; }
    void setEnabled(bool enabled) { _enabled = enabled; }
    bool isHighlighted() const { return _highlighted; }
    void setHighlighted(bool highlighted) { _highlighted = highlighted; }
    int buttonType() const { return _buttonType; }
    // Sets the masks the platform gives each type, as setButtonType: does.
    void setButtonType(int type);
    qint64 tag() const { return _tag; }
    void setTag(qint64 tag) { _tag = tag; }
    QWidget *controlView() const { return _controlView; }
    void setControlView(QWidget *view) { _controlView = view; }

    // Check boxes and radio buttons draw a mark beside the title instead of a bezel.
    bool drawsMark() const { return _buttonType == SwitchButton || _buttonType == RadioButton; }
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
    ButtonCell(const ButtonCell &) = default;
    ButtonCell &operator=(const ButtonCell &) = default;

    // The image and title the current state shows.
    std::optional<VXImage> imageForState() const;
    VXAttributedString titleForState() const;
    double markSide() const;
    QSizeF titleSizeForWidth(double width) const;
    QSizeF imageSize() const;

private:
    QPointer<QObject> _target;
    QByteArray _action;
    bool _allowsMixedState = false;
    int _state = OffState;
    std::optional<VXImage> _image;
    std::optional<VXImage> _alternateImage;
    VXAttributedString _attributedTitle;
    VXAttributedString _attributedAlternateTitle;
    quint64 _alignment = CenterTextAlignment;
    int _bezelStyle = 1;
    int _gradientType = 0;
    quint64 _showsStateBy = NoCellMask;
    quint64 _highlightsBy = PushInCellMask | ChangeGrayCellMask;
    int _imagePosition = NoImage;
    int _imageScaling = 0;
    int _controlSize = RegularControlSize;
    VXFont _font;
    bool _bezeled = false;
    bool _bordered = true;
    int _backgroundStyle = BackgroundStyleLight;
    bool _enabled = true;
    bool _highlighted = false;
    int _buttonType = MomentaryPushInButton;
    qint64 _tag = 0;
    QPointer<QWidget> _controlView;
};
