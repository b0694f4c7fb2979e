#include "engine/ModExporter.h"
#include "engine/second/SecondControl.h"
#include "xml/dom/Layout.h"

namespace halvane {

namespace {

/// Releases what an earlier export may have left. The map document and its map were set for this export; the
/// raster layer stays as it is.
void beginExport(ExportState& state) {
    state.pFeatureClass.reset();
    state.pWorkspace.reset();
    state.pFeatureLayer.reset();
    state.pTable.reset();
    state.pRelatedTable.reset();
    state.pTinLayer.reset();
    // It may be a node of the control document that goes now.
    state.oActiveControlNode = {};
    state.oControlManager = std::make_unique<ClsXMLManager>();
    state.oOutputManager = std::make_unique<ClsXMLManager>();
}

/// The folder of the output file, where the output document may spill to.
std::string folderOf(const std::string& sPath) {
    const auto end = sPath.find_last_of("\\/");
    if (end == std::string::npos)
        return ".";
    return sPath.substr(0, end + 1);
}

Node loadControlRoot(ExportState& state) {
    if (state.options.oControlDocument != nullptr) {
        state.oControlDom = state.options.oControlDocument;
        state.oControlManager->setDOMDoc(state.oControlDom);
        return state.oControlDom->documentElement();
    }
    if (state.sControlPath.empty())
        throw Failure(FailureNumber::FileNotFound, "no control file is named");
    std::string sFileName = state.sControlPath;
    (void)state.oControlManager->LoadXml(sFileName, false);
    state.oControlDom = state.oControlManager->DOMDoc();
    const auto& error = state.oControlDom->parseError();
    if (error.errorCode != 0)
        throw Failure(FailureNumber::DocumentFailure, error.reason);
    return state.oControlDom->documentElement();
}

void walkRootChildren(ExportState& state, const ControlNode& root, const OutputElement& oOutputRoot) {
    state.dCurrentObjects.clear();
    if (!root.own.sDataLocation.empty() && root.own.sDataFrame.empty())
        state.pMapDoc.reset();
    for (const ControlNode& child : childrenOf(root)) {
        // No scope: a failure that ends the export is this node's.
        state.oActiveControlNode = child.oNode;
        ExportChild(state, state.pMapDoc, oOutputRoot, child, &root, nullptr, nullptr);
    }
    state.oActiveControlNode = {};
}

void saveOutput(ExportState& state) {
    if (state.options.pDocumentSink != nullptr)
        state.oOutputManager->SaveTo(*state.options.pDocumentSink);
    else
        state.oOutputManager->Save(state.sOutputPath, {}, true, state.options.durability);
    if (const auto& failure = state.oOutputManager->saveFailure())
        throw Failure(*failure);
    ExportObserver* const pObserver = state.options.pObserver;
    if (pObserver == nullptr)
        return;
    const auto oDocument = state.oOutputManager->DOMDoc();
    pObserver->documentSaved(state.sOutputPath, oDocument->characterRepairs());
    if (!oDocument->whyNotDurable().empty())
        pObserver->documentNotDurable(oDocument->whyNotDurable());
}

void tellNotSaved(const ExportState& state, std::string_view sReason) {
    if (state.options.pObserver != nullptr)
        state.options.pObserver->documentNotSaved(sReason);
}

[[noreturn]] void refuse(ExportState& state, const SecondProblem& problem) {
    state.oActiveControlNode = problem.oControlNode;
    throw Failure(FailureNumber::DocumentFailure, problem.sText);
}

void refuseProblems(ExportState& state, Node oControlRoot) {
    if (const auto problem =
            state.options.pSecondEdition == nullptr ? std::nullopt : undeclaredEdition(oControlRoot))
        refuse(state, *problem);
    if (const auto& problems = state.pControlTree->problems(); !problems.empty())
        refuse(state, problems.front());
}

void beginDocument(const DocumentRules& rules, dom::Document& oOutput) {
    oOutput.setLayout(rules.layout);
    if (rules.bDeclaration)
        oOutput.asNode().appendChild(
            oOutput.createNode(static_cast<std::int32_t>(dom::NodeType::ProcessingInstruction), "xml", {}));
    if (!rules.sDoctype.empty())
        oOutput.appendDocumentType(rules.sDoctype);
}

/// What was not done by whoever loaded the control file.
void includeParts(ExportState& state, Node oControlRoot) {
    const SecondEdition* const pSecond = state.options.pSecondEdition;
    if (state.options.oControlDocument != nullptr || pSecond == nullptr || pSecond->pParts == nullptr ||
        !isOfSecondEdition(oControlRoot))
        return;
    const auto problems = pSecond->pParts->include(oControlRoot, state.sControlPath);
    if (!problems.empty())
        refuse(state, problems.front());
}

/// @returns false when the control root has no children: there is nothing to export then.
bool runExport(ExportState& state) {
    beginExport(state);
    const Node oControlRoot = loadControlRoot(state);
    state.oActiveControlNode = oControlRoot;
    includeParts(state, oControlRoot);
    const auto oOutputDom = state.oOutputManager->DOMDoc();
    oOutputDom->setSpoolFolder(folderOf(state.sOutputPath));
    state.pControlTree = std::make_unique<ControlTree>(oControlRoot, ControlTree::Root::OfDocument,
                                                       *oOutputDom, state.options.bIgnoreComments,
                                                       ControlAttributes(), state.options.pSecondEdition);
    refuseProblems(state, oControlRoot);
    const ControlNode& root = state.pControlTree->root();
    if (root.pSecond != nullptr)
        beginDocument(*root.pSecond->document, *oOutputDom);
    const Node oOutputRoot = oOutputDom->asNode().appendChild(newOutputElement(state, root.sTagName));
    declareNamespaces(root, oOutputRoot);
    if (!root.hasChildren()) {
        tellNotSaved(state, "the control file's root has no children");
        return false;
    }
    walkRootChildren(state, root, oOutputRoot);
    // The last node may have ended for no other reason.
    if (state.options.pObserver != nullptr && !state.options.pObserver->goesOn())
        throw ExportCancelled{};
    if (state.options.pTrace != nullptr)
        state.options.pTrace->documentComplete(state);
    saveOutput(state);
    return true;
}

} // namespace

void ExportEntry(ExportState& state) {
    try {
        if (!runExport(state))
            return;
    } catch (const ExportCancelled&) {
        tellNotSaved(state, "the export was cancelled");
    } catch (...) {
        const Failure failure = currentFailure();
        state.recordFailure(failure);
        tellNotSaved(state, failure.description());
    }
    state.release();
}

} // namespace halvane
