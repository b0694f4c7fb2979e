#pragma once

#include "engine/second/ControlParts.h"

namespace halvane {

/// Parts of control files from the disk. They stand in the control file's folder or below it, no link is
/// followed on the way, and all of them together have at most 100,000 elements.
class PartFiles final : public ControlParts {
public:
    [[nodiscard]] std::vector<SecondProblem> include(dom::Node oControlRoot,
                                                     std::string_view sControlPath) override;
};

} // namespace halvane
