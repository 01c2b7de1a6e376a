#pragma once

#include <Quorvelle/Widgets/VXFont.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QString>
#include <QStringList>

#include <optional>

// The NSFont(VXQuorvelleFlatDesign) category: the kit's font family and its sizes. Every
// lookup ends at the system font, so none of them fails.
namespace QuorvelleFont {

QV_WIDGETS_EXPORT VXFont quorvelleCustomFontWithName(
    const QString &name, const std::optional<QStringList> &alternateNames, double size);
QV_WIDGETS_EXPORT VXFont quorvelleFallbackFontWithSize(double size);
QV_WIDGETS_EXPORT VXFont quorvelleRegularFontWithSize(double size);
QV_WIDGETS_EXPORT VXFont quorvelleMediumFontWithSize(double size);
QV_WIDGETS_EXPORT VXFont quorvelleBoldFontWithSize(double size);
QV_WIDGETS_EXPORT VXFont quorvelleItalicFontWithSize(double size);
QV_WIDGETS_EXPORT VXFont quorvelleBoldItalicFontWithSize(double size);
QV_WIDGETS_EXPORT VXFont quorvelleThinFontWithSize(double size);

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
