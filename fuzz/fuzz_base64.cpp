// Base64 decoding of arbitrary text: never a crash, and whatever decodes must encode back
// to text that decodes to the same bytes.
#include "VXCryptor.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::optional<QByteArray> decoded = VXCryptor::dataFromBase64(text);
    if (decoded && !decoded->isEmpty()) {
        const std::optional<QString> again = VXCryptor::base64FromData(*decoded);
        if (!again || VXCryptor::dataFromBase64(*again) != decoded)
            std::abort();
    }
    return 0;
}
