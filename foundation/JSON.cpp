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
#if defined(__x86_64__) || defined(__i386__)
#include <tmmintrin.h>
#endif
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
//
// The text is written in one pass into chunks that never grow or move (the first on the
// stack, later ones from the heap), then copied once into a result of exactly its length.
// A result grown by doubling (and trimmed at the end) made the time depend on how the
// allocator and the kernel moved its pages, up to thirty times slower for the same tree;
// measuring the exact length in a first pass over the tree cost more than the copy (1.6
// times the writing on string-heavy trees, twice on deeply nested ones).
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

// Whether some surrogate in the text is not part of a pair (UTF-8 has no form for it).
bool hasLoneSurrogate(const char16_t *from, const char16_t *to)
{
    while (from != to) {
        const char16_t c = *from++;
        if (!QChar::isSurrogate(c))
            continue;
        if (!QChar::isHighSurrogate(c) || from == to || !QChar::isLowSurrogate(*from))
            return true;
        ++from;
    }
    return false;
}

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

#ifdef __SSE2__
// Encodes eight units of UTF-16 without surrogates as UTF-8, with the escapes when asked,
// without a branch per unit: each unit's bytes are made as one 32-bit word (1 to 3 bytes,
// or the 2 of an escape) with its length, and the words are then stored one after the
// other, each overlapping the unused end of the one before. Mixed text (a non-ASCII
// letter or an escape every few units) otherwise costs a mispredicted branch per unit
// that needs work, which was the better part of the writing time. Only the units whose
// lanes are set in `lanes` are written; up to 4 bytes past the encoded text may be.
// The units' classes, lengths in UTF-8 (with escapes), and 16-bit words for the ASCII ones
// (the unit, or the two characters of its escape).
struct BlockClasses
{
    __m128i ascii;
    __m128i below800;
    __m128i lengths;
    __m128i asciiWords;
};

template <bool Escape> inline BlockClasses classify(__m128i units)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i ascii =
        _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(short(0xff80))), zero);
    const __m128i below800 =
        _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(short(0xf800))), zero);
    // Lengths: 3, less one for ASCII and one below U+0800 (the masks are -1).
    __m128i lengths = _mm_add_epi16(_mm_set1_epi16(3), _mm_add_epi16(ascii, below800));
    __m128i asciiWords = units;
    if constexpr (Escape) {
        const auto equals = [&](char c) { return _mm_cmpeq_epi16(units, _mm_set1_epi16(c)); };
        const __m128i marks = _mm_or_si128(_mm_or_si128(equals('"'), equals('/')), equals('\\'));
        // The second character of each escape: the mark itself, or a letter for a control.
        const __m128i second = _mm_or_si128(
            _mm_or_si128(_mm_and_si128(marks, units),
                         _mm_and_si128(equals('\b'), _mm_set1_epi16('b'))),
            _mm_or_si128(_mm_or_si128(_mm_and_si128(equals('\t'), _mm_set1_epi16('t')),
                                      _mm_and_si128(equals('\n'), _mm_set1_epi16('n'))),
                         _mm_or_si128(_mm_and_si128(equals('\f'), _mm_set1_epi16('f')),
                                      _mm_and_si128(equals('\r'), _mm_set1_epi16('r')))));
        const __m128i escaped = _mm_cmpeq_epi16(_mm_cmpeq_epi16(second, zero), zero);
        lengths = _mm_sub_epi16(lengths, escaped);
        const __m128i escapeWords = _mm_or_si128(_mm_set1_epi16('\\'), _mm_slli_epi16(second, 8));
        asciiWords =
            _mm_or_si128(_mm_and_si128(escaped, escapeWords), _mm_andnot_si128(escaped, units));
    }
    return {ascii, below800, lengths, asciiWords};
}

template <bool Escape> inline char *encodeBlock(char *out, __m128i units, __m128i lanes)
{
    const __m128i zero = _mm_setzero_si128();
    const auto [ascii, below800, lengths, asciiWords] = classify<Escape>(units);
    alignas(16) quint32 words[8];
    alignas(16) qint16 length[8];
    _mm_store_si128(reinterpret_cast<__m128i *>(length), _mm_and_si128(lengths, lanes));
    const auto encode = [&](__m128i c, __m128i wordsIfAscii, __m128i isAscii, __m128i isTwo) {
        const __m128i low6 = _mm_set1_epi32(0x3f);
        const __m128i two = _mm_or_si128(_mm_or_si128(_mm_set1_epi32(0x80c0), _mm_srli_epi32(c, 6)),
                                         _mm_slli_epi32(_mm_and_si128(c, low6), 8));
        const __m128i three =
            _mm_or_si128(_mm_or_si128(_mm_set1_epi32(0x8080e0), _mm_srli_epi32(c, 12)),
                         _mm_or_si128(_mm_slli_epi32(_mm_and_si128(_mm_srli_epi32(c, 6), low6), 8),
                                      _mm_slli_epi32(_mm_and_si128(c, low6), 16)));
        const __m128i multi =
            _mm_or_si128(_mm_and_si128(isTwo, two), _mm_andnot_si128(isTwo, three));
        return _mm_or_si128(_mm_and_si128(isAscii, wordsIfAscii), _mm_andnot_si128(isAscii, multi));
    };
    _mm_store_si128(reinterpret_cast<__m128i *>(words),
                    encode(_mm_unpacklo_epi16(units, zero), _mm_unpacklo_epi16(asciiWords, zero),
                           _mm_unpacklo_epi16(ascii, ascii),
                           _mm_unpacklo_epi16(below800, below800)));
    _mm_store_si128(reinterpret_cast<__m128i *>(words + 4),
                    encode(_mm_unpackhi_epi16(units, zero), _mm_unpackhi_epi16(asciiWords, zero),
                           _mm_unpackhi_epi16(ascii, ascii),
                           _mm_unpackhi_epi16(below800, below800)));
    for (int k = 0; k < 8; ++k) {
        std::memcpy(out, &words[k], 4);
        out += length[k];
    }
    return out;
}
#endif

// The units [from, to) one by one, with the escapes when asked; for UTF-8 output a
// surrogate that is not part of a pair gives nullptr.
template <bool Escape, typename Unit>
Unit *putEachUnit(Unit *out, const char16_t *from, const char16_t *to)
{
    while (from != to) {
        if (!putUnit<Escape>(out, from, to))
            return nullptr;
    }
    return out;
}

#ifdef __SSE2__
inline bool hasSurrogates(__m128i units)
{
    return _mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(short(0xf800))),
                                             _mm_set1_epi16(short(0xd800))));
}

// Lanes from `first` to `last` (excluded) of eight.
inline __m128i laneRange(qsizetype first, qsizetype last)
{
    alignas(16) static constexpr qint16 ones[24] = {0,  0,  0,  0,  0, 0, 0, 0, -1, -1, -1, -1,
                                                    -1, -1, -1, -1, 0, 0, 0, 0, 0,  0,  0,  0};
    return _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i *>(ones + 8 - first)),
                         _mm_loadu_si128(reinterpret_cast<const __m128i *>(ones + 16 - last)));
}

#if defined(__x86_64__) || defined(__i386__)
// The same with SSSE3 for blocks below U+0800 (most text): each unit's one or two bytes
// are made in its lane and the unused second bytes are squeezed out by one byte shuffle
// from a table of the 256 patterns of one- and two-byte units, then stored at once (16
// bytes, of which the unused end is overwritten later). Units before `first` are the end
// of the block before, written the same way already: they are written again in place.
// Blocks with units from U+0800 on take encodeBlock. May write 16 bytes past the text.
struct ShuffleTables
{
    alignas(16) uchar shuffle[256][16] = {};
    uchar twoByteUnits[256] = {};
    constexpr ShuffleTables()
    {
        for (int pattern = 0; pattern < 256; ++pattern) {
            int k = 0;
            for (int lane = 0; lane < 8; ++lane) {
                shuffle[pattern][k++] = uchar(2 * lane);
                if (pattern >> lane & 1) {
                    shuffle[pattern][k++] = uchar(2 * lane + 1);
                    ++twoByteUnits[pattern];
                }
            }
            while (k < 16)
                shuffle[pattern][k++] = 0x80;
        }
    }
};
constexpr ShuffleTables shuffleTables;

template <bool Escape>
__attribute__((target("ssse3"), always_inline)) inline char *
encodeBlockSsse3(char *out, __m128i units, int first, int last)
{
    const auto [ascii, below800, lengths, asciiWords] = classify<Escape>(units);
    if (_mm_movemask_epi8(below800) != 0xffff)
        return encodeBlock<Escape>(out, units, laneRange(first, last));
    const __m128i two = _mm_or_si128(
        _mm_or_si128(_mm_set1_epi16(0xc0), _mm_srli_epi16(units, 6)),
        _mm_slli_epi16(
            _mm_or_si128(_mm_set1_epi16(0x80), _mm_and_si128(units, _mm_set1_epi16(0x3f))), 8));
    const __m128i words =
        _mm_or_si128(_mm_and_si128(ascii, asciiWords), _mm_andnot_si128(ascii, two));
    const int pattern = _mm_movemask_epi8(
        _mm_packs_epi16(_mm_cmpeq_epi16(lengths, _mm_set1_epi16(2)), _mm_setzero_si128()));
    const __m128i bytes = _mm_shuffle_epi8(
        words, _mm_load_si128(reinterpret_cast<const __m128i *>(shuffleTables.shuffle[pattern])));
    const int before = first + shuffleTables.twoByteUnits[pattern & ((1 << first) - 1)];
    const int through = last + shuffleTables.twoByteUnits[pattern & ((1 << last) - 1)];
    _mm_storeu_si128(reinterpret_cast<__m128i *>(out - before), bytes);
    return out + (through - before);
}
#endif

// UTF-8 from UTF-16, eight units at a time by `encode` (encodeBlock or its SSSE3 form, which
// must be inlined into a function compiled for SSSE3: hence the two functions below); the
// last block of a text overlaps the one before it (its units written there are left out);
// a text shorter than a block goes unit by unit (short texts are mostly ASCII keys, for
// which that is cheaper). A block with a surrogate (rare) sends the rest of the text unit
// by unit.
#define QV_PUT_UTF8_BLOCKS(encode)                                                                 \
    const qsizetype length = to - from;                                                            \
    if (length >= 8) {                                                                             \
        const char16_t *const last = to - 8;                                                       \
        for (; from < last; from += 8) {                                                           \
            const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));        \
            if (hasSurrogates(units))                                                              \
                return putEachUnit<Escape>(out, from, to);                                         \
            out = encode(out, units, 0, 8);                                                        \
        }                                                                                          \
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i *>(last));            \
        if (hasSurrogates(units))                                                                  \
            return putEachUnit<Escape>(out, from, to);                                             \
        return encode(out, units, int(from - last), 8);                                            \
    }                                                                                              \
    return putEachUnit<Escape>(out, from, to);

template <bool Escape> inline char *encodeBlockOf(char *out, __m128i units, int first, int last)
{
    return encodeBlock<Escape>(out, units, laneRange(first, last));
}

template <bool Escape> char *putUtf8(char *out, const char16_t *from, const char16_t *to)
{
    QV_PUT_UTF8_BLOCKS(encodeBlockOf<Escape>)
}

#if defined(__x86_64__) || defined(__i386__)
template <bool Escape>
__attribute__((target("ssse3"))) char *putUtf8Ssse3(char *out, const char16_t *from,
                                                    const char16_t *to)
{
    QV_PUT_UTF8_BLOCKS(encodeBlockSsse3<Escape>)
}
#endif
#undef QV_PUT_UTF8_BLOCKS

#if defined(__x86_64__) || defined(__i386__)
// Whether the processor has SSSE3; QT_NO_CPU_FEATURE=ssse3 turns it off, as it does for
// Qt's own code (the tests run both roads that way).
bool haveSsse3()
{
    static const bool have =
        __builtin_cpu_supports("ssse3") &&
        !qEnvironmentVariable("QT_NO_CPU_FEATURE").contains(QLatin1StringView("ssse3"));
    return have;
}
#endif
#endif

// Writes the units [from, to) with the escapes when asked, converted to the output unit.
// For UTF-8 output a surrogate that is not part of a pair gives nullptr, and up to 16
// bytes past the text may be written.
template <bool Escape, typename Unit>
Unit *putUnits(Unit *out, const char16_t *from, const char16_t *to, [[maybe_unused]] bool ssse3)
{
    constexpr bool utf8 = std::is_same_v<Unit, char>;
    if constexpr (!utf8 && !Escape) {
        std::memcpy(out, from, size_t(to - from) * sizeof(char16_t));
        return out + (to - from);
    }
#ifdef __SSE2__
    if constexpr (utf8) {
        if (to - from < 8)
            return putEachUnit<Escape>(out, from, to);
#if defined(__x86_64__) || defined(__i386__)
        if (ssse3)
            return putUtf8Ssse3<Escape>(out, from, to);
#endif
        return putUtf8<Escape>(out, from, to);
    }
    // Eight units at a time, stored whole (narrowed for UTF-8) before they are looked at:
    // eight units of text always make at least eight units of output, so the store stays
    // inside the text. When some need work, only the clean ones before the first are
    // kept, that one is written alone, and the next block starts right after it.
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
    return putEachUnit<Escape>(out, from, to);
}

// Two digits at a time, for writing integers from the right.
constexpr char digitPairs[] = "00010203040506070809101112131415161718192021222324252627282930313233"
                              "34353637383940414243444546474849505152535455565758596061626364656667"
                              "6869707172737475767778798081828384858687888990919293949596979899";

// The number of decimal digits of `value` (1 for 0): the bit length gives the count or one
// less, and one comparison decides.
inline int decimalDigits(quint64 value)
{
    static constexpr quint64 powers[] = {0, // so that 0 counts one digit
                                         10ull,
                                         100ull,
                                         1000ull,
                                         10000ull,
                                         100000ull,
                                         1000000ull,
                                         10000000ull,
                                         100000000ull,
                                         1000000000ull,
                                         10000000000ull,
                                         100000000000ull,
                                         1000000000000ull,
                                         10000000000000ull,
                                         100000000000000ull,
                                         1000000000000000ull,
                                         10000000000000000ull,
                                         100000000000000000ull,
                                         1000000000000000000ull,
                                         10000000000000000000ull};
    // floor(bits * log10(2)) for the value's bit length.
    const int guess = ((64 - std::countl_zero(value | 1)) * 1233) >> 12;
    return guess + (value >= powers[guess]);
}

// How a real is written. An integral value is written as its plain decimal digits, never
// with an exponent: 100000, not 1e+05. Those are the exact digits of the double, also past
// 2^53 (1e23 is 99999999999999991611392), so that the text reads back as the same double.
// Zero keeps its sign: "-0" reads back as -0.0. Only a value with a fraction takes the
// shortest text that reads back (0.5, 1e-07). Infinities and NaN have no JSON form and the
// reader would refuse any word for them, so they are written as null.
enum class RealForm
{
    Null,
    Zero,
    NegativeZero,
    Integer,  // exactly `integer`; below 2^63 the integer conversion is exact and fast
    Shortest, // a fraction
    Fixed     // integral and 2^63 or more in size: every double this large is integral
};

inline RealForm realForm(double number, qint64 *integer)
{
    if (!std::isfinite(number))
        return RealForm::Null;
    if (number == 0)
        return std::signbit(number) ? RealForm::NegativeZero : RealForm::Zero;
    constexpr double integerLimit = 0x1p63;
    if (number >= -integerLimit && number < integerLimit) {
        *integer = qint64(number);
        return double(*integer) == number ? RealForm::Integer : RealForm::Shortest;
    }
    return RealForm::Fixed;
}

// The longest text of an integral double written in full: 309 digits and a sign.
constexpr int fixedRoom = 320;

template <typename Unit> class TextWriter
{
    static constexpr bool utf8 = std::is_same_v<Unit, char>;
    using Buffer = std::conditional_t<utf8, QByteArray, QString>;

public:
    TextWriter() = default;
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;
    ~TextWriter()
    {
        for (Chunk *chunk = m_first; chunk;) {
            Chunk *next = chunk->next;
            ::operator delete(static_cast<void *>(chunk));
            chunk = next;
        }
    }

    template <typename Container> Buffer write(const Container &container)
    {
        return take(put(m_inline, container));
    }

    // The quoted text, escaped when asked, as UTF-16.
    template <bool Escape> static QString quoted(const QString &text)
    {
        static_assert(!utf8);
        TextWriter writer;
        return writer.take(writer.putQuoted<Escape>(writer.m_inline, text));
    }

private:
    // A piece of the output on the heap, followed by its units.
    struct Chunk
    {
        Chunk *next;
        qsizetype used;
    };
    static Unit *unitsOf(Chunk *chunk) { return reinterpret_cast<Unit *>(chunk + 1); }

    // Every step takes the place to write at and answers where its text ends; the place
    // travels in a register instead of a member that each step would store and reload.
    Unit *put(Unit *out, const PropertyValue &value);
    Unit *put(Unit *out, const PropertyValue::Dictionary &dictionary);
    Unit *put(Unit *out, const PropertyValue::Array &array);

    // Room for `units` units at `out` (or at the start of a new chunk): each step makes
    // sure of room for the most it can write, so the units themselves are stored unchecked.
    Unit *reserve(Unit *out, qsizetype units)
    {
        if (m_end - out < units) [[unlikely]]
            return nextChunk(out, units);
        return out;
    }

    Q_DECL_COLD_FUNCTION Q_NEVER_INLINE Unit *nextChunk(Unit *out, qsizetype units)
    {
        finish(out);
        // 64 KB, then twice as much each time up to 4 MB: a few chunks for a large text,
        // each one allocation that is never moved.
        const qsizetype capacity = std::max(units, m_nextCapacity);
        m_nextCapacity = std::min<qsizetype>(2 * m_nextCapacity, (4 << 20) / sizeof(Unit));
        auto *chunk =
            static_cast<Chunk *>(::operator new(sizeof(Chunk) + size_t(capacity) * sizeof(Unit)));
        *chunk = Chunk{nullptr, 0};
        (m_last ? m_last->next : m_first) = chunk;
        m_last = chunk;
        m_end = unitsOf(chunk) + capacity;
        return unitsOf(chunk);
    }

    // Records how much of the current chunk is used, `out` being its end.
    void finish(Unit *out)
    {
        if (m_last)
            m_last->used = out - unitsOf(m_last);
        else
            m_inlineUsed = out - m_inline;
    }

    // The text written, ending at `out`, in a buffer of exactly its length.
    Buffer take(Unit *out)
    {
        finish(out);
        qsizetype length = m_inlineUsed;
        for (Chunk *chunk = m_first; chunk; chunk = chunk->next)
            length += chunk->used;
        Buffer text(length, Qt::Uninitialized);
        Unit *to = reinterpret_cast<Unit *>(text.data());
        std::memcpy(to, m_inline, size_t(m_inlineUsed) * sizeof(Unit));
        to += m_inlineUsed;
        for (Chunk *chunk = m_first; chunk; chunk = chunk->next) {
            std::memcpy(to, unitsOf(chunk), size_t(chunk->used) * sizeof(Unit));
            to += chunk->used;
        }
        return text;
    }

    Unit *put(Unit *out, char c)
    {
        out = reserve(out, 1);
        *out++ = Unit(c);
        return out;
    }

    Unit *putAscii(Unit *out, std::string_view text)
    {
        out = reserve(out, qsizetype(text.size()));
        for (char c : text)
            *out++ = Unit(c);
        return out;
    }

    // The text between double quotes; with Escape, the eight escapes applied. `before`
    // and `after` are punctuation to write right before and after it, if not 0.
    template <bool Escape>
    Unit *putQuoted(Unit *out, const QString &text, char before = 0, char after = 0)
    {
        // Per unit at most: 3 UTF-8 bytes (a pair makes 4 of 2 units), or an escape's 2;
        // and for UTF-8 the 16 bytes an encoded block may write past its end.
        constexpr qsizetype perUnit = utf8 ? 3 : (Escape ? 2 : 1);
        constexpr qsizetype slack = utf8 ? 16 : 0;
        // A long text goes in slices, so that no chunk has to hold it whole.
        constexpr qsizetype slice = 16 * 1024;
        const char16_t *units = reinterpret_cast<const char16_t *>(text.constData());
        const qsizetype length = text.size();
        if (length <= slice) [[likely]] {
            Unit *const start = reserve(out, perUnit * length + 4 + slack);
            out = start;
            if (before)
                *out++ = Unit(before);
            *out++ = Unit('"');
            out = putUnits<Escape>(out, units, units + length, m_ssse3);
            if constexpr (utf8) {
                if (!out) [[unlikely]]
                    return putLoneSurrogateText<Escape>(start, text, before, after);
            }
            *out++ = Unit('"');
            if (after)
                *out++ = Unit(after);
            return out;
        }
        if (utf8 && hasLoneSurrogate(units, units + length))
            return putLoneSurrogateText<Escape>(out, text, before, after);
        if (before)
            out = put(out, before);
        out = put(out, '"');
        for (const char16_t *from = units, *end = units + length; from != end;) {
            const char16_t *to = from + std::min<qsizetype>(slice, end - from);
            // A pair stays together (there is no lone surrogate here).
            if (to != end && QChar::isHighSurrogate(to[-1]))
                --to;
            out = putUnits<Escape>(reserve(out, perUnit * (to - from) + slack), from, to, m_ssse3);
            from = to;
        }
        out = put(out, '"');
        return after ? put(out, after) : out;
    }

    // Qt decides what a surrogate without its partner becomes in UTF-8; the whole quoted
    // text goes through its conversion (quotes included, so that the neighbours it sees are
    // those of the complete output).
    template <bool Escape>
    Q_DECL_COLD_FUNCTION Unit *putLoneSurrogateText(Unit *out, const QString &text, char before,
                                                    char after)
    {
        if (before)
            out = put(out, before);
        const QByteArray bytes = TextWriter<char16_t>::quoted<Escape>(text).toUtf8();
        for (qsizetype from = 0; from < bytes.size();) {
            const qsizetype count = std::min<qsizetype>(bytes.size() - from, 64 * 1024);
            out = reserve(out, count);
            std::memcpy(out, bytes.constData() + from, size_t(count));
            out += count;
            from += count;
        }
        return after ? put(out, after) : out;
    }

    Unit *putDigits(Unit *out, quint64 value)
    {
        const int digits = decimalDigits(value);
        Unit *const end = reserve(out, digits) + digits;
        out = end;
        while (value >= 100) {
            const char *pair = digitPairs + 2 * (value % 100);
            value /= 100;
            out -= 2;
            out[0] = Unit(pair[0]);
            out[1] = Unit(pair[1]);
        }
        if (value >= 10) {
            out[-2] = Unit(digitPairs[2 * value]);
            out[-1] = Unit(digitPairs[2 * value + 1]);
        } else {
            out[-1] = Unit('0' + value);
        }
        return end;
    }

    Unit *putInteger(Unit *out, qint64 value)
    {
        if (value < 0)
            return putDigits(put(out, '-'), 0 - quint64(value));
        return putDigits(out, quint64(value));
    }

    Unit *putReal(Unit *out, double number)
    {
        qint64 integer = 0;
        const RealForm form = realForm(number, &integer);
        switch (form) {
        case RealForm::Null:
            return putAscii(out, "null");
        case RealForm::Zero:
            return put(out, '0');
        case RealForm::NegativeZero:
            return putAscii(out, "-0");
        case RealForm::Integer:
            return putInteger(out, integer);
        case RealForm::Shortest:
        case RealForm::Fixed:
            break;
        }
        // The shortest text of any double ("-2.2250738585072014e-308") has 24 characters;
        // an integral one written in full, up to 309 digits and a sign.
        char text[fixedRoom];
        const char *end =
            form == RealForm::Shortest
                ? std::to_chars(text, text + fixedRoom, number).ptr
                : std::to_chars(text, text + fixedRoom, number, std::chars_format::fixed, 0).ptr;
        return putAscii(out, std::string_view(text, size_t(end - text)));
    }

#if defined(__SSE2__) && (defined(__x86_64__) || defined(__i386__))
    const bool m_ssse3 = utf8 && haveSsse3();
#else
    const bool m_ssse3 = false;
#endif
    Unit *m_end = m_inline + std::size(m_inline);
    Chunk *m_first = nullptr;
    Chunk *m_last = nullptr;
    qsizetype m_inlineUsed = 0;
    qsizetype m_nextCapacity = (64 * 1024) / sizeof(Unit);
    // The first 8 KB of text, on the stack: most texts need no other chunk.
    Unit m_inline[8192 / sizeof(Unit)];
};

// The JSON text of one value.
template <typename Unit> Unit *TextWriter<Unit>::put(Unit *out, const PropertyValue &value)
{
    switch (value.type()) {
    case PropertyValue::Type::Array:
        return put(out, *value.arrayPtr());
    case PropertyValue::Type::Dictionary:
        return put(out, *value.dictionaryPtr());
    case PropertyValue::Type::String:
        return putQuoted<true>(out, *value.stringPtr());
    case PropertyValue::Type::Bool:
        // Booleans are numbers here and are written as such, never as words.
        return put(out, value.toBool() ? '1' : '0');
    case PropertyValue::Type::Integer:
        return putInteger(out, value.toInt64());
    case PropertyValue::Type::UnsignedInteger:
        return putDigits(out, value.toUInt64());
    case PropertyValue::Type::Double:
        return putReal(out, value.toDouble());
    case PropertyValue::Type::Null:
    case PropertyValue::Type::Date:
    case PropertyValue::Type::Data:
        break;
    }
    return putAscii(out, "null");
}

template <typename Unit>
Unit *TextWriter<Unit>::put(Unit *out, const PropertyValue::Dictionary &dictionary)
{
    // Keys go out as they are, unescaped; only values are escaped. Each key brings the
    // opening brace or the comma before it and the colon after it.
    char before = '{';
    for (auto it = dictionary.cbegin(), end = dictionary.cend(); it != end; ++it) {
        out = putQuoted<false>(out, it.key(), before, ':');
        before = ',';
        out = put(out, it.value());
    }
    if (before == '{')
        out = put(out, '{');
    return put(out, '}');
}

template <typename Unit> Unit *TextWriter<Unit>::put(Unit *out, const PropertyValue::Array &array)
{
    out = put(out, '[');
    bool first = true;
    for (const PropertyValue &element : array) {
        if (!first)
            out = put(out, ',');
        first = false;
        out = put(out, element);
    }
    return put(out, ']');
}

} // namespace

QString JSONString(const PropertyValue::Dictionary &dictionary)
{
    return TextWriter<char16_t>().write(dictionary);
}

QString JSONString(const PropertyValue::Array &array)
{
    return TextWriter<char16_t>().write(array);
}

QByteArray JSONUtf8(const PropertyValue::Dictionary &dictionary)
{
    return TextWriter<char>().write(dictionary);
}

QByteArray JSONUtf8(const PropertyValue::Array &array)
{
    return TextWriter<char>().write(array);
}

} // namespace JSON
