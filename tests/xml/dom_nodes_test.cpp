#include "XmlSupport.h"

namespace halvane::test {
namespace {

using dom::Node;
using dom::NodeType;
using testing::ElementsAre;

TEST(Node, HandleOnNothingConvertsToFalseAndRefusesEveryOperation) {
    Node oNothing;
    EXPECT_FALSE(oNothing);
    EXPECT_EQ(failureOf([&] { (void)oNothing.nodeName(); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { (void)oNothing.childNodes(); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { oNothing.setText("x"); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { oNothing.setAttribute("a", ""); }),
              number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { (void)oNothing.selectNodes("x"); }),
              number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { (void)oNothing.xml(); }), number(FailureNumber::ObjectVariableNotSet));
}

TEST(Node, TellsTypeNameAndValueOfEveryKind) {
    const auto oDocument = documentOf("<r k='v'>t<!--c--><?p d?><![CDATA[x]]></r>");
    const Node oRoot = oDocument->documentElement();
    EXPECT_EQ(oDocument->asNode().nodeType(), NodeType::Document);
    EXPECT_EQ(oDocument->asNode().nodeName(), "#document");
    EXPECT_EQ(oRoot.nodeType(), NodeType::Element);
    EXPECT_EQ(oRoot.nodeName(), "r");
    EXPECT_EQ(oRoot.nodeValue(), "");
    const Node oText = oRoot.firstChild();
    EXPECT_EQ(oText.nodeType(), NodeType::Text);
    EXPECT_EQ(oText.nodeName(), "#text");
    EXPECT_EQ(oText.nodeValue(), "t");
    const Node oComment = oText.nextSibling();
    EXPECT_EQ(oComment.nodeType(), NodeType::Comment);
    EXPECT_EQ(oComment.nodeName(), "#comment");
    EXPECT_EQ(oComment.nodeValue(), "c");
    const Node oInstruction = oComment.nextSibling();
    EXPECT_EQ(oInstruction.nodeType(), NodeType::ProcessingInstruction);
    EXPECT_EQ(oInstruction.nodeName(), "p");
    EXPECT_EQ(oInstruction.nodeValue(), "d");
    const Node oCData = oInstruction.nextSibling();
    EXPECT_EQ(oCData.nodeType(), NodeType::CDataSection);
    EXPECT_EQ(oCData.nodeName(), "#cdata-section");
    EXPECT_EQ(oCData.nodeValue(), "x");
    const Node oAttribute = oRoot.attributes().item(0);
    EXPECT_EQ(oAttribute.nodeType(), NodeType::Attribute);
    EXPECT_EQ(oAttribute.nodeName(), "k");
    EXPECT_EQ(oAttribute.nodeValue(), "v");
    EXPECT_EQ(oAttribute.text(), "v");
}

TEST(Node, BaseNameLeavesThePrefixOut) {
    const auto oDocument = documentOf("<n:a xmlns:n='u' n:b='1'/>");
    const Node oRoot = oDocument->documentElement();
    EXPECT_EQ(oRoot.nodeName(), "n:a");
    EXPECT_EQ(oRoot.baseName(), "a");
    EXPECT_EQ(oRoot.attributes().getNamedItem("n:b").baseName(), "b");
    EXPECT_EQ(oDocument->asNode().baseName(), "");
}

TEST(Node, WalksSiblingsBothWays) {
    const auto oDocument = documentOf("<r><a/><b/><c/></r>");
    const Node oRoot = oDocument->documentElement();
    const Node oB = oRoot.firstChild().nextSibling();
    EXPECT_EQ(oB.nodeName(), "b");
    EXPECT_EQ(oB.previousSibling(), oRoot.firstChild());
    EXPECT_EQ(oB.nextSibling(), oRoot.lastChild());
    EXPECT_FALSE(oRoot.firstChild().previousSibling());
    EXPECT_FALSE(oRoot.lastChild().nextSibling());
    EXPECT_EQ(oB.parentNode(), oRoot);
    EXPECT_EQ(oRoot.parentNode(), oDocument->asNode());
}

TEST(Node, HasNoParentAsDocumentAttributeOrDetached) {
    const auto oDocument = documentOf("<r k='v' l='w'/>");
    const auto oAttributes = oDocument->documentElement().attributes();
    EXPECT_FALSE(oDocument->asNode().parentNode());
    EXPECT_FALSE(oAttributes.item(0).parentNode());
    EXPECT_FALSE(oAttributes.item(0).nextSibling());
    EXPECT_FALSE(oAttributes.item(1).previousSibling());
    EXPECT_FALSE(element(*oDocument, "x").parentNode());
}

TEST(Node, TextJoinsDescendantsWithoutCommentsAndInstructions) {
    const auto oDocument = documentOf("<r>a<b>b<!--no--><c>c</c></b><?no no?><![CDATA[d]]></r>");
    EXPECT_EQ(oDocument->documentElement().text(), "abcd");
    EXPECT_EQ(oDocument->asNode().text(), "abcd");
    EXPECT_EQ(oDocument->documentElement().firstChild().nextSibling().firstChild().nextSibling().text(),
              "no");
}

TEST(Node, XmlGivesTheNodeWithItsDescendantsAlone) {
    const auto oDocument = documentOf("<r><a k='1'>t</a><b/></r>");
    const Node oA = oDocument->documentElement().firstChild();
    EXPECT_EQ(oA.xml(), "<a k=\"1\">t</a>");
    EXPECT_EQ(oA.attributes().item(0).xml(), "k=\"1\"");
    EXPECT_EQ(oA.firstChild().xml(), "t");
}

TEST(Node, AttributesAreAbsentForAllButElements) {
    const auto oDocument = documentOf("<r>t</r>");
    EXPECT_TRUE(oDocument->documentElement().attributes());
    EXPECT_EQ(oDocument->documentElement().attributes().length(), 0);
    EXPECT_FALSE(oDocument->documentElement().firstChild().attributes());
    EXPECT_FALSE(oDocument->asNode().attributes());
    EXPECT_EQ(oDocument->documentElement().firstChild().getAttribute("k"), std::nullopt);
}

TEST(Node, FindsAttributesByExactName) {
    const auto oDocument = documentOf("<r Name='x' empty=''/>");
    const Node oRoot = oDocument->documentElement();
    EXPECT_EQ(oRoot.getAttribute("Name"), "x");
    EXPECT_EQ(oRoot.getAttribute("name"), std::nullopt);
    EXPECT_EQ(oRoot.getAttribute("empty"), "");
    EXPECT_FALSE(oRoot.attributes().getNamedItem("NAME"));
    EXPECT_FALSE(oRoot.attributes().item(2));
    EXPECT_FALSE(oRoot.attributes().item(-1));
}

TEST(Document, IsEmptyAndCompletedWhenNew) {
    const auto oDocument = dom::Document::create();
    EXPECT_FALSE(oDocument->documentElement());
    EXPECT_FALSE(oDocument->asNode().hasChildNodes());
    EXPECT_EQ(oDocument->xml(), "");
    EXPECT_EQ(oDocument->readyState(), 4);
    EXPECT_EQ(oDocument->parseError().errorCode, 0);
    EXPECT_EQ(oDocument->typeName(), "DOMDocument");
}

TEST(Document, CreatesDetachedNodesOfTheSevenTypes) {
    const auto oDocument = dom::Document::create();
    for (const std::int32_t lType : {1, 2, 3, 4, 7, 8, 11}) {
        const Node oNode = oDocument->createNode(lType, "n", "");
        EXPECT_EQ(static_cast<std::int32_t>(oNode.nodeType()), lType);
        EXPECT_FALSE(oNode.parentNode());
        EXPECT_EQ(&oNode.ownerDocument(), oDocument.get());
    }
}

TEST(Document, RefusesToCreateOtherTypes) {
    const auto oDocument = dom::Document::create();
    for (const std::int32_t lType : {-1, 0, 5, 6, 9, 10, 12, 100, 257})
        EXPECT_EQ(failureOf([&] { (void)oDocument->createNode(lType, "n", ""); }),
                  number(FailureNumber::DocumentFailure))
            << lType;
}

TEST(Document, RefusesNamesThatXmlDoesNotAllow) {
    const auto oDocument = dom::Document::create();
    Node oElement = element(*oDocument, "ok");
    for (const std::string_view sName :
         {"", " ", "a b", "1a", "-a", ".a", "a<", "a&b", "a\"", "a>", "\xC3\x97", ":a", "a:", "a:b:c", "a:1",
          "a\xFF", "\xED\xA0\x80", "a\xCC", "a/b"}) {
        EXPECT_EQ(failureOf([&] { (void)element(*oDocument, sName); }),
                  number(FailureNumber::DocumentFailure))
            << sName;
        EXPECT_EQ(failureOf([&] { oElement.setAttribute(sName, "v"); }),
                  number(FailureNumber::DocumentFailure))
            << sName;
    }
    EXPECT_EQ(oElement.attributes().length(), 0);
}

TEST(Document, AcceptsNamesOfEveryScript) {
    const auto oDocument = dom::Document::create();
    for (const std::string_view sName : {"a", "_a", "a-1.b", "n:a", "\xC3\x84\xC3\xB6",
                                         "\xE6\x97\xA5\xE6\x9C\xAC", "a\xC2\xB7", "\xF0\x90\x8D\x88"})
        EXPECT_EQ(element(*oDocument, sName).nodeName(), sName);
}

TEST(Document, RefusesInstructionsWithTheReservedTarget) {
    const auto oDocument = dom::Document::create();
    EXPECT_EQ(failureOf([&] { (void)nodeOf(*oDocument, NodeType::ProcessingInstruction, "XmL", ""); }),
              number(FailureNumber::DocumentFailure));
}

TEST(NodeObject, KeepsTheDocumentOfItsNodeAlive) {
    auto oDocument = documentOf("<r>kept</r>");
    const dom::NodeObject object(oDocument->documentElement());
    oDocument.reset();
    EXPECT_EQ(object.node().text(), "kept");
    EXPECT_EQ(object.typeName(), "IXMLDOMNode");
}

TEST(NodeObject, GoesOverToTheDocumentThatItsNodeMovesTo) {
    auto oFrom = documentOf("<r><a>kept<b/></a><c/></r>");
    auto oTo = documentOf("<t/>");
    const dom::NodeObject moved(oFrom->documentElement().firstChild().lastChild());
    auto staying = std::make_unique<dom::NodeObject>(oFrom->documentElement().lastChild());
    oTo->documentElement().appendChild(moved.node().parentNode());
    const std::weak_ptr<dom::Document> oKnownFrom = oFrom;
    const std::weak_ptr<dom::Document> oKnownTo = oTo;
    oFrom.reset();
    oTo.reset();
    EXPECT_FALSE(oKnownFrom.expired());
    staying.reset();
    EXPECT_TRUE(oKnownFrom.expired());
    ASSERT_FALSE(oKnownTo.expired());
    EXPECT_EQ(moved.node().ownerDocument().xml(), "<t><a>kept<b/></a></t>");
}

TEST(NodeObject, LetsItsDocumentEndWhenItsNodeMoves) {
    const auto oTo = documentOf("<t/>");
    auto oFrom = documentOf("<r><a>kept</a></r>");
    const dom::NodeObject moved(oFrom->documentElement().firstChild());
    const std::weak_ptr<dom::Document> oKnownFrom = oFrom;
    oFrom.reset();
    oTo->documentElement().appendChild(moved.node());
    EXPECT_TRUE(oKnownFrom.expired());
    EXPECT_EQ(oTo->xml(), "<t><a>kept</a></t>");
}

TEST(CreateNode, RefusesInstructionsOfTheDeclarationsNameInOtherLetterCase) {
    const auto oDocument = documentOf("<r/>");
    const auto created = [&](std::string_view sName) {
        return failureOf([&] { (void)oDocument->createNode(7, sName, ""); });
    };
    for (const std::string_view sName : {"XML", "Xml", "xMl", "xmL", "xML"})
        EXPECT_EQ(created(sName), number(FailureNumber::DocumentFailure)) << sName;
    for (const std::string_view sName : {"xml", "yml", "xyl", "xmy", "xm", "XMLs"})
        EXPECT_EQ(created(sName), std::nullopt) << sName;
}

TEST(FindName, IsNothingForWhatIsNoName) {
    const auto oDocument = documentOf("<r/>");
    for (const std::string_view sName : {"", "1", "-a", "a b", "[a", "`a", "{a", "a@", "a/", "\xC3\x97"})
        EXPECT_EQ(oDocument->findName(sName), nullptr) << sName;
    for (const std::string_view sName : {"a", "Z", "_", "a-1.b", "\xC3\xA4", "a\xC2\xB7"})
        EXPECT_NE(oDocument->findName(sName), nullptr) << sName;
}

} // namespace
} // namespace halvane::test
