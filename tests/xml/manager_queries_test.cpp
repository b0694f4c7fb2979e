#include "XmlSupport.h"

#include "xml/ClsXMLManager.h"

namespace halvane::test {
namespace {

using dom::Node;

class ManagerQueries : public testing::Test {
protected:
    ManagerQueries() { manager.setDOMDoc(oDocument); }

    dom::DocumentPtr oDocument = documentOf("<Config><Group TagName='g'>text<Layer Name='roads' i='1'/>"
                                            "<Layer Name='Roads' i='2'><!--c--></Layer></Group>"
                                            "<Layer Name='roads' i='3'>a<b/>c</Layer></Config>");
    ClsXMLManager manager;

    [[nodiscard]] Node root() const { return oDocument->documentElement(); }
};

TEST_F(ManagerQueries, TotalNodesIsMinusOneSinceItsExpressionIsNone) {
    EXPECT_EQ(manager.TotalNodes(), -1);
    EXPECT_EQ(manager.TotalNodes(root()), -1);
    manager.setDOMDoc(nullptr);
    EXPECT_EQ(manager.TotalNodes(), -1);
}

TEST_F(ManagerQueries, TotalNodesByNameCountsTheChildrenOfTheFirstNodeTextsIncluded) {
    std::string sName = "Group";
    EXPECT_EQ(manager.TotalNodesByName(sName), 3);
    EXPECT_EQ(sName, "//Group");
    EXPECT_EQ(manager.TotalNodesByName(sName), 3);
    EXPECT_EQ(sName, "//Group");
    std::string sLayer = "Layer";
    EXPECT_EQ(manager.TotalNodesByName(sLayer), 0);
}

TEST_F(ManagerQueries, TotalNodesByNameLeavesAPathThatHoldsTheMarkAlone) {
    std::string sPath = "Group//Layer[@i='2']";
    EXPECT_EQ(manager.TotalNodesByName(sPath, root()), 1);
    EXPECT_EQ(sPath, "Group//Layer[@i='2']");
}

TEST_F(ManagerQueries, TotalNodesByNameIsMinusOneForNothing) {
    std::string sNone = "None";
    EXPECT_EQ(manager.TotalNodesByName(sNone), -1);
    std::string sBad = "[";
    EXPECT_EQ(manager.TotalNodesByName(sBad), -1);
    EXPECT_EQ(sBad, "//[");
    manager.setDOMDoc(nullptr);
    std::string sName = "Group";
    EXPECT_EQ(manager.TotalNodesByName(sName), -1);
    EXPECT_EQ(sName, "//Group");
}

TEST_F(ManagerQueries, FindsTheFirstNodeInDocumentOrderWithAnAttributeValue) {
    EXPECT_EQ(manager.GetNodeByAttributeValue("Layer", "Name", "roads").getAttribute("i"), "1");
    EXPECT_EQ(manager.GetNodeByAttributeValue("/Config//Layer", "i", "3").getAttribute("i"), "3");
    EXPECT_FALSE(manager.GetNodeByAttributeValue("Group", "Name", "roads"));
    EXPECT_FALSE(manager.GetNodeByAttributeValue("None", "Name", "roads"));
}

TEST_F(ManagerQueries, ComparesAttributeNamesAndValuesCaseSensitively) {
    EXPECT_EQ(manager.GetNodeByAttributeValue("Layer", "Name", "Roads").getAttribute("i"), "2");
    EXPECT_FALSE(manager.GetNodeByAttributeValue("Layer", "Name", "ROADS"));
    EXPECT_FALSE(manager.GetNodeByAttributeValue("Layer", "name", "roads"));
    EXPECT_FALSE(manager.GetNodeByAttributeValue("layer", "Name", "roads"));
}

TEST_F(ManagerQueries, PassesNodesWithoutAttributes) {
    EXPECT_EQ(manager.GetNodeByAttributeValue("//Group/node()", "i", "2").getAttribute("i"), "2");
}

TEST_F(ManagerQueries, LooksInTheManagersOwnDocumentOnly) {
    manager.setDOMDoc(nullptr);
    EXPECT_FALSE(manager.GetNodeByAttributeValue("Layer", "Name", "roads"));
    EXPECT_EQ(failureOf([&] { (void)manager.GetNodesByAttributeValue("Layer", "Name", "roads"); }),
              number(FailureNumber::ObjectVariableNotSet));
}

TEST_F(ManagerQueries, RefusesAnEmptyNodeName) {
    EXPECT_EQ(failureOf([&] { (void)manager.GetNodeByAttributeValue("", "Name", "roads"); }),
              number(FailureNumber::DocumentFailure));
    EXPECT_EQ(failureOf([&] { (void)manager.GetNodesByAttributeValue("", "Name", "roads"); }),
              number(FailureNumber::DocumentFailure));
}

TEST_F(ManagerQueries, CollectsOneOfThreeMatchingNodes) {
    const auto oThree = documentOf("<r><a k='v' i='1'/><a k='v' i='2'/><a k='v' i='3'/></r>");
    manager.setDOMDoc(oThree);
    const auto dNodes = manager.GetNodesByAttributeValue("a", "k", "v");
    ASSERT_EQ(dNodes->Count(), 1);
    const auto pNode = std::dynamic_pointer_cast<dom::NodeObject>(dNodes->Item(std::int32_t{1}));
    ASSERT_NE(pNode, nullptr);
    EXPECT_EQ(pNode->node().getAttribute("i"), "1");
    EXPECT_EQ(dNodes->ReturnKeys().front(), "");
}

TEST_F(ManagerQueries, CollectsNothingWhereNothingMatches) {
    EXPECT_EQ(manager.GetNodesByAttributeValue("Layer", "Name", "rivers")->Count(), 0);
    EXPECT_EQ(manager.GetNodesByAttributeValue("None", "Name", "roads")->Count(), 0);
}

TEST_F(ManagerQueries, FindsADirectChildOfAnyKindByItsExactName) {
    EXPECT_EQ(manager.GetChildNodeByName(root(), "Layer").getAttribute("i"), "3");
    EXPECT_EQ(manager.GetChildNodeByName(root().firstChild(), "#text").nodeValue(), "text");
    EXPECT_FALSE(manager.GetChildNodeByName(root(), "layer"));
    EXPECT_FALSE(manager.GetChildNodeByName({}, "Layer"));
}

TEST_F(ManagerQueries, FindsElementsByTagName) {
    EXPECT_EQ(manager.GetNodeByName("Layer").getAttribute("i"), "1");
    EXPECT_EQ(manager.GetNodesByName("Layer").length(), 3);
    EXPECT_FALSE(manager.GetNodeByName("None"));
    EXPECT_EQ(manager.GetNodesByName("None").length(), 0);
    const auto oOther = documentOf("<o><Layer i='o'/></o>");
    EXPECT_EQ(manager.GetNodeByName("Layer", oOther->asNode()).getAttribute("i"), "o");
    EXPECT_EQ(manager.GetNodesByName("Layer", oOther->asNode()).length(), 1);
    manager.setDOMDoc(nullptr);
    EXPECT_FALSE(manager.GetNodeByName("Layer"));
    EXPECT_FALSE(manager.GetNodesByName("Layer"));
}

TEST_F(ManagerQueries, FullPathBeginsWithTheRootsNameAndNoSlash) {
    EXPECT_EQ(manager.GetFullPath(root()), "Config");
    EXPECT_EQ(manager.GetFullPath(root().firstChild()), "Config/Group");
    EXPECT_EQ(manager.GetFullPath(root().firstChild().firstChild()), "Config/Group/#text");
}

TEST_F(ManagerQueries, FullPathIsEmptyForDocumentsAttributesAndNothing) {
    EXPECT_EQ(manager.GetFullPath({}), "");
    EXPECT_EQ(manager.GetFullPath(oDocument->asNode()), "");
    EXPECT_EQ(manager.GetFullPath(root().firstChild().attributes().item(0)), "");
}

TEST_F(ManagerQueries, FullPathLeavesTheTopOfADetachedTreeOut) {
    Node oTop = element(*oDocument, "top");
    const Node oChild = oTop.appendChild(element(*oDocument, "child"));
    EXPECT_EQ(manager.GetFullPath(oTop), "");
    EXPECT_EQ(manager.GetFullPath(oChild), "child");
}

TEST_F(ManagerQueries, ReadsAnAttributeIgnoringTheCaseOfItsName) {
    const auto oOther = documentOf("<a Name='1' NAME='2' \xC3\xA4='3'/>");
    EXPECT_EQ(manager.GetNodeAttributeValueByAttName(oOther->documentElement(), "NAME"), "1");
    EXPECT_EQ(manager.GetNodeAttributeValueByAttName(oOther->documentElement(), "\xC3\x84"), "3");
    EXPECT_EQ(manager.GetNodeAttributeValueByAttName(oOther->documentElement(), "none"), "");
}

TEST_F(ManagerQueries, ReadsNoAttributeOfNothingOrOfAText) {
    EXPECT_EQ(manager.GetNodeAttributeValueByAttName({}, "Name"), "");
    EXPECT_EQ(manager.GetNodeAttributeValueByAttName(root().firstChild().firstChild(), "Name"), "");
}

TEST_F(ManagerQueries, CountsTheDepthOfTheDeepestDescendant) {
    EXPECT_EQ(manager.GetChildNodeDepth(element(*oDocument, "leaf"), 0), 0);
    EXPECT_EQ(manager.GetChildNodeDepth(documentOf("<a>text</a>")->documentElement(), 0), 1);
    EXPECT_EQ(manager.GetChildNodeDepth(root(), 0), 3);
    EXPECT_EQ(manager.GetChildNodeDepth(root(), 10), 13);
    EXPECT_EQ(manager.GetChildNodeDepth(oDocument->asNode(), 0), 4);
}

TEST_F(ManagerQueries, DepthOfANodeWithChildrenIsNeverBelowZero) {
    EXPECT_EQ(manager.GetChildNodeDepth(element(*oDocument, "leaf"), -9), -9);
    EXPECT_EQ(manager.GetChildNodeDepth(root(), -9), 0);
}

TEST_F(ManagerQueries, DepthOverflowsBeyond32767) {
    EXPECT_EQ(manager.GetChildNodeDepth(root(), 32764), 32767);
    EXPECT_EQ(failureOf([&] { (void)manager.GetChildNodeDepth(root(), 32765); }),
              number(FailureNumber::Overflow));
    Node oDeepest = root();
    for (int n = 0; n < 40000; ++n)
        oDeepest = oDeepest.appendChild(element(*oDocument, "d"));
    EXPECT_EQ(failureOf([&] { (void)manager.GetChildNodeDepth(root(), 0); }),
              number(FailureNumber::Overflow));
}

TEST_F(ManagerQueries, DepthOfNothingIsAFailure) {
    EXPECT_EQ(failureOf([&] { (void)manager.GetChildNodeDepth({}, 0); }),
              number(FailureNumber::ObjectVariableNotSet));
}

// ---- GetSectionNode

TEST_F(ManagerQueries, FindsASectionByItsPath) {
    EXPECT_EQ(manager.GetSectionNode("Config/Group"), root().firstChild());
    EXPECT_EQ(manager.GetSectionNode("Config"), root());
    EXPECT_EQ(manager.GetErrNum(), 0);
}

TEST_F(ManagerQueries, CreatesTheMissingSegmentsWithoutAttributes) {
    const Node oNode = manager.GetSectionNode("Config/New/Inner");
    EXPECT_EQ(oNode.nodeName(), "Inner");
    EXPECT_EQ(manager.GetFullPath(oNode), "Config/New/Inner");
    EXPECT_EQ(root().lastChild().xml(), "<New><Inner/></New>");
    EXPECT_EQ(manager.GetSectionNode("Config/New/Inner"), oNode);
}

TEST_F(ManagerQueries, LooksInAnotherDocumentButCreatesInItsOwn) {
    const auto oOther = documentOf("<Config><Only/></Config>");
    EXPECT_EQ(manager.GetSectionNode("Config/Only", oOther->asNode()),
              oOther->documentElement().firstChild());
    const Node oMissing = manager.GetSectionNode("Config/Missing", oOther->asNode());
    EXPECT_EQ(&oMissing.ownerDocument(), oDocument.get());
    EXPECT_EQ(oOther->xml(), "<Config><Only/></Config>");
}

TEST_F(ManagerQueries, SectionOfAnEmptyPathIsNothingAndAnError) {
    EXPECT_FALSE(manager.GetSectionNode(""));
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::DocumentFailure));
    EXPECT_FALSE(manager.GetErrMsg().empty());
}

TEST_F(ManagerQueries, SectionReturnsWhatItFoundBeforeAnError) {
    EXPECT_EQ(manager.GetSectionNode("Config/Group/["), root().firstChild());
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::DocumentFailure));
}

TEST_F(ManagerQueries, SectionBelowOneThatCannotBeCreatedIsNotCreatedElsewhere) {
    const std::string sBefore = oDocument->xml();
    EXPECT_FALSE(manager.GetSectionNode("Config/@none/Inner"));
    EXPECT_EQ(oDocument->xml(), sBefore);
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::DocumentFailure));
    EXPECT_NE(manager.GetErrMsg().find("@none"), std::string::npos) << manager.GetErrMsg();
}

TEST_F(ManagerQueries, SectionThatCannotBeCreatedIsNothingAndAnError) {
    EXPECT_FALSE(manager.GetSectionNode("Config/Group/@none"));
    EXPECT_NE(manager.GetErrNum(), 0);
    manager.setDOMDoc(nullptr);
    manager.SetErrNum(0);
    EXPECT_FALSE(manager.GetSectionNode("Config"));
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::ObjectVariableNotSet));
}

} // namespace
} // namespace halvane::test
