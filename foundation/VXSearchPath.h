#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QStringList>

// The standard folders of a directory kind in the requested domains. The user domain
// lives under $HOME, the local domain under "/", the network domain under "/Network"
// and the system domain under "/System", so the folder names the suite installs into
// stay the same on every platform.
enum VXSearchPathDirectory
{
    NSApplicationDirectory = 1,
    NSLibraryDirectory = 5,
    NSCachesDirectory = 13,
    NSApplicationSupportDirectory = 14,
    NSPreferencePanesDirectory = 22,
};

enum VXSearchPathDomainMask
{
    NSUserDomainMask = 1,
    NSLocalDomainMask = 2,
    NSNetworkDomainMask = 4,
    NSSystemDomainMask = 8,
    NSAllDomainsMask = 0x0ffff,
};

// Entries come in domain order user, local, network, system. Without tilde expansion
// the user domain's entries start with "~". An unknown kind gives an empty list.
QV_FOUNDATION_EXPORT QStringList NSSearchPathForDirectoriesInDomains(int directory, int domainMask,
                                                                     bool expandTilde);
