#include "base/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace halvane {

namespace {

// No double has more significant digits than this.
constexpr std::int32_t lMostExactDigits = 767;

using Buffer = std::array<char, lMostExactDigits + 16>;

std::string_view scientific(Buffer& buffer, double dMagnitude, std::int32_t lDigits) {
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), dMagnitude,
                                      std::chars_format::scientific, lDigits - 1);
    return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

std::string_view mantissaOf(std::string_view sScientific) {
    return sScientific.substr(0, sScientific.find('e'));
}

std::int32_t exponentOf(std::string_view sScientific) {
    const std::string_view sExponent = sScientific.substr(sScientific.find('e') + 2);
    std::int32_t lExponent = 0;
    std::from_chars(sExponent.data(), sExponent.data() + sExponent.size(), lExponent);
    return sScientific[sScientific.size() - sExponent.size() - 1] == '-' ? -lExponent : lExponent;
}

// The digits after the first `lDigits`.
std::string_view digitsAfter(std::string_view sScientific, std::int32_t lDigits) {
    return mantissaOf(sScientific).substr(static_cast<std::size_t>(lDigits) + 1);
}

// Whether the exact value lies at or above the middle between two neighbours of `lDigits` digits.
bool reachesHalf(double dMagnitude, std::int32_t lDigits) {
    Buffer buffer;
    return digitsAfter(scientific(buffer, dMagnitude, lMostExactDigits), lDigits).front() >= '5';
}

} // namespace

Decimal Decimal::rounded(double dValue, std::int32_t lDigits) {
    Decimal decimal;
    const double dMagnitude = std::fabs(dValue);
    if (dMagnitude == 0)
        return decimal;
    decimal.bNegative_ = dValue < 0;
    Buffer buffer;
    constexpr std::int32_t lGuardDigits = 4;
    constexpr std::string_view sHalf = "5000";
    const std::string_view sGuarded = scientific(buffer, dMagnitude, lDigits + lGuardDigits);
    const std::string_view sGuard = digitsAfter(sGuarded, lDigits);
    decimal.read(sGuarded, lDigits);
    // The guard digits are rounded themselves: where they show the half, only the exact expansion tells.
    if (sGuard > sHalf || (sGuard == sHalf && reachesHalf(dMagnitude, lDigits)))
        decimal.roundUp();
    decimal.dropTrailingZeros();
    return decimal;
}

void Decimal::roundToDecimals(std::int32_t lDecimals) {
    // No number of few digits has more decimals than this.
    constexpr std::int32_t lMostDecimals = 400;
    const std::int32_t lKept = lPoint_ + std::clamp(lDecimals, 0, lMostDecimals);
    if (lKept >= lCount_)
        return;
    const bool bUp = lKept >= 0 && aDigits_[static_cast<std::size_t>(lKept)] >= '5';
    lCount_ = std::max(lKept, 0);
    if (bUp)
        roundUp();
    dropTrailingZeros();
}

void Decimal::appendFixed(std::string& out, std::string_view sSeparator) const {
    if (isZero()) {
        out.push_back('0');
        return;
    }
    appendSign(out);
    const std::string_view sDigits(aDigits_.data(), static_cast<std::size_t>(lCount_));
    if (lPoint_ <= 0) {
        out.append("0").append(sSeparator).append(static_cast<std::size_t>(-lPoint_), '0').append(sDigits);
        return;
    }
    const auto nWhole = static_cast<std::size_t>(lPoint_);
    if (nWhole >= sDigits.size()) {
        out.append(sDigits).append(nWhole - sDigits.size(), '0');
        return;
    }
    out.append(sDigits.substr(0, nWhole)).append(sSeparator).append(sDigits.substr(nWhole));
}

void Decimal::appendScientific(std::string& out, std::string_view sSeparator) const {
    appendSign(out);
    out.push_back(aDigits_[0]);
    if (lCount_ > 1)
        out.append(sSeparator).append(aDigits_.data() + 1, static_cast<std::size_t>(lCount_ - 1));
    const std::int32_t lExponent = exponent();
    out.append(lExponent < 0 ? "E-" : "E+");
    const std::string sMagnitude = std::to_string(std::abs(lExponent));
    if (sMagnitude.size() < 2)
        out.push_back('0');
    out.append(sMagnitude);
}

void Decimal::read(std::string_view sScientific, std::int32_t lDigits) {
    const std::string_view sMantissa = mantissaOf(sScientific);
    lPoint_ = exponentOf(sScientific) + 1;
    lCount_ = 0;
    for (const char c : sMantissa)
        if (c != '.' && lCount_ < lDigits)
            aDigits_[static_cast<std::size_t>(lCount_++)] = c;
}

void Decimal::roundUp() {
    while (lCount_ > 0 && aDigits_[static_cast<std::size_t>(lCount_ - 1)] == '9')
        --lCount_;
    if (lCount_ > 0) {
        ++aDigits_[static_cast<std::size_t>(lCount_ - 1)];
        return;
    }
    aDigits_[0] = '1';
    lCount_ = 1;
    ++lPoint_;
}

void Decimal::dropTrailingZeros() {
    while (lCount_ > 0 && aDigits_[static_cast<std::size_t>(lCount_ - 1)] == '0')
        --lCount_;
}

void Decimal::appendSign(std::string& out) const {
    if (bNegative_)
        out.push_back('-');
}

} // namespace halvane
