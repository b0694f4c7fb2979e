#include "XmlSupport.h"
#include "support/Platform.h"

namespace halvane::test {
namespace {

using dom::Node;
using dom::NodeType;

TEST(AppendChild, AppendsAndReturnsTheChild) {
    const auto oDocument = documentOf("<r><a/></r>");
    Node oRoot = oDocument->documentElement();
    const Node oNew = element(*oDocument, "b");
    EXPECT_EQ(oRoot.appendChild(oNew), oNew);
    EXPECT_EQ(oRoot.lastChild(), oNew);
    EXPECT_EQ(oDocument->xml(), "<r><a/><b/></r>");
}

TEST(AppendChild, MovesAChildToTheEndOfItsOwnParent) {
    const auto oDocument = documentOf("<r><a/><b/></r>");
    Node oRoot = oDocument->documentElement();
    oRoot.appendChild(oRoot.firstChild());
    EXPECT_EQ(oDocument->xml(), "<r><b/><a/></r>");
}

TEST(AppendChild, RefusesAFragmentInItself) {
    const auto oDocument = documentOf("<r/>");
    Node oFragment = oDocument->createNode(static_cast<std::int32_t>(NodeType::DocumentFragment), "", "");
    oFragment.appendChild(element(*oDocument, "a"));
    EXPECT_EQ(failureOf([&] { oFragment.appendChild(oFragment); }), documentFailure);
}

TEST(AppendChild, RefusesNothing) {
    const auto oDocument = documentOf("<r/>");
    EXPECT_EQ(failureOf([&] { oDocument->documentElement().appendChild({}); }),
              number(FailureNumber::ObjectVariableNotSet));
}

TEST(AppendChild, RefusesAnAncestorAndTheNodeItself) {
    const auto oDocument = documentOf("<r><a><b/></a></r>");
    Node oA = oDocument->documentElement().firstChild();
    Node oB = oA.firstChild();
    EXPECT_EQ(failureOf([&] { oB.appendChild(oA); }), documentFailure);
    EXPECT_EQ(failureOf([&] { oB.appendChild(oB); }), documentFailure);
    EXPECT_EQ(oDocument->xml(), "<r><a><b/></a></r>");
}

TEST(AppendChild, RefusesASecondRootAttributesAndTextBesideTheRoot) {
    const auto oDocument = documentOf("<r k='v'/>");
    Node oTop = oDocument->asNode();
    EXPECT_EQ(failureOf([&] { oTop.appendChild(element(*oDocument, "s")); }), documentFailure);
    EXPECT_EQ(failureOf([&] { oTop.appendChild(nodeOf(*oDocument, NodeType::Text, "", "t")); }),
              documentFailure);
    EXPECT_EQ(failureOf([&] {
                  oDocument->documentElement().appendChild(nodeOf(*oDocument, NodeType::Attribute, "a", "v"));
              }),
              documentFailure);
    EXPECT_EQ(failureOf([&] { oDocument->documentElement().appendChild(oTop); }), documentFailure);
    EXPECT_EQ(oDocument->xml(), "<r k=\"v\"/>");
}

TEST(AppendChild, RefusesChildrenOfTextsAndComments) {
    const auto oDocument = documentOf("<r>t<!--c--></r>");
    const Node oRoot = oDocument->documentElement();
    EXPECT_EQ(failureOf([&] { oRoot.firstChild().appendChild(element(*oDocument, "x")); }), documentFailure);
    EXPECT_EQ(failureOf([&] { oRoot.lastChild().appendChild(element(*oDocument, "x")); }), documentFailure);
}

TEST(AppendChild, LetsTheRootBeAppendedAgain) {
    const auto oDocument = documentOf("<r/><!--c-->");
    oDocument->asNode().appendChild(oDocument->documentElement());
    EXPECT_EQ(oDocument->xml(), "<!--c--><r/>");
}

TEST(AppendChild, MovesBetweenDocumentsAndKeepsTheHandle) {
    auto oSource = documentOf("<s><m k='v'>text<in/></m></s>");
    const auto oTarget = documentOf("<t/>");
    const Node oMoved = oSource->documentElement().firstChild();
    oTarget->documentElement().appendChild(oMoved);
    EXPECT_EQ(oSource->xml(), "<s/>");
    EXPECT_EQ(&oMoved.ownerDocument(), oTarget.get());
    EXPECT_EQ(&oMoved.firstChild().ownerDocument(), oTarget.get());
    oSource.reset();
    EXPECT_EQ(oTarget->xml(), "<t><m k=\"v\">text<in/></m></t>");
    EXPECT_EQ(oMoved.getAttribute("k"), "v");
    EXPECT_EQ(oMoved.nodeName(), "m");
}

TEST(AppendChild, MovedNodesOutliveAChainOfDocuments) {
    auto oFirst = documentOf("<a><m>1</m></a>");
    auto oSecond = documentOf("<b/>");
    const auto oThird = documentOf("<c/>");
    Node oMoved = oFirst->documentElement().firstChild();
    oSecond->documentElement().appendChild(oMoved);
    oFirst.reset();
    oThird->documentElement().appendChild(oMoved);
    oSecond.reset();
    oMoved.setText("a text that is longer than the one before it");
    oMoved.setAttribute("x", "y");
    EXPECT_EQ(oThird->xml(), "<c><m x=\"y\">a text that is longer than the one before it</m></c>");
}

TEST(AppendChild, MemoryOfMovedNodesIsCountedWhereTheyAre) {
    const auto oSource = documentOf("<s><m>12345</m></s>");
    const auto oTarget = documentOf("<t/>");
    oTarget->documentElement().appendChild(oSource->documentElement().firstChild());
    EXPECT_EQ(oSource->memoryUse().nodes, 1U);
    EXPECT_EQ(oSource->memoryUse().textBytes, 0U);
    EXPECT_EQ(oTarget->memoryUse().nodes, 3U);
    EXPECT_EQ(oTarget->memoryUse().textBytes, 5U);
}

TEST(AppendChild, FragmentHandsItsChildrenOver) {
    const auto oDocument = documentOf("<r><z/></r>");
    Node oFragment = oDocument->createNode(11, "", "");
    oFragment.appendChild(element(*oDocument, "a"));
    oFragment.appendChild(element(*oDocument, "b"));
    oDocument->documentElement().insertBefore(oFragment, oDocument->documentElement().firstChild());
    EXPECT_EQ(oDocument->xml(), "<r><a/><b/><z/></r>");
    EXPECT_FALSE(oFragment.hasChildNodes());
}

TEST(AppendChild, FragmentWithTwoElementsCannotBecomeARoot) {
    const auto oDocument = dom::Document::create();
    Node oFragment = oDocument->createNode(11, "", "");
    oFragment.appendChild(element(*oDocument, "a"));
    oFragment.appendChild(element(*oDocument, "b"));
    EXPECT_EQ(failureOf([&] { oDocument->asNode().appendChild(oFragment); }), documentFailure);
    EXPECT_EQ(oFragment.childNodes().length(), 2);
}

TEST(AppendChild, FragmentWithOneElementBecomesTheRoot) {
    const auto oDocument = dom::Document::create();
    Node oFragment = oDocument->createNode(11, "", "");
    oFragment.appendChild(element(*oDocument, "a"));
    oDocument->asNode().appendChild(oFragment);
    EXPECT_EQ(oDocument->xml(), "<a/>");
}

TEST(AppendChild, XmlDeclarationStandsFirst) {
    const auto oDocument = documentOf("<r/>");
    const Node oDeclaration = nodeOf(*oDocument, NodeType::ProcessingInstruction, "xml", "version='1.0'");
    EXPECT_EQ(failureOf([&] { oDocument->asNode().appendChild(oDeclaration); }), documentFailure);
    EXPECT_EQ(failureOf([&] { oDocument->documentElement().appendChild(oDeclaration); }), documentFailure);
    oDocument->asNode().insertBefore(oDeclaration, oDocument->documentElement());
    EXPECT_EQ(oDocument->xml(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><r/>");
    const Node oComment = nodeOf(*oDocument, NodeType::Comment, "", "c");
    EXPECT_EQ(failureOf([&] { oDocument->asNode().insertBefore(oComment, oDeclaration); }), documentFailure);
}

TEST(AppendChild, LeavesTheXmlDeclarationInFrontOfTheOthers) {
    const auto oDocument = documentOf("<?xml version='1.0'?><r/>");
    const std::string sXml = oDocument->xml();
    Node oDocumentNode = oDocument->asNode();
    const Node oDeclaration = oDocumentNode.firstChild();
    EXPECT_EQ(failureOf([&] { oDocumentNode.appendChild(oDeclaration); }), documentFailure);
    EXPECT_EQ(oDocument->xml(), sXml);
    oDocumentNode.insertBefore(oDeclaration, oDeclaration);
    oDocumentNode.insertBefore(oDeclaration, oDocument->documentElement());
    EXPECT_EQ(oDocument->xml(), sXml);
    oDocumentNode.removeChild(oDocument->documentElement());
    oDocumentNode.appendChild(oDeclaration);
    EXPECT_EQ(oDocumentNode.firstChild(), oDeclaration);
}

TEST(AppendChild, RefusesAFragmentInItsOwnChild) {
    const auto oDocument = documentOf("<r/>");
    Node oFragment = oDocument->createNode(11, "", "");
    Node oLeaf = oFragment.appendChild(element(*oDocument, "leaf"));
    EXPECT_EQ(failureOf([&] { oLeaf.appendChild(oFragment); }), documentFailure);
    EXPECT_EQ(oFragment.xml(), "<leaf/>");
}

TEST(InsertBefore, InsertsInFrontOfTheReferenceOrAtTheEnd) {
    const auto oDocument = documentOf("<r><b/></r>");
    Node oRoot = oDocument->documentElement();
    oRoot.insertBefore(element(*oDocument, "a"), oRoot.firstChild());
    oRoot.insertBefore(element(*oDocument, "c"), {});
    EXPECT_EQ(oDocument->xml(), "<r><a/><b/><c/></r>");
    oRoot.insertBefore(oRoot.firstChild(), oRoot.firstChild());
    EXPECT_EQ(oDocument->xml(), "<r><a/><b/><c/></r>");
}

TEST(InsertBefore, RefusesAReferenceThatIsNoChild) {
    const auto oDocument = documentOf("<r k='v'><a><b/></a></r>");
    Node oRoot = oDocument->documentElement();
    EXPECT_EQ(
        failureOf([&] { oRoot.insertBefore(element(*oDocument, "x"), oRoot.firstChild().firstChild()); }),
        documentFailure);
    EXPECT_EQ(failureOf([&] { oRoot.insertBefore(element(*oDocument, "x"), oRoot.attributes().item(0)); }),
              documentFailure);
}

TEST(RemoveChild, DetachesAndReturnsTheChild) {
    const auto oDocument = documentOf("<r><a>1</a><b/></r>");
    Node oRoot = oDocument->documentElement();
    const Node oRemoved = oRoot.removeChild(oRoot.firstChild());
    EXPECT_EQ(oDocument->xml(), "<r><b/></r>");
    EXPECT_FALSE(oRemoved.parentNode());
    EXPECT_FALSE(oRemoved.nextSibling());
    EXPECT_EQ(oRemoved.xml(), "<a>1</a>");
    EXPECT_EQ(failureOf([&] { oRoot.removeChild(oRemoved); }), documentFailure);
}

TEST(RemoveChild, RefusesAnAttribute) {
    const auto oDocument = documentOf("<r k='v'/>");
    Node oRoot = oDocument->documentElement();
    EXPECT_EQ(failureOf([&] { oRoot.removeChild(oRoot.attributes().item(0)); }), documentFailure);
    EXPECT_EQ(oDocument->xml(), "<r k=\"v\"/>");
}

TEST(CloneNode, IsRefusedByTheDocumentAndItsType) {
    const auto oDocument = documentOf("<!DOCTYPE r><r/>");
    const auto notSupported = number(FailureNumber::PropertyOrMethodNotSupported);
    EXPECT_EQ(failureOf([&] { (void)oDocument->asNode().cloneNode(true); }), notSupported);
    EXPECT_EQ(failureOf([&] { (void)oDocument->asNode().firstChild().cloneNode(true); }), notSupported);
}

TEST(CloneNode, CopiesAttributesAlwaysAndDescendantsWhenDeep) {
    const auto oDocument = documentOf("<r><a k='1' l='2'>t<b><c/></b><d>u</d></a></r>");
    const Node oA = oDocument->documentElement().firstChild();
    EXPECT_EQ(oA.cloneNode(false).xml(), "<a k=\"1\" l=\"2\"/>");
    Node oDeep = oA.cloneNode(true);
    EXPECT_EQ(oDeep.xml(), oA.xml());
    EXPECT_FALSE(oDeep.parentNode());
    oDeep.setAttribute("k", "changed");
    oDeep.firstChild().setText("changed");
    EXPECT_EQ(oA.xml(), "<a k=\"1\" l=\"2\">t<b><c/></b><d>u</d></a>");
}

TEST(CloneNode, CopiesANodeWithoutChildrenAsDeeplyAsAnother) {
    const auto oDocument = documentOf("<r><a b='1'/></r>");
    EXPECT_EQ(oDocument->documentElement().firstChild().cloneNode(true).xml(), "<a b=\"1\"/>");
}

TEST(CloneNode, StopsAtTheEndOfTheNode) {
    const auto oDocument = documentOf("<r><a><b/></a><c/></r>");
    EXPECT_EQ(oDocument->documentElement().firstChild().cloneNode(true).xml(), "<a><b/></a>");
}

TEST(SetText, ReplacesAllChildrenByOneText) {
    const auto oDocument = documentOf("<r>a<b/>c</r>");
    Node oRoot = oDocument->documentElement();
    const Node oB = oRoot.firstChild().nextSibling();
    oRoot.setText("<new> & \"text\"");
    EXPECT_EQ(oRoot.childNodes().length(), 1);
    EXPECT_EQ(oRoot.text(), "<new> & \"text\"");
    EXPECT_EQ(oDocument->xml(), "<r>&lt;new&gt; &amp; \"text\"</r>");
    EXPECT_EQ(oB.nodeName(), "b");
    EXPECT_FALSE(oB.parentNode());
}

TEST(SetText, LeavesNoChildForTheEmptyText) {
    const auto oDocument = documentOf("<r>a</r>");
    oDocument->documentElement().setText("");
    EXPECT_FALSE(oDocument->documentElement().hasChildNodes());
    EXPECT_EQ(oDocument->xml(), "<r/>");
}

TEST(SetText, SetsTheValueOfTheOtherKinds) {
    const auto oDocument = documentOf("<r k='v'>t<!--c--><?p d?></r>");
    Node oNode = oDocument->documentElement().firstChild();
    for (; oNode; oNode = oNode.nextSibling())
        oNode.setText("new");
    oDocument->documentElement().attributes().item(0).setText("new");
    EXPECT_EQ(oDocument->xml(), "<r k=\"new\">new<!--new--><?p new?></r>");
}

TEST(SetText, IsRefusedByTheDocument) {
    EXPECT_EQ(failureOf([] { documentOf("<r/>")->asNode().setText("x"); }),
              number(FailureNumber::PropertyOrMethodNotSupported));
}

TEST(SetText, TakesNoMoreMemoryForATextThatChangesAgainAndAgain) {
    const auto oDocument = documentOf("<r/>");
    Node oRoot = oDocument->documentElement();
    oRoot.setText(std::string(1000, 'x'));
    const auto nReserved = oDocument->memoryUse().reservedBytes;
    for (std::size_t n = 0; n < 10000; ++n)
        oRoot.setText(std::string(1 + n % 1000, 'y'));
    EXPECT_LE(oDocument->memoryUse().reservedBytes, nReserved + 100000);
    EXPECT_EQ(oDocument->memoryUse().textBytes, 1000U);
}

TEST(SetText, AcceptsAPartOfItsOwnText) {
    const auto oDocument = documentOf("<r>0123456789012345678901234567890123456789</r>");
    Node oText = oDocument->documentElement().firstChild();
    oText.setText(oText.nodeValue().substr(2));
    EXPECT_EQ(oText.nodeValue(), "23456789012345678901234567890123456789");
    oText.setText(oText.nodeValue().substr(30));
    EXPECT_EQ(oText.nodeValue(), "23456789");
}

TEST(SetAttribute, ReplacesOrAddsAfterTheOthers) {
    const auto oDocument = documentOf("<r a='1' b='2'/>");
    Node oRoot = oDocument->documentElement();
    oRoot.setAttribute("a", "3");
    oRoot.setAttribute("A", "4");
    EXPECT_EQ(oDocument->xml(), "<r a=\"3\" b=\"2\" A=\"4\"/>");
}

/// So many that comparing each with all others would take minutes.
constexpr int manyAttributes = 150'000;

std::string attributeName(int n) {
    return "a" + std::to_string(n);
}

dom::DocumentPtr documentWithManyAttributes() {
    auto oDocument = documentOf("<r/>");
    Node oRoot = oDocument->documentElement();
    for (int n = 0; n < manyAttributes; ++n)
        oRoot.setAttribute(attributeName(n), "old");
    return oDocument;
}

TEST(SetAttribute, FindsItsAttributeAmongManyWithoutLookingAtAll) {
    const auto oDocument = documentWithManyAttributes();
    Node oRoot = oDocument->documentElement();
    for (int n = manyAttributes; n-- > 0;)
        oRoot.setAttribute(attributeName(n), std::to_string(n));
    EXPECT_EQ(oRoot.attributes().length(), manyAttributes);
    int n = 0;
    for (const Node oAttribute : oRoot.attributes()) {
        ASSERT_EQ(oAttribute.nodeName(), attributeName(n));
        ASSERT_EQ(oAttribute.nodeValue(), std::to_string(n));
        ++n;
    }
    EXPECT_FALSE(oRoot.getAttribute(attributeName(manyAttributes)));
}

TEST(SetAttribute, FindsItsAttributeAmongManyInTheDocumentThatTheElementHasMovedTo) {
    const auto oTo = documentOf("<t/>");
    auto oFrom = documentWithManyAttributes();
    Node oMoved = oTo->documentElement().appendChild(oFrom->documentElement());
    oFrom.reset();
    oMoved.setAttribute(attributeName(manyAttributes / 2), "new");
    oMoved.setAttribute("last", "new");
    EXPECT_EQ(oMoved.attributes().length(), manyAttributes + 1);
    EXPECT_EQ(oMoved.getAttribute(attributeName(manyAttributes / 2)), "new");
    EXPECT_EQ(oMoved.getAttribute("last"), "new");
}

TEST(SetAttribute, FindsNothingOfAnElementWhoseMemoryAnotherOneHas) {
    const auto oDocument = documentOf("<r/>");
    const auto filled = [&](const std::string& sPrefix) {
        Node oElement = element(*oDocument, "e");
        for (int n = 0; n < 200; ++n)
            oElement.setAttribute(sPrefix + std::to_string(n), "1");
        return oElement;
    };
    const Node oGone = filled("a");
    const auto* const pGone = oGone.data();
    oDocument->release(oGone);
    Node oNew = filled("b");
    while (oNew.data() != pGone)
        oNew = filled("b");
    EXPECT_FALSE(oNew.getAttribute("a199"));
    EXPECT_EQ(oNew.getAttribute("b199"), "1");
}

TEST(SetAttribute, LeavesSelectionsFastAmongManyAttributes) {
    if (bWindows)
        GTEST_SKIP() << "MSXML's own affair";
    const auto oDocument = documentWithManyAttributes();
    const Node oFound = oDocument->asNode().selectSingleNode("/r/@" + attributeName(manyAttributes - 1));
    ASSERT_TRUE(oFound);
    EXPECT_EQ(oFound.nodeName(), attributeName(manyAttributes - 1));
    EXPECT_EQ(oDocument->asNode().selectNodes("/r/@*").length(), manyAttributes);
}

TEST(SetAttribute, IsRefusedByAllButElements) {
    const auto oDocument = documentOf("<r>t</r>");
    EXPECT_EQ(failureOf([&] { oDocument->asNode().setAttribute("a", "1"); }),
              number(FailureNumber::PropertyOrMethodNotSupported));
    EXPECT_EQ(failureOf([&] { oDocument->documentElement().firstChild().setAttribute("a", "1"); }),
              number(FailureNumber::PropertyOrMethodNotSupported));
}

TEST(Release, GivesADetachedTreeBack) {
    const auto oDocument = documentOf("<r/>");
    const auto before = oDocument->memoryUse();
    for (int n = 0; n < 10000; ++n) {
        Node oTree = element(*oDocument, "a");
        oTree.setAttribute("k", "some value of some length");
        oTree.appendChild(element(*oDocument, "b")).setText("some text of some length");
        oTree.appendChild(element(*oDocument, "c")).appendChild(element(*oDocument, "d"));
        oDocument->release(oTree);
    }
    const auto after = oDocument->memoryUse();
    EXPECT_EQ(after.nodes, before.nodes);
    EXPECT_EQ(after.textBytes, before.textBytes);
    EXPECT_EQ(after.reservedBytes, before.reservedBytes);
}

TEST(Release, RefusesWhatIsAttachedOrAnothersOrTheDocument) {
    const auto oDocument = documentOf("<r k='v'/>");
    const auto oOther = documentOf("<s/>");
    const Node oForeign = element(*oOther, "x");
    const auto invalid = number(FailureNumber::InvalidProcedureCall);
    EXPECT_EQ(failureOf([&] { oDocument->release(oDocument->documentElement()); }), invalid);
    EXPECT_EQ(failureOf([&] { oDocument->release(oDocument->documentElement().attributes().item(0)); }),
              invalid);
    EXPECT_EQ(failureOf([&] { oDocument->release(oForeign); }), invalid);
    EXPECT_EQ(failureOf([&] { oDocument->release(oDocument->asNode()); }), invalid);
}

TEST(Document, HandlesOnItsOldContentStayGoodAfterALoad) {
    const auto oDocument = documentOf("<r><a>1</a></r>");
    const Node oOld = oDocument->documentElement();
    oDocument->loadXML("<s/>");
    EXPECT_EQ(oOld.xml(), "<r><a>1</a></r>");
    EXPECT_FALSE(oOld.parentNode());
    EXPECT_EQ(oDocument->xml(), "<s/>");
}

} // namespace
} // namespace halvane::test
