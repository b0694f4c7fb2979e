#pragma once

#include "run/ExportArguments.h"

#include <string>
#include <vector>

namespace halvane {

/// Where the document goes: OUTPUT split into what the component takes. For standard output these name the
/// place of what does not fit into memory.
struct OutputTarget {
    std::string sFolder; ///< absolute, without a separator at the end except for the root
    std::string sName;   ///< as typed, then as the component has changed it

    bool bExactName = false;      ///< the component appends nothing
    bool bStandardOutput = false; ///< the document goes there
    std::string sFile = {};       ///< that standard output leads to; "" where it is none

    [[nodiscard]] std::string path() const;
    /// The path, or what messages call standard output.
    [[nodiscard]] std::string shown() const;
    /// The paths under which the document could come to stand: as it is, and with the ending that the
    /// component may append; the file that standard output leads to, if it is one.
    [[nodiscard]] std::vector<std::string> possiblePaths() const;
};

/// Splits OUTPUT of the arguments. @param problems gets a line for each reason why nothing can be written
/// there: no name, no such folder, a folder or a device in the document's place.
[[nodiscard]] OutputTarget splitOutput(const ExportArguments& arguments, std::vector<std::string>& problems);

} // namespace halvane
