#pragma once

#include "host/DataHost.h"
#include "run/ExportArguments.h"
#include "telling/ExitCodes.h"
#include "telling/Progress.h"
#include "telling/StandardStreams.h"
#include "telling/check/CheckFindings.h"

#include <string>
#include <vector>

namespace halvane {

/// What a check runs in.
struct CheckSurroundings {
    const host::DataHosts& hosts; ///< stays
    Progress& progress;           ///< borrowed
    /// Borrowed; what libraries wrote to the process's standard error becomes warnings. May be nothing.
    LibraryLines* pLibraryLines = nullptr;
};

/// What came of a check.
struct CheckOutcome {
    ExitCode exitCode = ExitCode::Written;
    std::vector<CheckFinding> findings; ///< in the order of the control file
    std::vector<std::string> problems;  ///< why nothing, or not all, was checked
    std::vector<std::string> warnings;  ///< about the data and what stands beside the control file
    std::string sControl;               ///< absolute, or what it was read from
    std::string sMap;                   ///< absolute; "" without one
    bool bWithoutMap = false;           ///< the control file looks in a map, and none was given
};

/// Tells what an export by these arguments would tell of its control file, and what the control file itself
/// shows. With a map, or where none is needed, the export is gone through to its end; its document goes
/// nowhere. Nothing is written but what does not fit into memory, in an unnamed file meanwhile.
/// @param arguments of an export; those about its document do not count.
[[nodiscard]] CheckOutcome runCheck(const ExportArguments& arguments, const CheckSurroundings& around);

} // namespace halvane
