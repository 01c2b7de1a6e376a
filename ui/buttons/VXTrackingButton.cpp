#include "VXTrackingButton.h"

#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QPointer>
#include <QWindow>

using Quorvelle::Button;

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

struct VXTrackingButton::Private
{
    bool _hasHover = false;
    // The window whose activation is watched (the button's window while it has one).
    QPointer<QWidget> _observedWindow;
};

VXTrackingButton::VXTrackingButton(QWidget *parent) : Button(parent), d(std::make_unique<Private>())
{
    viewDidMoveToWindow();
}

VXTrackingButton::~VXTrackingButton()
{
    if (d->_observedWindow)
        d->_observedWindow->removeEventFilter(this);
}

void VXTrackingButton::setHasHover(bool hasHover)
{
    if (hasHover == d->_hasHover)
        return;
    d->_hasHover = hasHover;
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
    if (watched == d->_observedWindow &&
        (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate))
        validateHover();
    return Button::eventFilter(watched, event);
}

void VXTrackingButton::viewDidMoveToWindow()
{
    QWidget *window = windowOf(this);
    if (window) {
        // Earlier windows stay observed until the button leaves every window.
        if (window != d->_observedWindow) {
            window->installEventFilter(this);
            d->_observedWindow = window;
        }
    } else if (d->_observedWindow) {
        d->_observedWindow->removeEventFilter(this);
        d->_observedWindow = nullptr;
    }
    validateHover();
}

bool VXTrackingButton::hasHover() const
{
    return d->_hasHover;
}
