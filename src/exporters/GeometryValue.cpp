// Writes one value of a feature's shape: its length, a coordinate of a node, or a value of a vertex.

#include "base/Numbers.h"
#include "engine/ModExporter.h"
#include "exporters/second/geometry/TransformedShape.h"
#include "host/Geometry.h"
#include "host/Rows.h"

#include <cmath>

namespace halvane {

namespace {

using host::GisGeometryPtr;
using host::GisPoint;
using host::GisPointPtr;

/// The feature's attribute that the data property names.
FieldText attributeText(ExportState& state, const host::GisRow& feature, const ControlNode& property,
                        std::int32_t lDecimalPlaces) {
    return RecordFieldText(state, feature, "", property.own.sDataProperty, lDecimalPlaces,
                           property.valueField);
}

/// A point without Z or measure holds no number there: that reads as "".
FieldText numberText(ExportState& state, double dValue, std::int32_t lDecimalPlaces) {
    return std::isnan(dValue) ? FieldText() : FormatNumber(state, dValue, lDecimalPlaces);
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

FieldText lengthText(ExportState& state, const host::GisRow& feature, const ControlNode& property,
                     std::int32_t lDecimalPlaces) {
    if (property.bNamesAttribute)
        return attributeText(state, feature, property, lDecimalPlaces);
    if (property.geometryProperty != GeometryProperty::Length) {
        state.notice(Notice::UnknownProperty, property.own.sDataProperty);
        return {};
    }
    const auto pShape = shapeFor(state, property, feature);
    return hasLength(pShape) ? numberText(state, pShape->length(), lDecimalPlaces) : FieldText();
}

bool isCoordinate(GeometryProperty property) {
    return property == GeometryProperty::X || property == GeometryProperty::Y ||
           property == GeometryProperty::Z;
}

double coordinateOf(const GisPoint& point, GeometryProperty property) {
    return property == GeometryProperty::X   ? point.x()
           : property == GeometryProperty::Y ? point.y()
                                             : point.z();
}

/// @param pPoint nothing for a feature without a shape: its coordinates read as "".
FieldText nodeText(ExportState& state, const GisPointPtr& pPoint, const ControlNode& property,
                   std::int32_t lDecimalPlaces) {
    if (!isCoordinate(property.geometryProperty)) {
        state.notice(Notice::UnknownProperty, property.own.sDataProperty);
        return {};
    }
    return pPoint == nullptr
               ? FieldText()
               : numberText(state, coordinateOf(*pPoint, property.geometryProperty), lDecimalPlaces);
}

/// The end that the property node's own kind tells, else that of the repeated node.
bool readsEnd(const ControlNode& property, ShapePart repeated) {
    const ShapePart own = rowOf(property.ownKind).shapePart;
    return own == ShapePart::End || (own != ShapePart::Start && repeated == ShapePart::End);
}

/// Nothing for a feature without a shape.
GisPointPtr nodeOf(ExportState& state, const ControlNode& property, const host::GisRow& feature, bool bEnd) {
    const auto pShape = shapeFor(state, property, feature);
    if (pShape == nullptr)
        return nullptr;
    return bEnd ? pShape->toPoint() : pShape->fromPoint();
}

double vertexNumber(const Vertex& vertex, GeometryProperty property) {
    switch (property) {
    case GeometryProperty::X:
        return vertex.pValues != nullptr ? vertex.pValues->dX : vertex.pPoint->x();
    case GeometryProperty::Y:
        return vertex.pValues != nullptr ? vertex.pValues->dY : vertex.pPoint->y();
    case GeometryProperty::Z:
        return vertex.pValues != nullptr ? vertex.pValues->dZ : vertex.pPoint->z();
    default:
        break;
    }
    if (vertex.dMeasure)
        return *vertex.dMeasure;
    return vertex.pValues != nullptr ? vertex.pValues->dM : vertex.pPoint->m();
}

void writeVertexValue(ExportState& state, const Vertex& vertex, const ControlNode& property,
                      const OutputElement& oOutput, std::int32_t lDecimalPlaces) {
    if (property.bNamesAttribute) {
        writeChildValue(state, property, oOutput,
                        attributeText(state, *vertex.pFeature, property, lDecimalPlaces));
    } else if (property.ownKind == DataSourceKind::External) {
        writeChildValue(state, property, oOutput,
                        processExternally(state, property.own.sIdentityValue).value_or(std::string()));
    } else if (isCoordinate(property.geometryProperty) ||
               property.geometryProperty == GeometryProperty::Measure) {
        writeChildValue(state, property, oOutput,
                        numberText(state, vertexNumber(vertex, property.geometryProperty), lDecimalPlaces));
    } else {
        state.notice(Notice::UnknownProperty, property.own.sDataProperty);
        writeChildValue(state, property, oOutput, "");
    }
}

} // namespace

void ExportGeometryLength(ExportState& state, const GisRowPtr& pFeature, const ControlNode& property,
                          const OutputElement& oOutput, bool bMakeElement, std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, property);
    trapFailures(state, [&] {
        const FieldText value = lengthText(state, *pFeature, property, lDecimalPlaces);
        if (bMakeElement || property.bTargetsAttribute)
            writeChildValue(state, property, oOutput, value);
        else
            oOutput.setText(value.sText, value.kind);
    });
}

void ExportNodeCoordinate(ExportState& state, const GisRowPtr& pFeature, const ControlNode& property,
                          ShapePart repeated, const OutputElement& oOutput, std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, property);
    trapFailures(state, [&] {
        writeChildValue(state, property, oOutput,
                        property.bNamesAttribute
                            ? attributeText(state, *pFeature, property, lDecimalPlaces)
                            : nodeText(state,
                                       nodeOf(state, property, *pFeature, readsEnd(property, repeated)),
                                       property, lDecimalPlaces));
    });
}

void ExportVertexValue(ExportState& state, const Vertex& vertex, const ControlNode& property,
                       const OutputElement& oOutput, std::int32_t lDecimalPlaces) {
    const ActiveNodeScope scope(state, property);
    trapFailures(state, [&] {
        const auto& own = property.ownDecimalPlaces;
        writeVertexValue(state, vertex, property, oOutput, own.isGiven() ? own.value() : lDecimalPlaces);
    });
}

} // namespace halvane
