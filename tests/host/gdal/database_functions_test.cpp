// Which functions the SQL of data may call, wherever it stands: views, filters, generated columns, and the
// tables that drivers read while they open a file.

#include "SampleData.h"

#include "host/Workspace.h"
#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/DatabaseFunctions.h"
#include "host/gdal/source/Drivers.h"
#include "host/gdal/source/HandlePool.h"
#include "host/gdal/source/Sqlite.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::tests {
namespace {

using namespace host::gdal;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Runs a statement as another program would that writes the file.
void alter(const std::string& sFile, const std::string& sSql) {
    sqlite3* pDatabase = nullptr;
    ASSERT_EQ(sqlite3_open(sFile.c_str(), &pDatabase), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(pDatabase, sSql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(pDatabase);
    sqlite3_close(pDatabase);
}

/// Gives a table or view the definition that a hostile author would.
void redefine(const std::string& sFile, const std::string& sName, const std::string& sDefinition) {
    alter(sFile, "PRAGMA writable_schema = ON; UPDATE sqlite_master SET sql = '" + sDefinition +
                     "' WHERE name = '" + sName + "'");
}

/// How the names of those begin that change the database or how later calls behave, read or write other
/// files, run SQL of their own, tell how the library is set, or end the process at some arguments.
bool isKnownToDoMore(std::string_view sName) {
    std::istringstream beginnings(
        "* add auto bufferoptions_ check clone count create disable discard drop elementarygeometries enable "
        "fts gdal_ geos_get getcutter getdb getdecimal getedge getface getfont getgpkg getiso getlast "
        "getlayer "
        "getlink getnet getnode getspatialindex getvirtual gpkgadd gpkgcreate gpkgget gpkginsert import init "
        "insert invalidate isfont ispause ispopulated istinypointenabled isvalidfont isvalidpixel "
        "isvalidraster load ogr_ optimize pause postgresql_ proj_get proj_set rebuild recover recreate "
        "register removeduplicate rename rl2_ rtree rttopo_get se_ sequence_ setdatalicense setdecimal "
        "setmultiple sqlite_compile sqlite_log sqlproc_ st_addedge st_addiso st_addlink st_change st_create "
        "st_cutter st_getface st_init st_loginet st_mod st_moveiso st_new st_remedge st_remiso st_removelink "
        "st_setmultiple st_spatnet st_valid storedproc_ storedvar_ temporary topogeo_ toponet_ unregister "
        "update upgrade wms_ xb_ zipfile_ "
        "geometryconstraints geomfromtwkb geosdensify hexagonalgrid line_interpolate_equidistant_points "
        "makearc "
        "makecircularsector makecircularstripe makeellipticarc makeellipticsector md5totalchecksum "
        "segmentize squaregrid "
        "st_hexagonalgrid st_line_interpolate_equidistant_points st_segmentize st_squaregrid st_subdivide "
        "st_triangulargrid "
        "regexp transform3 triangulargrid voronojdiagram st_voronojdiagram");
    return std::any_of(std::istream_iterator<std::string>(beginnings), {},
                       [&](const std::string& sBeginning) { return sName.starts_with(sBeginning); });
}

class FunctionsOf : public ::testing::TestWithParam<const char*> {
protected:
    FunctionsOf() {
        prepareLibrary();
        const std::string sCity = makeCity(folder);
        sPath = sCity;
        if (!isGeoPackage()) {
            sPath = folder.file("c.sqlite");
            convert(sCity, sPath, "SQLite");
        }
    }

    [[nodiscard]] bool isGeoPackage() const { return GetParam() == std::string("GPKG"); }

    void addView(const std::string& sName, const std::string& sExpression) {
        alter(sPath, "CREATE VIEW " + sName + " AS SELECT N, " + sExpression + " AS V FROM roads");
        if (isGeoPackage()) {
            alter(sPath, "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('" + sName +
                             "', '" + sName + "', 'attributes')");
        }
    }

    std::vector<std::string> roads() { return texts(*openWorkspace(sPath)->openTable("roads"), "NAME"); }

    TemporaryFolder folder;
    std::string sPath;
};

INSTANTIATE_TEST_SUITE_P(Drivers, FunctionsOf, ::testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(FunctionsOf, ViewsThatWaitOrWriteAreRefusedByName) {
    const std::vector<std::pair<std::string, std::string>> refused{
        {"Pause", "EnablePause() + Pause()"},
        {"CloneTable", "CloneTable('main', 'roads', 'x', 1)"},
        {"InitSpatialMetaData", "InitSpatialMetaData(1)"},
        {"SetDecimalPrecision", "SetDecimalPrecision(2)"},
        {"sqlproc_execute", "SqlProc_Execute(x'00')"},
        {"ST_InitTopoGeo", "ST_InitTopoGeo('t')"}};
    for (const auto& [sName, sExpression] : refused)
        addView("v_" + sName, sExpression);
    const auto pWorkspace = openWorkspace(sPath);
    for (const auto& [sName, sExpression] : refused) {
        const std::string sFailure = failureOf(
            [&, &sView = sName] { static_cast<void>(texts(*pWorkspace->openTable("v_" + sView), "V")); });
        std::string sLower;
        for (const char c : sName)
            sLower += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
        EXPECT_THAT(sFailure,
                    HasSubstr("the function \"" + sLower + "\" is not allowed in views and filters"));
    }
    EXPECT_THAT(roads(), SizeIs(5));
}

TEST_P(FunctionsOf, FiltersAreRefusedByName) {
    const auto pRoads = openWorkspace(sPath)->openTable("roads");
    for (const char* pWhere : {"EnablePause() + Pause() = 1", "N = 10 OR Pause() = 1"}) {
        const host::GisQueryFilter filter{pWhere};
        EXPECT_THAT(failureOf([&] { static_cast<void>(pRoads->search(&filter)); }),
                    AllOf(HasSubstr("is not valid for \"roads\": the function \""),
                          HasSubstr("pause\" is not allowed in views and filters")));
    }
}

TEST_P(FunctionsOf, GeneratedColumnsRefuseWhenTheyAreRead) {
    alter(sPath, "CREATE TABLE made (id INTEGER PRIMARY KEY, a TEXT); INSERT INTO made VALUES (1, 'x')");
    if (isGeoPackage()) {
        alter(sPath, "INSERT INTO gpkg_contents (table_name, identifier, data_type) "
                     "VALUES ('made', 'made', 'attributes')");
    }
    redefine(sPath, "made",
             "CREATE TABLE made (id INTEGER PRIMARY KEY, a TEXT, g TEXT GENERATED ALWAYS AS "
             "(EnablePause() + Pause()))");
    const auto pWorkspace = openWorkspace(sPath);
    EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pWorkspace->openTable("made"), "g")); }),
                HasSubstr("pause\" is not allowed in views and filters"));
}

TEST_P(FunctionsOf, AnyOtherNameRefuseEvenWhereNobodyAsksWhetherTheyMay) {
    alter(sPath, "CREATE TABLE made (a INTEGER, b AS (a + 1))");
    const auto pPool = std::make_shared<HandlePool>();
    const Handle handle = pPool->acquire(featureSourceOf(*pPool, sPath));
    sqlite3* pDatabase = databaseOf(handle.dataset());
    ASSERT_NE(pDatabase, nullptr);
    sqlite3_set_authorizer(pDatabase, nullptr, nullptr);
    std::vector<std::pair<std::string, int>> forbidden;
    {
        const StatementPtr pRows = prepare(pDatabase, "SELECT name, max(narg, 0) FROM pragma_function_list");
        while (sqlite3_step(pRows.get()) == SQLITE_ROW) {
            const void* pName = sqlite3_column_text(pRows.get(), 0);
            const std::string sName = static_cast<const char*>(pName);
            if (!isAllowedFunction(sName))
                forbidden.emplace_back(sName, sqlite3_column_int(pRows.get(), 1));
        }
    }
    EXPECT_GT(forbidden.size(), 100U);
    for (const auto& [sName, lArguments] : forbidden) {
        std::string sCall = "SELECT \"" + sName + "\"(";
        for (int lArgument = 0; lArgument < lArguments; ++lArgument)
            sCall += lArgument == 0 ? "1" : ", 1";
        const StatementPtr pCall = prepare(pDatabase, sCall + ")");
        ASSERT_NE(pCall, nullptr) << sName << ": " << sqlite3_errmsg(pDatabase);
        ASSERT_EQ(sqlite3_step(pCall.get()), SQLITE_ERROR) << sName;
        ASSERT_THAT(sqlite3_errmsg(pDatabase), HasSubstr("\"" + sName + "\" is not allowed")) << sCall;
    }
}

TEST_P(FunctionsOf, EachIsAllowedOrKnownToDoMore) {
    const auto pPool = std::make_shared<HandlePool>();
    const Handle handle = pPool->acquire(featureSourceOf(*pPool, sPath));
    const StatementPtr pRows =
        prepare(databaseOf(handle.dataset()), "SELECT DISTINCT lower(name) FROM pragma_function_list");
    std::vector<std::string> allowed;
    std::vector<std::string> unknown;
    while (sqlite3_step(pRows.get()) == SQLITE_ROW) {
        const void* pName = sqlite3_column_text(pRows.get(), 0);
        const std::string sName = static_cast<const char*>(pName);
        if (isAllowedFunction(sName))
            allowed.push_back(sName);
        else if (!isKnownToDoMore(sName))
            unknown.push_back(sName);
    }
    EXPECT_GT(allowed.size(), 300U);
    EXPECT_THAT(unknown, IsEmpty()) << "list them with the allowed functions, or with those that do more";
}

TEST_P(FunctionsOf, ShapesTextsDatesAndWindowsAreAllowed) {
    // A GeoPackage's own SetSRID of GDAL 3.10 never frees a shape that is written in another way.
    const std::string sPoint = isGeoPackage() ? "gpkgMakePoint(1, 2)" : "MakePoint(1, 2)";
    const std::vector<std::pair<std::string, std::string>> allowed{
        {"ST_AsText(ST_Buffer(MakePoint(1, 2), 0))", "POLYGON EMPTY"},
        {"ST_X(MakePoint(1, 2))", "1.0"},
        {"ST_AsText(SetSRID(" + sPoint + ", 4326))", "POINT(1 2)"},
        {"AsWKT(MakePoint(1, 2), 1)", "POINT(1 2)"},
        {"printf('%.2f', N * 0.5)", "5.00"},
        {"strftime('%Y', '2020-03-04')", "2020"},
        {"json_extract('{\"a\": 7}', '$.a')", "7"},
        {"(SELECT value FROM json_each('[8]'))", "8"},
        {"row_number() OVER (ORDER BY N)", "1"},
        {"(SELECT group_concat(N, '-') FROM roads WHERE N < 30)", "10-20"},
        {"CvtToKm(2000.0)", "2.0"},
        {"round(sqrt(N + 6), 1)", "4.0"},
        {"upper(substr('abc', 2))", "BC"}};
    for (std::size_t nView = 0; nView < allowed.size(); ++nView)
        addView("v" + std::to_string(nView), "'' || (" + allowed[nView].first + ")");
    const auto pWorkspace = openWorkspace(sPath);
    for (std::size_t nView = 0; nView < allowed.size(); ++nView) {
        const auto values = texts(*pWorkspace->openTable("v" + std::to_string(nView)), "V");
        ASSERT_FALSE(values.empty());
        // The older library knows no such shape and writes nothing for it.
        EXPECT_EQ(values.front().find("EMPTY") == std::string::npos ? values.front() : allowed[nView].second,
                  nView == 0 && values.front().empty() ? "" : allowed[nView].second)
            << allowed[nView].first;
    }
}

TEST_P(FunctionsOf, ChecksOfTablesAreNotRun) {
    alter(sPath, "CREATE TABLE checked (a INTEGER); INSERT INTO checked VALUES (1)");
    redefine(sPath, "checked", "CREATE TABLE checked (a INTEGER CHECK (EnablePause() + Pause()))");
    for (const char* pPragma : {"pragma_integrity_check", "pragma_quick_check"}) {
        const host::GisQueryFilter filter{"(SELECT count(*) FROM " + std::string(pPragma) + ") > 0"};
        const auto pRoads = openWorkspace(sPath)->openTable("roads");
        EXPECT_NE(failureOf([&] { static_cast<void>(pRoads->search(&filter)); }), "") << pPragma;
    }
}

TEST_P(FunctionsOf, TheViewAroundAnotherIsRefusedToo) {
    addView("inner_view", "EnablePause()");
    alter(sPath, "CREATE VIEW outer_view AS SELECT N, V FROM inner_view");
    const host::GisQueryFilter filter{"N IN (SELECT N FROM outer_view)"};
    const auto pRoads = openWorkspace(sPath)->openTable("roads");
    EXPECT_THAT(failureOf([&] { static_cast<void>(pRoads->search(&filter)); }),
                HasSubstr("the function \"enablepause\" is not allowed"));
}

TEST_P(FunctionsOf, OtherFilesDoNotComeInBySystemTables) {
    const std::string sTable = isGeoPackage() ? "gpkg_geometry_columns" : "geometry_columns";
    const std::string sOther = folder.write("other.csv", "f_table_name,f_geometry_column\nroads,geom\n");
    alter(sPath, "DROP TABLE " + sTable + "; PRAGMA writable_schema = ON; INSERT INTO sqlite_master VALUES " +
                     "('table', '" + sTable + "', '" + sTable + "', 0, 'CREATE VIRTUAL TABLE " + sTable +
                     " USING VirtualText(''" + sOther + "'', ''UTF-8'', 1, POINT, NONE, '','')')");
    EXPECT_THAT(failureOf([&] { static_cast<void>(roads()); }),
                HasSubstr("\"" + sTable + "\" is none that keeps its rows itself"));
}

TEST_P(FunctionsOf, NothingRunsWhileTheFileIsOpened) {
    const std::string sTable = isGeoPackage() ? "gpkg_contents" : "geometry_columns";
    alter(sPath, "ALTER TABLE " + sTable + " RENAME TO kept; CREATE VIEW " + sTable +
                     " AS SELECT * FROM kept WHERE EnablePause() + Pause() IS NOT NULL");
    // Whatever the driver makes of it, the process does not stop.
    failureOf([&] { static_cast<void>(roads()); });
}

TEST_P(FunctionsOf, GeneratedColumnsOfSystemTablesAreNotRead) {
    const std::string sTable = isGeoPackage() ? "gpkg_contents" : "geometry_columns";
    alter(sPath, "ALTER TABLE " + sTable + " ADD COLUMN made TEXT AS (EnablePause() + Pause())");
    EXPECT_THAT(failureOf([&] { static_cast<void>(roads()); }),
                HasSubstr("\"" + sTable + "\" is none that keeps its rows itself"));
}

} // namespace
} // namespace halvane::tests
