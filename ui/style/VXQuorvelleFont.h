#pragma once

#include "VXFont.h"

#include <QString>
#include <QStringList>

#include <optional>

// The NSFont(VXQuorvelleFlatDesign) category: the kit's font family and its sizes. Every
// lookup ends at the system font, so none of them fails.
namespace QuorvelleFont {

VXFont quorvelleCustomFontWithName(const QString &name,
                                   const std::optional<QStringList> &alternateNames, double size);
VXFont quorvelleFallbackFontWithSize(double size);
VXFont quorvelleRegularFontWithSize(double size);
VXFont quorvelleMediumFontWithSize(double size);
VXFont quorvelleBoldFontWithSize(double size);
VXFont quorvelleItalicFontWithSize(double size);
VXFont quorvelleBoldItalicFontWithSize(double size);
VXFont quorvelleThinFontWithSize(double size);

constexpr double quorvelleRegularFontSize()
{
    return 12.0;
}
constexpr double quorvelleSmallFontSize()
{
    return 11.0;
}
constexpr double quorvelleMiniFontSize()
{
    return 9.0;
}
constexpr double quorvelleHeaderFontSize()
{
    return 13.0;
}
constexpr double quorvelleTitleFontSize()
{
    return 19.0;
}

} // namespace QuorvelleFont
