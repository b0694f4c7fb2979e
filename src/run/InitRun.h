#pragma once

#include "host/DataHost.h"
#include "telling/Console.h"
#include "telling/ExitCodes.h"

#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// The arguments of `halvane init`, as typed.
struct InitArguments {
    std::string sMap;
    std::vector<std::string> layers; ///< and tables; none: all of them
    bool bAllowConnections = false;  ///< a QGIS project may name servers
    std::optional<std::string> sSchema;
    std::optional<std::string> sSchemaCatalog;
};

/// What came of it.
struct InitOutcome {
    ExitCode exitCode = ExitCode::NotWritten;
    std::string sText;                 ///< the control file; "" unless it was made
    std::vector<std::string> problems; ///< why it was not
};

/// Makes a control file to begin with: for what a map has or, with a schema, for the documents that it
/// describes.
/// @param console is told what is allowed in the map but will not do what was meant.
[[nodiscard]] InitOutcome runInit(const InitArguments& arguments, const host::DataHosts& hosts,
                                  const Console& console);

} // namespace halvane
