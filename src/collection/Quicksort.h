#pragma once

#include "base/Failure.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

namespace halvane {

/// The next number of the process's pseudo-random generator, in [0, 1). Whoever wants another sequence seeds
/// that generator; this never does.
[[nodiscard]] inline double nextRandom() {
    return std::rand() / (static_cast<double>(RAND_MAX) + 1.0);
}

/// An ascending, unstable sort of a part of an array about random pivots. Elements need < and >=.
template<class Element>
class Quicksort {
public:
    /// @param lCutOver ranges whose upper index minus lower index is below it go to an insertion sort.
    Quicksort(std::span<Element> aElements, std::int32_t lCutOver)
        : aElements_(aElements), lCutOver_(lCutOver) {}

    /// Sorts the elements `lMin` to `lMax`.
    /// @throws Failure SubscriptOutOfRange for a range outside the array, Overflow when its length or an
    /// index
    ///         leaves the 32-bit range.
    void sort(std::int32_t lMin, std::int32_t lMax) {
        while (minus(lMax, lMin) >= lCutOver_) {
            const std::int32_t lMiddle = partition(lMin, lMax);
            sort(lMin, minus(lMiddle, 1));
            // The upper part, which receives all elements equal to the pivot, needs no frame of its own:
            // thousands of equal elements would exhaust the stack.
            lMin = plus(lMiddle, 1);
        }
        insertionSort(lMin, lMax);
    }

private:
    static std::int32_t plus(std::int32_t lLeft, std::int32_t lRight) {
        std::int32_t lSum = 0;
        if (__builtin_add_overflow(lLeft, lRight, &lSum))
            throw Failure::of(FailureNumber::Overflow);
        return lSum;
    }
    static std::int32_t minus(std::int32_t lLeft, std::int32_t lRight) {
        std::int32_t lDifference = 0;
        if (__builtin_sub_overflow(lLeft, lRight, &lDifference))
            throw Failure::of(FailureNumber::Overflow);
        return lDifference;
    }

    Element& at(std::int32_t lIndex) {
        if (lIndex < 0 || static_cast<std::size_t>(lIndex) >= aElements_.size())
            throw Failure::of(FailureNumber::SubscriptOutOfRange);
        return aElements_[static_cast<std::size_t>(lIndex)];
    }

    /// Moves the elements below a randomly chosen one before it and the others behind it.
    /// @returns where that one has come to lie.
    std::int32_t partition(std::int32_t lMin, std::int32_t lMax) {
        const std::int32_t lLength = plus(minus(lMax, lMin), 1);
        const auto lPivot = static_cast<std::int32_t>(std::floor(lLength * nextRandom() + lMin));
        Element median = std::move(at(lPivot));
        if (lPivot != lMin)
            at(lPivot) = std::move(at(lMin));
        std::int32_t lLow = lMin;
        std::int32_t lHigh = lMax;
        for (;;) {
            // at(lLow) is the gap: its element has been moved away.
            while (lHigh > lLow && at(lHigh) >= median)
                lHigh = minus(lHigh, 1);
            if (lHigh <= lLow)
                break;
            at(lLow) = std::move(at(lHigh));
            lLow = plus(lLow, 1);
            while (lLow < lHigh && at(lLow) < median)
                lLow = plus(lLow, 1);
            if (lLow >= lHigh)
                break;
            at(lHigh) = std::move(at(lLow));
        }
        at(lLow) = std::move(median);
        return lLow;
    }

    void insertionSort(std::int32_t lMin, std::int32_t lMax) {
        for (std::int32_t i = lMin; i < lMax; ++i)
            for (std::int32_t j = i + 1; j > lMin && at(j) < at(j - 1); --j)
                std::swap(at(j), at(j - 1));
    }

    std::span<Element> aElements_;
    std::int32_t lCutOver_;
};

} // namespace halvane
