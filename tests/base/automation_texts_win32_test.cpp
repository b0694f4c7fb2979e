// The texts and roundings of the portable code beside those of the system's automation library, US English.

#include "base/Failure.h"
#include "base/Numbers.h"
#include "base/Value.h"
#include "base/com/Bstr.h"
#include "base/com/Variant.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace halvane {
namespace {

using com::Bstr;

constexpr LCID usEnglish = 0x409;
constexpr int manyCases = 100000;

/// Numbers of every kind that a map's data can hold, the same ones in every run.
class AutomationTexts : public testing::Test {
protected:
    /// Any bits that are a number.
    double anyDouble() {
        for (;;) {
            const auto dValue = std::bit_cast<double>(random());
            if (std::isfinite(dValue))
                return dValue;
        }
    }
    /// A coordinate or a measure: few digits, a moderate size, often halfway between two roundings.
    double usualDouble() {
        const auto nWhole = static_cast<std::int64_t>(random() % 2000000000000ULL) - 1000000000000LL;
        return static_cast<double>(nWhole) / std::pow(10.0, static_cast<double>(random() % 16));
    }
    double halfway() {
        const auto nWhole = static_cast<std::int64_t>(random() % 200000) - 100000;
        return static_cast<double>(nWhole) + 0.5;
    }
    float anyFloat() {
        for (;;) {
            const auto fValue = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
            if (std::isfinite(fValue))
                return fValue;
        }
    }
    double anyDays() {
        return static_cast<double>(random() % 3615900) - 657434 +
               static_cast<double>(random() % 86400) / 86400;
    }

    std::mt19937_64 random{19991230};
};

constexpr int lYes = -1;
constexpr int lNo = 0;

/// The system fills decimals up with zeros, and has a negative zero.
std::string withoutPadding(std::string sText) {
    if (sText.find('.') != std::string::npos)
        sText.erase(sText.find_last_not_of('0') + 1);
    if (sText.ends_with('.'))
        sText.pop_back();
    return sText == "-0" ? "0" : sText;
}

std::string systemTextOf(double dValue) {
    Bstr sText;
    EXPECT_EQ(VarBstrFromR8(dValue, usEnglish, 0, sText.put()), S_OK);
    return sText.utf8();
}

/// A number's text as its significant digits and the power of ten behind the first of them.
std::string digitsAndPower(const std::string& sText) {
    const std::size_t nExponent = std::min(sText.find('E'), sText.size());
    int nPower = nExponent == sText.size() ? 0 : std::stoi(sText.substr(nExponent + 1));
    const std::string sNumber = sText.substr(0, nExponent);
    const std::size_t nFirst = std::min(sNumber.find_first_of("123456789"), sNumber.size());
    const std::size_t nPoint = std::min(sNumber.find('.'), sNumber.size());
    nPower += nPoint > nFirst ? static_cast<int>(nPoint - nFirst) - 1 : -static_cast<int>(nFirst - nPoint);
    std::string sDigits = sNumber.substr(nFirst);
    sDigits.erase(std::remove(sDigits.begin(), sDigits.end(), '.'), sDigits.end());
    sDigits.erase(sDigits.find_last_not_of('0') + 1);
    return (sText.starts_with('-') ? "-" : "") + sDigits + "E" + std::to_string(nPower);
}

/// Not every version of the system writes small numbers with an exponent; all write the same digits.
std::string inTheSystemsForm(const std::string& sOurs, const std::string& sSystem) {
    static const bool bExponents = systemTextOf(1e-5) == "1E-05";
    const bool bOther = (sOurs.find('E') == std::string::npos) != (sSystem.find('E') == std::string::npos);
    return !bExponents && bOther && digitsAndPower(sOurs) == digitsAndPower(sSystem) ? sSystem : sOurs;
}

TEST_F(AutomationTexts, OfDoublesOfAnyBitsAreTheSystems) {
    for (int n = 0; n < manyCases; ++n) {
        const double dValue = anyDouble();
        const std::string sSystem = systemTextOf(dValue);
        ASSERT_EQ(inTheSystemsForm(toText(Value(dValue)), sSystem), sSystem) << std::hexfloat << dValue;
    }
}

TEST_F(AutomationTexts, OfUsualDoublesAreTheSystems) {
    for (int n = 0; n < manyCases; ++n) {
        const double dValue = usualDouble();
        const std::string sSystem = systemTextOf(dValue);
        ASSERT_EQ(inTheSystemsForm(toText(Value(dValue)), sSystem), sSystem) << std::hexfloat << dValue;
    }
}

TEST_F(AutomationTexts, OfPowersOfTenAndTheirNeighboursAreTheSystems) {
    for (int nExponent = -323; nExponent <= 308; ++nExponent) {
        const double dPower = std::pow(10.0, nExponent);
        for (const double dValue :
             {dPower, -dPower, std::nextafter(dPower, 0.0), std::nextafter(dPower, 1e308)}) {
            const std::string sSystem = systemTextOf(dValue);
            ASSERT_EQ(inTheSystemsForm(toText(Value(dValue)), sSystem), sSystem) << std::hexfloat << dValue;
        }
    }
}

TEST_F(AutomationTexts, OfSinglesAreTheSystems) {
    for (int n = 0; n < manyCases; ++n) {
        const float fValue = n % 2 == 0 ? anyFloat() : static_cast<float>(usualDouble());
        Bstr sText;
        ASSERT_EQ(VarBstrFromR4(fValue, usEnglish, 0, sText.put()), S_OK);
        const std::string sSystem = sText.utf8();
        ASSERT_EQ(inTheSystemsForm(toText(Value(fValue)), sSystem), sSystem) << std::hexfloat << fValue;
    }
}

TEST_F(AutomationTexts, OfWholeNumbersAndYesAndNoAreTheSystems) {
    for (int n = 0; n < manyCases; ++n) {
        const auto nLarge = static_cast<std::int64_t>(random() >> (random() % 64));
        const auto lSmall = static_cast<std::int32_t>(random() >> (32 + random() % 32));
        Bstr sLarge;
        Bstr sSmall;
        ASSERT_EQ(VarBstrFromI8(-nLarge, usEnglish, 0, sLarge.put()), S_OK);
        ASSERT_EQ(VarBstrFromI4(-lSmall, usEnglish, 0, sSmall.put()), S_OK);
        ASSERT_EQ(toText(Value(-nLarge)), sLarge.utf8());
        ASSERT_EQ(toText(Value(-lSmall)), sSmall.utf8());
    }
    for (const bool bValue : {true, false}) {
        Bstr sText;
        ASSERT_EQ(VarBstrFromBool(bValue ? VARIANT_TRUE : VARIANT_FALSE, usEnglish, 0, sText.put()), S_OK);
        EXPECT_EQ(toText(Value(bValue)), sText.utf8());
    }
}

TEST_F(AutomationTexts, OfCurrencyOfFifteenDigitsAreTheSystems) {
    for (int n = 0; n < manyCases; ++n) {
        VARIANT variant{};
        variant.vt = VT_CY;
        variant.cyVal.int64 = static_cast<std::int64_t>(random() % 1999999999999999ULL) - 999999999999999LL;
        Bstr sText;
        ASSERT_EQ(VarBstrFromCy(variant.cyVal, usEnglish, 0, sText.put()), S_OK);
        ASSERT_EQ(toText(com::toValue(variant)), sText.utf8()) << variant.cyVal.int64;
    }
}

TEST_F(AutomationTexts, OfDatesAreTheSystemsFormatting) {
    for (int n = 0; n < manyCases; ++n) {
        VARIANT variant{};
        variant.vt = VT_DATE;
        variant.date = anyDays();
        if (std::trunc(variant.date) == 0)
            continue; // a time of day has a text of our own
        SYSTEMTIME parts{};
        ASSERT_EQ(VariantTimeToSystemTime(variant.date, &parts), TRUE);
        const Date date = com::dateOf(variant.date);
        ASSERT_EQ(date,
                  (Date{parts.wYear, static_cast<std::uint8_t>(parts.wMonth),
                        static_cast<std::uint8_t>(parts.wDay), static_cast<std::uint8_t>(parts.wHour),
                        static_cast<std::uint8_t>(parts.wMinute), static_cast<std::uint8_t>(parts.wSecond)}))
            << std::hexfloat << variant.date;
        if (date.year < 1000)
            continue; // not every version of the system fills such years up to four digits
        std::wstring sFormat = L"mm/dd/yyyy";
        Bstr sText;
        ASSERT_EQ(VarFormat(&variant, sFormat.data(), 0, 0, 0, sText.put()), S_OK);
        ASSERT_EQ(toText(com::toValue(variant)), sText.utf8()) << variant.date;
    }
}

TEST_F(AutomationTexts, OfNumbersWithDecimalsAreTheSystemsFormatting) {
    for (int n = 0; n < manyCases; ++n) {
        VARIANT variant{};
        variant.vt = VT_R8;
        variant.dblVal = n % 4 == 0 ? halfway() / std::pow(10.0, n % 5) : usualDouble();
        const int nDecimals = n % 7;
        if (doubleText(variant.dblVal).find('E') != std::string::npos)
            continue; // not every version of the system formats numbers that small
        Bstr sText;
        ASSERT_EQ(VarFormatNumber(&variant, nDecimals, lYes, lNo, lNo, 0, sText.put()), S_OK);
        const std::string sSystem = withoutPadding(sText.utf8());
        if (sSystem.find(',') != std::string::npos)
            continue; // a version of the system groups digits of some numbers though it is told not to
        ASSERT_EQ(fixedText(variant.dblVal, nDecimals), sSystem)
            << std::hexfloat << variant.dblVal << " " << nDecimals;
    }
}

TEST_F(AutomationTexts, RoundToWholeNumbersAsTheSystemDoes) {
    for (int n = 0; n < manyCases; ++n) {
        const double dValue = n % 2 == 0 ? halfway() : usualDouble();
        LONG lSystem = 0;
        const HRESULT hr = VarI4FromR8(dValue, &lSystem);
        if (FAILED(hr))
            ASSERT_THROW((void)roundToInt32(dValue), Failure) << dValue;
        else
            ASSERT_EQ(roundToInt32(dValue), lSystem) << dValue;
    }
}

TEST_F(AutomationTexts, AreReadBackByTheSystemAndByUs) {
    for (int n = 0; n < manyCases; ++n) {
        const double dValue = n % 2 == 0 ? anyDouble() : usualDouble();
        const std::string sText = doubleText(dValue);
        if (std::fabs(dValue) > 1e307)
            continue; // the rounded text can lie beyond the largest number
        double dSystem = 0;
        std::wstring sWide = com::wideOf(sText);
        ASSERT_EQ(VarR8FromStr(sWide.data(), usEnglish, 0, &dSystem), S_OK) << sText;
        ASSERT_NEAR(toDouble(sText), dSystem, std::fabs(dValue) * 1e-13) << sText;
    }
}

} // namespace
} // namespace halvane
