#pragma once

#include "engine/ExportTrace.h"
#include "run/preview/PreviewNotes.h"
#include "xml/dom/Dom.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace halvane {

/// Ends repeated nodes after their first items, and finds out which control node wrote each element of the
/// document and why: what has come to the tree since the step before is of the nodes at work.
class PreviewTrace final : public ExportTrace {
public:
    /// @param nItems of each repeated node, at least 1. @param bExplains whether reasons are looked for.
    PreviewTrace(std::uint64_t nItems, bool bExplains) : nItems_(nItems), bExplains_(bExplains) {}

    void nodeBegins(const ExportState& state, const ControlNode& control) override;
    void nodeEnds(const ExportState& state, const ControlNode& control) override;
    [[nodiscard]] bool itemBegins(const ExportState& state, const ControlNode& repeated) override;
    void itemEnds(const ExportState& state, const ControlNode& repeated) override;
    void conditionFails(const ExportState& state, const ControlNode& control) override;
    void failed(const Failure& failure) override;
    void noticed(Notice notice, std::string_view sDetail) override;
    void documentComplete(const ExportState& state) override;

    /// Once the document is complete.
    [[nodiscard]] const PreviewNotes& notes() const noexcept { return notes_; }

private:
    /// A control node at work, or an item of it.
    struct Step {
        const ControlNode* pControl = nullptr;
        bool bItem = false;
        bool bExplained = false;
        bool bWithItems = false;
        bool bFoundNothing = false; ///< its data source names nothing
        bool bCut = false;          ///< it has more items than are wanted
        std::uint64_t nItems = 0;   ///< so far
        std::uint64_t nSkipped = 0; ///< of them, those whose condition does not hold
        std::uint64_t nNumber = 0;  ///< of an item, from 1
        std::size_t nInside = 0;    ///< procedures that work on the same node inside it
        dom::NodeData* pElement = nullptr;
        dom::NodeData* pLastItem = nullptr; ///< the element of its last item
        dom::NodeData* pAround = nullptr;   ///< of one that has ended: the element around
        std::vector<std::string> reasons = {};
        std::string sWhyNothing = {};
    };
    struct KnownElement {
        PreviewNotes::Element element;
        const dom::NodeData* pParent = nullptr;
        std::string sName;
    };
    /// A remark before elements have numbers.
    struct Anchored {
        PreviewRemark remark;
        const dom::NodeData* pParent;
        const dom::NodeData* pAfter;
    };

    void begin(const ExportState& state, const ControlNode& control, bool bItem);
    void end(const ExportState& state);
    void close(Step step);
    void closeAttribute(Step& step);
    void closeElement(Step& step);
    void explain(const ExportState& state, Step& step);
    [[nodiscard]] std::string whyNothing(const Step& step) const;
    [[nodiscard]] std::string moreOf(const ControlNode& repeated) const;
    void remark(const ControlNode& control, std::string sText, const dom::NodeData* pParent, bool bMore);
    [[nodiscard]] const dom::NodeData* aroundItems(const Step& loop) const;
    [[nodiscard]] dom::Node elementAround() const;

    [[nodiscard]] bool isKnown(dom::Node oElement) const;
    void takeNew(const ExportState& state);
    void takeNewIn(dom::Node oElement);
    void take(dom::Node oElement);
    [[nodiscard]] Step* writerOf(dom::Node oElement);
    [[nodiscard]] Step* itemOfCopy(dom::Node oElement);
    void add(dom::Node oElement, const ControlNode& control, bool bPart);

    std::uint64_t nItems_;
    bool bExplains_;
    std::deque<Step> steps_; ///< the innermost last
    const ControlNode* pRoot_ = nullptr;
    dom::Node oRoot_;
    dom::Node oLastElement_; ///< in document order
    std::unordered_map<const dom::NodeData*, KnownElement> elements_;
    std::vector<Anchored> remarks_;
    PreviewNotes notes_;
};

} // namespace halvane
