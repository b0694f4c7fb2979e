#pragma once

#include <cstdint>
#include <string_view>

namespace halvane {

/// What a geometry value's data property asks for, told apart by exact letter case.
enum class GeometryProperty : std::uint8_t { Other, Length, X, Y, Z, Measure };

[[nodiscard]] constexpr GeometryProperty geometryPropertyOf(std::string_view sProperty) {
    if (sProperty == "Geometry.X")
        return GeometryProperty::X;
    if (sProperty == "Geometry.Y")
        return GeometryProperty::Y;
    if (sProperty == "Geometry.Z")
        return GeometryProperty::Z;
    if (sProperty == "Geometry.Measure")
        return GeometryProperty::Measure;
    return sProperty == "Geometry.Length" ? GeometryProperty::Length : GeometryProperty::Other;
}

} // namespace halvane
