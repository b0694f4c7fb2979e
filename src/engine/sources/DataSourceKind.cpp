#include "engine/sources/DataSourceKind.h"

#include "base/Text.h"
#include "engine/ExportState.h"
#include "engine/sources/DataSourceResolution.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

// ---- What becomes the current object of a kind ----

template<class Role>
void replace(std::shared_ptr<Role>& pCurrent, const Value& result) {
    const auto* pObject = std::get_if<ObjectPtr>(&result);
    if (pObject != nullptr && pCurrent != nullptr &&
        static_cast<const Object*>(pCurrent.get()) == pObject->get())
        return;
    pCurrent = objectAs<Role>(result);
}

template<auto member>
void makeCurrent(ExportState& state, const Value& result) {
    replace(state.*member, result);
}

template<auto member, ObjectKey key>
void makeCurrentAndFile(ExportState& state, const Value& result) {
    replace(state.*member, result);
    if (state.*member != nullptr)
        state.dCurrentObjects.keep(key, state.*member);
}

/// A class that cannot be read replaces nothing: the one before it stays current, and nothing is filed.
void makeLayerCurrent(ExportState& state, const Value& result) {
    replace(state.pFeatureLayer, result);
    state.pFeatureClass = state.pFeatureLayer == nullptr ? nullptr : state.pFeatureLayer->featureClass();
    if (state.pFeatureLayer != nullptr)
        state.dCurrentObjects.keep(ObjectKey::FeatureLayer, state.pFeatureLayer);
    if (state.pFeatureClass != nullptr)
        state.dCurrentObjects.keep(ObjectKey::FeatureClass, state.pFeatureClass);
}

constexpr auto makeMapCurrent = makeCurrentAndFile<&ExportState::pMap, ObjectKey::DataFrame>;
constexpr auto makeWorkspaceCurrent = makeCurrentAndFile<&ExportState::pWorkspace, ObjectKey::Workspace>;
constexpr auto makeTableCurrent = makeCurrentAndFile<&ExportState::pTable, ObjectKey::Table>;
constexpr auto makeRelatedCurrent = makeCurrentAndFile<&ExportState::pRelatedTable, ObjectKey::RelatedTable>;
constexpr auto makeTinCurrent = makeCurrentAndFile<&ExportState::pTinLayer, ObjectKey::TinLayer>;
constexpr auto makeRasterCurrent = makeCurrent<&ExportState::pRasterLayer>;

// ---- The kinds ----

using enum DataSourceKind;

constexpr DataSourceObject noObject{nullptr, Origin::Nowhere, Keeping::Never, nullptr, false};
/// The feature class of the current layer, which is no current object by itself.
constexpr DataSourceObject classOfLayer{resolveFeatureClass, Origin::Enclosing, Keeping::Always, nullptr,
                                        false};
constexpr Origin inMap = Origin::Map;
constexpr Origin enclosed = Origin::Enclosing;
constexpr Origin inWorkspace = Origin::Workspace;
constexpr RowUse noRow = RowUse::None;
constexpr ShapePart noShape = ShapePart::None;
constexpr DataSourceStreaming plain{LeafStreaming::OneValue, GroupStreaming::Never};
constexpr DataSourceStreaming inPlaces{LeafStreaming::OneValue, GroupStreaming::Places};
constexpr DataSourceStreaming items{LeafStreaming::OneValue, GroupStreaming::Content};
constexpr DataSourceStreaming records{LeafStreaming::OneValue, GroupStreaming::RecordContent};
constexpr DataSourceStreaming related{LeafStreaming::IntoElement, GroupStreaming::Never};
constexpr DataSourceStreaming inTree{LeafStreaming::Never, GroupStreaming::Never};
using enum Keeping;

// clang-format off
constexpr std::array<DataSourceRow, nDataSourceKinds> rows{{
    {Map, "Map", {resolveMap, inMap, Always, makeMapCurrent, false}, noRow, plain, noShape},
    {MapLayer, "MapLayer", {resolveMapLayer, inMap, UnlessByTag, makeLayerCurrent, true}, noRow, plain, noShape},
    {FeatureLayer, "FeatureLayer", {resolveFeatureLayer, inMap, UnlessByTag, makeLayerCurrent, true}, noRow, plain, noShape},
    {RasterLayer, "RasterLayer", {resolveRasterLayer, inMap, UnlessByTag, makeRasterCurrent, true}, noRow, plain, noShape},
    {TinLayer, "TinLayer", {resolveTinLayer, inMap, UnlessByTag, makeTinCurrent, true}, noRow, plain, noShape},
    {Feature, "Feature", classOfLayer, RowUse::Feature, items, noShape},
    {FeatureTable, "FeatureTable", classOfLayer, noRow, plain, noShape},
    {FeatureClass, "FeatureClass", noObject, noRow, plain, noShape},
    {FeatureAttributes, "FeatureAttributes", noObject, noRow, plain, noShape},
    {Table, "Table", {resolveTable, inMap, UnlessByTag, makeTableCurrent, true}, RowUse::Record, records, noShape},
    {Record, "Record", noObject, RowUse::Record, records, noShape},
    {RelatedTable, "RelatedTable", {resolveRelatedTable, inMap, UnlessByTag, makeRelatedCurrent, true}, noRow, related, noShape},
    {RelatedRecord, "RelatedRecord", noObject, noRow, related, noShape},
    {Workspace, "Workspace", {resolveWorkspace, inWorkspace, Always, makeWorkspaceCurrent, true}, noRow, plain, noShape},
    {WorkspaceDomain, "WorkspaceDomain", {resolveWorkspaceDomain, inWorkspace, Always, nullptr, false}, noRow, plain, noShape},
    {Relationship, "Relationship", {resolveRelationship, inWorkspace, Never, nullptr, false}, noRow, plain, noShape},
    {TinWorkspace, "TinWorkspace", {resolveTinWorkspace, enclosed, Never, makeWorkspaceCurrent, false}, noRow, plain, noShape},
    {RasterWorkspace, "RasterWorkspace", {nullptr, enclosed, Never, nullptr, false}, noRow, plain, noShape},
    {Field, "Field", noObject, noRow, inTree, noShape},
    {SubType, "SubType", {resolveSubType, enclosed, Always, nullptr, false}, noRow, inTree, noShape},
    {SubTypeFieldInfo, "SubTypeFieldInfo", noObject, noRow, plain, noShape},
    {GeometryLength, "Geometry.Length", noObject, noRow, inPlaces, ShapePart::Length},
    {GeometryPoint, "Geometry.Point", noObject, noRow, inPlaces, ShapePart::Start},
    {GeometryFromNode, "Geometry.FromNode", noObject, noRow, inPlaces, ShapePart::Start},
    {GeometryToNode, "Geometry.ToNode", noObject, noRow, inPlaces, ShapePart::End},
    {GeometryEndPoint, "Geometry.EndPoint", noObject, noRow, inPlaces, ShapePart::End},
    {GeometryVertice, "Geometry.Vertice", noObject, noRow, inPlaces, ShapePart::Vertices},
    {Time, "Time", noObject, noRow, plain, noShape},
    {External, "External", noObject, noRow, plain, noShape},
    {LayerInOtherCase, "", noObject, noRow, plain, noShape},
    {SubTypeInOtherCase, "", noObject, noRow, plain, noShape},
    {OtherGeometry, "", noObject, noRow, inPlaces, ShapePart::Unknown},
    {Blank, "", noObject, noRow, plain, noShape},
    {Other, "", noObject, noRow, plain, noShape},
}};
// clang-format on

static_assert(standsInOrder(rows));

constexpr std::size_t nWords = static_cast<std::size_t>(LayerInOtherCase);
constexpr auto words = [] {
    std::array<std::string_view, nWords> all;
    for (std::size_t n = 0; n < nWords; ++n)
        all[n] = rows[n].sWord;
    return all;
}();

DataSourceKind kindInOtherCase(std::string_view sDataSource) {
    if (equalIgnoringCase(sDataSource, rowOf(MapLayer).sWord) ||
        equalIgnoringCase(sDataSource, rowOf(FeatureLayer).sWord))
        return LayerInOtherCase;
    if (equalIgnoringCase(sDataSource, rowOf(SubType).sWord))
        return SubTypeInOtherCase;
    if (equalIgnoringCase(sDataSource, rowOf(SubTypeFieldInfo).sWord))
        return SubTypeFieldInfo;
    return containsIgnoringCase(sDataSource, "GEOMETRY") ? OtherGeometry : Other;
}

} // namespace

DataSourceKind dataSourceKindOf(std::string_view sDataSource) {
    if (trimBlanks(sDataSource).empty())
        return Blank;
    const auto* const pWord = std::find(words.begin(), words.end(), sDataSource);
    return pWord == words.end() ? kindInOtherCase(sDataSource)
                                : static_cast<DataSourceKind>(pWord - words.begin());
}

const DataSourceRow& rowOf(DataSourceKind kind) noexcept {
    return rows[static_cast<std::size_t>(kind)];
}

std::span<const std::string_view> dataSourceWords() noexcept {
    return words;
}

bool listsThings(DataSourceKind kind) noexcept {
    constexpr std::array aOfDefinitions{Field,           SubType,     SubTypeInOtherCase, SubTypeFieldInfo,
                                        WorkspaceDomain, Relationship};
    return rowOf(kind).shapePart != ShapePart::None ||
           std::ranges::find(aOfDefinitions, kind) != aOfDefinitions.end();
}

} // namespace halvane
