#pragma once

#include "base/Value.h"
#include "expression/Expression.h"

#include <string_view>
#include <vector>

namespace halvane::expression {

/// One of the values that rows are ordered by.
struct OrderTerm {
    Expression expression;
    bool bDescending = false;
};

/// Reads "name, pop desc".
/// @throws Failure DocumentFailure telling what is wrong.
[[nodiscard]] std::vector<OrderTerm> parseOrdering(std::string_view sText);

/// How two values of expressions stand to each other, as SQLite orders them: Null before numbers, numbers
/// before texts, texts by their bytes. @returns less than 0, 0 or more than 0.
[[nodiscard]] int compareValues(const ValueView& left, const ValueView& right);
[[nodiscard]] inline int compareValues(const Value& left, const Value& right) {
    return compareValues(toView(left), toView(right));
}

} // namespace halvane::expression
