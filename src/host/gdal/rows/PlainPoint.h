#pragma once

#include "base/Failure.h"
#include "host/gdal/rows/Geometry.h"

#include <cstddef>
#include <deque>
#include <limits>
#include <memory>

namespace halvane::host::gdal {

/// A shape that is a point of two coordinates: what most tables of points hold, without the library's object
/// of it.
class PlainPoint final : public GisGeometry {
public:
    void set(double dX, double dY) {
        dX_ = dX;
        dY_ = dY;
    }

    [[nodiscard]] std::int32_t geometryType() const override {
        return static_cast<std::int32_t>(ShapeType::Point);
    }
    [[nodiscard]] double length() const override { return 0; }
    [[nodiscard]] GisPointPtr fromPoint() const override {
        return std::make_shared<GdalPoint>(dX_, dY_, dNone, dNone);
    }
    [[nodiscard]] GisPointPtr toPoint() const override { return fromPoint(); }
    [[nodiscard]] std::int32_t partCount() const override { return 1; }
    [[nodiscard]] PartRole partRole(std::int32_t lPart) const override {
        requireFirst(lPart);
        return PartRole::Points;
    }
    [[nodiscard]] std::int32_t pointCount(std::int32_t lPart) const override {
        requireFirst(lPart);
        return 1;
    }
    [[nodiscard]] GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const override {
        requireFirst(lPart);
        requireFirst(lIndex);
        return fromPoint();
    }
    [[nodiscard]] std::size_t readPoints(std::int32_t lPart, std::int32_t lFirst,
                                         std::span<PointValues> aPoints) const override {
        requireFirst(lPart);
        requireFirst(lFirst);
        if (aPoints.empty())
            return 0;
        aPoints[0] = {dX_, dY_, dNone, dNone};
        return 1;
    }

private:
    static constexpr double dNone = std::numeric_limits<double>::quiet_NaN();

    static void requireFirst(std::int32_t lPlace) {
        if (lPlace != 0)
            throw Failure::of(FailureNumber::SubscriptOutOfRange);
    }

    double dX_ = 0;
    double dY_ = 0;
};

/// Points that stay where they are until all are dropped at once.
class PlainPoints {
public:
    /// @returns its place.
    std::size_t add(double dX, double dY) {
        if (nUsed_ == points_.size())
            points_.emplace_back();
        points_[nUsed_].set(dX, dY);
        return nUsed_++;
    }
    [[nodiscard]] PlainPoint& at(std::size_t nPoint) { return points_[nPoint]; }
    [[nodiscard]] std::size_t bytes() const { return nUsed_ * sizeof(PlainPoint); }
    /// Keeps the memory for the next ones.
    void clear() { nUsed_ = 0; }

private:
    std::deque<PlainPoint> points_;
    std::size_t nUsed_ = 0;
};

} // namespace halvane::host::gdal
