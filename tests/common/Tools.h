#pragma once

#include <QFile>
#include <QProcessEnvironment>
#include <QStringList>
#include <QXmlStreamReader>

// Small chores every kind of test has: running a program to its end, reading a file whole,
// walking an XML file.
namespace Tools {

struct Outcome
{
    int exitCode = -1; // -1: it did not start, crashed or ran past the time-out
    QByteArray output, errors;
};

// Runs a program to its end; one that runs past `timeoutMs` is killed. An empty environment
// or folder is the caller's.
Outcome run(const QString &program, const QStringList &arguments, int timeoutMs = 300000,
            const QProcessEnvironment &environment = {}, const QString &folder = {});

// The file's bytes, or `fallback` when it cannot be read.
QByteArray readFile(const QString &path, const QByteArray &fallback = {});

// Calls visit(xml) at every start element of an XML file; the file's or the reader's error,
// null when there was none.
template <typename Visit> QString forEachElement(const QString &path, Visit visit)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            visit(xml);
    }
    return xml.hasError() ? xml.errorString() : QString();
}

} // namespace Tools
