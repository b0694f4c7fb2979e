#pragma once

#include "host/LostShapes.h"
#include "telling/ExportLog.h"

#include <string>
#include <string_view>
#include <vector>

namespace halvane {

// What an export came to, in sentences; the same on a terminal and in a window.

/// "Wrote PATH (3 items)".
[[nodiscard]] std::string writtenSentence(std::string_view sPath, const ExportLog& log);
/// What the data holds and the document lacks, layer by layer.
using LostShapesList = std::vector<host::LostShapes>;

/// That control nodes failed or shapes were lost; "" when nothing of that happened.
[[nodiscard]] std::string incompleteSentence(const ExportLog& log, const LostShapesList& lost);
/// A line for each layer whose shapes could not be read.
[[nodiscard]] std::vector<std::string> lostShapesLines(const LostShapesList& lost);
/// That nothing was written, and why. @param sPath where it would have been.
[[nodiscard]] std::string notWrittenSentence(std::string_view sPath, std::string_view sReason);
/// That the document could not be written to its end, to a place that keeps what it was given; and why.
[[nodiscard]] std::string brokenOffSentence(std::string_view sReason);
/// That the document stands and is not valid. @param sSchema as the person named it.
[[nodiscard]] std::string invalidSentence(std::string_view sSchema, std::uint64_t lErrors);
/// What writtenSentence is followed by where the document is valid.
[[nodiscard]] std::string validAddition(std::string_view sSchema);
/// That not all of the document was checked, and why.
[[nodiscard]] std::string notCheckedWarning(std::string_view sSchema, std::string_view sReason);
/// Why nothing was saved. @param sErrMsg what the component told its caller.
[[nodiscard]] std::string whyNotSaved(const ExportLog& log, const std::string& sErrMsg);

/// A warning for each line that a library wrote to standard error itself.
[[nodiscard]] std::vector<std::string> libraryWarnings(const std::vector<std::string>& lines);

/// A warning that a file which was written may not outlast a loss of power. @param sReason the platform's.
[[nodiscard]] std::string notDurableWarning(std::string_view sPath, std::string_view sReason);

/// A warning for each kind of character that could not be written as it was.
[[nodiscard]] std::vector<std::string> repairWarnings(const dom::CharacterRepairs& repairs);

} // namespace halvane
