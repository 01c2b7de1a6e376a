// Composition of the vendor's service URLs from the build's configuration.
#include "VXProductInformation.h"

#include <QTest>

using namespace Qt::StringLiterals;

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
            << URLWithScheme(u"https"_s, u"account"_s, u"/mac/uninstall-survey"_s)
            << u"https://account.brelltan.net/mac/uninstall-survey"_s;
        QTest::newRow("no service")
            << URLWithScheme(u"http"_s, n, u"/x"_s) << u"http://brelltan.net/x"_s;
        QTest::newRow("path glued without separator")
            << URLWithScheme(u"http"_s, u"www"_s, u":8080/a"_s)
            << u"http://www.brelltan.net:8080/a"_s;
        QTest::newRow("path format")
            << URLWithScheme(u"https"_s, u"api"_s, u"/v%1/users/%2"_s, 2, u"ann"_s)
            << u"https://api.brelltan.net/v2/users/ann"_s;
        QTest::newRow("invalid text gives no URL")
            << URLWithScheme(u"http"_s, u"account"_s, u"/a b"_s) << QString();
        QTest::newRow("account, plain") << accountServiceURLWithPath(u"/ping.html"_s)
                                        << u"http://account.brelltan.net/ping.html"_s;
        QTest::newRow("account, secure") << accountServiceSecureURLWithPath(u"/p?q=1"_s)
                                         << u"https://account.brelltan.net/p?q=1"_s;
        QTest::newRow("buy now, query verbatim") << buyNowPageURLWithParams(u"a=1&b=%2F"_s)
                                                 << u"http://www.quorvelle.com/buy-now?a=1&b=%2F"_s;
        QTest::newRow("product site") << productWebSiteURL() << u"http://www.quorvelle.com"_s;
        QTest::newRow("EULA") << productEULAWebPageURL() << u"http://www.quorvelle.com/eula"_s;
        QTest::newRow("company") << companyWebsiteURL() << u"http://brelltan.net"_s;
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
