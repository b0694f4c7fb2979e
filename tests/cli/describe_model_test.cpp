#include "cli/SchemaCheck.h"
#include "cli/describe/DescriptionPage.h"
#include "host/memory/Memory.h"
#include "run/describe/DescriptionJson.h"
#include "run/describe/MapDescription.h"

#include <gmock/gmock.h>

#include <fstream>

namespace halvane::test {

using namespace host::memory;

using cli::descriptionPage;
using host::CodedValue;
using host::FieldType;
using host::ShapeType;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

const json& schema() {
    static const json value = json::parse(std::ifstream(HALVANE_SOURCE_DIR "/docs/describe.schema.json"));
    return value;
}

/// A town: wells with subtypes, a group with a raster and a TIN, a table, a gap where a table's data is gone.
class DescribeModel : public ::testing::Test {
protected:
    DescribeModel() {
        pDepth->setDescription("in metres");
        pDepth->setPolicies(1, 2);
        pWorkspace->add(pDepth);
        pWorkspace->add(MemoryDomain::coded("Use", FieldType::String,
                                            {{std::string("d"), "drinking"}, {std::string("f"), "fire"}}));
        RelationshipDefinition visits;
        visits.sName = "well_visits";
        visits.lCardinality = 2;
        visits.sOriginClassName = "wells";
        visits.sDestinationClassName = "visits";
        visits.sOriginPrimaryKey = "ID";
        visits.sOriginForeignKey = "WELL";
        visits.bComposite = true;
        pWorkspace->add(MemoryRelationshipClass::make(visits));
        addWells();
        const auto pVisits =
            MemoryTable::make("visits", {field("OID", FieldType::Oid), field("WELL", FieldType::Integer)});
        pWorkspace->add(pVisits);
        pMap->addLayer(pLayer);
        pMap->addLayer(MemoryGroupLayer::make(
            "Ground", {MemoryRasterLayer::make("Heights", "/data/dem.tif"),
                       MemoryTinLayer::make("Surface", MemoryDataset::make(pWorkspace))}));
        pMap->addTable(pVisits);
        pMap->addTable(nullptr);
        pMap->setSpatialReference(pReference);
    }

    [[nodiscard]] MapDescription describe() const { return describeMap(*pDocument); }
    [[nodiscard]] std::string page() const { return descriptionPage(describe(), "/maps/town.xml"); }
    /// Expects that it keeps to the schema.
    [[nodiscard]] json toJson() const {
        auto value = json::parse(descriptionJson(describe(), "/maps/town.xml"));
        EXPECT_THAT(breaches(schema(), value), IsEmpty());
        return value;
    }

    MemoryHostPtr pHost = MemoryHost::make();
    MemoryWorkspacePtr pWorkspace = MemoryWorkspace::make("/data/town.gpkg", MemoryWorkspace::lLocalDatabase);
    MemoryDomainPtr pDepth = MemoryDomain::range("Depth", FieldType::Double, 0.5, 80.0);
    MemoryFeatureClassPtr pWells = MemoryFeatureClass::make(
        "wells", ShapeType::Point,
        {field("OID", FieldType::Oid), field("SHAPE", FieldType::Geometry),
         field("NAME", FieldType::String).alias("Name of the well").length(30).notNull(),
         field("DEPTH", FieldType::Double).precision(12), field("KIND", FieldType::Integer), field("X", 17)});
    MemoryFeatureLayerPtr pLayer = MemoryFeatureLayer::make("Wells", pWells);
    std::shared_ptr<MemorySpatialReference> pReference =
        MemorySpatialReference::make("Projection GEOGRAPHIC\nUnits DEGREE");
    MemoryMapPtr pMap = MemoryMap::make("Town");
    MemoryMapDocumentPtr pDocument = MemoryMapDocument::make({pMap, MemoryMap::make("Overview")});

private:
    void addWells() {
        const auto pSubtypes = MemorySubtypes::make("KIND", 7);
        pSubtypes->addSubtype(7, "Dug");
        pSubtypes->addSubtype(9, "Drilled");
        pSubtypes->setDomain(7, "DEPTH", pDepth);
        pSubtypes->setDefaultValue(7, "DEPTH", 4.5);
        pSubtypes->setDefaultValue(9, "NAME", std::string("new"));
        pWells->setSubtypes(pSubtypes);
        pReference->setXyDomain({-180, -90, 180, 90, -180, -90, 1000});
        pReference->setZDomain({0, 100, -5, 10});
        pWells->setSpatialReference(pReference);
        for (int i = 0; i < 3; ++i)
            pWells->addRow({});
        pWorkspace->add(pWells);
        pLayer->select({1, 3});
    }
};

} // namespace

TEST_F(DescribeModel, TellsTheMapsAndWhichIsShown) {
    const auto description = describe();
    ASSERT_EQ(description.maps->size(), 2);
    EXPECT_EQ(*description.maps->at(0)->sName, "Town");
    EXPECT_TRUE(*description.maps->at(0)->bShown);
    EXPECT_EQ(*description.maps->at(1)->sName, "Overview");
    EXPECT_FALSE(*description.maps->at(1)->bShown);
    EXPECT_THAT(*description.maps->at(1)->layers, IsEmpty());
}

TEST_F(DescribeModel, TellsLayersByTheirKindsAndMembersOfGroups) {
    const auto description = describe();
    const auto& layers = *description.maps->at(0)->layers;
    ASSERT_EQ(layers.size(), 2);
    EXPECT_EQ(layers[0]->kind, LayerKind::Feature);
    EXPECT_EQ(*layers[0]->lSelected, 2);
    EXPECT_EQ(*layers[0]->featureClass->lFeatures, 3);
    EXPECT_EQ(*layers[0]->featureClass->lShapeType, 1);
    ASSERT_EQ(layers[1]->kind, LayerKind::Group);
    const auto& members = *layers[1]->members;
    ASSERT_EQ(members.size(), 2);
    EXPECT_EQ(members[0]->kind, LayerKind::Raster);
    EXPECT_EQ(*members[0]->sFilePath, "/data/dem.tif");
    EXPECT_EQ(members[1]->kind, LayerKind::Tin);
    EXPECT_EQ(*members[1]->lWorkspace, 0);
}

TEST_F(DescribeModel, ListsAWorkspaceOnceWhoeverLeadsToIt) {
    pMap->addLayer(MemoryTinLayer::make(
        "Other", MemoryDataset::make(MemoryWorkspace::make("/data", MemoryWorkspace::lFolder))));
    const auto description = describe();
    ASSERT_EQ(description.workspaces.size(), 2);
    EXPECT_EQ(*description.workspaces[0].sPath, "/data/town.gpkg");
    EXPECT_EQ(*description.workspaces[1].sPath, "/data");
    EXPECT_EQ(**description.maps->at(0)->tables->at(0)->lWorkspace, 0);
    EXPECT_EQ(**description.maps->at(0)->layers->at(2)->lWorkspace, 1);
}

TEST_F(DescribeModel, TellsAFieldsDomainAndDefaultInTheDefaultSubtype) {
    const auto description = describe();
    const auto& fields = *description.maps->at(0)->layers->at(0)->featureClass->table.fields;
    ASSERT_EQ(fields.size(), 6);
    EXPECT_EQ(**fields[3]->sDomain, "Depth");
    EXPECT_EQ(**fields[3]->sDefault, "4.5");
    EXPECT_EQ(*fields[2]->sDomain, std::nullopt);
    EXPECT_EQ(*fields[2]->sDefault, std::nullopt); // "new" is the other subtype's
}

TEST_F(DescribeModel, ListsOfASubtypeOnlyTheFieldsForWhichItHoldsSomething) {
    const auto description = describe();
    const auto& subtypes = **description.maps->at(0)->layers->at(0)->featureClass->subtypes;
    EXPECT_EQ(*subtypes.sField, "KIND");
    ASSERT_EQ(subtypes.subtypes->size(), 2);
    const auto& drilled = *subtypes.subtypes->at(1);
    EXPECT_EQ(drilled.lCode, 9);
    EXPECT_EQ(*drilled.sName, "Drilled");
    ASSERT_EQ(drilled.fields->size(), 1);
    EXPECT_EQ(drilled.fields->at(0).sField, "NAME");
    EXPECT_EQ(**drilled.fields->at(0).sDefault, "new");
}

TEST_F(DescribeModel, SaysWhereATablesDataIsGone) {
    EXPECT_THAT(page(), HasSubstr("  TABLE not readable: its data cannot be found or opened\n"));
    const auto map = toJson()["maps"][0];
    ASSERT_EQ(map["tables"].size(), 2);
    EXPECT_EQ(map["tables"][1], nullptr);
    EXPECT_EQ(map["notReadable"],
              (json{{{"what", "tables[1]"}, {"why", "its data cannot be found or opened"}}}));
}

TEST_F(DescribeModel, SurvivesTheFailureOfAnyOneCallAndSaysSoInItsPlace) {
    static_cast<void>(describe());
    const auto nBefore = pHost->faults().callCount();
    static_cast<void>(describe());
    const auto nCalls = pHost->faults().callCount() - nBefore;
    ASSERT_GT(nCalls, 150);
    for (std::int64_t nCall = 1; nCall <= nCalls; ++nCall) {
        pHost->faults().failAtCall(nCall);
        const auto description = describe();
        pHost->faults().clear();
        const auto value = json::parse(descriptionJson(description, "/maps/town.xml"));
        EXPECT_THAT(breaches(schema(), value), IsEmpty()) << nCall;
        EXPECT_THAT(value.dump(), HasSubstr("failed by request")) << nCall;
        EXPECT_THAT(descriptionPage(description, "/maps/town.xml"),
                    ::testing::ContainsRegex("not readable: .*failed by request"))
            << nCall;
    }
}

TEST_F(DescribeModel, KeepsTheOtherFactsOfAFieldWhoseLengthCannotBeRead) {
    pHost->faults().failAlways("GisField.length");
    const auto fields = toJson()["maps"][0]["layers"][0]["featureClass"]["fields"];
    EXPECT_EQ(fields[2]["name"], "NAME");
    EXPECT_EQ(fields[2]["length"], nullptr);
    EXPECT_EQ(fields[2]["notReadable"], (json{{{"what", "length"}, {"why", "length failed by request"}}}));
    EXPECT_EQ(fields[2]["alias"], "Name of the well");
}

TEST_F(DescribeModel, ListsWhatAnEnumerationGaveBeforeItFailed) {
    pHost->faults().failAt("GisEnumDomain.next", 2);
    const auto workspace = toJson()["workspaces"][0];
    ASSERT_EQ(workspace["domains"].size(), 2);
    EXPECT_EQ(workspace["domains"][0]["name"], "Depth");
    EXPECT_EQ(workspace["domains"][1], nullptr);
    EXPECT_EQ(workspace["notReadable"][0]["what"], "domains[1]");
}

TEST_F(DescribeModel, TellsTypesInTheLiteralAndAWord) {
    const auto fields = toJson()["maps"][0]["layers"][0]["featureClass"]["fields"];
    EXPECT_EQ(fields[2]["type"], "vemiFieldTypeString");
    EXPECT_EQ(fields[2]["typeWord"], "text");
    EXPECT_EQ(fields[2]["typeCode"], 4);
    EXPECT_EQ(fields[5]["type"], nullptr);
    EXPECT_EQ(fields[5]["typeWord"], "code 17");
}

TEST_F(DescribeModel, TellsSpatialReferencesByLinesAndDomains) {
    const auto reference = toJson()["maps"][0]["spatialReference"];
    EXPECT_EQ(reference["description"], (json{"Projection GEOGRAPHIC", "Units DEGREE"}));
    EXPECT_EQ(reference["xyDomain"]["xMax"], 180);
    EXPECT_EQ(reference["zDomain"],
              (json{{"min", 0.0}, {"max", 100.0}, {"falseOrigin", -5.0}, {"scale", 10.0}}));
    EXPECT_EQ(reference["mDomain"], nullptr);
}

TEST_F(DescribeModel, WritesALayersReferenceInFullOnlyWhereItIsNotTheMaps) {
    EXPECT_THAT(page(), HasSubstr("Spatial reference       that of the map\n"));
    pLayer->setSpatialReference(MemorySpatialReference::make("Projection UTM"));
    EXPECT_THAT(page(), HasSubstr("    Spatial reference\n      Projection UTM\n      XY domain: none\n"));
}

TEST_F(DescribeModel, WritesDomainsAndRelationshipClassesOfAWorkspace) {
    EXPECT_THAT(page(), HasSubstr(R"(WORKSPACE /data/town.gpkg
  Type                    local database
  Domains
    Depth: range of double
      Description             in metres
      Policies                merge sum, split geometry ratio
      Range                   0.5 to 80
    Use: coded values of text
      Policies                merge default, split default
      Code  Name
      d     drinking
      f     fire
  Relationship classes
    well_visits: wells to visits, one to many
      Origin keys             primary ID, foreign WELL
      Composite               yes
      Attributed              no
      Notification            none
)"));
}

TEST_F(DescribeModel, WritesMembersOfAGroupBelowIt) {
    EXPECT_THAT(page(), HasSubstr(R"(  LAYER Ground: group layer

    MEMBER Heights: raster layer
      File                    /data/dem.tif

    MEMBER Surface: TIN layer
      Workspace               /data/town.gpkg
)"));
}

TEST_F(DescribeModel, NeverTellsAPassword) {
    const auto pServer =
        MemoryWorkspace::make("PG:dbname=town password=hunter2", MemoryWorkspace::lRemoteDatabase);
    pMap->addLayer(MemoryTinLayer::make("Remote", MemoryDataset::make(pServer)));
    EXPECT_THAT(page(), HasSubstr("WORKSPACE PG:dbname=town password=***\n"));
    EXPECT_THAT(page(), Not(HasSubstr("hunter2")));
    EXPECT_THAT(toJson().dump(), Not(HasSubstr("hunter2")));
}

TEST_F(DescribeModel, LetsNoNameSteerTheTerminal) {
    pMap->addLayer(MemoryRasterLayer::make("a\x1B[2J\nb", "x"));
    EXPECT_THAT(page(), HasSubstr("LAYER a\\u001B[2J b: raster layer\n"));
}

} // namespace halvane::test
