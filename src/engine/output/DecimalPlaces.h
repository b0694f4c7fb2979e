#pragma once

#include "base/Failure.h"
#include "base/Numbers.h"

#include <cstdint>
#include <string_view>

namespace halvane {

/// How many decimal places a control attribute asks for, read once.
class DecimalPlaces {
public:
    explicit DecimalPlaces(std::string_view sText = {}) : bGiven_(isNumeric(sText)) {
        if (!bGiven_)
            return;
        try {
            lPlaces_ = toInt32(sText);
        } catch (const Failure&) {
            bTooLarge_ = true;
        }
    }

    /// Whether the text is a number.
    [[nodiscard]] bool isGiven() const noexcept { return bGiven_; }
    /// 0 when the text is no number. @throws Failure Overflow for a number beyond 32 bits.
    [[nodiscard]] std::int32_t value() const {
        if (bTooLarge_)
            throw Failure::of(FailureNumber::Overflow);
        return lPlaces_;
    }

private:
    bool bGiven_;
    bool bTooLarge_ = false;
    std::int32_t lPlaces_ = 0;
};

} // namespace halvane
