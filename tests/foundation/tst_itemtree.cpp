#include "VXIndexPath.h"
#include "VXItemTree.h"

#include <QTest>

namespace {
using Dict = PropertyValue::Dictionary;
using Array = PropertyValue::Array;

PropertyValue leaf(qint64 checked, std::optional<quint64> size = std::nullopt,
                   const QString &name = {})
{
    Dict d{{QStringLiteral("checked"), PropertyValue(checked)}};
    if (size)
        d.insert(QStringLiteral("size"), PropertyValue(*size));
    if (!name.isEmpty())
        d.insert(QStringLiteral("name"), PropertyValue(name));
    return PropertyValue(d);
}

PropertyValue group(const Array &children, const QString &name = {})
{
    Dict d{{QStringLiteral("items"), PropertyValue(children)}};
    if (!name.isEmpty())
        d.insert(QStringLiteral("name"), PropertyValue(name));
    return PropertyValue(d);
}

// Both "checked" and "items": a leaf whose children are never visited.
PropertyValue leafWithItems(qint64 checked, const Array &children)
{
    return PropertyValue(Dict{{QStringLiteral("checked"), PropertyValue(checked)},
                              {QStringLiteral("size"), PropertyValue(quint64(7))},
                              {QStringLiteral("items"), PropertyValue(children)}});
}

QStringList names(const Array &items)
{
    QStringList result;
    for (const PropertyValue &item : items)
        result << item.value(QStringLiteral("name")).value_or(PropertyValue()).toString();
    return result;
}
} // namespace

class TestItemTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkedState_data()
    {
        QTest::addColumn<PropertyValue>("item");
        QTest::addColumn<qint64>("state");
        QTest::newRow("all unchecked") << group({leaf(0), leaf(0, 5)}) << qint64(0);
        QTest::newRow("mixed") << group({leaf(1), leaf(0)}) << qint64(-1);
        QTest::newRow("groups 1 and -1")
            << group({group({leaf(1)}), group({leaf(1), leaf(0)})}) << qint64(-1);
        QTest::newRow("empty group") << group({}) << qint64(0);
        QTest::newRow("leaf with items") << leafWithItems(1, {leaf(0), leaf(0)}) << qint64(1);
        QTest::newRow("group containing leaf with items")
            << group({leafWithItems(0, {leaf(1)}), leaf(0)}) << qint64(0);
        QTest::newRow("-2 first is unseen") << group({leaf(-2), leaf(1)}) << qint64(1);
        QTest::newRow("-2 later differs") << group({leaf(1), leaf(-2)}) << qint64(-1);
        QTest::newRow("real read as integer")
            << PropertyValue(Dict{{QStringLiteral("checked"), PropertyValue(1.9)}}) << qint64(1);
        QTest::newRow("not a dictionary") << PropertyValue(QStringLiteral("x")) << qint64(0);
        QTest::newRow("items not an array")
            << PropertyValue(Dict{{QStringLiteral("items"), PropertyValue(qint64(1))}})
            << qint64(0);
    }
    void checkedState()
    {
        QFETCH(PropertyValue, item);
        QTEST(VXItemCheckedState(item), "state");
        QTEST(VXItemsCheckedState(Array{item}), "state");
    }

    void setCheckedState()
    {
        PropertyValue tree =
            group({leaf(0, 10, QStringLiteral("a")), leaf(1), leaf(0), group({leaf(0), leaf(-1)}),
                   PropertyValue(Dict{}), leafWithItems(0, {leaf(0)})});
        const PropertyValue before = tree;
        QCOMPARE(VXItemSetCheckedState(tree, 1), quint64(6));
        // The item with neither key stays at 0, so the whole is mixed.
        QCOMPARE(VXItemCheckedState(tree), qint64(-1));
        // Only "checked" changed: removing it leaves the trees equal.
        const QStringList checked{QStringLiteral("checked")};
        QCOMPARE(VXItemRemovingKeys(tree, checked), VXItemRemovingKeys(before, checked));
        QVERIFY(!tree.toDictionary()[QStringLiteral("items")].toArray()[4].contains(
            QStringLiteral("checked")));
        // The children of a leaf with items are not touched.
        const PropertyValue hidden = tree.toDictionary()[QStringLiteral("items")]
                                         .toArray()[5]
                                         .value(QStringLiteral("items"))
                                         ->toArray()
                                         .first();
        QCOMPARE(hidden.value(QStringLiteral("checked"))->toInt64(), qint64(0));

        Array items{leaf(1), group({leaf(1)})};
        QCOMPARE(VXItemsSetCheckedValue(items, PropertyValue(false)), quint64(2));
        QCOMPARE(VXItemsCheckedCount(items), quint64(0));
        QCOMPARE(items.first().value(QStringLiteral("checked"))->type(), PropertyValue::Type::Bool);
        QCOMPARE(VXItemsSetCheckedState(items, 1), quint64(2));
        QCOMPARE(VXItemsCheckedCount(items), quint64(2));
    }

    void countsAndSums()
    {
        const Array items{leaf(1, 100), leaf(0, 50), leaf(1), group({leaf(3, 1000), group({})}),
                          leafWithItems(1, {leaf(1, 9)})};
        QCOMPARE(VXItemsCheckedCount(items), quint64(4));
        QCOMPARE(VXItemsSumOfKey(items, QStringLiteral("size")), quint64(100 + 50 + 1000 + 7));
        QCOMPARE(VXItemSumOfKey(group(items), QStringLiteral("checked")),
                 quint64(1 + 0 + 1 + 3 + 1));
        QCOMPARE(VXItemSumOfKey(PropertyValue(Dict{}), QStringLiteral("size")), quint64(0));

        quint64 size = 0;
        quint32 checked = 0;
        quint32 leaves = 0;
        VXItemsGatherCheckedStatistics({leaf(1, 100), leaf(0, 50), leaf(1)}, size, checked, leaves);
        QCOMPARE(size, quint64(100));
        QCOMPARE(checked, 2u);
        QCOMPARE(leaves, 3u);
        // Counters are added to, not reset.
        VXItemGatherCheckedStatistics(group(items), size, checked, leaves);
        QCOMPARE(size, quint64(100 + 100 + 1000 + 7));
        QCOMPARE(checked, 2u + 4u);
        QCOMPARE(leaves, 3u + 5u);
    }

    void removingAndKeepingKeys()
    {
        const PropertyValue tree =
            group({leaf(1, 10, QStringLiteral("a")), group({leaf(0, 20, QStringLiteral("b"))})},
                  QStringLiteral("root"));
        const PropertyValue removed =
            VXItemRemovingKeys(tree, {QStringLiteral("size"), QStringLiteral("items")});
        QCOMPARE(VXItemSumOfKey(removed, QStringLiteral("size")), quint64(0));
        QCOMPARE(VXItemCheckedCount(removed), quint64(1));
        QCOMPARE(names(removed.value(QStringLiteral("items"))->toArray()),
                 QStringList({QStringLiteral("a"), QString()}));
        QCOMPARE(VXItemSumOfKey(tree, QStringLiteral("size")), quint64(30)); // input untouched

        const PropertyValue kept = VXItemKeepingKeys(tree, {QStringLiteral("name")});
        const PropertyValue expected =
            group({PropertyValue(Dict{{QStringLiteral("name"), PropertyValue(u"a")}}),
                   group({PropertyValue(Dict{{QStringLiteral("name"), PropertyValue(u"b")}})})},
                  QStringLiteral("root"));
        QCOMPARE(kept, expected);
        QCOMPARE(VXItemsKeepingKeys({tree}, {}).first().toDictionary().keys(),
                 QStringList{QStringLiteral("items")});
    }

    void sorting()
    {
        PropertyValue tree =
            group({leaf(0, 3, QStringLiteral("c")), leaf(0, 1, QStringLiteral("a")),
                   group({leaf(0, 2, QStringLiteral("y")), leaf(0, 1, QStringLiteral("x"))},
                         QStringLiteral("b")),
                   PropertyValue(Dict{})});
        VXItemSortChildren(tree, {VXSortDescriptor{QStringLiteral("name"), true, {}}});
        Array top = tree.value(QStringLiteral("items"))->toArray();
        QCOMPARE(names(top), QStringList({QString(), QStringLiteral("a"), QStringLiteral("b"),
                                          QStringLiteral("c")}));
        QCOMPARE(names(top[2].value(QStringLiteral("items"))->toArray()),
                 QStringList({QStringLiteral("x"), QStringLiteral("y")}));

        // Two keys, descending sizes, ties broken by name; numbers compare by value.
        Array items{leaf(0, 10, QStringLiteral("b")), leaf(0, 9, QStringLiteral("z")),
                    leaf(0, 10, QStringLiteral("a")),
                    PropertyValue(Dict{{QStringLiteral("size"), PropertyValue(9.5)},
                                       {QStringLiteral("name"), PropertyValue(u"r")}})};
        VXItemsSortRecursively(items, {VXSortDescriptor{QStringLiteral("size"), false, {}},
                                       VXSortDescriptor{QStringLiteral("name"), true, {}}});
        QCOMPARE(names(items), QStringList({QStringLiteral("a"), QStringLiteral("b"),
                                            QStringLiteral("r"), QStringLiteral("z")}));

        const auto caseInsensitive = [](const PropertyValue &a, const PropertyValue &b) {
            return QString::compare(a.toString(), b.toString(), Qt::CaseInsensitive);
        };
        Array words{leaf(0, 0, QStringLiteral("b")), leaf(0, 0, QStringLiteral("B")),
                    leaf(0, 0, QStringLiteral("a"))};
        VXItemsSortRecursively(words,
                               {VXSortDescriptor{QStringLiteral("name"), true, caseInsensitive}});
        QCOMPARE(names(words),
                 QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("B")}));
    }

    void defaultComparison_data()
    {
        QTest::addColumn<PropertyValue>("a");
        QTest::addColumn<PropertyValue>("b");
        QTest::addColumn<int>("order");
        QTest::newRow("-1 < max unsigned")
            << PropertyValue(qint64(-1)) << PropertyValue(~quint64(0)) << -1;
        QTest::newRow("true == 1") << PropertyValue(true) << PropertyValue(qint64(1)) << 0;
        QTest::newRow("B < a") << PropertyValue(u"B") << PropertyValue(u"a") << -1;
        QTest::newRow("number before string")
            << PropertyValue(qint64(9)) << PropertyValue(u"1") << -1;
    }
    void defaultComparison()
    {
        QFETCH(PropertyValue, a);
        QFETCH(PropertyValue, b);
        QFETCH(int, order);
        QCOMPARE(VXSortDescriptor::defaultComparison(a, b), order);
        QCOMPARE(VXSortDescriptor::defaultComparison(b, a), -order);
    }

    void indexPathRoundTrip_data()
    {
        QTest::addColumn<QList<quint64>>("indexes");
        QTest::newRow("empty") << QList<quint64>{};
        QTest::newRow("deep") << QList<quint64>{3, 0, 17, 2, 1};
        QTest::newRow("extremes") << QList<quint64>{~quint64(0), 0x0102030405060708ull};
    }
    void indexPathRoundTrip()
    {
        QFETCH(QList<quint64>, indexes);
        using namespace VXIndexPathPropertyListSerialization;
        const VXIndexPath path(indexes);
        const QByteArray data = propertyListRepresentation(path);
        QCOMPARE(indexPathFromPropertyListRepresentation(data), path);
        // Anything cut off or added is unreadable.
        QVERIFY(!indexPathFromPropertyListRepresentation(data.chopped(1)));
        QVERIFY(!indexPathFromPropertyListRepresentation(data + '\0'));
    }

    void indexPathUnreadable_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("other magic") << QByteArray::fromHex("5658495801000000000");
        QTest::newRow("other version") << QByteArray::fromHex("565849500200000000");
        QTest::newRow("count too large")
            << QByteArray::fromHex("56584950 01 ffffffff 0000000000000001");
    }
    void indexPathUnreadable()
    {
        QFETCH(QByteArray, data);
        QVERIFY(
            !VXIndexPathPropertyListSerialization::indexPathFromPropertyListRepresentation(data));
    }

    void indexPathEncodingIsStable()
    {
        QCOMPARE(VXIndexPathPropertyListSerialization::propertyListRepresentation(
                     VXIndexPath::indexPathWithIndex(2).indexPathByAddingIndex(258)),
                 QByteArray::fromHex("56584950 01 00000002 0000000000000002 0000000000000102"));
    }
};

QTEST_GUILESS_MAIN(TestItemTree)
#include "tst_itemtree.moc"
