#pragma once

#include "PropertyValue.h"

#include <QByteArray>

#include <optional>

// The XML property-list form (<plist><array>...</array></plist>), read into and written
// from PropertyValue. Reading is strict: anything malformed gives std::nullopt.
namespace PropertyListXml {
std::optional<PropertyValue> read(const QByteArray &xml);
QByteArray write(const PropertyValue &value);
} // namespace PropertyListXml
