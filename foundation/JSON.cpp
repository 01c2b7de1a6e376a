#include "JSON.h"

#include "VXJSONScanner.h"

#include <charconv>
#include <cmath>
#include <cstring>

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

namespace {

// The output grows in a QString written through a raw pointer: one capacity check per
// piece instead of per QString::append call, and no copy at the end.
class TextSink
{
public:
    void reserve(qsizetype more)
    {
        if (m_count + more > m_capacity)
            grow(m_count + more);
    }
    void put(char16_t unit)
    {
        reserve(1);
        m_units[m_count++] = unit;
    }
    void putUnchecked(char16_t unit) { m_units[m_count++] = unit; }
    void put(const char16_t *units, qsizetype length)
    {
        reserve(length);
        std::memcpy(m_units + m_count, units, size_t(length) * sizeof(char16_t));
        m_count += length;
    }
    void put(QStringView text) { put(text.utf16(), text.size()); }
    void putLatin1(const char *text, qsizetype length)
    {
        reserve(length);
        for (qsizetype k = 0; k < length; ++k)
            m_units[m_count++] = char16_t(uchar(text[k]));
    }
    QString take()
    {
        m_text.resize(m_count);
        m_units = nullptr;
        m_count = m_capacity = 0;
        return std::move(m_text);
    }

private:
    void grow(qsizetype needed)
    {
        m_capacity = std::max({needed, m_capacity * 2, qsizetype(256)});
        m_text.resize(m_capacity);
        m_units = reinterpret_cast<char16_t *>(m_text.data());
    }

    QString m_text;
    char16_t *m_units = nullptr;
    qsizetype m_count = 0;
    qsizetype m_capacity = 0;
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
        if (c >= 128 || !escapes.second[c])
            continue;
        sink.put(units + runStart, i - runStart);
        sink.reserve(2);
        sink.putUnchecked(u'\\');
        sink.putUnchecked(escapes.second[c]);
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

// JSONStringForValue, writing into the sink.
void appendValue(TextSink &sink, const PropertyValue &value)
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
        appendValue(sink, it.value());
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
        appendValue(sink, element);
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
