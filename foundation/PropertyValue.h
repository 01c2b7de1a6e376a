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

/**
 * The kit's own generic names (Bundle, Button, Matrix, PropertyDictionary, ...), kept out
 * of an application's global namespace.
 */
namespace Quorvelle {

/**
 * A string-keyed dictionary of PropertyValues, implicitly shared like Qt's containers.
 * Members keep the order in which their keys were first inserted; setting a key that is
 * already there replaces the value where it stands. Members live in one flat block (with
 * a hash index once there are more than a few), so a dictionary costs one allocation and
 * iterating it walks contiguous memory. (A handle of one pointer: the block is private.)
 *
 * Like Qt's containers, one dictionary may be read from several threads at once, and
 * separate copies may be used from separate threads; writing needs the usual exclusion.
 */
class QV_FOUNDATION_EXPORT PropertyDictionary
{
public:
    struct Entry;
    /// \cond internal
    class Data;
    /// \endcond

    /**
     * An iterator over the members in their order; `*it` and `it.value()` are the value,
     * `it.key()` the key. `Const` makes it a const_iterator.
     */
    template <bool Const> class Iterator
    {
    public:
        ///@{
        /** The standard iterator traits. */
        using iterator_category = std::random_access_iterator_tag;
        using difference_type = std::ptrdiff_t;
        using value_type = PropertyValue;
        using pointer = std::conditional_t<Const, const PropertyValue *, PropertyValue *>;
        using reference = std::conditional_t<Const, const PropertyValue &, PropertyValue &>;
        ///@}
        /** A pointer to the member the iterator stands on. */
        using EntryPointer = std::conditional_t<Const, const Entry *, Entry *>;

        /** An iterator that stands nowhere (compare it to nothing but another such). */
        Iterator() = default;
        /** The iterator that stands on the member. */
        explicit Iterator(EntryPointer entry) : m_entry(entry) {}
        /** A mutable iterator converts to a constant one. */
        template <bool C = Const, typename = std::enable_if_t<C>>
        Iterator(const Iterator<false> &other) : m_entry(other.entry())
        {
        }

        /** The member's key. */
        inline const QString &key() const;
        /** The member's value. */
        inline reference value() const;
        ///@{
        /** The member's value. */
        reference operator*() const { return value(); }
        pointer operator->() const { return &value(); }
        ///@}

        ///@{
        /** Moves as a random-access iterator does. */
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
        ///@}
        /** Whether both stand on the same member. */
        bool operator==(const Iterator &other) const = default;
        /** The member the iterator stands on. */
        EntryPointer entry() const { return m_entry; }

    private:
        EntryPointer m_entry = nullptr;
    };
    /** Iterates over members whose values may be changed where they stand. */
    using iterator = Iterator<false>;
    /** Iterates over members for reading. */
    using const_iterator = Iterator<true>;

    /** The empty dictionary; allocates nothing. */
    PropertyDictionary() noexcept = default;
    /**
     * A dictionary of the members in the given order: `{{u"name"_s, 1}, ...}`. A repeated
     * key replaces the earlier value.
     */
    PropertyDictionary(std::initializer_list<std::pair<QString, PropertyValue>> members);
    ///@{
    /** Copies share the members until one of them is written to (cheap, never throws). */
    PropertyDictionary(const PropertyDictionary &other) noexcept;
    PropertyDictionary(PropertyDictionary &&other) noexcept : d(std::exchange(other.d, nullptr)) {}
    PropertyDictionary &operator=(const PropertyDictionary &other) noexcept;
    PropertyDictionary &operator=(PropertyDictionary &&other) noexcept
    {
        std::swap(d, other.d);
        return *this;
    }
    ///@}
    /** Releases this handle's share of the members. */
    ~PropertyDictionary();

    /**
     * Takes over the members (keys need not be distinct: a later one replaces the value of
     * an earlier one), leaving `first`..`last` moved-from.
     */
    static PropertyDictionary fromEntries(Entry *first, Entry *last);

    ///@{
    /** The number of members. */
    qsizetype size() const noexcept;
    qsizetype count() const noexcept { return size(); }
    ///@}
    ///@{
    /** Whether there are no members. */
    bool isEmpty() const noexcept { return size() == 0; }
    bool empty() const noexcept { return isEmpty(); }
    ///@}
    /** Removes every member. */
    void clear() { *this = PropertyDictionary(); }
    /** Makes room for the number of members, so inserting up to it allocates nothing. */
    void reserve(qsizetype capacity);

    /** Whether a member has the key. */
    bool contains(const QString &key) const { return findEntry(key) != nullptr; }
    /** The value under `key`, or `defaultValue` (the null marker) when there is none. */
    inline PropertyValue value(const QString &key) const;
    /** \overload */
    inline PropertyValue value(const QString &key, const PropertyValue &defaultValue) const;
    /** The value under `key`, inserted as the null marker first when there is none. */
    PropertyValue &operator[](const QString &key);
    /**
     * \overload
     * The value under `key`, or the null marker; inserts nothing.
     */
    inline PropertyValue operator[](const QString &key) const;

    /**
     * Sets the value under the key: a new key goes to the end, an existing one keeps its
     * place. Returns an iterator to the member.
     */
    iterator insert(const QString &key, const PropertyValue &value);
    /** \overload */
    iterator insert(QString &&key, PropertyValue &&value);
    /** The number of members removed (0 or 1). */
    qsizetype remove(const QString &key);
    /** Removes every member for which pred(key, value) holds; the others keep their order. */
    template <typename Predicate> qsizetype removeIf(Predicate pred);
    /** Removes the member and returns its value; the null marker when there was none. */
    inline PropertyValue take(const QString &key);

    /** The keys in member order. */
    QStringList keys() const;
    /** The values in member order. */
    QList<PropertyValue> values() const;

    ///@{
    /** An iterator to the member with the key; end() when there is none. */
    const_iterator constFind(const QString &key) const;
    const_iterator find(const QString &key) const { return constFind(key); }
    iterator find(const QString &key);
    ///@}

    ///@{
    /** Iterators over the members in their order (a mutable one detaches a shared dictionary). */
    iterator begin();
    iterator end();
    const_iterator begin() const noexcept { return cbegin(); }
    const_iterator end() const noexcept { return cend(); }
    const_iterator cbegin() const noexcept;
    const_iterator cend() const noexcept;
    const_iterator constBegin() const noexcept { return cbegin(); }
    const_iterator constEnd() const noexcept { return cend(); }
    ///@}

    /** Same keys with equal values; the order of members does not count. */
    bool operator==(const PropertyDictionary &other) const;

private:
    const Entry *findEntry(QStringView key) const;
    Entry *findEntryForWriting(QStringView key);
    void detach(qsizetype capacity);
    Entry &append(QString &&key, PropertyValue &&value);
    Entry *mutableEntries();
    /** Drops the members from `newSize` on, after the caller moved the kept ones forward. */
    void truncate(qsizetype newSize);

    Data *d = nullptr;
};

} // namespace Quorvelle

/**
 * The dynamic value shared by the JSON reader and writer, the survey payload and the
 * item trees: the null marker, a number (boolean, integer, unsigned integer or real),
 * a string, an array, a string-keyed dictionary, and the two property-list kinds that
 * JSON cannot hold (date, data). An absent value is std::nullopt, never a PropertyValue.
 *
 * Containers are implicitly shared: copying a value is cheap and a copy never changes
 * when the original is modified afterwards.
 *
 * A frozen-layout value type: its size and members are part of the kit's ABI.
 */
class QV_FOUNDATION_EXPORT PropertyValue
{
public:
    /** The kind of value held. */
    enum class Type
    {
        Null,            ///< The null marker (JSON `null`).
        Bool,            ///< A boolean (a number too).
        Integer,         ///< A signed 64-bit integer.
        UnsignedInteger, ///< An unsigned 64-bit integer.
        Double,          ///< A double (every number the JSON reader reads).
        String,          ///< A QString.
        Array,           ///< An Array of values.
        Dictionary,      ///< A Dictionary of values by string key.
        Date,            ///< A QDateTime (property lists only; JSON writes `null`).
        Data             ///< A QByteArray (property lists only; JSON writes `null`).
    };

    /** An array of values. */
    using Array = QList<PropertyValue>;
    /** A dictionary of values by string key, in insertion order. */
    using Dictionary = Quorvelle::PropertyDictionary;

    /** The type of the null marker, the value that stands for JSON's `null`. */
    struct NullMarker
    {
        /** All null markers are equal. */
        bool operator==(const NullMarker &) const = default;
    };

    ///@{
    /** The null marker. */
    PropertyValue() = default;
    PropertyValue(NullMarker) {}
    ///@}
    ///@{
    /**
     * A value of the argument's kind: `int` and `qint64` make an Integer, `quint64` an
     * UnsignedInteger, a `u"..."` literal a String.
     */
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
    ///@}
    /**
     * Deleted: a `"..."` literal would otherwise silently become a bool. Write `u"..."` or
     * pass a QString.
     */
    PropertyValue(const char *) = delete;

    /** The null marker. */
    static PropertyValue null() { return PropertyValue(); }

    /** The kind of value held. */
    Type type() const { return static_cast<Type>(m_value.index()); }
    /** Whether this is the null marker. */
    bool isNull() const { return type() == Type::Null; }
    /** Whether this is a boolean. */
    bool isBool() const { return type() == Type::Bool; }
    /** Every numeric kind: booleans are numbers too. */
    bool isNumber() const;
    /** Whether this is a string. */
    bool isString() const { return type() == Type::String; }
    /** Whether this is an array. */
    bool isArray() const { return type() == Type::Array; }
    /** Whether this is a dictionary. */
    bool isDictionary() const { return type() == Type::Dictionary; }

    ///@{
    /**
     * The number, converted between the numeric kinds: a double is truncated toward zero and
     * saturates at the integer's limits (NaN reads as 0); a non-number reads as 0 (false).

     */
    bool toBool() const;
    qint64 toInt64() const;
    quint64 toUInt64() const;
    double toDouble() const;
    ///@}

    ///@{
    /** Typed access (a cheap shared copy); the wrong kind gives an empty value. */
    QString toString() const;
    Array toArray() const;
    Dictionary toDictionary() const;
    QDateTime toDateTime() const;
    QByteArray toData() const;
    ///@}

    /** The string where it stands (nullptr for another kind): reading it costs no copy. */
    const QString *stringPtr() const { return std::get_if<QString>(&m_value); }

    ///@{
    /**
     * In-place access to a container (nullptr for another kind), for code that edits a
     * tree where it stands.
     */
    Array *arrayPtr() { return std::get_if<Array>(&m_value); }
    const Array *arrayPtr() const { return std::get_if<Array>(&m_value); }
    Dictionary *dictionaryPtr() { return std::get_if<Dictionary>(&m_value); }
    const Dictionary *dictionaryPtr() const { return std::get_if<Dictionary>(&m_value); }
    ///@}

    /** Dictionary member lookup: std::nullopt when this is not a dictionary or has no such key. */
    std::optional<PropertyValue> value(const QString &key) const;
    /** Whether this is a dictionary with a member under the key. */
    bool contains(const QString &key) const;

    /**
     * Same kind and equal contents; numbers of different kinds compare by value, as
     * numeric objects do.
     */
    bool operator==(const PropertyValue &other) const;

private:
    std::variant<NullMarker, bool, qint64, quint64, double, QString, Array, Dictionary, QDateTime,
                 QByteArray>
        m_value;
};

namespace Quorvelle {

/** One member of a dictionary, as PropertyDictionary::fromEntries() takes them. */
struct PropertyDictionary::Entry
{
    QString key;         ///< The member's key.
    PropertyValue value; ///< The member's value.
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

/** Readable form for test failures. */
QV_FOUNDATION_EXPORT QDebug operator<<(QDebug debug, const PropertyDictionary &dictionary);

} // namespace Quorvelle

/** Readable form of a value for qDebug() and test failures. */
QV_FOUNDATION_EXPORT QDebug operator<<(QDebug debug, const PropertyValue &value);
