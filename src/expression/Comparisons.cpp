#include "expression/Comparisons.h"

#include "expression/Ordering.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace halvane::expression {

namespace {

/// As a database takes it: no number is Null.
bool isMissing(const ValueView& value) {
    const auto* const dNumber = std::get_if<double>(&value);
    const auto* const fNumber = std::get_if<float>(&value);
    return std::holds_alternative<Null>(value) || std::holds_alternative<Empty>(value) ||
           (dNumber != nullptr && std::isnan(*dNumber)) || (fNumber != nullptr && std::isnan(*fNumber));
}

bool isComparable(const ValueView& value) {
    return !std::holds_alternative<Date>(value) && !std::holds_alternative<Bytes>(value) &&
           !std::holds_alternative<ObjectPtr>(value);
}

} // namespace

std::optional<Comparisons::Operator> Comparisons::operatorOf(const Term& term) {
    constexpr std::array<std::pair<std::string_view, Operator>, 10> infixes{{
        {"AND", Operator::And},
        {"OR", Operator::Or},
        {"<", Operator::Less},
        {"<=", Operator::LessOrEqual},
        {"=", Operator::Equal},
        {"<>", Operator::NotEqual},
        {">=", Operator::GreaterOrEqual},
        {">", Operator::Greater},
        {"IS", Operator::Is},
        {"IS NOT", Operator::IsNot},
    }};
    switch (term.kind) {
    case Term::Kind::Between:
        return term.bNot ? Operator::NotBetween : Operator::Between;
    case Term::Kind::In:
        return term.bNot ? Operator::NotIn : Operator::In;
    case Term::Kind::Reference:
        return Operator::Reference;
    case Term::Kind::Number:
    case Term::Kind::Text:
    case Term::Kind::Null:
        return Operator::Literal;
    case Term::Kind::Prefix:
        if (term.sWord == "NOT")
            return Operator::Not;
        if (term.sWord == "-" && term.operands[0].kind == Term::Kind::Number)
            return Operator::Literal;
        return std::nullopt;
    case Term::Kind::Infix: {
        const auto infix = std::ranges::find(infixes, term.sWord, &decltype(infixes)::value_type::first);
        return infix == infixes.end() ? std::nullopt : std::optional(infix->second);
    }
    default:
        return std::nullopt;
    }
}

bool Comparisons::isValue(const Node& node) {
    return node.op == Operator::Reference || node.op == Operator::Literal;
}

std::optional<Comparisons::Node> Comparisons::nodeOf(const Term& term,
                                                     const std::function<Value(const Term&)>& fnLiteral) {
    const auto op = operatorOf(term);
    if (!op)
        return std::nullopt;
    Node node{.op = *op, .nReference = term.nReference};
    if (*op == Operator::Literal) {
        node.literal = fnLiteral(term);
        return node;
    }
    // Whether a value is true by itself, and what a truth is as a number, is SQLite's to say.
    const bool bOfTruths = *op == Operator::And || *op == Operator::Or || *op == Operator::Not;
    for (const Term& operand : term.operands) {
        auto made = nodeOf(operand, fnLiteral);
        if (!made || isValue(*made) == bOfTruths)
            return std::nullopt;
        node.operands.push_back(*std::move(made));
    }
    return node;
}

std::unique_ptr<Comparisons> Comparisons::tryMake(const Term& root,
                                                  const std::function<Value(const Term&)>& fnLiteral) {
    auto node = nodeOf(root, fnLiteral);
    if (!node || isValue(*node))
        return nullptr;
    auto pMade = std::make_unique<Comparisons>();
    pMade->root_ = *std::move(node);
    return pMade;
}

std::optional<ValueView> Comparisons::of(std::span<const ValueView> arguments) const {
    if (!std::ranges::all_of(arguments, isComparable))
        return std::nullopt;
    const Truth truth = truthOf(root_, arguments);
    return truth == Truth::Unknown ? ValueView(Null()) : ValueView(std::int64_t{truth == Truth::Yes ? 1 : 0});
}

Comparisons::Truth Comparisons::opposite(Truth truth) {
    return truth == Truth::Unknown ? truth : truth == Truth::Yes ? Truth::No : Truth::Yes;
}

Comparisons::Truth Comparisons::compared(Operator op, const ValueView& left, const ValueView& right) {
    const auto truth = [](bool bHolds) { return bHolds ? Truth::Yes : Truth::No; };
    const bool bMissing = isMissing(left) || isMissing(right);
    if (op == Operator::Is || op == Operator::IsNot) {
        const bool bSame = bMissing ? isMissing(left) && isMissing(right) : compareValues(left, right) == 0;
        return truth(bSame == (op == Operator::Is));
    }
    if (bMissing)
        return Truth::Unknown;
    const int lCompared = compareValues(left, right);
    switch (op) {
    case Operator::Less:
        return truth(lCompared < 0);
    case Operator::LessOrEqual:
        return truth(lCompared <= 0);
    case Operator::Equal:
        return truth(lCompared == 0);
    case Operator::NotEqual:
        return truth(lCompared != 0);
    case Operator::GreaterOrEqual:
        return truth(lCompared >= 0);
    default:
        return truth(lCompared > 0);
    }
}

Comparisons::Truth Comparisons::truthOf(const Node& node, std::span<const ValueView> arguments) const {
    const auto value = [&](std::size_t n) {
        const Node& operand = node.operands[n];
        return operand.op == Operator::Reference ? arguments[operand.nReference] : toView(operand.literal);
    };
    const auto truth = [&](std::size_t n) { return truthOf(node.operands[n], arguments); };
    switch (node.op) {
    case Operator::And:
        return std::min(truth(0), truth(1));
    case Operator::Or:
        return std::max(truth(0), truth(1));
    case Operator::Not:
        return opposite(truth(0));
    case Operator::Between:
    case Operator::NotBetween: {
        const Truth within = std::min(compared(Operator::GreaterOrEqual, value(0), value(1)),
                                      compared(Operator::LessOrEqual, value(0), value(2)));
        return node.op == Operator::Between ? within : opposite(within);
    }
    case Operator::In:
        return inList(node, arguments);
    case Operator::NotIn:
        return opposite(inList(node, arguments));
    default:
        return compared(node.op, value(0), value(1));
    }
}

/// Nothing is in an empty list, not even Null.
Comparisons::Truth Comparisons::inList(const Node& node, std::span<const ValueView> arguments) const {
    const auto value = [&](std::size_t n) {
        const Node& operand = node.operands[n];
        return operand.op == Operator::Reference ? arguments[operand.nReference] : toView(operand.literal);
    };
    Truth found = Truth::No;
    for (std::size_t n = 1; n < node.operands.size(); ++n)
        found = std::max(found, compared(Operator::Equal, value(0), value(n)));
    return found;
}

} // namespace halvane::expression
