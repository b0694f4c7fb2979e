#pragma once

#include "io/Spool.h"
#include "xml/dom/NodeData.h"

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace halvane::dom {

/// With more nodes than that beside the sealed items, a document's file is written anew instead of looking
/// whether the spool's can be it.
inline constexpr std::size_t mostNodesAroundSpool = 100'000;

/// Turns completed items of one document into bytes in a spool and gives their nodes back. A placeholder
/// stays between the item's siblings; placeholders that touch become one, so that a long row of sealed items
/// costs one node and, as long as their bytes lie one after the other, one range.
class Sealing {
public:
    using Ranges = std::vector<io::Spool::Range>;

    explicit Sealing(Document::Impl& document) : document_(document) {}

    void setFolder(std::string sFolder) { sFolder_ = std::move(sFolder); }
    /// @throws Failure DeviceIo when the spool cannot be written, now and ever after.
    void markComplete(NodeData& item);
    /// To be called before a node goes or leaves the document.
    void forget(const NodeData& node) noexcept;

    // For an ItemStream.

    /// The placeholder at the parent's end, a new one if need be. Nothing is sealed until endStream.
    /// @throws Failure DeviceIo when the spool is broken.
    [[nodiscard]] NodeData& beginStream(NodeData& parent);
    /// Adds what was written since, and takes the placeholder out again if it stands for nothing.
    void endStream(NodeData& placeholder, const io::Spool::Range& range) noexcept;
    [[nodiscard]] bool standsForItems(const NodeData& placeholder) const;
    [[nodiscard]] io::Spool& spool();

    /// Whether the placeholder stands for all that was ever sealed.
    [[nodiscard]] bool standsForAll(const NodeData& placeholder) const;

    /// Puts what a placeholder stands for. @throws Failure DeviceIo when the spool cannot be read.
    void pour(const NodeData& placeholder, io::OutputBuffer& out);
    /// @throws Failure DeviceIo when a part of the document was lost because the spool could not be written.
    void requireWholeSpool() const;

    /// Lets the placeholder `copy` stand for what `original` stands for.
    void copyPlaceholder(const NodeData& original, const NodeData& copy);
    /// Lets another document's placeholder stand for the same here: its bytes go into this one's spool.
    void copyFrom(Sealing& other, const NodeData& placeholder);

    [[nodiscard]] const CharacterRepairs& repairs() const noexcept { return repairs_; }
    [[nodiscard]] CharacterRepairs& repairs() noexcept { return repairs_; }
    [[nodiscard]] std::uint64_t spooledBytes() const noexcept {
        return pSpool_ == nullptr ? 0 : pSpool_->size();
    }

private:
    [[nodiscard]] std::string headOfStream() const;
    void sealPending();
    void seal(NodeData& item);
    [[nodiscard]] Ranges spoolItem(const NodeData& item, bool bBreakFirst, bool bBreakLast);
    void replaceByPlaceholder(NodeData& item, Ranges aRanges);

    Document::Impl& document_;
    std::string sFolder_;
    std::unique_ptr<io::Spool> pSpool_;
    std::unordered_map<const NodeData*, Ranges> rangesByPlaceholder_;
    std::vector<NodeData*> aPending_; ///< in the order in which they were completed
    std::size_t nNodesAfterSealing_ = 0;
    const NodeData* pStreaming_ = nullptr; ///< the placeholder of the open stream
    CharacterRepairs repairs_;
};

} // namespace halvane::dom
