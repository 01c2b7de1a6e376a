#pragma once

#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QSizeF>

#include <optional>

/**
 * Measuring styled text for layouts: the size a text takes when one dimension is fixed.
 * The text is laid out in wrapped lines from the top; a fixed dimension of 0 is unlimited.
 * Sizes are in points and not rounded. std::nullopt (no text) gives a zero size.
 */
namespace VXGeometry {

/** The size the text takes when wrapped to width. */
QV_WIDGETS_EXPORT QSizeF sizeForWidth(const std::optional<VXAttributedString> &string,
                                      double width);
/** The size the text takes when limited to height (lines below it are dropped). */
QV_WIDGETS_EXPORT QSizeF sizeForHeight(const std::optional<VXAttributedString> &string,
                                       double height);
/** The height the text takes when wrapped to width: what QWidget::heightForWidth needs. */
QV_WIDGETS_EXPORT double heightForWidth(const std::optional<VXAttributedString> &string,
                                        double width);
/** The width the text takes when limited to height. */
QV_WIDGETS_EXPORT double widthForHeight(const std::optional<VXAttributedString> &string,
                                        double height);

} // namespace VXGeometry
