#include "AreaByHand.h"
#include "SampleData.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"

#include "host/gdal/facts/SpatialReference.h"
#include "host/gdal/source/Drivers.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace halvane::tests {
namespace {

using host::XyDomain;

std::optional<XyDomain> domainOf(const std::string& sDefinition, host::gdal::LayerExtents extents = {}) {
    const OGRSpatialReference reference = systemOf(sDefinition);
    return host::gdal::makeSpatialReference(&reference, std::nullopt, std::move(extents))->xyDomain();
}

const std::string sPoint =
    R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{"a":1},)"
    R"("geometry":{"type":"Point","coordinates":[8,50]}}]})";

struct ReferenceFormat {
    const char* pDriver;
    const char* pFile;
};

std::string nameOf(const ::testing::TestParamInfo<ReferenceFormat>& info) {
    std::string sName = info.param.pDriver;
    std::erase_if(sName, [](char cOne) { return std::isalnum(static_cast<unsigned char>(cOne)) == 0; });
    return sName;
}

class ReferenceDomainOf : public ::testing::TestWithParam<ReferenceFormat> {};
INSTANTIATE_TEST_SUITE_P(
    Formats, ReferenceDomainOf,
    ::testing::Values(ReferenceFormat{"GPKG", "point.gpkg"}, ReferenceFormat{"ESRI Shapefile", "point.shp"},
                      ReferenceFormat{"GeoJSON", "point.geojson"}, ReferenceFormat{"KML", "point.kml"},
                      ReferenceFormat{"MapInfo File", "point.tab"}, ReferenceFormat{"SQLite", "point.sqlite"},
                      ReferenceFormat{"FlatGeobuf", "point.fgb"}, ReferenceFormat{"OpenFileGDB", "point.gdb"},
                      ReferenceFormat{"GML", "point.gml"}),
    nameOf);

TEST_P(ReferenceDomainOf, OneSystemIsTheSameInEveryFormat) {
    const TemporaryFolder folder;
    const TemporaryFolder from;
    const std::string sPath =
        convert(from.write("point.geojson", sPoint), folder.file(GetParam().pFile), GetParam().pDriver);
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(
        host::gdal::GdalHost::create()->openMapDocument(sPath)->focusMap()->layer(0));
    const auto domain = *pLayer->spatialReference()->xyDomain();
    EXPECT_EQ(domain.dXMin, -180);
    EXPECT_EQ(domain.dXMax, 180);
    EXPECT_EQ(domain.dYMin, -90);
    EXPECT_EQ(domain.dYMax, 90);
}

TEST(ReferenceDomain, OfAProjectedSystemIsTheSameFromAShapefileAndATab) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    for (const ReferenceFormat& format :
         {ReferenceFormat{"ESRI Shapefile", "u.shp"}, ReferenceFormat{"MapInfo File", "u.tab"}}) {
        const TemporaryFolder to;
        const std::string sPath = convertLayer(sCity, "signs", to.file(format.pFile), format.pDriver);
        const auto domain = *openWorkspace(sPath)->openFeatureClass("u")->spatialReference()->xyDomain();
        const XyDomain expected = areaByHand(systemOf("EPSG:25832"));
        EXPECT_NEAR(domain.dXMin, expected.dXMin, 1) << format.pDriver;
        EXPECT_NEAR(domain.dYMax, expected.dYMax, 1) << format.pDriver;
    }
}

TEST(ReferenceDomain, OfAPolarSystemReachesAsFarAsItsAreaOfUse) {
    for (const int lCode : {3031, 3571, 6931, 3413, 3576, 32661, 5041, 9354, 3995, 3573}) {
        const std::string sCode = "EPSG:" + std::to_string(lCode);
        const XyDomain expected = areaByHand(systemOf(sCode));
        const auto domain = domainOf(sCode);
        ASSERT_TRUE(domain.has_value()) << sCode;
        EXPECT_NEAR(domain->dXMin, expected.dXMin, 1) << sCode;
        EXPECT_NEAR(domain->dYMin, expected.dYMin, 1) << sCode;
        EXPECT_NEAR(domain->dXMax, expected.dXMax, 1) << sCode;
        EXPECT_NEAR(domain->dYMax, expected.dYMax, 1) << sCode;
    }
    EXPECT_NEAR(domainOf("EPSG:3031")->dXMax, 3'333'134, 1);
}

TEST(ReferenceDomain, OfASystemThatIsNotOfAMapIsTheLayersExtent) {
    host::gdal::LayerExtents extents;
    extents.xy = [] { return XyDomain{1.5, 2, 3, 4, 0, 0, 0}; };
    for (const char* pCode : {"EPSG:4978", "EPSG:5773", "EPSG:5621", "EPSG:8357"}) {
        const auto domain = domainOf(pCode, extents);
        ASSERT_TRUE(domain.has_value()) << pCode;
        EXPECT_EQ(domain->dXMin, 1.5) << pCode;
        EXPECT_EQ(domain->dYMax, 4) << pCode;
        EXPECT_FALSE(domainOf(pCode).has_value()) << pCode;
    }
}

TEST(ReferenceDomain, OfAnyCompoundSystemIsThatOfItsHorizontalPart) {
    for (const auto& [pCompound, pHorizontal] :
         {std::pair{"EPSG:4326+5773", "EPSG:4326"}, std::pair{"EPSG:25832+5783", "EPSG:25832"},
          std::pair{"EPSG:4326+3855", "EPSG:4326"}}) {
        const auto domain = domainOf(pCompound);
        const auto expected = domainOf(pHorizontal);
        ASSERT_TRUE(domain.has_value()) << pCompound;
        EXPECT_EQ(domain->dXMin, expected->dXMin) << pCompound;
        EXPECT_EQ(domain->dYMin, expected->dYMin) << pCompound;
        EXPECT_EQ(domain->dXMax, expected->dXMax) << pCompound;
        EXPECT_EQ(domain->dYMax, expected->dYMax) << pCompound;
        EXPECT_EQ(domain->dScale, expected->dScale) << pCompound;
    }
}

class UndefinedSystemOfGeoPackage : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Numbers, UndefinedSystemOfGeoPackage, ::testing::Values(0, -1));

TEST_P(UndefinedSystemOfGeoPackage, IsNone) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const std::string sNumber = std::to_string(GetParam());
    runSql(sCity, {"UPDATE gpkg_geometry_columns SET srs_id = " + sNumber + " WHERE table_name = 'roads'",
                   "UPDATE gpkg_contents SET srs_id = " + sNumber + " WHERE table_name = 'roads'"});
    const auto pWorkspace = openWorkspace(sCity);
    EXPECT_EQ(pWorkspace->openFeatureClass("roads")->spatialReference(), nullptr);
    EXPECT_NE(pWorkspace->openFeatureClass("signs")->spatialReference(), nullptr);
}

// Points with heights and measures: "a" low and near, "b" high and far; and a layer without any.
std::string makeHeights(const TemporaryFolder& folder) {
    const std::string sPath = folder.file("heights.gpkg");
    host::gdal::prepareLibrary();
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
    const GDALDatasetUniquePtr pDataset(pDriver->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRSpatialReference reference;
    reference.importFromProj4("+proj=tmerc +lat_0=0.5 +lon_0=9.3 +ellps=GRS80");
    for (const char* pName : {"peaks", "none"}) {
        OGRLayer& layer = *pDataset->CreateLayer(pName, &reference, wkbPointZM, nullptr);
        OGRFieldDefn field("KIND", OFTString);
        EXPECT_EQ(layer.CreateField(&field), OGRERR_NONE);
        if (std::string_view(pName) == "none")
            continue;
        for (const auto& [pKind, dValue] : {std::pair{"a", 2.0}, {"a", 3.5}, {"b", 100.0}}) {
            const OGRFeatureUniquePtr pFeature(OGRFeature::CreateFeature(layer.GetLayerDefn()));
            pFeature->SetField("KIND", pKind);
            const OGRPoint point(dValue, 10 * dValue, dValue, -dValue);
            pFeature->SetGeometry(&point);
            EXPECT_EQ(layer.CreateFeature(pFeature.get()), OGRERR_NONE);
        }
    }
    return sPath;
}

TEST(ReferenceDomain, OfAFilteredLayerIsThatOfTheFeaturesItHas) {
    const TemporaryFolder folder;
    makeHeights(folder);
    const auto pMap =
        host::gdal::GdalHost::create()
            ->openMapDocument(
                folder.write("map.xml", "<MapDocument><Map name='M'>"
                                        "<FeatureLayer source='heights.gpkg' dataset='peaks' filter=\"KIND = "
                                        "'a'\"/><FeatureLayer source='heights.gpkg' dataset='peaks'/>"
                                        "</Map></MapDocument>"))
            ->focusMap();
    const auto referenceOf = [&](std::int32_t lLayer) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(lLayer))->spatialReference();
    };
    EXPECT_EQ(referenceOf(0)->zDomain()->dMin, 2);
    EXPECT_EQ(referenceOf(0)->zDomain()->dMax, 3.5);
    EXPECT_EQ(referenceOf(0)->mDomain()->dMin, -3.5);
    EXPECT_EQ(referenceOf(0)->mDomain()->dMax, -2);
    EXPECT_EQ(referenceOf(0)->xyDomain()->dXMax, 3.5);
    EXPECT_EQ(referenceOf(0)->xyDomain()->dYMin, 20);
    EXPECT_EQ(referenceOf(1)->zDomain()->dMax, 100);
    EXPECT_EQ(referenceOf(1)->mDomain()->dMin, -100);
    EXPECT_EQ(referenceOf(1)->xyDomain()->dYMax, 1000);
}

TEST(ReferenceDomain, OfALayerWithoutFeaturesHasNoHeightsAndNoMeasures) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(makeHeights(folder));
    const auto pReference = pWorkspace->openFeatureClass("none")->spatialReference();
    ASSERT_NE(pReference, nullptr);
    EXPECT_FALSE(pReference->zDomain().has_value());
    EXPECT_FALSE(pReference->mDomain().has_value());
    EXPECT_TRUE(pWorkspace->openFeatureClass("peaks")->spatialReference()->zDomain().has_value());
}

// A file database whose grid has false origins and scales of its own.
std::string makeGrid(const TemporaryFolder& folder) {
    const std::string sPath = folder.file("grid.gdb");
    host::gdal::prepareLibrary();
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("OpenFileGDB");
    const GDALDatasetUniquePtr pDataset(pDriver->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRSpatialReference reference;
    reference.importFromEPSG(25832);
    CPLStringList options;
    for (const char* pOption : {"XORIGIN=-1000", "YORIGIN=-2000", "XYSCALE=500", "ZORIGIN=-100", "ZSCALE=250",
                                "MORIGIN=-7", "MSCALE=125"}) {
        options.AddString(pOption);
    }
    OGRLayer& layer = *pDataset->CreateLayer("peaks", &reference, wkbPointZM, options.List());
    const OGRFeatureUniquePtr pFeature(OGRFeature::CreateFeature(layer.GetLayerDefn()));
    const OGRPoint point(1, 2, 3, 4);
    pFeature->SetGeometry(&point);
    EXPECT_EQ(layer.CreateFeature(pFeature.get()), OGRERR_NONE);
    return sPath;
}

TEST(ReferenceGrid, OfAFileDatabaseIsTheFormatsOwn) {
    const TemporaryFolder folder;
    const auto pReference = openWorkspace(makeGrid(folder))->openFeatureClass("peaks")->spatialReference();
    EXPECT_EQ(pReference->xyDomain()->dFalseX, -1000);
    EXPECT_EQ(pReference->xyDomain()->dFalseY, -2000);
    EXPECT_EQ(pReference->xyDomain()->dScale, 500);
    EXPECT_NEAR(pReference->xyDomain()->dXMin, areaByHand(systemOf("EPSG:25832")).dXMin, 1);
    EXPECT_EQ(pReference->zDomain()->dFalseOrigin, -100);
    EXPECT_EQ(pReference->zDomain()->dScale, 250);
    EXPECT_EQ(pReference->zDomain()->dMin, 3);
    EXPECT_EQ(pReference->mDomain()->dFalseOrigin, -7);
    EXPECT_EQ(pReference->mDomain()->dScale, 125);
}

TEST(ReferenceGrid, OfTheFormatComesBeforeTheMapDocumentsUnlessThatStatesAnotherSystem) {
    const TemporaryFolder folder;
    makeGrid(folder);
    const auto referenceWith = [&](const std::string& sDefinition) {
        const auto pMap = host::gdal::GdalHost::create()
                              ->openMapDocument(folder.write(
                                  "map.xml", "<MapDocument><Map name='M'><FeatureLayer source='grid.gdb'>"
                                             "<SpatialReference" +
                                                 sDefinition +
                                                 "><XYDomain xMin='0' yMin='0' xMax='3' yMax='4' falseX='-5' "
                                                 "scale='9'/></SpatialReference></FeatureLayer></Map>"
                                                 "</MapDocument>"))
                              ->focusMap();
        return *std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0))
                    ->spatialReference()
                    ->xyDomain();
    };
    EXPECT_EQ(referenceWith("").dXMax, 3);
    EXPECT_EQ(referenceWith("").dFalseX, -1000);
    EXPECT_EQ(referenceWith("").dScale, 500);
    EXPECT_EQ(referenceWith(" definition='EPSG:4326'").dFalseX, -5);
    EXPECT_EQ(referenceWith(" definition='EPSG:4326'").dScale, 9);
}

TEST(ReferenceOfAMap, IsThatOfItsFirstLayerAlsoWhenThatIsARaster) {
    const TemporaryFolder folder;
    makeCity(folder);
    {
        const GDALDatasetUniquePtr pRaster(
            GDALDataset::Open(makeRaster(folder, "r.tif", "GTiff").c_str(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
        OGRSpatialReference reference;
        reference.importFromEPSG(25833);
        ASSERT_EQ(pRaster->SetSpatialRef(&reference), CE_None);
    }
    makeRaster(folder, "plain.tif", "GTiff");
    const auto descriptionOf = [&](const std::string& sLayers) {
        return host::gdal::GdalHost::create()
            ->openMapDocument(
                folder.write("map.xml", "<MapDocument><Map name='M'>" + sLayers + "</Map></MapDocument>"))
            ->focusMap()
            ->spatialReference()
            ->description();
    };
    const std::string sRoads = "<FeatureLayer source='city.gpkg' dataset='roads'/>";
    EXPECT_THAT(
        descriptionOf("<GroupLayer name='G'><RasterLayer name='R' source='r.tif'/></GroupLayer>" + sRoads),
        ::testing::HasSubstr("Zone          33\n"));
    EXPECT_THAT(descriptionOf("<RasterLayer name='R' source='plain.tif'/>" + sRoads),
                ::testing::HasSubstr("Zone          32\n"));
    EXPECT_THAT(descriptionOf("<RasterLayer name='R' source='gone.tif'/>" + sRoads),
                ::testing::HasSubstr("Zone          32\n"));
}

TEST(ReferenceOfAMap, IsThatOfItsFirstLayerAlsoWhenThatIsATin) {
    const TemporaryFolder folder;
    makeCity(folder);
    const std::string sTin = makeTin(folder, "tin.gpkg", "surface");
    runSql(sTin,
           {"INSERT INTO gpkg_spatial_ref_sys (srs_name, srs_id, organization, organization_coordsys_id, "
            "definition) VALUES ('u', 25833, 'EPSG', 25833, 'undefined')",
            "UPDATE gpkg_geometry_columns SET srs_id = 25833", "UPDATE gpkg_contents SET srs_id = 25833"});
    const auto pMap =
        host::gdal::GdalHost::create()
            ->openMapDocument(folder.write(
                "map.xml",
                "<MapDocument><Map name='M'><TinLayer name='T' source='tin.gpkg' dataset='surface'/>"
                "<FeatureLayer source='city.gpkg' dataset='roads'/></Map></MapDocument>"))
            ->focusMap();
    ASSERT_NE(pMap->spatialReference(), nullptr);
    EXPECT_THAT(pMap->spatialReference()->description(), ::testing::HasSubstr("Zone          33\n"));
}

TEST(ReferenceOfAMap, DefinedByItselfWithoutAnAreaOfUseHasNoDomains) {
    const TemporaryFolder folder;
    makeCity(folder);
    const auto pMap =
        host::gdal::GdalHost::create()
            ->openMapDocument(folder.write(
                "map.xml", "<MapDocument><Map name='M'>"
                           "<SpatialReference definition='+proj=tmerc +lat_0=0.5 +lon_0=9.3 +ellps=GRS80'/>"
                           "<FeatureLayer source='city.gpkg' dataset='roads'/></Map></MapDocument>"))
            ->focusMap();
    EXPECT_FALSE(pMap->spatialReference()->xyDomain().has_value());
    EXPECT_FALSE(pMap->spatialReference()->zDomain().has_value());
    EXPECT_FALSE(pMap->spatialReference()->mDomain().has_value());
}

} // namespace
} // namespace halvane::tests
