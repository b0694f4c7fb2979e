// Merging one tree into another.

#include "xml/ClsXMLManager.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace halvane {

using dom::NamedNodeMap;
using dom::Node;
using dom::NodeType;

namespace {

/// The target's attributes of the same names take the values, the others are added.
void copyAttributes(Node oTarget, const NamedNodeMap& oSourceAttributes) {
    for (const Node oAttribute : oSourceAttributes)
        oTarget.setAttribute(oAttribute.nodeName(), oAttribute.text());
}

/// The children as they are now: appending them elsewhere does not disturb the walk.
std::vector<Node> childrenOf(Node oNode) {
    std::vector<Node> aChildren;
    for (Node oChild = oNode.firstChild(); oChild; oChild = oChild.nextSibling())
        aChildren.push_back(oChild);
    return aChildren;
}

bool isTextNode(Node oNode) {
    return oNode.nodeType() == NodeType::Text;
}

/// Whether a target child and a source child are to be merged with each other.
using Matching = std::function<bool(Node, Node)>;

Node firstMatch(Node oTarget, Node oSourceChild, const Matching& fnMatches) {
    Node oChild = oTarget.firstChild();
    while (oChild && !fnMatches(oChild, oSourceChild))
        oChild = oChild.nextSibling();
    return oChild;
}

/// A target whose children are being merged with those of its source.
struct Level {
    Node oTarget;
    std::vector<Node> aSourceChildren;
    Matching fnMatches;
    std::string sKeyName; ///< for the levels beneath
    std::size_t nNext = 0;
};

/// Children without the key agree with each other: a missing key reads as "".
Level levelOfKeys(const ClsXMLManager& manager, Node oTarget, Node oSource, std::string_view sKeyName) {
    std::string sKey(sKeyName);
    const auto fnMatches = [&manager, sKey](Node t, Node s) {
        return manager.GetNodeAttributeValueByAttName(s, sKey) ==
               manager.GetNodeAttributeValueByAttName(t, sKey);
    };
    return {oTarget, childrenOf(oSource), fnMatches, std::move(sKey)};
}

std::nullopt_t moveChildren(Node oTarget, Node oSource) {
    for (const Node& oChild : childrenOf(oSource))
        oTarget.appendChild(oChild);
    return std::nullopt;
}

/// Merges two nodes, and what agrees beneath them in the order of a recursion, but at any depth of the trees.
/// @param fnBegin merges two nodes but for their children: nothing when those are done with, too.
template<class Begin>
void mergeTrees(Node oTarget, Node oSource, std::string_view sKeyName, Begin&& fnBegin) {
    std::vector<Level> aOpen;
    const auto begin = [&](Node oTo, Node oFrom, std::string_view sKey) {
        if (std::optional<Level> level = fnBegin(oTo, oFrom, sKey))
            aOpen.push_back(std::move(*level));
    };
    begin(oTarget, oSource, sKeyName);
    while (!aOpen.empty()) {
        Level& level = aOpen.back();
        if (level.nNext == level.aSourceChildren.size()) {
            aOpen.pop_back();
            continue;
        }
        const Node oChild = level.aSourceChildren[level.nNext++];
        if (const Node oMatch = firstMatch(level.oTarget, oChild, level.fnMatches))
            begin(oMatch, oChild, std::string(level.sKeyName));
        else
            level.oTarget.appendChild(oChild);
    }
}

bool haveSameName(Node oTarget, Node oSource) {
    return oTarget.nodeName() == oSource.nodeName();
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
    mergeTrees(TargetNode, SourceNode, KeyName,
               [this](Node t, Node s, std::string_view sKey) -> std::optional<Level> {
                   const NamedNodeMap oSourceAttributes = s.attributes();
                   if (oSourceAttributes && t.attributes())
                       copyAttributes(t, oSourceAttributes);
                   if (!t.hasChildNodes())
                       return moveChildren(t, s);
                   return levelOfKeys(*this, t, s, sKey);
               });
}

void ClsXMLManager::Merge(Node oXmlDocIn, Node oExistingDom, std::string_view KeyName) const {
    UpdateNodes(rootOf(subject(oExistingDom)), rootOf(oXmlDocIn), KeyName);
}

void ClsXMLManager::UpdateAllNodes(Node TargetNode, Node SourceNode, std::string_view KeyName) const {
    if (!TargetNode)
        return;
    mergeTrees(TargetNode, SourceNode, KeyName,
               [this](Node t, Node s, std::string_view sKey) -> std::optional<Level> {
                   // A target that cannot have attributes fails at the first one.
                   if (const NamedNodeMap oSourceAttributes = s.attributes())
                       copyAttributes(t, oSourceAttributes);
                   if (!s.hasChildNodes()) {
                       if (isTextNode(t) && isTextNode(s))
                           t.setText(s.text());
                       return std::nullopt;
                   }
                   if (!t.hasChildNodes())
                       return moveChildren(t, s);
                   if (HasDuplicateNodeNames(s) || HasDuplicateNodeNames(t))
                       return levelOfKeys(*this, t, s, sKey);
                   // This key, not the caller's.
                   return Level{t, childrenOf(s), haveSameName, "TagName"};
               });
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
