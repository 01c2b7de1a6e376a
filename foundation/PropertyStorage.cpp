#include "PropertyStorage.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <memory>

namespace Quorvelle::PropertyStorage {

Block *allocateBlock(qsizetype bytes)
{
    // (std::malloc, as the reader's stacks, whose buffers may become blocks.)
    void *memory = std::malloc(sizeof(Block) + size_t(bytes));
    if (!memory)
        throw std::bad_alloc();
    Block *block = new (memory) Block;
    block->ref.storeRelaxed(1);
    block->frozen = 0;
    block->capacity = bytes;
    block->used = 0;
    return block;
}

Region *allocateRegion(bool dictionary, qsizetype capacity)
{
    Block *block = allocateBlock(dictionary ? dictionaryBytes(capacity) : arrayBytes(capacity));
    return placeRegion(block, dictionary, capacity);
}

Region *regionInBuffer(void *buffer, bool dictionary, qsizetype count)
{
    Block *block = new (buffer) Block;
    block->ref.storeRelaxed(1);
    block->frozen = 0;
    block->capacity = dictionary ? dictionaryBytes(count) : arrayBytes(count);
    block->used = 0;
    // placeRegion writes only the header and the index, which lie before and after the
    // elements.
    return placeRegion(block, dictionary, count);
}

namespace {

// The references an element gives up when its block goes, gathered by what they refer to:
// the strings of one text block and the containers of one storage block usually stand
// together, so freeing a block costs one atomic operation per run of them instead of one
// per element.
class Releases
{
public:
    Releases() = default;
    Releases(const Releases &) = delete;
    Releases &operator=(const Releases &) = delete;
    ~Releases()
    {
        flushText();
        flushBlock();
    }

    void release(QString &string)
    {
        QArrayData *header = string.data_ptr().d;
        if (!header)
            return; // static text
        if (header != m_text) {
            flushText();
            m_text = header;
        }
        ++m_textCount;
    }

    void release(Block *block)
    {
        if (block != m_block) {
            flushBlock();
            m_block = block;
        }
        ++m_blockCount;
    }

private:
    void flushText()
    {
        if (m_text && m_text->ref_.fetchAndSubOrdered(m_textCount) == m_textCount)
            QTypedArrayData<char16_t>::deallocate(m_text);
        m_text = nullptr;
        m_textCount = 0;
    }
    void flushBlock()
    {
        if (m_block && m_block->ref.fetchAndSubOrdered(m_blockCount) == m_blockCount)
            destroyBlock(m_block);
        m_block = nullptr;
        m_blockCount = 0;
    }

    QArrayData *m_text = nullptr;
    int m_textCount = 0;
    Block *m_block = nullptr;
    int m_blockCount = 0;
};

} // namespace

void destroyBlock(Block *block)
{
    Releases releases;
    // A string or container gives its reference to `releases`; anything else is destroyed.
    // Inner references of a frozen block were never counted: they are dropped.
    const auto destroyValue = [block, &releases](PropertyValue &value) {
        if (QString *string = const_cast<QString *>(value.stringPtr())) {
            releases.release(*string);
        } else if (Region *region = regionOf(value)) {
            if (!(block->frozen && region->block() == block))
                releases.release(region->block());
        } else {
            std::destroy_at(&value);
        }
    };
    // Every region placed, in order: its live elements or members.
    for (char *at = block->regions(), *end = at + block->used; at < end;) {
        auto *region = reinterpret_cast<Region *>(at);
        if (region->isDictionary()) {
            PropertyDictionary::Entry *entries = entriesOf(region);
            for (quint32 k = 0; k < region->size; ++k) {
                releases.release(entries[k].key);
                destroyValue(entries[k].value);
            }
        } else {
            PropertyValue *elements = elementsOf(region);
            for (quint32 k = 0; k < region->size; ++k)
                destroyValue(elements[k]);
        }
        at += regionBytes(region);
    }
    block->~Block();
    std::free(block);
}

Arena::Arena(qsizetype textBytes)
    : m_nextBytes(std::clamp<qsizetype>(2 * textBytes, 256, blockBytes))
{
}

void Arena::nextBlock(qsizetype bytes)
{
    settle();
    // The blocks after the first double up to 64 KB.
    m_block = allocateBlock(std::max(bytes, m_nextBytes));
    m_nextBytes = std::min(2 * m_nextBytes, blockBytes);
    // The arena's reservation stands for the references it hands out until it settles.
    m_block->ref.storeRelaxed(reservation);
    m_block->frozen = 1;
    m_issued = 0;
}

void Arena::settle()
{
    if (!m_block)
        return;
    // The containers made over this block's regions (some may be gone already) now count
    // for themselves.
    const int change = int(m_issued) - reservation;
    if (m_block->ref.fetchAndAddOrdered(change) + change == 0)
        destroyBlock(m_block);
    m_block = nullptr;
}

} // namespace Quorvelle::PropertyStorage
