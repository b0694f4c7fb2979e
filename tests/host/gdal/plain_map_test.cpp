#include "SampleData.h"
#include "host/Explanations.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"

#include "host/gdal/objects/Layers.h"
#include "host/gdal/source/Drivers.h"

#include <cpl_string.h>
#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace halvane::tests {
namespace {

using ::testing::AllOf;
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
    for (std::int32_t lIndex = 0; lIndex < map.standaloneTableCount(); ++lIndex)
        all.push_back(map.standaloneTable(lIndex)->datasetName());
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
    const std::size_t nZone = sDescription.find("Zone");
    return nZone == std::string::npos
               ? sDescription
               : sDescription.substr(nZone, sDescription.find_first_of("\r\n", nZone) - nZone);
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

TEST(Workspaces, OfADatabaseOfRastersAloneHaveItsDomainsAndNoTables) {
    const TemporaryFolder folder;
    const std::string sPath = makeRasters(folder, "one.gpkg", {{"first", 25832}});
    runSql(sPath,
           {"CREATE TABLE gpkg_data_column_constraints (constraint_name TEXT NOT NULL, constraint_type "
            "TEXT NOT NULL, value TEXT, min NUMERIC, min_is_inclusive BOOLEAN, max NUMERIC, "
            "max_is_inclusive BOOLEAN, description TEXT)",
            "INSERT INTO gpkg_data_column_constraints VALUES ('Kind', 'enum', 'a', NULL, NULL, NULL, "
            "NULL, 'A')"});
    const auto pWorkspace = openWorkspace(sPath);
    ASSERT_NE(pWorkspace, nullptr);
    EXPECT_EQ(pWorkspace->pathName(), sPath);
    EXPECT_EQ(pWorkspace->typeCode(), 1);
    const auto pDomains = pWorkspace->domainsRole()->domains();
    const auto pDomain = pDomains->next();
    ASSERT_NE(pDomain, nullptr);
    EXPECT_EQ(pDomain->name(), "Kind");
    EXPECT_EQ(pWorkspace->relationshipClasses()->next(), nullptr);
    EXPECT_THAT(failureOf([&] { static_cast<void>(pWorkspace->openTable("first")); }),
                HasSubstr("has no dataset \"first\""));
}

TEST(Rasters, ThatAFileDoesNotHoldAreToldWithThoseThatItHolds) {
    const TemporaryFolder folder;
    makeRasters(folder, "two.gpkg", {{"first", 25832}, {"second", 32633}});
    makeRaster(folder, "dem.tif", "GTiff");
    const auto pMap = mapOf(folder.write("map.xml", "<MapDocument><Map name='M'>"
                                                    "<RasterLayer source='two.gpkg' dataset='SECOND'/>"
                                                    "<RasterLayer source='two.gpkg' dataset='frst'/>"
                                                    "<RasterLayer source='dem.tif' dataset='x'/>"
                                                    "</Map></MapDocument>"));
    const auto pathOf = [&](std::int32_t lLayer) {
        return std::dynamic_pointer_cast<host::GisRasterLayer>(pMap->layer(lLayer))->filePath();
    };
    EXPECT_EQ(pathOf(0), folder.file("two.gpkg"));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pathOf(1)); }),
                HasSubstr("has no raster \"frst\"; did you mean \"first\"?"));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pathOf(2)); }),
                HasSubstr("dem.tif\" has no raster \"x\"; it has only the raster \"dem\""));
}

TEST(PlainMap, OfADatabaseOfRastersMayHaveQuotesAndBackslashesInItsNames) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.file(R"(an "odd" folder)"));
    makeRasters(folder, "plain.gpkg", {{"plain", 25832}, {R"(a "b" \c\)", 32633}});
    std::filesystem::rename(folder.file("plain.gpkg"), folder.file(R"(an "odd" folder/a"b\.gpkg)"));
    const auto pMap = mapOf(folder.file(R"(an "odd" folder)"));
    ASSERT_THAT(layerNames(*pMap), ElementsAre("raster plain", R"(raster a "b" \c\)"));
    EXPECT_EQ(zoneOf(*pMap, 0), "Zone          32");
    EXPECT_EQ(zoneOf(*pMap, 1), "Zone          33");
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

// What begins like a database and is none.
std::string writeBrokenDatabase(const TemporaryFolder& folder, std::string_view sName) {
    using namespace std::string_literals;
    return folder.write(sName, "SQLite format 3\0"s + std::string(200, 'x'));
}

std::string writeDrawing(const TemporaryFolder& folder, std::string_view sName, int lPoints) {
    std::string sText = "0\nSECTION\n2\nENTITIES\n";
    for (int lPoint = 0; lPoint < lPoints; ++lPoint)
        sText += "0\nPOINT\n8\n0\n10\n1.0\n20\n2.0\n";
    return folder.write(sName, sText + "0\nENDSEC\n0\nEOF\n");
}

std::int64_t featureCount(const host::GisLayerPtr& pLayer) {
    return std::dynamic_pointer_cast<host::GisFeatureLayer>(pLayer)->featureClass()->featureCount();
}

const host::TableProblems& problemsOf(const host::GisMapPtr& pMap) {
    return dynamic_cast<const host::TableProblems&>(*pMap);
}

TEST(PlainMap, OfAFolderListsBrokenFilesWhichFailWhereTheyAreReached) {
    const TemporaryFolder folder;
    makeCity(folder, "city.gpkg");
    writeBrokenDatabase(folder, "a.gpkg");
    folder.write("b.tif", "no picture");
    folder.write("c.kml", R"(<kml xmlns="http://www.opengis.net/kml/2.2"><Document>)");
    folder.write("d.xlsx", "no sheets");
    folder.write("settings.json", R"({"a": 1})"); // no data, and not said to be
    folder.write("read.me", "no data");
    const auto pHost = host::gdal::GdalHost::create();
    const auto pDocument = pHost->openMapDocument(folder.path());
    const auto pMap = pDocument->focusMap();
    EXPECT_THAT(layerNames(*pMap), ElementsAre("a", "raster b", "c", "roads", "signs"));
    const auto failureOfLayer = [&](std::int32_t lIndex) {
        return failureOf([&] {
            static_cast<void>(
                std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(lIndex))->featureClass());
        });
    };
    EXPECT_EQ(failureOfLayer(0), "\"" + folder.file("a.gpkg") +
                                     "\" cannot be read by the driver \"GPKG\": file is not a database");
    EXPECT_THAT(failureOfLayer(2), AllOf(HasSubstr(folder.file("c.kml")), HasSubstr("\"LIBKML\""),
                                         HasSubstr("no element found")));
    EXPECT_EQ(featureCount(pMap->layer(3)), 5);
    const std::string sRaster =
        "\"" + folder.file("b.tif") +
        "\" cannot be read by the driver \"GTiff\": its contents are not of this format";
    EXPECT_EQ(failureOf([&] {
                  static_cast<void>(
                      std::dynamic_pointer_cast<host::GisRasterLayer>(pMap->layer(1))->filePath());
              }),
              sRaster);
    ASSERT_EQ(pMap->standaloneTableCount(), 2);
    EXPECT_EQ(pMap->standaloneTable(1), nullptr);
    const std::string sTable =
        "\"" + folder.file("d.xlsx") +
        "\" cannot be read by the driver \"XLSX\": its contents are not of this format";
    EXPECT_EQ(problemsOf(pMap).standaloneTableProblem(1), sTable);
    EXPECT_EQ(failureOf([&] { problemsOf(pMap).requireReadableTable("D"); }), sTable);
    EXPECT_EQ(failureOf([&] { problemsOf(pMap).requireReadableTable("notes"); }), "");
    EXPECT_THAT(pHost->problems(pDocument),
                ElementsAre(HasSubstr("layer \"a\": "), "layer \"b\": " + sRaster, HasSubstr("layer \"c\": "),
                            "table \"d\": " + sTable));
}

TEST(PlainMap, OfAFolderListsLinksThatLeadToNothing) {
    const TemporaryFolder folder;
    makeCity(folder, "city.gpkg");
    for (const char* pName : {"a.gpkg", "b.csv", "c.tif", "read.me", "out.xml"})
        std::filesystem::create_symlink("gone", folder.file(pName));
    const auto pMap = mapOf(folder.path());
    EXPECT_THAT(layerNames(*pMap), ElementsAre("a", "raster c", "roads", "signs"));
    EXPECT_EQ(pMap->standaloneTableCount(), 2);
    const auto missing = [&](const char* pName) {
        return "There is no file or folder \"" + folder.file(pName) + "\" (the link leads to nothing)";
    };
    EXPECT_EQ(failureOf([&] {
                  static_cast<void>(
                      std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0))->featureClass());
              }),
              missing("a.gpkg"));
    EXPECT_EQ(failureOf([&] { problemsOf(pMap).requireReadableTable("b"); }), missing("b.csv"));
    EXPECT_EQ(failureOf([&] {
                  static_cast<void>(
                      std::dynamic_pointer_cast<host::GisRasterLayer>(pMap->layer(1))->filePath());
              }),
              missing("c.tif"));
}

TEST(PlainMap, OfABrokenFileFailsWithTheDriversReason) {
    const TemporaryFolder folder;
    const std::string sBroken = writeBrokenDatabase(folder, "a.gpkg");
    const std::string sReason =
        "\"" + sBroken + "\" cannot be read by the driver \"GPKG\": file is not a database";
    EXPECT_EQ(failureOf([&] { mapOf(sBroken); }), sReason);
    EXPECT_EQ(failureOf([&] { openWorkspace(sBroken); }), sReason);
    EXPECT_EQ(failureOf([&] { static_cast<void>(openWorkspace(folder.path())->openTable("A")); }), sReason);
    const std::string sEmpty = folder.write("b.shp", "");
    EXPECT_EQ(failureOf([&] { mapOf(sEmpty); }),
              "\"" + sEmpty + "\" cannot be read by the driver \"ESRI Shapefile\": the file is empty");
    EXPECT_THAT(failureOf([&] { mapOf(folder.write("c.png", "no picture")); }), HasSubstr("\"PNG\""));
}

TEST(PlainMap, OfAnAccessFileWithoutAConnectorSaysWhatMayBeMissing) {
    const TemporaryFolder folder;
    EXPECT_THAT(failureOf([&] { mapOf(folder.write("old.mdb", "no database")); }),
                AllOf(HasSubstr("old.mdb"), HasSubstr("may lack the ODBC connector")));
}

TEST(PlainMap, OfACsvFileOfOneColumnIsReadOrSaysThatTwoAreNeeded) {
    const TemporaryFolder folder;
    std::vector<std::string> tables;
    const std::string sFailure =
        failureOf([&] { tables = tableNames(*mapOf(folder.write("one.csv", "A\n1\n"))); });
    if (sFailure.empty()) {
        EXPECT_THAT(tables, ElementsAre("one"));
    } else { // the older versions of the data library read no such file
        EXPECT_THAT(sFailure, AllOf(HasSubstr("one.csv"), HasSubstr("two columns or more")));
    }
}

TEST(PlainMap, OfAnEmptyCsvFileSaysThatItIsEmpty) {
    const TemporaryFolder folder;
    const std::string sEmpty = folder.write("empty.csv", "");
    EXPECT_EQ(failureOf([&] { mapOf(sEmpty); }),
              "\"" + sEmpty + "\" cannot be read by the driver \"CSV\": the file is empty");
}

TEST(PlainMap, OfAnEmptyDatabaseIsNeitherAMapNorABrokenFile) {
    const TemporaryFolder folder;
    makeCity(folder);
    const std::string sEmpty = folder.file("empty.gpkg");
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
    GDALDatasetUniquePtr(pDriver->Create(sEmpty.c_str(), 0, 0, 0, GDT_Unknown, nullptr)).reset();
    EXPECT_THAT(layerNames(*mapOf(folder.path())), ElementsAre("roads", "signs"));
    EXPECT_EQ(failureOf([&] { mapOf(sEmpty); }), "\"" + sEmpty + "\" holds no layers and no tables");
}

TEST(PlainMap, OfAFolderGivesTwinsButTheFirstTheNamesOfTheirFilesToo) {
    const TemporaryFolder folder;
    for (int lDrawing = 1; lDrawing <= 3; ++lDrawing)
        writeDrawing(folder, std::to_string(lDrawing) + ".dxf", lDrawing);
    const auto pMap = mapOf(folder.path());
    EXPECT_EQ(pMap->layer(1)->name(), "entities (2.dxf)"); // also when the third is not open yet
    EXPECT_THAT(layerNames(*pMap), ElementsAre("entities", "entities (2.dxf)", "entities (3.dxf)"));
    for (std::int32_t lIndex = 0; lIndex < 3; ++lIndex) {
        EXPECT_EQ(featureCount(pMap->layer(lIndex)), lIndex + 1);
    }
}

TEST(PlainMap, OfAFolderQualifiesTablesAsItDoesLayers) {
    const TemporaryFolder folder;
    makeCity(folder, "a.gpkg");
    runSql(makeCity(folder, "b.gpkg"), {"DELETE FROM notes"});
    const auto pMap = mapOf(folder.path());
    EXPECT_THAT(layerNames(*pMap), ElementsAre("roads", "signs", "roads (b.gpkg)", "signs (b.gpkg)"));
    EXPECT_THAT(tableNames(*pMap), ElementsAre("notes", "notes (b.gpkg)"));
    EXPECT_EQ(texts(*pMap->standaloneTable(0), "TEXT").size(), 3U);
    EXPECT_EQ(texts(*pMap->standaloneTable(1), "TEXT").size(), 0U);
}

TEST(PlainMap, OfAFolderQualifiesOnlyWhatCouldNotBeNamed) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder, "a.gpkg");
    convertLayer(sCity, "signs", folder.file("x.shp"), "ESRI Shapefile");
    makeRaster(folder, "x.tif", "GTiff"); // a raster is looked for among rasters
    makeRaster(folder, "y.bmp", "BMP");
    convertLayer(sCity, "signs", folder.file("y.shp"), "ESRI Shapefile"); // and a layer among all
    const auto pMap = mapOf(folder.path());
    EXPECT_THAT(layerNames(*pMap), ElementsAre("roads", "signs", "x", "raster x", "raster y", "y (y.shp)"));
}

// Whether this version of the data library crashes on a file is found in another process.
bool libraryCrashesOn(const std::string& sPath) {
    const pid_t lChild = ::fork();
    if (lChild == 0) {
        std::signal(SIGSEGV, SIG_DFL);
        const GDALDatasetUniquePtr pDataset(GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR));
        while (OGRFeatureUniquePtr(pDataset->GetLayer(0)->GetNextFeature()) != nullptr) {
        }
        ::_exit(0);
    }
    int lStatus = 0;
    ::waitpid(lChild, &lStatus, 0);
    return WIFSIGNALED(lStatus);
}

TEST(PlainMap, OfAFolderSurvivesATrackWithoutTimes) {
    const TemporaryFolder folder;
    makeCity(folder);
    const std::string sTrack = folder.write(
        "track.kml", R"(<kml xmlns="http://www.opengis.net/kml/2.2" )"
                     R"(xmlns:gx="http://www.google.com/kml/ext/2.2"><Folder><name>tracks</name>)"
                     "<Placemark><name>t</name><gx:Track><gx:coord>1 2 3</gx:coord></gx:Track>"
                     "</Placemark></Folder></kml>");
    const auto pMap = mapOf(folder.path());
    if (!libraryCrashesOn(sTrack)) {
        EXPECT_THAT(layerNames(*pMap), ElementsAre("roads", "signs", "tracks"));
        return;
    }
    EXPECT_THAT(layerNames(*pMap), ElementsAre("roads", "signs", "track"));
    const auto pTrack = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(2));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pTrack->featureClass()); }),
                AllOf(HasSubstr(sTrack), HasSubstr("crashes on it in its driver \"LIBKML\"")));
    EXPECT_EQ(featureCount(pMap->layer(0)), 5);
}

TEST(PlainMap, OfAFolderSurvivesSuchATrackUnderAnotherNameAndInAnotherEncoding) {
    const TemporaryFolder folder;
    makeCity(folder);
    const std::string sTrack = R"(<kml xmlns="http://www.opengis.net/kml/2.2" )"
                               R"(xmlns:gx="http://www.google.com/kml/ext/2.2"><Folder><name>tracks</name>)"
                               "<Placemark><name>t</name><gx:Track><gx:coord>1 2 3</gx:coord></gx:Track>"
                               "</Placemark></Folder></kml>";
    std::string sWide = "\xFF\xFE";
    for (const char c : sTrack)
        sWide += {c, '\0'};
    const std::string sXml = folder.write("route.xml", sTrack);
    const std::string sKml = folder.write("wide.kml", sWide);
    if (!libraryCrashesOn(sXml) || !libraryCrashesOn(sKml))
        GTEST_SKIP() << "this version of the data library reads them";
    const auto pMap = mapOf(folder.path());
    EXPECT_THAT(layerNames(*pMap), ElementsAre("roads", "signs", "route", "wide"));
    EXPECT_EQ(featureCount(pMap->layer(0)), 5);
}

TEST(PlainMap, TellsWhichFileOfAShapefileSetIsMissing) {
    const TemporaryFolder folder;
    const std::string sPath =
        convertLayer(makeCity(folder), "signs", folder.file("signs.shp"), "ESRI Shapefile");
    std::filesystem::remove(folder.file("signs.shx"));
    const std::string sFailure = failureOf([&] { static_cast<void>(openWorkspace(sPath)); });
    EXPECT_THAT(sFailure, ::testing::EndsWith("; copy the .shx file of the set beside it"));
    EXPECT_THAT(sFailure, ::testing::Not(::testing::HasSubstr("option")));
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
