#include "VXJSONScanner.h"

#include "VXLog.h"

#include <QChar>

#include <type_traits>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <locale.h>
#include <string>

namespace {

constexpr char16_t asciiLower(char16_t c)
{
    return (c >= u'A' && c <= u'Z') ? char16_t(c + (u'a' - u'A')) : c;
}

// Case-insensitive equality of one text unit with one unit of an ASCII word. Non-ASCII
// units compare by their case folding, so that e.g. the Kelvin sign matches "k".
inline bool unitMatches(char16_t unit, char16_t word)
{
    if (unit < 0x80)
        return asciiLower(unit) == asciiLower(word);
    return QChar::toCaseFolded(char32_t(unit)) == asciiLower(word);
}

template <typename Unit> constexpr bool isAsciiDigit(Unit c)
{
    return c >= Unit('0') && c <= Unit('9');
}

template <typename Unit> constexpr int hexValue(Unit c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return -1;
}

// Out-of-range numbers are rare; strtod in the C locale gives them the usual saturating
// result (infinity on overflow, zero or a subnormal on underflow) independent of the
// process locale.
double strtodInCLocale(const char *text)
{
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    return strtod_l(text, nullptr, cLocale);
}

// The separators plus U+0009..U+000D and U+0085, which is what QChar::isSpace tests;
// ASCII is decided without the table lookup.
inline bool isWhitespaceOrNewline(char16_t c)
{
    if (c < 0x80)
        return c == u' ' || (c >= 0x09 && c <= 0x0d);
    return QChar::isSpace(char32_t(c));
}

// Whether eight bytes (read little-endian) are all ASCII digits, and their value.
constexpr bool allDigits(quint64 eight)
{
    return ((eight & 0xF0F0F0F0F0F0F0F0ull) |
            (((eight + 0x0606060606060606ull) & 0xF0F0F0F0F0F0F0F0ull) >> 4)) ==
           0x3333333333333333ull;
}

constexpr quint64 eightDigitsValue(quint64 eight)
{
    // Pairs, then fours, then the eight, each step by one multiplication.
    eight -= 0x3030303030303030ull;
    eight = eight * 10 + (eight >> 8);
    return ((eight & 0x000000FF000000FFull) * (100 + (1000000ull << 32)) +
            ((eight >> 16) & 0x000000FF000000FFull) * (1 + (10000ull << 32))) >>
           32;
}
static_assert(allDigits(0x3736353433323130ull) && !allDigits(0x3736353433323a30ull) &&
              !allDigits(0x37363534333232f0ull));
static_assert(eightDigitsValue(0x3837363534333231ull) == 12345678);

// One character of valid UTF-8 at `p`: its code point, and the number of bytes.
inline int decodeUtf8(const char *p, char32_t *codePoint)
{
    const auto b = [p](int k) { return char32_t(uchar(p[k])); };
    if (b(0) < 0x80) {
        *codePoint = b(0);
        return 1;
    }
    if (b(0) < 0xE0) {
        *codePoint = (b(0) & 0x1F) << 6 | (b(1) & 0x3F);
        return 2;
    }
    if (b(0) < 0xF0) {
        *codePoint = (b(0) & 0x0F) << 12 | (b(1) & 0x3F) << 6 | (b(2) & 0x3F);
        return 3;
    }
    *codePoint = (b(0) & 0x07) << 18 | (b(1) & 0x3F) << 12 | (b(2) & 0x3F) << 6 | (b(3) & 0x3F);
    return 4;
}

// What unitMatches answers for the UTF-16 form of the character at `p`, and its length in
// bytes. A character beyond the BMP is a surrogate pair there, and no surrogate matches.
inline int utf8Matches(const char *p, char16_t word, bool *matches)
{
    char32_t c = 0;
    const int length = decodeUtf8(p, &c);
    *matches = c <= 0xFFFF && unitMatches(char16_t(c), word);
    return length;
}

// A hash and an equality test for a few dozen bytes, by overlapping word loads that stay
// inside the span.
inline quint64 loadWord(const void *p)
{
    quint64 word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

inline quint64 hashBytes(const void *data, qsizetype n)
{
    const auto *p = static_cast<const uchar *>(data);
    quint64 mixed = quint64(n) * 0x9E3779B97F4A7C15ull;
    if (n >= 8) {
        for (qsizetype k = 0; k + 8 < n; k += 8)
            mixed = (mixed ^ loadWord(p + k)) * 0x9E3779B97F4A7C15ull;
        mixed = (mixed ^ loadWord(p + n - 8)) * 0x9E3779B97F4A7C15ull;
    } else if (n >= 4) {
        quint32 a, b;
        std::memcpy(&a, p, 4);
        std::memcpy(&b, p + n - 4, 4);
        mixed = (mixed ^ (quint64(a) << 32 | b)) * 0x9E3779B97F4A7C15ull;
    } else if (n > 0) {
        mixed = (mixed ^ (quint64(p[0]) << 16 | quint64(p[n / 2]) << 8 | p[n - 1])) *
                0x9E3779B97F4A7C15ull;
    }
    return mixed ^ (mixed >> 29);
}

inline bool sameBytes(const void *a, const void *b, qsizetype n)
{
    const auto *p = static_cast<const uchar *>(a);
    const auto *q = static_cast<const uchar *>(b);
    if (n >= 8) {
        for (qsizetype k = 0; k + 8 < n; k += 8) {
            if (loadWord(p + k) != loadWord(q + k))
                return false;
        }
        return loadWord(p + n - 8) == loadWord(q + n - 8);
    }
    for (qsizetype k = 0; k < n; ++k) {
        if (p[k] != q[k])
            return false;
    }
    return true;
}

struct DepthGuard
{
    explicit DepthGuard(int &depth) : m_depth(depth) { ++m_depth; }
    ~DepthGuard() { --m_depth; }
    DepthGuard(const DepthGuard &) = delete;
    DepthGuard &operator=(const DepthGuard &) = delete;
    int &m_depth;
};

} // namespace

namespace {
// The working stacks of the last parse on this thread, kept for the next one: a small text
// then reads without allocating them again. Only moderate ones are kept.
struct StackCache
{
    ValueStack<PropertyValue> elements;
    ValueStack<PropertyValue::Dictionary::Entry> members;
    bool available = true;
};
thread_local StackCache stackCache;
constexpr qsizetype keptStackSize = 4096;
// A container larger than this, gathered from the bottom of its stack, keeps the stack's
// buffer as its block instead of being copied (and its elements' pages touched again).
constexpr qsizetype inPlaceBytes = 1 << 20;
} // namespace

VXJSONScanner::VXJSONScanner(const QString &string)
    : m_string(string), m_units(reinterpret_cast<const char16_t *>(m_string.utf16())),
      m_length(m_string.size()), m_arena(m_length)
{
    takeCachedStacks();
}

void VXJSONScanner::takeCachedStacks()
{
    if (stackCache.available) {
        stackCache.available = false;
        m_elements.swap(stackCache.elements);
        m_members.swap(stackCache.members);
        m_cachedStacks = true;
    }
}

VXJSONScanner::~VXJSONScanner()
{
    // The strings handed out now count for themselves; a block none of them kept goes.
    for (const TextBlock &block : m_textBlocks) {
        const int change = int(block.issued) - textReservation;
        if (block.header->ref_.fetchAndAddOrdered(change) + change == 0)
            QTypedArrayData<char16_t>::deallocate(block.header);
    }
    if (!m_cachedStacks)
        return;
    m_elements.truncate(0);
    m_members.truncate(0);
    if (m_elements.capacity() <= keptStackSize && m_members.capacity() <= keptStackSize) {
        m_elements.swap(stackCache.elements);
        m_members.swap(stackCache.members);
    }
    stackCache.available = true;
}

bool VXJSONScanner::whitespaceAndNewlineCharacterSet(char16_t c)
{
    return isWhitespaceOrNewline(c);
}

bool VXJSONScanner::decimalDigitCharacterSet(char16_t c)
{
    return isAsciiDigit(c) || (c >= 0x80 && QChar::isDigit(char32_t(c)));
}

void VXJSONScanner::setScanLocation(qsizetype location)
{
    m_location = std::clamp<qsizetype>(location, 0, m_length);
}

bool VXJSONScanner::scanString(QStringView literal)
{
    const qsizetype start = skippedLocation();
    const qsizetype length = literal.size();
    if (length == 0 || length > m_length - start)
        return false;
    const char16_t *word = literal.utf16();
    for (qsizetype k = 0; k < length; ++k) {
        if (!unitMatches(m_units[start + k], word[k]))
            return false;
    }
    m_location = start + length;
    return true;
}

// The text's units of the kind the operations are instantiated for.
template <> inline const char16_t *VXJSONScanner::units<char16_t>() const
{
    return m_units;
}

template <> inline const char *VXJSONScanner::units<char>() const
{
    return m_bytes;
}

template <> inline qsizetype VXJSONScanner::skipWhitespaceIn<char16_t>(qsizetype i) const
{
    return skipWhitespace(i);
}

template <> inline qsizetype VXJSONScanner::skipWhitespaceIn<char>(qsizetype i) const
{
    while (i < m_length) {
        const uchar c = uchar(m_bytes[i]);
        if (c < 0x80) {
            if (!(c == ' ' || (c >= 0x09 && c <= 0x0d)))
                break;
            ++i;
            continue;
        }
        char32_t codePoint = 0;
        const int length = decodeUtf8(m_bytes + i, &codePoint);
        if (codePoint > 0xFFFF || !QChar::isSpace(codePoint))
            break;
        i += length;
    }
    return i;
}

// Where the characters to be skipped end; bytes are read only with the default set.
template <> inline qsizetype VXJSONScanner::skippedIn<char16_t>() const
{
    return skippedLocation();
}

template <> inline qsizetype VXJSONScanner::skippedIn<char>() const
{
    return skipWhitespaceIn<char>(m_location);
}

// Whether nothing at `i` is to be skipped: the common case, decided without a call. Printable
// ASCII is never whitespace, and bytes are read only with the default set.
template <typename Unit> inline bool VXJSONScanner::nothingToSkipAt(qsizetype i) const
{
    if (i >= m_length)
        return true;
    const auto c = std::make_unsigned_t<Unit>(units<Unit>()[i]);
    return c > 0x20 && c < 0x80 &&
           (std::is_same_v<Unit, char> || m_skip == &whitespaceAndNewlineCharacterSet);
}

template <typename Unit> inline bool VXJSONScanner::readCharacter(char c)
{
    qsizetype i = m_location;
    if (i < m_length && units<Unit>()[i] == Unit(c)) {
        m_location = i + 1;
        return true;
    }
    if (nothingToSkipAt<Unit>(i))
        return false;
    i = skippedIn<Unit>();
    if (i < m_length && units<Unit>()[i] == Unit(c)) {
        m_location = i + 1;
        return true;
    }
    return false;
}

template <> bool VXJSONScanner::readWord<char16_t>(const char16_t *word)
{
    return scanString(word);
}

template <> bool VXJSONScanner::readWord<char>(const char16_t *word)
{
    qsizetype i = skippedIn<char>();
    // ASCII letters are decided by one comparison: setting bit 5 lowers a letter's case
    // and nothing else maps to a lowercase letter. Any byte beyond ASCII takes the general
    // road (a character folding to a letter, such as the long s, matches it).
    // (The words are "true", "false" and "null", told apart by their first letter.)
    const qsizetype length = word[0] == u'f' ? 5 : 4;
    if (m_length - i >= length) {
        quint64 text = 0;
        std::memcpy(&text, m_bytes + i, size_t(length));
        if (!(text & 0x8080808080808080ull)) {
            const quint64 lowered = word[0] == u't'   ? 0x65757274ull   // "true"
                                    : word[0] == u'f' ? 0x65736c6166ull // "false"
                                                      : 0x6c6c756eull;  // "null"
            if ((text | (0x2020202020ull >> (8 * (5 - length)))) != lowered)
                return false;
            m_location = i + length;
            return true;
        }
    }
    for (; *word; ++word) {
        if (i >= m_length)
            return false;
        bool matches = false;
        i += utf8Matches(m_bytes + i, *word, &matches);
        if (!matches)
            return false;
    }
    m_location = i;
    return true;
}

template <> bool VXJSONScanner::mayStartWord<char16_t>(qsizetype i) const
{
    const char16_t c = m_units[i];
    return unitMatches(c, u't') || unitMatches(c, u'f') || unitMatches(c, u'n');
}

template <> bool VXJSONScanner::mayStartWord<char>(qsizetype i) const
{
    bool t = false, f = false, n = false;
    utf8Matches(m_bytes + i, u't', &t);
    utf8Matches(m_bytes + i, u'f', &f);
    utf8Matches(m_bytes + i, u'n', &n);
    return t || f || n;
}

// Another script's decimal digit sends a value to number reading, which then fails; a
// non-ASCII character therefore fails the value either way.
template <> bool VXJSONScanner::startsNumber<char16_t>(qsizetype i) const
{
    return decimalDigitCharacterSet(m_units[i]) || m_units[i] == u'-';
}

template <> bool VXJSONScanner::startsNumber<char>(qsizetype i) const
{
    return isAsciiDigit(m_bytes[i]) || m_bytes[i] == '-' || uchar(m_bytes[i]) >= 0x80;
}

template <> qsizetype VXJSONScanner::findObjectStart<char16_t>(qsizetype from) const
{
    return QStringView(m_units, m_length).indexOf(u'{', from);
}

template <> qsizetype VXJSONScanner::findObjectStart<char>(qsizetype from) const
{
    // "{" is never part of a longer UTF-8 sequence.
    const void *found = std::memchr(m_bytes + from, '{', size_t(m_length - from));
    return found ? static_cast<const char *>(found) - m_bytes : -1;
}

// Copies the run of ordinary units from `i` up to the next quote or backslash into the
// string being gathered; answers where the run ended. Sixteen bytes at a time where SSE2
// is there: that is the bulk of reading text.
template <> qsizetype VXJSONScanner::copyRun<char16_t>(qsizetype i, TextGatherer &text)
{
    const char16_t *p = m_units + i;
    const char16_t *const end = m_units + m_length;
    for (;;) {
#ifdef __SSE2__
        const __m128i quote = _mm_set1_epi16('"');
        const __m128i backslash = _mm_set1_epi16('\\');
        while (end - p >= 8) {
            const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            const int special = _mm_movemask_epi8(
                _mm_or_si128(_mm_cmpeq_epi16(units, quote), _mm_cmpeq_epi16(units, backslash)));
            char16_t *out = text.reserve(8);
            _mm_storeu_si128(reinterpret_cast<__m128i *>(out), units);
            const int taken = special ? std::countr_zero(unsigned(special)) / 2 : 8;
            text.count += taken;
            p += taken;
            if (special)
                return p - m_units;
        }
#endif
        if (p >= end || *p == u'"' || *p == u'\\')
            return p - m_units;
        *text.reserve(1) = *p++;
        ++text.count;
    }
}

template <> qsizetype VXJSONScanner::copyRun<char>(qsizetype i, TextGatherer &text)
{
    const char *p = m_bytes + i;
    const char *const end = m_bytes + m_length;
    for (;;) {
#ifdef __SSE2__
        // ASCII bytes widen to their units; a quote, a backslash or a byte of a longer
        // character stops the block.
        const __m128i quote = _mm_set1_epi8('"');
        const __m128i backslash = _mm_set1_epi8('\\');
        const __m128i zero = _mm_setzero_si128();
        while (end - p >= 16) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            const int special = _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(bytes, quote),
                                                               _mm_cmpeq_epi8(bytes, backslash))) |
                                _mm_movemask_epi8(bytes);
            char16_t *out = text.reserve(16);
            _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_unpacklo_epi8(bytes, zero));
            _mm_storeu_si128(reinterpret_cast<__m128i *>(out + 8), _mm_unpackhi_epi8(bytes, zero));
            const int taken = special ? std::countr_zero(unsigned(special)) : 16;
            text.count += taken;
            p += taken;
            if (special)
                break;
        }
#endif
        if (p >= end)
            return p - m_bytes;
        const uchar c = uchar(*p);
        if (c == '"' || c == '\\')
            return p - m_bytes;
        if (c < 0x80) {
            *text.reserve(1) = c;
            ++text.count;
            ++p;
            continue;
        }
        char32_t codePoint = 0;
        p += decodeUtf8(p, &codePoint);
        char16_t *out = text.reserve(2);
        if (codePoint > 0xFFFF) {
            out[0] = QChar::highSurrogate(codePoint);
            out[1] = QChar::lowSurrogate(codePoint);
            text.count += 2;
        } else {
            out[0] = char16_t(codePoint);
            text.count += 1;
        }
    }
}

template <> bool VXJSONScanner::readUnicodeCharacter<char16_t>(char16_t *value)
{
    return scanUnicodeCharacter(value);
}

template <> bool VXJSONScanner::readUnicodeCharacter<char>(char16_t *value)
{
    // Four ASCII hexadecimal digits, as for UTF-16: any other byte is not a digit.
    if (m_length - m_location < 4)
        return false;
    unsigned result = 0;
    for (qsizetype k = 0; k < 4; ++k) {
        const int digit = hexValue(m_bytes[m_location + k]);
        if (digit < 0)
            return false;
        result = result * 16 + unsigned(digit);
    }
    *value = char16_t(result);
    return true;
}

template <typename Unit> bool VXJSONScanner::readDouble(double *value)
{
    // Optional sign, digits, optional fraction, optional exponent; no hexadecimal, no
    // words such as "inf". At least one mantissa digit is needed, and an "e" that is not
    // followed by digits is not part of the number.
    const Unit *text = units<Unit>();
    const qsizetype start = skippedIn<Unit>();
    qsizetype i = start;
    bool negative = false;
    if (i < m_length && (text[i] == Unit('+') || text[i] == Unit('-'))) {
        negative = text[i] == Unit('-');
        ++i;
    }
    // The digits are gathered while they are scanned, for the exact conversion below.
    quint64 mantissa = 0;
    int digits = 0;
    int power = 0;
    const auto gatherDigits = [&](bool fraction) {
        const qsizetype first = i;
        if constexpr (std::is_same_v<Unit, char>) {
            // Eight digits at a time while they last (the result only matters for up to
            // 19 digits, where it cannot overflow).
            quint64 eight = 0;
            while (m_length - i >= 8 && (std::memcpy(&eight, text + i, 8), allDigits(eight))) {
                mantissa = mantissa * 100000000 + eightDigitsValue(eight);
                i += 8;
            }
        }
        for (; i < m_length && isAsciiDigit(text[i]); ++i)
            mantissa = mantissa * 10 + unsigned(text[i] - Unit('0'));
        digits += int(i - first);
        if (fraction)
            power -= int(i - first);
    };
    gatherDigits(false);
    if (i < m_length && text[i] == Unit('.')) {
        ++i;
        gatherDigits(true);
    }
    if (digits == 0)
        return false;
    if (i < m_length && (text[i] == Unit('e') || text[i] == Unit('E'))) {
        qsizetype e = i + 1;
        bool negativeExponent = false;
        if (e < m_length && (text[e] == Unit('+') || text[e] == Unit('-'))) {
            negativeExponent = text[e] == Unit('-');
            ++e;
        }
        if (e < m_length && isAsciiDigit(text[e])) {
            int written = 0;
            for (; e < m_length && isAsciiDigit(text[e]); ++e) {
                if (written < 100000)
                    written = written * 10 + int(text[e] - Unit('0'));
            }
            power += negativeExponent ? -written : written;
            i = e;
        }
    }

    // Digits that fit 2^53 with a power of ten of at most 22 either way convert by one
    // exact multiplication or division, which rounds correctly.
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (digits <= 19 && mantissa <= (quint64(1) << 53) && power >= -22 && power <= 22) {
        double result = double(mantissa);
        result = power < 0 ? result / powers[-power] : result * powers[power];
        if (value)
            *value = negative ? -result : result;
        m_location = i;
        return true;
    }

    // The accepted text is ASCII: narrow it for the conversion. from_chars takes no "+".
    qsizetype from = start;
    if (text[from] == Unit('+'))
        ++from;
    const qsizetype length = i - from;
    char small[128];
    std::string large;
    char *narrow = small;
    if (length + 1 > qsizetype(sizeof small)) {
        large.resize(size_t(length) + 1);
        narrow = large.data();
    }
    for (qsizetype k = 0; k < length; ++k)
        narrow[k] = char(text[from + k]);
    narrow[length] = '\0';

    double result = 0;
    const auto [end, error] = std::from_chars(narrow, narrow + length, result);
    if (error == std::errc::result_out_of_range)
        result = strtodInCLocale(narrow);
    else if (error != std::errc() || end != narrow + length)
        return false;

    if (value)
        *value = result;
    m_location = i;
    return true;
}

bool VXJSONScanner::scanDouble(double *value)
{
    return readDouble<char16_t>(value);
}

void VXJSONScanner::logParseError(const char *selector) const
{
    VXLog(QStringLiteral("%1 Error: Could not parse json: %2.")
              .arg(QLatin1StringView(className), QLatin1StringView(selector)));
}

template <typename Unit> bool VXJSONScanner::readObject(PropertyValue *out, bool ignoreNull)
{
    // Anything before the first "{" is passed over, so text may carry a preamble. (A
    // case-insensitive search for "{" is a plain one: no other character folds to it.)
    qsizetype start = nothingToSkipAt<Unit>(m_location) ? m_location : skippedIn<Unit>();
    if (start < m_length && units<Unit>()[start] != Unit('{')) {
        start = findObjectStart<Unit>(start);
        if (start < 0)
            start = m_length;
    }
    m_location = start;
    if (m_depth >= maximumDepth)
        return false;
    if (!readCharacter<Unit>('{'))
        return false;
    DepthGuard depth(m_depth);

    // Members gather on a stack shared by all objects of this parse; the dictionary is made
    // once from them at its final size, in the arena.
    const qsizetype base = m_members.size();
    struct Truncate
    {
        ValueStack<PropertyValue::Dictionary::Entry> &stack;
        qsizetype base;
        ~Truncate()
        {
            if (stack.size() > base)
                stack.truncate(base);
        }
    } truncate{m_members, base};

    // Each member's temporaries live in this scope only and are gone before the next: the
    // key and value move into the stack, or are dropped at the end of the step.
    QString key;
    PropertyValue member;
    for (;;) {
        // ("}" fails the key at once; seen here, it saves the attempt.)
        if (m_location < m_length && units<Unit>()[m_location] == Unit('}'))
            break;
        // An unterminated key leaves the scanner at the end, where the separator fails.
        if (readString<Unit>(&key, true) != Outcome::Value)
            break;
        if (!readCharacter<Unit>(':'))
            break;
        const Outcome outcome = readValue<Unit>(&member, ignoreNull);
        if (outcome == Outcome::Failed)
            break;
        if (outcome == Outcome::NoValue) {
            logParseError("scanJSONObject:ignoreNull:");
            break;
        }
        // A later duplicate key replaces the earlier value (when the dictionary is made).
        if (!(ignoreNull && member.isNull()))
            m_members.pushRelocated(key, member);
        else
            key = QString();
        // The comma between members is optional.
        readCharacter<Unit>(',');
    }

    // A member broken off just before "}" is dropped; the object still stands.
    if (!readCharacter<Unit>('}'))
        return false;
    PropertyValue::Dictionary dictionary;
    if (const qsizetype count = m_members.size() - base) {
        using namespace Quorvelle::PropertyStorage;
        Region *region;
        PropertyValue::Dictionary::Entry *members;
        if (base == 0 && dictionaryBytes(count) > inPlaceBytes) {
            // The members stay where they are; the stack's buffer becomes their block.
            region = regionInBuffer(m_members.takeBuffer(bufferBytes(true, count)), true, count);
            members = entriesOf(region);
        } else {
            region = m_arena.place(true, count);
            members = m_members.data() + base;
        }
        for (qsizetype k = 0; k < count; ++k)
            m_arena.adoptInto(region, members[k].value);
        if (count >= Quorvelle::PropertyStorage::indexedFrom && !m_keyHashes)
            m_keyHashes = std::make_unique<Quorvelle::PropertyStorage::KeyHashes>();
        Quorvelle::PropertyStorage::adoptEntries(region, members, members + count,
                                                 m_keyHashes.get());
        m_members.forget(base);
        dictionary = PropertyValue::Dictionary::fromRegion(region);
    }
    new (out) PropertyValue(std::move(dictionary));
    return true;
}

template <typename Unit> bool VXJSONScanner::readArray(PropertyValue *out, bool ignoreNull)
{
    if (m_depth >= maximumDepth)
        return false;
    DepthGuard depth(m_depth);

    // Elements gather on a stack shared by all arrays of this parse, and the array is made
    // once at its final size, in the arena: no repeated growth of every array while it is
    // read, no allocation of its own.
    const qsizetype base = m_elements.size();
    struct Truncate
    {
        ValueStack<PropertyValue> &stack;
        qsizetype base;
        ~Truncate()
        {
            if (stack.size() > base)
                stack.truncate(base);
        }
    } truncate{m_elements, base};

    // The opening bracket is optional: "1,2]" is the array of 1 and 2.
    readCharacter<Unit>('[');
    PropertyValue element;
    for (;;) {
        // ("]" fails the value at once, silently; seen here, it saves the attempt.)
        if (m_location < m_length && units<Unit>()[m_location] == Unit(']'))
            break;
        const Outcome outcome = readValue<Unit>(&element, ignoreNull);
        if (outcome == Outcome::Failed)
            break;
        if (outcome == Outcome::NoValue) {
            logParseError("scanJSONArray:ignoreNull:");
            break;
        }
        if (!(ignoreNull && element.isNull()))
            m_elements.pushRelocated(element);
        readCharacter<Unit>(',');
    }

    if (!readCharacter<Unit>(']'))
        return false;
    PropertyValue::Array array;
    if (const qsizetype count = m_elements.size() - base) {
        using namespace Quorvelle::PropertyStorage;
        Region *region;
        if (base == 0 && arrayBytes(count) > inPlaceBytes) {
            // The elements stay where they are; the stack's buffer becomes their block.
            region = regionInBuffer(m_elements.takeBuffer(bufferBytes(false, count)), false, count);
            m_arena.adoptElements(region, count);
        } else {
            region = m_arena.place(false, count);
            m_arena.fillArray(region, m_elements.data() + base, count);
            m_elements.forget(base);
        }
        array = PropertyValue::Array::fromRegion(region);
    }
    new (out) PropertyValue(std::move(array));
    return true;
}

char16_t *VXJSONScanner::TextGatherer::grow(qsizetype more)
{
    buffer = scanner.reserveText(count, count + more + 1, most);
    room = scanner.m_blockCapacity - scanner.m_blockUsed;
    return buffer + count;
}

template <typename Unit>
VXJSONScanner::Interned *VXJSONScanner::internedSlot(qsizetype from, qsizetype *to, bool key)
{
    // The closing quote within the length of a short string, and no backslash before it.
    const Unit *units = this->units<Unit>();
    const qsizetype limit = std::min(m_length, from + internedLength + 1);
    qsizetype i = from;
#ifdef __SSE2__
    if constexpr (std::is_same_v<Unit, char>) {
        static_assert(internedLength < 32);
        if (m_length - from >= 32) {
            const auto special = [](const char *at) {
                const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
                return unsigned(
                    _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')),
                                                   _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\')))));
            };
            const unsigned found = special(units + from) | special(units + from + 16) << 16;
            i = found ? from + std::countr_zero(found) : from + 32;
        }
    }
#endif
    while (i < limit && units[i] != Unit('"') && units[i] != Unit('\\'))
        ++i;
    if (i >= limit || units[i] != Unit('"'))
        return nullptr;
    *to = i;
    if (!m_interned) {
        m_internedSlots = m_length < 16 * 1024 ? 32 : 256;
        m_interned = std::make_unique<Interned[]>(2 * m_internedSlots);
    }
    // Keys in the first half, values in the second: the many values met once (names,
    // identifiers) then do not push the few keys out.
    const qsizetype bytes = (i - from) * qsizetype(sizeof(Unit));
    return &m_interned[(hashBytes(units + from, bytes) & (m_internedSlots - 1)) +
                       (key ? 0 : m_internedSlots)];
}

template <typename Unit> VXJSONScanner::Outcome VXJSONScanner::readString(QString *out, bool key)
{
    if (!readCharacter<Unit>('"'))
        return Outcome::Failed;

    // A short string written without escapes is looked up as written: keys and small values
    // repeat in most documents, and one met before is handed out again without reading it.
    // (With a set of characters to be skipped of one's own, the closing quote is left to
    // the general path below.)
    Interned *slot = nullptr;
    qsizetype end = 0;
    if (std::is_same_v<Unit, char> || m_skip == &whitespaceAndNewlineCharacterSet) {
        slot = internedSlot<Unit>(m_location, &end, key);
        if (slot) {
            const Unit *written = units<Unit>() + m_location;
            const qsizetype bytes = (end - m_location) * qsizetype(sizeof(Unit));
            if (bytes == 0) {
                *out = QString(reinterpret_cast<const QChar *>(u""), 0);
                m_location = end + 1;
                return Outcome::Value;
            }
            if (slot->writtenBytes == bytes && sameBytes(slot->written, written, bytes)) {
                *out = handOut(slot->block, slot->units, slot->size);
                m_location = end + 1;
                return Outcome::Value;
            }
        }
    }
    const qsizetype first = m_location;
    bool success = true;

    // The units are gathered at the free end of the text block; the string then refers to
    // them there, without a copy. Nothing but the frame's bookkeeping is observable of
    // this: the result is the same string.
    // Every unit of the text gives at most one unit of the string.
    const qsizetype most = m_length - m_location + 1;
    char16_t *buffer =
        m_blockCapacity - m_blockUsed >= 64 ? m_blockUnits + m_blockUsed : reserveText(0, 64, most);
    TextGatherer text{*this, buffer, 0, m_blockCapacity - m_blockUsed, most};
    const auto put = [&text](char16_t unit) { *text.reserve(1) = unit, ++text.count; };

    const Unit *units = this->units<Unit>();
    const qsizetype length = m_length;
    qsizetype i = m_location;
    while (i < length) {
        const Unit c = units[i];
        if (c == Unit('"'))
            break;
        if (c != Unit('\\')) {
            i = copyRun<Unit>(i, text);
            continue;
        }
        if (i + 1 >= length) {
            // A backslash as the last unit has nothing to escape: the string fails.
            success = false;
            i = length;
            break;
        }
        const Unit escaped = units[i + 1];
        switch (escaped) {
        case Unit('"'):
        case Unit('/'):
        case Unit('\\'):
            put(char16_t(escaped));
            i += 2;
            break;
        case Unit('b'):
            put(u'\b');
            i += 2;
            break;
        case Unit('f'):
            put(u'\f');
            i += 2;
            break;
        case Unit('n'):
            put(u'\n');
            i += 2;
            break;
        case Unit('r'):
            put(u'\r');
            i += 2;
            break;
        case Unit('t'):
            put(u'\t');
            i += 2;
            break;
        case Unit('u'): {
            m_location = i + 2;
            char16_t unit = 0;
            if (readUnicodeCharacter<Unit>(&unit)) {
                put(unit);
                i += 6;
            } else {
                // The string is lost, but reading goes on to its closing quote.
                success = false;
                put(0);
                i = std::min(i + 4, length);
                if constexpr (std::is_same_v<Unit, char>) {
                    // Four bytes may end inside a character: go on from the next quote.
                    const void *quote = std::memchr(units + i, '"', size_t(length - i));
                    i = quote ? static_cast<const char *>(quote) - units : length;
                }
            }
            break;
        }
        default:
            // Unknown escapes are kept as written: backslash and character. (In UTF-8 the
            // character may take more than one byte; the next run copies the rest of it.)
            put(u'\\');
            i += 1;
            if constexpr (std::is_same_v<Unit, char16_t>) {
                put(escaped);
                i += 1;
            } else if (uchar(escaped) < 0x80) {
                put(char16_t(escaped));
                i += 1;
            }
            break;
        }
    }
    m_location = i;

    // A failed or unterminated string leaves its units behind as free room of the block.
    if (!success)
        return Outcome::Failed;
    if (isAtEnd())
        return Outcome::NoValue;

    // The loop stopped at the closing quote; it is passed over as a literal match would
    // (which, with a set of characters to be skipped of one's own, might skip more).
    if (std::is_same_v<Unit, char> || m_skip == &whitespaceAndNewlineCharacterSet)
        m_location = i + 1;
    else
        readCharacter<Unit>('"');
    *out = takeText(text.count);
    if (slot) {
        *slot = Interned{units + first, (end - first) * qsizetype(sizeof(Unit)),
                         reinterpret_cast<const char16_t *>(out->constData()), text.count,
                         qsizetype(m_textBlocks.size()) - 1};
    }
    return Outcome::Value;
}

template <typename Unit>
VXJSONScanner::Outcome VXJSONScanner::readValue(PropertyValue *out, bool ignoreNull)
{
    // Whitespace and newlines are passed over whatever the characters to be skipped are.
    if (m_location < m_length) {
        const auto first = std::make_unsigned_t<Unit>(units<Unit>()[m_location]);
        if (first <= 0x20 || first >= 0x80)
            m_location = skipWhitespaceIn<Unit>(m_location);
    }

    if (isAtEnd()) {
        logParseError("scanJSONValue:ignoreNull:");
        return Outcome::Failed;
    }

    const Unit c = units<Unit>()[m_location];
    switch (c) {
    case Unit('{'):
        return readObject<Unit>(out, ignoreNull) ? Outcome::Value : Outcome::Failed;
    case Unit('['):
        return readArray<Unit>(out, ignoreNull) ? Outcome::Value : Outcome::Failed;
    case Unit('"'): {
        QString string;
        const Outcome outcome = readString<Unit>(&string);
        if (outcome == Outcome::Value)
            new (out) PropertyValue(std::move(string));
        return outcome;
    }
    default:
        break;
    }

    // Literal words match in any letter case and consume only the word itself. Only a
    // unit that can start one of them is worth the three attempts.
    const auto unit = std::make_unsigned_t<Unit>(c);
    const bool mayBeWord =
        unit < 0x80 ? ((unit | 0x20) == 't' || (unit | 0x20) == 'f' || (unit | 0x20) == 'n')
                    : mayStartWord<Unit>(m_location);
    if (mayBeWord && readWord<Unit>(u"true")) {
        new (out) PropertyValue(true);
        return Outcome::Value;
    }
    if (mayBeWord && readWord<Unit>(u"false")) {
        new (out) PropertyValue(false);
        return Outcome::Value;
    }
    if (mayBeWord && readWord<Unit>(u"null"))
        return Outcome::Value; // `out` holds the null marker already
    if (startsNumber<Unit>(m_location)) {
        double number = 0;
        if (!readDouble<Unit>(&number))
            return Outcome::Failed;
        new (out) PropertyValue(number);
        return Outcome::Value;
    }
    return Outcome::Failed;
}

bool VXJSONScanner::toSlot(bool made, PropertyValue &&value, std::optional<PropertyValue> *slot)
{
    if (made && slot)
        *slot = std::move(value);
    return made;
}

bool VXJSONScanner::toSlot(Outcome outcome, PropertyValue &&value,
                           std::optional<PropertyValue> *slot)
{
    if (outcome == Outcome::Value && slot)
        *slot = std::move(value);
    return outcome != Outcome::Failed;
}

bool VXJSONScanner::scanJSONObject(std::optional<PropertyValue> *value, bool ignoreNull)
{
    PropertyValue object;
    return toSlot(readObject<char16_t>(&object, ignoreNull), std::move(object), value);
}

bool VXJSONScanner::scanJSONArray(std::optional<PropertyValue> *value, bool ignoreNull)
{
    PropertyValue array;
    return toSlot(readArray<char16_t>(&array, ignoreNull), std::move(array), value);
}

bool VXJSONScanner::scanJSONString(std::optional<QString> *value)
{
    QString string;
    const Outcome outcome = readString<char16_t>(&string);
    if (outcome == Outcome::Value && value)
        *value = std::move(string);
    return outcome != Outcome::Failed;
}

bool VXJSONScanner::scanJSONValue(std::optional<PropertyValue> *value, bool ignoreNull)
{
    PropertyValue read;
    return toSlot(readValue<char16_t>(&read, ignoreNull), std::move(read), value);
}

bool VXJSONScanner::scanJSONNumber(std::optional<PropertyValue> *value)
{
    double number = 0;
    if (!scanDouble(&number))
        return false;
    if (value)
        *value = PropertyValue(number);
    return true;
}

VXJSONScanner::VXJSONScanner(QByteArrayView utf8)
    : m_units(nullptr), m_bytes(utf8.data()), m_length(utf8.size()), m_arena(m_length)
{
    takeCachedStacks();
}

std::optional<PropertyValue> VXJSONScanner::readUtf8(QByteArrayView utf8, bool asObject,
                                                     bool ignoreNull)
{
    // Qt's conversion drops a byte-order mark at the start.
    if (utf8.startsWith("\xEF\xBB\xBF"))
        utf8 = utf8.sliced(3);
    VXJSONScanner scanner(utf8);
    PropertyValue result;
    if (asObject ? scanner.readObject<char>(&result, ignoreNull)
                 : scanner.readArray<char>(&result, ignoreNull))
        return result;
    return std::nullopt;
}

char16_t *VXJSONScanner::reserveText(qsizetype kept, qsizetype needed, qsizetype most)
{
    if (m_blockCapacity - m_blockUsed >= needed)
        return m_blockUnits + m_blockUsed;
    // Blocks of 64 KB, but never more than the rest of the text can fill (each string's
    // units and terminator take fewer units than its quoted form), and the first one only
    // half of that: strings are rarely more than half of a text, and the rest of a short
    // text's strings, if any, fit a second block.
    constexpr qsizetype blockUnits = 32 * 1024;
    const qsizetype rest = m_length - m_location + 2;
    qsizetype capacity = std::min(blockUnits, m_blockUnits ? rest : rest / 2 + 32);
    if (needed > capacity) {
        // One string longer than a block: its room doubles, so that gathering it takes
        // time in proportion to its length, but never past what the rest of the text can
        // make of it.
        capacity = std::max(needed, std::min(2 * kept, most));
        if (m_blockUnits && m_blockUsed == 0) {
            // The block holds this string alone (nothing was handed out of it): it grows
            // where it is (realloc, which moves large blocks by remapping their pages, not
            // by copying).
            TextBlock &block = m_textBlocks.back();
            const auto [header, units] = QTypedArrayData<char16_t>::reallocateUnaligned(
                static_cast<QTypedArrayData<char16_t> *>(block.header), m_blockUnits, capacity,
                QArrayData::KeepSize);
            Q_CHECK_PTR(header);
            block.header = header;
            m_blockUnits = units;
            m_blockCapacity = header->allocatedCapacity();
            return units;
        }
    }
    const auto [header, units] = QTypedArrayData<char16_t>::allocate(capacity);
    Q_CHECK_PTR(header);
    header->ref_.storeRelaxed(textReservation);
    m_textBlocks.push_back({header, 0});
    if (kept)
        std::memcpy(units, m_blockUnits + m_blockUsed, size_t(kept) * sizeof(char16_t));
    m_blockUnits = units;
    m_blockCapacity = header->allocatedCapacity();
    m_blockUsed = 0;
    return units;
}

QString VXJSONScanner::takeText(qsizetype count)
{
    char16_t *units = m_blockUnits + m_blockUsed;
    if (count == 0)
        return QString(reinterpret_cast<const QChar *>(units), 0);
    units[count] = 0;
    m_blockUsed += count + 1;
    return handOut(qsizetype(m_textBlocks.size()) - 1, units, count);
}

bool VXJSONScanner::scanUnicodeCharacter(char16_t *value)
{
    // Exactly four hexadecimal digits; fewer units left in the text is a failure.
    if (m_length - m_location < 4)
        return false;
    unsigned result = 0;
    for (qsizetype k = 0; k < 4; ++k) {
        const int digit = hexValue(m_units[m_location + k]);
        if (digit < 0)
            return false;
        result = result * 16 + unsigned(digit);
    }
    if (value)
        *value = char16_t(result & 0xFFFF);
    return true;
}
