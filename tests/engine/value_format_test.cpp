// How a format writes single values.

#include "support/FailureNumbers.h"

#include "engine/second/ValueFormat.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace halvane::test {
namespace {

using host::ValueRole;
using testing::HasSubstr;
using testing::StartsWith;

ValueFormat formatOf(std::string_view sText) {
    ValueFormat format;
    format.read(sText);
    return format;
}

/// A number of any type as a format writes it, behind what was written before.
template<class Number>
std::string numberAs(std::string_view sFormat, Number value, std::int32_t lDecimalPlaces = 0) {
    std::string sText = "=";
    if constexpr (std::is_integral_v<Number>)
        formatOf(sFormat).appendNumber(sText, static_cast<std::int64_t>(value));
    else
        formatOf(sFormat).appendNumber(sText, value, lDecimalPlaces);
    EXPECT_TRUE(sText.starts_with('='));
    return sText.substr(1);
}

std::string dateAs(std::string_view sFormat, const Date& date, ValueRole role = ValueRole::AsTyped) {
    std::string sText = "=";
    formatOf(sFormat).appendDate(sText, date, role);
    EXPECT_TRUE(sText.starts_with('='));
    return sText.substr(1);
}

std::string refusalOf(std::string_view sFormat) {
    try {
        static_cast<void>(formatOf(sFormat));
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), number(FailureNumber::DocumentFailure));
        return failure.description();
    }
    ADD_FAILURE() << "\"" << sFormat << "\" is taken";
    return {};
}

TEST(ValueFormats, AskForNothingAtFirst) {
    const ValueFormat format;
    EXPECT_FALSE(format.formatsNumbers());
    EXPECT_FALSE(format.formatsBooleans());
    EXPECT_FALSE(format.formatsDates());
    EXPECT_FALSE(format.namesCodes());
}

TEST(ValueFormats, AskForWhatTheirPartsName) {
    const ValueFormat all = formatOf(" xs ;  domain ");
    EXPECT_TRUE(all.formatsNumbers() && all.formatsBooleans() && all.formatsDates() && all.namesCodes());
    const ValueFormat numbers = formatOf("0.0");
    EXPECT_TRUE(numbers.formatsNumbers());
    EXPECT_FALSE(numbers.formatsBooleans() || numbers.formatsDates() || numbers.namesCodes());
    const ValueFormat dates = formatOf("yyyy");
    EXPECT_TRUE(dates.formatsDates());
    EXPECT_FALSE(dates.formatsBooleans() || dates.formatsNumbers() || dates.namesCodes());
}

TEST(ValueFormats, AddToWhatWasAskedForBefore) {
    ValueFormat format = formatOf("xs; domain");
    format.read("0.0");
    EXPECT_TRUE(format.formatsBooleans() && format.namesCodes());
    EXPECT_NE(format, formatOf("xs; domain"));
    format.read("xs");
    EXPECT_EQ(format, formatOf("xs; domain"));
    format.read("none; yyyy");
    EXPECT_EQ(format, formatOf("yyyy"));
    format.read("none");
    EXPECT_EQ(format, ValueFormat());
}

TEST(ValueFormats, AreAlikeWhenTheyAskForTheSame) {
    EXPECT_EQ(formatOf("0.0; yyyy"), formatOf("yyyy;0.0"));
    EXPECT_EQ(formatOf("##0.0"), formatOf("0.0"));
    for (const char* sOther : {"00.0; yyyy", "0.#; yyyy", "0.00; yyyy", "0.0; yy", "0.0; yyyy/", "0.0; MM",
                               "0.0", "yyyy", "0.0; yyyy; domain", "0.0#; yyyy", "xs"})
        EXPECT_NE(formatOf("0.0; yyyy"), formatOf(sOther)) << sOther;
    EXPECT_NE(formatOf("yyyy-"), formatOf("yyyy/"));
    ValueFormat booleansToo = formatOf("xs");
    booleansToo.read("0.0; yyyy");
    EXPECT_NE(booleansToo, formatOf("0.0; yyyy"));
}

TEST(ValueFormats, SayWhatTheyRefuse) {
    EXPECT_THAT(refusalOf(""), StartsWith("it is \"xs\", \"domain\", \"none\", a pattern"));
    EXPECT_THAT(refusalOf("xs;"), StartsWith("it is \"xs\""));
    EXPECT_THAT(refusalOf("-"), StartsWith("it is \"xs\""));
    EXPECT_THAT(refusalOf("'no part of a date'"), StartsWith("it is \"xs\""));
    EXPECT_EQ(refusalOf("0.0;00"), "it says twice how numbers are written");
    EXPECT_EQ(refusalOf("xs;0.0"), "it says twice how numbers are written");
    EXPECT_EQ(refusalOf("yyyy;xs"), "it says twice how dates are written");
    EXPECT_EQ(refusalOf("domain; domain"), "it says twice how coded values are written");
    for (const char* sFormat : {"none;none", "0;none", "yyyy;none", "domain;none"})
        EXPECT_EQ(refusalOf(sFormat), "\"none\" stands once, before the others") << sFormat;
    EXPECT_EQ(refusalOf("yyyy 'at"), "a quotation mark is not closed");
    for (const char* sFormat : {"yyy", "MMMMM", "EE", "ddd", "HHH", "S", "SSSS", "XX", "a", "Z", "z"})
        EXPECT_THAT(refusalOf(sFormat),
                    StartsWith("\"" + std::string(sFormat) + "\" is no part of a format"));
}

TEST(ValueFormats, RefusePartsOfManyLetters) {
    for (const auto& [nWidth, cLetter] : {std::pair{24U, 'y'}, std::pair{12U, 'd'}, std::pair{34U, 'E'}})
        EXPECT_THAT(refusalOf(std::string(nWidth, cLetter)), HasSubstr("is no part of a format"));
}

TEST(ValueFormats, TakePatternsOfNumbersOfUpTo32Characters) {
    EXPECT_EQ(numberAs("0." + std::string(30, '#'), 0.5), "0.5");
    EXPECT_THAT(refusalOf("0." + std::string(31, '#')), HasSubstr("a pattern of numbers"));
    for (const char* sFormat : {"0.", ".", "0#", "0.#0", "1", "0.0.0", "#,0", "0 0"})
        EXPECT_THAT(refusalOf(sFormat), HasSubstr("a pattern of numbers")) << sFormat;
}

TEST(ValueFormats, WriteNumbersThatAreNoneAsXmlSchemaDoes) {
    constexpr double dInfinite = std::numeric_limits<double>::infinity();
    for (const char* sFormat : {"xs", "0.00"}) {
        EXPECT_EQ(numberAs(sFormat, std::nan("")), "NaN");
        EXPECT_EQ(numberAs(sFormat, dInfinite), "INF");
        EXPECT_EQ(numberAs(sFormat, -dInfinite), "-INF");
        EXPECT_EQ(numberAs(sFormat, std::nanf("")), "NaN");
        EXPECT_EQ(numberAs(sFormat, static_cast<float>(dInfinite)), "INF");
        EXPECT_EQ(numberAs(sFormat, static_cast<float>(-dInfinite)), "-INF");
    }
}

TEST(ValueFormats, WriteNumbersOfXmlSchemaWithAllTheirDigits) {
    EXPECT_EQ(numberAs("xs", 1e21), "1000000000000000000000");
    EXPECT_EQ(numberAs("xs", -1e-7), "-0.0000001");
    EXPECT_EQ(numberAs("xs", std::numeric_limits<double>::max()).size(), 309U);
    EXPECT_EQ(numberAs("xs", 0.1F), "0.1");
    EXPECT_EQ(numberAs("xs", -0.0F), "0");
    EXPECT_EQ(numberAs("xs", 1.25, 1), "1.3");
    EXPECT_EQ(numberAs("xs", 1.0, 3), "1");
    EXPECT_EQ(numberAs("xs", 0.26F, 1), "0.3");
    EXPECT_EQ(numberAs("xs", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(ValueFormats, WriteAsManyDigitsAsAPatternAsksFor) {
    EXPECT_EQ(numberAs("000.0#", 1.5), "001.5");
    EXPECT_EQ(numberAs("000.0#", 1.25), "001.25");
    EXPECT_EQ(numberAs("000.0#", 12345.678), "12345.68");
    EXPECT_EQ(numberAs("0.##", 1.0), "1");
    EXPECT_EQ(numberAs("0.##", 1.5), "1.5");
    EXPECT_EQ(numberAs(".00", 0.5), "0.50");
    EXPECT_EQ(numberAs("0", 1.5F), "2");
    EXPECT_EQ(numberAs("0.0", -0.04F), "0.0");
    EXPECT_EQ(numberAs("00", -7), "-07");
    EXPECT_EQ(numberAs("0.00", 100), "100.00");
    EXPECT_EQ(numberAs("#", 0), "0");
    EXPECT_EQ(numberAs("0.0", 100.0), "100.0") << "zeros before the point stay";
}

TEST(ValueFormats, WriteTheTimeOfADateWhereItHasOne) {
    const Date day{2024, 5, 1};
    const auto with = [&](auto fnSet) {
        Date date = day;
        fnSet(date);
        return dateAs("xs", date);
    };
    EXPECT_EQ(dateAs("xs", day), "2024-05-01");
    EXPECT_EQ(with([](Date& date) { date.hour = 1; }), "2024-05-01T01:00:00");
    EXPECT_EQ(with([](Date& date) { date.minute = 2; }), "2024-05-01T00:02:00");
    EXPECT_EQ(with([](Date& date) { date.second = 3; }), "2024-05-01T00:00:03");
    EXPECT_EQ(with([](Date& date) { date.millisecond = 40; }), "2024-05-01T00:00:00.04");
    EXPECT_EQ(dateAs("xs", {2024, 5, 1, 12}, ValueRole::Date), "2024-05-01");
    EXPECT_EQ(dateAs("xs", {2024, 5, 1, 12}, ValueRole::Time), "12:00:00");
    EXPECT_EQ(dateAs("xs", {2024, 5, 1, 12}, ValueRole::Boolean), "2024-05-01T12:00:00");
    EXPECT_EQ(dateAs("xs", {0, 0, 0, 12}, ValueRole::DateTime), "12:00:00");
}

TEST(ValueFormats, WriteTheZoneOfATime) {
    const auto inZone = [](std::int16_t lMinutes) { return dateAs("X", {2024, 5, 1, 0, 0, 0, 0, lMinutes}); };
    EXPECT_EQ(inZone(0), "Z");
    EXPECT_EQ(inZone(75), "+01:15");
    EXPECT_EQ(inZone(-75), "-01:15");
    EXPECT_EQ(inZone(-30), "-00:30");
    EXPECT_EQ(inZone(Date::noZone), "");
}

TEST(ValueFormats, WriteEachPartOfADate) {
    const Date moment{2024, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(dateAs("yyyy yy M MM d dd H HH m mm s ss SSS", moment), "2024 24 2 02 3 03 4 04 5 05 6 06 007");
    EXPECT_EQ(dateAs("MMM MMMM EEE EEEE", moment), "Feb February Sat Saturday");
    EXPECT_EQ(dateAs("yy", {1907, 1, 1}), "07");
    EXPECT_EQ(dateAs("yyyy", {-44, 3, 15}), "-0044");
    EXPECT_EQ(dateAs("yyyy", {12024, 3, 15}), "12024");
    EXPECT_EQ(dateAs("'d'yyyy''M", moment), "d2024'2");
    EXPECT_EQ(dateAs("{yyyy}[MM]@\xC3\xA4 5", moment), "{2024}[02]@\xC3\xA4 5")
        << "other signs stand for themselves";
}

TEST(ValueFormats, NameEveryMonthAndDay) {
    std::string sMonths;
    for (std::uint8_t nMonth = 1; nMonth <= 12; ++nMonth)
        sMonths += dateAs("MMM ", {2024, nMonth, 1});
    EXPECT_EQ(sMonths, "JanFebMarAprMayJunJulAugSepOctNovDec");
    std::string sDays;
    for (std::uint8_t nDay = 5; nDay <= 11; ++nDay)
        sDays += dateAs("EEEE", {2024, 5, nDay});
    EXPECT_EQ(sDays, "SundayMondayTuesdayWednesdayThursdayFridaySaturday");
}

TEST(ValueFormats, WriteNoDateOfATimeAlone) {
    const Date time{0, 0, 0, 4, 5, 6, 7, 60};
    EXPECT_EQ(dateAs("HH:mm:ss.SSSX 'h'", time), "04:05:06.007+01:00 h");
    for (const char* sFormat : {"yyyy", "yy", "M", "MMM", "d", "EEE", "HH d"}) {
        const auto lNumber = failureOf([&] { static_cast<void>(dateAs(sFormat, time)); });
        EXPECT_EQ(lNumber, number(FailureNumber::TypeMismatch)) << sFormat;
    }
}

TEST(ValueFormats, NameNoMonthOrDayThatTheCalendarDoesNotHave) {
    for (const Date& date : {Date{2024, 13, 1}, Date{2024, 2, 30}, Date{2023, 2, 29}, Date{2024, 5, 0}}) {
        for (const char* sFormat : {"MMM", "MMMM", "EEE", "EEEE"}) {
            const auto lNumber = failureOf([&] { static_cast<void>(dateAs(sFormat, date)); });
            EXPECT_EQ(lNumber, number(FailureNumber::TypeMismatch)) << sFormat;
        }
    }
    EXPECT_EQ(dateAs("dd.MM.yyyy", {2024, 13, 32}), "32.13.2024") << "digits are written as they are";
}

TEST(ValueFormats, WriteBooleansAsWords) {
    std::string sText = "=";
    ValueFormat::appendBoolean(sText, true);
    ValueFormat::appendBoolean(sText, false);
    EXPECT_EQ(sText, "=truefalse");
}

} // namespace
} // namespace halvane::test
