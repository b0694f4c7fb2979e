#include "base/Failure.h"
#include "base/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace halvane {

namespace {

using testing::ElementsAre;

std::vector<std::string> piecesOf(std::string_view sText, std::string_view sDelimiter) {
    std::vector<std::string> aPieces{"left over", "from", "before"};
    const std::int16_t iCount = Split(sText, sDelimiter, aPieces);
    EXPECT_EQ(static_cast<std::size_t>(iCount), aPieces.size());
    return aPieces;
}

std::int32_t overflowNumber() {
    return static_cast<std::int32_t>(FailureNumber::Overflow);
}

} // namespace

TEST(Split, YieldsThePiecesInOrderAndTheirNumber) {
    EXPECT_THAT(piecesOf("a:b:c", ":"), ElementsAre("a", "b", "c"));
}

TEST(Split, YieldsTheWholeTextWhenTheDelimiterDoesNotOccur) {
    EXPECT_THAT(piecesOf("abc", ":"), ElementsAre("abc"));
}

TEST(Split, YieldsOneEmptyPieceForAnEmptyText) {
    EXPECT_THAT(piecesOf("", ":"), ElementsAre(""));
}

TEST(Split, YieldsAnEmptyPieceForEachLeadingDelimiter) {
    EXPECT_THAT(piecesOf("//a", "/"), ElementsAre("", "", "a"));
}

TEST(Split, YieldsAnEmptyPieceForATrailingDelimiter) {
    EXPECT_THAT(piecesOf("a/", "/"), ElementsAre("a", ""));
}

TEST(Split, YieldsAnEmptyPieceBetweenAdjacentDelimiters) {
    EXPECT_THAT(piecesOf("a//b", "/"), ElementsAre("a", "", "b"));
}

TEST(Split, YieldsTwoEmptyPiecesForADelimiterAlone) {
    EXPECT_THAT(piecesOf("/", "/"), ElementsAre("", ""));
}

TEST(Split, TakesADelimiterOfSeveralCharactersWhole) {
    EXPECT_THAT(piecesOf("--a--b-c----", "--"), ElementsAre("", "a", "b-c", "", ""));
    EXPECT_THAT(piecesOf("aaa", "aa"), ElementsAre("", "a"));
}

TEST(Split, MatchesTheDelimiterCaseSensitively) {
    EXPECT_THAT(piecesOf("1x2X3", "X"), ElementsAre("1x2", "3"));
}

TEST(Split, SplitsAtLineFeeds) {
    EXPECT_THAT(piecesOf("one\ntwo\n", "\n"), ElementsAre("one", "two", ""));
}

TEST(Split, YieldsAtMost32767Pieces) {
    EXPECT_EQ(piecesOf(std::string(32766, ','), ",").size(), 32767U);
}

TEST(Split, OverflowsBeyond32767PiecesAndLeavesTheArrayAlone) {
    std::vector<std::string> aPieces{"kept"};
    try {
        Split(std::string(32767, ','), ",", aPieces);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), overflowNumber());
    }
    EXPECT_THAT(aPieces, ElementsAre("kept"));
}

TEST(Split, OverflowsForAnEmptyDelimiter) {
    std::vector<std::string> aPieces;
    try {
        Split("abc", "", aPieces);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), overflowNumber());
    }
}

} // namespace halvane
