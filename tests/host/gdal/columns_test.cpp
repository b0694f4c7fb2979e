#include "DescribedRows.h"
#include "SampleData.h"

#include "host/Geometry.h"
#include "host/Workspace.h"
#include "host/gdal/rows/ColumnBatch.h"
#include "host/gdal/source/Drivers.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <dirent.h>
#include <fstream>
#include <random>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;

// Long enough for reading by columns, and not a whole number of batches.
constexpr int lRows = 12'123;

void addColumn(OGRLayer& layer, const char* pName, OGRFieldType type, OGRFieldSubType subType = OFSTNone) {
    OGRFieldDefn field(pName, type);
    field.SetSubType(subType);
    layer.CreateField(&field);
}

class RandomTable {
public:
    explicit RandomTable(unsigned int lSeed) : random_(lSeed) {}

    std::string make(const TemporaryFolder& folder) {
        host::gdal::prepareLibrary();
        const std::string sPath = folder.file("long.gpkg");
        const GDALDatasetUniquePtr pDataset(GetGDALDriverManager()->GetDriverByName("GPKG")->Create(
            sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRLayer& layer = *pDataset->CreateLayer("long", nullptr, wkbUnknown, nullptr);
        addColumn(layer, "I", OFTInteger);
        addColumn(layer, "S", OFTInteger, OFSTInt16);
        addColumn(layer, "B", OFTInteger, OFSTBoolean);
        addColumn(layer, "L", OFTInteger64);
        addColumn(layer, "R", OFTReal);
        addColumn(layer, "F", OFTReal, OFSTFloat32);
        addColumn(layer, "T", OFTString);
        addColumn(layer, "X", OFTBinary);
        addColumn(layer, "D", OFTDate);
        addColumn(layer, "M", OFTDateTime);
        pDataset->StartTransaction();
        for (int lRow = 0; lRow < lRows; ++lRow) {
            OGRFeature feature(layer.GetLayerDefn());
            fill(feature);
            EXPECT_EQ(layer.CreateFeature(&feature), OGRERR_NONE);
        }
        pDataset->CommitTransaction();
        return sPath;
    }

private:
    bool oneIn(unsigned int lTimes) { return random_() % lTimes == 0; }

    void fill(OGRFeature& feature) {
        const auto maybe = [&](const auto& set) {
            if (oneIn(7))
                return;
            set();
        };
        const auto whole = [&] { return static_cast<int>(random_()); };
        maybe([&] { feature.SetField("I", oneIn(20) ? std::numeric_limits<int>::min() : whole()); });
        maybe([&] { feature.SetField("S", whole() % 32768); });
        maybe([&] { feature.SetField("B", whole() & 1); });
        maybe([&] { feature.SetField("L", GIntBig{whole()} * 4'000'000'007); });
        maybe([&] {
            feature.SetField("R", oneIn(30) ? std::numeric_limits<double>::max()
                                            : std::ldexp(whole(), whole() % 900));
        });
        maybe([&] { feature.SetField("F", static_cast<double>(static_cast<float>(whole()) / 7.0F)); });
        maybe([&] { feature.SetField("T", text().c_str()); });
        maybe([&] {
            const std::string sBytes = text() + '\0' + text();
            feature.SetField(feature.GetFieldIndex("X"), static_cast<int>(sBytes.size()), sBytes.data());
        });
        maybe([&] { feature.SetField("D", 1 + number(9999), 1 + number(12), 1 + number(28)); });
        maybe([&] {
            feature.SetField("M", 1 + number(9999), 1 + number(12), 1 + number(28), number(24), number(60),
                             static_cast<float>(number(60)) + (oneIn(3) ? 0.5F : 0.0F), 100);
        });
        maybe([&] { setShape(feature); });
    }

    int number(int lBelow) { return static_cast<int>(random_() % static_cast<unsigned int>(lBelow)); }

    std::string text() {
        static const std::vector<std::string> aPieces{
            "",    " ",        "a",    "\xC3\xA4", "\xF0\x9F\x8C\x8D",   "'", "\n",
            "<&>", "\xFF\xFE", "\x01", "1",        "long long long text"};
        std::string sText;
        for (int lPiece = number(6); lPiece > 0; --lPiece)
            sText += aPieces[random_() % aPieces.size()];
        return sText;
    }

    void setShape(OGRFeature& feature) {
        static const std::vector<const char*> aShapes{"POINT EMPTY",
                                                      "POINT Z (1 2 3)",
                                                      "POINT M (1 2 4)",
                                                      "POLYGON EMPTY",
                                                      "MULTIPOINT ((1 2),(3 4))",
                                                      "LINESTRING ZM (0 0 1 2,5 5 6 7)",
                                                      "POLYGON ((0 0,9 0,9 9,0 0),(1 1,2 1,2 2,1 1))",
                                                      "CIRCULARSTRING (0 0,1 1,2 0)",
                                                      "GEOMETRYCOLLECTION (POINT (1 1),LINESTRING (0 0,1 1))",
                                                      "MULTIPOLYGON (((0 0,1 0,1 1,0 0)))"};
        OGRGeometry* pGeometry = nullptr;
        const std::string sPoint =
            "POINT (" + std::to_string(number(1000)) + " " + std::to_string(number(9)) + ")";
        OGRGeometryFactory::createFromWkt(oneIn(2) ? sPoint.c_str() : aShapes[random_() % aShapes.size()],
                                          nullptr, &pGeometry);
        feature.SetGeometryDirectly(pGeometry);
    }

    std::mt19937 random_;
};

// A clause that every row satisfies is read row by row.
constexpr const char* pEveryRow = "coalesce(T, '') = coalesce(T, '')";

Outcome readAll(const std::string& sPath, const char* pWhere) {
    const host::GisQueryFilter filter{pWhere == nullptr ? "" : pWhere};
    return tests::readAll(
        *openWorkspace(sPath)->openTable("long")->search(pWhere == nullptr ? nullptr : &filter));
}

std::size_t threadCount() {
    std::size_t nCount = 0;
    DIR* pFolder = opendir("/proc/self/task");
    while (const dirent* pEntry = readdir(pFolder))
        nCount += pEntry->d_name[0] == '.' ? 0 : 1;
    closedir(pFolder);
    return nCount;
}

class Columns : public ::testing::TestWithParam<unsigned int> {
protected:
    [[nodiscard]] bool areRead() const {
        return readsColumns(*openWorkspace(sPath)->openTable("long")->search(nullptr), 1100);
    }
    void change(const std::string& sAssignment, int lId) const {
        runSql(sPath, {"UPDATE \"long\" SET " + sAssignment + " WHERE fid = " + std::to_string(lId)});
    }

    TemporaryFolder folder;
    std::string sPath = RandomTable(GetParam()).make(folder);
};

INSTANTIATE_TEST_SUITE_P(Seeds, Columns, ::testing::Values(1U, 2U));

TEST_P(Columns, YieldTheRowsThatTheRowLoopYields) {
    ASSERT_TRUE(areRead());
    const Outcome rows = readAll(sPath, pEveryRow);
    EXPECT_EQ(rows.rows.size(), std::size_t{lRows});
    expectSame(readAll(sPath, nullptr), rows);
}

using OddColumns = Columns;
INSTANTIATE_TEST_SUITE_P(Seed, OddColumns, ::testing::Values(3U));

// What another program may have stored, whatever the column's type says.
TEST_P(OddColumns, YieldTheRowsThatTheRowLoopYieldsWhateverIsStored) {
    const std::vector<std::string> aOdd{"I = 'abc'",
                                        "I = 3000000000",
                                        "I = 1.5",
                                        "S = 70000",
                                        "S = 'x'",
                                        "B = 5",
                                        "B = 'yes'",
                                        "L = 1e300",
                                        "R = 'text'",
                                        "F = 1e300",
                                        "T = 12",
                                        "T = x'6100FF'",
                                        "T = 'a' || char(0) || 'b'",
                                        "X = 'text'",
                                        "X = 17",
                                        "geom = CAST(x'475001' || substr(geom, 4) AS BLOB)"};
    int lId = 2000;
    for (const std::string& sAssignment : aOdd)
        change(sAssignment, lId += 100);
    ASSERT_TRUE(areRead());
    expectSame(readAll(sPath, nullptr), readAll(sPath, pEveryRow));
}

// The rows around an identifier, and how many there are in all.
Outcome readAround(const std::string& sPath, const std::string& sWhere, std::int64_t lId) {
    Outcome outcome;
    outcome.sFailure = failureOf([&] {
        const host::GisQueryFilter filter{sWhere};
        const auto pCursor =
            openWorkspace(sPath)->openTable("long")->search(sWhere.empty() ? nullptr : &filter);
        while (const auto pRow = pCursor->nextRow()) {
            if (std::abs(pRow->objectId() - lId) <= 5)
                outcome.rows.push_back(describe(*pRow));
        }
    });
    return outcome;
}

TEST_P(OddColumns, YieldTheRowsThatTheRowLoopYieldsWhereDatesAreOdd) {
    int lId = 11'900;
    for (const char* pAssignment :
         {"M = '2020-01-02T03:04:05+02:00'", "M = '2020-01-02T23:59:60Z'", "M = '2020-01-02'", "M = 7",
          "M = '2020-13-02T03:04:05Z'", "D = '2020-02-30'", "D = '2020/01/02'", "D = 'never'",
          "D = '2020-01-02T03:04:05Z'", "D = '0000-00-00'", "geom = x'00'", "geom = 'text'",
          "geom = x'4750000100000000010100'"}) {
        change(pAssignment, lId);
        const std::string sAround =
            "fid BETWEEN " + std::to_string(lId - 5) + " AND " + std::to_string(lId + 5);
        const Outcome rows = readAround(sPath, sAround, lId);
        const Outcome columns = readAround(sPath, {}, lId);
        EXPECT_EQ(rows.rows.size(), 11U);
        EXPECT_EQ(columns.rows, rows.rows) << pAssignment;
        EXPECT_EQ(columns.sFailure, "") << pAssignment;
        EXPECT_EQ(rows.sFailure, "") << pAssignment;
        lId -= 800;
    }
}

TEST_P(OddColumns, GoOnRowByRowBehindAGapInTheIdentifiers) {
    // The registered number of rows is what is trusted first.
    runSql(sPath, {"DELETE FROM \"long\" WHERE fid IN (9000, 9001)",
                   "UPDATE gpkg_ogr_contents SET feature_count = " + std::to_string(lRows)});
    ASSERT_TRUE(areRead());
    const Outcome rows = readAll(sPath, pEveryRow);
    EXPECT_EQ(rows.rows.size(), std::size_t{lRows - 2});
    expectSame(readAll(sPath, nullptr), rows);
}

TEST_P(OddColumns, FailWhereTheRowLoopFails) {
    std::fstream file(sPath, std::ios::in | std::ios::out | std::ios::binary);
    file.seekg(0, std::ios::end);
    const auto lPages = static_cast<std::int64_t>(file.tellg()) / 4096;
    for (std::int64_t lPage = lPages / 2; lPage < lPages / 2 + 4; ++lPage) {
        file.seekp(lPage * 4096);
        file << std::string(4096, '\xA5');
    }
    file.close();
    ASSERT_TRUE(areRead());
    const Outcome rows = readAll(sPath, "fid > 0");
    const Outcome columns = readAll(sPath, nullptr);
    EXPECT_GT(rows.rows.size(), 2000U);
    EXPECT_LT(rows.rows.size(), std::size_t{lRows});
    expectSame(columns, rows);
    EXPECT_THAT(rows.sFailure, HasSubstr("malformed"));
    EXPECT_THAT(columns.sFailure, HasSubstr("malformed"));
}

TEST_P(OddColumns, LeaveNoThreadWhenTheirCursorGoesInTheMiddle) {
    const auto pTable = openWorkspace(sPath)->openTable("long");
    const std::size_t nBefore = threadCount();
    for (const int lRowCount : {1100, 1101, 3000, 6000, lRows}) {
        auto pCursor = pTable->search(nullptr);
        EXPECT_TRUE(readsColumns(*pCursor, lRowCount) || lRowCount == lRows);
        pCursor.reset();
        EXPECT_EQ(threadCount(), nBefore) << lRowCount;
    }
    EXPECT_EQ(readAll(sPath, nullptr).rows.size(), std::size_t{lRows});
}

TEST_P(OddColumns, AreNotReadForAFewRowsNorWithAFilter) {
    const auto pTable = openWorkspace(sPath)->openTable("long");
    EXPECT_FALSE(readsColumns(*pTable->search(nullptr), 200));
    const host::GisQueryFilter filter{pEveryRow};
    EXPECT_FALSE(readsColumns(*pTable->search(&filter), 3000));
}

// The rows that a filter leaves are read ahead too, one by one.
TEST_P(OddColumns, GiveWayToAThreadThatReadsFilteredRows) {
    const auto pTable = openWorkspace(sPath)->openTable("long");
    const host::GisQueryFilter filter{pEveryRow};
    const std::size_t nBefore = threadCount();
    auto pCursor = pTable->search(&filter);
    EXPECT_FALSE(readsColumns(*pCursor, 900));
    EXPECT_EQ(threadCount(), nBefore);
    EXPECT_FALSE(readsColumns(*pCursor, 500));
    EXPECT_EQ(threadCount(), nBefore + 1);
    pCursor.reset();
    EXPECT_EQ(threadCount(), nBefore);
}

TEST_P(OddColumns, AreReadWhereIdentifiersHaveGapsAndTheDatabaseHasALog) {
    runSql(sPath, {"DELETE FROM \"long\" WHERE fid % 3 = 0", "PRAGMA journal_mode = wal"});
    ASSERT_TRUE(areRead());
    const Outcome rows = readAll(sPath, pEveryRow);
    EXPECT_EQ(rows.rows.size(), std::size_t{lRows - lRows / 3});
    expectSame(readAll(sPath, nullptr), rows);
}

// A covering index must not decide the order.
TEST_P(OddColumns, KeepTheOrderOfTheKeyBesideAnIndex) {
    runSql(sPath, {"CREATE INDEX every ON \"long\" (R, I, S, B, L, F, T, X, D, M, geom)", "ANALYZE"});
    ASSERT_TRUE(areRead());
    expectSame(readAll(sPath, nullptr), readAll(sPath, pEveryRow));
}

// The rows do not stand in the order of such a key.
TEST_P(OddColumns, AreNotReadByAKeyWithAnIndexOfItsOwn) {
    runSql(
        sPath,
        {"CREATE TABLE other (fid INTEGER PRIMARY KEY DESC NOT NULL, geom GEOMETRY, I MEDIUMINT, S SMALLINT, "
         "B BOOLEAN, L INTEGER, R REAL, F FLOAT, T TEXT, X BLOB, D DATE, M DATETIME)",
         "INSERT INTO other SELECT * FROM \"long\" ORDER BY fid * 7919 % 12157", "DROP TABLE \"long\"",
         "ALTER TABLE other RENAME TO \"long\""});
    EXPECT_FALSE(areRead());
    const Outcome rows = readAll(sPath, pEveryRow);
    EXPECT_EQ(rows.rows.size(), std::size_t{lRows});
    expectSame(readAll(sPath, nullptr), rows);
}

// Wherever it stands, near the end of the data or far from it.
TEST_P(OddColumns, LeaveAShapeThatCannotBeReadOutOfItsRow) {
    for (const int lId : {1100, 2700, 9000, lRows - 3, lRows})
        change("geom = x'00'", lId);
    for (const char* pWhere : {pEveryRow, static_cast<const char*>(nullptr)}) {
        const Outcome outcome = readAll(sPath, pWhere);
        EXPECT_EQ(outcome.rows.size(), std::size_t{lRows});
        EXPECT_EQ(outcome.sFailure, "");
        EXPECT_THAT(outcome.rows.back(), HasSubstr("no shape"));
    }
}

TEST_P(OddColumns, AreOfNoUseInAQuery) {
    EXPECT_THAT(failureOf([&] { static_cast<void>(readAll(sPath, "halvane_collect_columns(1) > 0")); }),
                HasSubstr("halvane_collect"));
}

TEST_P(OddColumns, KeepTheValuesOfARowThatSomebodyHolds) {
    auto pCursor = openWorkspace(sPath)->openTable("long")->search(nullptr);
    const Outcome rows = readAll(sPath, pEveryRow);
    std::vector<host::GisRowPtr> held;
    for (std::size_t nRow = 0; const auto pRow = pCursor->nextRow(); ++nRow) {
        if (nRow % 1500 == 1499)
            held.push_back(pRow);
    }
    pCursor.reset();
    ASSERT_EQ(held.size(), 8U);
    for (std::size_t nHeld = 0; nHeld < held.size(); ++nHeld) {
        EXPECT_EQ(describe(*held[nHeld]), rows.rows[nHeld * 1500 + 1499]);
    }
}

TEST_P(OddColumns, UseARowAgainThatNobodyHolds) {
    const auto pCursor = openWorkspace(sPath)->openTable("long")->search(nullptr);
    ASSERT_TRUE(readsColumns(*pCursor, 2000));
    const host::GisRow* pFirst = pCursor->nextRow().get();
    EXPECT_EQ(pCursor->nextRow().get(), pFirst);
}

TEST_P(OddColumns, AreNotReadThroughAView) {
    runSql(sPath,
           {"ALTER TABLE \"long\" RENAME TO \"stored\"", "CREATE VIEW \"long\" AS SELECT * FROM \"stored\"",
            "INSERT OR REPLACE INTO gpkg_ogr_contents VALUES ('long', " + std::to_string(lRows) + ")"});
    EXPECT_FALSE(areRead());
    EXPECT_EQ(readAll(sPath, nullptr).rows.size(), std::size_t{lRows});
}

TEST_P(OddColumns, SeeOneStateOfTheDataFromTheFirstRowToTheLast) {
    const auto pCursor = openWorkspace(sPath)->openTable("long")->search(nullptr);
    ASSERT_TRUE(readsColumns(*pCursor, 1100));
    const CPLErrorHandlerPusher quiet(&CPLQuietErrorHandler);
    CPLSetConfigOption("SQLITE_BUSY_TIMEOUT", "10");
    runSql(sPath, {"UPDATE \"long\" SET T = 'changed'"});
    CPLSetConfigOption("SQLITE_BUSY_TIMEOUT", nullptr);
    const std::vector<std::string> all = texts(*pCursor, "T");
    EXPECT_EQ(all.size(), std::size_t{lRows - 1100});
    EXPECT_THAT(all, ::testing::Not(::testing::Contains("changed")));
}

} // namespace
} // namespace halvane::tests
