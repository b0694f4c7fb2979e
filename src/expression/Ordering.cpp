#include "expression/Ordering.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

namespace halvane::expression {

namespace {

enum class Rank : std::uint8_t { Null, Number, Text };

Rank rankOf(const ValueView& value) {
    if (std::holds_alternative<Null>(value) || std::holds_alternative<Empty>(value))
        return Rank::Null;
    return std::holds_alternative<std::string_view>(value) ? Rank::Text : Rank::Number;
}

std::optional<std::int64_t> wholeOf(const ValueView& value) {
    if (const auto* lLong = std::get_if<std::int64_t>(&value))
        return *lLong;
    if (const auto* lShort = std::get_if<std::int32_t>(&value))
        return *lShort;
    const auto* bValue = std::get_if<bool>(&value);
    return bValue == nullptr ? std::nullopt : std::optional<std::int64_t>(*bValue ? 1 : 0);
}

double realOf(const ValueView& value) {
    if (const auto* fSingle = std::get_if<float>(&value))
        return static_cast<double>(*fSingle);
    const auto* dNumber = std::get_if<double>(&value);
    return dNumber == nullptr ? 0 : *dNumber;
}

template<class Compared>
int compared(const Compared& left, const Compared& right) {
    return left < right ? -1 : right < left ? 1 : 0;
}

/// Without loss: not every whole number is a number with decimals.
int comparedWithReal(std::int64_t lWhole, double dReal) {
    constexpr double dBeyond = 9223372036854775808.0;
    if (dReal >= dBeyond)
        return -1;
    if (dReal < -dBeyond)
        return 1;
    const int lCompared = compared(lWhole, static_cast<std::int64_t>(dReal));
    return lCompared != 0 ? lCompared : compared(static_cast<double>(lWhole), dReal);
}

int comparedNumbers(const ValueView& left, const ValueView& right) {
    const auto lLeft = wholeOf(left);
    const auto lRight = wholeOf(right);
    if (lLeft && lRight)
        return compared(*lLeft, *lRight);
    if (lLeft)
        return comparedWithReal(*lLeft, realOf(right));
    return lRight ? -comparedWithReal(*lRight, realOf(left)) : compared(realOf(left), realOf(right));
}

} // namespace

int compareValues(const ValueView& left, const ValueView& right) {
    const Rank rank = rankOf(left);
    if (rank != rankOf(right))
        return compared(rank, rankOf(right));
    if (rank == Rank::Text)
        return compared(std::get<std::string_view>(left), std::get<std::string_view>(right));
    return rank == Rank::Null ? 0 : comparedNumbers(left, right);
}

} // namespace halvane::expression
