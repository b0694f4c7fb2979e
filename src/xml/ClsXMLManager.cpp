// Loading, saving and queries.

#include "xml/ClsXMLManager.h"

#include "base/Text.h"

#include <limits>

namespace halvane {

using dom::Node;
using dom::NodeList;

namespace {

constexpr std::int32_t stateCompleted = 4;
constexpr std::string_view nameOfUnnamedFile = "XMLTest.xml";

std::string withPathPrefix(std::string_view sNodeName) {
    std::string sPath(sNodeName);
    if (sPath.find("//") == std::string::npos)
        sPath.insert(0, "//");
    return sPath;
}

/// The first node of the list whose attribute of that name has exactly that value.
Node firstWithAttribute(NodeList& oNodes, std::string_view sAttributeName, std::string_view sValue) {
    for (Node oNode = oNodes.nextNode(); oNode; oNode = oNodes.nextNode()) {
        const auto oAttributes = oNode.attributes();
        if (!oAttributes)
            continue;
        const Node oAttribute = oAttributes.getNamedItem(sAttributeName);
        if (oAttribute && oAttribute.nodeValue() == sValue)
            return oNode;
    }
    return {};
}

std::int16_t toInt16(std::int32_t lNumber) {
    if (lNumber < std::numeric_limits<std::int16_t>::min() ||
        lNumber > std::numeric_limits<std::int16_t>::max())
        throw Failure::of(FailureNumber::Overflow);
    return static_cast<std::int16_t>(lNumber);
}

/// The error trap of the queries: a failure ends the query with the result as it stands.
template<class Query>
void trapped(Query&& query) {
    try {
        query();
    } catch (const Failure&) { // NOLINT(bugprone-empty-catch): the result as it stands is the answer
    }
}

} // namespace

ClsXMLManager::ClsXMLManager() : oXmlDoc_(dom::Document::create()) {
    connect();
}

ClsXMLManager::~ClsXMLManager() {
    disconnect();
}

void ClsXMLManager::connect() {
    if (oXmlDoc_ == nullptr)
        return;
    nConnection_ = oXmlDoc_->connectReadyState([this] {
        if (oXmlDoc_->readyState() != stateCompleted || !fnDOMReady_)
            return;
        const auto fnListener = fnDOMReady_; // the listener may replace itself
        fnListener(dom::DocumentPtr(oXmlDoc_));
    });
}

void ClsXMLManager::disconnect() noexcept {
    if (oXmlDoc_ != nullptr)
        oXmlDoc_->disconnectReadyState(nConnection_);
}

void ClsXMLManager::setDOMDoc(dom::DocumentPtr vNewValue) {
    disconnect();
    oXmlDoc_ = std::move(vNewValue);
    connect();
}

Node ClsXMLManager::subject(Node oGiven) const {
    if (oGiven || oXmlDoc_ == nullptr)
        return oGiven;
    return oXmlDoc_->asNode();
}

void ClsXMLManager::recordFailure(const Failure& failure) {
    lErrNum_ = failure.number();
    sErrMsg_ = failure.description();
}

std::int16_t ClsXMLManager::LoadXml(std::string& sFileName, bool bValidate) {
    if (sFileName.empty()) {
        if (oXmlDoc_ == nullptr)
            throw Failure::of(FailureNumber::ObjectVariableNotSet);
        return toInt16(oXmlDoc_->parseError().errorCode);
    }
    setDOMDoc(dom::Document::create());
    const dom::DocumentPtr oDocument = oXmlDoc_; // a listener may replace the manager's
    oDocument->setAsync(false);
    oDocument->setValidateOnParse(bValidate);
    const std::string sLower = lowerCase(sFileName);
    if (sLower.find("http://") != std::string::npos || sLower.find("file:///") != std::string::npos) {
        oDocument->load(sFileName);
    } else {
        if (const auto position = sFileName.find("///"); position != std::string::npos)
            sFileName.erase(0, position + 3);
        oDocument->load("file:///" + sFileName);
    }
    if (oDocument->parseError().errorCode == 0)
        sFileName_ = sFileName;
    return 0;
}

void ClsXMLManager::Save(std::string_view sFileName, Node oDocument, bool bLast, io::Durability durability) {
    saveFailure_.reset();
    try {
        const Node oSubject = subject(oDocument);
        if (!oSubject)
            throw Failure::of(FailureNumber::ObjectVariableNotSet);
        const auto oSaved =
            oSubject.ownerDocument().shared_from_this(); // a listener may replace the manager's
        oSaved->reloadWithBreaks();
        const std::string_view sPath = sFileName.empty() ? nameOfUnnamedFile : sFileName;
        if (bLast)
            oSaved->saveLast(sPath, durability);
        else
            oSaved->save(sPath, durability);
    } catch (...) {
        saveFailure_ = currentFailure();
    }
}

void ClsXMLManager::SaveTo(io::ByteSink& sink) {
    saveFailure_.reset();
    try {
        const auto oSaved = oXmlDoc_; // a listener may replace the manager's
        if (oSaved == nullptr)
            throw Failure::of(FailureNumber::ObjectVariableNotSet);
        oSaved->reloadWithBreaks();
        oSaved->saveTo(sink);
    } catch (...) {
        saveFailure_ = currentFailure();
    }
}

std::int32_t ClsXMLManager::TotalNodes(Node RootSection) const {
    std::int32_t lCount = -1;
    trapped([&] {
        if (const Node oSubject = subject(RootSection))
            lCount = oSubject.selectNodes("//").length();
    });
    return lCount;
}

std::int32_t ClsXMLManager::TotalNodesByName(std::string& sNodeName, Node RootSection) const {
    sNodeName = withPathPrefix(sNodeName);
    std::int32_t lCount = -1;
    trapped([&] {
        const Node oSubject = subject(RootSection);
        const Node oFirst = oSubject ? oSubject.selectSingleNode(sNodeName) : Node();
        if (oFirst)
            lCount = oFirst.childNodes().length();
    });
    return lCount;
}

Node ClsXMLManager::GetNodeByAttributeValue(std::string_view sNodeName, std::string_view sAttributeName,
                                            std::string_view sValue) const {
    if (oXmlDoc_ == nullptr)
        return {};
    NodeList oNodes = oXmlDoc_->asNode().selectNodes(withPathPrefix(sNodeName));
    return firstWithAttribute(oNodes, sAttributeName, sValue);
}

dCollectionPtr ClsXMLManager::GetNodesByAttributeValue(std::string_view sNodeName,
                                                       std::string_view sAttributeName,
                                                       std::string_view sValue) const {
    auto dNodes = dCollection::create();
    NodeList oNodes = subject({}).selectNodes(withPathPrefix(sNodeName));
    oNodes.reset();
    // Never more than the first: callers take item 1.
    if (const Node oNode = firstWithAttribute(oNodes, sAttributeName, sValue))
        dNodes->Add(std::make_shared<dom::NodeObject>(oNode), "");
    return dNodes;
}

Node ClsXMLManager::GetChildNodeByName(Node pNode, std::string_view sName) const {
    Node oChild = pNode ? pNode.firstChild() : Node();
    while (oChild && oChild.nodeName() != sName)
        oChild = oChild.nextSibling();
    return oChild;
}

Node ClsXMLManager::GetNodeByName(std::string_view sNodeName, Node oDocument) const {
    const NodeList oNodes = GetNodesByName(sNodeName, oDocument);
    return oNodes ? oNodes.item(0) : Node();
}

NodeList ClsXMLManager::GetNodesByName(std::string_view sNodeName, Node oDocument) const {
    const Node oSubject = subject(oDocument);
    return oSubject ? oSubject.getElementsByTagName(sNodeName) : NodeList();
}

std::string ClsXMLManager::GetFullPath(Node pNode) const {
    std::string sPath;
    // A node without a parent adds nothing: neither the document nor the top of a detached tree.
    for (Node oNode = pNode; oNode && oNode.parentNode(); oNode = oNode.parentNode()) {
        if (!sPath.empty())
            sPath.insert(0, "/");
        sPath.insert(0, oNode.nodeName());
    }
    return sPath;
}

std::string ClsXMLManager::GetNodeAttributeValueByAttName(Node pXMLNode, std::string_view sAttName) const {
    std::string sValue;
    trapped([&] {
        for (const Node oAttribute : pXMLNode.attributes()) {
            if (equalIgnoringCase(oAttribute.nodeName(), sAttName)) {
                sValue = oAttribute.text();
                return;
            }
        }
    });
    return sValue;
}

std::int16_t ClsXMLManager::GetChildNodeDepth(Node pNode, std::int16_t nDepth) const {
    if (!pNode.hasChildNodes())
        return nDepth;
    std::int16_t nMaximum = 0;
    std::int32_t lDepth = nDepth;
    Node oNode = pNode;
    for (;;) {
        if (const Node oChild = oNode.firstChild()) {
            oNode = oChild;
            nMaximum = std::max(nMaximum, toInt16(++lDepth));
            continue;
        }
        while (oNode != pNode && !oNode.nextSibling()) {
            oNode = oNode.parentNode();
            --lDepth;
        }
        if (oNode == pNode)
            return nMaximum;
        oNode = oNode.nextSibling();
    }
}

Node ClsXMLManager::GetSectionNode(std::string_view SectionPath, Node oDocument) {
    Node oFound;
    try {
        findSection(SectionPath, subject(oDocument), oFound);
    } catch (...) {
        recordFailure(currentFailure());
    }
    return oFound;
}

void ClsXMLManager::findSection(std::string_view SectionPath, Node oSubject, Node& oFound) {
    std::vector<std::string> aPieces;
    Split(SectionPath, "/", aPieces);
    std::string sCurrentPath;
    for (const auto& sPiece : aPieces) {
        std::string sPath = sCurrentPath;
        sPath.append(sPath.empty() ? "" : "/").append(sPiece);
        oFound = oSubject.selectSingleNode(sPath);
        // Always in the manager's own document, even when another one was given.
        if (!oFound)
            oFound = InsertNode(sCurrentPath, sPiece, true, static_cast<std::int16_t>(dom::NodeType::Element),
                                nullptr);
        if (!oFound)
            return; // InsertNode has recorded why
        sCurrentPath = std::move(sPath);
    }
}

} // namespace halvane
