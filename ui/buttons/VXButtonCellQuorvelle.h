#pragma once

#include "VXRuntime.h"

#include <QString>

class ButtonCell;
class QPainter;
class QRectF;
class QWidget;

// Additions to every button cell: a pressed test the flat cells choose their colours by,
// and a drawing hook that shows a check box's mixed state with its own image.
namespace VXButtonCellQuorvelle {

// Highlighted, or an on-state button that shows its state by push-in, grey or background
// (push-in counts for bordered cells only). The state is the control view's.
bool isHighlightedOrPressed(const ButtonCell &cell);

// The body that takes the place of drawWithFrame:inView: once exchanged; under its own
// name, after the exchange, it reaches the standard drawing.
void originalDrawWithFrame(ButtonCell &cell, QPainter &painter, const QRectF &frame, QWidget *view);

// Adds the additions' methods to the cell class's method table.
void attachMethods(VXMethodTable<void(ButtonCell &, QPainter &, const QRectF &, QWidget *)> &table);

// Runs once at start-up: exchanges the drawing entries when the process is the product's
// main application. Answers whether it exchanged.
bool load(const QString &processName);

// The file name of the running executable.
QString processName();

} // namespace VXButtonCellQuorvelle
