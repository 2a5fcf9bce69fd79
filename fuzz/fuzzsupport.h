#pragma once
// What the fuzz targets share.

#include <cerrno>
#include <cstdio>
#include <cstdlib>

// Stops the run when `condition` fails, naming the target and what went wrong: an abort is what the
// fuzzer keeps an input for.
inline void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, what);
        std::abort();
    }
}
