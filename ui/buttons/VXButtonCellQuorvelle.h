#pragma once

#include <Quorvelle/Widgets/VXRuntime.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QString>

namespace Quorvelle {
class ButtonCell;
}
class QPainter;
class QRectF;
class QWidget;

// Additions to every button cell: a pressed test the flat cells choose their colours by,
// and a drawing hook that shows a check box's mixed state with its own image.
namespace VXButtonCellQuorvelle {

// Highlighted, or an on-state button that shows its state by push-in, grey or background
// (push-in counts for bordered cells only). The state is the control view's.
QV_WIDGETS_EXPORT bool isHighlightedOrPressed(const Quorvelle::ButtonCell &cell);

// The body that takes the place of drawWithFrame:inView: once exchanged; under its own
// name, after the exchange, it reaches the standard drawing.
QV_WIDGETS_EXPORT void originalDrawWithFrame(Quorvelle::ButtonCell &cell, QPainter &painter,
                                             const QRectF &frame, QWidget *view);

// Adds the additions' methods to the cell class's method table.
QV_WIDGETS_EXPORT void attachMethods(
    VXMethodTable<void(Quorvelle::ButtonCell &, QPainter &, const QRectF &, QWidget *)> &table);

// Runs once at start-up: exchanges the drawing entries when the process is the product's
// main application. Answers whether it exchanged.
QV_WIDGETS_EXPORT bool load(const QString &processName);

// The file name of the running executable.
QV_WIDGETS_EXPORT QString processName();

} // namespace VXButtonCellQuorvelle
