#pragma once

#include <Quorvelle/Widgets/Matrix.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <memory>

// A radio group that redraws itself whole whenever one of its cells is drawn, so the
// selection marks behind every row follow a change of selection at once.
class QV_WIDGETS_EXPORT VXMatrix : public Quorvelle::Matrix
{
    Q_OBJECT
    // Given to every flat radio cell of the group.
    Q_PROPERTY(uint selectionStyle READ selectionStyle WRITE setSelectionStyle)

public:
    explicit VXMatrix(QWidget *parent = nullptr);
    ~VXMatrix() override;

    void drawCellAtRow(int row, int column) override;

    uint selectionStyle() const;
    void setSelectionStyle(uint style);

protected:
    void childEvent(QChildEvent *event) override;

private:
    void applySelectionStyle();
    struct Private;
    std::unique_ptr<Private> d;
};
