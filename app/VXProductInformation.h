#pragma once

#include <QString>
#include <QUrl>
#include <QVariant>

// Product names and every address of the vendor's services. A URL whose text is not a
// valid URL comes back as an empty QUrl, never as a repaired one.
namespace VXProductInformation {

QString identifier();
QString name();
QString fullName();

// scheme + "://" + (service + "." if given) + company domain + (path if given), glued
// as they are: no separator is added and nothing is escaped. A null QString is "absent".
QUrl URLWithScheme(const QString &scheme, const QString &service, const QString &path);

// The path is pathFormat with its %1, %2, ... markers replaced by the arguments.
template <typename... Args>
requires(sizeof...(Args) > 0) QUrl
    URLWithScheme(const QString &scheme, const QString &service, const QString &pathFormat,
                  const Args &...arguments)
{
    // One substitution pass, so a "%1" inside an argument stays as it is.
    return URLWithScheme(scheme, service, pathFormat.arg(QVariant(arguments).toString()...));
}

QUrl accountServiceURLWithPath(const QString &path);
QUrl accountServiceSecureURLWithPath(const QString &path);

QUrl buyNowPageURL();
// The query string goes in verbatim after "?".
QUrl buyNowPageURLWithParams(const QString &params);
QUrl productWebSiteURL();
QUrl productEULAWebPageURL();
QUrl productPrivacyPolicyWebPageURL();
QUrl companyWebsiteURL();
QString companySupportMail();

// The partner's offer page opened by the get-it-for-free button.
QUrl partnerOfferURL();

} // namespace VXProductInformation
