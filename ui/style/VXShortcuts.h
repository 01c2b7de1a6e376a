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

/**
 * Making and restyling attributed strings: from plain text, HTML fragments and templates,
 * links, and in-place changes of a whole string. Makers that can give nothing return
 * std::optional; the mutators change the string given as their first argument. Lists of
 * (key, value) pairs are applied in their order. Every search is literal and
 * case-sensitive, and an empty key or target matches nothing.
 */
namespace VXShortcuts {

/** The text with attributes over all of it; std::nullopt when string is std::nullopt. */
QV_WIDGETS_EXPORT std::optional<VXAttributedString>
attributedStringWithString(const std::optional<QString> &string, const VXAttributes &attributes);
/** The text in the desktop's system font at its standard size. */
QV_WIDGETS_EXPORT VXAttributedString attributedStringWithSystemFontAndString(const QString &string);
/**
 * An HTML fragment read by Qt's HTML reader (inside htmlWrapperText): fonts, bold and
 * italic, colours, underlines, links (a QUrl) and paragraph alignment become runs, and
 * paragraphs are joined by line feeds. CSS pixel sizes read as points; unset sizes are 12 points;
 * a family that is not installed becomes the system font. Qt's reader accepts any text, so
 * the result is always a string.
 */
QV_WIDGETS_EXPORT std::optional<VXAttributedString>
attributedStringWithHTMLString(const QString &htmlString);
/**
 * A translatable HTML template with its placeholders filled: each key of formatTags is
 * replaced (every occurrence) by its value, in the list's order, and the result is read as
 * by attributedStringWithHTMLString. Values are inserted as HTML: escape plain text with
 * QString::toHtmlEscaped.
 */
QV_WIDGETS_EXPORT std::optional<VXAttributedString>
attributedStringWithTemplate(const QString &templateString,
                             const QList<QPair<QString, QString>> &formatTags);
/**
 * A link: string in blue, underlined, in the system font at fontSize, with the URL's encoded
 * text as its VXLinkAttributeName (no link attribute when url is std::nullopt). Drawing does
 * not open links; a view that shows the string handles clicks.
 */
QV_WIDGETS_EXPORT VXAttributedString hyperlinkFromString(const QString &string,
                                                         const std::optional<QUrl> &url,
                                                         double fontSize);

/**
 * The exact text given to the HTML reader for a fragment: an XML declaration and a span in
 * the wrapper's font family around the fragment.
 */
QV_WIDGETS_EXPORT QString htmlWrapperText(const QString &htmlString);

/**
 * Sets the alignment (a VXTextAlignment) of every paragraph; each paragraph keeps its line
 * break mode, so a centred, tail-truncated title stays truncated.
 */
QV_WIDGETS_EXPORT void setAlignment(VXAttributedString &string, std::uint64_t alignment);
/** Sets every run's font to fontSize; runs without a font get the system font at that size. */
QV_WIDGETS_EXPORT void setFontSize(VXAttributedString &string, double fontSize);
/** Sets one attribute over the whole string. */
QV_WIDGETS_EXPORT void setAttribute(VXAttributedString &string, const QString &name,
                                    const QVariant &value);
/** Sets the text colour of the whole string. */
QV_WIDGETS_EXPORT void setColor(VXAttributedString &string, const VXColor &color);
/** Sets the underline style of the whole string (0 none, 1 single). */
QV_WIDGETS_EXPORT void setUnderlinedStyle(VXAttributedString &string, std::int64_t style);
/**
 * Replaces the first occurrence of target by a styled replacement, which keeps its own
 * runs; nothing happens when target does not occur.
 */
QV_WIDGETS_EXPORT void replaceString(VXAttributedString &string, const QString &target,
                                     const VXAttributedString &replacement);
/**
 * Adds or removes font traits (a VXFontTraitMask) on every run's font; a run without a font
 * starts from VXAttributedString::defaultFont(). A family without the face keeps its font.
 */
QV_WIDGETS_EXPORT void applyFontTraits(VXAttributedString &string, std::uint64_t traitMask);
/**
 * Removes the first "\<tag\>" and the "\</tag\>" after it, keeping the text between, and returns
 * that text's range (to the end when the closing mark is missing). Without "\<tag\>": location
 * VXNotFound, length 0, and the string is unchanged.
 */
QV_WIDGETS_EXPORT VXRange unfoldTag(VXAttributedString &string, const QString &tag);
/**
 * For each (tag, attributes) in order, unfolds every occurrence of the tag (unfoldTag) and
 * adds the attributes over its text: how a translated sentence marks the words to style
 * ("Remove \<b\>all\</b\> files") without carrying HTML.
 */
QV_WIDGETS_EXPORT void
unfoldTagsWithAttributtes(VXAttributedString &string,
                          const QList<QPair<QString, VXAttributes>> &tagsWithAttributes);

} // namespace VXShortcuts
