// Texts with values, orders and expressions: what is read is computed, whatever the values are.

#include "base/Failure.h"
#include "expression/Ordering.h"
#include "expression/SqlText.h"
#include "expression/Template.h"
#include "expression/sqlite/SqliteEvaluator.h"
#include "fuzz/Check.h"
#include "fuzz/Target.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace halvane::fuzz {
namespace {

using expression::Expression;

template<class Read>
auto readIfRight(const Read& read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (const Failure&) {
        return std::nullopt;
    }
}

void checkComputed(const Expression& expression) {
    static expression::sqlite::SqliteEvaluator evaluator(1'700'000'000);
    for (const auto& aggregate : expression.aggregates())
        checkComputed(aggregate);
    const std::string sSql = sqlText(expression.root());
    const auto pEvaluation = readIfRight([&] { return evaluator.prepare(expression); });
    check(pEvaluation.has_value(), "What is read can be prepared", sSql);
    const std::array<ValueView, 6> values{
        Null(), std::int64_t{-7}, 2.5, Date{2024, 2, 29}, std::string_view("a'%_"), true};
    std::vector<ValueView> arguments;
    for (std::size_t n = 0; n < expression.references().size(); ++n)
        arguments.push_back(values[n % values.size()]);
    (void)readIfRight([&] { return toText((*pEvaluation)->of(arguments)); });
}

} // namespace
} // namespace halvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t nSize) {
    using namespace halvane::fuzz;
    using namespace halvane::expression;
    const std::string sText(reinterpret_cast<const char*>(pBytes), nSize);
    if (const auto expression = readIfRight([&] { return Expression(sText, Expression::Braces::OuterRow); }))
        checkComputed(*expression);
    if (const auto text = readIfRight([&] { return Template(sText); }))
        for (const auto& piece : text->pieces())
            if (piece.expression)
                checkComputed(*piece.expression);
    if (const auto ordering = readIfRight([&] { return parseOrdering(sText); }))
        for (const auto& term : *ordering)
            checkComputed(term.expression);
    return 0;
}
