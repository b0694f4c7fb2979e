#pragma once

#include "engine/second/SecondEdition.h"
#include "xml/dom/Dom.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Puts the parts that a control file of the second edition includes into it; nothing where there are none.
/// @param sPath of the control file, absolute, or what it was read from.
/// @param sShown the name that problems begin with. @param problems gets a line for each part that is
/// missing.
void includeParts(const dom::DocumentPtr& oDocument, const std::string& sPath, const std::string& sShown,
                  const SecondEdition* pSecondEdition, std::vector<std::string>& problems);

/// A part as a person finds it. @param sControl the control file as the person typed it.
/// @param sPart seen from its folder; "": the control file itself.
[[nodiscard]] std::string shownFile(std::string_view sControl, std::string_view sPart);
/// A line of it: "parts/head.xml:12".
[[nodiscard]] std::string shownLine(std::string_view sControl, std::string_view sPart, std::uint32_t lLine);

} // namespace halvane
