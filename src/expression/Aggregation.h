#pragma once

#include "base/Value.h"

#include <cstdint>
#include <string_view>

namespace halvane::expression {

/// A function of the values of several rows, as SQLite computes it: avg, count, max, min, sum or total. Null
/// counts for none of them.
class Aggregation {
public:
    /// @param sFunction one of those, in lower case.
    explicit Aggregation(std::string_view sFunction) : sFunction_(sFunction) {}

    /// @param value a whole number, a number, a text or Null.
    void add(const Value& value);
    /// @throws Failure Overflow when a sum of whole numbers is too large.
    [[nodiscard]] Value result() const;

private:
    void addNumber(const Value& value);

    std::string_view sFunction_;
    std::int64_t lCount_ = 0;
    std::int64_t lSum_ = 0;
    double dSum_ = 0;
    bool bWhole_ = true; ///< all numbers so far are whole
    bool bOverflow_ = false;
    Value vBest_ = Null();
};

} // namespace halvane::expression
