#include "cli/progress/TimedProgress.h"

#include <algorithm>
#include <utility>

namespace halvane::cli {

void TimedProgress::update(std::uint64_t lItems) {
    const Time current = clock_();
    if (current < due_)
        return;
    due_ = current + interval_;
    show(facts(lItems, current));
}

ProgressFacts TimedProgress::facts(std::uint64_t lItems, Time current) {
    ProgressFacts facts;
    facts.elapsed = current - started_;
    facts.lItems = lItems;
    facts.sUnit = sUnit_;
    const auto rows = askRows_ ? askRows_() : std::nullopt;
    if (!rows)
        return facts;
    facts.sOf = rows->sTable;
    facts.lDone = rows->lRead;
    facts.lAll = rows->lAll;
    if (std::exchange(nLoop_, rows->nLoop) != rows->nLoop) {
        since_ = current;
        lSince_ = rows->lRead;
    }
    const std::chrono::duration<double> seen = current - since_;
    if (rows->lRead > lSince_ && seen.count() > 0) {
        facts.dPerSecond = static_cast<double>(rows->lRead - lSince_) / seen.count();
        if (rows->lAll)
            facts.dSecondsLeft =
                static_cast<double>(std::max<std::int64_t>(*rows->lAll - rows->lRead, 0)) / *facts.dPerSecond;
    }
    return facts;
}

} // namespace halvane::cli
