#include "AreaByHand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace halvane::tests {

host::XyDomain areaByHand(const OGRSpatialReference& reference) {
    OGRSpatialReference target(reference);
    target.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRSpatialReference source;
    source.importFromEPSG(4326);
    source.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    double dWest = 0;
    double dSouth = 0;
    double dEast = 0;
    double dNorth = 0;
    EXPECT_TRUE(reference.GetAreaOfUse(&dWest, &dSouth, &dEast, &dNorth, nullptr));
    const std::unique_ptr<OGRCoordinateTransformation> pTransformation(
        OGRCreateCoordinateTransformation(&source, &target));
    host::XyDomain bounds{1e12, 1e12, -1e12, -1e12, 0, 0, 0};
    for (int lStep = 0; lStep <= 7200; ++lStep) {
        for (const double dLatitude : {dSouth, dNorth}) {
            double dX = dWest + (dEast - dWest) * lStep / 7200;
            double dY = dLatitude;
            EXPECT_TRUE(pTransformation->Transform(1, &dX, &dY));
            bounds.dXMin = std::min(bounds.dXMin, dX);
            bounds.dYMin = std::min(bounds.dYMin, dY);
            bounds.dXMax = std::max(bounds.dXMax, dX);
            bounds.dYMax = std::max(bounds.dYMax, dY);
        }
    }
    return bounds;
}

} // namespace halvane::tests
