// Layers and tables that a map document computes by SQL.

#include "SampleData.h"

#include "host/Layers.h"
#include "host/Map.h"
#include "host/SpatialReference.h"
#include "support/OpenCounter.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string attribute(const std::string& sText) {
    std::string sQuoted;
    for (const char c : sText) {
        if (c == '"')
            sQuoted += "&quot;";
        else if (c == '<')
            sQuoted += "&lt;";
        else if (c == '&')
            sQuoted += "&amp;";
        else
            sQuoted += c;
    }
    return "\"" + sQuoted + "\"";
}

std::string bytesOf(const std::string& sFile) {
    std::ifstream stream(sFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class ComputedTables : public ::testing::Test {
protected:
    /// A map with one element, which stands on line 2.
    host::GisMapPtr map(const std::string& sElement) {
        const std::string sPath =
            folder.write("map.xml", "<MapDocument><Map name=\"M\">\n" + sElement + "</Map></MapDocument>");
        pHost = host::gdal::GdalHost::create();
        pDocument = pHost->openMapDocument(sPath);
        return pDocument->focusMap();
    }
    host::GisTablePtr table(const std::string& sSource, const std::string& sSql) {
        return map("<Table source=\"" + sSource + "\" dataset=\"result\" sql=" + attribute(sSql) + "/>")
            ->standaloneTable(0);
    }
    host::GisFeatureLayerPtr layer(const std::string& sSource, const std::string& sMore) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(
            map("<FeatureLayer name=\"L\" source=\"" + sSource + "\" " + sMore + "/>")->layer(0));
    }
    std::string refusal(const std::string& sSource, const std::string& sSql) {
        return failureOf([&] { static_cast<void>(table(sSource, sSql)); });
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost;
    host::GisMapDocumentPtr pDocument;
};

using HostileQueries = ComputedTables;

TEST_F(ComputedTables, HoldTheRowsOfTheirQueryInItsOrder) {
    const auto pTable =
        table("city.gpkg", "SELECT NAME, N * 2 AS TWICE FROM roads WHERE N > 10 ORDER BY N DESC");
    EXPECT_THAT(texts(*pTable, "NAME"), ElementsAre("R4", "R3", "R2"));
    EXPECT_THAT(texts(*pTable, "TWICE"), ElementsAre("80", "60", "40"));
    EXPECT_EQ(pTable->datasetName(), "result");
}

TEST_F(ComputedTables, YieldTheSameRowsHoweverOftenTheyAreRead) {
    const auto pTable = table("city.gpkg", "SELECT random() AS R FROM roads, notes");
    const auto first = texts(*pTable, "R");
    EXPECT_EQ(first.size(), 15U);
    EXPECT_EQ(texts(*pTable, "R"), first);
    EXPECT_EQ(texts(*pDocument->focusMap()->standaloneTable(0), "R"), first);
}

TEST_F(ComputedTables, NumberTheirRowsFromOne) {
    const auto pTable = table("city.gpkg", "SELECT NAME FROM roads ORDER BY NAME DESC");
    EXPECT_THAT(texts(*pTable, "OID"), ElementsAre("1", "2", "3", "4", "5"));
    EXPECT_THAT(texts(*pTable, "NAME", "OID = 2"), ElementsAre("R4"));
}

TEST_F(ComputedTables, JoinDatasetsOfOneSource) {
    const auto pTable = table(
        "city.gpkg", "WITH t AS (SELECT ROAD, count(*) AS C FROM notes GROUP BY ROAD) "
                     "SELECT r.NAME, t.C, r.fid AS ID FROM roads r JOIN t ON t.ROAD = r.fid ORDER BY 1");
    EXPECT_THAT(texts(*pTable, "C"), ElementsAre("2", "1"));
}

TEST_F(ComputedTables, GiveColumnsOfOneNameANumber) {
    const auto pTable =
        table("city.gpkg", "SELECT a.NAME, b.NAME FROM roads a JOIN roads b ON b.N = a.N + 10 ORDER BY a.N");
    EXPECT_THAT(texts(*pTable, "NAME"), ElementsAre("R1", "R2", "R3"));
    EXPECT_THAT(texts(*pTable, "NAME_1"), ElementsAre("R2", "R3", "R4"));
}

TEST_F(ComputedTables, KeepNumbersThatTheFirstRowWouldNotLeadToExpect) {
    const auto pTable = table("city.gpkg", "SELECT column1 AS A, column2 AS B, column3 AS C FROM "
                                           "(VALUES (1, 1, 1), (5000000000, 2.5, 'x'))");
    EXPECT_THAT(texts(*pTable, "A"), ElementsAre("1", "5000000000"));
    EXPECT_THAT(texts(*pTable, "B"), ElementsAre("1", "2.5"));
    EXPECT_THAT(texts(*pTable, "C"), ElementsAre("1", "x"));
}

TEST_F(ComputedTables, KeepShapesAndTheirReference) {
    const auto pLayer = layer("city.gpkg", "sql=\"SELECT fid AS ID, geom FROM signs\"");
    EXPECT_EQ(pLayer->featureClass()->featureCount(), 3);
    const auto pRow = pLayer->featureClass()->search(nullptr)->nextRow();
    ASSERT_NE(pRow, nullptr);
    EXPECT_NE(pRow->shape(), nullptr);
}

TEST_F(ComputedTables, MayBeFilteredAndSelectedFrom) {
    const auto pLayer =
        layer("city.gpkg", "sql=\"SELECT N, geom FROM roads ORDER BY N DESC\" filter=\"N &gt; 10\"");
    EXPECT_THAT(texts(*pLayer->featureClass(), "N"), ElementsAre("40", "30", "20"));
    EXPECT_EQ(pLayer->featureClass()->featureCount(), 3);
    pHost->selectFeatures(pDocument, "L", "3,1");
    EXPECT_EQ(pLayer->selectionCount(), 2);
    EXPECT_THAT(texts(*pLayer->searchSelection(), "N"), ElementsAre("20", "40"));
}

TEST_F(ComputedTables, AreMadeOfFilesToo) {
    folder.write("towns.csv", "NAME,POP\nAbdera,120\nByblos,34\nCorinth,560\n");
    const auto pTable =
        table("towns.csv", "SELECT upper(NAME) AS U, fid AS ID FROM towns WHERE CAST(POP AS INTEGER) > 50 "
                           "ORDER BY NAME DESC");
    EXPECT_THAT(texts(*pTable, "U"), ElementsAre("CORINTH", "ABDERA"));
    EXPECT_THAT(texts(*pTable, "ID"), ElementsAre("3", "1"));
    EXPECT_THAT(folder.names(), ElementsAre("city.gpkg", "map.xml", "towns.csv"));
}

TEST_F(ComputedTables, JoinTheFilesOfAFolder) {
    std::filesystem::create_directory(folder.file("data"));
    folder.write("data/a.csv", "ID,NAME\n1,one\n2,two\n");
    folder.write("data/b.csv", "ID,TEXT\n2,zwei\n1,eins\n");
    const auto pTable =
        table("data", "SELECT NAME || TEXT AS BOTH FROM a JOIN b ON a.ID = b.ID ORDER BY a.ID");
    EXPECT_THAT(texts(*pTable, "BOTH"), ElementsAre("oneeins", "twozwei"));
}

TEST_F(ComputedTables, TakeAStatementWithASemicolonAtItsEnd) {
    EXPECT_THAT(texts(*table("city.gpkg", "  SELECT N FROM roads WHERE N = 10 ;\n"), "N"), ElementsAre("10"));
}

TEST_F(ComputedTables, AreRefusedWithTheLineBeforeAnythingIsRead) {
    EXPECT_EQ(refusal("city.gpkg", "SELECT NAM FROM roads"),
              folder.file("map.xml") +
                  ", line 2: sql=\"SELECT NAM FROM roads\" cannot be followed: no such column: NAM");
    EXPECT_THAT(refusal("city.gpkg", "SELECT NAME FROM road"), HasSubstr("no such table: road"));
    EXPECT_THAT(refusal("city.gpkg", "SELECT NAME FROM"), HasSubstr("incomplete input"));
    EXPECT_THAT(refusal("city.gpkg", "SELECT \"Nix\" FROM roads"),
                AllOf(HasSubstr("no such column: "), HasSubstr("Nix")));
}

TEST_F(ComputedTables, ReferToNoLayerOfTheMapSoThatNoneIsMadeOfItself) {
    EXPECT_THAT(refusal("city.gpkg", "SELECT * FROM result"), HasSubstr("no such table: result"));
    runSql(sCity, {"CREATE VIEW a AS SELECT * FROM b", "CREATE VIEW b AS SELECT * FROM a"});
    EXPECT_THAT(refusal("city.gpkg", "SELECT * FROM a"), HasSubstr("circularly defined"));
}

TEST_F(ComputedTables, AreNotForServers) {
    folder.write("map.xml", "<MapDocument><Connection name=\"c\" database=\"PG:dbname=x\"/><Map name=\"M\">\n"
                            "<Table connection=\"c\" sql=\"SELECT 1\"/></Map></MapDocument>");
    EXPECT_EQ(
        failureOf([&] {
            static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(folder.file("map.xml")));
        }),
        folder.file("map.xml") +
            ", line 2: sql=\"...\" is for files; make a view on the server, and name it as the dataset");
}

TEST_F(ComputedTables, WhoseSourceIsGoneCostThatLayerAlone) {
    const auto pMap = map("<Table source=\"gone.gpkg\" sql=\"SELECT 1\"/>");
    EXPECT_THAT(pHost->problems(pDocument), ElementsAre(HasSubstr("gone.gpkg")));
    EXPECT_EQ(pMap->standaloneTable(0), nullptr);
}

TEST_F(HostileQueries, AreRefusedOverDatabasesAndFilesAlike) {
    folder.write("towns.csv", "NAME,POP\nAbdera,120\nByblos,34\n");
    std::filesystem::create_directory(folder.file("bait"));
    folder.write("bait/secret.csv", "A,B\n1,2\n");
    std::filesystem::copy_file(sCity, folder.file("bait/other.gpkg"));
    const std::string sBefore = bytesOf(sCity);
    const test::OpenCounter counter(folder.file("bait"));
    ASSERT_TRUE(counter.works());
    const std::string sBait = folder.file("bait/");
    const std::vector<std::string> statements{
        "DELETE FROM roads",
        "UPDATE roads SET N = 0",
        "INSERT INTO roads (N) VALUES (1)",
        "REPLACE INTO roads (N) VALUES (1)",
        "DROP TABLE roads",
        "ALTER TABLE roads RENAME TO r",
        "CREATE TABLE t (a)",
        "CREATE TEMP TABLE t AS SELECT 1",
        "CREATE VIEW v AS SELECT 1",
        "CREATE TRIGGER t AFTER INSERT ON roads BEGIN SELECT 1; END",
        "CREATE INDEX i ON roads (N)",
        "REINDEX",
        "ANALYZE",
        "VACUUM",
        "VACUUM INTO '" + sBait + "copy.gpkg'",
        "BEGIN",
        "SAVEPOINT s",
        "EXPLAIN SELECT 1",
        "VALUES (1)",
        "ATTACH '" + sBait + "other.gpkg' AS o",
        "DETACH main",
        "PRAGMA writable_schema = 1",
        "PRAGMA temp_store_directory = '" + sBait + "'",
        "DELLAYER:roads",
        "RECOMPUTE EXTENT ON roads",
        "SELECT 1; DELETE FROM roads",
        "SELECT 1; ATTACH '" + sBait + "other.gpkg' AS o",
        "SELECT 1; SELECT 2",
        "WITH x AS (SELECT 1) DELETE FROM roads",
        "WITH x AS (SELECT 1 AS a) INSERT INTO roads (N) SELECT a FROM x",
        "/* */ SELECT 1",
        "-- x\nSELECT 1",
        "SELECT load_extension('" + sBait + "x.so')",
        "SELECT readfile('" + sBait + "secret.csv')",
        "SELECT writefile('" + sBait + "new', 'x')",
        "SELECT edit('x')",
        "SELECT fts3_tokenizer('simple')",
        "SELECT * FROM '" + sBait + "secret.csv'.secret",
        "SELECT * FROM \"" + sBait + "secret.csv\"",
        "SELECT * FROM '" + sBait + "other.gpkg'.roads",
        "SELECT * FROM ogr_datasource('" + sBait + "secret.csv')",
        "SELECT ogr_datasource_load_layers('" + sBait + "secret.csv')",
        "SELECT ogr_layer_Extent('roads')",
        "SELECT ogr_layer_FeatureCount('roads')",
        "SELECT ogr_geocode('Paris')",
        "SELECT * FROM VirtualOGR('" + sBait + "secret.csv')",
        "SELECT * FROM VirtualShape('" + sBait + "secret')",
        "SELECT * FROM VirtualText('" + sBait + "secret.csv')",
        "SELECT gdal_get_pixel_value('" + sBait + "x.tif', 1, 'pixel', 0, 0)",
        "SELECT BlobFromFile('" + sBait + "secret.csv')",
        "SELECT BlobToFile(x'00', '" + sBait + "new')",
        "SELECT ImportSHP('" + sBait + "secret', 't', 'UTF-8')",
        "SELECT ExportGeoJSON('roads', 'geom', '" + sBait + "new')",
        "SELECT eval('DELETE FROM roads')",
        "SELECT ST_AsText(ImportXLS('" + sBait + "x.xls', 't'))",
        "SELECT CreateSpatialIndex('roads', 'geom')",
        "SELECT DisableSpatialIndex('roads', 'geom')",
        "SELECT RegisterGeometryExtension('x')",
        "SELECT * FROM pragma_database_list",
        "SELECT * FROM pragma_function_list",
        "SELECT * FROM pragma_table_info('roads')",
        "SELECT * FROM sqlite_dbpage",
        "SELECT * FROM dbstat",
        "SELECT (SELECT load_extension('x')) FROM roads",
        "SELECT 1 FROM roads WHERE readfile('" + sBait + "secret.csv') IS NULL",
        "SELECT 1 ORDER BY load_extension('x')",
        "SELECT halvane_collect_columns(1)",
        "SELECT ?",
        "SELECT :name",
    };
    for (const std::string& sSource : {std::string("city.gpkg"), std::string("towns.csv")})
        for (const std::string& sStatement : statements)
            EXPECT_THAT(refusal(sSource, sStatement), HasSubstr(": sql=\"")) << sSource << ": " << sStatement;
    EXPECT_EQ(counter.opens(), 0);
    EXPECT_EQ(bytesOf(sCity), sBefore);
    EXPECT_THAT(TemporaryFolder().names(), IsEmpty());
    EXPECT_EQ(folder.names().size(), 4U);
}

TEST_F(HostileQueries, ReachNothingThroughViewsOfTheData) {
    runSql(sCity, {"CREATE VIEW bad AS SELECT load_extension('x') AS A"});
    EXPECT_THAT(refusal("city.gpkg", "SELECT A FROM bad"), HasSubstr("load_extension"));
}

} // namespace
} // namespace halvane::tests
