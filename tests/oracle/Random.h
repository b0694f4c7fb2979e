#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace halvane::oracle {

/// Chance that is the same on every platform: the standard's engine, distributions of our own.
class Random {
public:
    /// @param nRepeats how often texts of the data are repeated within themselves.
    explicit Random(std::uint64_t nSeed, std::size_t nRepeats = 1) : engine_(nSeed), nRepeats_(nRepeats) {}

    [[nodiscard]] std::size_t repeats() const noexcept { return nRepeats_; }

    /// A number from 0 to nCount - 1. @param nCount at least 1.
    std::size_t below(std::size_t nCount) { return static_cast<std::size_t>(engine_() % nCount); }
    /// A number from lFirst to lLast.
    std::int32_t between(std::int32_t lFirst, std::int32_t lLast) {
        return lFirst + static_cast<std::int32_t>(below(static_cast<std::size_t>(lLast - lFirst + 1)));
    }
    bool chance(std::size_t nPercent) { return below(100) < nPercent; }

    template<class Item>
    const Item& pick(const std::vector<Item>& aItems) {
        return aItems[below(aItems.size())];
    }
    std::string oneOf(const std::vector<const char*>& aTexts) { return pick(aTexts); }

private:
    std::mt19937_64 engine_;
    std::size_t nRepeats_;
};

} // namespace halvane::oracle
