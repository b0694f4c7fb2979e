#pragma once

#include "host/Application.h"
#include "host/memory/Faults.h"

#include <array>
#include <memory>
#include <vector>

namespace halvane::host::memory {

/// Every configuration that the host's number formats were given, in order.
using NumericFormatLog = std::vector<std::array<std::int32_t, 7>>;

/// Writes a number rounded to 15 significant digits and at most the configured decimals.
class MemoryNumericFormat final : public GisNumericFormat, private Scripted {
public:
    MemoryNumericFormat(std::shared_ptr<NumericFormatLog> pLog, std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), pLog_(std::move(pLog)) {}

    void configure(const std::array<std::int32_t, 7>& aSettings) override;
    [[nodiscard]] std::string valueToText(double dValue) const override;

private:
    std::shared_ptr<NumericFormatLog> pLog_;
    std::int32_t lDecimals_ = 6;
};

} // namespace halvane::host::memory
