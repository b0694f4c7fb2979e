// Conditions that are computed without a database, beside the same that are not.

#include "expression/Comparisons.h"
#include "expression/sqlite/SqliteEvaluator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace halvane::test {
namespace {

using expression::Comparisons;
using expression::Expression;
using expression::Term;

const std::vector<ValueView>& arguments() {
    using namespace std::string_view_literals;
    static const std::vector<ValueView> all{Null(),
                                            Empty(),
                                            true,
                                            std::int32_t{0},
                                            std::int32_t{-7},
                                            std::int64_t{3},
                                            std::int64_t{9'007'199'254'740'993},
                                            std::numeric_limits<std::int64_t>::max(),
                                            std::numeric_limits<std::int64_t>::min(),
                                            0.0,
                                            -0.0,
                                            3.0,
                                            2.5F,
                                            9'007'199'254'740'992.0,
                                            9.3e18,
                                            -std::numeric_limits<double>::infinity(),
                                            std::numeric_limits<double>::quiet_NaN(),
                                            ""sv,
                                            "3"sv,
                                            "abc"sv,
                                            "ABC"sv,
                                            "a\0b"sv,
                                            "\xC3\xA4"sv};
    return all;
}

class RandomConditions {
public:
    std::string condition(int lDepth) {
        const int lKind = lDepth == 0 ? 3 + below(6) : below(9);
        switch (lKind) {
        case 0:
            return "(" + condition(lDepth - 1) + " AND " + condition(lDepth - 1) + ")";
        case 1:
            return "(" + condition(lDepth - 1) + " OR " + condition(lDepth - 1) + ")";
        case 2:
            return "(NOT " + condition(lDepth - 1) + ")";
        case 3:
            return "(" + value() + (below(2) == 0 ? " IS " : " IS NOT ") + value() + ")";
        case 4:
            return "(" + value() + (below(2) == 0 ? "" : " NOT") + " BETWEEN " + value() + " AND " + value() +
                   ")";
        case 5:
            return "(" + value() + (below(2) == 0 ? "" : " NOT") + " IN (" + list() + "))";
        default: {
            const std::vector<std::string> operators{"<", "<=", "=", "<>", ">=", ">"};
            return "(" + value() + " " + operators[static_cast<std::size_t>(below(6))] + " " + value() + ")";
        }
        }
    }
    const ValueView& argument() { return arguments()[static_cast<std::size_t>(below(arguments().size()))]; }

private:
    int below(std::size_t nEnd) { return static_cast<int>(random_() % nEnd); }
    std::string value() {
        const std::vector<std::string> literals{"NULL",   "0",  "3",     "-7",  "2.5", "9007199254740993",
                                                "9.3e18", "''", "'abc'", "'3'", "'ä'"};
        const std::vector<std::string> names{"a", "b", "c"};
        return below(2) == 0 ? literals[static_cast<std::size_t>(below(literals.size()))]
                             : names[static_cast<std::size_t>(below(names.size()))];
    }
    std::string list() {
        std::string sAll;
        for (int l = below(4); l > 0; --l)
            sAll += (sAll.empty() ? "" : ", ") + value();
        return sAll;
    }

    std::mt19937 random_{7};
};

TEST(Comparisons, HoldWhereTheyHoldInADatabase) {
    expression::sqlite::SqliteEvaluator evaluator(0);
    RandomConditions random;
    int lByThemselves = 0;
    for (int lCase = 0; lCase < 4000; ++lCase) {
        const std::string sCondition = random.condition(2);
        const Expression plain(sCondition);
        // A function is the database's.
        const Expression inDatabase("coalesce(" + sCondition + ", NULL)");
        std::vector<ValueView> values;
        for (std::size_t n = 0; n < plain.references().size(); ++n)
            values.push_back(random.argument());
        const auto pComparisons = Comparisons::tryMake(plain.root(), [](const Term&) { return Value(); });
        lByThemselves += pComparisons != nullptr ? 1 : 0;
        EXPECT_EQ(toValue(evaluator.prepare(plain)->of(values)),
                  toValue(evaluator.prepare(inDatabase)->of(values)))
            << sCondition;
    }
    EXPECT_EQ(lByThemselves, 4000);
}

TEST(Comparisons, LeaveOtherTermsAndValuesToTheDatabase) {
    const auto make = [](const char* pText) {
        return Comparisons::tryMake(Expression(pText).root(),
                                    [](const Term&) { return Value(std::int64_t{1}); });
    };
    for (const auto* pText : {"a", "1", "a + 1 > 2", "upper(a) = 'A'", "a LIKE 'b'", "(a = b) = 1",
                              "a AND b > 1", "-a > 1", "CASE WHEN a THEN 1 END = 1"})
        EXPECT_EQ(make(pText), nullptr) << pText;
    const auto pComparisons = make("a = 1");
    ASSERT_NE(pComparisons, nullptr);
    EXPECT_TRUE(pComparisons->of(std::vector<ValueView>{std::int64_t{1}}));
    EXPECT_FALSE(pComparisons->of(std::vector<ValueView>{Date{2024, 1, 2}}));
    EXPECT_FALSE(pComparisons->of(std::vector<ValueView>{Bytes()}));
}

} // namespace
} // namespace halvane::test
