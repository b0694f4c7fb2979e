#include "XmlSupport.h"

#include "xml/ClsXMLManager.h"

namespace halvane::test {
namespace {

using dom::Node;

constexpr std::int16_t elementType = 1;

class ManagerEditing : public testing::Test {
protected:
    ManagerEditing() { manager.setDOMDoc(oDocument); }

    dom::DocumentPtr oDocument = documentOf("<r><a i='1'/><b/></r>");
    ClsXMLManager manager;
    dCollection dAttributes;
};

// ---- CreateNode

TEST_F(ManagerEditing, CreatesADetachedElementWithAttributesInTheirOrder) {
    dAttributes.Add(std::string("1"), "z");
    dAttributes.Add(std::int32_t{2}, "b");
    const Node oNode = manager.CreateNode("new", &dAttributes, 1);
    EXPECT_EQ(oNode.xml(), "<new z=\"1\" b=\"2\"/>");
    EXPECT_FALSE(oNode.parentNode());
    EXPECT_EQ(&oNode.ownerDocument(), oDocument.get());
}

TEST_F(ManagerEditing, CreatesWithoutAttributes) {
    EXPECT_EQ(manager.CreateNode("new", nullptr, 1).xml(), "<new/>");
    EXPECT_EQ(manager.CreateNode("new", &dAttributes, 1).xml(), "<new/>");
}

TEST_F(ManagerEditing, CreatesInAnotherDocument) {
    const auto oOther = dom::Document::create();
    EXPECT_EQ(&manager.CreateNode("new", nullptr, 1, oOther->asNode()).ownerDocument(), oOther.get());
}

TEST_F(ManagerEditing, SkipsAttributesThatCannotBeSet) {
    dAttributes.Add(std::string("1"), "good");
    dAttributes.Add(std::string("2"), "not a name");
    dAttributes.Add(std::string("3"), "");
    dAttributes.Add(std::string("4"), "alsoGood");
    EXPECT_EQ(manager.CreateNode("new", &dAttributes, 1).xml(), "<new good=\"1\" alsoGood=\"4\"/>");
}

TEST_F(ManagerEditing, CreatesNothingForOtherTypesAndBadNames) {
    for (const std::int32_t lType : {0, 2, 3, 4, 7, 8, 9, 11, -1})
        EXPECT_FALSE(manager.CreateNode("new", nullptr, lType)) << lType;
    EXPECT_FALSE(manager.CreateNode("", nullptr, 1));
    EXPECT_FALSE(manager.CreateNode("a b", nullptr, 1));
    EXPECT_EQ(manager.GetErrNum(), 0);
    manager.setDOMDoc(nullptr);
    EXPECT_FALSE(manager.CreateNode("new", nullptr, 1));
}

// ---- InsertNode

TEST_F(ManagerEditing, InsertsUnderTheNodeAtThePath) {
    std::string sPath = "r/a";
    dAttributes.Add(std::string("1"), "k");
    const Node oNode = manager.InsertNode(sPath, "new", false, elementType, &dAttributes);
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"><new k=\"1\"/></a><b/></r>");
    EXPECT_EQ(oNode.nodeName(), "new");
}

TEST_F(ManagerEditing, RemovesOneTrailingSlashInTheCallersVariableToo) {
    std::string sPath = "r/a/";
    EXPECT_TRUE(manager.InsertNode(sPath, "new", false, elementType, nullptr));
    EXPECT_EQ(sPath, "r/a");
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"><new/></a><b/></r>");
    std::string sTwo = "r/a//";
    EXPECT_FALSE(manager.InsertNode(sTwo, "other", false, elementType, nullptr));
    EXPECT_EQ(sTwo, "r/a/");
    EXPECT_NE(manager.GetErrNum(), 0);
}

TEST_F(ManagerEditing, TakesALoneSlashForNoPath) {
    std::string sSlash = "/";
    EXPECT_TRUE(manager.InsertNode(sSlash, "x", false, elementType, nullptr));
    EXPECT_EQ(sSlash, "");
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"/><b/><x/></r>");
    EXPECT_EQ(manager.GetErrNum(), 0);
    std::string sAgain = "/";
    EXPECT_EQ(manager.InsertNode(sAgain, "r", false, elementType, nullptr), oDocument->documentElement());
}

TEST_F(ManagerEditing, InsertsUnderTheRootForNoPathAndForAPathThatSelectsNothing) {
    std::string sNone;
    manager.InsertNode(sNone, "x", false, elementType, nullptr);
    std::string sMissing = "r/none";
    manager.InsertNode(sMissing, "y", false, elementType, nullptr);
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"/><b/><x/><y/></r>");
}

TEST_F(ManagerEditing, ReturnsAnExistingNodeUnchangedUnlessToldToOverwrite) {
    std::string sPath = "r";
    dAttributes.Add(std::string("2"), "i");
    const Node oExisting = oDocument->documentElement().firstChild();
    EXPECT_EQ(manager.InsertNode(sPath, "a", false, elementType, &dAttributes), oExisting);
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"/><b/></r>");
}

TEST_F(ManagerEditing, OverwritingSetsAttributesAndMovesTheNodeToTheEnd) {
    std::string sPath = "r";
    dAttributes.Add(std::string("2"), "i");
    const Node oExisting = oDocument->documentElement().firstChild();
    EXPECT_EQ(manager.InsertNode(sPath, "a", true, elementType, &dAttributes), oExisting);
    EXPECT_EQ(oDocument->xml(), "<r><b/><a i=\"2\"/></r>");
}

TEST_F(ManagerEditing, LooksTheNameUpFromTheDocumentWhenThereIsNoPath) {
    std::string sNone;
    // "a" is no child of the document: a second one is made.
    manager.InsertNode(sNone, "a", false, elementType, nullptr);
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"/><b/><a/></r>");
    EXPECT_EQ(manager.InsertNode(sNone, "r", false, elementType, nullptr), oDocument->documentElement());
}

TEST_F(ManagerEditing, InsertsIntoAnotherDocument) {
    const auto oOther = documentOf("<o/>");
    std::string sPath = "o";
    manager.InsertNode(sPath, "new", false, elementType, nullptr, oOther->asNode());
    EXPECT_EQ(oOther->xml(), "<o><new/></o>");
}

TEST_F(ManagerEditing, InsertsNodesOfOtherTypes) {
    std::string sPath = "r/b";
    EXPECT_EQ(manager.InsertNode(sPath, "c", false, 8, nullptr).nodeType(), dom::NodeType::Comment);
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"/><b><!----></b></r>");
}

TEST_F(ManagerEditing, RecordsWhyAnInsertionFailed) {
    std::string sPath = "r";
    EXPECT_FALSE(manager.InsertNode(sPath, "not a name", false, elementType, nullptr));
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::DocumentFailure));
    EXPECT_FALSE(manager.GetErrMsg().empty());
    manager.SetErrNum(0);
    dAttributes.Add(std::string("v"), "not a name");
    EXPECT_FALSE(manager.InsertNode(sPath, "new", false, elementType, &dAttributes));
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::DocumentFailure));
    EXPECT_EQ(oDocument->xml(), "<r><a i=\"1\"/><b/></r>");
}

TEST_F(ManagerEditing, CannotInsertIntoADocumentWithoutARoot) {
    manager.setDOMDoc(dom::Document::create());
    std::string sNone;
    EXPECT_FALSE(manager.InsertNode(sNone, "new", false, elementType, nullptr));
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::ObjectVariableNotSet));
    manager.setDOMDoc(nullptr);
    manager.SetErrNum(0);
    EXPECT_FALSE(manager.InsertNode(sNone, "new", false, elementType, nullptr));
    EXPECT_EQ(manager.GetErrNum(), number(FailureNumber::ObjectVariableNotSet));
}

// ---- InsertNodeUnder

TEST_F(ManagerEditing, InsertsTheNodeItselfOrItsDeepClone) {
    const Node oRoot = oDocument->documentElement();
    const Node oA = oRoot.firstChild();
    EXPECT_EQ(manager.InsertNodeUnder(oRoot, oA, false), oA);
    EXPECT_EQ(oDocument->xml(), "<r><b/><a i=\"1\"/></r>");
    Node oB = oRoot.firstChild();
    oB.setText("t");
    const Node oClone = manager.InsertNodeUnder(oRoot, oB, true);
    EXPECT_NE(oClone, oB);
    EXPECT_EQ(oDocument->xml(), "<r><b>t</b><a i=\"1\"/><b>t</b></r>");
}

TEST_F(ManagerEditing, InsertsNothingUnderNothing) {
    EXPECT_FALSE(manager.InsertNodeUnder({}, oDocument->documentElement(), false));
    EXPECT_EQ(failureOf([&] { manager.InsertNodeUnder(oDocument->documentElement(), {}, true); }),
              number(FailureNumber::ObjectVariableNotSet));
}

} // namespace
} // namespace halvane::test
