#include "engine/control/ControlNode.h"

#include "engine/ModExporter.h"
#include "engine/control/AttributeNames.h"
#include "engine/output/StreamRule.h"
#include "engine/second/SecondControl.h"

#include <memory>
#include <type_traits>

namespace halvane {

namespace {

bool isIgnored(dom::Node oNode) {
    return oNode.nodeType() == dom::NodeType::Comment ||
           oNode.nodeType() == dom::NodeType::ProcessingInstruction;
}

} // namespace

ControlTree::ControlTree(dom::Node oRoot, Root rootRule, dom::Document& oOutput, bool bIgnoreComments,
                         const ControlAttributes& inherited, const SecondEdition* pSecondEdition)
    : bIgnoreComments_(bIgnoreComments), settings_(oOutput) {
    const OwnSettings& own = settings_.ownOf(oRoot);
    const MergedSettings& merged = settings_.merge(own, inherited);
    ControlNode& root = add(oRoot, own, merged);
    pRoot_ = &root;
    if (pSecondEdition != nullptr && isOfSecondEdition(oRoot)) {
        pSecond_ = std::make_unique<SecondControl>(*pSecondEdition, oOutput);
        pSecond_->enterRoot(root);
    }
    if (rootRule == Root::OfDocument) {
        ControlAttributes handedDown = merged.attributes;
        handedDown.sLinkField = handedDown.sMeasureField = {};
        addElement(root, settings_.handedDown(merged, handedDown));
    } else {
        addElement(root, merged);
    }
    if (pSecond_ != nullptr)
        pSecond_->finish(root);
    root.bItemsStream = root.bRepeated && itemsCanStream(root);
}

ControlTree::~ControlTree() = default;

const std::vector<SecondProblem>& ControlTree::problems() const noexcept {
    static const std::vector<SecondProblem> none;
    return pSecond_ == nullptr ? none : pSecond_->problems();
}

ControlNode& ControlTree::add(dom::Node oNode, const OwnSettings& own, const MergedSettings& merged) {
    static_assert(std::is_trivially_destructible_v<ControlNode>);
    auto* const pPlace = reinterpret_cast<ControlNode*>(nodes_.allocate(sizeof(ControlNode)));
    return *std::construct_at(pPlace, oNode, own, merged);
}

void ControlTree::addElement(ControlNode& element, const MergedSettings& handedDown) {
    Writer writer{element};
    addChildren(element, handedDown, writer);
    markAttributeNames(writer.aAttributes);
}

void ControlTree::addChildren(ControlNode& parent, const MergedSettings& handedDown, Writer& writer) {
    const ControlNode** ppNext = &parent.pFirstChild;
    for (dom::Node oChild = parent.oNode.firstChild(); oChild; oChild = oChild.nextSibling()) {
        if (bIgnoreComments_ && isIgnored(oChild))
            continue;
        const OwnSettings& own = settings_.ownOf(oChild);
        const MergedSettings& merged = settings_.merge(own, handedDown);
        ControlNode& child = add(oChild, own, merged);
        if (pSecond_ != nullptr)
            pSecond_->enter(child, writer.node);
        if (child.bTargetsAttribute)
            writer.aAttributes.push_back(&child);
        const MergedSettings& down = keepsSource(child) ? settings_.withoutSource(merged) : merged;
        if (child.bTargetsAttribute || isDissolved(child))
            addChildren(child, down, writer);
        else
            addElement(child, down);
        if (pSecond_ != nullptr)
            pSecond_->leave();
        child.bItemsStream = child.bRepeated && itemsCanStream(child);
        child.bNamesField =
            !child.hasChildren() && child.pName != nullptr && merged.bNamesField && child.pSecond == nullptr;
        *ppNext = &child;
        ppNext = &child.pNextSibling;
    }
}

} // namespace halvane
