#pragma once

#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QString>

// The attributed button titles of the string helpers. They belong with QuorvelleString, but
// they need the kit's attributed-string, colour and font types, which foundation cannot see
// (it sits below the kit); so they live here, in the same namespace.
namespace QuorvelleString {

QV_WIDGETS_EXPORT VXAttributedString attributedButtonTitleEnabled(const QString &string,
                                                                  bool enabled);
QV_WIDGETS_EXPORT VXAttributedString
standartAttributedButtonTitleWithBoldFont(const QString &string, bool bold);
QV_WIDGETS_EXPORT VXAttributedString standartBoldAttributedButtonTitle(const QString &string);
QV_WIDGETS_EXPORT VXAttributedString standartAttributedButtonTitle(const QString &string);

} // namespace QuorvelleString
