#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace halvane::dom {

/// Memory that is taken in pieces and given back only as a whole.
class Arena {
public:
    /// `nBytes` bytes, aligned for pointers.
    [[nodiscard]] std::byte* allocate(std::size_t nBytes);
    [[nodiscard]] std::size_t reservedBytes() const noexcept { return nReserved_; }

private:
    struct FreeBlock {
        std::size_t nAlignment;
        void operator()(std::byte* pBlock) const noexcept;
    };
    using Block = std::unique_ptr<std::byte, FreeBlock>;

    std::byte* addBlock(std::size_t nBytes);
    [[nodiscard]] std::size_t nextBlockSize() const noexcept;

    std::vector<Block> aBlocks_;
    std::byte* pFree_ = nullptr;
    std::size_t nFree_ = 0;
    std::size_t nReserved_ = 0;
    std::size_t nNextBlock_ = 8U << 10U; ///< doubles with every block: small documents stay small
};

} // namespace halvane::dom
