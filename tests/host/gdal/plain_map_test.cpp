#include "SampleData.h"

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
