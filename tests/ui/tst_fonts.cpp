#include "VXFont.h"
#include "VXPrefferedLanguage.h"
#include "VXQuorvelleFont.h"
#include "VXSystemRelease.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

using FontFn = VXFont (*)(double);
// available faces, preferred localization, system from 10.7, weight, face (empty: the system's)
using ChainRow = std::tuple<QStringList, QString, bool, FontFn, QString>;
Q_DECLARE_METATYPE(ChainRow)

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
    // The hieroglyphic rule is fixed at its first use in a process: the program runs once
    // more with QV_HIEROGLYPHIC set, for the hieroglyphic case alone.
    void initTestCase()
    {
        const bool hieroglyphic = qEnvironmentVariableIsSet("QV_HIEROGLYPHIC");
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(
            QStringList{hieroglyphic ? u"ja"_s : u"en"_s});
        QCOMPARE(VXPrefferedLanguage::isPreferredLanguageHieroglyphic(), hieroglyphic);
    }

    // Medium is bold and thin is regular.
    void hieroglyphic()
    {
        if (!VXPrefferedLanguage::isPreferredLanguageHieroglyphic())
            QSKIP("runs in the hieroglyphic process");
        VXFontDatabase::setAvailableFontsForTesting(allNeue);
        QCOMPARE(QuorvelleFont::quorvelleMediumFontWithSize(13).fontName(),
                 u"HelveticaNeue-Bold"_s);
        QCOMPARE(QuorvelleFont::quorvelleThinFontWithSize(13).fontName(), u"HelveticaNeue"_s);
        QCOMPARE(QuorvelleFont::quorvelleBoldFontWithSize(13).fontName(), u"HelveticaNeue-Bold"_s);
    }

    void cleanup()
    {
        VXFontDatabase::setAvailableFontsForTesting(std::nullopt);
        VXSystemRelease::setLionOrGreaterForTesting(std::nullopt);
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{u"en"_s});
    }

    void fallBackChains_data()
    {
        QTest::addColumn<ChainRow>("row");
        using namespace QuorvelleFont;
        const FontFn regular = &quorvelleRegularFontWithSize, medium = &quorvelleMediumFontWithSize,
                     thin = &quorvelleThinFontWithSize;
        const QStringList onlyHelvetica{u"Helvetica"_s}, none;
        const QStringList noMedium{u"HelveticaNeue"_s, u"HelveticaNeue-Bold"_s, u"Helvetica"_s};
        const QStringList lightNoThin{u"HelveticaNeue"_s, u"HelveticaNeue-Light"_s};
        const auto row = [](const char *name, const QStringList &available, const char *language,
                            bool lion, FontFn weight, const char *expected) {
            QTest::newRow(name) << ChainRow{available, QLatin1String(language), lion, weight,
                                            QLatin1String(expected)};
        };
        row("medium", allNeue, "en", true, medium, "HelveticaNeue-Medium");
        row("thin", allNeue, "en", true, thin, "HelveticaNeue-Thin");
        row("medium missing", noMedium, "en", true, medium, "HelveticaNeue");
        row("thin missing, light there", lightNoThin, "en", true, thin, "HelveticaNeue-Light");
        row("only Helvetica: regular", onlyHelvetica, "en", true, regular, "Helvetica");
        row("no Helvetica: regular", none, "en", true, regular, "");
        row("tr before 10.7", allNeue, "tr", false, thin, "HelveticaNeue");
        row("tr from 10.7", allNeue, "tr", true, thin, "HelveticaNeue-Thin");
    }

    void fallBackChains()
    {
        QFETCH(ChainRow, row);
        const auto [available, localization, lion, weight, expected] = row;
        VXFontDatabase::setAvailableFontsForTesting(available);
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{localization});
        VXSystemRelease::setLionOrGreaterForTesting(lion);
        const VXFont font = weight(17.5);
        QCOMPARE(font.fontName(),
                 expected.isEmpty() ? VXFont::systemFontOfSize(17.5).fontName() : expected);
        QCOMPARE(font.pointSize(), 17.5);
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
