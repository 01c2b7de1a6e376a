#include "PropertyValue.h"

#include <QList>
#include <QMap>
#include <QRandomGenerator>
#include <QTest>

using Quorvelle::PropertyDictionary;

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
    qsizetype position = 0;
    for (auto it = dictionary.cbegin(); it != dictionary.cend(); ++it, ++position) {
        QCOMPARE(it.key(), model.order.at(position));
        QCOMPARE(it.value(), model.values.value(it.key()));
    }
    for (auto it = model.values.cbegin(); it != model.values.cend(); ++it) {
        QVERIFY(dictionary.contains(it.key()));
        QCOMPARE(dictionary.value(it.key()), it.value());
        QCOMPARE(*dictionary.constFind(it.key()), it.value());
    }
}

} // namespace

class TestPropertyDictionary : public QObject
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

    void equalityIgnoresOrder()
    {
        const PropertyDictionary a{{u"x"_qs, 1}, {u"y"_qs, u"two"}};
        const PropertyDictionary b{{u"y"_qs, u"two"}, {u"x"_qs, 1}};
        QCOMPARE(a, b);
        QVERIFY(!(a == PropertyDictionary{{u"x"_qs, 1}}));
        QVERIFY(!(a == PropertyDictionary{{u"x"_qs, 1}, {u"y"_qs, u"three"}}));
        // Nested values compare as values.
        QCOMPARE(PropertyValue(PropertyDictionary{{u"n"_qs, PropertyValue(a)}}),
                 PropertyValue(PropertyDictionary{{u"n"_qs, PropertyValue(b)}}));
    }
};

QTEST_GUILESS_MAIN(TestPropertyDictionary)
#include "tst_propertydictionary.moc"
