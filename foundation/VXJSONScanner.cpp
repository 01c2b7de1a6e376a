#include "VXJSONScanner.h"

#include "VXLog.h"

#include <QChar>

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <locale.h>
#include <map>
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

constexpr bool isAsciiDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

constexpr int hexValue(char16_t c)
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

// Numbers whose digits fit 2^53 and whose power of ten is at most 22 either way are
// converted by one exact multiplication or division, which rounds correctly; the text
// is known to be a well-formed number. Anything else answers false and takes the full
// conversion.
bool fastDouble(const char16_t *text, const char16_t *end, double *value)
{
    constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const bool negative = *text == u'-';
    if (*text == u'-' || *text == u'+')
        ++text;
    quint64 mantissa = 0;
    int digits = 0;
    int exponent = 0;
    for (; text < end && isAsciiDigit(*text); ++text, ++digits)
        mantissa = mantissa * 10 + (*text - u'0');
    if (text < end && *text == u'.') {
        for (++text; text < end && isAsciiDigit(*text); ++text, ++digits, --exponent)
            mantissa = mantissa * 10 + (*text - u'0');
    }
    if (digits > 19)
        return false;
    if (text < end) {
        // The exponent ("e", optional sign, digits); long ones are not for this path.
        ++text;
        const bool negativeExponent = *text == u'-';
        if (*text == u'-' || *text == u'+')
            ++text;
        if (end - text > 3)
            return false;
        int written = 0;
        for (; text < end; ++text)
            written = written * 10 + (*text - u'0');
        exponent += negativeExponent ? -written : written;
    }
    if (mantissa > (quint64(1) << 53) || exponent < -22 || exponent > 22)
        return false;
    double result = double(mantissa);
    if (exponent < 0)
        result /= powers[-exponent];
    else
        result *= powers[exponent];
    if (value)
        *value = negative ? -result : result;
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
    std::vector<PropertyValue> elements;
    std::vector<PropertyDictionary::Entry> members;
    bool available = true;
};
thread_local StackCache stackCache;
constexpr size_t keptStackSize = 4096;
} // namespace

VXJSONScanner::VXJSONScanner(const QString &string)
    : m_string(string), m_units(reinterpret_cast<const char16_t *>(m_string.utf16())),
      m_length(m_string.size())
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
    if (!m_cachedStacks)
        return;
    m_elements.clear();
    m_members.clear();
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

bool VXJSONScanner::scanUpToString(QStringView literal)
{
    const qsizetype start = skippedLocation();
    qsizetype found = QStringView(m_units, m_length).indexOf(literal, start, Qt::CaseInsensitive);
    if (found < 0)
        found = m_length;
    m_location = found;
    return found > start;
}

bool VXJSONScanner::scanCharactersFromSet(CharacterSet set, QStringView *into)
{
    const qsizetype start = skippedLocation();
    qsizetype i = start;
    while (i < m_length && set && set(m_units[i]))
        ++i;
    if (i == start)
        return false;
    if (into)
        *into = QStringView(m_units + start, i - start);
    m_location = i;
    return true;
}

bool VXJSONScanner::scanDouble(double *value)
{
    // Optional sign, digits, optional fraction, optional exponent; no hexadecimal, no
    // words such as "inf". At least one mantissa digit is needed, and an "e" that is not
    // followed by digits is not part of the number.
    const qsizetype start = skippedLocation();
    qsizetype i = start;
    if (i < m_length && (m_units[i] == u'+' || m_units[i] == u'-'))
        ++i;
    qsizetype digits = 0;
    while (i < m_length && isAsciiDigit(m_units[i])) {
        ++i;
        ++digits;
    }
    if (i < m_length && m_units[i] == u'.') {
        ++i;
        while (i < m_length && isAsciiDigit(m_units[i])) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return false;
    if (i < m_length && (m_units[i] == u'e' || m_units[i] == u'E')) {
        qsizetype e = i + 1;
        if (e < m_length && (m_units[e] == u'+' || m_units[e] == u'-'))
            ++e;
        if (e < m_length && isAsciiDigit(m_units[e])) {
            while (e < m_length && isAsciiDigit(m_units[e]))
                ++e;
            i = e;
        }
    }

    if (fastDouble(m_units + start, m_units + i, value)) {
        m_location = i;
        return true;
    }

    // The accepted text is ASCII: narrow it for the conversion. from_chars takes no "+".
    qsizetype from = start;
    if (m_units[from] == u'+')
        ++from;
    const qsizetype length = i - from;
    char small[128];
    std::string large;
    char *text = small;
    if (length + 1 > qsizetype(sizeof small)) {
        large.resize(size_t(length) + 1);
        text = large.data();
    }
    for (qsizetype k = 0; k < length; ++k)
        text[k] = char(m_units[from + k]);
    text[length] = '\0';

    double result = 0;
    const auto [end, error] = std::from_chars(text, text + length, result);
    if (error == std::errc::result_out_of_range)
        result = strtodInCLocale(text);
    else if (error != std::errc() || end != text + length)
        return false;

    if (value)
        *value = result;
    m_location = i;
    return true;
}

void VXJSONScanner::logParseError(const char *selector) const
{
    VXLog(QStringLiteral("%1 Error: Could not parse json: %2.")
              .arg(QLatin1StringView(className), QLatin1StringView(selector)));
}

bool VXJSONScanner::scanJSONObject(std::optional<PropertyValue> *value, bool ignoreNull)
{
    // Anything before the first "{" is passed over, so text may carry a preamble. (A
    // case-insensitive search for "{" is a plain one: no other character folds to it.)
    qsizetype start = skippedLocation();
    if (start < m_length && m_units[start] != u'{') {
        start = QStringView(m_units, m_length).indexOf(u'{', start);
        if (start < 0)
            start = m_length;
    }
    m_location = start;
    if (m_depth >= maximumDepth)
        return false;
    if (!scanJSONObjectStartString())
        return false;
    DepthGuard depth(m_depth);

    // Members gather on a stack shared by all objects of this parse; the dictionary is made
    // once from them at its final size.
    const size_t base = m_members.size();
    struct Truncate
    {
        std::vector<PropertyDictionary::Entry> &stack;
        size_t base;
        ~Truncate() { stack.resize(base); }
    } truncate{m_members, base};

    for (;;) {
        // Each member's temporaries live in this scope only and are gone before the next.
        std::optional<QString> key;
        if (!scanJSONString(&key))
            break;
        // An unterminated key leaves the scanner at the end, so the separator fails.
        if (!scanJSONKeyValueSeparator())
            break;
        std::optional<PropertyValue> member;
        if (!scanJSONValue(&member, ignoreNull))
            break;
        if (!member) {
            logParseError("scanJSONObject:ignoreNull:");
            break;
        }
        // A later duplicate key replaces the earlier value (when the dictionary is made).
        if (!(ignoreNull && member->isNull()))
            m_members.push_back({std::move(*key), std::move(*member)});
        // The comma between members is optional.
        scanJSONValueSeparator();
    }

    // A member broken off just before "}" is dropped; the object still stands.
    if (!scanJSONObjectEndString())
        return false;
    if (value) {
        *value = PropertyValue(PropertyDictionary::fromEntries(m_members.data() + base,
                                                               m_members.data() + m_members.size()));
    }
    return true;
}

bool VXJSONScanner::scanJSONArray(std::optional<PropertyValue> *value, bool ignoreNull)
{
    if (m_depth >= maximumDepth)
        return false;
    DepthGuard depth(m_depth);

    // Elements gather on a stack shared by all arrays of this parse, and the array is made
    // once at its final size: no repeated growth of every list while it is read.
    const size_t base = m_elements.size();
    struct Truncate
    {
        std::vector<PropertyValue> &stack;
        size_t base;
        ~Truncate() { stack.resize(base); }
    } truncate{m_elements, base};

    // The opening bracket is optional: "1,2]" is the array of 1 and 2.
    scanJSONArrayStartString();
    std::optional<PropertyValue> element;
    while (scanJSONValue(&element, ignoreNull)) {
        if (!element) {
            logParseError("scanJSONArray:ignoreNull:");
            break;
        }
        if (!(ignoreNull && element->isNull()))
            m_elements.push_back(std::move(*element));
        element.reset();
        scanJSONValueSeparator();
    }

    if (!scanJSONArrayEndString())
        return false;
    if (value) {
        const auto first = m_elements.begin() + std::ptrdiff_t(base);
        *value = PropertyValue(PropertyValue::Array(std::make_move_iterator(first),
                                                    std::make_move_iterator(m_elements.end())));
    }
    return true;
}

bool VXJSONScanner::scanJSONString(std::optional<QString> *value)
{
    if (!scanJSONStringDelimiterString())
        return false;
    bool success = true;

    // The units are gathered at the free end of the text block; the string then refers to
    // them there, without a copy. Nothing but the frame's bookkeeping is observable of
    // this: the result is the same string.
    qsizetype count = 0;
    char16_t *buffer = reserveText(0, 64);
    qsizetype room = m_block.constAllocatedCapacity() - m_blockUsed;
    const auto reserve = [&](qsizetype more) {
        // One unit stays free for the terminating zero.
        if (count + more < room)
            return;
        buffer = reserveText(count, count + more + 1);
        room = m_block.constAllocatedCapacity() - m_blockUsed;
    };
    const auto put = [&](char16_t unit) {
        reserve(1);
        buffer[count++] = unit;
    };

    const char16_t *units = m_units;
    const qsizetype length = m_length;
    qsizetype i = m_location;
    while (i < length) {
        const char16_t c = units[i];
        if (c == u'"')
            break;
        if (c != u'\\') {
            // Copy the whole run up to the next quote or backslash at once.
            qsizetype j = i + 1;
            while (j < length && units[j] != u'"' && units[j] != u'\\')
                ++j;
            reserve(j - i);
            std::memcpy(buffer + count, units + i, size_t(j - i) * sizeof(char16_t));
            count += j - i;
            i = j;
            continue;
        }
        if (i + 1 >= length) {
            // A backslash as the last unit has nothing to escape: the string fails.
            success = false;
            i = length;
            break;
        }
        const char16_t escaped = units[i + 1];
        switch (escaped) {
        case u'"':
        case u'/':
        case u'\\':
            put(escaped);
            i += 2;
            break;
        case u'b':
            put(u'\b');
            i += 2;
            break;
        case u'f':
            put(u'\f');
            i += 2;
            break;
        case u'n':
            put(u'\n');
            i += 2;
            break;
        case u'r':
            put(u'\r');
            i += 2;
            break;
        case u't':
            put(u'\t');
            i += 2;
            break;
        case u'u': {
            m_location = i + 2;
            char16_t unit = 0;
            if (scanUnicodeCharacter(&unit)) {
                put(unit);
                i += 6;
            } else {
                // The string is lost, but reading goes on to its closing quote.
                success = false;
                put(0);
                i = std::min(i + 4, length);
            }
            break;
        }
        default:
            // Unknown escapes are kept as written: backslash and character.
            reserve(2);
            buffer[count++] = u'\\';
            buffer[count++] = escaped;
            i += 2;
            break;
        }
    }
    m_location = i;

    // A failed or unterminated string leaves its units behind as free room of the block.
    if (isAtEnd() || !success)
        return success;

    scanJSONStringDelimiterString();
    if (value)
        *value = takeText(count);
    return true;
}

char16_t *VXJSONScanner::reserveText(qsizetype kept, qsizetype needed)
{
    if (m_block.d && m_block.constAllocatedCapacity() - m_blockUsed >= needed)
        return m_block.data() + m_blockUsed;
    // A short text's strings all fit one block of its length (each string's units and
    // terminator take fewer units than its quoted form); a long text gets blocks of 64 KB,
    // or larger for one long string.
    constexpr qsizetype blockUnits = 32 * 1024;
    const qsizetype capacity =
        std::max(needed, m_block.d ? blockUnits : std::min(blockUnits, m_length + 1));
    const auto [header, units] = QTypedArrayData<char16_t>::allocate(capacity);
    Q_CHECK_PTR(header);
    QStringPrivate next(header, units, 0);
    if (kept)
        std::memcpy(units, m_block.data() + m_blockUsed, size_t(kept) * sizeof(char16_t));
    m_block = std::move(next);
    m_blockUsed = 0;
    return units;
}

QString VXJSONScanner::takeText(qsizetype count)
{
    char16_t *units = m_block.data() + m_blockUsed;
    if (count == 0)
        return QString(reinterpret_cast<const QChar *>(units), 0);

    const auto share = [&] {
        units[count] = 0;
        m_blockUsed += count + 1;
        m_block.d->ref();
        return QString(QStringPrivate(m_block.d, units, count));
    };
    if (count > internedLength)
        return share();
    // FNV-1a over the units; a slot holds the last string that hashed to it.
    quint32 hash = 2166136261u;
    for (qsizetype k = 0; k < count; ++k)
        hash = (hash ^ units[k]) * 16777619u;
    if (!m_interned) {
        m_internedSlots = m_length < 16 * 1024 ? 32 : 256;
        m_interned = std::make_unique<QString[]>(m_internedSlots);
    }
    QString &slot = m_interned[(hash ^ (hash >> 16)) & (m_internedSlots - 1)];
    if (slot.size() == count && std::memcmp(slot.utf16(), units, size_t(count) * 2) == 0)
        return slot;
    slot = share();
    return slot;
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

bool VXJSONScanner::scanJSONValue(std::optional<PropertyValue> *value, bool ignoreNull)
{
    // Whitespace and newlines are passed over whatever the characters to be skipped are.
    m_location = skipWhitespace(m_location);

    if (isAtEnd()) {
        logParseError("scanJSONValue:ignoreNull:");
        return false;
    }

    const char16_t c = m_units[m_location];
    switch (c) {
    case u'{':
        return scanJSONObject(value, ignoreNull);
    case u'[':
        return scanJSONArray(value, ignoreNull);
    case u'"': {
        std::optional<QString> string;
        const bool scanned = scanJSONString(&string);
        if (string && value)
            *value = PropertyValue(std::move(*string));
        return scanned;
    }
    default:
        break;
    }

    // Literal words match in any letter case and consume only the word itself. Only a
    // unit that can start one of them is worth the three attempts.
    const bool mayBeWord = unitMatches(c, u't') || unitMatches(c, u'f') || unitMatches(c, u'n');
    if (mayBeWord && scanString(u"true")) {
        if (value)
            *value = PropertyValue(true);
        return true;
    }
    if (mayBeWord && scanString(u"false")) {
        if (value)
            *value = PropertyValue(false);
        return true;
    }
    if (mayBeWord && scanString(u"null")) {
        if (value)
            *value = PropertyValue::null();
        return true;
    }
    if (decimalDigitCharacterSet(c) || c == u'-')
        return scanJSONNumber(value);
    return false;
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
