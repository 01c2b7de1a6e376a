#include "VXShortcuts.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>

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
    return VXAttributedString(
        string, {{VXFontAttributeName,
                  QVariant::fromValue(VXFont::systemFontOfSize(VXFont::systemFontSize()))}});
}

QString htmlWrapperText(const QString &htmlString)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                          "<span style=\"font-family: Lucida Grande\">%1</span>")
        .arg(htmlString);
}

namespace {

// The HTML reader's default text size, in points.
constexpr double htmlDefaultFontSize = 12.0;

VXAttributes attributesOfFormat(const QTextCharFormat &format, const QTextBlockFormat &block)
{
    VXAttributes attributes;
    const QFont qfont = format.font();
    QString family;
    const QStringList families = format.fontFamilies().toStringList();
    family = families.isEmpty() ? qfont.family() : families.first();
    // CSS pixels are the platform's points.
    double size = htmlDefaultFontSize;
    if (format.hasProperty(QTextFormat::FontPointSize))
        size = format.fontPointSize();
    else if (format.hasProperty(QTextFormat::FontPixelSize))
        size = format.intProperty(QTextFormat::FontPixelSize);
    const bool bold = qfont.weight() >= QFont::DemiBold;
    const bool italic = qfont.italic();
    // A family that is not installed (the wrapper's own family is not, on Linux) reads as
    // the desktop's system font, the role that family had where the text was written.
    VXFont font =
        VXFont::fontWithFamily(family, bold, italic, size)
            .value_or(VXFont::systemFontOfSize(size).withTraits(VXFont::traitMask(bold, italic)));
    attributes.insert(VXFontAttributeName, QVariant::fromValue(font));
    if (format.hasProperty(QTextFormat::ForegroundBrush) &&
        format.foreground().style() != Qt::NoBrush)
        attributes.insert(
            VXForegroundColorAttributeName,
            QVariant::fromValue(VXColor::colorWithQColor(format.foreground().color())));
    if (format.fontUnderline())
        attributes.insert(VXUnderlineStyleAttributeName, QVariant::fromValue(qint64(1)));
    if (format.isAnchor() && !format.anchorHref().isEmpty())
        attributes.insert(VXLinkAttributeName, QVariant::fromValue(QUrl(format.anchorHref())));
    if (block.hasProperty(QTextFormat::BlockAlignment)) {
        VXParagraphStyle paragraph;
        const Qt::Alignment alignment = block.alignment() & Qt::AlignHorizontal_Mask;
        if (alignment & Qt::AlignHCenter)
            paragraph.alignment = VXCenterTextAlignment;
        else if (alignment & Qt::AlignJustify)
            paragraph.alignment = VXJustifiedTextAlignment;
        else if (alignment & (Qt::AlignRight | Qt::AlignTrailing))
            paragraph.alignment = VXRightTextAlignment;
        else if (alignment & (Qt::AlignLeft | Qt::AlignAbsolute))
            paragraph.alignment = VXLeftTextAlignment;
        attributes.insert(VXParagraphStyleAttributeName, QVariant::fromValue(paragraph));
    }
    return attributes;
}

} // namespace

std::optional<VXAttributedString> attributedStringWithHTMLString(const QString &htmlString)
{
    // The reader is given the UTF-8 bytes of the whole text; Qt's reader takes text, so the
    // bytes are read back as UTF-8 (which also replaces unpaired surrogates, as the
    // encoding would).
    const QByteArray bytes = htmlWrapperText(htmlString).toUtf8();
    QTextDocument document;
    QFont defaultFont = document.defaultFont();
    defaultFont.setPointSizeF(htmlDefaultFontSize);
    document.setDefaultFont(defaultFont);
    document.setHtml(QString::fromUtf8(bytes));

    VXAttributedString result;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block != document.begin())
            result.appendAttributedString(VXAttributedString(
                QStringLiteral("\n"), attributesOfFormat(block.charFormat(), block.blockFormat())));
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.isValid())
                continue;
            // Qt keeps line breaks inside a block as U+2028.
            QString text = fragment.text();
            text.replace(QChar(0x2028), u'\n');
            result.appendAttributedString(VXAttributedString(
                text, attributesOfFormat(fragment.charFormat(), block.blockFormat())));
        }
    }
    return result;
}

std::optional<VXAttributedString>
attributedStringWithTemplate(const QString &templateString,
                             const QList<QPair<QString, QString>> &formatTags)
{
    QString text = templateString;
    for (const auto &[key, value] : formatTags) {
        // An empty key would match between every two characters; it matches nothing.
        if (!key.isEmpty())
            text.replace(key, value, Qt::CaseSensitive);
    }
    return attributedStringWithHTMLString(text);
}

VXAttributedString hyperlinkFromString(const QString &string, const std::optional<QUrl> &url,
                                       double fontSize)
{
    VXAttributedString result(string);
    VXAttributes attributes;
    if (url)
        attributes.insert(VXLinkAttributeName,
                          QVariant::fromValue(url->toString(QUrl::FullyEncoded)));
    attributes.insert(VXForegroundColorAttributeName, QVariant::fromValue(VXColor::blueColor()));
    attributes.insert(VXUnderlineStyleAttributeName, QVariant::fromValue(qint64(1)));
    attributes.insert(VXFontAttributeName, QVariant::fromValue(VXFont::systemFontOfSize(fontSize)));
    result.addAttributes(attributes, {0, result.length()});
    return result;
}

void setAlignment(VXAttributedString &string, std::uint64_t alignment)
{
    // Each paragraph keeps its other settings (line-break mode); only the alignment changes.
    for (std::uint64_t index = 0; index < string.length();) {
        VXRange range;
        const QVariant value =
            string.attributeAtIndex(VXParagraphStyleAttributeName, index, &range);
        VXParagraphStyle style = value.canConvert<VXParagraphStyle>()
                                     ? value.value<VXParagraphStyle>()
                                     : VXParagraphStyle();
        style.alignment = alignment;
        string.addAttribute(VXParagraphStyleAttributeName, QVariant::fromValue(style), range);
        index = range.end();
    }
}

void setFontSize(VXAttributedString &string, double fontSize)
{
    for (std::uint64_t index = 0; index < string.length();) {
        VXRange range;
        const QVariant value = string.attributeAtIndex(VXFontAttributeName, index, &range);
        const VXFont font = value.canConvert<VXFont>() && value.value<VXFont>().isValid()
                                ? value.value<VXFont>().withSize(fontSize)
                                : VXFont::systemFontOfSize(fontSize);
        string.addAttribute(VXFontAttributeName, QVariant::fromValue(font), range);
        index = range.end();
    }
}

void setAttribute(VXAttributedString &string, const QString &name, const QVariant &value)
{
    string.addAttribute(name, value, {0, string.length()});
}

void setColor(VXAttributedString &string, const VXColor &color)
{
    setAttribute(string, VXForegroundColorAttributeName, QVariant::fromValue(color));
}

void setUnderlinedStyle(VXAttributedString &string, std::int64_t style)
{
    setAttribute(string, VXUnderlineStyleAttributeName, QVariant::fromValue(qint64(style)));
}

void replaceString(VXAttributedString &string, const QString &target,
                   const VXAttributedString &replacement)
{
    if (target.isEmpty())
        return;
    const qsizetype position = string.string().indexOf(target, 0, Qt::CaseSensitive);
    if (position < 0)
        return;
    string.replaceCharactersInRange({std::uint64_t(position), std::uint64_t(target.size())},
                                    replacement);
}

void applyFontTraits(VXAttributedString &string, std::uint64_t traitMask)
{
    for (std::uint64_t index = 0; index < string.length();) {
        VXRange range;
        const QVariant value = string.attributeAtIndex(VXFontAttributeName, index, &range);
        const VXFont font = value.canConvert<VXFont>() && value.value<VXFont>().isValid()
                                ? value.value<VXFont>()
                                : VXAttributedString::defaultFont();
        string.addAttribute(VXFontAttributeName, QVariant::fromValue(font.withTraits(traitMask)),
                            range);
        index = range.end();
    }
}

VXRange unfoldTag(VXAttributedString &string, const QString &tag)
{
    const QString opening = QStringLiteral("<%1>").arg(tag);
    const QString closing = QStringLiteral("</%1>").arg(tag);
    const QString text = string.string();
    const qsizetype openAt = text.indexOf(opening, 0, Qt::CaseSensitive);
    if (openAt < 0)
        return {VXNotFound, 0};
    const qsizetype contentStart = openAt + opening.size();
    const qsizetype closeAt = text.indexOf(closing, contentStart, Qt::CaseSensitive);
    const qsizetype contentEnd = closeAt < 0 ? text.size() : closeAt;
    // The closing mark goes first, so the opening mark's position stays valid.
    if (closeAt >= 0)
        string.deleteCharactersInRange({std::uint64_t(closeAt), std::uint64_t(closing.size())});
    string.deleteCharactersInRange({std::uint64_t(openAt), std::uint64_t(opening.size())});
    return {std::uint64_t(openAt), std::uint64_t(contentEnd - contentStart)};
}

void unfoldTagsWithAttributtes(VXAttributedString &string,
                               const QList<QPair<QString, VXAttributes>> &tagsWithAttributes)
{
    for (const auto &[tag, attributes] : tagsWithAttributes) {
        for (;;) {
            const VXRange range = unfoldTag(string, tag);
            if (range.location == VXNotFound)
                break;
            string.addAttributes(attributes, range);
        }
    }
}

} // namespace VXShortcuts
