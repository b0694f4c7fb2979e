#pragma once

#include "host/Geometry.h"
#include "host/memory/Faults.h"

#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace halvane::host::memory {

struct Vertex {
    double dX = 0;
    double dY = 0;
    double dZ = std::numeric_limits<double>::quiet_NaN();
    double dM = std::numeric_limits<double>::quiet_NaN();
};
using Part = std::vector<Vertex>;

class MemoryPoint final : public GisPoint, private Scripted {
public:
    MemoryPoint(const Vertex& vertex, std::shared_ptr<FaultScript> pFaults)
        : Scripted(std::move(pFaults)), vertex_(vertex) {}

    [[nodiscard]] double x() const override;
    [[nodiscard]] double y() const override;
    [[nodiscard]] double z() const override;
    [[nodiscard]] double m() const override;

private:
    Vertex vertex_;
};

/// A shape. Points and multipoints are one part; the rings of an area are parts that repeat their first
/// vertex at their end, the first its border and the others its holes, unless roles are set. The length is
/// planar, and 0 for points.
class MemoryGeometry final : public GisGeometry, private Scripted {
public:
    MemoryGeometry(ShapeType type, std::vector<Part> aParts) : type_(type), aParts_(std::move(aParts)) {}
    [[nodiscard]] static std::shared_ptr<MemoryGeometry> point(const Vertex& vertex);
    [[nodiscard]] static std::shared_ptr<MemoryGeometry> multipoint(Part aVertices);
    [[nodiscard]] static std::shared_ptr<MemoryGeometry> polyline(std::vector<Part> aParts);
    [[nodiscard]] static std::shared_ptr<MemoryGeometry> polygon(std::vector<Part> aRings);
    /// A shape of a type without any part.
    [[nodiscard]] static std::shared_ptr<MemoryGeometry> empty(ShapeType type);

    [[nodiscard]] std::int32_t geometryType() const override;
    [[nodiscard]] double length() const override;
    [[nodiscard]] GisPointPtr fromPoint() const override;
    [[nodiscard]] GisPointPtr toPoint() const override;
    [[nodiscard]] std::int32_t partCount() const override;
    [[nodiscard]] PartRole partRole(std::int32_t lPart) const override;
    [[nodiscard]] std::int32_t pointCount(std::int32_t lPart) const override;
    [[nodiscard]] GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const override;
    /// Nothing, unless keepAtHand told how many; nothing either where a point's operation is to fail: who is
    /// handed numbers would not meet that failure.
    [[nodiscard]] std::size_t readPoints(std::int32_t lPart, std::int32_t lFirst,
                                         std::span<PointValues> aPoints) const override;

    /// What the parts are, one by one.
    void setRoles(std::vector<PartRole> aRoles) { aRoles_ = std::move(aRoles); }
    /// From now on readPoints yields so many points at most.
    void keepAtHand(std::size_t nPoints) noexcept { nAtHand_ = nPoints; }

private:
    [[nodiscard]] const Part& part(std::int32_t lPart) const;

    ShapeType type_;
    std::vector<Part> aParts_;
    std::vector<PartRole> aRoles_; ///< none: as the type has it
    std::size_t nAtHand_ = 0;
};
using MemoryGeometryPtr = std::shared_ptr<MemoryGeometry>;

} // namespace halvane::host::memory
