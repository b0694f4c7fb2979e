#include "base/Conversions.h"

#include "base/Failure.h"
#include "base/Numbers.h"

#include <chrono>
#include <limits>
#include <optional>
#include <type_traits>

namespace halvane {

namespace {

double serialOf(const Date& date) {
    using namespace std::chrono;
    constexpr sys_days epoch = year{1899} / December / 30;
    double dDays = 0;
    if (date.month != 0) {
        const sys_days day = year{date.year} / month{date.month} / std::chrono::day{date.day};
        dDays = static_cast<double>((day - epoch).count());
    }
    const std::int32_t lSeconds = (date.hour * 60 + date.minute) * 60 + date.second;
    return dDays + lSeconds / 86400.0;
}

struct NumberReader {
    double operator()(Empty) const { return 0; }
    double operator()(Null) const { throw Failure::of(FailureNumber::TypeMismatch); }
    double operator()(bool bValue) const { return bValue ? -1 : 0; }
    double operator()(std::int32_t lValue) const { return lValue; }
    double operator()(std::int64_t nValue) const { return static_cast<double>(nValue); }
    double operator()(float fValue) const { return static_cast<double>(fValue); }
    double operator()(double dValue) const { return dValue; }
    double operator()(const Date& date) const { return serialOf(date); }
    double operator()(std::string_view sText) const { return toDouble(sText); }
    double operator()(Bytes) const { throw Failure::of(FailureNumber::TypeMismatch); }
    double operator()(const ObjectPtr&) const { throw Failure::of(FailureNumber::TypeMismatch); }
};

std::optional<std::int64_t> exactWhole(const ValueView& value) {
    if (const auto* lValue = std::get_if<std::int32_t>(&value))
        return *lValue;
    if (const auto* nValue = std::get_if<std::int64_t>(&value))
        return *nValue;
    return std::nullopt;
}

bool isLessThanText(const ValueView& left, std::string_view sRight) {
    if (const auto* sLeft = std::get_if<std::string_view>(&left))
        return *sLeft < sRight;
    if (std::holds_alternative<Empty>(left))
        return !sRight.empty();
    static_cast<void>(numberOf(left)); // whatever is no number cannot be compared
    return true;
}

} // namespace

double numberOf(const ValueView& value) {
    return std::visit(NumberReader{}, value);
}

std::int32_t wholeNumberOf(const ValueView& value) {
    if (const auto nWhole = exactWhole(value)) {
        if (*nWhole < std::numeric_limits<std::int32_t>::min() ||
            *nWhole > std::numeric_limits<std::int32_t>::max())
            throw Failure::of(FailureNumber::Overflow);
        return static_cast<std::int32_t>(*nWhole);
    }
    return roundToInt32(numberOf(value));
}

bool isLess(const ValueView& left, const ValueView& right) {
    if (isNull(left) || isNull(right))
        return false;
    if (const auto* sRight = std::get_if<std::string_view>(&right))
        return isLessThanText(left, *sRight);
    if (std::holds_alternative<std::string_view>(left)) {
        if (!std::holds_alternative<Empty>(right))
            static_cast<void>(numberOf(right)); // whatever is no number cannot be compared
        return false;
    }
    const auto nLeft = exactWhole(left);
    const auto nRight = exactWhole(right);
    if (nLeft && nRight)
        return *nLeft < *nRight;
    return numberOf(left) < numberOf(right);
}

} // namespace halvane
