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

/// Whether hosts and data fail now and then: in every way; where shapes are read and features counted, which
/// is the same whatever of the rows a host is asked to choose itself; or where rows are read as well.
enum class Faults : std::uint8_t { Some, OfShapes, OfRows };

/// Whether shapes are as data holds them, or any parts with any points.
enum class Shapes : std::uint8_t { Any, Sound };

/// Chance that is the same on every platform: the standard's engine, distributions of our own.
class Random {
public:
    /// How often texts of the data are repeated within themselves, and the vertices of shapes.
    struct Repeats {
        std::size_t nTexts = 1;
        std::size_t nVertices = 1;
    };

    explicit Random(std::uint64_t nSeed, Repeats repeats = {1, 1}, Texts texts = Texts::AnyBytes,
                    Faults faults = Faults::Some, Shapes shapes = Shapes::Any)
        : engine_(nSeed), repeats_(repeats), texts_(texts), faults_(faults), shapes_(shapes) {}

    [[nodiscard]] const Repeats& repeats() const noexcept { return repeats_; }
    [[nodiscard]] Texts texts() const noexcept { return texts_; }
    [[nodiscard]] bool mayFail() const noexcept { return faults_ == Faults::Some; }
    [[nodiscard]] Faults faults() const noexcept { return faults_; }
    [[nodiscard]] Shapes shapes() const noexcept { return shapes_; }

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
    Repeats repeats_;
    Texts texts_;
    Faults faults_;
    Shapes shapes_;
};

} // namespace halvane::oracle
