#include "SampleData.h"

#include "base/Failure.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace halvane::tests {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(Workspace, OfADatabaseFileHasItsPathAndTheLocalDatabaseCode) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const auto pWorkspace = openWorkspace(sCity);
    EXPECT_EQ(pWorkspace->pathName(), sCity);
    EXPECT_EQ(pWorkspace->typeCode(), 1);
    EXPECT_EQ(openWorkspace(convert(sCity, folder.file("c.sqlite"), "SQLite"))->typeCode(), 1);
}

TEST(Workspace, OfAFolderHasItsPathAndTheFileSystemCode) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(folder.path() + "/");
    EXPECT_EQ(pWorkspace->pathName(), folder.path());
    EXPECT_EQ(pWorkspace->typeCode(), 0);
}

TEST(Workspace, OfADataFileIsItsFolder) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(folder.write("t.csv", "A,B\n1,2\n"));
    EXPECT_EQ(pWorkspace->pathName(), folder.path());
    EXPECT_EQ(pWorkspace->typeCode(), 0);
}

TEST(Workspace, FindsDatasetsIgnoringCase) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(makeCity(folder));
    EXPECT_EQ(pWorkspace->openFeatureClass("ROADS")->datasetName(), "roads");
    EXPECT_EQ(pWorkspace->openTable("Notes")->datasetName(), "notes");
    EXPECT_EQ(pWorkspace->openTable("roads")->datasetName(), "roads");
}

TEST(Workspace, FailsForADatasetThatItDoesNotHave) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(makeCity(folder));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pWorkspace->openTable("none")); }), HasSubstr("\"none\""));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pWorkspace->openFeatureClass("notes")); }),
                HasSubstr("not a feature class"));
}

TEST(Workspace, IsThatOfItsTables) {
    const TemporaryFolder folder;
    const auto pWorkspace = openWorkspace(makeCity(folder));
    EXPECT_EQ(pWorkspace->openFeatureClass("roads")->workspace(), pWorkspace);
    EXPECT_EQ(pWorkspace->openTable("notes")->workspace(), pWorkspace);
}

TEST(FolderWorkspace, HoldsTheDatasetsOfFilesOfAllFormats) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    folder.write("plain.csv", "A,B\n1,2\n");
    convertLayer(sCity, "signs", folder.file("points.geojson"), "GeoJSON");
    convertLayer(sCity, "roads", folder.file("lines.shp"), "ESRI Shapefile");
    const auto pWorkspace = openWorkspace(folder.path());
    EXPECT_EQ(pWorkspace->openTable("PLAIN")->datasetName(), "plain");
    EXPECT_EQ(pWorkspace->openFeatureClass("lines")->featureCount(), 5);
    EXPECT_EQ(pWorkspace->openTable("notes")->datasetName(), "notes");
}

TEST(FolderWorkspace, FindsADatasetByItsFilesNameToo) {
    const TemporaryFolder folder;
    convertLayer(makeCity(folder), "signs", folder.file("points.geojson"), "GeoJSON");
    const auto pWorkspace = openWorkspace(folder.path());
    // The layer inside is called "signs".
    EXPECT_EQ(pWorkspace->openFeatureClass("Points")->featureCount(), 3);
    EXPECT_EQ(pWorkspace->openFeatureClass("SIGNS")->featureCount(), 3);
}

TEST(FolderWorkspace, SkipsWhatIsNotData) {
    const TemporaryFolder folder;
    folder.write("readme.txt", "nothing");
    folder.write("broken.geojson", "{\"type\":");
    folder.write("empty.csv", "");
    folder.write("t.csv", "A,B\n1,2\n");
    EXPECT_THAT(texts(*openWorkspace(folder.path())->openTable("t"), "A"), ElementsAre("1"));
}

TEST(Workspaces, OfTheSamePathAreOneObjectOfAHost) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const auto pHost = host::gdal::GdalHost::create();
    const auto pFactory = pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default);
    EXPECT_EQ(pFactory->openFromFile(sCity, 0), pFactory->openFromFile(folder.path() + "/./city.gpkg", 0));
}

class FactoryOf : public ::testing::TestWithParam<host::WorkspaceFactoryKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, FactoryOf,
                         ::testing::Values(host::WorkspaceFactoryKind::Default,
                                           host::WorkspaceFactoryKind::LocalDatabase,
                                           host::WorkspaceFactoryKind::Share));

TEST_P(FactoryOf, EveryKindReadsBackslashesAsSlashes) {
    const TemporaryFolder folder;
    std::string sLocation = makeCity(folder);
    std::replace(sLocation.begin(), sLocation.end(), '/', '\\');
    const auto pHost = host::gdal::GdalHost::create();
    const auto pProperties = pHost->newPropertySet();
    pProperties->setProperty("database", sLocation);
    EXPECT_EQ(pHost->newWorkspaceFactory(GetParam())->open(*pProperties, 0)->pathName(),
              folder.file("city.gpkg"));
}

TEST_P(FactoryOf, EveryKindTakesRelativePathsFromTheBaseFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder.file("data"));
    makeCity(folder, "data/city.gpkg");
    const auto pHost = host::gdal::GdalHost::create({folder.path()});
    const auto pProperties = pHost->newPropertySet();
    pProperties->setProperty("DATABASE", std::string("data\\city.gpkg"));
    EXPECT_EQ(pHost->newWorkspaceFactory(GetParam())->open(*pProperties, 0)->pathName(),
              folder.file("data/city.gpkg"));
}

TEST(RemoteFactory, OpensNoConnectionFiles) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const auto pFactory =
        host::gdal::GdalHost::create()->newWorkspaceFactory(host::WorkspaceFactoryKind::RemoteDatabase);
    EXPECT_NE(failureOf([&] { static_cast<void>(pFactory->openFromFile(sCity, 0)); }), "");
}

TEST(Workspace, OfAPathWithoutAnythingIsAFailure) {
    const TemporaryFolder folder;
    EXPECT_THAT(failureOf([&] { openWorkspace(folder.file("none.gpkg")); }), HasSubstr("none.gpkg"));
    const std::string sText = folder.write("readme.txt", "nothing");
    EXPECT_THAT(failureOf([&] { openWorkspace(folder.write("x.MDB", "nothing")); }), HasSubstr("connector"));
    EXPECT_THAT(failureOf([&] { openWorkspace(sText); }), HasSubstr("format"));
}

TEST(Workspace, OfACsvFileOfOneColumnIsReadOrSaysWhatItLacks) {
    const TemporaryFolder folder;
    const std::string sFile = folder.write("one.csv", "A\n1\n2\n");
    std::vector<std::string> values;
    const std::string sFailure =
        failureOf([&] { values = texts(*openWorkspace(sFile)->openTable("one"), "A"); });
    // Only newer versions of the library read such a file.
    if (sFailure.empty()) {
        EXPECT_EQ(values, (std::vector<std::string>{"1", "2"}));
    } else {
        EXPECT_THAT(sFailure, HasSubstr("two columns"));
    }
}

TEST(Reading, LeavesNothingBesideTheData) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    convertLayer(sCity, "roads", folder.file("lines.gml"), "GML");
    fs::remove(folder.file("lines.xsd"));
    makeRaster(folder, "image.tif", "GTiff");
    makeRaster(folder, "picture.bmp", "BMP");
    runSql(sCity, {"PRAGMA journal_mode = WAL", "UPDATE roads SET NAME = NAME"});
    const auto before = folder.names();
    {
        const auto pHost = host::gdal::GdalHost::create();
        const auto pDocument = pHost->openMapDocument(folder.path());
        EXPECT_THAT(pHost->problems(pDocument), ElementsAre());
        EXPECT_EQ(texts(*openWorkspace(folder.file("lines.gml"))->openTable("roads"), "NAME").size(), 5U);
    }
    EXPECT_EQ(folder.names(), before);
}

TEST(GeoPackage, OpensInAFolderThatCannotBeWritten) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity, {"PRAGMA journal_mode = WAL", "UPDATE roads SET NAME = NAME"});
    fs::permissions(sCity, fs::perms::owner_read);
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(texts(*openWorkspace(sCity)->openTable("roads"), "NAME").size(), 5U);
}

} // namespace
} // namespace halvane::tests
