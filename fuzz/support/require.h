#pragma once

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace ktr::fuzz {

/// Ends the program when what must hold for every input does not hold.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        ::dprintf(STDERR_FILENO, "does not hold: %s\n", what);
        std::abort();
    }
}

} // namespace ktr::fuzz
