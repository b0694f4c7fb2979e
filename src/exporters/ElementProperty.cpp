// Writes the one value of a leaf control node.

#include "collection/Text.h"
#include "engine/Binding.h"
#include "engine/ModExporter.h"
#include "engine/Required.h"
#include "host/IExternalProcessor.h"

#include <algorithm>
#include <array>

namespace halvane {

namespace {

constexpr std::string_view spatialReferencePrefix = "SPATIALREFERENCE";

/// One call: a leaf, where its value goes and what was handed in.
struct Leaf {
    ExportState& state;
    Node oControlNode;
    ClsXMLNode node;
    Node oOutNode;
    const dCollection& dMerged; ///< the node's own attributes over those handed in
    const GisRowPtr& pRow;
    const GisRowPtr& pRecord;
    Binding binding;
    std::string sDataProperty;

    [[nodiscard]] std::int32_t decimalPlaces() const {
        return decimalPlacesOf(dMerged.GetValueString("DecimalPlace"));
    }
    [[nodiscard]] bool asks(std::string_view sProperty) const {
        return equalIgnoringCase(sDataProperty, sProperty);
    }
};

/// Writes the value as the text of the output element, or of the attribute that was made for it.
void write(const Leaf& leaf, std::string_view sValue) {
    Node oTarget = leaf.oOutNode;
    if (leaf.node.targetsAttribute())
        oTarget = oTarget.attributes().getNamedItem(leaf.node.TagName());
    oTarget.setText(sValue);
}

/// A leaf without a property may be there only to bind its data source.
void writeNothing(const Leaf& leaf) {
    if (!leaf.sDataProperty.empty())
        leaf.state.notice(Notice::UnknownProperty, leaf.sDataProperty);
}

/// Binds the kinds that have a current object. A record's field is not a table's name, so a record handed
/// down keeps its table.
void bind(const Leaf& leaf) {
    constexpr std::array<std::string_view, 10> boundKinds{
        "Map",   "FeatureLayer", "MapLayer",     "Workspace", "TinWorkspace",
        "Table", "RelatedTable", "FeatureTable", "TinLayer",  "RasterLayer"};
    const std::string& sKind = leaf.binding.sDataSource;
    if (sKind == "Table" && leaf.pRecord != nullptr)
        return;
    if (std::find(boundKinds.begin(), boundKinds.end(), sKind) != boundKinds.end())
        keepAsCurrent(leaf.state, sKind, resolveBinding(leaf.state, leaf.binding));
}

// ---- Values by kind of data source ----

void writeExternal(const Leaf& leaf) {
    const auto pComponent = leaf.state.pHost->createComponent(leaf.binding.sIdentityValue);
    if (leaf.state.dCurrentObjects == nullptr)
        leaf.state.dCurrentObjects = dCollection::create();
    if (const auto pProcessor = std::dynamic_pointer_cast<IExternalProcessor>(pComponent))
        write(leaf, pProcessor->Process(*leaf.state.dCurrentObjects));
}

void writeToday(const Leaf& leaf) {
    write(leaf, toText(ValueView(leaf.state.pHost->today())));
}

/// Whether the property's part before its first "." asks for the spatial reference.
bool asksSpatialReference(const Leaf& leaf) {
    const auto dot = leaf.sDataProperty.find('.');
    return dot != std::string::npos &&
           equalIgnoringCase(std::string_view(leaf.sDataProperty).substr(0, dot), spatialReferencePrefix);
}

void writeMapProperty(const Leaf& leaf) {
    if (leaf.state.pMap == nullptr)
        return;
    // The text before a "." that is not there cannot be taken.
    if (leaf.sDataProperty.find('.') == std::string::npos)
        throw Failure::of(FailureNumber::InvalidProcedureCall);
    if (asksSpatialReference(leaf))
        ExportSpatialReference(leaf.state, leaf.oControlNode, leaf.oOutNode);
    else
        writeNothing(leaf);
}

void writeSubtypes(const Leaf& leaf) {
    const auto& pFeatureClass = leaf.state.pFeatureClass;
    if (pFeatureClass == nullptr)
        return;
    SubtypeProgress progress;
    ExportSubtypes(leaf.state, pFeatureClass, pFeatureClass->subtypes(), leaf.oControlNode, leaf.oOutNode,
                   leaf.dMerged, progress);
}

void writeFields(const Leaf& leaf) {
    if (leaf.state.pFeatureClass != nullptr)
        ExportFields(leaf.state, leaf.state.pFeatureClass, leaf.oControlNode, leaf.oOutNode, leaf.dMerged);
}

void writeLayerProperty(const Leaf& leaf) {
    const auto& pLayer = leaf.state.pFeatureLayer;
    if (pLayer == nullptr)
        return;
    if (leaf.asks("LayerName"))
        write(leaf, pLayer->name());
    else if (leaf.asks("FeatureCount"))
        write(leaf, std::to_string(
                        required(pLayer->featureClass(), "the layer has no feature class")->featureCount()));
    else if (asksSpatialReference(leaf))
        ExportSpatialReference(leaf.state, leaf.oControlNode, leaf.oOutNode);
    else
        writeNothing(leaf);
}

void writeTinLayerProperty(const Leaf& leaf) {
    if (leaf.state.pTinLayer == nullptr)
        return;
    if (leaf.asks("LayerName"))
        write(leaf, leaf.state.pTinLayer->name());
    else
        writeNothing(leaf);
}

/// The folder of the current raster's file with its last separator; "" for a path without any.
std::string rasterFolder(const ExportState& state) {
    const std::string sPath = state.pRasterLayer->filePath();
    return sPath.substr(0, sPath.rfind(state.pHost->pathSeparator()) + 1);
}

void writeRasterLayerProperty(const Leaf& leaf) {
    if (leaf.state.pRasterLayer == nullptr)
        return;
    if (leaf.asks("LayerName"))
        write(leaf, leaf.state.pRasterLayer->name());
    else if (leaf.asks("Path"))
        write(leaf, rasterFolder(leaf.state));
    else
        writeNothing(leaf);
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

void writeWorkspaceProperty(const Leaf& leaf) {
    const auto& pWorkspace = leaf.state.pWorkspace;
    // Without a workspace every property reads as a local database, on purpose.
    if (pWorkspace == nullptr) {
        write(leaf, workspaceTypeName(1));
    } else if (leaf.asks("Path")) {
        write(leaf, pWorkspace->pathName());
    } else if (leaf.asks("WorkspaceType")) {
        if (const auto sType = workspaceTypeName(pWorkspace->typeCode()); !sType.empty())
            write(leaf, sType);
    } else {
        writeNothing(leaf);
    }
}

void writeTinWorkspaceProperty(const Leaf& leaf) {
    if (leaf.state.pWorkspace == nullptr)
        return;
    if (leaf.asks("Path"))
        write(leaf, leaf.state.pWorkspace->pathName());
    else
        writeNothing(leaf);
}

void writeRasterWorkspaceProperty(const Leaf& leaf) {
    if (leaf.state.pRasterLayer == nullptr)
        return;
    if (leaf.asks("Path"))
        write(leaf, rasterFolder(leaf.state));
    else
        writeNothing(leaf);
}

void writeRecordValue(const Leaf& leaf) {
    if (leaf.state.pTable == nullptr)
        return;
    if (leaf.asks("TableName"))
        write(leaf, leaf.state.pTable->datasetName());
    else if (leaf.pRecord != nullptr)
        write(leaf, RecordFieldText(leaf.state, *leaf.pRecord, leaf.binding.sIdentity,
                                    leaf.binding.sIdentityValue, leaf.decimalPlaces()));
    else
        ExportTableRecord(leaf.state, leaf.oControlNode, leaf.oOutNode, nullptr, leaf.decimalPlaces());
}

void writeFeatureValue(const Leaf& leaf) {
    if (leaf.pRow == nullptr)
        ExportFeatureRecord(leaf.state, leaf.oControlNode, leaf.oOutNode, nullptr);
    else if (namesObjectId(leaf.binding.sIdentityValue))
        write(leaf, std::to_string(leaf.pRow->objectId()));
    else
        write(leaf, RecordFieldText(leaf.state, *leaf.pRow, leaf.binding.sIdentity,
                                    leaf.binding.sIdentityValue, leaf.decimalPlaces()));
}

// ---- Related rows ----

/// LINK=value, a text value between single quotes.
host::GisQueryFilter relatedFilter(const host::GisRow& row, std::int32_t lIndex,
                                   std::string_view sLinkField) {
    const bool bText =
        row.fields().field(lIndex).typeCode() == static_cast<std::int32_t>(host::FieldType::String);
    const std::string_view sQuote = bText ? "'" : "";
    host::GisQueryFilter filter;
    filter.sWhereClause.append(sLinkField).append("=").append(sQuote);
    appendText(filter.sWhereClause, row.value(lIndex));
    filter.sWhereClause.append(sQuote);
    return filter;
}

std::string relatedValue(const Leaf& leaf, const host::GisRow& relatedRow) {
    return RecordFieldText(leaf.state, relatedRow, "", leaf.binding.sIdentityValue, leaf.decimalPlaces());
}

/// The first matching row's value goes where the leaf's value goes, each further one into a new element after
/// it.
void writeRelatedValues(const Leaf& leaf) {
    const std::string sLinkField = leaf.dMerged.GetValueString("LinkField");
    if (sLinkField.empty() || leaf.pRow == nullptr || leaf.state.pRelatedTable == nullptr)
        return;
    const std::int32_t lIndex = leaf.pRow->fields().findField(sLinkField);
    if (lIndex < 0) {
        leaf.state.notice(Notice::FieldNotFound, sLinkField);
        return;
    }
    const auto filter = relatedFilter(*leaf.pRow, lIndex, sLinkField);
    const auto pCursor = leaf.state.pRelatedTable->search(&filter);
    GisRowPtr pRelated = pCursor->nextRow();
    if (pRelated == nullptr)
        return;
    write(leaf, relatedValue(leaf, *pRelated));
    const std::string sTagName = leaf.node.TagName();
    Node oParent = leaf.oOutNode.parentNode();
    while ((pRelated = pCursor->nextRow()) != nullptr) {
        const std::string sValue = relatedValue(leaf, *pRelated);
        Node oElement = newOutputElement(leaf.state, sTagName);
        oElement.setText(sValue);
        oParent.appendChild(oElement);
    }
}

// ---- The choice ----

using Write = void (*)(const Leaf&);
constexpr std::array<std::pair<std::string_view, Write>, 14> writers{{
    {"External", writeExternal},
    {"Time", writeToday},
    {"Map", writeMapProperty},
    {"SubType", writeSubtypes},
    {"Field", writeFields},
    {"TinLayer", writeTinLayerProperty},
    {"RasterLayer", writeRasterLayerProperty},
    {"Workspace", writeWorkspaceProperty},
    {"TinWorkspace", writeTinWorkspaceProperty},
    {"RasterWorkspace", writeRasterWorkspaceProperty},
    {"Record", writeRecordValue},
    {"Table", writeRecordValue},
    {"FeatureTable", writeFeatureValue},
    {"Feature", writeFeatureValue},
}};

/// Nothing for a kind that writes nothing here: geometry values come only from repeated nodes.
Write writerFor(std::string_view sDataSource) {
    const auto* pWriter = std::find_if(writers.begin(), writers.end(),
                                       [&](const auto& entry) { return entry.first == sDataSource; });
    if (pWriter != writers.end())
        return pWriter->second;
    // Layers alone are recognised in any letter case.
    if (equalIgnoringCase(sDataSource, "MapLayer") || equalIgnoringCase(sDataSource, "FeatureLayer"))
        return writeLayerProperty;
    if (sDataSource == "RelatedRecord" || sDataSource == "RelatedTable")
        return writeRelatedValues;
    return nullptr;
}

} // namespace

void ExportElementProperty(ExportState& state, Node oControlNode, Node oOutNode,
                           const dCollection& dAttributes, const GisRowPtr& pRow, const GisRowPtr& pRecord,
                           const dCollection* /*dParentAttributes*/) {
    const ActiveNodeScope scope(state, oControlNode);
    trapFailures(state, [&] {
        dCollection dMerged;
        MergeAttributes(state, oControlNode, &dAttributes, dMerged);
        const Leaf leaf{state,    oControlNode,     ClsXMLNode(oControlNode),
                        oOutNode, dMerged,          pRow,
                        pRecord,  Binding(dMerged), dMerged.GetValueString("DataProperty")};
        bind(leaf);
        if (const Write fnWrite = writerFor(leaf.binding.sDataSource))
            fnWrite(leaf);
        else if (!trimBlanks(leaf.binding.sDataSource).empty())
            state.notice(Notice::UnknownKind, leaf.binding.sDataSource);
    });
}

} // namespace halvane
