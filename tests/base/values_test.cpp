#include "base/CommaLocale.h"
#include "base/Conversions.h"
#include "base/Failure.h"
#include "base/Value.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>

namespace halvane {

namespace {

struct Thing final : Object {
    [[nodiscard]] std::string_view typeName() const override { return "Thing"; }
};

Bytes bytesOf(std::string_view sText) {
    return std::as_bytes(std::span(sText.data(), sText.size()));
}

std::int32_t numberOfFailure(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

constexpr std::int32_t lWrongType = 13;
constexpr std::int32_t lBeyondRange = 6;

} // namespace

TEST(ValueText, IsNothingForEmptyAndNull) {
    EXPECT_EQ(toText(Value(Empty())), "");
    EXPECT_EQ(toText(Value(Null())), "");
}

TEST(ValueText, WritesYesAndNoAsTrueAndFalse) {
    EXPECT_EQ(toText(Value(true)), "True");
    EXPECT_EQ(toText(Value(false)), "False");
}

TEST(ValueText, WritesEveryDigitOfWholeNumbers) {
    EXPECT_EQ(toText(Value(std::int32_t{-17})), "-17");
    EXPECT_EQ(toText(Value(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
    EXPECT_EQ(toText(Value(std::int64_t{9007199254740993})), "9007199254740993");
}

TEST(ValueText, WritesFloatingPointNumbersInTheirTypesDigits) {
    EXPECT_EQ(toText(Value(1.0 / 3)), "0.333333333333333");
    EXPECT_EQ(toText(Value(1.0F / 3)), "0.3333333");
}

TEST(ValueText, WritesDatesMonthFirst) {
    EXPECT_EQ(toText(Value(Date{2024, 3, 7})), "03/07/2024");
    EXPECT_EQ(toText(Value(Date{33, 12, 31})), "12/31/0033");
    EXPECT_EQ(toText(Value(Date{2024, 3, 7, 13, 5, 9})), "03/07/2024");
}

TEST(ValueText, WritesDatesOutsideTheCalendarDigitByDigit) {
    EXPECT_EQ(toText(Value(Date{12024, 3, 7})), "03/07/12024");
    EXPECT_EQ(toText(Value(Date{2024, 100, 200})), "100/200/2024");
    EXPECT_EQ(toText(Value(Date{0, 3, 0})), "03/00/0000");
    EXPECT_EQ(toText(Value(Date{0, 0, 7})), "00/07/0000");
    EXPECT_EQ(toText(Value(Date{2024, 0, 0})), "00/00/2024");
}

TEST(Dates, AreEqualInEachOfTheirParts) {
    const Date date{2024, 3, 7, 13, 5, 9};
    EXPECT_EQ(date, (Date{2024, 3, 7, 13, 5, 9}));
    EXPECT_NE(date, (Date{2023, 3, 7, 13, 5, 9}));
    EXPECT_NE(date, (Date{2024, 2, 7, 13, 5, 9}));
    EXPECT_NE(date, (Date{2024, 3, 6, 13, 5, 9}));
    EXPECT_NE(date, (Date{2024, 3, 7, 12, 5, 9}));
    EXPECT_NE(date, (Date{2024, 3, 7, 13, 4, 9}));
    EXPECT_NE(date, (Date{2024, 3, 7, 13, 5, 8}));
    EXPECT_NE(date, (Date{2024, 3, 7, 13, 5, 9, 1}));
    EXPECT_NE(date, (Date{2024, 3, 7, 13, 5, 9, 0, 60}));
}

TEST(ValueText, WritesATimeWithoutADateAsATime) {
    EXPECT_EQ(toText(Value(Date{0, 0, 0, 7, 5, 9})), "07:05:09");
}

TEST(ValueText, KeepsTextsAsTheyAre) {
    EXPECT_EQ(toText(Value(std::string("a\xFF <b>"))), "a\xFF <b>");
}

TEST(ValueText, OfALentTextIsThatText) {
    EXPECT_EQ(toText(ValueView(std::string_view("lent"))), "lent");
}

TEST(ValueText, WritesBytesInBase64) {
    EXPECT_EQ(toText(ValueView(bytesOf(""))), "");
    EXPECT_EQ(toText(ValueView(bytesOf("f"))), "Zg==");
    EXPECT_EQ(toText(ValueView(bytesOf("fo"))), "Zm8=");
    EXPECT_EQ(toText(ValueView(bytesOf("foo"))), "Zm9v");
    EXPECT_EQ(toText(ValueView(bytesOf("foobar"))), "Zm9vYmFy");
    EXPECT_EQ(toText(ValueView(bytesOf("\xFB\xEF\xFF"))), "++//");
}

TEST(ValueText, OfAnObjectIsATypeMismatch) {
    const Value vObject = ObjectPtr(std::make_shared<Thing>());
    EXPECT_EQ(numberOfFailure([&] { static_cast<void>(toText(vObject)); }), lWrongType);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(toText(Value(ObjectPtr()))); }), lWrongType);
}

TEST(ValueText, IsAppendedToWhatIsThere) {
    std::string sText = "n=";
    appendText(sText, ValueView(std::int32_t{5}));
    EXPECT_EQ(sText, "n=5");
}

TEST(ValueViews, LendWhatAValueOwns) {
    const Value vText = std::string("a text that is too long to be held inside the string object");
    const ValueView view = toView(vText);
    EXPECT_EQ(std::get<std::string_view>(view).data(), std::get<std::string>(vText).data());
    EXPECT_EQ(toValue(view), vText);
    EXPECT_EQ(toValue(toView(Value(2.5))), Value(2.5));
    EXPECT_EQ(toValue(ValueView(bytesOf("foo"))), Value(std::string("Zm9v")));
}

namespace {

struct Amount final : Object, TextHolder {
    [[nodiscard]] std::string_view typeName() const override { return "Amount"; }
    [[nodiscard]] std::string text() const override { return "12.5"; }
};

} // namespace

TEST(ValueText, OfAnObjectThatStandsForAPlainValueIsThatValues) {
    EXPECT_EQ(toText(Value(std::make_shared<Amount>())), "12.5");
}

TEST(ObjectAs, YieldsTheObjectInARoleThatItHas) {
    const auto pThing = std::make_shared<Thing>();
    const Value vObject = ObjectPtr(pThing);
    EXPECT_EQ(objectAs<Thing>(vObject), pThing);
    EXPECT_EQ(objectAs<Thing>(Value(17)), nullptr);
}

TEST(NumberOf, ReadsEveryKindOfValueThatHasANumber) {
    EXPECT_EQ(numberOf(Empty()), 0);
    EXPECT_EQ(numberOf(true), -1);
    EXPECT_EQ(numberOf(std::int32_t{5}), 5);
    EXPECT_EQ(numberOf(std::int64_t{5}), 5);
    EXPECT_EQ(numberOf(0.5F), 0.5);
    EXPECT_EQ(numberOf(0.25), 0.25);
    EXPECT_EQ(numberOf(std::string_view(" 1.5 ")), 1.5);
    EXPECT_EQ(numberOf(Date{1900, 1, 1}), 2);
    EXPECT_EQ(numberOf(Date{2000, 1, 1, 12, 0, 0}), 36526.5);
    EXPECT_EQ(numberOf(Date{0, 0, 0, 6, 0, 0}), 0.25);
}

TEST(NumberOf, RefusesWhatHasNone) {
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(numberOf(Null())); }), lWrongType);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(numberOf(bytesOf("5"))); }), lWrongType);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(numberOf(std::string_view("x"))); }), lWrongType);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(numberOf(ObjectPtr())); }), lWrongType);
}

TEST(WholeNumberOf, RoundsHalvesToEvenAndOverflowsBeyond32Bits) {
    EXPECT_EQ(wholeNumberOf(2.5), 2);
    EXPECT_EQ(wholeNumberOf(std::string_view("3.5")), 4);
    EXPECT_EQ(wholeNumberOf(std::int64_t{-2147483648}), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(wholeNumberOf(std::int64_t{2147483648})); }),
              lBeyondRange);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(wholeNumberOf(std::int64_t{-2147483649})); }),
              lBeyondRange);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(wholeNumberOf(-2147483649.0)); }), lBeyondRange);
}

TEST(IsLess, ComparesNumbersNumericallyAndTextsByCharacterCode) {
    using namespace std::string_view_literals;
    EXPECT_TRUE(isLess(std::int32_t{9}, std::int32_t{10}));
    EXPECT_TRUE(isLess(std::int32_t{1}, 1.5));
    EXPECT_TRUE(isLess(std::int64_t{9007199254740992}, std::int64_t{9007199254740993}));
    EXPECT_TRUE(isLess("10"sv, "9"sv));
    EXPECT_TRUE(isLess("B"sv, "a"sv));
    EXPECT_FALSE(isLess("a"sv, "a"sv));
    EXPECT_TRUE(isLess("z"sv, "é"sv));
    EXPECT_TRUE(isLess(Date{2024, 1, 1}, Date{2024, 1, 2}));
    EXPECT_TRUE(isLess(true, false));
}

TEST(IsLess, PutsNumbersBeforeTextsAndEmptyBesideTheEmptyText) {
    using namespace std::string_view_literals;
    EXPECT_TRUE(isLess(std::int32_t{10}, "1"sv));
    EXPECT_FALSE(isLess("1"sv, std::int32_t{10}));
    EXPECT_FALSE(isLess(Empty(), ""sv));
    EXPECT_TRUE(isLess(Empty(), "a"sv));
    EXPECT_FALSE(isLess("a"sv, Empty()));
    EXPECT_TRUE(isLess(Empty(), std::int32_t{1}));
}

TEST(IsLess, IsFalseForNullAndFailsForObjects) {
    using namespace std::string_view_literals;
    EXPECT_FALSE(isLess(Null(), std::int32_t{1}));
    EXPECT_FALSE(isLess(std::int32_t{1}, Null()));
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(isLess(ObjectPtr(), "a"sv)); }), lWrongType);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(isLess("a"sv, ObjectPtr())); }), lWrongType);
    EXPECT_EQ(numberOfFailure([] { static_cast<void>(isLess(std::int32_t{1}, ObjectPtr())); }), lWrongType);
}

} // namespace halvane
