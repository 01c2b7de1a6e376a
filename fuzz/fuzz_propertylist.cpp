// The property-list reader and the report adapter on arbitrary bytes.
#include "PropertyListXml.h"
#include "ReportToolAdapter.h"

#include <QStringList>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::optional<PropertyValue> value = Quorvelle::PropertyListXml::read(bytes);
    // What the reader accepts, the writer must give back in a form the reader accepts again.
    if (value && !Quorvelle::PropertyListXml::read(Quorvelle::PropertyListXml::write(*value)))
        __builtin_trap();
    const QStringList types{QStringLiteral("SPHardwareDataType"),
                            QStringLiteral("SPNetworkDataType")};
    const QByteArray adapted = Quorvelle::ReportToolAdapter::toPropertyList(bytes, types);
    if (adapted != bytes && !Quorvelle::PropertyListXml::read(adapted))
        __builtin_trap();
    if (Quorvelle::ReportToolAdapter::relabelText(bytes).count('\n') != bytes.count('\n'))
        __builtin_trap();
    return 0;
}
