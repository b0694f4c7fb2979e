#include "collection/Numbers.h"

#include "collection/Decimal.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <clocale>
#include <cmath>
#if __has_include(<langinfo.h>)
#include <langinfo.h>
#endif

namespace halvane {

namespace {

constexpr std::int32_t lDoubleDigits = 15;
constexpr std::int32_t lSingleDigits = 7;
constexpr std::int32_t lLeastFixedExponent = -4;

/// Asked for at every number, since the locale may change; a platform that tells this one fact alone is much
/// faster.
std::string_view decimalSeparator() {
#ifdef RADIXCHAR
    return nl_langinfo(RADIXCHAR);
#else
    return std::localeconv()->decimal_point;
#endif
}

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

namespace {

/// The shortest text that reads back as the number is the rounding to 15 digits when it has no more of them.
/// That is the usual case and takes a third of the time of the general one. @returns whether it was.
bool appendedShortest(std::string& out, double dValue, std::int32_t lDecimals) {
    std::array<char, 24> aText{};
    const auto result =
        std::to_chars(aText.data(), aText.data() + aText.size(), dValue, std::chars_format::fixed);
    if (result.ec != std::errc() || std::fabs(dValue) < DBL_MIN)
        return false;
    const std::string_view sText(aText.data(), static_cast<std::size_t>(result.ptr - aText.data()));
    // The sign and the zeros in front are counted as digits: the few texts that this is wrong for take the
    // long way.
    if (sText.size() > static_cast<std::size_t>(lDoubleDigits))
        return false;
    const auto* const pPoint = std::find(sText.begin(), sText.end(), '.');
    if (pPoint == sText.end()) {
        out.append(sText);
        return true;
    }
    const auto point = static_cast<std::size_t>(pPoint - sText.begin());
    if (static_cast<std::int32_t>(sText.size() - point - 1) > lDecimals)
        return false;
    const std::string_view sSeparator = decimalSeparator();
    if (sSeparator == ".")
        out.append(sText);
    else
        out.append(sText.substr(0, point)).append(sSeparator).append(sText.substr(point + 1));
    return true;
}

} // namespace

void appendFixedText(std::string& out, double dValue, std::int32_t lDecimals) {
    if (appendedNonFinite(out, dValue) || appendedShortest(out, dValue, lDecimals))
        return;
    Decimal decimal = Decimal::rounded(dValue, lDoubleDigits);
    decimal.roundToDecimals(lDecimals);
    decimal.appendFixed(out, decimalSeparator());
}

std::string fixedText(double dValue, std::int32_t lDecimals) {
    std::string sText;
    appendFixedText(sText, dValue, lDecimals);
    return sText;
}

} // namespace halvane
