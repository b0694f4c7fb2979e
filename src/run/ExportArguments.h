#pragma once

#include "io/Durability.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace halvane {

/// What messages call the standard streams that stand in for files.
inline constexpr const char* sStandardInput = "standard input";
inline constexpr const char* sStandardOutput = "standard output";

/// How a front end tells how far an export is.
enum class ProgressForm : std::uint8_t {
    None,
    Line, ///< where there is a terminal to show it on
    Json, ///< for programs
};

/// The arguments of `halvane export`, as typed. An option given as "" is not one that was not given.
struct ExportArguments {
    std::string sControl;               ///< sStandardInput where it is read from there
    std::string sOutput;                ///< sStandardOutput where it goes there
    bool bReadsStandardInput = false;   ///< the control file is what standard input holds
    bool bWritesStandardOutput = false; ///< the document goes to the sink of the run's surroundings
    std::string sFileOfStandardOutput;  ///< that it leads to, so that it is no data; "" where it is none
    bool bExactName = false;            ///< OUTPUT gets no ending
    std::optional<std::string> sMap;
    bool bAllowConnections = false; ///< of a project, to the databases of servers
    std::optional<std::string> sXmlDocument;
    std::optional<std::string> sNodePath;
    std::vector<std::string> selections; ///< "LAYER=CHOICE" each
    std::vector<std::string> processors;
    std::vector<std::string> values; ///< "name=value" each, for control files of the second edition
    std::optional<std::string> sReport;
    std::optional<std::string> sSchema;        ///< what the document is validated by
    std::optional<std::string> sSchemaCatalog; ///< local files for addresses that the schema names
    std::int64_t lItemLimit = std::numeric_limits<std::int64_t>::max(); ///< at least 1
    ProgressForm progress = ProgressForm::Line;
    bool bQuiet = false;
    bool bVerbose = false;   ///< also what was read, and how long it took
    bool bRehearses = false; ///< nothing is written: rows that lack a field do not keep it from starting
    io::Durability durability = io::Durability::OnDisk; ///< of the document and the report
};

} // namespace halvane
