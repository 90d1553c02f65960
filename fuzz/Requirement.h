#pragma once

#include <cstdio>
#include <cstdlib>

// What must hold for every input; where it does not, the process ends so that the input is kept as a finding.
inline void Require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}
