#include "JSON.h"
#include "PropertyValue.h"
#include "VXIndexPath.h"
#include "VXItemTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QRandomGenerator>
#include <QTest>

using Quorvelle::PropertyArray;
using Quorvelle::PropertyDictionary;
using Dict = PropertyValue::Dictionary;
using Array = PropertyValue::Array;
using namespace Qt::StringLiterals;

// The dictionary is checked against a model made of Qt's own containers: a QMap for what
// each key holds and a list for the order in which keys were first inserted.
namespace {

struct Model
{
    QMap<QString, PropertyValue> values;
    QStringList order;

    void insert(const QString &key, const PropertyValue &value)
    {
        if (!values.contains(key))
            order.append(key);
        values.insert(key, value);
    }
    void remove(const QString &key)
    {
        values.remove(key);
        order.removeOne(key);
    }
};

void verifySame(const PropertyDictionary &dictionary, const Model &model)
{
    QCOMPARE(dictionary.size(), model.values.size());
    QCOMPARE(dictionary.keys(), model.order);
    for (auto it = dictionary.cbegin(); it != dictionary.cend(); ++it) {
        QCOMPARE(it.value(), model.values.value(it.key()));
        QVERIFY(dictionary.contains(it.key()));
        QCOMPARE(dictionary.value(it.key()), it.value());
        QCOMPARE(*dictionary.constFind(it.key()), it.value());
    }
}

// Qt's own reading of a text, as a tree of containers built one by one (none shared).
PropertyValue fromQt(const QJsonValue &value)
{
    if (value.isArray()) {
        PropertyArray array;
        for (const QJsonValue &element : value.toArray())
            array.append(fromQt(element));
        return array;
    }
    if (value.isObject()) {
        PropertyDictionary dictionary;
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            dictionary.insert(it.key(), fromQt(it.value()));
        return dictionary;
    }
    return value.isString()   ? PropertyValue(value.toString())
           : value.isDouble() ? PropertyValue(value.toDouble())
                              : PropertyValue::null();
}

// The same changes at every level of a subtree: on containers a parse shares, they must end
// as on containers built one by one.
void grow(PropertyValue &value, int mark)
{
    if (PropertyArray *array = value.arrayPtr()) {
        for (qsizetype i = 0; i < array->size(); ++i)
            grow((*array)[i], mark);
        if (!array->isEmpty())
            array->removeAt(0);
        array->insert(array->size() / 2, mark);
        array->append(mark);
    } else if (PropertyDictionary *dictionary = value.dictionaryPtr()) {
        for (auto it = dictionary->begin(); it != dictionary->end(); ++it)
            grow(*it, mark);
        dictionary->remove(u"id"_qs);
        dictionary->insert(u"added"_qs, mark);
    }
}

// Item trees: leaves carry "checked" (and a size), groups carry "items".
PropertyValue leaf(qint64 checked, std::optional<quint64> size = std::nullopt)
{
    Dict d{{u"checked"_s, PropertyValue(checked)}};
    if (size)
        d.insert(u"size"_s, PropertyValue(*size));
    return PropertyValue(d);
}

PropertyValue group(const Array &children)
{
    return PropertyValue(Dict{{u"items"_s, PropertyValue(children)}});
}
} // namespace

class TestPropertyValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Random inserts, replacements, removals and copies, in dictionaries that stay small
    // (searched in order) and ones that grow past the index threshold and shrink again.
    void againstModel_data()
    {
        QTest::addColumn<int>("keyRange");
        QTest::addColumn<int>("steps");
        QTest::newRow("small") << 8 << 400;
        QTest::newRow("around the index threshold") << 12 << 1000;
        QTest::newRow("large") << 3000 << 20000;
    }

    void againstModel()
    {
        QFETCH(int, keyRange);
        QFETCH(int, steps);
        QRandomGenerator random{quint32(keyRange)};
        PropertyDictionary dictionary;
        Model model;
        // Copies taken along the way must keep what they held then.
        QList<std::pair<PropertyDictionary, Model>> snapshots;
        for (int step = 0; step < steps; ++step) {
            const QString key = QStringLiteral("key %1").arg(random.bounded(keyRange));
            switch (random.bounded(10)) {
            case 0:
            case 1:
                QCOMPARE(dictionary.remove(key), model.values.contains(key) ? 1 : 0);
                model.remove(key);
                break;
            case 2:
                dictionary[key] = PropertyValue(step);
                model.insert(key, PropertyValue(step));
                break;
            case 3:
                if (random.bounded(20) == 0)
                    snapshots.append({dictionary, model});
                break;
            default:
                dictionary.insert(key, random.bounded(2) ? PropertyValue(step)
                                                         : PropertyValue(QString::number(step)));
                model.insert(key, dictionary.value(key));
                break;
            }
        }
        verifySame(dictionary, model);
        for (const auto &[copy, copyModel] : std::as_const(snapshots))
            verifySame(copy, copyModel);

        // removeIf keeps the others in order.
        const auto odd = [](const QString &key, const PropertyValue &) {
            return key.back().digitValue() % 2 == 1;
        };
        PropertyDictionary filtered = dictionary;
        filtered.removeIf(odd);
        const QStringList keys = model.order;
        for (const QString &key : keys) {
            if (odd(key, PropertyValue()))
                model.remove(key);
        }
        verifySame(filtered, model);
    }

    // Pieces of a parse share its blocks: a piece kept, copied and changed while the tree
    // lives and after it is gone must end as built containers do, and leave the rest as read.
    void piecesOfAParse_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("path");
        QByteArray records = "{\"records\":[";
        for (int n = 0; n < 3000; ++n)
            records += (n ? ",{\"id\":" : "{\"id\":") + QByteArray::number(n) +
                       R"(,"name":"r\u00e9cord","tags":["a",[1,{"n":[2]}]],"inner":{"d":{}}})";
        records += "],\"tail\":\"end\"}";
        QTest::newRow("whole") << records << QString();
        QTest::newRow("one record") << records << u"records/1234"_qs;
        QTest::newRow("array of the last block") << records << u"records/2999/tags"_qs;
        QTest::newRow("array of records") << records << u"records"_qs;
        // A later duplicate replaces a container inside the parse's block.
        const QByteArray duplicates =
            R"({"a":{"b":[1,{"c":2}]},"a":{"d":[3]},"z":[{"y":[4],"y":{"x":5}},{"w":{},"w":[]}]})";
        QTest::newRow("duplicates") << duplicates << QString();
        QTest::newRow("duplicates, kept member") << duplicates << u"z/0"_qs;
        // Containers above 1 MB at the bottom of the reader's stacks keep the stack's
        // buffer: one object of 30,000 members (the last thousand repeat earlier keys) and
        // one array of 50,000 elements, each with containers among its members.
        QByteArray wide = "{";
        for (int n = 0; n < 31000; ++n)
            wide += (n ? ",\"k" : "\"k") + QByteArray::number(n % 30000) + "\":" +
                    (n % 3 ? QByteArray::number(n) : "[" + QByteArray::number(n) + ",{}]");
        wide += "}";
        QTest::newRow("large object") << wide << QString();
        QTest::newRow("large object, kept member") << wide << u"k29997"_qs;
        QByteArray list = "{\"list\":[";
        for (int n = 0; n < 50000; ++n)
            list += (n ? "," : "") + (n % 3 ? QByteArray::number(n) : "{\"n\":[" + QByteArray::number(n) + "]}");
        list += "]}";
        QTest::newRow("large array") << list << u"list"_qs;
        QTest::newRow("large array, kept element") << list << u"list/49998"_qs;
    }

    void piecesOfAParse()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, path);
        const auto at = [&path](PropertyValue value) {
            for (const QString &step : path.split(u'/', Qt::SkipEmptyParts))
                value = value.isArray() ? value.toArray().at(step.toInt()) : *value.value(step);
            return value;
        };
        const PropertyValue whole = fromQt(QJsonDocument::fromJson(text).object());
        const PropertyValue expected = at(whole);
        PropertyValue kept, copy;
        {
            const auto tree = JSON::dictionaryWithJSONString(text);
            QVERIFY(tree);
            QCOMPARE(PropertyValue(*tree), whole);
            kept = at(*tree);
            copy = kept;
            grow(kept, 1);
            QCOMPARE(PropertyValue(*tree), whole);
        }
        grow(kept, 2);
        QCOMPARE(copy, expected);
        PropertyValue grown = expected;
        grow(grown, 1);
        grow(grown, 2);
        QCOMPARE(kept, grown);
    }

    // Numbers of different kinds compare by value, exactly also past 2^53; other values
    // read as false and zero.
    void values_data()
    {
        QTest::addColumn<PropertyValue>("a");
        QTest::addColumn<PropertyValue>("b");
        QTest::addColumn<bool>("equal");
        QTest::addColumn<bool>("truth");            // of a
        QTest::addColumn<quint64>("unsignedValue"); // of a
        const auto row = [](const char *name, const PropertyValue &a, const PropertyValue &b,
                            bool equal, bool truth = false, quint64 unsignedValue = 0) {
            QTest::newRow(name) << a << b << equal << truth << unsignedValue;
        };
        const qint64 big = qint64(1) << 53;
        row("2^53, 2^53 + 1", big, big + 1, false, true, quint64(big));
        row("unsigned 5, 5.0", quint64(5), 5.0, true, true, quint64(5));
        row("0.5, 0", 0.5, qint64(0), false, true);
        row("0, 0.5", qint64(0), 0.5, false);
        row("unsigned 2^63, -1", quint64(1) << 63, qint64(-1), false, true, quint64(1) << 63);
        row("unsigned 2^64 - 1, -1", ~quint64(0), qint64(-1), false, true, ~quint64(0));
        // Dictionaries compare as values, whatever the order of their members.
        const PropertyDictionary xy{{u"x"_qs, 1}, {u"y"_qs, u"two"}};
        const PropertyValue yx = PropertyDictionary{{u"y"_qs, u"two"}, {u"x"_qs, 1}};
        row("other order", xy, yx, true);
        row("member missing", xy, PropertyDictionary{{u"x"_qs, 1}}, false);
        row("member differs", xy, PropertyDictionary{{u"x"_qs, 1}, {u"y"_qs, u"three"}}, false);
        row("nested", PropertyDictionary{{u"n"_qs, PropertyValue(xy)}},
            PropertyDictionary{{u"n"_qs, yx}}, true);
        row("string, null", u"7", PropertyValue::null(), false);
    }
    void values()
    {
        QFETCH(PropertyValue, a);
        QFETCH(PropertyValue, b);
        QTEST(a == b, "equal");
        QTEST(b == a, "equal");
        QTEST(a.toBool(), "truth");
        QTEST(a.toUInt64(), "unsignedValue");
    }

    void countsAndSums()
    {
        // An item with neither "checked" nor "items" counts for nothing.
        // Both "checked" and "items": a leaf whose children are never visited.
        const Dict leafWithItems{{u"checked"_s, PropertyValue(qint64(1))},
                                 {u"size"_s, PropertyValue(quint64(7))},
                                 {u"items"_s, PropertyValue(Array{leaf(1, 9)})}};
        Array items{leaf(1, 100),  leaf(0, 50), leaf(1), group({leaf(3, 1000), group({})}),
                    leafWithItems, Dict{}};
        QCOMPARE(VXItemsCheckedCount(items), quint64(4));
        QCOMPARE(VXItemsSumOfKey(items, u"size"_s), quint64(100 + 50 + 1000 + 7));
        QCOMPARE(VXItemSumOfKey(group(items), u"checked"_s), quint64(1 + 0 + 1 + 3 + 1));

        quint64 size = 0;
        quint32 checked = 0, leaves = 0;
        VXItemsGatherCheckedStatistics({leaf(1, 100), leaf(0, 50), leaf(1)}, size, checked, leaves);
        QCOMPARE(std::tuple(size, checked, leaves), std::tuple(quint64(100), 2u, 3u));
        // Counters are added to, not reset.
        VXItemGatherCheckedStatistics(group(items), size, checked, leaves);
        QCOMPARE(std::tuple(size, checked, leaves),
                 std::tuple(quint64(100 + 100 + 1000 + 7), 2u + 4u, 3u + 5u));
    }

    // The stored form: magic, version, count, then each index in eight big-endian bytes.
    void indexPathStoredForm_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QList<quint64>>("indexes"); // empty: unreadable
        const auto row = [](const char *name, const char *hex, QList<quint64> indexes) {
            QTest::newRow(name) << QByteArray::fromHex(hex) << indexes;
        };
        row("two", "56584950 01 00000002 0000000000000002 0000000000000102", {2, 258});
        row("extremes", "56584950 01 00000002 ffffffffffffffff 0102030405060708",
            {~quint64(0), 0x0102030405060708ull});
        row("empty", "", {});
        row("other magic", "5658495801000000000", {});
        row("other version", "565849500200000000", {});
        row("count too large", "56584950 01 ffffffff 0000000000000001", {});
    }
    void indexPathStoredForm()
    {
        QFETCH(QByteArray, data);
        QFETCH(QList<quint64>, indexes);
        using namespace VXIndexPathPropertyListSerialization;
        const auto read = indexPathFromPropertyListRepresentation(data);
        QCOMPARE(bool(read), !indexes.isEmpty());
        if (!read)
            return;
        QCOMPARE(propertyListRepresentation(VXIndexPath(indexes)), data);
        QCOMPARE(read, VXIndexPath(indexes));
        // Anything cut off or added is unreadable.
        QVERIFY(!indexPathFromPropertyListRepresentation(data.chopped(1)));
        QVERIFY(!indexPathFromPropertyListRepresentation(data + '\0'));
    }
};

QTEST_GUILESS_MAIN(TestPropertyValue)
#include "tst_propertyvalue.moc"
