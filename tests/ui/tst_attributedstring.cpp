#include "PixelProbe.h"
#include "QuorvelleStringAttributedTitles.h"
#include "VXColorConvertion.h"
#include "VXGeometry.h"
#include "VXShortcuts.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace VXShortcuts;

Q_DECLARE_METATYPE(VXRange)
using Tags = QList<QPair<QString, QString>>;

namespace {
VXAttributes attrs(const QString &name, const QVariant &value)
{
    return {{name, value}};
}
const QString A = u"A"_s, B = u"B"_s;

// The attribute name → value at each index, as "x" / "-" per character, for compact checks.
QString mask(const VXAttributedString &s, const QString &name)
{
    QString out;
    for (std::uint64_t i = 0; i < s.length(); ++i)
        out += s.attributesAtIndex(i).contains(name) ? u'x' : u'-';
    return out;
}

// The columns of an image that hold ink darker than mid-grey.
std::pair<int, int> inkColumns(const QImage &image)
{
    int left = image.width(), right = -1;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < 128) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
    return {left, right};
}
} // namespace

class TestAttributedString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VXFontDatabase::setAvailableFontsForTesting(std::nullopt); }

    void unfoldTag_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("after");
        QTest::addColumn<VXRange>("range");
        QTest::newRow("plain then tagged word")
            << u"plain <b>bold</b>"_s << u"plain bold"_s << VXRange{6, 4};
        QTest::newRow("unclosed runs to the end") << u"ab<b>cd"_s << u"abcd"_s << VXRange{2, 2};
        QTest::newRow("absent") << u"a <i>b</i>"_s << u"a <i>b</i>"_s << VXRange{VXNotFound, 0};
        QTest::newRow("closing before opening") << u"</b>x<b>y"_s << u"</b>xy"_s << VXRange{5, 1};
        QTest::newRow("nested same tag: first closing wins")
            << u"<b>a<b>c</b>d</b>"_s << u"a<b>cd</b>"_s << VXRange{0, 5};
        QTest::newRow("empty content") << u"<b></b>x"_s << u"x"_s << VXRange{0, 0};
        QTest::newRow("case-sensitive") << u"<B>x</B>"_s << u"<B>x</B>"_s << VXRange{VXNotFound, 0};
        QTest::newRow("beyond the BMP")
            << u"\U0001F600<b>\U0001F600</b>"_s << u"\U0001F600\U0001F600"_s << VXRange{2, 2};
    }

    void unfoldTag()
    {
        QFETCH(QString, text);
        QFETCH(QString, after);
        QFETCH(VXRange, range);
        VXAttributedString s(text, attrs(A, 1));
        const VXRange got = VXShortcuts::unfoldTag(s, u"b"_s);
        QCOMPARE(got.location, range.location);
        QCOMPARE(got.length, range.length);
        QCOMPARE(s.string(), after);
        QCOMPARE(mask(s, A), QString(after.size(), u'x')); // attributes of the text survive
    }

    void unfoldTagsWithAttributtes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("maskA");
        QTest::addColumn<QString>("maskB");
        QTest::newRow("six plain, four bold")
            << u"plain <b>bold</b>"_s << u"plain bold"_s << u"------xxxx"_s << u"----------"_s;
        QTest::newRow("two occurrences")
            << u"<b>ab</b>-<b>cd</b>"_s << u"ab-cd"_s << u"xx-xx"_s << u"-----"_s;
        QTest::newRow("overlapping tags")
            << u"<b>x<i>y</b>z</i>"_s << u"xyz"_s << u"xx-"_s << u"-xx"_s;
        QTest::newRow("enclosed tag") << u"<i>a<b>b</b>c</i>"_s << u"abc"_s << u"-x-"_s << u"xxx"_s;
        QTest::newRow("unclosed") << u"ok <b>rest"_s << u"ok rest"_s << u"---xxxx"_s
                                  << u"-------"_s;
        QTest::newRow("no tags") << u"nothing"_s << u"nothing"_s << u"-------"_s << u"-------"_s;
    }

    void unfoldTagsWithAttributtes()
    {
        QFETCH(QString, text);
        QFETCH(QString, after);
        QFETCH(QString, maskA);
        QFETCH(QString, maskB);
        VXAttributedString s(text, attrs(u"base"_s, 7));
        VXShortcuts::unfoldTagsWithAttributtes(
            s, {{u"b"_s, attrs(A, 1)}, {u"i"_s, attrs(B, 2)}, {u"u"_s, attrs(B, 3)}});
        QCOMPARE(s.string(), after);
        QCOMPARE(mask(s, A), maskA);
        QCOMPARE(mask(s, B), maskB);
        QCOMPARE(mask(s, u"base"_s), QString(after.size(), u'x')); // merged, not replaced
    }

    void replaceStringReplacesFirstOnly()
    {
        VXAttributedString s(u"a-b-a"_s);
        replaceString(s, u"a"_s, VXAttributedString(u"XY"_s, attrs(A, 1)));
        QCOMPARE(s.string(), u"XY-b-a"_s);
        QCOMPARE(mask(s, A), u"xx----"_s);
        replaceString(s, u"zzz"_s, VXAttributedString(u"Q"_s));
        QCOMPARE(s.string(), u"XY-b-a"_s);
    }

    void runsMergeAndSplit()
    {
        VXAttributedString s(u"abcdef"_s);
        s.addAttributes(attrs(A, 1), {1, 2});
        s.addAttributes(attrs(A, 1), {3, 1});
        VXRange effective;
        QCOMPARE(s.attributeAtIndex(A, 2, &effective), QVariant(1));
        QCOMPARE(effective, (VXRange{1, 3})); // equal neighbours merge
        s.addAttribute(B, 2, {0, 100});       // clipped to the text
        QCOMPARE(s.attributeAtIndex(A, 2, &effective), QVariant(1));
        QCOMPARE(effective, (VXRange{1, 3}));
        s.setAttributes(attrs(B, 5), {2, 1});
        QCOMPARE(s.attributesAtIndex(2), attrs(B, 5));
        s.deleteCharactersInRange({0, 2});
        QCOMPARE(s.string(), u"cdef"_s);
        QCOMPARE(mask(s, A), u"-x--"_s);
        QCOMPARE(s.attributesAtIndex(99, &effective), VXAttributes());
        QCOMPARE(effective, (VXRange{99, 0}));
    }

    void setFontSizeKeepsFacesAndFillsGaps()
    {
        VXFontDatabase::setAvailableFontsForTesting(
            QStringList{u"HelveticaNeue"_s, u"HelveticaNeue-Bold"_s});
        const VXFont regular = *VXFont::fontWithName(u"HelveticaNeue"_s, 10);
        const VXFont bold = *VXFont::fontWithName(u"HelveticaNeue-Bold"_s, 30);
        VXAttributedString s(u"aabbcc"_s);
        s.addAttribute(VXFontAttributeName, QVariant::fromValue(regular), {0, 2});
        s.addAttribute(VXFontAttributeName, QVariant::fromValue(bold), {4, 2});
        setFontSize(s, 20);
        const auto fontAt = [&](int i) {
            return s.attributeAtIndex(VXFontAttributeName, i).value<VXFont>();
        };
        QCOMPARE(fontAt(0).fontName(), u"HelveticaNeue"_s);
        QCOMPARE(fontAt(2).fontName(), VXFont::systemFontOfSize(20).fontName());
        QCOMPARE(fontAt(5).fontName(), u"HelveticaNeue-Bold"_s);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(fontAt(i).pointSize(), 20.0);

        VXAttributedString plain(u"xyz"_s);
        setFontSize(plain, 8);
        VXRange effective;
        QCOMPARE(plain.attributeAtIndex(VXFontAttributeName, 0, &effective).value<VXFont>(),
                 VXFont::systemFontOfSize(8));
        QCOMPARE(effective, (VXRange{0, 3}));

        applyFontTraits(s, VXBoldFontMask);
        QCOMPARE(fontAt(0).fontName(), u"HelveticaNeue-Bold"_s);
    }

    void wholeStringSetters()
    {
        VXAttributedString s(u"one\ntwo"_s);
        VXParagraphStyle truncating;
        truncating.lineBreakMode = VXLineBreakByTruncatingTail;
        s.addAttribute(VXParagraphStyleAttributeName, QVariant::fromValue(truncating), {0, 3});
        setAlignment(s, VXCenterTextAlignment);
        const auto styleAt = [&](int i) {
            return s.attributeAtIndex(VXParagraphStyleAttributeName, i).value<VXParagraphStyle>();
        };
        QCOMPARE(styleAt(0).alignment, std::uint64_t(VXCenterTextAlignment));
        QCOMPARE(styleAt(0).lineBreakMode, std::uint64_t(VXLineBreakByTruncatingTail));
        QCOMPARE(styleAt(6).alignment, std::uint64_t(VXCenterTextAlignment));
        setColor(s, VXColor::redColor());
        setUnderlinedStyle(s, 9);
        VXRange effective;
        QCOMPARE(s.attributeAtIndex(VXForegroundColorAttributeName, 4, &effective).value<VXColor>(),
                 VXColor::redColor());
        QCOMPARE(effective, (VXRange{0, 7}));
        QCOMPARE(s.attributeAtIndex(VXUnderlineStyleAttributeName, 0).toLongLong(), 9);
    }

    void constructors()
    {
        QVERIFY(!attributedStringWithString(std::nullopt, {}));
        QCOMPARE(attributedStringWithString(u"x"_s, attrs(A, 1))->attributesAtIndex(0),
                 attrs(A, 1));

        const VXAttributedString link =
            hyperlinkFromString(u"go"_s, QUrl(u"https://example.org/a b"_s), 14);
        QCOMPARE(link.attributeAtIndex(VXLinkAttributeName, 1).toString(),
                 u"https://example.org/a%20b"_s);
        QCOMPARE(link.attributeAtIndex(VXForegroundColorAttributeName, 0).value<VXColor>(),
                 VXColor::blueColor());
        QCOMPARE(link.attributeAtIndex(VXUnderlineStyleAttributeName, 0).toLongLong(), 1);
        QCOMPARE(link.attributeAtIndex(VXFontAttributeName, 0).value<VXFont>(),
                 VXFont::systemFontOfSize(14));
        QVERIFY(!hyperlinkFromString(u"go"_s, std::nullopt, 14)
                     .attributesAtIndex(0)
                     .contains(VXLinkAttributeName));

        QCOMPARE(
            htmlWrapperText(u"<b>x</b>"_s),
            uR"(<?xml version="1.0" encoding="UTF-8"?><span style="font-family: Lucida Grande"><b>x</b></span>)"_s);
    }

    void htmlReader()
    {
        const auto s = attributedStringWithHTMLString(
            u"a <b>bold</b> <a href=\"https://example.org/x\">link</a> &amp; <span style=\"font-family: Helvetica\">h</span>"_s);
        QVERIFY(s);
        QCOMPARE(s->string(), u"a bold link & h"_s);
        const auto fontAt = [&](int i) {
            return s->attributeAtIndex(VXFontAttributeName, i).value<VXFont>();
        };
        QVERIFY(!fontAt(0).isBold());
        QVERIFY(fontAt(3).isBold());
        QCOMPARE(fontAt(0).pointSize(), 12.0);
        QCOMPARE(s->attributeAtIndex(VXLinkAttributeName, 8).toUrl(),
                 QUrl(u"https://example.org/x"_s));
        QVERIFY(!s->attributesAtIndex(0).contains(VXLinkAttributeName));
        // The wrapper's family is not installed here: the desktop's font stands in for it;
        // a fragment's own family wins.
        QCOMPARE(fontAt(0).familyName(), VXFont::systemFontOfSize(12).familyName());
        QCOMPARE(fontAt(14).fontName(), u"Helvetica"_s);
    }

    void templates_data()
    {
        QTest::addColumn<Tags>("tags");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("boldMask");
        QTest::newRow("later keys see earlier output")
            << Tags{{u"%A%"_s, u"<b>%B%</b>"_s}, {u"%B%"_s, u"x"_s}} << u"x and x"_s
            << u"x------"_s;
        QTest::newRow("other order") << Tags{{u"%B%"_s, u"x"_s}, {u"%A%"_s, u"<b>%B%</b>"_s}}
                                     << u"%B% and x"_s << u"xxx------"_s;
    }

    void templates()
    {
        QFETCH(Tags, tags);
        QFETCH(QString, text);
        QFETCH(QString, boldMask);
        const auto s = attributedStringWithTemplate(u"%A% and %B%"_s, tags);
        QVERIFY(s);
        QCOMPARE(s->string(), text);
        QString bold;
        for (std::uint64_t i = 0; i < s->length(); ++i)
            bold +=
                s->attributeAtIndex(VXFontAttributeName, i).value<VXFont>().isBold() ? u'x' : u'-';
        QCOMPARE(bold, boldMask);
    }

    void geometry()
    {
        // Qt's own metrics are the oracle for the size of a one-font text.
        const VXFont font = VXFont::systemFontOfSize(15);
        const QFontMetricsF metrics(font.qfont());
        const VXAttributedString s(u"hello world"_s,
                                   {{VXFontAttributeName, QVariant::fromValue(font)}});
        const QSizeF oneLine = VXGeometry::sizeForWidth(s, 0);
        QCOMPARE(oneLine.width(), metrics.horizontalAdvance(u"hello world"_s));
        QCOMPARE(oneLine.height(), metrics.lineSpacing());
        const double narrow = metrics.horizontalAdvance(u"hello "_s) + 1;
        const QSizeF wrapped = VXGeometry::sizeForWidth(s, narrow);
        QCOMPARE(wrapped.height(), 2 * metrics.lineSpacing());
        QVERIFY(wrapped.width() <= narrow);
        QCOMPARE(VXGeometry::heightForWidth(s, narrow), wrapped.height());

        const VXAttributedString two(u"one\ntwo"_s,
                                     {{VXFontAttributeName, QVariant::fromValue(font)}});
        QCOMPARE(VXGeometry::sizeForHeight(two, 0).height(), 2 * metrics.lineSpacing());
        QCOMPARE(VXGeometry::sizeForHeight(two, 1.5 * metrics.lineSpacing()).height(),
                 metrics.lineSpacing());
        QCOMPARE(VXGeometry::widthForHeight(two, 0),
                 metrics.horizontalAdvance(u"one"_s) > metrics.horizontalAdvance(u"two"_s)
                     ? metrics.horizontalAdvance(u"one"_s)
                     : metrics.horizontalAdvance(u"two"_s));
        QCOMPARE(VXGeometry::sizeForWidth(std::nullopt, 100), QSizeF(0, 0));
        QCOMPARE(VXGeometry::sizeForHeight(std::nullopt, 100), QSizeF(0, 0));
    }

    void drawingCentredAndTruncated()
    {
        const VXFont font = VXFont::systemFontOfSize(14);
        VXAttributedString s(u"MMMM"_s, {{VXFontAttributeName, QVariant::fromValue(font)}});
        setAlignment(s, VXCenterTextAlignment);
        const QImage centred = PixelProbe::render(
            200, 40, 1.0,
            [&](QPainter &p) {
                s.drawInRect(p, {0, 0, 200, 40});
            },
            Qt::white);
        const auto [left, right] = inkColumns(centred);
        QVERIFY2(std::abs((left + right + 1) / 2.0 - 100.0) <= 2.0,
                 qPrintable(u"%1..%2"_s.arg(left).arg(right)));

        VXAttributedString longText(u"a very long title that cannot fit"_s,
                                    {{VXFontAttributeName, QVariant::fromValue(font)}});
        VXParagraphStyle tail;
        tail.lineBreakMode = VXLineBreakByTruncatingTail;
        longText.addAttribute(VXParagraphStyleAttributeName, QVariant::fromValue(tail),
                              {0, longText.length()});
        const QImage truncated = PixelProbe::render(
            120, 60, 1.0,
            [&](QPainter &p) {
                longText.drawInRect(p, {10, 0, 80, 60});
            },
            Qt::white);
        const auto [tl, tr] = inkColumns(truncated);
        QVERIFY(tl >= 10 && tr < 90 && tr > 60); // one line, cut inside the rectangle
        QCOMPARE(VXGeometry::heightForWidth(longText, 80),
                 QFontMetricsF(font.qfont()).lineSpacing());
    }

    void buttonTitles()
    {
        const double small = VXFont::smallSystemFontSize();
        const VXAttributedString enabled =
            QuorvelleString::attributedButtonTitleEnabled(u"Go"_s, true);
        QCOMPARE(enabled.attributesAtIndex(0).size(), 3);
        QCOMPARE(enabled.attributeAtIndex(VXForegroundColorAttributeName, 0).value<VXColor>(),
                 VXColor::colorWithCalibratedRed(0.3, 0.3, 0.3, 1.0));
        QCOMPARE(enabled.attributeAtIndex(VXFontAttributeName, 0).value<VXFont>(),
                 VXFont::systemFontOfSize(small));
        QCOMPARE(enabled.attributeAtIndex(VXParagraphStyleAttributeName, 1)
                     .value<VXParagraphStyle>()
                     .alignment,
                 std::uint64_t(VXCenterTextAlignment));
        const QColor disabledText =
            QGuiApplication::palette().color(QPalette::Disabled, QPalette::ButtonText);
        QCOMPARE(VXColorConvertion::newCGColor(
                     QuorvelleString::attributedButtonTitleEnabled(u"Go"_s, false)
                         .attributeAtIndex(VXForegroundColorAttributeName, 0)
                         .value<VXColor>())
                     .rgba(),
                 disabledText.rgba());

        // Drawn on grey: the text darker than the face, its white shadow lighter.
        const VXAttributedString title =
            QuorvelleString::standartAttributedButtonTitle(u"Uninstall"_s);
        const QImage drawn = PixelProbe::render(
            120, 30, 1.0,
            [&](QPainter &p) {
                title.drawInRect(p, {0, 0, 120, 30});
            },
            QColor(128, 128, 128));
        int darker = 0, lighter = 0;
        for (int y = 0; y < drawn.height(); ++y)
            for (int x = 0; x < drawn.width(); ++x) {
                const int grey = qGray(drawn.pixel(x, y));
                darker += grey < 100;
                lighter += grey > 156;
            }
        QVERIFY(darker > 20);
        QVERIFY(lighter > 20);

        for (bool bold : {false, true}) {
            const VXAttributedString t =
                bold ? QuorvelleString::standartBoldAttributedButtonTitle(u"Go"_s)
                     : QuorvelleString::standartAttributedButtonTitle(u"Go"_s);
            QCOMPARE(t.attributesAtIndex(0).size(), 4);
            const VXFont f = t.attributeAtIndex(VXFontAttributeName, 0).value<VXFont>();
            QCOMPARE(f.pointSize(), small);
            QCOMPARE(QFontInfo(f.qfont()).bold(), bold);
            const auto paragraph =
                t.attributeAtIndex(VXParagraphStyleAttributeName, 0).value<VXParagraphStyle>();
            QCOMPARE(paragraph.alignment, std::uint64_t(VXCenterTextAlignment));
            QCOMPARE(paragraph.lineBreakMode, std::uint64_t(VXLineBreakByTruncatingTail));
            const auto shadow = t.attributeAtIndex(VXShadowAttributeName, 0).value<VXShadow>();
            QCOMPARE(shadow.shadowOffset, QSizeF(0, -1));
            QCOMPARE(shadow.shadowBlurRadius, 1.0);
            QCOMPARE(shadow.shadowColor, std::optional<VXColor>(VXColor::whiteColor()));
        }
    }
};

QTEST_MAIN(TestAttributedString)
#include "tst_attributedstring.moc"
