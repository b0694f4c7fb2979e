// Creating and inserting nodes.

#include "xml/ClsXMLManager.h"

namespace halvane {

using dom::Node;

namespace {

constexpr auto elementType = static_cast<std::int32_t>(dom::NodeType::Element);

void setAttributes(Node oElement, const dCollection* dAttributes) {
    if (dAttributes == nullptr)
        return;
    for (const auto& sKey : dAttributes->ReturnKeys())
        oElement.setAttribute(sKey, dAttributes->GetValueString(sKey));
}

/// Attributes that cannot be set are skipped.
void setPossibleAttributes(Node oElement, const dCollection& dAttributes) {
    for (const auto& sKey : dAttributes.ReturnKeys()) {
        try {
            oElement.setAttribute(sKey, dAttributes.GetValueString(sKey));
        } catch (const Failure&) { // NOLINT(bugprone-empty-catch): the next one follows
        }
    }
}

} // namespace

Node ClsXMLManager::CreateNode(std::string_view sName, const dCollection* dAttributes,
                               std::int32_t intNodeType, Node oDocument) const {
    const Node oSubject = subject(oDocument);
    if (!oSubject || intNodeType != elementType)
        return {};
    Node oElement;
    try {
        oElement = oSubject.ownerDocument().createNode(intNodeType, sName, "");
    } catch (const Failure&) {
        return {};
    }
    if (dAttributes != nullptr)
        setPossibleAttributes(oElement, *dAttributes);
    return oElement;
}

Node ClsXMLManager::InsertNode(std::string& strPath2ParentNode, std::string_view sNodeName, bool bOverwrite,
                               std::int16_t NodeType, const dCollection* dNodeAttributes, Node oDocument) {
    try {
        return insert(strPath2ParentNode, sNodeName, bOverwrite, NodeType, dNodeAttributes, oDocument);
    } catch (...) {
        recordFailure(currentFailure());
        return {};
    }
}

Node ClsXMLManager::insert(std::string& strPath2ParentNode, std::string_view sNodeName, bool bOverwrite,
                           std::int16_t NodeType, const dCollection* dNodeAttributes, Node oDocument) {
    const Node oSubject = subject(oDocument);
    Node oParent;
    std::string sPath(sNodeName);
    if (strPath2ParentNode.ends_with('/'))
        strPath2ParentNode.pop_back();
    if (!strPath2ParentNode.empty()) {
        oParent = oSubject.selectSingleNode(strPath2ParentNode);
        sPath.insert(0, strPath2ParentNode + "/");
    }
    if (!oParent)
        oParent = oSubject.ownerDocument().documentElement();
    Node oNode = oSubject.selectSingleNode(sPath);
    if (oNode && !bOverwrite)
        return oNode;
    if (!oNode)
        oNode = oSubject.ownerDocument().createNode(NodeType, sNodeName, "");
    setAttributes(oNode, dNodeAttributes);
    return oParent.appendChild(oNode);
}

Node ClsXMLManager::InsertNodeUnder(Node pParentNode, Node oNode, bool bClone) const {
    if (!pParentNode)
        return {};
    return pParentNode.appendChild(bClone ? oNode.cloneNode(true) : oNode);
}

} // namespace halvane
