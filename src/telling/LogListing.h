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

/// Something that a log tells.
struct ToldEvent {
    const NodeRecord* pRecord; ///< of the log
    const NodeEvent* pEvent;
    std::uint64_t lOtherwise = 0;           ///< times that the node failed with other messages
    std::size_t nInside = 0;                ///< nodes inside it that share the cause
    std::vector<std::uint32_t> sameAt = {}; ///< lines of other nodes that failed for the host's same reason
};

enum class Telling {
    ReasonsOnce, ///< nodes that fail for the host's same reason are told with the first of them
    NodesOnce,   ///< a node's failures are told with the first of them
};

/// What an export told, in the order of the control file. Nodes that found nothing only because an enclosing
/// node did not are counted with that one.
/// @param findings that were told; what they say of a value is not told again.
[[nodiscard]] std::vector<ToldEvent> toldEvents(const ExportLog& log, const std::vector<Finding>& findings,
                                                Telling telling = Telling::ReasonsOnce);
/// What follows the sentence of an event: " (3 times)"; "" where nothing does.
[[nodiscard]] std::string additions(const ToldEvent& event);

struct ListedLine {
    bool bFailure = false; ///< else a notice
    std::string sText;
};

/// The told events as lines.
[[nodiscard]] std::vector<ListedLine> listing(const ExportLog& log, const ListingContext& context);

/// The listing on a terminal. Long lists are cut.
void listOnConsole(const ExportLog& log, const ListingContext& context, const Console& console);

/// What was found in the control file, on a terminal. Long lists are cut.
void listOnConsole(const std::vector<Finding>& findings, std::string_view sControl, const Console& console);

/// How many control nodes failed.
[[nodiscard]] std::size_t failedNodes(const ExportLog& log);

} // namespace halvane
