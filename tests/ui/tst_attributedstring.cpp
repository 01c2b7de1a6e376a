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

namespace {
VXAttributes attrs(const QString &name, const QVariant &value)
{
    return {{name, value}};
}
const QString A = u"A"_s, B = u"B"_s;

// Whether each character has the attribute, as "x" / "-", for compact checks.
QString mask(const VXAttributedString &s, const QString &name)
{
    QString out;
    for (std::uint64_t i = 0; i < s.length(); ++i)
        out += s.attributesAtIndex(i).contains(name) ? u'x' : u'-';
    return out;
}

VXFont fontAt(const VXAttributedString &s, int i)
{
    return s.attributeAtIndex(VXFontAttributeName, i).value<VXFont>();
}

// The ink (darker than mid-grey) of a one-line drawing on white: its outer columns, and the
// number of separate runs of inked columns in the `width` columns that end at the right.
struct Ink
{
    int left = 1 << 20, right = -1;
    QList<bool> columns;
    int runsAtRight(int width) const
    {
        int runs = 0;
        for (int x = right - width + 1; x <= right; ++x)
            runs += columns.value(x) && !columns.value(x - 1);
        return runs;
    }
};
Ink inkOf(const QImage &image)
{
    Ink ink;
    ink.columns.resize(image.width());
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < 128) {
                ink.columns[x] = true;
                ink.left = std::min(ink.left, x);
                ink.right = std::max(ink.right, x);
            }
    return ink;
}

QImage drawOnWhite(const VXAttributedString &s, QRectF frame, QSize size)
{
    return PixelProbe::render(
        size, [&](QPainter &p) { s.drawInRect(p, frame); }, 1.0, Qt::white);
}
} // namespace

class TestAttributedString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { VXFontDatabase::setAvailableFontsForTesting(std::nullopt); }

    // The tag's content keeps the text's attributes; the first closing tag ends it, an
    // unclosed one runs to the end.
    void unfoldTag()
    {
        for (auto [text, after, range] :
             {std::tuple{u"plain <b>bold</b>"_s, u"plain bold"_s, VXRange{6, 4}},
              {u"a <i>b</i>"_s, u"a <i>b</i>"_s, VXRange{VXNotFound, 0}},
              {u"</b>x<b>y"_s, u"</b>xy"_s, VXRange{5, 1}},
              {u"<b>a<b>c</b>d</b>"_s, u"a<b>cd</b>"_s, VXRange{0, 5}},
              {u"<b></b>x"_s, u"x"_s, VXRange{0, 0}},
              {u"<B>x</B>"_s, u"<B>x</B>"_s, VXRange{VXNotFound, 0}},
              {u"\U0001F600<b>\U0001F600</b>"_s, u"\U0001F600\U0001F600"_s, VXRange{2, 2}}}) {
            VXAttributedString s(text, attrs(A, 1));
            const VXRange got = VXShortcuts::unfoldTag(s, u"b"_s);
            QCOMPARE(got.location, range.location);
            QCOMPARE(got.length, range.length);
            QCOMPARE(s.string(), after);
            QCOMPARE(mask(s, A), QString(after.size(), u'x'));
        }
    }

    void runsMergeSplitAndReplace()
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
        VXAttributedString t(u"abc"_s);
        t.addAttribute(B, 1, {0, 2});
        t.removeAttribute(B, {0, 2});
        QCOMPARE(t.attributesAtIndex(0, &effective), VXAttributes());
        QCOMPARE(effective, (VXRange{0, 3})); // one run again once B is gone
        s.setAttributes(attrs(B, 5), {2, 1});
        QCOMPARE(s.attributesAtIndex(2), attrs(B, 5));
        s.deleteCharactersInRange({0, 2});
        QCOMPARE(s.string(), u"cdef"_s);
        QCOMPARE(mask(s, A), u"-x--"_s);
        QCOMPARE(s.attributesAtIndex(99, &effective), VXAttributes());
        QCOMPARE(effective, (VXRange{99, 0}));

        VXAttributedString r(u"a-b-a"_s);
        replaceString(r, u"a"_s, VXAttributedString(u"XY"_s, attrs(A, 1))); // the first only
        replaceString(r, u"zzz"_s, VXAttributedString(u"Q"_s));
        QCOMPARE(r.string(), u"XY-b-a"_s);
        QCOMPARE(mask(r, A), u"xx----"_s);
    }

    void setFontSizeKeepsFacesAndFillsGaps()
    {
        VXFontDatabase::setAvailableFontsForTesting(
            QStringList{u"HelveticaNeue"_s, u"HelveticaNeue-Bold"_s});
        VXAttributedString s(u"aabbcc"_s);
        s.addAttribute(VXFontAttributeName,
                       QVariant::fromValue(*VXFont::fontWithName(u"HelveticaNeue"_s, 10)), {0, 2});
        s.addAttribute(VXFontAttributeName,
                       QVariant::fromValue(*VXFont::fontWithName(u"HelveticaNeue-Bold"_s, 30)),
                       {4, 2});
        setFontSize(s, 20);
        QCOMPARE(fontAt(s, 0).fontName(), u"HelveticaNeue"_s);
        QCOMPARE(fontAt(s, 2).fontName(), VXFont::systemFontOfSize(20).fontName());
        QCOMPARE(fontAt(s, 5).fontName(), u"HelveticaNeue-Bold"_s);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(fontAt(s, i).pointSize(), 20.0);
        applyFontTraits(s, VXBoldFontMask);
        QCOMPARE(fontAt(s, 0).fontName(), u"HelveticaNeue-Bold"_s);
    }

    // Centred ink around the middle; a long title cut to one line inside its rectangle,
    // ending in the ellipsis Qt draws for U+2026, in the colour of the text before it.
    void drawingCentredAndTruncated()
    {
        const VXFont font = VXFont::systemFontOfSize(14);
        VXAttributedString s(u"MMMM"_s, {{VXFontAttributeName, QVariant::fromValue(font)}});
        setAlignment(s, VXCenterTextAlignment);
        const Ink centred = inkOf(drawOnWhite(s, {0, 0, 200, 40}, {200, 40}));
        QVERIFY2(std::abs((centred.left + centred.right + 1) / 2.0 - 100.0) <= 2.0,
                 qPrintable(u"%1..%2"_s.arg(centred.left).arg(centred.right)));

        VXAttributedString longText(u"a very long title that cannot fit"_s,
                                    {{VXFontAttributeName, QVariant::fromValue(font)}});
        VXParagraphStyle tail;
        tail.lineBreakMode = VXLineBreakByTruncatingTail;
        longText.addAttribute(VXParagraphStyleAttributeName, QVariant::fromValue(tail),
                              {0, longText.length()});
        longText.addAttribute(VXForegroundColorAttributeName,
                              QVariant::fromValue(VXColor::blueColor()),
                              {2, longText.length() - 2});
        const QImage image = drawOnWhite(longText, {10, 0, 80, 60}, {120, 60});
        const Ink truncated = inkOf(image);
        QVERIFY(truncated.left >= 10 && truncated.right < 90 && truncated.right > 60);
        QCOMPARE(VXGeometry::heightForWidth(longText, 80),
                 QFontMetricsF(font.qfont()).lineSpacing());

        const QImage alone = PixelProbe::render(
            {40, 40},
            [&](QPainter &p) {
                p.setFont(font.qfont());
                p.drawText(5, 25, u"\u2026"_s);
            },
            1.0, Qt::white);
        const Ink ellipsis = inkOf(alone);
        const int width = ellipsis.right - ellipsis.left + 1;
        QCOMPARE(truncated.runsAtRight(width), ellipsis.runsAtRight(width));
        for (int y = 0; y < image.height(); ++y) {
            const QColor c = image.pixelColor(truncated.right, y);
            if (qGray(c.rgb()) < 128)
                QVERIFY2(c.blue() > 2 * c.red(), qPrintable(c.name()));
        }
    }

    void buttonTitles()
    {
        const double small = VXFont::smallSystemFontSize();
        const auto colourOf = [](const VXAttributedString &t) {
            return t.attributeAtIndex(VXForegroundColorAttributeName, 0).value<VXColor>();
        };
        QCOMPARE(colourOf(QuorvelleString::attributedButtonTitleEnabled(u"Go"_s, true)),
                 VXColor::colorWithCalibratedRed(0.3, 0.3, 0.3, 1.0));
        QCOMPARE(VXColorConvertion::newCGColor(
                     colourOf(QuorvelleString::attributedButtonTitleEnabled(u"Go"_s, false)))
                     .rgba(),
                 QGuiApplication::palette().color(QPalette::Disabled, QPalette::ButtonText).rgba());

        // Drawn on grey: the text darker than the face, its white shadow lighter.
        const QImage drawn = PixelProbe::render(
            {120, 30},
            [&](QPainter &p) {
                QuorvelleString::standartAttributedButtonTitle(u"Uninstall"_s)
                    .drawInRect(p, {0, 0, 120, 30});
            },
            1.0, QColor(128, 128, 128));
        int darker = 0, lighter = 0;
        for (int y = 0; y < drawn.height(); ++y)
            for (int x = 0; x < drawn.width(); ++x) {
                darker += qGray(drawn.pixel(x, y)) < 100;
                lighter += qGray(drawn.pixel(x, y)) > 156;
            }
        QVERIFY(darker > 20 && lighter > 20);

        for (bool bold : {false, true}) {
            const VXAttributedString t =
                bold ? QuorvelleString::standartBoldAttributedButtonTitle(u"Go"_s)
                     : QuorvelleString::standartAttributedButtonTitle(u"Go"_s);
            QCOMPARE(fontAt(t, 0).pointSize(), small);
            QCOMPARE(QFontInfo(fontAt(t, 0).qfont()).bold(), bold);
        }
    }
};

QTEST_MAIN(TestAttributedString)
#include "tst_attributedstring.moc"
