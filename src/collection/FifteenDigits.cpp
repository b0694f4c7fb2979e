#include "collection/FifteenDigits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>

namespace halvane {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::int32_t lMostDecimals = 22;

constexpr auto powersOfTen = [] {
    std::array<Wide, lMostDecimals + 1> aPowers{};
    Wide nPower = 1;
    for (Wide& nEntry : aPowers) {
        nEntry = nPower;
        nPower *= 10;
    }
    return aPowers;
}();

constexpr std::uint64_t powerOfTen(std::int32_t lExponent) {
    return static_cast<std::uint64_t>(powersOfTen[static_cast<std::size_t>(lExponent)]);
}

constexpr std::uint64_t nLeast15Digits = powerOfTen(14);
constexpr std::uint64_t nPast15Digits = powerOfTen(15);

/// A positive normal number below 1e15: nMantissa / 2^lShift.
struct Binary {
    std::uint64_t nMantissa; // 53 bits
    std::int32_t lShift;     // at least 3, at most 73

    explicit Binary(double dMagnitude) noexcept {
        constexpr std::int32_t lMantissaBits = 52;
        constexpr std::int32_t lBias = 1023;
        constexpr std::uint64_t nHidden = std::uint64_t{1} << lMantissaBits;
        const auto nBits = std::bit_cast<std::uint64_t>(dMagnitude);
        nMantissa = (nBits & (nHidden - 1)) | nHidden;
        lShift = lMantissaBits + lBias - static_cast<std::int32_t>(nBits >> lMantissaBits);
    }

    /// At most one too many or too few for 15 significant digits.
    [[nodiscard]] std::int32_t likelyDecimals() const noexcept {
        constexpr std::int32_t lMantissaBits = 52;
        // log10(2) times the binary exponent, rounded down.
        return 14 - (((lMantissaBits - lShift) * 1233) >> 12);
    }
    /// Times ten to the power; below 2^127.
    [[nodiscard]] Wide scaled(std::int32_t lDecimals) const noexcept {
        return powersOfTen[static_cast<std::size_t>(lDecimals)] * nMantissa;
    }
};

} // namespace

std::optional<FifteenDigits> FifteenDigits::of(double dValue) noexcept {
    const double dMagnitude = std::fabs(dValue);
    if (!(dMagnitude >= 1e-6 && dMagnitude < 1e15)) {
        if (dMagnitude == 0)
            return FifteenDigits(0, 0, false);
        return std::nullopt;
    }
    const Binary binary(dMagnitude);
    std::int32_t lDecimals = binary.likelyDecimals();
    // The smallest numbers have one decimal more than the table; 1e15 has none left to give away.
    Wide nScaled = binary.scaled(lDecimals);
    if (nScaled >> binary.lShift >= nPast15Digits)
        nScaled = binary.scaled(--lDecimals);
    else if (nScaled >> binary.lShift < nLeast15Digits)
        nScaled = binary.scaled(++lDecimals);
    const Wide nHalf = Wide{1} << (binary.lShift - 1);
    const auto nDigits = static_cast<std::uint64_t>((nScaled + nHalf) >> binary.lShift);
    if (lDecimals == 0 && nDigits >= nPast15Digits)
        return std::nullopt;
    return FifteenDigits(nDigits, lDecimals, dValue < 0);
}

void FifteenDigits::dropTrailingZeros() noexcept {
    for (const std::int32_t lZeros : {8, 4, 2, 1}) {
        const std::uint64_t nPower = powerOfTen(lZeros);
        if (lDecimals_ >= lZeros && nDigits_ % nPower == 0) {
            nDigits_ /= nPower;
            lDecimals_ -= lZeros;
        }
    }
}

void FifteenDigits::roundToDecimals(std::int32_t lDecimals) noexcept {
    const std::int32_t lCut = lDecimals_ - std::max(lDecimals, 0);
    if (lCut <= 0)
        return;
    const Wide nPower = powersOfTen[static_cast<std::size_t>(lCut)];
    nDigits_ = static_cast<std::uint64_t>((nDigits_ + nPower / 2) / nPower);
    lDecimals_ -= lCut;
    dropTrailingZeros();
}

bool FifteenDigits::isSmall() const noexcept {
    return nDigits_ != 0 && lDecimals_ > 4 &&
           nDigits_ < powersOfTen[static_cast<std::size_t>(lDecimals_ - 4)];
}

void FifteenDigits::appendFixed(std::string& out, std::string_view sSeparator) const {
    if (bNegative_ && nDigits_ != 0)
        out.push_back('-');
    std::array<char, 24> aText{};
    const auto result = std::to_chars(aText.data(), aText.data() + aText.size(), nDigits_);
    const std::string_view sDigits(aText.data(), static_cast<std::size_t>(result.ptr - aText.data()));
    const auto nDecimals = static_cast<std::size_t>(lDecimals_);
    if (nDecimals == 0) {
        out.append(sDigits);
    } else if (sDigits.size() > nDecimals) {
        const std::size_t nWhole = sDigits.size() - nDecimals;
        out.append(sDigits.substr(0, nWhole)).append(sSeparator).append(sDigits.substr(nWhole));
    } else {
        out.append("0").append(sSeparator).append(nDecimals - sDigits.size(), '0').append(sDigits);
    }
}

} // namespace halvane
