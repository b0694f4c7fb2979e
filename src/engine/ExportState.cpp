#include "engine/ExportState.h"

namespace halvane {

void ExportState::recordFailure(const Failure& failure) {
    lModErrNum = failure.number();
    sModErrMsg = failure.description();
    ++nFailures;
    if (options.pObserver != nullptr)
        options.pObserver->nodeFailed(oActiveControlNode, failure);
}

void ExportState::notice(Notice what, std::string_view sDetail) const {
    if (options.pObserver != nullptr)
        options.pObserver->nodeNoticed(oActiveControlNode, what, sDetail);
}

void ExportState::release() {
    pMapDoc.reset();
    pMap.reset();
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
    pNumericFormat.reset();
    featureCount = {};
    mapIndexes.clear();
    ++nGeneration;
}

ExportState& moduleState() {
    static ExportState state;
    return state;
}

} // namespace halvane
