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

/**
 * Additions to every button cell: the pressed test the flat cells choose their colours by,
 * and a drawing hook that shows a mixed check box whose image is "checkbox_unchecked" with
 * the application's own "checkbox_mixed" image. The hook is installed only in the suite's
 * main application (a process named "Quorvelle"); elsewhere cells draw as they are.
 */
namespace VXButtonCellQuorvelle {

/**
 * Whether the cell should look pressed: highlighted, or on and showing its state by push-in,
 * grey or background (push-in counts for bordered cells only). The state is read from the
 * cell's Button; a cell without one looks pressed only while highlighted.
 */
QV_WIDGETS_EXPORT bool isHighlightedOrPressed(const Quorvelle::ButtonCell &cell);

/**
 * Calls the method installed as "originalDrawWithFrame:inView:": once load() has exchanged
 * the entries, the standard drawing, which the hook reaches through it. Before the
 * exchange that method is the hook itself, so only the hook should call this.
 */
QV_WIDGETS_EXPORT void originalDrawWithFrame(Quorvelle::ButtonCell &cell, QPainter &painter,
                                             const QRectF &frame, QWidget *view);

/** Adds the additions' method ("originalDrawWithFrame:inView:") to a cell method table. */
QV_WIDGETS_EXPORT void attachMethods(
    VXMethodTable<void(Quorvelle::ButtonCell &, QPainter &, const QRectF &, QWidget *)> &table);

/**
 * Exchanges the two drawing entries when processName is the suite's main application's
 * ("Quorvelle"); runs once when the library is loaded. Answers whether it exchanged.
 */
QV_WIDGETS_EXPORT bool load(const QString &processName);

/** The file name of the running executable (from /proc/self/exe); empty when unreadable. */
QV_WIDGETS_EXPORT QString processName();

} // namespace VXButtonCellQuorvelle
