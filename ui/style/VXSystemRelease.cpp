#include "VXSystemRelease.h"

#include "VXSystemInformation.h"

namespace VXSystemRelease {

namespace {
std::optional<bool> testingValue;
}

bool isLionOrGreater()
{
    return testingValue ? *testingValue : VXSystemInformation::isLionOrGreater();
}

void setLionOrGreaterForTesting(std::optional<bool> value)
{
    testingValue = value;
}

} // namespace VXSystemRelease
