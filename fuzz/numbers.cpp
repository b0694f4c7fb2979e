// Texts as numbers, dates, values of fields and defaults, and eight bytes as a number.

#include "base/Numbers.h"
#include "base/Conversions.h"
#include "base/Failure.h"
#include "base/Text.h"
#include "base/Value.h"
#include "fuzz/Check.h"
#include "fuzz/Input.h"
#include "fuzz/Target.h"

#include <cmath>
#include <cstring>
#include <optional>
#include <string>

namespace halvane::fuzz {
namespace {

/// Nothing where the call fails.
template<class Call>
auto valueOf(const Call& call) -> std::optional<decltype(call())> {
    try {
        return call();
    } catch (const Failure&) {
        return std::nullopt;
    }
}

void checkText(std::string_view sText) {
    const auto dNumber = valueOf([&] { return toDouble(sText); });
    check(!dNumber.has_value() || isNumeric(sText), "What is a number is numeric", std::string(sText));
    check(!dNumber.has_value() || std::isfinite(*dNumber), "A number read from a text is finite",
          std::string(sText));
    const auto lNumber = valueOf([&] { return toInt32(sText); });
    check(!lNumber.has_value() || (dNumber.has_value() && std::nearbyint(*dNumber) == *lNumber),
          "A whole number is the rounded number", std::string(sText));
    check(equalIgnoringCase(sText, upperCase(sText)), "Letter case is not told apart", std::string(sText));
    std::vector<std::string> aPieces;
    const auto lPieces = valueOf([&] { return Split(sText, ",", aPieces); });
    check(!lPieces.has_value() || aPieces.size() == static_cast<std::size_t>(*lPieces), "Pieces are counted");
}

void checkNumber(double dValue, std::int32_t lDecimals) {
    const std::string sText = doubleText(dValue);
    if (std::isfinite(dValue)) {
        const auto dAgain = valueOf([&] { return toDouble(sText); });
        // The text of the largest numbers is rounded up beyond them.
        check(!dAgain.has_value() || doubleText(*dAgain) == sText, "A number's text is stable", sText);
        check(dAgain.has_value() || std::abs(dValue) > 1.79769313486231e308, "A number's text is a number",
              sText);
        const std::string sFixed = fixedText(dValue, lDecimals);
        check(isNumeric(sFixed), "A number in fixed notation is numeric", sFixed);
        const std::size_t nPoint = sFixed.find('.');
        check(nPoint == std::string::npos ||
                  sFixed.size() - nPoint - 1 <= static_cast<std::size_t>(std::max(lDecimals, 0)),
              "There are no more decimals than were asked for", sFixed);
    }
    const auto lWhole = valueOf([&] { return roundToInt32(dValue); });
    check(!lWhole.has_value() || std::abs(*lWhole - dValue) <= 0.5, "Rounding goes to the nearest number",
          sText);
    std::string sSingle;
    appendSingleText(sSingle, static_cast<float>(dValue));
}

void checkDate(Input& input) {
    const Date date{input.byte() * 40,
                    static_cast<std::uint8_t>(1 + input.below(12)),
                    static_cast<std::uint8_t>(1 + input.below(28)),
                    static_cast<std::uint8_t>(input.below(24)),
                    static_cast<std::uint8_t>(input.below(60)),
                    static_cast<std::uint8_t>(input.below(60))};
    const auto dDays = valueOf([&] { return numberOf(ValueView(date)); });
    check(!dDays.has_value() || std::isfinite(*dDays), "A date is a finite number of days");
    Date later = date;
    ++later.year;
    const auto dLater = valueOf([&] { return numberOf(ValueView(later)); });
    check(!dDays.has_value() || !dLater.has_value() || date.year == 0 || *dLater > *dDays,
          "A later date is more days");
    check(!toText(ValueView(date)).empty(), "A date has a text");
}

} // namespace
} // namespace halvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane::fuzz;
    Input input(pBytes, nSize);
    const auto lDecimals = static_cast<std::int8_t>(input.byte());
    double dValue = 0;
    const std::string_view sNumber = input.text(sizeof(dValue));
    std::memcpy(&dValue, sNumber.data(), sNumber.size());
    checkNumber(dValue, lDecimals);
    checkDate(input);
    checkText(input.rest());
    return 0;
}
