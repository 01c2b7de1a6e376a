#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QAbstractButton>

#include <memory>

namespace Quorvelle {

/**
 * A button widget that draws a ButtonCell: the cell gives the look (a flat push button, a
 * flat check box, a radio button of a VXMatrix, ...), the widget the behaviour. It owns one
 * cell, paints it over its whole rectangle and takes its size hint from it.
 *
 * Focus, Space activation, mnemonics and the accessible role and name are
 * QAbstractButton's; Return and Enter also press a focused button. The widget mirrors its
 * text (mnemonic marker removed), checked state, press and enabledness into the cell before
 * it draws, so set the title with setText(). A focused button shows a ring in the kit's
 * blue (around a push button's edge, over a check box's or radio button's mark) unless a
 * click gave it the focus, and an arrow key in a radio group chooses the button it moves
 * to. In a window description (or Qt Designer) the class is "Quorvelle::Button" and the
 * cell is chosen with the cellClass property.
 */
class QV_WIDGETS_EXPORT Button : public QAbstractButton
{
    Q_OBJECT
    /** The cell's ButtonCell::ButtonType; checkable and auto-exclusive follow it. */
    Q_PROPERTY(int buttonType READ buttonType WRITE setButtonType)
    /** The cell's ButtonCell::ControlSize. */
    Q_PROPERTY(int controlSize READ controlSize WRITE setControlSize)
    /** Whether a push cell draws its bezel. */
    Q_PROPERTY(bool bordered READ isBordered WRITE setBordered)
    /** The class name of the cell, set after buttonType and controlSize in a description. */
    Q_PROPERTY(QString cellClass READ cellClass WRITE setCellClass)
    /** Whether the widget's coordinates grow downwards (always, for a plain Button). */
    Q_PROPERTY(bool flipped READ isFlipped)

public:
    /** A push button with a plain ButtonCell. */
    explicit Button(QWidget *parent = nullptr);
    ~Button() override;

    /** The cell the button draws; owned by the button, never nullptr. */
    ButtonCell *cell() const;
    /**
     * Replaces the cell (the button owns it; nullptr is ignored). The button takes the cell's
     * type (checkable, auto-exclusive) and state, and repaints.
     */
    void setCell(std::unique_ptr<ButtonCell> cell);

    /** The cell's ButtonCell::CellState. */
    int state() const;
    /** Sets the cell's state and the checked state, without emitting toggled(). */
    void setState(int state);

    /** The cell's ButtonCell::ButtonType. */
    int buttonType() const;
    /**
     * Sets the cell's type; every type but the momentary ones makes the button checkable,
     * RadioButton makes it auto-exclusive among its siblings.
     */
    void setButtonType(int type);
    /** The cell's ButtonCell::ControlSize. */
    int controlSize() const;
    /** Sets the cell's control size and updates the geometry. */
    void setControlSize(int size);
    /** Whether a push cell draws its bezel. */
    bool isBordered() const;
    /** Sets whether a push cell draws its bezel. */
    void setBordered(bool bordered);
    /** The class name last given to setCellClass (empty until then), not updated by setCell. */
    QString cellClass() const;
    /**
     * Replaces the cell by a new one of the named class (ButtonCell::cellWithClassName),
     * decoded from this button's type, size, border, enabledness, state and text, so the
     * flat cells take their description defaults. An unknown name changes nothing.
     */
    void setCellClass(const QString &className);

    /**
     * Whether the cell draws in y-down coordinates: true. A subclass that answers false gets
     * a painter mapped to y-up before the cell draws.
     */
    virtual bool isFlipped() const { return true; }

    /** The cell's size for unlimited bounds, rounded up. */
    QSize sizeHint() const override;
    /** The same as sizeHint(): a button is never drawn smaller than its cell. */
    QSize minimumSizeHint() const override;

protected:
    /** Draws the cell over the whole widget, then the focus ring. */
    void paintEvent(QPaintEvent *event) override;
    /** Keeps the cell's enabledness and the geometry up to date. */
    void changeEvent(QEvent *event) override;
    /** Adds Return and Enter activation and choosing by arrow keys in a radio group. */
    void keyPressEvent(QKeyEvent *event) override;
    /** Notes whether a click gave the focus (no ring then, until a key is pressed). */
    void focusInEvent(QFocusEvent *event) override;
    /** Passes a checked state set from outside on to the cell. */
    void checkStateSet() override;
    /** Passes a click's new checked state on to the cell. */
    void nextCheckState() override;
    /** Redraws after the cell's state changed; a row of a Matrix redraws through the matrix. */
    virtual void updateCell();
    /** Brings the cell up to date with the widget (title, enabled, pressed) before it draws or
     * measures. */
    void syncCell() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Quorvelle
