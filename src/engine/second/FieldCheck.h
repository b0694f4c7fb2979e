#pragma once

#include "engine/second/SecondEdition.h"
#include "host/Forward.h"
#include "xml/dom/Dom.h"

#include <string>
#include <vector>

namespace halvane {

/// What a control file of the second edition asks of rows that cannot give it.
struct RowsProblem {
    dom::Node oControlNode;
    std::string sText;
    bool bOfRelationship = false; ///< a relationship class that cannot be followed; else a field
};

/// Finds the fields that rows lack and the relationship classes that cannot be followed from them, as far as
/// the control file and the map tell which rows those are. Opens the layers and tables that it names; what
/// cannot be opened is told elsewhere.
[[nodiscard]] std::vector<RowsProblem> checkSecondRows(dom::Node oControlRoot, const SecondEdition& edition,
                                                       const host::GisMapDocumentPtr& pMapDocument);

} // namespace halvane
