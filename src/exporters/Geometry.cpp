// Repeats a control node over features and writes lengths, nodes or vertices of their shapes.

#include "collection/Numbers.h"
#include "engine/ItemCounter.h"
#include "engine/ModExporter.h"
#include "exporters/ItemCopies.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace halvane {

namespace {

constexpr std::array<std::string_view, 4> nodeKinds{"Geometry.Point", "Geometry.FromNode", "Geometry.ToNode",
                                                    "Geometry.EndPoint"};

bool isNodeKind(std::string_view sKind) {
    return std::find(nodeKinds.begin(), nodeKinds.end(), sKind) != nodeKinds.end();
}

/// One call: the repeated node and what all its features share.
struct Call {
    ExportState& state;
    Node oControlNode;
    std::string sTagName;
    std::string sKind;
    std::string sMeasureField;
    std::int32_t lDecimalPlaces;
};

/// The control nodes that say what is written: the children, or the node itself when it has none.
template<class Write>
void forEachPropertyNode(const Call& call, const Write& write) {
    Node oChild = firstControlChild(call.state, call.oControlNode);
    if (!oChild)
        write(call.oControlNode);
    for (; oChild; oChild = nextControlSibling(call.state, oChild))
        write(oChild);
}

// ---- Vertices ----

/// The feature's value in the measure field; nothing without such a field.
/// @throws Failure TypeMismatch for a value that is no number, null too.
std::optional<double> measureOf(const Call& call, const host::GisRow& feature) {
    if (call.sMeasureField.empty())
        return std::nullopt;
    const std::int32_t lIndex = feature.fields().findField(call.sMeasureField);
    if (lIndex < 0) {
        call.state.notice(Notice::FieldNotFound, call.sMeasureField);
        return std::nullopt;
    }
    return toDouble(toText(feature.value(lIndex)));
}

/// Leaves `oElement` at the last vertex written.
void exportVerticesOfPart(const Call& call, const GisRowPtr& pFeature, const host::GisGeometry& shape,
                          std::int32_t lPart, std::optional<double> dMeasure, Node oPartElement,
                          Node& oElement) {
    const std::int32_t lCount = shape.pointCount(lPart);
    for (std::int32_t i = 0; i < lCount; ++i) {
        const auto pPoint = shape.point(lPart, i);
        oElement = oPartElement.appendChild(newOutputElement(call.state, call.sTagName));
        forEachPropertyNode(call, [&](Node oPropertyNode) {
            ExportVertexValue(call.state, pFeature, pPoint, oPropertyNode, oElement, dMeasure,
                              call.lDecimalPlaces);
        });
    }
}

/// The parts replace what the feature's element held before.
void exportVertices(const Call& call, const GisRowPtr& pFeature, Node& oElement) {
    const auto dMeasure = measureOf(call, *pFeature);
    const auto pShape = pFeature->shape();
    Node oFeatureElement = oElement;
    const std::int32_t lCount = pShape == nullptr ? 0 : pShape->partCount();
    for (std::int32_t lPart = 0; lPart < lCount; ++lPart) {
        if (lPart == 0)
            oFeatureElement.setText("");
        const Node oPartElement = oFeatureElement.appendChild(newOutputElement(call.state, "Part"));
        exportVerticesOfPart(call, pFeature, *pShape, lPart, dMeasure, oPartElement, oElement);
    }
}

// ---- Features ----

void exportLength(const Call& call, const GisRowPtr& pFeature, Node oElement) {
    const bool bMakeElement = static_cast<bool>(firstControlChild(call.state, call.oControlNode));
    forEachPropertyNode(call, [&](Node oPropertyNode) {
        ExportGeometryLength(call.state, pFeature, oPropertyNode, oElement, bMakeElement,
                             call.lDecimalPlaces);
    });
}

void exportNode(const Call& call, const GisRowPtr& pFeature, Node oElement) {
    forEachPropertyNode(call, [&](Node oPropertyNode) {
        ExportNodeCoordinate(call.state, pFeature, oPropertyNode, call.sKind, oElement, call.lDecimalPlaces);
    });
}

/// Kinds are told apart by exact letter case.
void exportFeature(const Call& call, const GisRowPtr& pFeature, Node& oElement) {
    if (call.sKind == "Geometry.Length")
        exportLength(call, pFeature, oElement);
    else if (isNodeKind(call.sKind))
        exportNode(call, pFeature, oElement);
    else if (call.sKind == "Geometry.Vertice")
        exportVertices(call, pFeature, oElement);
}

void exportFeatures(const Call& call, Node& oOutputElement) {
    const auto pCursor = searchCurrentFeatures(call.state);
    if (pCursor == nullptr)
        return;
    ItemCopies copies(call.state, call.oControlNode, oOutputElement, call.sTagName);
    ItemCounter counter(call.state.options.lItemLimit);
    while (const GisRowPtr pFeature = pCursor->nextRow()) {
        oOutputElement = counter.value() > 0 ? copies.next() : copies.current();
        exportFeature(call, pFeature, oOutputElement);
        reportItem(call.state, call.oControlNode);
        counter.increment();
    }
}

} // namespace

void ExportGeometry(ExportState& state, Node oControlNode, Node& oOutputElement,
                    const dCollection& dNodeAttributes, const GisRowPtr& pRow) {
    const ActiveNodeScope scope(state, oControlNode);
    trapFailures(state, [&] {
        dCollection dMerged;
        MergeAttributes(state, oControlNode, &dNodeAttributes, dMerged);
        const Call call{state,
                        oControlNode,
                        ClsXMLNode(oControlNode).TagName(),
                        dMerged.GetValueString("DataSource"),
                        dMerged.GetValueString("MeasureField"),
                        decimalPlacesOf(dMerged.GetValueString("DecimalPlace"))};
        if (state.pFeatureLayer == nullptr)
            return;
        if (call.sKind != "Geometry.Length" && call.sKind != "Geometry.Vertice" && !isNodeKind(call.sKind))
            state.notice(Notice::RepeatIsSilent, call.sKind);
        if (pRow != nullptr)
            exportFeature(call, pRow, oOutputElement);
        else
            exportFeatures(call, oOutputElement);
    });
}

} // namespace halvane
