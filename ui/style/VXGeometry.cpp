#include "VXGeometry.h"

namespace VXGeometry {

QSizeF sizeForWidth(const std::optional<VXAttributedString> &string, double width)
{
    if (!string)
        return {0.0, 0.0};
    return string->boundingRectWithSize({width, 0.0}, VXStringDrawingUsesLineFragmentOrigin).size();
}

QSizeF sizeForHeight(const std::optional<VXAttributedString> &string, double height)
{
    if (!string)
        return {0.0, 0.0};
    return string->boundingRectWithSize({0.0, height}, VXStringDrawingUsesLineFragmentOrigin)
        .size();
}

double heightForWidth(const std::optional<VXAttributedString> &string, double width)
{
    return sizeForWidth(string, width).height();
}

double widthForHeight(const std::optional<VXAttributedString> &string, double height)
{
    return sizeForHeight(string, height).width();
}

} // namespace VXGeometry
