#include "VXConvenienceMethods.h"

#include <QSplitter>

namespace VXConvenienceMethods {

double positionOfDividerAtIndex(const QSplitter *splitView, std::int64_t index)
{
    if (!splitView || index < 0 || index >= splitView->count())
        return 0.0;
    const QList<int> sizes = splitView->sizes();
    for (std::int64_t i = index; i >= 0; --i) {
        if (sizes.value(int(i)) == 0)
            continue; // collapsed
        const QRect frame = splitView->widget(int(i))->geometry();
        return splitView->orientation() == Qt::Horizontal ? double(frame.x() + frame.width())
                                                          : double(frame.y() + frame.height());
    }
    return 0.0;
}

} // namespace VXConvenienceMethods
