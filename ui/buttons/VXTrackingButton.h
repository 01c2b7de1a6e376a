#pragma once

#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

/**
 * A Button that knows whether the mouse is over it, for cells with hover looks
 * (VXFlatBorderedButtonCell, artwork cells). It does not trust enter and leave alone: on
 * each, on its window's activation changes and when it moves into a window it hit-tests the
 * pointer itself, so a covered part or an inactive window shows no hover.
 */
class QV_WIDGETS_EXPORT VXTrackingButton : public Quorvelle::Button
{
    Q_OBJECT
    /** Whether the mouse is over the button and its window is active. */
    Q_PROPERTY(bool hasHover READ hasHover WRITE setHasHover)

public:
    /** A push button with a plain cell and no hover. */
    explicit VXTrackingButton(QWidget *parent = nullptr);
    ~VXTrackingButton() override;

    /** Whether the button shows its hover look. */
    bool hasHover() const;
    /** Sets the hover look; repaints only when the value really changes. */
    void setHasHover(bool hasHover);
    /** Sets hasHover from passedHitTest(): what every tracked event does. */
    void validateHover();
    /**
     * Whether the pointer is over the button or one of its children, and the button's window
     * (or a window it is attached to, as a dialog to its parent) is the active one.
     */
    bool passedHitTest() const;

protected:
    /** Revalidates the hover when the window's activation changes or the button is shown. */
    bool event(QEvent *event) override;
    /** Revalidates the hover when the pointer enters. */
    void enterEvent(QEnterEvent *event) override;
    /** Revalidates the hover when the pointer leaves. */
    void leaveEvent(QEvent *event) override;
    /** Watches the window's activation while the button is hidden. */
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void viewDidMoveToWindow();
    struct Private;
    std::unique_ptr<Private> d;
};
