// The operating system's name and version, and the release tests of the drawing code.
#include "VXSystemInformation.h"
#include "VXSystemInformationHost.h"

#include <QLibraryInfo>
#include <QRegularExpression>

#include <sys/utsname.h>

namespace VXSystemInformation {
namespace {

// A kernel fact from /proc/sys/kernel, or from uname() when reading the real machine.
QString kernelValue(const QString &name, const char *(*fromUname)(const utsname &))
{
    const QString value = Host::readLine(QStringLiteral("/proc/sys/kernel/") + name);
    if (!value.isNull() || !Seam::root().isEmpty())
        return value;
    utsname names;
    if (uname(&names) != 0)
        return QString();
    return QString::fromUtf8(fromUname(names));
}

// The drawing code picks its modern look from these release tests. The running
// user-interface framework decides: every desktop with Qt 6 postdates the releases they name.
bool runningFrameworkIsModern()
{
    return QLibraryInfo::version().majorVersion() >= 6;
}

} // namespace

QString operatingSystemString()
{
    return kernelValue(QStringLiteral("ostype"),
                       [](const utsname &u) -> const char * { return u.sysname; });
}

QString humanReadableSystemVersionString()
{
    for (const QString &file :
         {QStringLiteral("/etc/os-release"), QStringLiteral("/usr/lib/os-release")}) {
        if (const auto text = Host::readFile(file))
            return Host::shellVariable(*text, "PRETTY_NAME");
    }
    return QString();
}

QString systemVersionString()
{
    QString &cache = Host::caches().systemVersionString;
    if (!cache.isEmpty())
        return cache;
    // The kernel's release: major, minor and patch level lead its text ("6.1.0-18-amd64").
    const QString release = kernelValue(QStringLiteral("osrelease"),
                                        [](const utsname &u) -> const char * { return u.release; });
    static const QRegularExpression leading(QStringLiteral("^(\\d+)\\.(\\d+)\\.(\\d+)"));
    const QRegularExpressionMatch match = leading.match(release);
    if (!match.hasMatch())
        return QString();
    int parts[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        parts[i] = match.captured(i + 1).toInt(&ok);
        if (!ok)
            return QString();
    }
    cache = QString::asprintf("%d.%d.%d", parts[0], parts[1], parts[2]);
    return cache;
}

bool isSnowLeopardOrGreater()
{
    return runningFrameworkIsModern();
}
bool isLionOrGreater()
{
    return runningFrameworkIsModern();
}
bool isMountainLionOrGreater()
{
    return runningFrameworkIsModern();
}
bool isMavericksOrGreater()
{
    return runningFrameworkIsModern();
}

} // namespace VXSystemInformation
