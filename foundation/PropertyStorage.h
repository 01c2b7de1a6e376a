#pragma once

// The storage blocks behind PropertyArray and PropertyDictionary: region sizes, blocks of a
// container's own, and the arena in which the JSON reader places the containers of one
// text. Private to the kit.

#include "PropertyValue.h"

#include <bit>
#include <cstring>
#include <limits>

namespace Quorvelle::PropertyStorage {

constexpr qsizetype arrayBytes(qsizetype capacity)
{
    return qsizetype(sizeof(Region)) + capacity * qsizetype(sizeof(PropertyValue));
}

// A dictionary of nine or more members has a hash index of 32-bit slots (each 0 for free or
// a member's position plus one) at a load of at most two thirds; smaller ones are searched
// in order, which is as fast as hashing the key.
constexpr qsizetype indexedFrom = 9;
constexpr qsizetype slotCount(qsizetype capacity)
{
    return capacity >= indexedFrom ? qsizetype(std::bit_ceil(quint64(capacity + capacity / 2 + 1)))
                                   : 0;
}

constexpr qsizetype dictionaryBytes(qsizetype capacity)
{
    const qsizetype bytes = qsizetype(sizeof(Region)) +
                            capacity * qsizetype(sizeof(PropertyDictionary::Entry)) +
                            slotCount(capacity) * qsizetype(sizeof(quint32));
    return (bytes + 7) & ~qsizetype(7);
}

inline qsizetype regionBytes(const Region *region)
{
    return region->isDictionary() ? dictionaryBytes(region->capacity)
                                  : arrayBytes(region->capacity);
}

inline PropertyValue *elementsOf(Region *region)
{
    return reinterpret_cast<PropertyValue *>(region + 1);
}

inline PropertyDictionary::Entry *entriesOf(Region *region)
{
    return reinterpret_cast<PropertyDictionary::Entry *>(region + 1);
}

inline quint32 *indexSlotsOf(Region *region)
{
    return reinterpret_cast<quint32 *>(entriesOf(region) + region->capacity);
}

// The region of a value that is a non-empty container, else nullptr.
inline Region *regionOf(const PropertyValue &value)
{
    if (const PropertyArray *array = value.arrayPtr())
        return array->storageRegion();
    if (const PropertyDictionary *dictionary = value.dictionaryPtr())
        return dictionary->storageRegion();
    return nullptr;
}

// A block with room for `bytes` of regions, one reference held by the caller.
Block *allocateBlock(qsizetype bytes);

// An empty region for `capacity` elements or members (index cleared) at the block's free
// end; the block must have room.
inline Region *placeRegion(Block *block, bool dictionary, qsizetype capacity)
{
    Q_ASSERT(capacity >= 0 && capacity <= qsizetype(std::numeric_limits<quint32>::max()));
    char *at = block->regions() + block->used;
    auto *region = new (at)
        Region{0, quint32(capacity), quint64(at - reinterpret_cast<char *>(block)) | dictionary};
    block->used += dictionary ? dictionaryBytes(capacity) : arrayBytes(capacity);
    if (dictionary && capacity >= indexedFrom)
        std::memset(indexSlotsOf(region), 0, size_t(slotCount(capacity)) * sizeof(quint32));
    return region;
}

// Copies the bytes of `count` values (each three words).
inline void copyValues(void *to, const void *from, qsizetype count)
{
    auto *t = static_cast<quint64 *>(to);
    const auto *f = static_cast<const quint64 *>(from);
    for (qsizetype k = 0; k < 3 * count; ++k)
        t[k] = f[k];
}

// An empty region in a block of its own, whose one reference the caller holds.
Region *allocateRegion(bool dictionary, qsizetype capacity);

// What a buffer keeps in front of a container's elements to become the container's block.
constexpr size_t bufferPrefix = sizeof(Block) + sizeof(Region);
static_assert(bufferPrefix % alignof(PropertyValue) == 0);

// The bytes of such a buffer holding one container of `count` elements or members.
constexpr size_t bufferBytes(bool dictionary, qsizetype count)
{
    return bufferPrefix - sizeof(Region) +
           size_t(dictionary ? dictionaryBytes(count) : arrayBytes(count));
}

// The block of one container made in place from `buffer` (from std::malloc, of
// bufferBytes(dictionary, count) bytes), whose `count` elements or members already stand
// after the prefix: the headers are written (the index cleared) and the region is empty,
// its one reference held by the caller. The elements are then adopted as for any region.
Region *regionInBuffer(void *buffer, bool dictionary, qsizetype count);

// The hash of a dictionary key, as the index uses it.
size_t keyHash(QStringView key);

// Remembers the hashes of keys by where their text is: the reader hands out a repeated key
// as the same string, so most keys of a document are hashed once per parse.
class KeyHashes
{
public:
    size_t hash(const QString &key)
    {
        Slot &slot = m_slots[(quintptr(key.constData()) >> 3) % slotCount];
        if (slot.data != key.constData() || slot.size != key.size())
            slot = Slot{key.constData(), key.size(), keyHash(key)};
        return slot.hash;
    }

private:
    static constexpr size_t slotCount = 251;
    struct Slot
    {
        const QChar *data = nullptr;
        qsizetype size = 0;
        size_t hash = 0;
    };
    Slot m_slots[slotCount];
};

// Fills an empty dictionary region with room for them from the entries [first, last),
// whose bytes are taken over: the caller forgets them without destroying them. A later
// duplicate key replaces the value of the earlier one where it stands (the dropped key and
// value are destroyed here). `hashes`, when given, remembers the keys' hashes.
void adoptEntries(Region *region, PropertyDictionary::Entry *first, PropertyDictionary::Entry *last,
                  KeyHashes *hashes = nullptr);

// Where the JSON reader puts the containers of one text: regions placed one after the
// other in frozen blocks of up to 64 KB (the first twice the text's length, the next ones
// doubling, so a short text takes little; a container larger than a quarter of 64 KB gets
// a block of its own; the block being filled then takes no more if that container refers to
// it, since blocks may refer only to older ones). Each region comes with one reference for the
// container made over it; when that container becomes an element of another in the same block, the
// caller gives the reference back (inner references are not counted). While the arena fills a block
// it holds a large reservation on its count instead of counting every container atomically, and
// settles the count once when it moves on.
class Arena
{
public:
    // `textBytes` sizes the first block, so that a short text takes a short block.
    explicit Arena(qsizetype textBytes);
    ~Arena() { settle(); }
    Arena(const Arena &) = delete;
    Arena &operator=(const Arena &) = delete;

    Region *place(bool dictionary, qsizetype count)
    {
        const qsizetype bytes = dictionary ? dictionaryBytes(count) : arrayBytes(count);
        if (!m_block || m_block->capacity - m_block->used < bytes) [[unlikely]] {
            if (bytes > blockBytes / 4)
                return allocateRegion(dictionary, count);
            nextBlock(bytes);
        }
        ++m_issued;
        return placeRegion(m_block, dictionary, count);
    }

    // Moves the bytes of `count` elements into the empty array region `container`: those
    // that are containers of the same block become inner references, which do not count.
    void fillArray(Region *container, const PropertyValue *elements, qsizetype count)
    {
        copyValues(elementsOf(container), elements, count);
        adoptElements(container, count);
    }
    // The same for `count` elements already standing in the array region `container`.
    void adoptElements(Region *container, qsizetype count)
    {
        container->size = quint32(count);
        if (container->block() == m_block)
            uncountInner(elementsOf(container), count);
        else
            closeIfReferred(elementsOf(container), count);
    }
    // The same for the values of dictionary members about to go into `container`.
    void adoptInto(Region *container, const PropertyValue &value)
    {
        if (container->block() == m_block)
            uncountInner(&value, 1);
        else
            closeIfReferred(&value, 1);
    }

private:
    // A container in a block of its own that refers to the block being filled: a container
    // placed later in that block (its parent, say) would refer to it in turn, and the two
    // blocks would keep each other alive for ever. So that block takes no more containers.
    void closeIfReferred(const PropertyValue *values, qsizetype count)
    {
        for (qsizetype k = 0; k < count && m_block; ++k) {
            if (Region *region = regionOf(values[k]); region && region->block() == m_block)
                settle();
        }
    }

    void uncountInner(const PropertyValue *values, qsizetype count)
    {
        for (qsizetype k = 0; k < count; ++k) {
            if (Region *region = regionOf(values[k]); region && region->block() == m_block)
                --m_issued;
        }
    }

private:
    static constexpr qsizetype blockBytes = 64 * 1024 - qsizetype(sizeof(Block)) - 32;
    static constexpr int reservation = 1 << 30;
    void nextBlock(qsizetype bytes);
    void settle();

    Block *m_block = nullptr;
    qsizetype m_issued = 0;
    qsizetype m_nextBytes;
};

} // namespace Quorvelle::PropertyStorage
