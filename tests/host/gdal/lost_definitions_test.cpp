// Databases in which SQLite cannot parse a definition: it takes none of the file then, unless it is told to.

#include "SampleData.h"

#include "host/Map.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace halvane::tests {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class LostDefinitions : public ::testing::TestWithParam<const char*> {
protected:
    LostDefinitions() {
        const std::string sCity = makeCity(folder);
        sPath = sCity;
        if (!isGeoPackage()) {
            sPath = folder.file("c.sqlite");
            convert(sCity, sPath, "SQLite");
        }
        std::vector<std::string> statements;
        for (const std::string sView : {"named", "wide"}) {
            statements.push_back("CREATE VIEW " + sView + " AS SELECT N, NAME FROM roads");
            if (isGeoPackage()) {
                statements.push_back(
                    "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('" + sView +
                    "', '" + sView + "', 'attributes')");
            }
        }
        runSql(sPath, statements);
    }

    [[nodiscard]] bool isGeoPackage() const { return GetParam() == std::string("GPKG"); }

    // Sets a column of the list of definitions, where anybody may write anything.
    void set(const std::string& sAssignment, const std::string& sName) {
        runSql(sPath, {"PRAGMA writable_schema = ON",
                       "UPDATE sqlite_master SET " + sAssignment + " WHERE name = '" + sName + "'"});
    }

    std::string failureOfReading(const std::string& sTable) {
        return failureOf([&] { static_cast<void>(texts(*openWorkspace(sPath)->openTable(sTable), "N")); });
    }

    std::string lost(const std::string& sTable, const std::string& sReason) {
        return "\"" + sPath + "\": SQLite cannot parse the definition of \"" + sTable + "\"" + sReason;
    }

    std::string mapFailure() {
        return failureOf([&] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(sPath)); });
    }

    std::vector<std::string> tableNames() {
        const auto pMap = host::gdal::GdalHost::create()->openMapDocument(sPath)->focusMap();
        std::vector<std::string> names;
        for (std::int32_t lTable = 0; lTable < pMap->standaloneTableCount(); ++lTable)
            names.push_back(pMap->standaloneTable(lTable)->datasetName());
        return names;
    }

    TemporaryFolder folder;
    std::string sPath;
};

INSTANTIATE_TEST_SUITE_P(Drivers, LostDefinitions, ::testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(LostDefinitions, OfAViewLoseThatViewAlone) {
    set("sql = 'CREATE VIEW named AS SELEC oops'", "named");
    EXPECT_EQ(failureOfReading("named"), lost("named", ": near \"SELEC\": syntax error"));
    EXPECT_EQ(failureOfReading("NAMED"), lost("named", ": near \"SELEC\": syntax error"));
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("wide"), "NAME"),
                ElementsAre("R1", "R2", "R3", "R4", "R5"));
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("roads"), "NAME", "N > 20"), ElementsAre("R3", "R4"));
    EXPECT_THAT(tableNames(), AllOf(Contains("wide"), Contains("notes"), Contains("named")));
}

TEST_P(LostDefinitions, OfSeveralAreToldEachWithItsReason) {
    set("sql = 'CREATE VIEW named AS SELEC oops'", "named");
    // The library does not open the file any more: its list is changed in place.
    std::ifstream stream(sPath, std::ios::binary);
    std::string sBytes{std::istreambuf_iterator<char>(stream), {}};
    const std::size_t nAt = sBytes.find("CREATE VIEW wide AS SELECT N");
    ASSERT_NE(nAt, std::string::npos);
    sBytes.replace(nAt, 28, "CREATE VIEW wide AS SELECT .");
    std::ofstream(sPath, std::ios::binary) << sBytes;
    EXPECT_EQ(failureOfReading("named"), lost("named", ": near \"SELEC\": syntax error"));
    EXPECT_EQ(failureOfReading("wide"), lost("wide", ": near \".\": syntax error"));
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("notes"), "ROAD"), ElementsAre("1", "1", "2"));
}

TEST_P(LostDefinitions, OfATableLoseThatTableAlone) {
    set("sql = 'CREATE TABLE notes (a b c, , d)'", "notes");
    EXPECT_THAT(failureOfReading("notes"), HasSubstr("SQLite cannot parse the definition of \"notes\": "));
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("roads"), "NAME"),
                ElementsAre("R1", "R2", "R3", "R4", "R5"));
}

TEST_P(LostDefinitions, OfAnIndexCostNothing) {
    runSql(sPath, {"CREATE INDEX by_n ON roads (N)"});
    set("sql = 'CREATE INDEX by_n ON roads ('", "by_n");
    EXPECT_EQ(mapFailure(), "");
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("roads"), "NAME", "N = 20"), ElementsAre("R2"));
}

TEST_P(LostDefinitions, OfTheFormatItselfLoseTheFile) {
    set("sql = 'CREATE TABLE oops ('", isGeoPackage() ? "gpkg_contents" : "geometry_columns");
    EXPECT_THAT(mapFailure(), HasSubstr("malformed database schema"));
}

// Else a table could have another definition than the one that is looked at before it is trusted.
TEST_P(LostDefinitions, OfAnotherNameThanTheListedAreNotTaken) {
    set("name = 'other', tbl_name = 'other'", "named");
    EXPECT_NE(failureOfReading("named"), "");
    if (!isGeoPackage()) { // which lists what is registered
        EXPECT_EQ(failureOfReading("other"), lost("other", ""));
    }
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("wide"), "N"), Not(ElementsAre()));
}

} // namespace
} // namespace halvane::tests
