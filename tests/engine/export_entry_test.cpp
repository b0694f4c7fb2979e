// One export from the module state: loading, the root, saving, releasing.

#include "support/ExportTest.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using ExportEntryTest = ExportTest;

TEST_F(ExportEntryTest, WritesARootNamedByTheControlRootWithOneElementPerChild) {
    EXPECT_EQ(run("<a Name='Out'><b Name='First'/><c Name='Second'/></a>"), "<Out><First/><Second/></Out>");
}

TEST_F(ExportEntryTest, PutsOneLineBreakBetweenAdjacentTagsOfTheFile) {
    run("<a Name='Out'><b Name='First'/><c Name='Second'><d Name='Third'/></c></a>");
    EXPECT_EQ(rawOutput(), "<Out>\r\n<First/>\r\n<Second>\r\n<Third/>\r\n</Second>\r\n</Out>");
}

TEST_F(ExportEntryTest, DoesNotHoldAControlFileToItsDocumentType) {
    EXPECT_EQ(run("<!DOCTYPE a [<!ELEMENT a EMPTY>]><a Name='Out'><b Name='B'/></a>"), "<Out><B/></Out>");
}

TEST_F(ExportEntryTest, HoldsNoMapAtItsEnd) {
    run("<a Name='Out'/>");
    state.release();
    const auto lBefore = world.pTownMap.use_count();
    EXPECT_EQ(run(group("<n Name='N' DataProperty='LayerName'/>")), "<Out><L><N>Roads</N></L></Out>");
    EXPECT_EQ(world.pTownMap.use_count(), lBefore);
}

TEST_F(ExportEntryTest, TellsAFailureOfANodeInEachExport) {
    state.options.oControlDocument = dom::Document::create();
    ASSERT_TRUE(state.options.oControlDocument->loadXML(
        "<a Name='Out'><b Name='B' DataSource='MapLayer' Identity='LayerName' IdentityValue='Photo'/></a>"));
    run("");
    EXPECT_EQ(observer.aFailures.size(), 1U);
    run("");
    EXPECT_EQ(observer.aFailures.size(), 2U);
}

TEST_F(ExportEntryTest, WritesNoFileForALoneRoot) {
    EXPECT_EQ(run("<a Name='Out'/>"), std::nullopt);
    EXPECT_TRUE(observer.sNotSavedReason.has_value());
}

TEST_F(ExportEntryTest, KeepsTheModuleStateForALoneRoot) {
    run("<a Name='Out'/>");
    EXPECT_NE(state.pMapDoc, nullptr);
    EXPECT_NE(state.oOutputManager, nullptr);
    state.options.oControlDocument = dom::Document::create();
    ASSERT_TRUE(state.options.oControlDocument->loadXML("<a Name='Out'/>"));
    run("");
    EXPECT_EQ(state.oControlManager->DOMDoc(), state.options.oControlDocument) << "also one handed in";
}

TEST_F(ExportEntryTest, ReleasesEveryObjectButKeepsTheTextsAtItsEnd) {
    const auto pSpy = world.registerSpy("Test.Processor");
    state.dTagNames = dCollection::create();
    state.oExternalDom = dom::Document::create();
    state.oSharedNode = state.oExternalDom->asNode();
    run("<a Name='Out'><b Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'/>"
        "<w Name='W' DataSource='Workspace' DataProperty='Path'/>"
        "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'/>"
        "<r Name='R' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS'/>"
        "<i Name='I' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'/>"
        "<p Name='P' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo' "
        "DataProperty='Path'/>"
        "<x Name='X' DataSource='External' IdentityValue='Test.Processor'/></a>");
    EXPECT_EQ(pSpy->kindsSeen(), (std::vector<std::string>{"DataFrame", "FeatureClass", "FeatureLayer",
                                                           "RelatedTable", "Table", "TinLayer", "Workspace"}))
        << "the objects were there";
    EXPECT_NE(rawOutput().find("<P>D:\\data\\</P>"), std::string::npos) << "and so was the raster layer";
    EXPECT_EQ(state.pWorkspace, nullptr);
    EXPECT_EQ(state.pTable, nullptr);
    EXPECT_EQ(state.pRelatedTable, nullptr);
    EXPECT_EQ(state.pTinLayer, nullptr);
    EXPECT_EQ(state.pRasterLayer, nullptr);
    EXPECT_EQ(state.dTagNames, nullptr);
    EXPECT_EQ(state.oExternalDom, nullptr);
    EXPECT_FALSE(state.oSharedNode);
    EXPECT_EQ(state.pMapDoc, nullptr);
    EXPECT_EQ(state.pMap, nullptr);
    EXPECT_EQ(state.pFeatureLayer, nullptr);
    EXPECT_EQ(state.pFeatureClass, nullptr);
    EXPECT_EQ(state.dCurrentObjects.collection().Count(), 0);
    EXPECT_EQ(state.oControlManager, nullptr);
    EXPECT_EQ(state.oControlDom, nullptr);
    EXPECT_EQ(state.oOutputManager, nullptr);
    EXPECT_NE(state.sControlPath, "");
    EXPECT_NE(state.sOutputPath, "");
}

TEST_F(ExportEntryTest, ReleasesWhatAnEarlierExportLeftButTheMapAndTheRasterLayer) {
    state.pTable = world.pSigns;
    state.pRelatedTable = world.pSigns;
    state.pFeatureLayer = world.pRoadsLayer;
    state.pFeatureClass = world.pRoads;
    state.pWorkspace = world.pWorkspace;
    state.pTinLayer = world.pTinLayer;
    state.pRasterLayer = world.pRasterLayer;
    run("<a Name='Out'/>");
    EXPECT_EQ(state.pTable, nullptr);
    EXPECT_EQ(state.pRelatedTable, nullptr);
    EXPECT_EQ(state.pFeatureLayer, nullptr);
    EXPECT_EQ(state.pFeatureClass, nullptr);
    EXPECT_EQ(state.pWorkspace, nullptr);
    EXPECT_EQ(state.pTinLayer, nullptr);
    EXPECT_EQ(state.pRasterLayer, world.pRasterLayer);
    EXPECT_EQ(state.pMapDoc, world.pMapDocument);
    EXPECT_NE(state.pMap, nullptr);
}

TEST_F(ExportEntryTest, BeginsWithoutWhatWasFiledBefore) {
    const auto pSpy = world.registerSpy("Test.Processor");
    state.dCurrentObjects.keep(ObjectKey::Table, host::GisTablePtr(world.pSigns));
    run("<a Name='Out'><x Name='X' DataSource='External' IdentityValue='Test.Processor'/></a>");
    EXPECT_EQ(pSpy->kindsSeen(), std::vector<std::string>{"DataFrame"});
}

TEST_F(ExportEntryTest, EndsUnsavedWhenTheControlFileDoesNotLoad) {
    EXPECT_EQ(run("<a Name='Out'><b></a>"), std::nullopt);
    EXPECT_NE(state.lModErrNum, 0);
    EXPECT_EQ(state.pMapDoc, nullptr) << "the module state is released";
    EXPECT_TRUE(observer.sNotSavedReason.has_value());
}

TEST_F(ExportEntryTest, EndsUnsavedWhenTheRootHasNoName) {
    EXPECT_EQ(run("<a><b Name='First'/></a>"), std::nullopt);
    EXPECT_EQ(state.lModErrNum, 91);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].lLine, 1U);
    EXPECT_EQ(observer.sNotSavedReason, observer.aFailures[0].sDescription);
}

TEST_F(ExportEntryTest, EndsUnsavedWhenAChildOfTheRootHasNoName) {
    EXPECT_EQ(run("<a Name='Out'>\n<b Name='First'/>\n<c/>\n<d Name='Third'/></a>"), std::nullopt);
    EXPECT_NE(state.lModErrNum, 0);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].lLine, 3U);
}

TEST_F(ExportEntryTest, EndsUnsavedWhenAnAttributeChildOfTheRootHasNoName) {
    EXPECT_EQ(run("<a Name='Out'>\n<c Name='First'/>\n<b Target='Attribute'/></a>"), std::nullopt);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].lLine, 3U);
    EXPECT_EQ(observer.aFailures[0].lNumber, 1005);
    EXPECT_EQ(observer.sNotSavedReason, observer.aFailures[0].sDescription);
    EXPECT_EQ(state.lModErrNum, 1005);
    EXPECT_EQ(run("<a Name='Out'><c Name='First'/><b Name='x' Target='Attribute'/></a>"),
              "<Out x=\"\"><First/></Out>")
        << "with a name it is written";
}

TEST_F(ExportEntryTest, SavesWhenAFailureWasCaughtBelowAChildOfTheRoot) {
    EXPECT_EQ(run("<a Name='Out'><b Name='First'><c/></b><d Name='Second'/></a>"),
              "<Out><First/><Second/></Out>");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(ExportEntryTest, MakesAnAttributeChildAnEmptyAttributeOfTheOutputRoot) {
    EXPECT_EQ(run("<a Name='Out'><b Name='x' Target='Attribute'/><c Name='E'/></a>"),
              "<Out x=\"\"><E/></Out>");
}

TEST_F(ExportEntryTest, TakesTargetAttributeOnlyWhenSpelledExactly) {
    EXPECT_EQ(run("<a Name='Out'><b Name='x' Target='attribute'/></a>"), "<Out><x/></Out>");
}

TEST_F(ExportEntryTest, HandsTheRootsAttributesDownToItsChildren) {
    EXPECT_EQ(run("<a Name='Out' DataSource='Time'><b Name='x'/></a>"), "<Out><x>11/21/2026</x></Out>");
}

TEST_F(ExportEntryTest, DoesNotHandTheRootsLinkFieldDown) {
    EXPECT_EQ(run("<a Name='Out' LinkField='ROUTE_ID' Identity='LayerName' IdentityValue='Roads'>"
                  "<l Name='L' DataSource='MapLayer'><r Name='Road' DataSource='Feature' Entries='Multiple'>"
                  "<g Name='Signs' DataSource='RelatedTable' IdentityValue='SIGNS'>"
                  "<s Name='Sign' DataSource='RelatedRecord' IdentityValue='KIND'/></g></r></l></a>"),
              "<Out><L><Road><Signs><Sign/></Signs></Road><Road><Signs><Sign/></Signs></Road>"
              "<Road><Signs><Sign/></Signs></Road></L></Out>");
}

TEST_F(ExportEntryTest, WorksFromDataLocationsAloneWhenTheRootNamesOneButNoDataFrame) {
    EXPECT_EQ(run("<a Name='Out' DataLocation='C:\\data\\town.mdb'>"
                  "<m Name='M' DataSource='Map' DataProperty='SPATIALREFERENCE.XMIN'/>"
                  "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='PARKS' "
                  "DataProperty='TableName'/></a>"),
              "<Out><M/><T>PARKS</T></Out>");
}

TEST_F(ExportEntryTest, KeepsTheMapDocumentWhenTheRootNamesADataFrameToo) {
    EXPECT_EQ(run("<a Name='Out' DataLocation='C:\\data\\town.mdb' DataFrame='Town Map'>"
                  "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' "
                  "DataProperty='LayerName'/></a>"),
              "<Out><L>Roads</L></Out>");
}

TEST_F(ExportEntryTest, RecordsAFailingSave) {
    sOutputName = "no-such-folder/out.xml";
    EXPECT_EQ(run("<a Name='Out'><b Name='First'/></a>"), std::nullopt);
    EXPECT_NE(state.lModErrNum, 0);
    EXPECT_TRUE(observer.sNotSavedReason.has_value());
    EXPECT_FALSE(observer.sSavedPath.has_value());
    EXPECT_EQ(state.oOutputManager, nullptr);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sName, "") << "no control node is to blame";
}

TEST_F(ExportEntryTest, LeavesTheLastDocumentAloneWhenItEndsUnsaved) {
    folder.write("out.xml", "<last/>");
    EXPECT_EQ(run("<a Name='Out'><b/></a>"), "<last/>");
}

TEST_F(ExportEntryTest, TellsTheObserverThePathOfTheSavedDocument) {
    run("<a Name='Out'><b Name='First'/></a>");
    EXPECT_EQ(observer.sSavedPath, folder.file("out.xml"));
    EXPECT_FALSE(observer.sNotSavedReason.has_value());
}

TEST_F(ExportEntryTest, TreatsACommentAsAControlElementWithoutAName) {
    EXPECT_EQ(run("<a Name='Out'><!-- note --><b Name='First'/></a>"), std::nullopt);
    EXPECT_EQ(run("<a Name='Out'><b Name='G'><c Name='One'/><!-- note --><d Name='Two'/></b></a>"),
              "<Out><G><One/></G></Out>");
}

TEST_F(ExportEntryTest, SkipsCommentsWhenToldTo) {
    state.options.bIgnoreComments = true;
    EXPECT_EQ(
        run("<a Name='Out'><!-- note --><b Name='G'><c Name='One'/><!-- note --><d Name='Two'/></b></a>"),
        "<Out><G><One/><Two/></G></Out>");
}

TEST_F(ExportEntryTest, TakesAnElementThatHoldsOnlySkippedCommentsForALeaf) {
    state.options.bIgnoreComments = true;
    EXPECT_EQ(run("<a Name='Out'><b Name='T' DataSource='Time'><!-- today --></b></a>"),
              "<Out><T>11/21/2026</T></Out>");
    folder.write("out.xml", "<last/>");
    EXPECT_EQ(run("<a Name='Out'><!-- nothing --></a>"), "<last/>");
}

TEST_F(ExportEntryTest, SavesNothingWhenTheObserverGivesTheExportUp) {
    observer.lCancelAtItem = 2;
    EXPECT_EQ(
        run(group(
            "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></r>")),
        std::nullopt);
    EXPECT_EQ(observer.lItems, 2);
    EXPECT_TRUE(observer.sNotSavedReason.has_value());
    EXPECT_EQ(state.pMapDoc, nullptr);
}

TEST_F(ExportEntryTest, CanBeGivenUpBetweenNodesThatRepeatNothing) {
    observer.lCancelAtVisit = 3;
    EXPECT_EQ(run("<a Name='Out'><g Name='G'><b Name='B'/><c Name='C' DataSource='Nothing'/></g></a>"),
              std::nullopt);
    EXPECT_TRUE(observer.sNotSavedReason.has_value());
    EXPECT_TRUE(observer.aNotices.empty()) << "the third node is not visited any more";
}

TEST_F(ExportEntryTest, ReportsALoadFailureAfterALoneRootWithoutTheOldNode) {
    run("<a Name='Out'/>");
    run("<a Name='Out'><b></a>");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sName, "");
}

TEST_F(ExportEntryTest, FailsForALoneRootWithoutAName) {
    run("<a/>");
    EXPECT_NE(state.lModErrNum, 0);
    EXPECT_EQ(state.pMapDoc, nullptr) << "the failure comes before the lone root is seen";
}

TEST_F(ExportEntryTest, FailsWhenNoControlFileIsNamed) {
    state.sOutputPath = folder.file("out.xml");
    ExportEntry(state);
    EXPECT_NE(state.lModErrNum, 0);
    EXPECT_EQ(observer.sNotSavedReason, "no control file is named");
}

TEST_F(ExportEntryTest, DropsTheMapDocumentForALocationOfBlanks) {
    EXPECT_EQ(run("<a Name='Out' DataLocation=' '><m Name='M' DataSource='Map' "
                  "DataProperty='SPATIALREFERENCE.XMIN'/></a>"),
              "<Out><M/></Out>");
}

TEST_F(ExportEntryTest, DoesNotHandTheRootsMeasureFieldDownButItsDecimalPlaces) {
    EXPECT_EQ(run("<a Name='Out' DecimalPlace='1' Identity='LayerName' IdentityValue='Roads'>"
                  "<l Name='L' DataSource='MapLayer'><r Name='R' DataSource='Feature' Entries='Multiple'>"
                  "<w Name='W' IdentityValue='WIDTH'/></r></l></a>"),
              "<Out><L><R><W>7.3</W></R><R><W/></R><R><W>12.1</W></R></L></Out>");
}

TEST_F(ExportEntryTest, KeepsTheErrorStateUntilALaterFailureOverwritesIt) {
    run("<a Name='Out'><b Name='X' DataSource='External' IdentityValue='No.Such'/></a>");
    run("<a Name='Out'><b Name='T' DataSource='Time'/></a>");
    EXPECT_EQ(state.lModErrNum, 429);
    EXPECT_NE(state.sModErrMsg, "");
    run("<a Name='Out'><b Name='M' DataSource='Map' DataProperty='noDot'/></a>");
    EXPECT_EQ(state.lModErrNum, 5);
}

TEST_F(ExportEntryTest, TakesAControlDocumentThatIsHandedIn) {
    prepare();
    state.options.oControlDocument = dom::Document::create();
    ASSERT_TRUE(state.options.oControlDocument->loadXML("<a Name='Out'><b Name='B'/></a>"));
    state.sControlPath = "no such file";
    state.sOutputPath = folder.file("out.xml");
    ExportEntry(state);
    EXPECT_EQ(replaceAll(rawOutput(), ">\r\n<", "><"), "<Out><B/></Out>");
}

TEST_F(ExportEntryTest, CanBeGivenUpBehindTheLastNode) {
    const std::string sControl = "<a Name='Out'><g Name='G'><b Name='B'/></g></a>";
    ASSERT_TRUE(run(sControl).has_value());
    sOutputName = "second.xml";
    observer.lCancelAtVisit = 2 * observer.lVisits;
    EXPECT_EQ(run(sControl), std::nullopt);
    EXPECT_EQ(observer.sNotSavedReason, "the export was cancelled");
    EXPECT_EQ(observer.lVisits, observer.lCancelAtVisit);
}

} // namespace
} // namespace halvane::test
