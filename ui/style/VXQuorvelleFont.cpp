#include "VXQuorvelleFont.h"

#include "VXPrefferedLanguage.h"
#include "VXSystemRelease.h"

namespace QuorvelleFont {

VXFont quorvelleCustomFontWithName(const QString &name,
                                   const std::optional<QStringList> &alternateNames, double size)
{
    if (auto font = VXFont::fontWithName(name, size))
        return *font;
    if (alternateNames) {
        for (const QString &alternate : *alternateNames) {
            if (auto font = VXFont::fontWithName(alternate, size))
                return *font;
        }
    }
    return VXFont::systemFontOfSize(size);
}

namespace {
const QString neue = QStringLiteral("HelveticaNeue");
const QString helvetica = QStringLiteral("Helvetica");
} // namespace

VXFont quorvelleFallbackFontWithSize(double size)
{
    return quorvelleCustomFontWithName(helvetica, std::nullopt, size);
}

VXFont quorvelleRegularFontWithSize(double size)
{
    return quorvelleCustomFontWithName(neue, QStringList{helvetica}, size);
}

VXFont quorvelleMediumFontWithSize(double size)
{
    // Medium faces of the family lack the ideographs; the bold face reads better there.
    if (VXPrefferedLanguage::isPreferredLanguageHieroglyphic())
        return quorvelleBoldFontWithSize(size);
    return quorvelleCustomFontWithName(QStringLiteral("HelveticaNeue-Medium"),
                                       QStringList{neue, helvetica}, size);
}

VXFont quorvelleBoldFontWithSize(double size)
{
    return quorvelleCustomFontWithName(QStringLiteral("HelveticaNeue-Bold"),
                                       QStringList{neue, helvetica}, size);
}

VXFont quorvelleItalicFontWithSize(double size)
{
    return quorvelleCustomFontWithName(QStringLiteral("HelveticaNeue-Italic"),
                                       QStringList{neue, helvetica}, size);
}

VXFont quorvelleBoldItalicFontWithSize(double size)
{
    return quorvelleCustomFontWithName(QStringLiteral("HelveticaNeue-BoldItalic"),
                                       QStringList{neue, helvetica}, size);
}

VXFont quorvelleThinFontWithSize(double size)
{
    // Thin strokes break up ideographs, and older releases drew the Czech and Turkish
    // accents of the thin face badly.
    if (VXPrefferedLanguage::isPreferredLanguageHieroglyphic())
        return quorvelleRegularFontWithSize(size);
    if (!VXSystemRelease::isLionOrGreater()) {
        const QString localization = VXPrefferedLanguage::preferredApplicationLocalization();
        if (localization == QLatin1String("cs") || localization == QLatin1String("tr"))
            return quorvelleRegularFontWithSize(size);
    }
    return quorvelleCustomFontWithName(
        QStringLiteral("HelveticaNeue-Thin"),
        QStringList{QStringLiteral("HelveticaNeue-Light"), neue, helvetica}, size);
}

} // namespace QuorvelleFont
