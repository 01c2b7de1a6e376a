#include "ButtonCell.h"

#include "VXButtonCellQuorvelle.h"
#include "VXColor.h"
#include "VXShortcuts.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionButton>

#include <algorithm>
#include <cmath>

namespace Quorvelle {

namespace {

// Room between a mark or an image and the title.
constexpr double kTitleGap = 4.0;
// Room a bordered push button keeps around its contents.
constexpr double kBezelPaddingX = 12.0;
constexpr double kBezelPaddingY = 4.0;

double systemFontSizeFor(int controlSize)
{
    return controlSize == ButtonCell::RegularControlSize ? VXFont::systemFontSize()
                                                         : VXFont::smallSystemFontSize();
}

QStyle *styleOf(const QWidget *view)
{
    return view ? view->style() : QApplication::style();
}

} // namespace

struct ButtonCell::Private
{
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

ButtonCell::ButtonCell() : d(std::make_unique<Private>())
{
    d->_font = VXFont::systemFontOfSize(VXFont::systemFontSize());
}

ButtonCell::ButtonCell(const ButtonCellCoding &coding) : ButtonCell()
{
    setButtonType(coding.buttonType);
    d->_controlSize = coding.controlSize;
    d->_font = VXFont::systemFontOfSize(systemFontSizeFor(coding.controlSize));
    d->_bordered = coding.bordered;
    d->_enabled = coding.enabled;
    setState(coding.state);
    setTitle(coding.title);
}

ButtonCell::~ButtonCell() = default;

ButtonCell::ButtonCell(const ButtonCell &other) : d(std::make_unique<Private>(*other.d)) {}

ButtonCell &ButtonCell::operator=(const ButtonCell &other)
{
    *d = *other.d;
    return *this;
}

std::unique_ptr<ButtonCell> ButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new ButtonCell(*this));
}

void ButtonCell::setAllowsMixedState(bool allows)
{
    d->_allowsMixedState = allows;
    if (!allows && d->_state == MixedState)
        d->_state = OnState;
}

void ButtonCell::setState(int state)
{
    if (state == MixedState)
        d->_state = d->_allowsMixedState ? MixedState : OnState;
    else
        d->_state = state == OffState ? OffState : OnState;
}

void ButtonCell::setObjectValue(const QVariant &value)
{
    setState(value.isValid() && !value.isNull() ? value.toInt() : OffState);
}

void ButtonCell::setTitle(const QString &title)
{
    VXAttributes attributes;
    attributes.insert(VXFontAttributeName, QVariant::fromValue(d->_font));
    d->_attributedTitle = VXAttributedString(title, attributes);
    VXShortcuts::setAlignment(d->_attributedTitle, d->_alignment);
}

void ButtonCell::setAlignment(quint64 alignment)
{
    d->_alignment = alignment;
    VXShortcuts::setAlignment(d->_attributedTitle, alignment);
}

void ButtonCell::setFont(const VXFont &font)
{
    d->_font = font;
    VXShortcuts::setAttribute(d->_attributedTitle, VXFontAttributeName, QVariant::fromValue(font));
}

void ButtonCell::setButtonType(int type)
{
    d->_buttonType = type;
    switch (type) {
    case MomentaryLightButton:
        d->_highlightsBy = ChangeBackgroundCellMask;
        d->_showsStateBy = NoCellMask;
        break;
    case PushOnPushOffButton:
        d->_highlightsBy = PushInCellMask | ChangeGrayCellMask;
        d->_showsStateBy = ChangeBackgroundCellMask | ChangeGrayCellMask;
        break;
    case ToggleButton:
        d->_highlightsBy = PushInCellMask | ContentsCellMask;
        d->_showsStateBy = ContentsCellMask;
        break;
    case SwitchButton:
    case RadioButton:
        d->_highlightsBy = ContentsCellMask;
        d->_showsStateBy = ContentsCellMask;
        d->_imagePosition = ImageLeft;
        d->_alignment = NaturalTextAlignment;
        d->_bordered = false;
        break;
    case MomentaryChangeButton:
        d->_highlightsBy = ContentsCellMask;
        d->_showsStateBy = NoCellMask;
        break;
    case OnOffButton:
        d->_highlightsBy = ChangeBackgroundCellMask;
        d->_showsStateBy = ChangeBackgroundCellMask;
        break;
    default:
        d->_highlightsBy = PushInCellMask | ChangeGrayCellMask;
        d->_showsStateBy = NoCellMask;
        break;
    }
}

bool ButtonCell::isFlipped(const QWidget *view)
{
    // Widgets grow downwards; a view can say otherwise through its "flipped" property
    // (Button answers isFlipped() that way).
    if (!view)
        return true;
    const QVariant flipped = view->property("flipped");
    return !flipped.isValid() || flipped.toBool();
}

VXMethodTable<ButtonCell::DrawMethod> &ButtonCell::methods()
{
    static VXMethodTable<DrawMethod> table = [] {
        VXMethodTable<DrawMethod> t;
        t.replaceMethod("drawWithFrame:inView:", &ButtonCell::systemDrawWithFrame);
        // Additions bring their methods along when the class is first used.
        VXButtonCellQuorvelle::attachMethods(t);
        return t;
    }();
    return table;
}

void ButtonCell::drawWithFrame(QPainter &painter, const QRectF &cellFrame, QWidget *controlView)
{
    if (const auto draw = methods().implementation("drawWithFrame:inView:"))
        draw(*this, painter, cellFrame, controlView);
}

void ButtonCell::systemDrawWithFrame(ButtonCell &cell, QPainter &painter, const QRectF &cellFrame,
                                     QWidget *controlView)
{
    painter.save();
    if (cell.isBordered() && !cell.drawsMark())
        cell.drawBezelWithFrame(painter, cellFrame, controlView);
    cell.drawInteriorWithFrame(painter, cellFrame, controlView);
    painter.restore();
}

void ButtonCell::drawBezelWithFrame(QPainter &painter, const QRectF &frame, QWidget *controlView)
{
    QStyleOptionButton option;
    if (controlView)
        option.initFrom(controlView);
    option.rect = frame.toAlignedRect();
    option.state = QStyle::State_Raised;
    if (d->_enabled)
        option.state |= QStyle::State_Enabled;
    else
        option.state &= ~QStyle::State_Enabled;
    if (d->_highlighted)
        option.state |= QStyle::State_Sunken;
    if (d->_state == OnState &&
        (d->_showsStateBy & (ChangeGrayCellMask | ChangeBackgroundCellMask)))
        option.state |= QStyle::State_On;
    styleOf(controlView)
        ->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, controlView);
}

std::optional<VXImage> ButtonCell::imageForState() const
{
    const bool alternate = (d->_state == OnState && (d->_showsStateBy & ContentsCellMask)) ||
                           (d->_highlighted && (d->_highlightsBy & ContentsCellMask));
    return alternate && d->_alternateImage ? d->_alternateImage : d->_image;
}

VXAttributedString ButtonCell::titleForState() const
{
    const bool alternate = (d->_state == OnState && (d->_showsStateBy & ContentsCellMask)) ||
                           (d->_highlighted && (d->_highlightsBy & ContentsCellMask));
    return alternate && d->_attributedAlternateTitle.length() > 0 ? d->_attributedAlternateTitle
                                                                  : d->_attributedTitle;
}

double ButtonCell::markSide() const
{
    switch (d->_controlSize) {
    case SmallControlSize:
        return 12.0;
    case MiniControlSize:
        return 10.0;
    default:
        return 14.0;
    }
}

QSizeF ButtonCell::titleSizeForWidth(double width) const
{
    if (d->_attributedTitle.length() == 0 || d->_imagePosition == ImageOnly)
        return {};
    return d->_attributedTitle
        .boundingRectWithSize(QSizeF(std::max(width, 1.0), 0.0),
                              VXStringDrawingUsesLineFragmentOrigin)
        .size();
}

QSizeF ButtonCell::imageSize() const
{
    if (drawsMark())
        return {markSide(), markSide()};
    if (!d->_image || d->_imagePosition == NoImage)
        return {};
    return d->_image->size();
}

QRectF ButtonCell::imageRectForBounds(const QRectF &bounds) const
{
    const QSizeF image = imageSize();
    if (image.isEmpty())
        return {};
    if (drawsMark())
        return {bounds.x(), bounds.y() + std::floor((bounds.height() - image.height()) / 2.0),
                image.width(), image.height()};
    const QSizeF title = titleSizeForWidth(bounds.width() - image.width() - kTitleGap);
    const bool both = !title.isEmpty() && d->_imagePosition != ImageOverlaps;
    QPointF origin;
    switch (d->_imagePosition) {
    case ImageLeft:
    case ImageRight: {
        const double group = image.width() + (both ? kTitleGap + title.width() : 0.0);
        const double left = bounds.x() + (bounds.width() - group) / 2.0;
        origin = {d->_imagePosition == ImageLeft ? left : left + group - image.width(),
                  bounds.y() + (bounds.height() - image.height()) / 2.0};
        break;
    }
    case ImageAbove:
    case ImageBelow: {
        const double group = image.height() + (both ? kTitleGap + title.height() : 0.0);
        const double top = bounds.y() + (bounds.height() - group) / 2.0;
        origin = {bounds.x() + (bounds.width() - image.width()) / 2.0,
                  d->_imagePosition == ImageAbove ? top : top + group - image.height()};
        break;
    }
    default:
        origin = {bounds.x() + (bounds.width() - image.width()) / 2.0,
                  bounds.y() + (bounds.height() - image.height()) / 2.0};
        break;
    }
    return {origin, image};
}

QRectF ButtonCell::titleRectForBounds(const QRectF &bounds) const
{
    const QRectF image = imageRectForBounds(bounds);
    if (image.isEmpty() || d->_imagePosition == ImageOverlaps)
        return bounds;
    if (drawsMark())
        return QRectF(QPointF(image.right() + kTitleGap, bounds.y()), bounds.bottomRight());
    // The title's own place in the centred pair, so that it stands one gap from the image
    // and is not centred again in all the room the image leaves.
    const QSizeF title = titleSizeForWidth(bounds.width() - image.width() - kTitleGap);
    const double width = std::min(std::ceil(title.width()), bounds.width());
    const double height = std::min(std::ceil(title.height()), bounds.height());
    switch (d->_imagePosition) {
    case ImageLeft:
        return QRectF(image.right() + kTitleGap, bounds.y(), width, bounds.height());
    case ImageRight:
        return QRectF(image.left() - kTitleGap - width, bounds.y(), width, bounds.height());
    case ImageAbove:
        return QRectF(bounds.x(), image.bottom() + kTitleGap, bounds.width(), height);
    case ImageBelow:
        return QRectF(bounds.x(), image.top() - kTitleGap - height, bounds.width(), height);
    default:
        return bounds;
    }
}

QPainterPath ButtonCell::focusRingMaskForFrame(const QRectF &cellFrame) const
{
    QPainterPath path;
    if (drawsMark()) {
        const QRectF mark = imageRectForBounds(cellFrame);
        if (d->_buttonType == RadioButton)
            path.addEllipse(mark);
        else
            path.addRoundedRect(mark, 3.5, 3.5);
    }
    return path;
}

void ButtonCell::drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame,
                                       QWidget *controlView)
{
    const QRectF imageRect = imageRectForBounds(cellFrame);
    if (!imageRect.isEmpty())
        drawImage(painter, imageForState(), imageRect, controlView);
    const VXAttributedString title = titleForState();
    if (title.length() > 0 && d->_imagePosition != ImageOnly)
        drawTitle(painter, title, titleRectForBounds(cellFrame), controlView);
}

void ButtonCell::drawImage(QPainter &painter, const std::optional<VXImage> &image,
                           const QRectF &frame, QWidget *controlView)
{
    if (image) {
        image->drawInRect(painter, frame, QRectF(QPointF(0, 0), image->size()));
        return;
    }
    if (!drawsMark())
        return;
    // No artwork of its own: the style's indicator is the platform's mark.
    QStyleOptionButton option;
    if (controlView)
        option.initFrom(controlView);
    option.rect = frame.toAlignedRect();
    option.state = d->_enabled ? QStyle::State_Enabled : QStyle::State_None;
    option.state |= d->_state == OnState      ? QStyle::State_On
                    : d->_state == MixedState ? QStyle::State_NoChange
                                              : QStyle::State_Off;
    if (d->_highlighted)
        option.state |= QStyle::State_Sunken;
    styleOf(controlView)
        ->drawPrimitive(d->_buttonType == RadioButton ? QStyle::PE_IndicatorRadioButton
                                                      : QStyle::PE_IndicatorCheckBox,
                        &option, &painter, controlView);
}

QRectF ButtonCell::drawTitle(QPainter &painter, const VXAttributedString &title,
                             const QRectF &frame, QWidget *)
{
    VXAttributedString text = title;
    // A title without a colour of its own is drawn in the control text colour of the
    // standard light look: the cells sit on white and light grey, whatever the desktop
    // theme says.
    if (text.length() > 0 &&
        !text.attributeAtIndex(VXForegroundColorAttributeName, 0, nullptr).isValid()) {
        VXShortcuts::setColor(text, d->_enabled ? VXColor::blackColor()
                                                : VXColor::colorWithCalibratedWhite(0.0, 0.35));
    }
    const QSizeF size = text.boundingRectWithSize(QSizeF(std::max(frame.width(), 1.0), 0.0),
                                                  VXStringDrawingUsesLineFragmentOrigin)
                            .size();
    const QRectF rect(frame.x(), frame.y() + (frame.height() - size.height()) / 2.0, frame.width(),
                      size.height());
    text.drawInRect(painter, rect);
    return rect;
}

QSizeF ButtonCell::cellSizeForBounds(const QRectF &bounds) const
{
    const QSizeF image = imageSize();
    const double gap = image.isEmpty() ? 0.0 : kTitleGap;
    const bool horizontal = d->_imagePosition == ImageLeft || d->_imagePosition == ImageRight;
    const QSizeF title =
        titleSizeForWidth(bounds.width() - (horizontal ? image.width() + gap : 0.0) -
                          (d->_bordered && !drawsMark() ? 2 * kBezelPaddingX : 0.0));
    QSizeF size;
    if (title.isEmpty())
        size = image;
    else if (image.isEmpty() || d->_imagePosition == ImageOverlaps)
        size = title.expandedTo(image);
    else if (horizontal)
        size = {image.width() + gap + title.width(), std::max(image.height(), title.height())};
    else
        size = {std::max(image.width(), title.width()), image.height() + gap + title.height()};
    if (d->_bordered && !drawsMark()) {
        const double minimumHeight = d->_controlSize == RegularControlSize ? 22.0
                                     : d->_controlSize == SmallControlSize ? 19.0
                                                                           : 16.0;
        size = {size.width() + 2 * kBezelPaddingX,
                std::max(size.height() + 2 * kBezelPaddingY, minimumHeight)};
    }
    return {std::ceil(size.width()), std::ceil(size.height())};
}

QObject *ButtonCell::target() const
{
    return d->_target;
}

void ButtonCell::setTarget(QObject *target)
{
    d->_target = target;
}

QByteArray ButtonCell::action() const
{
    return d->_action;
}

void ButtonCell::setAction(const QByteArray &action)
{
    d->_action = action;
}

bool ButtonCell::allowsMixedState() const
{
    return d->_allowsMixedState;
}

int ButtonCell::state() const
{
    return d->_state;
}

std::optional<VXImage> ButtonCell::image() const
{
    return d->_image;
}

void ButtonCell::setImage(const std::optional<VXImage> &image)
{
    d->_image = image;
}

std::optional<VXImage> ButtonCell::alternateImage() const
{
    return d->_alternateImage;
}

void ButtonCell::setAlternateImage(const std::optional<VXImage> &image)
{
    d->_alternateImage = image;
}

QString ButtonCell::title() const
{
    return d->_attributedTitle.string();
}

VXAttributedString ButtonCell::attributedTitle() const
{
    return d->_attributedTitle;
}

void ButtonCell::setAttributedTitle(const VXAttributedString &title)
{
    d->_attributedTitle = title;
}

VXAttributedString ButtonCell::attributedAlternateTitle() const
{
    return d->_attributedAlternateTitle;
}

void ButtonCell::setAttributedAlternateTitle(const VXAttributedString &title)
{
    d->_attributedAlternateTitle = title;
}

quint64 ButtonCell::alignment() const
{
    return d->_alignment;
}

int ButtonCell::bezelStyle() const
{
    return d->_bezelStyle;
}

void ButtonCell::setBezelStyle(int style)
{
    d->_bezelStyle = style;
}

int ButtonCell::gradientType() const
{
    return d->_gradientType;
}

void ButtonCell::setGradientType(int type)
{
    d->_gradientType = type;
}

QVariant ButtonCell::objectValue() const
{
    return QVariant::fromValue(qint64(d->_state));
}

quint64 ButtonCell::showsStateBy() const
{
    return d->_showsStateBy;
}

void ButtonCell::setShowsStateBy(quint64 mask)
{
    d->_showsStateBy = mask;
}

quint64 ButtonCell::highlightsBy() const
{
    return d->_highlightsBy;
}

void ButtonCell::setHighlightsBy(quint64 mask)
{
    d->_highlightsBy = mask;
}

int ButtonCell::imagePosition() const
{
    return d->_imagePosition;
}

void ButtonCell::setImagePosition(int position)
{
    d->_imagePosition = position;
}

int ButtonCell::imageScaling() const
{
    return d->_imageScaling;
}

void ButtonCell::setImageScaling(int scaling)
{
    d->_imageScaling = scaling;
}

int ButtonCell::controlSize() const
{
    return d->_controlSize;
}

void ButtonCell::setControlSize(int size)
{
    d->_controlSize = size;
}

VXFont ButtonCell::font() const
{
    return d->_font;
}

bool ButtonCell::isBezeled() const
{
    return d->_bezeled;
}

void ButtonCell::setBezeled(bool bezeled)
{
    d->_bezeled = bezeled;
}

bool ButtonCell::isBordered() const
{
    return d->_bordered;
}

void ButtonCell::setBordered(bool bordered)
{
    d->_bordered = bordered;
}

int ButtonCell::backgroundStyle() const
{
    return d->_backgroundStyle;
}

void ButtonCell::setBackgroundStyle(int style)
{
    d->_backgroundStyle = style;
}

bool ButtonCell::isEnabled() const
{
    return d->_enabled;
}

void ButtonCell::setEnabled(bool enabled)
{
    d->_enabled = enabled;
}

bool ButtonCell::isHighlighted() const
{
    return d->_highlighted;
}

void ButtonCell::setHighlighted(bool highlighted)
{
    d->_highlighted = highlighted;
}

int ButtonCell::buttonType() const
{
    return d->_buttonType;
}

qint64 ButtonCell::tag() const
{
    return d->_tag;
}

void ButtonCell::setTag(qint64 tag)
{
    d->_tag = tag;
}

QWidget *ButtonCell::controlView() const
{
    return d->_controlView;
}

void ButtonCell::setControlView(QWidget *view)
{
    d->_controlView = view;
}

bool ButtonCell::drawsMark() const
{
    return d->_buttonType == SwitchButton || d->_buttonType == RadioButton;
}

} // namespace Quorvelle
