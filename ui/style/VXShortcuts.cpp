#include "VXShortcuts.h"

// FIRST COMMIT STUB: the constructors and mutators follow in the next commits.

namespace VXShortcuts {

std::optional<VXAttributedString> attributedStringWithString(const std::optional<QString> &string,
                                                             const VXAttributes &attributes)
{
    if (!string)
        return std::nullopt;
    return VXAttributedString(*string, attributes);
}

VXAttributedString attributedStringWithSystemFontAndString(const QString &string)
{
    return VXAttributedString(string);
}

std::optional<VXAttributedString> attributedStringWithHTMLString(const QString &)
{
    return std::nullopt;
}

std::optional<VXAttributedString>
attributedStringWithTemplate(const QString &, const QList<QPair<QString, QString>> &)
{
    return std::nullopt;
}

VXAttributedString hyperlinkFromString(const QString &string, const std::optional<QUrl> &, double)
{
    return VXAttributedString(string);
}

QString htmlWrapperText(const QString &htmlString)
{
    return htmlString;
}

void setAlignment(VXAttributedString &, std::uint64_t) {}
void setFontSize(VXAttributedString &, double) {}
void setAttribute(VXAttributedString &, const QString &, const QVariant &) {}
void setColor(VXAttributedString &, const VXColor &) {}
void setUnderlinedStyle(VXAttributedString &, std::int64_t) {}
void replaceString(VXAttributedString &, const QString &, const VXAttributedString &) {}
void applyFontTraits(VXAttributedString &, std::uint64_t) {}

VXRange unfoldTag(VXAttributedString &, const QString &)
{
    return {VXNotFound, 0};
}

void unfoldTagsWithAttributtes(VXAttributedString &, const QList<QPair<QString, VXAttributes>> &) {}

} // namespace VXShortcuts
