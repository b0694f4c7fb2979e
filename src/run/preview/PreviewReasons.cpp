#include "run/preview/PreviewReasons.h"

#include "engine/ModExporter.h"
#include "engine/second/GroupScope.h"
#include "engine/second/ItemScope.h"
#include "engine/second/RowScope.h"
#include "engine/second/SecondNode.h"
#include "engine/sources/Binding.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Rows.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"
#include "telling/Text.h"

#include <fmt/format.h>

#include <exception>

namespace halvane {

namespace {

using enum DataSourceKind;

/// What a host that fails does not tell.
template<class Tell>
std::string toldBy(const Tell& tell) {
    try {
        return tell();
    } catch (const Failure&) {
        return {};
    } catch (const std::exception&) {
        return {};
    }
}

template<class Thing>
std::string named(std::string_view sKind, const Thing& pThing) {
    return pThing == nullptr ? "" : fmt::format("{} {}", sKind, inQuotes(pThing->name()));
}

template<class Table>
std::string tableNamed(std::string_view sKind, const Table& pTable) {
    return pTable == nullptr ? "" : fmt::format("{} {}", sKind, inQuotes(pTable->datasetName()));
}

std::string workspaceNamed(const host::GisWorkspacePtr& pWorkspace) {
    return pWorkspace == nullptr ? "" : "workspace " + inQuotes(pWorkspace->pathName());
}

/// The current object of a kind.
std::string currentObject(const ExportState& state, DataSourceKind kind) {
    switch (kind) {
    case Map:
        return named("map", state.pMap);
    case RasterLayer:
    case RasterWorkspace:
        return named("raster layer", state.pRasterLayer);
    case TinLayer:
    case TinWorkspace:
        return named("TIN layer", state.pTinLayer);
    case Table:
    case Record:
        return tableNamed("table", state.pTable);
    case RelatedTable:
    case RelatedRecord:
        return tableNamed("related table", state.pRelatedTable);
    case Workspace:
    case WorkspaceDomain:
    case Relationship:
        return workspaceNamed(state.pWorkspace);
    case Time:
    case External:
    case Blank:
    case Other:
        return {};
    default:
        return named("layer", state.pFeatureLayer);
    }
}

// ---- Rows ----

std::string rowAtHand(const ExportState& state) {
    const RowScope* const pScope = state.pRowScope;
    if (pScope == nullptr || pScope->row() == nullptr)
        return {};
    const std::string sTable =
        pScope->table() == nullptr ? "" : " of " + inQuotes(pScope->table()->datasetName());
    return fmt::format("row {}{}", pScope->row()->objectId(), sTable);
}

std::string fieldOfRow(const ExportState& state, const ControlNode& control) {
    const std::string sRow = rowAtHand(state);
    const std::string_view sField = control.merged.sIdentityValue;
    const std::string sOf = sRow.empty() ? "" : " of " + sRow;
    if (namesObjectId(sField))
        return "object identifier" + sOf;
    const std::string sText = fmt::format("field {}{}", inQuotes(sField), sOf);
    if (sRow.empty() || control.merged.sIdentity == "TagName")
        return sText;
    const host::GisRow& row = *state.pRowScope->row();
    const std::int32_t lIndex = row.fields().findField(sField);
    return lIndex >= 0 && isNull(row.value(lIndex)) ? sText + std::string(sOfNull) : sText;
}

bool readsField(const ControlNode& control) {
    return control.bReadsRow || control.bNamesField ||
           (rowOf(control.pBinding->kind).rowUse != RowUse::None && !control.merged.sIdentityValue.empty());
}

// ---- Things of a map ----

std::string shownItem(const LoopItem& item) {
    switch (item.kind) {
    case ForEach::Map:
        return named("map", item.as<host::GisMap>());
    case ForEach::Layer:
        return named("layer", item.as<host::GisLayer>());
    case ForEach::Table:
        return tableNamed("table", item.as<host::GisTable>());
    case ForEach::Field:
        return fmt::format("field {}", inQuotes(item.field().name()));
    case ForEach::Domain:
        return named("domain", item.as<host::GisDomain>());
    case ForEach::Relationship:
        return named("relationship class", item.as<host::GisRelationshipClass>());
    case ForEach::Workspace:
        return workspaceNamed(item.as<host::GisWorkspace>());
    case ForEach::Code:
        return fmt::format("code {}", inQuotes(toText(item.code.vCode)));
    case ForEach::Subtype:
        return fmt::format("subtype {}", item.lSubtype);
    case ForEach::Part:
        return fmt::format("part {} of the shape", item.lPart + 1);
    case ForEach::Vertex:
        return fmt::format("vertex at {:.10g}, {:.10g}", item.point.dX, item.point.dY);
    }
    return {};
}

std::string thingAtHand(const ExportState& state) {
    return state.pItemScope == nullptr ? "" : shownItem(state.pItemScope->item());
}

std::string propertyOf(std::string_view sProperty, std::string_view sObject) {
    if (sProperty.empty())
        return std::string(sObject);
    return sObject.empty() ? fmt::format("property {}", sProperty)
                           : fmt::format("property {} of {}", sProperty, sObject);
}

/// Attributes with a prefix, as they are written.
std::string secondAttributes(dom::Node oControlNode) {
    std::string sAll;
    for (const dom::Node oAttribute : oControlNode.attributes()) {
        const auto sName = oAttribute.nodeName();
        if (sName.find(':') == std::string_view::npos || sName.starts_with("xml"))
            continue;
        sAll += fmt::format("{}{}={}", sAll.empty() ? "" : " ", sName, inQuotes(oAttribute.nodeValue()));
    }
    return sAll;
}

std::string leafText(const ExportState& state, const ControlNode& control) {
    const DataSourceKind kind = control.pBinding->kind;
    if (control.bHasText)
        return rowAtHand(state);
    if (control.bReadsItem)
        return propertyOf(control.merged.sDataProperty, thingAtHand(state));
    if (readsField(control))
        return fieldOfRow(state, control);
    if (kind == RelatedRecord)
        return fmt::format("field {} of the related rows of {}", inQuotes(control.merged.sIdentityValue),
                           currentObject(state, kind));
    if (kind == Time)
        return "the time of the export";
    if (kind == External)
        return fmt::format("what the processor {} makes of it", inQuotes(control.merged.sIdentityValue));
    if (kind == Blank || kind == Other)
        return {};
    return propertyOf(control.merged.sDataProperty, currentObject(state, kind));
}

} // namespace

std::vector<std::string> reasonsOfNode(const ExportState& state, const ControlNode& control, bool bFound) {
    std::vector<std::string> reasons;
    if (std::string sSecond = secondAttributes(control.oNode); !sSecond.empty())
        reasons.push_back(std::move(sSecond));
    if (!bFound || !control.hasChildren() || control.own.sDataSource.empty())
        return reasons;
    std::string sObject = toldBy([&] { return currentObject(state, control.pBinding->kind); });
    if (!sObject.empty())
        reasons.push_back(std::move(sObject));
    return reasons;
}

std::string reasonOfLeaf(const ExportState& state, const ControlNode& control) {
    return toldBy([&] { return leafText(state, control); });
}

std::string itemAtHand(const ExportState& state, const ControlNode& repeated) {
    const bool bThing = repeated.pSecond != nullptr && repeated.pSecond->forEach;
    const bool bRow = isOfRows(repeated.pBinding->kind);
    const std::string sItem = toldBy([&] {
        if (bThing && !repeated.pSecond->rows)
            return thingAtHand(state);
        if (state.pGroup != nullptr && repeated.pSecond != nullptr && repeated.pSecond->rows &&
            repeated.pSecond->rows->group)
            return fmt::format("a group of {}", counted(state.pGroup->rows().size(), "row"));
        return bRow ? rowAtHand(state) : std::string();
    });
    return sItem.empty() ? "" : ": " + sItem;
}

} // namespace halvane
