#pragma once

// The translation of one source text in a Qt Linguist file: the oracle of a bundle's
// translations, read from the sources the compiled ones are made of.

#include <QFile>
#include <QXmlStreamReader>

namespace TsFile {

inline QString translation(const QString &tsFile, const QString &source)
{
    QFile file(tsFile);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("<no file %1>").arg(tsFile);
    QXmlStreamReader xml(&file);
    QString current;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("source"))
            current = xml.readElementText();
        else if (xml.name() == QLatin1String("translation") && current == source)
            return xml.readElementText();
    }
    return QStringLiteral("<no translation>");
}

} // namespace TsFile
