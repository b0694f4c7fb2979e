#include "expression/sqlite/SqliteEvaluator.h"

#include "base/Failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace halvane::test {
namespace {

using expression::Expression;
using expression::sqlite::SqliteEvaluator;
using ::testing::HasSubstr;

constexpr std::int64_t nMoment = 1'700'000'000; // 2023-11-14T22:13:20Z

Value valueOf(const std::string& sText, const std::vector<ValueView>& arguments = {}) {
    SqliteEvaluator evaluator(nMoment);
    return toValue(evaluator.prepare(Expression(sText))->of(arguments));
}

std::string textOf(const std::string& sText, const std::vector<ValueView>& arguments = {}) {
    return toText(valueOf(sText, arguments));
}

std::string failureOf(const std::string& sText, const std::vector<ValueView>& arguments = {}) {
    try {
        return "computed: " + textOf(sText, arguments);
    } catch (const Failure& failure) {
        return failure.description();
    }
}

TEST(Evaluator, ComputesWithTheValuesOfReferences) {
    EXPECT_EQ(valueOf("a + b", {std::int32_t{2}, std::int64_t{3}}), Value(std::int64_t{5}));
    EXPECT_EQ(valueOf("a / 2", {5.0}), Value(2.5));
    EXPECT_EQ(valueOf("a / 2", {5.0F}), Value(2.5));
    EXPECT_EQ(valueOf("a || '!'", {std::string_view("x")}), Value(std::string("x!")));
    EXPECT_EQ(valueOf("a", {Null()}), Value(Null()));
    EXPECT_EQ(valueOf("coalesce(a, '-')", {Null()}), Value(std::string("-")));
    EXPECT_EQ(valueOf("not a", {true}), Value(std::int64_t{0}));
    EXPECT_EQ(textOf("printf('%03d', nr)", {std::int32_t{7}}), "007");
}

TEST(Evaluator, TellsOfFormattedTextsThatAreTooLong) {
    // In pieces: near the limit each single letter would be a new text.
    const std::string sLong(600'000, 'x');
    for (const auto* pText : {"printf('%s%s', a, a)", "format('%s%s', a, a)"})
        EXPECT_EQ(failureOf(pText, {std::string_view(sLong)}),
                  "a text of an expression is longer than a million bytes");
    EXPECT_EQ(valueOf("printf(NULL, 1)"), Value(Null()));
    EXPECT_EQ(valueOf("printf('')"), Value(std::string()));
}

TEST(Evaluator, KnowsTheZonesAndFractionsOfDates) {
    EXPECT_EQ(textOf("a", {Date{2024, 5, 1}}), "2024-05-01");
    EXPECT_EQ(textOf("a", {Date{2024, 5, 1, 12, 30, 0, 250, 330}}), "2024-05-01T12:30:00.250+05:30");
    EXPECT_EQ(textOf("a", {Date{2024, 5, 1, 0, 0, 0, 0, 0}}), "2024-05-01T00:00:00Z");
    EXPECT_EQ(textOf("datetime(a)", {Date{2024, 5, 1, 1, 0, 0, 0, 120}}), "2024-04-30 23:00:00");
    EXPECT_EQ(textOf("datetime(a)", {Date{2024, 5, 1, 1, 0, 0, 0, -90}}), "2024-05-01 02:30:00");
}

TEST(Evaluator, TakesNothingInAValueForLanguage) {
    EXPECT_EQ(textOf("a", {std::string_view("x' OR '1'='1")}), "x' OR '1'='1");
    EXPECT_EQ(textOf("length(a)", {std::string_view("a\0b", 3)}), "1") << "as SQLite counts";
}

TEST(Evaluator, ComputesAgainAndAgain) {
    SqliteEvaluator evaluator(nMoment);
    const auto pEvaluation = evaluator.prepare(Expression("upper(name)"));
    for (const auto* sName : {"a", "b"}) {
        const std::vector<ValueView> arguments{std::string_view(sName)};
        EXPECT_EQ(toText(pEvaluation->of(arguments)), sName == std::string("a") ? "A" : "B");
    }
}

TEST(Evaluator, WritesDatesAsIsoTexts) {
    EXPECT_EQ(textOf("a || ''", {Date{2024, 5, 1}}), "2024-05-01");
    EXPECT_EQ(textOf("a || ''", {Date{2024, 5, 1, 7, 8, 9}}), "2024-05-01T07:08:09");
    EXPECT_EQ(textOf("a || ''", {Date{0, 0, 0, 7, 8, 9}}), "07:08:09");
    EXPECT_EQ(textOf("date(a, '+1 day')", {Date{2024, 2, 28, 7}}), "2024-02-29");
}

TEST(Evaluator, HasOneMomentForNow) {
    EXPECT_EQ(textOf("datetime('now')"), "2023-11-14 22:13:20");
    EXPECT_EQ(textOf("strftime('%s', 'now')"), "1700000000");
    EXPECT_EQ(textOf("date()"), "2023-11-14");
}

TEST(Evaluator, KnowsTheLettersOfUnicode) {
    EXPECT_EQ(textOf("upper('straße éa')"), "STRAßE ÉA");
    EXPECT_EQ(textOf("lower('ÉA')"), "éa");
    EXPECT_EQ(textOf("'ÉA' like 'é_'"), "1");
    EXPECT_EQ(textOf("'Österreich' like '%ÖSTER%'"), "1");
    EXPECT_EQ(textOf("'a%b' like 'a\\%b' escape '\\'"), "1");
    EXPECT_EQ(textOf("'axb' like 'a\\%b' escape '\\'"), "0");
    EXPECT_EQ(textOf("'abcabd' like '%abd'"), "1");
    EXPECT_EQ(textOf("'abc' like '%b'"), "0");
    EXPECT_EQ(textOf("'' like '%'"), "1");
    EXPECT_EQ(valueOf("null like '%'"), Value(Null()));
}

TEST(Evaluator, EndsWhatWouldTakeLong) {
    std::string sLong = "'" + std::string(1000, 'a') + "'";
    for (int i = 0; i < 4; ++i)
        sLong = "replace(" + sLong + ", 'a', '" + std::string(100, 'a') + "')";
    EXPECT_EQ(failureOf(sLong), "a text of an expression is longer than a million bytes");
    const std::string sArgument(2'000'000, 'a');
    EXPECT_EQ(failureOf("length(a)", {std::string_view(sArgument)}),
              "a text of an expression is longer than a million bytes");
    EXPECT_EQ(failureOf("a like b", {std::string_view("a"), std::string_view(sArgument).substr(0, 2000)}),
              "a pattern of LIKE is longer than 1,000 bytes");
}

TEST(Evaluator, TellsWhatItCannotCompute) {
    EXPECT_EQ(failureOf("'a' like 'b' escape 'cc'"), "ESCAPE takes one character");
    EXPECT_EQ(failureOf("abs(-9223372036854775807 - 1)"), "integer overflow");
}

TEST(Evaluator, ComputesLongRowsOfOperators) {
    std::string sSum = "1";
    for (int i = 0; i < 900; ++i)
        sSum += "+1";
    EXPECT_EQ(textOf(sSum), "901");
}

TEST(Evaluator, ComputesWhatIsAsDeepAsAnExpressionMayBe) {
    for (const auto& [sBefore, sAfter] : {std::pair{"1 - (", ")"},
                                          {"replace('a', 'b', ", ")"},
                                          {"case 1 when 2 then 3 else ", " end"},
                                          {"case 1 when case 2 when ", " then 3 end then 4 end"},
                                          {"1 between 2 and (3 between 4 and ", ")"},
                                          {"1 in (2, 3 in (4, ", "))"},
                                          {"'a' like 'b' escape coalesce('c', ", ")"},
                                          {"-(not ", ")"}}) {
        std::string sText = "1";
        std::string sDeeper = sText;
        for (; failureOf(sDeeper).find("too deep") == std::string::npos; sDeeper = sBefore + sText + sAfter)
            sText = sDeeper;
        EXPECT_GE(sText.size(), 50U);
        for (const auto* sBug : {"overflow", "too large"})
            EXPECT_THAT(failureOf(sText), ::testing::Not(HasSubstr(sBug))) << sText;
    }
}

TEST(Evaluator, ServesSeveralAtATime) {
    SqliteEvaluator one(nMoment);
    const SqliteEvaluator other(nMoment + 1);
    EXPECT_EQ(toText(one.prepare(Expression("strftime('%s', 'now')"))->of({})), "1700000000");
}

} // namespace
} // namespace halvane::test
