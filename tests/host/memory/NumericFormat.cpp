#include "host/memory/NumericFormat.h"

#include "base/Numbers.h"

namespace halvane::host::memory {

void MemoryNumericFormat::configure(const std::array<std::int32_t, 7>& aSettings) {
    pass("GisNumericFormat", "configure");
    constexpr std::size_t nDecimalsSetting = 3;
    lDecimals_ = aSettings[nDecimalsSetting];
    pLog_->push_back(aSettings);
}

std::string MemoryNumericFormat::valueToText(double dValue) const {
    pass("GisNumericFormat", "valueToText");
    return fixedText(dValue, lDecimals_);
}

} // namespace halvane::host::memory
