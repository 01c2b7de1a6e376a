// The hieroglyphic flag is fixed at its first computation in the process, so it gets a
// process of its own.

#include "VXPrefferedLanguage.h"

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

class TestHieroglyphic : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixedAtFirstCall()
    {
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{u"zh-CN"_s, u"en"_s});

        // Concurrent first calls all see the one computed value.
        std::atomic<int> yes{0};
        std::vector<std::thread> pool;
        for (int i = 0; i < 4; ++i)
            pool.emplace_back([&] {
                if (VXPrefferedLanguage::isPreferredLanguageHieroglyphic())
                    ++yes;
            });
        for (std::thread &t : pool)
            t.join();
        QCOMPARE(yes.load(), 4);

        // A later change of language is not seen by the flag, only by the localisation.
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(QStringList{u"English"_s});
        QCOMPARE(VXPrefferedLanguage::preferredApplicationLocalization(), u"en"_s);
        QVERIFY(VXPrefferedLanguage::isPreferredLanguageHieroglyphic());
    }
};

QTEST_GUILESS_MAIN(TestHieroglyphic)
#include "tst_bundle_hieroglyphic.moc"
