#include "SampleData.h"

#include "host/gdal/Drivers.h"
#include "host/gdal/Layers.h"

#include <cpl_string.h>
#include <gdal_priv.h>
#include <gmock/gmock.h>

#include <filesystem>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::string> layerNames(const host::GisMap& map) {
    std::vector<std::string> all;
    for (std::int32_t lIndex = 0; lIndex < map.layerCount(); ++lIndex) {
        const host::GisLayerPtr pLayer = map.layer(lIndex);
        const bool bRaster = std::dynamic_pointer_cast<host::GisRasterLayer>(pLayer) != nullptr;
        all.push_back((bRaster ? "raster " : "") + pLayer->name());
    }
    return all;
}

std::vector<std::string> tableNames(const host::GisMap& map) {
    std::vector<std::string> all;
    for (std::int32_t lIndex = 0; lIndex < map.standaloneTableCount(); ++lIndex) {
        all.push_back(map.standaloneTable(lIndex)->datasetName());
    }
    return all;
}

host::GisMapPtr mapOf(const std::string& sPath) {
    return host::gdal::GdalHost::create()->openMapDocument(sPath)->focusMap();
}

TEST(PlainMap, OfADatabaseHasItsFeatureClassesAsLayersAndItsTablesAsTables) {
    const TemporaryFolder folder;
    const auto pMap = mapOf(makeCity(folder));
    EXPECT_EQ(pMap->name(), "city");
    EXPECT_THAT(layerNames(*pMap), ElementsAre("roads", "signs"));
    EXPECT_THAT(tableNames(*pMap), ElementsAre("notes"));
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0));
    ASSERT_NE(pLayer, nullptr);
    EXPECT_EQ(pLayer->featureClass()->featureCount(), 5);
    EXPECT_EQ(pLayer->asTable()->datasetName(), "roads");
    EXPECT_EQ(pLayer->selectionCount(), 0);
}

TEST(PlainMap, OfAFolderOpensItsFilesAsItsLayersAreLookedFor) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder, "a.gpkg");
    convertLayer(sCity, "roads", folder.file("b.shp"), "ESRI Shapefile");
    convertLayer(sCity, "notes", folder.file("c.csv"), "CSV");
    const std::string sLast = convertLayer(sCity, "signs", folder.file("d.geojson"), "GeoJSON");
    const auto pMap = mapOf(folder.path());
    EXPECT_EQ(pMap->layersFoundFor(1), 2);
    EXPECT_EQ(pMap->layersFoundFor(2), 3);
    EXPECT_EQ(pMap->layer(2)->name(), "b");
    EXPECT_EQ(pMap->standaloneTablesFoundFor(0), 1);
    EXPECT_EQ(pMap->standaloneTablesFoundFor(1), 2);
    EXPECT_EQ(pMap->standaloneTable(1)->datasetName(), "c");
    std::filesystem::remove(sLast); // nobody has opened it yet
    EXPECT_EQ(pMap->layersFoundFor(3), 3);
    EXPECT_EQ(pMap->layerCount(), 3);
    EXPECT_EQ(pMap->standaloneTableCount(), 2);
}

TEST(PlainMap, IsTheOnlyMapOfItsDocument) {
    const TemporaryFolder folder;
    const auto pDocument = host::gdal::GdalHost::create()->openMapDocument(makeCity(folder));
    EXPECT_EQ(pDocument->mapCount(), 1);
    EXPECT_EQ(pDocument->map(0), pDocument->focusMap());
    EXPECT_NE(failureOf([&] { static_cast<void>(pDocument->map(1)); }), "");
}

TEST(PlainMap, OfAFolderHasTheDatasetsOfItsFilesInTheOrderOfTheirNames) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder, "z.gpkg");
    convertLayer(sCity, "roads", folder.file("m.shp"), "ESRI Shapefile");
    makeRaster(folder, "b.tif", "GTiff");
    folder.write("a.csv", "A,B\n1,2\n");
    folder.write("notes.txt", "no data");
    const auto pMap = mapOf(folder.path());
    EXPECT_THAT(layerNames(*pMap), ElementsAre("raster b", "m", "roads", "signs"));
    EXPECT_THAT(tableNames(*pMap), ElementsAre("a", "notes"));
}

TEST(PlainMap, OfARasterHasOneLayerWithTheRastersPath) {
    const TemporaryFolder folder;
    const std::string sPath = makeRaster(folder, "dem.tif", "GTiff");
    const auto pMap = mapOf(sPath);
    const auto pLayer = std::dynamic_pointer_cast<host::GisRasterLayer>(pMap->layer(0));
    ASSERT_NE(pLayer, nullptr);
    EXPECT_EQ(pLayer->name(), "dem");
    EXPECT_EQ(pLayer->filePath(), sPath);
}

// A GeoPackage of rasters, each in a system of its own.
std::string makeRasters(const TemporaryFolder& folder, std::string_view sFile,
                        const std::vector<std::pair<std::string, int>>& rasters) {
    host::gdal::prepareLibrary();
    const TemporaryFolder from;
    const std::string sPath = folder.file(sFile);
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
    for (const auto& [sName, lSystem] : rasters) {
        const GDALDatasetUniquePtr pTiff(GDALDataset::Open(makeRaster(from, "cells.tif", "GTiff").c_str(),
                                                           GDAL_OF_RASTER | GDAL_OF_UPDATE));
        OGRSpatialReference reference;
        reference.importFromEPSG(lSystem);
        pTiff->SetSpatialRef(&reference);
        CPLStringList options;
        options.SetNameValue("APPEND_SUBDATASET", std::filesystem::exists(sPath) ? "YES" : "NO");
        options.SetNameValue("RASTER_TABLE", sName.c_str());
        const GDALDatasetUniquePtr pCopy(
            pDriver->CreateCopy(sPath.c_str(), pTiff.get(), 0, options.List(), nullptr, nullptr));
        EXPECT_NE(pCopy, nullptr);
    }
    return sPath;
}

std::string zoneOf(const host::GisMap& map, std::int32_t lLayer) {
    const auto pLayer = std::dynamic_pointer_cast<host::gdal::GdalRasterLayer>(map.layer(lLayer));
    const auto pReference = pLayer->spatialReference(std::nullopt);
    const std::string sDescription = pReference == nullptr ? "none" : pReference->description();
    const std::size_t lZone = sDescription.find("Zone");
    return lZone == std::string::npos
               ? sDescription
               : sDescription.substr(lZone, sDescription.find_first_of("\r\n", lZone) - lZone);
}

TEST(PlainMap, OfADatabaseOfRastersAloneHasThemByTheirNamesWithTheirReferences) {
    const TemporaryFolder folder;
    const std::string sPath = makeRasters(folder, "two.gpkg", {{"first", 25832}, {"the second", 32633}});
    for (const std::string& sMap : {sPath, folder.path()}) {
        const auto pMap = mapOf(sMap);
        ASSERT_THAT(layerNames(*pMap), ElementsAre("raster first", "raster the second"));
        EXPECT_EQ(zoneOf(*pMap, 0), "Zone          32");
        EXPECT_EQ(zoneOf(*pMap, 1), "Zone          33");
        EXPECT_EQ(std::dynamic_pointer_cast<host::GisRasterLayer>(pMap->layer(1))->filePath(), sPath);
    }
}

TEST(PlainMap, OfADatabaseOfOneRasterHasItByItsName) {
    const TemporaryFolder folder;
    const auto pMap = mapOf(makeRasters(folder, "a b:c.gpkg", {{"heights: all", 25832}}));
    ASSERT_THAT(layerNames(*pMap), ElementsAre("raster heights: all"));
    EXPECT_EQ(zoneOf(*pMap, 0), "Zone          32");
}

TEST(PlainMap, OfADatabaseHasARasterThatIsBrokenToo) {
    const TemporaryFolder folder;
    const std::string sPath = makeRasters(folder, "two.gpkg", {{"first", 25832}, {"second", 32633}});
    runSql(sPath, {"DELETE FROM gpkg_tile_matrix_set WHERE table_name = 'first'"});
    const auto pMap = mapOf(sPath);
    ASSERT_THAT(layerNames(*pMap), ElementsAre("raster first", "raster second"));
    EXPECT_EQ(zoneOf(*pMap, 1), "Zone          33");
    EXPECT_THAT(failureOf([&] { zoneOf(*pMap, 0); }), HasSubstr("two.gpkg"));
}

TEST(RasterLayers, OfADatabaseWithSeveralRastersNameTheirs) {
    const TemporaryFolder folder;
    makeRasters(folder, "two.gpkg", {{"first", 25832}, {"second", 32633}});
    const auto pMap = mapOf(folder.write("map.xml", "<MapDocument><Map name='M'>\n"
                                                    "<RasterLayer source='two.gpkg' dataset='second'/>\n"
                                                    "<RasterLayer source='two.gpkg'/></Map></MapDocument>"));
    EXPECT_EQ(zoneOf(*pMap, 0), "Zone          33");
    EXPECT_THAT(failureOf([&] { zoneOf(*pMap, 1); }),
                HasSubstr("map.xml, line 3: \"" + folder.file("two.gpkg") +
                          "\" holds 2 rasters; say which one with dataset=\"...\""));
}

TEST(PlainMap, OfAFileWithoutDataIsAFailure) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write("notes.txt", "no data");
    EXPECT_THAT(failureOf([&] { mapOf(sPath); }), HasSubstr("notes.txt"));
    EXPECT_THAT(failureOf([&] { mapOf(folder.path()); }), HasSubstr(folder.path()));
    EXPECT_THAT(failureOf([&] { mapOf(folder.file("none")); }), HasSubstr("none"));
}

TEST(ShapeType, IsThatOfTheGeometries) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(makeCity(folder));
    EXPECT_EQ(pWorkspace->openFeatureClass("roads")->shapeType(), 3);
    EXPECT_EQ(pWorkspace->openFeatureClass("signs")->shapeType(), 1);
    EXPECT_EQ(openWorkspace(makeTin(folder, "tin.gpkg", "ground"))->openFeatureClass("ground")->shapeType(),
              4);
}

TEST(ShapeType, IsFoundFromTheFeaturesWhereTheFormatDeclaresNone) {
    const TemporaryFolder folder;
    const auto feature = [](const std::string& sType, const std::string& sCoordinates) {
        return R"({"type":"Feature","properties":{"a":1},"geometry":{"type":")" + sType +
               R"(","coordinates":)" + sCoordinates + "}}";
    };
    const std::string sOpen = R"({"type":"FeatureCollection","features":[)";
    const std::string sLines =
        feature("LineString", "[[0,0],[1,1]]") + "," + feature("MultiLineString", "[[[0,0],[1,1]]]");
    folder.write("lines.geojson", sOpen + sLines + "]}");
    folder.write("mixed.geojson", sOpen + sLines + "," + feature("Point", "[1,2]") + "]}");
    EXPECT_EQ(openWorkspace(folder.path())->openFeatureClass("lines")->shapeType(), 3);
    EXPECT_EQ(openWorkspace(folder.path())->openFeatureClass("mixed")->shapeType(), 0);
}

} // namespace
} // namespace halvane::tests
