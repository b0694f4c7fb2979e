#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace halvane {

/// Upper case by Unicode simple case mapping, code point by code point; invalid UTF-8 bytes stay as they are.
[[nodiscard]] std::string upperCase(std::string_view sText);
/// Lower case, likewise.
[[nodiscard]] std::string lowerCase(std::string_view sText);

/// Whether two texts are equal when both are upper-cased. Allocates nothing for ASCII.
[[nodiscard]] bool equalIgnoringCase(std::string_view sLeft, std::string_view sRight);
/// Whether the upper-cased text contains `sUpperNeedle`, which is given in upper case.
[[nodiscard]] bool containsIgnoringCase(std::string_view sText, std::string_view sUpperNeedle);

/// A hash that is the same for all texts that are equal when upper-cased.
[[nodiscard]] std::size_t hashIgnoringCase(std::string_view sText);

/// The text without leading and trailing blanks (the space character only).
[[nodiscard]] std::string_view trimBlanks(std::string_view sText);

/// Every occurrence of `sOld` (not empty) replaced by `sNew`, from the first character on.
[[nodiscard]] std::string replaceAll(std::string_view sText, std::string_view sOld, std::string_view sNew);

/// The shared split helper: fills `aPieces` with the pieces of `sText` between the delimiters, in order, and
/// returns their number, at least 1. Adjacent, leading and trailing delimiters yield empty pieces.
/// @throws Failure Overflow beyond 32767 pieces, and for an empty delimiter.
std::int16_t Split(std::string_view sText, std::string_view sDelimiter, std::vector<std::string>& aPieces);

} // namespace halvane
