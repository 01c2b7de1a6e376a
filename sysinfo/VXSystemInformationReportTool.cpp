// The hardware report tool: running it, adapting its reports, reading values out of them.
#include "VXSystemInformation.h"
#include "VXSystemInformationHost.h"

#include "PropertyListXml.h"
#include "ReportToolAdapter.h"
#include "VXLog.h"

#include <QProcess>
#include <QSaveFile>
#include <QStringDecoder>

namespace VXSystemInformation {
namespace {

std::optional<PropertyValue::Array> parseReportArray(const std::optional<QByteArray> &data)
{
    if (!data || data->isEmpty())
        return std::nullopt;
    const std::optional<PropertyValue> parsed = Quorvelle::PropertyListXml::read(*data);
    if (!parsed || !parsed->isArray())
        return std::nullopt;
    return parsed->toArray();
}

} // namespace

std::optional<QByteArray> systemProfilerGetDataWithArguments(const QStringList &arguments)
{
    QProcess task;
    task.setProgram(Seam::reportToolPath());
    if (!arguments.isEmpty())
        task.setArguments(Quorvelle::ReportToolAdapter::toolArguments(arguments));
    // Only standard output is ours; the tool's diagnostics go where ours go.
    task.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    task.setInputChannelMode(QProcess::ForwardedInputChannel);
    // The lister translates its labels; the readers look for the untranslated ones.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    task.setProcessEnvironment(environment);
    task.start(QIODevice::ReadOnly);
    // Not being able to start the tool is the one failure worth reporting; what it prints
    // and how it ends are its own business.
    if (!task.waitForStarted(-1)) {
        VXLog(QStringLiteral("An exception is caught when running system_profiler tool: %1")
                  .arg(task.errorString()));
        return std::nullopt;
    }
    QByteArray output;
    while (task.waitForReadyRead(-1))
        output += task.readAllStandardOutput();
    task.waitForFinished(-1);
    output += task.readAllStandardOutput();
    return output;
}

std::optional<QByteArray> systemProfileOfDataTypes(const QStringList &dataTypes, bool xmlFormat)
{
    QStringList arguments;
    if (xmlFormat)
        arguments << QStringLiteral("-xml");
    arguments << dataTypes;
    const std::optional<QByteArray> output = systemProfilerGetDataWithArguments(arguments);
    if (!output)
        return output;
    return xmlFormat ? Quorvelle::ReportToolAdapter::toPropertyList(*output, dataTypes)
                     : Quorvelle::ReportToolAdapter::relabelText(*output);
}

QString stringWithSystemProfileOfDataTypes(const QStringList &dataTypes)
{
    const std::optional<QByteArray> data = systemProfileOfDataTypes(dataTypes, false);
    if (!data || data->isEmpty())
        return QString();
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(*data);
    // Text that is not UTF-8 is no text at all.
    return decoder.hasError() ? QString() : text;
}

std::optional<PropertyValue::Array> arrayWithSystemProfileOfDataTypes(const QStringList &dataTypes)
{
    return parseReportArray(systemProfileOfDataTypes(dataTypes, true));
}

std::optional<PropertyValue::Array> arrayWithSystemProfileOfLevel(const QString &level)
{
    // No "-xml" here: whatever the tool prints goes to the property-list reader as it is.
    QStringList arguments;
    if (!level.isNull())
        arguments << QStringLiteral("-detailLevel") << level;
    return parseReportArray(systemProfilerGetDataWithArguments(arguments));
}

bool saveSystemProfileOfLevel(const QString &level, const QString &path)
{
    QStringList arguments{QStringLiteral("-xml"), QStringLiteral("-detailLevel")};
    if (!level.isNull())
        arguments << level;
    const std::optional<QByteArray> data = systemProfilerGetDataWithArguments(arguments);
    if (!data || data->isEmpty())
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(*data) != data->size())
        return false;
    return file.commit();
}

QString systemProfileValueForKey(const QString &key)
{
    return systemProfileValueForKey(key, QStringLiteral("N/A"));
}

QString systemProfileValueForKey(const QString &key, const QString &defaultValue)
{
    const QString text = stringWithSystemProfileOfDataTypes({QStringLiteral("SPHardwareDataType")});
    if (text.isEmpty())
        return defaultValue;
    const qsizetype found = text.indexOf(key);
    if (found < 0)
        return defaultValue;
    const qsizetype start = found + key.size();
    const qsizetype newline = text.indexOf(QLatin1Char('\n'), start);
    // Without a line break behind it, the value stops one character short of the end.
    const qsizetype end = newline >= 0 ? newline : text.size() - 1;
    if (end <= start)
        return defaultValue;
    return text.mid(start, end - start);
}

} // namespace VXSystemInformation
