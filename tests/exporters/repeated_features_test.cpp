// A node that is repeated for each feature of a layer.

#include "MultipleTest.h"

#include <limits>
#include <string>

namespace halvane::test {
namespace {

using RepeatedFeatures = MultipleTest;

TEST_F(RepeatedFeatures, WritesOneElementPerFeatureUnderTheSameParent) {
    EXPECT_EQ(
        below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/>"
              "<o Name='id' Target='Attribute' IdentityValue='OID'/></r>"),
        "<Out><L><Road id=\"1\"><N>High Street</N></Road><Road id=\"2\"><N>Mill Lane</N></Road>"
        "<Road id=\"3\"><N>Quay</N></Road></L></Out>");
}

TEST_F(RepeatedFeatures, WritesOnlyTheSelectedFeaturesInSelectionOrder) {
    world.pRoadsLayer->select({3, 1});
    EXPECT_EQ(
        below(
            "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></r>"),
        "<Out><L><Road><N>Quay</N></Road><Road><N>High Street</N></Road></L></Out>");
}

TEST_F(RepeatedFeatures, LeavesTheHandedInElementEmptyForALayerWithoutFeatures) {
    world.pTownMap->addLayer(host::memory::MemoryFeatureLayer::make(
        "Empty", host::memory::MemoryFeatureClass::make("E", host::ShapeType::Point, {})));
    EXPECT_EQ(
        run("<a Name='Out'><l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Empty'>"
            "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r></l></a>"),
        "<Out><L><R/></L></Out>");
}

TEST_F(RepeatedFeatures, AppendsLaterItemsBehindNodesThatStandThereAlready) {
    EXPECT_EQ(
        below("<x Name='First'/><r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
              "IdentityValue='OID'/></r>"
              "<y Name='Last'/>"),
        "<Out><L><First/><Road><N>1</N></Road><Road><N>2</N></Road><Road><N>3</N></Road><Last/></L></Out>");
}

TEST_F(RepeatedFeatures, WalksAGroupInsideEachFeatureWithTheFeatureHandedDown) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><g Name='G'><n Name='N' "
                    "IdentityValue='OID'/>"
                    "<h Name='H'><m Name='M' IdentityValue='LANES'/></h></g></r>"),
              "<Out><L><Road><G><N>1</N><H><M>2</M></H></G></Road><Road><G><N>2</N><H><M>1</M></H></G></Road>"
              "<Road><G><N>3</N><H><M>4</M></H></G></Road></L></Out>");
}

TEST_F(RepeatedFeatures, ExpandsANestedMultipleForEachFeature) {
    EXPECT_EQ(
        below("<r Name='Road' DataSource='Feature' Entries='Multiple'>"
              "<s Name='Again' Entries='Multiple'><n Name='N' IdentityValue='NAME'/></s></r>"),
        "<Out><L><Road><Again><N>High Street</N></Again></Road><Road><Again><N>Mill Lane</N></Again></Road>"
        "<Road><Again><N>Quay</N></Again></Road></L></Out>")
        << "the feature that is handed in is the only one";
}

TEST_F(RepeatedFeatures, MakesAnElementForANestedMultipleEvenWhenItTargetsAnAttribute) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'>"
                    "<s Name='Again' Target='Attribute' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/></s></r>"),
              "<Out><L><Road><Again><N>1</N></Again></Road><Road><Again><N>2</N></Again></Road>"
              "<Road><Again><N>3</N></Again></Road></L></Out>");
}

TEST_F(RepeatedFeatures, NestsATableInsideEachFeature) {
    EXPECT_EQ(
        below(
            "<r Name='Road' DataSource='Feature' Entries='Multiple'>"
            "<s Name='Sign' DataSource='Table' Identity='TableName' IdentityValue='SIGNS' Entries='Multiple'>"
            "<n Name='K' IdentityValue='KIND'/></s></r>"),
        "<Out><L><Road><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></Road>"
        "<Road><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></Road>"
        "<Road><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></Road></L></Out>");
}

TEST_F(RepeatedFeatures, HoldsTheFirstItemInTheParentsElementWhenTheRepeatedNodeTargetsAnAttribute) {
    EXPECT_EQ(below("<r Name='x' Target='Attribute' DataSource='Feature' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/></r>"
                    "<e Name='End'/>"),
              "<Out><L x=\"\"><N>1</N><End/></L><x><N>2</N></x><x><N>3</N></x></Out>");
}

TEST_F(RepeatedFeatures, WritesNothingForARepeatedFeatureTableWithChildren) {
    EXPECT_EQ(
        below(
            "<r Name='R' DataSource='FeatureTable' Entries='Multiple'><n Name='N' IdentityValue='OID'/></r>"),
        "<Out><L><R/></L></Out>");
    EXPECT_TRUE(observer.noticed("R", Notice::RepeatIsSilent));
}

TEST_F(RepeatedFeatures, ReadsNoFeaturesWithoutACurrentLayer) {
    EXPECT_EQ(run("<a Name='Out'><r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r></a>"),
              "<Out><R/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RepeatedFeatures, KeepsWhatWasWrittenBeforeAFailure) {
    world.pHost->faults().failAt("nextRow", 3);
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/></r><e Name='End'/>"),
              "<Out><L><Road><N>1</N></Road><Road><N>2</N></Road><End/></L></Out>");
    EXPECT_NE(state.lModErrNum, 0);
    EXPECT_EQ(observer.aFailures.at(0).sName, "Road");
}

TEST_F(RepeatedFeatures, GoesOnWithTheNextFeatureAfterALeafFailed) {
    world.pHost->faults().failAt("GisRow.value", 2);
    EXPECT_EQ(
        below(
            "<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' IdentityValue='LANES'/></r>"),
        "<Out><L><Road><N>2</N></Road><Road><N/></Road><Road><N>4</N></Road></L></Out>");
}

TEST_F(RepeatedFeatures, EndsWhenAChildOfAnItemCannotBeMade) {
    EXPECT_EQ(below("<r Name='Road' DataSource='Feature' Entries='Multiple'><n Name='N' "
                    "IdentityValue='OID'/><m/></r><e Name='End'/>"),
              "<Out><L><Road><N>1</N></Road><End/></L></Out>");
    EXPECT_NE(state.lModErrNum, 0);
}

TEST_F(RepeatedFeatures, HandsNoRecordDownFromAFeature) {
    state.pTable = world.pSigns;
    EXPECT_EQ(below("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'><z Name='Z' "
                    "DataSource='Time'/></t>"
                    "<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' DataSource='Record' "
                    "IdentityValue='NAME'/></r>"),
              "<Out><L><T><Z>11/21/2026</Z></T><R><N/></R><R><N/></R><R><N/></R></L></Out>");
}

TEST_F(RepeatedFeatures, CountsNothingForTheFeatureHandedIn) {
    state.options.lItemLimit = 2;
    below("<r Name='R' DataSource='Feature' Entries='Multiple'><s Name='S' Entries='Multiple'><n Name='N' "
          "IdentityValue='OID'/></s></r>");
    EXPECT_EQ(observer.lItems, 3);
}

TEST_F(RepeatedFeatures, GivesBackTheItemsOfANodeThatTargetsAnAttribute) {
    state.options.lItemLimit = std::numeric_limits<std::int64_t>::max();
    for (std::int64_t i = 4; i <= 5000; ++i)
        world.pRoads->addRow({i});
    const auto sOutput = below("<r Name='x' Target='Attribute' DataSource='Feature' Entries='Multiple'><n "
                               "Name='N' IdentityValue='OID'/></r>");
    EXPECT_NE(sOutput.find("<x><N>4999</N></x><x><N>5000</N></x>"), std::string::npos);
    EXPECT_TRUE(sOutput.starts_with("<Out><L x=\"\"><N>1</N></L><x><N>2</N></x>"));
}

TEST_F(RepeatedFeatures, WritesNoItemsWithoutACurrentFeatureClass) {
    EXPECT_EQ(run("<a Name='Out'><r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r></a>"),
              "<Out><R/></Out>");
    world.pRoadsLayer->setFeatureClass(nullptr);
    EXPECT_EQ(below("<r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r>"),
              "<Out><L><R/></L></Out>");
}

} // namespace
} // namespace halvane::test
