#include "cli/TagDocument.h"

#include "cli/DocumentLoading.h"
#include "cli/Paths.h"
#include "collection/Failure.h"
#include "collection/Text.h"

#include <fmt/format.h>

namespace halvane::cli {

namespace {

/// The component reads the pairs up to the first node that lacks one of the attributes.
void warnOfUnreadPairs(const std::string& sDocument, const std::string& sNodePath, dom::NodeList oNodes,
                       std::vector<std::string>& warnings) {
    if (oNodes.length() == 0) {
        warnings.push_back(fmt::format("--node-path: \"{}\" selects nothing in {}; no tags are known",
                                       sNodePath, sDocument));
        return;
    }
    for (dom::Node oNode = oNodes.nextNode(); oNode; oNode = oNodes.nextNode()) {
        for (const char* sAttribute : {"TagName", "Alias"}) {
            if (oNode.getAttribute(sAttribute))
                continue;
            warnings.push_back(
                fmt::format("{}:{}: <{}> has no {}; this node and those after it are not read as "
                            "tags",
                            sDocument, oNode.line(), oNode.nodeName(), sAttribute));
            return;
        }
    }
}

} // namespace

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
    std::string_view sPath = sNodePath;
    // One slash at the end is allowed.
    if (sPath.ends_with('/'))
        sPath.remove_suffix(1);
    try {
        warnOfUnreadPairs(sDocument, sNodePath, oDocument->asNode().selectNodes(sPath), warnings);
    } catch (const Failure&) {
        problems.push_back(fmt::format(
            "--node-path: \"{}\" is no XPath that selects nodes; an example: //QvLayer", sNodePath));
        return nullptr;
    }
    return oDocument;
}

} // namespace halvane::cli
