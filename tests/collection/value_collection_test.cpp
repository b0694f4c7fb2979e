#include "CollectionSupport.h"

#include "base/Failure.h"
#include "collection/ValueCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace halvane::test {

TEST(ValueCollection, RaisesDuplicateKeyForAKeyThatIsFiled) {
    ValueCollection values;
    values.add(1, "a");
    EXPECT_EQ(failureNumberOf([&] { values.add(2, "A"); }), lDuplicateKey);
    EXPECT_EQ(values.count(), 1);
}

TEST(ValueCollection, RaisesAFailureForWhatIsNotThere) {
    ValueCollection values;
    values.add(1, "a");
    EXPECT_EQ(failureNumberOf([&] { static_cast<void>(values.item(2)); }), lSubscriptOutOfRange);
    EXPECT_EQ(failureNumberOf([&] { static_cast<void>(values.item("b")); }), lInvalidProcedureCall);
    EXPECT_EQ(failureNumberOf([&] { static_cast<void>(values.entry(Value(Null()))); }), lTypeMismatch);
    EXPECT_EQ(failureNumberOf([&] { values.remove(0); }), lSubscriptOutOfRange);
    EXPECT_EQ(failureNumberOf([&] { values.remove("b"); }), lInvalidProcedureCall);
}

TEST(ValueCollection, RemovesByKeyInAnyCase) {
    ValueCollection values;
    values.add(1, "a");
    values.add(2, "b");
    values.remove("A");
    EXPECT_EQ(values.item(1), Value(2));
    EXPECT_THAT(values.keys(), testing::ElementsAre("b"));
}

TEST(ValueCollection, TellsKeysApartWhateverTheyBeginWith) {
    ValueCollection values;
    values.add(1, "{a");
    values.add(2, "\u00e4b");
    values.add(3, "[a");
    values.add(4, "c");
    EXPECT_EQ(values.positionOf("{A"), 1);
    EXPECT_EQ(values.positionOf("\u00c4B"), 2);
    EXPECT_EQ(values.positionOf("[A"), 3);
    EXPECT_EQ(values.positionOf("C"), 4);
    EXPECT_EQ(values.positionOf("\u00f6b"), 0);
    EXPECT_EQ(values.positionOf("|a"), 0);
}

TEST(ValueCollection, FindsEveryKeyInALargeCollection) {
    ValueCollection values;
    constexpr std::int32_t lCount = 5000;
    for (std::int32_t i = 1; i <= lCount; ++i)
        values.add(i, "Key " + std::to_string(i));
    for (std::int32_t i = 1; i <= lCount; ++i)
        ASSERT_EQ(values.positionOf("KEY " + std::to_string(i)), i);
    EXPECT_EQ(values.find("Key 0"), nullptr);
    EXPECT_FALSE(values.tryAdd(0, "kEY 4711"));
}

TEST(ValueCollection, KeepsValuesKeysAndLookupsInStepThroughRandomChanges) {
    std::mt19937 random(99);
    ValueCollection values;
    std::vector<std::pair<std::string, std::int32_t>> aExpected;
    for (std::int32_t i = 0; i < 4000; ++i) {
        std::string sKey;
        if (random() % 5 != 0)
            sKey.append("k").append(std::to_string(random() % 120));
        const auto filed = std::find_if(aExpected.begin(), aExpected.end(), [&](const auto& entry) {
            return !sKey.empty() && entry.first == sKey;
        });
        if (random() % 3 == 0 && !aExpected.empty()) {
            const auto nOffset = static_cast<std::ptrdiff_t>(random() % aExpected.size());
            values.remove(static_cast<std::int32_t>(nOffset + 1));
            aExpected.erase(aExpected.begin() + nOffset);
        } else {
            ASSERT_EQ(values.tryAdd(i, sKey), filed == aExpected.end());
            if (filed == aExpected.end())
                aExpected.emplace_back(sKey, i);
        }
        ASSERT_EQ(values.count(), static_cast<std::int32_t>(aExpected.size()));
    }
    ASSERT_GT(aExpected.size(), 100U);
    for (std::size_t i = 0; i < aExpected.size(); ++i) {
        EXPECT_EQ(values.keys()[i], aExpected[i].first);
        EXPECT_EQ(values.item(static_cast<std::int32_t>(i + 1)), Value(aExpected[i].second));
        const auto lPosition = aExpected[i].first.empty() ? 0 : static_cast<std::int32_t>(i + 1);
        EXPECT_EQ(values.positionOf(aExpected[i].first), lPosition);
    }
}

TEST(ValueCollection, FilesAgainAfterItWasCleared) {
    ValueCollection values;
    for (std::int32_t i = 0; i < 100; ++i)
        values.add(i, std::to_string(i));
    values.clear();
    EXPECT_EQ(values.positionOf("50"), 0);
    values.add(7, "50");
    EXPECT_EQ(values.positionOf("50"), 1);
}

TEST(ValueEnumerator, SkipsAndStartsAgain) {
    ValueCollection values;
    for (std::int32_t i = 1; i <= 3; ++i)
        values.add(i);
    ValueEnumerator walk(values);
    EXPECT_TRUE(walk.skip(2));
    EXPECT_EQ(*walk.next(), Value(3));
    EXPECT_EQ(walk.next(), nullptr);
    walk.reset();
    EXPECT_EQ(*walk.next(), Value(1));
    EXPECT_FALSE(walk.skip(3));
    EXPECT_EQ(walk.next(), nullptr);
}

TEST(ValueEnumerator, SeesWhatIsAddedDuringTheWalk) {
    ValueCollection values;
    values.add(1);
    ValueEnumerator walk(values);
    EXPECT_EQ(*walk.next(), Value(1));
    values.add(2);
    EXPECT_EQ(*walk.next(), Value(2));
}

} // namespace halvane::test
