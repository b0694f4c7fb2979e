#pragma once

#include <cstddef>
#include <cstdint>

namespace halvane::bench {

/// Pseudo-random numbers (splitmix64): the same seed yields the same numbers with every compiler, which the
/// distributions of the standard library do not promise.
class Random {
public:
    explicit Random(std::uint64_t nSeed) : nState_(nSeed) {}

    std::uint64_t bits() {
        nState_ += 0x9E3779B97F4A7C15U;
        std::uint64_t n = nState_;
        n = (n ^ (n >> 30U)) * 0xBF58476D1CE4E5B9U;
        n = (n ^ (n >> 27U)) * 0x94D049BB133111EBU;
        return n ^ (n >> 31U);
    }
    /// From 0 to `nEnd` - 1.
    std::uint64_t below(std::uint64_t nEnd) { return bits() % nEnd; }
    /// The same as an int; `lEnd` is positive.
    int intBelow(int lEnd) { return static_cast<int>(below(static_cast<std::uint64_t>(lEnd))); }
    /// From 0 to below 1, in steps of 2^-53.
    double unit() { return static_cast<double>(bits() >> 11U) * 0x1p-53; }
    /// True once in `nTimes` on average.
    bool oneIn(std::uint64_t nTimes) { return below(nTimes) == 0; }
    template<class Items>
    const auto& pick(const Items& items) {
        return items[static_cast<std::size_t>(below(items.size()))];
    }

private:
    std::uint64_t nState_;
};

} // namespace halvane::bench
