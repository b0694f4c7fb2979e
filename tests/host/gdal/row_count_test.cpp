// The count of rows is what a reading yields, whatever a file says of itself.

#include "SampleData.h"

#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"
#include "support/OpenCounter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;

std::string contentOf(const std::string& sFile) {
    std::ifstream file(sFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class RowCount : public ::testing::Test {
protected:
    [[nodiscard]] std::string convertRoads(const std::string& sName, const std::string& sFormat) const {
        return convertLayer(makeCity(folder), "roads", folder.file(sName), sFormat);
    }
    // Counts, reads, and counts again.
    static void expectRows(const std::string& sPath, const std::string& sDataset, std::size_t nRows) {
        const auto pClass = openWorkspace(sPath)->openFeatureClass(sDataset);
        EXPECT_EQ(pClass->featureCount(), static_cast<std::int64_t>(nRows));
        EXPECT_EQ(texts(*pClass, pClass->fields()->field(0).name()).size(), nRows);
        EXPECT_EQ(pClass->featureCount(), static_cast<std::int64_t>(nRows));
    }

    TemporaryFolder folder;
};

TEST_F(RowCount, LeavesOutRecordsThatAreDeleted) {
    const std::string sPath = convertRoads("roads.shp", "ESRI Shapefile");
    const std::string sTable = folder.file("roads.dbf");
    const std::string sContent = contentOf(sTable);
    const auto byteAt = [&](std::size_t nPlace) { return static_cast<unsigned char>(sContent[nPlace]); };
    const std::size_t nHeader = byteAt(8) + 256U * byteAt(9);
    const std::size_t nRecord = byteAt(10) + 256U * byteAt(11);
    std::fstream file(sTable, std::ios::in | std::ios::out | std::ios::binary);
    for (const std::size_t nDeleted : {0, 3}) {
        file.seekp(static_cast<std::streamoff>(nHeader + nDeleted * nRecord));
        file << '*';
    }
    file.close();
    expectRows(sPath, "roads", 3);
}

TEST_F(RowCount, FailsWhereAnObjectIsOfAKindThatIsNotRead) {
    const std::string sPath = convertRoads("roads.mif", "MapInfo File");
    std::string sContent = contentOf(sPath);
    sContent.replace(sContent.find("Pline"), 5, "Plane");
    folder.write("roads.mif", sContent);
    const auto pClass = openWorkspace(sPath)->openFeatureClass("roads");
    for (const std::string& sFailure : {failureOf([&] { static_cast<void>(texts(*pClass, "NAME")); }),
                                        failureOf([&] { static_cast<void>(pClass->featureCount()); })}) {
        EXPECT_THAT(sFailure, HasSubstr("its file should hold 5 rows and holds 4"));
    }
}

TEST_F(RowCount, OfAnEmptyTableOpensTheFileNoSecondTime) {
    const std::string sPath = makeCity(folder);
    runSql(sPath, {"DELETE FROM roads"});
    const auto pClass = openWorkspace(sPath)->openFeatureClass("roads");
    const test::OpenCounter counter(folder.path());
    ASSERT_TRUE(counter.works());
    EXPECT_EQ(pClass->featureCount(), 0);
    EXPECT_EQ(counter.opens(), 0);
}

TEST_F(RowCount, IsThatOfTheTableAndNotANumberKeptBesideIt) {
    const std::string sPath = makeCity(folder);
    runSql(sPath, {"UPDATE gpkg_ogr_contents SET feature_count = 77"});
    expectRows(sPath, "roads", 5);
}

TEST_F(RowCount, FailsAsTheReadingFails) {
    const std::string sPath = convertRoads("roads.gml", "GML");
    std::string sContent = contentOf(sPath);
    const std::string sBegin = "<gml:MultiPoint><gml:pointMember>";
    const std::string sEnd = "</gml:pointMember></gml:MultiPoint>";
    const std::size_t nShape = sContent.find("<gml:LineString", sContent.find("<gml:LineString") + 1);
    sContent.insert(nShape, sBegin);
    const std::string sLast = "</gml:LineString>";
    sContent.insert(sContent.find(sLast, nShape) + sLast.size(), sEnd);
    folder.write("roads.gml", sContent);
    const auto pClass = openWorkspace(sPath)->openFeatureClass("roads");
    EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pClass, "NAME")); }), HasSubstr("cannot be parsed"));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->featureCount()); }), HasSubstr("cannot be parsed"));
}

TEST_F(RowCount, OfAFilterTheDataRejectsIsAFailure) {
    const std::string sCity = makeCity(folder);
    const std::string sMap =
        folder.write("map.xml", "<MapDocument><Map name='M'><FeatureLayer source='city.gpkg' dataset='roads' "
                                "filter='NOFIELD = 1'/></Map></MapDocument>");
    const auto pDocument = host::gdal::GdalHost::create()->openMapDocument(sMap);
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()->featureCount()); }),
                HasSubstr("no such column: NOFIELD"));
}

// A definition that cannot be read: its driver tells so once, and yields no row from then on.
class Unreadable : public ::testing::TestWithParam<const char*> {
protected:
    // A dataset "broken" beside others.
    [[nodiscard]] std::string make() const {
        const std::string sCity = makeCity(folder);
        if (std::string_view(GetParam()) == "view") {
            const std::string sPath = convertLayer(sCity, "notes", folder.file("some.gpkg"), "GPKG");
            runSql(sPath, {"CREATE VIEW broken AS SELECT * FROM nowhere",
                           "INSERT INTO gpkg_contents (table_name, data_type, identifier) VALUES ('broken', "
                           "'attributes', 'broken')"});
            return sPath;
        }
        runSql(sCity, {"DELETE FROM signs WHERE geom IS NULL"});
        const std::string sPath = convertLayer(sCity, "signs", folder.file("some.gdb"), "OpenFileGDB");
        std::string sLast;
        for (const auto& entry : std::filesystem::directory_iterator(sPath)) {
            if (entry.path().extension() == ".gdbtable")
                sLast = std::max(sLast, entry.path().string());
        }
        std::fstream file(sLast, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(4); // behind the version of the format, which some versions of the library look at first
        file << std::string(36, '\xFF');
        return sPath;
    }
    [[nodiscard]] static std::string dataset() {
        return std::string_view(GetParam()) == "view" ? "broken" : "signs";
    }

    TemporaryFolder folder;
};

INSTANTIATE_TEST_SUITE_P(Data, Unreadable, ::testing::Values("view", "folder"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(Unreadable, DefinitionsAreFailuresWithTheDriversText) {
    const std::string sPath = make();
    const auto pTable = openWorkspace(sPath)->openTable(dataset());
    const std::string sReason =
        std::string_view(GetParam()) == "view" ? "no such table: main.nowhere" : "Error occurred in";
    for (int lTime = 0; lTime < 2; ++lTime) {
        EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pTable, "NAME")); }), HasSubstr(sReason));
        EXPECT_THAT(failureOf([&] { static_cast<void>(pTable->fields()->count()); }), HasSubstr(sReason));
        if (const auto pClass = std::dynamic_pointer_cast<host::GisFeatureClass>(pTable)) {
            EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->featureCount()); }), HasSubstr(sReason));
        }
    }
}

TEST(Empty, TablesAreNoFailureAlthoughTheirReferenceIsBroken) {
    const TemporaryFolder folder;
    const std::string sPath = makeCity(folder);
    runSql(sPath, {"DELETE FROM signs",
                   "UPDATE gpkg_spatial_ref_sys SET definition = 'GEOGCS[\"bro' WHERE srs_id = 25832"});
    const auto pSigns = openWorkspace(sPath)->openFeatureClass("signs");
    EXPECT_EQ(pSigns->featureCount(), 0);
    EXPECT_TRUE(texts(*pSigns, "KIND").empty());
    EXPECT_EQ(failureOf([&] { static_cast<void>(pSigns->fields()->count()); }), "");
}

TEST(Empty, FiltersAreNotTold) {
    const TemporaryFolder folder;
    const std::string sPath = makeCity(folder);
    runSql(sPath, {"UPDATE gpkg_spatial_ref_sys SET definition = 'GEOGCS[\"bro' WHERE srs_id = 25832"});
    EXPECT_EQ(openWorkspace(sPath)->openFeatureClass("signs")->featureCount(), 3);
}

} // namespace
} // namespace halvane::tests
