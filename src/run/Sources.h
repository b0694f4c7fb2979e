#pragma once

#include "run/ExportInputs.h"

#include <string>
#include <vector>

namespace halvane {

/// What an export read, so that a program can tell whether it would be the same today.
struct Sources {
    std::vector<std::string> files; ///< absolute: the control file with its parts, the map, schemas …
    std::vector<std::string>
        data; ///< absolute: files, file databases and folders, also those that are missing
    /// More was read that no local file holds: of a server, an address or standard input, or what a processor
    /// gave.
    bool bElsewhere = false;
};

/// As far as the inputs were opened. @param arguments that they were opened by.
[[nodiscard]] Sources sourcesOf(const ExportArguments& arguments, const ExportInputs& inputs);

} // namespace halvane
