#pragma once

#include "host/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace halvane {

/// What a shape is as a whole.
enum class ShapeKind : std::uint8_t {
    Point,
    MultiPoint,
    LineString,
    MultiLineString,
    Polygon,
    MultiPolygon,
    Collection,
};
/// "Point", "MultiPoint" …
[[nodiscard]] std::string_view nameOf(ShapeKind kind) noexcept;

/// A part of a shape, and how it is written.
struct ShapePartFacts {
    std::int32_t lPart = 0; ///< of the host's shape
    host::PartRole role = host::PartRole::Points;
    std::int32_t lCount = 0; ///< points of the host's part
    bool bBackwards = false; ///< a ring that runs the other way in the data
    bool bUnclosed = false;  ///< a ring whose first point is missing at its end
    std::size_t nInHand = 0; ///< where its points stand among those that are held
    double dTwiceArea = 0;   ///< of a ring as it is written: positive for a border, negative for a hole
};

/// A shape as it is written: borders run counter-clockwise, holes clockwise. All its points are looked at
/// once before; a small shape's are held, a large one's are read again, in pieces.
class ShapeParts {
public:
    /// @param shape borrowed. Empty parts do not count.
    /// @throws Failure when a point is not finite, or a hole has no area around it.
    explicit ShapeParts(const host::GisGeometry& shape);

    [[nodiscard]] const std::vector<ShapePartFacts>& all() const noexcept { return parts_; }
    [[nodiscard]] bool isEmpty() const noexcept { return parts_.empty(); }
    /// Of a shape that is not empty.
    [[nodiscard]] ShapeKind kind() const;
    /// Whether all points have heights.
    [[nodiscard]] bool hasHeights() const noexcept { return bHeights_; }
    [[nodiscard]] bool hasMeasures() const noexcept { return bMeasures_; }

    /// The points of a part in the order in which they are written; a ring ends where it began.
    template<class OfPoint>
    void forEachPoint(const ShapePartFacts& part, const OfPoint& ofPoint) const {
        host::PointValues first;
        for (std::int32_t lDone = 0; lDone < part.lCount;) {
            const std::span<const host::PointValues> aPoints = read(part, lDone);
            if (lDone == 0)
                first = part.bBackwards ? aPoints.back() : aPoints.front();
            for (std::size_t n = 0; n < aPoints.size(); ++n)
                ofPoint(part.bBackwards ? aPoints[aPoints.size() - 1 - n] : aPoints[n]);
            lDone += static_cast<std::int32_t>(aPoints.size());
        }
        if (part.bUnclosed)
            ofPoint(first);
    }

private:
    /// Looks at the points of a part that stand in a row in the data.
    class Inspection;

    static constexpr std::size_t nMostInHand = 4096;
    static constexpr std::int32_t lMostRead = 256;

    /// The next points after so many; of a part that runs backwards, those before. At least one.
    [[nodiscard]] std::span<const host::PointValues> read(const ShapePartFacts& part,
                                                          std::int32_t lDone) const;
    void readFromHost(std::int32_t lPart, std::int32_t lFirst, std::span<host::PointValues> aPoints) const;
    void add(std::int32_t lPart, bool bHold);

    const host::GisGeometry& shape_;
    std::vector<ShapePartFacts> parts_;
    std::vector<host::PointValues> inHand_;       ///< all points, or none
    mutable std::vector<host::PointValues> read_; ///< of a large shape
    bool bHeights_ = true;
    bool bMeasures_ = true;
};

} // namespace halvane
