#include "PropertyStorage.h"

#include <QDebug>
#include <QHashFunctions>

#include <algorithm>
#include <bit>
#include <limits>
#include <cstring>
#include <memory>

namespace Quorvelle {

using namespace PropertyStorage;
using Entry = PropertyDictionary::Entry;

// A dictionary's region: the header, `capacity` entries, then (for nine or more) the hash
// index of slotCount(capacity) slots, each 0 for free or else a tag in its high bits and an
// entry's position plus one in its low bits. The index uses linear probing.
namespace {

bool sameKey(const QString &stored, QStringView key)
{
    // Keys read from one text often share their characters; comparing where they point
    // settles those without looking at the text.
    return stored.size() == key.size() &&
           (stored.constData() == key.data() ||
            std::memcmp(stored.constData(), key.data(), size_t(key.size()) * 2) == 0);
}

// How a region's slots divide: the position takes the bits its capacity needs, the tag
// (high bits of the key's hash) the rest, so that a probe reads another member's key only
// when the tags agree.
struct SlotLayout
{
    quint32 positionMask;
    size_t indexMask;

    explicit SlotLayout(const Region *region)
        : positionMask(std::bit_width(region->capacity) >= 32
                           ? ~quint32(0)
                           : (quint32(1) << std::bit_width(region->capacity)) - 1),
          indexMask(size_t(slotCount(region->capacity) - 1))
    {
    }
    quint32 tag(size_t hash) const
    {
        return quint32(hash >> (std::numeric_limits<size_t>::digits - 32)) & ~positionMask;
    }
    bool tagged(quint32 slot, quint32 tag) const { return (slot & ~positionMask) == tag; }
    quint32 position(quint32 slot) const { return (slot & positionMask) - 1; }
};

// Where a missing key's slot goes, and what it will hold beside the position.
struct FreeSlot
{
    quint32 *slot = nullptr;
    quint32 tag = 0;
};

// The entry holding `key`, and where its index slot would go.
Entry *findIn(Region *region, QStringView key, FreeSlot *freeSlot = nullptr)
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
    const SlotLayout layout(region);
    const size_t hash = keyHash(key);
    const quint32 tag = layout.tag(hash);
    for (size_t s = hash & layout.indexMask;; s = (s + 1) & layout.indexMask) {
        const quint32 slot = table[s];
        if (!slot) {
            if (freeSlot)
                *freeSlot = FreeSlot{table + s, tag};
            return nullptr;
        }
        if (layout.tagged(slot, tag) && sameKey(all[layout.position(slot)].key, key))
            return all + layout.position(slot);
    }
}

void rebuildIndex(Region *region)
{
    const qsizetype slots = slotCount(region->capacity);
    if (!slots)
        return;
    quint32 *table = indexSlotsOf(region);
    std::memset(table, 0, size_t(slots) * sizeof(quint32));
    const SlotLayout layout(region);
    Entry *all = entriesOf(region);
    for (quint32 k = 0; k < region->size; ++k) {
        const size_t hash = keyHash(all[k].key);
        size_t s = hash & layout.indexMask;
        while (table[s])
            s = (s + 1) & layout.indexMask;
        table[s] = layout.tag(hash) | (k + 1);
    }
}

// Room is there; `freeSlot` is where findIn() said the key would go (indexed regions only).
Entry &emplace(Region *region, QString &&key, PropertyValue &&value, const FreeSlot &freeSlot)
{
    Entry *entry = new (entriesOf(region) + region->size) Entry{std::move(key), std::move(value)};
    ++region->size;
    if (freeSlot.slot)
        *freeSlot.slot = freeSlot.tag | region->size;
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
    const SlotLayout layout(region);
    // The keys are hashed a few members ahead and their slots fetched into the cache
    // meanwhile: in a large object nearly every slot is a cache miss, and waiting for each
    // in turn was most of the time of filling the index.
    constexpr qsizetype ahead = 8;
    size_t pending[ahead];
    const auto hashAhead = [&](const Entry *entry) {
        const size_t hash = hashes ? hashes->hash(entry->key) : keyHash(entry->key);
        __builtin_prefetch(table + (hash & layout.indexMask));
        return hash;
    };
    for (qsizetype k = 0; k < ahead && k < last - first; ++k)
        pending[k] = hashAhead(first + k);
    for (Entry *entry = first; entry != last; ++entry) {
        size_t &next = pending[(entry - first) % ahead];
        const size_t hash = next;
        if (last - entry > ahead)
            next = hashAhead(entry + ahead);
        const quint32 tag = layout.tag(hash);
        size_t s = hash & layout.indexMask;
        while (table[s] && !(layout.tagged(table[s], tag) &&
                             sameKey(entries[layout.position(table[s])].key, entry->key)))
            s = (s + 1) & layout.indexMask;
        if (table[s]) {
            replaceValue(region, entries[layout.position(table[s])].value, entry->value);
            std::destroy_at(entry);
            continue;
        }
        copyValues(entries + region->size, entry, 2);
        table[s] = tag | ++region->size;
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
        FreeSlot slot;
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
    FreeSlot slot;
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
