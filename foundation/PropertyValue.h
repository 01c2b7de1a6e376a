#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>

class PropertyValue;
class QDebug;

/**
 * The kit's own generic names (Bundle, Button, Matrix, PropertyDictionary, ...), kept out
 * of an application's global namespace.
 */
namespace Quorvelle {

/// \cond internal
// Where the containers keep their elements. Private to the kit; laid out here only so that
// the containers' accessors can be inline.
namespace PropertyStorage {

// A reference-counted piece of memory holding the elements of one or more containers, one
// region each. A container made or changed by code has a block of its own; the containers
// read from one JSON text share a few blocks, so reading makes a handful of allocations
// instead of one per container. A block lives while a container outside it refers to it,
// and all elements in it live as long as the block.
//
// Such a shared block is frozen: a container in it may hold containers of the same block,
// and those inner references are not counted (they would keep the block alive forever);
// so nothing in a frozen block is ever changed, and a change to one of its containers
// copies it first, as a change to any shared container does.
struct Block
{
    QBasicAtomicInt ref;
    quint32 frozen;
    qsizetype capacity; // bytes for regions after this header
    qsizetype used;     // bytes of regions placed, from the start
    char *regions() { return reinterpret_cast<char *>(this + 1); }
};

// The header of one container's region: room for `capacity` elements (or dictionary
// members, followed by the dictionary's hash index), of which the first `size` are alive.
struct Region
{
    quint32 size;
    quint32 capacity;
    quint64 blockOffset; // bytes from the block's start; bit 0 is set for a dictionary

    Block *block()
    {
        return reinterpret_cast<Block *>(reinterpret_cast<char *>(this) -
                                         (blockOffset & ~quint64(1)));
    }
    bool isDictionary() const { return blockOffset & 1; }
};
static_assert(sizeof(Region) == 16);

// Frees a block whose last reference is gone, with every element in it.
QV_FOUNDATION_EXPORT void destroyBlock(Block *block);

inline void ref(Region *region) noexcept
{
    if (region)
        region->block()->ref.ref();
}

inline void deref(Region *region)
{
    if (region && !region->block()->ref.deref())
        destroyBlock(region->block());
}

// Whether the region may be changed in place: its block is not frozen and nothing else
// refers to it.
inline bool isDetached(const Region *region)
{
    Block *block = const_cast<Region *>(region)->block();
    return !block->frozen && block->ref.loadRelaxed() == 1;
}

} // namespace PropertyStorage
/// \endcond

/**
 * An ordered array of PropertyValues with the part of QList's interface the kit uses,
 * implicitly shared like Qt's containers: copying is cheap and a change to a shared array
 * copies it first. Arrays read from one JSON text share their memory with the rest of
 * that tree until they are changed; a kept array keeps alive only what it shares.
 *
 * Like Qt's containers, one array may be read from several threads at once, and separate
 * copies may be used from separate threads; writing needs the usual exclusion.
 */
class QV_FOUNDATION_EXPORT PropertyArray
{
public:
    ///@{
    /** The standard container types. */
    using value_type = PropertyValue;
    using size_type = qsizetype;
    using difference_type = qptrdiff;
    using reference = PropertyValue &;
    using const_reference = const PropertyValue &;
    using pointer = PropertyValue *;
    using const_pointer = const PropertyValue *;
    ///@}
    /** Iterates over the elements where they stand (a mutable one detaches a shared array). */
    using iterator = PropertyValue *;
    /** Iterates over the elements for reading. */
    using const_iterator = const PropertyValue *;

    /** The empty array; allocates nothing. */
    PropertyArray() noexcept = default;
    /** An array of the values in the given order: `{1, u"two"_s, true}`. */
    inline PropertyArray(std::initializer_list<PropertyValue> values);
    /** An array of the values from `first` to `last`. */
    template <typename InputIterator,
              typename = std::enable_if_t<std::is_convertible_v<
                  typename std::iterator_traits<InputIterator>::iterator_category,
                  std::input_iterator_tag>>>
    PropertyArray(InputIterator first, InputIterator last)
    {
        if constexpr (std::is_convertible_v<
                          typename std::iterator_traits<InputIterator>::iterator_category,
                          std::forward_iterator_tag>)
            reserve(qsizetype(std::distance(first, last)));
        for (; first != last; ++first)
            append(*first);
    }
    ///@{
    /** Copies share the elements until one of them is written to (cheap, never throws). */
    PropertyArray(const PropertyArray &other) noexcept : d(other.d) { PropertyStorage::ref(d); }
    PropertyArray(PropertyArray &&other) noexcept : d(std::exchange(other.d, nullptr)) {}
    PropertyArray &operator=(const PropertyArray &other) noexcept
    {
        PropertyArray copy(other);
        std::swap(d, copy.d);
        return *this;
    }
    PropertyArray &operator=(PropertyArray &&other) noexcept
    {
        std::swap(d, other.d);
        return *this;
    }
    ///@}
    /** Releases this handle's share of the elements. */
    ~PropertyArray() { PropertyStorage::deref(d); }

    ///@{
    /** The number of elements. */
    qsizetype size() const noexcept { return d ? qsizetype(d->size) : 0; }
    qsizetype count() const noexcept { return size(); }
    qsizetype length() const noexcept { return size(); }
    ///@}
    ///@{
    /** Whether there are no elements. */
    bool isEmpty() const noexcept { return size() == 0; }
    bool empty() const noexcept { return isEmpty(); }
    ///@}
    /** The number of elements that fit without allocating. */
    qsizetype capacity() const noexcept { return d ? qsizetype(d->capacity) : 0; }

    ///@{
    /** The elements, contiguous (nullptr when there are none). */
    const PropertyValue *constData() const noexcept { return d ? elementsOf(d) : nullptr; }
    const PropertyValue *data() const noexcept { return constData(); }
    ///@}
    /** \overload
     * Detaches a shared array first, so the elements may be changed where they stand.
     */
    PropertyValue *data()
    {
        detach();
        return d ? elementsOf(d) : nullptr;
    }

    ///@{
    /** Iterators over the elements (a mutable one detaches a shared array). */
    const_iterator begin() const noexcept { return constData(); }
    inline const_iterator end() const noexcept;
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }
    const_iterator constBegin() const noexcept { return begin(); }
    const_iterator constEnd() const noexcept { return end(); }
    iterator begin() { return data(); }
    inline iterator end();
    ///@}

    ///@{
    /** The element at the index, which must be valid (the non-const forms detach). */
    inline const PropertyValue &at(qsizetype i) const noexcept;
    const PropertyValue &operator[](qsizetype i) const noexcept { return at(i); }
    inline PropertyValue &operator[](qsizetype i);
    const PropertyValue &first() const noexcept { return at(0); }
    const PropertyValue &last() const noexcept { return at(size() - 1); }
    const PropertyValue &constFirst() const noexcept { return first(); }
    const PropertyValue &constLast() const noexcept { return last(); }
    PropertyValue &first() { return (*this)[0]; }
    PropertyValue &last() { return (*this)[size() - 1]; }
    ///@}

    /** Makes room for the number of elements, so appending up to it allocates nothing. */
    void reserve(qsizetype capacity);
    /** Gives back the room beyond the elements. */
    void squeeze() { reallocate(size()); }
    /** Removes every element. */
    void clear() { *this = PropertyArray(); }
    ///@{
    /** Adds the value (or the other array's elements) at the end. */
    inline void append(const PropertyValue &value);
    inline void append(PropertyValue &&value);
    void append(const PropertyArray &other);
    inline void push_back(const PropertyValue &value);
    inline void push_back(PropertyValue &&value);
    ///@}
    /** Adds the value at the front. */
    inline void prepend(PropertyValue value);
    /** Inserts the value before index `i` (`size()` appends). */
    void insert(qsizetype i, PropertyValue value);
    ///@{
    /** Removes the element at the index, which must be valid. */
    void removeAt(qsizetype i);
    void removeFirst() { removeAt(0); }
    void removeLast() { removeAt(size() - 1); }
    ///@}
    ///@{
    /** Removes the element at the index, which must be valid, and returns it. */
    inline PropertyValue takeAt(qsizetype i);
    inline PropertyValue takeFirst();
    inline PropertyValue takeLast();
    ///@}
    /** Grows with null markers or drops elements from the end. */
    void resize(qsizetype size);

    /** Appends the value; returns the array, for chains. */
    inline PropertyArray &operator<<(const PropertyValue &value);
    /** Appends the other array's elements. */
    PropertyArray &operator+=(const PropertyArray &other)
    {
        append(other);
        return *this;
    }

    /** Same elements in the same order. */
    bool operator==(const PropertyArray &other) const;

    /** The elements as a QList, for code that wants Qt's own container. */
    QList<PropertyValue> toList() const;

    /// \cond internal
    // For the storage: an array over `region`, whose reference the caller hands over; and
    // the region of an array.
    static PropertyArray fromRegion(PropertyStorage::Region *region) noexcept
    {
        PropertyArray array;
        array.d = region;
        return array;
    }
    PropertyStorage::Region *storageRegion() const noexcept { return d; }
    /// \endcond

private:
    static PropertyValue *elementsOf(PropertyStorage::Region *region)
    {
        return reinterpret_cast<PropertyValue *>(region + 1);
    }
    void detach()
    {
        if (d && !PropertyStorage::isDetached(d))
            reallocate(d->capacity);
    }
    // Room for one more at the end, detached.
    void prepareAppend()
    {
        if (!d || d->size == d->capacity || !PropertyStorage::isDetached(d))
            reallocate(size() < 4 ? 4 : 2 * size());
    }
    // A block of the array's own with room for `capacity` elements (at least its size).
    void reallocate(qsizetype capacity);

    PropertyStorage::Region *d = nullptr;
};

/**
 * A string-keyed dictionary of PropertyValues, implicitly shared like Qt's containers.
 * Members keep the order in which their keys were first inserted; setting a key that is
 * already there replaces the value where it stands. Members live in one flat block (with
 * a hash index once there are more than a few), so a dictionary costs at most one
 * allocation and iterating it walks contiguous memory. Dictionaries read from one JSON
 * text share their memory with the rest of that tree until they are changed.
 *
 * Like Qt's containers, one dictionary may be read from several threads at once, and
 * separate copies may be used from separate threads; writing needs the usual exclusion.
 */
class QV_FOUNDATION_EXPORT PropertyDictionary
{
public:
    struct Entry;

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
    PropertyDictionary(const PropertyDictionary &other) noexcept : d(other.d)
    {
        PropertyStorage::ref(d);
    }
    PropertyDictionary(PropertyDictionary &&other) noexcept : d(std::exchange(other.d, nullptr)) {}
    PropertyDictionary &operator=(const PropertyDictionary &other) noexcept
    {
        PropertyDictionary copy(other);
        std::swap(d, copy.d);
        return *this;
    }
    PropertyDictionary &operator=(PropertyDictionary &&other) noexcept
    {
        std::swap(d, other.d);
        return *this;
    }
    ///@}
    /** Releases this handle's share of the members. */
    ~PropertyDictionary() { PropertyStorage::deref(d); }

    /**
     * Takes over the members (keys need not be distinct: a later one replaces the value of
     * an earlier one), leaving `first`..`last` moved-from.
     */
    static PropertyDictionary fromEntries(Entry *first, Entry *last);

    ///@{
    /** The number of members. */
    qsizetype size() const noexcept { return d ? qsizetype(d->size) : 0; }
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
    inline const_iterator cbegin() const noexcept;
    inline const_iterator cend() const noexcept;
    const_iterator constBegin() const noexcept { return cbegin(); }
    const_iterator constEnd() const noexcept { return cend(); }
    ///@}

    /** Same keys with equal values; the order of members does not count. */
    bool operator==(const PropertyDictionary &other) const;

    /// \cond internal
    // For the storage: a dictionary over `region`, whose reference the caller hands over;
    // and the region of a dictionary.
    static PropertyDictionary fromRegion(PropertyStorage::Region *region) noexcept
    {
        PropertyDictionary dictionary;
        dictionary.d = region;
        return dictionary;
    }
    PropertyStorage::Region *storageRegion() const noexcept { return d; }
    /// \endcond

private:
    static Entry *entriesOf(PropertyStorage::Region *region)
    {
        return reinterpret_cast<Entry *>(region + 1);
    }
    const Entry *findEntry(QStringView key) const;
    Entry *findEntryForWriting(QStringView key);
    void detach(qsizetype capacity);
    Entry &append(QString &&key, PropertyValue &&value);
    Entry *mutableEntries();
    // Drops the members from `newSize` on, after the caller moved the kept ones forward.
    void truncate(qsizetype newSize);

    PropertyStorage::Region *d = nullptr;
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
 * A frozen-layout value type of 24 bytes: its size and members are part of the kit's ABI.
 */
// 24 bytes: a string is a QString in place, whose third word (its length) is never
// negative; every other kind writes the complement of its type there and keeps its
// content in the first word (a number, a container's handle, the date, or the data held
// on the heap). Values move by copying their bytes.
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
    using Array = Quorvelle::PropertyArray;
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
    PropertyValue() noexcept { setTag(Type::Null); }
    PropertyValue(NullMarker) noexcept : PropertyValue() {}
    ///@}
    ///@{
    /**
     * A value of the argument's kind: `int` and `qint64` make an Integer, `quint64` an
     * UnsignedInteger, a `u"..."` literal a String.
     */
    PropertyValue(bool b) noexcept { setWord(quint64(b), Type::Bool); }
    PropertyValue(int i) noexcept : PropertyValue(qint64(i)) {}
    PropertyValue(qint64 i) noexcept { setWord(i, Type::Integer); }
    PropertyValue(quint64 u) noexcept { setWord(u, Type::UnsignedInteger); }
    PropertyValue(double d) noexcept { setWord(d, Type::Double); }
    PropertyValue(const QString &s) { new (m_data) QString(s); }
    PropertyValue(QString &&s) noexcept { new (m_data) QString(std::move(s)); }
    PropertyValue(const char16_t *s) : PropertyValue(QString::fromUtf16(s)) {}
    PropertyValue(const Array &a) noexcept { construct<Array>(a, Type::Array); }
    PropertyValue(Array &&a) noexcept { construct<Array>(std::move(a), Type::Array); }
    PropertyValue(const Dictionary &d) noexcept { construct<Dictionary>(d, Type::Dictionary); }
    PropertyValue(Dictionary &&d) noexcept
    {
        construct<Dictionary>(std::move(d), Type::Dictionary);
    }
    PropertyValue(const QDateTime &t) { construct<QDateTime>(t, Type::Date); }
    PropertyValue(const QByteArray &b) { construct<QByteArray *>(new QByteArray(b), Type::Data); }
    ///@}
    /**
     * Deleted: a `"..."` literal would otherwise silently become a bool. Write `u"..."` or
     * pass a QString.
     */
    PropertyValue(const char *) = delete;

    ///@{
    /** Copies share a container's contents, as Qt's containers do; a move leaves the null marker.
     */
    PropertyValue(const PropertyValue &other)
    {
        if (other.isPlain())
            std::memcpy(m_data, other.m_data, sizeof m_data);
        else
            copyFrom(other);
    }
    PropertyValue(PropertyValue &&other) noexcept
    {
        std::memcpy(m_data, other.m_data, sizeof m_data);
        other.setTag(Type::Null);
    }
    PropertyValue &operator=(const PropertyValue &other)
    {
        PropertyValue copy(other);
        swap(copy);
        return *this;
    }
    PropertyValue &operator=(PropertyValue &&other) noexcept
    {
        PropertyValue taken(std::move(other));
        swap(taken);
        return *this;
    }
    ///@}
    /** Releases the value's contents. */
    ~PropertyValue()
    {
        if (!isPlain())
            destroy();
    }
    /** Exchanges the two values (never throws). */
    void swap(PropertyValue &other) noexcept
    {
        unsigned char mine[sizeof m_data];
        std::memcpy(mine, m_data, sizeof m_data);
        std::memcpy(m_data, other.m_data, sizeof m_data);
        std::memcpy(other.m_data, mine, sizeof m_data);
    }

    /** The null marker. */
    static PropertyValue null() { return PropertyValue(); }

    /** The kind of value held. */
    Type type() const noexcept
    {
        const qint64 tag = tagWord();
        return tag >= 0 ? Type::String : static_cast<Type>(~tag);
    }
    /** Whether this is the null marker. */
    bool isNull() const { return tagWord() == ~qint64(Type::Null); }
    /** Whether this is a boolean. */
    bool isBool() const { return tagWord() == ~qint64(Type::Bool); }
    /** Every numeric kind: booleans are numbers too. */
    bool isNumber() const
    {
        const qint64 tag = tagWord();
        return tag <= ~qint64(Type::Bool) && tag >= ~qint64(Type::Double);
    }
    /** Whether this is a string. */
    bool isString() const { return tagWord() >= 0; }
    /** Whether this is an array. */
    bool isArray() const { return tagWord() == ~qint64(Type::Array); }
    /** Whether this is a dictionary. */
    bool isDictionary() const { return tagWord() == ~qint64(Type::Dictionary); }

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
    const QString *stringPtr() const { return isString() ? object<QString>() : nullptr; }

    ///@{
    /**
     * In-place access to a container (nullptr for another kind), for code that edits a
     * tree where it stands.
     */
    Array *arrayPtr() { return isArray() ? object<Array>() : nullptr; }
    const Array *arrayPtr() const { return isArray() ? object<Array>() : nullptr; }
    Dictionary *dictionaryPtr() { return isDictionary() ? object<Dictionary>() : nullptr; }
    const Dictionary *dictionaryPtr() const
    {
        return isDictionary() ? object<Dictionary>() : nullptr;
    }
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
    static constexpr size_t tagOffset = 16;

    qint64 tagWord() const noexcept
    {
        qint64 tag;
        std::memcpy(&tag, m_data + tagOffset, sizeof tag);
        return tag;
    }
    void setTag(Type type) noexcept
    {
        const qint64 tag = ~qint64(type);
        std::memcpy(m_data + tagOffset, &tag, sizeof tag);
    }
    template <typename T> void setWord(T word, Type type) noexcept
    {
        static_assert(sizeof(T) <= 8 && std::is_trivially_copyable_v<T>);
        std::memcpy(m_data, &word, sizeof word);
        setTag(type);
    }
    template <typename T> T word() const noexcept
    {
        T word;
        std::memcpy(&word, m_data, sizeof word);
        return word;
    }
    template <typename T, typename Arg> void construct(Arg &&arg, Type type)
    {
        static_assert(sizeof(T) <= tagOffset && alignof(T) <= 8);
        new (m_data) T(std::forward<Arg>(arg));
        setTag(type);
    }
    template <typename T> T *object() { return std::launder(reinterpret_cast<T *>(m_data)); }
    template <typename T> const T *object() const
    {
        return std::launder(reinterpret_cast<const T *>(m_data));
    }
    // The null marker and the numbers: nothing to copy or free but the bytes.
    bool isPlain() const noexcept
    {
        return quint64(tagWord() - ~qint64(Type::Double)) <= quint64(Type::Double);
    }
    void copyFrom(const PropertyValue &other);
    void destroy();

    alignas(8) unsigned char m_data[24];
};

static_assert(sizeof(QString) == 24 && sizeof(QDateTime) <= 8);
static_assert(sizeof(PropertyValue) == 24);
Q_DECLARE_TYPEINFO(PropertyValue, Q_RELOCATABLE_TYPE);

namespace Quorvelle {

/** One member of a dictionary, as PropertyDictionary::fromEntries() takes them. */
struct PropertyDictionary::Entry
{
    QString key;         ///< The member's key.
    PropertyValue value; ///< The member's value.
};

PropertyArray::const_iterator PropertyArray::end() const noexcept
{
    return constData() + size();
}

PropertyArray::iterator PropertyArray::end()
{
    return data() + size();
}

const PropertyValue &PropertyArray::at(qsizetype i) const noexcept
{
    Q_ASSERT(i >= 0 && i < size());
    return constData()[i];
}

PropertyValue &PropertyArray::operator[](qsizetype i)
{
    Q_ASSERT(i >= 0 && i < size());
    return data()[i];
}

PropertyArray::PropertyArray(std::initializer_list<PropertyValue> values)
    : PropertyArray(values.begin(), values.end())
{
}

void PropertyArray::append(const PropertyValue &value)
{
    append(PropertyValue(value));
}

void PropertyArray::append(PropertyValue &&value)
{
    prepareAppend();
    new (elementsOf(d) + d->size) PropertyValue(std::move(value));
    ++d->size;
}

void PropertyArray::push_back(const PropertyValue &value)
{
    append(value);
}

void PropertyArray::push_back(PropertyValue &&value)
{
    append(std::move(value));
}

void PropertyArray::prepend(PropertyValue value)
{
    insert(0, std::move(value));
}

PropertyValue PropertyArray::takeAt(qsizetype i)
{
    PropertyValue taken = std::move((*this)[i]);
    removeAt(i);
    return taken;
}

PropertyValue PropertyArray::takeFirst()
{
    return takeAt(0);
}

PropertyValue PropertyArray::takeLast()
{
    return takeAt(size() - 1);
}

PropertyArray &PropertyArray::operator<<(const PropertyValue &value)
{
    append(value);
    return *this;
}

PropertyDictionary::const_iterator PropertyDictionary::cbegin() const noexcept
{
    return const_iterator(d ? entriesOf(d) : nullptr);
}

PropertyDictionary::const_iterator PropertyDictionary::cend() const noexcept
{
    return const_iterator(d ? entriesOf(d) + d->size : nullptr);
}

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

///@{
/** Readable form for qDebug() and test failures. */
QV_FOUNDATION_EXPORT QDebug operator<<(QDebug debug, const PropertyArray &array);
QV_FOUNDATION_EXPORT QDebug operator<<(QDebug debug, const PropertyDictionary &dictionary);
///@}

} // namespace Quorvelle

/** Readable form of a value for qDebug() and test failures. */
QV_FOUNDATION_EXPORT QDebug operator<<(QDebug debug, const PropertyValue &value);
