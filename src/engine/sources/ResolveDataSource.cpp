#include "base/Text.h"
#include "engine/ModExporter.h"
#include "engine/Required.h"
#include "engine/sources/DataSourceResolution.h"
#include "engine/sources/LayerSearch.h"
#include "engine/sources/ModOpenWOrkspace.h"
#include "engine/sources/NamedThings.h"
#include "host/Application.h"
#include "host/Domains.h"
#include "host/Explanations.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/SpatialReference.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <utility>

namespace halvane {

namespace {

constexpr const char* noFeatureClass = "the layer has no feature class";
constexpr const char* noWorkspace =
    "there is no workspace: no layer is current and no data location could be opened";

using Request = ResolutionRequest;

template<class Pointer>
Value objectOrEmpty(Pointer pObject) {
    if (pObject == nullptr)
        return Empty{};
    return ObjectPtr(std::move(pObject));
}

/// The host is asked for the name in vain where it fails: what went wrong stays the mismatch.
Failure mismatchOf(const host::GisLayer& layer) {
    Failure mismatch = Failure::of(FailureNumber::TypeMismatch);
    try {
        return mismatch.about(otherKind(layer.name(), kindOf(layer)));
    } catch (const Failure&) {
        return mismatch;
    }
}

host::GisFeatureLayerPtr asFeatureLayer(const host::GisLayerPtr& pLayer) {
    auto pFeatureLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pLayer);
    if (pLayer != nullptr && pFeatureLayer == nullptr)
        throw mismatchOf(*pLayer);
    return pFeatureLayer;
}

host::GisTablePtr asTable(const host::GisLayerPtr& pLayer) {
    const auto pFeatureLayer = asFeatureLayer(pLayer);
    return pFeatureLayer == nullptr ? nullptr : pFeatureLayer->asTable();
}

MapIndex& indexOfMap(const Request& request) {
    return request.state.mapIndexes.of(request.pCurrentMap, request.state.nGeneration);
}

host::GisWorkspacePtr openLocation(const Request& request) {
    return OpenWorkspaceFromPath(request.state, request.sDataLocation, 0);
}

/// The workspace of the current layer's feature class; without a current layer the one at the data location.
host::GisWorkspacePtr layerOrLocationWorkspace(const Request& request) {
    if (request.pCurrentLayer == nullptr)
        return openLocation(request);
    return required(request.pCurrentLayer->featureClass(), noFeatureClass)->workspace();
}

/// A new layer over the feature class of that name at the data location, whatever the map holds.
Value layerFromDisk(const Request& request) {
    auto pFeatureClass =
        required(openLocation(request), noWorkspace)->openFeatureClass(request.sIdentityValue);
    auto pLayer = request.state.pHost->newFeatureLayer();
    pLayer->setFeatureClass(std::move(pFeatureClass));
    return objectOrEmpty(std::move(pLayer));
}

Value layerByTag(const Request& request) {
    ExportState& state = request.state;
    const std::string sName = LookupTagLayerName(state, request.sIdentityValue);
    const Node oRoot = state.oExternalDom == nullptr ? Node() : state.oExternalDom->asNode();
    state.oSharedNode = FindTagNode(state, oRoot, state.sExternalNodePath, request.sIdentityValue);
    if (request.pCurrentMap == nullptr)
        return Empty{};
    const std::string_view sSought = sName.empty() ? request.sIdentityValue : std::string_view(sName);
    return objectOrEmpty(asFeatureLayer(indexOfMap(request).findLayer(sSought)));
}

Value layerByName(const Request& request) {
    return objectOrEmpty(asFeatureLayer(indexOfMap(request).findLayer(request.sIdentityValue)));
}

/// What a layer or table of the map is looked for by.
std::string soughtName(const Request& request) {
    if (request.sIdentity == "TagName")
        return LookupTagLayerName(request.state, request.sIdentityValue);
    return std::string(request.sIdentityValue);
}

/// The first top-level layer of the kind with the sought name; groups are not entered.
template<class LayerKind>
Value topLevelLayer(const Request& request) {
    if (request.pCurrentMap == nullptr ||
        (request.sIdentity != "TagName" && request.sIdentity != "LayerName"))
        return Empty{};
    const std::string sSought = soughtName(request);
    const std::int32_t lCount = request.pCurrentMap->layerCount();
    for (std::int32_t i = 0; i < lCount; ++i) {
        auto pLayer = std::dynamic_pointer_cast<LayerKind>(request.pCurrentMap->layer(i));
        if (isNamed(pLayer.get(), sSought))
            return objectOrEmpty(std::move(pLayer));
    }
    return Empty{};
}

/// A table that the map has and that cannot be opened is not one that there is not.
void failIfUnreadable(const host::GisMapPtr& pMap, std::string_view sTable) {
    if (const auto* pProblems = dynamic_cast<const host::TableProblems*>(pMap.get()))
        pProblems->requireReadableTable(sTable);
}

/// A table of the map; for a related table also a layer of the map; else a table at the data location. Only
/// the first of these looks for a tag's name: the others take the identity value itself, on purpose.
Value findTable(const Request& request, std::string_view sIdentityByName, bool bLayersToo) {
    if (request.sIdentity != "TagName" && request.sIdentity != sIdentityByName)
        return Empty{};
    host::GisTablePtr pTable;
    std::string sSought;
    if (request.pCurrentMap != nullptr) {
        MapIndex& index = indexOfMap(request);
        sSought = soughtName(request);
        pTable = index.findTable(sSought);
        if (pTable == nullptr && bLayersToo)
            pTable = asTable(index.findLayer(request.sIdentityValue));
    }
    if (pTable != nullptr)
        return objectOrEmpty(std::move(pTable));
    const auto pWorkspace = openLocation(request);
    if (pWorkspace != nullptr && !request.sIdentityValue.empty())
        pTable = pWorkspace->openTable(request.sIdentityValue);
    if (pTable == nullptr)
        failIfUnreadable(request.pCurrentMap, sSought);
    return objectOrEmpty(std::move(pTable));
}

class ResolvingScope {
public:
    explicit ResolvingScope(ExportState& state) : state_(state) { state.bResolving = true; }
    ResolvingScope(const ResolvingScope&) = delete;
    ResolvingScope& operator=(const ResolvingScope&) = delete;
    ~ResolvingScope() { state_.bResolving = false; }

private:
    ExportState& state_;
};

} // namespace

Value resolveMap(const Request& request) {
    const auto& pMapDoc = request.state.pMapDoc;
    if (pMapDoc == nullptr)
        return Empty{};
    if (!trimBlanks(request.sIdentityValue).empty())
        return objectOrEmpty(FindMapByName(request.state, pMapDoc, request.sIdentityValue));
    const auto& pShownMap = request.state.pShownMap;
    return objectOrEmpty(pShownMap != nullptr ? pShownMap : pMapDoc->focusMap());
}

Value resolveMapLayer(const Request& request) {
    return request.sIdentity == "LayerName" && request.pCurrentMap != nullptr ? layerByName(request)
                                                                              : resolveFeatureLayer(request);
}

Value resolveFeatureLayer(const Request& request) {
    if (request.sIdentity == "LayerName")
        return layerFromDisk(request);
    return request.sIdentity == "TagName" ? layerByTag(request) : Value(Empty{});
}

Value resolveRasterLayer(const Request& request) {
    return topLevelLayer<host::GisRasterLayer>(request);
}

Value resolveTinLayer(const Request& request) {
    return topLevelLayer<host::GisTinLayer>(request);
}

Value resolveFeatureClass(const Request& request) {
    if (request.pCurrentLayer == nullptr)
        return Empty{};
    return objectOrEmpty(request.pCurrentLayer->featureClass());
}

Value resolveSubType(const Request& request) {
    if (request.pCurrentLayer == nullptr)
        return Empty{};
    return objectOrEmpty(required(request.pCurrentLayer->featureClass(), noFeatureClass)->subtypes());
}

Value resolveTable(const Request& request) {
    return findTable(request, "TableName", false);
}

Value resolveRelatedTable(const Request& request) {
    return findTable(request, "LayerName", true);
}

Value resolveRelationship(const Request& request) {
    return objectOrEmpty(required(layerOrLocationWorkspace(request), noWorkspace)->relationshipClasses());
}

Value resolveWorkspaceDomain(const Request& request) {
    return objectOrEmpty(required(layerOrLocationWorkspace(request), noWorkspace)->domainsRole());
}

/// The one kind that does not use the workspace: without one there is nothing, and nothing fails.
Value resolveWorkspace(const Request& request) {
    return objectOrEmpty(layerOrLocationWorkspace(request));
}

Value resolveTinWorkspace(const Request& request) {
    const auto& pTinLayer = request.state.pTinLayer;
    if (pTinLayer == nullptr)
        return Empty{};
    return objectOrEmpty(required(pTinLayer->dataset(), "the TIN layer has no dataset")->workspace());
}

void ResolveDataSource(ExportState& state, Value& result, std::string_view sDataSource,
                       const host::GisMapPtr& pCurrentMap, const host::GisFeatureLayerPtr& pCurrentLayer,
                       std::string_view sIdentity, std::string_view sIdentityValue,
                       std::string_view sDataLocation) {
    result = Empty{};
    const DataSourceRow& row = rowOf(dataSourceKindOf(sDataSource));
    if (row.object.fnResolve == nullptr)
        return;
    const ResolvingScope scope(state);
    trapFailures(state, [&] {
        const auto nFailuresBefore = state.nFailures;
        result = row.object.fnResolve(
            {state, pCurrentMap, pCurrentLayer, sIdentity, sIdentityValue, sDataLocation});
        if (isEmpty(result) && state.nFailures == nFailuresBefore)
            state.notice(Notice::ResolvedToNothing, row.sWord);
    });
}

} // namespace halvane
