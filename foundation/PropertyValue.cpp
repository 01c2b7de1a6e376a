#include "PropertyValue.h"

#include <QDebug>

#include <cmath>

bool PropertyValue::isNumber() const
{
    switch (type()) {
    case Type::Bool:
    case Type::Integer:
    case Type::UnsignedInteger:
    case Type::Double:
        return true;
    default:
        return false;
    }
}

bool PropertyValue::toBool() const
{
    switch (type()) {
    case Type::Bool:
        return std::get<bool>(m_value);
    case Type::Integer:
        return std::get<qint64>(m_value) != 0;
    case Type::UnsignedInteger:
        return std::get<quint64>(m_value) != 0;
    case Type::Double:
        return std::get<double>(m_value) != 0.0;
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
        return std::get<bool>(m_value) ? 1 : 0;
    case Type::Integer:
        return std::get<qint64>(m_value);
    case Type::UnsignedInteger:
        return static_cast<qint64>(std::get<quint64>(m_value));
    case Type::Double:
        return doubleToInt<qint64>(std::get<double>(m_value));
    default:
        return 0;
    }
}

quint64 PropertyValue::toUInt64() const
{
    switch (type()) {
    case Type::Bool:
        return std::get<bool>(m_value) ? 1 : 0;
    case Type::Integer:
        // Two's complement reinterpretation, as a numeric object's unsigned read does.
        return static_cast<quint64>(std::get<qint64>(m_value));
    case Type::UnsignedInteger:
        return std::get<quint64>(m_value);
    case Type::Double: {
        const double d = std::get<double>(m_value);
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
        return std::get<bool>(m_value) ? 1.0 : 0.0;
    case Type::Integer:
        return double(std::get<qint64>(m_value));
    case Type::UnsignedInteger:
        return double(std::get<quint64>(m_value));
    case Type::Double:
        return std::get<double>(m_value);
    default:
        return 0.0;
    }
}

QString PropertyValue::toString() const
{
    const QString *s = std::get_if<QString>(&m_value);
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
    const QDateTime *t = std::get_if<QDateTime>(&m_value);
    return t ? *t : QDateTime();
}

QByteArray PropertyValue::toData() const
{
    const QByteArray *b = std::get_if<QByteArray>(&m_value);
    return b ? *b : QByteArray();
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
        if (type() == Type::UnsignedInteger || other.type() == Type::UnsignedInteger)
            return toUInt64() == other.toUInt64() && (toInt64() >= 0) == (other.toInt64() >= 0);
        return toInt64() == other.toInt64();
    }
    return m_value == other.m_value;
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
