#pragma once

#include "telling/ExportLog.h"

#include <string>
#include <string_view>

namespace halvane {

/// The name of a kind of notice, as the report spells it.
[[nodiscard]] std::string_view nameOf(Notice notice);

/// What a person can do about the application that an export runs in.
struct Remedies {
    std::string_view sMap; ///< how to give a map document; "" where the export had one
    std::string_view sProcessor = "load its library with --processor";
};
inline constexpr std::string_view sGiveAMap = "give a map with --map";

/// What happened, and what to do about it.
struct Explanation {
    std::string sWhat;
    std::string sRemedy; ///< "" where there is nothing to say
    std::string_view sJoin = "; ";
};

[[nodiscard]] std::string inOneSentence(const Explanation& explanation);
[[nodiscard]] Explanation explained(const ControlNodeFacts& facts, const NodeEvent& event,
                                    const Remedies& remedies);
/// The same in one sentence without the place.
[[nodiscard]] std::string explain(const ControlNodeFacts& facts, const NodeEvent& event,
                                  const Remedies& remedies);

} // namespace halvane
