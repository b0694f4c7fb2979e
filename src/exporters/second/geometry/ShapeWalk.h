#pragma once

#include "exporters/second/geometry/ShapeParts.h"

#include <cstddef>

namespace halvane {

/// Is told a shape from its beginning to its end, and writes it in some notation.
class ShapeSink {
public:
    ShapeSink() = default;
    ShapeSink(const ShapeSink&) = delete;
    ShapeSink& operator=(const ShapeSink&) = delete;
    virtual ~ShapeSink() = default;

    virtual void beginShape(const ShapeParts& parts, ShapeKind kind) = 0;
    /// A point, a line or an area: the shape itself where it is one, else its next member.
    /// @param kind Point, LineString or Polygon.
    virtual void beginMember(ShapeKind kind) = 0;
    virtual void point(const host::PointValues& point) = 0;
    /// A line or a ring, whole: the sink asks for its points.
    virtual void run(const ShapeParts& parts, const ShapePartFacts& part) = 0;
    virtual void endMember(ShapeKind kind) = 0;
    virtual void endShape() = 0;
};

/// @param parts not empty.
inline void walk(const ShapeParts& parts, ShapeSink& sink) {
    using host::PartRole;
    sink.beginShape(parts, parts.kind());
    const auto& all = parts.all();
    for (std::size_t n = 0; n < all.size(); ++n) {
        if (all[n].role == PartRole::Points) {
            parts.forEachPoint(all[n], [&](const host::PointValues& point) {
                sink.beginMember(ShapeKind::Point);
                sink.point(point);
                sink.endMember(ShapeKind::Point);
            });
            continue;
        }
        const ShapeKind kind = all[n].role == PartRole::Line ? ShapeKind::LineString : ShapeKind::Polygon;
        sink.beginMember(kind);
        sink.run(parts, all[n]);
        while (n + 1 < all.size() && all[n + 1].role == PartRole::InnerRing)
            sink.run(parts, all[++n]);
        sink.endMember(kind);
    }
    sink.endShape();
}

[[nodiscard]] inline bool isOfMembers(ShapeKind kind) noexcept {
    return kind != ShapeKind::Point && kind != ShapeKind::LineString && kind != ShapeKind::Polygon;
}

} // namespace halvane
