#include "PropertyValue.h"

#include <QDebug>

#include <cmath>
#include <memory>

void PropertyValue::copyFrom(const PropertyValue &other)
{
    switch (other.type()) {
    case Type::String:
        new (m_data) QString(*other.object<QString>());
        return;
    case Type::Array:
        construct<Array>(*other.object<Array>(), Type::Array);
        return;
    case Type::Dictionary:
        construct<Dictionary>(*other.object<Dictionary>(), Type::Dictionary);
        return;
    case Type::Date:
        construct<QDateTime>(*other.object<QDateTime>(), Type::Date);
        return;
    case Type::Data:
        construct<QByteArray *>(new QByteArray(**other.object<QByteArray *>()), Type::Data);
        return;
    default:
        std::memcpy(m_data, other.m_data, sizeof m_data);
        return;
    }
}

void PropertyValue::destroy()
{
    switch (type()) {
    case Type::String:
        std::destroy_at(object<QString>());
        return;
    case Type::Array:
        std::destroy_at(object<Array>());
        return;
    case Type::Dictionary:
        std::destroy_at(object<Dictionary>());
        return;
    case Type::Date:
        std::destroy_at(object<QDateTime>());
        return;
    case Type::Data:
        delete *object<QByteArray *>();
        return;
    default:
        return;
    }
}

bool PropertyValue::toBool() const
{
    switch (type()) {
    case Type::Bool:
        return word<bool>();
    case Type::Integer:
        return word<qint64>() != 0;
    case Type::UnsignedInteger:
        return word<quint64>() != 0;
    case Type::Double:
        return word<double>() != 0.0;
    default:
        return false;
    }
}

namespace {
// Out-of-range reals saturate instead of invoking undefined behaviour.
template <typename Int> Int doubleToInt(double d)
{
    if (std::isnan(d))
        return 0;
    if (d <= double(std::numeric_limits<Int>::min()))
        return std::numeric_limits<Int>::min();
    if (d >= double(std::numeric_limits<Int>::max()))
        return std::numeric_limits<Int>::max();
    return static_cast<Int>(d);
}
} // namespace

qint64 PropertyValue::toInt64() const
{
    switch (type()) {
    case Type::Bool:
        return word<bool>() ? 1 : 0;
    case Type::Integer:
        return word<qint64>();
    case Type::UnsignedInteger:
        return static_cast<qint64>(word<quint64>());
    case Type::Double:
        return doubleToInt<qint64>(word<double>());
    default:
        return 0;
    }
}

quint64 PropertyValue::toUInt64() const
{
    switch (type()) {
    case Type::Bool:
        return word<bool>() ? 1 : 0;
    case Type::Integer:
        // Two's complement reinterpretation, as a numeric object's unsigned read does.
        return static_cast<quint64>(word<qint64>());
    case Type::UnsignedInteger:
        return word<quint64>();
    case Type::Double: {
        const double d = word<double>();
        return d < 0 ? static_cast<quint64>(doubleToInt<qint64>(d)) : doubleToInt<quint64>(d);
    }
    default:
        return 0;
    }
}

double PropertyValue::toDouble() const
{
    switch (type()) {
    case Type::Bool:
        return word<bool>() ? 1.0 : 0.0;
    case Type::Integer:
        return double(word<qint64>());
    case Type::UnsignedInteger:
        return double(word<quint64>());
    case Type::Double:
        return word<double>();
    default:
        return 0.0;
    }
}

QString PropertyValue::toString() const
{
    const QString *s = stringPtr();
    return s ? *s : QString();
}

PropertyValue::Array PropertyValue::toArray() const
{
    const Array *a = arrayPtr();
    return a ? *a : Array();
}

PropertyValue::Dictionary PropertyValue::toDictionary() const
{
    const Dictionary *d = dictionaryPtr();
    return d ? *d : Dictionary();
}

QDateTime PropertyValue::toDateTime() const
{
    return type() == Type::Date ? *object<QDateTime>() : QDateTime();
}

QByteArray PropertyValue::toData() const
{
    return type() == Type::Data ? **object<QByteArray *>() : QByteArray();
}

std::optional<PropertyValue> PropertyValue::value(const QString &key) const
{
    const Dictionary *d = dictionaryPtr();
    if (!d)
        return std::nullopt;
    auto it = d->constFind(key);
    if (it == d->constEnd())
        return std::nullopt;
    return *it;
}

bool PropertyValue::contains(const QString &key) const
{
    const Dictionary *d = dictionaryPtr();
    return d && d->contains(key);
}

bool PropertyValue::operator==(const PropertyValue &other) const
{
    if (isNumber() && other.isNumber()) {
        if (type() == Type::Double || other.type() == Type::Double)
            return toDouble() == other.toDouble();
        if (type() == Type::UnsignedInteger || other.type() == Type::UnsignedInteger) {
            // Only a signed integer can be below zero: an unsigned one above 2^63 reads back
            // negative through toInt64(), and -1 would then equal 2^64 - 1.
            const bool negative = type() == Type::Integer && word<qint64>() < 0;
            const bool otherNegative = other.type() == Type::Integer && other.word<qint64>() < 0;
            return negative == otherNegative && toUInt64() == other.toUInt64();
        }
        return toInt64() == other.toInt64();
    }
    if (type() != other.type())
        return false;
    switch (type()) {
    case Type::Null:
        return true;
    case Type::String:
        return *object<QString>() == *other.object<QString>();
    case Type::Array:
        return *object<Array>() == *other.object<Array>();
    case Type::Dictionary:
        return *object<Dictionary>() == *other.object<Dictionary>();
    case Type::Date:
        return *object<QDateTime>() == *other.object<QDateTime>();
    case Type::Data:
        return **object<QByteArray *>() == **other.object<QByteArray *>();
    default:
        return false; // numbers are settled above
    }
}

QDebug operator<<(QDebug debug, const PropertyValue &value)
{
    QDebugStateSaver saver(debug);
    debug.nospace();
    switch (value.type()) {
    case PropertyValue::Type::Null:
        return debug << "null";
    case PropertyValue::Type::Bool:
        return debug << (value.toBool() ? "YES" : "NO");
    case PropertyValue::Type::Integer:
        return debug << value.toInt64();
    case PropertyValue::Type::UnsignedInteger:
        return debug << value.toUInt64() << "u";
    case PropertyValue::Type::Double:
        return debug << value.toDouble() << "d";
    case PropertyValue::Type::String:
        return debug << value.toString();
    case PropertyValue::Type::Array:
        return debug << value.toArray();
    case PropertyValue::Type::Dictionary:
        return debug << value.toDictionary();
    case PropertyValue::Type::Date:
        return debug << value.toDateTime();
    case PropertyValue::Type::Data:
        return debug << value.toData();
    }
    return debug;
}
