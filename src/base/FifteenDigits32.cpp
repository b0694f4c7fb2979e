// Processors of 32 bits have no numbers of 128 bits to do it with: the general conversion serves all numbers.
#include "base/FifteenDigits.h"

namespace halvane {

bool appendFifteenDigits(std::string& /*out*/, double /*dValue*/, std::int32_t /*lDecimals*/,
                         double /*dLeast*/, std::string_view (* /*fnSeparator*/)()) {
    return false;
}

} // namespace halvane
