#include "base/Numbers.h"

#include "base/Decimal.h"
#include "base/DecimalSeparator.h"
#include "base/FifteenDigits.h"
#include "base/PortableNumbers.h"

#include <cmath>

namespace halvane {

namespace {

constexpr std::int32_t lDoubleDigits = 15;
constexpr std::int32_t lSingleDigits = 7;
constexpr std::int32_t lLeastFixedExponent = -4;
/// More than any number of 15 digits has that is not small.
constexpr std::int32_t allDecimals = 30;

bool appendedNonFinite(std::string& out, double dValue) {
    if (std::isfinite(dValue))
        return false;
    out.append(std::isnan(dValue) ? "NAN" : dValue < 0 ? "-INF" : "INF");
    return true;
}

void appendRounded(std::string& out, double dValue, std::int32_t lDigits) {
    if (appendedNonFinite(out, dValue))
        return;
    const Decimal decimal = Decimal::rounded(dValue, lDigits);
    if (decimal.isZero() || (decimal.exponent() >= lLeastFixedExponent && decimal.exponent() < lDigits))
        decimal.appendFixed(out, decimalSeparator());
    else
        decimal.appendScientific(out, decimalSeparator());
}

} // namespace

void appendDoubleText(std::string& out, double dValue) {
    constexpr double dLeastFixed = 1e-4;
    if (!appendFifteenDigits(out, dValue, allDecimals, dLeastFixed))
        appendRounded(out, dValue, lDoubleDigits);
}

std::string doubleText(double dValue) {
    std::string sText;
    appendDoubleText(sText, dValue);
    return sText;
}

void appendSingleText(std::string& out, float fValue) {
    appendRounded(out, static_cast<double>(fValue), lSingleDigits);
}

void appendFixedText(std::string& out, double dValue, std::int32_t lDecimals) {
    constexpr double dLeastFast = 1e-6;
    if (appendFifteenDigits(out, dValue, lDecimals, dLeastFast))
        return;
    if (appendedNonFinite(out, dValue))
        return;
    Decimal decimal = Decimal::rounded(dValue, lDoubleDigits);
    decimal.roundToDecimals(lDecimals);
    decimal.appendFixed(out, decimalSeparator());
}

void appendPortableText(std::string& out, double dValue, std::int32_t lDecimals) {
    constexpr double dLeastFast = 1e-6;
    const std::int32_t lMost = lDecimals > 0 ? lDecimals : allDecimals;
    if (appendFifteenDigits(out, dValue, lMost, dLeastFast, [] { return std::string_view("."); }))
        return;
    Decimal decimal = Decimal::rounded(dValue, lDoubleDigits);
    decimal.roundToDecimals(lMost);
    decimal.appendFixed(out, ".");
}

std::string fixedText(double dValue, std::int32_t lDecimals) {
    std::string sText;
    appendFixedText(sText, dValue, lDecimals);
    return sText;
}

} // namespace halvane
