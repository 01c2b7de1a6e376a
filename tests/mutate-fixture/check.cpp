// The fixture library's check: exits with 1 when a result is wrong.
#include "fixture.h"

#include <cstdio>
#include <fstream>
#include <unistd.h>

int main()
{
    // A mutant that never ends must not outlive the self-test, whatever happens to it.
    alarm(60);
    // The self-test waits for this file to interrupt the tool while a test runs.
    std::ofstream("running.pid") << getpid() << '\n';

    int failures = 0;
    auto check = [&failures](bool ok, const char *what) {
        if (!ok) {
            std::printf("FAIL: %s\n", what);
            ++failures;
        }
    };
    check(percent(1, 4) == 25, "percent(1, 4)");
    check(stepsTo(10, 3) == 4, "stepsTo(10, 3)");
    check(isBlank("  ") && !isBlank(" x"), "isBlank");
    check(blankChecks() == 2, "blankChecks");
    return failures == 0 ? 0 : 1;
}
