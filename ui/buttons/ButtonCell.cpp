#include "ButtonCell.h"

#include "VXButtonCellQuorvelle.h"
#include "VXColor.h"
#include "VXShortcuts.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

#include <algorithm>
#include <cmath>

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

ButtonCell::ButtonCell() : _font(VXFont::systemFontOfSize(VXFont::systemFontSize())) {}

ButtonCell::ButtonCell(const ButtonCellCoding &coding) : ButtonCell()
{
    setButtonType(coding.buttonType);
    _controlSize = coding.controlSize;
    _font = VXFont::systemFontOfSize(systemFontSizeFor(coding.controlSize));
    _bordered = coding.bordered;
    _enabled = coding.enabled;
    setState(coding.state);
    setTitle(coding.title);
}

ButtonCell::~ButtonCell() = default;

std::unique_ptr<ButtonCell> ButtonCell::copy() const
{
    return std::unique_ptr<ButtonCell>(new ButtonCell(*this));
}

void ButtonCell::setAllowsMixedState(bool allows)
{
    _allowsMixedState = allows;
    if (!allows && _state == MixedState)
        _state = OnState;
}

void ButtonCell::setState(int state)
{
    if (state == MixedState)
        _state = _allowsMixedState ? MixedState : OnState;
    else
        _state = state == OffState ? OffState : OnState;
}

void ButtonCell::setObjectValue(const QVariant &value)
{
    setState(value.isValid() && !value.isNull() ? value.toInt() : OffState);
}

void ButtonCell::setTitle(const QString &title)
{
    VXAttributes attributes;
    attributes.insert(VXFontAttributeName, QVariant::fromValue(_font));
    _attributedTitle = VXAttributedString(title, attributes);
    VXShortcuts::setAlignment(_attributedTitle, _alignment);
}

void ButtonCell::setAlignment(quint64 alignment)
{
    _alignment = alignment;
    VXShortcuts::setAlignment(_attributedTitle, alignment);
}

void ButtonCell::setFont(const VXFont &font)
{
    _font = font;
    VXShortcuts::setAttribute(_attributedTitle, VXFontAttributeName, QVariant::fromValue(font));
}

void ButtonCell::setButtonType(int type)
{
    _buttonType = type;
    switch (type) {
    case MomentaryLightButton:
        _highlightsBy = ChangeBackgroundCellMask;
        _showsStateBy = NoCellMask;
        break;
    case PushOnPushOffButton:
        _highlightsBy = PushInCellMask | ChangeGrayCellMask;
        _showsStateBy = ChangeBackgroundCellMask | ChangeGrayCellMask;
        break;
    case ToggleButton:
        _highlightsBy = PushInCellMask | ContentsCellMask;
        _showsStateBy = ContentsCellMask;
        break;
    case SwitchButton:
    case RadioButton:
        _highlightsBy = ContentsCellMask;
        _showsStateBy = ContentsCellMask;
        _imagePosition = ImageLeft;
        _alignment = NaturalTextAlignment;
        _bordered = false;
        break;
    case MomentaryChangeButton:
        _highlightsBy = ContentsCellMask;
        _showsStateBy = NoCellMask;
        break;
    case OnOffButton:
        _highlightsBy = ChangeBackgroundCellMask;
        _showsStateBy = ChangeBackgroundCellMask;
        break;
    default:
        _highlightsBy = PushInCellMask | ChangeGrayCellMask;
        _showsStateBy = NoCellMask;
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
    if (_enabled)
        option.state |= QStyle::State_Enabled;
    else
        option.state &= ~QStyle::State_Enabled;
    if (_highlighted)
        option.state |= QStyle::State_Sunken;
    if (_state == OnState && (_showsStateBy & (ChangeGrayCellMask | ChangeBackgroundCellMask)))
        option.state |= QStyle::State_On;
    styleOf(controlView)
        ->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, controlView);
}

std::optional<VXImage> ButtonCell::imageForState() const
{
    const bool alternate = (_state == OnState && (_showsStateBy & ContentsCellMask)) ||
                           (_highlighted && (_highlightsBy & ContentsCellMask));
    return alternate && _alternateImage ? _alternateImage : _image;
}

VXAttributedString ButtonCell::titleForState() const
{
    const bool alternate = (_state == OnState && (_showsStateBy & ContentsCellMask)) ||
                           (_highlighted && (_highlightsBy & ContentsCellMask));
    return alternate && _attributedAlternateTitle.length() > 0 ? _attributedAlternateTitle
                                                               : _attributedTitle;
}

double ButtonCell::markSide() const
{
    switch (_controlSize) {
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
    if (_attributedTitle.length() == 0 || _imagePosition == ImageOnly)
        return {};
    return _attributedTitle
        .boundingRectWithSize(QSizeF(std::max(width, 1.0), 0.0),
                              VXStringDrawingUsesLineFragmentOrigin)
        .size();
}

QSizeF ButtonCell::imageSize() const
{
    if (drawsMark())
        return {markSide(), markSide()};
    if (!_image || _imagePosition == NoImage)
        return {};
    return _image->size();
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
    const bool both = !title.isEmpty() && _imagePosition != ImageOverlaps;
    QPointF origin;
    switch (_imagePosition) {
    case ImageLeft:
    case ImageRight: {
        const double group = image.width() + (both ? kTitleGap + title.width() : 0.0);
        const double left = bounds.x() + (bounds.width() - group) / 2.0;
        origin = {_imagePosition == ImageLeft ? left : left + group - image.width(),
                  bounds.y() + (bounds.height() - image.height()) / 2.0};
        break;
    }
    case ImageAbove:
    case ImageBelow: {
        const double group = image.height() + (both ? kTitleGap + title.height() : 0.0);
        const double top = bounds.y() + (bounds.height() - group) / 2.0;
        origin = {bounds.x() + (bounds.width() - image.width()) / 2.0,
                  _imagePosition == ImageAbove ? top : top + group - image.height()};
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
    if (image.isEmpty() || _imagePosition == ImageOverlaps)
        return bounds;
    switch (_imagePosition) {
    case ImageLeft:
        return QRectF(QPointF(image.right() + kTitleGap, bounds.y()), bounds.bottomRight());
    case ImageRight:
        return QRectF(bounds.topLeft(), QPointF(image.left() - kTitleGap, bounds.bottom()));
    case ImageAbove:
        return QRectF(QPointF(bounds.x(), image.bottom() + kTitleGap), bounds.bottomRight());
    case ImageBelow:
        return QRectF(bounds.topLeft(), QPointF(bounds.right(), image.top() - kTitleGap));
    default:
        return bounds;
    }
}

QPainterPath ButtonCell::focusRingMaskForFrame(const QRectF &cellFrame) const
{
    QPainterPath path;
    if (drawsMark()) {
        const QRectF mark = imageRectForBounds(cellFrame);
        if (_buttonType == RadioButton)
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
    if (title.length() > 0 && _imagePosition != ImageOnly)
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
    option.state = _enabled ? QStyle::State_Enabled : QStyle::State_None;
    option.state |= _state == OnState      ? QStyle::State_On
                    : _state == MixedState ? QStyle::State_NoChange
                                           : QStyle::State_Off;
    if (_highlighted)
        option.state |= QStyle::State_Sunken;
    styleOf(controlView)
        ->drawPrimitive(_buttonType == RadioButton ? QStyle::PE_IndicatorRadioButton
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
        VXShortcuts::setColor(text, _enabled ? VXColor::blackColor()
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
    const bool horizontal = _imagePosition == ImageLeft || _imagePosition == ImageRight;
    const QSizeF title =
        titleSizeForWidth(bounds.width() - (horizontal ? image.width() + gap : 0.0) -
                          (_bordered && !drawsMark() ? 2 * kBezelPaddingX : 0.0));
    QSizeF size;
    if (title.isEmpty())
        size = image;
    else if (image.isEmpty() || _imagePosition == ImageOverlaps)
        size = title.expandedTo(image);
    else if (horizontal)
        size = {image.width() + gap + title.width(), std::max(image.height(), title.height())};
    else
        size = {std::max(image.width(), title.width()), image.height() + gap + title.height()};
    if (_bordered && !drawsMark()) {
        const double minimumHeight = _controlSize == RegularControlSize ? 22.0
                                     : _controlSize == SmallControlSize ? 19.0
                                                                        : 16.0;
        size = {size.width() + 2 * kBezelPaddingX,
                std::max(size.height() + 2 * kBezelPaddingY, minimumHeight)};
    }
    return {std::ceil(size.width()), std::ceil(size.height())};
}
