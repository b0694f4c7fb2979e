#include "cli/StandardOutput.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace halvane::cli {

bool writeOut(const std::string& sText, std::string_view sWhat, const Console& console) {
    const bool bWritten =
        std::fwrite(sText.data(), 1, sText.size(), stdout) == sText.size() && std::fflush(stdout) == 0;
    const int lError = errno;
    if (bWritten || lError == EPIPE)
        return true;
    console.failure(fmt::format("halvane: {} cannot be written: {}", sWhat, std::strerror(lError)));
    return false;
}

} // namespace halvane::cli
