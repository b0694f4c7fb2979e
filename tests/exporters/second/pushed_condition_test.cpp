// What of a condition is handed to the data.

#include "exporters/second/PushedCondition.h"

#include "engine/second/RowScope.h"
#include "exporters/second/SecondEditionTest.h"

namespace halvane::test {
namespace {

using expression::Expression;
using host::FieldType;
using host::RowCondition;
using host::memory::field;
using host::memory::MemoryTable;
using host::memory::MemoryTablePtr;

class PushedConditions : public SecondEditionTest {
protected:
    static std::string shown(const RowCondition& condition) {
        static const std::vector<std::string> words{"all", "any", "<", "<=",      "=",
                                                    "<>",  ">=",  ">", "is null", "is not null"};
        std::string sAll = words[static_cast<std::size_t>(condition.kind)];
        if (!condition.sField.empty()) {
            const bool bText = std::holds_alternative<std::string>(condition.value);
            const std::string sQuote = bText ? "'" : "";
            sAll = condition.sField + " " + sAll + " " + sQuote + toText(condition.value) + sQuote;
        }
        for (const RowCondition& part : condition.parts)
            sAll += " [" + shown(part) + "]";
        return sAll;
    }
    /// "-" for nothing.
    std::string pushed(const std::string& sWhere) {
        state.options.pSecondEdition = &edition;
        const NodeExpression where(Expression(sWhere, Expression::Braces::OuterRow).asCondition());
        const auto pCursor = pRows == nullptr ? world.pRoads->search(nullptr) : pRows->search(nullptr);
        const auto pOuterRow = pCursor->nextRow();
        RowScope around(state, nullptr);
        around.turnTo(*pOuterRow);
        const RowScope tested(state, nullptr);
        const auto condition = pushedCondition(state, where);
        return condition ? shown(*condition) : "-";
    }

    MemoryTablePtr pRows; ///< around; none: the roads
};

TEST_F(PushedConditions, AreComparisonsOfFieldsWithLiterals) {
    EXPECT_EQ(pushed("a > 1"), "a > 1");
    EXPECT_EQ(pushed("1 > a"), "a < 1");
    EXPECT_EQ(pushed("a = 'x'"), "a = 'x'");
    EXPECT_EQ(pushed("a <> -2.5"), "a <> -2.5");
    EXPECT_EQ(pushed("a between 1 and 3"), "all [a >= 1] [a <= 3]");
    EXPECT_EQ(pushed("a in (1, 'x')"), "any [a = 1] [a = 'x']");
    EXPECT_EQ(pushed("a is null"), "a is null ");
    EXPECT_EQ(pushed("1 = a and 2 <> a and 3 <= a and 4 >= a"),
              "all [all [all [a = 1] [a <> 2]] [a >= 3]] [a <= 4]");
}

TEST_F(PushedConditions, AreTurnedRoundByNot) {
    EXPECT_EQ(pushed("not a > 1"), "a <= 1");
    EXPECT_EQ(pushed("not 1 > a"), "a >= 1");
    EXPECT_EQ(pushed("not 1 = a"), "a <> 1");
    EXPECT_EQ(pushed("not (1 <= a or 2 >= a)"), "all [a < 1] [a > 2]");
    EXPECT_EQ(pushed("not (a = 1 or b < 2)"), "all [a <> 1] [b >= 2]");
    EXPECT_EQ(pushed("a not between 1 and 3"), "any [a < 1] [a > 3]");
    EXPECT_EQ(pushed("a not in (1, 2)"), "all [a <> 1] [a <> 2]");
    EXPECT_EQ(pushed("a is not null and not b is not null"), "all [a is not null ] [b is null ]");
}

TEST_F(PushedConditions, HaveTheValuesOfTheRowAroundAndOfVariables) {
    EXPECT_EQ(pushed("a = {NAME}"), "a = 'High Street'");
    EXPECT_EQ(pushed("a = $who"), "a = 'O'Brien'");
    EXPECT_EQ(pushed("a = {OID}"), "a = 1");
    EXPECT_EQ(pushed("a = {LANES}"), "a = 2");
    EXPECT_EQ(pushed("a < {WIDTH}"), "a < 7.25");
    EXPECT_EQ(pushed("a = {OPENED}"), "-") << "how data writes a date is its own";
    pRows = MemoryTable::make("SINGLES", {field("S", FieldType::Single)});
    pRows->addRow({0.5F});
    EXPECT_EQ(pushed("a = {S}"), "a = 0.5");
    pRows = MemoryTable::make("NULLS", {field("N", FieldType::Integer)});
    pRows->addRow({Null()});
    EXPECT_EQ(pushed("a = {N}"), "-");
}

TEST_F(PushedConditions, AreLeftToThoseWhoTellOfAValueThatCannotBeRead) {
    world.pHost->faults().failAlways("GisRow.value");
    EXPECT_EQ(pushed("a = {NAME}"), "-");
    EXPECT_EQ(pushed("a = {NAME} and b = 1"), "all [b = 1]");
}

TEST_F(PushedConditions, LeaveOutWhatCannotBeTold) {
    EXPECT_EQ(pushed("a > 1 and upper(b) = 'X'"), "all [a > 1]");
    EXPECT_EQ(pushed("a not in (b, 1)"), "all [a <> 1]");
    for (const auto* pWhere : {"a > 1 or upper(b) = 'X'",
                               "a = b",
                               "a + 1 > 2",
                               "a like 'x%'",
                               "a",
                               "1 > 2",
                               "a = $Item",
                               "a = $Value",
                               "a = $Date",
                               "a = {missing}",
                               "a is 3",
                               "a = null",
                               "a in (1, b)",
                               "a = 1e999",
                               "-a",
                               "a + 1",
                               "a = -b",
                               "$who = 1",
                               "{OID} = 1",
                               "1 is null",
                               "upper(a) is null",
                               "a = $nobody",
                               "a = {../OID}",
                               "a = {../../OID}",
                               "a = sum(b)",
                               "a = {$Item}",
                               "{OID} is null",
                               "upper(a) = 'X' and upper(b) = 'Y'",
                               "a in (b)",
                               "a between b and c"})
        EXPECT_EQ(pushed(pWhere), "-") << pWhere;
}

} // namespace
} // namespace halvane::test
