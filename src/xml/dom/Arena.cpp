#include "xml/dom/Arena.h"

#include <algorithm>
#include <limits>
#include <new>

namespace halvane::dom {

namespace {
constexpr std::size_t largestBlock = 256U << 10U;
constexpr std::size_t alignment = alignof(std::max_align_t);
} // namespace

std::byte* Arena::addBlock(std::size_t nBytes) {
    aBlocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(nBytes)); // NOLINT(*-avoid-c-arrays)
    nReserved_ += nBytes;
    return aBlocks_.back().get();
}

std::byte* Arena::allocate(std::size_t nBytes) {
    if (nBytes > std::numeric_limits<std::size_t>::max() - alignment)
        throw std::bad_alloc();
    nBytes = (nBytes + alignment - 1) / alignment * alignment;
    if (nBytes > nFree_) {
        if (nBytes > nNextBlock_ / 4)
            return addBlock(nBytes);
        pFree_ = addBlock(nNextBlock_);
        nFree_ = nNextBlock_;
        nNextBlock_ = std::min(nNextBlock_ * 2, largestBlock);
    }
    std::byte* const pPiece = pFree_;
    pFree_ += nBytes;
    nFree_ -= nBytes;
    return pPiece;
}

} // namespace halvane::dom
