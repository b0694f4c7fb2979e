#include "oracle/second/SqlValue.h"

#include "base/Failure.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace halvane::oracle {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string twoDigits(int lNumber) {
    return std::string(lNumber < 10 ? "0" : "") + std::to_string(lNumber);
}

/// "2024-05-01", with "T12:30:00" behind it where there is a time; a time of day alone is "12:30:00".
std::string isoText(const Date& date) {
    const std::string sTime =
        twoDigits(date.hour) + ":" + twoDigits(date.minute) + ":" + twoDigits(date.second);
    if (date.year == 0 && date.month == 0 && date.day == 0)
        return sTime;
    std::string sYear = std::to_string(date.year);
    sYear.insert(0, sYear.size() < 4 ? 4 - sYear.size() : 0, '0');
    const std::string sDay = sYear + "-" + twoDigits(date.month) + "-" + twoDigits(date.day);
    const bool bTime = date.hour != 0 || date.minute != 0 || date.second != 0;
    return bTime ? sDay + "T" + sTime : sDay;
}

/// The longest beginning of a text, behind white space, that is a number.
struct NumberText {
    std::string sDigits;
    bool bWhole = true;
};

NumberText numberAtFront(std::string_view sText) {
    while (!sText.empty() && (sText.front() == ' ' || (sText.front() >= '\t' && sText.front() <= '\r')))
        sText.remove_prefix(1);
    std::size_t n = 0;
    const auto skipDigits = [&] {
        const std::size_t nFrom = n;
        while (n < sText.size() && isDigit(sText[n]))
            ++n;
        return n - nFrom;
    };
    if (n < sText.size() && (sText[n] == '-' || sText[n] == '+'))
        ++n;
    std::size_t nDigits = skipDigits();
    NumberText number;
    if (n < sText.size() && sText[n] == '.') {
        ++n;
        nDigits += skipDigits();
        number.bWhole = false;
    }
    if (nDigits == 0)
        return {};
    std::size_t nEnd = n;
    if (n < sText.size() && (sText[n] == 'e' || sText[n] == 'E')) {
        ++n;
        if (n < sText.size() && (sText[n] == '-' || sText[n] == '+'))
            ++n;
        if (skipDigits() > 0) {
            nEnd = n;
            number.bWhole = false;
        }
    }
    number.sDigits = sText.substr(0, nEnd);
    return number;
}

bool fitsWhole(const std::string& sDigits) {
    const double dNumber = std::strtod(sDigits.c_str(), nullptr);
    return std::abs(dNumber) < 9e18;
}

/// 15 significant digits, and always a point. There is one zero.
std::string realText(double dNumber) {
    if (dNumber == 0)
        return "0.0";
    std::string sText(40, '\0');
    sText.resize(static_cast<std::size_t>(std::snprintf(sText.data(), sText.size(), "%.15g", dNumber)));
    if (sText.find('.') == std::string::npos)
        sText.insert(std::min(sText.find('e'), sText.size()), ".0");
    return sText;
}

} // namespace

SqlValue sqlValueOf(const ValueView& value) {
    if (std::holds_alternative<Null>(value) || std::holds_alternative<Empty>(value))
        return {};
    if (const auto* pTruth = std::get_if<bool>(&value))
        return std::int64_t{*pTruth ? 1 : 0};
    if (const auto* pNumber = std::get_if<std::int32_t>(&value))
        return std::int64_t{*pNumber};
    if (const auto* pNumber = std::get_if<std::int64_t>(&value))
        return *pNumber;
    if (const auto* pNumber = std::get_if<float>(&value))
        return static_cast<double>(*pNumber);
    if (const auto* pNumber = std::get_if<double>(&value))
        return *pNumber;
    if (const auto* pDate = std::get_if<Date>(&value))
        return isoText(*pDate);
    if (const auto* pText = std::get_if<std::string_view>(&value))
        return std::string(*pText);
    throw Failure::of(FailureNumber::TypeMismatch);
}

int compared(const SqlValue& left, const SqlValue& right) {
    const auto* const pLeft = std::get_if<std::string>(&left);
    const auto* const pRight = std::get_if<std::string>(&right);
    if (pLeft != nullptr && pRight != nullptr)
        return pLeft->compare(*pRight);
    if (pLeft != nullptr || pRight != nullptr)
        return pLeft != nullptr ? 1 : -1;
    // Wide enough for every whole number.
    const auto wide = [](const SqlValue& value) -> long double {
        const auto* const pWhole = std::get_if<std::int64_t>(&value);
        return pWhole != nullptr ? static_cast<long double>(*pWhole) : std::get<double>(value);
    };
    const long double dLeft = wide(left);
    const long double dRight = wide(right);
    return dLeft < dRight ? -1 : dLeft > dRight ? 1 : 0;
}

int comparedInOrder(const SqlValue& left, const SqlValue& right) {
    if (isNull(left) || isNull(right))
        return isNull(left) ? (isNull(right) ? 0 : -1) : 1;
    return compared(left, right);
}

SqlValue asNumber(const SqlValue& value) {
    const auto* const pText = std::get_if<std::string>(&value);
    if (pText == nullptr)
        return value;
    const NumberText number = numberAtFront(*pText);
    if (number.sDigits.empty())
        return std::int64_t{0};
    if (number.bWhole && fitsWhole(number.sDigits))
        return std::int64_t{std::strtoll(number.sDigits.c_str(), nullptr, 10)};
    return std::strtod(number.sDigits.c_str(), nullptr);
}

double asDouble(const SqlValue& value) {
    const SqlValue number = asNumber(value);
    const auto* const pWhole = std::get_if<std::int64_t>(&number);
    return pWhole != nullptr ? static_cast<double>(*pWhole) : std::get<double>(number);
}

std::int64_t asWhole(const SqlValue& value) {
    // Of a text the digits at its front count, whatever follows.
    if (const auto* const pText = std::get_if<std::string>(&value))
        return std::strtoll(pText->c_str(), nullptr, 10);
    const auto* const pWhole = std::get_if<std::int64_t>(&value);
    if (pWhole != nullptr)
        return *pWhole;
    const double dNumber = std::get<double>(value);
    if (dNumber >= 9.2e18)
        return std::numeric_limits<std::int64_t>::max();
    return dNumber <= -9.2e18 ? std::numeric_limits<std::int64_t>::min() : static_cast<std::int64_t>(dNumber);
}

std::string asText(const SqlValue& value) {
    if (const auto* const pText = std::get_if<std::string>(&value))
        return *pText;
    const auto* const pWhole = std::get_if<std::int64_t>(&value);
    return pWhole != nullptr ? std::to_string(*pWhole) : realText(std::get<double>(value));
}

SqlValue truthOf(const SqlValue& value) {
    if (isNull(value))
        return {};
    return std::int64_t{asDouble(value) != 0 ? 1 : 0};
}

} // namespace halvane::oracle
