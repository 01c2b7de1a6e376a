#pragma once

#include <Quorvelle/Widgets/WidgetsExport.h>

#include <optional>

// The release question the kit's drawing and lookup code branches on, with a seam so that
// tests can take the older branch on a system that always answers "yes".
namespace VXSystemRelease {

// VXSystemInformation::isLionOrGreater(), unless a test has decided otherwise.
QV_WIDGETS_TESTS_EXPORT bool isLionOrGreater();
QV_WIDGETS_TESTS_EXPORT void setLionOrGreaterForTesting(std::optional<bool> value);

} // namespace VXSystemRelease
