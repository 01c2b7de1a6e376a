#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <cstdint>

class QSplitter;

// The NSSplitView(VXConvenienceMethods) category. A splitter whose panes sit side by side
// (Qt::Horizontal) is the platform's "vertical" split view. QSplitter is y-down like the
// platform's split view, so positions need no conversion.
namespace VXConvenienceMethods {

// The far edge (right for side-by-side panes, bottom for stacked ones) of the last pane at
// or before index that is not collapsed (a collapsed pane has size 0); 0.0 when all of them
// are collapsed or the index is outside the splitter.
QV_WIDGETS_EXPORT double positionOfDividerAtIndex(const QSplitter *splitView, std::int64_t index);

} // namespace VXConvenienceMethods
