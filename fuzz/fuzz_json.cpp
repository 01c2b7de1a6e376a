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

// What reads is written as a QString and as UTF-8 (held to Qt's conversion of the text) and
// the written text reads again; bytes, when given, read as their conversion reads.
template <typename Read> void check(const QString &text, const QByteArray *bytes, Read read)
{
    for (bool ignoreNull : {false, true}) {
        const auto tree = read(text, ignoreNull);
        if (bytes && read(*bytes, ignoreNull) != tree)
            std::abort();
        if (!tree)
            continue;
        const QString written = JSON::JSONString(*tree);
        if (JSON::JSONUtf8(*tree) != written.toUtf8() ||
            (readsBackEqual(PropertyValue(*tree)) && read(written, ignoreNull) != tree))
            std::abort();
    }
}

void check(const QString &text, const QByteArray *bytes = nullptr)
{
    check(text, bytes, [](const auto &t, bool n) { return JSON::dictionaryWithJSONString(t, n); });
    check(text, bytes, [](const auto &t, bool n) { return JSON::arrayWithJSONString(t, n); });
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
    check(QString::fromUtf8(bytes), &bytes);

    QString units(qsizetype(size / 2), Qt::Uninitialized);
    std::memcpy(units.data(), data, size / 2 * 2);
    check(units);
    return 0;
}
