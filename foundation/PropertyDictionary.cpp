#include "PropertyValue.h"

#include <QDebug>
#include <QHashFunctions>

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace Quorvelle {

// One block: this header, `capacity` entries, then (for larger dictionaries) the hash index
// of `indexMask + 1` slots, each 0 for free or an entry's position plus one. The index
// uses linear probing at a load of at most two thirds.
class PropertyDictionary::Data
{
public:
    QAtomicInt ref{1};
    quint32 size = 0;
    quint32 capacity = 0;
    quint32 indexMask = 0; // 0: no index, members are searched in order

    // Up to this many members a search in order is as fast as hashing the key.
    static constexpr quint32 indexedFrom = 9;

    Entry *entries() { return reinterpret_cast<Entry *>(reinterpret_cast<char *>(this) + header); }
    quint32 *indexSlots() { return reinterpret_cast<quint32 *>(entries() + capacity); }

    static Data *allocate(quint32 capacity)
    {
        const quint32 slotCount =
            capacity >= indexedFrom ? std::bit_ceil(capacity + capacity / 2 + 1) : 0;
        void *block = ::operator new(header + size_t(capacity) * sizeof(Entry) +
                                     size_t(slotCount) * sizeof(quint32));
        Data *data = new (block) Data;
        data->capacity = capacity;
        if (slotCount) {
            data->indexMask = slotCount - 1;
            std::memset(data->indexSlots(), 0, slotCount * sizeof(quint32));
        }
        return data;
    }

    static void release(Data *data)
    {
        if (!data || data->ref.deref())
            return;
        Entry *entries = data->entries();
        std::destroy(entries, entries + data->size);
        data->~Data();
        ::operator delete(static_cast<void *>(data));
    }

    static size_t hash(QStringView key) { return qHash(key, QHashSeed::globalSeed()); }

    static bool sameKey(const QString &stored, QStringView key)
    {
        // Keys read from one text often share their characters; comparing where they
        // point settles those without looking at the text.
        return stored.size() == key.size() &&
               (stored.constData() == key.data() ||
                std::memcmp(stored.constData(), key.data(), size_t(key.size()) * 2) == 0);
    }

    // The entry holding `key`, and where its index slot is or would go.
    Entry *find(QStringView key, quint32 **slotOut = nullptr)
    {
        Entry *all = entries();
        if (!indexMask) {
            for (quint32 k = 0; k < size; ++k) {
                if (sameKey(all[k].key, key))
                    return all + k;
            }
            return nullptr;
        }
        quint32 *table = indexSlots();
        for (size_t s = hash(key) & indexMask;; s = (s + 1) & indexMask) {
            const quint32 slot = table[s];
            if (!slot) {
                if (slotOut)
                    *slotOut = table + s;
                return nullptr;
            }
            if (sameKey(all[slot - 1].key, key))
                return all + (slot - 1);
        }
    }

    void rebuildIndex()
    {
        if (!indexMask)
            return;
        quint32 *table = indexSlots();
        std::memset(table, 0, (size_t(indexMask) + 1) * sizeof(quint32));
        Entry *all = entries();
        for (quint32 k = 0; k < size; ++k) {
            size_t s = hash(all[k].key) & indexMask;
            while (table[s])
                s = (s + 1) & indexMask;
            table[s] = k + 1;
        }
    }

    // Room is there; `slot` is where find() said the key would go (indexed blocks only).
    Entry &emplace(QString &&key, PropertyValue &&value, quint32 *slot)
    {
        Entry *entry = new (entries() + size) Entry{std::move(key), std::move(value)};
        ++size;
        if (slot)
            *slot = size;
        return *entry;
    }

private:
    static constexpr size_t header =
        (sizeof(QAtomicInt) + 3 * sizeof(quint32) + alignof(Entry) - 1) / alignof(Entry) *
        alignof(Entry);
};

PropertyDictionary::PropertyDictionary(
    std::initializer_list<std::pair<QString, PropertyValue>> members)
{
    if (members.size() == 0)
        return;
    d = Data::allocate(quint32(members.size()));
    for (const auto &[key, value] : members)
        insert(key, value);
}

PropertyDictionary::PropertyDictionary(const PropertyDictionary &other) noexcept : d(other.d)
{
    if (d)
        d->ref.ref();
}

PropertyDictionary &PropertyDictionary::operator=(const PropertyDictionary &other) noexcept
{
    PropertyDictionary copy(other);
    std::swap(d, copy.d);
    return *this;
}

PropertyDictionary::~PropertyDictionary()
{
    Data::release(d);
}

PropertyDictionary PropertyDictionary::fromEntries(Entry *first, Entry *last)
{
    PropertyDictionary dictionary;
    if (first == last)
        return dictionary;
    Data *data = Data::allocate(quint32(last - first));
    dictionary.d = data;
    for (Entry *entry = first; entry != last; ++entry) {
        quint32 *slot = nullptr;
        if (Entry *existing = data->find(entry->key, &slot))
            existing->value = std::move(entry->value);
        else
            data->emplace(std::move(entry->key), std::move(entry->value), slot);
    }
    return dictionary;
}

qsizetype PropertyDictionary::size() const noexcept
{
    return d ? qsizetype(d->size) : 0;
}

void PropertyDictionary::reserve(qsizetype capacity)
{
    detach(capacity);
}

void PropertyDictionary::detach(qsizetype capacity)
{
    const qsizetype size = this->size();
    capacity = std::max(capacity, size);
    if (d && d->ref.loadRelaxed() == 1 && capacity <= qsizetype(d->capacity))
        return;
    if (!d && capacity == 0)
        return;
    Data *copy = Data::allocate(quint32(capacity));
    if (d) {
        Entry *from = d->entries();
        Entry *to = copy->entries();
        // Sole owner: the members move; shared: they are copied and the others keep theirs.
        if (d->ref.loadRelaxed() == 1)
            std::uninitialized_move(from, from + size, to);
        else
            std::uninitialized_copy(from, from + size, to);
        copy->size = quint32(size);
        copy->rebuildIndex();
    }
    Data::release(std::exchange(d, copy));
}

const PropertyDictionary::Entry *PropertyDictionary::findEntry(QStringView key) const
{
    return d ? d->find(key) : nullptr;
}

PropertyDictionary::Entry *PropertyDictionary::findEntryForWriting(QStringView key)
{
    if (!d || !d->find(key))
        return nullptr;
    detach(size());
    return d->find(key);
}

PropertyDictionary::Entry &PropertyDictionary::append(QString &&key, PropertyValue &&value)
{
    const qsizetype size = this->size();
    if (!d || d->ref.loadRelaxed() != 1 || size == qsizetype(d->capacity))
        detach(size < 4 ? 4 : size * 2);
    quint32 *slot = nullptr;
    d->find(key, &slot);
    return d->emplace(std::move(key), std::move(value), slot);
}

PropertyValue &PropertyDictionary::operator[](const QString &key)
{
    if (Entry *entry = findEntryForWriting(key))
        return entry->value;
    return append(QString(key), PropertyValue()).value;
}

PropertyDictionary::iterator PropertyDictionary::insert(const QString &key,
                                                        const PropertyValue &value)
{
    return insert(QString(key), PropertyValue(value));
}

PropertyDictionary::iterator PropertyDictionary::insert(QString &&key, PropertyValue &&value)
{
    if (Entry *entry = findEntryForWriting(key)) {
        entry->value = std::move(value);
        return iterator(entry);
    }
    return iterator(&append(std::move(key), std::move(value)));
}

qsizetype PropertyDictionary::remove(const QString &key)
{
    Entry *entry = findEntryForWriting(key);
    if (!entry)
        return 0;
    Entry *end = d->entries() + d->size;
    std::move(entry + 1, end, entry);
    std::destroy_at(end - 1);
    --d->size;
    d->rebuildIndex();
    return 1;
}

PropertyDictionary::Entry *PropertyDictionary::mutableEntries()
{
    detach(size());
    return d ? d->entries() : nullptr;
}

void PropertyDictionary::truncate(qsizetype newSize)
{
    if (!d || newSize >= qsizetype(d->size))
        return;
    Entry *entries = d->entries();
    std::destroy(entries + newSize, entries + d->size);
    d->size = quint32(newSize);
    d->rebuildIndex();
}

QStringList PropertyDictionary::keys() const
{
    QStringList keys;
    keys.reserve(size());
    for (auto it = cbegin(), e = cend(); it != e; ++it)
        keys.append(it.key());
    return keys;
}

QList<PropertyValue> PropertyDictionary::values() const
{
    return QList<PropertyValue>(cbegin(), cend());
}

PropertyDictionary::const_iterator PropertyDictionary::constFind(const QString &key) const
{
    const Entry *entry = findEntry(key);
    return entry ? const_iterator(entry) : cend();
}

PropertyDictionary::iterator PropertyDictionary::find(const QString &key)
{
    Entry *entry = findEntryForWriting(key);
    return entry ? iterator(entry) : end();
}

PropertyDictionary::iterator PropertyDictionary::begin()
{
    detach(size());
    return iterator(d ? d->entries() : nullptr);
}

PropertyDictionary::iterator PropertyDictionary::end()
{
    detach(size());
    return iterator(d ? d->entries() + d->size : nullptr);
}

PropertyDictionary::const_iterator PropertyDictionary::cbegin() const noexcept
{
    return const_iterator(d ? d->entries() : nullptr);
}

PropertyDictionary::const_iterator PropertyDictionary::cend() const noexcept
{
    return const_iterator(d ? d->entries() + d->size : nullptr);
}

bool PropertyDictionary::operator==(const PropertyDictionary &other) const
{
    if (d == other.d)
        return true;
    if (size() != other.size())
        return false;
    for (auto it = cbegin(), e = cend(); it != e; ++it) {
        const Entry *match = other.findEntry(it.key());
        if (!match || !(match->value == it.value()))
            return false;
    }
    return true;
}

QDebug operator<<(QDebug debug, const PropertyDictionary &dictionary)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "PropertyDictionary(";
    for (auto it = dictionary.cbegin(), e = dictionary.cend(); it != e; ++it)
        debug << '(' << it.key() << ", " << it.value() << ')';
    return debug << ')';
}

} // namespace Quorvelle
