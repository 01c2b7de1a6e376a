#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>
#include <Quorvelle/Foundation/PropertyValue.h>

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/**
 * \file
 * Routines over trees of items held as PropertyValue dictionaries, such as a list of files
 * to remove with a check box each. A group keeps its children in an array under "items"; a
 * leaf carries a check state under "checked" and often a byte count under "size". Having
 * "checked" is what makes an item a leaf, even when it also has "items" (its children are
 * then never visited).
 *
 * Each routine comes as a pair, one for an item and one for an array of items, calling
 * each other down the "items" arrays. The copying routines return new values and leave
 * their input alone; the setters and sorters change the tree where it stands.
 *
 * A value that is not a dictionary counts as an item with neither key, and an "items"
 * value that is not an array as a group without children. None of the routines lock:
 * a tree is used by one thread at a time.
 */

/** How two present values of a sort key compare: negative, zero or positive. */
using VXComparison = std::function<int(const PropertyValue &, const PropertyValue &)>;

/** One key of a sort order for VXItemsSortRecursively(): which key, which direction, how. */
struct QV_FOUNDATION_EXPORT VXSortDescriptor
{
    QString key;             ///< The dictionary key whose values are compared.
    bool ascending = true;   ///< False sorts from the largest value down.
    VXComparison comparison; ///< How values compare; empty: defaultComparison().

    /**
     * Numbers (booleans included) by value, strings with QString::compare (case-sensitive),
     * dates by time; values of different kinds by kind, so the order stays total.
     */
    static int defaultComparison(const PropertyValue &a, const PropertyValue &b);

    /**
     * Compares two items by this key and direction: negative when itemA goes first. An item
     * without the key sorts before every item that has it.
     */
    int compare(const PropertyValue &itemA, const PropertyValue &itemB) const;
};

/** A copy of the item and all its descendants without the given keys ("items" always stays). */
QV_FOUNDATION_EXPORT PropertyValue VXItemRemovingKeys(const PropertyValue &item,
                                                      const QStringList &keys);
/** A copy of the items and all their descendants without the given keys. */
QV_FOUNDATION_EXPORT PropertyValue::Array VXItemsRemovingKeys(const PropertyValue::Array &items,
                                                              const QStringList &keys);
/** A copy of the item and all its descendants with only the given keys and "items". */
QV_FOUNDATION_EXPORT PropertyValue VXItemKeepingKeys(const PropertyValue &item,
                                                     const QStringList &keys);
/** A copy of the items and all their descendants with only the given keys. */
QV_FOUNDATION_EXPORT PropertyValue::Array VXItemsKeepingKeys(const PropertyValue::Array &items,
                                                             const QStringList &keys);

/**
 * The check state of an item as a box shows it: 0 unchecked, 1 checked, -1 mixed (a group
 * whose leaves differ); a leaf's own value is returned as it is.
 */
QV_FOUNDATION_EXPORT qint64 VXItemCheckedState(const PropertyValue &item);
/** The check state of a list of items taken together (0, 1 or -1 mixed). */
QV_FOUNDATION_EXPORT qint64 VXItemsCheckedState(const PropertyValue::Array &items);

/**
 * Sets the check state of every leaf under the item (of the item itself when it is a leaf),
 * as ticking a group's box does; returns the number of leaves whose "checked" was set.
 */
QV_FOUNDATION_EXPORT quint64 VXItemSetCheckedState(PropertyValue &item, qint64 state);
/**
 * \overload
 * Sets any value, not only a state, as "checked" of every leaf.
 */
QV_FOUNDATION_EXPORT quint64 VXItemSetCheckedValue(PropertyValue &item, const PropertyValue &value);
/** Sets the check state of every leaf under the items; returns the number of leaves set. */
QV_FOUNDATION_EXPORT quint64 VXItemsSetCheckedState(PropertyValue::Array &items, qint64 state);
/**
 * \overload
 * Sets any value, not only a state, as "checked" of every leaf.
 */
QV_FOUNDATION_EXPORT quint64 VXItemsSetCheckedValue(PropertyValue::Array &items,
                                                    const PropertyValue &value);

/** The number of checked leaves under the item (1 or 0 for a leaf, by "checked" as a bool). */
QV_FOUNDATION_EXPORT quint64 VXItemCheckedCount(const PropertyValue &item);
/** The number of checked leaves under the items. */
QV_FOUNDATION_EXPORT quint64 VXItemsCheckedCount(const PropertyValue::Array &items);

/**
 * The sum of a numeric key (such as "size") over the item: its own value when it has the key,
 * else the sum over its children. A value that is not a number counts as 0.
 */
QV_FOUNDATION_EXPORT quint64 VXItemSumOfKey(const PropertyValue &item, const QString &key);
/** The sum of a numeric key over the items. */
QV_FOUNDATION_EXPORT quint64 VXItemsSumOfKey(const PropertyValue::Array &items, const QString &key);

/**
 * Sorts the items and, first, every group's children (depth first, in item order) by the
 * descriptors, the first descriptor deciding first; stable, so equal items keep their order.
 */
QV_FOUNDATION_EXPORT void VXItemsSortRecursively(PropertyValue::Array &items,
                                                 const QList<VXSortDescriptor> &sortDescriptors);
/** Sorts the item's children (recursively); a leaf or a non-group is left alone. */
QV_FOUNDATION_EXPORT void VXItemSortChildren(PropertyValue &item,
                                             const QList<VXSortDescriptor> &sortDescriptors);

/**
 * Adds the "size" of the checked leaves, the number of checked leaves and the number of all
 * leaves under the item to the counters in one walk (callers start them at 0), as a summary
 * line "3 of 12 items, 4.2 MB" needs.

 */
QV_FOUNDATION_EXPORT void VXItemGatherCheckedStatistics(const PropertyValue &item, quint64 &size,
                                                        quint32 &checked, quint32 &leaves);
/**
 * \overload
 * Counts over a list of items.
 */
QV_FOUNDATION_EXPORT void VXItemsGatherCheckedStatistics(const PropertyValue::Array &items,

                                                         quint64 &size, quint32 &checked,
                                                         quint32 &leaves);
