#pragma once

#include "PropertyValue.h"

#include <QByteArrayView>
#include <QChar>
#include <QString>
#include <QStringView>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

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
    bool scanUpToString(QStringView literal);
    bool scanCharactersFromSet(CharacterSet set, QStringView *into = nullptr);
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
    template <typename Unit> bool readCharacter(char c);
    template <typename Unit> bool readWord(const char16_t *word);
    template <typename Unit> bool mayStartWord(qsizetype i) const;
    template <typename Unit> bool startsNumber(qsizetype i) const;
    template <typename Unit> qsizetype findObjectStart(qsizetype from) const;
    template <typename Unit> qsizetype copyRun(qsizetype i, TextGatherer &text);
    template <typename Unit> bool readUnicodeCharacter(char16_t *value);
    template <typename Unit> bool readDouble(double *value);
    template <typename Unit> bool readObject(std::optional<PropertyValue> *value, bool ignoreNull);
    template <typename Unit> bool readArray(std::optional<PropertyValue> *value, bool ignoreNull);
    template <typename Unit> bool readString(std::optional<QString> *value);
    template <typename Unit> bool readValue(std::optional<PropertyValue> *value, bool ignoreNull);

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
    std::vector<PropertyValue> m_elements; // pending array elements of all open arrays
    std::vector<PropertyValue::Dictionary::Entry> m_members; // pending members of all open objects
    bool m_cachedStacks = false; // the two stacks came from the thread's cache
    // Strings are gathered straight into a shared text block, and each string made from it
    // refers to its part of the block (with a terminating zero): one allocation for many
    // strings. A block lives until the last string in it is gone.
    QStringPrivate m_block;
    qsizetype m_blockUsed = 0;
    // Short strings made recently, by a hash of their units: keys and small values repeat
    // in most documents, and an equal string shares its text instead of a new allocation.
    static constexpr qsizetype internedLength = 24;
    // (Fewer slots for short texts, where clearing the table would cost more than it saves.)
    size_t m_internedSlots = 0;
    std::unique_ptr<QString[]> m_interned;
};
