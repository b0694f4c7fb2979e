#pragma once

#include "engine/ExportObserver.h"
#include "engine/second/SecondEdition.h"
#include "host/Forward.h"
#include "telling/ControlFileLint.h"

#include <string>
#include <vector>

namespace halvane {

/// What an export would tell of a control node that it reaches.
struct ForeseenNotice {
    dom::Node oNode;
    Notice notice = Notice::ResolvedToNothing;
    std::string sDetail;
    std::string sHint; ///< as an export's log has it
};

struct Foreseen {
    std::vector<ForeseenNotice> notices;
    std::vector<Finding> findings; ///< of which an export tells nothing, since it only finds no rows
};

/// Reads a control file without rows: an export reaches only what stands in repeated nodes that have items,
/// and in conditions that hold. What depends on the rows themselves is not foreseen.
/// @param pMapDocument nothing: what the control file shows by itself.
[[nodiscard]] Foreseen foresee(dom::Node oControlRoot, const SecondEdition& edition,
                               const host::GisMapDocumentPtr& pMapDocument);

} // namespace halvane
