#pragma once

// The procedures of the export module. Engine and exporters call each other; this header of declarations is
// all that either knows of the other.
//
// Failures. Every procedure declared here catches its own failures, records them in the module error state
// and returns; its caller carries on as if it had succeeded. The exceptions are the functions under "Values
// and parts of procedures", which throw Failure to the procedure that called them.

#include "engine/ExportState.h"
#include "engine/control/AttributeNames.h"
#include "engine/control/ControlNode.h"
#include "engine/output/FieldText.h"
#include "engine/output/OutputElement.h"
#include "host/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane {

struct NodeText;
using dom::Node;
using host::GisRowPtr;

// ---- Walker
// --------------------------------------------------------------------------------------------------

/// Runs one export from the module state. The state is released at its end, except when the control root has
/// no children: then nothing is saved and nothing released.
void ExportEntry(ExportState& state);

/// Visits one control node: binds its data source, exports it or walks its children.
/// @param oOutput the element made for the node, or its parent's element when the node targets an attribute.
/// @param pParent the node that hands its attributes down, or nothing.
void WalkControlNode(ExportState& state, host::GisMapDocumentPtr& pMapDoc, const OutputElement& oOutput,
                     const ControlNode& control, const ControlNode* pParent, const GisRowPtr& pRow,
                     const GisRowPtr& pRecord);

/// The same for a child of a repeated record node, whose own "Multiple" is not heeded.
void WalkOrdinaryControlNode(ExportState& state, host::GisMapDocumentPtr& pMapDoc,
                             const OutputElement& oOutput, const ControlNode& control,
                             const ControlNode* pParent, const GisRowPtr& pRow, const GisRowPtr& pRecord);

/// Binds what a control node says of its map and its data source, without visiting it.
void BindControlNode(ExportState& state, host::GisMapDocumentPtr& pMapDoc, const ControlNode& control,
                     const ControlNode* pParent);

/// Makes the output of a child of a control node, and visits the child.
void ExportChild(ExportState& state, host::GisMapDocumentPtr& pMapDoc, const OutputElement& oOutput,
                 const ControlNode& child, const ControlNode* pParent, const GisRowPtr& pRow,
                 const GisRowPtr& pRecord);

/// How a child of a control node is visited once its output is made.
enum class Visit : std::uint8_t {
    Walk,         ///< as any node
    WalkOrdinary, ///< its own "Multiple" is not heeded
    RepeatRow,    ///< it is repeated with the row at hand, and binds nothing before
};

/// Writes a child of a control node that says something in the second edition: its output is made here.
void ExportSecondChild(ExportState& state, host::GisMapDocumentPtr& pMapDoc, const OutputElement& oParent,
                       const ControlNode& child, const ControlNode* pParent, const GisRowPtr& pRow,
                       const GisRowPtr& pRecord, Visit visit);

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
void ExportElementProperty(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                           const GisRowPtr& pRow, const GisRowPtr& pRecord);

/// Makes the output of a leaf that names a field of the row of the loop that it is in
/// (ControlNode::bNamesField), and writes the value: nothing needs to be bound or decided any more.
void ExportFieldOfRow(ExportState& state, const ControlNode& control, const OutputElement& oParent,
                      const host::GisRow& row);

/// Repeats a control node once per item of its data source.
/// @param pParent the node that hands its attributes down, or nothing.
void ExportMultiple(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                    const GisRowPtr& pRow, const GisRowPtr& pRecord, const ControlNode* pParent);

/// Writes the fields that a record node's children name, for a row of the current feature layer.
void ExportFeatureRecord(ExportState& state, const ControlNode& record, const OutputElement& oOutput,
                         const GisRowPtr& pRow);
/// The same for a row of the current table.
void ExportTableRecord(ExportState& state, const ControlNode& record, const OutputElement& oOutput,
                       const GisRowPtr& pRow, std::int32_t lDecimalPlaces);

/// A number with that many decimals at most (0: up to 15), through the host's numeric format; "" when it
/// fails. @returns a text that lives until the next number or row value is made a text.
[[nodiscard]] FieldText FormatNumber(ExportState& state, double dValue, std::int32_t lDecimalPlaces);

void ExportSpatialReference(ExportState& state, const ControlNode& control, const OutputElement& oOutput);

/// Repeats the node over the current layer's features, or the one given, writing lengths, nodes or vertices.
/// @param oOutput ends as the element of the last item.
void ExportGeometry(ExportState& state, const ControlNode& control, OutputElement& oOutput,
                    const GisRowPtr& pRow);

/// Writes the length of a feature's shape, or one of the feature's attributes.
/// @param bMakeElement otherwise a value that targets no attribute becomes the text of `oOutput`.
void ExportGeometryLength(ExportState& state, const GisRowPtr& pFeature, const ControlNode& property,
                          const OutputElement& oOutput, bool bMakeElement, std::int32_t lDecimalPlaces);
/// Writes a coordinate of a node of a feature's shape, or one of the feature's attributes.
/// @param repeated what the repeated node's kind asks for: which node, unless the property node tells.
void ExportNodeCoordinate(ExportState& state, const GisRowPtr& pFeature, const ControlNode& property,
                          ShapePart repeated, const OutputElement& oOutput, std::int32_t lDecimalPlaces);
/// A vertex of a feature's shape.
struct Vertex {
    GisRowPtr pFeature;
    const host::PointValues* pValues =
        nullptr; ///< where the host has them at hand; otherwise there is a point
    host::GisPointPtr pPoint;
    /// The measure that the feature tells; without one the vertex's own is taken.
    std::optional<double> dMeasure;
};
/// Writes a coordinate or the measure of a vertex, one of the feature's attributes, or what an external
/// processor makes of them.
void ExportVertexValue(ExportState& state, const Vertex& vertex, const ControlNode& property,
                       const OutputElement& oOutput, std::int32_t lDecimalPlaces);

/// @param oOutputElement ends as the element of the last item.
void ExportRelationshipClasses(ExportState& state, const ControlNode& control, OutputElement& oOutputElement);
void ExportRelationshipProperty(ExportState& state, const host::GisRelationshipClass& relationship,
                                const ControlNode& property, const OutputElement& oOutputElement);

/// @param oOutputElement ends as the element of the last item.
void ExportDomains(ExportState& state, const ControlNode& control, OutputElement& oOutputElement);
void ExportDomainProperty(ExportState& state, const host::GisDomain& domain, const ControlNode& property,
                          const OutputElement& oOutputElement);
/// Writes the codes of a coded-value domain under `oCodesElement`.
void ExportCodedValues(ExportState& state, const host::GisDomain& domain, const ControlNode& codedValues,
                       const OutputElement& oCodesElement);

void ExportFieldProperty(ExportState& state, const host::GisField& field, const ControlNode& property,
                         const OutputElement& oOutputElement);
void ExportFields(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass,
                  const ControlNode& control, const OutputElement& oOutputElement);

/// What ExportSubtypes hands down its recursion by reference.
struct SubtypeProgress {
    std::int32_t lSubtypeCode = 0;
    std::int64_t lSubtypeCounter = 0;
    std::string sFieldName; ///< upper-cased
    std::int64_t lFieldCounter = 0;
};
void ExportSubtypes(ExportState& state, const host::GisFeatureClassPtr& pFeatureClass,
                    const host::GisSubtypesPtr& pSubtypes, const ControlNode& control,
                    const OutputElement& oOutputElement, SubtypeProgress& progress);

// ---- Values and parts of procedures: these throw Failure
// -------------------------------------------------------

/// The text of the row's field that a control node names: by `sIdentityValue`, or, when `sIdentity` is
/// "TagName", by the alias filed for it under the current tag node. A field that is not found gives "".
/// @param found where the control node keeps the field.
/// @returns a text that lives as long as the row, or until the next number or row value is made a text.
[[nodiscard]] FieldText RecordFieldText(ExportState& state, const host::GisRow& row,
                                        std::string_view sIdentity, std::string_view sIdentityValue,
                                        std::int32_t lDecimalPlaces, FoundField& found);
/// The row's field of that name, or of that alias under the current tag node. @returns false for no such
/// field.
bool findRowField(ExportState& state, const host::GisRow& row, std::string_view sIdentity,
                  std::string_view sIdentityValue, FoundField& found);
/// Whether an identity value asks for a feature's object identifier: "OBJECTID" or "OID" in any letter case.
[[nodiscard]] bool namesObjectId(std::string_view sIdentityValue);
/// A feature's object identifier in decimal. Where the feature has an attribute of the name that asks for the
/// identifier, it is noticed once.
[[nodiscard]] std::string ObjectIdText(const ExportState& state, const ControlNode& control,
                                       std::string_view sIdentityValue, const host::GisRow& row);

/// The text of a property of a field, a domain or a relationship class; "" for one that it lacks, which is
/// noticed.
[[nodiscard]] std::string FieldPropertyText(ExportState& state, const host::GisField& field,
                                            std::string_view sProperty);
[[nodiscard]] std::string DomainPropertyText(ExportState& state, const host::GisDomain& domain,
                                             std::string_view sProperty);
[[nodiscard]] std::string RelationshipPropertyText(ExportState& state,
                                                   const host::GisRelationshipClass& relationship,
                                                   std::string_view sProperty);

/// The features of the current layer that a repeated node is applied to: the selected ones in selection
/// order, or all when none is selected, with their shapes if the node uses them. Nothing without a current
/// layer or feature class.
/// @param pCondition of all, those for which it does not hold may be left out; nothing for none.
[[nodiscard]] host::GisCursorPtr searchCurrentFeatures(ExportState& state, const ControlNode& repeated,
                                                       const host::RowCondition* pCondition = nullptr);

/// What an external processor makes of the resolved objects. Whatever it may have changed is looked at anew.
/// @returns nothing when the component is no processor.
[[nodiscard]] std::optional<std::string> processExternally(ExportState& state, std::string_view sProgId);

/// The slow part of makeChildOutput: an attribute, an element with more of its own than its name, or a name
/// that XML does not allow.
[[nodiscard]] OutputElement makeUnusualOutput(ExportState& state, const ControlNode& child,
                                              const OutputElement& oParent);
/// Makes the output for a child control node under `oParent`: an empty attribute of it, or a new last child
/// element. @returns what the child's value goes to: `oParent` or the new element.
[[nodiscard]] inline OutputElement makeChildOutput(ExportState& state, const ControlNode& child,
                                                   const OutputElement& oParent) {
    return child.bTargetsAttribute || child.pName == nullptr || child.pSecond != nullptr
               ? makeUnusualOutput(state, child, oParent)
               : oParent.appendElement(*child.pName);
}
/// A new last child of that control node's name, with what it declares. @throws Failure for a name that XML
/// does not allow.
[[nodiscard]] OutputElement appendNamed(const ControlNode& control, const OutputElement& oParent);
/// A new, detached element of the output document. @returns nothing for a name that XML does not allow.
[[nodiscard]] Node newOutputElement(ExportState& state, std::string_view sName);
/// Writes a property's value: as an attribute of `oOutput` when the node targets one, else as the text of a
/// new last child element of it.
void writeChildValue(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                     std::string_view sValue, TextKind kind = TextKind::Any);
inline void writeChildValue(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                            const FieldText& value) {
    writeChildValue(state, control, oOutput, value.sText, value.kind);
}

/// The text that a node of the second edition asks for; it must ask for one. @returns a text that lives until
/// the next one is made. @throws Failure when a value cannot be computed.
[[nodiscard]] FieldText ownText(ExportState& state, const ControlNode& control);
/// The same of any text of such a node.
[[nodiscard]] FieldText valueOf(ExportState& state, const NodeText& text, const ControlNode& control);
/// Writes it, or the elements of the row's shape, behind what the element holds. What fails writes nothing.
void writeOwnText(ExportState& state, const ControlNode& control, const OutputElement& oElement);
/// Declares what the element of a control node needs: right after it is made.
void declareNamespaces(const ControlNode& control, const OutputElement& oElement);

/// Applies `fnChild` to the children of a control node. A text of its own stands before its child elements,
/// and behind its attributes.
template<class OfChild>
void forEachChild(ExportState& state, const ControlNode& control, const OutputElement& oOutput,
                  OfChild fnChild) {
    if (!control.bHasText) {
        for (const ControlNode& child : childrenOf(control))
            fnChild(child);
        return;
    }
    for (const ControlNode& child : childrenOf(control))
        if (child.bTargetsAttribute)
            fnChild(child);
    writeOwnText(state, control, oOutput);
    for (const ControlNode& child : childrenOf(control))
        if (!child.bTargetsAttribute)
            fnChild(child);
}

/// Says that an item's element is complete: nobody writes into it or holds a handle on it any more.
void completeItem(ExportState& state, Node oItemElement);
/// Tells the observer of an item written. @throws ExportCancelled when it gives the export up.
void reportItem(ExportState& state, const ControlNode& repeated);

} // namespace halvane
