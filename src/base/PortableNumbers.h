#pragma once

#include <cstdint>
#include <string>

namespace halvane {

/// A finite number in fixed notation with "." as its decimal separator, whatever the locale is: rounded to 15
/// significant digits, then to at most `lDecimals` decimals (0 or less: as many as those digits have), ties
/// away from zero; no padding zeros, no sign on zero, never an exponent.
void appendPortableText(std::string& out, double dValue, std::int32_t lDecimals);

} // namespace halvane
