#pragma once

#include "xml/dom/Arena.h"
#include "xml/dom/NodeData.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace halvane::dom {

/// The memory of one document's nodes and texts. What is given back is used again, so that a document whose
/// nodes come and go does not grow. Nodes taken over from another document stay where they lie: the arenas
/// they lie in are kept.
class NodeStore {
public:
    NodeStore() : pArena_(std::make_shared<Arena>()), aKept_(1, pArena_) {}

    /// A node of this kind and nothing else set.
    [[nodiscard]] NodeData& create(Kind kind, Document::Impl& document);
    /// Gives a node and its text back, not its attributes and children.
    void destroy(NodeData& node) noexcept;
    /// Replaces the node's text; `sText` may be a part of the old one.
    /// @throws Failure Overflow for texts of 4 GiB or more.
    void setText(NodeData& node, std::string_view sText);

    /// Keeps what the other store's nodes lie in.
    void keepArenasOf(const NodeStore& other);
    /// Counts a node over from the other store to this one.
    void countOver(NodeStore& other, const NodeData& node) noexcept;

    [[nodiscard]] std::size_t liveNodes() const noexcept { return nLiveNodes_; }
    [[nodiscard]] std::size_t liveTextBytes() const noexcept { return nLiveTextBytes_; }
    [[nodiscard]] std::size_t reservedBytes() const noexcept { return pArena_->reservedBytes(); }

private:
    struct FreePiece {
        FreePiece* pNext;
    };

    [[nodiscard]] std::byte* take(FreePiece*& pFree, std::size_t nBytes);
    static void giveBack(FreePiece*& pFree, void* pPiece, std::size_t nBytes) noexcept;
    [[nodiscard]] char* takeText(std::size_t nSize);
    void giveTextBack(char* pText, std::size_t nSize) noexcept;

    // Texts come in size classes, four to every power of two: at most a fifth of a piece lies idle.
    static constexpr std::size_t textClasses = 128;

    std::shared_ptr<Arena> pArena_;
    std::vector<std::shared_ptr<Arena>> aKept_;
    FreePiece* pFreeNodes_ = nullptr;
    std::array<FreePiece*, textClasses> aFreeTexts_{};
    std::size_t nLiveNodes_ = 0;
    std::size_t nLiveTextBytes_ = 0;
};

} // namespace halvane::dom
