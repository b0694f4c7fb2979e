#include "CollectionSupport.h"

#include "base/CommaLocale.h"
#include "base/Failure.h"
#include "collection/dCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace halvane::test {

namespace {

using testing::ElementsAre;

void fill(ValueCollection& values, std::initializer_list<Value> aValues) {
    for (const Value& vValue : aValues)
        values.add(vValue);
}

std::vector<std::int32_t> sortedPositions(const std::vector<Value>& aValues) {
    std::vector<std::int32_t> aPositions(aValues.size());
    dCollection().SortByValue(aValues, aPositions, static_cast<std::int32_t>(aValues.size()));
    return aPositions;
}

// 400 whole numbers in no order, some of them several times.
void fillWithMany(ValueCollection& values) {
    std::mt19937 random(17); // NOLINT(cert-msc51-cpp): the same numbers each time
    for (int n = 0; n < 400; ++n)
        values.add(static_cast<std::int32_t>(random() % 300) - 150);
}

} // namespace

TEST(IsNumericCollection, IsTrueWhenEveryMembersTextIsNumeric) {
    ValueCollection values;
    fill(values, {text(" 10 "), 9, 2.5, text("1e3")});
    EXPECT_TRUE(dCollection().IsNumericCollection(values));
}

TEST(IsNumericCollection, IsTrueWithoutMembers) {
    EXPECT_TRUE(dCollection().IsNumericCollection(ValueCollection()));
}

TEST(IsNumericCollection, IsFalseForAMemberThatIsNoNumber) {
    for (const Value& vMember :
         {text("x"), text(""), Value(true), Value(Empty()), Value(ObjectPtr(dCollection::create()))}) {
        ValueCollection values;
        fill(values, {text("10"), vMember, text("9")});
        EXPECT_FALSE(dCollection().IsNumericCollection(values));
    }
}

TEST(ReturnSortedNumeric, SortsNumerically) {
    ValueCollection values;
    fill(values, {text("10"), text("9"), text("100")});
    std::vector<std::int32_t> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aSorted, &values), 3);
    EXPECT_THAT(aSorted, ElementsAre(9, 10, 100));
}

TEST(ReturnSortedCollections, AreSortedHoweverManyMembersTheyHave) {
    ValueCollection values;
    fillWithMany(values);
    std::vector<std::int32_t> aNumbers;
    std::vector<double> aDoubles;
    std::vector<std::string> aTexts;
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aNumbers, &values), 400);
    EXPECT_EQ(dCollection().ReturnSortedDouble(aDoubles, &values), 400);
    EXPECT_EQ(dCollection().ReturnSortedString(aTexts, &values), 400);
    EXPECT_TRUE(std::is_sorted(aNumbers.begin(), aNumbers.end()));
    EXPECT_TRUE(std::equal(aDoubles.begin(), aDoubles.end(), aNumbers.begin(), aNumbers.end()));
    EXPECT_TRUE(std::is_sorted(aTexts.begin(), aTexts.end()));
    std::vector<std::string> aExpected;
    for (const std::int32_t lNumber : aNumbers)
        aExpected.push_back(std::to_string(lNumber));
    EXPECT_THAT(aTexts, testing::UnorderedElementsAreArray(aExpected));
}

TEST(ReturnSortedNumeric, RoundsEachMemberToAWholeNumber) {
    ValueCollection values;
    fill(values, {text("2.5"), 3.5, text("-1")});
    std::vector<std::int32_t> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aSorted, &values), 3);
    EXPECT_THAT(aSorted, ElementsAre(-1, 2, 4));
}

TEST(ReturnSortedNumeric, RefusesACollectionWithAMemberThatIsNoNumber) {
    ValueCollection values;
    fill(values, {text("10"), text("9"), text("x")});
    std::vector<std::int32_t> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aSorted, &values), -1);
}

TEST(ReturnSortedNumeric, RefusesNoCollectionAndAMemberBeyondItsType) {
    std::vector<std::int32_t> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aSorted, nullptr), -1);
    ValueCollection values;
    fill(values, {text("10"), text("3000000000")});
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aSorted, &values), -1);
}

TEST(ReturnSortedNumeric, DimensionsTheArrayAsTheCollection) {
    ValueCollection values;
    fill(values, {2, 1});
    std::vector<std::int32_t> aSorted(7, 99);
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aSorted, &values), 2);
    EXPECT_THAT(aSorted, ElementsAre(1, 2));
}

TEST(ReturnSortedNumeric, YieldsNothingForACollectionWithoutMembers) {
    std::vector<std::int32_t> aSorted(7, 99);
    const ValueCollection values;
    EXPECT_EQ(dCollection().ReturnSortedNumeric(aSorted, &values), 0);
    EXPECT_TRUE(aSorted.empty());
}

TEST(ReturnSortedNumeric, LeavesTheCollectionAsItIs) {
    dCollection dValues;
    dValues.Add(text("10"), "a");
    dValues.Add(text("9"), "b");
    std::vector<std::int32_t> aSorted;
    EXPECT_EQ(dValues.ReturnSortedNumeric(aSorted, &dValues.ReturnValues()), 2);
    EXPECT_EQ(dValues.Item2(1), text("10"));
}

TEST(ReturnSortedString, SortsByCharacterCode) {
    ValueCollection values;
    fill(values, {text("b"), text("B"), text("a")});
    std::vector<std::string> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedString(aSorted, &values), 3);
    EXPECT_THAT(aSorted, ElementsAre("B", "a", "b"));
}

TEST(ReturnSortedString, TakesMembersOfAnyTypeByTheirText) {
    ValueCollection values;
    fill(values, {text("x"), 10, 9, true});
    std::vector<std::string> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedString(aSorted, &values), 4);
    EXPECT_THAT(aSorted, ElementsAre("10", "9", "True", "x"));
}

TEST(ReturnSortedString, RefusesNoCollectionAndAMemberWithoutAText) {
    std::vector<std::string> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedString(aSorted, nullptr), -1);
    ValueCollection values;
    fill(values, {text("a"), ObjectPtr(dCollection::create())});
    EXPECT_EQ(dCollection().ReturnSortedString(aSorted, &values), -1);
}

TEST(ReturnSortedDouble, SortsNumericallyWithFractions) {
    ValueCollection values;
    fill(values, {text("10.5"), 9.25, text("-1e2"), 10});
    std::vector<double> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedDouble(aSorted, &values), 4);
    EXPECT_THAT(aSorted, ElementsAre(-100, 9.25, 10, 10.5));
}

TEST(ReturnSortedDouble, RefusesNoCollectionAndAMemberThatIsNoNumber) {
    std::vector<double> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedDouble(aSorted, nullptr), -1);
    ValueCollection values;
    fill(values, {text("1"), text("x")});
    EXPECT_EQ(dCollection().ReturnSortedDouble(aSorted, &values), -1);
}

TEST(ReturnSortedDouble, ReadsTheTextsOfTheNumericLocale) {
    const test::CommaLocale locale;
    if (!locale.isActive())
        GTEST_SKIP() << "no locale with a decimal comma";
    ValueCollection values;
    fill(values, {text("2,5"), 1.5});
    std::vector<double> aSorted;
    EXPECT_EQ(dCollection().ReturnSortedDouble(aSorted, &values), 2);
    EXPECT_THAT(aSorted, ElementsAre(1.5, 2.5));
}

TEST(QuicksortDouble, SortsTheGivenRangeOnly) {
    std::vector<double> aList{9, 5, 3, 4, 1};
    dCollection().QuicksortDouble(aList, 1, 3);
    EXPECT_THAT(aList, ElementsAre(9, 3, 4, 5, 1));
}

TEST(QuicksortDouble, LeavesAnEmptyRangeAlone) {
    std::vector<double> aList{2, 1};
    dCollection().QuicksortDouble(aList, 1, 0);
    EXPECT_THAT(aList, ElementsAre(2, 1));
}

TEST(QuicksortDouble, RaisesABoundsErrorForARangeBeyondTheList) {
    std::vector<double> aList{2, 1};
    EXPECT_EQ(failureNumberOf([&] { dCollection().QuicksortDouble(aList, 0, 2); }), lSubscriptOutOfRange);
    EXPECT_EQ(failureNumberOf([&] { dCollection().QuicksortDouble(aList, -1, 1); }), lSubscriptOutOfRange);
}

TEST(QuicksortDouble, RaisesAnOverflowForARangeBeyond32Bits) {
    std::vector<double> aList{2, 1};
    constexpr std::int32_t lMost = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(failureNumberOf([&] { dCollection().QuicksortDouble(aList, 0, lMost); }), lOverflow);
    EXPECT_EQ(failureNumberOf([&] { dCollection().QuicksortDouble(aList, -5, lMost); }), lOverflow);
}

TEST(SortByValue, ListsPositionsFromTheLargestValueAndLaterOnesFirstAmongEquals) {
    EXPECT_THAT(sortedPositions({3, 1, 3}), ElementsAre(2, 0, 1));
    EXPECT_THAT(sortedPositions({1, 2, 3, 4}), ElementsAre(3, 2, 1, 0));
    EXPECT_THAT(sortedPositions({4, 3, 2, 1}), ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(sortedPositions({7, 7, 7}), ElementsAre(2, 1, 0));
}

TEST(SortByValue, ComparesNumbersNumericallyAndTextsByCharacterCode) {
    EXPECT_THAT(sortedPositions({9, 10.5, std::int64_t{10}}), ElementsAre(1, 2, 0));
    EXPECT_THAT(sortedPositions({text("9"), text("10"), text("B"), text("a")}), ElementsAre(3, 2, 0, 1));
}

TEST(SortByValue, SortsTheFirstValuesOnly) {
    const std::vector<Value> aValues{1, 2, 3};
    std::vector<std::int32_t> aPositions{-7, -7, -7};
    dCollection().SortByValue(aValues, aPositions, 2);
    EXPECT_THAT(aPositions, ElementsAre(1, 0, -7));
}

TEST(SortByValue, WritesTheFirstPositionEvenForNoValues) {
    std::vector<std::int32_t> aPositions{-7};
    dCollection().SortByValue({}, aPositions, 0);
    EXPECT_THAT(aPositions, ElementsAre(0));
}

TEST(SortByValue, NeverLooksAtASingleMember) {
    std::vector<std::int32_t> aPositions{-7};
    dCollection().SortByValue({}, aPositions, 1);
    EXPECT_THAT(aPositions, ElementsAre(0));
    const std::vector<Value> aObject{ObjectPtr(dCollection::create())};
    aPositions = {-7};
    dCollection().SortByValue(aObject, aPositions, 1);
    EXPECT_THAT(aPositions, ElementsAre(0));
}

TEST(SortByValue, RaisesABoundsErrorForAnArrayThatIsTooSmall) {
    const std::vector<Value> aValues{1, 2, 3};
    std::vector<std::int32_t> aTooSmall(2);
    std::vector<std::int32_t> aEnough(4);
    EXPECT_EQ(failureNumberOf([&] { dCollection().SortByValue(aValues, aTooSmall, 3); }),
              lSubscriptOutOfRange);
    EXPECT_EQ(failureNumberOf([&] { dCollection().SortByValue(aValues, aEnough, 4); }), lSubscriptOutOfRange);
    EXPECT_EQ(failureNumberOf([&] { dCollection().SortByValue(aValues, {}, 0); }), lSubscriptOutOfRange);
}

} // namespace halvane::test
