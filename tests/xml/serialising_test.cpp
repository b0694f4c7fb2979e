#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

namespace halvane::test {
namespace {

using dom::Node;
using dom::NodeType;

/// What becomes of data in each place of a document, written and read back.
class Serialising : public testing::Test {
protected:
    dom::DocumentPtr oDocument = documentOf("<r/>");
    Node oRoot = oDocument->documentElement();
};

TEST_F(Serialising, WritesAnElementWithoutContentAsOneTag) {
    EXPECT_EQ(documentOf("<r></r>")->xml(), "<r/>");
    oRoot.setText("");
    EXPECT_EQ(oDocument->xml(), "<r/>");
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Text, "", ""));
    EXPECT_EQ(oDocument->xml(), "<r/>");
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Text, "", "\x01\x02"));
    EXPECT_EQ(oDocument->xml(), "<r/>");
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Text, "", "t"));
    EXPECT_EQ(oDocument->xml(), "<r>t</r>");
}

TEST_F(Serialising, EscapesTexts) {
    oRoot.setText("a & b < c > d \" ' \t\n\r ]]>");
    EXPECT_EQ(oRoot.xml(), "<r>a &amp; b &lt; c &gt; d \" ' \t\n&#13; ]]&gt;</r>");
    EXPECT_EQ(documentOf(oRoot.xml())->documentElement().text(), oRoot.text());
}

TEST_F(Serialising, EscapesAttributeValues) {
    oRoot.setAttribute("k", "a & b < c > d \" ' \t\n\r");
    EXPECT_EQ(oRoot.xml(), "<r k=\"a &amp; b &lt; c &gt; d &quot; ' &#9;&#10;&#13;\"/>");
    EXPECT_EQ(documentOf(oRoot.xml())->documentElement().getAttribute("k"), oRoot.getAttribute("k"));
}

TEST_F(Serialising, DropsForbiddenCharactersEverywhere) {
    const std::string_view sBad("a\x00\x08\x0B\x1F\xEF\xBF\xBE\xEF\xBF\xBF z", 13);
    oRoot.setAttribute("k", sBad);
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Text, "", sBad));
    oRoot.appendChild(nodeOf(*oDocument, NodeType::Comment, "", sBad));
    oRoot.appendChild(nodeOf(*oDocument, NodeType::CDataSection, "", sBad));
    oRoot.appendChild(nodeOf(*oDocument, NodeType::ProcessingInstruction, "p", sBad));
    EXPECT_EQ(oRoot.xml(), "<r k=\"a z\">a z<!--a z--><![CDATA[a z]]><?p a z?></r>");
}

TEST_F(Serialising, ReplacesInvalidUtf8ByTheReplacementCharacter) {
    const std::string sFffd = "\xEF\xBF\xBD";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\xFF", sFffd},                                     // never a byte of UTF-8
        {"a\x80z", "a" + sFffd + "z"},                       // a continuation alone
        {"\xC0\xAF", sFffd + sFffd},                         // overlong
        {"\xE0\x80\x80", sFffd + sFffd + sFffd},             // overlong
        {"\xED\xA0\x80", sFffd + sFffd + sFffd},             // a surrogate
        {"\xF4\x90\x80\x80", sFffd + sFffd + sFffd + sFffd}, // beyond the last character
        {"\xE6\x97", sFffd},                                 // cut short at the end
        {"\xE6\x97z", sFffd + "z"},                          // cut short by another character
        {"\xF0\x90\x8D", sFffd},
        {"\xC3", sFffd}};
    for (const auto& [sData, sExpected] : cases) {
        oRoot.setText(sData);
        EXPECT_EQ(oRoot.xml(), "<r>" + sExpected + "</r>");
    }
}

TEST_F(Serialising, KeepsEveryCharacterThatXmlAllows) {
    const std::string_view sGood = "\x7F\xC2\x80\xC3\xA4\xE6\x97\xA5\xEE\x80\x80\xEF\xBF\xBD\xF0\x90\x8D\x88"
                                   "\xF4\x8F\xBF\xBF";
    oRoot.setText(sGood);
    EXPECT_EQ(oRoot.xml(), "<r>" + std::string(sGood) + "</r>");
    EXPECT_EQ(documentOf(oRoot.xml())->documentElement().text(), sGood);
}

TEST_F(Serialising, KeepsCommentsWellFormed) {
    for (const std::string_view sData : {"a--b", "-", "--", "---", "a-", "a-\x01-b"}) {
        const Node oComment = oRoot.appendChild(nodeOf(*oDocument, NodeType::Comment, "", sData));
        documentOf(oDocument->xml());
        oRoot.removeChild(oComment);
    }
    EXPECT_EQ(nodeOf(*oDocument, NodeType::Comment, "", "a--b-").xml(), "<!--a- -b- -->");
}

TEST_F(Serialising, KeepsInstructionsWellFormed) {
    const Node oInstruction = nodeOf(*oDocument, NodeType::ProcessingInstruction, "p", "a?>b?\x01>c?");
    EXPECT_EQ(oInstruction.xml(), "<?p a? >b? >c?"
                                  "?>");
    EXPECT_EQ(nodeOf(*oDocument, NodeType::ProcessingInstruction, "p", "").xml(), "<?p?>");
}

TEST_F(Serialising, TellsInTheDeclarationWhetherTheDocumentStandsAlone) {
    const auto written = [&](std::string_view sData) {
        return nodeOf(*oDocument, NodeType::ProcessingInstruction, "xml", sData).xml();
    };
    const std::string sStart = "<?xml version=\"1.0\" encoding=\"UTF-8\"";
    EXPECT_EQ(written("version='1.0' standalone='yes'"), sStart + " standalone=\"yes\"?>");
    EXPECT_EQ(written("version='1.0' standalone=\"no\""), sStart + " standalone=\"no\"?>");
    EXPECT_EQ(written("version='1.0' standalone='perhaps'"), sStart + "?>");
    EXPECT_EQ(written("version='1.0' standalone"), sStart + "?>");
    EXPECT_EQ(written(""), sStart + "?>");
}

TEST_F(Serialising, KeepsTheDataOfCDataSectionsThatHoldTheEndMark) {
    for (const std::string_view sData : {"a]]>b", "]]>", "]]>]]>", "]]", "]", "]]]>", "a]]><b>"}) {
        oRoot.setText("");
        oRoot.appendChild(nodeOf(*oDocument, NodeType::CDataSection, "", sData));
        const std::string sXml = oDocument->xml();
        EXPECT_EQ(documentOf(sXml)->documentElement().text(), sData) << sXml;
    }
}

TEST_F(Serialising, CountsRepairsOfASaveOnly) {
    const TemporaryFolder folder;
    oRoot.setAttribute("k", "\x01\x02\xFF");
    oRoot.setText("\x03\xC0\xAF");
    (void)oDocument->xml();
    EXPECT_EQ(oDocument->characterRepairs().dropped, 0U);
    oDocument->save(folder.file("a.xml"));
    EXPECT_EQ(oDocument->characterRepairs().dropped, 3U);
    EXPECT_EQ(oDocument->characterRepairs().replaced, 3U);
    oDocument->save(folder.file("a.xml"));
    EXPECT_EQ(oDocument->characterRepairs().dropped, 3U);
}

TEST_F(Serialising, CountsRepairsInTextsOfWhichNothingIsLeft) {
    const TemporaryFolder folder;
    oRoot.setText("\x01\x02\xEF\xBF\xBE");
    oDocument->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), "<r/>");
    EXPECT_EQ(oDocument->characterRepairs().dropped, 3U);
}

TEST_F(Serialising, WritesTreesOfAnyDepth) {
    Node oDeepest = oRoot;
    constexpr int depth = 200000; // no recursion
    for (int n = 0; n < depth; ++n)
        oDeepest = oDeepest.appendChild(element(*oDocument, "a"));
    const std::string sXml = oDocument->xml();
    EXPECT_EQ(sXml.size(), 3U + 7U * (depth - 1) + 4U + 4U);
    const Node oClone = oRoot.cloneNode(true);
    EXPECT_EQ(oClone.xml(), sXml);
    oDocument->release(oClone);
}

TEST_F(Serialising, WritesTextsLargerThanItsBuffer) {
    const std::string sLarge(3U << 20U, 'x');
    oRoot.setText(sLarge + "&" + sLarge);
    EXPECT_EQ(oDocument->xml(), "<r>" + sLarge + "&amp;" + sLarge + "</r>");
}

} // namespace
} // namespace halvane::test
