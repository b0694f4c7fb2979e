// What a repeated node binds, whose exporter it reaches, and how many items it writes.

#include "MultipleTest.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {
namespace {

TEST_F(MultipleTest, NoticesThatFieldsInsideAnotherSourceAreTheLayers) {
    for (const std::string sSource : {"DataSource='Table' Identity='TableName' IdentityValue='SIGNS'",
                                      "DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS'",
                                      "DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'",
                                      "DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'"}) {
        observer.aNotices.clear();
        below("<t Name='T' " + sSource +
              "><f Name='F' DataSource='Field' Entries='Multiple'><d Name='D'/></f></t>");
        EXPECT_TRUE(observer.noticed("F", Notice::FieldsOfLayer)) << sSource;
    }
    observer.aNotices.clear();
    below("<g Name='G'><f Name='F' DataSource='Field' Entries='Multiple'><d Name='D'/></f></g>");
    EXPECT_FALSE(observer.noticed("F", Notice::FieldsOfLayer));
}

TEST_F(MultipleTest, NoticesThatFieldsAreThoseOfAClassWhoseLayerIsNoLongerCurrent) {
    run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'/>"
        "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS' "
        "DataLocation='C:\\data\\town.mdb'>"
        "<f Name='F' DataSource='Field' Entries='Multiple'><d Name='D'/></f></t></a>");
    ASSERT_TRUE(observer.noticed("F", Notice::FieldsOfLayer));
    EXPECT_EQ(observer.aNotices.back().sDetail, world.pRoads->datasetName());
}

TEST_F(MultipleTest, NoticesAShapeWithoutACurrentLayer) {
    run("<a Name='Out'><g Name='G' DataSource='Geometry.Vertice' Entries='Multiple'>"
        "<x Name='X' DataProperty='Geometry.X'/></g></a>");
    EXPECT_TRUE(observer.noticed("G", Notice::NoCurrentLayer));
}

TEST_F(MultipleTest, BindsItsDataSourceForItselfAndTheNodesAfterIt) {
    EXPECT_EQ(run("<a Name='Out'><m Name='M' DataSource='MapLayer' Identity='LayerName' "
                  "IdentityValue='Roads' Entries='Multiple'>"
                  "<x Name='X'/></m><r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' "
                  "IdentityValue='OID'/></r></a>"),
              "<Out><M/><R><N>1</N></R><R><N>2</N></R><R><N>3</N></R></Out>");
}

TEST_F(MultipleTest, FilesWhatItBindsUnderItsKind) {
    state.oOutputManager = std::make_unique<ClsXMLManager>();
    state.oOutputManager->setDOMDoc(dom::Document::create());
    const auto bindAs = [&](std::string_view sKind, std::string_view sIdentity, std::string_view sValue) {
        ControlAttributes inherited;
        inherited.sDataSource = sKind;
        inherited.sIdentity = sIdentity;
        inherited.sIdentityValue = sValue;
        const ControlText control(state, "<m Name='M'/>", inherited);
        ExportMultiple(state, control.root(), newOutputElement(state, "M"), nullptr, nullptr, nullptr);
    };
    bindAs("Map", "", "");
    EXPECT_EQ(state.pMap, world.pTownMap);
    bindAs("MapLayer", "LayerName", "Roads");
    EXPECT_EQ(state.pFeatureClass, world.pRoads);
    bindAs("Workspace", "", "");
    bindAs("Table", "TableName", "SIGNS");
    bindAs("RelatedTable", "LayerName", "SIGNS");
    bindAs("TinLayer", "LayerName", "Relief");
    const auto& keys = state.dCurrentObjects.collection().ReturnKeys();
    EXPECT_EQ(std::vector<std::string>(keys.begin(), keys.end()),
              (std::vector<std::string>{"DataFrame", "FeatureLayer", "FeatureClass", "Workspace", "Table",
                                        "RelatedTable", "TinLayer"}));
    EXPECT_EQ(state.pWorkspace, world.pWorkspace);
    bindAs("TinWorkspace", "", "");
    EXPECT_EQ(state.pWorkspace, world.pTinWorkspace);
    EXPECT_EQ(state.dCurrentObjects.collection().Count(), 7) << "a key is replaced, never duplicated";
    EXPECT_EQ(objectAs<host::GisWorkspace>(state.dCurrentObjects.collection().GetValue("Workspace")),
              world.pTinWorkspace);

    bindAs("Map", "", "Nowhere");
    EXPECT_EQ(state.pMap, nullptr);
    bindAs("MapLayer", "LayerName", "Nowhere");
    EXPECT_EQ(state.pFeatureLayer, nullptr);
    EXPECT_EQ(state.pFeatureClass, nullptr);
    bindAs("Table", "TableName", "NOWHERE");
    EXPECT_EQ(state.pTable, nullptr);
    bindAs("RelatedTable", "LayerName", "NOWHERE");
    EXPECT_EQ(state.pRelatedTable, nullptr);
    bindAs("TinLayer", "LayerName", "Nowhere");
    EXPECT_EQ(state.pTinLayer, nullptr);
    bindAs("TinWorkspace", "", "");
    EXPECT_EQ(state.pWorkspace, nullptr);
}

TEST_F(MultipleTest, ReachesTheGeometryExporterByAKindInAnyLetterCase) {
    EXPECT_EQ(below("<g Name='G' DataSource='Geometry.Length' Entries='Multiple'>"
                    "<n Name='Len' DataProperty='Geometry.Length'/></g>"),
              "<Out><L><G><Len>3</Len></G><G><Len>4</Len></G><G><Len>5</Len></G></L></Out>");
    below("<g Name='G' DataSource='geometry.length' Entries='Multiple'><n Name='Len' "
          "DataProperty='Geometry.Length'/></g>");
    EXPECT_EQ(observer.lItems, 6)
        << "the exporter walks the features, though it writes nothing for this kind";
}

TEST_F(MultipleTest, ReachesTheDomainRelationshipSubtypeAndFieldExporters) {
    EXPECT_EQ(below("<f Name='F' DataSource='Field' Entries='Multiple'><t Name='Field'><n Name='N' "
                    "DataProperty='FieldName'/></t></f>"),
              "<Out><L><F><Field><N>OID</N></Field><Field><N>SHAPE</N></Field><Field><N>NAME</N></Field>"
              "<Field><N>ROUTE_ID</N></Field><Field><N>LANES</N></Field><Field><N>WIDTH</N></Field>"
              "<Field><N>OPENED</N></Field></F></L></Out>");
    world.pWorkspace->add(host::memory::MemoryDomain::ofType("Kinds", 4, 3));
    EXPECT_EQ(below("<d Name='D' DataSource='WorkspaceDomain' Entries='Multiple'><n Name='N' "
                    "DataProperty='DomainName'/></d>"),
              "<Out><L><D><N>Kinds</N></D></L></Out>");
    host::memory::RelationshipDefinition relationship;
    relationship.sName = "RoadHasSign";
    world.pWorkspace->add(host::memory::MemoryRelationshipClass::make(relationship));
    EXPECT_EQ(below("<r Name='R' DataSource='Relationship' Entries='Multiple'><n Name='N' "
                    "DataProperty='RelationshipName'/></r>"),
              "<Out><L><R><N>RoadHasSign</N></R></L></Out>");
    auto pSubtypes = host::memory::MemorySubtypes::make("LANES", 1);
    pSubtypes->addSubtype(1, "Narrow");
    world.pRoads->setSubtypes(pSubtypes);
    EXPECT_EQ(below("<s Name='S' DataSource='SubType' Entries='Multiple'><n Name='N' "
                    "DataProperty='SubTypeName'/></s>"),
              "<Out><L><S><N>Narrow</N></S></L></Out>");
}

TEST_F(MultipleTest, DoesNotCallTheFieldAndSubtypeExportersWithoutAFeatureClass) {
    EXPECT_EQ(run("<a Name='Out'><f Name='F' DataSource='Field' Entries='Multiple'><t Name='T'><n "
                  "Name='N'/></t></f>"
                  "<s Name='S' DataSource='SubType' Entries='Multiple'><n Name='N'/></s></a>"),
              "<Out><F/><S/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(MultipleTest, EndsWithAnOverflowBehindTheItemThatMakesTheCounterPassItsLimit) {
    state.options.lItemLimit = 1;
    EXPECT_EQ(
        below("<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='OID'/></r>"),
        "<Out><L><R><N>1</N></R><R><N>2</N></R></L></Out>");
    EXPECT_EQ(state.lModErrNum, 6);
}

TEST_F(MultipleTest, CountsUpTo32767ByDefault) {
    for (std::int64_t i = 4; i <= 32770; ++i)
        world.pRoads->addRow({i});
    const auto sOutput = below(
        "<v Name='V' DataSource='Feature' Entries='Multiple' Identity='FieldName' IdentityValue='OID'/>");
    EXPECT_EQ(state.lModErrNum, 6);
    EXPECT_NE(sOutput.find("<V>32768</V>"), std::string::npos);
    EXPECT_EQ(sOutput.find("<V>32769</V>"), std::string::npos);
}

TEST_F(MultipleTest, GoesOnWithoutEndWhenTheLimitIsLifted) {
    state.options.lItemLimit = std::numeric_limits<std::int64_t>::max();
    for (std::int64_t i = 4; i <= 32770; ++i)
        world.pRoads->addRow({i});
    const auto sOutput = below(
        "<v Name='V' DataSource='Feature' Entries='Multiple' Identity='FieldName' IdentityValue='OID'/>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_NE(sOutput.find("<V>32770</V>"), std::string::npos);
    EXPECT_EQ(observer.lItems, 32770);
}

TEST_F(MultipleTest, TellsOnceAnItemOfAWorkspaceThatCannotHoldDomains) {
    world.pWorkspace->refuseDomains();
    EXPECT_EQ(below("<r Name='R' DataSource='Feature' Entries='Multiple'>"
                    "<d Name='D' DataSource='WorkspaceDomain' Entries='Multiple'><n Name='N'/></d></r>"),
              "<Out><L><R><D/></R><R><D/></R><R><D/></R></L></Out>");
    EXPECT_EQ(std::count_if(observer.aNotices.begin(), observer.aNotices.end(),
                            [](const auto& told) { return told.notice == Notice::ResolvedToNothing; }),
              3);
}

TEST_F(MultipleTest, AsksForTheSubtypesOnceAnItem) {
    below("<r Name='R' DataSource='Feature' Entries='Multiple'>"
          "<s Name='S' DataSource='SubType' Entries='Multiple'><n Name='N'/></s></r>");
    EXPECT_EQ(observer.lItems, 3);
    EXPECT_EQ(world.pHost->faults().callCount("GisFeatureClass.subtypes"), 3);
}

TEST_F(MultipleTest, MakesNoRasterLayerOfARepeatedNodeInAnItemTheCurrentOne) {
    EXPECT_EQ(below("<r Name='R' DataSource='Feature' Entries='Multiple'>"
                    "<p Name='P' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo' "
                    "Entries='Multiple'/>"
                    "<w Name='W' DataSource='RasterWorkspace' DataProperty='Path'/></r>"),
              "<Out><L><R><P/><W/></R><R><P/><W/></R><R><P/><W/></R></L></Out>");
}

TEST_F(MultipleTest, LosesOnlyARepeatedNodeWithoutANameThatXmlAllows) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='OID'/>"
                    "<g Name='1' DataSource='Feature' Entries='Multiple'><n Name='M'/></g></r>"),
              "<Out><L><Road><N>1</N></Road></L></Out>");
    EXPECT_EQ(state.lModErrNum, 91);
}

} // namespace
} // namespace halvane::test
