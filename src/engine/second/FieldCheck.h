#pragma once

#include "engine/second/ControlParts.h"
#include "engine/second/SecondEdition.h"
#include "host/Forward.h"

#include <vector>

namespace halvane {

/// Finds the fields that a control file of the second edition asks of rows that lack them, as far as the
/// control file and the map tell which rows those are. Opens the layers and tables that it names; what cannot
/// be opened is told elsewhere.
[[nodiscard]] std::vector<SecondProblem> checkSecondFields(dom::Node oControlRoot,
                                                           const SecondEdition& edition,
                                                           const host::GisMapDocumentPtr& pMapDocument);

} // namespace halvane
