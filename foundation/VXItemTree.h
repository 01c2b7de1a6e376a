#pragma once

#include "PropertyValue.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

// Routines over trees of items held as PropertyValue dictionaries. A group keeps its
// children in an array under "items"; a leaf carries a check state under "checked" and
// often a byte count under "size". Having "checked" is what makes an item a leaf, even
// when it also has "items" (its children are then never visited).
//
// Each routine comes as a pair, one for an item and one for an array of items, calling
// each other down the "items" arrays. The copying routines return new values and leave
// their input alone; the setters and sorters change the tree where it stands.
//
// A value that is not a dictionary counts as an item with neither key, and an "items"
// value that is not an array as a group without children.

// How two present values of a sort key compare: negative, zero or positive.
using VXComparison = std::function<int(const PropertyValue &, const PropertyValue &)>;

struct VXSortDescriptor
{
    QString key;
    bool ascending = true;
    // Empty: defaultComparison.
    VXComparison comparison;

    // Numbers (booleans included) by value, strings with QString::compare (case-sensitive),
    // dates by time; values of different kinds by kind, so the order stays total.
    static int defaultComparison(const PropertyValue &a, const PropertyValue &b);

    // An item without the key sorts before every item that has it.
    int compare(const PropertyValue &itemA, const PropertyValue &itemB) const;
};

PropertyValue VXItemRemovingKeys(const PropertyValue &item, const QStringList &keys);
PropertyValue::Array VXItemsRemovingKeys(const PropertyValue::Array &items,
                                         const QStringList &keys);
PropertyValue VXItemKeepingKeys(const PropertyValue &item, const QStringList &keys);
PropertyValue::Array VXItemsKeepingKeys(const PropertyValue::Array &items, const QStringList &keys);

// 0 unchecked, 1 checked, -1 mixed; a leaf's own value is returned as it is.
qint64 VXItemCheckedState(const PropertyValue &item);
qint64 VXItemsCheckedState(const PropertyValue::Array &items);

// Return the number of leaves whose "checked" was set.
quint64 VXItemSetCheckedState(PropertyValue &item, qint64 state);
quint64 VXItemSetCheckedValue(PropertyValue &item, const PropertyValue &value);
quint64 VXItemsSetCheckedState(PropertyValue::Array &items, qint64 state);
quint64 VXItemsSetCheckedValue(PropertyValue::Array &items, const PropertyValue &value);

quint64 VXItemCheckedCount(const PropertyValue &item);
quint64 VXItemsCheckedCount(const PropertyValue::Array &items);

quint64 VXItemSumOfKey(const PropertyValue &item, const QString &key);
quint64 VXItemsSumOfKey(const PropertyValue::Array &items, const QString &key);

// Children first (depth first, in item order), then the array itself; stable.
void VXItemsSortRecursively(PropertyValue::Array &items,
                            const QList<VXSortDescriptor> &sortDescriptors);
void VXItemSortChildren(PropertyValue &item, const QList<VXSortDescriptor> &sortDescriptors);

// Adds to the counters; callers start them at 0.
void VXItemGatherCheckedStatistics(const PropertyValue &item, quint64 &size, quint32 &checked,
                                   quint32 &leaves);
void VXItemsGatherCheckedStatistics(const PropertyValue::Array &items, quint64 &size,
                                    quint32 &checked, quint32 &leaves);
