#include "exporters/KindExports.h"

#include "exporters/LeafValues.h"
#include "exporters/RepeatedNode.h"

#include <array>

namespace halvane {

namespace {

using enum DataSourceKind;
using enum LeafBinding;
using enum FieldsInside;
constexpr auto none = nullptr;

// clang-format off
constexpr std::array<KindExport, nDataSourceKinds> kinds{{
    // kind, a leaf binds, a leaf writes, a repeat binds, a repeated leaf, a repeated group, of features, fields inside
    {Map, Always, writeMapProperty, true, none, none, false, Any},
    {MapLayer, Always, writeLayerProperty, true, none, none, false, Layers},
    {FeatureLayer, Always, writeLayerProperty, true, none, none, false, Layers},
    {RasterLayer, Always, writeRasterLayerProperty, false, none, none, false, AnothersToo},
    {TinLayer, Always, writeTinLayerProperty, true, none, none, false, AnothersToo},
    {Feature, Never, writeFeatureValue, true, repeatFeatureLeaf, repeatOverFeatures, true, Any},
    {FeatureTable, Always, writeFeatureValue, true, repeatFeatureLeaf, none, true, Any},
    {FeatureClass, Never, none, false, none, none, false, Any},
    {FeatureAttributes, Never, none, false, none, none, false, Any},
    {Table, WithoutRecord, writeRecordValue, true, repeatRecordLeaf, repeatOverRecords, false, AnothersToo},
    {Record, Never, writeRecordValue, false, repeatRecordLeaf, repeatOverRecords, false, AnothersToo},
    {RelatedTable, Always, writeRelatedValues, true, none, repeatOverRelatedRows, false, AnothersToo},
    {RelatedRecord, Never, writeRelatedValues, false, none, none, false, AnothersToo},
    {Workspace, Always, writeWorkspaceProperty, true, none, none, false, Any},
    {WorkspaceDomain, Never, none, false, none, repeatOverDomains, false, Any},
    {Relationship, Never, none, false, none, repeatOverRelationshipClasses, false, Any},
    {TinWorkspace, Always, writeTinWorkspaceProperty, true, none, none, false, Any},
    {RasterWorkspace, Never, writeRasterWorkspaceProperty, false, none, none, false, Any},
    {Field, Never, none, false, none, repeatOverFields, false, Any},
    {SubType, Never, writeSubtypes, false, none, repeatOverSubtypes, false, Any},
    {SubTypeFieldInfo, Never, none, false, none, none, false, Any},
    {GeometryLength, Never, none, false, none, repeatOverShapes, false, Any},
    {GeometryPoint, Never, none, false, none, repeatOverShapes, false, Any},
    {GeometryFromNode, Never, none, false, none, repeatOverShapes, false, Any},
    {GeometryToNode, Never, none, false, none, repeatOverShapes, false, Any},
    {GeometryEndPoint, Never, none, false, none, repeatOverShapes, false, Any},
    {GeometryVertice, Never, none, false, none, repeatOverShapes, false, Any},
    {Time, Never, writeToday, false, none, none, false, Any},
    {External, Never, writeExternal, false, none, none, false, Any},
    {LayerInOtherCase, Never, writeLayerProperty, false, none, none, false, Any},
    {SubTypeInOtherCase, Never, none, false, none, none, false, Any},
    {OtherGeometry, Never, none, false, none, repeatOverShapes, false, Any},
    {Blank, Never, none, false, none, none, false, Any},
    {Other, Never, none, false, none, none, false, Any},
}};
// clang-format on

static_assert(standsInOrder(kinds));

} // namespace

const KindExport& exportOf(DataSourceKind kind) noexcept {
    return kinds[static_cast<std::size_t>(kind)];
}

bool isInsideOtherSource(dom::Node oNode) {
    for (oNode = oNode.parentNode(); oNode; oNode = oNode.parentNode()) {
        switch (exportOf(dataSourceKindOf(oNode.getAttribute("DataSource").value_or(""))).fieldsInside) {
        case FieldsInside::AnothersToo:
            return true;
        case FieldsInside::Layers:
            return false;
        case FieldsInside::Any:
            break;
        }
    }
    return false;
}

} // namespace halvane
