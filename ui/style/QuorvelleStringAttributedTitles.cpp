#include "QuorvelleStringAttributedTitles.h"

namespace QuorvelleString {

VXAttributedString attributedButtonTitleEnabled(const QString &string, bool enabled)
{
    const VXColor color = enabled ? VXColor::colorWithCalibratedRed(0.3, 0.3, 0.3, 1.0)
                                  : VXColor::disabledControlTextColor();
    VXParagraphStyle paragraph;
    paragraph.alignment = VXCenterTextAlignment;
    return VXAttributedString(
        string, {{VXForegroundColorAttributeName, QVariant::fromValue(color)},
                 {VXFontAttributeName,
                  QVariant::fromValue(VXFont::systemFontOfSize(VXFont::smallSystemFontSize()))},
                 {VXParagraphStyleAttributeName, QVariant::fromValue(paragraph)}});
}

VXAttributedString standartAttributedButtonTitleWithBoldFont(const QString &string, bool bold)
{
    const double size = VXFont::smallSystemFontSize();
    const VXFont font = bold ? VXFont::boldSystemFontOfSize(size) : VXFont::systemFontOfSize(size);
    VXParagraphStyle paragraph;
    paragraph.alignment = VXCenterTextAlignment;
    paragraph.lineBreakMode = VXLineBreakByTruncatingTail;
    VXShadow shadow;
    shadow.shadowBlurRadius = 1.0;
    shadow.shadowOffset = QSizeF(0.0, -1.0);
    shadow.shadowColor = VXColor::whiteColor();
    return VXAttributedString(
        string, {{VXForegroundColorAttributeName, QVariant::fromValue(VXColor::controlTextColor())},
                 {VXFontAttributeName, QVariant::fromValue(font)},
                 {VXParagraphStyleAttributeName, QVariant::fromValue(paragraph)},
                 {VXShadowAttributeName, QVariant::fromValue(shadow)}});
}

VXAttributedString standartBoldAttributedButtonTitle(const QString &string)
{
    return standartAttributedButtonTitleWithBoldFont(string, true);
}

VXAttributedString standartAttributedButtonTitle(const QString &string)
{
    return standartAttributedButtonTitleWithBoldFont(string, false);
}

} // namespace QuorvelleString
