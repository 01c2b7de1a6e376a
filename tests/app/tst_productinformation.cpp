// Composition of the vendor's service URLs from the build's configuration.
#include "VXProductInformation.h"

#include <QTest>

using namespace VXProductInformation;

class TestProductInformation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void composition_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QString>("expected"); // empty: no URL

        const QString n; // absent
        QTest::newRow("scheme, service and path")
            << URLWithScheme(QStringLiteral("https"), QStringLiteral("account"),
                             QStringLiteral("/mac/uninstall-survey"))
            << QStringLiteral("https://account.brelltan.net/mac/uninstall-survey");
        QTest::newRow("no service")
            << URLWithScheme(QStringLiteral("http"), n, QStringLiteral("/x"))
            << QStringLiteral("http://brelltan.net/x");
        QTest::newRow("path glued without separator")
            << URLWithScheme(QStringLiteral("http"), QStringLiteral("www"),
                             QStringLiteral(":8080/a"))
            << QStringLiteral("http://www.brelltan.net:8080/a");
        QTest::newRow("path format")
            << URLWithScheme(QStringLiteral("https"), QStringLiteral("api"),
                             QStringLiteral("/v%1/users/%2"), 2, QStringLiteral("ann"))
            << QStringLiteral("https://api.brelltan.net/v2/users/ann");
        QTest::newRow("invalid text gives no URL")
            << URLWithScheme(QStringLiteral("http"), QStringLiteral("account"),
                             QStringLiteral("/a b"))
            << QString();
        QTest::newRow("account, plain") << accountServiceURLWithPath(QStringLiteral("/ping.html"))
                                        << QStringLiteral("http://account.brelltan.net/ping.html");
        QTest::newRow("account, secure")
            << accountServiceSecureURLWithPath(QStringLiteral("/p?q=1"))
            << QStringLiteral("https://account.brelltan.net/p?q=1");
        QTest::newRow("buy now, query verbatim")
            << buyNowPageURLWithParams(QStringLiteral("a=1&b=%2F"))
            << QStringLiteral("http://www.quorvelle.com/buy-now?a=1&b=%2F");
        QTest::newRow("product site")
            << productWebSiteURL() << QStringLiteral("http://www.quorvelle.com");
        QTest::newRow("EULA") << productEULAWebPageURL()
                              << QStringLiteral("http://www.quorvelle.com/eula");
        QTest::newRow("company") << companyWebsiteURL() << QStringLiteral("http://brelltan.net");
    }
    // The expectations assume the default configuration of the build.
    void composition()
    {
        QFETCH(QUrl, url);
        QFETCH(QString, expected);
        QCOMPARE(url.toString(QUrl::FullyEncoded), expected);
    }
};

QTEST_GUILESS_MAIN(TestProductInformation)
#include "tst_productinformation.moc"
