#include "telling/MapNames.h"

#include "base/Failure.h"
#include "host/Tables.h"

#include <optional>

namespace halvane {

namespace {

/// A host's groups could hold each other.
constexpr std::size_t nDeepest = 16;

/// What a call to the host yields; nothing where it fails.
template<class Call>
auto orNothing(Call call) -> std::optional<decltype(call())> {
    try {
        return call();
    } catch (const Failure&) {
        return std::nullopt;
    }
}

template<class Container>
void addLayers(const Container& container, const std::vector<std::string>& groups,
               std::vector<MapThing>& things) {
    const std::int32_t lCount = orNothing([&] { return container.layerCount(); }).value_or(0);
    for (std::int32_t i = 0; i < lCount; ++i) {
        const host::GisLayerPtr pLayer = orNothing([&] { return container.layer(i); }).value_or(nullptr);
        if (pLayer == nullptr)
            continue;
        const std::string sName = orNothing([&] { return pLayer->name(); }).value_or("");
        if (!sName.empty())
            things.push_back({sName, kindOf(*pLayer), groups});
        const auto* pGroup = dynamic_cast<const host::GisGroupLayer*>(pLayer.get());
        if (pGroup == nullptr || groups.size() == nDeepest)
            continue;
        auto inside = groups;
        inside.push_back(sName);
        addLayers(*pGroup, inside, things);
    }
}

void addTables(const host::GisMap& map, std::int32_t lMostTables, std::vector<MapThing>& things) {
    const std::int32_t lCount = orNothing([&] { return map.standaloneTableCount(); }).value_or(0);
    for (std::int32_t i = 0; lCount <= lMostTables && i < lCount; ++i) {
        const host::GisTablePtr pTable = orNothing([&] { return map.standaloneTable(i); }).value_or(nullptr);
        const std::string sName =
            pTable == nullptr ? "" : orNothing([&] { return pTable->datasetName(); }).value_or("");
        if (!sName.empty())
            things.push_back({sName, ThingKind::Table, {}});
    }
}

} // namespace

std::vector<MapThing> thingsOf(const host::GisMap& map, std::int32_t lMostTables) {
    std::vector<MapThing> things;
    addLayers(map, {}, things);
    addTables(map, lMostTables, things);
    return things;
}

} // namespace halvane
