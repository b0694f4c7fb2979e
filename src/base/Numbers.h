#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

/// The text of a floating-point number as classic Windows automation writes it: 15 significant digits, exact
/// ties away from zero, exponent form ("1E+15", "1E-05") when the decimal exponent is below -4 or at least
/// 15, no negative zero, the decimal separator of the process's numeric locale; "INF", "-INF" and "NAN".
void appendDoubleText(std::string& out, double dValue);
[[nodiscard]] std::string doubleText(double dValue);

/// The same for single precision: 7 significant digits, exponent form from 1E+07.
void appendSingleText(std::string& out, float fValue);

/// A number in fixed notation: rounded to 15 significant digits, then to at most `lDecimals` decimals (0 or
/// more; less counts as 0), ties away from zero; no padding zeros, no grouping, no sign on positives, no
/// negative zero.
void appendFixedText(std::string& out, double dValue, std::int32_t lDecimals);
[[nodiscard]] std::string fixedText(double dValue, std::int32_t lDecimals);

/// Whether a text is a number for the runtime: surrounding blanks, a sign, digits with the locale's decimal
/// separator, an exponent. "" and blanks are not.
[[nodiscard]] bool isNumeric(std::string_view sText);

/// A text as a number, by the same grammar.
/// @throws Failure TypeMismatch when it is not numeric, Overflow beyond the type's range.
[[nodiscard]] double toDouble(std::string_view sText);
/// Halves round to the even neighbour.
[[nodiscard]] std::int32_t toInt32(std::string_view sText);
/// @throws Failure Overflow beyond 32 bits, and for what is not a number.
[[nodiscard]] std::int32_t roundToInt32(double dValue);

} // namespace halvane
