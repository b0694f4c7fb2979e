// Which repeated nodes' items are written straight to the spool.

#include "support/ControlText.h"

#include "engine/output/StreamRule.h"

#include <gtest/gtest.h>

#include <string>

namespace halvane::test {
namespace {

class StreamRule : public ::testing::Test {
protected:
    StreamRule() {
        state.oOutputManager = std::make_unique<ClsXMLManager>();
        state.oOutputManager->setDOMDoc(dom::Document::create());
    }

    bool streams(const std::string& sChildren,
                 const std::string& sAttributes = "Name='R' DataSource='Feature'") {
        const ControlText control(state, "<r " + sAttributes + " Entries='Multiple'>" + sChildren + "</r>");
        return control.root().bItemsStream;
    }

    ExportState state;
};

TEST_F(StreamRule, TakesFieldsAttributesAndGroupsOfThem) {
    EXPECT_TRUE(streams(
        "<a Name='a' Target='Attribute' IdentityValue='X'/><b Name='B' IdentityValue='Y'/>"
        "<g Name='G'><c Name='c' Target='Attribute' IdentityValue='X'/><d Name='D' IdentityValue='Y'/></g>"));
}

TEST_F(StreamRule, TakesAnAttributeOnlyBeforeContent) {
    EXPECT_FALSE(
        streams("<b Name='B' IdentityValue='Y'/><a Name='a' Target='Attribute' IdentityValue='X'/>"));
    EXPECT_FALSE(streams("<g Name='G'><b Name='B'/><a Name='a' Target='Attribute'/></g>"));
}

TEST_F(StreamRule, TakesEachAttributeOnlyOnce) {
    EXPECT_FALSE(streams("<a Name='a' Target='Attribute'/><b Name=' a' Target='Attribute'/>"));
}

TEST_F(StreamRule, TakesAnAttributeWithAPrefixUnlessAnotherBearsItsNameBehindAPrefix) {
    EXPECT_TRUE(streams("<a Name='g:a' Target='Attribute'/><b Name='a' Target='Attribute'/>"
                        "<c Name='g:c' Target='Attribute'/>"));
    EXPECT_FALSE(streams("<a Name='g:a' Target='Attribute'/><b Name='h:a' Target='Attribute'/>"));
}

TEST_F(StreamRule, TakesNoAttributeWithChildrenOrRepetitionOfItsOwn) {
    EXPECT_FALSE(streams("<a Name='a' Target='Attribute'><b Name='B'/></a>"));
    EXPECT_FALSE(streams("<a Name='a' Target='Attribute' Entries='Multiple'/>"));
}

TEST_F(StreamRule, TakesNoNameThatXmlDoesNotAllow) {
    EXPECT_FALSE(streams("<a Name='1st'/>"));
    EXPECT_FALSE(streams("<!--comment--><a Name='A'/>"));
    EXPECT_FALSE(streams("<a Name='A'/>", "Name='' DataSource='Feature'"));
}

TEST_F(StreamRule, TakesRelatedRowsAsElementsOnly) {
    EXPECT_TRUE(streams("<a Name='A' DataSource='RelatedRecord'/>"));
    EXPECT_FALSE(streams("<a Name='a' DataSource='RelatedRecord' Target='Attribute'/>"));
    EXPECT_FALSE(streams("<a Name='a' DataSource='RelatedTable' Target='Attribute'/>"));
}

TEST_F(StreamRule, TakesNoSpatialReferenceSubtypeOrField) {
    EXPECT_FALSE(streams("<a Name='A' DataSource='Map' DataProperty='SpatialReference.Datum'/>"));
    EXPECT_FALSE(streams("<a Name='A' DataSource='SubType' DataProperty='SubTypeName'/>"));
    EXPECT_FALSE(streams("<a Name='A' DataSource='Field'/>"));
}

TEST_F(StreamRule, TakesRepeatedFeaturesRecordsAndGeometriesInside) {
    EXPECT_TRUE(streams(
        "<v Name='V' DataSource='Geometry.Vertice' Entries='Multiple'><x Name='x' Target='Attribute'/></v>"));
    EXPECT_TRUE(streams("<t Name='T' DataSource='Table' Entries='Multiple'><x Name='X'/></t>"));
    EXPECT_FALSE(streams("<d Name='D' DataSource='WorkspaceDomain' Entries='Multiple'><x Name='X'/></d>"));
    EXPECT_FALSE(streams("<s Name='S' DataSource='SubType' Entries='Multiple'><x Name='X'/></s>"));
    EXPECT_FALSE(streams("<v Name='V' DataSource='Geometry.Vertice' Entries='Multiple'><y Name='Y'/><x "
                         "Name='x' Target='Attribute'/></v>"));
}

TEST_F(StreamRule, TakesNoRepeatedNodeThatTargetsAnAttribute) {
    EXPECT_FALSE(streams("<a Name='A'/>", "Name='r' Target='Attribute' DataSource='Feature'"));
}

TEST_F(StreamRule, TakesALeafThatIsRepeated) {
    EXPECT_TRUE(streams("", "Name='R' DataSource='Feature' Identity='FieldName'"));
    EXPECT_FALSE(streams("", "Name='r' DataSource='Feature' Identity='FieldName' Target='Attribute'"));
    EXPECT_FALSE(streams("", "Name='R' DataSource='SubType'"));
}

TEST_F(StreamRule, AsksOnlyOfRepeatedNodes) {
    const ControlText control(state, "<r Name='R' DataSource='Feature'><a Name='A'/></r>");
    EXPECT_FALSE(control.root().bItemsStream);
}

} // namespace
} // namespace halvane::test
