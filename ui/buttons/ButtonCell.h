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

/**
 * What a window description says about a cell. A cell made from it ("decoded") may answer
 * with defaults of its own: the flat cells take the kit's colours and fonts, where a cell
 * made in code starts without them.
 *
 * A frozen-layout value type: its members are part of the kit's ABI.
 */
struct ButtonCellCoding
{
    int buttonType = 7;   ///< A ButtonCell::ButtonType; a push button by default.
    int controlSize = 0;  ///< A ButtonCell::ControlSize.
    bool bordered = true; ///< Whether a push cell draws its bezel.
    bool enabled = true;  ///< Whether the cell starts enabled.
    int state = 0;        ///< A ButtonCell::CellState.
    QString title;        ///< The plain title, without a mnemonic marker.
};

/**
 * The look of one push button, check box or radio button and its drawing into a frame of the
 * view that shows it. A Button owns one cell and draws it; subclasses (VXFlatButtonCell,
 * VXFlatCheckboxButtonCell, ...) give the kit's looks by overriding the drawing entries.
 *
 * Cells are values that draw with any QPainter in widget coordinates (y-down), so they can be
 * rendered into an image and tested without a window. A plain cell draws with the view's
 * QStyle (command button panel, check box and radio indicators); a title without a colour
 * of its own is black (35 % black when disabled), because the kit's cells stand on white and
 * light grey whatever the desktop theme.
 */
class QV_WIDGETS_EXPORT ButtonCell
{
public:
    /** The state of a cell; see setState for how other values are read. */
    enum CellState : int
    {
        MixedState = -1, ///< Neither on nor off (a check box over a partly chosen group).
        OffState = 0,    ///< Off, unchecked.
        OnState = 1      ///< On, checked.
    };
    /** Which parts of the look follow the state (showsStateBy) or the highlight (highlightsBy). */
    enum CellMask : quint64
    {
        NoCellMask = 0,               ///< Nothing changes.
        ContentsCellMask = 1,         ///< The alternate image and title are shown.
        PushInCellMask = 2,           ///< The bezel looks pushed in.
        ChangeGrayCellMask = 4,       ///< The bezel turns grey (the style's "on" panel).
        ChangeBackgroundCellMask = 8, ///< The background changes (the style's "on" panel).
    };
    /** How a button behaves; setButtonType sets the masks that go with each. */
    enum ButtonType : int
    {
        MomentaryLightButton = 0,  ///< Momentary; the background lights while pressed.
        PushOnPushOffButton = 1,   ///< Toggles; shows "on" by its background.
        ToggleButton = 2,          ///< Toggles; shows "on" by its alternate image and title.
        SwitchButton = 3,          ///< A check box: a mark beside the title.
        RadioButton = 4,           ///< A radio button: a round mark, exclusive among siblings.
        MomentaryChangeButton = 5, ///< Momentary; shows its alternate contents while pressed.
        OnOffButton = 6,           ///< Toggles; the background shows the state.
        MomentaryPushInButton = 7, ///< A push button (the default).
    };
    /** Where a push cell puts its image relative to the title. */
    enum ImagePosition : int
    {
        NoImage = 0,       ///< The image is not drawn.
        ImageOnly = 1,     ///< Only the image, centred; no title.
        ImageLeft = 2,     ///< Image left of the title, the pair centred.
        ImageRight = 3,    ///< Image right of the title.
        ImageBelow = 4,    ///< Image below the title.
        ImageAbove = 5,    ///< Image above the title.
        ImageOverlaps = 6, ///< Image centred under the title.
    };
    /**
     * The size class of a control: the mark's size, the bezel's minimum height and, for a
     * decoded cell, the font (the system font, or the small system font when not regular).
     */
    enum ControlSize : int
    {
        RegularControlSize = 0, ///< 14-point marks, at least 22 points high when bordered.
        SmallControlSize = 1,   ///< 12-point marks, at least 19 points high.
        MiniControlSize = 2     ///< 10-point marks, at least 16 points high.
    };
    /** What the cell stands on; kept for subclasses and copies, the kit's cells ignore it. */
    enum BackgroundStyle : int
    {
        BackgroundStyleLight = 0,   ///< A light background (the default).
        BackgroundStyleDark = 1,    ///< A dark background.
        BackgroundStyleRaised = 2,  ///< A raised, embossed face.
        BackgroundStyleLowered = 3, ///< A lowered, engraved face.
    };
    /** The alignment of the title; the same values as VXTextAlignment. */
    enum TextAlignment : quint64
    {
        LeftTextAlignment = 0,      ///< Flush left.
        RightTextAlignment = 1,     ///< Flush right.
        CenterTextAlignment = 2,    ///< Centred (push cells' default).
        JustifiedTextAlignment = 3, ///< Justified.
        NaturalTextAlignment = 4,   ///< By the text's direction (check boxes and radio buttons).
    };

    /** A push cell made in code: bordered, centred title in the system font. */
    ButtonCell();
    /** A cell decoded from a window description's settings. */
    explicit ButtonCell(const ButtonCellCoding &coding);
    virtual ~ButtonCell();

    /**
     * A copy of the cell of the same class, with all its settings. Colours, fonts, strings
     * and images are values, so the copy owns its own and outlives the original. Subclasses
     * override it to copy themselves.
     */
    virtual std::unique_ptr<ButtonCell> copy() const;

    /**
     * A new cell of a class named in a window description ("VXFlatButtonCell",
     * "Quorvelle::ButtonCell" and the other kit cells), decoded from coding; nullptr for an
     * unknown name.
     */
    static std::unique_ptr<ButtonCell> cellWithClassName(const QString &className,
                                                         const ButtonCellCoding &coding);

    /** The object the action goes to; not owned, nullptr once it is destroyed. */
    QObject *target() const;
    /** Sets the target; the cell does not call it, the application's code may. */
    void setTarget(QObject *target);
    /** The action's name (a slot's name, for example). */
    QByteArray action() const;
    /** Sets the action's name. */
    void setAction(const QByteArray &action);
    /** Whether the cell may be in MixedState (false by default). */
    bool allowsMixedState() const;
    /** Allows the mixed state; disallowing it turns a mixed cell on. */
    void setAllowsMixedState(bool allows);
    /** The CellState: on, off or mixed. */
    int state() const;
    /** Sets the state. Any value other than off and mixed is on; mixed is on where not allowed. */
    void setState(int state);
    /** The image; for check boxes and radio buttons the mark's artwork (none: the style's). */
    std::optional<VXImage> image() const;
    /** Sets the image. */
    void setImage(const std::optional<VXImage> &image);
    /** The image shown on (or while pressed) where the masks say ContentsCellMask. */
    std::optional<VXImage> alternateImage() const;
    /** Sets the alternate image. */
    void setAlternateImage(const std::optional<VXImage> &image);
    /** The title's plain text. */
    QString title() const;
    /**
     * Sets the title as plain text in the cell's font and alignment. A Button sets it from
     * its text() before drawing: set a button's title with QAbstractButton::setText.
     */
    void setTitle(const QString &title);
    /** The title with its styling. */
    VXAttributedString attributedTitle() const;
    /** Sets a styled title (kept until the title is set again). */
    void setAttributedTitle(const VXAttributedString &title);
    /** The styled title shown on (or while pressed) where the masks say ContentsCellMask. */
    VXAttributedString attributedAlternateTitle() const;
    /** Sets the alternate title; an empty one means the title is shown. */
    void setAttributedAlternateTitle(const VXAttributedString &title);
    /** The title's TextAlignment. */
    quint64 alignment() const;
    /** Sets the title's alignment; each paragraph keeps its line-break mode. */
    void setAlignment(quint64 alignment);
    /** The bezel style number, kept for subclasses and copies; the drawing does not use it. */
    int bezelStyle() const;
    /** Sets the bezel style number. */
    void setBezelStyle(int style);
    /** The gradient type number, kept for subclasses and copies; the drawing does not use it. */
    int gradientType() const;
    /** Sets the gradient type number. */
    void setGradientType(int type);
    /** The state as a number (a qint64). */
    virtual QVariant objectValue() const;
    /** Sets the state from a number; an invalid or null value sets it off. */
    void setObjectValue(const QVariant &value);
    /** The CellMask flags that show the on state. */
    quint64 showsStateBy() const;
    /** Sets the CellMask flags that show the on state. */
    void setShowsStateBy(quint64 mask);
    /** The CellMask flags that show the pressed state. */
    quint64 highlightsBy() const;
    /** Sets the CellMask flags that show the pressed state. */
    void setHighlightsBy(quint64 mask);
    /** The ImagePosition of a push cell's image. */
    int imagePosition() const;
    /** Sets where a push cell's image goes. */
    void setImagePosition(int position);
    /** The image scaling number, kept for subclasses and copies; images draw at their size. */
    int imageScaling() const;
    /** Sets the image scaling number. */
    void setImageScaling(int scaling);
    /** The ControlSize. */
    int controlSize() const;
    /** Sets the ControlSize (the mark's size and the bezel's minimum height). */
    void setControlSize(int size);
    /** The font of a plain title. */
    VXFont font() const;
    /** Sets the font, also over the current title. */
    void setFont(const VXFont &font);
    /** Whether the cell is bezeled, kept for subclasses and copies. */
    bool isBezeled() const;
    /** Sets whether the cell is bezeled. */
    void setBezeled(bool bezeled);
    /** Whether a push cell draws its bezel (check boxes and radio buttons never do). */
    bool isBordered() const;
    /** Sets whether a push cell draws its bezel. */
    void setBordered(bool bordered);
    /** The BackgroundStyle. */
    int backgroundStyle() const;
    /** Sets the BackgroundStyle. */
    void setBackgroundStyle(int style);
    /** Whether the cell draws enabled; a Button sets it from its own enabledness. */
    bool isEnabled() const;
    /** Sets whether the cell draws enabled. */
    void setEnabled(bool enabled);
    /** Whether the cell draws pressed; a Button sets it while it is down. */
    bool isHighlighted() const;
    /** Sets whether the cell draws pressed. */
    void setHighlighted(bool highlighted);
    /** The ButtonType. */
    int buttonType() const;
    /**
     * Sets the ButtonType and with it showsStateBy and highlightsBy; a check box or radio
     * type also puts the mark left of a naturally aligned title and drops the border.
     */
    void setButtonType(int type);
    /** A number the application attaches to the cell. */
    qint64 tag() const;
    /** Sets the tag. */
    void setTag(qint64 tag);
    /** The widget the cell draws in (its Button); not owned, nullptr once destroyed. */
    QWidget *controlView() const;
    /** Sets the widget the cell draws in; Button::setCell does this. */
    void setControlView(QWidget *view);

    /** Whether the cell draws a mark beside its title (check boxes and radio buttons). */
    bool drawsMark() const;
    /**
     * Whether a view's coordinates grow downwards: true for every plain widget and for
     * nullptr; a view answers otherwise through a "flipped" property.
     */
    static bool isFlipped(const QWidget *view);

    /**
     * Draws the whole cell into cellFrame (the view's coordinates): the bezel when bordered,
     * then the interior. It goes through the class's method table (methods()), where an
     * addition may have exchanged it.
     */
    virtual void drawWithFrame(QPainter &painter, const QRectF &cellFrame, QWidget *controlView);
    /** Draws the push button's face; a plain cell draws the view style's command panel. */
    virtual void drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *controlView);
    /** Draws the image or mark and the title of the current state where they belong. */
    virtual void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                       QWidget *controlView);
    /**
     * Draws image scaled into frame; without an image a check box or radio button draws the
     * view style's indicator, a push cell nothing.
     */
    virtual void drawImage(QPainter &painter, const std::optional<VXImage> &image,
                           const QRectF &frame, QWidget *controlView);
    /**
     * Draws title wrapped to frame's width and centred vertically in it; returns the
     * rectangle the text took.
     */
    virtual QRectF drawTitle(QPainter &painter, const VXAttributedString &title,
                             const QRectF &frame, QWidget *controlView);
    /**
     * The size the cell needs within bounds (its width limits the title's), in whole points:
     * what Button::sizeHint returns.
     */
    virtual QSizeF cellSizeForBounds(const QRectF &bounds) const;
    /** Where the title goes in bounds, beside the image or mark. */
    virtual QRectF titleRectForBounds(const QRectF &bounds) const;
    /** Where the image or mark goes in bounds; empty when there is none. */
    virtual QRectF imageRectForBounds(const QRectF &bounds) const;
    /**
     * The outline a keyboard focus ring follows: a mark's edge for check boxes and radio
     * buttons, empty for push cells (their view draws the style's focus frame).
     */
    virtual QPainterPath focusRingMaskForFrame(const QRectF &cellFrame) const;

    /** The signature of an exchangeable drawing entry. */
    using DrawMethod = void(ButtonCell &, QPainter &, const QRectF &, QWidget *);
    /**
     * The class's exchangeable entries ("drawWithFrame:inView:" and the additions'
     * "originalDrawWithFrame:inView:"), shared by every cell of every class.
     */
    static VXMethodTable<DrawMethod> &methods();
    /** The standard drawing of every cell: the bezel when bordered, then the interior. */
    static void systemDrawWithFrame(ButtonCell &cell, QPainter &painter, const QRectF &cellFrame,
                                    QWidget *controlView);

protected:
    /** Copies every setting; for copy() of subclasses. */
    ButtonCell(const ButtonCell &other);
    /** Copies every setting. */
    ButtonCell &operator=(const ButtonCell &other);

    /** The image the current state shows: the alternate one where the masks say so. */
    std::optional<VXImage> imageForState() const;
    /** The title the current state shows: the alternate one where the masks say so. */
    VXAttributedString titleForState() const;
    /** The side of a check box or radio mark for the control size: 14, 12 or 10 points. */
    double markSide() const;
    /** The size of the title when wrapped to width; empty without a title. */
    QSizeF titleSizeForWidth(double width) const;
    /** The size of the image or mark; empty when there is none. */
    QSizeF imageSize() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Quorvelle
