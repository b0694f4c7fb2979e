#include "base/DecimalSeparator.h"
#include "base/Failure.h"
#include "base/Numbers.h"
#include "base/Text.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace halvane {

namespace {

constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// Reads the parts of a number from the left.
class Reader {
public:
    explicit Reader(std::string_view sText) : sRest_(sText) {}

    [[nodiscard]] bool atEnd() const noexcept { return sRest_.empty(); }
    bool skip(std::string_view sPart) {
        const bool bFound = sRest_.starts_with(sPart);
        if (bFound)
            sRest_.remove_prefix(sPart.size());
        return bFound;
    }
    std::string_view digits() {
        std::size_t nCount = 0;
        while (nCount < sRest_.size() && isDigit(sRest_[nCount]))
            ++nCount;
        const std::string_view sDigits = sRest_.substr(0, nCount);
        sRest_.remove_prefix(nCount);
        return sDigits;
    }

private:
    std::string_view sRest_;
};

struct NumberParts {
    bool bNegative = false;
    bool bNegativeExponent = false;
    bool bPlain = false; ///< neither a separator nor an exponent
    std::string_view sWhole;
    std::string_view sFraction;
    std::string_view sExponent;
};

std::optional<NumberParts> parse(std::string_view sText) {
    NumberParts parts;
    Reader reader(trimBlanks(sText));
    parts.bNegative = reader.skip("-");
    if (!parts.bNegative)
        reader.skip("+");
    parts.sWhole = reader.digits();
    parts.bPlain = reader.atEnd();
    if (reader.skip(decimalSeparator()))
        parts.sFraction = reader.digits();
    if (parts.sWhole.empty() && parts.sFraction.empty())
        return std::nullopt;
    if (reader.skip("E") || reader.skip("e")) {
        parts.bNegativeExponent = reader.skip("-");
        if (!parts.bNegativeExponent)
            reader.skip("+");
        parts.sExponent = reader.digits();
        if (parts.sExponent.empty())
            return std::nullopt;
    }
    if (!reader.atEnd())
        return std::nullopt;
    return parts;
}

// The number in the notation of std::from_chars.
std::string plainNotation(const NumberParts& parts) {
    std::string sPlain = parts.bNegative ? "-0" : "0";
    sPlain.append(parts.sWhole).append(".").append(parts.sFraction).append("0");
    if (!parts.sExponent.empty())
        sPlain.append(parts.bNegativeExponent ? "e-" : "e+").append(parts.sExponent);
    return sPlain;
}

bool isAllZeros(std::string_view sDigits) {
    return sDigits.find_first_not_of('0') == std::string_view::npos;
}

double valueOf(const NumberParts& parts) {
    // The exponent of a zero means nothing, however large.
    if (isAllZeros(parts.sWhole) && isAllZeros(parts.sFraction))
        return 0;
    const std::string sPlain = plainNotation(parts);
    double dValue = 0;
    const auto result = std::from_chars(sPlain.data(), sPlain.data() + sPlain.size(), dValue);
    const bool bOutOfRange = result.ec == std::errc::result_out_of_range;
    // Too near to zero is zero; what is out of range otherwise is too large.
    if (bOutOfRange && parts.bNegativeExponent)
        return 0;
    if (bOutOfRange || !std::isfinite(dValue))
        throw Failure::of(FailureNumber::Overflow);
    return dValue;
}

} // namespace

bool isNumeric(std::string_view sText) {
    return parse(sText).has_value();
}

double toDouble(std::string_view sText) {
    const auto parts = parse(sText);
    if (!parts)
        throw Failure::of(FailureNumber::TypeMismatch);
    return valueOf(*parts);
}

std::int32_t toInt32(std::string_view sText) {
    const auto parts = parse(sText);
    if (!parts)
        throw Failure::of(FailureNumber::TypeMismatch);
    constexpr std::size_t nSafeDigits = std::numeric_limits<std::int32_t>::digits10;
    if (!parts->bPlain || parts->sWhole.size() > nSafeDigits)
        return roundToInt32(valueOf(*parts));
    std::int32_t lMagnitude = 0;
    for (const char c : parts->sWhole)
        lMagnitude = 10 * lMagnitude + (c - '0');
    return parts->bNegative ? -lMagnitude : lMagnitude;
}

std::int32_t roundToInt32(double dValue) {
    // The rounding mode of every process at its start: to the nearest, halves to even.
    const double dWhole = std::nearbyint(dValue);
    if (!(dWhole >= std::numeric_limits<std::int32_t>::min() &&
          dWhole <= std::numeric_limits<std::int32_t>::max()))
        throw Failure::of(FailureNumber::Overflow);
    return static_cast<std::int32_t>(dWhole);
}

} // namespace halvane
