#pragma once

#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

// A button that knows whether the mouse is over it. It does not trust enter and leave
// alone: on each, on its window's activation changes and when it moves into a window it
// hit-tests the pointer itself, so a covered part or an inactive window shows no hover.
class QV_WIDGETS_EXPORT VXTrackingButton : public Quorvelle::Button
{
    Q_OBJECT
    Q_PROPERTY(bool hasHover READ hasHover WRITE setHasHover)

public:
    explicit VXTrackingButton(QWidget *parent = nullptr);
    ~VXTrackingButton() override;

    bool hasHover() const;
    // Redraws only when the value really changes.
    void setHasHover(bool hasHover);
    void validateHover();
    bool passedHitTest() const;

protected:
    bool event(QEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void viewDidMoveToWindow();
    struct Private;
    std::unique_ptr<Private> d;
};
