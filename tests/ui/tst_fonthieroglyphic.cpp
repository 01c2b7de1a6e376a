// The hieroglyphic rule is fixed at its first use in a process, so it has a process of its
// own.

#include "VXFont.h"
#include "VXPrefferedLanguage.h"
#include "VXQuorvelleFont.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestFontHieroglyphic : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mediumIsBoldAndThinIsRegular()
    {
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{u"ja"_s});
        QVERIFY(VXPrefferedLanguage::isPreferredLanguageHieroglyphic());
        VXFontDatabase::setAvailableFontsForTesting(
            QStringList{u"HelveticaNeue"_s, u"HelveticaNeue-Medium"_s, u"HelveticaNeue-Bold"_s,
                        u"HelveticaNeue-Thin"_s});
        QCOMPARE(QuorvelleFont::quorvelleMediumFontWithSize(13).fontName(),
                 u"HelveticaNeue-Bold"_s);
        QCOMPARE(QuorvelleFont::quorvelleThinFontWithSize(13).fontName(), u"HelveticaNeue"_s);
        QCOMPARE(QuorvelleFont::quorvelleBoldFontWithSize(13).fontName(), u"HelveticaNeue-Bold"_s);
    }
};

QTEST_MAIN(TestFontHieroglyphic)
#include "tst_fonthieroglyphic.moc"
