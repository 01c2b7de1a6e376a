#pragma once

#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

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
QV_WIDGETS_EXPORT std::optional<VXAttributedString>
attributedStringWithString(const std::optional<QString> &string, const VXAttributes &attributes);
QV_WIDGETS_EXPORT VXAttributedString attributedStringWithSystemFontAndString(const QString &string);
// The fragment inside the fixed wrapper text, read by Qt's HTML reader.
QV_WIDGETS_EXPORT std::optional<VXAttributedString>
attributedStringWithHTMLString(const QString &htmlString);
QV_WIDGETS_EXPORT std::optional<VXAttributedString>
attributedStringWithTemplate(const QString &templateString,
                             const QList<QPair<QString, QString>> &formatTags);
QV_WIDGETS_EXPORT VXAttributedString hyperlinkFromString(const QString &string,
                                                         const std::optional<QUrl> &url,
                                                         double fontSize);

// The exact text given to the HTML reader for a fragment.
QV_WIDGETS_EXPORT QString htmlWrapperText(const QString &htmlString);

QV_WIDGETS_EXPORT void setAlignment(VXAttributedString &string, std::uint64_t alignment);
QV_WIDGETS_EXPORT void setFontSize(VXAttributedString &string, double fontSize);
QV_WIDGETS_EXPORT void setAttribute(VXAttributedString &string, const QString &name,
                                    const QVariant &value);
QV_WIDGETS_EXPORT void setColor(VXAttributedString &string, const VXColor &color);
QV_WIDGETS_EXPORT void setUnderlinedStyle(VXAttributedString &string, std::int64_t style);
QV_WIDGETS_EXPORT void replaceString(VXAttributedString &string, const QString &target,
                                     const VXAttributedString &replacement);
QV_WIDGETS_EXPORT void applyFontTraits(VXAttributedString &string, std::uint64_t traitMask);
QV_WIDGETS_EXPORT VXRange unfoldTag(VXAttributedString &string, const QString &tag);
QV_WIDGETS_EXPORT void
unfoldTagsWithAttributtes(VXAttributedString &string,
                          const QList<QPair<QString, VXAttributes>> &tagsWithAttributes);

} // namespace VXShortcuts
