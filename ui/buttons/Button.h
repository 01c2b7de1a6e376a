#pragma once

#include <Quorvelle/Widgets/ButtonCell.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QAbstractButton>

#include <memory>

namespace Quorvelle {

// A button view: owns one cell, paints it over its whole rectangle and takes its size from
// it. Focus, Space and Return activation, mnemonics and the accessible role and name are
// Qt's; the widget mirrors its text, checked state, press and enabledness into the cell.
// A focused check box or radio button shows a ring on its mark (unless a click gave the
// focus), and an arrow key in a radio group chooses the button it moves to.
class QV_WIDGETS_EXPORT Button : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(int buttonType READ buttonType WRITE setButtonType)
    Q_PROPERTY(int controlSize READ controlSize WRITE setControlSize)
    Q_PROPERTY(bool bordered READ isBordered WRITE setBordered)
    Q_PROPERTY(QString cellClass READ cellClass WRITE setCellClass)
    Q_PROPERTY(bool flipped READ isFlipped)

public:
    explicit Button(QWidget *parent = nullptr);
    ~Button() override;

    ButtonCell *cell() const;
    void setCell(std::unique_ptr<ButtonCell> cell);

    int state() const;
    void setState(int state);

    int buttonType() const;
    void setButtonType(int type);
    int controlSize() const;
    void setControlSize(int size);
    bool isBordered() const;
    void setBordered(bool bordered);
    // Replaces the cell by one of the named class, decoded from this button's settings: the
    // road a window description takes.
    QString cellClass() const;
    void setCellClass(const QString &className);

    virtual bool isFlipped() const { return true; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void checkStateSet() override;
    void nextCheckState() override;
    // Redraws after the cell's state changed; a radio group redraws through its matrix.
    virtual void updateCell();
    // Brings the cell up to date with the widget before it draws or measures.
    void syncCell() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Quorvelle
