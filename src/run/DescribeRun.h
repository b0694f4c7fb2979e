#pragma once

#include "host/DataHost.h"
#include "run/describe/MapDescription.h"
#include "telling/Console.h"
#include "telling/ExitCodes.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace halvane {

/// What became of a description.
struct DescribeOutcome {
    ExitCode exitCode = ExitCode::NotWritten;
    std::string sText;    ///< the description; "" unless it was made
    std::string sProblem; ///< why it was not
};

/// Writes a description out as a text. @param sPath the map's absolute path.
using DescriptionForm =
    std::function<std::string(const MapDescription& description, const std::string& sPath)>;

/// Opens a map, and describes it. What is allowed in it but will not do what was meant is told on the
/// console.
/// @param sMap as openMapDocument() takes it. @param sShown how the caller names it.
/// @param bAllowConnections whether a project may name databases of servers.
/// @param sketchPoints as describeMap() takes it.
/// @param sTarget absolute path of a file that is to hold the description; it must be none of the map's data.
/// "" for none.
[[nodiscard]] DescribeOutcome describeMapAt(const std::string& sMap, const std::string& sShown,
                                            const DescriptionForm& form, const host::DataHosts& hosts,
                                            const Console& console, bool bAllowConnections = false,
                                            std::optional<std::size_t> sketchPoints = {},
                                            const std::string& sTarget = {});

/// Compares two maps, their extents included: a line for each change, or JSON.
/// @returns exit code Findings where they differ.
[[nodiscard]] DescribeOutcome compareMapsAt(const std::string& sOld, const std::string& sNew, bool bJson,
                                            const host::DataHosts& hosts, const Console& console,
                                            bool bAllowConnections);

} // namespace halvane
