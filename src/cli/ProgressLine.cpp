#include "cli/ProgressLine.h"

#include "telling/StandardStreams.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace halvane::cli {

namespace {

constexpr auto interval = std::chrono::milliseconds(100);
constexpr const char* sWipe = "\r\x1B[K";

} // namespace

void ProgressLine::update(std::uint64_t lItems) {
    if (!bShown_)
        return;
    const auto now = Clock::now();
    if (now < due_)
        return;
    const std::chrono::duration<double> elapsed = now - started_;
    const std::string sLine = fmt::format("\r{}, {:.1f} s\x1B[K", counted(lItems, "item"), elapsed.count());
    // A terminal that has gone away is no failure of the export.
    static_cast<void>(std::fputs(sLine.c_str(), pStream_));
    static_cast<void>(std::fflush(pStream_));
    bOnScreen_ = true;
    due_ = now + interval;
}

void ProgressLine::clear() {
    if (!bOnScreen_)
        return;
    static_cast<void>(std::fputs(sWipe, pStream_));
    static_cast<void>(std::fflush(pStream_));
    bOnScreen_ = false;
}

bool terminalOnStandardError() {
    const char* sTerminal = std::getenv("TERM");
    return ::isatty(standardErrorDescriptor()) == 1 &&
           (sTerminal == nullptr || std::string_view(sTerminal) != "dumb");
}

} // namespace halvane::cli
