#include "component/clsExport.h"

#include "collection/Text.h"
#include "engine/ModExporter.h"

#include <utility>

namespace halvane {

namespace {

std::string withTrailingBackslash(const std::string& sFolder) {
    return sFolder.ends_with('\\') ? sFolder : sFolder + "\\";
}

/// The attribute's text, upper-cased. @throws Failure ObjectVariableNotSet when the node has no such
/// attribute.
std::string upperAttribute(Node oNode, std::string_view sName) {
    const auto oAttributes = oNode.attributes();
    if (!oAttributes)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    return upperCase(oAttributes.getNamedItem(sName).text());
}

void releaseExternalDocument(ExportState& state) {
    state.dTagNames.reset();
    state.oExternalDom.reset();
    state.oSharedNode = {};
}

} // namespace

clsExport::clsExport(host::GisHostPtr pHost, ExportOptions options)
    : pHost_(std::move(pHost)), options_(options) {}

void clsExport::Export2XML(const host::GisMapDocumentPtr& pDunvelDoc, const std::string& sControlXML,
                           const std::string& sOutPath, std::string& SOutXML, const dom::DocumentPtr& oXMLDom,
                           const std::string& sNodePath, std::int32_t& lErrNum, std::string& sErrMsg) {
    ExportState& state = moduleState();
    try {
        lErrNum_ = 0;
        sErrMsg_.clear();
        state.pHost = pHost_;
        state.options = options_;
        if (pDunvelDoc != nullptr) {
            state.pMapDoc = pDunvelDoc;
            state.pMap = pDunvelDoc->focusMap();
        }
        if (!sControlXML.empty())
            state.sControlPath = sControlXML;
        // The letters may stand anywhere in the name, on purpose.
        if (!containsIgnoringCase(SOutXML, "XML"))
            SOutXML += ".xml";
        state.sOutputPath = withTrailingBackslash(sOutPath) + SOutXML;
        if (!takeExternalDocument(oXMLDom, sNodePath))
            return;
        ExportEntry(state);
        // Failures inside the walk are not reported to the caller, whatever the module error state holds.
        lErrNum = 0;
        sErrMsg.clear();
    } catch (...) {
        const Failure failure = currentFailure();
        lErrNum = failure.number();
        sErrMsg = failure.description();
    }
    releaseExternalDocument(state);
}

bool clsExport::takeExternalDocument(const dom::DocumentPtr& oXMLDom, const std::string& sNodePath) {
    if (oXMLDom == nullptr)
        return true;
    if (trimBlanks(sNodePath).empty())
        return false;
    auto dTagNames = GetTagNames(oXMLDom, sNodePath);
    if (dTagNames->Count() > 0) {
        ExportState& state = moduleState();
        state.dTagNames = std::move(dTagNames);
        state.oExternalDom = oXMLDom;
        state.sExternalNodePath = sNodePath;
    }
    return true;
}

dCollectionPtr clsExport::GetTagNames(const dom::DocumentPtr& oXMLDom, std::string_view sNodePath) {
    auto dTagNames = dCollection::create();
    if (trimBlanks(sNodePath).empty())
        return dTagNames;
    if (sNodePath.ends_with('/'))
        sNodePath.remove_suffix(1);
    try {
        collectTagNames(oXMLDom, sNodePath, *dTagNames);
    } catch (...) {
        const Failure failure = currentFailure();
        lErrNum_ = failure.number();
        sErrMsg_ = failure.description();
    }
    return dTagNames;
}

void clsExport::collectTagNames(const dom::DocumentPtr& oXMLDom, std::string_view sNodePath,
                                dCollection& dTagNames) const {
    if (oXMLDom == nullptr)
        throw Failure::of(FailureNumber::ObjectVariableNotSet);
    auto oNodes = oXMLDom->asNode().selectNodes(sNodePath);
    for (Node oNode = oNodes.nextNode(); oNode; oNode = oNodes.nextNode()) {
        std::string sTagName = upperAttribute(oNode, "TagName");
        dTagNames.Add(upperAttribute(oNode, "Alias"), sTagName);
    }
}

dom::NodeList clsExport::GetNodesByName(std::string_view sNodeName, const dom::DocumentPtr& oDomIn) const {
    return oDomIn == nullptr ? dom::NodeList() : oDomIn->getElementsByTagName(sNodeName);
}

} // namespace halvane
