#include "PropertyStorage.h"

#include <QDebug>
#include <QHashFunctions>

#include <algorithm>
#include <cstring>
#include <memory>

namespace Quorvelle {

using namespace PropertyStorage;
using Entry = PropertyDictionary::Entry;

// A dictionary's region: the header, `capacity` entries, then (for nine or more) the hash
// index of slotCount(capacity) slots, each 0 for free or an entry's position plus one. The
// index uses linear probing.
namespace {

bool sameKey(const QString &stored, QStringView key)
{
    // Keys read from one text often share their characters; comparing where they point
    // settles those without looking at the text.
    return stored.size() == key.size() &&
           (stored.constData() == key.data() ||
            std::memcmp(stored.constData(), key.data(), size_t(key.size()) * 2) == 0);
}

quint32 indexMask(const Region *region)
{
    return quint32(slotCount(region->capacity) - 1);
}

// The entry holding `key`, and where its index slot is or would go.
Entry *findIn(Region *region, QStringView key, quint32 **slotOut = nullptr)
{
    Entry *all = entriesOf(region);
    if (!slotCount(region->capacity)) {
        for (quint32 k = 0; k < region->size; ++k) {
            if (sameKey(all[k].key, key))
                return all + k;
        }
        return nullptr;
    }
    quint32 *table = indexSlotsOf(region);
    const quint32 mask = indexMask(region);
    for (size_t s = keyHash(key) & mask;; s = (s + 1) & mask) {
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

void rebuildIndex(Region *region)
{
    const qsizetype slots = slotCount(region->capacity);
    if (!slots)
        return;
    quint32 *table = indexSlotsOf(region);
    std::memset(table, 0, size_t(slots) * sizeof(quint32));
    const quint32 mask = indexMask(region);
    Entry *all = entriesOf(region);
    for (quint32 k = 0; k < region->size; ++k) {
        size_t s = keyHash(all[k].key) & mask;
        while (table[s])
            s = (s + 1) & mask;
        table[s] = k + 1;
    }
}

// Room is there; `slot` is where findIn() said the key would go (indexed regions only).
Entry &emplace(Region *region, QString &&key, PropertyValue &&value, quint32 *slot)
{
    Entry *entry = new (entriesOf(region) + region->size) Entry{std::move(key), std::move(value)};
    ++region->size;
    if (slot)
        *slot = region->size;
    return *entry;
}

} // namespace

size_t PropertyStorage::keyHash(QStringView key)
{
    return qHash(key, QHashSeed::globalSeed());
}

// A later duplicate's value replaces the earlier one, whose reference is given up: unless it
// is an inner reference of the region's frozen block, which was never counted.
static void replaceValue(Region *region, PropertyValue &earlier, PropertyValue &later)
{
    Block *block = region->block();
    if (Region *held = regionOf(earlier); held && block->frozen && held->block() == block)
        new (&earlier) PropertyValue(std::move(later));
    else
        earlier = std::move(later);
}

void PropertyStorage::adoptEntries(Region *region, Entry *first, Entry *last, KeyHashes *hashes)
{
    Q_ASSERT(region->size == 0 && last - first <= qsizetype(region->capacity));
    if (last - first == 1) {
        copyValues(entriesOf(region), first, 2);
        region->size = 1;
        return;
    }
    Entry *const entries = entriesOf(region);
    const qsizetype slots = slotCount(region->capacity);
    if (!slots) {
        // A few members: each key is compared with those before it.
        for (Entry *entry = first; entry != last; ++entry) {
            Entry *existing = nullptr;
            for (quint32 k = 0; k < region->size && !existing; ++k) {
                if (sameKey(entries[k].key, entry->key))
                    existing = entries + k;
            }
            if (existing) {
                replaceValue(region, existing->value, entry->value);
                std::destroy_at(entry);
                continue;
            }
            copyValues(entries + region->size, entry, 2);
            ++region->size;
        }
        return;
    }
    quint32 *const table = indexSlotsOf(region);
    const size_t mask = size_t(slots - 1);
    for (Entry *entry = first; entry != last; ++entry) {
        const size_t hash = hashes ? hashes->hash(entry->key) : keyHash(entry->key);
        size_t s = hash & mask;
        while (table[s] && !sameKey(entries[table[s] - 1].key, entry->key))
            s = (s + 1) & mask;
        if (table[s]) {
            replaceValue(region, entries[table[s] - 1].value, entry->value);
            std::destroy_at(entry);
            continue;
        }
        copyValues(entries + region->size, entry, 2);
        table[s] = ++region->size;
    }
}

PropertyDictionary::PropertyDictionary(
    std::initializer_list<std::pair<QString, PropertyValue>> members)
{
    if (members.size() == 0)
        return;
    d = allocateRegion(true, qsizetype(members.size()));
    for (const auto &[key, value] : members)
        insert(key, value);
}

PropertyDictionary PropertyDictionary::fromEntries(Entry *first, Entry *last)
{
    PropertyDictionary dictionary;
    if (first == last)
        return dictionary;
    dictionary.d = allocateRegion(true, last - first);
    for (Entry *entry = first; entry != last; ++entry) {
        quint32 *slot = nullptr;
        if (Entry *existing = findIn(dictionary.d, entry->key, &slot))
            existing->value = std::move(entry->value);
        else
            emplace(dictionary.d, std::move(entry->key), std::move(entry->value), slot);
    }
    return dictionary;
}

void PropertyDictionary::reserve(qsizetype capacity)
{
    detach(capacity);
}

void PropertyDictionary::detach(qsizetype capacity)
{
    const qsizetype size = this->size();
    capacity = std::max(capacity, size);
    if (d && isDetached(d) && capacity <= qsizetype(d->capacity))
        return;
    if (!d && capacity == 0)
        return;
    Region *copy = allocateRegion(true, capacity);
    if (d) {
        Entry *from = entriesOf(d);
        Entry *to = entriesOf(copy);
        // Sole owner: the members move by their bytes; shared: they are copied and the
        // others keep theirs.
        if (isDetached(d)) {
            std::memcpy(static_cast<void *>(to), static_cast<const void *>(from),
                        size_t(size) * sizeof(Entry));
            d->size = 0;
        } else {
            std::uninitialized_copy(from, from + size, to);
        }
        copy->size = quint32(size);
        rebuildIndex(copy);
    }
    deref(std::exchange(d, copy));
}

const Entry *PropertyDictionary::findEntry(QStringView key) const
{
    return d ? findIn(d, key) : nullptr;
}

Entry *PropertyDictionary::findEntryForWriting(QStringView key)
{
    if (!d || !findIn(d, key))
        return nullptr;
    detach(size());
    return findIn(d, key);
}

Entry &PropertyDictionary::append(QString &&key, PropertyValue &&value)
{
    const qsizetype size = this->size();
    if (!d || !isDetached(d) || size == qsizetype(d->capacity))
        detach(size < 4 ? 4 : size * 2);
    quint32 *slot = nullptr;
    findIn(d, key, &slot);
    return emplace(d, std::move(key), std::move(value), slot);
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
    Entry *end = entriesOf(d) + d->size;
    std::move(entry + 1, end, entry);
    std::destroy_at(end - 1);
    --d->size;
    rebuildIndex(d);
    return 1;
}

Entry *PropertyDictionary::mutableEntries()
{
    detach(size());
    return d ? entriesOf(d) : nullptr;
}

void PropertyDictionary::truncate(qsizetype newSize)
{
    if (!d || newSize >= qsizetype(d->size))
        return;
    Entry *entries = entriesOf(d);
    std::destroy(entries + newSize, entries + d->size);
    d->size = quint32(newSize);
    rebuildIndex(d);
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
    return iterator(d ? entriesOf(d) : nullptr);
}

PropertyDictionary::iterator PropertyDictionary::end()
{
    detach(size());
    return iterator(d ? entriesOf(d) + d->size : nullptr);
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
