// Small functions for the mutation tool's self-test. check.cpp covers some of their
// behaviour and leaves some out on purpose; the comments name the mutants the self-test
// expects to be killed, to survive and to run into the time-out.
#include "fixture.h"

#include <cassert>

namespace {
int checks = 0;

void countCheck()
{
    ++checks;
}
} // namespace

// Percent of part in whole, rounded down; 0 for an empty whole.
int percent(int part, int whole)
{
    if (whole == 0)
        return 0;              // never checked: 0 -> 1 survives
    return part * 100 / whole; // * -> / is killed
}

// How many steps of `step` lead from 0 to `limit` or past it.
int stepsTo(long long limit, long long step)
{
    assert(step > 0 && "never mutated: the assertion is skipped");
    int steps = 0;
    for (long long at = 0; at < limit; at += step) // += -> -= never ends: time-out
        ++steps;
    return steps;
}

bool isBlank(const char *text)
{
    countCheck();
    while (*text == ' ')
        ++text;
    return !*text;
}

int blankChecks()
{
    return checks;
}
