#pragma once

#include "cli/ReportFile.h"
#include "run/ExportArguments.h"
#include "telling/Console.h"
#include "telling/ExitCodes.h"

#include <memory>
#include <string>

namespace halvane::cli {

/// Opens the place of --report.
/// @returns nothing, with the reason told, when it cannot be written.
[[nodiscard]] std::unique_ptr<ReportFile> openReport(const ExportArguments& arguments,
                                                     const Console& console);

/// Writes it there. @returns what the program returns: a document without the report asked for is not all
/// that was asked for.
[[nodiscard]] ExitCode writeReport(ReportFile& file, const std::string& sJson,
                                   const ExportArguments& arguments, ExitCode exitCode,
                                   const Console& console);

} // namespace halvane::cli
