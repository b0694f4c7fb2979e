#pragma once

#include "base/Value.h"
#include "engine/control/FoundField.h"
#include "engine/output/FieldText.h"
#include "expression/Evaluator.h"
#include "expression/Expression.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace halvane {

struct ExportState;

/// An expression that a control node holds, computed with the rows and objects at hand.
class NodeExpression {
public:
    explicit NodeExpression(expression::Expression expression);

    [[nodiscard]] const expression::Expression& expression() const noexcept { return expression_; }
    /// The field of a row, or the variable, that the whole expression is; nothing when it computes anything.
    [[nodiscard]] const expression::Reference* asReference() const noexcept {
        return expression_.asReference();
    }

    /// @returns a value that lives as long as the rows, or until the expression is computed again.
    /// @throws Failure when it cannot be computed.
    [[nodiscard]] ValueView value(ExportState& state) const;
    /// The value as expressions have it: a whole number, a number, a text or Null.
    [[nodiscard]] Value computed(ExportState& state) const;
    /// The value as it is written: a field of a row by the rules for fields, Null as "", numbers with that
    /// many decimals at most (0: up to 15).
    [[nodiscard]] FieldText text(ExportState& state, std::int32_t lDecimalPlaces) const;
    /// Whether a condition holds: Null does not.
    [[nodiscard]] bool holds(ExportState& state) const;

private:
    [[nodiscard]] ValueView evaluate(ExportState& state) const;
    [[nodiscard]] ValueView valueOf(ExportState& state, std::size_t nReference) const;

    void computeAggregates(ExportState& state) const;

    expression::Expression expression_;
    std::vector<NodeExpression> aggregates_; ///< of the rows of a group
    // Of the group for which they were computed last.
    mutable std::vector<Value> aggregateValues_;
    mutable std::uint64_t nGroup_ = 0;
    // What was found for each reference depends on the rows, and is kept for the next ones.
    mutable std::vector<FoundField> found_;
    mutable std::vector<ValueView> arguments_;
    mutable std::unique_ptr<expression::Evaluation> pEvaluation_; ///< nothing before the first value
};

/// The variable that is about a group of rows.
inline constexpr std::string_view sCountOfGroup = "Count";

/// Whether it is the value of the field that a loop over fields is at.
[[nodiscard]] bool asksFieldOfLoop(const expression::Reference& reference) noexcept;
/// Whether a name with "$" stands for something in every export.
[[nodiscard]] bool isKnownVariable(std::string_view sName) noexcept;
/// All of those.
[[nodiscard]] std::vector<std::string_view> knownVariables();

} // namespace halvane
