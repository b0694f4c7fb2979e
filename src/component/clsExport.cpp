#include "component/clsExport.h"

#include "base/Text.h"
#include "engine/ModExporter.h"
#include "io/SpecialName.h"

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

void tellNotSaved(const ExportOptions& options, std::string_view sReason) {
    if (options.pObserver != nullptr)
        options.pObserver->documentNotSaved(sReason);
}

/// Holds the module state for one export: its host and options while it runs, and the caller's document,
/// which goes whatever becomes of the export.
class RunningExport {
public:
    /// @throws Failure InvalidProcedureCall while another export runs, in a processor that exports itself,
    /// say.
    RunningExport(ExportState& state, host::GisHostPtr pHost, const ExportOptions& options) : state_(state) {
        if (state.bExporting)
            throw Failure(FailureNumber::InvalidProcedureCall, "an export is running already");
        state.bExporting = true;
        state.pHost = std::move(pHost);
        state.options = options;
    }
    RunningExport(const RunningExport&) = delete;
    RunningExport& operator=(const RunningExport&) = delete;
    ~RunningExport() {
        state_.dTagNames.reset();
        state_.oExternalDom.reset();
        state_.oSharedNode = {};
        state_.pHost.reset();
        state_.options = {};
        state_.bExporting = false;
    }

private:
    ExportState& state_;
};

} // namespace

clsExport::clsExport(host::GisHostPtr pHost, ExportOptions options)
    : pHost_(std::move(pHost)), options_(std::move(options)) {}

void clsExport::Export2XML(const host::GisMapDocumentPtr& pDunvelDoc, const std::string& sControlXML,
                           const std::string& sOutPath, std::string& SOutXML, const dom::DocumentPtr& oXMLDom,
                           const std::string& sNodePath, std::int32_t& lErrNum, std::string& sErrMsg) {
    ExportState& state = moduleState();
    try {
        const RunningExport running(state, pHost_, options_);
        lErrNum_ = 0;
        sErrMsg_.clear();
        if (!prepare(pDunvelDoc, sControlXML, sOutPath, SOutXML, oXMLDom, sNodePath))
            return;
        ExportEntry(state);
        // Failures inside the walk are not reported to the caller, whatever the module error state holds.
        lErrNum = 0;
        sErrMsg.clear();
    } catch (...) {
        const Failure failure = currentFailure();
        lErrNum = failure.number();
        sErrMsg = failure.description();
        tellNotSaved(options_, sErrMsg);
    }
}

bool clsExport::prepare(const host::GisMapDocumentPtr& pDunvelDoc, const std::string& sControlXML,
                        const std::string& sOutPath, std::string& SOutXML, const dom::DocumentPtr& oXMLDom,
                        const std::string& sNodePath) {
    ExportState& state = moduleState();
    if (pDunvelDoc != nullptr) {
        state.pMapDoc = pDunvelDoc;
        state.pMap = pDunvelDoc->focusMap();
    }
    if (!sControlXML.empty())
        state.sControlPath = sControlXML;
    // The letters may stand anywhere in the name, on purpose.
    if (!options_.bExactName && !containsIgnoringCase(SOutXML, "XML"))
        SOutXML += ".xml";
    state.sOutputPath = withTrailingBackslash(sOutPath) + SOutXML;
    if (!takeExternalDocument(oXMLDom, sNodePath)) {
        tellNotSaved(options_, "a document with tag names was given, but no node path into it");
        return false;
    }
    io::requirePlainName(state.sOutputPath);
    return true;
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
