#include "VXSystemInformationHost.h"

#include "VXSystemInformation.h"

#include <QFile>

namespace VXSystemInformation {
namespace {
QString g_root;
QString g_reportToolPath = QStringLiteral("/usr/bin/lshw");
} // namespace

namespace Seam {
void setRoot(const QString &root)
{
    g_root = root;
}
QString root()
{
    return g_root;
}
void setReportToolPath(const QString &path)
{
    g_reportToolPath = path;
}
QString reportToolPath()
{
    return g_reportToolPath;
}
void resetCaches()
{
    Host::caches() = Host::Caches();
}
void reset()
{
    g_root.clear();
    g_reportToolPath = QStringLiteral("/usr/bin/lshw");
    resetCaches();
}
} // namespace Seam

namespace Host {

QString path(const QString &absolutePath)
{
    return g_root + absolutePath;
}

std::optional<QByteArray> readFile(const QString &absolutePath)
{
    QFile file(path(absolutePath));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // sysfs and /proc files report no size; read until the end.
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return bytes;
}

QString readLine(const QString &absolutePath)
{
    const std::optional<QByteArray> bytes = readFile(absolutePath);
    if (!bytes)
        return QString();
    const qsizetype end = bytes->indexOf('\n');
    return QString::fromUtf8(end < 0 ? *bytes : bytes->left(end));
}

QString shellVariable(const QByteArray &text, const QByteArray &key)
{
    const QByteArray prefix = key + '=';
    for (QByteArray line : text.split('\n')) {
        line = line.trimmed();
        if (!line.startsWith(prefix))
            continue;
        QByteArray value = line.mid(prefix.size());
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
            value.back() == value.front())
            value = value.mid(1, value.size() - 2);
        return QString::fromUtf8(value);
    }
    return QString();
}

Caches &caches()
{
    static Caches c;
    return c;
}

} // namespace Host
} // namespace VXSystemInformation
