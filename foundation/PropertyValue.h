#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <utility>
#include <variant>

class PropertyValue;
class QDebug;

namespace Quorvelle {

// A string-keyed dictionary of PropertyValues, implicitly shared like Qt's containers.
// Members keep the order in which their keys were first inserted; setting a key that is
// already there replaces the value where it stands. Members live in one flat block (with
// a hash index once there are more than a few), so a dictionary costs one allocation and
// iterating it walks contiguous memory. (A handle of one pointer: the block is private.)
class QV_FOUNDATION_EXPORT PropertyDictionary
{
public:
    struct Entry;
    class Data;

    template <bool Const> class Iterator
    {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using difference_type = std::ptrdiff_t;
        using value_type = PropertyValue;
        using pointer = std::conditional_t<Const, const PropertyValue *, PropertyValue *>;
        using reference = std::conditional_t<Const, const PropertyValue &, PropertyValue &>;
        using EntryPointer = std::conditional_t<Const, const Entry *, Entry *>;

        Iterator() = default;
        explicit Iterator(EntryPointer entry) : m_entry(entry) {}
        // A mutable iterator converts to a constant one.
        template <bool C = Const, typename = std::enable_if_t<C>>
        Iterator(const Iterator<false> &other) : m_entry(other.entry())
        {
        }

        inline const QString &key() const;
        inline reference value() const;
        reference operator*() const { return value(); }
        pointer operator->() const { return &value(); }

        Iterator &operator++()
        {
            ++m_entry;
            return *this;
        }
        Iterator operator++(int)
        {
            Iterator old = *this;
            ++m_entry;
            return old;
        }
        Iterator &operator--()
        {
            --m_entry;
            return *this;
        }
        Iterator &operator+=(difference_type n)
        {
            m_entry += n;
            return *this;
        }
        Iterator operator+(difference_type n) const { return Iterator(m_entry + n); }
        difference_type operator-(const Iterator &other) const { return m_entry - other.m_entry; }
        bool operator==(const Iterator &other) const = default;
        EntryPointer entry() const { return m_entry; }

    private:
        EntryPointer m_entry = nullptr;
    };
    using iterator = Iterator<false>;
    using const_iterator = Iterator<true>;

    PropertyDictionary() noexcept = default;
    PropertyDictionary(std::initializer_list<std::pair<QString, PropertyValue>> members);
    PropertyDictionary(const PropertyDictionary &other) noexcept;
    PropertyDictionary(PropertyDictionary &&other) noexcept : d(std::exchange(other.d, nullptr)) {}
    PropertyDictionary &operator=(const PropertyDictionary &other) noexcept;
    PropertyDictionary &operator=(PropertyDictionary &&other) noexcept
    {
        std::swap(d, other.d);
        return *this;
    }
    ~PropertyDictionary();

    // Takes over the members (keys need not be distinct: a later one replaces the value of
    // an earlier one), leaving `first`..`last` moved-from.
    static PropertyDictionary fromEntries(Entry *first, Entry *last);

    qsizetype size() const noexcept;
    qsizetype count() const noexcept { return size(); }
    bool isEmpty() const noexcept { return size() == 0; }
    bool empty() const noexcept { return isEmpty(); }
    void clear() { *this = PropertyDictionary(); }
    void reserve(qsizetype capacity);

    bool contains(const QString &key) const { return findEntry(key) != nullptr; }
    // The value under `key`, or `defaultValue` (the null marker) when there is none.
    inline PropertyValue value(const QString &key) const;
    inline PropertyValue value(const QString &key, const PropertyValue &defaultValue) const;
    // The value under `key`, inserted as the null marker first when there is none.
    PropertyValue &operator[](const QString &key);
    inline PropertyValue operator[](const QString &key) const;

    iterator insert(const QString &key, const PropertyValue &value);
    iterator insert(QString &&key, PropertyValue &&value);
    // The number of members removed (0 or 1).
    qsizetype remove(const QString &key);
    // Removes every member for which pred(key, value) holds; the others keep their order.
    template <typename Predicate> qsizetype removeIf(Predicate pred);
    inline PropertyValue take(const QString &key);

    QStringList keys() const;
    QList<PropertyValue> values() const;

    const_iterator constFind(const QString &key) const;
    const_iterator find(const QString &key) const { return constFind(key); }
    iterator find(const QString &key);

    iterator begin();
    iterator end();
    const_iterator begin() const noexcept { return cbegin(); }
    const_iterator end() const noexcept { return cend(); }
    const_iterator cbegin() const noexcept;
    const_iterator cend() const noexcept;
    const_iterator constBegin() const noexcept { return cbegin(); }
    const_iterator constEnd() const noexcept { return cend(); }

    // Same keys with equal values; the order of members does not count.
    bool operator==(const PropertyDictionary &other) const;

private:
    const Entry *findEntry(QStringView key) const;
    Entry *findEntryForWriting(QStringView key);
    void detach(qsizetype capacity);
    Entry &append(QString &&key, PropertyValue &&value);
    Entry *mutableEntries();
    // Drops the members from `newSize` on, after the caller moved the kept ones forward.
    void truncate(qsizetype newSize);

    Data *d = nullptr;
};

} // namespace Quorvelle

// The dynamic value shared by the JSON reader and writer, the survey payload and the
// item trees: the null marker, a number (boolean, integer, unsigned integer or real),
// a string, an array, a string-keyed dictionary, and the two property-list kinds that
// JSON cannot hold (date, data). An absent value is std::nullopt, never a PropertyValue.
//
// Containers are implicitly shared: copying a value is cheap and a copy never changes
// when the original is modified afterwards.
//
// A frozen-layout value type: its size and members are part of the kit's ABI.
class QV_FOUNDATION_EXPORT PropertyValue
{
public:
    enum class Type
    {
        Null,
        Bool,
        Integer,
        UnsignedInteger,
        Double,
        String,
        Array,
        Dictionary,
        Date,
        Data
    };

    using Array = QList<PropertyValue>;
    using Dictionary = Quorvelle::PropertyDictionary;

    struct NullMarker
    {
        bool operator==(const NullMarker &) const = default;
    };

    PropertyValue() = default; // the null marker
    PropertyValue(NullMarker) {}
    PropertyValue(bool b) : m_value(b) {}
    PropertyValue(int i) : m_value(qint64(i)) {}
    PropertyValue(qint64 i) : m_value(i) {}
    PropertyValue(quint64 u) : m_value(u) {}
    PropertyValue(double d) : m_value(d) {}
    PropertyValue(const QString &s) : m_value(s) {}
    PropertyValue(QString &&s) : m_value(std::move(s)) {}
    PropertyValue(const char16_t *s) : m_value(QString::fromUtf16(s)) {}
    PropertyValue(const Array &a) : m_value(a) {}
    PropertyValue(Array &&a) : m_value(std::move(a)) {}
    PropertyValue(const Dictionary &d) : m_value(d) {}
    PropertyValue(Dictionary &&d) : m_value(std::move(d)) {}
    PropertyValue(const QDateTime &t) : m_value(t) {}
    PropertyValue(const QByteArray &b) : m_value(b) {}
    // Guards against a string literal silently becoming a bool.
    PropertyValue(const char *) = delete;

    static PropertyValue null() { return PropertyValue(); }

    Type type() const { return static_cast<Type>(m_value.index()); }
    bool isNull() const { return type() == Type::Null; }
    bool isBool() const { return type() == Type::Bool; }
    // Every numeric kind: booleans are numbers too.
    bool isNumber() const;
    bool isString() const { return type() == Type::String; }
    bool isArray() const { return type() == Type::Array; }
    bool isDictionary() const { return type() == Type::Dictionary; }

    // Numeric reads convert between the numeric kinds; a non-number reads as 0.
    bool toBool() const;
    qint64 toInt64() const;
    quint64 toUInt64() const;
    double toDouble() const;

    // Typed access; the wrong kind gives an empty value.
    QString toString() const;
    Array toArray() const;
    Dictionary toDictionary() const;
    QDateTime toDateTime() const;
    QByteArray toData() const;

    // The string where it stands (nullptr for another kind): reading it costs no copy.
    const QString *stringPtr() const { return std::get_if<QString>(&m_value); }

    // In-place access to a container (nullptr for another kind), for code that edits a
    // tree where it stands.
    Array *arrayPtr() { return std::get_if<Array>(&m_value); }
    const Array *arrayPtr() const { return std::get_if<Array>(&m_value); }
    Dictionary *dictionaryPtr() { return std::get_if<Dictionary>(&m_value); }
    const Dictionary *dictionaryPtr() const { return std::get_if<Dictionary>(&m_value); }

    // Dictionary member lookup: std::nullopt when this is not a dictionary or has no such key.
    std::optional<PropertyValue> value(const QString &key) const;
    bool contains(const QString &key) const;

    // Same kind and equal contents; numbers of different kinds compare by value, as
    // numeric objects do.
    bool operator==(const PropertyValue &other) const;

private:
    std::variant<NullMarker, bool, qint64, quint64, double, QString, Array, Dictionary, QDateTime,
                 QByteArray>
        m_value;
};

namespace Quorvelle {

struct PropertyDictionary::Entry
{
    QString key;
    PropertyValue value;
};

template <bool Const> const QString &PropertyDictionary::Iterator<Const>::key() const
{
    return m_entry->key;
}

template <bool Const>
typename PropertyDictionary::Iterator<Const>::reference
PropertyDictionary::Iterator<Const>::value() const
{
    return m_entry->value;
}

PropertyValue PropertyDictionary::value(const QString &key) const
{
    const Entry *entry = findEntry(key);
    return entry ? entry->value : PropertyValue();
}

PropertyValue PropertyDictionary::value(const QString &key, const PropertyValue &defaultValue) const
{
    const Entry *entry = findEntry(key);
    return entry ? entry->value : defaultValue;
}

PropertyValue PropertyDictionary::operator[](const QString &key) const
{
    return value(key);
}

PropertyValue PropertyDictionary::take(const QString &key)
{
    PropertyValue taken = value(key);
    remove(key);
    return taken;
}

template <typename Predicate> qsizetype PropertyDictionary::removeIf(Predicate pred)
{
    const qsizetype before = size();
    Entry *entries = mutableEntries();
    qsizetype kept = 0;
    for (qsizetype k = 0; k < before; ++k) {
        if (pred(std::as_const(entries[k].key), std::as_const(entries[k].value)))
            continue;
        if (kept != k)
            entries[kept] = std::move(entries[k]);
        ++kept;
    }
    truncate(kept);
    return before - kept;
}

// Readable form for test failures.
QV_FOUNDATION_EXPORT QDebug operator<<(QDebug debug, const PropertyDictionary &dictionary);

} // namespace Quorvelle

QV_FOUNDATION_EXPORT QDebug operator<<(QDebug debug, const PropertyValue &value);
