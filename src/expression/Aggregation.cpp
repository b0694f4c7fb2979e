#include "expression/Aggregation.h"

#include "base/Failure.h"
#include "expression/Ordering.h"

#include <cstdlib>

namespace halvane::expression {

void Aggregation::add(const Value& value) {
    if (std::holds_alternative<Null>(value))
        return;
    ++lCount_;
    if (sFunction_ == "min" || sFunction_ == "max") {
        const int lCompared = lCount_ == 1 ? 0 : compareValues(value, vBest_);
        if (lCount_ == 1 || (sFunction_ == "min" ? lCompared < 0 : lCompared > 0))
            vBest_ = value;
    } else if (sFunction_ != "count") {
        addNumber(value);
    }
}

void Aggregation::addNumber(const Value& value) {
    if (const auto* const lNumber = std::get_if<std::int64_t>(&value)) {
        dSum_ += static_cast<double>(*lNumber);
        bOverflow_ = __builtin_add_overflow(lSum_, *lNumber, &lSum_) || bOverflow_;
        return;
    }
    bWhole_ = false;
    if (const auto* const dNumber = std::get_if<double>(&value))
        dSum_ += *dNumber;
    else if (const auto* const sText = std::get_if<std::string>(&value))
        dSum_ += std::strtod(sText->c_str(), nullptr); // as far as it is a number
}

Value Aggregation::result() const {
    if (sFunction_ == "count")
        return lCount_;
    if (sFunction_ == "total")
        return dSum_;
    if (lCount_ == 0)
        return Null();
    if (sFunction_ == "avg")
        return dSum_ / static_cast<double>(lCount_);
    if (sFunction_ != "sum")
        return vBest_;
    if (!bWhole_)
        return dSum_;
    if (bOverflow_)
        throw Failure(FailureNumber::Overflow, "the sum is larger than a whole number can be");
    return lSum_;
}

} // namespace halvane::expression
