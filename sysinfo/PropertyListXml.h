#pragma once

#include <Quorvelle/SystemInformation/SystemInformationExport.h>

#include "PropertyValue.h"

#include <QByteArray>

#include <optional>

// The XML property-list form (<plist><array>...</array></plist>), read into and written
// from PropertyValue. Reading is strict: anything malformed gives std::nullopt.
namespace Quorvelle::PropertyListXml {
QV_SYSTEMINFORMATION_TESTS_EXPORT std::optional<PropertyValue> read(const QByteArray &xml);
QV_SYSTEMINFORMATION_TESTS_EXPORT QByteArray write(const PropertyValue &value);
} // namespace Quorvelle::PropertyListXml
