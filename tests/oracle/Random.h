#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace halvane::oracle {

/// The texts of the data: with bytes that are no UTF-8 among them, or without. A host that counts in UTF-16
/// has no such texts: a clause made from one does not find it again.
enum class Texts : std::uint8_t { AnyBytes, Utf8 };

/// Chance that is the same on every platform: the standard's engine, distributions of our own.
class Random {
public:
    /// @param nRepeats how often texts of the data are repeated within themselves.
    explicit Random(std::uint64_t nSeed, std::size_t nRepeats = 1, Texts texts = Texts::AnyBytes)
        : engine_(nSeed), nRepeats_(nRepeats), texts_(texts) {}

    [[nodiscard]] std::size_t repeats() const noexcept { return nRepeats_; }
    [[nodiscard]] Texts texts() const noexcept { return texts_; }

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
    Texts texts_;
};

} // namespace halvane::oracle
