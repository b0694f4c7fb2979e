#pragma once

#include "xml/dom/Dom.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Something in a control file that is allowed and does not do what was meant.
struct Finding {
    enum class Severity : std::uint8_t {
        Note,    ///< something is not heeded
        Warning, ///< something else is written than was asked for
    };

    std::uint32_t lLine = 0;
    Severity severity = Severity::Note;
    std::string_view sKind; ///< the rule's name, as the report spells it
    std::string sElement;   ///< the control element's own name
    std::string sName;      ///< of what it writes
    std::string sPart;      ///< of the control file in which it stands; "": the file itself
    std::string sDetail;    ///< the attribute or value that it is about
    std::string sText;      ///< what is the matter
    std::string sRemedy;    ///< what to do
    dom::Node oNode;        ///< the control element; borrowed
    std::string sAttribute; ///< of it that this is about; "" where the rule's name tells which, or none
};

/// Looks for such things, from the file alone: whatever depends on the data is noticed while it is exported.
/// Attributes of namespaces are somebody else's.
/// @returns the findings in document order, one for each matter of an element.
[[nodiscard]] std::vector<Finding> lintControlFile(dom::Node oControlRoot);

/// A finding without its place: what, and what to do.
[[nodiscard]] std::string explain(const Finding& finding);
/// The finding on a line of its own ("control.xml:12: note: …").
/// @param sControl the control file as the person typed it.
[[nodiscard]] std::string listed(const Finding& finding, std::string_view sControl);

} // namespace halvane
