#include "exporters/second/ItemFacts.h"

#include "base/Text.h"
#include "engine/second/RowScope.h"
#include "engine/sources/Binding.h"
#include "engine/sources/NamedThings.h"
#include "exporters/FieldTypeName.h"
#include "exporters/LeafValues.h"
#include "exporters/Property.h"
#include "exporters/second/CurrentAgain.h"
#include "host/Domains.h"
#include "host/Explanations.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace halvane {

namespace {

// ---- What is current ----

void makeMapCurrent(ExportState& state, const LoopItem& item) {
    const auto pMap = item.as<host::GisMap>();
    if (state.pShownMap != pMap)
        ++state.nGeneration; // what a blank data frame stands for has changed
    state.pMap = state.pShownMap = pMap;
}

void makeLayerCurrent(ExportState& state, const LoopItem& item) {
    const Value layer(item.pObject);
    keepAsCurrent(state, DataSourceKind::RasterLayer, layer);
    keepAsCurrent(state, DataSourceKind::TinLayer, layer);
    keepAsCurrent(state, DataSourceKind::FeatureLayer, layer);
}

/// An item that is a layer or a table, and what is around it.
const ItemScope* tableScope(const ExportState& state) {
    const ItemScope* pScope = state.pItemScope;
    while (pScope != nullptr && pScope->item().kind != ForEach::Layer &&
           pScope->item().kind != ForEach::Table)
        pScope = pScope->around();
    return pScope;
}

// ---- Properties ----

std::string layerTypeOf(const host::GisLayer& layer) {
    switch (kindOf(layer)) {
    case ThingKind::FeatureLayer:
        return "Feature";
    case ThingKind::RasterLayer:
        return "Raster";
    case ThingKind::TinLayer:
        return "TIN";
    default:
        return "";
    }
}

std::string geometryTypeOf(const host::GisLayer& layer) {
    const auto* const pFeatures = dynamic_cast<const host::GisFeatureLayer*>(&layer);
    const auto pClass = pFeatures == nullptr ? nullptr : pFeatures->featureClass();
    return pClass == nullptr ? "" : std::string(shapeTypeName(pClass->shapeType()));
}

std::string domainsText(const LoopItem& field) {
    std::string sNames;
    for (const auto& pDomain : domainsOfField(field))
        sNames += (sNames.empty() ? "" : ", ") + pDomain->name();
    return sNames;
}

std::string fieldText(ExportState& state, const LoopItem& field, std::string_view sProperty) {
    if (equalIgnoringCase(sProperty, "FieldDomain"))
        return domainsText(field);
    // The type of a shape is that of the class which has the field.
    const CurrentAgain again(state);
    if (auto pClass = std::dynamic_pointer_cast<host::GisFeatureClass>(field.pTable))
        state.pFeatureClass = std::move(pClass);
    return FieldPropertyText(state, field.field(), sProperty);
}

std::string codeText(ExportState& state, const host::CodedValue& code, std::string_view sProperty) {
    if (equalIgnoringCase(sProperty, "DomainCodeValue"))
        return toText(code.vCode);
    if (equalIgnoringCase(sProperty, "DomainCodeName"))
        return code.sName;
    state.notice(Notice::UnknownProperty, sProperty);
    return {};
}

using ReadSubtype = std::string (*)(const host::GisSubtypes&, std::int32_t lCode);
constexpr std::array<Property<ReadSubtype>, 4> subtypeProperties{{
    {"SubTypeName",
     [](const host::GisSubtypes& subtypes, std::int32_t lCode) { return subtypes.subtypeName(lCode); }},
    {"SubTypeCode",
     [](const host::GisSubtypes& /*subtypes*/, std::int32_t lCode) { return std::to_string(lCode); }},
    {"SubTypeFieldName",
     [](const host::GisSubtypes& subtypes, std::int32_t /*lCode*/) { return subtypes.subtypeFieldName(); }},
    {"DefaultSubTypeCode",
     [](const host::GisSubtypes& subtypes, std::int32_t /*lCode*/) {
         return std::to_string(subtypes.defaultSubtypeCode());
     }},
}};

std::string subtypeText(ExportState& state, const LoopItem& item, std::string_view sProperty) {
    const auto* const pProperty = findProperty(state, subtypeProperties, sProperty);
    return pProperty == nullptr ? std::string() : pProperty->second(*item.pSubtypes, item.lSubtype);
}

/// A value that the data does not have is none.
std::string coordinateText(const Leaf& leaf, const host::PointValues& point) {
    double dValue = std::numeric_limits<double>::quiet_NaN();
    if (leaf.asks("X") || leaf.asks("Geometry.X"))
        dValue = point.dX;
    else if (leaf.asks("Y") || leaf.asks("Geometry.Y"))
        dValue = point.dY;
    else if (leaf.asks("Z") || leaf.asks("Geometry.Z"))
        dValue = point.dZ;
    else if (leaf.asks("M") || leaf.asks("Geometry.Measure"))
        dValue = point.dM;
    else
        leaf.state.notice(Notice::UnknownProperty, leaf.merged().sDataProperty);
    return std::isnan(dValue)
               ? std::string()
               : std::string(FormatNumber(leaf.state, dValue, leaf.control.decimalPlaces.value()).sText);
}

/// The text of things that no leaf of the first edition stands for.
std::string propertyText(ExportState& state, const LoopItem& item, std::string_view sProperty) {
    switch (item.kind) {
    case ForEach::Field:
        return fieldText(state, item, sProperty);
    case ForEach::Domain:
        return DomainPropertyText(state, *item.as<host::GisDomain>(), sProperty);
    case ForEach::Relationship:
        return RelationshipPropertyText(state, *item.as<host::GisRelationshipClass>(), sProperty);
    case ForEach::Code:
        return codeText(state, item.code, sProperty);
    default:
        return subtypeText(state, item, sProperty);
    }
}

void writeLayer(const Leaf& leaf, const host::GisLayer& layer) {
    if (leaf.asks("LayerType"))
        writeValue(leaf, layerTypeOf(layer));
    else if (leaf.asks("GeometryType"))
        writeValue(leaf, geometryTypeOf(layer));
    else if (leaf.state.pRasterLayer.get() == &layer)
        writeRasterLayerProperty(leaf);
    else if (leaf.state.pTinLayer.get() == &layer)
        writeTinLayerProperty(leaf);
    else
        writeLayerProperty(leaf);
}

/// By the leaves of the first edition, which write what is current.
void writeCurrentThing(const Leaf& leaf, const LoopItem& item) {
    ExportState& state = leaf.state;
    // What stands between may have made others current.
    const CurrentAgain again(state);
    makeItemCurrent(state, item);
    if (item.kind == ForEach::Layer)
        state.pMap.reset(); // the reference is the layer's own
    if (item.kind == ForEach::Layer)
        writeLayer(leaf, *item.as<host::GisLayer>());
    else if (item.kind == ForEach::Workspace)
        writeWorkspaceProperty(leaf);
    else if (item.kind == ForEach::Map && leaf.asks("MapName"))
        writeValue(leaf, state.pMap->name());
    else if (item.kind == ForEach::Map)
        writeMapProperty(leaf);
    else if (leaf.asks("TableName"))
        writeValue(leaf, state.pTable->datasetName());
    else
        state.notice(Notice::UnknownProperty, leaf.merged().sDataProperty);
}

} // namespace

void makeItemCurrent(ExportState& state, const LoopItem& item) {
    switch (item.kind) {
    case ForEach::Map:
        makeMapCurrent(state, item);
        break;
    case ForEach::Layer:
        makeLayerCurrent(state, item);
        break;
    case ForEach::Table:
        keepAsCurrent(state, DataSourceKind::Table, Value(item.pObject));
        break;
    case ForEach::Workspace:
        keepAsCurrent(state, DataSourceKind::Workspace, Value(item.pObject));
        break;
    default:
        break;
    }
}

host::GisTablePtr tableAtHand(const ExportState& state) {
    const ItemScope* const pScope = tableScope(state);
    if (pScope != nullptr && pScope->item().kind == ForEach::Table)
        return pScope->item().as<host::GisTable>();
    if (pScope != nullptr) {
        const auto pLayer = pScope->item().as<host::GisFeatureLayer>();
        return pLayer == nullptr ? nullptr : pLayer->featureClass();
    }
    return state.pFeatureClass != nullptr ? host::GisTablePtr(state.pFeatureClass) : state.pTable;
}

bool rowsAreWithinItems(const ExportState& state) {
    const ItemScope* const pScope = tableScope(state);
    return pScope == nullptr || pScope->rows() != state.pRowScope;
}

host::GisSubtypesPtr subtypesOf(host::GisTable& table) {
    if (auto* const pClass = dynamic_cast<host::GisFeatureClass*>(&table))
        return pClass->subtypes();
    const auto* const pRules = dynamic_cast<const host::FieldRules*>(&table);
    return pRules == nullptr ? nullptr : pRules->fieldRules();
}

std::vector<host::GisDomainPtr> domainsOfField(const LoopItem& field) {
    std::vector<host::GisDomainPtr> domains;
    const auto pSubtypes = field.pTable == nullptr ? nullptr : subtypesOf(*field.pTable);
    if (pSubtypes == nullptr)
        return domains;
    const bool bSubtypes = pSubtypes->hasSubtypes();
    const std::int32_t lCount = bSubtypes ? pSubtypes->subtypeCount() : 1;
    for (std::int32_t n = 0; n < lCount; ++n) {
        auto pDomain = pSubtypes->domain(bSubtypes ? pSubtypes->subtypeCode(n) : 0, field.field().name());
        const auto isSame = [&](const host::GisDomainPtr& pOther) {
            return pOther->name() == pDomain->name();
        };
        if (pDomain != nullptr && std::ranges::none_of(domains, isSame))
            domains.push_back(std::move(pDomain));
    }
    return domains;
}

void writeItemProperty(const Leaf& leaf) {
    const LoopItem& item = leaf.state.pItemScope->item();
    switch (item.kind) {
    case ForEach::Map:
    case ForEach::Layer:
    case ForEach::Table:
    case ForEach::Workspace:
        writeCurrentThing(leaf, item);
        break;
    case ForEach::Vertex:
        writeValue(leaf, coordinateText(leaf, item.point));
        break;
    case ForEach::Part:
        leaf.state.notice(Notice::UnknownProperty, leaf.merged().sDataProperty);
        break;
    default:
        writeValue(leaf, propertyText(leaf.state, item, leaf.merged().sDataProperty));
    }
}

} // namespace halvane
