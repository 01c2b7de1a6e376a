#include "VXSearchPath.h"

#include <QDir>

namespace {

// Path of the kind relative to a domain's root; empty for a kind the domain lacks.
QString relativePath(int directory, int domain)
{
    switch (directory) {
    case NSApplicationDirectory:
        return QStringLiteral("Applications");
    case NSLibraryDirectory:
        return QStringLiteral("Library");
    case NSCachesDirectory:
        // The system domain keeps no caches folder of its own.
        return domain == NSSystemDomainMask ? QString() : QStringLiteral("Library/Caches");
    case NSApplicationSupportDirectory:
        return domain == NSSystemDomainMask ? QString()
                                            : QStringLiteral("Library/Application Support");
    case NSPreferencePanesDirectory:
        return QStringLiteral("Library/PreferencePanes");
    default:
        return QString();
    }
}

} // namespace

QStringList NSSearchPathForDirectoriesInDomains(int directory, int domainMask, bool expandTilde)
{
    static const struct
    {
        int domain;
        const char16_t *root;
    } domains[] = {
        {NSUserDomainMask, u"~"},
        {NSLocalDomainMask, u""},
        {NSNetworkDomainMask, u"/Network"},
        {NSSystemDomainMask, u"/System"},
    };

    QStringList result;
    for (const auto &d : domains) {
        if (!(domainMask & d.domain))
            continue;
        const QString relative = relativePath(directory, d.domain);
        if (relative.isEmpty())
            continue;
        QString root = QString::fromUtf16(d.root);
        if (d.domain == NSUserDomainMask && expandTilde)
            root = QDir::homePath();
        result.append(root + u'/' + relative);
    }
    return result;
}
