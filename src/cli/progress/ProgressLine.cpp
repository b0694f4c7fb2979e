#include "cli/progress/ProgressLine.h"

#include <string>

namespace halvane::cli {

namespace {

// A terminal that has gone away is no failure of the export.
void write(std::FILE* pStream, const std::string& sText) {
    static_cast<void>(std::fputs(sText.c_str(), pStream));
    static_cast<void>(std::fflush(pStream));
}

} // namespace

void ProgressLine::show(const ProgressFacts& facts) {
    write(pStream_, "\r" + progressLine(facts) + "\x1B[K");
    bOnScreen_ = true;
}

void ProgressLine::makeRoom() {
    if (bOnScreen_)
        write(pStream_, "\r\x1B[K");
    bOnScreen_ = false;
}

} // namespace halvane::cli
