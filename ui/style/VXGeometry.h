#pragma once

#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QSizeF>

#include <optional>

// The NSAttributedString(VXGeometry) category. "Called on nothing" is std::nullopt and
// gives a zero size.
namespace VXGeometry {

QV_WIDGETS_EXPORT QSizeF sizeForWidth(const std::optional<VXAttributedString> &string,
                                      double width);
QV_WIDGETS_EXPORT QSizeF sizeForHeight(const std::optional<VXAttributedString> &string,
                                       double height);
QV_WIDGETS_EXPORT double heightForWidth(const std::optional<VXAttributedString> &string,
                                        double width);
QV_WIDGETS_EXPORT double widthForHeight(const std::optional<VXAttributedString> &string,
                                        double height);

} // namespace VXGeometry
