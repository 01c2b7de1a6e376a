#pragma once

#include "VXAttributedString.h"

#include <QSizeF>

#include <optional>

// The NSAttributedString(VXGeometry) category. "Called on nothing" is std::nullopt and
// gives a zero size.
namespace VXGeometry {

QSizeF sizeForWidth(const std::optional<VXAttributedString> &string, double width);
QSizeF sizeForHeight(const std::optional<VXAttributedString> &string, double height);
double heightForWidth(const std::optional<VXAttributedString> &string, double width);
double widthForHeight(const std::optional<VXAttributedString> &string, double height);

} // namespace VXGeometry
