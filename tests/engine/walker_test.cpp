// Visiting control nodes: the output tree, the map, the current objects.

#include "engine/sources/Binding.h"
#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using WalkerTest = ExportTest;

TEST_F(WalkerTest, MirrorsTheControlTreeInTheOrderOfTheControlElements) {
    EXPECT_EQ(
        run("<a Name='Out'><b Name='A'><c Name='B'><d Name='C'/></c><e Name='D'/></b><f Name='E'/></a>"),
        "<Out><A><B><C/></B><D/></A><E/></Out>");
}

TEST_F(WalkerTest, JoinsTheWordsOfAName) {
    EXPECT_EQ(run("<a Name='The Out'><b Name=' Road Name '/></a>"), "<TheOut><RoadName/></TheOut>");
}

TEST_F(WalkerTest, PutsAnAttributeTargetOnTheParentsElementBesideItsChildElements) {
    EXPECT_EQ(run("<a Name='Out'><b Name='G'><c Name='One'/><d Name='x' Target='Attribute'/><e "
                  "Name='Two'/></b></a>"),
              "<Out><G x=\"\"><One/><Two/></G></Out>");
}

TEST_F(WalkerTest, PutsElementChildrenOfAnAttributeTargetUnderTheNearestElement) {
    EXPECT_EQ(run("<a Name='Out'><b Name='G'><c Name='x' Target='Attribute'><d Name='Inner'/></c></b></a>"),
              "<Out><G x=\"\"><Inner/></G></Out>");
}

TEST_F(WalkerTest, GivesAnInnerElementNoTextOfItsOwn) {
    EXPECT_EQ(run("<a Name='Out'><b Name='T' DataSource='Time'><c Name='Inner'/></b></a>"),
              "<Out><T><Inner>11/21/2026</Inner></T></Out>");
}

TEST_F(WalkerTest, AbandonsTheRestOfANodeWhoseChildCannotBeMadeAndGoesOnWithTheNextSiblingAbove) {
    EXPECT_EQ(run("<a Name='Out'><b Name='G'><c Name='One'/><d Name='1 bad'/><e Name='Three'/></b><f "
                  "Name='Next'/></a>"),
              "<Out><G><One/></G><Next/></Out>");
    EXPECT_NE(state.lModErrNum, 0);
    EXPECT_NE(state.sModErrMsg, "");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sName, "1bad");
}

TEST_F(WalkerTest, LetsALaterFailureOverwriteAnEarlierOne) {
    run("<a Name='Out'><b Name='A' DataSource='External' IdentityValue='No.Such'/>"
        "<c Name='B' DataSource='Map' DataProperty='noDot'/></a>");
    EXPECT_EQ(state.lModErrNum, 5);
    EXPECT_EQ(observer.aFailures.size(), 2U);
    EXPECT_EQ(state.nFailures, 2);
}

TEST_F(WalkerTest, TellsOnceOfASourceThatFailsThoughWalkerAndExporterAskForIt) {
    const std::string sLeaf =
        "<b Name='L' DataSource='FeatureLayer' Identity='LayerName' IdentityValue='Roads' "
        "DataProperty='LayerName'/>";
    run("<a Name='Out'>" + sLeaf + "</a>");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sName, "L");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(WalkerTest, TellsOfASourceThatFailsOnceEachTimeItsNodeIsVisited) {
    run(group("<e Name='Each' DataSource='Feature' Entries='Multiple'><g Name='G'>"
              "<b Name='A' DataSource='FeatureLayer' Identity='LayerName' IdentityValue='Roads'/>"
              "<b Name='B' DataSource='FeatureLayer' Identity='LayerName' IdentityValue='Roads'/></g></e>"));
    EXPECT_GT(observer.lItems, 1);
    EXPECT_EQ(observer.aFailures.size(), static_cast<std::size_t>(2 * observer.lItems));
}

TEST_F(WalkerTest, FindsTheMapOfADataFrameInAnyLetterCase) {
    EXPECT_EQ(
        run("<a Name='Out'><b Name='L' DataFrame='harbour MAP' DataSource='MapLayer' Identity='LayerName' "
            "IdentityValue='Piers' DataProperty='LayerName'/></a>"),
        "<Out><L>Piers</L></Out>");
}

TEST_F(WalkerTest, ShowsTheFirstOfTwoMapsOfOneName) {
    world.addMapNamed("HARBOUR MAP");
    EXPECT_EQ(
        run("<a Name='Out'><b Name='L' DataFrame='Harbour Map' DataSource='MapLayer' Identity='LayerName' "
            "IdentityValue='Piers' DataProperty='LayerName'/></a>"),
        "<Out><L>Piers</L></Out>");
}

TEST_F(WalkerTest, HasNoMapForADataFrameThatNamesNone) {
    EXPECT_EQ(run("<a Name='Out'><b Name='L' DataFrame='Nowhere' DataSource='TinLayer' Identity='LayerName' "
                  "IdentityValue='Relief' DataProperty='LayerName'/></a>"),
              "<Out><L/></Out>");
    EXPECT_TRUE(observer.noticed("L", Notice::ResolvedToNothing));
    EXPECT_EQ(observer.aNotices[0].sDetail, "DataFrame");
}

TEST_F(WalkerTest, UsesTheShownMapWithoutADataFrame) {
    EXPECT_EQ(
        run("<a Name='Out'><b Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' "
            "DataProperty='LayerName'/></a>"),
        "<Out><L>Roads</L></Out>");
}

TEST_F(WalkerTest, UsesTheShownMapWhenBothADataFrameAndALocationAreNamed) {
    EXPECT_EQ(
        run("<a Name='Out'><b Name='L' DataFrame='Harbour Map' DataLocation='C:\\x' DataSource='MapLayer' "
            "Identity='LayerName' IdentityValue='Roads' DataProperty='LayerName'/></a>"),
        "<Out><L>Roads</L></Out>");
}

TEST_F(WalkerTest, UsesTheShownMapForADataFrameOfBlanks) {
    EXPECT_EQ(run("<a Name='Out'><b Name='L' DataFrame='  ' DataSource='MapLayer' Identity='LayerName' "
                  "IdentityValue='Roads' DataProperty='LayerName'/></a>"),
              "<Out><L>Roads</L></Out>");
}

TEST_F(WalkerTest, WorksWithoutAMapWhenOnlyALocationIsNamed) {
    EXPECT_EQ(run("<a Name='Out'><b Name='L' DataLocation='C:\\data\\town.mdb' DataSource='TinLayer' "
                  "Identity='LayerName' IdentityValue='Relief' DataProperty='LayerName'/></a>"),
              "<Out><L/></Out>");
}

TEST_F(WalkerTest, DropsTheCurrentLayerWhenALocationIsNamedUnderAParentWithoutOne) {
    EXPECT_EQ(
        run("<a Name='Out'><b Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' "
            "DataProperty='LayerName'/>"
            "<c Name='W' DataSource='Workspace' DataLocation='C:\\data\\roads.mdb' "
            "DataProperty='Path'/></a>"),
        "<Out><L>Roads</L><W>C:\\data\\roads.mdb</W></Out>");
}

TEST_F(WalkerTest, KeepsTheCurrentLayerWhenTheParentNamesALocationToo) {
    EXPECT_EQ(run("<a Name='Out'><g Name='G' DataLocation='C:\\data\\town.mdb' DataSource='FeatureLayer' "
                  "Identity='LayerName' IdentityValue='TREES'>"
                  "<w Name='W' DataSource='Workspace' DataLocation='C:\\data\\roads.mdb' "
                  "DataProperty='Path'/></g></a>"),
              "<Out><G><W>C:\\data\\town.mdb</W></G></Out>");
}

TEST_F(WalkerTest, HasNoMapForALocationOfBlanks) {
    EXPECT_EQ(run("<a Name='Out'><t Name='T' DataLocation='  ' DataSource='TinLayer' Identity='LayerName' "
                  "IdentityValue='Relief' DataProperty='LayerName'/></a>"),
              "<Out><T/></Out>");
}

TEST_F(WalkerTest, FindsTheNamedMapBesideALocationOfBlanks) {
    EXPECT_EQ(run("<a Name='Out'><t Name='L' DataFrame='Harbour Map' DataLocation='  ' DataSource='MapLayer' "
                  "Identity='LayerName' IdentityValue='Piers' DataProperty='LayerName'/></a>"),
              "<Out><L>Piers</L></Out>");
}

TEST_F(WalkerTest, KeepsTheFeatureClassWhenALocationDropsTheLayer) {
    state.pFeatureClass = world.pRoads;
    state.pFeatureLayer = world.pRoadsLayer;
    state.oOutputManager = std::make_unique<ClsXMLManager>();
    const ControlText control(state, "<p Name='P'><g Name='G' DataLocation='C:\\x'/></p>");
    const ControlNode& parent = control.root();
    WalkControlNode(state, state.pMapDoc, newOutputElement(state, "G"), *parent.pFirstChild, &parent, nullptr,
                    nullptr);
    EXPECT_EQ(state.pFeatureLayer, nullptr);
    EXPECT_EQ(state.pFeatureClass, world.pRoads);
}

TEST_F(WalkerTest, DoesNotRepeatALeafThatOnlyInheritsMultiple) {
    EXPECT_EQ(
        run("<a Name='Out' Entries='Multiple' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'>"
            "<n Name='N' DataProperty='TableName'/></a>"),
        "<Out><N>SIGNS</N></Out>");
}

TEST_F(WalkerTest, ReleasesTheCurrentObjectOfAKindWhenALaterNodeNamesNone) {
    state.oOutputManager = std::make_unique<ClsXMLManager>();
    const auto walk = [&](const std::string& sKind, const std::string& sValue) {
        const ControlText control(state, "<g Name='G' DataSource='" + sKind +
                                             "' Identity='LayerName' IdentityValue='" + sValue +
                                             "'><x Name='X' DataSource='Time'/></g>");
        WalkControlNode(state, state.pMapDoc, newOutputElement(state, "G"), control.root(), nullptr, nullptr,
                        nullptr);
    };
    walk("RelatedTable", "SIGNS");
    walk("TinLayer", "Relief");
    walk("RasterLayer", "Photo");
    EXPECT_EQ(state.pRelatedTable, world.pSigns);
    EXPECT_EQ(state.pTinLayer, world.pTinLayer);
    EXPECT_EQ(state.pRasterLayer, world.pRasterLayer);
    walk("TinWorkspace", "");
    EXPECT_EQ(state.pWorkspace, nullptr) << "the walker keeps no TIN's workspace";
    state.pWorkspace = world.pWorkspace;
    for (const auto* sKind : {"RelatedTable", "TinLayer", "RasterLayer", "Workspace"})
        walk(sKind, "Nowhere");
    EXPECT_EQ(state.pRelatedTable, nullptr);
    EXPECT_EQ(state.pTinLayer, nullptr);
    EXPECT_EQ(state.pRasterLayer, nullptr);
    EXPECT_EQ(state.pWorkspace, nullptr);
}

TEST_F(WalkerTest, PutsTheEntryOfAKindBehindTheOthersWhenALaterObjectReplacesIt) {
    const auto pSpy = world.registerSpy("Spy.Component");
    run("<a Name='Out'><t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'><z Name='Z' "
        "DataSource='Time'/></t>"
        "<i Name='I' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'><z Name='Z' "
        "DataSource='Time'/></i>"
        "<u Name='U' DataSource='Table' Identity='TableName' IdentityValue='PARKS' "
        "DataLocation='C:\\data\\town.mdb'>"
        "<x Name='X' DataSource='External' IdentityValue='Spy.Component'/></u></a>");
    EXPECT_EQ(pSpy->keysInOrder(), (std::vector<std::string>{"TinLayer", "DataFrame", "Table"}));
}

TEST_F(WalkerTest, FilesNoMapForAGroupOfMapKindThatWorksFromADataLocation) {
    const auto pSpy = world.registerSpy("Spy.Component");
    run("<a Name='Out'><m Name='M' DataSource='Map' DataLocation='C:\\data\\town.mdb'>"
        "<x Name='X' DataSource='External' IdentityValue='Spy.Component'/></m></a>");
    EXPECT_TRUE(pSpy->keysInOrder().empty());
}

TEST_F(WalkerTest, TellsOnceOfASourceThatFailsForEachRowOfARepeatedLeaf) {
    for (const int nCall : {2, 3, 4, 5, 6}) // after the layer's own
        world.pHost->faults().failAt("featureClass", nCall);
    EXPECT_EQ(run(group("<v Name='V' DataSource='FeatureTable' Entries='Multiple' Identity='FieldName' "
                        "IdentityValue='OID'/>")),
              "<Out><L><V>1</V><V>2</V><V>3</V></L></Out>");
    EXPECT_EQ(state.nFailures, 5);
    EXPECT_EQ(observer.aFailures.size(), 1U);
}

TEST_F(WalkerTest, SendsNoNoticeBesideTheFailureOfAHostThatCannotFindTheMap) {
    world.pHost->faults().failAt("GisMapDocument.map");
    run("<a Name='Out'><b Name='L' DataFrame='Harbour Map' DataSource='Time'/></a>");
    EXPECT_EQ(observer.aFailures.size(), 1U);
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_F(WalkerTest, SaysNothingOfALeafThatOnlyBindsALayerForTheNodesAfterIt) {
    run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'/></a>");
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_F(WalkerTest, KeepsALayerCurrentForTheNodesAfterIt) {
    EXPECT_EQ(
        run("<a Name='Out'><b Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' "
            "DataProperty='LayerName'/>"
            "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
            "IdentityValue='NAME'/></r></a>"),
        "<Out><L>Roads</L><Road><N>High Street</N></Road><Road><N>Mill "
        "Lane</N></Road><Road><N>Quay</N></Road></Out>");
}

TEST_F(WalkerTest, ReleasesTheCurrentLayerAndItsClassWhenALaterNodeNamesNone) {
    EXPECT_EQ(
        run("<a Name='Out'><b Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'/>"
            "<c Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Nowhere'/>"
            "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
            "IdentityValue='NAME'/></r></a>"),
        "<Out><L/><L/><Road/></Out>");
    EXPECT_TRUE(observer.noticed("L", Notice::ResolvedToNothing));
}

TEST_F(WalkerTest, ReleasesTheCurrentTableWhenALaterNodeNamesNone) {
    EXPECT_EQ(run("<a Name='Out'><b Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'/>"
                  "<c Name='T' DataSource='Table' Identity='TableName' IdentityValue='NOWHERE'/>"
                  "<r Name='R' DataSource='Record' DataProperty='TableName'/></a>"),
              "<Out><T/><T/><R/></Out>");
}

TEST_F(WalkerTest, TreatsAChildWithoutADataSourceAsItsParentsKind) {
    EXPECT_EQ(run("<a Name='Out'><t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'>"
                  "<n Name='N' DataProperty='TableName'/></t></a>"),
              "<Out><T><N>SIGNS</N></T></Out>");
}

TEST_F(WalkerTest, DoesNotRepeatANodeThatOnlyInheritsMultiple) {
    EXPECT_EQ(run(group("<r Name='Road' DataSource='Feature' Entries='Multiple'>"
                        "<g Name='G'><n Name='N' IdentityValue='NAME'/></g></r>")),
              "<Out><L><Road><G><N>High Street</N></G></Road><Road><G><N>Mill Lane</N></G></Road>"
              "<Road><G><N>Quay</N></G></Road></L></Out>");
}

TEST_F(WalkerTest, RepeatsOnlyForMultipleSpelledExactly) {
    EXPECT_EQ(
        run(group(
            "<r Name='Road' DataSource='Feature' Entries='multiple'><n Name='N' IdentityValue='NAME'/></r>")),
        "<Out><L><Road><N/></Road></L></Out>");
}

TEST_F(WalkerTest, FilesTheObjectsItKeepsUnderTheirKinds) {
    const auto pSpy = world.registerSpy("Spy.Component");
    run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' "
        "DataProperty='LayerName'/>"
        "<w Name='W' DataSource='Workspace' DataProperty='Path'/>"
        "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS' DataProperty='TableName'/>"
        "<r Name='R' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS'/>"
        "<i Name='I' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief' "
        "DataProperty='LayerName'/>"
        "<p Name='P' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo' "
        "DataProperty='LayerName'/>"
        "<x Name='X' DataSource='External' IdentityValue='Spy.Component'/></a>");
    EXPECT_EQ(pSpy->kindsSeen(),
              (std::vector<std::string>{"DataFrame", "FeatureClass", "FeatureLayer", "RelatedTable", "Table",
                                        "TinLayer", "Workspace"}));
}

TEST_F(WalkerTest, KeepsTheFeatureClassAndTheFiledObjectsWhereTheNewLayersClassCannotBeRead) {
    keepAsCurrent(state, DataSourceKind::MapLayer, ObjectPtr(world.pRoadsLayer));
    const auto pBroken = host::memory::MemoryFeatureLayer::make("Broken", world.pRoadsOnDisk);
    world.pHost->faults().failAlways("GisFeatureLayer.featureClass");
    EXPECT_THROW(keepAsCurrent(state, DataSourceKind::MapLayer, ObjectPtr(pBroken)), Failure);
    EXPECT_EQ(state.pFeatureLayer, pBroken);
    EXPECT_EQ(state.pFeatureClass, world.pRoads);
    const auto& objects = state.dCurrentObjects.collection();
    EXPECT_EQ(objectAs<host::GisFeatureLayer>(objects.GetValue("FeatureLayer")), world.pRoadsLayer);
    EXPECT_EQ(objectAs<host::GisFeatureClass>(objects.GetValue("FeatureClass")), world.pRoads);
    keepAsCurrent(state, DataSourceKind::MapLayer, Empty{});
    EXPECT_EQ(state.pFeatureClass, nullptr);
}

TEST_F(WalkerTest, TellsWhetherATagNameIsListed) {
    state.dTagNames = dCollection::create();
    state.dTagNames->Add(std::string("ROADS"), "STREETS");
    state.dTagNames->Add(std::string(), "EMPTY");
    EXPECT_TRUE(IsTagNameListed(state, "streets"));
    EXPECT_FALSE(IsTagNameListed(state, "EMPTY"));
    EXPECT_FALSE(IsTagNameListed(state, "PATHS"));
    state.dTagNames.reset();
    EXPECT_FALSE(IsTagNameListed(state, "STREETS"));
}

TEST_F(WalkerTest, FindsTheFirstNodeOfATagIgnoringItsCaseAndATrailingSlash) {
    auto oDocument = dom::Document::create();
    ASSERT_TRUE(
        oDocument->loadXML("<r><q TagName='A' n='1'/><q/><q TagName='b' n='2'/><q TagName='B' n='3'/></r>"));
    EXPECT_EQ(FindTagNode(state, oDocument->asNode(), "//q/", "B").getAttribute("n"), "2");
    EXPECT_FALSE(FindTagNode(state, oDocument->asNode(), "//q", "C"));
    EXPECT_FALSE(FindTagNode(state, oDocument->asNode(), "  ", "B"));
    EXPECT_FALSE(FindTagNode(state, Node(), "//q", "B"));
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_FALSE(FindTagNode(state, oDocument->asNode(), "//q[", "B"));
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(WalkerTest, TellsOfASourceThatFailsInEveryItemAlthoughItsChildCannotBeMade) {
    run(group("<r Name='Road' DataSource='Feature' Entries='Multiple'><t Name='T' DataSource='Table' "
              "Identity='TableName' IdentityValue='NOWHERE' DataLocation='C:\\data\\town.mdb'><c/></t></r>"));
    std::vector<std::string> aFailed;
    for (const auto& failure : observer.aFailures)
        aFailed.push_back(failure.sName);
    EXPECT_EQ(aFailed, (std::vector<std::string>{"T", "", "T", "", "T", ""}));
}

TEST_F(WalkerTest, DropsOneTrailingSlashOnlyFromThePathOfATag) {
    auto oDocument = dom::Document::create();
    ASSERT_TRUE(oDocument->loadXML("<r><q TagName='A'/></r>"));
    EXPECT_TRUE(FindTagNode(state, oDocument->asNode(), "//q/", "A"));
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_FALSE(FindTagNode(state, oDocument->asNode(), "//q//", "A"));
    EXPECT_NE(state.lModErrNum, 0) << "what is left ends with a slash, and is no path";
}

TEST_F(WalkerTest, FindsNoMapInADocumentWithoutAny) {
    EXPECT_EQ(FindMapByName(state, nullptr, "Town Map"), nullptr);
    EXPECT_EQ(FindMapByName(state, world.pMapDocument, "Nowhere"), nullptr);
    EXPECT_EQ(FindMapByName(state, world.pMapDocument, "town map"), world.pTownMap);
}

} // namespace
} // namespace halvane::test
