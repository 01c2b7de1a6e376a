#include "ReportToolAdapter.h"

#include "PropertyListXml.h"
#include "PropertyValue.h"

#include <QXmlStreamReader>

namespace Quorvelle::ReportToolAdapter {
namespace {

// Which hardware classes of the lister make up each data type. A data type the lister has
// nothing for (applications, for one) maps to no class.
QStringList classesOfDataType(const QString &dataType)
{
    if (dataType == QLatin1String("SPHardwareDataType"))
        return {QStringLiteral("system"), QStringLiteral("memory"), QStringLiteral("processor")};
    if (dataType == QLatin1String("SPMemoryDataType"))
        return {QStringLiteral("memory")};
    if (dataType == QLatin1String("SPStorageDataType"))
        return {QStringLiteral("disk"), QStringLiteral("volume")};
    if (dataType == QLatin1String("SPNetworkDataType"))
        return {QStringLiteral("network")};
    if (dataType == QLatin1String("SPDisplaysDataType"))
        return {QStringLiteral("display")};
    return {};
}

// The level that leaves out personal details maps to the lister's own way of doing that;
// the lister has no other levels, so the others add nothing.
QStringList levelArguments(const QString &level)
{
    if (level == QLatin1String("mini"))
        return {QStringLiteral("-sanitize")};
    return {};
}

struct Node
{
    QString className;
    PropertyValue::Dictionary fields;
};

bool isField(QStringView name)
{
    static const QStringList fields = {
        QStringLiteral("description"), QStringLiteral("product"),  QStringLiteral("vendor"),
        QStringLiteral("version"),     QStringLiteral("serial"),   QStringLiteral("slot"),
        QStringLiteral("size"),        QStringLiteral("capacity"), QStringLiteral("width"),
        QStringLiteral("clock"),       QStringLiteral("physid"),   QStringLiteral("businfo"),
        QStringLiteral("logicalname")};
    return fields.contains(name.toString());
}

// Deeper than any machine's tree, as deep as the property-list reader goes; deeper input is
// not the lister's and must not exhaust the stack.
constexpr int kMaximumDepth = 256;

// Reads the <node> the reader stands on and its descendants, flattened in document order.
// False when the tree is nested too deeply.
bool readNode(QXmlStreamReader &xml, QList<Node> &nodes, int depth)
{
    if (depth > kMaximumDepth)
        return false;
    const qsizetype at = nodes.size();
    nodes.append(Node{xml.attributes().value(QLatin1String("class")).toString(), {}});
    nodes[at].fields.insert(QStringLiteral("_name"),
                            xml.attributes().value(QLatin1String("id")).toString());
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("node")) {
            if (!readNode(xml, nodes, depth + 1))
                return false;
        } else if (isField(xml.name())) {
            const QString name = xml.name().toString();
            const QString units = xml.attributes().value(QLatin1String("units")).toString();
            QString text = xml.readElementText(QXmlStreamReader::SkipChildElements);
            if (!units.isEmpty())
                text += QLatin1Char(' ') + units;
            nodes[at].fields.insert(name, text);
        } else {
            xml.skipCurrentElement();
        }
    }
    return true;
}

} // namespace

QStringList toolArguments(const QStringList &arguments)
{
    QStringList tool;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("-xml")) {
            tool.append(argument);
        } else if (argument == QLatin1String("-detailLevel")) {
            if (i + 1 < arguments.size())
                tool.append(levelArguments(arguments.at(++i)));
        } else {
            for (const QString &cls : classesOfDataType(argument)) {
                if (!tool.contains(cls))
                    tool << QStringLiteral("-class") << cls;
            }
        }
    }
    return tool;
}

QByteArray relabelText(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    // The lines before the first "*-name" header describe the machine itself.
    QByteArray node;
    for (QByteArray &line : lines) {
        qsizetype indent = 0;
        while (indent < line.size() && (line.at(indent) == ' ' || line.at(indent) == '\t'))
            ++indent;
        const QByteArray body = line.mid(indent);
        if (body.startsWith("*-")) {
            node = body.mid(2);
            const qsizetype end = node.indexOf(' ');
            if (end >= 0)
                node.truncate(end);
            const qsizetype number = node.indexOf(':');
            if (number >= 0)
                node.truncate(number);
            continue;
        }
        if (node.isEmpty() && body.startsWith("product: "))
            line = line.left(indent) + "Model Name: " + body.mid(9);
        else if (node == "memory" && body.startsWith("size: "))
            line = line.left(indent) + "Memory: " + body.mid(6);
    }
    return lines.join('\n');
}

QByteArray toPropertyList(const QByteArray &toolXml, const QStringList &dataTypes)
{
    QXmlStreamReader xml(toolXml);
    if (!xml.readNextStartElement())
        return toolXml;
    QList<Node> nodes;
    if (xml.name() == QLatin1String("node")) {
        if (!readNode(xml, nodes, 1))
            return toolXml;
    } else if (xml.name() == QLatin1String("list")) {
        while (xml.readNextStartElement()) {
            if (xml.name() != QLatin1String("node"))
                xml.skipCurrentElement();
            else if (!readNode(xml, nodes, 2))
                return toolXml;
        }
    } else {
        return toolXml;
    }
    if (xml.hasError())
        return toolXml;

    PropertyValue::Array report;
    QStringList seen;
    for (const QString &dataType : dataTypes) {
        const QStringList classes = classesOfDataType(dataType);
        if (classes.isEmpty() || seen.contains(dataType))
            continue;
        seen.append(dataType);
        PropertyValue::Array items;
        for (const Node &node : std::as_const(nodes)) {
            if (classes.contains(node.className))
                items.append(node.fields);
        }
        report.append(PropertyValue::Dictionary{{QStringLiteral("_dataType"), dataType},
                                                {QStringLiteral("_items"), items}});
    }
    return PropertyListXml::write(report);
}

} // namespace Quorvelle::ReportToolAdapter
