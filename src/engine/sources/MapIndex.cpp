#include "engine/sources/MapIndex.h"

#include "base/Text.h"
#include "engine/sources/LayerSearch.h"

#include <algorithm>
#include <memory>
#include <string>

namespace halvane {

using host::GisGroupLayer;
using host::GisLayerPtr;
using host::GisTablePtr;

namespace {

std::string nameOf(const host::GisLayer& layer) {
    return layer.name();
}

std::string nameOf(const host::GisTable& table) {
    return table.datasetName();
}

/// The first member of that name, going on where an earlier search ended.
/// @param look looks into a member. @returns whether it has to look again at the next search.
/// @param foundFor how many members are known once the one at a place has been looked for.
/// @param fromStart searches without any memory: another name may have the same hash.
template<class At, class FoundFor, class Look, class FromStart>
auto search(MapIndex::Names& names, std::string_view sName, At at, FoundFor foundFor, Look look,
            FromStart fromStart) -> decltype(at(0)) {
    const std::size_t nHash = hashIgnoringCase(sName);
    const std::int32_t lPlace = names.placeOf(nHash);
    for (const std::int32_t lAsked : names.asked()) {
        if (lPlace >= 0 && lAsked > lPlace)
            break;
        auto pItem = at(lAsked);
        static_cast<void>(look(pItem));
        if (isNamed(pItem.get(), sName))
            return pItem;
    }
    if (lPlace >= 0) {
        auto pItem = at(lPlace);
        return isNamed(pItem.get(), sName) ? pItem : fromStart();
    }
    for (std::int32_t lCount = 0;;) {
        if (names.count() >= lCount)
            lCount = foundFor(names.count());
        if (names.count() >= lCount)
            return nullptr;
        auto pItem = at(names.count());
        const bool bLooksAgain = look(pItem);
        const std::string sItem = pItem == nullptr ? std::string() : nameOf(*pItem);
        names.add(hashIgnoringCase(sItem), !bLooksAgain && !sItem.empty());
        if (pItem != nullptr && equalIgnoringCase(sItem, sName))
            return pItem;
    }
}

} // namespace

std::int32_t MapIndex::Names::placeOf(std::size_t nHash) const {
    const auto found = firstByHash_.find(nHash);
    return found == firstByHash_.end() ? -1 : found->second;
}

void MapIndex::Names::add(std::size_t nHash, bool bStays) {
    if (bStays)
        firstByHash_.emplace(nHash, lCount_);
    else
        aAsked_.push_back(lCount_);
    ++lCount_;
}

GisLayerPtr MapIndex::findLayer(std::string_view sName) {
    const auto fromStart = [&] { return FindLayerByName(*pMap_, sName); };
    // "Group:Member" is a way, not a name.
    if (sName.empty() || sName.find(':') != std::string_view::npos)
        return fromStart();
    GisLayerPtr pMember;
    const auto lookIntoGroup = [&](const GisLayerPtr& pLayer) {
        const auto* pGroup = dynamic_cast<const GisGroupLayer*>(pLayer.get());
        if (pGroup == nullptr)
            return false;
        if (auto pOfGroup = firstMemberNamed(*pGroup, sName))
            pMember = std::move(pOfGroup);
        return true;
    };
    auto pLayer = search(
        layers_, sName, [&](std::int32_t lPlace) { return pMap_->layer(lPlace); },
        [&](std::int32_t lPlace) { return pMap_->layersFoundFor(lPlace); }, lookIntoGroup, fromStart);
    return pLayer != nullptr ? pLayer : pMember;
}

GisTablePtr MapIndex::findTable(std::string_view sName) {
    const auto lookAtNothing = [](const GisTablePtr&) { return false; };
    return search(
        tables_, sName, [&](std::int32_t lPlace) { return pMap_->standaloneTable(lPlace); },
        [&](std::int32_t lPlace) { return pMap_->standaloneTablesFoundFor(lPlace); }, lookAtNothing,
        [&] { return findTableByName(*pMap_, sName); });
}

MapIndex& MapIndexes::of(const host::GisMapPtr& pMap, std::uint64_t nGeneration) {
    if (nGeneration != nGeneration_)
        indexes_.clear();
    nGeneration_ = nGeneration;
    const auto known = std::find_if(indexes_.begin(), indexes_.end(),
                                    [&](const MapIndex& index) { return index.map() == pMap; });
    if (known != indexes_.end())
        return *known;
    constexpr std::size_t mostMaps = 8;
    if (indexes_.size() == mostMaps)
        indexes_.erase(indexes_.begin());
    return indexes_.emplace_back(pMap);
}

} // namespace halvane
