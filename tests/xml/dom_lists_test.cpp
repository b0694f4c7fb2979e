#include "XmlSupport.h"

namespace halvane::test {
namespace {

using dom::Node;
using testing::ElementsAre;

TEST(ChildList, IsLive) {
    const auto oDocument = documentOf("<r><a/><b/></r>");
    Node oRoot = oDocument->documentElement();
    const auto oChildren = oRoot.childNodes();
    EXPECT_EQ(oChildren.length(), 2);
    oRoot.appendChild(element(*oDocument, "c"));
    EXPECT_EQ(oChildren.length(), 3);
    EXPECT_EQ(oChildren.item(2).nodeName(), "c");
    oRoot.removeChild(oRoot.firstChild());
    EXPECT_EQ(oChildren.length(), 2);
    EXPECT_EQ(oChildren.item(0).nodeName(), "b");
}

TEST(ChildList, GivesNothingOutsideItsRange) {
    const auto oDocument = documentOf("<r><a/></r>");
    const auto oChildren = oDocument->documentElement().childNodes();
    EXPECT_FALSE(oChildren.item(-1));
    EXPECT_FALSE(oChildren.item(1));
    EXPECT_EQ(oChildren.length(), 1);
    EXPECT_FALSE(oChildren.item(1));
}

TEST(ChildList, CountsFromWhereItStandsAndGoesBack) {
    const auto oDocument = documentOf("<r><a/><b/><c/><d/></r>");
    const auto oChildren = oDocument->documentElement().childNodes();
    EXPECT_EQ(oChildren.item(2).nodeName(), "c");
    EXPECT_EQ(oChildren.length(), 4);
    EXPECT_EQ(oChildren.item(0).nodeName(), "a");
    EXPECT_EQ(oChildren.item(3).nodeName(), "d");
}

TEST(ChildList, WalksOnceAndAgainAfterReset) {
    const auto oDocument = documentOf("<r><a/><b/></r>");
    auto oChildren = oDocument->documentElement().childNodes();
    EXPECT_THAT(namesOf(oChildren), ElementsAre("a", "b"));
    EXPECT_FALSE(oChildren.nextNode());
    oChildren.reset();
    EXPECT_EQ(oChildren.nextNode().nodeName(), "a");
}

TEST(ChildList, NextNodeSeesAChildThatIsAppendedAtTheEnd) {
    const auto oDocument = documentOf("<r><a/></r>");
    Node oRoot = oDocument->documentElement();
    auto oChildren = oRoot.childNodes();
    EXPECT_EQ(oChildren.nextNode().nodeName(), "a");
    EXPECT_FALSE(oChildren.nextNode());
    oRoot.appendChild(element(*oDocument, "b"));
    EXPECT_EQ(oChildren.nextNode().nodeName(), "b");
}

TEST(ChildList, WalkOverManyChildrenTakesLinearTime) {
    const auto oDocument = dom::Document::create();
    Node oRoot = oDocument->asNode().appendChild(element(*oDocument, "r"));
    constexpr std::int32_t many = 100000; // by index from the start each time: 5,000,000,000 steps
    for (std::int32_t l = 0; l < many; ++l)
        oRoot.appendChild(element(*oDocument, "c"));
    const auto oChildren = oRoot.childNodes();
    std::int32_t lSeen = 0;
    for (std::int32_t l = 0; l < oChildren.length(); ++l)
        lSeen += oChildren.item(l) ? 1 : 0;
    EXPECT_EQ(lSeen, many);
}

TEST(TagNameList, HoldsDescendantsOfThatNameInDocumentOrder) {
    const auto oDocument = documentOf("<a><b i='1'><b i='2'/></b><c/><b i='3'/></a>");
    const auto oList = oDocument->getElementsByTagName("b");
    ASSERT_EQ(oList.length(), 3);
    EXPECT_EQ(oList.item(0).getAttribute("i"), "1");
    EXPECT_EQ(oList.item(1).getAttribute("i"), "2");
    EXPECT_EQ(oList.item(2).getAttribute("i"), "3");
    EXPECT_THAT(namesOf(oDocument->getElementsByTagName("*")), ElementsAre("a", "b", "b", "c", "b"));
    EXPECT_EQ(oDocument->getElementsByTagName("B").length(), 0);
}

TEST(TagNameList, LeavesTheNodeItselfAndItsSiblingsOut) {
    const auto oDocument = documentOf("<a><b><b/></b><b/></a>");
    const Node oFirst = oDocument->documentElement().firstChild();
    EXPECT_EQ(oFirst.getElementsByTagName("b").length(), 1);
    EXPECT_EQ(oFirst.firstChild().getElementsByTagName("*").length(), 0);
}

TEST(TagNameList, IsLive) {
    const auto oDocument = documentOf("<a><b/></a>");
    const auto oList = oDocument->getElementsByTagName("b");
    EXPECT_EQ(oList.length(), 1);
    oDocument->documentElement().firstChild().appendChild(element(*oDocument, "b"));
    EXPECT_EQ(oList.length(), 2);
}

TEST(NodeList, NoListAtAllIsNotAnEmptyList) {
    dom::NodeList oNone;
    EXPECT_FALSE(oNone);
    EXPECT_EQ(failureOf([&] { (void)oNone.length(); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { (void)oNone.item(0); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { (void)oNone.nextNode(); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { oNone.reset(); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_TRUE(documentOf("<a/>")->getElementsByTagName("b"));
}

TEST(NamedNodeMap, IsLiveAndInTheOrderOfSetting) {
    const auto oDocument = documentOf("<a z='1'/>");
    Node oRoot = oDocument->documentElement();
    const auto oAttributes = oRoot.attributes();
    oRoot.setAttribute("b", "2");
    oRoot.setAttribute("z", "3");
    ASSERT_EQ(oAttributes.length(), 2);
    EXPECT_EQ(oAttributes.item(0).nodeName(), "z");
    EXPECT_EQ(oAttributes.item(0).text(), "3");
    EXPECT_EQ(oAttributes.item(1).nodeName(), "b");
}

TEST(NamedNodeMap, NoMapAtAllRefusesEveryOperation) {
    const dom::NamedNodeMap oNone;
    EXPECT_EQ(failureOf([&] { (void)oNone.length(); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { (void)oNone.item(0); }), number(FailureNumber::ObjectVariableNotSet));
    EXPECT_EQ(failureOf([&] { (void)oNone.getNamedItem("a"); }), number(FailureNumber::ObjectVariableNotSet));
}

TEST(DescendantList, SeesChangesInTheDocumentThatItsTopHasMovedTo) {
    constexpr int nChangesBefore = 20;
    for (int nChanges = 0; nChanges < 2 * nChangesBefore; ++nChanges) {
        const auto oFrom = documentOf("<r><a><b/></a></r>");
        const auto oTo = documentOf("<t/>");
        for (int n = 0; n < nChangesBefore; ++n)
            oFrom->documentElement().setAttribute("n", std::to_string(n));
        dom::Node oTop = oFrom->documentElement().firstChild();
        const dom::NodeList oList = oTop.getElementsByTagName("b");
        EXPECT_EQ(oList.length(), 1);
        oTo->documentElement().appendChild(oTop);
        for (int n = 0; n < nChanges; ++n)
            oTop.appendChild(element(*oTo, "b"));
        EXPECT_EQ(oList.length(), 1 + nChanges);
    }
}

TEST(SnapshotList, GivesNothingOutsideItsRange) {
    const auto oDocument = documentOf("<r><a/><b/></r>");
    const dom::NodeList oNodes = oDocument->documentElement().selectNodes("*");
    EXPECT_FALSE(oNodes.item(-1));
    EXPECT_EQ(oNodes.item(1).nodeName(), "b");
    EXPECT_FALSE(oNodes.item(2));
}

} // namespace
} // namespace halvane::test
