// Writes one value of a feature's shape: its length, a coordinate of a node, or a value of a vertex.

#include "collection/Numbers.h"
#include "engine/ModExporter.h"
#include "host/IExternalProcessor.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace halvane {

namespace {

using host::GisGeometryPtr;
using host::GisPoint;
using host::GisPointPtr;

bool namesAttribute(const ClsXMLNode& node) {
    return node.DataSource() == "FeatureAttributes" || node.DataSource() == "FeatureTable";
}

/// The feature's attribute that the data property names.
std::string attributeText(ExportState& state, const host::GisRow& feature, const ClsXMLNode& node,
                          std::int32_t lDecimalPlaces) {
    return RecordFieldText(state, feature, "", node.DataProperty(), lDecimalPlaces);
}

/// A point without Z or measure holds no number there: that reads as "".
std::string numberText(ExportState& state, double dValue, std::int32_t lDecimalPlaces) {
    return std::isnan(dValue) ? std::string() : FormatNumber(state, dValue, lDecimalPlaces);
}

bool hasLength(const GisGeometryPtr& pShape) {
    if (pShape == nullptr)
        return false;
    switch (static_cast<host::ShapeType>(pShape->geometryType())) {
    case host::ShapeType::Polyline:
    case host::ShapeType::Polygon:
    case host::ShapeType::Line:
        return true;
    case host::ShapeType::Null:
    case host::ShapeType::Point:
    case host::ShapeType::Multipoint:
        break;
    }
    return false;
}

std::string lengthText(ExportState& state, const host::GisRow& feature, const ClsXMLNode& node,
                       std::int32_t lDecimalPlaces) {
    if (namesAttribute(node))
        return attributeText(state, feature, node, lDecimalPlaces);
    if (node.DataProperty() != "Geometry.Length") {
        state.notice(Notice::UnknownProperty, node.DataProperty());
        return {};
    }
    const auto pShape = feature.shape();
    return hasLength(pShape) ? numberText(state, pShape->length(), lDecimalPlaces) : std::string();
}

using Coordinate = double (GisPoint::*)() const;
constexpr std::array<std::pair<std::string_view, Coordinate>, 3> coordinates{{
    {"Geometry.X", &GisPoint::x},
    {"Geometry.Y", &GisPoint::y},
    {"Geometry.Z", &GisPoint::z},
}};

/// @param pPoint nothing for a feature without a shape: its coordinates read as "".
std::string coordinateText(ExportState& state, const GisPointPtr& pPoint, std::string_view sProperty,
                           std::int32_t lDecimalPlaces) {
    const auto* pCoordinate = std::find_if(coordinates.begin(), coordinates.end(),
                                           [&](const auto& entry) { return entry.first == sProperty; });
    if (pCoordinate == coordinates.end()) {
        state.notice(Notice::UnknownProperty, sProperty);
        return {};
    }
    return pPoint == nullptr ? std::string()
                             : numberText(state, ((*pPoint).*(pCoordinate->second))(), lDecimalPlaces);
}

/// The end that the property node's own kind tells, else that of the repeated node.
bool readsEnd(const ClsXMLNode& node, std::string_view sKind) {
    const auto isEnd = [](std::string_view sOf) {
        return sOf == "Geometry.ToNode" || sOf == "Geometry.EndPoint";
    };
    const std::string_view sOwn = node.DataSource();
    const bool bOwnStart = sOwn == "Geometry.FromNode" || sOwn == "Geometry.Point";
    return isEnd(sOwn) || (!bOwnStart && isEnd(sKind));
}

/// Nothing for a feature without a shape.
GisPointPtr nodeOf(const host::GisRow& feature, bool bEnd) {
    const auto pShape = feature.shape();
    if (pShape == nullptr)
        return nullptr;
    return bEnd ? pShape->toPoint() : pShape->fromPoint();
}

/// @returns "" when the component is no processor.
std::string externalText(ExportState& state, const ClsXMLNode& node) {
    const auto pComponent = state.pHost->createComponent(node.IdentityValue());
    const auto pProcessor = std::dynamic_pointer_cast<IExternalProcessor>(pComponent);
    return pProcessor == nullptr ? std::string() : pProcessor->Process(*state.dCurrentObjects);
}

struct Vertex {
    const host::GisRow& feature;
    const GisPointPtr& pPoint;
    std::optional<double> dMeasure;
};

std::string vertexText(ExportState& state, const Vertex& vertex, const ClsXMLNode& node,
                       std::int32_t lDecimalPlaces) {
    if (namesAttribute(node))
        return attributeText(state, vertex.feature, node, lDecimalPlaces);
    if (node.DataSource() == "External")
        return externalText(state, node);
    if (node.DataProperty() == "Geometry.Measure")
        return numberText(state, vertex.dMeasure.has_value() ? *vertex.dMeasure : vertex.pPoint->m(),
                          lDecimalPlaces);
    return coordinateText(state, vertex.pPoint, node.DataProperty(), lDecimalPlaces);
}

} // namespace

void ExportGeometryLength(ExportState& state, const GisRowPtr& pFeature, Node oPropertyNode,
                          Node oOutputElement, bool bMakeElement, std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, oPropertyNode);
    trapFailures(state, [&] {
        const ClsXMLNode node(oPropertyNode);
        const std::string sValue = lengthText(state, *pFeature, node, lDecimalPlaces);
        if (bMakeElement || node.targetsAttribute())
            writeChildValue(state, node, oOutputElement, sValue);
        else
            oOutputElement.setText(sValue);
    });
}

void ExportNodeCoordinate(ExportState& state, const GisRowPtr& pFeature, Node oPropertyNode,
                          std::string_view sKind, Node oOutputElement, std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, oPropertyNode);
    trapFailures(state, [&] {
        const ClsXMLNode node(oPropertyNode);
        const std::string sValue = namesAttribute(node)
                                       ? attributeText(state, *pFeature, node, lDecimalPlaces)
                                       : coordinateText(state, nodeOf(*pFeature, readsEnd(node, sKind)),
                                                        node.DataProperty(), lDecimalPlaces);
        writeChildValue(state, node, oOutputElement, sValue);
    });
}

void ExportVertexValue(ExportState& state, const GisRowPtr& pFeature, const GisPointPtr& pPoint,
                       Node oPropertyNode, Node oOutputElement, std::optional<double> dMeasure,
                       std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, oPropertyNode);
    trapFailures(state, [&] {
        state.keepObject("Feature", pFeature);
        state.keepObject("Point", pPoint);
        const ClsXMLNode node(oPropertyNode);
        const std::int32_t lPlaces =
            isNumeric(node.DecimalPL()) ? decimalPlacesOf(node.DecimalPL()) : lDecimalPlaces;
        writeChildValue(state, node, oOutputElement,
                        vertexText(state, {*pFeature, pPoint, dMeasure}, node, lPlaces));
    });
}

} // namespace halvane
