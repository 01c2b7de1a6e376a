#include "Matrix.h"

#include "Button.h"

#include <QAccessibleWidget>

#include <algorithm>

namespace Quorvelle {

namespace {

// Assistive tools see a radio group as a group, named and labelled by the label whose buddy
// it is (Qt's widget interface reads both from the buddy).
QAccessibleInterface *accessibleGroup(const QString &, QObject *object)
{
    if (auto *matrix = qobject_cast<Matrix *>(object))
        return new QAccessibleWidget(matrix, QAccessible::Grouping);
    return nullptr;
}

} // namespace

// Nothing yet: the place for state a radio group may need later.
struct Matrix::Private
{
};

Matrix::Matrix(QWidget *parent) : QWidget(parent), d(std::make_unique<Private>())
{
    static const bool factoryInstalled = [] {
        QAccessible::installFactory(accessibleGroup);
        return true;
    }();
    Q_UNUSED(factoryInstalled);
}

Matrix::~Matrix() = default;

QList<Button *> Matrix::cells() const
{
    QList<Button *> rows;
    for (Button *button : findChildren<Button *>(Qt::FindDirectChildrenOnly)) {
        if (button->buttonType() == ButtonCell::RadioButton)
            rows.append(button);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Button *a, const Button *b) { return a->y() < b->y(); });
    return rows;
}

int Matrix::rowOfCell(const Button *cell) const
{
    return int(cells().indexOf(cell));
}

Button *Matrix::cellAtRow(int row, int column) const
{
    const QList<Button *> rows = cells();
    return column == 0 && row >= 0 && row < rows.size() ? rows.at(row) : nullptr;
}

Button *Matrix::selectedCell() const
{
    for (Button *button : cells()) {
        if (button->state() == ButtonCell::OnState)
            return button;
    }
    return nullptr;
}

void Matrix::drawCellAtRow(int row, int column)
{
    if (Button *cell = cellAtRow(row, column))
        cell->update();
}

} // namespace Quorvelle
