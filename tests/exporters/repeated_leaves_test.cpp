// A leaf that is repeated.

#include "MultipleTest.h"
#include "host/Rows.h"

#include <memory>
#include <string>

namespace halvane::test {
namespace {

using RepeatedLeaves = MultipleTest;

TEST_F(RepeatedLeaves, WritesOneValuePerFeatureForALeafThatIdentifiesAField) {
    EXPECT_EQ(below("<v Name='V' DataSource='Feature' Entries='Multiple' Identity='FieldName' "
                    "IdentityValue='NAME'/>"),
              "<Out><L><V>High Street</V><V>Mill Lane</V><V>Quay</V></L></Out>");
    EXPECT_EQ(below("<v Name='V' DataSource='FeatureTable' Entries='Multiple' Identity='FieldName' "
                    "IdentityValue='OID'/>"),
              "<Out><L><V>1</V><V>2</V><V>3</V></L></Out>");
}

TEST_F(RepeatedLeaves, WritesNothingForAFeatureLeafOfAnotherIdentity) {
    EXPECT_EQ(below("<v Name='V' DataSource='Feature' Entries='Multiple' Identity='LayerName' "
                    "IdentityValue='NAME'/>"),
              "<Out><L><V/></L></Out>");
    EXPECT_TRUE(observer.noticed("V", Notice::RepeatIsSilent));
}

TEST_F(RepeatedLeaves, WritesAFeatureLeafOnceForTheFeatureHandedIn) {
    EXPECT_EQ(below("<r Name='R' DataSource='Feature' Entries='Multiple'>"
                    "<v Name='V' Entries='Multiple' Identity='FieldName' IdentityValue='OID'/></r>"),
              "<Out><L><R><V>1</V></R><R><V>2</V></R><R><V>3</V></R></L></Out>");
}

TEST_F(RepeatedLeaves, WritesOneValuePerRowForARecordLeaf) {
    EXPECT_EQ(belowSigns("<v Name='V' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/>"),
              "<Out><T><V>Stop</V><V>Yield</V></T></Out>");
}

TEST_F(RepeatedLeaves, WritesARecordLeafOnceForTheRecordHandedIn) {
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

TEST_F(RepeatedLeaves, WritesNothingForARepeatedLeafOfAnyOtherKind) {
    for (const std::string sKind : {"Field", "SubType", "WorkspaceDomain", "Relationship", "Geometry.Length",
                                    "RelatedTable", "RelatedRecord", "Time", "Map", "MapLayer"})
        EXPECT_EQ(below("<v Name='V' DataSource='" + sKind +
                        "' Entries='Multiple' Identity='LayerName' IdentityValue='Roads'/>"),
                  "<Out><L><V/></L></Out>")
            << sKind;
    EXPECT_TRUE(observer.noticed("V", Notice::RepeatIsSilent));
}

TEST_F(RepeatedLeaves, FillsTheAttributeForTheFirstItemOnlyWhenARepeatedLeafTargetsOne) {
    EXPECT_EQ(
        below("<v Name='v' Target='Attribute' DataSource='Feature' Entries='Multiple' Identity='FieldName' "
              "IdentityValue='OID'/>"),
        "<Out><L v=\"1\"/><v/><v/></Out>");
    EXPECT_EQ(state.lModErrNum, 91);
}

} // namespace
} // namespace halvane::test
