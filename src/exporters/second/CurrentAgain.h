#pragma once

#include "engine/ExportState.h"

namespace halvane {

/// What is current, as it was when this was made: it is so again when this goes.
class CurrentAgain {
public:
    explicit CurrentAgain(ExportState& state)
        : state_(state), pMap_(state.pMap), pShownMap_(state.pShownMap), pFeatureLayer_(state.pFeatureLayer),
          pFeatureClass_(state.pFeatureClass), pWorkspace_(state.pWorkspace), pTable_(state.pTable),
          pRelatedTable_(state.pRelatedTable), pTinLayer_(state.pTinLayer),
          pRasterLayer_(state.pRasterLayer) {}
    CurrentAgain(const CurrentAgain&) = delete;
    CurrentAgain& operator=(const CurrentAgain&) = delete;
    ~CurrentAgain() { restore(); }

    void restore() {
        if (state_.pShownMap != pShownMap_)
            ++state_.nGeneration; // what a blank data frame stands for changes back
        restore(state_.pMap, pMap_);
        restore(state_.pShownMap, pShownMap_);
        restore(state_.pFeatureLayer, pFeatureLayer_);
        restore(state_.pFeatureClass, pFeatureClass_);
        restore(state_.pWorkspace, pWorkspace_);
        restore(state_.pTable, pTable_);
        restore(state_.pRelatedTable, pRelatedTable_);
        restore(state_.pTinLayer, pTinLayer_);
        restore(state_.pRasterLayer, pRasterLayer_);
    }

private:
    /// Mostly nothing has changed, and counting owners costs more than comparing.
    template<class Object>
    static void restore(Object& pNow, const Object& pBefore) {
        if (pNow != pBefore)
            pNow = pBefore;
    }

    ExportState& state_;
    host::GisMapPtr pMap_;
    host::GisMapPtr pShownMap_;
    host::GisFeatureLayerPtr pFeatureLayer_;
    host::GisFeatureClassPtr pFeatureClass_;
    host::GisWorkspacePtr pWorkspace_;
    host::GisTablePtr pTable_;
    host::GisTablePtr pRelatedTable_;
    host::GisTinLayerPtr pTinLayer_;
    host::GisRasterLayerPtr pRasterLayer_;
};

} // namespace halvane
