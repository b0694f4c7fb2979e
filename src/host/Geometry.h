#pragma once

// Shapes and their points.

#include "base/Value.h"
#include "host/Forward.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace halvane::host {

/// Shape type codes.
enum class ShapeType : std::int32_t {
    Null = 0,
    Point = 1,
    Multipoint = 2,
    Polyline = 3,
    Polygon = 4,
    Line = 13
};

/// What a part of a shape is.
enum class PartRole : std::uint8_t {
    Points,    ///< points by themselves
    Line,      ///< a line from the first to the last
    OuterRing, ///< the border of an area; the inner rings that follow are its holes
    InnerRing, ///< the border of a hole in the area that began last
};

class GisPoint : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisPoint"; }
    [[nodiscard]] virtual double x() const = 0;
    [[nodiscard]] virtual double y() const = 0;
    /// Not a number when the point has none.
    [[nodiscard]] virtual double z() const = 0;
    [[nodiscard]] virtual double m() const = 0;
};

/// The numbers of a point; not a number where it has none.
struct PointValues {
    double dX = 0, dY = 0, dZ = 0, dM = 0;
};

class GisGeometry : public Object {
public:
    [[nodiscard]] std::string_view typeName() const override { return "GisGeometry"; }
    /// A ShapeType code.
    [[nodiscard]] virtual std::int32_t geometryType() const = 0;
    /// In the layer's own units; for areas the sum of the rings.
    [[nodiscard]] virtual double length() const = 0;
    /// The point itself for a point, else the first and the last vertex. Nothing for an empty shape.
    [[nodiscard]] virtual GisPointPtr fromPoint() const = 0;
    [[nodiscard]] virtual GisPointPtr toPoint() const = 0;
    [[nodiscard]] virtual std::int32_t partCount() const = 0;
    /// Rings run in either direction. A host that does not know the roles of an area's rings leaves this as
    /// it is: the role is then what follows from the shape's type.
    /// @throws Failure ActionNotSupported where more than one role could be meant.
    [[nodiscard]] virtual PartRole partRole(std::int32_t lPart) const;
    [[nodiscard]] virtual std::int32_t pointCount(std::int32_t lPart) const = 0;
    [[nodiscard]] virtual GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const = 0;
    /// The numbers of that point and those after it, as far as they fit, where the host has them at hand
    /// without making objects. @returns how many; 0: the points have to be asked for one by one.
    [[nodiscard]] virtual std::size_t readPoints(std::int32_t /*lPart*/, std::int32_t /*lFirst*/,
                                                 std::span<PointValues> /*aPoints*/) const {
        return 0;
    }
};

} // namespace halvane::host
