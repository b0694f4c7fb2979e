// Lists of nodes: children and descendants live, selections as they were.

#include "xml/dom/NodeListSources.h"

#include <limits>

namespace halvane::dom {

namespace {

/// A live list. It remembers where it stands as long as nothing changes, so that walking it by index takes
/// one step per node.
class LiveSource : public NodeList::Source {
public:
    std::int32_t length() final {
        discardWhenStale();
        if (lLength_ < 0) {
            std::int32_t lCount = pCurrent_ == nullptr ? 0 : lCurrent_ + 1;
            NodeData* pNode = pCurrent_ == nullptr ? first() : next(*pCurrent_);
            for (; pNode != nullptr && lCount < std::numeric_limits<std::int32_t>::max();
                 pNode = next(*pNode))
                ++lCount;
            lLength_ = lCount;
        }
        return lLength_;
    }

    Node item(std::int32_t lIndex) final {
        discardWhenStale();
        if (lIndex < 0 || (lLength_ >= 0 && lIndex >= lLength_))
            return {};
        if (pCurrent_ == nullptr || lIndex < lCurrent_) {
            pCurrent_ = first();
            lCurrent_ = 0;
        }
        while (pCurrent_ != nullptr && lCurrent_ < lIndex) {
            pCurrent_ = next(*pCurrent_);
            ++lCurrent_;
        }
        if (pCurrent_ == nullptr)
            lLength_ = lCurrent_; // walked beyond the end: now it is known
        return Node(pCurrent_);
    }

protected:
    [[nodiscard]] virtual std::uint64_t version() const noexcept = 0;
    [[nodiscard]] virtual NodeData* first() const noexcept = 0;
    [[nodiscard]] virtual NodeData* next(NodeData& node) const noexcept = 0;

private:
    void discardWhenStale() noexcept {
        if (nVersion_ == version())
            return;
        nVersion_ = version();
        pCurrent_ = nullptr;
        lLength_ = -1;
    }

    std::uint64_t nVersion_ = std::numeric_limits<std::uint64_t>::max();
    NodeData* pCurrent_ = nullptr;
    std::int32_t lCurrent_ = 0;
    std::int32_t lLength_ = -1; ///< not counted yet
};

class ChildSource : public LiveSource {
public:
    explicit ChildSource(NodeData& parent) : parent_(parent) {}

protected:
    std::uint64_t version() const noexcept override { return parent_.nChildrenVersion; }
    NodeData* first() const noexcept override { return skipPlaceholders(parent_.pFirstChild); }
    NodeData* next(NodeData& node) const noexcept override { return skipPlaceholders(node.pNext); }

private:
    NodeData& parent_;
};

class DescendantSource : public LiveSource {
public:
    DescendantSource(NodeData& top, std::string_view sName) : top_(top), sName_(sName) {}

protected:
    std::uint64_t version() const noexcept override { return top_.pDocument->nVersion; }
    NodeData* first() const noexcept override { return next(top_); }
    NodeData* next(NodeData& node) const noexcept override {
        NodeData* pNode = following(&node, &top_);
        while (pNode != nullptr && !matches(*pNode))
            pNode = following(pNode, &top_);
        return pNode;
    }

private:
    [[nodiscard]] bool matches(const NodeData& node) const noexcept {
        return node.kind == Kind::Element && (sName_ == "*" || node.pName->sQualified == sName_);
    }

    NodeData& top_;
    std::string sName_;
};

class SnapshotSource : public NodeList::Source {
public:
    explicit SnapshotSource(std::vector<Node> aNodes) : aNodes_(std::move(aNodes)) {}

    std::int32_t length() override { return static_cast<std::int32_t>(aNodes_.size()); }
    Node item(std::int32_t lIndex) override {
        return lIndex < 0 || lIndex >= length() ? Node() : aNodes_[static_cast<std::size_t>(lIndex)];
    }

private:
    std::vector<Node> aNodes_;
};

} // namespace

NodeList listOfChildren(NodeData& parent) {
    return NodeList(std::make_shared<ChildSource>(parent));
}

NodeList listOfDescendants(NodeData& top, std::string_view sName) {
    return NodeList(std::make_shared<DescendantSource>(top, sName));
}

NodeList listOf(std::vector<Node> aNodes) {
    return NodeList(std::make_shared<SnapshotSource>(std::move(aNodes)));
}

NodeList::NodeList(std::shared_ptr<Source> pSource) : pSource_(std::move(pSource)) {}

std::int32_t NodeList::length() const {
    if (pSource_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return pSource_->length();
}

Node NodeList::item(std::int32_t lIndex) const {
    if (pSource_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return pSource_->item(lIndex);
}

Node NodeList::nextNode() {
    if (pSource_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return pSource_->nextNode();
}

void NodeList::reset() {
    if (pSource_ == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    pSource_->reset();
}

} // namespace halvane::dom
