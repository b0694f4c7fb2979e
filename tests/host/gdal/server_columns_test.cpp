// Needs a PostgreSQL database with PostGIS that may be written to: HALVANE_TEST_POSTGRES="host=... dbname=...
// user=...".

#include "DescribedRows.h"
#include "SampleData.h"

#include "host/Map.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;

constexpr int lRows = 5'123; // behind the rows that are read one by one, and not a whole number of batches

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): all that a plain function can look at
std::atomic<bool> bEnd = false;

bool ends() noexcept {
    return bEnd;
}

class ServerColumns : public ::testing::Test {
protected:
    void SetUp() override {
        const char* pDatabase = std::getenv("HALVANE_TEST_POSTGRES");
        if (pDatabase == nullptr)
            GTEST_SKIP() << "HALVANE_TEST_POSTGRES names no database";
        sDatabase = "PG:" + std::string(pDatabase);
        run({"CREATE EXTENSION IF NOT EXISTS postgis", "DROP SCHEMA IF EXISTS halvane_long CASCADE",
             "CREATE SCHEMA halvane_long"});
    }
    ~ServerColumns() override {
        host::gdal::GdalHost::endWhen(nullptr);
        bEnd = false;
    }

    void run(const std::vector<std::string>& statements) const { runSql(sDatabase, statements); }

    /// A table "long" with a key and the columns given, whose values are computed from the row's number i.
    void make(const std::string& sColumns, const std::string& sValues, int lCount = lRows) const {
        run({"CREATE TABLE halvane_long.long (id int PRIMARY KEY, " + sColumns + ")",
             "INSERT INTO halvane_long.long SELECT i, " + sValues + " FROM generate_series(" +
                 std::to_string(lCount) + ", 1, -1) AS i"});
    }

    [[nodiscard]] host::GisTablePtr open(const std::string& sOptions = {}, const std::string& sFilter = {}) {
        pHost = host::gdal::GdalHost::create();
        const std::string sPath = folder.write(
            "map.xml", "<MapDocument><Connection name='Server' database='" + sDatabase + " " + sOptions +
                           "'/><Map name='M'><Table connection='Server' dataset='halvane_long.long' " +
                           (sFilter.empty() ? "" : "filter='" + sFilter + "'") + "/></Map></MapDocument>");
        const auto pTable = pHost->openMapDocument(sPath)->focusMap()->standaloneTable(0);
        return sFilter.empty() ? pTable->workspace()->openTable("halvane_long.long") : pTable;
    }
    /// As the row loop reads them, since no state is held.
    [[nodiscard]] Outcome rowByRow() { return readAll(*open()->search(nullptr)); }
    [[nodiscard]] Outcome byColumns() {
        const auto pTable = open();
        const auto pHeld = pHost->holdServers();
        EXPECT_TRUE(readsColumns(*pTable->search(nullptr), 1100));
        return readAll(*pTable->search(nullptr));
    }
    void expectSameAsRowByRow() {
        const Outcome rows = rowByRow();
        EXPECT_EQ(rows.rows.size(), std::size_t{lRows});
        expectSame(byColumns(), rows);
    }

    TemporaryFolder folder;
    std::string sDatabase;
    std::shared_ptr<host::gdal::GdalHost> pHost;
};

TEST_F(ServerColumns, YieldTheNumbersThatTheRowLoopYields) {
    make("s smallint, i int, l bigint, r real, d double precision, b boolean, n numeric, c numeric(12,3), w "
         "numeric(6,0), v numeric(15,0)",
         "nullif(i % 32768 - 9000, 7), i * 400000 - 2000000000, i * 1e15::bigint, i / 7::real, CASE i % 3 "
         "WHEN 0 "
         "THEN pi() * 10::double precision ^ (i % 600 - 300) WHEN 1 THEN i / 100.0 END, i % 3 = 1, i / 7.0 * "
         "10::numeric "
         "^ (i % 40 - 20), i / 8.0, i, i * 1e11");
    expectSameAsRowByRow();
}

TEST_F(ServerColumns, YieldTheTextsThatTheRowLoopYields) {
    run({"CREATE TYPE halvane_long.mood AS ENUM ('sad', 'it''s \"well\"')",
         "CREATE DOMAIN halvane_long.letters AS text CHECK (VALUE <> '')",
         "CREATE DOMAIN halvane_long.mark AS int CHECK (VALUE > 0)"});
    make("t text, \"Odd \"\"name\"\" ä\" varchar(20), p char(8), m halvane_long.mood, u uuid, j json, k "
         "jsonb, a "
         "halvane_long.letters, q halvane_long.mark, x bytea, g int GENERATED ALWAYS AS (id * 2) STORED",
         "repeat('é<&> ', i % 50), CASE WHEN i % 5 > 0 THEN 'n ' || i END, 'p' || i % 100, (ARRAY['sad', "
         "'it''s "
         "\"well\"'])[i % 3]::halvane_long.mood, md5(i::text)::uuid, json_build_object('i', i), "
         "jsonb_build_array(i, "
         "'ü'), 'a' || i, i, decode(md5(i::text), 'hex')");
    expectSameAsRowByRow();
}

TEST_F(ServerColumns, YieldTheTimesThatTheRowLoopYields) {
    make(
        "d date, m timestamp, z timestamptz, f timestamp(0)",
        "CASE WHEN i % 7 > 0 THEN date '1000-01-01' + i * 641 END, timestamp '1800-01-01' + i * interval '17 "
        "days "
        "3:04:05.678901', timestamptz '1999-12-31 23:59:59.5+05:30' + i * interval '1 day 0.001s', timestamp "
        "'1950-01-01 23:59:59' + i * interval '9 days'");
    expectSameAsRowByRow();
}

TEST_F(ServerColumns, YieldTimesInTheZoneOfTheConnection) {
    make("z timestamptz", "timestamptz '2020-01-01 00:00:00+00' + i * interval '1 hour'");
    const std::string sOptions = "options=-cTimeZone=Asia/Kolkata";
    const Outcome rows = readAll(*open(sOptions)->search(nullptr));
    const auto pTable = open(sOptions);
    const auto pHeld = pHost->holdServers();
    EXPECT_TRUE(readsColumns(*pTable->search(nullptr), 1100));
    expectSame(readAll(*pTable->search(nullptr)), rows);
}

class ServerShapes : public ServerColumns, public ::testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(
    Shapes, ServerShapes,
    ::testing::Values("ST_MakePoint(i / 7.0, -i)", "ST_MakePoint(i, 2, i / 3.0)", "ST_MakePointM(i, 2, i)",
                      "ST_MakePoint(i, 2, 3, i)", "ST_GeomFromText('POINT EMPTY', 4326)",
                      "ST_GeomFromText('MULTIPOINT(1 2,EMPTY,3 4)')",
                      "ST_MakeLine(ST_MakePoint(0, i), ST_MakePoint(i, 1))",
                      "ST_Buffer(ST_SetSRID(ST_MakePoint(i, 1), 25832), 10)",
                      "ST_GeomFromText('CURVEPOLYGON(CIRCULARSTRING(0 0,4 0,4 4,0 4,0 0))', 25832)",
                      "ST_GeomFromText('GEOMETRYCOLLECTION(POINT Z(1 2 3),LINESTRING Z(0 0 0,1 1 1))')",
                      "CASE WHEN i % 3 > 0 THEN ST_SetSRID(ST_MakePoint(i, 1), 4326) END"));

TEST_P(ServerShapes, AreThoseThatTheRowLoopYields) {
    make("n int, shape geometry", std::string("i, ") + GetParam());
    expectSameAsRowByRow();
}

TEST_F(ServerColumns, LeaveTypesToTheRowLoopThatTheyDoNotKnow) {
    make("n int, list int[], t timetz, v interval", "i, ARRAY[i, 2], timetz '10:00+02', interval '90 days'");
    const auto pTable = open();
    const auto pHeld = pHost->holdServers();
    EXPECT_FALSE(readsColumns(*pTable->search(nullptr), 1100));
    expectSame(readAll(*pTable->search(nullptr)), rowByRow());
}

TEST_F(ServerColumns, LeaveValuesToTheRowLoopThatTheyDoNotKnow) {
    make("d date",
         "CASE i WHEN 2000 THEN 'infinity' WHEN 3000 THEN '0044-03-15 BC' ELSE date '2020-01-01' + i END");
    expectSameAsRowByRow();
}

TEST_F(ServerColumns, TellOfAnInfiniteNumberWhereItStands) {
    make("d double precision", "CASE i WHEN 3000 THEN 'Infinity'::double precision ELSE i END");
    const Outcome rows = rowByRow();
    const Outcome columns = byColumns();
    EXPECT_EQ(rows.rows.size(), 2999U);
    EXPECT_EQ(columns.rows, rows.rows);
    EXPECT_THAT(columns.sFailure, HasSubstr("The number in \"d\" of row 3000 is infinite"));
}

TEST_F(ServerColumns, AreNotReadWhereNoStateIsHeld) {
    make("n int", "i");
    EXPECT_FALSE(readsColumns(*open()->search(nullptr), 1100));
}

TEST_F(ServerColumns, AreReadAsTheyWereWhenTheServerWasHeld) {
    make("n int", "i");
    const Outcome rows = rowByRow();
    const auto pTable = open();
    const auto pHeld = pHost->holdServers();
    EXPECT_TRUE(readsColumns(*pTable->search(nullptr), 1100));
    run({"UPDATE halvane_long.long SET n = -1", "DELETE FROM halvane_long.long WHERE id > 2000"});
    expectSame(readAll(*pTable->search(nullptr)), rows);
}

TEST_F(ServerColumns, AreReadByTheFilterOfTheMapAndThatOfTheReader) {
    make("n int", "i % 10");
    const auto pTable = open({}, "n &lt; 8 -- not all");
    const auto pHeld = pHost->holdServers();
    const host::GisQueryFilter filter{"n > 1 OR id < 5"};
    EXPECT_TRUE(readsColumns(*pTable->search(&filter), 1100));
    const auto numbers = texts(*pTable->search(&filter), "id");
    std::vector<std::string> expected;
    for (int i = 1; i <= lRows; ++i)
        if (i % 10 < 8 && (i % 10 > 1 || i < 5))
            expected.push_back(std::to_string(i));
    EXPECT_EQ(numbers, expected);
}

TEST_F(ServerColumns, AreReadInsideThoseOfOthers) {
    make("n int", "i");
    const auto pTable = open();
    const auto pHeld = pHost->holdServers();
    const auto pOuter = pTable->search(nullptr);
    for (int lRow = 1; lRow <= lRows; ++lRow) {
        ASSERT_EQ(pOuter->nextRow()->objectId(), lRow);
        if (lRow % 2000 == 0) {
            EXPECT_EQ(texts(*pTable->search(nullptr), "n").size(), std::size_t{lRows});
        }
    }
    EXPECT_EQ(pOuter->nextRow(), nullptr);
}

TEST_F(ServerColumns, AreFollowedByTheRowLoopWhereTheirConnectionIsLost) {
    constexpr int lMany = 50'000; // more than is read ahead
    make("n int", "i", lMany);
    const auto pTable = open();
    const auto pHeld = pHost->holdServers();
    const auto pRows = pTable->search(nullptr);
    ASSERT_TRUE(readsColumns(*pRows, 1100));
    run({"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE query LIKE 'FETCH % FROM "
         "halvane_rows'"});
    for (int lRow = 1101; lRow <= lMany; ++lRow)
        ASSERT_EQ(pRows->nextRow()->objectId(), lRow);
    EXPECT_EQ(pRows->nextRow(), nullptr);
}

// A minute's sleep at each row from a certain one on: the test would not come to its end.
constexpr const char* pSlowRows = "id < 2000 OR pg_sleep(60)::text = ''";

TEST_F(ServerColumns, AreNotWaitedForByWhoNeedsNoMore) {
    make("n int", "i");
    const auto pTable = open();
    const auto pHeld = pHost->holdServers();
    const host::GisQueryFilter filter{pSlowRows};
    EXPECT_TRUE(readsColumns(*pTable->search(&filter), 1100));
}

TEST_F(ServerColumns, EndWhereAnOrderlyEndIsAskedFor) {
    make("n int", "i");
    const auto pTable = open();
    const auto pHeld = pHost->holdServers();
    const host::GisQueryFilter filter{pSlowRows};
    const auto pRows = pTable->search(&filter);
    ASSERT_TRUE(readsColumns(*pRows, 1100));
    host::gdal::GdalHost::endWhen(&ends);
    bEnd = true;
    EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pRows, "n")); }), HasSubstr("canceling statement"));
}

TEST_F(ServerColumns, WriteNothing) {
    make("n int", "i");
    run({"CREATE SEQUENCE halvane_long.counter"});
    const auto pTable = open();
    const auto pHeld = pHost->holdServers();
    const host::GisQueryFilter filter{"id < 1200 OR nextval('halvane_long.counter') > 0"};
    EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pTable->search(&filter), "n")); }),
                HasSubstr("read-only transaction"));
}

} // namespace
} // namespace halvane::tests
