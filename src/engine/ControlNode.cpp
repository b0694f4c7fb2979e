#include "engine/ControlNode.h"

#include "collection/Text.h"
#include "engine/ModExporter.h"
#include "engine/StreamRule.h"

namespace halvane {

namespace {

std::string_view inherited(std::string_view sOwn, std::string_view sOfParent) {
    return sOwn.empty() ? sOfParent : sOwn;
}

bool sameBinding(const ControlAttributes& own) {
    return own.sDataSource.empty() && own.sDataFrame.empty() && own.sIdentity.empty() &&
           own.sIdentityValue.empty() && own.sDataLocation.empty();
}

/// Whether a leaf's kind reads the row at hand: a feature's field, or a record's while the table's name is
/// not asked for.
bool namesField(const ControlNode& leaf) {
    switch (leaf.pBinding->kind) {
    case DataSourceKind::Feature:
        return !leaf.bNamesObjectId;
    case DataSourceKind::Record:
    case DataSourceKind::Table:
        return !equalIgnoringCase(leaf.merged.sDataProperty, "TableName");
    default:
        return false;
    }
}

bool isIgnored(dom::Node oNode) {
    return oNode.nodeType() == dom::NodeType::Comment ||
           oNode.nodeType() == dom::NodeType::ProcessingInstruction;
}

} // namespace

ControlAttributes mergedAttributes(const ControlAttributes& own, const ControlAttributes& parent) {
    return {inherited(own.sDataSource, parent.sDataSource),
            inherited(own.sDataFrame, parent.sDataFrame),
            inherited(own.sDataProperty, parent.sDataProperty),
            inherited(own.sIdentity, parent.sIdentity),
            inherited(own.sIdentityValue, parent.sIdentityValue),
            inherited(own.sEntries, parent.sEntries),
            own.sTarget, // it applies to the one node that declares it, on purpose
            inherited(own.sDataLocation, parent.sDataLocation),
            inherited(own.sLinkField, parent.sLinkField),
            inherited(own.sMeasureField, parent.sMeasureField),
            inherited(own.sDecimalPlace, parent.sDecimalPlace)};
}

ControlTree::ControlTree(dom::Node oRoot, Root rootRule, dom::Document& oOutput, bool bIgnoreComments,
                         const ControlAttributes& inherited)
    : oOutput_(oOutput), bIgnoreComments_(bIgnoreComments) {
    ControlNode& root = add(oRoot, inherited, nullptr);
    ControlAttributes handedDown = root.merged;
    if (rootRule == Root::OfDocument)
        handedDown.sLinkField = handedDown.sMeasureField = {};
    addChildren(root, handedDown);
    root.bItemsStream = root.bRepeated && itemsCanStream(root);
}

ControlNode& ControlTree::add(dom::Node oNode, const ControlAttributes& inherited,
                              const Binding* pInherited) {
    const ClsXMLNode record(oNode);
    ControlNode& node = aNodes_.emplace_back();
    node.oNode = oNode;
    node.own = record.attributes();
    node.merged = mergedAttributes(node.own, inherited);
    node.pBinding =
        pInherited != nullptr && sameBinding(node.own) ? pInherited : &aBindings_.emplace_back(node.merged);
    bAsksProcessors_ = bAsksProcessors_ || node.merged.sDataSource == "External";
    node.sTagName = record.TagName();
    node.pName = oOutput_.findName(node.sTagName);
    node.bTargetsAttribute = node.own.sTarget == "Attribute";
    node.bRepeated = node.own.sEntries == "Multiple";
    node.bNamesObjectId = namesObjectId(node.merged.sIdentityValue);
    node.bNamesAttribute =
        node.own.sDataSource == "FeatureAttributes" || node.own.sDataSource == "FeatureTable";
    node.geometryProperty = geometryPropertyOf(node.own.sDataProperty);
    node.decimalPlaces = DecimalPlaces(node.merged.sDecimalPlace);
    node.ownDecimalPlaces = DecimalPlaces(node.own.sDecimalPlace);
    return node;
}

void ControlTree::addChildren(ControlNode& parent, const ControlAttributes& handedDown) {
    const ControlNode** ppNext = &parent.pFirstChild;
    for (dom::Node oChild = parent.oNode.firstChild(); oChild; oChild = oChild.nextSibling()) {
        if (bIgnoreComments_ && isIgnored(oChild))
            continue;
        ControlNode& child = add(oChild, handedDown, parent.pBinding);
        addChildren(child, child.merged);
        child.bItemsStream = child.bRepeated && itemsCanStream(child);
        child.bNamesField = !child.hasChildren() && child.pName != nullptr && namesField(child);
        *ppNext = &child;
        ppNext = &child.pNextSibling;
    }
}

} // namespace halvane
