// The one value of a leaf.

#include "support/ExportTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace halvane::test {
namespace {

class ElementPropertyTest : public ExportTest {
protected:
    /// The document's content for one leaf directly below the root.
    std::string leaf(const std::string& sAttributes) {
        return run("<a Name='Out'><v Name='V' " + sAttributes + "/></a>").value_or("(not written)");
    }
    /// The same after the roads layer became current.
    std::string leafBelowRoads(const std::string& sAttributes) {
        return run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' "
                   "IdentityValue='Roads'>"
                   "<v Name='V' " +
                   sAttributes + "/></l></a>")
            .value_or("(not written)");
    }
    /// The same for each road.
    std::string leafOfEachRoad(const std::string& sAttributes) {
        return run(group("<r Name='R' DataSource='Feature' Entries='Multiple'><v Name='V' " + sAttributes +
                         "/></r>"))
            .value_or("(not written)");
    }
};

// ---- Writing
// ---------------------------------------------------------------------------------------------------

TEST_F(ElementPropertyTest, WritesTheValueAsTheTextOfTheElement) {
    EXPECT_EQ(leaf("DataSource='Time'"), "<Out><V>11/21/2026</V></Out>");
}

TEST_F(ElementPropertyTest, WritesTheValueIntoTheAttributeMadeForIt) {
    EXPECT_EQ(leaf("DataSource='Time' Target='Attribute'"), "<Out V=\"11/21/2026\"/>");
}

TEST_F(ElementPropertyTest, NeverCreatesTheAttribute) {
    state.oOutputManager = std::make_unique<ClsXMLManager>();
    const ControlText control(state, "<v Name='V' DataSource='Time' Target='Attribute'/>");
    auto oOutput = dom::Document::create();
    ASSERT_TRUE(oOutput->loadXML("<Out/>"));
    ExportElementProperty(state, control.root(), oOutput->documentElement(), nullptr, nullptr);
    EXPECT_EQ(oOutput->xml(), "<Out/>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(ElementPropertyTest, TellsAnUnknownPropertyAsItIsWritten) {
    for (const std::string sProperty : {"Reference.XMin", "SpatialReference"}) {
        observer.aNotices.clear();
        EXPECT_EQ(leafBelowRoads("DataProperty='" + sProperty + "'"), "<Out><L><V/></L></Out>");
        ASSERT_EQ(observer.aNotices.size(), 1U);
        EXPECT_EQ(observer.aNotices[0].notice, Notice::UnknownProperty);
        EXPECT_EQ(observer.aNotices[0].sDetail, sProperty);
    }
}

TEST_F(ElementPropertyTest, LeavesTheElementEmptyForAnUnknownKind) {
    EXPECT_EQ(leaf("DataSource='Nothing' DataProperty='LayerName'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

// ---- External, Time
// ---------------------------------------------------------------------------------------------

TEST_F(ElementPropertyTest, WritesWhatAnExternalProcessorReturns) {
    world.registerSpy("Test.Processor", "computed");
    EXPECT_EQ(leaf("DataSource='External' IdentityValue='Test.Processor'"), "<Out><V>computed</V></Out>");
}

TEST_F(ElementPropertyTest, FailsForAComponentThatCannotBeCreated) {
    EXPECT_EQ(leaf("DataSource='External' IdentityValue='No.Such'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 429);
}

TEST_F(ElementPropertyTest, WritesNothingForAComponentThatIsNoProcessor) {
    world.registerComponentWithoutRole("Test.Other");
    EXPECT_EQ(leaf("DataSource='External' IdentityValue='Test.Other'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, WritesTodayWithTwoDigitsForMonthAndDay) {
    world.pHost->setToday({2027, 3, 4, 0, 0, 0});
    EXPECT_EQ(leaf("DataSource='Time'"), "<Out><V>03/04/2027</V></Out>");
}

// ---- Map
// --------------------------------------------------------------------------------------------------------

TEST_F(ElementPropertyTest, WritesASpatialReferencePropertyOfTheMap) {
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='SPATIALREFERENCE.XMIN'"), "<Out><V>-12.5</V></Out>");
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='SpatialReference.xmin'"), "<Out><V>-12.5</V></Out>");
}

TEST_F(ElementPropertyTest, FailsForAMapPropertyWithoutADot) {
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='SPATIALREFERENCE'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 5);
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sContext,
              "the DataProperty \"SPATIALREFERENCE\" of a map has no \".\", as in "
              "\"SPATIALREFERENCE.UNITS\"");
}

TEST_F(ElementPropertyTest, WritesNothingForAnotherMapProperty) {
    EXPECT_EQ(leaf("DataSource='Map' DataProperty='Some.Thing'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(ElementPropertyTest, WritesNothingForAMapThatIsNotThere) {
    EXPECT_EQ(leaf("DataSource='Map' IdentityValue='Nowhere' DataProperty='noDot'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, DoesNotRecogniseTheMapInLowerCase) {
    EXPECT_EQ(leaf("DataSource='map' DataProperty='SPATIALREFERENCE'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

// ---- Layers
// -----------------------------------------------------------------------------------------------------

TEST_F(ElementPropertyTest, WritesALayersNameAndCountByPropertiesInAnyLetterCase) {
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' DataProperty='LAYERNAME'"),
        "<Out><V>Roads</V></Out>");
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' DataProperty='featurecount'"),
        "<Out><V>3</V></Out>");
}

TEST_F(ElementPropertyTest, CountsAllFeaturesWhateverIsSelected) {
    world.pRoadsLayer->select({2});
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' DataProperty='FeatureCount'"),
        "<Out><V>3</V></Out>");
}

TEST_F(ElementPropertyTest, WritesALayersSpatialReference) {
    EXPECT_EQ(leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' "
                   "DataProperty='SPATIALREFERENCE.XMAX'"),
              "<Out><V>12.5</V></Out>");
}

TEST_F(ElementPropertyTest, ReachesTheLayerPropertiesByTheKindInAnyLetterCase) {
    EXPECT_EQ(leafBelowRoads("DataSource='featurelayer' DataProperty='LayerName'"),
              "<Out><L><V>Roads</V></L></Out>");
    EXPECT_EQ(leafBelowRoads("DataSource='MAPLAYER' DataProperty='LayerName'"),
              "<Out><L><V>Roads</V></L></Out>");
}

TEST_F(ElementPropertyTest, TellsOfAPropertyThatItsKindDoesNotKnow) {
    const std::string sBound =
        "<r Name='R' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'/>"
        "<t Name='T' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'/>";
    for (const auto* sSource :
         {"DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'",
          "DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'",
          "DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'", "DataSource='RasterWorkspace'",
          "DataSource='TinWorkspace'", "DataSource='Workspace' DataLocation='C:\\data\\town.mdb'"}) {
        observer.aNotices.clear();
        run("<a Name='Out'>" + sBound + "<v Name='V' DataProperty='Colour' " + sSource + "/></a>");
        EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty)) << sSource;
    }
}

TEST_F(ElementPropertyTest, WritesNothingForALayerThatIsNotThereOrAnUnknownProperty) {
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Nowhere' DataProperty='LayerName'"),
        "<Out><V/></Out>");
    EXPECT_EQ(leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' DataProperty='Colour'"),
              "<Out><V/></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(ElementPropertyTest, WritesATinLayersName) {
    EXPECT_EQ(
        leaf("DataSource='TinLayer' Identity='LayerName' IdentityValue='relief' DataProperty='layername'"),
        "<Out><V>Relief</V></Out>");
    EXPECT_EQ(
        leaf("DataSource='TinLayer' Identity='LayerName' IdentityValue='Nowhere' DataProperty='LayerName'"),
        "<Out><V/></Out>");
}

TEST_F(ElementPropertyTest, WritesARasterLayersNameAndItsFoldersPath) {
    EXPECT_EQ(
        leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='LayerName'"),
        "<Out><V>Photo</V></Out>");
    EXPECT_EQ(leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='PATH'"),
              "<Out><V>D:\\data\\</V></Out>");
}

TEST_F(ElementPropertyTest, WritesAnEmptyPathForARasterWithoutAFolder) {
    world.setPhotoPath("dem.img");
    EXPECT_EQ(leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='Path'"),
              "<Out><V/></Out>");
    EXPECT_FALSE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(ElementPropertyTest, CutsARastersPathAtTheHostsOwnSeparator) {
    world.pHost->setPathSeparator('/');
    world.setPhotoPath("/data/back\\slash/dem.img");
    EXPECT_EQ(leaf("DataSource='RasterLayer' Identity='LayerName' IdentityValue='photo' DataProperty='Path'"),
              "<Out><V>/data/back\\slash/</V></Out>");
}

TEST_F(ElementPropertyTest, WritesTheFolderOfTheCurrentRasterAsItsWorkspace) {
    EXPECT_EQ(
        run("<a Name='Out'><l Name='L' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'>"
            "<v Name='V' DataSource='RasterWorkspace' DataProperty='path'/></l></a>"),
        "<Out><L><V>D:\\data\\</V></L></Out>");
    EXPECT_EQ(leaf("DataSource='RasterWorkspace' DataProperty='Path'"), "<Out><V/></Out>");
}

// ---- Workspaces
// -------------------------------------------------------------------------------------------------

TEST_F(ElementPropertyTest, WritesALocalDatabaseForEveryPropertyWithoutAWorkspace) {
    EXPECT_EQ(leaf("DataSource='Workspace' DataLocation='C:\\nowhere' DataProperty='Path'"),
              "<Out><V>vemiLocalDatabaseWorkspace</V></Out>");
    EXPECT_EQ(leaf("DataSource='Workspace' DataLocation='C:\\nowhere' DataProperty='Anything'"),
              "<Out><V>vemiLocalDatabaseWorkspace</V></Out>");
}

TEST_F(ElementPropertyTest, WritesAWorkspacesPath) {
    EXPECT_EQ(leafBelowRoads("DataSource='Workspace' DataProperty='path'"),
              "<Out><L><V>C:\\data\\town.mdb</V></L></Out>");
}

TEST_F(ElementPropertyTest, WritesAWorkspacesTypeByItsCode) {
    const auto typeText = [&](std::int32_t lCode) {
        world.replaceWorkspace(lCode);
        return leafBelowRoads("DataSource='Workspace' DataProperty='workspacetype'");
    };
    EXPECT_EQ(typeText(0), "<Out><L><V>vemiFileSystemWorkspace</V></L></Out>");
    EXPECT_EQ(typeText(1), "<Out><L><V>vemiLocalDatabaseWorkspace</V></L></Out>");
    EXPECT_EQ(typeText(2), "<Out><L><V>vemiRemoteDatabaseWorkspace</V></L></Out>");
    EXPECT_EQ(typeText(3), "<Out><L><V/></L></Out>");
}

TEST_F(ElementPropertyTest, WritesATinWorkspacesPathOnly) {
    const auto tin = [&](const std::string& sProperty) {
        return run(
            "<a Name='Out'><l Name='L' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'>"
            "<v Name='V' DataSource='TinWorkspace' DataProperty='" +
            sProperty + "'/></l></a>");
    };
    EXPECT_EQ(tin("Path"), "<Out><L><V>E:\\tins</V></L></Out>");
    EXPECT_EQ(tin("WorkspaceType"), "<Out><L><V/></L></Out>");
    EXPECT_EQ(leaf("DataSource='TinWorkspace' DataProperty='Path'"), "<Out><V/></Out>");
}

// ---- Records and features
// ----------------------------------------------------------------------------------------

TEST_F(ElementPropertyTest, WritesATablesDatasetName) {
    EXPECT_EQ(leaf("DataSource='Table' Identity='TableName' IdentityValue='signs' DataProperty='tablename'"),
              "<Out><V>SIGNS</V></Out>");
    EXPECT_EQ(leaf("DataSource='Record' DataProperty='TableName'"), "<Out><V/></Out>");
}

TEST_F(ElementPropertyTest, WritesNothingForARecordsFieldWithoutARecord) {
    EXPECT_EQ(leaf("DataSource='Table' Identity='TableName' IdentityValue='signs'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, WritesNothingForAFeaturesFieldWithoutAFeature) {
    EXPECT_EQ(leafBelowRoads("DataSource='Feature' IdentityValue='NAME'"), "<Out><L><V/></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, WritesAFieldOfEachFeature) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='name'"),
              "<Out><L><R><V>High Street</V></R><R><V>Mill Lane</V></R><R><V>Quay</V></R></L></Out>");
}

TEST_F(ElementPropertyTest, WritesAFeaturesObjectIdentifierForOidAndObjectid) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='oBjEcTiD'"),
              "<Out><L><R><V>1</V></R><R><V>2</V></R><R><V>3</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='oid' Target='Attribute'"),
              "<Out><L><R V=\"1\"/><R V=\"2\"/><R V=\"3\"/></L></Out>");
}

TEST_F(ElementPropertyTest, FormatsFloatingPointFieldsByTheDecimalPlacesAndNullAsNothing) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='WIDTH' DecimalPlace='1'"),
              "<Out><L><R><V>7.3</V></R><R><V/></R><R><V>12.1</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='WIDTH'"),
              "<Out><L><R><V>7.25</V></R><R><V/></R><R><V>12.125</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='WIDTH' DecimalPlace='abc'"),
              "<Out><L><R><V>7.25</V></R><R><V/></R><R><V>12.125</V></R></L></Out>");
}

TEST_F(ElementPropertyTest, WritesOtherFieldsUnformatted) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='LANES' DecimalPlace='1'"),
              "<Out><L><R><V>2</V></R><R><V>1</V></R><R><V>4</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='OPENED' DecimalPlace='1'"),
              "<Out><L><R><V>02/03/2001</V></R><R><V/></R><R><V>12/31/1999</V></R></L></Out>");
}

TEST_F(ElementPropertyTest, WritesNothingForWhatIsNotCurrent) {
    for (const std::string sKind : {"SubType", "Field", "TinWorkspace", "RasterWorkspace"})
        EXPECT_EQ(leaf("DataSource='" + sKind + "' DataProperty='Path'"), "<Out><V/></Out>") << sKind;
    for (const std::string sKind : {"RasterLayer", "TinLayer"})
        EXPECT_EQ(leaf("DataSource='" + sKind +
                       "' Identity='LayerName' IdentityValue='Nowhere' DataProperty='LayerName'"),
                  "<Out><V/></Out>")
            << sKind;
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, WritesNoFieldsForALeafThatIsNotRepeated) {
    EXPECT_EQ(leafBelowRoads("DataSource='Field' DataProperty='FieldName'"), "<Out><L><V/></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, TellsOfALeafWhoseKindGivesValuesOnlyWhereItIsRepeated) {
    for (const std::string sKind :
         {"Field", "WorkspaceDomain", "Relationship", "Geometry.Point", "Geometry.Vertice"}) {
        observer.aNotices.clear();
        EXPECT_EQ(leafBelowRoads("DataSource='" + sKind + "' DataProperty='FieldName'"),
                  "<Out><L><V/></L></Out>");
        EXPECT_TRUE(observer.noticed("V", Notice::OnlyRepeated)) << sKind;
    }
    for (const std::string sKind : {"geometry.point", "FeatureClass", "FeatureAttributes"}) {
        leafBelowRoads("DataSource='" + sKind + "'");
        EXPECT_TRUE(observer.noticed("V", Notice::UnknownKind)) << sKind;
    }
}

TEST_F(ElementPropertyTest, TellsThatNoRasterOrTableIsCurrent) {
    leaf("DataSource='RasterWorkspace' DataProperty='Path'");
    EXPECT_TRUE(observer.noticed("V", Notice::ResolvedToNothing));
    leaf("DataSource='Record' DataProperty='TableName'");
    EXPECT_TRUE(observer.noticed("V", Notice::NoCurrentTable));
}

TEST_F(ElementPropertyTest, WritesNothingForAPropertyThatARastersFolderDoesNotHave) {
    EXPECT_EQ(run("<a Name='Out'><p Name='P' DataSource='RasterLayer' Identity='LayerName' "
                  "IdentityValue='Photo' DataProperty='Path'/>"
                  "<w Name='W' DataSource='RasterWorkspace' DataProperty='Path'/>"
                  "<o Name='O' DataSource='RasterWorkspace' DataProperty='LayerName'/></a>"),
              "<Out><P>D:\\data\\</P><W>D:\\data\\</W><O/></Out>");
}

TEST_F(ElementPropertyTest, GivesAnEmptyValueForAFieldThatIsNotFound) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='COLOUR'"),
              "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::FieldNotFound));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, FailsForAFieldThatHoldsAShape) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='SHAPE'"), "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_EQ(state.lModErrNum, 13);
    ASSERT_EQ(observer.aFailures.size(), 3U);
    EXPECT_EQ(observer.aFailures[1].sContext,
              "the field \"SHAPE\" of row 2 holds a shape, not a value that has a text");
}

TEST_F(ElementPropertyTest, WritesNothingForAGeometryKindInAnyLetterCase) {
    EXPECT_EQ(leafOfEachRoad("DataSource='Geometry.Length' DataProperty='Geometry.Length'"),
              "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("DataSource='geometry.point' DataProperty='Geometry.X'"),
              "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

// ---- Related rows
// ------------------------------------------------------------------------------------------------

class RelatedValues : public ElementPropertyTest {
protected:
    std::string related(const std::string& sLeafAttributes, const std::string& sLinkField = "ROUTE_ID") {
        return run(group("<r Name='R' DataSource='Feature' Entries='Multiple'>"
                         "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                         "LinkField='" +
                         sLinkField + "'><v Name='V' DataSource='RelatedRecord' " + sLeafAttributes +
                         "/></g></r>"))
            .value_or("(not written)");
    }
};

TEST_F(RelatedValues, WritesTheFirstRowIntoTheElementAndEachFurtherOneIntoANewElementAfterIt) {
    EXPECT_EQ(related("IdentityValue='KIND'"),
              "<Out><L><R><G><V>Stop</V><V>Yield</V></G></R><R><G><V/></G></R>"
              "<R><G><V>Stop</V><V>Yield</V></G></R></L></Out>");
}

TEST_F(RelatedValues, QuotesTheValueOfATextLinkFieldAndNoOther) {
    related("IdentityValue='KIND'");
    EXPECT_EQ(world.pSigns->whereClauses().back(), "ROUTE_ID='R17'");
    related("IdentityValue='KIND'", "LANES");
    EXPECT_EQ(world.pSigns->whereClauses().back(), "LANES=4");
}

TEST_F(RelatedValues, FormatsFloatingPointAndDateFieldsAndNulls) {
    EXPECT_EQ(related("IdentityValue='HEIGHT' DecimalPlace='1'"),
              "<Out><L><R><G><V>2.5</V><V/></G></R><R><G><V/></G></R><R><G><V>2.5</V><V/></G></R></L></Out>");
    EXPECT_EQ(related("IdentityValue='SET_ON'"),
              "<Out><L><R><G><V>05/06/2007</V><V/></G></R><R><G><V/></G></R>"
              "<R><G><V>05/06/2007</V><V/></G></R></L></Out>");
}

TEST_F(RelatedValues, WritesFurtherRowsAsElementsBesideAnAttributeHolder) {
    EXPECT_EQ(related("IdentityValue='KIND' Target='Attribute'"),
              "<Out><L><R><G V=\"Stop\"/><V>Yield</V></R><R><G V=\"\"/></R><R><G "
              "V=\"Stop\"/><V>Yield</V></R></L></Out>");
}

TEST_F(RelatedValues, TellsOnceForARowOfElementsBesideAnAttribute) {
    related("IdentityValue='KIND' Target='Attribute'");
    EXPECT_EQ(std::count_if(observer.aNotices.begin(), observer.aNotices.end(),
                            [](const auto& notice) { return notice.notice == Notice::RowsBesideAttribute; }),
              2);
    observer.aNotices.clear();
    related("IdentityValue='KIND'");
    EXPECT_FALSE(observer.noticed("V", Notice::RowsBesideAttribute));
}

TEST_F(RelatedValues, WritesNothingWithoutALinkFieldOrForOneThatTheRowLacks) {
    EXPECT_EQ(related("IdentityValue='KIND'", ""),
              "<Out><L><R><G><V/></G></R><R><G><V/></G></R><R><G><V/></G></R></L></Out>");
    EXPECT_EQ(related("IdentityValue='KIND'", "COLOUR"),
              "<Out><L><R><G><V/></G></R><R><G><V/></G></R><R><G><V/></G></R></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
    EXPECT_TRUE(observer.noticed("V", Notice::FieldNotFound));
}

TEST_F(RelatedValues, WritesNothingWithoutARow) {
    EXPECT_EQ(
        leafBelowRoads(
            "DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' LinkField='ROUTE_ID'"),
        "<Out><L><V/></L></Out>");
}

TEST_F(RelatedValues, FailsForALinkValueOfNullWhoseClauseTheHostRejects) {
    world.pRoads->addRow({std::int64_t{4}, Null{}, std::string("Nameless"), Null{}, Null{}, Null{}, Null{}});
    related("IdentityValue='KIND'", "LANES");
    EXPECT_NE(state.lModErrNum, 0);
    ASSERT_FALSE(observer.aFailures.empty());
    EXPECT_EQ(observer.aFailures.back().sContext,
              "it is made of LinkField=\"LANES\" in line 1 and the row's value as it is, which is empty");
}

TEST_F(RelatedValues, SaysWhatAnApostropheInTheLinkValueDoesToTheClause) {
    world.pRoads->addRow(
        {std::int64_t{4}, Null{}, std::string("Pier"), std::string("O'Brien"), Null{}, Null{}, Null{}});
    related("IdentityValue='KIND'");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(
        observer.aFailures.back().sContext,
        "it is made of LinkField=\"ROUTE_ID\" in line 1 and the row's value as it is, and the apostrophe "
        "in it ends the text: link by a field without apostrophes, or let a view of the linking data "
        "double them");
}

TEST_F(RelatedValues, SaysThatTheRelatedTableLacksTheLinkField) {
    related("IdentityValue='KIND'", "NAME");
    ASSERT_EQ(observer.aFailures.size(), 3U);
    EXPECT_EQ(
        observer.aFailures.front().sContext,
        "it is made of LinkField=\"NAME\" in line 1 and the row's value as it is: the related table needs "
        "a field of that name");
}

TEST_F(RelatedValues, TellsTheClauseWhereTheHostsMessageDoesNot) {
    constexpr const char* sContext =
        "the clause ROUTE_ID='R17' is made of LinkField=\"ROUTE_ID\" in line 1 and the row's value as it is";
    auto& faults = world.pHost->faults();
    faults.reset();
    faults.failAt("GisTable.search", 2); // after that of the roads
    related("IdentityValue='KIND'");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures.front().sContext, sContext);
    faults.failAt("GisTable.search", 2);
    related("IdentityValue='KIND'", "OID");
    ASSERT_EQ(observer.aFailures.size(), 2U);
    EXPECT_EQ(observer.aFailures.back().sContext,
              "the clause OID=1 is made of LinkField=\"OID\" in line 1 and the row's value as it is")
        << "the first field of the related table is one of its fields, too";
    faults.failAt("GisTable.search", 2);
    faults.failAt("GisTable.fields", 2); // after those of the roads
    related("IdentityValue='KIND'");
    ASSERT_EQ(observer.aFailures.size(), 3U);
    EXPECT_EQ(observer.aFailures.back().sContext, sContext) << "a table that is not read lacks nothing";
}

TEST_F(RelatedValues, TellsNoLineOfALinkFieldWhereTheDocumentTellsNone) {
    const auto oControl = dom::Document::create();
    Node oNode = oControl->asNode();
    const auto add = [&](const std::string& sName,
                         const std::vector<std::pair<const char*, const char*>>& aAttributes) {
        oNode = oNode.appendChild(oControl->createElement(*oControl->findName("n")));
        oNode.setAttribute("Name", sName);
        for (const auto& [sAttribute, sValue] : aAttributes)
            oNode.setAttribute(sAttribute, sValue);
    };
    add("Out", {});
    add("L", {{"DataSource", "MapLayer"}, {"Identity", "LayerName"}, {"IdentityValue", "Roads"}});
    add("R", {{"DataSource", "Feature"}, {"Entries", "Multiple"}, {"LinkField", "ROUTE_ID"}});
    add("G", {{"DataSource", "RelatedTable"}, {"IdentityValue", "SIGNS"}});
    add("V", {{"DataSource", "RelatedRecord"}, {"IdentityValue", "KIND"}});
    state.options.oControlDocument = oControl;
    world.pHost->faults().failAt("GisTable.search", 2);
    run("");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures.front().sContext,
              "the clause ROUTE_ID='R17' is made of LinkField=\"ROUTE_ID\" and the row's value as it is");
}

TEST_F(RelatedValues, TellsTheLinkFieldOfAnElementFurtherUp) {
    world.pRoads->addRow(
        {std::int64_t{4}, Null{}, std::string("Pier"), std::string("R17"), Null{}, Null{}, Null{}});
    run(group(
        "<r Name='R' DataSource='Feature' Entries='Multiple' LinkField='LANES'>\n"
        "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' LinkField=''>\n"
        "<v Name='V' DataSource='RelatedRecord' IdentityValue='KIND'/></g></r>"));
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures.back().sContext,
              "it is made of LinkField=\"LANES\" in line 1 and the row's value as it is, which is empty");
}

TEST_F(RelatedValues, LeavesNoElementForARowWhoseValueFails) {
    world.pHost->faults().failAt("GisRow.value", 3); // after the link value and the first row's
    EXPECT_EQ(related("IdentityValue='KIND'"), "<Out><L><R><G><V>Stop</V></G></R><R><G><V/></G></R>"
                                               "<R><G><V>Stop</V><V>Yield</V></G></R></L></Out>");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(RelatedValues, TakesTheFieldsNameWhateverTheIdentity) {
    EXPECT_EQ(related("Identity='TagName' IdentityValue='KIND'"),
              "<Out><L><R><G><V>Stop</V><V>Yield</V></G></R><R><G><V/></G></R><R><G><V>Stop</V><V>Yield</V></"
              "G></R></L></Out>");
}

TEST_F(RelatedValues, GivesAnEmptyValueForAFieldThatTheRelatedRowLacks) {
    EXPECT_EQ(related("IdentityValue='COLOUR'"),
              "<Out><L><R><G><V/><V/></G></R><R><G><V/></G></R><R><G><V/><V/></G></R></L></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::FieldNotFound));
}

TEST_F(RelatedValues, WritesForARelatedTableLeafToo) {
    EXPECT_EQ(
        leafOfEachRoad(
            "DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' LinkField='ROUTE_ID'"),
        "<Out><L><R><V/><V/></R><R><V/></R><R><V/><V/></R></L></Out>")
        << "the table's name is no field of it, but each of its rows is written";
}

/// Leaves of a repeated feature do not pass through the walker: what they bind they bind themselves.
class DirectLeaf : public ElementPropertyTest {
protected:
    std::vector<std::string> keysAfter(const std::string& sLeaf) {
        const std::string sProgId = "Spy.Component" + std::to_string(++nSpies_);
        const auto pSpy = world.registerSpy(sProgId);
        world.pRoadsLayer->select({1});
        run(group("<r Name='R' DataSource='Feature' Entries='Multiple'>" + sLeaf +
                  "<x Name='X' DataSource='External' IdentityValue='" + sProgId + "'/></r>"));
        return pSpy->keysInOrder();
    }

private:
    int nSpies_ = 0;
};

TEST_F(DirectLeaf, BindsEachKindAndFilesItBehindTheOthersUnderItsKey) {
    const std::vector<std::string> aBefore{"FeatureLayer", "FeatureClass", "DataFrame"};
    const auto with = [&](const std::string& sKey) {
        auto aKeys = aBefore;
        aKeys.push_back(sKey);
        return aKeys;
    };
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'/>"),
              with("Table"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS'/>"),
              with("RelatedTable"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='Workspace'/>"), with("Workspace"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='TinLayer' Identity='LayerName' IdentityValue='Relief'/>"),
              with("TinLayer"));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='Map' IdentityValue='Harbour Map' DataProperty='A.B'/>"),
              (std::vector<std::string>{"FeatureLayer", "FeatureClass", "DataFrame"}));
    EXPECT_EQ(
        keysAfter("<t Name='T' DataSource='MapLayer' Identity='LayerName' IdentityValue='Base:Roads'/>"),
        (std::vector<std::string>{"DataFrame", "FeatureLayer", "FeatureClass"}));
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo'/>"),
              aBefore);
    EXPECT_EQ(keysAfter("<t Name='T' DataSource='FeatureTable'/>"), aBefore);
}

TEST_F(DirectLeaf, WritesThePropertyOfWhatItBoundItself) {
    EXPECT_EQ(
        leafOfEachRoad(
            "DataSource='RasterLayer' Identity='LayerName' IdentityValue='Photo' DataProperty='LayerName'"),
        "<Out><L><R><V>Photo</V></R><R><V>Photo</V></R><R><V>Photo</V></R></L></Out>");
}

TEST_F(ElementPropertyTest, FailsForTheCountOfALayerWithoutAFeatureClass) {
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("Bare", nullptr));
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Bare' DataProperty='FeatureCount'"),
        "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 91);
}

TEST_F(ElementPropertyTest, HeedsNoDecimalPlacesForValuesThatHaveNone) {
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' DataProperty='FeatureCount' "
             "DecimalPlace='99999999999'"),
        "<Out><V>3</V></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(ElementPropertyTest, TellsTheObserverOfAKindThatGivesNoSingleValue) {
    leaf("DataSource='Featur' IdentityValue='NAME'");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownKind));
    observer.aNotices.clear();
    leaf("DataSource='' IdentityValue='NAME'");
    EXPECT_TRUE(observer.aNotices.empty()) << "a node without a kind is only an element";
}

TEST_F(ElementPropertyTest, RecognisesALayersSpatialReferenceInAnyLetterCase) {
    EXPECT_EQ(leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='roads' "
                   "DataProperty='SpatialReference.xMax'"),
              "<Out><V>12.5</V></Out>");
}

TEST_F(ElementPropertyTest, LetsAnExternalProcessorAddToTheResolvedObjects) {
    class Adding : public IExternalProcessor {
        std::string Process(dCollection& dColSpatialVariables) override {
            dColSpatialVariables.Add(std::string("added"), "Note");
            return dColSpatialVariables.GetValueString("Note");
        }
    };
    world.pHost->registerComponent("Test.Adding", [] { return std::make_shared<Adding>(); });
    const auto pSpy = world.registerSpy("Spy.Component");
    run("<a Name='Out'><v Name='V' DataSource='External' IdentityValue='Test.Adding'/>"
        "<x Name='X' DataSource='External' IdentityValue='Spy.Component'/></a>");
    EXPECT_EQ(pSpy->keysInOrder().front(), "Note");
}

/// Does something to the host's objects, and returns "".
class Changing : public IExternalProcessor {
public:
    explicit Changing(std::function<void()> fnChange) : fnChange_(std::move(fnChange)) {}
    std::string Process(dCollection& /*dColSpatialVariables*/) override {
        fnChange_();
        return {};
    }

private:
    std::function<void()> fnChange_;
};

TEST_F(ElementPropertyTest, CountsFeaturesAnewAfterAProcessorHasActed) {
    const auto pBare = host::memory::MemoryFeatureClass::make(
        "Bare", host::ShapeType::Point, {host::memory::field("A", host::FieldType::String)});
    pBare->addRow({std::string("one")});
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("Bare", pBare));
    world.pHost->registerComponent("Test.Changing", [&] {
        return std::make_shared<Changing>([&] { pBare->addRow({std::string("two")}); });
    });
    EXPECT_EQ(run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Bare'>"
                  "<c Name='C' DataProperty='FeatureCount'/><d Name='D' DataProperty='FeatureCount'/>"
                  "<e Name='E' DataSource='External' IdentityValue='Test.Changing'/>"
                  "<f Name='F' DataProperty='FeatureCount'/></l></a>"),
              "<Out><L><C>1</C><D>1</D><E/><F>2</F></L></Out>");
}

TEST_F(ElementPropertyTest, FindsALayerAnewAfterAProcessorHasActed) {
    world.pHost->registerComponent("Test.Changing", [&] {
        return std::make_shared<Changing>(
            [&] { world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make("Late", world.pRoads)); });
    });
    EXPECT_EQ(
        run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Late'>"
            "<c Name='C' DataProperty='LayerName'/>"
            "<e Name='E' DataSource='External' IdentityValue='Test.Changing'/>"
            "<f Name='F' DataSource='MapLayer' IdentityValue='Late' DataProperty='LayerName'/></l></a>"),
        "<Out><L><C/><E/><F>Late</F></L></Out>");
}

TEST_F(RelatedValues, TellsTheLinkFieldEvenWhereTheHostFailsToTellTheTablesFields) {
    world.pRoads->addRow({std::int64_t{4}, Null{}, std::string("Nameless"), Null{}, Null{}, Null{}, Null{}});
    auto& faults = world.pHost->faults();
    related("IdentityValue='KIND'", "LANES");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    const std::string sContext = observer.aFailures[0].sContext;
    const std::int64_t nCalls = faults.callCount("GisTable.fields");
    faults.reset();
    related("IdentityValue='KIND'", "LANES");
    // The last time that fields are asked for is for the context.
    const std::int64_t nCallsOfOne = faults.callCount("GisTable.fields");
    ASSERT_GE(nCalls, nCallsOfOne);
    faults.reset();
    faults.failAt("GisTable.fields", nCallsOfOne);
    observer.aFailures.clear();
    related("IdentityValue='KIND'", "LANES");
    ASSERT_EQ(observer.aFailures.size(), 1U);
    EXPECT_EQ(observer.aFailures[0].sContext, sContext);
}

TEST_F(ElementPropertyTest, WritesAPropertyOfTheSubtypesForALeafBelowALayer) {
    const auto pSubtypes = host::memory::MemorySubtypes::make("KIND", 5);
    pSubtypes->addSubtype(5, "Track");
    world.pRoads->setSubtypes(pSubtypes);
    EXPECT_EQ(leafBelowRoads("DataSource='SubType' DataProperty='SubTypeFieldName'"),
              "<Out><L><V>KIND</V></L></Out>");
}

} // namespace
} // namespace halvane::test
