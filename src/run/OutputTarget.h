#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Where the document goes: OUTPUT split into what the component takes.
struct OutputTarget {
    std::string sFolder; ///< absolute, without a separator at the end except for the root
    std::string sName;   ///< as typed, then as the component has changed it

    [[nodiscard]] std::string path() const;
    /// The paths under which the document could come to stand: as it is, and with the ending that the
    /// component may append.
    [[nodiscard]] std::vector<std::string> possiblePaths() const;
};

/// Splits OUTPUT. @param problems gets a line for each reason why nothing can be written there: no name, no
/// such folder, a folder or a device in the document's place.
[[nodiscard]] OutputTarget splitOutput(std::string_view sOutput, std::vector<std::string>& problems);

} // namespace halvane
