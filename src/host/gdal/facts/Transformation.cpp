#include "host/gdal/facts/Transformation.h"

#include "base/Failure.h"
#include "base/Numbers.h"
#include "host/gdal/source/Errors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace halvane::host::gdal {

namespace {

constexpr std::size_t nAtOnce = 64;
constexpr int lEdgePoints = 21;

bool hasHeights(const OGRSpatialReference& reference) {
    return reference.GetAxesCount() > 2;
}

// A height that nobody knows how to change must not move the position.
OGRSpatialReference withoutHeights(OGRSpatialReference reference) {
    reference.StripVertical();
    if (hasHeights(reference))
        reference.DemoteTo2D(nullptr);
    reference.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return reference;
}

std::unique_ptr<OGRCoordinateTransformation> make(const OGRSpatialReference& source,
                                                  const OGRSpatialReference& target) {
    OGRCoordinateTransformationOptions options;
    options.SetBallparkAllowed(false);
    return std::unique_ptr<OGRCoordinateTransformation>(
        OGRCreateCoordinateTransformation(&source, &target, options));
}

bool isFinite(const PointValues& point) {
    return std::isfinite(point.dX) && std::isfinite(point.dY);
}

// The edges of a box, corner by corner, each with as many points between its ends.
std::vector<PointValues> edgesOf(const Bounds& bounds) {
    std::vector<PointValues> points;
    const std::array<std::pair<double, double>, 5> aCorners{{{bounds.dXMin, bounds.dYMin},
                                                             {bounds.dXMax, bounds.dYMin},
                                                             {bounds.dXMax, bounds.dYMax},
                                                             {bounds.dXMin, bounds.dYMax},
                                                             {bounds.dXMin, bounds.dYMin}}};
    for (std::size_t nCorner = 0; nCorner + 1 < aCorners.size(); ++nCorner) {
        const auto [dX, dY] = aCorners[nCorner];
        const auto [dNextX, dNextY] = aCorners[nCorner + 1];
        for (int n = 0; n <= lEdgePoints; ++n) {
            const double dShare = static_cast<double>(n) / (lEdgePoints + 1);
            points.push_back({dX + (dNextX - dX) * dShare, dY + (dNextY - dY) * dShare, 0, 0});
        }
    }
    return points;
}

} // namespace

GdalTransformation::GdalTransformation(const OGRSpatialReference& source, const OGRSpatialReference& target)
    : sFrom_(shownName(source)), sTo_(shownName(target)),
      bHeights_(hasHeights(source) && hasHeights(target)) {
    const ErrorScope errors;
    pTransformation_ =
        bHeights_ ? make(source, target) : make(withoutHeights(source), withoutHeights(target));
    if (pTransformation_ == nullptr)
        throw Failure(FailureNumber::HostFailure,
                      "no way is known from " + sFrom_ + " to " + sTo_ +
                          "; the register of coordinate systems, or a grid that it names, may be missing");
    if (target.IsGeographic() != 0)
        dHalfTurn_ = 3.14159265358979323846 / target.GetAngularUnits();
}

Failure GdalTransformation::noPlace(const PointValues& point) const {
    return Failure(FailureNumber::HostFailure, "a point of " + sFrom_ + " has no place in " + sTo_)
        .about("the point " + doubleText(point.dX) + " " + doubleText(point.dY));
}

void GdalTransformation::transform(std::span<PointValues> aPoints) const {
    const ErrorScope errors;
    std::array<double, nAtOnce> aX{};
    std::array<double, nAtOnce> aY{};
    std::array<double, nAtOnce> aZ{};
    std::array<int, nAtOnce> aDone{};
    for (; !aPoints.empty(); aPoints = aPoints.subspan(std::min(aPoints.size(), nAtOnce))) {
        const auto aNow = aPoints.first(std::min(aPoints.size(), nAtOnce));
        for (std::size_t n = 0; n < aNow.size(); ++n) {
            if (!isFinite(aNow[n]))
                throw noPlace(aNow[n]);
            aX[n] = aNow[n].dX;
            aY[n] = aNow[n].dY;
            aZ[n] = std::isnan(aNow[n].dZ) ? 0 : aNow[n].dZ;
        }
        // The method counts by another type in each release of the library, the function by one.
        OCTTransformEx(OGRCoordinateTransformation::ToHandle(pTransformation_.get()),
                       static_cast<int>(aNow.size()), aX.data(), aY.data(), bHeights_ ? aZ.data() : nullptr,
                       aDone.data());
        for (std::size_t n = 0; n < aNow.size(); ++n) {
            const PointValues made{aX[n], aY[n], aNow[n].dZ, aNow[n].dM};
            if (aDone[n] == 0 || !isFinite(made) || (bHeights_ && !std::isfinite(aZ[n])))
                throw noPlace(aNow[n]);
            aNow[n].dX = aX[n];
            aNow[n].dY = aY[n];
            if (bHeights_ && !std::isnan(aNow[n].dZ))
                aNow[n].dZ = aZ[n];
        }
    }
}

Bounds GdalTransformation::transformBounds(const Bounds& bounds) const {
    // The library leaves out what it cannot transform, and its bounds are too small then.
    std::vector<PointValues> edges = edgesOf(bounds);
    transform(edges);
    const ErrorScope errors;
    Bounds made;
    if (pTransformation_->TransformBounds(bounds.dXMin, bounds.dYMin, bounds.dXMax, bounds.dYMax, &made.dXMin,
                                          &made.dYMin, &made.dXMax, &made.dYMax, lEdgePoints) == 0 ||
        !std::isfinite(made.dXMin + made.dYMin + made.dXMax + made.dYMax))
        throw Failure(FailureNumber::HostFailure, "the bounds have no place in " + sTo_);
    if (made.dXMin > made.dXMax && dHalfTurn_ > 0) {
        made.dXMin = -dHalfTurn_;
        made.dXMax = dHalfTurn_;
    }
    return made;
}

bool haveSameCoordinates(const OGRSpatialReference& one, const OGRSpatialReference& other) {
    const std::array<const char*, 2> aOptions{"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES", nullptr};
    return one.IsSame(&other, aOptions.data()) != 0;
}

std::string codeOf(const OGRSpatialReference& reference) {
    const char* pAuthority = reference.GetAuthorityName(nullptr);
    const char* pCode = reference.GetAuthorityCode(nullptr);
    return pAuthority == nullptr || pCode == nullptr ? std::string() : std::string(pAuthority) + ":" + pCode;
}

std::string shownName(const OGRSpatialReference& reference) {
    std::string sCode = codeOf(reference);
    if (!sCode.empty())
        return sCode;
    return reference.GetName() == nullptr ? "the data's own reference"
                                          : "\"" + std::string(reference.GetName()) + "\"";
}

} // namespace halvane::host::gdal
