#include "host/gdal/rows/TransformedShapes.h"

#include <ogr_geometry.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

namespace {

constexpr double dNoOrdinate = std::numeric_limits<double>::quiet_NaN();

class Mover {
public:
    explicit Mover(const GisTransformation& transformation) : transformation_(transformation) {}

    // Shapes are nested no deeper than their formats allow.
    void move(OGRGeometry& shape) {
        if (shape.IsEmpty() != 0)
            return;
        if (auto* pPoint = dynamic_cast<OGRPoint*>(&shape))
            movePoint(*pPoint);
        else if (auto* pLine = dynamic_cast<OGRSimpleCurve*>(&shape))
            moveLine(*pLine);
        else if (auto* pCurve = dynamic_cast<OGRCompoundCurve*>(&shape))
            for (int n = 0; n < pCurve->getNumCurves(); ++n)
                move(*pCurve->getCurve(n));
        else if (auto* pArea = dynamic_cast<OGRCurvePolygon*>(&shape))
            moveArea(*pArea);
        else if (auto* pSurface = dynamic_cast<OGRPolyhedralSurface*>(&shape))
            for (int n = 0; n < pSurface->getNumGeometries(); ++n)
                move(*pSurface->getGeometryRef(n));
        else if (auto* pMembers = dynamic_cast<OGRGeometryCollection*>(&shape))
            for (int n = 0; n < pMembers->getNumGeometries(); ++n)
                move(*pMembers->getGeometryRef(n));
    }

private:
    void moveArea(OGRCurvePolygon& area) {
        move(*area.getExteriorRingCurve());
        for (int n = 0; n < area.getNumInteriorRings(); ++n)
            move(*area.getInteriorRingCurve(n));
    }

    void movePoint(OGRPoint& point) {
        points_.assign(
            1, {point.getX(), point.getY(), point.Is3D() != 0 ? point.getZ() : dNoOrdinate, dNoOrdinate});
        transformation_.transform(points_);
        point.setX(points_[0].dX);
        point.setY(points_[0].dY);
        if (point.Is3D() != 0)
            point.setZ(points_[0].dZ);
    }

    void moveLine(OGRSimpleCurve& line) {
        const bool bHeights = line.Is3D() != 0;
        points_.clear();
        for (int n = 0; n < line.getNumPoints(); ++n)
            points_.push_back(
                {line.getX(n), line.getY(n), bHeights ? line.getZ(n) : dNoOrdinate, dNoOrdinate});
        transformation_.transform(points_);
        for (int n = 0; n < line.getNumPoints(); ++n) {
            const PointValues& point = points_[static_cast<std::size_t>(n)];
            line.setPoint(n, point.dX, point.dY);
            if (bHeights)
                line.setZ(n, point.dZ);
        }
    }

    const GisTransformation& transformation_;
    std::vector<PointValues> points_;
};

} // namespace

ShapeChange transformationOfShapes(GisTransformationPtr pTransformation) {
    if (pTransformation == nullptr)
        return {};
    return [pTransformation = std::move(pTransformation)](OGRGeometry& shape) {
        Mover(*pTransformation).move(shape);
    };
}

} // namespace halvane::host::gdal
