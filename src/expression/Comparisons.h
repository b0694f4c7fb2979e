#pragma once

#include "base/Value.h"
#include "expression/Expression.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace halvane::expression {

/// A condition of comparisons of fields, variables and literals, together by AND, OR and NOT, computed as
/// SQLite does, without it: half of the time that a condition takes there goes into calls.
class Comparisons {
public:
    /// @param fnLiteral the value of a literal. @returns nothing for a term that computes anything else.
    [[nodiscard]] static std::unique_ptr<Comparisons>
    tryMake(const Term& root, const std::function<Value(const Term&)>& fnLiteral);

    /// @param arguments the values of the references, in their order.
    /// @returns 1, 0 or Null; nothing where an argument is no number and no text.
    [[nodiscard]] std::optional<ValueView> of(std::span<const ValueView> arguments) const;

private:
    enum class Truth : std::uint8_t { No, Unknown, Yes };
    enum class Operator : std::uint8_t {
        And,
        Or,
        Not,
        Less,
        LessOrEqual,
        Equal,
        NotEqual,
        GreaterOrEqual,
        Greater,
        Is,
        IsNot,
        Between,
        NotBetween,
        In,
        NotIn,
        Reference,
        Literal,
    };
    struct Node {
        Operator op = Operator::Literal;
        std::vector<Node> operands = {};
        std::size_t nReference = 0;
        Value literal = {};
    };

    [[nodiscard]] static std::optional<Node> nodeOf(const Term& term,
                                                    const std::function<Value(const Term&)>& fnLiteral);
    [[nodiscard]] static std::optional<Operator> operatorOf(const Term& term);
    [[nodiscard]] static bool isValue(const Node& node);
    [[nodiscard]] static Truth compared(Operator op, const ValueView& left, const ValueView& right);
    [[nodiscard]] static Truth opposite(Truth truth);
    [[nodiscard]] Truth truthOf(const Node& node, std::span<const ValueView> arguments) const;
    [[nodiscard]] Truth inList(const Node& node, std::span<const ValueView> arguments) const;

    Node root_;
};

} // namespace halvane::expression
