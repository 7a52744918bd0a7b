#pragma once

#include <cstdio>
#include <cstdlib>

namespace orvalo::fuzz {

/// Ends the process, and with it makes the input a finding, where something that must hold does not.
inline void Check(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

}  // namespace orvalo::fuzz
