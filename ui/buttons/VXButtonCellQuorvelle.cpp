#include "VXButtonCellQuorvelle.h"

#include "Button.h"
#include "ButtonCell.h"

#include <QFileInfo>
#include <QPainter>

#include <climits>
#include <unistd.h>

using Quorvelle::Button;
using Quorvelle::ButtonCell;

namespace {

constexpr char kDrawSelector[] = "drawWithFrame:inView:";
constexpr char kOriginalDrawSelector[] = "originalDrawWithFrame:inView:";

void drawingHook(ButtonCell &cell, QPainter &painter, const QRectF &frame, QWidget *view)
{
    const int state = cell.state();
    const std::optional<VXImage> image = cell.image();
    if (image && image->name() == QLatin1String("checkbox_unchecked") &&
        state == ButtonCell::MixedState) {
        // Swapped for this one drawing only: afterwards the cell is as it was.
        cell.setState(ButtonCell::OffState);
        cell.setImage(VXImageCreation::imageNamed(QStringLiteral("checkbox_mixed"), nullptr));
        VXButtonCellQuorvelle::originalDrawWithFrame(cell, painter, frame, view);
        cell.setState(ButtonCell::MixedState);
        cell.setImage(image);
    } else {
        VXButtonCellQuorvelle::originalDrawWithFrame(cell, painter, frame, view);
    }
}

} // namespace

namespace VXButtonCellQuorvelle {

bool isHighlightedOrPressed(const ButtonCell &cell)
{
    if (cell.isHighlighted())
        return true;
    const auto *button = qobject_cast<const Button *>(cell.controlView());
    if (!button)
        return false;
    if (button->state() != ButtonCell::OnState)
        return false;
    const quint64 mask =
        cell.isBordered() ? (ButtonCell::PushInCellMask | ButtonCell::ChangeGrayCellMask |
                             ButtonCell::ChangeBackgroundCellMask)
                          : (ButtonCell::ChangeGrayCellMask | ButtonCell::ChangeBackgroundCellMask);
    return (cell.showsStateBy() & mask) != 0;
}

void originalDrawWithFrame(ButtonCell &cell, QPainter &painter, const QRectF &frame, QWidget *view)
{
    if (const auto draw = ButtonCell::methods().implementation(kOriginalDrawSelector))
        draw(cell, painter, frame, view);
}

void attachMethods(VXMethodTable<void(ButtonCell &, QPainter &, const QRectF &, QWidget *)> &table)
{
    table.replaceMethod(kOriginalDrawSelector, &drawingHook);
}

bool load(const QString &name)
{
    // Only the product's main application draws mixed check boxes with the image; every
    // other process keeps the standard drawing.
    if (name != QLatin1String("Quorvelle"))
        return false;
    VXExchangeMethodImplementations(ButtonCell::methods(), kOriginalDrawSelector, kDrawSelector);
    return true;
}

QString processName()
{
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0)
        return {};
    return QFileInfo(QString::fromLocal8Bit(path, length)).fileName();
}

} // namespace VXButtonCellQuorvelle

namespace {
// The class-load step: when the library is loaded (before main for a program linking it),
// once per process.
[[maybe_unused]] const bool exchangedAtLoad =
    VXButtonCellQuorvelle::load(VXButtonCellQuorvelle::processName());
} // namespace
