// Nodes that are repeated once per item.

#include "engine/sources/DataSourceKind.h"
#include "host/Rows.h"
#include "support/ExportTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::test {
namespace {

class MultipleTest : public ExportTest {
protected:
    std::string below(const std::string& sNodes) { return run(group(sNodes)).value_or("(not written)"); }
    /// Nodes below an element T of the table of signs.
    std::string belowSigns(const std::string& sNodes) {
        return run("<a Name='Out'><t Name='T' DataSource='Table' Identity='TableName' "
                   "IdentityValue='SIGNS'>" +
                   sNodes + "</t></a>")
            .value_or("(not written)");
    }
};

// ---- Features
// ----------------------------------------------------------------------------------------------------

TEST_F(MultipleTest, WritesOneElementPerFeatureUnderTheSameParent) {
    EXPECT_EQ(
        below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/>"
              "<o Name='id' Target='Attribute' IdentityValue='OID'/></r>"),
        "<Out><L><Road id=\"1\"><N>High Street</N></Road><Road id=\"2\"><N>Mill Lane</N></Road>"
        "<Road id=\"3\"><N>Quay</N></Road></L></Out>");
}

TEST_F(MultipleTest, WritesOnlyTheSelectedFeaturesInSelectionOrder) {
    world.pRoadsLayer->select({3, 1});
    EXPECT_EQ(
        below(
            "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></r>"),
        "<Out><L><Road><N>Quay</N></Road><Road><N>High Street</N></Road></L></Out>");
}

TEST_F(MultipleTest, LeavesTheHandedInElementEmptyForALayerWithoutFeatures) {
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make(
        "Empty", host::memory::MemoryFeatureClass::make("E", host::ShapeType::Point, {})));
    EXPECT_EQ(
        run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Empty'>"
            "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r></l></a>"),
        "<Out><L><R/></L></Out>");
}

TEST_F(MultipleTest, AppendsLaterItemsBehindNodesThatStandThereAlready) {
    EXPECT_EQ(
        below("<x Name='First'/><r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
              "IdentityValue='OID'/></r>"
              "<y Name='Last'/>"),
        "<Out><L><First/><Road><N>1</N></Road><Road><N>2</N></Road><Road><N>3</N></Road><Last/></L></Out>");
}

TEST_F(MultipleTest, WalksAGroupInsideEachFeatureWithTheFeatureHandedDown) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><g Name='G'><n Name='N' "
                    "IdentityValue='OID'/>"
                    "<h Name='H'><m Name='M' IdentityValue='LANES'/></h></g></r>"),
              "<Out><L><Road><G><N>1</N><H><M>2</M></H></G></Road><Road><G><N>2</N><H><M>1</M></H></G></Road>"
              "<Road><G><N>3</N><H><M>4</M></H></G></Road></L></Out>");
}

TEST_F(MultipleTest, ExpandsANestedMultipleForEachFeature) {
    EXPECT_EQ(
        below("<r Name='Road' DataSource='Feature' Entries='Multiple'>"
              "<s Name='Again' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></s></r>"),
        "<Out><L><Road><Again><N>High Street</N></Again></Road><Road><Again><N>Mill Lane</N></Again></Road>"
        "<Road><Again><N>Quay</N></Again></Road></L></Out>")
        << "the feature that is handed in is the only one";
}

TEST_F(MultipleTest, MakesAnElementForANestedMultipleEvenWhenItTargetsAnAttribute) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'>"
                    "<s Name='Again' Target='Attribute' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/></s></r>"),
              "<Out><L><Road><Again><N>1</N></Again></Road><Road><Again><N>2</N></Again></Road>"
              "<Road><Again><N>3</N></Again></Road></L></Out>");
}

TEST_F(MultipleTest, NestsATableInsideEachFeature) {
    EXPECT_EQ(
        below(
            "<r Name='Road' DataSource='Feature' Entries='Multiple'>"
            "<s Name='Sign' DataSource='Table' Identity='TableName' IdentityValue='SIGNS' Entries='Multiple'>"
            "<n Name='K' IdentityValue='KIND'/></s></r>"),
        "<Out><L><Road><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></Road>"
        "<Road><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></Road>"
        "<Road><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></Road></L></Out>");
}

TEST_F(MultipleTest, HoldsTheFirstItemInTheParentsElementWhenTheRepeatedNodeTargetsAnAttribute) {
    EXPECT_EQ(below("<r Name='x' Target='Attribute' DataSource='Feature' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/></r>"
                    "<e Name='End'/>"),
              "<Out><L x=\"\"><N>1</N><End/></L><x><N>2</N></x><x><N>3</N></x></Out>");
}

TEST_F(MultipleTest, WritesNothingForARepeatedFeatureTableWithChildren) {
    EXPECT_EQ(
        below(
            "<r Name='R' DataSource='FeatureTable' Entries='Multiple'><n Name='N' IdentityValue='OID'/></r>"),
        "<Out><L><R/></L></Out>");
    EXPECT_TRUE(observer.noticed("R", Notice::RepeatIsSilent));
}

TEST_F(MultipleTest, ReadsNoFeaturesWithoutACurrentLayer) {
    EXPECT_EQ(run("<a Name='Out'><r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r></a>"),
              "<Out><R/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(MultipleTest, KeepsWhatWasWrittenBeforeAFailure) {
    world.pHost->faults().failAt("nextRow", 3);
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/></r><e Name='End'/>"),
              "<Out><L><Road><N>1</N></Road><Road><N>2</N></Road><End/></L></Out>");
    EXPECT_NE(state.lModErrNum, 0);
    EXPECT_EQ(observer.aFailures.at(0).sName, "Road");
}

TEST_F(MultipleTest, GoesOnWithTheNextFeatureAfterALeafFailed) {
    world.pHost->faults().failAt("GisRow.value", 2);
    EXPECT_EQ(
        below(
            "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='LANES'/></r>"),
        "<Out><L><Road><N>2</N></Road><Road><N/></Road><Road><N>4</N></Road></L></Out>");
}

TEST_F(MultipleTest, EndsWhenAChildOfAnItemCannotBeMade) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/><m/></r><e Name='End'/>"),
              "<Out><L><Road><N>1</N></Road><End/></L></Out>");
    EXPECT_NE(state.lModErrNum, 0);
}

// ---- Leaves
// ------------------------------------------------------------------------------------------------------

TEST_F(MultipleTest, WritesOneValuePerFeatureForALeafThatIdentifiesAField) {
    EXPECT_EQ(below("<v Name='V' DataSource='Feature' Entries='Multiple' Identity='FieldName' "
                    "IdentityValue='NAME'/>"),
              "<Out><L><V>High Street</V><V>Mill Lane</V><V>Quay</V></L></Out>");
    EXPECT_EQ(below("<v Name='V' DataSource='FeatureTable' Entries='Multiple' Identity='FieldName' "
                    "IdentityValue='OID'/>"),
              "<Out><L><V>1</V><V>2</V><V>3</V></L></Out>");
}

TEST_F(MultipleTest, WritesNothingForAFeatureLeafOfAnotherIdentity) {
    EXPECT_EQ(below("<v Name='V' DataSource='Feature' Entries='Multiple' Identity='LayerName' "
                    "IdentityValue='NAME'/>"),
              "<Out><L><V/></L></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::RepeatIsSilent));
}

TEST_F(MultipleTest, WritesAFeatureLeafOnceForTheFeatureHandedIn) {
    EXPECT_EQ(below("<r Name='R' DataSource='Feature' Entries='Multiple'>"
                    "<v Name='V' Entries='Multiple' Identity='FieldName' IdentityValue='OID'/></r>"),
              "<Out><L><R><V>1</V></R><R><V>2</V></R><R><V>3</V></R></L></Out>");
}

TEST_F(MultipleTest, WritesOneValuePerRowForARecordLeaf) {
    EXPECT_EQ(belowSigns("<v Name='V' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/>"),
              "<Out><T><V>Stop</V><V>Yield</V></T></Out>");
}

TEST_F(MultipleTest, WritesARecordLeafOnceForTheRecordHandedIn) {
    const GisRowPtr pRecord = world.pSigns->search(nullptr)->nextRow();
    state.oOutputManager = std::make_unique<ClsXMLManager>();
    state.oOutputManager->setDOMDoc(dom::Document::create());
    state.pTable = world.pSigns;
    const ControlText control(state,
                              "<v Name='V' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/>");
    Node oOut = state.oOutputManager->DOMDoc()->asNode().appendChild(newOutputElement(state, "Out"));
    Node oElement = oOut.appendChild(newOutputElement(state, "V"));
    ExportMultiple(state, control.root(), oElement, nullptr, pRecord, nullptr);
    EXPECT_EQ(oOut.xml(), "<Out><V>Stop</V></Out>");
}

TEST_F(MultipleTest, WritesNothingForARepeatedLeafOfAnyOtherKind) {
    for (const std::string sKind : {"Field", "SubType", "WorkspaceDomain", "Relationship", "Geometry.Length",
                                    "RelatedTable", "RelatedRecord", "Time", "Map", "MapLayer"})
        EXPECT_EQ(below("<v Name='V' DataSource='" + sKind +
                        "' Entries='Multiple' Identity='LayerName' IdentityValue='Roads'/>"),
                  "<Out><L><V/></L></Out>")
            << sKind;
    EXPECT_TRUE(observer.noticed("V", Notice::RepeatIsSilent));
}

// ---- Rows of a table
// ---------------------------------------------------------------------------------------------

TEST_F(MultipleTest, WritesOneElementPerRowOfATable) {
    EXPECT_EQ(run("<a Name='Out'><s Name='Sign' DataSource='Table' Identity='TableName' "
                  "IdentityValue='signs' Entries='Multiple'>"
                  "<k Name='K' IdentityValue='KIND'/><o Name='id' Target='Attribute' "
                  "IdentityValue='OID'/></s></a>"),
              "<Out><Sign id=\"1\"><K>Stop</K></Sign><Sign id=\"2\"><K>Yield</K></Sign></Out>");
    EXPECT_EQ(
        belowSigns(
            "<s Name='Sign' DataSource='Record' Entries='Multiple'><k Name='K' IdentityValue='KIND'/></s>"),
        "<Out><T><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></T></Out>");
}

TEST_F(MultipleTest, DoesNotBindATableAnewWhileARecordIsHandedDown) {
    EXPECT_EQ(run("<a Name='Out'><s Name='Sign' DataSource='Table' Identity='TableName' "
                  "IdentityValue='SIGNS' Entries='Multiple'>"
                  "<k Name='K' DataSource='Table' IdentityValue='KIND'/><t Name='T' "
                  "DataProperty='TableName'/></s></a>"),
              "<Out><Sign><K>Stop</K><T>SIGNS</T></Sign><Sign><K>Yield</K><T>SIGNS</T></Sign></Out>");
}

TEST_F(MultipleTest, TreatsANestedMultipleOfARecordAsAnOrdinaryChild) {
    EXPECT_EQ(
        belowSigns("<s Name='Sign' DataSource='Record' Entries='Multiple'>"
                   "<k Name='K' Entries='Multiple' IdentityValue='KIND'/>"
                   "<g Name='G' Entries='Multiple'><o Name='O' IdentityValue='OID'/></g></s>"),
        "<Out><T><Sign><K>Stop</K><G><O>1</O></G></Sign><Sign><K>Yield</K><G><O>2</O></G></Sign></T></Out>");
}

TEST_F(MultipleTest, BindsATableNodeInsideAGroupOfARecordAnew) {
    EXPECT_EQ(belowSigns("<s Name='Sign' DataSource='Table' Entries='Multiple'><g Name='G'>"
                         "<k Name='K' IdentityValue='KIND'/></g></s>"),
              "<Out><T><Sign><G><K/></G></Sign><Sign><G><K/></G></Sign></T></Out>")
        << "the walker looks for a table named KIND; Record is the kind for leaves in groups";
}

TEST_F(MultipleTest, HandsARowOfATableOnAsRowToo) {
    EXPECT_EQ(belowSigns("<s Name='Sign' DataSource='Record' Entries='Multiple'>"
                         "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='Roads' "
                         "LinkField='ROUTE_ID'>"
                         "<n Name='Road' DataSource='RelatedRecord' IdentityValue='NAME'/></g></s>"),
              "<Out><T><Sign><G><Road>High Street</Road><Road>Quay</Road></G></Sign>"
              "<Sign><G><Road>High Street</Road><Road>Quay</Road></G></Sign></T></Out>");
}

TEST_F(MultipleTest, ReadsNoRowsWithoutACurrentTable) {
    EXPECT_EQ(run("<a Name='Out'><s Name='S' DataSource='Record' Entries='Multiple'><k Name='K'/></s>"
                  "<v Name='V' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/></a>"),
              "<Out><S/><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

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

// ---- Binding
// -----------------------------------------------------------------------------------------------------

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

// ---- Related tables
// ----------------------------------------------------------------------------------------------

TEST_F(MultipleTest, TellsOfARepeatedRecordWithoutATable) {
    below("<v Name='Leaf' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/>"
          "<v Name='Group' DataSource='Record' Entries='Multiple'><n Name='N' IdentityValue='KIND'/></v>");
    EXPECT_TRUE(observer.noticed("Leaf", Notice::NoCurrentTable));
    EXPECT_TRUE(observer.noticed("Group", Notice::NoCurrentTable));
    observer.aNotices.clear();
    belowSigns("<v Name='Leaf' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/>");
    EXPECT_FALSE(observer.noticed("Leaf", Notice::NoCurrentTable));
}

TEST_F(MultipleTest, NeverWritesARepeatedRelatedTableBelowARepeatedFeature) {
    EXPECT_EQ(
        below("<r Name='R' DataSource='Feature' Entries='Multiple'>"
              "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
              "LinkField='LANES' "
              "Entries='Multiple'><k Name='K' DataSource='RelatedRecord' IdentityValue='KIND'/></s></r>"),
        "<Out><L><R><S/></R><R><S/></R><R><S/></R></L></Out>");
    EXPECT_TRUE(world.pSigns->whereClauses().empty()) << "no parent is handed on, so nothing is searched";
    EXPECT_TRUE(observer.noticed("S", Notice::RepeatIsSilent));
}

TEST_F(MultipleTest, WritesNothingForARepeatedRelatedTableBelowATable) {
    EXPECT_EQ(
        belowSigns("<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                   "LinkField='LANES' "
                   "Entries='Multiple'><k Name='K' DataSource='RelatedRecord' IdentityValue='KIND'/></s>"),
        "<Out><T><S/></T></Out>");
    EXPECT_TRUE(world.pSigns->whereClauses().empty());
}

/// A repeated "RelatedTable" node called with a parent that is a feature, as a walk below a feature's group
/// does.
class RepeatedRelatedTable : public MultipleTest {
protected:
    std::string call(const std::string& sLinkField, const std::string& sParentSource = "Feature") {
        prepare();
        state.oOutputManager = std::make_unique<ClsXMLManager>();
        state.oOutputManager->setDOMDoc(dom::Document::create());
        control_.emplace(state, "<f Name='F' DataSource='" + sParentSource +
                                    "'><s Name='S' DataSource='RelatedTable' Identity='LayerName' "
                                    "IdentityValue='SIGNS' LinkField='" +
                                    sLinkField +
                                    "' Entries='Multiple'><k Name='K' DataSource='RelatedRecord'/></s></f>");
        Node oOut = state.oOutputManager->DOMDoc()->asNode().appendChild(newOutputElement(state, "Out"));
        Node oElement = oOut.appendChild(newOutputElement(state, "S"));
        const GisRowPtr pRoad = world.pRoads->search(nullptr)->nextRow();
        const ControlNode& parent = control_->root();
        ExportMultiple(state, *parent.pFirstChild, oElement, pRoad, nullptr, &parent);
        return oOut.xml();
    }

    std::optional<ControlText> control_;
};

TEST_F(RepeatedRelatedTable, SearchesWithBlanksAroundTheEqualsSignAndEndsWithoutWriting) {
    EXPECT_EQ(call("LANES"), "<Out><S/></Out>");
    ASSERT_EQ(world.pSigns->whereClauses().size(), 1U);
    EXPECT_EQ(world.pSigns->whereClauses().front(), "LANES = 2");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RepeatedRelatedTable, PutsNoQuotesAroundATextValue) {
    EXPECT_EQ(call("ROUTE_ID"), "<Out><S/></Out>");
    EXPECT_EQ(world.pSigns->whereClauses().front(), "ROUTE_ID = R17");
    EXPECT_NE(state.lModErrNum, 0) << "the host rejects the clause";
}

TEST_F(RepeatedRelatedTable, MayBeLinkedByTheFirstField) {
    call("OID");
    ASSERT_EQ(world.pSigns->whereClauses().size(), 1U);
    EXPECT_EQ(world.pSigns->whereClauses().front(), "OID = 1");
}

TEST_F(RepeatedRelatedTable, ActsForAFeatureTableToo) {
    EXPECT_EQ(call("LANES", "FeatureTable"), "<Out><S/></Out>");
    EXPECT_EQ(world.pSigns->whereClauses().size(), 1U);
}

TEST_F(RepeatedRelatedTable, SearchesNothingForAnotherParentOrAFieldThatTheFeatureLacks) {
    call("LANES", "Table");
    call("COLOUR");
    call("");
    EXPECT_TRUE(world.pSigns->whereClauses().empty());
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RepeatedRelatedTable, SearchesForNoParentThatIsNotAboutFeatures) {
    std::vector<std::string> aSources{" ", "Other", "maplayer", "subtype", "Geometry.Other"};
    for (const std::string_view sWord : dataSourceWords())
        if (sWord != "Feature" && sWord != "FeatureTable")
            aSources.emplace_back(sWord);
    for (const std::string& sSource : aSources) {
        call("LANES", sSource);
        EXPECT_TRUE(world.pSigns->whereClauses().empty()) << sSource;
    }
}

// ---- The kinds that have exporters of their own
// --------------------------------------------------------------------

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

// ---- The limit
// ---------------------------------------------------------------------------------------------------

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

TEST_F(MultipleTest, FillsTheAttributeForTheFirstItemOnlyWhenARepeatedLeafTargetsOne) {
    EXPECT_EQ(
        below("<v Name='v' Target='Attribute' DataSource='Feature' Entries='Multiple' Identity='FieldName' "
              "IdentityValue='OID'/>"),
        "<Out><L v=\"1\"/><v/><v/></Out>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(MultipleTest, HandsNoRecordDownFromAFeature) {
    state.pTable = world.pSigns;
    EXPECT_EQ(below("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'><z Name='Z' "
                    "DataSource='Time'/></t>"
                    "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' DataSource='Record' "
                    "IdentityValue='NAME'/></r>"),
              "<Out><L><T><Z>11/21/2026</Z></T><R><N/></R><R><N/></R><R><N/></R></L></Out>");
}

TEST_F(MultipleTest, CountsNothingForTheFeatureHandedIn) {
    state.options.lItemLimit = 2;
    below("<r Name='R' DataSource='Feature' Entries='Multiple'><s Name='S' Entries='Multiple'><n Name='N' "
          "IdentityValue='OID'/></s></r>");
    EXPECT_EQ(observer.lItems, 3);
}

TEST_F(MultipleTest, HeedsMultipleBelowAGroupOfARecord) {
    EXPECT_EQ(belowSigns("<s Name='Sign' DataSource='Record' Entries='Multiple'><g Name='G'>"
                         "<k Name='K' Entries='Multiple'><v Name='V' IdentityValue='KIND'/></k></g></s>"),
              "<Out><T><Sign><G><K><V>Stop</V></K><K><V>Yield</V></K></G></Sign>"
              "<Sign><G><K><V>Stop</V></K><K><V>Yield</V></K></G></Sign></T></Out>");
}

TEST_F(MultipleTest, LosesTheCurrentTableToALeafInAGroupThatNamesNone) {
    EXPECT_EQ(belowSigns(
                  "<s Name='S' DataSource='Table' Entries='Multiple'><b Name='B' IdentityValue='KIND'/>"
                  "<g Name='G'><k Name='K' IdentityValue='KIND'/></g><c Name='C' IdentityValue='KIND'/></s>"),
              "<Out><T><S><B>Stop</B><G><K/></G><C/></S><S><B/><G><K/></G><C/></S></T></Out>");
}

TEST_F(MultipleTest, SearchesForARepeatedRelatedTableInAGroupOfAFeatureAndEnds) {
    EXPECT_EQ(
        below("<r Name='R' DataSource='Feature' Entries='Multiple'><g Name='G'>"
              "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
              "LinkField='LANES' "
              "Entries='Multiple'><k Name='K' DataSource='RelatedRecord' IdentityValue='KIND'/></s></g></r>"),
        "<Out><L><R><G><S/></G></R><R><G><S/></G></R><R><G><S/></G></R></L></Out>");
    EXPECT_EQ(world.pSigns->whereClauses(),
              (std::vector<std::string>{"LANES = 2", "LANES = 1", "LANES = 4"}));
    EXPECT_EQ(std::count_if(observer.aNotices.begin(), observer.aNotices.end(),
                            [](const auto& told) { return told.notice == Notice::RepeatIsSilent; }),
              5)
        << "once a road, and again for the two roads with signs: their node is visited once more";
}

TEST_F(MultipleTest, GivesBackTheItemsOfANodeThatTargetsAnAttribute) {
    state.options.lItemLimit = std::numeric_limits<std::int64_t>::max();
    for (std::int64_t i = 4; i <= 5000; ++i)
        world.pRoads->addRow({i});
    const auto sOutput = below("<r Name='x' Target='Attribute' DataSource='Feature' Entries='Multiple'><n "
                               "Name='N' IdentityValue='OID'/></r>");
    EXPECT_NE(sOutput.find("<x><N>4999</N></x><x><N>5000</N></x>"), std::string::npos);
    EXPECT_TRUE(sOutput.starts_with("<Out><L x=\"\"><N>1</N></L><x><N>2</N></x>"));
}

// ---- Shapes ----

/// What a repeated node over the three roads writes; the shape of a row searched for without its shape cannot
/// be read.
class ShapesOfFeatures : public MultipleTest {
protected:
    bool areLeftUnread(const std::string& sChildren, const std::string& sBeside = "") {
        run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
            "<r Name='R' DataSource='Feature' Entries='Multiple'>" +
            sChildren + "</r></l>" + sBeside + "</a>");
        EXPECT_EQ(observer.lItems, 3);
        return world.pRoads->searchesWithoutShapes() > 0;
    }
};

TEST_F(ShapesOfFeatures, AreLeftUnreadWhereOnlyFieldsAreWritten) {
    EXPECT_TRUE(areLeftUnread("<n Name='N' IdentityValue='NAME'/><o Name='O' IdentityValue='OID'/>"));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ShapesOfFeatures, AreReadForAGeometryInside) {
    EXPECT_FALSE(areLeftUnread("<g Name='G'><v Name='V' DataSource='geometry.length' Entries='Multiple'>"
                               "<x Name='X'/></v></g>"));
}

TEST_F(ShapesOfFeatures, AreReadForAFieldThatIsTheShape) {
    EXPECT_FALSE(areLeftUnread("<n Name='N' IdentityValue='shape'/>"));
}

TEST_F(ShapesOfFeatures, AreReadForAShapeThatIsTheFirstField) {
    const auto pClass = host::memory::MemoryFeatureClass::make(
        "ROADS", host::ShapeType::Polyline, {host::memory::field("SHAPE", host::FieldType::Geometry)});
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("ShapesFirst", pClass));
    run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='ShapesFirst'>"
        "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' "
        "IdentityValue='SHAPE'/></r></l></a>");
    EXPECT_EQ(pClass->searchesWithoutShapes(), 0);
}

TEST_F(ShapesOfFeatures, AreReadForALinkThatIsTheShape) {
    EXPECT_FALSE(areLeftUnread("<n Name='N' DataSource='RelatedRecord' LinkField='SHAPE'/>"));
}

TEST_F(ShapesOfFeatures, AreReadForAFieldNamedByItsAlias) {
    EXPECT_FALSE(areLeftUnread("<n Name='N' Identity='TagName' IdentityValue='T'/>"));
}

TEST_F(ShapesOfFeatures, AreReadInsideALayerNamedByItsTag) {
    run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='TagName' IdentityValue='Roads'>"
        "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></r></l></a>");
    EXPECT_EQ(observer.lItems, 3);
    EXPECT_EQ(world.pRoads->searchesWithoutShapes(), 0) << "the identity is inherited";
}

TEST_F(ShapesOfFeatures, AreReadWhereverAProcessorIsAsked) {
    world.registerSpy("Spy.Component");
    EXPECT_FALSE(areLeftUnread("<n Name='N' IdentityValue='NAME'/>",
                               "<e Name='E' DataSource='External' IdentityValue='Spy.Component'/>"));
}

TEST_F(ShapesOfFeatures, AreReadWhereTheFieldsCannotBeAskedFor) {
    world.pHost->faults().failAt("GisTable.fields");
    EXPECT_FALSE(areLeftUnread("<n Name='N' IdentityValue='NAME'/>"));
    EXPECT_EQ(state.lModErrNum, 1004);
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

TEST_F(MultipleTest, WritesNothingForARepeatedRelatedTableThatIsNotFound) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><g Name='G'>"
                    "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='NOWHERE' "
                    "LinkField='LANES' Entries='Multiple'><k Name='K'/></s></g></r>"),
              "<Out><L><Road><G><S/></G></Road><Road><G><S/></G></Road><Road><G><S/></G></Road></L></Out>");
    EXPECT_EQ(std::count_if(observer.aNotices.begin(), observer.aNotices.end(),
                            [](const auto& told) { return told.notice == Notice::RepeatIsSilent; }),
              3)
        << "the node is not visited once more";
}

TEST_F(MultipleTest, LosesOnlyARepeatedNodeWithoutANameThatXmlAllows) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='OID'/>"
                    "<g Name='1' DataSource='Feature' Entries='Multiple'><n Name='M'/></g></r>"),
              "<Out><L><Road><N>1</N></Road></L></Out>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(MultipleTest, WritesNoItemsWithoutACurrentFeatureClass) {
    EXPECT_EQ(run("<a Name='Out'><r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r></a>"),
              "<Out><R/></Out>");
    world.pRoadsLayer->setFeatureClass(nullptr);
    EXPECT_EQ(below("<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r>"),
              "<Out><L><R/></L></Out>");
}

} // namespace
} // namespace halvane::test
