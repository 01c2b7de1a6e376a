#pragma once

#include "Matrix.h"

// A radio group that redraws itself whole whenever one of its cells is drawn, so the
// selection marks behind every row follow a change of selection at once.
class VXMatrix : public Matrix
{
    Q_OBJECT
    // Given to every flat radio cell of the group.
    Q_PROPERTY(uint selectionStyle READ selectionStyle WRITE setSelectionStyle)

public:
    explicit VXMatrix(QWidget *parent = nullptr);

    void drawCellAtRow(int row, int column) override;

    uint selectionStyle() const { return _selectionStyle; }
    void setSelectionStyle(uint style);

protected:
    void childEvent(QChildEvent *event) override;

private:
    void applySelectionStyle();
    uint _selectionStyle = 0;
};
