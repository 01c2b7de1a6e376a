#include "VXMatrix.h"

#include "Button.h"
#include "VXFlatRadioButtonCell.h"

#include <QChildEvent>

using Quorvelle::Button;
using Quorvelle::Matrix;

struct VXMatrix::Private
{
    uint _selectionStyle = 0;
};

VXMatrix::VXMatrix(QWidget *parent) : Matrix(parent), d(std::make_unique<Private>()) {}

VXMatrix::~VXMatrix() = default;

void VXMatrix::drawCellAtRow(int row, int column)
{
    Matrix::drawCellAtRow(row, column);
    update();
}

void VXMatrix::setSelectionStyle(uint style)
{
    d->_selectionStyle = style;
    applySelectionStyle();
    update();
}

void VXMatrix::childEvent(QChildEvent *event)
{
    // A row added (or given its cell) after the style was set takes it up when polished.
    if (event->type() == QEvent::ChildPolished)
        applySelectionStyle();
    Matrix::childEvent(event);
}

void VXMatrix::applySelectionStyle()
{
    for (Button *button : cells()) {
        if (auto *cell = dynamic_cast<VXFlatRadioButtonCell *>(button->cell()))
            cell->setSelectionStyle(d->_selectionStyle);
    }
}

uint VXMatrix::selectionStyle() const
{
    return d->_selectionStyle;
}
