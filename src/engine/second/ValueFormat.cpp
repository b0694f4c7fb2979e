#include "engine/second/ValueFormat.h"

#include "base/Decimal.h"
#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace halvane {

namespace {

[[noreturn]] void refuseFormat(const std::string& sWhat) {
    throw Failure(FailureNumber::DocumentFailure, sWhat);
}

/// What may stand in a pattern of dates, and how wide it may be.
struct DateLetter {
    char cLetter;
    std::string_view sWidths;
};
constexpr std::array<DateLetter, 9> dateLetters{{
    {'y', "24"},
    {'M', "1234"},
    {'E', "34"},
    {'d', "12"},
    {'H', "12"},
    {'m', "12"},
    {'s', "12"},
    {'S', "3"},
    {'X', "1"},
}};

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

void appendDigits(std::string& sText, std::int64_t lNumber, std::size_t nWidth) {
    const std::string sDigits = std::to_string(std::abs(lNumber));
    sText += lNumber < 0 ? "-" : "";
    sText.append(nWidth > sDigits.size() ? nWidth - sDigits.size() : 0, '0');
    sText += sDigits;
}

void appendZone(std::string& sText, std::int16_t lMinutes) {
    if (lMinutes == Date::noZone)
        return;
    if (lMinutes == 0) {
        sText += 'Z';
        return;
    }
    sText += lMinutes < 0 ? '-' : '+';
    appendDigits(sText, std::abs(lMinutes) / 60, 2);
    sText += ':';
    appendDigits(sText, std::abs(lMinutes) % 60, 2);
}

void appendXsTime(std::string& sText, const Date& date) {
    appendDigits(sText, date.hour, 2);
    sText += ':';
    appendDigits(sText, date.minute, 2);
    sText += ':';
    appendDigits(sText, date.second, 2);
    if (date.millisecond != 0) {
        sText += '.';
        appendDigits(sText, date.millisecond, 3);
        sText.erase(sText.find_last_not_of('0') + 1);
    }
    appendZone(sText, date.zoneMinutes);
}

bool isTimeAlone(const Date& date) {
    return date.month == 0;
}

bool hasTime(const Date& date, host::ValueRole role) {
    if (role != host::ValueRole::AsTyped)
        return role != host::ValueRole::Date;
    return date.hour != 0 || date.minute != 0 || date.second != 0 || date.millisecond != 0;
}

/// Source: XML Schema part 2, 3.2.7 to 3.2.9.
void appendXsDate(std::string& sText, const Date& date, host::ValueRole role) {
    if (isTimeAlone(date) || role == host::ValueRole::Time) {
        appendXsTime(sText, date);
        return;
    }
    appendDigits(sText, date.year, 4);
    sText += '-';
    appendDigits(sText, date.month, 2);
    sText += '-';
    appendDigits(sText, date.day, 2);
    if (hasTime(date, role)) {
        sText += 'T';
        appendXsTime(sText, date);
    }
}

constexpr std::array<std::string_view, 12> months{"January",   "February", "March",    "April",
                                                  "May",       "June",     "July",     "August",
                                                  "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> weekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                   "Thursday", "Friday", "Saturday"};

/// Names of months and days, in English; nothing for a part that is a number.
std::optional<std::string_view> nameOf(const Date& date, char cLetter, std::size_t nWidth) {
    if (nWidth < 3 || (cLetter != 'M' && cLetter != 'E'))
        return std::nullopt;
    const std::chrono::year_month_day day{std::chrono::year(date.year), std::chrono::month(date.month),
                                          std::chrono::day(date.day)};
    if (!day.ok())
        throw Failure(FailureNumber::TypeMismatch,
                      "the value is no date of the calendar, whose name h:Format asks for");
    const std::string_view sName =
        cLetter == 'E' ? weekdays.at(std::chrono::weekday(std::chrono::sys_days(day)).c_encoding())
                       : months.at(static_cast<std::size_t>(date.month - 1));
    return nWidth == 3 ? sName.substr(0, 3) : sName;
}

std::int64_t partOf(const Date& date, char cLetter, std::size_t nWidth) {
    switch (cLetter) {
    case 'y':
        return nWidth == 2 ? date.year % 100 : date.year;
    case 'M':
        return date.month;
    case 'd':
        return date.day;
    case 'H':
        return date.hour;
    case 'm':
        return date.minute;
    case 's':
        return date.second;
    default:
        return date.millisecond;
    }
}

/// A single number as the number that its shortest text means.
double asDouble(float fValue) {
    std::array<char, 64> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), fValue);
    double dValue = 0;
    std::from_chars(digits.data(), end.ptr, dValue);
    return dValue;
}
double asDouble(double dValue) {
    return dValue;
}

/// As numbers are rounded everywhere: to 15 significant digits first, ties away from zero.
std::string roundedText(double dValue, std::int32_t lDecimals) {

    std::string sNumber;
    Decimal decimal = Decimal::rounded(dValue, Decimal::lMostDigits);
    decimal.roundToDecimals(lDecimals);
    decimal.appendFixed(sNumber, ".");
    return sNumber;
}

/// Widens what stands before the point, and adds the zeros that are missing at the end.
/// @param sNumber without zeros at the end of its decimals.
void appendFitted(std::string& sText, std::string_view sNumber, std::int32_t lDigits,
                  std::int32_t lLeastDecimals) {
    const bool bNegative = sNumber.starts_with('-') && sNumber.find_first_of("123456789") != sNumber.npos;
    if (sNumber.starts_with('-'))
        sNumber.remove_prefix(1);
    const std::size_t nDigits = std::min(sNumber.find('.'), sNumber.size());
    const std::size_t nDecimals = nDigits < sNumber.size() ? sNumber.size() - nDigits - 1 : 0;
    const auto nLeastDecimals = static_cast<std::size_t>(lLeastDecimals);
    sText += bNegative ? "-" : "";
    sText.append(static_cast<std::size_t>(std::max(0, lDigits - static_cast<std::int32_t>(nDigits))), '0');
    sText += sNumber;
    if (nDecimals < nLeastDecimals)
        sText.append(nDecimals == 0 ? "." : "").append(nLeastDecimals - nDecimals, '0');
}

} // namespace

void ValueFormat::read(std::string_view sText) {
    bool bNone = false;
    bool bNumbers = false;
    bool bDates = false;
    bool bCodes = false;
    const auto once = [](bool& bRead, const char* sOf) {
        if (std::exchange(bRead, true))
            refuseFormat("it says twice how " + std::string(sOf) + " are written");
    };
    for (std::size_t nBegin = 0; nBegin <= sText.size();) {
        const std::size_t nEnd = std::min(sText.find(';', nBegin), sText.size());
        const std::string_view sPart = trimBlanks(sText.substr(nBegin, nEnd - nBegin));
        nBegin = nEnd + 1;
        if (sPart.empty())
            refuseFormat(
                "it is \"xs\", \"domain\", \"none\", a pattern of numbers as \"0.00\" or of dates as "
                "\"yyyy-MM-dd\"");
        if (sPart == "none") {
            if (std::exchange(bNone, true) || bNumbers || bDates || bCodes)
                refuseFormat("\"none\" stands once, before the others");
            *this = ValueFormat();
        } else if (sPart == "domain") {
            once(bCodes, "coded values");
            bCodes_ = true;
        } else if (sPart == "xs") {
            once(bNumbers, "numbers");
            once(bDates, "dates");
            numbers_ = NumberPattern{true};
            dates_ = DatePattern();
            bBooleans_ = true;
        } else if (const auto pattern = numberPattern(sPart)) {
            once(bNumbers, "numbers");
            numbers_ = pattern;
        } else {
            once(bDates, "dates");
            dates_ = datePattern(sPart);
        }
    }
}

std::optional<ValueFormat::NumberPattern> ValueFormat::numberPattern(std::string_view sText) {
    constexpr std::size_t nMost = 32;
    const std::size_t nPoint = std::min(sText.find('.'), sText.size());
    const std::string_view sDecimals = nPoint < sText.size() ? sText.substr(nPoint + 1) : "";
    std::string_view sDigits = sText.substr(0, nPoint);
    if (sText.size() > nMost || (nPoint < sText.size() && sDecimals.empty()))
        return std::nullopt;
    sDigits.remove_prefix(std::min(sDigits.find_first_not_of('#'), sDigits.size()));
    const std::size_t nLeast = std::min(sDecimals.find_first_not_of('0'), sDecimals.size());
    const bool bRight = sDigits.find_first_not_of('0') == sDigits.npos &&
                        sDecimals.find_first_not_of('#', nLeast) == sDecimals.npos;
    return bRight ? std::optional(NumberPattern{false, static_cast<std::int32_t>(sDigits.size()),
                                                static_cast<std::int32_t>(nLeast),
                                                static_cast<std::int32_t>(sDecimals.size())})
                  : std::nullopt;
}

ValueFormat::DatePattern ValueFormat::datePattern(std::string_view sText) {
    DatePattern pattern;
    const auto literal = [&](std::string_view sLiteral) { pattern.push_back({0, 0, std::string(sLiteral)}); };
    while (!sText.empty()) {
        const char c = sText.front();
        if (c == '\'') {
            const std::size_t nEnd = sText.find('\'', 1);
            if (nEnd == sText.npos)
                refuseFormat("a quotation mark is not closed");
            literal(nEnd == 1 ? "'" : sText.substr(1, nEnd - 1));
            sText.remove_prefix(nEnd + 1);
        } else if (isLetter(c)) {
            const std::size_t nWidth = std::min(sText.find_first_not_of(c), sText.size());
            const auto found = std::ranges::find(dateLetters, c, &DateLetter::cLetter);
            const std::string sWidth = std::to_string(nWidth);
            if (found == dateLetters.end() || sWidth.size() != 1 || found->sWidths.find(sWidth) == sText.npos)
                refuseFormat(
                    "\"" + std::string(sText.substr(0, nWidth)) +
                    "\" is no part of a format: it is \"xs\", \"domain\", \"none\", a pattern of numbers "
                    "as \"0.00\" "
                    "or of dates as \"yyyy-MM-dd\"; texts stand between apostrophes");
            pattern.push_back({c, nWidth, {}});
            sText.remove_prefix(nWidth);
        } else {
            literal(sText.substr(0, 1));
            sText.remove_prefix(1);
        }
    }
    if (std::ranges::none_of(pattern, [](const DatePart& part) { return part.cLetter != 0; }))
        refuseFormat("it is \"xs\", \"domain\", \"none\", a pattern of numbers as \"0.00\" or of dates as "
                     "\"yyyy-MM-dd\"");
    return pattern;
}

template<class Number>
void ValueFormat::appendReal(std::string& sText, Number value, std::int32_t lDecimalPlaces) const {
    if (!std::isfinite(value)) {
        sText += std::isnan(value) ? "NaN" : value < 0 ? "-INF" : "INF";
        return;
    }
    std::string sNumber;
    if (numbers_->bXs && lDecimalPlaces == 0) {
        std::array<char, 512> digits; // the largest number has 309 before its point
        const auto end =
            std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
        sNumber.assign(digits.data(), end.ptr);
    } else {
        sNumber = roundedText(asDouble(value), numbers_->bXs ? lDecimalPlaces : numbers_->lMostDecimals);
    }
    appendFitted(sText, sNumber, numbers_->lDigits, numbers_->lLeastDecimals);
}

void ValueFormat::appendNumber(std::string& sText, double dValue, std::int32_t lDecimalPlaces) const {
    appendReal(sText, dValue, lDecimalPlaces);
}

void ValueFormat::appendNumber(std::string& sText, float fValue, std::int32_t lDecimalPlaces) const {
    appendReal(sText, fValue, lDecimalPlaces);
}

void ValueFormat::appendNumber(std::string& sText, std::int64_t lValue) const {
    appendFitted(sText, std::to_string(lValue), numbers_->lDigits, numbers_->lLeastDecimals);
}

void ValueFormat::appendDate(std::string& sText, const Date& date, host::ValueRole role) const {
    if (dates_->empty()) {
        appendXsDate(sText, date, role);
        return;
    }
    for (const DatePart& part : *dates_) {
        if (isTimeAlone(date) && std::string_view("yMdE").find(part.cLetter) != std::string_view::npos)
            throw Failure(FailureNumber::TypeMismatch,
                          "the value is a time without the date that h:Format asks for");
        if (part.cLetter == 0)
            sText += part.sText;
        else if (part.cLetter == 'X')
            appendZone(sText, date.zoneMinutes);
        else if (const auto sName = nameOf(date, part.cLetter, part.nWidth))
            sText += *sName;
        else
            appendDigits(sText, partOf(date, part.cLetter, part.nWidth), part.nWidth);
    }
}

} // namespace halvane
