#include "JSON.h"

#include "VXJSONScanner.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

// The writer. One template serves both outputs: char16_t units for the QString form and
// UTF-8 bytes for the QByteArray form, so the two cannot drift apart.
namespace {

// The eight escapes, applied to string values only. Doing them in one pass gives the same
// text as replacing backslashes first and then each of the others in turn, because no
// replacement text contains a character that a later replacement looks for.
constexpr char escapeFor(char16_t c)
{
    switch (c) {
    case u'\\':
        return '\\';
    case u'"':
        return '"';
    case u'/':
        return '/';
    case u'\b':
        return 'b';
    case u'\f':
        return 'f';
    case u'\n':
        return 'n';
    case u'\r':
        return 'r';
    case u'\t':
        return 't';
    default:
        return 0;
    }
}

// The second character of the escape of each ASCII unit, 0 for units written as they are.
struct EscapeTable
{
    char second[128] = {};
    constexpr EscapeTable()
    {
        for (char16_t c = 0; c < 128; ++c)
            second[c] = escapeFor(c);
    }
};
constexpr EscapeTable escapes;

#ifdef __SSE2__
// Bit pairs (one per unit, as _mm_movemask_epi8 gives them) marking the units among eight
// that need more than a copy: the escaped ones and, for UTF-8 output, every non-ASCII unit.
// U+000B is caught along with its neighbours U+0008-U+000D; the table then lets it through.
template <bool Escape, bool Utf8> inline int unitsNeedingWork(__m128i units)
{
    const __m128i zero = _mm_setzero_si128();
    int bits = 0;
    if constexpr (Escape) {
        const __m128i controls = _mm_cmpeq_epi16(
            _mm_subs_epu16(_mm_sub_epi16(units, _mm_set1_epi16(8)), _mm_set1_epi16(5)), zero);
        const __m128i marks = _mm_or_si128(_mm_cmpeq_epi16(units, _mm_set1_epi16('"')),
                                           _mm_cmpeq_epi16(units, _mm_set1_epi16('/')));
        const __m128i backslashes = _mm_cmpeq_epi16(units, _mm_set1_epi16('\\'));
        bits = _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(controls, marks), backslashes));
    }
    if constexpr (Utf8) {
        const __m128i ascii =
            _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(short(0xff80))), zero);
        bits |= _mm_movemask_epi8(ascii) ^ 0xffff;
    }
    return bits;
}
#endif

// Writes the unit at `from` (and its low surrogate, for a pair), advancing both pointers.
// For UTF-8 output a surrogate that is not part of a pair gives false and writes nothing.
template <bool Escape, typename Unit>
inline bool putUnit(Unit *&out, const char16_t *&from, const char16_t *to)
{
    const char16_t c = *from++;
    if (c < 0x80) {
        if (Escape && escapes.second[c]) {
            out[0] = Unit('\\');
            out[1] = Unit(escapes.second[c]);
            out += 2;
        } else {
            *out++ = Unit(c);
        }
    } else if constexpr (!std::is_same_v<Unit, char>) {
        *out++ = c;
    } else if (c < 0x800) {
        out[0] = char(0xc0 | (c >> 6));
        out[1] = char(0x80 | (c & 0x3f));
        out += 2;
    } else if (!QChar::isSurrogate(c)) {
        out[0] = char(0xe0 | (c >> 12));
        out[1] = char(0x80 | ((c >> 6) & 0x3f));
        out[2] = char(0x80 | (c & 0x3f));
        out += 3;
    } else if (QChar::isHighSurrogate(c) && from != to && QChar::isLowSurrogate(*from)) {
        const char32_t u = QChar::surrogateToUcs4(c, *from++);
        out[0] = char(0xf0 | (u >> 18));
        out[1] = char(0x80 | ((u >> 12) & 0x3f));
        out[2] = char(0x80 | ((u >> 6) & 0x3f));
        out[3] = char(0x80 | (u & 0x3f));
        out += 4;
    } else {
        return false;
    }
    return true;
}

// Writes the units [from, to) with the escapes when asked, converted to the output unit.
// `out` must have room for the worst case (see TextWriter::putQuoted). For UTF-8 output a
// surrogate that is not part of a pair gives nullptr: the caller leaves that text to Qt.
template <bool Escape, typename Unit>
Unit *putUnits(Unit *out, const char16_t *from, const char16_t *to)
{
    constexpr bool utf8 = std::is_same_v<Unit, char>;
    if constexpr (!utf8 && !Escape) {
        std::memcpy(out, from, size_t(to - from) * sizeof(char16_t));
        return out + (to - from);
    }
#ifdef __SSE2__
    // Eight units at a time, stored whole (narrowed for UTF-8) before they are looked at.
    // When some need work, only the clean ones before the first are kept, that one is
    // written alone, and the next block starts right after it.
    while (to - from >= 8) {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
        if constexpr (utf8)
            _mm_storel_epi64(reinterpret_cast<__m128i *>(out), _mm_packus_epi16(units, units));
        else
            _mm_storeu_si128(reinterpret_cast<__m128i *>(out), units);
        const int work = unitsNeedingWork<Escape, utf8>(units);
        if (!work) {
            from += 8;
            out += 8;
            continue;
        }
        const int clean = std::countr_zero(unsigned(work)) / 2;
        from += clean;
        out += clean;
        if (!putUnit<Escape>(out, from, to))
            return nullptr;
    }
#endif
    while (from != to) {
        if (!putUnit<Escape>(out, from, to))
            return nullptr;
    }
    return out;
}

// Writes straight into the buffer of the result (QString for char16_t, QByteArray for
// UTF-8), which grows geometrically by realloc: each step reserves the worst case of what
// it writes, so the units themselves are stored without bounds checks.
template <typename Unit> class TextWriter
{
    static constexpr bool utf8 = std::is_same_v<Unit, char>;
    using Buffer = std::conditional_t<utf8, QByteArray, QString>;

public:
    TextWriter() { adopt(0); }
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    Buffer take()
    {
        m_buffer.resize(m_out - m_begin);
        // A doubling buffer may hold up to twice the text; give a large surplus back.
        if (m_buffer.capacity() - m_buffer.size() > 64 * 1024)
            m_buffer.squeeze();
        return std::move(m_buffer);
    }

    void putValue(const PropertyValue &value);
    void putDictionary(const PropertyValue::Dictionary &dictionary);
    void putArray(const PropertyValue::Array &array);

    // The text between double quotes; with Escape, the eight escapes applied.
    template <bool Escape> void putQuoted(const QString &text)
    {
        const char16_t *units = reinterpret_cast<const char16_t *>(text.constData());
        const qsizetype length = text.size();
        // Per unit at most: an escape (2 units), 3 UTF-8 bytes; a pair makes 4 bytes of 2.
        Unit *const start = reserve((utf8 || Escape ? (utf8 ? 3 : 2) * length : length) + 2);
        Unit *out = start;
        *out++ = Unit('"');
        out = putUnits<Escape>(out, units, units + length);
        if constexpr (utf8) {
            if (!out) {
                putLoneSurrogateText<Escape>(start, text);
                return;
            }
        }
        *out++ = Unit('"');
        m_out = out;
    }

private:
    static constexpr qsizetype firstCapacity = 256;

    Unit *reserve(qsizetype units)
    {
        if (m_end - m_out < units) [[unlikely]]
            grow(units);
        return m_out;
    }

    Q_DECL_COLD_FUNCTION Q_NEVER_INLINE void grow(qsizetype units)
    {
        adopt(std::max<qsizetype>(2 * (m_end - m_begin), (m_out - m_begin) + units));
    }

    void adopt(qsizetype capacity)
    {
        const qsizetype used = m_out - m_begin;
        m_buffer.resize(std::max(capacity, firstCapacity));
        m_begin = reinterpret_cast<Unit *>(m_buffer.data());
        m_out = m_begin + used;
        m_end = m_begin + m_buffer.size();
    }

    void put(char c)
    {
        *reserve(1) = Unit(c);
        ++m_out;
    }

    void putAscii(std::string_view text)
    {
        Unit *out = reserve(qsizetype(text.size()));
        for (char c : text)
            *out++ = Unit(c);
        m_out = out;
    }

    // The longest number text: a 64-bit integer or a shortest double
    // ("-2.2250738585072014e-308") take at most 24 characters; an integral double written
    // in full, up to 309 digits and a sign (-DBL_MAX).
    template <typename Number>
    static constexpr qsizetype numberRoom = std::is_floating_point_v<Number> ? 320 : 32;

    template <typename Number> void putNumber(Number number)
    {
        constexpr qsizetype room = numberRoom<Number>;
        Unit *out = reserve(room);
        if constexpr (utf8) {
            m_out = numberText(out, number);
        } else {
            char text[room];
            const char *end = numberText(text, number);
            for (const char *c = text; c != end; ++c)
                *out++ = char16_t(*c);
            m_out = out;
        }
    }

    template <typename Number> static char *numberText(char *out, Number number)
    {
        char *const end = out + numberRoom<Number>;
        if constexpr (std::is_floating_point_v<Number>) {
            // An integral value is written as its plain decimal digits, never with an
            // exponent: 100000, not 1e+05. Those are the exact digits of the double, also
            // past 2^53 (1e23 is 99999999999999991611392), so that the text reads back as
            // the same double. Zero keeps its sign: "-0" reads back as -0.0. Only a value
            // with a fraction takes the shortest text that reads back (0.5, 1e-07).
            constexpr double integerLimit = 0x1p63;
            if (number >= -integerLimit && number < integerLimit) {
                // The integer conversion is exact here and several times faster; a
                // fraction, or a zero whose sign it would lose, takes the shortest text.
                const auto integer = qint64(number);
                if (double(integer) == number && integer != 0)
                    return std::to_chars(out, end, integer).ptr;
                return std::to_chars(out, end, number).ptr;
            }
            // Every double this large is integral.
            return std::to_chars(out, end, number, std::chars_format::fixed, 0).ptr;
        } else {
            return std::to_chars(out, end, number).ptr;
        }
    }

    // Qt decides what a surrogate without its partner becomes in UTF-8; the whole quoted
    // text goes through its conversion (quotes included, so that the neighbours it sees
    // are those of the complete output), replacing what was begun at `start`.
    template <bool Escape>
    Q_DECL_COLD_FUNCTION void putLoneSurrogateText(Unit *start, const QString &text)
    {
        m_out = start;
        TextWriter<char16_t> wide;
        wide.putQuoted<Escape>(text);
        const QByteArray bytes = wide.take().toUtf8();
        Unit *out = reserve(bytes.size());
        std::memcpy(out, bytes.constData(), size_t(bytes.size()));
        m_out = out + bytes.size();
    }

    Buffer m_buffer;
    Unit *m_begin = nullptr;
    Unit *m_out = nullptr;
    Unit *m_end = nullptr;
};

// The JSON text of one value.
template <typename Unit> void TextWriter<Unit>::putValue(const PropertyValue &value)
{
    switch (value.type()) {
    case PropertyValue::Type::Array:
        putArray(*value.arrayPtr());
        return;
    case PropertyValue::Type::Dictionary:
        putDictionary(*value.dictionaryPtr());
        return;
    case PropertyValue::Type::String:
        putQuoted<true>(*value.stringPtr());
        return;
    case PropertyValue::Type::Bool:
        // Booleans are numbers here and are written as such, never as words.
        put(value.toBool() ? '1' : '0');
        return;
    case PropertyValue::Type::Integer:
        putNumber(value.toInt64());
        return;
    case PropertyValue::Type::UnsignedInteger:
        putNumber(value.toUInt64());
        return;
    case PropertyValue::Type::Double: {
        // Integral values in plain decimal digits, others in the shortest text that reads
        // back as the same double. Infinities and NaN have no JSON form and the reader
        // would refuse any word for them, so they are written as null.
        const double number = value.toDouble();
        if (std::isfinite(number))
            putNumber(number);
        else
            putAscii("null");
        return;
    }
    case PropertyValue::Type::Null:
    case PropertyValue::Type::Date:
    case PropertyValue::Type::Data:
        break;
    }
    putAscii("null");
}

template <typename Unit>
void TextWriter<Unit>::putDictionary(const PropertyValue::Dictionary &dictionary)
{
    put('{');
    bool first = true;
    for (auto it = dictionary.cbegin(), end = dictionary.cend(); it != end; ++it) {
        if (!first)
            put(',');
        first = false;
        // Keys go out as they are, unescaped; only values are escaped.
        putQuoted<false>(it.key());
        put(':');
        putValue(it.value());
    }
    put('}');
}

template <typename Unit> void TextWriter<Unit>::putArray(const PropertyValue::Array &array)
{
    put('[');
    bool first = true;
    for (const PropertyValue &element : array) {
        if (!first)
            put(',');
        first = false;
        putValue(element);
    }
    put(']');
}

template <typename Unit, typename Container> auto write(const Container &container)
{
    TextWriter<Unit> writer;
    if constexpr (std::is_same_v<Container, PropertyValue::Array>)
        writer.putArray(container);
    else
        writer.putDictionary(container);
    return writer.take();
}

} // namespace

QString JSONString(const PropertyValue::Dictionary &dictionary)
{
    return write<char16_t>(dictionary);
}

QString JSONString(const PropertyValue::Array &array)
{
    return write<char16_t>(array);
}

QByteArray JSONUtf8(const PropertyValue::Dictionary &dictionary)
{
    return write<char>(dictionary);
}

QByteArray JSONUtf8(const PropertyValue::Array &array)
{
    return write<char>(array);
}

} // namespace JSON
