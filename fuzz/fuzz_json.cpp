// Feeds arbitrary bytes to the JSON reader, both as UTF-8 and as raw UTF-16 code units
// (odd lengths and lone surrogates included), with and without dropping nulls. Whatever
// reads is written back, as a QString and as UTF-8, and the written text must read again;
// the bytes read directly must give what their conversion to a QString gives.
#include "JSON.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// A tree reads back equal when no key holds a quote or a backslash (keys are written
// unescaped) and every number is finite (non-finite ones are written as null).
bool readsBackEqual(const PropertyValue &value)
{
    if (const auto *array = value.arrayPtr())
        return std::all_of(array->cbegin(), array->cend(), readsBackEqual);
    if (const auto *dictionary = value.dictionaryPtr()) {
        for (auto it = dictionary->cbegin(); it != dictionary->cend(); ++it) {
            if (it.key().contains(u'"') || it.key().contains(u'\\') || !readsBackEqual(it.value()))
                return false;
        }
        return true;
    }
    return !value.isNumber() || std::isfinite(value.toDouble());
}

template <typename Tree, typename Read> void writeAndReread(const Tree &tree, Read read)
{
    const QString written = JSON::JSONString(tree);
    // The UTF-8 writer is held to Qt's conversion of the same text.
    if (JSON::JSONUtf8(tree) != written.toUtf8())
        std::abort();
    const auto again = read(written);
    if (readsBackEqual(PropertyValue(tree)) && again != tree)
        std::abort();
}

void check(const QString &text)
{
    for (bool ignoreNull : {false, true}) {
        if (const auto dictionary = JSON::dictionaryWithJSONString(text, ignoreNull)) {
            writeAndReread(*dictionary, [&](const QString &written) {
                return JSON::dictionaryWithJSONString(written, ignoreNull);
            });
        }
        if (const auto array = JSON::arrayWithJSONString(text, ignoreNull)) {
            writeAndReread(*array, [&](const QString &written) {
                return JSON::arrayWithJSONString(written, ignoreNull);
            });
        }
    }
}

// Reading bytes straight as UTF-8 gives what reading Qt's conversion of them gives.
void checkBytes(const QByteArray &bytes, const QString &converted)
{
    for (bool ignoreNull : {false, true}) {
        if (JSON::dictionaryWithJSONString(bytes, ignoreNull) !=
                JSON::dictionaryWithJSONString(converted, ignoreNull) ||
            JSON::arrayWithJSONString(bytes, ignoreNull) !=
                JSON::arrayWithJSONString(converted, ignoreNull))
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // The parse-error log lines would drown the fuzzer's own output.
    QLoggingCategory::setFilterRules(QStringLiteral("quorvelle.info=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString converted = QString::fromUtf8(bytes);
    check(converted);
    checkBytes(bytes, converted);

    QString units(qsizetype(size / 2), Qt::Uninitialized);
    std::memcpy(units.data(), data, size / 2 * 2);
    check(units);
    return 0;
}
