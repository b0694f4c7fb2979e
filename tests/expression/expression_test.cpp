#include "expression/Expression.h"

#include "base/Failure.h"
#include "expression/SqlText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace halvane::test {
namespace {

using expression::Expression;
using expression::Reference;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// The expression as it is written anew.
std::string anew(const std::string& sText) {
    return sqlText(Expression(sText).root());
}

std::string refusal(const std::string& sText) {
    try {
        return "read as " + anew(sText);
    } catch (const Failure& failure) {
        return failure.description();
    }
}

TEST(Expressions, AreWrittenAnewByThePrecedenceOfTheirOperators) {
    EXPECT_EQ(anew("1 + 2 * 3 || 4"), "(1 + (2 * (3 || 4)))");
    EXPECT_EQ(anew("(1 + 2) * 3"), "((1 + 2) * 3)");
    EXPECT_EQ(anew("1 - (2 - 3) + 4"), "((1 - (2 - 3)) + 4)");
    EXPECT_EQ(anew("1 - 2 - 3"), "(1 - 2 - 3)");
    EXPECT_EQ(anew("not 1 = 2 and 3 < 4 or 5 == 6"), "(((NOT (1 = 2)) AND (3 < 4)) OR (5 = 6))");
    EXPECT_EQ(anew("- -1"), "(- (- 1))");
    EXPECT_EQ(anew("1 <> 2"), anew("1 != 2"));
    EXPECT_EQ(anew("1 << 2 >= 3"), "((1 << 2) >= 3)");
}

TEST(Expressions, KnowTheTestsOfSql) {
    EXPECT_EQ(anew("1 between 2 and 3 and 4"), "((1 BETWEEN 2 AND 3) AND 4)");
    EXPECT_EQ(anew("1 not between 2 and 3"), "(1 NOT BETWEEN 2 AND 3)");
    EXPECT_EQ(anew("1 in (1, 'a')"), "(1 IN (1, 'a'))");
    EXPECT_EQ(anew("1 not in ()"), "(1 NOT IN ())");
    EXPECT_EQ(anew("'a' like 'b%' escape '\\'"), "('a' LIKE 'b%' ESCAPE '\\')");
    EXPECT_EQ(anew("'a' not like 'b'"), "('a' NOT LIKE 'b')");
    EXPECT_EQ(anew("1 is null"), "(1 IS NULL)");
    EXPECT_EQ(anew("1 isnull"), "(1 IS NULL)");
    EXPECT_EQ(anew("1 is not null"), "(1 IS NOT NULL)");
    EXPECT_EQ(anew("1 notnull"), anew("1 not null"));
    EXPECT_EQ(anew("1 is distinct from 2"), "(1 IS NOT 2)");
    EXPECT_EQ(anew("1 is not distinct from 2"), "(1 IS 2)");
    EXPECT_EQ(anew("case when 1 then 2 else 3 end"), "(CASE WHEN 1 THEN 2 ELSE 3 END)");
    EXPECT_EQ(anew("case 1 when 2 then 3 when 4 then 5 end"), "(CASE 1 WHEN 2 THEN 3 WHEN 4 THEN 5 END)");
    EXPECT_EQ(anew("cast('1' as integer)"), "CAST('1' AS INTEGER)");
    EXPECT_EQ(anew("TRUE and false"), "(1 AND 0)");
}

TEST(Expressions, TakeNamesForFieldsAndNameEachOnce) {
    const Expression expression(R"(a + ../b + ../../"c d" + $Date + a + roads.name + straße)");
    EXPECT_THAT(expression.references(), ElementsAre(Reference{Reference::Kind::Field, 0, "a"},
                                                     Reference{Reference::Kind::Field, 1, "b"},
                                                     Reference{Reference::Kind::Field, 2, "c d"},
                                                     Reference{Reference::Kind::Variable, 0, "Date"},
                                                     Reference{Reference::Kind::Field, 0, "roads.name"},
                                                     Reference{Reference::Kind::Field, 0, "straße"}));
    EXPECT_EQ(sqlText(expression.root()), "(?1 + ?2 + ?3 + ?4 + ?1 + ?5 + ?6)");
    EXPECT_EQ(expression.asReference(), nullptr);
    EXPECT_EQ(*Expression("../b").asReference(), (Reference{Reference::Kind::Field, 1, "b"}));
}

TEST(Expressions, DivideByWhatStandsBehindASlash) {
    EXPECT_EQ(anew("a / b"), "(?1 / ?2)");
    EXPECT_EQ(anew("1./2"), "(1. / 2)");
}

TEST(Expressions, KeepTheQuotesOfTexts) {
    EXPECT_EQ(anew("'O''Brien'"), "'O''Brien'");
    EXPECT_EQ(anew(R"('"--;/*')"), R"('"--;/*')");
    EXPECT_EQ(Expression(R"("a""b")").references().front().sName, "a\"b");
}

TEST(Expressions, AskForTheRowAroundInBraces) {
    const Expression expression("pop > {least} and kind = {upper(../kind)}", Expression::Braces::OuterRow);
    EXPECT_THAT(expression.references(), ElementsAre(Reference{Reference::Kind::Field, 0, "pop"},
                                                     Reference{Reference::Kind::Field, 1, "least"},
                                                     Reference{Reference::Kind::Field, 0, "kind"},
                                                     Reference{Reference::Kind::Field, 2, "kind"}));
    EXPECT_THAT(refusal("pop > {least}"), HasSubstr("a value is missing before \"{least}\""));
}

TEST(Expressions, HoldNoStatementsAndNoSubqueries) {
    EXPECT_EQ(refusal("1; DROP TABLE a"), "an expression holds no \";\"");
    EXPECT_EQ(refusal("1 -- 2"), "an expression holds no comments");
    EXPECT_EQ(refusal("1 /* 2 */"), "an expression holds no comments");
    for (const auto* sText : {"(select 1)", "exists (select 1)", "1 in (select 2)", "select 1",
                              "(with a as (1))", "(values (1))"})
        EXPECT_EQ(refusal(sText), "an expression holds no subquery") << sText;
}

TEST(Expressions, KnowFunctionsOfTheRowsOfAGroup) {
    const Expression expression("sum(a * b) + max(a, 1) + min(b)");
    ASSERT_EQ(expression.aggregates().size(), 2U);
    EXPECT_EQ(sqlText(expression.aggregates()[0].root()), sqlText(Expression("a * b").root()));
    EXPECT_EQ(expression.aggregates()[0].references().size(), 2U);
    EXPECT_EQ(expression.references()[0].kind, Reference::Kind::Aggregate);
    EXPECT_EQ(expression.references()[0].sName, "sum");
    EXPECT_EQ(expression.references()[1].sName, "a");
    EXPECT_EQ(expression.references()[2].sName, "min");
    EXPECT_EQ(Expression("count(*)").aggregates().size(), 1U);
    EXPECT_THAT(refusal("sum(avg(a))"), HasSubstr("stands in another one"));
    EXPECT_THAT(refusal("sum()"), HasSubstr("a value is missing"));
    EXPECT_THAT(
        refusal("sum(" + std::string(20, '-').replace(0, 20, "- - - - - - - - - - ") + "- - - - - - - a)"),
        HasSubstr("more than 15 deep"));
    EXPECT_THAT(refusal("sum(a, b)"), HasSubstr("\")\" is missing"));
    EXPECT_THAT(refusal("group_concat(a)"), HasSubstr("is no function"));
}

TEST(Expressions, CallNoFunctionsButThoseAllowed) {
    EXPECT_EQ(anew("coalesce(Upper(a), '-')"), "coalesce(upper(?1), '-')");
    EXPECT_EQ(refusal("load_extension('a')"), "\"load_extension\" is no function of expressions");
    EXPECT_EQ(refusal("uper(a)"), "\"uper\" is no function of expressions: did you mean \"upper\"?");
    for (const auto* sName : {"readfile", "zeroblob", "random", "randomblob", "fts3_tokenizer",
                              "sqlite_version", "changes", "edit", "likely", "st_area"})
        EXPECT_THAT(refusal(std::string(sName) + "(1)"), HasSubstr("is no function of expressions")) << sName;
    EXPECT_EQ(refusal("upper()"), "the function \"upper\" does not take 0 arguments");
    EXPECT_EQ(refusal("pi(1)"), "the function \"pi\" does not take 1 argument");
}

TEST(Expressions, AreRefusedWithThePlaceOfWhatIsWrong) {
    EXPECT_EQ(refusal(""), "a value is missing at its end");
    EXPECT_EQ(refusal("1 +"), "a value is missing at its end");
    EXPECT_EQ(refusal("1 2"), "an operator is missing before \"2\"");
    EXPECT_EQ(refusal("(1"), "\")\" is missing at its end");
    EXPECT_EQ(refusal("a between 1"), "\"AND\" is missing at its end");
    EXPECT_EQ(refusal("1 not 2"), "\"BETWEEN\", \"IN\" or \"LIKE\" is missing before \"2\"");
    EXPECT_EQ(refusal("cast(1 as blob)"),
              "the type INTEGER, REAL, TEXT or NUMERIC is missing before \"blob)\"");
    EXPECT_EQ(refusal("a = order by"), "an operator is missing before \"by\"");
    EXPECT_EQ(refusal("a = end"),
              "a value is missing before \"end\": a field of that name stands between double quotes");
    EXPECT_EQ(refusal("'a"), "the closing ' of a text is missing");
    EXPECT_EQ(refusal("\"a"), "the closing \" of a name is missing");
    EXPECT_EQ(refusal("2a"),
              "a number cannot be followed by \"a\": a field whose name begins with a digit stands "
              "between double quotes");
    EXPECT_EQ(refusal("1e"), "a number lacks its exponent");
    EXPECT_EQ(refusal("$"), "a name is missing before \"\"");
    EXPECT_EQ(refusal("a # b"), "an expression holds no \"#\"");
}

TEST(Expressions, HoldNoNul) {
    EXPECT_EQ(refusal(std::string("'a\0'", 4)), "an expression holds no character NUL");
}

TEST(Expressions, AreBounded) {
    EXPECT_THAT(refusal(std::string(200, '(') + "1" + std::string(200, ')')), HasSubstr("too deep"));
    EXPECT_THAT(refusal(std::string(200, '-') + " 1"), HasSubstr("no comments"));
    std::string sSigns;
    EXPECT_THAT(refusal("abs(abs(abs(abs(abs(abs(abs(abs(abs(abs(abs(abs(abs(abs(abs(abs(1))))))))))))))))"),
                HasSubstr("more than 15 deep"));
    std::string sSum = "1";
    for (int i = 0; i < 200; ++i)
        sSigns += "- ";
    for (int i = 0; i < 2000; ++i)
        sSum += "+1";
    EXPECT_THAT(refusal(sSigns + "1"), HasSubstr("too deep"));
    EXPECT_THAT(refusal(sSum), HasSubstr("more than 900 operations"));
    EXPECT_THAT(refusal("'" + std::string(70000, 'a') + "'"), HasSubstr("more than 65,536 characters"));
}

} // namespace
} // namespace halvane::test
