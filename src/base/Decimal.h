#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace halvane {

/// A finite number rounded to a few significant decimal digits: 0.d1d2d3... times ten to the power
/// `lPoint`. Zero has no digits; otherwise the first and the last digit are not '0'.
class Decimal {
public:
    static constexpr std::int32_t lMostDigits = 15;

    /// Rounds to `lDigits` (1 to 15) significant digits; exact ties go away from zero.
    [[nodiscard]] static Decimal rounded(double dValue, std::int32_t lDigits);

    /// Rounds to at most `lDecimals` digits after the point, ties away from zero.
    void roundToDecimals(std::int32_t lDecimals);

    [[nodiscard]] bool isZero() const noexcept { return lCount_ == 0; }
    /// The power of ten of the first digit.
    [[nodiscard]] std::int32_t exponent() const noexcept { return lPoint_ - 1; }

    /// Digits and a point, padded with zeros up to the point only; a sign on negatives.
    void appendFixed(std::string& out, std::string_view sSeparator) const;
    /// One digit before the point and an exponent of at least two digits: "1.5E-05".
    void appendScientific(std::string& out, std::string_view sSeparator) const;

private:
    /// Fills from "d.dddde[+-]xx", without a sign, keeping at most `lDigits` digits.
    void read(std::string_view sScientific, std::int32_t lDigits);
    /// Adds one to the last digit kept.
    void roundUp();
    void dropTrailingZeros();
    void appendSign(std::string& out) const;

    std::array<char, lMostDigits> aDigits_{};
    std::int32_t lCount_ = 0;
    std::int32_t lPoint_ = 0; // digits before the point; negative for zeros that follow it
    bool bNegative_ = false;
};

} // namespace halvane
