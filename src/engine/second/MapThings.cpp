#include "engine/second/MapThings.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <string>

namespace halvane {

namespace {

void eachLayerOf(const host::GisLayerPtr& pLayer,
                 const std::function<void(const host::GisLayerPtr&)>& fnTake) {
    const auto pGroup = std::dynamic_pointer_cast<host::GisGroupLayer>(pLayer);
    if (pGroup == nullptr) {
        fnTake(pLayer);
        return;
    }
    for (std::int32_t n = 0; n < pGroup->layerCount(); ++n)
        eachLayerOf(pGroup->layer(n), fnTake);
}

bool isThat(const host::GisTable& table, const std::string& sWorkspace, const std::string& sName) {
    if (!equalIgnoringCase(table.datasetName(), sName))
        return false;
    const auto pWorkspace = table.workspace();
    return pWorkspace != nullptr && pWorkspace->pathName() == sWorkspace;
}

/// Looks at one thing of the map after the other; data that cannot be opened is not what is looked for.
host::GisTablePtr tableOfMap(const host::GisMapPtr& pMap, const std::string& sWorkspace,
                             const std::string& sName) {
    host::GisTablePtr pFound;
    const auto look = [&](const auto& fnTable) {
        try {
            const host::GisTablePtr pTable = pFound == nullptr ? fnTable() : nullptr;
            if (pTable != nullptr && isThat(*pTable, sWorkspace, sName))
                pFound = pTable;
        } catch (const Failure&) {
            return;
        }
    };
    eachTable(pMap, [&](const host::GisTablePtr& pTable) { look([&] { return pTable; }); });
    eachLayer(pMap, [&](const host::GisLayerPtr& pLayer) {
        look([&] {
            const auto pFeatures = std::dynamic_pointer_cast<host::GisFeatureLayer>(pLayer);
            return pFeatures == nullptr ? nullptr : host::GisTablePtr(pFeatures->featureClass());
        });
    });
    return pFound;
}

} // namespace

void eachLayer(const host::GisMapPtr& pMap, const std::function<void(const host::GisLayerPtr&)>& fnTake) {
    if (pMap == nullptr)
        return;
    for (std::int32_t n = 0; n < pMap->layerCount(); ++n)
        eachLayerOf(pMap->layer(n), fnTake);
}

void eachTable(const host::GisMapPtr& pMap, const std::function<void(const host::GisTablePtr&)>& fnTake) {
    if (pMap == nullptr)
        return;
    for (std::int32_t n = 0; n < pMap->standaloneTableCount(); ++n)
        if (const auto pTable = pMap->standaloneTable(n))
            fnTake(pTable);
}

host::GisTablePtr tableOfWorkspace(const host::GisMapPtr& pMap, host::GisWorkspace& workspace,
                                   const std::string& sName) {
    if (auto pTable = tableOfMap(pMap, workspace.pathName(), sName))
        return pTable;
    return workspace.openTable(sName);
}

} // namespace halvane
