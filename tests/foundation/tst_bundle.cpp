#include "Bundle.h"
#include "VXPrefferedLanguage.h"
#include "VXThreadSafeBundleProxy.h"
#include "VXThreadSafety.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

using Quorvelle::Bundle;

using namespace Qt::StringLiterals;

class TestBundle : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_fixture; // a bundle folder with translations and an Info.ini

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_fixture = m_dir.filePath(u"Fixture"_s);
        QVERIFY(QDir().mkpath(m_fixture + u"/translations"_s));
        const QDir qm(QStringLiteral(QV_BUNDLE_FIXTURE_DIR "/translations"));
        const QStringList files = qm.entryList({u"*.qm"_s}, QDir::Files);
        QCOMPARE(files.size(), 4);
        for (const QString &f : files)
            QVERIFY(QFile::copy(qm.filePath(f), m_fixture + u"/translations/"_s + f));
        QFile ini(m_fixture + u"/Info.ini"_s);
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write("CFBundleIdentifier=net.example.Fixture\nCFBundleShortVersionString=3.1\n"
                  "Formats=a, b\n[Group]\nNested=1\n");
        QFile outside(m_dir.filePath(u"Outside.txt"_s));
        QVERIFY(outside.open(QIODevice::WriteOnly));
    }

    void cleanup()
    {
        Bundle::setPreferredLanguagesForTesting(std::nullopt);
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(std::nullopt);
    }

    void otherBundles()
    {
        using VXThreadSafety::threadSafeBundleWithPath;
        QVERIFY(!threadSafeBundleWithPath(m_dir.filePath(u"missing"_s)));
        QVERIFY(!threadSafeBundleWithPath(m_fixture + u"/Info.ini"_s));
        QVERIFY(VXThreadSafety::lockMap().isEmpty());

        VXThreadSafeBundleProxy *fixture = threadSafeBundleWithPath(m_fixture);
        QCOMPARE(threadSafeBundleWithPath(m_fixture + u"/translations/.."_s), fixture);

        const PropertyValue::Dictionary info = fixture->infoDictionary();
        QCOMPARE(info.value(u"CFBundleIdentifier"_s).toString(), u"net.example.Fixture"_s);
        QCOMPARE(info.value(u"Formats"_s), PropertyValue(PropertyValue::Array{u"a", u"b"}));
        QVERIFY(!info.contains(u"Nested"_s));

        QCOMPARE(fixture->localizations(), QStringList({u"de"_s, u"en"_s, u"zh_CN"_s}));

        // A class in a shared library belongs to the library's folder.
        QCOMPARE(VXThreadSafety::threadSafeBundleForClass(&QObject::staticMetaObject)->bundlePath(),
                 QFileInfo(QLibraryInfo::path(QLibraryInfo::LibrariesPath)).canonicalFilePath());
        QVERIFY(VXThreadSafety::lockMap().isEmpty());
    }

    // "name.type>file" rows (no file: no path); nothing outside the bundle is found.
    void pathForResource_data()
    {
        QTest::addColumn<QString>("row");
        for (const char *row : {"Info.ini>Info.ini", "Nothing.png>", "../Outside.txt>",
                                "../Fixture/Info.ini>Info.ini"})
            QTest::newRow(QByteArray(row).split('>').first()) << QString::fromLatin1(row);
    }
    void pathForResource()
    {
        QFETCH(QString, row);
        const QString resource = row.section(u'>', 0, 0), file = row.section(u'>', 1);
        const QString root = QFileInfo(m_fixture).canonicalFilePath();
        QCOMPARE(VXThreadSafety::threadSafeBundleWithPath(m_fixture)->pathForResource(
                     resource.section(u'.', 0, -2), resource.section(u'.', -1)),
                 file.isEmpty() ? QString() : root + u'/' + file);
    }

    void preferredLocalizations_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QStringList>("expected");
        // "languages>localizations": English first, unavailable ones skipped, script and
        // territory, another territory, encoding and modifier, none.
        for (const char *row : {"en-US,de>en,de", "fr,de_AT>de,en", "zh-Hans-CN>zh_CN,en",
                                "zh-TW,zh-Hant-TW>en", "zh_CN.UTF-8@pinyin>zh_CN,en", ">en"}) {
            const QStringList sides = QString::fromLatin1(row).split(u'>');
            QTest::newRow(row) << sides[0].split(u',', Qt::SkipEmptyParts) << sides[1].split(u',');
        }
    }
    void preferredLocalizations()
    {
        QFETCH(QStringList, languages);
        Bundle::setPreferredLanguagesForTesting(languages);
        QTEST(VXThreadSafety::threadSafeBundleWithPath(m_fixture)->preferredLocalizations(),
              "expected");
    }

    // "language|key|default value|table|expected" rows.
    void localizedString_data()
    {
        QTest::addColumn<QString>("row");
        for (const char *row :
             {"de-DE|Uninstall|||Deinstallieren", "de-DE|Open Offer|||Angebot öffnen",
              "de-DE|bytes||Units|Bytes", "de-DE|bytes|||bytes",
              "de-DE|No such key|Default||Default", "de-DE|Only in English|||English wording",
              "en|Uninstall|||Uninstall Now", "zh-CN|Uninstall|||卸载"})
            QTest::newRow(row) << QString::fromUtf8(row);
    }
    void localizedString()
    {
        QFETCH(QString, row);
        const QStringList f = row.split(u'|');
        Bundle::setPreferredLanguagesForTesting(QStringList{f[0]});
        QCOMPARE(VXThreadSafety::threadSafeBundleWithPath(m_fixture)->localizedStringForKey(
                     f[1], f[2], f[3]),
                 f[4]);
    }

    void languageRules_data()
    {
        QTest::addColumn<QStringList>("localizations");
        QTest::addColumn<QString>("preferred");
        QTest::addColumn<bool>("hieroglyphic");
        QTest::newRow("Japanese") << QStringList{u"ja"_s} << "ja" << true;
        QTest::newRow("Chinese") << QStringList{u"zh-CN"_s} << "zh_CN" << true;
        QTest::newRow("Taiwan") << QStringList{u"zh_TW"_s} << "zh_TW" << false;
    }
    void languageRules()
    {
        QFETCH(QStringList, localizations);
        QFETCH(QString, preferred);
        VXPrefferedLanguage::setPreferredLocalizationsForTesting(localizations);
        QCOMPARE(VXPrefferedLanguage::preferredApplicationLocalization(), preferred);
        QCOMPARE(VXPrefferedLanguage::isEnglishLanguagePreferred(), preferred == u"en"_s);
        QTEST(VXPrefferedLanguage::isHieroglyphicLocalization(preferred), "hieroglyphic");
    }

    void languageFromMainBundle()
    {
        // Italian is not among the program's translations: the development language wins.
        Bundle::setPreferredLanguagesForTesting(QStringList{u"it-IT"_s});
        QCOMPARE(VXPrefferedLanguage::preferredApplicationLocalization(), u"en"_s);
        QVERIFY(VXPrefferedLanguage::isEnglishLanguagePreferred());
    }

    void performReleasesMonitorOnThrow()
    {
        VXThreadSafeBundleProxy *fixture = VXThreadSafety::threadSafeBundleWithPath(m_fixture);
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, fixture->perform([](Bundle &) -> int {
            throw std::runtime_error("boom");
        }));
        bool freeElsewhere = false;
        std::thread([&] {
            std::recursive_mutex &m = fixture->bundle()->monitor();
            freeElsewhere = m.try_lock();
            if (freeElsewhere)
                m.unlock();
        }).join();
        QVERIFY(freeElsewhere);
    }

    void manyThreads()
    {
        Bundle::setPreferredLanguagesForTesting(QStringList{u"de"_s});
        VXThreadSafeBundleProxy *fixture = VXThreadSafety::threadSafeBundleWithPath(m_fixture);
        constexpr int threads = 4;
        constexpr int calls = 2000;
        std::atomic<int> wrong{0};
        std::vector<std::thread> pool;
        for (int t = 0; t < threads; ++t) {
            pool.emplace_back([&, t] {
                const QString id = u"shared-%1"_s.arg(t % 2);
                for (int i = 0; i < calls; ++i) {
                    // One thread keeps switching the language, so the bundle reloads its
                    // translators while the others read them.
                    if (t == 0 && i % 20 == 0)
                        Bundle::setPreferredLanguagesForTesting(
                            QStringList{i % 40 ? u"zh-CN"_s : u"de"_s});
                    const QString text =
                        fixture->localizedStringForKey(u"Uninstall"_s, QString(), QString());
                    if (text != u"Deinstallieren" && text != u"卸载")
                        ++wrong;
                    const auto lock = VXThreadSafety::lockForIdentifier(id);
                    lock->lock();
                    lock->unlock();
                    VXThreadSafety::releaseLockForIdentifier(id);
                    if (i % 100 == 0 &&
                        VXThreadSafety::threadSafeBundleWithPath(m_fixture) != fixture)
                        ++wrong; // another proxy for the same folder
                }
            });
        }
        for (std::thread &th : pool)
            th.join();
        QCOMPARE(wrong.load(), 0);
        QVERIFY(VXThreadSafety::lockMap().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBundle)
#include "tst_bundle.moc"
