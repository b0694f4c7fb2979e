#include "base/Failure.h"
#include "base/Text.h"

#include <limits>

namespace halvane {

std::int16_t Split(std::string_view sText, std::string_view sDelimiter, std::vector<std::string>& aPieces) {
    // An empty delimiter is found everywhere and would yield empty pieces for ever.
    if (sDelimiter.empty())
        throw Failure::of(FailureNumber::Overflow);
    constexpr std::size_t nMost = std::numeric_limits<std::int16_t>::max();
    std::vector<std::string> aFound;
    std::size_t nFrom = 0;
    for (;;) {
        if (aFound.size() == nMost)
            throw Failure::of(FailureNumber::Overflow);
        const std::size_t nAt = sText.find(sDelimiter, nFrom);
        aFound.emplace_back(sText.substr(nFrom, nAt - nFrom));
        if (nAt == std::string_view::npos)
            break;
        nFrom = nAt + sDelimiter.size();
    }
    aPieces = std::move(aFound);
    return static_cast<std::int16_t>(aPieces.size());
}

} // namespace halvane
