#include "SampleData.h"

#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"
#include "host/gdal/source/Drivers.h"

#include <cpl_string.h>
#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// The points "places" with the unique N, in another order than the key: 1 is 50, 2 is 20, 3 is 40, ...
std::string makePlaces(const TemporaryFolder& folder, const std::string& sFormat) {
    const std::string sRows = "WKT,N,KIND\n"
                              "POINT (0 1),50,b\nPOINT (0 2),20,a\nPOINT (0 3),40,b\nPOINT (0 4),10,a\n"
                              "POINT (0 5),30,b\n";
    folder.write("places.csvt", "WKT,Integer,String");
    const std::string sCsv = folder.write("places.csv", sRows);
    return convert(sCsv, folder.file(sFormat == "GPKG" ? "places.gpkg" : "places.sqlite"), sFormat);
}

class OrderOf : public ::testing::TestWithParam<const char*> {
protected:
    void run(const std::vector<std::string>& statements) const { runSql(sPath, statements); }
    [[nodiscard]] host::GisFeatureClassPtr places() const {
        return openWorkspace(sPath)->openFeatureClass("places");
    }

    TemporaryFolder folder;
    std::string sPath = makePlaces(folder, GetParam());
};

INSTANTIATE_TEST_SUITE_P(Databases, OrderOf, ::testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(OrderOf, RowsIsThatOfTheirKeyWhetherShapesAreReadOrNot) {
    run({"CREATE UNIQUE INDEX few ON places (n, kind, wkt)"});
    EXPECT_THAT(texts(*places()->searchWithoutShapes(), "N"), ElementsAre("50", "20", "40", "10", "30"));
    EXPECT_THAT(texts(*places(), "N"), ElementsAre("50", "20", "40", "10", "30"));
}

TEST_P(OrderOf, RowsIsThatOfTheirKeyAlthoughAnIndexServesTheFilter) {
    run({"CREATE INDEX numbers ON places (n)", "CREATE INDEX kinds ON places (kind, n)"});
    EXPECT_THAT(texts(*places(), "N", "N < 45"), ElementsAre("20", "40", "10", "30"));
    EXPECT_THAT(texts(*places(), "N", "KIND = 'b'"), ElementsAre("50", "40", "30"));
    EXPECT_THAT(texts(*places(), "N", "N = 10 OR N = 50"), ElementsAre("50", "10"));
}

TEST_P(OrderOf, SelectedRowsIsThatOfTheirKeyAlthoughAnIndexServesTheClause) {
    run({"CREATE INDEX numbers ON places (n)"});
    const auto pHost = host::gdal::GdalHost::create();
    const auto pDocument = pHost->openMapDocument(sPath);
    pHost->selectFeatures(pDocument, "places", "N < 45");
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
    EXPECT_THAT(texts(*pLayer->searchSelection(), "N"), ElementsAre("20", "40", "10", "30"));
}

TEST_P(OrderOf, ClauseThatIsAskedAgainStaysTheSame) {
    run({"CREATE INDEX kinds ON places (kind, n)"});
    const auto pPlaces = places();
    for (int lTime = 0; lTime < 3; ++lTime) {
        EXPECT_THAT(texts(*pPlaces, "N", "KIND='b'"), ElementsAre("50", "40", "30"));
    }
}

TEST_P(OrderOf, ClauseEndsInsideItsBrackets) {
    EXPECT_NE(failureOf([&] { texts(*places(), "N", "N > 0 ORDER BY N"); }), "");
    EXPECT_NE(failureOf([&] { texts(*places(), "N", "N > 0 LIMIT 1"); }), "");
    EXPECT_THAT(failureOf([&] { texts(*places(), "N", "NOFIELD > 0"); }),
                HasSubstr("no such column: NOFIELD"));
}

// A view that orders its rows by the kind, and one whose rows come as they may.
class OrderOfAView : public ::testing::TestWithParam<const char*> {
protected:
    OrderOfAView() {
        host::gdal::prepareLibrary();
        CPLStringList options;
        options.AddString("METADATA=NO");
        const bool bGeoPackage = std::string_view(GetParam()) == "GPKG";
        GDALDatasetUniquePtr pDataset(
            GetGDALDriverManager()
                ->GetDriverByName(GetParam())
                ->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, bGeoPackage ? nullptr : options.List()));
        pDataset->ExecuteSQL("CREATE TABLE plain (id INTEGER PRIMARY KEY, n INTEGER, kind TEXT)", nullptr,
                             nullptr);
        pDataset.reset();
        runSql(sPath, {"INSERT INTO plain VALUES (1, 50, 'b'), (2, 20, 'a'), (3, 40, 'b'), (4, 10, 'a'), "
                       "(5, 30, 'b')",
                       "CREATE INDEX numbers ON plain (n)", "CREATE INDEX kinds ON plain (kind, n DESC)",
                       "CREATE VIEW sorted AS SELECT 'x' || id AS code, n, kind FROM plain ORDER BY kind",
                       "CREATE VIEW plainly AS SELECT 'x' || id AS code, kind, n FROM plain"});
        if (bGeoPackage) {
            runSql(sPath, {"INSERT INTO gpkg_contents (table_name, data_type, identifier) VALUES ('sorted', "
                           "'attributes', 'sorted'), ('plainly', 'attributes', 'plainly')"});
        }
    }
    [[nodiscard]] std::vector<std::string> codes(const std::string& sView,
                                                 std::string_view sWhere = {}) const {
        return texts(*openWorkspace(sPath)->openTable(sView), "CODE", sWhere);
    }

    TemporaryFolder folder;
    std::string sPath = folder.file(std::string_view(GetParam()) == "GPKG" ? "views.gpkg" : "views.sqlite");
};

INSTANTIATE_TEST_SUITE_P(Databases, OrderOfAView, ::testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

// What a filter leaves of a list.
std::vector<std::string> without(std::vector<std::string> all, const std::string& sOne) {
    std::erase(all, sOne);
    return all;
}

TEST_P(OrderOfAView, StaysUnderAFilter) {
    for (const char* pView : {"sorted", "plainly"}) {
        const std::vector<std::string> all = codes(pView);
        ASSERT_EQ(all.size(), 5U);
        EXPECT_EQ(codes(pView, "N <> 30"), without(all, "x5"));
        EXPECT_EQ(codes(pView, "N > 10"), without(all, "x4"));
        EXPECT_EQ(codes(pView, "N < 50 AND KIND >= 'a'"), without(all, "x1"));
    }
}

TEST_P(OrderOfAView, ThatSortsIsItsOwn) {
    EXPECT_THAT(codes("sorted", "N > 15").front(), "x2");
    EXPECT_THAT(codes("sorted", "KIND = 'a'"), ::testing::UnorderedElementsAre("x2", "x4"));
}

TEST_P(OrderOfAView, ClauseEndsInsideItsBrackets) {
    EXPECT_NE(failureOf([&] { static_cast<void>(codes("sorted", "N > 0 THEN 1 WHEN N < 1")); }), "");
    EXPECT_THAT(failureOf([&] { static_cast<void>(codes("sorted", "NOFIELD > 0")); }),
                HasSubstr("no such column: NOFIELD"));
}

// Such a row has no identifier but its place among all rows.
TEST(OrderOfAViewWithoutIdentifiers, GivesASelectionItsRows) {
    const TemporaryFolder folder;
    const std::string sPath = makePlaces(folder, "GPKG");
    runSql(sPath,
           {"CREATE INDEX numbers ON places (n)",
            "CREATE VIEW seen AS SELECT 'x' || n AS code, n, geom_WKT AS geom FROM places",
            "INSERT INTO gpkg_contents (table_name, data_type, identifier) VALUES ('seen', 'features', "
            "'seen')",
            "INSERT INTO gpkg_geometry_columns VALUES ('seen', 'geom', 'POINT', 0, 0, 0)"});
    const auto pHost = host::gdal::GdalHost::create();
    const auto pDocument = pHost->openMapDocument(sPath);
    pHost->selectFeatures(pDocument, "seen", "N < 45");
    const auto pMap = pDocument->focusMap();
    for (std::int32_t lLayer = 0; lLayer < pMap->layerCount(); ++lLayer) {
        const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(lLayer));
        if (pLayer->name() == "seen") {
            EXPECT_THAT(texts(*pLayer->searchSelection(), "CODE"), ElementsAre("x20", "x40", "x10", "x30"));
            EXPECT_NE(failureOf([&] { pHost->selectFeatures(pDocument, "seen", "NOFIELD < 45"); }), "");
            return;
        }
    }
    FAIL() << "no layer of the view";
}

} // namespace
} // namespace halvane::tests
