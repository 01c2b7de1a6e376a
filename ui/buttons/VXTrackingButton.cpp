#include "VXTrackingButton.h"

#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QWindow>

namespace {

// The window the button lies in; a button standing on its own lies in none.
QWidget *windowOf(const QWidget *button)
{
    return button->isWindow() ? nullptr : button->window();
}

// The window a window is attached to: its parent widget's window, else the transient
// parent of its native window.
QWidget *parentWindowOf(const QWidget *window)
{
    if (QWidget *parent = window->parentWidget())
        return parent->window();
    const QWindow *handle = window->windowHandle();
    if (!handle || !handle->transientParent())
        return nullptr;
    for (QWidget *top : QApplication::topLevelWidgets()) {
        if (top->windowHandle() == handle->transientParent())
            return top;
    }
    return nullptr;
}

} // namespace

VXTrackingButton::VXTrackingButton(QWidget *parent) : Button(parent)
{
    viewDidMoveToWindow();
}

VXTrackingButton::~VXTrackingButton()
{
    if (_observedWindow)
        _observedWindow->removeEventFilter(this);
}

void VXTrackingButton::setHasHover(bool hasHover)
{
    if (hasHover == _hasHover)
        return;
    _hasHover = hasHover;
    update();
}

void VXTrackingButton::validateHover()
{
    setHasHover(passedHitTest());
}

bool VXTrackingButton::passedHitTest() const
{
    QWidget *window = windowOf(this);
    if (!window)
        return false;
    // The window itself or one it is attached to must be the key (active) window.
    QWidget *candidate = window;
    while (candidate && candidate != QApplication::activeWindow())
        candidate = parentWindowOf(candidate);
    if (!candidate)
        return false;
    QWidget *hit = QApplication::widgetAt(QCursor::pos());
    return hit && (hit == this || isAncestorOf(hit));
}

bool VXTrackingButton::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        validateHover();
        break;
    case QEvent::ParentChange:
    case QEvent::Show:
        viewDidMoveToWindow();
        break;
    default:
        break;
    }
    return Button::event(event);
}

void VXTrackingButton::enterEvent(QEnterEvent *event)
{
    validateHover();
    Button::enterEvent(event);
}

void VXTrackingButton::leaveEvent(QEvent *event)
{
    validateHover();
    Button::leaveEvent(event);
}

bool VXTrackingButton::eventFilter(QObject *watched, QEvent *event)
{
    // Activation of the watched window while the button itself is hidden, or of a window
    // the button has left.
    if (watched == _observedWindow &&
        (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate))
        validateHover();
    return Button::eventFilter(watched, event);
}

void VXTrackingButton::viewDidMoveToWindow()
{
    QWidget *window = windowOf(this);
    if (window) {
        // Earlier windows stay observed until the button leaves every window.
        if (window != _observedWindow) {
            window->installEventFilter(this);
            _observedWindow = window;
        }
    } else if (_observedWindow) {
        _observedWindow->removeEventFilter(this);
        _observedWindow = nullptr;
    }
    validateHover();
}
