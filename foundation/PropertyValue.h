#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>

#include <cstdint>
#include <optional>
#include <variant>

// The dynamic value shared by the JSON reader and writer, the survey payload and the
// item trees: the null marker, a number (boolean, integer, unsigned integer or real),
// a string, an array, a string-keyed dictionary, and the two property-list kinds that
// JSON cannot hold (date, data). An absent value is std::nullopt, never a PropertyValue.
//
// Containers are implicitly shared: copying a value is cheap and a copy never changes
// when the original is modified afterwards.
class PropertyValue
{
public:
    enum class Type { Null, Bool, Integer, UnsignedInteger, Double, String, Array, Dictionary, Date, Data };

    using Array = QList<PropertyValue>;
    using Dictionary = QMap<QString, PropertyValue>;

    struct NullMarker
    {
        bool operator==(const NullMarker &) const = default;
    };

    PropertyValue() = default; // the null marker
    PropertyValue(NullMarker) {}
    PropertyValue(bool b) : m_value(b) {}
    PropertyValue(int i) : m_value(qint64(i)) {}
    PropertyValue(qint64 i) : m_value(i) {}
    PropertyValue(quint64 u) : m_value(u) {}
    PropertyValue(double d) : m_value(d) {}
    PropertyValue(const QString &s) : m_value(s) {}
    PropertyValue(QString &&s) : m_value(std::move(s)) {}
    PropertyValue(const char16_t *s) : m_value(QString::fromUtf16(s)) {}
    PropertyValue(const Array &a) : m_value(a) {}
    PropertyValue(Array &&a) : m_value(std::move(a)) {}
    PropertyValue(const Dictionary &d) : m_value(d) {}
    PropertyValue(Dictionary &&d) : m_value(std::move(d)) {}
    PropertyValue(const QDateTime &t) : m_value(t) {}
    PropertyValue(const QByteArray &b) : m_value(b) {}
    // Guards against a string literal silently becoming a bool.
    PropertyValue(const char *) = delete;

    static PropertyValue null() { return PropertyValue(); }

    Type type() const { return static_cast<Type>(m_value.index()); }
    bool isNull() const { return type() == Type::Null; }
    bool isBool() const { return type() == Type::Bool; }
    // Every numeric kind: booleans are numbers too.
    bool isNumber() const;
    bool isString() const { return type() == Type::String; }
    bool isArray() const { return type() == Type::Array; }
    bool isDictionary() const { return type() == Type::Dictionary; }

    // Numeric reads convert between the numeric kinds; a non-number reads as 0.
    bool toBool() const;
    qint64 toInt64() const;
    quint64 toUInt64() const;
    double toDouble() const;

    // Typed access; the wrong kind gives an empty value.
    QString toString() const;
    Array toArray() const;
    Dictionary toDictionary() const;
    QDateTime toDateTime() const;
    QByteArray toData() const;

    // In-place access to a container (nullptr for another kind), for code that edits a
    // tree where it stands.
    Array *arrayPtr() { return std::get_if<Array>(&m_value); }
    const Array *arrayPtr() const { return std::get_if<Array>(&m_value); }
    Dictionary *dictionaryPtr() { return std::get_if<Dictionary>(&m_value); }
    const Dictionary *dictionaryPtr() const { return std::get_if<Dictionary>(&m_value); }

    // Dictionary member lookup: std::nullopt when this is not a dictionary or has no such key.
    std::optional<PropertyValue> value(const QString &key) const;
    bool contains(const QString &key) const;

    // Same kind and equal contents; numbers of different kinds compare by value, as
    // numeric objects do.
    bool operator==(const PropertyValue &other) const;

private:
    std::variant<NullMarker, bool, qint64, quint64, double, QString, Array, Dictionary, QDateTime,
                 QByteArray>
        m_value;
};

// Readable form for test failures.
QDebug operator<<(QDebug debug, const PropertyValue &value);
