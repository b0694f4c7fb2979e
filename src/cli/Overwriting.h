#pragma once

#include "cli/Arguments.h"
#include "cli/OutputTarget.h"

#include <string>
#include <vector>

namespace halvane::cli {

/// A line for each file that an export reads and that its document would replace.
[[nodiscard]] std::vector<std::string> checkDocumentReplacesNothing(const ExportArguments& arguments,
                                                                    const OutputTarget& output);

/// A line for each file that the report would replace: those that the export reads, and its document.
[[nodiscard]] std::vector<std::string> checkReportReplacesNothing(const ExportArguments& arguments);

} // namespace halvane::cli
