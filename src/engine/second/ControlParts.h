#pragma once

#include "xml/dom/Dom.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Something in a control file of the second edition that no export can follow.
struct SecondProblem {
    dom::Node oControlNode;
    std::string sText;
};

/// Fetches the parts that a control file includes.
class ControlParts {
public:
    ControlParts() = default;
    ControlParts(const ControlParts&) = delete;
    ControlParts& operator=(const ControlParts&) = delete;
    virtual ~ControlParts() = default;

    /// Puts the root of each part that an element names by h:Include into that element, and those of the
    /// parts' own inclusions into theirs. The attribute's value becomes the part's path, seen from the
    /// control file's folder.
    /// @param oControlRoot of a control file of the second edition whose parts were not fetched yet.
    /// @param sControlPath absolute; anything else is no file, and has no parts.
    /// @returns why a part cannot be there, at the elements that name them.
    [[nodiscard]] virtual std::vector<SecondProblem> include(dom::Node oControlRoot,
                                                             std::string_view sControlPath) = 0;
};

/// Which part of a control file an element stands in: its path, seen from the control file's folder; "" for
/// the control file itself.
[[nodiscard]] std::string partOf(dom::Node oElement);

} // namespace halvane
