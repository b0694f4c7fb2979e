// The one value of a leaf, by the kind of its data source.

#include "exporters/LeafValues.h"

#include "base/Text.h"
#include "engine/Required.h"
#include "engine/TracedItem.h"
#include "exporters/RelatedRows.h"
#include "exporters/second/FormattedValue.h"
#include "host/Application.h"
#include "host/Layers.h"
#include "host/Workspace.h"

#include <string>

namespace halvane {

namespace {

constexpr std::string_view spatialReferencePrefix = "SPATIALREFERENCE";

/// A leaf without a property may be there only to bind its data source.
void writeNothing(const Leaf& leaf) {
    if (!leaf.merged().sDataProperty.empty())
        leaf.state.notice(Notice::UnknownProperty, leaf.merged().sDataProperty);
}

/// Whether the property's part before its first "." asks for the spatial reference.
bool asksSpatialReference(const Leaf& leaf) {
    const std::string_view sProperty = leaf.merged().sDataProperty;
    const auto dot = sProperty.find('.');
    return dot != std::string_view::npos &&
           equalIgnoringCase(sProperty.substr(0, dot), spatialReferencePrefix);
}

/// Counting can take long, and one layer's count is often written in several places.
std::int64_t featureCountOf(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass) {
    auto& known = state.featureCount;
    if (known.pFeatureClass != pFeatureClass || known.nGeneration != state.nGeneration)
        known = {pFeatureClass, state.nGeneration, pFeatureClass->featureCount()};
    return known.lCount;
}

/// The folder of the current raster's file with its last separator; "" for a path without any.
std::string rasterFolder(const ExportState& state) {
    const std::string sPath = state.pRasterLayer->filePath();
    return sPath.substr(0, sPath.rfind(state.pHost->pathSeparator()) + 1);
}

std::string_view workspaceTypeName(std::int32_t lTypeCode) {
    switch (lTypeCode) {
    case 0:
        return "vemiFileSystemWorkspace";
    case 1:
        return "vemiLocalDatabaseWorkspace";
    case 2:
        return "vemiRemoteDatabaseWorkspace";
    default:
        return {};
    }
}

void writeFieldValue(const Leaf& leaf, const host::GisRow& row) {
    const ControlAttributes& merged = leaf.merged();
    const FieldText value = RecordFieldText(leaf.state, row, merged.sIdentity, merged.sIdentityValue,
                                            leaf.control.decimalPlaces.value(), leaf.control.valueField);
    writeValue(leaf, value.sText, value.kind);
}

std::string_view relatedValue(const Leaf& leaf, const host::GisRow& relatedRow) {
    return RecordFieldText(leaf.state, relatedRow, "", leaf.merged().sIdentityValue,
                           leaf.control.decimalPlaces.value(), leaf.control.valueField)
        .sText;
}

} // namespace

void writeValue(const Leaf& leaf, std::string_view sValue, TextKind kind) {
    if (leaf.control.bTargetsAttribute)
        leaf.oOutput.fillAttribute(leaf.control.sTagName, sValue, kind);
    else
        leaf.oOutput.setText(sValue, kind);
}

void writeText(const Leaf& leaf) {
    if (leaf.control.bTargetsAttribute) {
        const FieldText text = ownText(leaf.state, leaf.control);
        writeValue(leaf, text.sText, text.kind);
    } else {
        writeOwnText(leaf.state, leaf.control, leaf.oOutput);
    }
}

void writeExternal(const Leaf& leaf) {
    if (const auto sValue = processExternally(leaf.state, leaf.merged().sIdentityValue))
        writeValue(leaf, *sValue);
}

void writeToday(const Leaf& leaf) {
    const Date today = leaf.state.pHost->today();
    if (const auto text = formattedDate(leaf.state, today))
        writeValue(leaf, text->sText, text->kind);
    else
        writeValue(leaf, toText(ValueView(today)));
}

void writeMapProperty(const Leaf& leaf) {
    if (leaf.state.pMap == nullptr)
        return;
    // The text before a "." that is not there cannot be taken.
    if (leaf.merged().sDataProperty.find('.') == std::string_view::npos)
        throw Failure::of(FailureNumber::InvalidProcedureCall)
            .about("the DataProperty \"" + std::string(leaf.merged().sDataProperty) +
                   R"(" of a map has no ".", as in "SPATIALREFERENCE.UNITS")");
    if (asksSpatialReference(leaf))
        ExportSpatialReference(leaf.state, leaf.control, leaf.oOutput);
    else
        writeNothing(leaf);
}

void writeSubtypes(const Leaf& leaf) {
    const auto& pFeatureClass = leaf.state.pFeatureClass;
    if (pFeatureClass == nullptr)
        return;
    SubtypeProgress progress;
    ExportSubtypes(leaf.state, pFeatureClass, pFeatureClass->subtypes(), leaf.control, leaf.oOutput,
                   progress);
}

void writeLayerProperty(const Leaf& leaf) {
    const auto& pLayer = leaf.state.pFeatureLayer;
    if (pLayer == nullptr)
        return;
    if (leaf.asks("LayerName"))
        writeValue(leaf, pLayer->name());
    else if (leaf.asks("FeatureCount"))
        writeValue(leaf,
                   std::to_string(featureCountOf(
                       leaf.state, required(pLayer->featureClass(), "the layer has no feature class"))));
    else if (asksSpatialReference(leaf))
        ExportSpatialReference(leaf.state, leaf.control, leaf.oOutput);
    else
        writeNothing(leaf);
}

void writeTinLayerProperty(const Leaf& leaf) {
    if (leaf.state.pTinLayer == nullptr)
        return;
    if (leaf.asks("LayerName"))
        writeValue(leaf, leaf.state.pTinLayer->name());
    else
        writeNothing(leaf);
}

void writeRasterLayerProperty(const Leaf& leaf) {
    if (leaf.state.pRasterLayer == nullptr)
        return;
    if (leaf.asks("LayerName"))
        writeValue(leaf, leaf.state.pRasterLayer->name());
    else if (leaf.asks("Path"))
        writeValue(leaf, rasterFolder(leaf.state));
    else
        writeNothing(leaf);
}

void writeWorkspaceProperty(const Leaf& leaf) {
    const auto& pWorkspace = leaf.state.pWorkspace;
    // Without a workspace every property reads as a local database, on purpose.
    if (pWorkspace == nullptr) {
        writeValue(leaf, workspaceTypeName(1));
    } else if (leaf.asks("Path")) {
        writeValue(leaf, pWorkspace->pathName());
    } else if (leaf.asks("WorkspaceType")) {
        if (const auto sType = workspaceTypeName(pWorkspace->typeCode()); !sType.empty())
            writeValue(leaf, sType);
    } else {
        writeNothing(leaf);
    }
}

void writeTinWorkspaceProperty(const Leaf& leaf) {
    if (leaf.state.pWorkspace == nullptr)
        return;
    if (leaf.asks("Path"))
        writeValue(leaf, leaf.state.pWorkspace->pathName());
    else
        writeNothing(leaf);
}

void writeRasterWorkspaceProperty(const Leaf& leaf) {
    if (leaf.state.pRasterLayer == nullptr)
        leaf.state.notice(Notice::ResolvedToNothing, leaf.control.pBinding->sDataSource);
    else if (leaf.asks("Path"))
        writeValue(leaf, rasterFolder(leaf.state));
    else
        writeNothing(leaf);
}

/// A "Table" leaf that finds no table is told of as such, and a field without a row before the export.
void noticeMissingTable(const Leaf& leaf) {
    if (leaf.asks("TableName") && leaf.control.pBinding->kind == DataSourceKind::Record)
        leaf.state.notice(Notice::NoCurrentTable, leaf.control.pBinding->sDataSource);
}

void writeRecordValue(const Leaf& leaf) {
    if (leaf.state.pTable == nullptr)
        noticeMissingTable(leaf);
    else if (leaf.asks("TableName"))
        writeValue(leaf, leaf.state.pTable->datasetName());
    else if (leaf.pRecord != nullptr)
        writeFieldValue(leaf, *leaf.pRecord);
    else
        ExportTableRecord(leaf.state, leaf.control, leaf.oOutput, nullptr,
                          leaf.control.decimalPlaces.value());
}

void writeFeatureValue(const Leaf& leaf) {
    if (leaf.pRow == nullptr)
        ExportFeatureRecord(leaf.state, leaf.control, leaf.oOutput, nullptr);
    else if (leaf.control.bNamesObjectId)
        writeValue(leaf, ObjectIdText(leaf.state, leaf.control, leaf.merged().sIdentityValue, *leaf.pRow));
    else
        writeFieldValue(leaf, *leaf.pRow);
}

/// The first matching row's value goes where the leaf's value goes, each further one into a new element after
/// it.
void writeRelatedValues(const Leaf& leaf) {
    const std::string_view sLinkField = leaf.merged().sLinkField;
    if (sLinkField.empty() || leaf.pRow == nullptr || leaf.state.pRelatedTable == nullptr)
        return;
    if (!findRowField(leaf.state, *leaf.pRow, "", sLinkField, leaf.control.linkField))
        return;
    RelatedRows rows(*leaf.state.pRelatedTable, *leaf.pRow, leaf.control.linkField.lIndex, leaf.control,
                     RelatedRows::Clause::Quoted);
    GisRowPtr pRelated = rows.next();
    if (pRelated == nullptr)
        return;
    {
        const TracedItem item(leaf.state, leaf.control);
        writeValue(leaf, relatedValue(leaf, *pRelated));
    }
    const OutputElement oParent = leaf.oOutput.parent();
    for (bool bSecond = true;; bSecond = false) {
        pRelated.reset(); // so that the cursor may use the row again
        pRelated = rows.next();
        if (pRelated == nullptr)
            return;
        const TracedItem item(leaf.state, leaf.control);
        if (!item.isWanted())
            return;
        if (bSecond && leaf.control.bTargetsAttribute)
            leaf.state.notice(Notice::RowsBesideAttribute, leaf.control.pBinding->sDataSource);
        const std::string_view sValue = relatedValue(leaf, *pRelated);
        appendNamed(leaf.control, oParent).setText(sValue);
    }
}

} // namespace halvane
