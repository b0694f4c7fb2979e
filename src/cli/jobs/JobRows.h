#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace halvane::cli {

/// An export of a list as it was written.
struct JobRow {
    std::size_t nLine = 0; ///< where it begins, from 1
    std::string sMap;      ///< "" where none is named
    std::string sControl;
    std::string sOutput;
    std::vector<std::string> options; ///< words of a command line
};

/// Something that is wrong at a line of a list.
struct JobProblem {
    std::size_t nLine = 0; ///< from 1; 0: with the list itself
    std::string sText;
};

/// More is refused: a list is read whole, and its state is written anew again and again.
inline constexpr std::size_t mostJobs = 100'000;

/// Reads JSON Lines where the text begins with "{", else CSV with a line of names.
/// @param problems gets what no export can be made of.
[[nodiscard]] std::vector<JobRow> readJobRows(std::string_view sText, std::vector<JobProblem>& problems);

/// Takes a text apart at blanks, but not inside '…' or "…". @returns false where a quote is left open.
[[nodiscard]] bool splitWords(std::string_view sText, std::vector<std::string>& words);

} // namespace halvane::cli
