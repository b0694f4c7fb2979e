#include "engine/sources/Binding.h"

#include "base/Text.h"
#include "engine/ModExporter.h"

namespace halvane {

Binding::Binding(const ControlAttributes& merged)
    : kind(dataSourceKindOf(merged.sDataSource)), bFrameBlank(trimBlanks(merged.sDataFrame).empty()),
      bLocationBlank(trimBlanks(merged.sDataLocation).empty()), sDataSource(merged.sDataSource),
      sDataFrame(merged.sDataFrame), sIdentity(merged.sIdentity), sIdentityValue(merged.sIdentityValue),
      sDataLocation(merged.sDataLocation) {}

namespace {

bool canBeKept(const Binding& binding) {
    const Keeping keeping = rowOf(binding.kind).object.keeping;
    return keeping == Keeping::Always || (keeping == Keeping::UnlessByTag && binding.sIdentity != "TagName");
}

void resolveAnew(ExportState& state, const Binding& binding) {
    Binding::Known& known = binding.known;
    known.nGeneration = 0;
    ResolveDataSource(state, known.result, binding.sDataSource, state.pMap, state.pFeatureLayer,
                      binding.sIdentity, binding.sIdentityValue, binding.sDataLocation);
    if (isEmpty(known.result) || !canBeKept(binding))
        return;
    known.pMap = state.pMap;
    known.pLayer = state.pFeatureLayer;
    known.nGeneration = state.nGeneration;
}

} // namespace

const Value& resolveBinding(ExportState& state, const Binding& binding) {
    const Binding::Known& known = binding.known;
    if (known.nGeneration != state.nGeneration || known.pMap != state.pMap ||
        known.pLayer != state.pFeatureLayer)
        resolveAnew(state, binding);
    return known.result;
}

Value resolveWithoutIdentity(ExportState& state, const Binding& binding) {
    Value result;
    ResolveDataSource(state, result, binding.sDataSource, state.pMap, state.pFeatureLayer, "", "",
                      binding.sDataLocation);
    return result;
}

void keepAsCurrent(ExportState& state, DataSourceKind kind, const Value& result) {
    if (const DataSourceObject::MakeCurrent fnMakeCurrent = rowOf(kind).object.fnMakeCurrent)
        fnMakeCurrent(state, result);
}

} // namespace halvane
