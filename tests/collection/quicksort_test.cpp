#include "base/Failure.h"
#include "collection/Quicksort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace halvane {

namespace {

// The elements are of other types than those that collections sort: each has its own code.
template<class Element>
std::vector<Element> sorted(std::vector<Element> aElements, std::int32_t lCutOver = 0) {
    Quicksort<Element>(aElements, lCutOver).sort(0, static_cast<std::int32_t>(aElements.size()) - 1);
    return aElements;
}

// Of sorting a part of three numbers, the last of them the smallest.
std::optional<FailureNumber> failureOfSorting(std::int32_t lMin, std::int32_t lMax, std::int32_t lCutOver) {
    std::vector<std::int64_t> aNumbers{2, 3, 1};
    try {
        Quicksort<std::int64_t>(aNumbers, lCutOver).sort(lMin, lMax);
    } catch (const Failure& failure) {
        return static_cast<FailureNumber>(failure.number());
    }
    return std::nullopt;
}

} // namespace

TEST(Quicksort, AgreesWithTheStandardSortOnRandomNumbers) {
    std::mt19937 random(17);
    for (std::size_t nSize : {0U, 1U, 2U, 3U, 10U, 100U, 5000U}) {
        std::vector<std::int64_t> aNumbers(nSize);
        for (auto& lNumber : aNumbers)
            lNumber = static_cast<std::int64_t>(random() % 1000) - 500;
        std::vector<std::int64_t> aExpected = aNumbers;
        std::sort(aExpected.begin(), aExpected.end());
        EXPECT_EQ(sorted(aNumbers), aExpected);
    }
}

TEST(Quicksort, AgreesWithTheStandardSortOnRandomTexts) {
    std::mt19937 random(17);
    std::vector<std::u16string> aTexts(1000);
    for (auto& sText : aTexts)
        sText = u"a text of more characters than fit inside " + std::u16string(random() % 300, u'x');
    std::vector<std::u16string> aExpected = aTexts;
    std::sort(aExpected.begin(), aExpected.end());
    EXPECT_EQ(sorted(aTexts), aExpected);
}

TEST(Quicksort, SortsWhatIsSortedAlready) {
    EXPECT_THAT(sorted<float>({1, 2, 3}), testing::ElementsAre(1, 2, 3));
    EXPECT_THAT(sorted<float>({3, 2, 1}), testing::ElementsAre(1, 2, 3));
}

TEST(Quicksort, SortsManyEqualElements) {
    const std::vector<std::int64_t> aEqual(2000, 7);
    EXPECT_EQ(sorted(aEqual), aEqual);
}

TEST(Quicksort, EndsOnElementsThatCannotBeCompared) {
    const float fNone = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(sorted<float>({3, fNone, 1, fNone, 2}).size(), 5U);
}

TEST(Quicksort, HandsShortRangesToTheSimpleSort) {
    EXPECT_THAT(sorted<std::int64_t>({5, 3, 9, 1}, 100), testing::ElementsAre(1, 3, 5, 9));
    std::mt19937 random(3);
    std::vector<std::int64_t> aNumbers(500);
    for (auto& lNumber : aNumbers)
        lNumber = static_cast<std::int64_t>(random() % 50);
    std::vector<std::int64_t> aExpected = aNumbers;
    std::sort(aExpected.begin(), aExpected.end());
    EXPECT_EQ(sorted(aNumbers, 10), aExpected);
}

TEST(Quicksort, RefusesARangeOutsideTheArray) {
    EXPECT_EQ(failureOfSorting(0, 3, 0), FailureNumber::SubscriptOutOfRange);
    EXPECT_EQ(failureOfSorting(0, 3, 100), FailureNumber::SubscriptOutOfRange);
    EXPECT_EQ(failureOfSorting(-1, 1, 100), FailureNumber::SubscriptOutOfRange);
}

TEST(Quicksort, RefusesARangeLongerThan32Bits) {
    constexpr std::int32_t lLeast = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t lMost = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(failureOfSorting(lLeast, lMost, 0), FailureNumber::Overflow);
    EXPECT_EQ(failureOfSorting(0, lMost, 0), FailureNumber::Overflow);
}

TEST(Quicksort, DrawsItsPivotsFromTheProcessesGeneratorWithoutSeedingIt) {
    std::srand(12345);
    const std::vector<int> aExpected{std::rand(), std::rand(), std::rand()};
    std::srand(12345);
    const double dFirst = nextRandom();
    EXPECT_EQ(dFirst, aExpected[0] / (static_cast<double>(RAND_MAX) + 1.0));
    // One draw for the single partition of one element.
    EXPECT_THAT(sorted<float>({1}), testing::ElementsAre(1));
    EXPECT_EQ(std::rand(), aExpected[2]);
}

} // namespace halvane
