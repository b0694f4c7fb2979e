#include "run/describe/LayerSketch.h"

#include "host/Rows.h"
#include "run/describe/Reading.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace halvane {

namespace {

using Point = std::pair<double, double>;

constexpr std::size_t nMostShapes = 150;
constexpr std::size_t nFewestPoints = 4; // of a ring that is a ring

void widen(std::optional<host::Bounds>& bounds, const Point& point) {
    const auto [dX, dY] = point;
    if (!bounds)
        bounds = host::Bounds{dX, dY, dX, dY};
    bounds->dXMin = std::min(bounds->dXMin, dX);
    bounds->dYMin = std::min(bounds->dYMin, dY);
    bounds->dXMax = std::max(bounds->dXMax, dX);
    bounds->dYMax = std::max(bounds->dYMax, dY);
}

/// The points of a part that are numbers.
std::vector<Point> pointsOf(const host::GisGeometry& shape, std::int32_t lPart) {
    std::vector<Point> points;
    std::array<host::PointValues, 256> aPoints;
    const auto add = [&](double dX, double dY) {
        if (std::isfinite(dX) && std::isfinite(dY))
            points.emplace_back(dX, dY);
    };
    const std::int32_t lCount = shape.pointCount(lPart);
    for (std::int32_t lFirst = 0; lFirst < lCount;) {
        const std::size_t nRead = shape.readPoints(lPart, lFirst, aPoints);
        for (std::size_t n = 0; n < nRead; ++n)
            add(aPoints[n].dX, aPoints[n].dY);
        if (nRead == 0) {
            const auto pPoint = shape.point(lPart, lFirst);
            add(pPoint->x(), pPoint->y());
        }
        lFirst += static_cast<std::int32_t>(std::max<std::size_t>(nRead, 1));
    }
    return points;
}

class Sketch {
public:
    Sketch(std::int64_t lFeatures, std::size_t nMostPoints)
        : nLeft_(nMostPoints), nFeatures_(static_cast<std::size_t>(std::max<std::int64_t>(lFeatures, 1))),
          nOfShape_(std::max(nMostPoints / std::min(nFeatures_, nMostShapes), nFewestPoints)) {}

    void add(const host::GisGeometry& shape) {
        const bool bDrawn = nSeen_++ % (nFeatures_ / nMostShapes + 1) == 0;
        std::vector<std::vector<Point>> parts;
        std::size_t nPoints = 0;
        for (std::int32_t lPart = 0; lPart < shape.partCount(); ++lPart) {
            auto points = pointsOf(shape, lPart);
            for (const Point& point : points)
                widen(sketch_.bounds, point);
            nPoints += points.size();
            if (bDrawn && nLeft_ > 0)
                parts.push_back(std::move(points));
        }
        // The large parts are what a shape is recognised by.
        std::ranges::stable_sort(parts, std::ranges::greater{}, &std::vector<Point>::size);
        const bool bArea = isArea(shape);
        for (std::size_t n = 0; n < parts.size(); ++n)
            draw(parts[n], nOfShape_ * parts[n].size() / std::max<std::size_t>(nPoints, 1), n == 0, bArea);
    }

    [[nodiscard]] LayerSketch take() { return std::move(sketch_); }

private:
    static bool isArea(const host::GisGeometry& shape) {
        return shape.geometryType() == static_cast<std::int32_t>(host::ShapeType::Polygon);
    }

    void draw(const std::vector<Point>& part, std::size_t nShare, bool bLargest, bool bArea) {
        if (part.empty() || nLeft_ == 0 || (!bLargest && nShare < nFewestPoints))
            return;
        const std::size_t nPoints =
            std::min({part.size(), std::max(nShare, nFewestPoints), std::max<std::size_t>(nLeft_, 2)});
        LayerSketch::Line line{{}, bArea};
        for (std::size_t n = 0; n < nPoints; ++n) // the first and the last one, and some between
            line.points.push_back(part[nPoints == 1 ? 0 : n * (part.size() - 1) / (nPoints - 1)]);
        nLeft_ -= std::min(nLeft_, nPoints);
        sketch_.lines.push_back(std::move(line));
    }

    std::size_t nLeft_; ///< points
    std::size_t nFeatures_;
    std::size_t nOfShape_;
    std::size_t nSeen_ = 0;
    LayerSketch sketch_;
};

} // namespace

LayerSketch sketchLayer(host::GisFeatureClass& featureClass, std::int64_t lFeatures,
                        std::size_t nMostPoints) {
    Sketch sketch(lFeatures, nMostPoints);
    const auto pCursor = featureClass.search(nullptr);
    while (const auto pRow = pCursor == nullptr ? nullptr : pCursor->nextRow()) {
        if (interruptionRequested())
            throw DescriptionGivenUp{};
        if (const auto pShape = pRow->shape())
            sketch.add(*pShape);
    }
    return sketch.take();
}

} // namespace halvane
