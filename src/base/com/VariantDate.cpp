#include "base/Failure.h"
#include "base/com/Variant.h"

#include <chrono>
#include <cmath>

namespace halvane::com {

namespace {

constexpr std::int32_t lSecondsOfDay = 86400;
constexpr std::chrono::sys_days dayZero = std::chrono::year{1899} / 12 / 30;
constexpr double dFirstDay = -657434; // 1 January 100
constexpr double dEndDay = 2958466;   // the day after 31 December 9999

bool isTimeOnly(const Date& date) {
    return date.year == 0 && date.month == 0 && date.day == 0;
}

} // namespace

Date dateOf(DATE dDays) {
    if (!(dDays > dFirstDay - 1 && dDays < dEndDay))
        throw Failure::of(FailureNumber::Overflow);
    // The fraction is a time of day, before day zero too: -1.25 is a quarter past the start of the day -1.
    auto lDay = static_cast<std::int32_t>(std::trunc(dDays));
    auto lSecond =
        static_cast<std::int32_t>(std::lround(std::fabs(dDays - std::trunc(dDays)) * lSecondsOfDay));
    if (lSecond == lSecondsOfDay) {
        lSecond = 0;
        ++lDay;
    }
    Date date;
    if (lDay != 0) {
        const std::chrono::year_month_day day(dayZero + std::chrono::days(lDay));
        date.year = static_cast<std::int32_t>(day.year());
        date.month = static_cast<std::uint8_t>(static_cast<unsigned>(day.month()));
        date.day = static_cast<std::uint8_t>(static_cast<unsigned>(day.day()));
    }
    date.hour = static_cast<std::uint8_t>(lSecond / 3600);
    date.minute = static_cast<std::uint8_t>(lSecond / 60 % 60);
    date.second = static_cast<std::uint8_t>(lSecond % 60);
    return date;
}

DATE daysOf(const Date& date) {
    const double dFraction = (date.hour * 3600 + date.minute * 60 + date.second) / double{lSecondsOfDay};
    if (isTimeOnly(date))
        return dFraction;
    const std::chrono::year_month_day day{std::chrono::year{date.year}, std::chrono::month{date.month},
                                          std::chrono::day{date.day}};
    if (!day.ok())
        throw Failure::of(FailureNumber::Overflow);
    const double dDays = static_cast<double>((std::chrono::sys_days(day) - dayZero).count());
    if (dDays < dFirstDay || dDays >= dEndDay)
        throw Failure::of(FailureNumber::Overflow);
    return dDays < 0 ? dDays - dFraction : dDays + dFraction;
}

} // namespace halvane::com
