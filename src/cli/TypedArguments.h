#pragma once

#include "run/ExportArguments.h"

#include <string>
#include <vector>

namespace halvane::cli {

/// What stands for the application, as a command line gives it to another process.
[[nodiscard]] std::vector<std::string> typedApplication(const ExportArguments& arguments);

/// The same for all options of `halvane export` but the report, and behind them CONTROL and OUTPUT.
[[nodiscard]] std::vector<std::string> typedExport(const ExportArguments& arguments);

} // namespace halvane::cli
