#include "xml/dom/NodeStore.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <memory>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace halvane::dom {

namespace {

struct SizeClass {
    std::size_t nIndex;
    std::size_t nBytes;
};

SizeClass sizeClassOf(std::size_t nSize) noexcept {
    constexpr std::size_t smallest = 16;
    if (nSize <= smallest)
        return {0, smallest};
    const std::size_t nLast = nSize - 1;
    const auto nShift = static_cast<std::size_t>(std::bit_width(nLast)) - 3;
    const std::size_t nSteps = nLast >> nShift; // 4 to 7
    return {1 + (nShift - 2) * 4 + (nSteps - 4), (nSteps + 1) << nShift};
}

// A handle on a node that was given back is a mistake that the address sanitizer shall see.
void forbidAccess([[maybe_unused]] void* p, [[maybe_unused]] std::size_t n) noexcept {
#if defined(__SANITIZE_ADDRESS__)
    ASAN_POISON_MEMORY_REGION(p, n);
#endif
}

void allowAccess([[maybe_unused]] void* p, [[maybe_unused]] std::size_t n) noexcept {
#if defined(__SANITIZE_ADDRESS__)
    ASAN_UNPOISON_MEMORY_REGION(p, n);
#endif
}

} // namespace

std::byte* NodeStore::take(FreePiece*& pFree, std::size_t nBytes) {
    if (pFree == nullptr)
        return pArena_->allocate(nBytes);
    FreePiece* const pPiece = pFree;
    allowAccess(pPiece, nBytes);
    pFree = pPiece->pNext;
    return reinterpret_cast<std::byte*>(pPiece);
}

void NodeStore::giveBack(FreePiece*& pFree, void* pPiece, std::size_t nBytes) noexcept {
    pFree = std::construct_at(static_cast<FreePiece*>(pPiece), FreePiece{pFree});
    forbidAccess(pPiece, nBytes);
}

NodeData& NodeStore::create(Kind kind, Document::Impl& document) {
    auto* const pNode = std::construct_at(reinterpret_cast<NodeData*>(take(pFreeNodes_, sizeof(NodeData))));
    pNode->kind = kind;
    pNode->pDocument = &document;
    ++nLiveNodes_;
    return *pNode;
}

void NodeStore::destroy(NodeData& node) noexcept {
    if (node.pText != nullptr)
        giveTextBack(node.pText, node.nTextSize);
    nLiveTextBytes_ -= node.nTextSize;
    --nLiveNodes_;
    giveBack(pFreeNodes_, &node, sizeof(NodeData));
}

char* NodeStore::takeText(std::size_t nSize) {
    const SizeClass sizeClass = sizeClassOf(nSize);
    return reinterpret_cast<char*>(take(aFreeTexts_.at(sizeClass.nIndex), sizeClass.nBytes));
}

void NodeStore::giveTextBack(char* pText, std::size_t nSize) noexcept {
    const SizeClass sizeClass = sizeClassOf(nSize);
    giveBack(aFreeTexts_[sizeClass.nIndex], pText, sizeClass.nBytes);
}

void NodeStore::setText(NodeData& node, std::string_view sText) {
    if (sText.size() > std::numeric_limits<std::uint32_t>::max())
        throw Failure::of(FailureNumber::Overflow);
    const bool bFits =
        node.pText != nullptr && sizeClassOf(sText.size()).nIndex == sizeClassOf(node.nTextSize).nIndex;
    char* const pText = sText.empty() ? nullptr : bFits ? node.pText : takeText(sText.size());
    if (pText != nullptr)
        std::memmove(pText, sText.data(), sText.size());
    if (node.pText != nullptr && node.pText != pText)
        giveTextBack(node.pText, node.nTextSize);
    nLiveTextBytes_ += sText.size();
    nLiveTextBytes_ -= node.nTextSize;
    node.pText = pText;
    node.nTextSize = static_cast<std::uint32_t>(sText.size());
}

void NodeStore::keepArenasOf(const NodeStore& other) {
    for (const auto& pArena : other.aKept_)
        if (std::find(aKept_.begin(), aKept_.end(), pArena) == aKept_.end())
            aKept_.push_back(pArena);
}

void NodeStore::countOver(NodeStore& other, const NodeData& node) noexcept {
    --other.nLiveNodes_;
    other.nLiveTextBytes_ -= node.nTextSize;
    ++nLiveNodes_;
    nLiveTextBytes_ += node.nTextSize;
}

} // namespace halvane::dom
