#pragma once

#include "run/ExportArguments.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace halvane::cli {

inline constexpr const char* sAllowConnections =
    "A QGIS project may name databases of servers, which are then read";

/// An option with a text.
void addText(CLI::App& app, const char* sName, std::optional<std::string>& sValue, const char* sPlaceholder,
             const char* sDescription);
/// An option that may be given several times, with one value each time.
void addRepeatable(CLI::App& app, const char* sName, std::vector<std::string>& values,
                   const char* sPlaceholder, const char* sDescription);

/// Declares what every subcommand takes that writes to a terminal.
void declareVerbosity(CLI::App& app, bool& bQuiet, bool& bVerbose);

/// Declares the arguments of `halvane export`; parsing writes them into `arguments`, which outlives the app.
void declareExportArguments(CLI::App& app, ExportArguments& arguments);

/// The same without CONTROL, OUTPUT and the help.
void declareExportOptions(CLI::App& app, ExportArguments& arguments);

/// Declares those of them that say what is read: all but those about the document.
void declareControlArguments(CLI::App& app, ExportArguments& arguments);

/// "-" in the place of CONTROL or OUTPUT.
inline constexpr const char* sStream = "-";
/// Reads it as standard input in the place of CONTROL.
void takeControlOfStandardInput(ExportArguments& arguments);

/// Declares those that stand for the application: the map, its selections, the processors.
void declareApplicationArguments(CLI::App& app, ExportArguments& arguments);

} // namespace halvane::cli
