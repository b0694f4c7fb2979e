// From one reference to another.

#include "SampleData.h"
#include "base/Failure.h"
#include "host/gdal/facts/SpatialReference.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace halvane::tests {
namespace {

using host::Bounds;
using host::PointValues;
using ::testing::HasSubstr;

constexpr double dNone = std::numeric_limits<double>::quiet_NaN();

host::GisTransformationPtr way(const char* pFrom, const char* pTo) {
    const auto pHost = host::gdal::GdalHost::create();
    return pHost->referenceOf(pFrom)->transformationTo(*pHost->referenceOf(pTo));
}

PointValues made(const char* pFrom, const char* pTo, PointValues point) {
    way(pFrom, pTo)->transform({&point, 1});
    return point;
}

/// A system whose datum nobody knows.
host::GisSpatialReferencePtr unknownDatum() {
    OGRSpatialReference reference;
    reference.SetGeogCS("Island", "Island_1901", "Clarke 1880", 6378249.145, 293.465);
    return host::gdal::makeSpatialReference(&reference, std::nullopt, {});
}

TEST(Transformation, HasTheEastingFirstWhateverTheAuthoritysOrder) {
    // By the formulas of the transverse projection: on its meridian, 500,000 east.
    const PointValues point = made("EPSG:4258", "EPSG:25832", {9, 0, dNone, dNone});
    EXPECT_NEAR(point.dX, 500000, 0.001);
    EXPECT_NEAR(point.dY, 0, 0.001);
    const PointValues centre = made("EPSG:4258", "EPSG:3035", {10, 52, dNone, dNone});
    EXPECT_NEAR(centre.dX, 4321000, 0.001);
    EXPECT_NEAR(centre.dY, 3210000, 0.001);
}

TEST(Transformation, TellsWhichAuthoritiesHaveTheNorthingFirst) {
    const auto pHost = host::gdal::GdalHost::create();
    EXPECT_TRUE(pHost->referenceOf("EPSG:4258")->isNorthFirst());
    EXPECT_TRUE(pHost->referenceOf("EPSG:3035")->isNorthFirst());
    EXPECT_FALSE(pHost->referenceOf("EPSG:25832")->isNorthFirst());
    EXPECT_FALSE(pHost->referenceOf("OGC:CRS84")->isNorthFirst());
    EXPECT_EQ(pHost->referenceOf("epsg:4258")->authorityCode(), "EPSG:4258");
}

TEST(Transformation, IsNoneWhereOnlyTheOrderOfTheAxesDiffers) {
    EXPECT_EQ(way("EPSG:4326", "OGC:CRS84"), nullptr);
    EXPECT_EQ(way("EPSG:4258", "EPSG:4258"), nullptr);
    EXPECT_NE(way("EPSG:4326", "EPSG:4258"), nullptr) << "another datum";
}

TEST(Transformation, LeavesHeightsUnlessBothReferencesHaveThem) {
    EXPECT_EQ(made("EPSG:4258", "EPSG:25832", {9, 0, 123.5, 4}).dZ, 123.5);
    EXPECT_EQ(made("EPSG:4979", "EPSG:25832", {9, 0, 123.5, 4}).dZ, 123.5);
    // Heights above two ellipsoids differ.
    const PointValues point = made("EPSG:4937", "EPSG:4979", {9, 48, 100, 4});
    EXPECT_NEAR(point.dZ, 100, 1);
    EXPECT_EQ(point.dM, 4);
}

TEST(Transformation, FailsForPointsThatHaveNoPlace) {
    for (const PointValues& point : {PointValues{0, 95, dNone, dNone}, PointValues{dNone, 0, dNone, dNone},
                                     PointValues{HUGE_VAL, 0, dNone, dNone}})
        EXPECT_THAT(failureOf([&] { made("EPSG:4326", "EPSG:3857", point); }),
                    HasSubstr("of EPSG:4326 has no place in EPSG:3857"));
}

TEST(Transformation, IsNoGuessThatTwoDatumsAreTheSame) {
    const auto pHost = host::gdal::GdalHost::create();
    EXPECT_THAT(failureOf([&] {
                    static_cast<void>(unknownDatum()->transformationTo(*pHost->referenceOf("EPSG:4326")));
                }),
                HasSubstr("no way is known from \"Island\" to EPSG:4326"));
}

TEST(Transformation, OfABoxFollowsItsEdges) {
    // Parallels are bent there: the northern edge is highest at its middle's meridian, not at the corners.
    const Bounds bounds = way("EPSG:4258", "EPSG:3035")->transformBounds({0, 50, 20, 60});
    const PointValues corner = made("EPSG:4258", "EPSG:3035", {0, 60, dNone, dNone});
    const PointValues middle = made("EPSG:4258", "EPSG:3035", {10, 50, dNone, dNone});
    EXPECT_GT(bounds.dYMax, corner.dY - 0.001);
    EXPECT_NEAR(bounds.dYMin, middle.dY, 1);
    EXPECT_LT(bounds.dXMin, corner.dX - 100000) << "at the southern corner";
}

TEST(Transformation, OfABoxAcrossTheAntimeridianHasAllLongitudes) {
    const Bounds bounds = way("EPSG:3832", "EPSG:4326")->transformBounds({2e6, -1e6, 5e6, 1e6});
    EXPECT_EQ(bounds.dXMin, -180);
    EXPECT_EQ(bounds.dXMax, 180);
}

TEST(Transformation, OfABoxFailsWhereAnEdgeHasNoPlace) {
    EXPECT_THAT(failureOf([] {
                    static_cast<void>(way("EPSG:4326", "EPSG:3857")->transformBounds({-10, -95, 10, 95}));
                }),
                HasSubstr("has no place in EPSG:3857"));
}

TEST(Transformation, IsToPositionsOnAMapAlone) {
    for (const char* pCode : {"EPSG:5783", "EPSG:4978"})
        EXPECT_THAT(failureOf([&] { static_cast<void>(host::gdal::GdalHost::create()->referenceOf(pCode)); }),
                    HasSubstr("tells no positions on a map"));
}

} // namespace
} // namespace halvane::tests
