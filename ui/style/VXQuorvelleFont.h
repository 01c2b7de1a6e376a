#pragma once

#include <Quorvelle/Widgets/VXFont.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QString>
#include <QStringList>

#include <optional>

/**
 * The kit's fonts and sizes for the flat design. Each face is looked up by PostScript name
 * along a chain of alternatives ("HelveticaNeue-Bold", then "HelveticaNeue", then
 * "Helvetica") and every chain ends at the desktop's system font, so none of them fails.
 * On a desktop without those faces the chains end at the face fontconfig substitutes for
 * "Helvetica" (regular) or at the system font: compare fontName() to learn which.
 */
namespace QuorvelleFont {

/**
 * The font named name, else the first of alternateNames that exists, else the system font;
 * always at size points.
 */
QV_WIDGETS_EXPORT VXFont quorvelleCustomFontWithName(
    const QString &name, const std::optional<QStringList> &alternateNames, double size);
/** "Helvetica", else the system font. */
QV_WIDGETS_EXPORT VXFont quorvelleFallbackFontWithSize(double size);
/** The regular face for body text and labels ("HelveticaNeue", "Helvetica", system font). */
QV_WIDGETS_EXPORT VXFont quorvelleRegularFontWithSize(double size);
/**
 * The medium face for buttons and emphasis; the bold face when the user's preferred
 * language is written in ideographs (medium faces lack them).
 */
QV_WIDGETS_EXPORT VXFont quorvelleMediumFontWithSize(double size);
/** The bold face for headings. */
QV_WIDGETS_EXPORT VXFont quorvelleBoldFontWithSize(double size);
/** The italic face. */
QV_WIDGETS_EXPORT VXFont quorvelleItalicFontWithSize(double size);
/** The bold italic face. */
QV_WIDGETS_EXPORT VXFont quorvelleBoldItalicFontWithSize(double size);
/**
 * The thin face for large titles (thin, then light, then regular); the regular face for
 * languages written in ideographs, whose strokes break up when thin.
 */
QV_WIDGETS_EXPORT VXFont quorvelleThinFontWithSize(double size);

/** The size of body text and labels: 12 points. */
constexpr double quorvelleRegularFontSize()
{
    return 12.0;
}
/** The size of secondary text: 11 points. */
constexpr double quorvelleSmallFontSize()
{
    return 11.0;
}
/** The size of the smallest notes: 9 points. */
constexpr double quorvelleMiniFontSize()
{
    return 9.0;
}
/** The size of headings and push-button titles: 13 points. */
constexpr double quorvelleHeaderFontSize()
{
    return 13.0;
}
/** The size of a window's title text: 19 points. */
constexpr double quorvelleTitleFontSize()
{
    return 19.0;
}

} // namespace QuorvelleFont
