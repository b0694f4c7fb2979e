// The view of one control element, and the attributes it inherits.

#include "engine/ModExporter.h"

#include <gtest/gtest.h>

namespace halvane {
namespace {

dom::DocumentPtr parse(std::string_view sXml) {
    auto oDocument = dom::Document::create();
    EXPECT_TRUE(oDocument->loadXML(sXml)) << oDocument->parseError().reason;
    return oDocument;
}

TEST(ControlNode, ReadsEachControlAttribute) {
    const auto oDocument =
        parse("<a Name='n' DataSource='s' DataFrame='f' Identity='i' IdentityValue='v' DataProperty='p' "
              "Entries='e' Target='t' DataLocation='l' LinkField='k' MeasureField='m' DecimalPlace='2'/>");
    const ClsXMLNode node(oDocument->documentElement());
    EXPECT_EQ(node.TagName(), "n");
    EXPECT_EQ(node.DataSource(), "s");
    EXPECT_EQ(node.DataFrame(), "f");
    EXPECT_EQ(node.Identity(), "i");
    EXPECT_EQ(node.IdentityValue(), "v");
    EXPECT_EQ(node.DataProperty(), "p");
    EXPECT_EQ(node.Entries(), "e");
    EXPECT_EQ(node.Target(), "t");
    EXPECT_EQ(node.DataLocation(), "l");
    EXPECT_EQ(node.LinkField(), "k");
    EXPECT_EQ(node.MeasureField(), "m");
    EXPECT_EQ(node.DecimalPL(), "2");
}

TEST(ControlNode, ReadsAnAbsentAttributeAsNothing) {
    const auto oDocument = parse("<a/>");
    const ClsXMLNode node(oDocument->documentElement());
    EXPECT_EQ(node.TagName(), "");
    EXPECT_EQ(node.DataSource(), "");
    EXPECT_EQ(node.DecimalPL(), "");
}

TEST(ControlNode, ReadsEveryAttributeAsNothingWhileNoElementIsWrapped) {
    ClsXMLNode node;
    EXPECT_EQ(node.TagName(), "");
    EXPECT_EQ(node.Target(), "");
    const auto oDocument = parse("<a Target='Attribute'/>");
    node.setDOMNode(oDocument->documentElement());
    EXPECT_EQ(node.Target(), "Attribute");
    EXPECT_EQ(node.DOMNode(), oDocument->documentElement());
}

TEST(ControlNode, ReadsEveryAttributeOfATextOrCommentAsNothing) {
    const auto oDocument = parse("<a>text<!--comment--></a>");
    EXPECT_EQ(ClsXMLNode(oDocument->documentElement().firstChild()).TagName(), "");
    EXPECT_EQ(ClsXMLNode(oDocument->documentElement().lastChild()).Target(), "");
}

TEST(ControlNode, DoesNotRecogniseAnAttributeInOtherLetterCase) {
    const auto oDocument = parse("<a datasource='Table' NAME='n'/>");
    const ClsXMLNode node(oDocument->documentElement());
    EXPECT_EQ(node.DataSource(), "");
    EXPECT_EQ(node.TagName(), "");
}

TEST(ControlNode, RemovesEveryBlankButNoOtherCharacterFromItsName) {
    const auto oDocument = parse("<a Name=' Road  Name_1.b '/>");
    EXPECT_EQ(ClsXMLNode(oDocument->documentElement()).TagName(), "RoadName_1.b");
}

TEST(ControlNode, KeepsATabInItsNameSinceOnlySpacesAreBlanks) {
    const auto oDocument = parse("<a Name='a&#9;b'/>");
    EXPECT_EQ(ClsXMLNode(oDocument->documentElement()).TagName(), "a\tb");
}

class AttributeMerge : public ::testing::Test {
protected:
    const dCollection& merge(std::string_view sXml, const dCollection* dParent) {
        oDocument_ = parse(sXml);
        MergeAttributes(state_, oDocument_->documentElement(), dParent, dMerged_);
        return dMerged_;
    }

    ExportState state_;
    dom::DocumentPtr oDocument_;
    dCollection dMerged_;
};

TEST_F(AttributeMerge, HoldsTheElevenKeysInTheirOrder) {
    const auto& keys = merge("<a/>", nullptr).ReturnKeys();
    EXPECT_EQ(std::vector<std::string>(keys.begin(), keys.end()),
              (std::vector<std::string>{"DataSource", "DataFrame", "DataProperty", "Identity",
                                        "IdentityValue", "Entries", "Target", "DataLocation", "LinkField",
                                        "MeasureField", "DecimalPlace"}));
}

TEST_F(AttributeMerge, TakesTheParentsValueWhereTheOwnIsEmpty) {
    dCollection dParent;
    for (const auto* sKey :
         {"DataSource", "DataFrame", "DataProperty", "Identity", "IdentityValue", "Entries", "Target",
          "DataLocation", "LinkField", "MeasureField", "DecimalPlace"})
        dParent.Add(std::string("parent's ") + sKey, sKey);
    const auto& dMerged = merge("<a DataSource='Table' Identity=''/>", &dParent);
    EXPECT_EQ(dMerged.GetValueString("DataSource"), "Table");
    EXPECT_EQ(dMerged.GetValueString("Identity"), "parent's Identity");
    for (const auto* sKey : {"DataFrame", "DataProperty", "IdentityValue", "Entries", "DataLocation",
                             "LinkField", "MeasureField", "DecimalPlace"})
        EXPECT_EQ(dMerged.GetValueString(sKey), std::string("parent's ") + sKey);
}

TEST_F(AttributeMerge, NeverInheritsTarget) {
    dCollection dParent;
    dParent.Add(std::string("Attribute"), "Target");
    EXPECT_EQ(merge("<a/>", &dParent).GetValueString("Target"), "");
    EXPECT_EQ(merge("<a Target='Attribute'/>", nullptr).GetValueString("Target"), "Attribute");
}

TEST_F(AttributeMerge, LetsAValueOfBlanksOverrideTheParents) {
    dCollection dParent;
    dParent.Add(std::string("Roads"), "IdentityValue");
    EXPECT_EQ(merge("<a IdentityValue='  '/>", &dParent).GetValueString("IdentityValue"), "  ");
}

TEST_F(AttributeMerge, ReadsAKeyThatTheParentLacksAsNothing) {
    const dCollection dParent;
    EXPECT_EQ(merge("<a/>", &dParent).GetValueString("LinkField"), "");
}

TEST_F(AttributeMerge, EmptiesACollectionThatHoldsEntriesBeforeFillingIt) {
    oDocument_ = parse("<a/>");
    dCollection dMerged;
    dMerged.Add(std::string("left over"), "Other");
    MergeAttributes(state_, oDocument_->documentElement(), nullptr, dMerged);
    EXPECT_EQ(dMerged.GetValueString("Other"), "");
    EXPECT_EQ(dMerged.Count(), 11);
}

} // namespace
} // namespace halvane
