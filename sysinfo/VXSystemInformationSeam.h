#pragma once

// Where the system information queries look. Only tests change these, to give the queries a
// fake machine; programs never call them. Not thread-safe: set before querying.

#include <Quorvelle/SystemInformation/SystemInformationExport.h>

#include <QString>

namespace VXSystemInformation::Seam {

// Prefix put before every system path read (/sys, /proc, /etc, /usr/share, /Applications,
// /Library, ...). Empty (the default) means the real root. The user's own folders still come
// from $HOME and the XDG_* variables, which a test sets itself.
QV_SYSTEMINFORMATION_TESTS_EXPORT void setRoot(const QString &root);
QV_SYSTEMINFORMATION_TESTS_EXPORT QString root();
// The report tool's program; default "/usr/bin/lshw".
QV_SYSTEMINFORMATION_TESTS_EXPORT void setReportToolPath(const QString &path);
QV_SYSTEMINFORMATION_TESTS_EXPORT QString reportToolPath();
// Forget every cached answer, so a test can ask a different fake machine.
QV_SYSTEMINFORMATION_TESTS_EXPORT void resetCaches();
// Real machine again, caches cleared.
QV_SYSTEMINFORMATION_TESTS_EXPORT void reset();

} // namespace VXSystemInformation::Seam
