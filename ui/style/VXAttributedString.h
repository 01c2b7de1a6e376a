#pragma once

#include <Quorvelle/Widgets/VXColor.h>
#include <Quorvelle/Widgets/VXFont.h>
#include <Quorvelle/Widgets/WidgetsExport.h>

#include <QList>
#include <QMap>
#include <QMetaType>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <limits>
#include <optional>

/**
 * \file
 * Styled text: VXAttributedString, its ranges, paragraph styles, shadows and attribute
 * names.
 */

class QPainter;

/**
 * A range of UTF-16 code units in a text (the units QString counts). A search that finds
 * nothing gives location VXNotFound.
 */
struct VXRange
{
    std::uint64_t location = 0; ///< Index of the first unit.
    std::uint64_t length = 0;   ///< Number of units.

    /** The index just past the range. */
    std::uint64_t end() const { return location + length; }
    /** Ranges are equal when location and length are. */
    bool operator==(const VXRange &other) const = default;
};
/** The location of a range that found nothing (the largest signed 64-bit value). */
inline constexpr std::uint64_t VXNotFound = std::numeric_limits<std::int64_t>::max();

/** How the lines of a paragraph are aligned (the value of VXParagraphStyle::alignment). */
enum VXTextAlignment : std::uint64_t
{
    VXLeftTextAlignment = 0,      ///< Flush left.
    VXRightTextAlignment = 1,     ///< Flush right.
    VXCenterTextAlignment = 2,    ///< Centred.
    VXJustifiedTextAlignment = 3, ///< Both edges flush, except the last line.
    VXNaturalTextAlignment = 4,   ///< By the text's direction: left for left-to-right text.
};

/** How a paragraph that does not fit its width is broken or cut. */
enum VXLineBreakMode : std::uint64_t
{
    VXLineBreakByWordWrapping = 0,     ///< Wrap between words.
    VXLineBreakByCharWrapping = 1,     ///< Wrap anywhere, between any two characters.
    VXLineBreakByClipping = 2,         ///< One line, cut off at the edge.
    VXLineBreakByTruncatingHead = 3,   ///< One line, "…" replaces its start.
    VXLineBreakByTruncatingTail = 4,   ///< One line, "…" replaces its end.
    VXLineBreakByTruncatingMiddle = 5, ///< One line, "…" replaces its middle.
};

/** Alignment and line breaking of a paragraph; the value of VXParagraphStyleAttributeName. */
struct VXParagraphStyle
{
    std::uint64_t alignment = VXNaturalTextAlignment;        ///< A VXTextAlignment.
    std::uint64_t lineBreakMode = VXLineBreakByWordWrapping; ///< A VXLineBreakMode.
    /** Styles are equal when both settings are. */
    bool operator==(const VXParagraphStyle &other) const = default;
};

/**
 * A text shadow; the value of VXShadowAttributeName. The offset is y-up: (0, -1) falls one
 * point below the text (drawing turns it into Qt's y-down offset).
 */
struct VXShadow
{
    QSizeF shadowOffset;                ///< Offset in points, y-up.
    double shadowBlurRadius = 0.0;      ///< Blur radius in points; 0 is a sharp shadow.
    std::optional<VXColor> shadowColor; ///< None: black at one third alpha.
    /** Shadows are equal when offset, blur and colour are. */
    bool operator==(const VXShadow &other) const = default;
};

Q_DECLARE_METATYPE(VXParagraphStyle)
Q_DECLARE_METATYPE(VXShadow)

/** Attribute name of a run's font; the value is a VXFont. */
inline const QString VXFontAttributeName = QStringLiteral("NSFont");
/** Attribute name of a run's text colour; the value is a VXColor. */
inline const QString VXForegroundColorAttributeName = QStringLiteral("NSColor");
/** Attribute name of underlining; the value is a qint64, 0 for none and 1 for a single line. */
inline const QString VXUnderlineStyleAttributeName = QStringLiteral("NSUnderline");
/**
 * Attribute name of a link; the value is a QUrl (from the HTML reader) or a URL's text (from
 * VXShortcuts::hyperlinkFromString). A link is drawn in its run's colour.
 */
inline const QString VXLinkAttributeName = QStringLiteral("NSLink");
/** Attribute name of a paragraph's alignment and line breaking; the value: VXParagraphStyle. */
inline const QString VXParagraphStyleAttributeName = QStringLiteral("NSParagraphStyle");
/** Attribute name of a text shadow; the value is a VXShadow. */
inline const QString VXShadowAttributeName = QStringLiteral("NSShadow");

/** The attributes of a run: attribute name → value (see the attribute names for the types). */
using VXAttributes = QMap<QString, QVariant>;

/** Options of VXAttributedString::boundingRectWithSize. */
enum VXStringDrawingOptions : std::uint64_t
{
    VXStringDrawingUsesLineFragmentOrigin = 1, ///< Wrapped lines from the top, else one line.
};

/**
 * A text with attribute runs (font, colour, underline, link, paragraph style, shadow) over
 * UTF-16 ranges, drawn and measured with Qt's text layout.
 *
 * A value type: copies are independent, so a mutable copy is a plain copy. Ranges that
 * reach past the end of the text are clipped to it; a range that starts beyond the end
 * changes nothing. A run without a font draws in defaultFont(), without a colour in black.
 */
class QV_WIDGETS_EXPORT VXAttributedString
{
public:
    /** An empty text. */
    VXAttributedString();
    /** The text with the same attributes over all of it. */
    explicit VXAttributedString(const QString &string, const VXAttributes &attributes = {});
    /** A copy, independent of the original. */
    VXAttributedString(const VXAttributedString &other);
    /** Takes over other's text and runs; other is left empty. */
    VXAttributedString(VXAttributedString &&other) noexcept;
    /** Copies other's text and runs. */
    VXAttributedString &operator=(const VXAttributedString &other);
    /** Takes over other's text and runs. */
    VXAttributedString &operator=(VXAttributedString &&other) noexcept;
    ~VXAttributedString();

    /** The plain text. */
    QString string() const { return m_string; }
    /** The length of the text in UTF-16 units. */
    std::uint64_t length() const { return std::uint64_t(m_string.size()); }

    /**
     * The attributes at index and, in effectiveRange, the longest range around it over which
     * they are the same. An index at or beyond the end gives an empty dictionary and the
     * range (index, 0).
     */
    VXAttributes attributesAtIndex(std::uint64_t index, VXRange *effectiveRange = nullptr) const;
    /**
     * One attribute at index (an invalid QVariant when the run has none) and, in
     * effectiveRange, the longest range around index over which it has the same value.
     */
    QVariant attributeAtIndex(const QString &name, std::uint64_t index,
                              VXRange *effectiveRange = nullptr) const;

    /** Sets one attribute over range, keeping the others. */
    void addAttribute(const QString &name, const QVariant &value, VXRange range);
    /** Merges attributes into those over range; names already there take the new values. */
    void addAttributes(const VXAttributes &attributes, VXRange range);
    /** Replaces every attribute over range by attributes. */
    void setAttributes(const VXAttributes &attributes, VXRange range);
    /** Removes one attribute over range. */
    void removeAttribute(const QString &name, VXRange range);

    /**
     * Replaces the text in range. The new text takes the attributes of the first replaced
     * character (or of the character before, when the range is empty).
     */
    void replaceCharactersInRange(VXRange range, const QString &string);
    /**
     * \overload
     * Replaces the text in range by a styled text, which keeps its own runs.
     */
    void replaceCharactersInRange(VXRange range, const VXAttributedString &string);
    /** Removes the text in range with its runs. */
    void deleteCharactersInRange(VXRange range);
    /** Appends a styled text, keeping its runs. */
    void appendAttributedString(const VXAttributedString &string);

    /** The part of the text in range, with its attributes (clipped to the text). */
    VXAttributedString attributedSubstringFromRange(VXRange range) const;

    /**
     * Draws the text into rect (y-down widget coordinates), wrapping, aligning and cutting
     * each paragraph by its paragraph style. Lines that would reach below the rectangle are
     * dropped, except the first, which is clipped.
     */
    void drawInRect(QPainter &painter, const QRectF &rect) const;
    /**
     * The size the text takes when laid out in size (0 in a dimension means unlimited), not
     * rounded. With VXStringDrawingUsesLineFragmentOrigin in options the text is laid out in
     * wrapped lines from the top; otherwise as one line.
     */
    QRectF boundingRectWithSize(QSizeF size, std::uint64_t options) const;

    /** Texts are equal when their characters and the attributes of every character are. */
    bool operator==(const VXAttributedString &other) const;

    /**
     * The font a run without a font attribute is drawn in: Helvetica 12 (a face fontconfig
     * deliberately substitutes for it), or the system font at 12 points where there is none.
     */
    static VXFont defaultFont();

private:
    struct Run
    {
        qsizetype length = 0;
        VXAttributes attributes;
        bool operator==(const Run &other) const = default;
    };
    void normalize();
    qsizetype splitAt(qsizetype position); // index of the run starting at position
    friend class VXAttributedStringLayout;

    QString m_string;
    QList<Run> m_runs; // lengths add up to m_string.size(); empty runs are never kept
};
