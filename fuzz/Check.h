#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace halvane::fuzz {

/// Ends the program where something that holds for every input does not.
inline void check(bool bHolds, const char* pStatement, const std::string& sDetail = {}) {
    if (bHolds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n%s\n", pStatement, sDetail.c_str());
    std::abort();
}

} // namespace halvane::fuzz
