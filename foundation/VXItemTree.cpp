#include "VXItemTree.h"

#include <QSet>

#include <algorithm>

namespace {
const QString kItems = QStringLiteral("items");
const QString kChecked = QStringLiteral("checked");
const QString kSize = QStringLiteral("size");

const PropertyValue::Array *childrenOf(const PropertyValue &item)
{
    const PropertyValue::Dictionary *dictionary = item.dictionaryPtr();
    if (!dictionary)
        return nullptr;
    const auto it = dictionary->constFind(kItems);
    return it == dictionary->constEnd() ? nullptr : it->arrayPtr();
}

PropertyValue::Array *mutableChildrenOf(PropertyValue &item)
{
    PropertyValue::Dictionary *dictionary = item.dictionaryPtr();
    if (!dictionary || !dictionary->contains(kItems))
        return nullptr;
    return (*dictionary)[kItems].arrayPtr();
}

bool isLeaf(const PropertyValue &item)
{
    return item.contains(kChecked);
}

// Ordering of the kinds for values that cannot be compared by content.
int kindRank(const PropertyValue &value)
{
    if (value.isNumber())
        return 0;
    return int(value.type()) + 1;
}

template <typename T> int threeWay(const T &a, const T &b)
{
    return a < b ? -1 : (b < a ? 1 : 0);
}

int compareNumbers(const PropertyValue &a, const PropertyValue &b)
{
    using Type = PropertyValue::Type;
    const bool aReal = a.type() == Type::Double;
    const bool bReal = b.type() == Type::Double;
    if (aReal || bReal)
        return threeWay(a.toDouble(), b.toDouble());
    // Exact for the whole range of both integer kinds.
    const bool aNegative = a.type() == Type::Integer && a.toInt64() < 0;
    const bool bNegative = b.type() == Type::Integer && b.toInt64() < 0;
    if (aNegative != bNegative)
        return aNegative ? -1 : 1;
    return aNegative ? threeWay(a.toInt64(), b.toInt64()) : threeWay(a.toUInt64(), b.toUInt64());
}

PropertyValue copyWithChildren(
    const PropertyValue &item, PropertyValue::Dictionary copy,
    const std::function<PropertyValue::Array(const PropertyValue::Array &)> &mapChildren)
{
    const PropertyValue::Dictionary *original = item.dictionaryPtr();
    const auto it = original->constFind(kItems);
    if (it != original->constEnd()) {
        // Put back after the removal, so "items" survives even when it was named.
        const PropertyValue::Array *children = it->arrayPtr();
        copy.insert(kItems, children ? PropertyValue(mapChildren(*children)) : *it);
    }
    return PropertyValue(std::move(copy));
}
} // namespace

int VXSortDescriptor::defaultComparison(const PropertyValue &a, const PropertyValue &b)
{
    if (a.isNumber() && b.isNumber())
        return compareNumbers(a, b);
    const int rankA = kindRank(a);
    const int rankB = kindRank(b);
    if (rankA != rankB)
        return threeWay(rankA, rankB);
    switch (a.type()) {
    case PropertyValue::Type::String:
        return std::clamp(QString::compare(a.toString(), b.toString()), -1, 1);
    case PropertyValue::Type::Date:
        return threeWay(a.toDateTime(), b.toDateTime());
    case PropertyValue::Type::Data:
        return std::clamp(a.toData().compare(b.toData()), -1, 1);
    default:
        return 0;
    }
}

int VXSortDescriptor::compare(const PropertyValue &itemA, const PropertyValue &itemB) const
{
    const std::optional<PropertyValue> a = itemA.value(key);
    const std::optional<PropertyValue> b = itemB.value(key);
    int result = 0;
    if (!a || !b)
        result = threeWay(a.has_value(), b.has_value());
    else
        result = comparison ? comparison(*a, *b) : defaultComparison(*a, *b);
    return ascending ? result : -result;
}

PropertyValue VXItemRemovingKeys(const PropertyValue &item, const QStringList &keys)
{
    if (!item.isDictionary())
        return item;
    PropertyValue::Dictionary copy = item.toDictionary();
    for (const QString &key : keys)
        copy.remove(key);
    return copyWithChildren(item, std::move(copy), [&keys](const PropertyValue::Array &children) {
        return VXItemsRemovingKeys(children, keys);
    });
}

PropertyValue::Array VXItemsRemovingKeys(const PropertyValue::Array &items, const QStringList &keys)
{
    PropertyValue::Array result;
    result.reserve(items.size());
    for (const PropertyValue &item : items)
        result.append(VXItemRemovingKeys(item, keys));
    return result;
}

PropertyValue VXItemKeepingKeys(const PropertyValue &item, const QStringList &keys)
{
    if (!item.isDictionary())
        return item;
    const QSet<QString> kept(keys.cbegin(), keys.cend());
    PropertyValue::Dictionary copy = item.toDictionary();
    copy.removeIf([&kept](const QString &key, const PropertyValue &) { return !kept.contains(key); });
    return copyWithChildren(item, std::move(copy), [&keys](const PropertyValue::Array &children) {
        return VXItemsKeepingKeys(children, keys);
    });
}

PropertyValue::Array VXItemsKeepingKeys(const PropertyValue::Array &items, const QStringList &keys)
{
    PropertyValue::Array result;
    result.reserve(items.size());
    for (const PropertyValue &item : items)
        result.append(VXItemKeepingKeys(item, keys));
    return result;
}

qint64 VXItemCheckedState(const PropertyValue &item)
{
    if (const std::optional<PropertyValue> checked = item.value(kChecked))
        return checked->toInt64();
    if (const PropertyValue::Array *children = childrenOf(item))
        return VXItemsCheckedState(*children);
    return 0;
}

qint64 VXItemsCheckedState(const PropertyValue::Array &items)
{
    if (items.isEmpty())
        return 0;
    // -2 stands for "nothing seen yet", so a leaf that holds -2 itself goes unnoticed.
    constexpr qint64 kUnseen = -2;
    qint64 state = kUnseen;
    for (const PropertyValue &item : items) {
        const qint64 itemState = VXItemCheckedState(item);
        if (state == kUnseen)
            state = itemState;
        else if (itemState != state)
            return -1;
    }
    return state;
}

quint64 VXItemSetCheckedState(PropertyValue &item, qint64 state)
{
    return VXItemSetCheckedValue(item, PropertyValue(state));
}

quint64 VXItemSetCheckedValue(PropertyValue &item, const PropertyValue &value)
{
    if (PropertyValue::Dictionary *dictionary = item.dictionaryPtr()) {
        if (dictionary->contains(kChecked)) {
            dictionary->insert(kChecked, value);
            return 1;
        }
    }
    if (PropertyValue::Array *children = mutableChildrenOf(item))
        return VXItemsSetCheckedValue(*children, value);
    return 0;
}

quint64 VXItemsSetCheckedState(PropertyValue::Array &items, qint64 state)
{
    return VXItemsSetCheckedValue(items, PropertyValue(state));
}

quint64 VXItemsSetCheckedValue(PropertyValue::Array &items, const PropertyValue &value)
{
    quint64 count = 0;
    for (PropertyValue &item : items)
        count += VXItemSetCheckedValue(item, value);
    return count;
}

quint64 VXItemCheckedCount(const PropertyValue &item)
{
    if (const std::optional<PropertyValue> checked = item.value(kChecked))
        return checked->toBool() ? 1 : 0;
    if (const PropertyValue::Array *children = childrenOf(item))
        return VXItemsCheckedCount(*children);
    return 0;
}

quint64 VXItemsCheckedCount(const PropertyValue::Array &items)
{
    quint64 count = 0;
    for (const PropertyValue &item : items)
        count += VXItemCheckedCount(item);
    return count;
}

quint64 VXItemSumOfKey(const PropertyValue &item, const QString &key)
{
    if (const std::optional<PropertyValue> value = item.value(key))
        return value->toUInt64();
    if (const PropertyValue::Array *children = childrenOf(item))
        return VXItemsSumOfKey(*children, key);
    return 0;
}

quint64 VXItemsSumOfKey(const PropertyValue::Array &items, const QString &key)
{
    quint64 sum = 0;
    for (const PropertyValue &item : items)
        sum += VXItemSumOfKey(item, key);
    return sum;
}

void VXItemsSortRecursively(PropertyValue::Array &items,
                            const QList<VXSortDescriptor> &sortDescriptors)
{
    for (PropertyValue &item : items)
        VXItemSortChildren(item, sortDescriptors);
    std::stable_sort(items.begin(), items.end(),
                     [&sortDescriptors](const PropertyValue &a, const PropertyValue &b) {
                         for (const VXSortDescriptor &descriptor : sortDescriptors) {
                             if (const int result = descriptor.compare(a, b))
                                 return result < 0;
                         }
                         return false;
                     });
}

void VXItemSortChildren(PropertyValue &item, const QList<VXSortDescriptor> &sortDescriptors)
{
    if (PropertyValue::Array *children = mutableChildrenOf(item))
        VXItemsSortRecursively(*children, sortDescriptors);
}

void VXItemGatherCheckedStatistics(const PropertyValue &item, quint64 &size, quint32 &checked,
                                   quint32 &leaves)
{
    if (isLeaf(item)) {
        if (item.value(kChecked)->toBool()) {
            checked += 1;
            size += item.value(kSize).value_or(PropertyValue(quint64(0))).toUInt64();
        }
        leaves += 1;
    } else if (const PropertyValue::Array *children = childrenOf(item)) {
        VXItemsGatherCheckedStatistics(*children, size, checked, leaves);
    }
}

void VXItemsGatherCheckedStatistics(const PropertyValue::Array &items, quint64 &size,
                                    quint32 &checked, quint32 &leaves)
{
    for (const PropertyValue &item : items)
        VXItemGatherCheckedStatistics(item, size, checked, leaves);
}
