// The portable texts and roundings of numbers against those of the system's own automation.

#include "collection/Conversions.h"
#include "collection/Failure.h"
#include "collection/Numbers.h"
#include "collection/com/Bstr.h"
#include "collection/com/HResult.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

namespace halvane::test {

namespace {

using com::Bstr;

constexpr LCID lcidEnglish = 0x0409;
constexpr int nValues = 200'000;

std::string systemText(double dValue) {
    Bstr sText;
    com::require(VarBstrFromR8(dValue, lcidEnglish, 0, sText.put()), "VarBstrFromR8");
    return sText.utf8();
}

std::string systemText(float fValue) {
    Bstr sText;
    com::require(VarBstrFromR4(fValue, lcidEnglish, 0, sText.put()), "VarBstrFromR4");
    return sText.utf8();
}

/// Numbers of every magnitude, and such as people write.
double someNumber(std::mt19937_64& random) {
    switch (random() % 4) {
    case 0: {
        const double dAny = std::bit_cast<double>(random());
        return std::isfinite(dAny) ? dAny : 0;
    }
    case 1:
        return static_cast<double>(static_cast<std::int64_t>(random() % 2'000'000'000'000)) / 1000;
    case 2:
        return std::ldexp(static_cast<double>(random() % 1'000'000), -static_cast<int>(random() % 30));
    default:
        return static_cast<double>(random() % 100'000'000) * 1e-7 * ((random() & 1) != 0 ? 1 : -1);
    }
}

TEST(NumberTexts, AreTheSystemsForDoubles) {
    std::mt19937_64 random(17);
    for (int n = 0; n < nValues; ++n) {
        const double dValue = someNumber(random);
        ASSERT_EQ(doubleText(dValue), systemText(dValue)) << std::hexfloat << dValue;
    }
}

TEST(NumberTexts, AreTheSystemsForSingles) {
    std::mt19937_64 random(18);
    for (int n = 0; n < nValues; ++n) {
        const auto fAny = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        const float fValue =
            std::isfinite(fAny) && n % 2 == 0 ? fAny : static_cast<float>(someNumber(random) / 1e9);
        if (!std::isfinite(fValue))
            continue;
        std::string sText;
        appendSingleText(sText, fValue);
        ASSERT_EQ(sText, systemText(fValue)) << std::hexfloat << fValue;
    }
}

TEST(Roundings, AreTheSystems) {
    std::mt19937_64 random(19);
    for (int n = 0; n < nValues; ++n) {
        const double dValue =
            n % 2 == 0 ? static_cast<double>(random() % 4'000'000'000) / 2 - 1e9 : someNumber(random);
        LONG lSystem = 0;
        if (SUCCEEDED(VarI4FromR8(dValue, &lSystem)))
            ASSERT_EQ(roundToInt32(dValue), lSystem) << std::hexfloat << dValue;
        else
            ASSERT_THROW(static_cast<void>(roundToInt32(dValue)), Failure) << std::hexfloat << dValue;
    }
}

} // namespace

} // namespace halvane::test
