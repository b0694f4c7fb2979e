#include "engine/LayerLookup.h"

#include "collection/Text.h"

#include <string>
#include <vector>

namespace halvane {

using host::GisGroupLayer;
using host::GisLayerPtr;

GisLayerPtr firstMemberNamed(const GisGroupLayer& group, std::string_view sName) {
    const std::int32_t lCount = group.layerCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        auto pMember = group.layer(i);
        if (pMember != nullptr && equalIgnoringCase(pMember->name(), sName))
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
        if (pLayer != nullptr && equalIgnoringCase(pLayer->name(), sName))
            return pLayer;
    }
    return pRemembered;
}

GisLayerPtr findInGroups(const host::GisMap& map, std::string_view sGroupName, std::string_view sName) {
    GisLayerPtr pRemembered;
    const std::int32_t lCount = map.layerCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(map.layer(i));
        if (pGroup == nullptr || !equalIgnoringCase(pGroup->name(), sGroupName))
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
        if (pTable != nullptr && equalIgnoringCase(pTable->datasetName(), sName))
            return pTable;
    }
    return nullptr;
}

} // namespace halvane
