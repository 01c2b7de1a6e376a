#include "VXFont.h"
#include "VXPrefferedLanguage.h"
#include "VXQuorvelleFont.h"
#include "VXSystemRelease.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

using FontFn = VXFont (*)(double);
Q_DECLARE_METATYPE(FontFn)

namespace {
const QStringList allNeue = {u"HelveticaNeue"_s,
                             u"HelveticaNeue-Medium"_s,
                             u"HelveticaNeue-Bold"_s,
                             u"HelveticaNeue-Italic"_s,
                             u"HelveticaNeue-BoldItalic"_s,
                             u"HelveticaNeue-Thin"_s,
                             u"HelveticaNeue-Light"_s,
                             u"Helvetica"_s};
}

class TestFonts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The hieroglyphic rule is fixed at its first use in a process; this one is not
        // hieroglyphic (tst_fonthieroglyphic covers the other case).
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{u"en"_s});
        QVERIFY(!VXPrefferedLanguage::isPreferredLanguageHieroglyphic());
    }

    void cleanup()
    {
        VXFontDatabase::setAvailableFontsForTesting(std::nullopt);
        VXSystemRelease::setLionOrGreaterForTesting(std::nullopt);
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{u"en"_s});
    }

    void fallBackChains_data()
    {
        QTest::addColumn<QStringList>("available");
        QTest::addColumn<QString>("localization");
        QTest::addColumn<bool>("lion");
        QTest::addColumn<FontFn>("weight");
        QTest::addColumn<QString>("expected"); // empty: the system font
        using namespace QuorvelleFont;
        const QStringList onlyHelvetica{u"Helvetica"_s};
        const QStringList noMedium{u"HelveticaNeue"_s, u"HelveticaNeue-Bold"_s, u"Helvetica"_s};
        const QStringList lightNoThin{u"HelveticaNeue"_s, u"HelveticaNeue-Light"_s};
        QTest::newRow("regular") << allNeue << u"en"_s << true << &quorvelleRegularFontWithSize
                                 << u"HelveticaNeue"_s;
        QTest::newRow("medium") << allNeue << u"en"_s << true << &quorvelleMediumFontWithSize
                                << u"HelveticaNeue-Medium"_s;
        QTest::newRow("bold") << allNeue << u"en"_s << true << &quorvelleBoldFontWithSize
                              << u"HelveticaNeue-Bold"_s;
        QTest::newRow("italic") << allNeue << u"en"_s << true << &quorvelleItalicFontWithSize
                                << u"HelveticaNeue-Italic"_s;
        QTest::newRow("boldItalic")
            << allNeue << u"en"_s << true << &quorvelleBoldItalicFontWithSize
            << u"HelveticaNeue-BoldItalic"_s;
        QTest::newRow("thin") << allNeue << u"en"_s << true << &quorvelleThinFontWithSize
                              << u"HelveticaNeue-Thin"_s;
        QTest::newRow("fallback") << allNeue << u"en"_s << true << &quorvelleFallbackFontWithSize
                                  << u"Helvetica"_s;
        QTest::newRow("medium missing")
            << noMedium << u"en"_s << true << &quorvelleMediumFontWithSize << u"HelveticaNeue"_s;
        QTest::newRow("thin missing, light there")
            << lightNoThin << u"en"_s << true << &quorvelleThinFontWithSize
            << u"HelveticaNeue-Light"_s;
        QTest::newRow("only Helvetica: regular")
            << onlyHelvetica << u"en"_s << true << &quorvelleRegularFontWithSize << u"Helvetica"_s;
        QTest::newRow("only Helvetica: thin")
            << onlyHelvetica << u"en"_s << true << &quorvelleThinFontWithSize << u"Helvetica"_s;
        QTest::newRow("only Helvetica: bold italic")
            << onlyHelvetica << u"en"_s << true << &quorvelleBoldItalicFontWithSize
            << u"Helvetica"_s;
        QTest::newRow("no Helvetica: regular")
            << QStringList() << u"en"_s << true << &quorvelleRegularFontWithSize << QString();
        QTest::newRow("no Helvetica: medium")
            << QStringList() << u"en"_s << true << &quorvelleMediumFontWithSize << QString();
        QTest::newRow("no Helvetica: thin")
            << QStringList() << u"en"_s << true << &quorvelleThinFontWithSize << QString();
        QTest::newRow("no Helvetica: fallback")
            << QStringList() << u"en"_s << true << &quorvelleFallbackFontWithSize << QString();
        QTest::newRow("tr before 10.7")
            << allNeue << u"tr"_s << false << &quorvelleThinFontWithSize << u"HelveticaNeue"_s;
        QTest::newRow("cs before 10.7")
            << allNeue << u"cs"_s << false << &quorvelleThinFontWithSize << u"HelveticaNeue"_s;
        QTest::newRow("de before 10.7")
            << allNeue << u"de"_s << false << &quorvelleThinFontWithSize << u"HelveticaNeue-Thin"_s;
        QTest::newRow("tr from 10.7")
            << allNeue << u"tr"_s << true << &quorvelleThinFontWithSize << u"HelveticaNeue-Thin"_s;
        QTest::newRow("tr before 10.7, bold")
            << allNeue << u"tr"_s << false << &quorvelleBoldFontWithSize << u"HelveticaNeue-Bold"_s;
    }

    void fallBackChains()
    {
        QFETCH(QStringList, available);
        QFETCH(QString, localization);
        QFETCH(bool, lion);
        QFETCH(FontFn, weight);
        QFETCH(QString, expected);
        VXFontDatabase::setAvailableFontsForTesting(available);
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{localization});
        VXSystemRelease::setLionOrGreaterForTesting(lion);
        const VXFont font = weight(17.5);
        QCOMPARE(font.fontName(),
                 expected.isEmpty() ? VXFont::systemFontOfSize(17.5).fontName() : expected);
        QCOMPARE(font.pointSize(), 17.5);
    }

    void customFont_data()
    {
        QTest::addColumn<std::optional<QStringList>>("alternates");
        QTest::addColumn<QString>("expected");
        QTest::newRow("main exists")
            << std::optional<QStringList>(QStringList{u"B"_s}) << u"A-Bold"_s;
        QTest::newRow("nil alternates") << std::optional<QStringList>() << QString();
        QTest::newRow("empty alternates") << std::optional<QStringList>(QStringList()) << QString();
        QTest::newRow("first existing in order")
            << std::optional<QStringList>(QStringList{u"Missing"_s, u"C"_s, u"B"_s}) << u"C"_s;
    }

    void customFont()
    {
        QFETCH(std::optional<QStringList>, alternates);
        QFETCH(QString, expected);
        const bool mainExists = QString::fromLatin1(QTest::currentDataTag()) == u"main exists"_s;
        VXFontDatabase::setAvailableFontsForTesting(mainExists ? QStringList{u"A-Bold"_s, u"B"_s}
                                                               : QStringList{u"B"_s, u"C"_s});
        const VXFont font = QuorvelleFont::quorvelleCustomFontWithName(u"A-Bold"_s, alternates, 9);
        QCOMPARE(font.fontName(),
                 expected.isEmpty() ? VXFont::systemFontOfSize(9).fontName() : expected);
    }

    void traitsThroughTheSeam()
    {
        VXFontDatabase::setAvailableFontsForTesting(allNeue);
        const VXFont regular = *VXFont::fontWithName(u"HelveticaNeue"_s, 12);
        QCOMPARE(regular.withTraits(VXBoldFontMask).fontName(), u"HelveticaNeue-Bold"_s);
        QCOMPARE(regular.withTraits(VXBoldFontMask | VXItalicFontMask).fontName(),
                 u"HelveticaNeue-BoldItalic"_s);
        QCOMPARE(regular.withTraits(VXBoldFontMask).withTraits(VXUnboldFontMask).fontName(),
                 u"HelveticaNeue"_s);
        // A family without the face keeps the font as it is.
        VXFontDatabase::setAvailableFontsForTesting(QStringList{u"Solo"_s});
        QCOMPARE(VXFont::fontWithName(u"Solo"_s, 12)->withTraits(VXBoldFontMask).fontName(),
                 u"Solo"_s);
    }

    void fontconfigOnThisMachine()
    {
        // Installed by scripts/setup: the URW faces, among them the one fontconfig offers
        // for "Helvetica".
        const auto bold = VXFont::fontWithName(u"NimbusSans-Bold"_s, 12);
        QVERIFY(bold);
        QVERIFY(bold->isBold());
        QCOMPARE(QFontInfo(bold->qfont()).bold(), true);
        QVERIFY(!VXFont::fontWithName(u"HelveticaNeue-Bold"_s, 12));
        QVERIFY(!VXFont::fontWithName(u"HelveticaNeue"_s, 12));
        QVERIFY(!VXFont::fontWithName(u"NoSuchFace-Regular"_s, 12));
        QVERIFY(!VXFont::fontWithName(QString(), 12));

        // "Helvetica" exists through fontconfig's alias, and draws with the face Qt itself
        // picks for that family.
        const auto helvetica = VXFont::fontWithName(u"Helvetica"_s, 12);
        QVERIFY(helvetica);
        QCOMPARE(helvetica->fontName(), u"Helvetica"_s);
        QCOMPARE(QFontInfo(helvetica->qfont()).family(), QFontInfo(QFont(u"Helvetica"_s)).family());
        QCOMPARE(helvetica->withTraits(VXBoldFontMask).fontName(), u"NimbusSans-Bold"_s);
        QCOMPARE(QuorvelleFont::quorvelleBoldFontWithSize(12).fontName(), u"Helvetica"_s);

        const VXFont system = VXFont::systemFontOfSize(10);
        QCOMPARE(QFontInfo(system.qfont()).family(), QFontInfo(QGuiApplication::font()).family());
        QVERIFY(VXFont::smallSystemFontSize() <= VXFont::systemFontSize());
        QCOMPARE(system.withSize(21).pointSize(), 21.0);
        QCOMPARE(system.withSize(21).fontName(), system.fontName());
    }
};

QTEST_MAIN(TestFonts)
#include "tst_fonts.moc"
