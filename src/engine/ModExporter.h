#pragma once

// The procedures of the export module. Engine and exporters call each other; this header of declarations is
// all that either knows of the other.
//
// Failures. Every procedure declared here catches its own failures, records them in the module error state
// and returns; its caller carries on as if it had succeeded. The exceptions are the functions under "Values
// and parts of procedures", which throw Failure to the procedure that called them.

#include "engine/ClsXMLNode.h"
#include "engine/ExportState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane {

using dom::Node;
using host::GisRowPtr;

// ---- Walker
// --------------------------------------------------------------------------------------------------

/// Runs one export from the module state. The state is released at its end, except when the control root has
/// no children: then nothing is saved and nothing released.
void ExportEntry(ExportState& state);

/// Visits one control node: merges its attributes, binds its data source, exports it or walks its children.
/// @param oOutNode the element made for the node, or its parent's element when the node targets an attribute.
/// @param dParentAttributes the parent's merged attributes, or nothing.
void WalkControlNode(ExportState& state, host::GisMapDocumentPtr& pMapDoc, Node oOutNode, Node oControlNode,
                     const dCollection* dParentAttributes, const GisRowPtr& pRow, const GisRowPtr& pRecord);

/// The same for a child of a repeated record node, whose own "Multiple" is not heeded.
void WalkOrdinaryControlNode(ExportState& state, host::GisMapDocumentPtr& pMapDoc, Node oOutNode,
                             Node oControlNode, const dCollection* dParentAttributes, const GisRowPtr& pRow,
                             const GisRowPtr& pRecord);

/// Fills `dMerged` with the element's control attributes, each inherited from `dParentAttributes` (may be
/// nothing) where its own value is ""; `Target` is never inherited.
void MergeAttributes(ExportState& state, Node oControlNode, const dCollection* dParentAttributes,
                     dCollection& dMerged);

// ---- Names and data sources
// ----------------------------------------------------------------------------------

/// Binds a data source kind and identity to a host object; empty when they match nothing.
void ResolveDataSource(ExportState& state, Value& result, std::string_view sDataSource,
                       const host::GisMapPtr& pCurrentMap, const host::GisFeatureLayerPtr& pCurrentLayer,
                       std::string_view sIdentity, std::string_view sIdentityValue,
                       std::string_view sDataLocation);

/// The first map of the document with that name, ignoring case; nothing when none.
[[nodiscard]] host::GisMapPtr FindMapByName(ExportState& state, const host::GisMapDocumentPtr& pMapDoc,
                                            std::string_view sName);
/// Whether the tag-name collection holds a non-empty value under the tag.
[[nodiscard]] bool IsTagNameListed(ExportState& state, std::string_view sTagName);
/// The text filed under a tag in the tag-name collection; "" when none.
[[nodiscard]] std::string LookupTagLayerName(ExportState& state, std::string_view sTag);
/// The first node at the path under the root whose `TagName` equals the tag, ignoring case; nothing when
/// none.
[[nodiscard]] Node FindTagNode(ExportState& state, Node oRoot, std::string_view sNodePath,
                               std::string_view sTag);
/// The `Alias` of the first "QvFields/QvField" under the node whose `TagName` equals the tag, ignoring case.
[[nodiscard]] std::string LookupFieldAlias(ExportState& state, Node oNode, std::string_view sTagName);

// ---- Exporters
// -----------------------------------------------------------------------------------------------

/// Writes the one value of a leaf control node.
/// @param dAttributes the node's merged attributes, or those of its parent: the node's own go over them.
void ExportElementProperty(ExportState& state, Node oControlNode, Node oOutNode,
                           const dCollection& dAttributes, const GisRowPtr& pRow, const GisRowPtr& pRecord,
                           const dCollection* dParentAttributes);

/// Repeats a control node once per item of its data source.
void ExportMultiple(ExportState& state, Node oControlNode, Node oOutputElement,
                    const dCollection& dNodeAttributes, const GisRowPtr& pRow, const GisRowPtr& pRecord,
                    const dCollection* dParentAttributes);

/// Writes the fields that a record node's children name, for a row of the current feature layer.
void ExportFeatureRecord(ExportState& state, Node oRecordNode, Node oOutputElement, const GisRowPtr& pRow);
/// The same for a row of the current table.
void ExportTableRecord(ExportState& state, Node oRecordNode, Node oOutputElement, const GisRowPtr& pRow,
                       std::int32_t lDecimalPlaces);

/// A number with that many decimals at most (0: up to 15), through the host's numeric format; "" when it
/// fails.
[[nodiscard]] std::string FormatNumber(ExportState& state, double dValue, std::int32_t lDecimalPlaces);

void ExportSpatialReference(ExportState& state, Node oControlNode, Node oOutNode);

/// Repeats the node over the current layer's features, or the one given, writing lengths, nodes or vertices.
void ExportGeometry(ExportState& state, Node oControlNode, Node& oOutputElement,
                    const dCollection& dNodeAttributes, const GisRowPtr& pRow);

/// Writes the length of a feature's shape, or one of the feature's attributes.
/// @param bMakeElement otherwise a value that targets no attribute becomes the text of `oOutputElement`.
void ExportGeometryLength(ExportState& state, const GisRowPtr& pFeature, Node oPropertyNode,
                          Node oOutputElement, bool bMakeElement, std::int32_t lDecimalPlaces);
/// Writes a coordinate of a node of a feature's shape, or one of the feature's attributes.
/// @param sKind the repeated node's kind ("Geometry.FromNode", ...): which node, unless the property node
///        tells.
void ExportNodeCoordinate(ExportState& state, const GisRowPtr& pFeature, Node oPropertyNode,
                          std::string_view sKind, Node oOutputElement, std::int32_t lDecimalPlaces);
/// Writes a coordinate or the measure of a vertex, one of the feature's attributes, or what an external
/// processor makes of them; files the feature and the point among the resolved objects.
/// @param dMeasure the measure that the feature tells; without one the vertex's own is taken.
void ExportVertexValue(ExportState& state, const GisRowPtr& pFeature, const host::GisPointPtr& pPoint,
                       Node oPropertyNode, Node oOutputElement, std::optional<double> dMeasure,
                       std::int32_t lDecimalPlaces);

/// @param oOutputElement ends as the element of the last item.
void ExportRelationshipClasses(ExportState& state, Node oControlNode, Node& oOutputElement,
                               const dCollection& dParentAttributes);
void ExportRelationshipProperty(ExportState& state, const host::GisRelationshipClass& relationship,
                                Node oPropertyNode, Node oOutputElement);

/// @param oOutputElement ends as the element of the last item.
void ExportDomains(ExportState& state, Node oControlNode, Node& oOutputElement,
                   const dCollection& dParentAttributes);
void ExportDomainProperty(ExportState& state, const host::GisDomain& domain, Node oPropertyNode,
                          Node oOutputElement);
/// Writes the codes of a coded-value domain under `oCodesElement`.
void ExportCodedValues(ExportState& state, const host::GisDomain& domain, Node oCodedValuesNode,
                       Node oCodesElement);

void ExportFieldProperty(ExportState& state, const host::GisField& field, Node oPropertyNode,
                         Node oOutputElement);
void ExportFields(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass, Node oControlNode,
                  Node oOutputElement, const dCollection& dNodeAttributes);

/// What ExportSubtypes hands down its recursion by reference.
struct SubtypeProgress {
    std::int32_t lSubtypeCode = 0;
    std::int64_t lSubtypeCounter = 0;
    std::string sFieldName; ///< upper-cased
    std::int64_t lFieldCounter = 0;
};
void ExportSubtypes(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass,
                    const host::GisSubtypesPtr& pSubtypes, Node oControlNode, Node oOutputElement,
                    const dCollection& dNodeAttributes, SubtypeProgress& progress);

// ---- Values and parts of procedures: these throw Failure
// -------------------------------------------------------

/// The decimal places that a text asks for: 0 when it is not numeric.
[[nodiscard]] std::int32_t decimalPlacesOf(std::string_view sText);

/// The text of a row's field: named by `sIdentityValue`, or, when `sIdentity` is "TagName", by the alias
/// filed for it under the current tag node. A field that is not found gives "".
[[nodiscard]] std::string RecordFieldText(ExportState& state, const host::GisRow& row,
                                          std::string_view sIdentity, std::string_view sIdentityValue,
                                          std::int32_t lDecimalPlaces);
/// The text of a row's value: floating-point fields through FormatNumber, null as "".
[[nodiscard]] std::string RowValueText(ExportState& state, const host::GisRow& row, std::int32_t lFieldIndex,
                                       std::int32_t lDecimalPlaces);
/// Whether an identity value asks for a feature's object identifier: "OBJECTID" or "OID" in any letter case.
[[nodiscard]] bool namesObjectId(std::string_view sIdentityValue);

/// The features of the current layer: the selected ones in selection order, or all when none is selected.
/// Nothing without a current layer or feature class.
[[nodiscard]] host::GisCursorPtr searchCurrentFeatures(ExportState& state);

/// The child control nodes of a control node, in document order, from `firstControlChild` on; comments are
/// left out where the options say so.
[[nodiscard]] Node firstControlChild(const ExportState& state, Node oControlNode);
[[nodiscard]] Node nextControlSibling(const ExportState& state, Node oControlNode);

/// Makes the output for a child control node under `oParentElement`: an empty attribute of it, or a new last
/// child element. @returns the node that the child's value goes to: `oParentElement` or the new element.
[[nodiscard]] Node makeChildOutput(ExportState& state, const ClsXMLNode& child, Node oParentElement);
/// A new, detached element of the output document. @returns nothing for a name that XML does not allow.
[[nodiscard]] Node newOutputElement(ExportState& state, std::string_view sName);
/// Writes a property's value: as an attribute of `oOutputElement` when the node targets one, else as the text
/// of a new last child element of it.
void writeChildValue(ExportState& state, const ClsXMLNode& node, Node oOutputElement,
                     std::string_view sValue);

/// Says that an item's element is complete: nobody writes into it or holds a handle on it any more.
void completeItem(ExportState& state, Node oItemElement);
/// Tells the observer of an item written. @throws ExportCancelled when it gives the export up.
void reportItem(ExportState& state, Node oRepeatedNode);

} // namespace halvane
