// UUID acceptance of arbitrary text, read both as UTF-8 and as raw UTF-16 units (so that
// lone surrogates and characters whose low byte looks like a bracket reach it): never a
// crash, and nothing shorter than 31 digits passes.
#include "QuorvelleString.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {
void check(const QString &text)
{
    if (QuorvelleString::isValidUUID(text)) {
        const qsizetype length = text.size();
        if (length != 32 && length != 34 && length != 36 && length != 38)
            std::abort();
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    check(QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size)));
    check(QString(reinterpret_cast<const QChar *>(data), qsizetype(size / 2)));
    return 0;
}
