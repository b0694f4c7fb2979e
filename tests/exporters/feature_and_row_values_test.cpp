// What a leaf writes of rows and features.

#include "ElementPropertyTest.h"

#include <string>

namespace halvane::test {
namespace {

using FeatureAndRowValues = ElementPropertyTest;

TEST_F(FeatureAndRowValues, WritesATablesDatasetName) {
    EXPECT_EQ(leaf("DataSource='Table' Identity='TableName' IdentityValue='signs' DataProperty='tablename'"),
              "<Out><V>SIGNS</V></Out>");
    EXPECT_EQ(leaf("DataSource='Record' DataProperty='TableName'"), "<Out><V/></Out>");
}

TEST_F(FeatureAndRowValues, WritesNothingForARecordsFieldWithoutARecord) {
    EXPECT_EQ(leaf("DataSource='Table' Identity='TableName' IdentityValue='signs'"), "<Out><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FeatureAndRowValues, WritesNothingForAFeaturesFieldWithoutAFeature) {
    EXPECT_EQ(leafBelowRoads("DataSource='Feature' IdentityValue='NAME'"), "<Out><L><V/></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FeatureAndRowValues, WritesAFieldOfEachFeature) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='name'"),
              "<Out><L><R><V>High Street</V></R><R><V>Mill Lane</V></R><R><V>Quay</V></R></L></Out>");
}

TEST_F(FeatureAndRowValues, WritesAFeaturesObjectIdentifierForOidAndObjectid) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='oBjEcTiD'"),
              "<Out><L><R><V>1</V></R><R><V>2</V></R><R><V>3</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='oid' Target='Attribute'"),
              "<Out><L><R V=\"1\"/><R V=\"2\"/><R V=\"3\"/></L></Out>");
}

TEST_F(FeatureAndRowValues, FormatsFloatingPointFieldsByTheDecimalPlacesAndNullAsNothing) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='WIDTH' DecimalPlace='1'"),
              "<Out><L><R><V>7.3</V></R><R><V/></R><R><V>12.1</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='WIDTH'"),
              "<Out><L><R><V>7.25</V></R><R><V/></R><R><V>12.125</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='WIDTH' DecimalPlace='abc'"),
              "<Out><L><R><V>7.25</V></R><R><V/></R><R><V>12.125</V></R></L></Out>");
}

TEST_F(FeatureAndRowValues, WritesOtherFieldsUnformatted) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='LANES' DecimalPlace='1'"),
              "<Out><L><R><V>2</V></R><R><V>1</V></R><R><V>4</V></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("IdentityValue='OPENED' DecimalPlace='1'"),
              "<Out><L><R><V>02/03/2001</V></R><R><V/></R><R><V>12/31/1999</V></R></L></Out>");
}

TEST_F(FeatureAndRowValues, WritesNothingForWhatIsNotCurrent) {
    for (const std::string sKind : {"SubType", "Field", "TinWorkspace", "RasterWorkspace"})
        EXPECT_EQ(leaf("DataSource='" + sKind + "' DataProperty='Path'"), "<Out><V/></Out>") << sKind;
    for (const std::string sKind : {"RasterLayer", "TinLayer"})
        EXPECT_EQ(leaf("DataSource='" + sKind +
                       "' Identity='LayerName' IdentityValue='Nowhere' DataProperty='LayerName'"),
                  "<Out><V/></Out>")
            << sKind;
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FeatureAndRowValues, WritesNoFieldsForALeafThatIsNotRepeated) {
    EXPECT_EQ(leafBelowRoads("DataSource='Field' DataProperty='FieldName'"), "<Out><L><V/></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FeatureAndRowValues, TellsOfALeafWhoseKindGivesValuesOnlyWhereItIsRepeated) {
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

TEST_F(FeatureAndRowValues, TellsThatNoRasterOrTableIsCurrent) {
    leaf("DataSource='RasterWorkspace' DataProperty='Path'");
    EXPECT_TRUE(observer.noticed("V", Notice::ResolvedToNothing));
    leaf("DataSource='Record' DataProperty='TableName'");
    EXPECT_TRUE(observer.noticed("V", Notice::NoCurrentTable));
}

TEST_F(FeatureAndRowValues, GivesAnEmptyValueForAFieldThatIsNotFound) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='COLOUR'"),
              "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::FieldNotFound));
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FeatureAndRowValues, FailsForAFieldThatHoldsAShape) {
    EXPECT_EQ(leafOfEachRoad("IdentityValue='SHAPE'"), "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_EQ(state.lModErrNum, 13);
    ASSERT_EQ(observer.aFailures.size(), 3U);
    EXPECT_EQ(observer.aFailures[1].sContext,
              "the field \"SHAPE\" of row 2 holds a shape, not a value that has a text");
}

TEST_F(FeatureAndRowValues, WritesNothingForAGeometryKindInAnyLetterCase) {
    EXPECT_EQ(leafOfEachRoad("DataSource='Geometry.Length' DataProperty='Geometry.Length'"),
              "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_EQ(leafOfEachRoad("DataSource='geometry.point' DataProperty='Geometry.X'"),
              "<Out><L><R><V/></R><R><V/></R><R><V/></R></L></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(FeatureAndRowValues, HeedsNoDecimalPlacesForValuesThatHaveNone) {
    EXPECT_EQ(
        leaf("DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' DataProperty='FeatureCount' "
             "DecimalPlace='99999999999'"),
        "<Out><V>3</V></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

} // namespace
} // namespace halvane::test
