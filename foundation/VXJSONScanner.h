#pragma once

#include "PropertyValue.h"

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

private:
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
    // Room for `needed` more units in the current text block, starting a new one (and
    // moving the `kept` units gathered so far to it) when there is not.
    char16_t *reserveText(qsizetype kept, qsizetype needed);
    // The `count` units gathered at the block's free end as a string; the block hands
    // them out or an equal short string made earlier is shared.
    QString takeText(qsizetype count);
    void logParseError(const char *selector) const;

    QString m_string;
    const char16_t *m_units;
    qsizetype m_length;
    qsizetype m_location = 0;
    CharacterSet m_skip = &whitespaceAndNewlineCharacterSet;
    int m_depth = 0;
    std::vector<PropertyValue> m_elements; // pending array elements of all open arrays
    std::vector<PropertyDictionary::Entry> m_members; // pending members of all open objects
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
