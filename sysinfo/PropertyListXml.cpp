#include "PropertyListXml.h"

#include <QDateTime>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

// Deeper nesting than any report has; the limit keeps hostile input from exhausting the
// stack through recursion.
constexpr int kMaxDepth = 256;

class Reader
{
public:
    explicit Reader(const QByteArray &xml) : m_xml(xml) {}

    std::optional<PropertyValue> readDocument()
    {
        if (!nextElement() || m_xml.name() != QLatin1String("plist"))
            return std::nullopt;
        if (!nextElement())
            return std::nullopt;
        std::optional<PropertyValue> value = readValue(0);
        if (!value)
            return std::nullopt;
        // Only one value inside <plist>, and nothing but the closing tag after it.
        if (nextElement() || m_xml.hasError())
            return std::nullopt;
        while (!m_xml.atEnd())
            m_xml.readNext();
        if (m_xml.hasError())
            return std::nullopt;
        return value;
    }

private:
    // Moves to the next start element of the current level; false at the parent's end
    // element, at the end of the document or on an error. Text between elements must be
    // blank.
    bool nextElement()
    {
        while (!m_xml.atEnd()) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::StartElement:
                return true;
            case QXmlStreamReader::EndElement:
                return false;
            case QXmlStreamReader::Characters:
                if (!m_xml.isWhitespace()) {
                    m_xml.raiseError(QStringLiteral("text outside a value"));
                    return false;
                }
                break;
            default:
                break;
            }
        }
        return false;
    }

    std::optional<PropertyValue> readValue(int depth)
    {
        if (depth > kMaxDepth)
            return std::nullopt;
        const QStringView name = m_xml.name();
        if (name == QLatin1String("dict"))
            return readDictionary(depth);
        if (name == QLatin1String("array"))
            return readArray(depth);
        if (name == QLatin1String("true") || name == QLatin1String("false")) {
            const bool b = name == QLatin1String("true");
            if (!m_xml.readElementText().isEmpty() || m_xml.hasError())
                return std::nullopt;
            return PropertyValue(b);
        }
        const QString kind = name.toString();
        const QString text = m_xml.readElementText();
        if (m_xml.hasError())
            return std::nullopt;
        if (kind == QLatin1String("string"))
            return PropertyValue(text);
        if (kind == QLatin1String("integer"))
            return readInteger(text.trimmed());
        if (kind == QLatin1String("real")) {
            bool ok = false;
            const double d = text.trimmed().toDouble(&ok);
            return ok ? std::optional<PropertyValue>(PropertyValue(d)) : std::nullopt;
        }
        if (kind == QLatin1String("date")) {
            const QDateTime t = QDateTime::fromString(text.trimmed(), Qt::ISODate);
            return t.isValid() ? std::optional<PropertyValue>(PropertyValue(t)) : std::nullopt;
        }
        if (kind == QLatin1String("data")) {
            QByteArray compact = text.toLatin1();
            compact.replace(' ', "").replace('\n', "").replace('\t', "").replace('\r', "");
            const auto decoded =
                QByteArray::fromBase64Encoding(compact, QByteArray::AbortOnBase64DecodingErrors);
            return decoded ? std::optional<PropertyValue>(PropertyValue(*decoded)) : std::nullopt;
        }
        return std::nullopt;
    }

    static std::optional<PropertyValue> readInteger(const QString &text)
    {
        bool ok = false;
        const qint64 i = text.toLongLong(&ok, 10);
        if (ok)
            return PropertyValue(i);
        const quint64 u = text.toULongLong(&ok, 10);
        if (ok)
            return PropertyValue(u);
        return std::nullopt;
    }

    std::optional<PropertyValue> readArray(int depth)
    {
        PropertyValue::Array array;
        while (nextElement()) {
            std::optional<PropertyValue> item = readValue(depth + 1);
            if (!item)
                return std::nullopt;
            array.append(std::move(*item));
        }
        if (m_xml.hasError())
            return std::nullopt;
        return PropertyValue(std::move(array));
    }

    std::optional<PropertyValue> readDictionary(int depth)
    {
        PropertyValue::Dictionary dictionary;
        while (nextElement()) {
            if (m_xml.name() != QLatin1String("key"))
                return std::nullopt;
            const QString key = m_xml.readElementText();
            if (m_xml.hasError() || !nextElement())
                return std::nullopt;
            std::optional<PropertyValue> value = readValue(depth + 1);
            if (!value)
                return std::nullopt;
            dictionary.insert(key, std::move(*value));
        }
        if (m_xml.hasError())
            return std::nullopt;
        return PropertyValue(std::move(dictionary));
    }

    QXmlStreamReader m_xml;
};

void writeValue(QXmlStreamWriter &xml, const PropertyValue &value)
{
    switch (value.type()) {
    case PropertyValue::Type::Null:
        // The form has no null; an empty string is the closest neutral value.
        xml.writeEmptyElement(QStringLiteral("string"));
        break;
    case PropertyValue::Type::Bool:
        xml.writeEmptyElement(value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
        break;
    case PropertyValue::Type::Integer:
        xml.writeTextElement(QStringLiteral("integer"), QString::number(value.toInt64()));
        break;
    case PropertyValue::Type::UnsignedInteger:
        xml.writeTextElement(QStringLiteral("integer"), QString::number(value.toUInt64()));
        break;
    case PropertyValue::Type::Double:
        xml.writeTextElement(QStringLiteral("real"), QString::number(value.toDouble(), 'g', 17));
        break;
    case PropertyValue::Type::String:
        xml.writeTextElement(QStringLiteral("string"), value.toString());
        break;
    case PropertyValue::Type::Date:
        xml.writeTextElement(QStringLiteral("date"),
                             value.toDateTime().toUTC().toString(Qt::ISODate));
        break;
    case PropertyValue::Type::Data:
        xml.writeTextElement(QStringLiteral("data"),
                             QString::fromLatin1(value.toData().toBase64()));
        break;
    case PropertyValue::Type::Array:
        xml.writeStartElement(QStringLiteral("array"));
        for (const PropertyValue &item : *value.arrayPtr())
            writeValue(xml, item);
        xml.writeEndElement();
        break;
    case PropertyValue::Type::Dictionary: {
        xml.writeStartElement(QStringLiteral("dict"));
        const PropertyValue::Dictionary &dictionary = *value.dictionaryPtr();
        for (auto it = dictionary.cbegin(); it != dictionary.cend(); ++it) {
            xml.writeTextElement(QStringLiteral("key"), it.key());
            writeValue(xml, it.value());
        }
        xml.writeEndElement();
        break;
    }
    }
}

} // namespace

namespace Quorvelle::PropertyListXml {

std::optional<PropertyValue> read(const QByteArray &xml)
{
    if (xml.isEmpty())
        return std::nullopt;
    return Reader(xml).readDocument();
}

QByteArray write(const PropertyValue &value)
{
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("plist"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    writeValue(xml, value);
    xml.writeEndElement();
    xml.writeEndDocument();
    return out;
}

} // namespace Quorvelle::PropertyListXml
