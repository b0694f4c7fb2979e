#include "base/Failure.h"
#include "base/com/Variant.h"

#include <gtest/gtest.h>

namespace halvane::test {

namespace {

using com::dateOf;
using com::daysOf;

Date systemDate(DATE dDays) {
    SYSTEMTIME time{};
    EXPECT_TRUE(VariantTimeToSystemTime(dDays, &time)) << dDays;
    Date date;
    date.year = time.wYear;
    date.month = static_cast<std::uint8_t>(time.wMonth);
    date.day = static_cast<std::uint8_t>(time.wDay);
    date.hour = static_cast<std::uint8_t>(time.wHour);
    date.minute = static_cast<std::uint8_t>(time.wMinute);
    date.second = static_cast<std::uint8_t>(time.wSecond);
    return date;
}

std::string shown(const Date& date) {
    return std::to_string(date.year) + "-" + std::to_string(date.month) + "-" + std::to_string(date.day) +
           " " + std::to_string(date.hour) + ":" + std::to_string(date.minute) + ":" +
           std::to_string(date.second);
}

TEST(VariantDates, AreTheSystemsOnEveryDay) {
    // Every day from the year 100 to 9999 except day zero, which has no date here; each at another time.
    std::int32_t lSecond = 0;
    for (std::int32_t lDay = -657434; lDay < 2958466; ++lDay) {
        lSecond = (lSecond + 12347) % 86400;
        if (lDay == 0)
            continue;
        const double dFraction = lSecond / 86400.0;
        const double dDays = lDay < 0 ? lDay - dFraction : lDay + dFraction;
        const Date date = dateOf(dDays);
        ASSERT_EQ(date, systemDate(dDays)) << dDays << ": " << shown(date);
        ASSERT_EQ(daysOf(date), dDays) << shown(date);
    }
}

TEST(VariantDates, HaveATimeAloneOnDayZero) {
    EXPECT_EQ(dateOf(0.75), (Date{0, 0, 0, 18, 0, 0}));
    EXPECT_EQ(daysOf({0, 0, 0, 6, 0, 0}), 0.25);
    EXPECT_EQ(dateOf(0), Date{});
}

TEST(VariantDates, RoundToTheSecond) {
    EXPECT_EQ(dateOf(45358.0 + 0.4 / 86400), (Date{2024, 3, 7, 0, 0, 0}));
    EXPECT_EQ(dateOf(45358.0 + 86399.6 / 86400), (Date{2024, 3, 8, 0, 0, 0}));
}

TEST(VariantDates, EndWithTheYears100And9999) {
    EXPECT_EQ(dateOf(-657434), (Date{100, 1, 1}));
    EXPECT_THROW(static_cast<void>(dateOf(-657435)), Failure);
    EXPECT_THROW(static_cast<void>(dateOf(2958466)), Failure);
    EXPECT_THROW(static_cast<void>(daysOf({99, 12, 31})), Failure);
    EXPECT_THROW(static_cast<void>(daysOf({10000, 1, 1})), Failure);
    EXPECT_THROW(static_cast<void>(daysOf({2023, 2, 29})), Failure);
}

} // namespace

} // namespace halvane::test
