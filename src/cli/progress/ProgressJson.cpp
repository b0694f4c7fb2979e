#include "cli/progress/ProgressJson.h"

#include <string>
#include <utility>

namespace halvane::cli {

void ProgressJson::update(std::uint64_t lItems) {
    lItems_ = lItems;
    TimedProgress::update(lItems);
}

void ProgressJson::clear() {
    if (!std::exchange(bEnded_, true))
        show(facts(lItems_, now()));
}

void ProgressJson::show(const ProgressFacts& facts) {
    const std::string sLine = progressJson(facts) + "\n";
    // A program that has gone away is no failure of the export.
    static_cast<void>(std::fputs(sLine.c_str(), pStream_));
    static_cast<void>(std::fflush(pStream_));
}

} // namespace halvane::cli
