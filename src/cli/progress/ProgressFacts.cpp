#include "cli/progress/ProgressFacts.h"

#include "telling/Text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace halvane::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr int widthOfBar = 20;
constexpr std::size_t longestName = 20;

std::string bar(double dPart) {
    const auto nFull = static_cast<std::size_t>(std::lround(dPart * widthOfBar));
    return "[" + std::string(nFull, '#') + std::string(widthOfBar - nFull, ' ') + "]";
}

std::string shown(double dSeconds) {
    const auto lSeconds = std::llround(dSeconds);
    if (lSeconds < 60)
        return fmt::format("{} s", lSeconds);
    return lSeconds < 3600 ? fmt::format("{} min {} s", lSeconds / 60, lSeconds % 60)
                           : fmt::format("{} h {} min", lSeconds / 3600, lSeconds / 60 % 60);
}

template<class Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

} // namespace

std::string progressLine(const ProgressFacts& facts) {
    if (!facts.lDone || !facts.lAll)
        return fmt::format("{}, {:.1f} s", counted(facts.lItems, "item"), facts.elapsed.count());
    // What the data says of its rows may be too little.
    const double dPart =
        *facts.lAll > 0
            ? std::clamp(static_cast<double>(*facts.lDone) / static_cast<double>(*facts.lAll), 0.0, 1.0)
            : 1.0;
    std::string sLine = facts.sOf.empty() ? "" : shortened(printable(facts.sOf), longestName) + " ";
    sLine += fmt::format("{} {:.0f} %", bar(dPart), std::floor(dPart * 100));
    if (facts.sUnit != "rows")
        sLine += fmt::format(", {} of {} {}", *facts.lDone, *facts.lAll, facts.sUnit);
    else if (facts.dPerSecond)
        sLine += fmt::format(", {:.0f} {}/s", *facts.dPerSecond, facts.sUnit);
    return facts.dSecondsLeft ? sLine + fmt::format(", {} left", shown(*facts.dSecondsLeft)) : sLine;
}

std::string progressJson(const ProgressFacts& facts) {
    const Json line{{"event", "progress"},
                    {"seconds", facts.elapsed.count()},
                    {"items", facts.lItems},
                    {"unit", facts.sUnit},
                    {"of", facts.sOf.empty() ? Json(nullptr) : Json(facts.sOf)},
                    {"done", orNull(facts.lDone)},
                    {"all", orNull(facts.lAll)},
                    {"perSecond", orNull(facts.dPerSecond)},
                    {"secondsLeft", orNull(facts.dSecondsLeft)}};
    return withoutSteering(line.dump(-1, ' ', false, Json::error_handler_t::replace));
}

} // namespace halvane::cli
