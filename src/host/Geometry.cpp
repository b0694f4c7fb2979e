#include "host/Geometry.h"

#include "base/Failure.h"

namespace halvane::host {

PartRole GisGeometry::partRole(std::int32_t lPart) const {
    if (lPart < 0 || lPart >= partCount())
        throw Failure::of(FailureNumber::SubscriptOutOfRange);
    switch (static_cast<ShapeType>(geometryType())) {
    case ShapeType::Point:
    case ShapeType::Multipoint:
        return PartRole::Points;
    case ShapeType::Polyline:
    case ShapeType::Line:
        return PartRole::Line;
    case ShapeType::Polygon:
        if (partCount() == 1)
            return PartRole::OuterRing;
        break;
    case ShapeType::Null:
        break;
    }
    throw Failure(FailureNumber::ActionNotSupported,
                  "the host application does not tell what the parts of a shape are: areas, holes, lines");
}

} // namespace halvane::host
