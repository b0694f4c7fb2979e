#pragma once

#include "engine/second/ControlParts.h"
#include "engine/second/SecondEdition.h"
#include "xml/dom/Dom.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Something that makes a control file unfit for an export.
struct ControlProblem {
    std::string_view sKind; ///< stable; "" where it is about the list of problems itself
    std::string sPart;      ///< of the control file in which it stands; "": the file itself
    std::uint32_t lLine = 0;
    std::uint32_t lColumn = 0; ///< 0 where it is not known
    std::string sText;
    dom::Node oNode; ///< borrowed; nothing where the file could not be read
};

/// The problem on a line of its own ("control.xml:12: …"). @param sControl as the person typed it.
[[nodiscard]] std::string listed(const ControlProblem& problem, std::string_view sControl);
/// A problem of the second edition. @param sKind stable.
[[nodiscard]] ControlProblem problemOf(const SecondProblem& problem, std::string_view sKind);

/// Puts the parts that a control file of the second edition includes into it; nothing where there are none.
/// @param sPath of the control file, absolute, or what it was read from.
/// @returns a problem for each part that is missing.
[[nodiscard]] std::vector<ControlProblem> includeParts(const dom::DocumentPtr& oDocument,
                                                       const std::string& sPath,
                                                       const SecondEdition* pSecondEdition);

/// A part as a person finds it. @param sControl the control file as the person typed it.
/// @param sPart seen from its folder; "": the control file itself.
[[nodiscard]] std::string shownFile(std::string_view sControl, std::string_view sPart);
/// A line of it: "parts/head.xml:12".
[[nodiscard]] std::string shownLine(std::string_view sControl, std::string_view sPart, std::uint32_t lLine);

} // namespace halvane
