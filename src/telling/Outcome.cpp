#include "telling/Outcome.h"

#include "telling/LogListing.h"
#include "telling/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace halvane {

std::string writtenSentence(std::string_view sPath, const ExportLog& log) {
    return fmt::format("Wrote {} ({})", sPath, counted(log.items(), "item"));
}

std::string incompleteSentence(const ExportLog& log, const LostShapesList& lost) {
    std::vector<std::string> causes;
    if (log.failures() > 0)
        causes.push_back(fmt::format("{} failed", counted(failedNodes(log), "control node")));
    std::size_t nShapes = 0;
    for (const auto& ofLayer : lost)
        nShapes += ofLayer.nCount;
    if (nShapes > 0)
        causes.push_back(fmt::format("{} cannot be read", counted(nShapes, "shape")));
    return causes.empty() ? "" : fmt::format("{}; the document is incomplete", fmt::join(causes, " and "));
}

std::vector<std::string> lostShapesLines(const LostShapesList& lost) {
    std::vector<std::string> lines;
    for (const auto& ofLayer : lost)
        lines.push_back(fmt::format(R"({} of "{}" in "{}" cannot be read and {} left out: {})",
                                    counted(ofLayer.nCount, "shape"), ofLayer.sLayer, ofLayer.sLocation,
                                    ofLayer.nCount == 1 ? "is" : "are", ofLayer.sReason));
    return lines;
}

std::string notWrittenSentence(std::string_view sPath, std::string_view sReason) {
    return sReason.find(sPath) == std::string_view::npos
               ? fmt::format("nothing was written to \"{}\": {}", sPath, sReason)
               : fmt::format("nothing was written: {}", sReason);
}

std::string brokenOffSentence(std::string_view sReason) {
    return fmt::format("what was written is not the whole document: {}", sReason);
}

std::string invalidSentence(std::string_view sSchema, std::uint64_t lErrors) {
    return fmt::format("the document is written, but not valid against \"{}\": {}", sSchema,
                       counted(lErrors, "error"));
}

std::string validAddition(std::string_view sSchema) {
    return fmt::format(", valid against \"{}\"", sSchema);
}

std::string notCheckedWarning(std::string_view sSchema, std::string_view sReason) {
    return fmt::format("the document is written, but was not checked to its end against \"{}\": {}", sSchema,
                       sReason);
}

std::string whyNotSaved(const ExportLog& log, const std::string& sErrMsg) {
    if (!log.lostServer().empty())
        return fmt::format("the connection to \"{}\" was lost", log.lostServer());
    if (log.givenUp())
        return "cancelled";
    const std::string& sReason = log.notSavedReason().empty() ? sErrMsg : log.notSavedReason();
    return sReason.empty() ? "the export ended without a reason" : sReason;
}

std::vector<std::string> libraryWarnings(const std::vector<std::string>& lines) {
    std::vector<std::string> warnings;
    warnings.reserve(lines.size());
    for (const auto& sLine : lines)
        warnings.push_back("a library reports: " + sLine);
    return warnings;
}

std::string notDurableWarning(std::string_view sPath, std::string_view sReason) {
    return fmt::format("\"{}\" is written, but a loss of power may still take it: its folder could not be "
                       "brought to the disk: {}",
                       sPath, sReason);
}

std::vector<std::string> repairWarnings(const dom::CharacterRepairs& repairs) {
    std::vector<std::string> warnings;
    if (repairs.dropped > 0)
        warnings.push_back(fmt::format("{} that XML forbids {} dropped from the data",
                                       counted(repairs.dropped, "character"),
                                       repairs.dropped == 1 ? "was" : "were"));
    if (repairs.replaced > 0)
        warnings.push_back(fmt::format(
            "{} of the data {} no UTF-8 and {} replaced by U+FFFD", counted(repairs.replaced, "piece"),
            repairs.replaced == 1 ? "is" : "are", repairs.replaced == 1 ? "was" : "were"));
    return warnings;
}

} // namespace halvane
