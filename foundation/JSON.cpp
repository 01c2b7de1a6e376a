#include "JSON.h"

#include "VXJSONScanner.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace JSON {

std::optional<PropertyValue::Dictionary> dictionaryWithJSONString(const QString &string,
                                                                  bool ignoreNull)
{
    if (string.isNull())
        return std::nullopt;
    VXJSONScanner scanner(string);
    std::optional<PropertyValue> result;
    // Only the slot tells: it is filled when the object was read to its closing "}".
    scanner.scanJSONObject(&result, ignoreNull);
    if (!result)
        return std::nullopt;
    return std::move(*result->dictionaryPtr());
}

std::optional<PropertyValue::Dictionary> dictionaryWithJSONString(const QString &string)
{
    return dictionaryWithJSONString(string, false);
}

std::optional<PropertyValue::Dictionary>
dictionaryWithJSONStringIgnoringNulls(const QString &string)
{
    return dictionaryWithJSONString(string, true);
}

std::optional<PropertyValue::Array> arrayWithJSONString(const QString &string, bool ignoreNull)
{
    if (string.isNull())
        return std::nullopt;
    VXJSONScanner scanner(string);
    std::optional<PropertyValue> result;
    scanner.scanJSONArray(&result, ignoreNull);
    if (!result)
        return std::nullopt;
    return std::move(*result->arrayPtr());
}

std::optional<PropertyValue::Array> arrayWithJSONString(const QString &string)
{
    return arrayWithJSONString(string, false);
}

std::optional<PropertyValue::Array> arrayWithJSONStringIgnoringNulls(const QString &string)
{
    return arrayWithJSONString(string, true);
}

std::optional<PropertyValue::Dictionary> dictionaryWithJSONString(const QByteArray &utf8,
                                                                  bool ignoreNull)
{
    if (utf8.isNull())
        return std::nullopt;
    // Valid UTF-8 is read as it stands; anything else goes through Qt's conversion, whose
    // replacement characters then decide.
    if (!utf8.isValidUtf8())
        return dictionaryWithJSONString(QString::fromUtf8(utf8), ignoreNull);
    std::optional<PropertyValue> result = VXJSONScanner::readUtf8(utf8, true, ignoreNull);
    if (!result)
        return std::nullopt;
    return std::move(*result->dictionaryPtr());
}

std::optional<PropertyValue::Dictionary> dictionaryWithJSONString(const QByteArray &utf8)
{
    return dictionaryWithJSONString(utf8, false);
}

std::optional<PropertyValue::Array> arrayWithJSONString(const QByteArray &utf8, bool ignoreNull)
{
    if (utf8.isNull())
        return std::nullopt;
    if (!utf8.isValidUtf8())
        return arrayWithJSONString(QString::fromUtf8(utf8), ignoreNull);
    std::optional<PropertyValue> result = VXJSONScanner::readUtf8(utf8, false, ignoreNull);
    if (!result)
        return std::nullopt;
    return std::move(*result->arrayPtr());
}

std::optional<PropertyValue::Array> arrayWithJSONString(const QByteArray &utf8)
{
    return arrayWithJSONString(utf8, false);
}

namespace {

// The output is gathered in chunks: a small one inside the sink for the usual short text,
// then heap chunks of a fixed size, and copied once into a QString of the exact length.
// Growing one large buffer instead would reallocate and copy it repeatedly, touching
// fresh pages each time, which dominated the time for outputs of several megabytes.
class TextSink
{
public:
    TextSink() = default;
    TextSink(const TextSink &) = delete;
    TextSink &operator=(const TextSink &) = delete;

    void put(char16_t unit)
    {
        if (m_count == m_capacity)
            nextChunk();
        m_units[m_count++] = unit;
    }
    void put(const char16_t *units, qsizetype length)
    {
        while (length > 0) {
            if (m_count == m_capacity)
                nextChunk();
            const qsizetype n = std::min(length, m_capacity - m_count);
            std::memcpy(m_units + m_count, units, size_t(n) * sizeof(char16_t));
            m_count += n;
            units += n;
            length -= n;
        }
    }
    void put(QStringView text) { put(text.utf16(), text.size()); }
    void putLatin1(const char *text, qsizetype length)
    {
        for (qsizetype k = 0; k < length; ++k)
            put(char16_t(uchar(text[k])));
    }
    QString take()
    {
        qsizetype total = m_count;
        for (const auto &[units, count] : m_full)
            total += count;
        QString text(total, Qt::Uninitialized);
        char16_t *out = reinterpret_cast<char16_t *>(text.data());
        for (const auto &[units, count] : m_full) {
            std::memcpy(out, units, size_t(count) * sizeof(char16_t));
            out += count;
        }
        std::memcpy(out, m_units, size_t(m_count) * sizeof(char16_t));
        return text;
    }

private:
    static constexpr qsizetype chunkSize = 32 * 1024;

    void nextChunk()
    {
        m_full.emplace_back(m_units, m_count);
        m_owned.push_back(std::make_unique_for_overwrite<char16_t[]>(chunkSize));
        m_units = m_owned.back().get();
        m_count = 0;
        m_capacity = chunkSize;
    }

    char16_t m_first[512];
    char16_t *m_units = m_first;
    qsizetype m_count = 0;
    qsizetype m_capacity = std::size(m_first);
    std::vector<std::pair<const char16_t *, qsizetype>> m_full;
    std::vector<std::unique_ptr<char16_t[]>> m_owned;
};

// The eight escapes, applied to string values only. Doing them in one pass gives the same
// text as replacing backslashes first and then each of the others in turn, because no
// replacement text contains a character that a later replacement looks for.
constexpr char16_t escapeFor(char16_t c)
{
    switch (c) {
    case u'\\':
        return u'\\';
    case u'"':
        return u'"';
    case u'/':
        return u'/';
    case u'\b':
        return u'b';
    case u'\f':
        return u'f';
    case u'\n':
        return u'n';
    case u'\r':
        return u'r';
    case u'\t':
        return u't';
    default:
        return 0;
    }
}

struct EscapeTable
{
    char16_t second[128] = {};
    constexpr EscapeTable()
    {
        for (char16_t c = 0; c < 128; ++c)
            second[c] = escapeFor(c);
    }
};
constexpr EscapeTable escapes;

void appendEscaped(TextSink &sink, const QString &string)
{
    const char16_t *units = reinterpret_cast<const char16_t *>(string.utf16());
    const qsizetype length = string.size();
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < length; ++i) {
        const char16_t c = units[i];
        // Every character to escape is at most "/" except the backslash: one comparison
        // settles most units.
        if ((c > u'/' && c != u'\\') || !escapes.second[c])
            continue;
        sink.put(units + runStart, i - runStart);
        sink.put(u'\\');
        sink.put(escapes.second[c]);
        runStart = i + 1;
    }
    sink.put(units + runStart, length - runStart);
}

template <typename Number> void appendNumber(TextSink &sink, Number number)
{
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, number);
    sink.putLatin1(text, result.ptr - text);
}

void appendDictionary(TextSink &sink, const PropertyValue::Dictionary &dictionary);
void appendArray(TextSink &sink, const PropertyValue::Array &array);

// The JSON text of one value, written into the sink.
void appendJSONStringForValue(TextSink &sink, const PropertyValue &value)
{
    switch (value.type()) {
    case PropertyValue::Type::Array:
        appendArray(sink, *value.arrayPtr());
        return;
    case PropertyValue::Type::Dictionary:
        appendDictionary(sink, *value.dictionaryPtr());
        return;
    case PropertyValue::Type::String:
        sink.put(u'"');
        appendEscaped(sink, value.toString());
        sink.put(u'"');
        return;
    case PropertyValue::Type::Bool:
        // Booleans are numbers here and are written as such, never as words.
        sink.put(value.toBool() ? u'1' : u'0');
        return;
    case PropertyValue::Type::Integer:
        appendNumber(sink, value.toInt64());
        return;
    case PropertyValue::Type::UnsignedInteger:
        appendNumber(sink, value.toUInt64());
        return;
    case PropertyValue::Type::Double: {
        // Shortest text that reads back as the same double; integral values come out
        // without a fraction. Infinities and NaN have no JSON form and the reader would
        // refuse any word for them, so they are written as null.
        const double number = value.toDouble();
        if (std::isfinite(number))
            appendNumber(sink, number);
        else
            sink.putLatin1("null", 4);
        return;
    }
    case PropertyValue::Type::Null:
    case PropertyValue::Type::Date:
    case PropertyValue::Type::Data:
        break;
    }
    sink.putLatin1("null", 4);
}

void appendDictionary(TextSink &sink, const PropertyValue::Dictionary &dictionary)
{
    sink.put(u'{');
    bool first = true;
    for (auto it = dictionary.cbegin(), end = dictionary.cend(); it != end; ++it) {
        if (!first)
            sink.put(u',');
        first = false;
        // Keys go out as they are, unescaped; only values are escaped.
        sink.put(u'"');
        sink.put(QStringView(it.key()));
        sink.put(u'"');
        sink.put(u':');
        appendJSONStringForValue(sink, it.value());
    }
    sink.put(u'}');
}

void appendArray(TextSink &sink, const PropertyValue::Array &array)
{
    sink.put(u'[');
    bool first = true;
    for (const PropertyValue &element : array) {
        if (!first)
            sink.put(u',');
        first = false;
        appendJSONStringForValue(sink, element);
    }
    sink.put(u']');
}

} // namespace

QString JSONString(const PropertyValue::Dictionary &dictionary)
{
    TextSink sink;
    appendDictionary(sink, dictionary);
    return sink.take();
}

QString JSONString(const PropertyValue::Array &array)
{
    TextSink sink;
    appendArray(sink, array);
    return sink.take();
}

} // namespace JSON
