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

class QPainter;

// A range of UTF-16 units. A search that finds nothing gives location VXNotFound.
struct VXRange
{
    std::uint64_t location = 0;
    std::uint64_t length = 0;

    std::uint64_t end() const { return location + length; }
    bool operator==(const VXRange &other) const = default;
};
inline constexpr std::uint64_t VXNotFound = std::numeric_limits<std::int64_t>::max();

enum VXTextAlignment : std::uint64_t
{
    VXLeftTextAlignment = 0,
    VXRightTextAlignment = 1,
    VXCenterTextAlignment = 2,
    VXJustifiedTextAlignment = 3,
    VXNaturalTextAlignment = 4,
};

enum VXLineBreakMode : std::uint64_t
{
    VXLineBreakByWordWrapping = 0,
    VXLineBreakByCharWrapping = 1,
    VXLineBreakByClipping = 2,
    VXLineBreakByTruncatingHead = 3,
    VXLineBreakByTruncatingTail = 4,
    VXLineBreakByTruncatingMiddle = 5,
};

struct VXParagraphStyle
{
    std::uint64_t alignment = VXNaturalTextAlignment;
    std::uint64_t lineBreakMode = VXLineBreakByWordWrapping;
    bool operator==(const VXParagraphStyle &other) const = default;
};

// A text shadow. The offset is in the platform's y-up sense: (0, -1) falls one point below
// the text; drawing turns it into Qt's y-down offset.
struct VXShadow
{
    QSizeF shadowOffset;
    double shadowBlurRadius = 0.0;
    std::optional<VXColor> shadowColor; // none: black at one third alpha
    bool operator==(const VXShadow &other) const = default;
};

Q_DECLARE_METATYPE(VXParagraphStyle)
Q_DECLARE_METATYPE(VXShadow)

// Attribute names and the types of their values in a VXAttributes dictionary.
inline const QString VXFontAttributeName = QStringLiteral("NSFont");                // VXFont
inline const QString VXForegroundColorAttributeName = QStringLiteral("NSColor");    // VXColor
inline const QString VXUnderlineStyleAttributeName = QStringLiteral("NSUnderline"); // qint64
inline const QString VXLinkAttributeName = QStringLiteral("NSLink"); // QUrl, or a URL's text
inline const QString VXParagraphStyleAttributeName =
    QStringLiteral("NSParagraphStyle");                                  // VXParagraphStyle
inline const QString VXShadowAttributeName = QStringLiteral("NSShadow"); // VXShadow

using VXAttributes = QMap<QString, QVariant>;

// Options of boundingRectWithSize.
enum VXStringDrawingOptions : std::uint64_t
{
    VXStringDrawingUsesLineFragmentOrigin = 1,
};

// A text with attribute runs over UTF-16 ranges (a value type: copies are independent, so
// "mutableCopy" is a plain copy). Ranges outside the text are clipped to it; a range that
// starts beyond the end changes nothing.
//
// Its layout (a text and a run list) is frozen; the runs are private, so copying and
// destroying happen in the library.
class QV_WIDGETS_EXPORT VXAttributedString
{
public:
    VXAttributedString();
    explicit VXAttributedString(const QString &string, const VXAttributes &attributes = {});
    VXAttributedString(const VXAttributedString &other);
    VXAttributedString(VXAttributedString &&other) noexcept;
    VXAttributedString &operator=(const VXAttributedString &other);
    VXAttributedString &operator=(VXAttributedString &&other) noexcept;
    ~VXAttributedString();

    QString string() const { return m_string; }
    std::uint64_t length() const { return std::uint64_t(m_string.size()); }

    // The attributes at index, and the longest range around it over which they are the
    // same. An index at or beyond the end gives an empty dictionary and range (index, 0).
    VXAttributes attributesAtIndex(std::uint64_t index, VXRange *effectiveRange = nullptr) const;
    // One attribute at index (an invalid QVariant when absent) and the longest range around
    // index over which that attribute has the same value.
    QVariant attributeAtIndex(const QString &name, std::uint64_t index,
                              VXRange *effectiveRange = nullptr) const;

    void addAttribute(const QString &name, const QVariant &value, VXRange range);
    void addAttributes(const VXAttributes &attributes, VXRange range); // merge
    void setAttributes(const VXAttributes &attributes, VXRange range); // replace
    void removeAttribute(const QString &name, VXRange range);

    // The new text takes the attributes of the first replaced character (or of the
    // character before, when the range is empty).
    void replaceCharactersInRange(VXRange range, const QString &string);
    void replaceCharactersInRange(VXRange range, const VXAttributedString &string);
    void deleteCharactersInRange(VXRange range);
    void appendAttributedString(const VXAttributedString &string);

    VXAttributedString attributedSubstringFromRange(VXRange range) const;

    // Draws into rect (y-down widget coordinates), wrapping and aligning per paragraph style.
    void drawInRect(QPainter &painter, const QRectF &rect) const;
    // The size the text takes when laid out in size (0 in a dimension = unlimited); with
    // VXStringDrawingUsesLineFragmentOrigin the text is laid out in lines from the top,
    // otherwise as one line. Not rounded.
    QRectF boundingRectWithSize(QSizeF size, std::uint64_t options) const;

    bool operator==(const VXAttributedString &other) const;

    // The font a run without a font attribute is drawn in (the platform's default text
    // font: Helvetica 12, or the system font at 12 where there is none).
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
