// Needs a PostgreSQL database that may be written to: HALVANE_TEST_POSTGRES="host=... dbname=... user=...".

#include "SampleData.h"
#include "support/ProjectText.h"

#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <cstdlib>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class Server : public ::testing::Test {
protected:
    void SetUp() override {
        const char* pDatabase = std::getenv("HALVANE_TEST_POSTGRES");
        if (pDatabase == nullptr) {
            GTEST_SKIP() << "HALVANE_TEST_POSTGRES names no database";
        }
        sDatabase = "PG:" + std::string(pDatabase);
        runSql(sDatabase, {"DROP SCHEMA IF EXISTS halvane_test CASCADE", "CREATE SCHEMA halvane_test",
                           "CREATE TABLE halvane_test.roads (id int PRIMARY KEY, name text, n int)",
                           "INSERT INTO halvane_test.roads VALUES (1, 'a', 1), (2, 'b', 2), (3, 'c', 3)",
                           "UPDATE halvane_test.roads SET n = 10 WHERE id = 1",
                           "COMMENT ON COLUMN halvane_test.roads.name IS 'Road name'",
                           "CREATE TABLE halvane_test.notes (k int PRIMARY KEY, road int REFERENCES "
                           "halvane_test.roads(id) ON DELETE CASCADE, t text)"});
        const std::string sPath = folder.write(
            "map.xml", "<MapDocument><Connection name='Assets' database='" + sDatabase +
                           " password=hush'/><Map name='M'><Table connection='assets' "
                           "dataset='halvane_test.roads' filter='n &lt; 100'/></Map></MapDocument>");
        pTable = pHost->openMapDocument(sPath)->focusMap()->standaloneTable(0);
        ASSERT_NE(pTable, nullptr);
    }

    TemporaryFolder folder;
    std::string sDatabase;
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
    host::GisTablePtr pTable;
};

TEST_F(Server, GivesRowsInTheOrderOfTheirKey) {
    EXPECT_THAT(texts(*pTable, "name"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(texts(*pTable, "id", "n < 5"), ElementsAre("2", "3"));
}

TEST_F(Server, TellsAliasesAndWorkspaceWithoutThePassword) {
    EXPECT_EQ(pTable->fields()->field(0).name(), "id");
    EXPECT_EQ(pTable->fields()->field(1).aliasName(), "Road name");
    EXPECT_EQ(pTable->workspace()->typeCode(), 2);
    EXPECT_THAT(pTable->workspace()->pathName(), Not(HasSubstr("hush")));
}

TEST_F(Server, OfAProjectIsReadWhereThatIsAllowed) {
    pHost->allowConnections();
    const std::string sSource = sDatabase.substr(3) + " password='hush' key='id' checkPrimaryKeyUnicity='1' "
                                                      "table=\"halvane_test\".\"roads\" sql=\"n\" < 5";
    const auto pMap = pHost
                          ->openMapDocument(folder.write(
                              "city.qgs", test::projectText({{"Roads", sSource, "postgres", "",
                                                              "type='vector' geometry='No geometry'"}})))
                          ->focusMap();
    const auto pRoads = pMap->standaloneTable(0);
    ASSERT_NE(pRoads, nullptr) << pMap->layerCount();
    EXPECT_EQ(pRoads->datasetName(), "Roads");
    EXPECT_THAT(texts(*pRoads, "name"), ElementsAre("b", "c"));
    EXPECT_EQ(pRoads->workspace()->typeCode(), 2);
    EXPECT_THAT(pRoads->workspace()->pathName(), Not(HasSubstr("hush")));
}

TEST_F(Server, OfAProjectDoesNotTakeOneColumnOfShapesForAnother) {
    pHost->allowConnections();
    runSql(sDatabase, {"CREATE EXTENSION IF NOT EXISTS postgis",
                       "CREATE TABLE halvane_test.twofold (id int PRIMARY KEY, "
                       "a geometry(Point, 4326), b geometry(Point, 25832))",
                       "INSERT INTO halvane_test.twofold VALUES (1, ST_SetSRID(ST_Point(1, 2), 4326), "
                       "ST_SetSRID(ST_Point(3, 4), 25832))"});
    const auto source = [&](const char* pShapes) {
        return sDatabase.substr(3) + " key='id' table=\"halvane_test\".\"twofold\" (" + pShapes + ")";
    };
    const auto pMap =
        pHost
            ->openMapDocument(folder.write("city.qgs", test::projectText({{"A", source("a"), "postgres"},
                                                                          {"B", source("b"), "postgres"}})))
            ->focusMap();
    const auto classOf = [&](std::int32_t lLayer) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(lLayer))->featureClass();
    };
    EXPECT_EQ(texts(*classOf(0), "id").size(), 1U);
    EXPECT_THAT(
        failureOf([&] { static_cast<void>(classOf(1)); }),
        HasSubstr("its shapes are in the column \"b\" of \"halvane_test.twofold\", of whose columns of "
                  "shapes only \"a\" is read; make a view with that column alone"));
}

TEST_F(Server, RejectsABadFilterWithItsReason) {
    const host::GisQueryFilter filter{"nofield = 1"};
    EXPECT_THAT(failureOf([&] { static_cast<void>(pTable->search(&filter)); }),
                HasSubstr("column \"nofield\" does not exist"));
    EXPECT_EQ(texts(*pTable, "name").size(), 3U);
}

TEST_F(Server, RejectsAFilterOfAMapDocumentWithItsReasonAndPlace) {
    const auto rejected = [&](const char* sFilter) {
        const std::string sPath = folder.write(
            "bad.xml",
            "<MapDocument><Connection name='Assets' database='" + sDatabase +
                "'/><Map name='M'>\n<Table connection='assets' dataset='halvane_test.roads' filter='" +
                sFilter + "'/></Map></MapDocument>");
        const auto pDocument = pHost->openMapDocument(sPath);
        const auto pBad = pDocument->focusMap()->standaloneTable(0);
        EXPECT_THAT(failureOf([&] { static_cast<void>(pBad->search(nullptr)); }),
                    HasSubstr("bad.xml, line 2: The filter"));
        return pHost->problems(pDocument);
    };
    EXPECT_THAT(rejected("nofield = 1"),
                ElementsAre(HasSubstr("bad.xml, line 2: The filter \"nofield = 1\" is not valid for "
                                      "\"halvane_test.roads\": ERROR: column \"nofield\" does not exist")));
    EXPECT_EQ(texts(*pTable, "name").size(), 3U);
}

TEST_F(Server, KeepsNestedCursorsApart) {
    const auto pOuter = pTable->search(nullptr);
    std::size_t nRows = 0;
    while (pOuter->nextRow() != nullptr) {
        EXPECT_EQ(texts(*pTable, "name").size(), 3U);
        ++nRows;
    }
    EXPECT_EQ(nRows, 3U);
}

TEST_F(Server, IsReadAsItWasWhenItWasHeld) {
    const auto pHeld = pHost->holdServers();
    EXPECT_THAT(texts(*pTable, "name"), ElementsAre("a", "b", "c"));
    runSql(sDatabase,
           {"UPDATE halvane_test.roads SET name = 'z'", "DELETE FROM halvane_test.roads WHERE id = 3"});
    const auto pOuter = pTable->search(nullptr);
    while (pOuter->nextRow() != nullptr)
        EXPECT_THAT(texts(*pTable, "name"), ElementsAre("a", "b", "c"));
}

TEST_F(Server, IsReadAsItIsAgainOnceItIsHeldNoMore) {
    auto pHeld = pHost->holdServers();
    EXPECT_THAT(texts(*pTable, "name"), ElementsAre("a", "b", "c"));
    runSql(sDatabase, {"UPDATE halvane_test.roads SET name = 'z'"});
    pHeld.reset();
    EXPECT_THAT(texts(*pTable, "name"), ElementsAre("z", "z", "z"));
    pHeld = pHost->holdServers();
    EXPECT_THAT(texts(*pTable, "name"), ElementsAre("z", "z", "z"));
}

TEST_F(Server, IsReadOnAfterAStatementThatFailed) {
    const auto pHeld = pHost->holdServers();
    const host::GisQueryFilter filter{"nofield = 1"};
    EXPECT_THAT(failureOf([&] { static_cast<void>(pTable->search(&filter)); }),
                HasSubstr("column \"nofield\" does not exist"));
    EXPECT_THAT(texts(*pTable, "name"), ElementsAre("a", "b", "c"));
}

TEST_F(Server, IsNotChangedByWhatIsReadOfIt) {
    runSql(sDatabase, {"CREATE SEQUENCE halvane_test.counter",
                       "CREATE VIEW halvane_test.counted AS SELECT nextval('halvane_test.counter') AS n"});
    const auto pNewHost = host::gdal::GdalHost::create(); // the other knows its tables already
    const auto pCounted = pNewHost->openMapDocument(folder.file("map.xml"))
                              ->focusMap()
                              ->standaloneTable(0)
                              ->workspace()
                              ->openTable("halvane_test.counted");
    EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pCounted, "n")); }),
                HasSubstr("read-only transaction"));
}

TEST_F(Server, FindsRowsOfOneKeyAfterTheOtherByReadingThemOnce) {
    runSql(sDatabase, {"INSERT INTO halvane_test.notes VALUES (9, 1, 'x'), (3, 2, 'y'), (1, 1, 'Y')",
                       "UPDATE halvane_test.notes SET t = 'w' WHERE k = 1"});
    const auto pNotes = pTable->workspace()->openTable("halvane_test.notes");
    const auto pHeld = pHost->holdServers();
    const auto ofRoad = [&](const std::string& sRoad) { return texts(*pNotes, "k", "road=" + sRoad); };
    const auto ofText = [&](const std::string& sText) { return texts(*pNotes, "k", "t='" + sText + "'"); };
    EXPECT_THAT(ofRoad("2"), ElementsAre("3"));
    EXPECT_THAT(ofText("y"), ElementsAre("3"));
    EXPECT_THAT(ofRoad("1"), ElementsAre("1", "9"));
    EXPECT_THAT(ofText("x"), ElementsAre("9"));
    runSql(sDatabase,
           {"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> pg_backend_pid()"});
    EXPECT_THAT(ofRoad("1"), ElementsAre("1", "9"));
    EXPECT_THAT(ofRoad("7"), ElementsAre());
    EXPECT_THAT(ofText("w"), ElementsAre("1"));
    EXPECT_THAT(ofText("Y"), ElementsAre());
}

TEST_F(Server, IsLeftInNoTransactionOnceItIsHeldNoMore) {
    const auto pRoads = pTable->workspace()->openTable("halvane_test.roads");
    auto pHeld = pHost->holdServers();
    for (const char* pNumber : {"2", "3", "10"})
        EXPECT_EQ(texts(*pRoads, "name", "n=" + std::string(pNumber)).size(), 1U);
    pHeld.reset();
    runSql(sDatabase,
           {"CREATE TABLE halvane_test.open AS SELECT pid, query FROM pg_stat_activity WHERE state LIKE "
            "'idle in transaction%'"});
    const auto pNewHost = host::gdal::GdalHost::create();
    EXPECT_THAT(texts(*pNewHost->openMapDocument(folder.file("map.xml"))
                           ->focusMap()
                           ->standaloneTable(0)
                           ->workspace()
                           ->openTable("halvane_test.open"),
                      "query"),
                ElementsAre());
}

TEST_F(Server, IsLostWithTheConnectionThatFailed) {
    const auto pRoads = pTable->workspace()->openTable("halvane_test.roads");
    const auto pHeld = pHost->holdServers();
    {
        const auto pCursor = pRoads->search(nullptr);
        // The connection that holds the state is not among those that read.
        runSql(sDatabase,
               {"CREATE TABLE halvane_test.ended AS SELECT pg_terminate_backend(pid) FROM pg_locks "
                "WHERE relation = 'halvane_test.roads'::regclass AND pid <> pg_backend_pid()"});
        EXPECT_EQ(pHost->lostServer(), "");
    }
    EXPECT_NE(pHost->lostServer(), "");
}

TEST_F(Server, TellsItsForeignKeys) {
    const auto pClasses = pTable->workspace()->relationshipClasses();
    host::GisRelationshipClassPtr pFound;
    while (const auto pClass = pClasses->next())
        pFound = pClass->destinationClassName() == "halvane_test.notes" ? pClass : pFound;
    ASSERT_NE(pFound, nullptr);
    EXPECT_EQ(pFound->name(), "notes_road_fkey");
    EXPECT_EQ(pFound->originClassName(), "halvane_test.roads");
    EXPECT_EQ(pFound->originPrimaryKey(), "id");
    EXPECT_EQ(pFound->originForeignKey(), "road");
    EXPECT_TRUE(pFound->isComposite());
}

TEST_F(Server, IsReachedByTheConnectionsNameFromALocation) {
    const auto pFactory = pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default);
    EXPECT_EQ(texts(*pFactory->openFromFile("ASSETS", 0)->openTable("halvane_test.roads"), "name").size(),
              3U);
    EXPECT_THAT(failureOf([&] { static_cast<void>(pFactory->openFromFile(sDatabase, 0)); }),
                HasSubstr("is refused"));
}

} // namespace
} // namespace halvane::tests
