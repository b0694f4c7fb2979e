#include "engine/ExportState.h"

namespace halvane {

void ExportState::recordFailure(const Failure& failure) {
    lModErrNum = failure.number();
    sModErrMsg = failure.description();
    ++nFailures;
    if (options.pObserver != nullptr && !(bResolving && isToldSourceFailure(failure)))
        options.pObserver->nodeFailed(oActiveControlNode, failure);
    if (options.pTrace != nullptr)
        options.pTrace->failed(failure);
}

bool ExportState::isToldSourceFailure(const Failure& failure) {
    for (const SourceFailure& told : aSourceFailures)
        if (told.oControlNode == oActiveControlNode && told.lNumber == failure.number() &&
            told.sDescription == failure.description())
            return true;
    aSourceFailures.push_back({oActiveControlNode, failure.number(), failure.description()});
    return false;
}

void ExportState::forgetSourceFailures(dom::Node oControlNode) noexcept {
    std::erase_if(aSourceFailures,
                  [&](const SourceFailure& told) { return told.oControlNode == oControlNode; });
}

void ExportState::notice(Notice what, std::string_view sDetail) const {
    if (options.pObserver != nullptr)
        options.pObserver->nodeNoticed(oActiveControlNode, what, sDetail,
                                       {pMapDoc.get(), pMap.get(), dTagNames.get(), oSharedNode});
    if (options.pTrace != nullptr)
        options.pTrace->noticed(what, sDetail);
}

void ExportState::noticeMissingField(std::string_view sName, const host::GisFields& fields,
                                     bool bByTag) const {
    if (options.pObserver != nullptr)
        options.pObserver->nodeNoticed(
            oActiveControlNode, Notice::FieldNotFound, sName,
            {pMapDoc.get(), pMap.get(), dTagNames.get(), oSharedNode, &fields, bByTag});
    if (options.pTrace != nullptr)
        options.pTrace->noticed(Notice::FieldNotFound, sName);
}

void ExportState::tellFailure(dom::Node oControlNode, const Failure& failure) const {
    if (options.pObserver != nullptr)
        options.pObserver->nodeFailed(oControlNode, failure);
    if (options.pTrace != nullptr)
        options.pTrace->failed(failure);
}

void ExportState::release() {
    pMapDoc.reset();
    pMap.reset();
    pShownMap.reset();
    pFeatureLayer.reset();
    pFeatureClass.reset();
    pWorkspace.reset();
    pTable.reset();
    pRelatedTable.reset();
    pTinLayer.reset();
    pRasterLayer.reset();
    dCurrentObjects.clear();
    dTagNames.reset();
    oExternalDom.reset();
    oSharedNode = {};
    pControlTree.reset();
    oControlDom.reset();
    oControlManager.reset();
    oOutputManager.reset();
    oActiveControlNode = {};
    aSourceFailures.clear();
    pNumericFormat.reset();
    featureCount = {};
    pCodedNames.reset();
    pInherited = nullptr;
    mapIndexes.clear();
    coordinates.clear();
    layerBounds = {};
}

ExportState& moduleState() {
    static ExportState state;
    return state;
}

} // namespace halvane
