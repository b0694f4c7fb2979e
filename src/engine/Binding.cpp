#include "engine/Binding.h"

#include "collection/Text.h"
#include "engine/ModExporter.h"

namespace halvane {

Binding::Binding(const ControlAttributes& merged)
    : kind(dataSourceKindOf(merged.sDataSource)), bFrameBlank(trimBlanks(merged.sDataFrame).empty()),
      bLocationBlank(trimBlanks(merged.sDataLocation).empty()), sDataSource(merged.sDataSource),
      sDataFrame(merged.sDataFrame), sIdentity(merged.sIdentity), sIdentityValue(merged.sIdentityValue),
      sDataLocation(merged.sDataLocation) {}

namespace {

/// Whether the same map and layer yield the same object again. A tag also sets the current tag node, an
/// enumeration has a position, and a TIN's workspace depends on something else.
bool canBeKept(const Binding& binding) {
    switch (binding.kind) {
    case DataSourceKind::Map:
    case DataSourceKind::Feature:
    case DataSourceKind::FeatureTable:
    case DataSourceKind::SubType:
    case DataSourceKind::Workspace:
    case DataSourceKind::WorkspaceDomain:
        return true;
    case DataSourceKind::FeatureLayer:
    case DataSourceKind::MapLayer:
    case DataSourceKind::TinLayer:
    case DataSourceKind::RasterLayer:
    case DataSourceKind::Table:
    case DataSourceKind::RelatedTable:
        return binding.sIdentity != "TagName";
    default:
        return false;
    }
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

namespace {

template<class Role>
void keep(std::shared_ptr<Role>& pCurrent, const Value& result) {
    const auto* pObject = std::get_if<ObjectPtr>(&result);
    if (pObject != nullptr && pCurrent != nullptr &&
        static_cast<const Object*>(pCurrent.get()) == pObject->get())
        return;
    pCurrent = objectAs<Role>(result);
}

template<class Role>
void keep(ExportState& state, std::shared_ptr<Role>& pCurrent, const Value& result, ObjectKey key) {
    keep(pCurrent, result);
    if (pCurrent != nullptr)
        state.dCurrentObjects.keep(key, pCurrent);
}

/// A class that cannot be read replaces nothing: the one before it stays current, and nothing is filed.
void keepLayer(ExportState& state, const Value& result) {
    keep(state.pFeatureLayer, result);
    state.pFeatureClass = state.pFeatureLayer == nullptr ? nullptr : state.pFeatureLayer->featureClass();
    if (state.pFeatureLayer != nullptr)
        state.dCurrentObjects.keep(ObjectKey::FeatureLayer, state.pFeatureLayer);
    if (state.pFeatureClass != nullptr)
        state.dCurrentObjects.keep(ObjectKey::FeatureClass, state.pFeatureClass);
}

} // namespace

void keepAsCurrent(ExportState& state, DataSourceKind kind, const Value& result) {
    switch (kind) {
    case DataSourceKind::Map:
        keep(state, state.pMap, result, ObjectKey::DataFrame);
        break;
    case DataSourceKind::FeatureLayer:
    case DataSourceKind::MapLayer:
        keepLayer(state, result);
        break;
    case DataSourceKind::Workspace:
    case DataSourceKind::TinWorkspace:
        keep(state, state.pWorkspace, result, ObjectKey::Workspace);
        break;
    case DataSourceKind::Table:
        keep(state, state.pTable, result, ObjectKey::Table);
        break;
    case DataSourceKind::RelatedTable:
        keep(state, state.pRelatedTable, result, ObjectKey::RelatedTable);
        break;
    case DataSourceKind::TinLayer:
        keep(state, state.pTinLayer, result, ObjectKey::TinLayer);
        break;
    case DataSourceKind::RasterLayer:
        keep(state.pRasterLayer, result);
        break;
    default:
        break;
    }
}

} // namespace halvane
