#pragma once

#include "telling/Console.h"
#include "telling/ControlFileLint.h"
#include "telling/ExportLog.h"
#include "telling/Messages.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

struct ListingContext {
    std::string sControl; ///< the control file as the person typed it
    Remedies remedies;
    std::vector<Finding> findings = {}; ///< that were told; what they say of a value is not said again
};

struct ListedLine {
    bool bFailure = false; ///< else a notice
    std::string sText;
};

/// What an export told, control node by control node in the order of the control file. Nodes that found
/// nothing only because an enclosing node did not are counted with that one.
[[nodiscard]] std::vector<ListedLine> listing(const ExportLog& log, const ListingContext& context);

/// The listing on a terminal. Long lists are cut.
void listOnConsole(const ExportLog& log, const ListingContext& context, const Console& console);

/// What was found in the control file, on a terminal. Long lists are cut.
void listOnConsole(const std::vector<Finding>& findings, std::string_view sControl, const Console& console);

/// How many control nodes failed.
[[nodiscard]] std::size_t failedNodes(const ExportLog& log);

} // namespace halvane
