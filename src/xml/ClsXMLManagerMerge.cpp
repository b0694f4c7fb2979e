// Merging one tree into another.

#include "xml/ClsXMLManager.h"

#include <functional>
#include <vector>

namespace halvane {

using dom::NamedNodeMap;
using dom::Node;
using dom::NodeType;

namespace {

void setAttributeByName(const NamedNodeMap& oAttributes, std::int32_t lLength, Node oTarget, Node oSource) {
    for (std::int32_t l = 0; l < lLength; ++l) {
        Node oAttribute = oAttributes.item(l);
        if (oAttribute.nodeName() == oSource.nodeName()) {
            oAttribute.setText(oSource.text());
            return;
        }
    }
    oTarget.setAttribute(oSource.nodeName(), oSource.text());
}

/// The target's attributes are counted once: what is added here is not searched.
void copyAttributes(Node oTarget, const NamedNodeMap& oSourceAttributes) {
    const NamedNodeMap oAttributes = oTarget.attributes();
    const std::int32_t lTargets = oAttributes ? oAttributes.length() : 0;
    const std::int32_t lSources = oSourceAttributes.length();
    for (std::int32_t l = 0; l < lSources; ++l)
        setAttributeByName(oAttributes, lTargets, oTarget, oSourceAttributes.item(l));
}

/// The children as they are now: appending them elsewhere does not disturb the walk.
std::vector<Node> childrenOf(Node oNode) {
    std::vector<Node> aChildren;
    for (Node oChild = oNode.firstChild(); oChild; oChild = oChild.nextSibling())
        aChildren.push_back(oChild);
    return aChildren;
}

void moveChildren(Node oTarget, Node oSource) {
    for (const Node& oChild : childrenOf(oSource))
        oTarget.appendChild(oChild);
}

Node firstChildWhere(Node oParent, const std::function<bool(Node)>& fnMatches) {
    Node oChild = oParent.firstChild();
    while (oChild && !fnMatches(oChild))
        oChild = oChild.nextSibling();
    return oChild;
}

bool isTextNode(Node oNode) {
    return oNode.nodeType() == NodeType::Text;
}

/// Calls `fnMerge` for every source child with the target child that matches it; appends those without one.
void mergeChildren(Node oTarget, Node oSource, const std::function<bool(Node, Node)>& fnMatches,
                   const std::function<void(Node, Node)>& fnMerge) {
    for (const Node& oChild : childrenOf(oSource)) {
        const Node oMatch =
            firstChildWhere(oTarget, [&](Node oCandidate) { return fnMatches(oCandidate, oChild); });
        if (oMatch)
            fnMerge(oMatch, oChild);
        else
            oTarget.appendChild(oChild);
    }
}

Node rootOf(Node oDocument) {
    if (!oDocument)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return oDocument.ownerDocument().documentElement();
}

} // namespace

void ClsXMLManager::UpdateNodes(Node TargetNode, Node SourceNode, std::string_view KeyName) const {
    if (!TargetNode)
        return;
    const NamedNodeMap oSourceAttributes = SourceNode.attributes();
    if (oSourceAttributes && TargetNode.attributes())
        copyAttributes(TargetNode, oSourceAttributes);
    if (!TargetNode.hasChildNodes()) {
        moveChildren(TargetNode, SourceNode);
        return;
    }
    // Children without the key agree with each other: a missing key reads as "".
    mergeChildren(
        TargetNode, SourceNode,
        [&](Node t, Node s) {
            return GetNodeAttributeValueByAttName(s, KeyName) == GetNodeAttributeValueByAttName(t, KeyName);
        },
        [&](Node t, Node s) { UpdateNodes(t, s, KeyName); });
}

void ClsXMLManager::Merge(Node oXmlDocIn, Node oExistingDom, std::string_view KeyName) const {
    UpdateNodes(rootOf(subject(oExistingDom)), rootOf(oXmlDocIn), KeyName);
}

void ClsXMLManager::UpdateAllNodes(Node TargetNode, Node SourceNode, std::string_view KeyName) const {
    if (!TargetNode)
        return;
    // A target that cannot have attributes fails at the first one.
    if (const NamedNodeMap oSourceAttributes = SourceNode.attributes())
        copyAttributes(TargetNode, oSourceAttributes);
    if (!SourceNode.hasChildNodes()) {
        if (isTextNode(TargetNode) && isTextNode(SourceNode))
            TargetNode.setText(SourceNode.text());
        return;
    }
    if (!TargetNode.hasChildNodes()) {
        moveChildren(TargetNode, SourceNode);
        return;
    }
    if (!HasDuplicateNodeNames(SourceNode) && !HasDuplicateNodeNames(TargetNode))
        mergeChildren(
            TargetNode, SourceNode, [](Node t, Node s) { return t.nodeName() == s.nodeName(); },
            [&](Node t, Node s) { UpdateAllNodes(t, s, "TagName"); }); // this key, not the caller's
    else
        mergeChildren(
            TargetNode, SourceNode,
            [&](Node t, Node s) {
                return GetNodeAttributeValueByAttName(t, KeyName) ==
                       GetNodeAttributeValueByAttName(s, KeyName);
            },
            [&](Node t, Node s) { UpdateAllNodes(t, s, KeyName); });
}

void ClsXMLManager::MergeAll(Node SourceDOM, Node TargetDOM, std::string_view KeyName) const {
    const Node oTarget = subject(TargetDOM);
    if (oTarget && SourceDOM)
        UpdateAllNodes(rootOf(oTarget), rootOf(SourceDOM), KeyName);
}

bool ClsXMLManager::HasDuplicateNodeNames(Node pXMLNode) const {
    dCollection dNames;
    std::int32_t lLength = 0;
    for (Node oChild = pXMLNode.firstChild(); oChild; oChild = oChild.nextSibling()) {
        const std::string sName(oChild.nodeName());
        dNames.Add(sName, sName);
        ++lLength;
    }
    return lLength > dNames.Count();
}

} // namespace halvane
