#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <cstdint>

class QSplitter;

/** Helpers for QSplitter. */
namespace VXConvenienceMethods {

/**
 * Where the divider after pane index sits, in the splitter's coordinates (y-down): the far
 * edge (right for side-by-side panes, Qt::Horizontal; bottom for stacked ones) of the last
 * pane at or before index that is not collapsed (a collapsed pane has size 0). 0.0 when all
 * of them are collapsed, or when splitView is null or the index is outside the splitter.
 */
QV_WIDGETS_EXPORT double positionOfDividerAtIndex(const QSplitter *splitView, std::int64_t index);

} // namespace VXConvenienceMethods
