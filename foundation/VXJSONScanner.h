#pragma once

#include "PropertyStorage.h"

#include <QByteArrayView>
#include <QChar>
#include <QString>
#include <QStringView>

#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

// A stack of values that move by their bytes (PropertyValue, dictionary entries), from which
// a finished container takes its elements by copying their bytes into its region. Its
// buffer keeps room for a block's and a region's headers in front of the first value, so
// that a large container gathered from the bottom can keep the buffer as its block.
template <typename T> class ValueStack
{
public:
    static constexpr size_t prefix = Quorvelle::PropertyStorage::bufferPrefix;

    ValueStack() = default;
    ValueStack(const ValueStack &) = delete;
    ValueStack &operator=(const ValueStack &) = delete;
    ~ValueStack()
    {
        truncate(0);
        std::free(buffer());
    }

    qsizetype size() const { return m_size; }
    qsizetype capacity() const { return m_capacity; }
    T *data() { return m_data; }

    void push(T &&value)
    {
        if (m_size == m_capacity) [[unlikely]]
            grow();
        new (m_data + m_size) T(std::move(value));
        ++m_size;
    }
    // Takes over the value's bytes and leaves it empty (null, or an empty string).
    void pushRelocated(T &value)
    {
        if (m_size == m_capacity) [[unlikely]]
            grow();
        std::memcpy(static_cast<void *>(m_data + m_size), static_cast<const void *>(&value),
                    sizeof(T));
        new (&value) T();
        ++m_size;
    }
    // The same for a dictionary member from its key and value.
    template <typename Key, typename Value> void pushRelocated(Key &key, Value &value)
    {
        static_assert(sizeof(T) == sizeof(Key) + sizeof(Value));
        if (m_size == m_capacity) [[unlikely]]
            grow();
        auto *at = reinterpret_cast<unsigned char *>(m_data + m_size);
        std::memcpy(at, static_cast<const void *>(&key), sizeof(Key));
        std::memcpy(at + sizeof(Key), static_cast<const void *>(&value), sizeof(Value));
        new (&key) Key();
        new (&value) Value();
        ++m_size;
    }
    // Destroys the values from `base` on.
    void truncate(qsizetype base)
    {
        std::destroy(m_data + base, m_data + m_size);
        m_size = base;
    }
    // Drops the values from `base` on without destroying them: their bytes were taken.
    void forget(qsizetype base) { m_size = base; }
    void swap(ValueStack &other)
    {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }
    // Hands over the whole buffer (from std::malloc), resized to `bytes`, with the values,
    // which start at `prefix` bytes into it; the stack is left empty, without a buffer.
    void *takeBuffer(size_t bytes)
    {
        void *taken = std::realloc(buffer(), bytes);
        if (!taken)
            throw std::bad_alloc();
        m_data = nullptr;
        m_size = m_capacity = 0;
        return taken;
    }

private:
    void *buffer() const { return m_data ? reinterpret_cast<char *>(m_data) - prefix : nullptr; }
    void grow()
    {
        const qsizetype capacity = m_capacity ? 2 * m_capacity : 64;
        // The values are relocatable, so realloc may move them.
        void *data = std::realloc(buffer(), prefix + size_t(capacity) * sizeof(T));
        if (!data)
            throw std::bad_alloc();
        m_data = reinterpret_cast<T *>(static_cast<char *>(data) + prefix);
        m_capacity = capacity;
    }

    T *m_data = nullptr;
    qsizetype m_size = 0;
    qsizetype m_capacity = 0;
};

// A small character scanner over UTF-16 code units with the JSON scanning operations of
// the lenient reader on top. Positions are code-unit indexes. Literal words match without
// regard to letter case, and the characters to be skipped (whitespace and newlines by
// default) are passed over before every literal match and number.
class VXJSONScanner
{
public:
    // A set of characters, as a membership test on one code unit; nullptr is the empty set.
    using CharacterSet = bool (*)(char16_t);

    static constexpr const char *className = "VXJSONScanner";

    // Deeper nesting than this fails the value (silently), so that hostile text cannot
    // exhaust the stack.
    static constexpr int maximumDepth = 1024;

    explicit VXJSONScanner(const QString &string);
    ~VXJSONScanner();
    VXJSONScanner(const VXJSONScanner &) = delete;
    VXJSONScanner &operator=(const VXJSONScanner &) = delete;

    static bool whitespaceAndNewlineCharacterSet(char16_t c);
    static bool decimalDigitCharacterSet(char16_t c);

    const QString &string() const { return m_string; }
    qsizetype scanLocation() const { return m_location; }
    void setScanLocation(qsizetype location);
    bool isAtEnd() const { return m_location >= m_length; }
    CharacterSet charactersToBeSkipped() const { return m_skip; }
    void setCharactersToBeSkipped(CharacterSet set) { m_skip = set; }
    bool caseSensitive() const { return false; }

    // Generic scanning. Each skips the characters to be skipped first; on failure the
    // scan location is left where it was.
    bool scanString(QStringView literal);
    bool scanDouble(double *value);

    // JSON scanning. Out-slots are written only on success, and only if given.
    bool scanJSONObject(std::optional<PropertyValue> *value, bool ignoreNull);
    bool scanJSONArray(std::optional<PropertyValue> *value, bool ignoreNull);
    // An unterminated string answers true without a value: the caller reports the
    // empty slot.
    bool scanJSONString(std::optional<QString> *value);
    bool scanUnicodeCharacter(char16_t *value);
    bool scanJSONValue(std::optional<PropertyValue> *value, bool ignoreNull);
    bool scanJSONNumber(std::optional<PropertyValue> *value);
    bool scanJSONKeyValueSeparator() { return scanCharacter(u':'); }
    bool scanJSONValueSeparator() { return scanCharacter(u','); }
    bool scanJSONObjectStartString() { return scanCharacter(u'{'); }
    bool scanJSONObjectEndString() { return scanCharacter(u'}'); }
    bool scanJSONArrayStartString() { return scanCharacter(u'['); }
    bool scanJSONArrayEndString() { return scanCharacter(u']'); }
    bool scanJSONStringDelimiterString() { return scanCharacter(u'"'); }

    // Reads a whole text given as valid UTF-8 bytes, as scanJSONObject (`asObject`) or
    // scanJSONArray would read QString::fromUtf8(utf8) from its start: same result, same
    // log lines. Positions are then counted in bytes, which nothing outside observes.
    static std::optional<PropertyValue> readUtf8(QByteArrayView utf8, bool asObject,
                                                 bool ignoreNull);

private:
    explicit VXJSONScanner(QByteArrayView utf8);
    void takeCachedStacks();

    // A string being gathered at the free end of the text block.
    struct TextGatherer
    {
        VXJSONScanner &scanner;
        char16_t *buffer;
        qsizetype count;
        qsizetype room;
        qsizetype most; // units the string can take at most, its terminator included
        // Room for `more` units after the `count` gathered (one unit stays free for the
        // terminating zero); where they go.
        char16_t *reserve(qsizetype more)
        {
            return count + more < room ? buffer + count : grow(more);
        }
        char16_t *grow(qsizetype more);
    };

    // The JSON operations over the text's own units: char16_t for a QString, char for
    // UTF-8 bytes.
    template <typename Unit> const Unit *units() const;
    template <typename Unit> qsizetype skipWhitespaceIn(qsizetype i) const;
    template <typename Unit> qsizetype skippedIn() const;
    template <typename Unit> bool nothingToSkipAt(qsizetype i) const;
    template <typename Unit> bool readCharacter(char c);
    template <typename Unit> bool readWord(const char16_t *word);
    template <typename Unit> bool mayStartWord(qsizetype i) const;
    template <typename Unit> bool startsNumber(qsizetype i) const;
    template <typename Unit> qsizetype findObjectStart(qsizetype from) const;
    template <typename Unit> qsizetype copyRun(qsizetype i, TextGatherer &text);
    template <typename Unit> bool readUnicodeCharacter(char16_t *value);
    template <typename Unit> bool readDouble(double *value);
    // What reading one value gave: nothing (failure), success without a value (an
    // unterminated string: the caller reports the empty slot), or the value.
    enum class Outcome
    {
        Failed,
        NoValue,
        Value
    };
    // Each writes its result into `*out` (a null value or an empty string before) only
    // when it has one.
    template <typename Unit> bool readObject(PropertyValue *out, bool ignoreNull);
    template <typename Unit> bool readArray(PropertyValue *out, bool ignoreNull);
    // (`key`: the string is an object's key.)
    template <typename Unit> Outcome readString(QString *out, bool key = false);
    template <typename Unit> Outcome readValue(PropertyValue *out, bool ignoreNull);
    // The public forms' out-slots, from the above.
    static bool toSlot(bool made, PropertyValue &&value, std::optional<PropertyValue> *slot);
    static bool toSlot(Outcome outcome, PropertyValue &&value, std::optional<PropertyValue> *slot);

    qsizetype skippedLocation() const
    {
        if (m_skip == &whitespaceAndNewlineCharacterSet)
            return skipWhitespace(m_location);
        qsizetype i = m_location;
        if (m_skip) {
            while (i < m_length && m_skip(m_units[i]))
                ++i;
        }
        return i;
    }
    // The first unit at or after `i` that is not whitespace or a newline.
    qsizetype skipWhitespace(qsizetype i) const
    {
        while (i < m_length) {
            const char16_t c = m_units[i];
            // Same set as whitespaceAndNewlineCharacterSet, decided inline: this runs
            // before every token.
            if (c < 0x80 ? !(c == u' ' || (c >= 0x09 && c <= 0x0d)) : !QChar::isSpace(char32_t(c)))
                break;
            ++i;
        }
        return i;
    }
    // One punctuation mark. No character folds to one, so without regard to case is the
    // same as equal here.
    bool scanCharacter(char16_t c)
    {
        const qsizetype i = skippedLocation();
        if (i < m_length && m_units[i] == c) {
            m_location = i + 1;
            return true;
        }
        return false;
    }
    // Room for `needed` units in the current text block, the `kept` units gathered so far
    // included, starting a new one (and moving them to it) when there is not. A string
    // that outgrows a block gets twice its room, up to `most` units.
    char16_t *reserveText(qsizetype kept, qsizetype needed, qsizetype most);
    // The `count` units gathered at the block's free end as a string; the block hands
    // them out or an equal short string made earlier is shared.
    QString takeText(qsizetype count);
    void logParseError(const char *selector) const;

    QString m_string;
    const char16_t *m_units;
    const char *m_bytes = nullptr; // the text when it is read as UTF-8
    qsizetype m_length;
    qsizetype m_location = 0;
    CharacterSet m_skip = &whitespaceAndNewlineCharacterSet;
    int m_depth = 0;
    ValueStack<PropertyValue> m_elements; // pending array elements of all open arrays
    ValueStack<PropertyValue::Dictionary::Entry> m_members; // pending members of all open objects
    bool m_cachedStacks = false; // the two stacks came from the thread's cache
    // The containers of this text go into shared blocks.
    Quorvelle::PropertyStorage::Arena m_arena;
    // The hashes of keys met, for the indexes of larger objects (made when first needed).
    std::unique_ptr<Quorvelle::PropertyStorage::KeyHashes> m_keyHashes;
    // Strings are gathered straight into a shared text block, and each string made from it
    // refers to its part of the block (with a terminating zero): one allocation for many
    // strings. A block lives until the last string in it is gone. While the parse runs,
    // the scanner holds a large reservation on each block's count and counts the strings it
    // hands out without atomic operations; it settles every block's count once at the end.
    struct TextBlock
    {
        QArrayData *header;
        qsizetype issued; // strings handed out
    };
    static constexpr int textReservation = 1 << 30;
    std::vector<TextBlock> m_textBlocks; // the last is the one being filled
    char16_t *m_blockUnits = nullptr;
    qsizetype m_blockCapacity = 0;
    qsizetype m_blockUsed = 0;
    // Short strings made recently, by a hash of their units: keys and small values repeat
    // in most documents, and an equal string shares its text instead of taking room. A
    // slot refers to the text without a count of its own (the reservation keeps it).
    static constexpr qsizetype internedLength = 24;
    struct Interned
    {
        const void *written = nullptr; // the string as written in the text, without quotes
        qsizetype writtenBytes = -1;
        const char16_t *units = nullptr;
        qsizetype size = 0;
        qsizetype block = 0;
    };
    // The slot for a short string written without escapes at [from, to), if it is one.
    template <typename Unit> Interned *internedSlot(qsizetype from, qsizetype *to, bool key);
    // (Fewer slots for short texts, where clearing the table would cost more than it saves.)
    size_t m_internedSlots = 0;
    std::unique_ptr<Interned[]> m_interned;
    // A string over `count` units at `units` in text block `block`, handed out.
    QString handOut(qsizetype block, const char16_t *units, qsizetype count)
    {
        TextBlock &text = m_textBlocks[size_t(block)];
        ++text.issued;
        return QString(QStringPrivate(static_cast<QTypedArrayData<char16_t> *>(text.header),
                                      const_cast<char16_t *>(units), count));
    }
};
