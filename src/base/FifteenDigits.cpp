#include "base/FifteenDigits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string_view>

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
    /// Twice the number times ten to the power, rounded down: the last bit tells how to round. The number
    /// times the power is below 1e17.
    [[nodiscard]] std::uint64_t twiceScaled(std::int32_t lDecimals) const noexcept {
        const Wide nScaled = powersOfTen[static_cast<std::size_t>(lDecimals)] * nMantissa; // below 2^127
        return static_cast<std::uint64_t>(nScaled >> (lShift - 1));
    }
};

/// nDigits / 10^lDecimals. Handed on by value and in registers: a struct that is written in parts and read as
/// a whole costs as much as a multiplication.
struct Rounded {
    std::uint64_t nDigits = 0;
    std::int32_t lDecimals = 0; // 0 to 22
};

/// To 15 significant digits; @param dMagnitude from 1e-6 to below 1e15.
inline Rounded rounded(double dMagnitude) noexcept {
    const Binary binary(dMagnitude);
    std::int32_t lDecimals = binary.likelyDecimals();
    std::uint64_t nTwice = binary.twiceScaled(lDecimals);
    if (nTwice >= 2 * nPast15Digits)
        nTwice = binary.twiceScaled(--lDecimals);
    else if (nTwice < 2 * nLeast15Digits)
        nTwice = binary.twiceScaled(++lDecimals);
    return {(nTwice + 1) / 2, lDecimals};
}

inline Rounded withDecimals(Rounded number, std::int32_t lDecimals) noexcept {
    const std::int32_t lCut = number.lDecimals - std::max(lDecimals, 0);
    if (lCut <= 0)
        return number;
    const Wide nPower = powersOfTen[static_cast<std::size_t>(lCut)];
    return {static_cast<std::uint64_t>((number.nDigits + nPower / 2) / nPower), number.lDecimals - lCut};
}

template<std::int32_t lZeros>
inline Rounded withoutZeros(Rounded number) noexcept {
    constexpr std::uint64_t nPower = powerOfTen(lZeros);
    if (number.lDecimals >= lZeros && number.nDigits % nPower == 0)
        return {number.nDigits / nPower, number.lDecimals - lZeros};
    return number;
}

/// "00" to "99".
constexpr auto digitPairs = [] {
    std::array<char, 200> aPairs{};
    for (std::size_t n = 0; n < 100; ++n) {
        aPairs[2 * n] = static_cast<char>('0' + n / 10);
        aPairs[2 * n + 1] = static_cast<char>('0' + n % 10);
    }
    return aPairs;
}();

/// Writes the last `nCount` digits of a number, right before `pEnd`. @returns the number without them.
inline std::uint64_t writeDigits(char* pEnd, std::uint64_t nNumber, std::size_t nCount) noexcept {
    for (; nCount >= 2; nCount -= 2) {
        const std::size_t nPair = 2 * (nNumber % 100);
        nNumber /= 100;
        pEnd -= 2;
        std::copy_n(digitPairs.data() + nPair, 2, pEnd);
    }
    if (nCount == 1) {
        *--pEnd = static_cast<char>('0' + nNumber % 10);
        nNumber /= 10;
    }
    return nNumber;
}

inline std::size_t digitCount(std::uint64_t nNumber) noexcept {
    std::size_t nCount = 1;
    while (nCount < 16 && nNumber >= powerOfTen(static_cast<std::int32_t>(nCount)))
        ++nCount;
    return nCount;
}

void appendRounded(std::string& out, Rounded number, bool bNegative, std::string_view (*fnSeparator)()) {
    const std::string_view sSeparator = number.lDecimals == 0 ? std::string_view() : fnSeparator();
    const auto nDecimals = static_cast<std::size_t>(number.lDecimals);
    const std::size_t nDigits = digitCount(number.nDigits);
    const std::size_t nWhole = nDigits > nDecimals ? nDigits - nDecimals : 1;
    const std::size_t nBegin = out.size();
    const bool bSign = bNegative && number.nDigits != 0;
    out.resize(nBegin + (bSign ? 1 : 0) + nWhole + sSeparator.size() + nDecimals);
    char* pEnd = out.data() + out.size();
    if (nDecimals > 0) {
        number.nDigits = writeDigits(pEnd, number.nDigits, nDecimals);
        pEnd = std::copy_backward(sSeparator.begin(), sSeparator.end(), pEnd - nDecimals);
    }
    writeDigits(pEnd, number.nDigits, nWhole);
    if (bSign)
        out[nBegin] = '-';
}

} // namespace

bool appendFifteenDigits(std::string& out, double dValue, std::int32_t lDecimals, double dLeast,
                         std::string_view (*fnSeparator)()) {
    const double dMagnitude = std::fabs(dValue);
    if (dMagnitude == 0) {
        out.push_back('0');
        return true;
    }
    if (!(dMagnitude >= dLeast && dMagnitude < 1e15))
        return false;
    Rounded number = rounded(dMagnitude);
    if (number.lDecimals == 0 && number.nDigits >= nPast15Digits)
        return false;
    number = withDecimals(number, lDecimals);
    number = withoutZeros<8>(number);
    number = withoutZeros<4>(number);
    number = withoutZeros<2>(number);
    number = withoutZeros<1>(number);
    appendRounded(out, number, dValue < 0, fnSeparator);
    return true;
}

} // namespace halvane
