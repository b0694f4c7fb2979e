#include "engine/sources/LayerSearch.h"

#include "base/Text.h"

#include <string>
#include <vector>

namespace halvane {

using host::GisGroupLayer;
using host::GisLayerPtr;

bool isNamed(const host::GisLayer* pLayer, std::string_view sName) {
    if (pLayer == nullptr)
        return false;
    return equalIgnoringCase(pLayer->name(), sName);
}

bool isNamed(const host::GisTable* pTable, std::string_view sName) {
    if (pTable == nullptr)
        return false;
    return equalIgnoringCase(pTable->datasetName(), sName);
}

GisLayerPtr firstMemberNamed(const GisGroupLayer& group, std::string_view sName) {
    const std::int32_t lCount = group.layerCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        auto pMember = group.layer(i);
        if (isNamed(pMember.get(), sName))
            return pMember;
    }
    return nullptr;
}

namespace {

GisLayerPtr findByPlainName(const host::GisMap& map, std::string_view sName) {
    GisLayerPtr pRemembered;
    const std::int32_t lCount = map.layerCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        auto pLayer = map.layer(i);
        if (const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pLayer)) {
            if (auto pMember = firstMemberNamed(*pGroup, sName))
                pRemembered = std::move(pMember);
        }
        if (isNamed(pLayer.get(), sName))
            return pLayer;
    }
    return pRemembered;
}

GisLayerPtr findInGroups(const host::GisMap& map, std::string_view sGroupName, std::string_view sName) {
    GisLayerPtr pRemembered;
    const std::int32_t lCount = map.layerCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(map.layer(i));
        if (!isNamed(pGroup.get(), sGroupName))
            continue;
        if (auto pMember = firstMemberNamed(*pGroup, sName))
            pRemembered = std::move(pMember);
    }
    return pRemembered;
}

} // namespace

GisLayerPtr FindLayerByName(const host::GisMap& map, std::string_view sName) {
    std::vector<std::string> aPieces;
    if (Split(sName, ":", aPieces) == 1)
        return findByPlainName(map, sName);
    return findInGroups(map, aPieces[0], aPieces[1]);
}

host::GisTablePtr findTableByName(const host::GisMap& map, std::string_view sName) {
    const std::int32_t lCount = map.standaloneTableCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        auto pTable = map.standaloneTable(i);
        if (isNamed(pTable.get(), sName))
            return pTable;
    }
    return nullptr;
}

} // namespace halvane
