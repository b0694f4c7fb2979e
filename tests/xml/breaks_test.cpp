#include "XmlSupport.h"

#include "base/Text.h"

#include <array>
#include <random>

namespace halvane::test {
namespace {

using dom::Node;
using dom::NodeType;

/// The rule itself, on the text.
std::string broken(const std::string& sXml) {
    return replaceAll(sXml, "><", ">\r\n<");
}

std::string brokenByTree(dom::Document& document) {
    document.breakBetweenTags();
    return document.xml();
}

class Breaks : public testing::TestWithParam<std::string_view> {};

INSTANTIATE_TEST_SUITE_P(
    Documents, Breaks,
    testing::Values("<r/>", "<r>t</r>", "<r><a/></r>", "<r><a/><b/></r>", "<r><a><b><c/></b></a></r>",
                    "<r>t<a/></r>", "<r><a/>t</r>", "<r><a>t</a><b/>u<c/></r>", "<r><!--c--></r>",
                    "<r><!--a><b--><?p ><?><![CDATA[><x><]]></r>", "<?xml version='1.0'?><r/>",
                    "<?xml version='1.0'?><!--c--><?p d?><r><a/></r><!--d--><!--e-->",
                    "<!DOCTYPE r [<!ELEMENT r ANY><!ENTITY e '<a/><b/>'>]><r>&e;</r>",
                    "<r k='&gt;&lt;'>&gt;&lt;<a/></r>", "<r><![CDATA[]]]]><![CDATA[>]]></r>"));

TEST_P(Breaks, StandWhereTwoTagsTouchInTheText) {
    const auto oDocument = documentOf(GetParam());
    const std::string sExpected = broken(oDocument->xml());
    EXPECT_EQ(brokenByTree(*oDocument), sExpected);
}

TEST_P(Breaks, AreNotDoubledTheSecondTime) {
    const auto oDocument = documentOf(GetParam());
    const std::string sOnce = brokenByTree(*oDocument);
    EXPECT_EQ(brokenByTree(*oDocument), sOnce);
}

TEST_P(Breaks, KeepTheDocumentWellFormed) {
    const auto oDocument = documentOf(GetParam());
    documentOf(brokenByTree(*oDocument));
}

TEST(BreakBetweenTags, StaysInTheTreeAsTexts) {
    const auto oDocument = documentOf("<r><a/></r>");
    oDocument->breakBetweenTags();
    const Node oRoot = oDocument->documentElement();
    ASSERT_EQ(oRoot.childNodes().length(), 3);
    EXPECT_EQ(oRoot.firstChild().nodeType(), NodeType::Text);
    EXPECT_EQ(oRoot.firstChild().nodeValue(), "\r\n");
    EXPECT_EQ(oRoot.firstChild().xml(), "\r\n");
    EXPECT_EQ(oRoot.text(), "\r\n\r\n");
}

TEST(BreakBetweenTags, BecomesOrdinaryTextWhenItIsSet) {
    const auto oDocument = documentOf("<r><a/></r>");
    oDocument->breakBetweenTags();
    oDocument->documentElement().firstChild().setText("\r\n");
    EXPECT_EQ(oDocument->xml(), "<r>&#13;\n<a/>\r\n</r>");
}

TEST(BreakBetweenTags, ReachesNodesThatCameAfterTheFirstTime) {
    const auto oDocument = documentOf("<r><a/></r>");
    oDocument->breakBetweenTags();
    oDocument->documentElement().appendChild(element(*oDocument, "b"));
    oDocument->asNode().appendChild(nodeOf(*oDocument, NodeType::Comment, "", "c"));
    const std::string sXml = oDocument->xml();
    EXPECT_EQ(sXml, "<r>\r\n<a/>\r\n<b/></r><!--c-->");
    EXPECT_EQ(brokenByTree(*oDocument), "<r>\r\n<a/>\r\n<b/>\r\n</r>\r\n<!--c-->");
}

TEST(BreakBetweenTags, DoesNotFollowATopLevelNodeElsewhere) {
    const auto oDocument = documentOf("<r/><!--c-->");
    oDocument->breakBetweenTags();
    const Node oComment = oDocument->asNode().lastChild();
    EXPECT_EQ(oComment.xml(), "<!--c-->");
    oDocument->documentElement().appendChild(oComment);
    EXPECT_EQ(oDocument->xml(), "<r><!--c--></r>");
}

TEST(BreakBetweenTags, LooksThroughTextsOfWhichNothingIsWritten) {
    const auto oDocument = documentOf("<r><a/></r>");
    Node oRoot = oDocument->documentElement();
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Text, "", ""));
    oRoot.appendChild(element(*oDocument, "b")).appendChild(nodeOf(*oDocument, NodeType::Text, "", "\x01"));
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Text, "", "\x02"));
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Comment, "", ">\x03<"));
    const std::string sExpected = broken(oDocument->xml());
    EXPECT_EQ(brokenByTree(*oDocument), sExpected);
    EXPECT_EQ(brokenByTree(*oDocument), sExpected);
}

/// A random tree of every kind of node, with data full of what matters.
void grow(dom::Document& document, Node oParent, std::mt19937& random, int lDepth) {
    static constexpr std::array<std::string_view, 12> data{"",   "t",   ">",   "<",    "><",     "a><b",
                                                           "--", "]]>", "?><", "\x01", ">\x01<", "-><-"};
    const auto pick = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    for (std::size_t n = pick(5); n > 0; --n) {
        switch (pick(6)) {
        case 0:
            oParent.appendChild(nodeOf(document, NodeType::Text, "", data[pick(data.size())]));
            break;
        case 1:
            oParent.appendChild(nodeOf(document, NodeType::Comment, "", data[pick(data.size())]));
            break;
        case 2:
            oParent.appendChild(nodeOf(document, NodeType::CDataSection, "", data[pick(data.size())]));
            break;
        case 3:
            oParent.appendChild(
                nodeOf(document, NodeType::ProcessingInstruction, "p", data[pick(data.size())]));
            break;
        default:
            Node oElement = oParent.appendChild(element(document, "e"));
            oElement.setAttribute("k", data[pick(data.size())]);
            if (lDepth > 0)
                grow(document, oElement, random, lDepth - 1);
        }
    }
}

TEST(BreakBetweenTags, DoesToRandomTreesWhatTheRuleDoesToTheirText) {
    std::mt19937 random(20260101);
    for (int n = 0; n < 2000; ++n) {
        const auto oDocument = documentOf("<r/>");
        grow(*oDocument, oDocument->documentElement(), random, 3);
        const std::string sXml = oDocument->xml();
        ASSERT_EQ(brokenByTree(*oDocument), broken(sXml)) << sXml;
        ASSERT_EQ(brokenByTree(*oDocument), broken(sXml)) << sXml;
        documentOf(oDocument->xml());
    }
}

} // namespace
} // namespace halvane::test
