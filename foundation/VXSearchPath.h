#pragma once

#include <Quorvelle/Foundation/FoundationExport.h>

#include <QStringList>

/**
 * \file
 * The standard folders of a directory kind in the requested domains. The user domain
 * lives under $HOME, the local domain under "/", the network domain under "/Network"
 * and the system domain under "/System", so the folder names the suite installs into
 * stay the same on every platform.
 */

/** The kinds of standard folder NSSearchPathForDirectoriesInDomains() knows. */
enum VXSearchPathDirectory
{
    NSApplicationDirectory = 1,         ///< Applications
    NSLibraryDirectory = 5,             ///< Library
    NSCachesDirectory = 13,             ///< Library/Caches (none in the system domain)
    NSApplicationSupportDirectory = 14, ///< Library/Application Support (none in the system domain)

    NSPreferencePanesDirectory = 22, ///< Library/PreferencePanes
};

/** The domains to search, combined with `|`. */
enum VXSearchPathDomainMask
{
    NSUserDomainMask = 1,       ///< The user's home folder.
    NSLocalDomainMask = 2,      ///< The machine, under "/".
    NSNetworkDomainMask = 4,    ///< The network, under "/Network".
    NSSystemDomainMask = 8,     ///< The system, under "/System".
    NSAllDomainsMask = 0x0ffff, ///< Every domain.
};

/**
 * The folders of a directory kind in the domains of the mask, whether they exist or not.
 * Entries come in domain order user, local, network, system. Without tilde expansion
 * the user domain's entries start with "~". An unknown kind gives an empty list.
 */

QV_FOUNDATION_EXPORT QStringList NSSearchPathForDirectoriesInDomains(int directory, int domainMask,
                                                                     bool expandTilde);
