#pragma once

#include "io/Durability.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// The arguments of `halvane export`, as typed. An option given as "" is not one that was not given.
struct ExportArguments {
    std::string sControl;
    std::string sOutput;
    std::optional<std::string> sMap;
    std::optional<std::string> sXmlDocument;
    std::optional<std::string> sNodePath;
    std::vector<std::string> selections; ///< "LAYER=CHOICE" each
    std::vector<std::string> processors;
    std::vector<std::string> values; ///< "name=value" each, for control files of the second edition
    std::optional<std::string> sReport;
    std::int64_t lItemLimit = std::numeric_limits<std::int64_t>::max(); ///< at least 1
    bool bShowProgress = true; ///< where there is a terminal to show it on
    bool bQuiet = false;
    io::Durability durability = io::Durability::OnDisk; ///< of the document and the report
};

} // namespace halvane
