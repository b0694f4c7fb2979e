#include "cli/StandardOutput.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unistd.h>

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

bool colouredStandardOutput() noexcept {
    const char* const sNoColour = std::getenv("NO_COLOR");
    const char* const sTerminal = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) != 0 && (sNoColour == nullptr || *sNoColour == 0) &&
           (sTerminal == nullptr || std::string_view(sTerminal) != "dumb");
}

} // namespace halvane::cli
