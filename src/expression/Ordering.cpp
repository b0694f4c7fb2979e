#include "expression/Ordering.h"

#include <cstdint>
#include <string>
#include <variant>

namespace halvane::expression {

namespace {

enum class Rank : std::uint8_t { Null, Number, Text };

Rank rankOf(const Value& value) {
    if (std::holds_alternative<Null>(value) || std::holds_alternative<Empty>(value))
        return Rank::Null;
    return std::holds_alternative<std::string>(value) ? Rank::Text : Rank::Number;
}

double numberOf(const Value& value) {
    if (const auto* dNumber = std::get_if<double>(&value))
        return *dNumber;
    const auto* lNumber = std::get_if<std::int64_t>(&value);
    return lNumber == nullptr ? 0 : static_cast<double>(*lNumber);
}

template<class Compared>
int compared(const Compared& left, const Compared& right) {
    return left < right ? -1 : right < left ? 1 : 0;
}

} // namespace

int compareValues(const Value& left, const Value& right) {
    const Rank rank = rankOf(left);
    if (rank != rankOf(right))
        return compared(rank, rankOf(right));
    if (rank == Rank::Text)
        return compared(std::get<std::string>(left), std::get<std::string>(right));
    const auto* lLeft = std::get_if<std::int64_t>(&left);
    const auto* lRight = std::get_if<std::int64_t>(&right);
    if (lLeft != nullptr && lRight != nullptr)
        return compared(*lLeft, *lRight);
    return rank == Rank::Null ? 0 : compared(numberOf(left), numberOf(right));
}

} // namespace halvane::expression
