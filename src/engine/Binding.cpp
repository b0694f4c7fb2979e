#include "engine/Binding.h"

#include "engine/ModExporter.h"

#include <algorithm>
#include <array>

namespace halvane {

Binding::Binding(const dCollection& dMerged)
    : sDataSource(dMerged.GetValueString("DataSource")), sDataFrame(dMerged.GetValueString("DataFrame")),
      sIdentity(dMerged.GetValueString("Identity")), sIdentityValue(dMerged.GetValueString("IdentityValue")),
      sDataLocation(dMerged.GetValueString("DataLocation")) {}

Value resolveBinding(ExportState& state, const Binding& binding) {
    Value result;
    ResolveDataSource(state, result, binding.sDataSource, state.pMap, state.pFeatureLayer, binding.sIdentity,
                      binding.sIdentityValue, binding.sDataLocation);
    return result;
}

Value resolveWithoutIdentity(ExportState& state, Node oControlNode, const dCollection& dParentAttributes) {
    dCollection dMerged;
    MergeAttributes(state, oControlNode, &dParentAttributes, dMerged);
    Binding binding(dMerged);
    binding.sIdentity.clear();
    binding.sIdentityValue.clear();
    return resolveBinding(state, binding);
}

namespace {

template<class Role>
void keep(ExportState& state, std::shared_ptr<Role>& pCurrent, const Value& result, std::string_view sKey) {
    pCurrent = objectAs<Role>(result);
    if (pCurrent != nullptr && !sKey.empty())
        state.keepObject(sKey, pCurrent);
}

void keepMap(ExportState& state, const Value& result) {
    keep(state, state.pMap, result, "DataFrame");
}

void keepLayer(ExportState& state, const Value& result) {
    state.pFeatureClass.reset();
    keep(state, state.pFeatureLayer, result, "FeatureLayer");
    if (state.pFeatureLayer == nullptr)
        return;
    state.pFeatureClass = state.pFeatureLayer->featureClass();
    if (state.pFeatureClass != nullptr)
        state.keepObject("FeatureClass", state.pFeatureClass);
}

void keepWorkspace(ExportState& state, const Value& result) {
    keep(state, state.pWorkspace, result, "Workspace");
}

void keepTable(ExportState& state, const Value& result) {
    keep(state, state.pTable, result, "Table");
}

void keepRelatedTable(ExportState& state, const Value& result) {
    keep(state, state.pRelatedTable, result, "RelatedTable");
}

void keepTinLayer(ExportState& state, const Value& result) {
    keep(state, state.pTinLayer, result, "TinLayer");
}

void keepRasterLayer(ExportState& state, const Value& result) {
    keep(state, state.pRasterLayer, result, "");
}

using Keep = void (*)(ExportState&, const Value&);
constexpr std::array<std::pair<std::string_view, Keep>, 9> keepers{{
    {"Map", keepMap},
    {"FeatureLayer", keepLayer},
    {"MapLayer", keepLayer},
    {"Workspace", keepWorkspace},
    {"TinWorkspace", keepWorkspace},
    {"Table", keepTable},
    {"RelatedTable", keepRelatedTable},
    {"TinLayer", keepTinLayer},
    {"RasterLayer", keepRasterLayer},
}};

} // namespace

void keepAsCurrent(ExportState& state, std::string_view sDataSource, const Value& result) {
    const auto* pKeeper = std::find_if(keepers.begin(), keepers.end(),
                                       [&](const auto& entry) { return entry.first == sDataSource; });
    if (pKeeper != keepers.end())
        pKeeper->second(state, result);
}

} // namespace halvane
