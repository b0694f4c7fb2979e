#include "SampleData.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;

// Name, origin with its keys, destination with its keys, cardinality.
std::vector<std::string> relationshipsOf(host::GisWorkspace& workspace) {
    std::vector<std::string> all;
    const auto pClasses = workspace.relationshipClasses();
    while (const auto pClass = pClasses->next()) {
        all.push_back(pClass->name() + ": " + pClass->originClassName() + "(" + pClass->originPrimaryKey() +
                      "," + pClass->originForeignKey() + ") " + pClass->destinationClassName() + "(" +
                      pClass->destinationPrimaryKey() + "," + pClass->destinationForeignKey() + ") " +
                      std::to_string(pClass->cardinality()) + (pClass->isComposite() ? " composite" : "") +
                      (pClass->isAttributed() ? " attributed" : ""));
    }
    return all;
}

const std::vector<std::string> aForeignKeys{
    "CREATE TABLE visits (id INTEGER PRIMARY KEY, road INTEGER REFERENCES roads(fid) ON DELETE CASCADE, "
    "sign INTEGER REFERENCES signs, other INTEGER REFERENCES roads(fid))",
    "CREATE TABLE pairs (id INTEGER PRIMARY KEY, a INTEGER, b INTEGER, FOREIGN KEY (a, b) REFERENCES "
    "notes(ROAD, "
    "TEXT))"};

TEST(RelationshipsOfGeoPackage, AreItsForeignKeysInTheirOrder) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity, aForeignKeys);
    EXPECT_THAT(relationshipsOf(*openWorkspace(sCity)),
                ElementsAre("roads_visits: roads(fid,road) visits(,) 2 composite",
                            "signs_visits: signs(fid,sign) visits(,) 2",
                            "roads_visits_other: roads(fid,other) visits(,) 2",
                            "notes_pairs: notes(ROAD,TEXT,a,b) pairs(,) 2"));
}

TEST(RelationshipsOfGeoPackage, WhoseKeysNameNoColumnsReferToThePrimaryKey) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity, {"CREATE TABLE owners (name TEXT PRIMARY KEY, since INTEGER)",
                   "CREATE TABLE grid (a INTEGER, b INTEGER, PRIMARY KEY (b, a))",
                   "CREATE TABLE cells (id INTEGER PRIMARY KEY, owner TEXT REFERENCES owners, x INTEGER, y "
                   "INTEGER, FOREIGN KEY (x, y) REFERENCES grid)"});
    EXPECT_THAT(
        relationshipsOf(*openWorkspace(sCity)),
        ElementsAre("owners_cells: owners(name,owner) cells(,) 2", "grid_cells: grid(b,a,x,y) cells(,) 2"));
}

class RelatedTablesOfGeoPackage : public ::testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(WithFields, RelatedTablesOfGeoPackage, ::testing::Bool());

TEST_P(RelatedTablesOfGeoPackage, AreManyToManyAndAttributedWhereTheyHaveFieldsOfTheirOwn) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const std::string sMore = GetParam() ? ", since DATE" : "";
    runSql(
        sCity,
        {"CREATE TABLE gpkgext_relations (id INTEGER PRIMARY KEY AUTOINCREMENT, base_table_name TEXT NOT "
         "NULL, "
         "base_primary_column TEXT NOT NULL DEFAULT 'id', related_table_name TEXT NOT NULL, "
         "related_primary_column TEXT NOT NULL DEFAULT 'id', relation_name TEXT NOT NULL, mapping_table_name "
         "TEXT NOT NULL UNIQUE)",
         "CREATE TABLE links (base_id INTEGER NOT NULL, related_id INTEGER NOT NULL" + sMore + ")",
         "INSERT INTO gpkgext_relations VALUES (1, 'roads', 'fid', 'notes', 'fid', 'attributes', 'links')",
         "INSERT INTO gpkg_extensions VALUES ('gpkgext_relations', NULL, 'gpkg_related_tables', 'x', "
         "'read-write'), ('links', NULL, 'gpkg_related_tables', 'x', 'read-write')"});
    const auto pClasses = openWorkspace(sCity)->relationshipClasses();
    const auto pClass = pClasses->next();
    ASSERT_NE(pClass, nullptr);
    EXPECT_EQ(pClass->originClassName(), "roads");
    EXPECT_EQ(pClass->destinationClassName(), "notes");
    EXPECT_EQ(pClass->cardinality(), 3);
    EXPECT_EQ(pClass->originPrimaryKey(), "fid");
    EXPECT_EQ(pClass->originForeignKey(), "base_id");
    EXPECT_EQ(pClass->destinationPrimaryKey(), "fid");
    EXPECT_EQ(pClass->destinationForeignKey(), "related_id");
    EXPECT_EQ(pClass->isAttributed(), GetParam());
    EXPECT_EQ(pClass->notification(), 1);
    EXPECT_EQ(pClass->featureDatasetName(), "");
    EXPECT_EQ(pClasses->next(), nullptr);
}

TEST(RelationshipsOfSqlite, LeaveOutTheKeysBetweenTheFormatsOwnTables) {
    const TemporaryFolder folder;
    const std::string sPath = convert(makeCity(folder), folder.file("c.sqlite"), "SQLite");
    runSql(sPath,
           {"CREATE TABLE wms_getmap (id INTEGER PRIMARY KEY)",
            "CREATE TABLE wms_settings (id INTEGER PRIMARY KEY, map INTEGER REFERENCES wms_getmap(id))",
            "CREATE TABLE plans (id INTEGER PRIMARY KEY, map INTEGER REFERENCES wms_getmap(id))"});
    EXPECT_THAT(relationshipsOf(*openWorkspace(sPath)),
                ElementsAre("wms_getmap_plans: wms_getmap(id,map) plans(,) 2"));
}

TEST(RelationshipsOfSqlite, AreItsForeignKeys) {
    const TemporaryFolder folder;
    const std::string sPath = convert(makeCity(folder), folder.file("c.sqlite"), "SQLite");
    runSql(sPath,
           {"CREATE TABLE visits (id INTEGER PRIMARY KEY, road INTEGER REFERENCES roads(ogc_fid) ON DELETE "
            "CASCADE)"});
    const auto all = relationshipsOf(*openWorkspace(sPath));
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0], "roads_visits: roads(ogc_fid,road) visits(,) 2 composite");
}

TEST(RelationshipsOfFileDatabaseFolders, AreTheDriversOwn) {
    const TemporaryFolder folder;
    const std::string sPath = convert(makeCity(folder), folder.file("c.gdb"), "OpenFileGDB");
    {
        const GDALDatasetUniquePtr pDataset(
            GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        auto pRelationship = std::make_unique<GDALRelationship>("noted", "roads", "notes", GRC_ONE_TO_MANY);
        pRelationship->SetLeftTableFields({"N"});
        pRelationship->SetRightTableFields({"ROAD"});
        pRelationship->SetType(GRT_COMPOSITE);
        pRelationship->SetForwardPathLabel("is told of in");
        pRelationship->SetBackwardPathLabel("tells of");
        std::string sReason;
        ASSERT_TRUE(pDataset->AddRelationship(std::move(pRelationship), sReason)) << sReason;
    }
    const auto pWorkspace = openWorkspace(sPath);
    EXPECT_THAT(relationshipsOf(*pWorkspace), ElementsAre("noted: roads(N,ROAD) notes(,) 2 composite"));
    const auto pClass = pWorkspace->relationshipClasses()->next();
    EXPECT_EQ(pClass->forwardPathLabel(), "is told of in");
    EXPECT_EQ(pClass->backwardPathLabel(), "tells of");
}

TEST(RelationshipsOfPlainFiles, AreNone) {
    const TemporaryFolder folder;
    EXPECT_THAT(relationshipsOf(*openWorkspace(folder.write("t.csv", "A,B\n1,2\n"))), ElementsAre());
}

TEST(RelationshipsOfTheMapDocument, AreAddedToTheDatasAndTakeThePlaceOfTheirNamesakes) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity, aForeignKeys);
    const auto pHost = host::gdal::GdalHost::create();
    static_cast<void>(pHost->openMapDocument(folder.write(
        "map.xml",
        "<MapDocument><Map name='M'/><Workspace source='city.gpkg'>"
        "<RelationshipClass name='ROADS_VISITS' origin='roads' destination='visits' originPrimaryKey='N' "
        "originForeignKey='road' cardinality='oneToOne' notification='both' featureDataset='traffic' "
        "forwardLabel='f' backwardLabel='b' attributed='true'/>"
        "<RelationshipClass name='m' origin='roads' destination='signs' originPrimaryKey='a' "
        "originForeignKey='b' destinationPrimaryKey='c' destinationForeignKey='d' "
        "cardinality='manyToMany' composite='1'/></Workspace></MapDocument>")));
    const auto pWorkspace =
        pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default)->openFromFile("city.gpkg", 0);
    EXPECT_THAT(relationshipsOf(*pWorkspace),
                ElementsAre("signs_visits: signs(fid,sign) visits(,) 2",
                            "roads_visits_other: roads(fid,other) visits(,) 2",
                            "notes_pairs: notes(ROAD,TEXT,a,b) pairs(,) 2",
                            "ROADS_VISITS: roads(N,road) visits(,) 1 attributed",
                            "m: roads(a,b) signs(c,d) 3 composite"));
    const auto pClasses = pWorkspace->relationshipClasses();
    for (int lSkipped = 0; lSkipped < 3; ++lSkipped) {
        static_cast<void>(pClasses->next());
    }
    const auto pClass = pClasses->next();
    EXPECT_EQ(pClass->notification(), 4);
    EXPECT_EQ(pClass->featureDatasetName(), "traffic");
    EXPECT_EQ(pClass->forwardPathLabel(), "f");
    EXPECT_EQ(pClass->backwardPathLabel(), "b");
}

} // namespace
} // namespace halvane::tests
