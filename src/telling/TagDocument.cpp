#include "telling/TagDocument.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "telling/DocumentLoading.h"
#include "telling/Paths.h"

#include <fmt/format.h>

namespace halvane {

namespace {

/// Where a selected node stands, as far as that is known: attributes and texts have no line of their own.
std::string placeOf(const TagPathNames& names, dom::Node oNode) {
    const dom::Node oPlaced = oNode.line() != 0 ? oNode : oNode.selectSingleNode("..");
    return oPlaced && oPlaced.line() != 0 ? fmt::format("{}:{}", names.sDocument, oPlaced.line())
                                          : names.sDocument;
}

std::string kindOfNode(dom::Node oNode) {
    switch (oNode.nodeType()) {
    case dom::NodeType::Attribute:
        return fmt::format("the attribute {}", oNode.nodeName());
    case dom::NodeType::Document:
        return "the document itself";
    case dom::NodeType::Comment:
        return "a comment";
    default:
        return "a text";
    }
}

/// What a node lacks to be read as a tag; "" for one that is read.
std::string whyUnread(dom::Node oNode) {
    if (oNode.nodeType() != dom::NodeType::Element)
        return fmt::format("the path selects {}, not an element with TagName and Alias", kindOfNode(oNode));
    for (const char* sAttribute : {"TagName", "Alias"})
        if (!oNode.getAttribute(sAttribute))
            return fmt::format("<{}> has no {}", oNode.nodeName(), sAttribute);
    return "";
}

/// The component reads the pairs up to the first node that lacks one of the attributes.
void warnOfUnreadPairs(const TagPathNames& names, const std::string& sNodePath, dom::NodeList oNodes,
                       std::vector<std::string>& warnings) {
    if (oNodes.length() == 0) {
        warnings.push_back(fmt::format("{}: \"{}\" selects nothing in {}; no tags are known", names.sPathName,
                                       sNodePath, names.sDocument));
        return;
    }
    for (dom::Node oNode = oNodes.nextNode(); oNode; oNode = oNodes.nextNode()) {
        const std::string sWhy = whyUnread(oNode);
        if (sWhy.empty())
            continue;
        warnings.push_back(fmt::format("{}: {}; this node and those after it are not read as tags",
                                       placeOf(names, oNode), sWhy));
        return;
    }
}

} // namespace

std::string checkTagPath(const dom::DocumentPtr& oDocument, const std::string& sNodePath,
                         const TagPathNames& names, std::vector<std::string>& warnings) {
    std::string_view sPath = sNodePath;
    // One slash at the end is allowed.
    if (sPath.ends_with('/'))
        sPath.remove_suffix(1);
    try {
        warnOfUnreadPairs(names, sNodePath, oDocument->asNode().selectNodes(sPath), warnings);
    } catch (const Failure&) {
        return fmt::format("{}: \"{}\" is no XPath that selects nodes; an example: //QvLayer",
                           names.sPathName, sNodePath);
    }
    return "";
}

dom::DocumentPtr openTagDocument(const std::string& sDocument, const std::string& sNodePath,
                                 std::vector<std::string>& warnings, std::vector<std::string>& problems) {
    if (trimBlanks(sNodePath).empty()) {
        problems.emplace_back(
            "--node-path: the path is blank; give the XPath of the nodes with TagName and Alias");
        return nullptr;
    }
    auto oDocument = loadDocument(absolutePath(sDocument), sDocument, problems);
    if (oDocument == nullptr)
        return nullptr;
    if (std::string sProblem = checkTagPath(oDocument, sNodePath, {.sDocument = sDocument}, warnings);
        !sProblem.empty()) {
        problems.push_back(std::move(sProblem));
        return nullptr;
    }
    return oDocument;
}

} // namespace halvane
