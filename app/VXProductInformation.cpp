#include "VXProductInformation.h"

#include "VXConfiguration.h"

namespace {

// Strict parsing: text that is not a valid URL must give no URL rather than a
// "tolerantly" repaired one that would send data somewhere unexpected.
QUrl URLWithString(const QString &text)
{
    QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? url : QUrl();
}

QUrl URLByAppendingPathComponent(QUrl url, const QString &component)
{
    if (url.isEmpty())
        return QUrl();
    QString path = url.path(QUrl::FullyEncoded);
    if (!path.endsWith(u'/'))
        path += u'/';
    url.setPath(path + component, QUrl::TolerantMode);
    return url.isValid() ? url : QUrl();
}

QString productWebSiteText()
{
    return QStringLiteral("http://") + QString::fromUtf16(QV_CONFIG_PRODUCT_WEBSITE_HOST);
}

} // namespace

namespace VXProductInformation {

QString identifier()
{
    return QStringLiteral("Quorvelle");
}

QString name()
{
    return identifier();
}

QString fullName()
{
    return QStringLiteral("Quorvelle 2015");
}

QUrl URLWithScheme(const QString &scheme, const QString &service, const QString &path)
{
    QString text = QStringLiteral("%1://").arg(scheme);
    if (!service.isNull())
        text += QStringLiteral("%1.").arg(service);
    text += QString::fromUtf16(QV_CONFIG_COMPANY_DOMAIN);
    if (!path.isNull())
        text += path;
    return URLWithString(text);
}

QUrl accountServiceURLWithPath(const QString &path)
{
    return URLWithScheme(QStringLiteral("http"), QStringLiteral("account"), path);
}

QUrl accountServiceSecureURLWithPath(const QString &path)
{
    return URLWithScheme(QStringLiteral("https"), QStringLiteral("account"), path);
}

QUrl buyNowPageURL()
{
    return URLWithString(productWebSiteText() + QStringLiteral("/buy-now"));
}

QUrl buyNowPageURLWithParams(const QString &params)
{
    return URLWithString(productWebSiteText() + QStringLiteral("/buy-now?") + params);
}

QUrl productWebSiteURL()
{
    return URLWithString(productWebSiteText());
}

QUrl productEULAWebPageURL()
{
    return URLByAppendingPathComponent(productWebSiteURL(), QStringLiteral("eula"));
}

QUrl productPrivacyPolicyWebPageURL()
{
    return URLByAppendingPathComponent(productWebSiteURL(), QStringLiteral("privacy"));
}

QUrl companyWebsiteURL()
{
    return URLWithString(QStringLiteral("http://") + QString::fromUtf16(QV_CONFIG_COMPANY_DOMAIN));
}

QString companySupportMail()
{
    return QString::fromUtf16(QV_CONFIG_SUPPORT_EMAIL);
}

QUrl partnerOfferURL()
{
    return URLWithString(QString::fromUtf16(QV_CONFIG_PARTNER_OFFER_URL));
}

} // namespace VXProductInformation
