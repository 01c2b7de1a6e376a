#include "VXAttributedString.h"

#include "VXColorConvertion.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

VXAttributedString::VXAttributedString() = default;
VXAttributedString::VXAttributedString(const VXAttributedString &other) = default;
VXAttributedString::VXAttributedString(VXAttributedString &&other) noexcept = default;
VXAttributedString &VXAttributedString::operator=(const VXAttributedString &other) = default;
VXAttributedString &VXAttributedString::operator=(VXAttributedString &&other) noexcept = default;
VXAttributedString::~VXAttributedString() = default;

VXAttributedString::VXAttributedString(const QString &string, const VXAttributes &attributes)
    : m_string(string)
{
    if (!string.isEmpty())
        m_runs.append({string.size(), attributes});
}

namespace {
struct Span
{
    qsizetype start = 0;
    qsizetype end = 0;
    bool isEmpty() const { return start >= end; }
};

// The part of range that lies inside a text of length; out-of-range numbers are clipped.
Span clip(VXRange range, qsizetype length)
{
    const std::uint64_t total = std::uint64_t(length);
    const std::uint64_t start = std::min(range.location, total);
    const std::uint64_t end = range.length > total - start ? total : start + range.length;
    return {qsizetype(start), qsizetype(end)};
}
} // namespace

void VXAttributedString::normalize()
{
    QList<Run> runs;
    for (Run &run : m_runs) {
        if (run.length <= 0)
            continue;
        if (!runs.isEmpty() && runs.last().attributes == run.attributes)
            runs.last().length += run.length;
        else
            runs.append(std::move(run));
    }
    m_runs = std::move(runs);
}

qsizetype VXAttributedString::splitAt(qsizetype position)
{
    qsizetype start = 0;
    for (qsizetype i = 0; i < m_runs.size(); ++i) {
        if (start == position)
            return i;
        const qsizetype end = start + m_runs.at(i).length;
        if (position < end) {
            Run tail{end - position, m_runs.at(i).attributes};
            m_runs[i].length = position - start;
            m_runs.insert(i + 1, tail);
            return i + 1;
        }
        start = end;
    }
    return m_runs.size();
}

VXAttributes VXAttributedString::attributesAtIndex(std::uint64_t index,
                                                   VXRange *effectiveRange) const
{
    qsizetype start = 0;
    for (const Run &run : m_runs) {
        if (index < std::uint64_t(start + run.length)) {
            if (effectiveRange)
                *effectiveRange = {std::uint64_t(start), std::uint64_t(run.length)};
            return run.attributes;
        }
        start += run.length;
    }
    if (effectiveRange)
        *effectiveRange = {index, 0};
    return {};
}

QVariant VXAttributedString::attributeAtIndex(const QString &name, std::uint64_t index,
                                              VXRange *effectiveRange) const
{
    qsizetype start = 0;
    for (qsizetype i = 0; i < m_runs.size(); ++i) {
        const qsizetype end = start + m_runs.at(i).length;
        if (index < std::uint64_t(end)) {
            const QVariant value = m_runs.at(i).attributes.value(name);
            qsizetype first = i, last = i, from = start, to = end;
            while (first > 0 && m_runs.at(first - 1).attributes.value(name) == value)
                from -= m_runs.at(--first).length;
            while (last + 1 < m_runs.size() && m_runs.at(last + 1).attributes.value(name) == value)
                to += m_runs.at(++last).length;
            if (effectiveRange)
                *effectiveRange = {std::uint64_t(from), std::uint64_t(to - from)};
            return value;
        }
        start = end;
    }
    if (effectiveRange)
        *effectiveRange = {index, 0};
    return {};
}

void VXAttributedString::addAttribute(const QString &name, const QVariant &value, VXRange range)
{
    addAttributes({{name, value}}, range);
}

void VXAttributedString::addAttributes(const VXAttributes &attributes, VXRange range)
{
    const Span span = clip(range, m_string.size());
    if (span.isEmpty())
        return;
    const qsizetype first = splitAt(span.start), last = splitAt(span.end);
    for (qsizetype i = first; i < last; ++i)
        m_runs[i].attributes.insert(attributes);
    normalize();
}

void VXAttributedString::setAttributes(const VXAttributes &attributes, VXRange range)
{
    const Span span = clip(range, m_string.size());
    if (span.isEmpty())
        return;
    const qsizetype first = splitAt(span.start), last = splitAt(span.end);
    m_runs.remove(first, last - first);
    m_runs.insert(first, Run{span.end - span.start, attributes});
    normalize();
}

void VXAttributedString::removeAttribute(const QString &name, VXRange range)
{
    const Span span = clip(range, m_string.size());
    if (span.isEmpty())
        return;
    const qsizetype first = splitAt(span.start), last = splitAt(span.end);
    for (qsizetype i = first; i < last; ++i)
        m_runs[i].attributes.remove(name);
    normalize();
}

void VXAttributedString::replaceCharactersInRange(VXRange range, const QString &string)
{
    const Span span = clip(range, m_string.size());
    VXAttributes attributes;
    if (!span.isEmpty())
        attributes = attributesAtIndex(std::uint64_t(span.start));
    else if (span.start > 0)
        attributes = attributesAtIndex(std::uint64_t(span.start - 1));
    else
        attributes = attributesAtIndex(0);
    replaceCharactersInRange(range, VXAttributedString(string, attributes));
}

void VXAttributedString::replaceCharactersInRange(VXRange range, const VXAttributedString &string)
{
    const Span span = clip(range, m_string.size());
    const qsizetype first = splitAt(span.start), last = splitAt(span.end);
    m_runs.remove(first, last - first);
    for (qsizetype i = 0; i < string.m_runs.size(); ++i)
        m_runs.insert(first + i, string.m_runs.at(i));
    m_string.replace(span.start, span.end - span.start, string.m_string);
    normalize();
}

void VXAttributedString::deleteCharactersInRange(VXRange range)
{
    replaceCharactersInRange(range, VXAttributedString());
}

void VXAttributedString::appendAttributedString(const VXAttributedString &string)
{
    replaceCharactersInRange({length(), 0}, string);
}

VXAttributedString VXAttributedString::attributedSubstringFromRange(VXRange range) const
{
    const Span span = clip(range, m_string.size());
    VXAttributedString result;
    result.m_string = m_string.mid(span.start, span.end - span.start);
    qsizetype start = 0;
    for (const Run &run : m_runs) {
        const qsizetype end = start + run.length;
        const qsizetype from = std::max(start, span.start), to = std::min(end, span.end);
        if (from < to)
            result.m_runs.append({to - from, run.attributes});
        start = end;
    }
    result.normalize();
    return result;
}

bool VXAttributedString::operator==(const VXAttributedString &other) const
{
    return m_string == other.m_string && m_runs == other.m_runs;
}

VXFont VXAttributedString::defaultFont()
{
    if (auto font = VXFont::fontWithName(QStringLiteral("Helvetica"), 12.0))
        return *font;
    return VXFont::systemFontOfSize(12.0);
}

// Lays the text out paragraph by paragraph with QTextLayout, for drawing and measuring.
class VXAttributedStringLayout
{
public:
    struct Paragraph
    {
        std::unique_ptr<QTextLayout> layout;
        double top = 0.0;
        double height = 0.0;
        QList<QTextLayout::FormatRange> shadowFormats; // the shadowed runs, in shadow colour
        std::unique_ptr<QTextLayout> shadowLayout;     // the same lines, in shadowFormats
        VXShadow shadow;
        bool hasShadow = false;
    };

    // width/height 0: unlimited. singleLine: the first paragraph only, never wrapped.
    VXAttributedStringLayout(const VXAttributedString &string, double width, double height,
                             bool singleLine);

    std::vector<Paragraph> paragraphs;
    double usedWidth = 0.0;
    double usedHeight = 0.0;

private:
    void layOut(Paragraph &paragraph, const VXParagraphStyle &style, double width, double &y,
                double heightLimit, bool singleLine, bool firstLine);
};

namespace {

constexpr int shadowColorProperty = QTextFormat::UserProperty + 1;

bool isParagraphSeparator(QChar c)
{
    return c == u'\n' || c == u'\r' || c == QChar(0x2029) || c == QChar(0x2028);
}

QTextCharFormat charFormat(const VXAttributes &attributes)
{
    QTextCharFormat format;
    const QVariant font = attributes.value(VXFontAttributeName);
    const VXFont vxFont = font.canConvert<VXFont>() && font.value<VXFont>().isValid()
                              ? font.value<VXFont>()
                              : VXAttributedString::defaultFont();
    format.setFont(vxFont.qfont(), QTextCharFormat::FontPropertiesAll);
    const QVariant color = attributes.value(VXForegroundColorAttributeName);
    format.setForeground(color.canConvert<VXColor>()
                             ? VXColorConvertion::newCGColor(color.value<VXColor>())
                             : QColor(Qt::black));
    const QVariant underline = attributes.value(VXUnderlineStyleAttributeName);
    if (underline.isValid() && underline.toLongLong() != 0)
        format.setFontUnderline(true);
    return format;
}

// Removes text from a paragraph's layout input, keeping the formats in step.
void cut(QString &text, QList<QTextLayout::FormatRange> &formats, qsizetype from, qsizetype to)
{
    text.remove(from, to - from);
    QList<QTextLayout::FormatRange> kept;
    for (QTextLayout::FormatRange r : formats) {
        const qsizetype s = r.start, e = r.start + r.length;
        const qsizetype ns = s < from ? s : std::max(from, s - (to - from));
        const qsizetype ne = e <= from ? e : std::max(from, e - (to - from));
        r.start = int(ns);
        r.length = int(ne - ns);
        if (r.length > 0)
            kept.append(r);
    }
    formats = kept;
}

// Inserts the ellipsis at position, in the format of the character next to it.
void insertEllipsis(QString &text, QList<QTextLayout::FormatRange> &formats, qsizetype position)
{
    text.insert(position, QChar(0x2026));
    bool placed = false;
    for (QTextLayout::FormatRange &r : formats) {
        if (r.start >= position) {
            r.start += 1;
        } else if (r.start + r.length >= position && !placed) {
            r.length += 1; // the run that ends at (or spans) the cut takes the ellipsis
            placed = true;
        }
    }
    if (!placed && !formats.isEmpty() && formats.first().start == 1) {
        formats.first().start = 0;
        formats.first().length += 1;
    }
}

} // namespace

VXAttributedStringLayout::VXAttributedStringLayout(const VXAttributedString &string, double width,
                                                   double height, bool singleLine)
{
    const QString &text = string.m_string;
    double y = 0.0;
    qsizetype start = 0;
    bool first = true;
    while (start <= text.size()) {
        qsizetype end = start;
        while (end < text.size() && !isParagraphSeparator(text.at(end)))
            ++end;
        const bool last = end >= text.size();
        // A text that ends with a separator has no empty line after it.
        if (last && start == end && !first)
            break;

        Paragraph paragraph;
        QString paragraphText = text.mid(start, end - start);
        QList<QTextLayout::FormatRange> formats;
        // The paragraph style is its first character's (the separator's for an empty one).
        const VXAttributes firstAttributes =
            string.attributesAtIndex(std::uint64_t(std::min(start, qsizetype(text.size()) - 1)));
        VXParagraphStyle style;
        if (firstAttributes.value(VXParagraphStyleAttributeName).canConvert<VXParagraphStyle>())
            style = firstAttributes.value(VXParagraphStyleAttributeName).value<VXParagraphStyle>();
        for (qsizetype i = start; i < end;) {
            VXRange run;
            const VXAttributes attributes = string.attributesAtIndex(std::uint64_t(i), &run);
            const qsizetype runEnd = std::min(end, qsizetype(run.end()));
            QTextLayout::FormatRange range{int(i - start), int(runEnd - i), charFormat(attributes)};
            const QVariant shadow = attributes.value(VXShadowAttributeName);
            if (shadow.canConvert<VXShadow>()) {
                paragraph.shadow = shadow.value<VXShadow>();
                paragraph.hasShadow = true;
                const VXColor color = paragraph.shadow.shadowColor.value_or(
                    VXColor::colorWithCalibratedWhite(0.0, 1.0 / 3.0));
                range.format.setProperty(shadowColorProperty, VXColorConvertion::newCGColor(color));
            }
            formats.append(range);
            i = runEnd;
        }
        const QFont baseFont =
            charFormat(string.attributesAtIndex(std::uint64_t(
                           std::max<qsizetype>(0, std::min(start, qsizetype(text.size()) - 1)))))
                .font();
        paragraph.layout = std::make_unique<QTextLayout>(paragraphText, baseFont);
        paragraph.layout->setFormats(formats);

        const bool truncating = style.lineBreakMode == VXLineBreakByTruncatingHead ||
                                style.lineBreakMode == VXLineBreakByTruncatingMiddle ||
                                style.lineBreakMode == VXLineBreakByTruncatingTail;
        if (truncating && width > 0.0) {
            // Lay out once without limit; if the line is too wide, cut and add an ellipsis.
            QTextLayout probe(paragraphText, baseFont);
            probe.setFormats(formats);
            QTextOption noWrap;
            noWrap.setWrapMode(QTextOption::NoWrap);
            probe.setTextOption(noWrap);
            probe.beginLayout();
            QTextLine line = probe.createLine();
            if (line.isValid())
                line.setLineWidth(1.0e7);
            probe.endLayout();
            if (line.isValid() && line.naturalTextWidth() > width && !paragraphText.isEmpty()) {
                const double ellipsis = QFontMetricsF(baseFont).horizontalAdvance(QChar(0x2026));
                const double room = std::max(0.0, width - ellipsis);
                const double natural = line.naturalTextWidth();
                QList<QTextLayout::FormatRange> cutFormats = formats;
                QString cutText = paragraphText;
                if (style.lineBreakMode == VXLineBreakByTruncatingTail) {
                    const int keep = line.xToCursor(room, QTextLine::CursorOnCharacter);
                    cut(cutText, cutFormats, keep, cutText.size());
                    insertEllipsis(cutText, cutFormats, keep);
                } else if (style.lineBreakMode == VXLineBreakByTruncatingHead) {
                    int from = line.xToCursor(natural - room, QTextLine::CursorOnCharacter);
                    if (line.cursorToX(from) < natural - room)
                        ++from;
                    cut(cutText, cutFormats, 0, from);
                    insertEllipsis(cutText, cutFormats, 0);
                } else {
                    const int keepHead = line.xToCursor(room / 2.0, QTextLine::CursorOnCharacter);
                    int from = line.xToCursor(natural - room / 2.0, QTextLine::CursorOnCharacter);
                    if (line.cursorToX(from) < natural - room / 2.0)
                        ++from;
                    from = std::max(from, keepHead);
                    cut(cutText, cutFormats, keepHead, from);
                    insertEllipsis(cutText, cutFormats, keepHead);
                }
                paragraph.layout = std::make_unique<QTextLayout>(cutText, baseFont);
                paragraph.layout->setFormats(cutFormats);
            }
        }

        // The shadow pass draws the same layout with the shadowed runs in their shadow
        // colour and everything else transparent.
        for (QTextLayout::FormatRange range : paragraph.layout->formats()) {
            const QVariant shadowColor = range.format.property(shadowColorProperty);
            range.format.setForeground(shadowColor.isValid() ? shadowColor.value<QColor>()
                                                             : QColor(Qt::transparent));
            range.format.setFontUnderline(range.format.fontUnderline() && shadowColor.isValid());
            paragraph.shadowFormats.append(range);
        }
        layOut(paragraph, style, width, y, height, singleLine || truncating, first);
        paragraphs.push_back(std::move(paragraph));
        first = false;
        if (singleLine || last)
            break;
        // "\r\n" is one separator.
        start =
            end +
            ((text.at(end) == u'\r' && end + 1 < text.size() && text.at(end + 1) == u'\n') ? 2 : 1);
        if (height > 0.0 && y >= height)
            break;
    }
    usedHeight = y;
}

void VXAttributedStringLayout::layOut(Paragraph &paragraph, const VXParagraphStyle &style,
                                      double width, double &y, double heightLimit, bool singleLine,
                                      bool firstLine)
{
    QTextOption option;
    switch (style.alignment) {
    case VXRightTextAlignment:
        option.setAlignment(Qt::AlignRight);
        break;
    case VXCenterTextAlignment:
        option.setAlignment(Qt::AlignHCenter);
        break;
    case VXJustifiedTextAlignment:
        option.setAlignment(Qt::AlignJustify);
        break;
    default:
        option.setAlignment(Qt::AlignLeading);
        break;
    }
    if (singleLine || width <= 0.0 || style.lineBreakMode == VXLineBreakByClipping)
        option.setWrapMode(QTextOption::NoWrap);
    else if (style.lineBreakMode == VXLineBreakByCharWrapping)
        option.setWrapMode(QTextOption::WrapAnywhere);
    else
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    paragraph.layout->setTextOption(option);

    QTextLayout &layout = *paragraph.layout;
    paragraph.top = y;
    const double lineWidth = width > 0.0 ? width : 1.0e7;
    layout.beginLayout();
    for (;;) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLeadingIncluded(true);
        line.setLineWidth(lineWidth);
        // Lines that would reach below a limited height are dropped, but the very first
        // line always stays, so a title in a tight frame still shows (clipped).
        // QTextLine::height() rounds up to whole pixels; measurements here are not rounded.
        const double lineHeight = line.ascent() + line.descent() + std::max(0.0, line.leading());
        if (heightLimit > 0.0 && !(firstLine && layout.lineCount() == 1) &&
            y + lineHeight > heightLimit + 1e-9) {
            line.setNumColumns(0);
            line.setPosition({0.0, 1.0e9}); // laid out, never drawn
            break;
        }
        line.setPosition({0.0, y - paragraph.top});
        y += lineHeight;
        usedWidth = std::max(usedWidth, line.naturalTextWidth());
        if (singleLine)
            break;
    }
    layout.endLayout();
    if (singleLine) {
        // Whatever did not fit on the one line is not shown.
        for (int i = 1; i < layout.lineCount(); ++i)
            layout.lineAt(i).setPosition({0.0, 1.0e9});
    }
    paragraph.height = y - paragraph.top;

    if (paragraph.hasShadow) {
        // The shadow pass needs other colours on the very same lines; a layout's formats
        // cannot change once it is laid out, so a twin layout takes the same line breaks.
        auto twin = std::make_unique<QTextLayout>(layout.text(), layout.font());
        twin->setFormats(paragraph.shadowFormats);
        twin->setTextOption(layout.textOption());
        twin->beginLayout();
        for (int i = 0; i < layout.lineCount(); ++i) {
            const QTextLine source = layout.lineAt(i);
            QTextLine line = twin->createLine();
            if (!line.isValid())
                break;
            line.setLeadingIncluded(true);
            line.setNumColumns(source.textLength(), source.width());
            line.setPosition(source.position());
        }
        twin->endLayout();
        paragraph.shadowLayout = std::move(twin);
    }
}

namespace {

// A box blur run three times approximates a Gaussian; the platform's blur radius is about
// two standard deviations.
void blur(QImage &image, double radius)
{
    const int r = int(std::ceil(radius / 2.0));
    if (r <= 0)
        return;
    const int w = image.width(), h = image.height();
    QList<QRgb> line;
    for (int pass = 0; pass < 3; ++pass) {
        for (int horizontal = 0; horizontal < 2; ++horizontal) {
            const int outer = horizontal ? h : w, inner = horizontal ? w : h;
            line.resize(inner);
            for (int o = 0; o < outer; ++o) {
                auto pixel = [&](int i) -> QRgb & {
                    return reinterpret_cast<QRgb *>(
                        image.scanLine(horizontal ? o : i))[horizontal ? i : o];
                };
                for (int i = 0; i < inner; ++i)
                    line[i] = pixel(i);
                for (int i = 0; i < inner; ++i) {
                    int a = 0, rr = 0, g = 0, b = 0, n = 0;
                    for (int k = std::max(0, i - r); k <= std::min(inner - 1, i + r); ++k, ++n) {
                        a += qAlpha(line[k]);
                        rr += qRed(line[k]);
                        g += qGreen(line[k]);
                        b += qBlue(line[k]);
                    }
                    n = 2 * r + 1; // pixels beyond the edge count as transparent
                    pixel(i) = qRgba(rr / n, g / n, b / n, a / n);
                }
            }
        }
    }
}

} // namespace

void VXAttributedString::drawInRect(QPainter &painter, const QRectF &rect) const
{
    if (m_string.isEmpty() || rect.width() <= 0.0)
        return;
    VXAttributedStringLayout layout(*this, rect.width(), rect.height(), false);
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    for (const auto &paragraph : layout.paragraphs) {
        const QPointF origin(rect.left(), rect.top() + paragraph.top);
        if (paragraph.shadowLayout) {
            // The shadow pass: the shadowed runs in the shadow colour, blurred, offset
            // downwards for a negative (y-up) height.
            const double margin = std::ceil(paragraph.shadow.shadowBlurRadius) + 2.0;
            const double ratio = painter.device() ? painter.device()->devicePixelRatioF() : 1.0;
            const QSizeF size(rect.width() + 2 * margin, paragraph.height + 2 * margin);
            QImage shadow((size * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
            shadow.setDevicePixelRatio(ratio);
            shadow.fill(Qt::transparent);
            {
                QPainter p(&shadow);
                p.setRenderHints(painter.renderHints());
                paragraph.shadowLayout->draw(&p, QPointF(margin, margin));
            }
            blur(shadow, paragraph.shadow.shadowBlurRadius * ratio);
            const QPointF offset(paragraph.shadow.shadowOffset.width(),
                                 -paragraph.shadow.shadowOffset.height());
            painter.drawImage(origin + offset - QPointF(margin, margin), shadow);
        }
        paragraph.layout->draw(&painter, origin);
    }
    painter.restore();
}

QRectF VXAttributedString::boundingRectWithSize(QSizeF size, std::uint64_t options) const
{
    if (m_string.isEmpty())
        return {};
    const bool lines = options & VXStringDrawingUsesLineFragmentOrigin;
    VXAttributedStringLayout layout(*this, std::max(0.0, size.width()),
                                    lines ? std::max(0.0, size.height()) : 0.0, !lines);
    if (lines)
        return {0.0, 0.0, layout.usedWidth, layout.usedHeight};
    // One line whose origin is the baseline: the rectangle starts at the ascent above it.
    double ascent = 0.0;
    if (!layout.paragraphs.empty() && layout.paragraphs.front().layout->lineCount() > 0)
        ascent = layout.paragraphs.front().layout->lineAt(0).ascent();
    return {0.0, -ascent, layout.usedWidth, layout.usedHeight};
}
