#include "base/CommaLocale.h"
#include "base/Failure.h"
#include "base/Numbers.h"
#include "base/PortableNumbers.h"

#include <gtest/gtest.h>

#include <array>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

namespace halvane {

namespace {

using test::CommaLocale;

std::string singleText(float fValue) {
    std::string sText;
    appendSingleText(sText, fValue);
    return sText;
}

template<class Operation>
std::int32_t failureNumberOf(Operation operation) {
    try {
        static_cast<void>(operation());
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

constexpr auto lOverflow = static_cast<std::int32_t>(FailureNumber::Overflow);
constexpr auto lTypeMismatch = static_cast<std::int32_t>(FailureNumber::TypeMismatch);

} // namespace

TEST(DoubleText, WritesTheShortTextOfAShortDecimal) {
    EXPECT_EQ(doubleText(0.1), "0.1");
    EXPECT_EQ(doubleText(1234567.1), "1234567.1");
    EXPECT_EQ(doubleText(-2.5), "-2.5");
    EXPECT_EQ(doubleText(100), "100");
}

TEST(DoubleText, RoundsToFifteenSignificantDigits) {
    EXPECT_EQ(doubleText(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(doubleText(12345.678901234567), "12345.6789012346");
    EXPECT_EQ(doubleText(0.30000000000000004), "0.3");
    EXPECT_EQ(doubleText(123456789012345678.0), "1.23456789012346E+17");
}

TEST(DoubleText, UsesTheExponentFormFromTenToTheFifteenth) {
    EXPECT_EQ(doubleText(1e14), "100000000000000");
    EXPECT_EQ(doubleText(999999999999999.0), "999999999999999");
    EXPECT_EQ(doubleText(1e15), "1E+15");
    EXPECT_EQ(doubleText(999999999999999.9), "1E+15");
    EXPECT_EQ(doubleText(-1.5e100), "-1.5E+100");
}

TEST(DoubleText, UsesTheExponentFormBelowTenToTheMinusFourth) {
    EXPECT_EQ(doubleText(1e-4), "0.0001");
    EXPECT_EQ(doubleText(1e-5), "1E-05");
    EXPECT_EQ(doubleText(1.25e-7), "1.25E-07");
}

TEST(DoubleText, WritesZeroWithoutASign) {
    EXPECT_EQ(doubleText(0.0), "0");
    EXPECT_EQ(doubleText(-0.0), "0");
}

TEST(DoubleText, WritesTheExtremesOfTheType) {
    EXPECT_EQ(doubleText(5e-324), "4.94065645841247E-324");
    EXPECT_EQ(doubleText(1.7976931348623157e308), "1.79769313486232E+308");
    EXPECT_EQ(doubleText(DBL_MIN), "2.2250738585072E-308");
}

TEST(DoubleText, NamesWhatIsNotFinite) {
    EXPECT_EQ(doubleText(std::numeric_limits<double>::infinity()), "INF");
    EXPECT_EQ(doubleText(-std::numeric_limits<double>::infinity()), "-INF");
    EXPECT_EQ(doubleText(std::numeric_limits<double>::quiet_NaN()), "NAN");
}

TEST(DoubleText, RoundsExactTiesAwayFromZero) {
    // All of these are exact in binary, with a 5 as their sixteenth and last digit.
    EXPECT_EQ(doubleText(1234567890123445.0), "1.23456789012345E+15");
    EXPECT_EQ(doubleText(-1234567890123445.0), "-1.23456789012345E+15");
    EXPECT_EQ(doubleText(100000000000000.5), "100000000000001");
    EXPECT_EQ(doubleText(4503599627370.125), "4503599627370.13");
    EXPECT_EQ(doubleText(99999999999999.25), "99999999999999.3");
}

TEST(DoubleText, RoundsANearTieByItsExactValue) {
    // The doubles nearest to these decimals lie just below the half and just above it.
    EXPECT_EQ(doubleText(0.1234567890123455), "0.123456789012345");
    EXPECT_EQ(doubleText(0.1234567890123475), "0.123456789012347");
    EXPECT_EQ(doubleText(1.000000000000005), "1.00000000000001");
    EXPECT_EQ(doubleText(1.000000000000025), "1.00000000000003");
}

TEST(DoubleText, AgreesWithTheCLibraryOnRandomBitPatternsThatAreNoTies) {
    std::mt19937_64 random(20240607);
    for (int i = 0; i < 50000; ++i) {
        const std::uint64_t nBits = random();
        double dValue = 0;
        std::memcpy(&dValue, &nBits, sizeof dValue);
        // A fraction with all its bits set in use has far more than sixteen digits outside this range.
        if (!std::isfinite(dValue) || (std::fabs(dValue) > 1e-3 && std::fabs(dValue) < 1e18))
            continue;
        char aExpected[40];
        std::snprintf(aExpected, sizeof aExpected, "%.15G", dValue);
        ASSERT_EQ(doubleText(dValue), aExpected);
    }
}

TEST(DoubleText, AgreesWithTheCLibraryOnRandomShortDecimals) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 50000; ++i) {
        const double dValue = static_cast<double>(random() % 100000000000U) / 1e5;
        char aExpected[40];
        std::snprintf(aExpected, sizeof aExpected, "%.15G", dValue);
        ASSERT_EQ(doubleText(dValue), aExpected);
    }
}

TEST(DoubleText, TakesTheSeparatorOfTheNumericLocale) {
    const CommaLocale locale;
    if (!locale.isActive())
        GTEST_SKIP() << "no locale with a decimal comma";
    EXPECT_EQ(doubleText(0.1), "0,1");
    EXPECT_EQ(doubleText(1.5e20), "1,5E+20");
    EXPECT_EQ(doubleText(17), "17");
    EXPECT_EQ(fixedText(2.345, 2), "2,35");
    EXPECT_EQ(singleText(0.5F), "0,5");
}

TEST(SingleText, HasSevenSignificantDigits) {
    EXPECT_EQ(singleText(0.1F), "0.1");
    EXPECT_EQ(singleText(1.0F / 3), "0.3333333");
    EXPECT_EQ(singleText(16777.216F), "16777.22");
    EXPECT_EQ(singleText(-0.0F), "0");
}

TEST(SingleText, UsesTheExponentFormFromTenToTheSeventh) {
    EXPECT_EQ(singleText(9999999.0F), "9999999");
    EXPECT_EQ(singleText(1e7F), "1E+07");
    EXPECT_EQ(singleText(1e-5F), "1E-05");
    EXPECT_EQ(singleText(1e-4F), "0.0001");
}

TEST(SingleText, RoundsExactTiesAwayFromZero) {
    EXPECT_EQ(singleText(1000000.5F), "1000001");
    EXPECT_EQ(singleText(-16777.125F), "-16777.13");
}

TEST(PortableText, HasAPointAndNoExponent) {
    const auto portable = [](double dValue, std::int32_t lDecimals = 0) {
        std::string sText;
        appendPortableText(sText, dValue, lDecimals);
        return sText;
    };
    const CommaLocale locale;
    EXPECT_EQ(portable(0.1), "0.1");
    EXPECT_EQ(portable(-12345.678901234567), "-12345.6789012346");
    EXPECT_EQ(portable(2.675, 2), "2.68");
    EXPECT_EQ(portable(-0.001, 2), "0");
    EXPECT_EQ(portable(1e21), "1000000000000000000000");
    EXPECT_EQ(portable(1.5e-9), "0.0000000015");
    EXPECT_EQ(portable(1.5e-9, 3), "0");
    EXPECT_EQ(portable(17), "17");
}

TEST(FixedText, RoundsToAtMostTheGivenDecimals) {
    EXPECT_EQ(fixedText(3.14159, 2), "3.14");
    EXPECT_EQ(fixedText(3.14159, 15), "3.14159");
    EXPECT_EQ(fixedText(1234.5678, 3), "1234.568");
}

TEST(FixedText, RoundsTiesAwayFromZero) {
    EXPECT_EQ(fixedText(0.125, 2), "0.13");
    EXPECT_EQ(fixedText(-0.125, 2), "-0.13");
    EXPECT_EQ(fixedText(2.5, 0), "3");
    EXPECT_EQ(fixedText(0.5, 0), "1");
}

TEST(FixedText, RoundsToFifteenDigitsBeforeTheDecimals) {
    // The double lies below the half; its fifteen digits are the half itself.
    EXPECT_EQ(fixedText(2.675, 2), "2.68");
    EXPECT_EQ(fixedText(12345.678901234567, 15), "12345.6789012346");
}

TEST(FixedText, PadsWithNoZeros) {
    EXPECT_EQ(fixedText(2.5, 4), "2.5");
    EXPECT_EQ(fixedText(7, 3), "7");
    EXPECT_EQ(fixedText(0, 3), "0");
}

TEST(FixedText, CarriesIntoTheWholePart) {
    EXPECT_EQ(fixedText(9.999, 2), "10");
    EXPECT_EQ(fixedText(0.999, 1), "1");
    EXPECT_EQ(fixedText(199.96, 1), "200");
}

TEST(FixedText, NeverUsesTheExponentFormNorGroups) {
    EXPECT_EQ(fixedText(1e20, 2), "100000000000000000000");
    EXPECT_EQ(fixedText(1234567.5, 2), "1234567.5");
    EXPECT_EQ(fixedText(0.00001, 15), "0.00001");
}

TEST(FixedText, WritesWhatRoundsToZeroAsZeroWithoutASign) {
    EXPECT_EQ(fixedText(0.004, 2), "0");
    EXPECT_EQ(fixedText(-0.004, 2), "0");
    EXPECT_EQ(fixedText(1e-300, 15), "0");
}

TEST(FixedText, WritesWhatIsNoFiniteNumberByItsName) {
    EXPECT_EQ(fixedText(std::numeric_limits<double>::infinity(), 2), "INF");
    EXPECT_EQ(fixedText(-std::numeric_limits<double>::infinity(), 2), "-INF");
    EXPECT_EQ(fixedText(std::numeric_limits<double>::quiet_NaN(), 0), "NAN");
}

TEST(FixedText, TakesNegativeDecimalsAsNone) {
    EXPECT_EQ(fixedText(14.6, -1), "15");
}

TEST(FixedText, AcceptsAnyNumberOfDecimals) {
    EXPECT_EQ(fixedText(0.1, std::numeric_limits<std::int32_t>::max()), "0.1");
}

TEST(FixedText, IsExactAtTheEndsOfTheFastWay) {
    EXPECT_EQ(fixedText(1e-6, 15), "0.000001");
    EXPECT_EQ(fixedText(std::nextafter(1e-6, 0), 21), "0.000001");
    EXPECT_EQ(fixedText(9.99999999999999e-7, 30), "0.000000999999999999999");
    EXPECT_EQ(fixedText(1.23456789012345e-6, 30), "0.00000123456789012345");
    EXPECT_EQ(fixedText(999999999999999.4, 15), "999999999999999");
    EXPECT_EQ(fixedText(999999999999999.5, 15), "1000000000000000");
    EXPECT_EQ(fixedText(1e15, 15), "1000000000000000");
    EXPECT_EQ(fixedText(std::nextafter(1e15, 0), 15), "1000000000000000");
}

TEST(FixedText, RoundsNumbersTooSmallForTheFastWayToTheLastDecimal) {
    EXPECT_EQ(fixedText(9.5e-7, 6), "0.000001");
    EXPECT_EQ(fixedText(4.5e-7, 6), "0");
    EXPECT_EQ(fixedText(1.5e-7, 7), "0.0000002");
    EXPECT_EQ(fixedText(-9.96e-8, 10), "-0.0000000996");
    EXPECT_EQ(fixedText(-9.96e-8, 9), "-0.0000001");
}

TEST(FixedText, AgreesWithTheCLibraryWhereFifteenDigitsRound) {
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> exponent(-5.9, 5.0);
    for (int nRound = 0; nRound < 50'000; ++nRound) {
        const double dValue = std::pow(10.0, exponent(random));
        std::array<char, 64> aText{};
        // So small a number with all its bits in use is no tie.
        std::snprintf(aText.data(), aText.size(), "%.14e", dValue);
        EXPECT_EQ(std::strtod(fixedText(dValue, 30).c_str(), nullptr), std::strtod(aText.data(), nullptr));
    }
}

TEST(FixedText, AgreesWithTheCLibraryAroundThePowersOfTen) {
    for (int nPower = -6; nPower < 15; ++nPower) {
        for (const double dLimit : {0.0, 1e300}) {
            const double dValue = std::nextafter(std::pow(10.0, nPower), dLimit);
            std::array<char, 64> aText{};
            std::snprintf(aText.data(), aText.size(), "%.15g", dValue);
            EXPECT_EQ(std::strtod(fixedText(dValue, 30).c_str(), nullptr),
                      std::strtod(aText.data(), nullptr));
        }
    }
}

TEST(IsNumeric, AcceptsDigitsWithSignSeparatorExponentAndSurroundingBlanks) {
    for (const char* sText : {"0", "17", "-17", "+17", "1.5", ".5", "5.", "-.5", "1e5", "1E+5", "2.5e-3",
                              "  42  ", "00012", "99999999999999999999"})
        EXPECT_TRUE(isNumeric(sText)) << '"' << sText << '"';
}

TEST(IsNumeric, RejectsEverythingElse) {
    for (const char* sText :
         {"",      "   ", "x",   "1x",  "x1",  ".",   "-",   "+",    "e5",   "1e",    "1e+", "1 2",
          "1.2.3", "--1", "- 1", "1,5", "1\t", "INF", "NAN", "0x10", "True", "1e5.5", "5-"})
        EXPECT_FALSE(isNumeric(sText)) << '"' << sText << '"';
}

TEST(IsNumeric, TakesTheSeparatorOfTheNumericLocale) {
    const CommaLocale locale;
    if (!locale.isActive())
        GTEST_SKIP() << "no locale with a decimal comma";
    EXPECT_TRUE(isNumeric("1,5"));
    EXPECT_FALSE(isNumeric("1.5"));
    EXPECT_EQ(toDouble("1,5"), 1.5);
    EXPECT_EQ(toInt32("2,5"), 2);
    EXPECT_EQ(failureNumberOf([] { return toDouble("1.5"); }), lTypeMismatch);
}

TEST(ToDouble, ReadsTheNumber) {
    EXPECT_EQ(toDouble("17"), 17);
    EXPECT_EQ(toDouble(" -2.5e3 "), -2500);
    EXPECT_EQ(toDouble("+.5"), 0.5);
    EXPECT_EQ(toDouble("5."), 5);
    EXPECT_EQ(toDouble("1.7976931348623157e308"), DBL_MAX);
    EXPECT_EQ(toDouble("4.94065645841247E-324"), 5e-324);
}

TEST(ToDouble, ReadsBackWhatDoubleTextWrote) {
    for (const double dValue : {0.1, 1e15, 1e-5, -12345.6789, 123456789012345.0})
        EXPECT_EQ(toDouble(doubleText(dValue)), dValue);
}

TEST(ToDouble, RefusesWhatIsNotNumeric) {
    EXPECT_EQ(failureNumberOf([] { return toDouble("abc"); }), lTypeMismatch);
    EXPECT_EQ(failureNumberOf([] { return toDouble(""); }), lTypeMismatch);
}

TEST(ToDouble, OverflowsBeyondTheRangeAndTakesWhatIsTooSmallAsZero) {
    EXPECT_EQ(failureNumberOf([] { return toDouble("1e309"); }), lOverflow);
    EXPECT_EQ(failureNumberOf([] { return toDouble("-1e99999999999"); }), lOverflow);
    EXPECT_EQ(toDouble("1e-400"), 0);
    EXPECT_EQ(toDouble("1e-99999999999"), 0);
    EXPECT_EQ(toDouble("0e99999999999"), 0);
    EXPECT_EQ(toDouble("0.000e999"), 0);
}

TEST(ToInt32, RoundsHalvesToTheEvenNeighbour) {
    EXPECT_EQ(toInt32("0.5"), 0);
    EXPECT_EQ(toInt32("1.5"), 2);
    EXPECT_EQ(toInt32("2.5"), 2);
    EXPECT_EQ(toInt32("-2.5"), -2);
    EXPECT_EQ(toInt32("-3.5"), -4);
    EXPECT_EQ(toInt32("2.51"), 3);
}

TEST(ToInt32, ReadsWholeNumbersExactly) {
    EXPECT_EQ(toInt32("17"), 17);
    EXPECT_EQ(toInt32(" -17 "), -17);
    EXPECT_EQ(toInt32("0000000000000000000012"), 12);
    EXPECT_EQ(toInt32("1e3"), 1000);
    EXPECT_EQ(toInt32("2147483647"), 2147483647);
    EXPECT_EQ(toInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
}

TEST(ToInt32, OverflowsBeyondThirtyTwoBits) {
    EXPECT_EQ(failureNumberOf([] { return toInt32("2147483648"); }), lOverflow);
    EXPECT_EQ(failureNumberOf([] { return toInt32("-2147483649"); }), lOverflow);
    EXPECT_EQ(failureNumberOf([] { return toInt32("2147483647.5"); }), lOverflow);
    EXPECT_EQ(toInt32("2147483647.4"), 2147483647);
    EXPECT_EQ(failureNumberOf([] { return toInt32("1e10"); }), lOverflow);
}

TEST(ToInt32, RefusesWhatIsNotNumeric) {
    EXPECT_EQ(failureNumberOf([] { return toInt32("ten"); }), lTypeMismatch);
    EXPECT_EQ(failureNumberOf([] { return toInt32(" "); }), lTypeMismatch);
}

TEST(RoundToInt32, RefusesWhatIsNoNumber) {
    EXPECT_EQ(failureNumberOf([] { return roundToInt32(std::numeric_limits<double>::quiet_NaN()); }),
              lOverflow);
}

} // namespace halvane
