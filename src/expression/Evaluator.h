#pragma once

#include "base/Value.h"
#include "expression/Expression.h"

#include <memory>
#include <span>

namespace halvane::expression {

/// An expression that is ready to be computed, again and again.
class Evaluation {
public:
    Evaluation() = default;
    Evaluation(const Evaluation&) = delete;
    Evaluation& operator=(const Evaluation&) = delete;
    virtual ~Evaluation() = default;

    /// @param arguments the values of the expression's references, in their order. Yes and no count as 1 and
    /// 0, dates as ISO 8601 texts.
    /// @returns a whole number, a number, a text, bytes or Null; valid until the next call.
    /// @throws Failure HostFailure when the value cannot be computed, TypeMismatch for an argument that is an
    /// object without a text.
    [[nodiscard]] virtual ValueView of(std::span<const ValueView> arguments) = 0;
};

/// Computes expressions.
class Evaluator {
public:
    Evaluator() = default;
    Evaluator(const Evaluator&) = delete;
    Evaluator& operator=(const Evaluator&) = delete;
    virtual ~Evaluator() = default;

    /// @param expression not kept.
    /// @returns what the evaluator outlives.
    /// @throws Failure DocumentFailure for an expression that cannot be computed at all.
    [[nodiscard]] virtual std::unique_ptr<Evaluation> prepare(const Expression& expression) = 0;
};

} // namespace halvane::expression
