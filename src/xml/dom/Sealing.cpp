#include "xml/dom/Sealing.h"

#include "xml/dom/DocumentImpl.h"
#include "xml/dom/TreeEditing.h"
#include "xml/dom/XmlWriter.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace halvane::dom {

namespace {

/// Sealing starts when that many nodes have come since the last time. Measured on 1,000,000 items of 21
/// nodes: 256 to 16,384 take the same time; with 65,536 the nodes no longer fit the processor's cache, and it
/// is a tenth slower.
constexpr std::size_t sealThreshold = 2048;

bool hasCompleteAncestor(const NodeData& node) noexcept {
    for (const NodeData* pAncestor = node.pParent; pAncestor != nullptr; pAncestor = pAncestor->pParent)
        if (pAncestor->bComplete)
            return true;
    return false;
}

bool isPlaceholder(const NodeData* pNode) noexcept {
    return pNode != nullptr && pNode->kind == Kind::Placeholder;
}

/// Adds a range at the end; bytes that follow each other stay one range.
void append(Sealing::Ranges& aRanges, const io::Spool::Range& range) {
    if (range.nBytes == 0)
        return;
    if (!aRanges.empty() && aRanges.back().nOffset + aRanges.back().nBytes == range.nOffset)
        aRanges.back().nBytes += range.nBytes;
    else
        aRanges.push_back(range);
}

/// All or nothing.
void append(Sealing::Ranges& aRanges, const Sealing::Ranges& aMore) {
    const std::size_t nNeeded = aRanges.size() + aMore.size();
    if (aRanges.capacity() < nNeeded)
        aRanges.reserve(std::max(nNeeded, 2 * aRanges.capacity()));
    for (const auto& range : aMore)
        append(aRanges, range);
}

} // namespace

io::Spool& Sealing::spool() {
    if (pSpool_ == nullptr)
        pSpool_ = std::make_unique<io::Spool>(sFolder_, [this] { return headOfStream(); });
    return *pSpool_;
}

void Sealing::requireWholeSpool() const {
    if (pSpool_ != nullptr)
        pSpool_->requireWhole();
}

void Sealing::markComplete(NodeData& item) {
    requireWholeSpool();
    // The root element stays: a document has one.
    if (item.bComplete || item.pParent->kind == Kind::Document)
        return;
    aPending_.push_back(&item);
    item.bComplete = true;
    if (pStreaming_ == nullptr && document_.store.liveNodes() >= nNodesAfterSealing_ + sealThreshold)
        sealPending();
}

NodeData& Sealing::beginStream(NodeData& parent) {
    if (pStreaming_ != nullptr)
        throw Failure(FailureNumber::ActionNotSupported,
                      "only one item stream of a document is open at a time");
    requireWholeSpool();
    (void)spool();
    NodeData* pPlaceholder = parent.pLastChild;
    if (!isPlaceholder(pPlaceholder)) {
        pPlaceholder = &document_.store.create(Kind::Placeholder, document_);
        rangesByPlaceholder_.emplace(pPlaceholder, Ranges());
        link(parent, *pPlaceholder, nullptr);
    }
    // Room for what endStream adds.
    Ranges& aRanges = rangesByPlaceholder_.at(pPlaceholder);
    if (aRanges.size() == aRanges.capacity())
        aRanges.reserve(2 * aRanges.size() + 1);
    pStreaming_ = pPlaceholder;
    return *pPlaceholder;
}

void Sealing::endStream(NodeData& placeholder, const io::Spool::Range& range) noexcept {
    pStreaming_ = nullptr;
    Ranges& aRanges = rangesByPlaceholder_.find(&placeholder)->second;
    append(aRanges, range);
    if (!aRanges.empty())
        return;
    unlink(placeholder);
    destroyTree(placeholder);
}

// What stands in front of the streamed items as the tree is now: most often that is what it is when the
// document is saved, and then the file with the items need not be copied.
std::string Sealing::headOfStream() const {
    std::string sHead;
    if (pStreaming_ == nullptr || document_.store.liveNodes() > mostNodesAroundSpool)
        return sHead;
    std::size_t nBytes = 0;
    io::StringSink sink(sHead);
    io::OutputBuffer out(sink, 1U << 12U);
    CharacterRepairs ignored;
    XmlWriter writer(out, Breaks::BetweenTags, ignored, [&](const NodeData& placeholder) {
        out.flush();
        if (&placeholder == pStreaming_)
            nBytes = sHead.size();
    });
    writer.write(document_.documentNode);
    sHead.resize(nBytes);
    return sHead;
}

bool Sealing::standsForAll(const NodeData& placeholder) const {
    const Ranges& aRanges = rangesByPlaceholder_.at(&placeholder);
    return aRanges.size() == 1 && aRanges.front().nOffset == 0 && aRanges.front().nBytes == spooledBytes();
}

bool Sealing::standsForItems(const NodeData& placeholder) const {
    return !rangesByPlaceholder_.at(&placeholder).empty();
}

void Sealing::forget(const NodeData& node) noexcept {
    if (node.bComplete)
        std::erase(aPending_, &node);
    if (node.kind == Kind::Placeholder)
        rangesByPlaceholder_.erase(&node);
}

void Sealing::sealPending() {
    const std::vector<NodeData*> aItems = std::exchange(aPending_, {});
    for (NodeData* const pItem : aItems)
        if (pItem->pParent == nullptr)
            pItem->bComplete = false; // it was taken out of the tree: it stays
    std::vector<NodeData*> aOutermost;
    std::copy_if(aItems.begin(), aItems.end(), std::back_inserter(aOutermost),
                 [](const NodeData* pItem) { return pItem->bComplete && !hasCompleteAncestor(*pItem); });
    for (NodeData* const pItem : aOutermost)
        seal(*pItem);
    nNodesAfterSealing_ = document_.store.liveNodes();
}

void Sealing::seal(NodeData& item) {
    Ranges aRanges = spoolItem(item, isPlaceholder(item.pPrevious), isPlaceholder(item.pNext));
    replaceByPlaceholder(item, std::move(aRanges));
}

Sealing::Ranges Sealing::spoolItem(const NodeData& item, bool bBreakFirst, bool bBreakLast) {
    io::Spool& bytes = spool();
    Ranges aRanges;
    std::uint64_t nBegin = bytes.size();
    const auto endRange = [&] {
        append(aRanges, {nBegin, bytes.size() - nBegin});
        nBegin = bytes.size();
    };
    XmlWriter writer(bytes.out(), Breaks::BetweenTags, repairs_, [&](const NodeData& placeholder) {
        endRange();
        append(aRanges, rangesByPlaceholder_.at(&placeholder));
    });
    const std::string sBreak = breakBeside(item);
    if (bBreakFirst)
        bytes.out().put(sBreak);
    writer.write(item);
    if (bBreakLast)
        bytes.out().put(sBreak);
    endRange();
    return aRanges;
}

void Sealing::replaceByPlaceholder(NodeData& item, Ranges aRanges) {
    NodeData& parent = *item.pParent;
    if (isPlaceholder(item.pPrevious)) {
        append(rangesByPlaceholder_.at(item.pPrevious), aRanges);
    } else {
        NodeData& placeholder = document_.store.create(Kind::Placeholder, document_);
        rangesByPlaceholder_.emplace(&placeholder, std::move(aRanges));
        link(parent, placeholder, &item);
    }
    NodeData& placeholder = *item.pPrevious;
    NodeData* const pNext = item.pNext;
    unlink(item);
    destroyTree(item);
    if (isPlaceholder(pNext)) {
        append(rangesByPlaceholder_.at(&placeholder), rangesByPlaceholder_.at(pNext));
        unlink(*pNext);
        destroyTree(*pNext);
    }
}

void Sealing::pour(const NodeData& placeholder, io::OutputBuffer& out) {
    for (const auto& range : rangesByPlaceholder_.at(&placeholder))
        spool().copy(range, out);
}

void Sealing::copyPlaceholder(const NodeData& original, const NodeData& copy) {
    rangesByPlaceholder_.insert_or_assign(&copy, rangesByPlaceholder_.at(&original));
}

void Sealing::copyFrom(Sealing& other, const NodeData& placeholder) {
    io::Spool& bytes = spool();
    const std::uint64_t nBegin = bytes.size();
    other.pour(placeholder, bytes.out());
    Ranges aRanges;
    append(aRanges, {nBegin, bytes.size() - nBegin});
    rangesByPlaceholder_.insert_or_assign(&placeholder, std::move(aRanges));
}

} // namespace halvane::dom
