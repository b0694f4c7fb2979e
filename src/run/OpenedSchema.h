#pragma once

#include "run/ExportArguments.h"
#include "run/OutputTarget.h"
#include "xml/schema/Schema.h"

#include <memory>
#include <string>
#include <vector>

namespace halvane {

/// The schema of an export, read with all its parts before the export begins.
struct OpenedSchema {
    std::string sShown;                   ///< as it was typed
    std::string sPath;                    ///< absolute
    std::unique_ptr<dom::Schema> pSchema; ///< nothing when none was asked for, or it is unfit
};

/// @param problems gets a line for each reason why the schema cannot be used: it or a part of it cannot be
///        read, is no schema, lies elsewhere, or would be replaced by the document.
[[nodiscard]] OpenedSchema openSchema(const ExportArguments& arguments, const OutputTarget& output,
                                      std::vector<std::string>& problems);

} // namespace halvane
