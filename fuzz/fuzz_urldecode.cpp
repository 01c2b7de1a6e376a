// Percent-decoding of arbitrary text: never a crash, and a decoded string encodes to a
// form that decodes to it again.
#include "QuorvelleString.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::optional<QString> decoded = QuorvelleString::URLDecodedString(text);
    // "%" stays unescaped when encoding, so only strings without it go round.
    if (decoded && !decoded->contains(u'%')) {
        const QString encoded = QuorvelleString::URLEncodedString(*decoded);
        if (QuorvelleString::URLDecodedString(encoded) != decoded)
            std::abort();
    }
    return 0;
}
