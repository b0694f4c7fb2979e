// The view of one control element, and the attributes it inherits.

#include "engine/ModExporter.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

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

TEST(AttributeMerge, TakesTheParentsValueWhereTheOwnIsEmpty) {
    const ControlAttributes parent{"source", "frame",    "property", "identity", "value", "entries",
                                   "target", "location", "link",     "measure",  "places"};
    const auto oDocument = parse("<a DataSource='Table' Identity=''/>");
    const auto merged = mergedAttributes(ClsXMLNode(oDocument->documentElement()).attributes(), parent);
    EXPECT_EQ(merged.sDataSource, "Table");
    EXPECT_EQ(merged.sDataFrame, "frame");
    EXPECT_EQ(merged.sDataProperty, "property");
    EXPECT_EQ(merged.sIdentity, "identity");
    EXPECT_EQ(merged.sIdentityValue, "value");
    EXPECT_EQ(merged.sEntries, "entries");
    EXPECT_EQ(merged.sDataLocation, "location");
    EXPECT_EQ(merged.sLinkField, "link");
    EXPECT_EQ(merged.sMeasureField, "measure");
    EXPECT_EQ(merged.sDecimalPlace, "places");
}

TEST(AttributeMerge, NeverInheritsTarget) {
    ControlAttributes attribute;
    attribute.sTarget = "Attribute";
    EXPECT_EQ(mergedAttributes({}, attribute).sTarget, "");
    EXPECT_EQ(mergedAttributes(attribute, {}).sTarget, "Attribute");
}

TEST(AttributeMerge, LetsAValueOfBlanksOverrideTheParents) {
    ControlAttributes own;
    own.sIdentityValue = "  ";
    ControlAttributes parent;
    parent.sIdentityValue = "Roads";
    EXPECT_EQ(mergedAttributes(own, parent).sIdentityValue, "  ");
}

class ControlTreeTest : public ::testing::Test {
protected:
    const ControlTree& read(std::string_view sXml, ControlTree::Root root = ControlTree::Root::OfPart) {
        oDocument_ = parse(sXml);
        tree_.emplace(oDocument_->documentElement(), root, *oOutput_, false);
        return *tree_;
    }

    dom::DocumentPtr oDocument_;
    dom::DocumentPtr oOutput_ = dom::Document::create();
    std::optional<ControlTree> tree_;
};

TEST_F(ControlTreeTest, HandsAttributesDownOverEveryGeneration) {
    const ControlNode& root =
        read("<a DataSource='Table' LinkField='ID'><b Identity='TableName'><c/></b></a>").root();
    const ControlNode& grandchild = *root.pFirstChild->pFirstChild;
    EXPECT_EQ(grandchild.merged.sDataSource, "Table");
    EXPECT_EQ(grandchild.merged.sIdentity, "TableName");
    EXPECT_EQ(grandchild.merged.sLinkField, "ID");
    EXPECT_EQ(grandchild.own.sDataSource, "");
}

TEST_F(ControlTreeTest, HandsNeitherLinkNorMeasureFieldDownFromTheRootOfTheDocument) {
    const ControlNode& root =
        read("<a DecimalPlace='2' LinkField='ID' MeasureField='KM'><b/></a>", ControlTree::Root::OfDocument)
            .root();
    EXPECT_EQ(root.pFirstChild->merged.sLinkField, "");
    EXPECT_EQ(root.pFirstChild->merged.sMeasureField, "");
    EXPECT_EQ(root.pFirstChild->merged.sDecimalPlace, "2");
}

TEST_F(ControlTreeTest, SharesTheBindingOfNodesThatInheritAllOfIt) {
    const ControlNode& root =
        read("<a DataSource='Table'><b DataProperty='TableName'/><c Identity='TagName'/></a>").root();
    EXPECT_EQ(root.pFirstChild->pBinding, root.pBinding);
    EXPECT_NE(root.pFirstChild->pNextSibling->pBinding, root.pBinding);
}

TEST_F(ControlTreeTest, TakesANodeThatSaysOneThingAloneForNoneThatInheritsAll) {
    for (const std::string sSaid : {"MeasureField='KM'", "LinkField='ID'", "DecimalPlace='2'"}) {
        const ControlNode& root = read("<a DataSource='Table'><b " + sSaid + "/><c/></a>").root();
        const ControlNode& said = *root.pFirstChild;
        EXPECT_EQ(said.merged.sDataSource, "Table") << sSaid;
        EXPECT_NE(&said.merged, &root.merged) << sSaid;
        EXPECT_EQ(said.merged.sMeasureField, said.own.sMeasureField) << sSaid;
        EXPECT_EQ(&said.pNextSibling->merged, &root.merged);
    }
}

TEST_F(ControlTreeTest, KnowsNoOutputNameForWhatXmlDoesNotAllow) {
    const ControlNode& root = read("<a Name='Two Words'><b Name='1st'/><!--comment--></a>").root();
    ASSERT_NE(root.pName, nullptr);
    EXPECT_EQ(root.pName->sQualified, "TwoWords");
    EXPECT_EQ(root.pFirstChild->pName, nullptr);
    EXPECT_EQ(root.pFirstChild->pNextSibling->pName, nullptr);
}

TEST_F(ControlTreeTest, KeepsWhatEqualElementsSayOnce) {
    const ControlNode& root = read("<r Name='r' DataSource='Feature'><a Name='n' IdentityValue='f'/>"
                                   "<g Name='g'><b Name='n' IdentityValue='f'/></g></r>")
                                  .root();
    const ControlNode& first = *root.pFirstChild;
    const ControlNode& second = *first.pNextSibling->pFirstChild;
    EXPECT_EQ(&first.own, &second.own);
    EXPECT_EQ(&first.merged, &second.merged);
    EXPECT_EQ(first.pBinding, second.pBinding);
    EXPECT_NE(first.oNode, second.oNode);
    // The one may write a field that its own attributes name, the other one of the merged attributes.
    EXPECT_NE(&first.valueField, &second.valueField);
    EXPECT_NE(&first.linkField, &second.linkField);
}

TEST_F(ControlTreeTest, TellsElementsApartThatDifferInAnyAttribute) {
    const ControlNode& root = read("<r Name='r' DataSource='Feature'><a Name='n' IdentityValue='f'/>"
                                   "<a Name='n' IdentityValue='g'/><a Name='m' IdentityValue='f'/>"
                                   "<a Name='n' Identity='f'/><a Name='n'/><a/></r>")
                                  .root();
    std::vector<std::string> aSaid;
    for (const ControlNode& child : childrenOf(root))
        aSaid.push_back(child.sTagName + "," + std::string(child.own.sIdentityValue) + "," +
                        std::string(child.own.sIdentity));
    EXPECT_EQ(aSaid, (std::vector<std::string>{"n,f,", "n,g,", "m,f,", "n,,f", "n,,", ",,"}));
}

TEST_F(ControlTreeTest, KnowsOfInnerNodesWhetherTheirItemsStreamAndWhichLeavesNameAField) {
    const ControlNode& root =
        read("<a Name='Out'><r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N' "
             "Identity='FieldName'"
             "/><o Name='O' IdentityValue='OID'/><b Name='1st'/><g Name='G'><n Name='N'/></g></r></a>")
            .root();
    const ControlNode& repeated = *root.pFirstChild;
    EXPECT_FALSE(root.bItemsStream);
    EXPECT_FALSE(repeated.bItemsStream) << "the name 1st is none";
    std::vector<bool> aNamesField;
    for (const ControlNode& child : childrenOf(repeated))
        aNamesField.push_back(child.bNamesField);
    EXPECT_EQ(aNamesField, (std::vector<bool>{true, false, false, false}));
    const ControlNode& streamed =
        *read("<a Name='Out'><r Name='R' DataSource='Feature' Entries='Multiple'><n Name='N'/></r></a>")
             .root()
             .pFirstChild;
    EXPECT_TRUE(streamed.bItemsStream);
}

TEST_F(ControlTreeTest, GivesEqualElementsWhatTheirOwnParentsHandDown) {
    const ControlNode& root = read("<r Name='r'><l Name='l' IdentityValue='one'><a Name='n'/></l>"
                                   "<l Name='l' IdentityValue='two'><a Name='n'/></l>"
                                   "<l Name='l' IdentityValue='one'><a Name='n'/></l></r>")
                                  .root();
    std::vector<std::string> aMerged;
    for (const ControlNode& child : childrenOf(root))
        aMerged.emplace_back(child.pFirstChild->merged.sIdentityValue);
    EXPECT_EQ(aMerged, (std::vector<std::string>{"one", "two", "one"}));
}

TEST_F(ControlTreeTest, GivesAChildThatSaysNothingItsParentsAttributesButNotItsTarget) {
    const ControlNode& root =
        read("<r Name='r'><g Name='g' DataSource='Feature' Target='Attribute'><a Name='n'/></g></r>").root();
    const ControlNode& child = *root.pFirstChild->pFirstChild;
    EXPECT_EQ(child.merged.sDataSource, "Feature");
    EXPECT_EQ(child.merged.sTarget, "");
}

TEST(DecimalPlaces, BeyondWhatAnIntegerHoldsAreAFailureOnceTheyAreAskedFor) {
    const DecimalPlaces tooMany("99999999999");
    EXPECT_TRUE(tooMany.isGiven());
    try {
        static_cast<void>(tooMany.value());
        ADD_FAILURE() << "a value beyond 32 bits was read";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.number(), static_cast<std::int32_t>(FailureNumber::Overflow));
    }
    EXPECT_EQ(DecimalPlaces("2").value(), 2);
    EXPECT_FALSE(DecimalPlaces("two").isGiven());
    EXPECT_EQ(DecimalPlaces("two").value(), 0);
}

} // namespace
} // namespace halvane
