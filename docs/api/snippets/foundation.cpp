// The examples of the Foundation guide (docs/api/foundation.md).
#include "Snippets.h"

//! [includes]
#include <Quorvelle/Foundation/JSON.h>
#include <Quorvelle/Foundation/QuorvelleString.h>
#include <Quorvelle/Foundation/VXCryptor.h>
#include <Quorvelle/Foundation/VXItemTree.h>
#include <Quorvelle/Foundation/VXThreadSafeBundle.h>
//! [includes]

namespace Snippets {

//! [read-json]
// Settings as a service sends them: {"name": "Backup", "retries": 3, "paths": ["/a", "/b"]}
QString describeSettings(const QString &text)
{
    const std::optional<PropertyValue::Dictionary> settings = JSON::dictionaryWithJSONString(text);
    if (!settings)
        return QStringLiteral("not a JSON object"); // the system log has the reason
    // A missing member reads as the null marker, whose toString() is empty and toInt64() 0.
    const QString name = settings->value(QStringLiteral("name")).toString();
    const qint64 retries = settings->value(QStringLiteral("retries")).toInt64();
    const PropertyValue::Array paths = settings->value(QStringLiteral("paths")).toArray();
    return QStringLiteral("%1: %2 retries, %3 paths").arg(name).arg(retries).arg(paths.size());
}
//! [read-json]

//! [write-json]
QString answersPayload(const QString &reason, bool contactMe)
{
    PropertyValue::Dictionary answers{
        {QStringLiteral("reason"), reason},
        {QStringLiteral("contact"), contactMe},
        {QStringLiteral("choices"), PropertyValue::Array{1, 3}},
    };
    answers.insert(QStringLiteral("version"), 2); // a new key goes last
    // {"reason":"...","contact":1,"choices":[1,3],"version":2}
    return JSON::JSONString(answers);
}
//! [write-json]

//! [strings]
QString downloadSummary(quint64 bytes, const QString &email)
{
    if (!QuorvelleString::isValidEmailAddress(email))
        return QStringLiteral("no valid address");
    // "4.2 MB to ..." in the user's language, the address ready for a query string.
    return QuorvelleString::stringWithFileSize(bytes) + QStringLiteral(" to ") +
           QuorvelleString::URLEncodedString(email);
}
//! [strings]

//! [bundle]
QString applicationVersion()
{
    // The running program's bundle: share/<program>/ when installed, else its own folder.
    const std::optional<PropertyValue> version =
        VXThreadSafety::threadSafeMainBundle()->objectForInfoDictionaryKey(
            QStringLiteral("CFBundleShortVersionString"));
    return version ? version->toString() : QStringLiteral("unknown");
}
//! [bundle]

//! [localized]
QString localizedText(const QString &key)
{
    // The user's language, else English; a key no table has comes back as it is.
    return VXThreadSafety::threadSafeMainBundle()->localizedStringForKey(key, QString(), QString());
}
//! [localized]

//! [cryptor]
std::optional<QString> sealForService(const QString &publicKeyPem, const QByteArray &secret)
{
    // 1: PKCS #1 v1.5 padding. Any length of data: it is cut into blocks.
    const std::unique_ptr<VXCryptor> cryptor = VXCryptor::initWithRSAKeyFromString(publicKeyPem, 1);
    if (!cryptor)
        return std::nullopt; // not a key; the system log says why
    return cryptor->encryptBase64(secret);
}
//! [cryptor]

//! [item-tree]
PropertyValue::Array removalList()
{
    const auto file = [](const QString &name, quint64 size) {
        return PropertyValue(PropertyValue::Dictionary{{QStringLiteral("name"), name},
                                                       {QStringLiteral("checked"), 1},
                                                       {QStringLiteral("size"), size}});
    };
    // A group has "items"; a leaf has "checked" (1 on, 0 off) and here a "size".
    return {
        file(QStringLiteral("Preferences.plist"), 500),
        PropertyValue::Dictionary{{QStringLiteral("name"), QStringLiteral("Caches")},
                                  {QStringLiteral("items"),
                                   PropertyValue::Array{file(QStringLiteral("b.cache"), 2000),
                                                        file(QStringLiteral("a.cache"), 4000)}}}};
}

QString removalSummary(PropertyValue::Array &items)
{
    VXItemsSortRecursively(items, {VXSortDescriptor{QStringLiteral("name"), true, {}}});
    // The user unticks the whole Caches group (now first).
    VXItemSetCheckedState(items[0], 0);
    quint64 size = 0;
    quint32 checked = 0;
    quint32 leaves = 0;
    VXItemsGatherCheckedStatistics(items, size, checked, leaves);
    return QStringLiteral("%1 of %2 items, %3")
        .arg(checked)
        .arg(leaves)
        .arg(QuorvelleString::stringWithFileSize(size));
}
//! [item-tree]

} // namespace Snippets
