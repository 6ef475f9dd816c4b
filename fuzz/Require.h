#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process when a fuzz target's property does not hold: that is how the fuzzer learns of it.
inline void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}
