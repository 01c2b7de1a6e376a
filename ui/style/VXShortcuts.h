#pragma once

#include "VXAttributedString.h"
#include "VXColor.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

// The NSAttributedString(VXShortcuts) and NSMutableAttributedString(VXShortcuts)
// categories. Constructors that can give nothing return std::optional; the mutators change
// the string given as their first argument. Dictionaries whose key order matters are
// ordered lists of (key, value) pairs.
namespace VXShortcuts {

// nullopt when string is (nullopt).
std::optional<VXAttributedString> attributedStringWithString(const std::optional<QString> &string,
                                                             const VXAttributes &attributes);
VXAttributedString attributedStringWithSystemFontAndString(const QString &string);
// The fragment inside the fixed wrapper text, read by Qt's HTML reader.
std::optional<VXAttributedString> attributedStringWithHTMLString(const QString &htmlString);
std::optional<VXAttributedString>
attributedStringWithTemplate(const QString &templateString,
                             const QList<QPair<QString, QString>> &formatTags);
VXAttributedString hyperlinkFromString(const QString &string, const std::optional<QUrl> &url,
                                       double fontSize);

// The exact text given to the HTML reader for a fragment.
QString htmlWrapperText(const QString &htmlString);

void setAlignment(VXAttributedString &string, std::uint64_t alignment);
void setFontSize(VXAttributedString &string, double fontSize);
void setAttribute(VXAttributedString &string, const QString &name, const QVariant &value);
void setColor(VXAttributedString &string, const VXColor &color);
void setUnderlinedStyle(VXAttributedString &string, std::int64_t style);
void replaceString(VXAttributedString &string, const QString &target,
                   const VXAttributedString &replacement);
void applyFontTraits(VXAttributedString &string, std::uint64_t traitMask);
VXRange unfoldTag(VXAttributedString &string, const QString &tag);
void unfoldTagsWithAttributtes(VXAttributedString &string,
                               const QList<QPair<QString, VXAttributes>> &tagsWithAttributes);

} // namespace VXShortcuts
