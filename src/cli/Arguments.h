#pragma once

#include "run/ExportArguments.h"

namespace CLI {
class App;
}

namespace halvane::cli {

inline constexpr const char* sAllowConnections =
    "A QGIS project may name databases of servers, which are then read";

/// Declares the arguments of `halvane export`; parsing writes them into `arguments`, which outlives the app.
void declareExportArguments(CLI::App& app, ExportArguments& arguments);

/// Declares those that stand for the application: the map, its selections, the processors.
void declareApplicationArguments(CLI::App& app, ExportArguments& arguments);

} // namespace halvane::cli
