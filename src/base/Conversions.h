#pragma once

#include "base/Value.h"

#include <cstdint>

namespace halvane {

/// A value of any type as a number: empty is 0, yes is -1 and no 0, a date is the days since 1899-12-30 with
/// the time of day as their fraction, a text is read by the grammar of toDouble.
/// @throws Failure TypeMismatch for null, bytes, objects and texts that are not numeric; Overflow.
[[nodiscard]] double numberOf(const ValueView& value);
/// The same rounded to a whole number, halves to the even neighbour.
/// @throws Failure as above; Overflow beyond 32 bits.
[[nodiscard]] std::int32_t wholeNumberOf(const ValueView& value);

/// The generic less-than of values: texts by character code, everything else by number, a number before any
/// text; empty counts as "" beside a text. False when either is null.
/// @throws Failure TypeMismatch for bytes and objects.
[[nodiscard]] bool isLess(const ValueView& left, const ValueView& right);

} // namespace halvane
