#pragma once

#include "VXAttributedString.h"

#include <QString>

// The attributed button titles of the string helpers. They belong with QuorvelleString, but
// they need the kit's attributed-string, colour and font types, which foundation cannot see
// (it sits below the kit); so they live here, in the same namespace.
namespace QuorvelleString {

VXAttributedString attributedButtonTitleEnabled(const QString &string, bool enabled);
VXAttributedString standartAttributedButtonTitleWithBoldFont(const QString &string, bool bold);
VXAttributedString standartBoldAttributedButtonTitle(const QString &string);
VXAttributedString standartAttributedButtonTitle(const QString &string);

} // namespace QuorvelleString
