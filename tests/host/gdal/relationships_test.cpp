#include "SampleData.h"

#include "host/Relationships.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <array>
#include <memory>

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

TEST(RelationshipsOfGeoPackage, AreOneToOneWhereTheKeyIsUnique) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity,
           {"CREATE TABLE plans (road INTEGER PRIMARY KEY REFERENCES roads(fid), sign INTEGER UNIQUE "
            "REFERENCES signs(fid), note INTEGER REFERENCES notes(fid), x INTEGER, y INTEGER, UNIQUE (x, "
            "y), FOREIGN KEY (y, x) REFERENCES notes(ROAD, fid), FOREIGN KEY (x) REFERENCES roads(N))",
            "CREATE UNIQUE INDEX some ON plans (note) WHERE note > 3"});
    EXPECT_THAT(
        relationshipsOf(*openWorkspace(sCity)),
        ElementsAre("roads_plans: roads(fid,road) plans(,) 1", "signs_plans: signs(fid,sign) plans(,) 1",
                    "notes_plans: notes(fid,note) plans(,) 2",
                    "notes_plans_y: notes(ROAD,fid,y,x) plans(,) 1", "roads_plans_x: roads(N,x) plans(,) 2"));
}

TEST(RelationshipsOfGeoPackage, NameATableAsItsDatasetIsNamed) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity, {"CREATE TABLE visits (id INTEGER PRIMARY KEY, road INTEGER REFERENCES ROADS(fid))"});
    EXPECT_THAT(relationshipsOf(*openWorkspace(sCity)),
                ElementsAre("roads_visits: roads(fid,road) visits(,) 2"));
}

TEST(RelationshipsOfGeoPackage, MayBindATableToItselfOrToOneThatIsNotThere) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    runSql(sCity, {"CREATE TABLE parts (id INTEGER PRIMARY KEY, whole INTEGER REFERENCES parts, lost INTEGER "
                   "REFERENCES Gone(id))"});
    EXPECT_THAT(relationshipsOf(*openWorkspace(sCity)), ElementsAre("parts_parts: parts(id,whole) parts(,) 2",
                                                                    "Gone_parts: Gone(id,lost) parts(,) 2"));
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
         "CREATE TABLE links (base_id INTEGER NOT NULL REFERENCES ROADS(fid), related_id INTEGER NOT NULL "
         "REFERENCES notes(fid)" +
             sMore + ")",
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
    EXPECT_EQ(pClasses->next(), nullptr); // the keys of the linking table are told already
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

std::unique_ptr<GDALRelationship> relationship(const std::string& sName,
                                               GDALRelationshipCardinality cardinality) {
    auto pRelationship = std::make_unique<GDALRelationship>(sName, "roads", "notes", cardinality);
    pRelationship->SetLeftTableFields({"N"});
    pRelationship->SetRightTableFields({"ROAD"});
    pRelationship->SetForwardPathLabel("forth");
    pRelationship->SetBackwardPathLabel("back");
    return pRelationship;
}

std::string databaseWith(const TemporaryFolder& folder, std::unique_ptr<GDALRelationship> pRelationship) {
    const std::string sPath = convert(makeCity(folder), folder.file("c.gdb"), "OpenFileGDB");
    const GDALDatasetUniquePtr pDataset(GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    std::string sReason;
    EXPECT_TRUE(pDataset->AddRelationship(std::move(pRelationship), sReason)) << sReason;
    return sPath;
}

// Changes an item of a file database as other programs write it.
void changeItem(const std::string& sPath, const std::string& sName, const std::string& sItemPath,
                const std::string& sFrom, const std::string& sTo) {
    const std::array<const char*, 2> aOptions{"LIST_ALL_TABLES=YES", nullptr};
    const GDALDatasetUniquePtr pDataset(
        GDALDataset::Open(sPath.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE, nullptr, aOptions.data()));
    OGRLayer& items = *pDataset->GetLayerByName("GDB_Items");
    ASSERT_EQ(items.SetAttributeFilter(("Name = '" + sName + "'").c_str()), OGRERR_NONE);
    const OGRFeatureUniquePtr pItem(items.GetNextFeature());
    ASSERT_NE(pItem, nullptr);
    std::string sDefinition = pItem->GetFieldAsString("Definition");
    const std::size_t nFound = sDefinition.find(sFrom);
    ASSERT_NE(nFound, std::string::npos) << sDefinition;
    sDefinition.replace(nFound, sFrom.size(), sTo);
    pItem->SetField("Definition", sDefinition.c_str());
    pItem->SetField("Path", sItemPath.c_str());
    ASSERT_EQ(items.SetFeature(pItem.get()), OGRERR_NONE);
}

struct Notified {
    const char* pWord;
    std::int32_t lCode;
};
class NotificationOfFileDatabaseFolders : public ::testing::TestWithParam<Notified> {};
INSTANTIATE_TEST_SUITE_P(Words, NotificationOfFileDatabaseFolders,
                         ::testing::Values(Notified{"None", 1}, Notified{"Forward", 2},
                                           Notified{"Backward", 3}, Notified{"Both", 4}),
                         [](const auto& one) { return one.param.pWord; });

TEST_P(NotificationOfFileDatabaseFolders, AndTheirFeatureDatasetAreTold) {
    const TemporaryFolder folder;
    const std::string sPath = databaseWith(folder, relationship("noted", GRC_ONE_TO_MANY));
    EXPECT_EQ(openWorkspace(sPath)->relationshipClasses()->next()->featureDatasetName(), "");
    changeItem(sPath, "noted", "\\traffic\\noted", "None</Notification>",
               std::string(GetParam().pWord) + "</Notification>");
    const auto pClass = openWorkspace(sPath)->relationshipClasses()->next();
    EXPECT_EQ(pClass->notification(), GetParam().lCode);
    EXPECT_EQ(pClass->featureDatasetName(), "traffic");
}

TEST(RelationshipsOfFileDatabaseFolders, MayBeOneToOne) {
    const TemporaryFolder folder;
    EXPECT_THAT(relationshipsOf(*openWorkspace(databaseWith(folder, relationship("noted", GRC_ONE_TO_ONE)))),
                ElementsAre("noted: roads(N,ROAD) notes(,) 1"));
}

TEST(RelationshipsOfFileDatabaseFolders, MayBeManyToMany) {
    const TemporaryFolder folder;
    auto pRelationship = relationship("noted", GRC_MANY_TO_MANY);
    pRelationship->SetMappingTableName("noted");
    pRelationship->SetLeftMappingTableFields({"road_key"});
    pRelationship->SetRightMappingTableFields({"note_key"});
    EXPECT_THAT(relationshipsOf(*openWorkspace(databaseWith(folder, std::move(pRelationship)))),
                ElementsAre("noted: roads(N,road_key) notes(ROAD,note_key) 3"));
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
    for (int lSkipped = 0; lSkipped < 3; ++lSkipped)
        static_cast<void>(pClasses->next());
    const auto pClass = pClasses->next();
    EXPECT_EQ(pClass->notification(), 4);
    EXPECT_EQ(pClass->featureDatasetName(), "traffic");
    EXPECT_EQ(pClass->forwardPathLabel(), "f");
    EXPECT_EQ(pClass->backwardPathLabel(), "b");
}

} // namespace
} // namespace halvane::tests
