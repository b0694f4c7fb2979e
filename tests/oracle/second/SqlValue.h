#pragma once

// Values of SQL as SQLite documents them: their order, their truth, what they are as numbers and as texts.

#include "base/Value.h"

#include <cstdint>
#include <string>
#include <variant>

namespace halvane::oracle {

/// Null, a whole number, a number or a text.
using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string>;

[[nodiscard]] inline bool isNull(const SqlValue& value) {
    return std::holds_alternative<std::monostate>(value);
}

/// A value of the data as an expression sees it. @throws Failure TypeMismatch for what has no text.
[[nodiscard]] SqlValue sqlValueOf(const ValueView& value);

/// Numbers before texts, texts by their bytes. Neither is Null. @returns below 0, 0 or above 0.
[[nodiscard]] int compared(const SqlValue& left, const SqlValue& right);
/// The same with Null before everything.
[[nodiscard]] int comparedInOrder(const SqlValue& left, const SqlValue& right);

/// A text counts as the number that it begins with, or 0. @returns a number, or Null for Null.
[[nodiscard]] SqlValue asNumber(const SqlValue& value);
/// The same as a number with decimals. @param value not Null.
[[nodiscard]] double asDouble(const SqlValue& value);
/// The same without what follows the point. @param value not Null.
[[nodiscard]] std::int64_t asWhole(const SqlValue& value);
/// @param value not Null.
[[nodiscard]] std::string asText(const SqlValue& value);
/// Whether it is a number other than 0; nothing known of Null.
[[nodiscard]] SqlValue truthOf(const SqlValue& value);
[[nodiscard]] inline bool isTrue(const SqlValue& value) {
    return truthOf(value) == SqlValue(std::int64_t{1});
}

} // namespace halvane::oracle
