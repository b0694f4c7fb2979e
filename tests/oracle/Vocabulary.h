#pragma once

#include <string>
#include <vector>

namespace halvane::oracle {

// The words of control files, a few that mean nothing among them.
using Words = std::vector<std::string>;

[[nodiscard]] const Words& kinds();
[[nodiscard]] const Words& referenceProperties();
[[nodiscard]] const Words& domainProperties();
[[nodiscard]] const Words& relationshipProperties();
[[nodiscard]] const Words& fieldProperties();
[[nodiscard]] const Words& subtypeProperties();

} // namespace halvane::oracle
