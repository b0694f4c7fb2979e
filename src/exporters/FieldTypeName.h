#pragma once

#include "host/Fields.h"
#include "host/Geometry.h"

#include <cstdint>
#include <string_view>

namespace halvane {

/// The literal of a field type code; "" for a code without one.
[[nodiscard]] constexpr std::string_view fieldTypeName(std::int32_t lTypeCode) {
    switch (static_cast<host::FieldType>(lTypeCode)) {
    case host::FieldType::SmallInteger:
        return "vemiFieldTypeSmallInteger";
    case host::FieldType::Integer:
        return "vemiFieldTypeInteger";
    case host::FieldType::Single:
        return "vemiFieldTypeSingle";
    case host::FieldType::Double:
        return "vemiFieldTypeDouble";
    case host::FieldType::String:
        return "vemiFieldTypeString";
    case host::FieldType::Date:
        return "vemiFieldTypeDate";
    case host::FieldType::Oid:
        return "vemiFieldTypeOID";
    case host::FieldType::Geometry:
        return "vemiFieldTypeGeometry";
    case host::FieldType::Blob:
        return "vemiFieldTypeBlob";
    }
    return {};
}

/// The literal of a shape type code; "" for a code without one.
[[nodiscard]] constexpr std::string_view shapeTypeName(std::int32_t lShapeType) {
    switch (static_cast<host::ShapeType>(lShapeType)) {
    case host::ShapeType::Point:
        return "vemiGeometryPoint";
    case host::ShapeType::Multipoint:
        return "vemiGeometryMultipoint";
    case host::ShapeType::Polyline:
        return "vemiGeometryPolyline";
    case host::ShapeType::Polygon:
        return "vemiGeometryPolygon";
    case host::ShapeType::Line:
        return "vemiGeometryLine";
    case host::ShapeType::Null:
        break;
    }
    return {};
}

} // namespace halvane
