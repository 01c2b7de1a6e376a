// The guides' examples as functions, so tst_docsnippets can run them.
#pragma once

#include <Quorvelle/Foundation/PropertyValue.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace Snippets {
QString describeSettings(const QString &text);
QString answersPayload(const QString &reason, bool contactMe);
QString downloadSummary(quint64 bytes, const QString &email);
QString applicationVersion();
QString localizedText(const QString &key);
std::optional<QString> sealForService(const QString &publicKeyPem, const QByteArray &secret);
PropertyValue::Array removalList();
QString removalSummary(PropertyValue::Array &items);
QStringList aboutThisComputer();
} // namespace Snippets
