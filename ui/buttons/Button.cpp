#include "Button.h"

#include "Matrix.h"
#include "VXColorConvertion.h"
#include "VXQuorvelleColor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <cmath>

namespace Quorvelle {

namespace {

// The text with its mnemonic marker removed ("&&" stays a literal ampersand), and where
// the mnemonic character landed (-1 for none).
QString withoutMnemonic(const QString &text, qsizetype *mnemonicAt = nullptr)
{
    QString plain;
    plain.reserve(text.size());
    if (mnemonicAt)
        *mnemonicAt = -1;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && i + 1 < text.size()) {
            ++i;
            if (mnemonicAt && *mnemonicAt < 0 && text.at(i) != QLatin1Char('&'))
                *mnemonicAt = plain.size();
        }
        plain.append(text.at(i));
    }
    return plain;
}

} // namespace

struct Button::Private
{
    std::unique_ptr<ButtonCell> _cell;
    QString _cellClass;
    QString _syncedText;
    // Focus that a click gave shows no ring until the keyboard is used.
    bool _focusByMouse = false;
};

Button::Button(QWidget *parent) : QAbstractButton(parent), d(std::make_unique<Private>())
{
    setCell(std::make_unique<ButtonCell>());
}

Button::~Button() = default;

void Button::setCell(std::unique_ptr<ButtonCell> cell)
{
    if (!cell)
        return;
    d->_cell = std::move(cell);
    d->_cell->setControlView(this);
    d->_syncedText = QString();
    setButtonType(d->_cell->buttonType());
    if (isCheckable())
        QAbstractButton::setChecked(d->_cell->state() != ButtonCell::OffState);
    updateGeometry();
    update();
}

void Button::setState(int state)
{
    d->_cell->setState(state);
    const QSignalBlocker blocker(this);
    QAbstractButton::setChecked(d->_cell->state() != ButtonCell::OffState);
    updateCell();
}

void Button::setButtonType(int type)
{
    if (type != d->_cell->buttonType())
        d->_cell->setButtonType(type);
    const bool checkable = type != ButtonCell::MomentaryLightButton &&
                           type != ButtonCell::MomentaryChangeButton &&
                           type != ButtonCell::MomentaryPushInButton;
    setCheckable(checkable);
    setAutoExclusive(type == ButtonCell::RadioButton);
    update();
}

void Button::setControlSize(int size)
{
    d->_cell->setControlSize(size);
    updateGeometry();
}

void Button::setBordered(bool bordered)
{
    d->_cell->setBordered(bordered);
    update();
}

void Button::setCellClass(const QString &className)
{
    ButtonCellCoding coding;
    coding.buttonType = d->_cell->buttonType();
    coding.controlSize = d->_cell->controlSize();
    coding.bordered = d->_cell->isBordered();
    coding.enabled = isEnabled();
    coding.state = d->_cell->state();
    coding.title = withoutMnemonic(text());
    if (auto cell = ButtonCell::cellWithClassName(className, coding)) {
        d->_cellClass = className;
        setCell(std::move(cell));
    }
}

void Button::syncCell() const
{
    if (d->_syncedText != text() || (d->_syncedText.isEmpty() && d->_cell->title().size())) {
        d->_syncedText = text();
        qsizetype mnemonicAt = -1;
        d->_cell->setTitle(withoutMnemonic(d->_syncedText, &mnemonicAt));
        // The mnemonic is underlined where the style shows mnemonics, as on Qt's buttons.
        if (mnemonicAt >= 0 && style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this)) {
            VXAttributedString title = d->_cell->attributedTitle();
            title.addAttribute(VXUnderlineStyleAttributeName, QVariant::fromValue(qint64(1)),
                               VXRange{quint64(mnemonicAt), 1});
            d->_cell->setAttributedTitle(title);
        }
    }
    d->_cell->setEnabled(isEnabled());
    d->_cell->setHighlighted(isDown());
}

QSize Button::sizeHint() const
{
    syncCell();
    const QSizeF size = d->_cell->cellSizeForBounds(QRectF(0, 0, 10000, 10000));
    return {int(std::ceil(size.width())), int(std::ceil(size.height()))};
}

QSize Button::minimumSizeHint() const
{
    return sizeHint();
}

void Button::paintEvent(QPaintEvent *)
{
    syncCell();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.save();
    if (!isFlipped()) {
        // A view whose coordinates grow upwards.
        painter.translate(0, height());
        painter.scale(1.0, -1.0);
    }
    d->_cell->drawWithFrame(painter, QRectF(rect()), this);
    painter.restore();
    // Focus that a click gave shows no ring until the keyboard is used.
    if (!hasFocus() || d->_focusByMouse)
        return;
    const QPainterPath ring = d->_cell->focusRingMaskForFrame(QRectF(rect()));
    if (ring.isEmpty()) {
        // A push cell: the style's focus frame is too faint on the flat looks (1.4:1 in
        // Fusion), so a ring follows the bezel's rounded edge instead: two points of the
        // kit's blue, which stands out from a white or grey bezel, and two of white
        // inside it, which stands out from a blue one. Either way the focused button
        // differs from the unfocused one by at least 4.5:1 somewhere along its edge.
        const QColor blue = VXColorConvertion::newCGColor(QuorvelleColor::quorvelleBlueColor());
        const QRectF edge = QRectF(rect());
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(blue, 2.0));
        painter.drawRoundedRect(edge.adjusted(1.0, 1.0, -1.0, -1.0), 3.0, 3.0);
        painter.setPen(QPen(Qt::white, 2.0));
        painter.drawRoundedRect(edge.adjusted(3.0, 3.0, -3.0, -3.0), 1.0, 1.0);
    } else {
        // Two points of the kit's blue over the mark's edge: the grey edge of an unchosen
        // mark is too faint to tell focus by (1.6:1 on white), the blue is 4.5:1.
        painter.setPen(
            QPen(VXColorConvertion::newCGColor(QuorvelleColor::quorvelleBlueColor()), 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(ring);
    }
}

void Button::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        d->_cell->setEnabled(isEnabled());
    else if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGeometry();
    QAbstractButton::changeEvent(event);
}

void Button::keyPressEvent(QKeyEvent *event)
{
    if (d->_focusByMouse) {
        d->_focusByMouse = false;
        update();
    }
    // Return and Enter press a focused button, as Space does.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        event->modifiers() == Qt::NoModifier && !event->isAutoRepeat()) {
        animateClick();
        event->accept();
        return;
    }
    const bool arrow = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down ||
                       event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    QAbstractButton::keyPressEvent(event);
    if (!arrow || !autoExclusive() || !isCheckable())
        return;
    // Qt moves the focus to the next radio button and checks it only when this one was
    // checked; in a radio group an arrow always chooses, as in every desktop's groups.
    auto *next = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
    if (next && next != this && next->parentWidget() == parentWidget() && next->autoExclusive() &&
        next->isCheckable() && !next->isChecked())
        next->click();
}

void Button::focusInEvent(QFocusEvent *event)
{
    d->_focusByMouse = event->reason() == Qt::MouseFocusReason;
    QAbstractButton::focusInEvent(event);
}

void Button::checkStateSet()
{
    const int state = isChecked() ? ButtonCell::OnState : ButtonCell::OffState;
    if ((d->_cell->state() != ButtonCell::OffState) != isChecked())
        d->_cell->setState(state);
    updateCell();
}

void Button::nextCheckState()
{
    QAbstractButton::nextCheckState();
    d->_cell->setState(isChecked() ? ButtonCell::OnState : ButtonCell::OffState);
    updateCell();
}

void Button::updateCell()
{
    if (auto *matrix = qobject_cast<Matrix *>(parentWidget())) {
        const int row = matrix->rowOfCell(this);
        if (row >= 0) {
            matrix->drawCellAtRow(row, 0);
            return;
        }
    }
    update();
}

ButtonCell *Button::cell() const
{
    return d->_cell.get();
}

int Button::state() const
{
    return d->_cell->state();
}

int Button::buttonType() const
{
    return d->_cell->buttonType();
}

int Button::controlSize() const
{
    return d->_cell->controlSize();
}

bool Button::isBordered() const
{
    return d->_cell->isBordered();
}

QString Button::cellClass() const
{
    return d->_cellClass;
}

} // namespace Quorvelle
