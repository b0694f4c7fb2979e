#include "Archives.h"
#include "SampleData.h"
#include "support/ProjectText.h"

#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"
#include "host/gdal/source/MemoryFiles.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace halvane::tests {
namespace {

using test::projectText;

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class ZippedData : public ::testing::Test {
protected:
    /// An archive of files of the folder, with their paths in it.
    std::string zip(std::string_view sName, const std::vector<std::string>& files) {
        std::vector<std::pair<std::string, std::string>> members;
        for (const std::string& sFile : files)
            members.emplace_back(sFile, host::gdal::contentOf(folder.file(sFile)));
        return writeArchive(folder.file(sName), members);
    }
    host::GisMapPtr mapOf(const std::string& sPath) { return pHost->openMapDocument(sPath)->focusMap(); }
    static host::GisFeatureClassPtr classOf(const host::GisMap& map, std::int32_t lLayer) {
        return dynamic_cast<host::GisFeatureLayer&>(*map.layer(lLayer)).featureClass();
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
};

TEST_F(ZippedData, OfADatabaseIsThatDatabase) {
    const std::string sZip = zip("city.zip", {"city.gpkg"});
    const auto pMap = mapOf(sZip);
    EXPECT_EQ(pMap->name(), "city");
    ASSERT_EQ(pMap->layerCount(), 2);
    const auto pRoads = classOf(*pMap, 0);
    EXPECT_THAT(texts(*pRoads, "NAME", "N > 20 AND N < 50"), ElementsAre("R3", "R4"));
    EXPECT_EQ(pRoads->featureCount(), 5);
    EXPECT_EQ(pRoads->workspace()->pathName(), sZip);
    EXPECT_EQ(pRoads->workspace()->typeCode(), 1);
    EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), "notes");
}

TEST_F(ZippedData, OfShapefileSetsIsAFolderOfThem) {
    std::filesystem::create_directory(folder.file("deep"));
    convertLayer(sCity, "roads", folder.file("deep/lines.shp"), "ESRI Shapefile");
    convertLayer(sCity, "notes", folder.file("table.dbf"), "ESRI Shapefile");
    const std::string sZip =
        zip("set.zip", {"deep/lines.shp", "deep/lines.shx", "deep/lines.dbf", "deep/lines.prj", "table.dbf"});
    const auto pMap = mapOf(sZip);
    ASSERT_EQ(pMap->layerCount(), 1);
    ASSERT_EQ(pMap->standaloneTableCount(), 1);
    const auto pLines = classOf(*pMap, 0);
    EXPECT_EQ(pLines->datasetName(), "lines");
    EXPECT_THAT(texts(*pLines, "NAME", "N = 30"), ElementsAre("R3"));
    EXPECT_EQ(pLines->workspace()->pathName(), sZip);
    EXPECT_EQ(pLines->workspace()->typeCode(), 0);
    EXPECT_THAT(texts(*pMap->standaloneTable(0), "TEXT", "ROAD = 2"), ElementsAre("third"));
}

TEST_F(ZippedData, IsASourceOfMapDocumentsAndProjects) {
    zip("city.zip", {"city.gpkg"});
    const auto pOfDocument = mapOf(folder.write(
        "map.xml",
        "<MapDocument><Map name='M'><FeatureLayer source='city.zip' dataset='signs'/></Map></MapDocument>"));
    EXPECT_EQ(classOf(*pOfDocument, 0)->featureCount(), 3);
    const auto pOfProject = mapOf(
        folder.write("map.qgs", projectText({{"Roads", "/vsizip/./city.zip/city.gpkg|layername=roads"}})));
    EXPECT_EQ(classOf(*pOfProject, 0)->featureCount(), 5);
}

TEST_F(ZippedData, OfOtherKindsIsRefused) {
    const auto failure = [&](const std::string& sPath) {
        return failureOf([&] { static_cast<void>(mapOf(sPath)); });
    };
    EXPECT_THAT(
        failure(writeArchive(folder.file("text.zip"), {{"a.csv", "A,B\n1,2\n"}})),
        HasSubstr("holds no shapefile set, no GeoPackage and no file database, which alone are read"));
    EXPECT_THAT(failure(folder.write("none.zip", "PK\3\4")),
                HasSubstr("is no archive that can be read, or is empty"));
    EXPECT_THAT(failure(writeArchive(folder.file("bad.zip"), {{"a.gpkg", "no database"}})),
                HasSubstr("holds \"a.gpkg\", which cannot be read"));
}

TEST_F(ZippedData, LargerThanTheLimitIsNotRead) {
    std::vector<std::pair<std::string, std::string>> members;
    for (int lMember = 0; lMember <= 10'000; ++lMember)
        members.emplace_back("a" + std::to_string(lMember), "");
    members.emplace_back("city.gpkg", host::gdal::contentOf(sCity));
    std::string sZip;
    {
        // One handle on the archive, or each member would write its directory anew.
        VSILFILE* pArchive = VSIFOpenL(("/vsizip/{" + folder.file("many.zip") + "}").c_str(), "wb");
        ASSERT_NE(pArchive, nullptr);
        sZip = writeArchive(folder.file("many.zip"), members);
        VSIFCloseL(pArchive);
    }
    EXPECT_THAT(failureOf([&] { static_cast<void>(mapOf(sZip)); }),
                HasSubstr("many.zip\" cannot be read: it holds more than 4096 MiB, or 10,000 files"));
}

/// The archive whose directory says a size of each member: four bytes, the lowest first.
std::string sayingSizes(std::string sArchive, std::string_view sSize) {
    constexpr std::size_t nPlaceOfSize = 24;
    for (auto lEntry = sArchive.find("PK\1\2"); lEntry != std::string::npos;
         lEntry = sArchive.find("PK\1\2", lEntry + 1))
        sArchive.replace(lEntry + nPlaceOfSize, sSize.size(), sSize);
    return sArchive;
}

TEST_F(ZippedData, OfMembersThatSayToBeLargerTogetherIsNotRead) {
    const std::string sArchive = host::gdal::contentOf(
        writeArchive(folder.file("small.zip"), {{"a.gpkg", "a"}, {"b.gpkg", "b"}, {"c.gpkg", "c"}}));
    const std::string_view sHalf("\0\0\0\x80", 4); // 2 GiB
    EXPECT_THAT(
        failureOf([&] { static_cast<void>(mapOf(folder.write("large.zip", sayingSizes(sArchive, sHalf)))); }),
        HasSubstr("large.zip\" cannot be read: it holds more than 4096 MiB"));
    EXPECT_THAT(failureOf([&] { static_cast<void>(mapOf(folder.file("small.zip"))); }),
                Not(HasSubstr("4096 MiB")));
}

TEST_F(ZippedData, OfAKmzThatSaysToBeLargeIsNotReadIntoMemory) {
    const std::string sArchive =
        sayingSizes(host::gdal::contentOf(writeArchive(folder.file("small.kmz"), {{"doc.kml", "<kml/>"}})),
                    std::string_view("\0\0\0\x21", 4)); // 528 MiB
    EXPECT_THAT(failureOf([&] { static_cast<void>(mapOf(folder.write("large.kmz", sArchive))); }),
                HasSubstr("it holds more than 512 MiB"));
}

} // namespace
} // namespace halvane::tests
