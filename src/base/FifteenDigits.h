#pragma once

#include "base/DecimalSeparator.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

/// Appends a number rounded to 15 significant digits, then to at most `lDecimals` (0 or more) digits after
/// the point, ties away from zero both times: in fixed notation without padding zeros, without a sign on
/// zero.
///
/// Exact integer arithmetic on the binary value takes a quarter of the time of the general conversion, which
/// serves all other numbers.
///
/// @param dLeast smaller magnitudes are left to the general conversion, zero apart; at least 1e-6.
/// @param fnSeparator asked only where there are decimals.
/// @returns whether it could: not for numbers below `dLeast` or from 1e15 on in magnitude, rounded; on
/// processors of 32 bits for no number.
bool appendFifteenDigits(std::string& out, double dValue, std::int32_t lDecimals, double dLeast,
                         std::string_view (*fnSeparator)() = &decimalSeparator);

} // namespace halvane
