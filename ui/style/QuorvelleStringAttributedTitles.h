#pragma once

#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QString>

// The attributed button titles of the string helpers. They belong with QuorvelleString, but
// they need the kit's attributed-string, colour and font types, which foundation cannot see
// (it sits below the kit); so they live here, in the same namespace.
namespace QuorvelleString {

/**
 * A centred button title in the desktop's small system font: dark grey (30 % white) when
 * enabled, the palette's disabled button-text colour when not.
 */
QV_WIDGETS_EXPORT VXAttributedString attributedButtonTitleEnabled(const QString &string,
                                                                  bool enabled);
/**
 * The standard button title: the desktop's small system font (bold if asked), the palette's
 * button-text colour, centred, cut with "…" at the tail when too long, and a white shadow one
 * point below that makes it look engraved on a light grey face.
 */
QV_WIDGETS_EXPORT VXAttributedString
standartAttributedButtonTitleWithBoldFont(const QString &string, bool bold);
/** The standard button title in the bold small system font. */
QV_WIDGETS_EXPORT VXAttributedString standartBoldAttributedButtonTitle(const QString &string);
/** The standard button title in the regular small system font. */
QV_WIDGETS_EXPORT VXAttributedString standartAttributedButtonTitle(const QString &string);

} // namespace QuorvelleString
