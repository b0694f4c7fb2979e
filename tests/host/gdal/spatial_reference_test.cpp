#include "AreaByHand.h"
#include "SampleData.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"

#include "host/gdal/facts/SpatialReference.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

OGRSpatialReference systemOf(int lCode) {
    OGRSpatialReference reference;
    EXPECT_EQ(reference.importFromEPSG(lCode), OGRERR_NONE);
    return reference;
}

class SpatialReference : public ::testing::Test {
protected:
    host::GisMapPtr openMap(const std::string& sContent) {
        return pHost
            ->openMapDocument(
                folder.write("map.xml", "<MapDocument><Map name='M'>" + sContent + "</Map></MapDocument>"))
            ->focusMap();
    }
    static host::GisFeatureLayerPtr layerOf(const host::GisMap& map, std::int32_t lIndex = 0) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(map.layer(lIndex));
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
};

TEST_F(SpatialReference, OfAFeatureClassIsTheDatas) {
    const auto pClass = openWorkspace(sCity)->openFeatureClass("roads");
    EXPECT_THAT(pClass->spatialReference()->description(),
                StartsWith("Projection    UTM\nZone          32\n"));
}

TEST_F(SpatialReference, DerivesItsDomainFromTheAreaOfUse) {
    const auto domain = *openWorkspace(sCity)->openFeatureClass("roads")->spatialReference()->xyDomain();
    const host::XyDomain expected = areaByHand(systemOf(25832));
    EXPECT_NEAR(domain.dXMin, expected.dXMin, 1);
    EXPECT_NEAR(domain.dXMax, expected.dXMax, 1);
    EXPECT_NEAR(domain.dYMin, expected.dYMin, 1);
    EXPECT_NEAR(domain.dYMax, expected.dYMax, 1);
    // Zone 32 lies three degrees on either side of its meridian, in the north.
    EXPECT_LT(domain.dXMin, 300'000);
    EXPECT_GT(domain.dXMax, 700'000);
    EXPECT_GT(domain.dYMin, 3'000'000);
    EXPECT_EQ(domain.dFalseX, std::floor(domain.dXMin));
    EXPECT_EQ(domain.dFalseY, std::floor(domain.dYMin));
    EXPECT_EQ(domain.dScale, 1e4);
}

TEST_F(SpatialReference, KeepsSystemsApartThatAreReadInTurn) {
    const auto referenceOf = [](int lCode) {
        const OGRSpatialReference reference = systemOf(lCode);
        return host::gdal::makeSpatialReference(&reference, std::nullopt, {});
    };
    for (int lRound = 0; lRound < 2; ++lRound) {
        EXPECT_THAT(referenceOf(25832)->description(), HasSubstr("Zone          32\n"));
        EXPECT_NEAR(referenceOf(25832)->xyDomain()->dXMin, areaByHand(systemOf(25832)).dXMin, 1);
        EXPECT_THAT(referenceOf(25833)->description(), HasSubstr("Zone          33\n"));
        EXPECT_NEAR(referenceOf(4258)->xyDomain()->dXMin, areaByHand(systemOf(4258)).dXMin, 0.01);
        EXPECT_EQ(
            host::gdal::makeSpatialReference(nullptr, host::gdal::ReferenceOverride{}, {})->description(),
            "");
    }
}

TEST_F(SpatialReference, OfDegreesHasAFinerScaleAndKeepsLongitudesFirst) {
    const OGRSpatialReference reference = systemOf(4258);
    const auto domain = *host::gdal::makeSpatialReference(&reference, std::nullopt, {})->xyDomain();
    double dWest = 0;
    double dSouth = 0;
    double dEast = 0;
    double dNorth = 0;
    ASSERT_TRUE(reference.GetAreaOfUse(&dWest, &dSouth, &dEast, &dNorth, nullptr));
    EXPECT_EQ(domain.dXMin, dWest);
    EXPECT_EQ(domain.dYMin, dSouth);
    EXPECT_EQ(domain.dXMax, dEast);
    EXPECT_EQ(domain.dYMax, dNorth);
    EXPECT_EQ(domain.dScale, 1e9);
}

TEST_F(SpatialReference, OfAnAreaOfUseHasBoundsThatTheScaleCanTellApart) {
    const auto reference = openWorkspace(sCity)->openFeatureClass("roads")->spatialReference();
    const auto domain = *reference->xyDomain();
    for (const double dBound : {domain.dXMin, domain.dYMin, domain.dXMax, domain.dYMax}) {
        EXPECT_EQ(dBound, std::round(dBound * domain.dScale) / domain.dScale);
        EXPECT_NE(dBound, std::round(dBound));
    }
}

TEST_F(SpatialReference, AcrossTheAntimeridianSpansAllLongitudes) {
    OGRSpatialReference reference;
    reference.importFromEPSG(4167); // New Zealand
    const auto domain = *host::gdal::makeSpatialReference(&reference, std::nullopt, {})->xyDomain();
    EXPECT_LT(domain.dXMin, domain.dXMax);
}

TEST_F(SpatialReference, OfACompoundSystemHasTheHorizontalDomain) {
    OGRSpatialReference reference;
    reference.importFromEPSG(7405);
    const auto domain = host::gdal::makeSpatialReference(&reference, std::nullopt, {})->xyDomain();
    ASSERT_TRUE(domain.has_value());
    EXPECT_LT(domain->dXMax, 800'000);
}

TEST_F(SpatialReference, WithoutAnAreaTakesTheLayersExtent) {
    const auto pMap =
        openMap("<FeatureLayer source='city.gpkg' dataset='signs'>"
                "<SpatialReference definition='+proj=tmerc +lat_0=0.5 +lon_0=9.3 +ellps=GRS80'/>"
                "</FeatureLayer>");
    const auto domain = *layerOf(*pMap)->spatialReference()->xyDomain();
    EXPECT_EQ(domain.dXMin, 1);
    EXPECT_EQ(domain.dXMax, 3);
    EXPECT_EQ(domain.dYMin, 7);
    EXPECT_EQ(domain.dYMax, 7);
}

TEST_F(SpatialReference, HasHeightAndMeasureDomainsOnlyWhereTheShapesHaveThem) {
    const auto pFlat = openWorkspace(sCity)->openFeatureClass("roads")->spatialReference();
    EXPECT_FALSE(pFlat->zDomain().has_value());
    EXPECT_FALSE(pFlat->mDomain().has_value());
    const std::string sPoint =
        R"({"type":"Feature","properties":{"a":1},"geometry":{"type":"Point","coordinates":)";
    const std::string sPath =
        folder.write("high.geojson", R"({"type":"FeatureCollection","features":[)" + sPoint +
                                         "[1,2,-3.5]}}," + sPoint + "[1,2,12]}}]}");
    const auto pHigh = openWorkspace(sPath)->openFeatureClass("high")->spatialReference();
    const auto domain = *pHigh->zDomain();
    EXPECT_EQ(domain.dMin, -3.5);
    EXPECT_EQ(domain.dMax, 12);
    EXPECT_EQ(domain.dFalseOrigin, -4);
    EXPECT_EQ(domain.dScale, 1e4);
    EXPECT_FALSE(pHigh->mDomain().has_value());
}

TEST_F(SpatialReference, OfTheMapDocumentTakesThePlaceOfTheDatas) {
    const auto pMap =
        openMap("<FeatureLayer source='city.gpkg' dataset='roads'><SpatialReference definition='EPSG:4326'>"
                "<XYDomain xMin='-1.5' yMin='-2' xMax='3' yMax='4' falseX='-400' scale='2000'/>"
                "<ZDomain min='-1.5' max='9'/><MDomain min='0' max='5' falseOrigin='-7' scale='3'/>"
                "</SpatialReference></FeatureLayer>");
    const auto pReference = layerOf(*pMap)->featureClass()->spatialReference();
    EXPECT_THAT(pReference->description(), StartsWith("Projection    GEOGRAPHIC"));
    EXPECT_EQ(pReference->xyDomain()->dFalseX, -400);
    EXPECT_EQ(pReference->xyDomain()->dFalseY, -2);
    EXPECT_EQ(pReference->xyDomain()->dScale, 2000);
    EXPECT_EQ(pReference->zDomain()->dFalseOrigin, -1.5);
    EXPECT_EQ(pReference->zDomain()->dScale, 1e4);
    EXPECT_EQ(pReference->mDomain()->dFalseOrigin, -7);
    EXPECT_EQ(pReference->mDomain()->dScale, 3);
}

TEST_F(SpatialReference, OfTheMapDocumentMayChangeADomainAlone) {
    const auto pMap =
        openMap("<FeatureLayer source='city.gpkg' dataset='roads'><SpatialReference>"
                "<XYDomain xMin='0' yMin='0' xMax='3' yMax='4'/></SpatialReference></FeatureLayer>");
    const auto pReference = layerOf(*pMap)->spatialReference();
    EXPECT_THAT(pReference->description(), StartsWith("Projection    UTM"));
    EXPECT_EQ(pReference->xyDomain()->dXMax, 3);
    EXPECT_EQ(pReference->xyDomain()->dScale, 1e4);
}

TEST_F(SpatialReference, OfAMapIsItsOwnElseThatOfItsFirstLayerThatHasOne) {
    folder.write("plain.csv", "WKT,B\nPOINT (1 2),2\n");
    const std::string sLayers = "<FeatureLayer source='plain.csv'/><GroupLayer name='G'>"
                                "<FeatureLayer source='city.gpkg' dataset='roads'/></GroupLayer>";
    EXPECT_THAT(openMap(sLayers)->spatialReference()->description(), StartsWith("Projection    UTM"));
    EXPECT_THAT(
        openMap("<SpatialReference definition='EPSG:3857'/>" + sLayers)->spatialReference()->description(),
        HasSubstr("PSEUDO MERCATOR"));
    const auto pPartly = openMap(
        "<SpatialReference><XYDomain xMin='0' yMin='0' xMax='3' yMax='4'/></SpatialReference>" + sLayers);
    EXPECT_EQ(pPartly->spatialReference()->xyDomain()->dXMax, 3);
    EXPECT_EQ(openMap("<FeatureLayer source='plain.csv'/>")->spatialReference(), nullptr);
    EXPECT_EQ(openMap("")->spatialReference(), nullptr);
}

TEST_F(SpatialReference, DefinitionThatIsNoneIsAFailureAtItsLine) {
    EXPECT_THAT(failureOf([&] {
                    static_cast<void>(
                        openMap("<FeatureLayer source='city.gpkg' dataset='roads'>\n"
                                "<SpatialReference definition='EPSG:nowhere'/></FeatureLayer>"));
                }),
                HasSubstr("map.xml, line 2: \"EPSG:nowhere\""));
}

TEST_F(SpatialReference, DefinitionNeverNamesAFileOrAnAddress) {
    const std::string sFile = folder.write("x.prj", "EPSG:4326");
    for (const std::string& sDefinition : {sFile, std::string("http://127.0.0.1/x.prj")}) {
        EXPECT_THAT(failureOf([&] {
                        static_cast<void>(openMap("<SpatialReference definition='" + sDefinition + "'/>"));
                    }),
                    HasSubstr("is not a spatial reference"));
    }
}

} // namespace
} // namespace halvane::tests
