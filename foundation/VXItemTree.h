#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

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

struct QV_FOUNDATION_EXPORT VXSortDescriptor
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

QV_FOUNDATION_EXPORT PropertyValue VXItemRemovingKeys(const PropertyValue &item,
                                                      const QStringList &keys);
QV_FOUNDATION_EXPORT PropertyValue::Array VXItemsRemovingKeys(const PropertyValue::Array &items,
                                                              const QStringList &keys);
QV_FOUNDATION_EXPORT PropertyValue VXItemKeepingKeys(const PropertyValue &item,
                                                     const QStringList &keys);
QV_FOUNDATION_EXPORT PropertyValue::Array VXItemsKeepingKeys(const PropertyValue::Array &items,
                                                             const QStringList &keys);

// 0 unchecked, 1 checked, -1 mixed; a leaf's own value is returned as it is.
QV_FOUNDATION_EXPORT qint64 VXItemCheckedState(const PropertyValue &item);
QV_FOUNDATION_EXPORT qint64 VXItemsCheckedState(const PropertyValue::Array &items);

// Return the number of leaves whose "checked" was set.
QV_FOUNDATION_EXPORT quint64 VXItemSetCheckedState(PropertyValue &item, qint64 state);
QV_FOUNDATION_EXPORT quint64 VXItemSetCheckedValue(PropertyValue &item, const PropertyValue &value);
QV_FOUNDATION_EXPORT quint64 VXItemsSetCheckedState(PropertyValue::Array &items, qint64 state);
QV_FOUNDATION_EXPORT quint64 VXItemsSetCheckedValue(PropertyValue::Array &items,
                                                    const PropertyValue &value);

QV_FOUNDATION_EXPORT quint64 VXItemCheckedCount(const PropertyValue &item);
QV_FOUNDATION_EXPORT quint64 VXItemsCheckedCount(const PropertyValue::Array &items);

QV_FOUNDATION_EXPORT quint64 VXItemSumOfKey(const PropertyValue &item, const QString &key);
QV_FOUNDATION_EXPORT quint64 VXItemsSumOfKey(const PropertyValue::Array &items, const QString &key);

// Children first (depth first, in item order), then the array itself; stable.
QV_FOUNDATION_EXPORT void VXItemsSortRecursively(PropertyValue::Array &items,
                                                 const QList<VXSortDescriptor> &sortDescriptors);
QV_FOUNDATION_EXPORT void VXItemSortChildren(PropertyValue &item,
                                             const QList<VXSortDescriptor> &sortDescriptors);

// Adds to the counters; callers start them at 0.
QV_FOUNDATION_EXPORT void VXItemGatherCheckedStatistics(const PropertyValue &item, quint64 &size,
                                                        quint32 &checked, quint32 &leaves);
QV_FOUNDATION_EXPORT void VXItemsGatherCheckedStatistics(const PropertyValue::Array &items,
                                                         quint64 &size, quint32 &checked,
                                                         quint32 &leaves);
