#pragma once

#include "host/Geometry.h"

#include <ogr_geometry.h>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace halvane::host::gdal {

class GdalPoint : public GisPoint {
public:
    GdalPoint(double dX, double dY, double dZ, double dM) : dX_(dX), dY_(dY), dZ_(dZ), dM_(dM) {}
    [[nodiscard]] double x() const override { return dX_; }
    [[nodiscard]] double y() const override { return dY_; }
    [[nodiscard]] double z() const override { return dZ_; }
    [[nodiscard]] double m() const override { return dM_; }

private:
    double dX_;
    double dY_;
    double dZ_;
    double dM_;
};

/// A shape. Parts are: of a point and of a multipoint, the points together; of lines, each line; of areas,
/// each ring, outer before inner, area by area, with its closing vertex; of collections, the parts of its
/// members in turn. Empty ones do not count. Curves yield vertices of lines close to them; those between the
/// points that the data has of an arc have no measure.
class GdalGeometry : public GisGeometry {
public:
    explicit GdalGeometry(std::unique_ptr<OGRGeometry> pGeometry);

    [[nodiscard]] std::int32_t geometryType() const override;
    /// Along curves themselves, not along the lines close to them; 0 for points.
    [[nodiscard]] double length() const override;
    [[nodiscard]] GisPointPtr fromPoint() const override;
    [[nodiscard]] GisPointPtr toPoint() const override;
    [[nodiscard]] std::int32_t partCount() const override;
    [[nodiscard]] PartRole partRole(std::int32_t lPart) const override { return part(lPart).role; }
    [[nodiscard]] std::int32_t pointCount(std::int32_t lPart) const override;
    [[nodiscard]] GisPointPtr point(std::int32_t lPart, std::int32_t lIndex) const override;
    [[nodiscard]] std::size_t readPoints(std::int32_t lPart, std::int32_t lFirst,
                                         std::span<PointValues> aPoints) const override;

    [[nodiscard]] const OGRGeometry& geometry() const { return *pGeometry_; }

private:
    using Points = std::vector<const OGRPoint*>;

    // Where the vertices of a part stand: shapes can have as many parts as vertices, so it is small.
    struct Part {
        std::variant<const OGRSimpleCurve*, const OGRMultiPoint*, const Points*, const OGRPoint*> source;
        PartRole role = PartRole::Points;
        const std::vector<double>* pMeasures = nullptr; // of a line along arcs, whose own are nobody's

        [[nodiscard]] int count() const;
        void read(int lFirst, std::span<PointValues> aPoints) const;
        [[nodiscard]] GisPointPtr at(int lIndex) const;
    };

    [[nodiscard]] const std::vector<Part>& parts() const;
    [[nodiscard]] const Part& part(std::int32_t lPart) const;
    static void requireVertex(const Part& part, std::int32_t lIndex);
    void collect(const OGRGeometry& geometry, std::vector<Part>& parts) const;
    void collectCurve(const OGRCurve& curve, PartRole role, std::vector<Part>& parts) const;
    void collectArea(const OGRCurvePolygon& area, std::vector<Part>& parts) const;
    void collectPoints(const OGRMultiPoint& points, std::vector<Part>& parts) const;

    std::unique_ptr<OGRGeometry> pGeometry_;
    // What parts refer to that the data does not have so.
    mutable std::vector<std::unique_ptr<OGRLineString>> lines_; // along the curves that have arcs
    mutable std::vector<std::unique_ptr<std::vector<double>>> measures_;
    mutable std::vector<std::unique_ptr<Points>> points_; // those of a multipoint that has empty ones too
    mutable std::optional<std::vector<Part>> parts_;
};

/// The shape type code of a geometry; of a collection, that of its members when they agree, empty ones apart.
[[nodiscard]] ShapeType shapeTypeOf(const OGRGeometry& geometry);
/// The shape type code of a geometry type.
[[nodiscard]] ShapeType shapeTypeOf(OGRwkbGeometryType type);

} // namespace halvane::host::gdal
