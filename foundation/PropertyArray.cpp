#include "PropertyStorage.h"

#include <QDebug>

#include <algorithm>
#include <memory>

namespace Quorvelle {

using namespace PropertyStorage;

void PropertyArray::reallocate(qsizetype capacity)
{
    const qsizetype size = this->size();
    capacity = std::max(capacity, size);
    Region *fresh = capacity ? allocateRegion(false, capacity) : nullptr;
    if (size) {
        PropertyValue *from = elementsOf(d);
        PropertyValue *to = elementsOf(fresh);
        if (isDetached(d)) {
            // Nothing else refers to the old block: the elements move by their bytes and
            // the old region forgets them.
            std::memcpy(static_cast<void *>(to), static_cast<const void *>(from),
                        size_t(size) * sizeof(PropertyValue));
            d->size = 0;
        } else {
            std::uninitialized_copy(from, from + size, to);
        }
        fresh->size = quint32(size);
    }
    deref(std::exchange(d, fresh));
}

void PropertyArray::reserve(qsizetype capacity)
{
    if (capacity > this->capacity() || (d && !isDetached(d)))
        reallocate(std::max(capacity, this->capacity()));
}

void PropertyArray::append(const PropertyArray &other)
{
    if (other.isEmpty())
        return;
    if (isEmpty()) {
        *this = other;
        return;
    }
    // `other` may be this very array: it is kept alive by a copy while this one grows.
    const PropertyArray keep = other;
    reserve(size() + keep.size());
    std::uninitialized_copy(keep.begin(), keep.end(), elementsOf(d) + d->size);
    d->size += quint32(keep.size());
}

void PropertyArray::insert(qsizetype i, PropertyValue value)
{
    Q_ASSERT(i >= 0 && i <= size());
    prepareAppend();
    PropertyValue *elements = elementsOf(d);
    // The values are relocatable: the tail moves up by its bytes.
    std::memmove(static_cast<void *>(elements + i + 1), static_cast<const void *>(elements + i),
                 size_t(d->size - i) * sizeof(PropertyValue));
    new (elements + i) PropertyValue(std::move(value));
    ++d->size;
}

void PropertyArray::removeAt(qsizetype i)
{
    Q_ASSERT(i >= 0 && i < size());
    detach();
    PropertyValue *elements = elementsOf(d);
    std::destroy_at(elements + i);
    std::memmove(static_cast<void *>(elements + i), static_cast<const void *>(elements + i + 1),
                 size_t(d->size - i - 1) * sizeof(PropertyValue));
    --d->size;
}

void PropertyArray::resize(qsizetype size)
{
    const qsizetype before = this->size();
    if (size < before) {
        detach();
        std::destroy(elementsOf(d) + size, elementsOf(d) + before);
        d->size = quint32(size);
    } else if (size > before) {
        reserve(size);
        std::uninitialized_value_construct(elementsOf(d) + before, elementsOf(d) + size);
        d->size = quint32(size);
    }
}

bool PropertyArray::operator==(const PropertyArray &other) const
{
    return d == other.d || std::equal(begin(), end(), other.begin(), other.end());
}

QList<PropertyValue> PropertyArray::toList() const
{
    return QList<PropertyValue>(begin(), end());
}

QDebug operator<<(QDebug debug, const PropertyArray &array)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "PropertyArray(";
    for (qsizetype k = 0; k < array.size(); ++k)
        debug << (k ? ", " : "") << array.at(k);
    return debug << ')';
}

} // namespace Quorvelle
