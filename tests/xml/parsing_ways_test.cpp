// A document without a document type is parsed straight to the tree, one with a document type over a tree of
// the parser's. Both ways must yield the same.

#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

#include <array>

namespace halvane::test {
namespace {

using dom::Node;

/// One node a line, with all that a reader of the tree can see of it; the document type left out.
void describe(Node oNode, std::size_t nDepth, std::string& sAll) {
    if (oNode.nodeType() == dom::NodeType::DocumentType)
        return;
    sAll.append(nDepth, ' ').append(oNode.nodeName()).append("=").append(oNode.nodeValue());
    sAll.append(" @").append(std::to_string(oNode.line()));
    if (const auto oAttributes = oNode.attributes())
        for (std::int32_t l = 0; l < oAttributes.length(); ++l)
            sAll.append(" ")
                .append(oAttributes.item(l).nodeName())
                .append("=")
                .append(oAttributes.item(l).nodeValue());
    sAll.append("\n");
    for (Node oChild = oNode.firstChild(); oChild; oChild = oChild.nextSibling())
        describe(oChild, nDepth + 1, sAll);
}

std::string loadedTree(const std::string& sXml, bool bValidate) {
    const auto oDocument = dom::Document::create();
    oDocument->setValidateOnParse(bValidate);
    if (!oDocument->loadXML(sXml)) {
        EXPECT_FALSE(oDocument->asNode().hasChildNodes());
        const auto& error = oDocument->parseError();
        return std::to_string(error.errorCode) + " line " + std::to_string(error.line) + ": " + error.reason;
    }
    std::string sAll;
    describe(oDocument->asNode(), 0, sAll);
    return sAll;
}

/// The text with a document type that says nothing before its root element, on the same line.
std::string withDocumentType(std::string sXml) {
    std::size_t nRoot = sXml.find('<');
    while (nRoot != std::string::npos && (sXml[nRoot + 1] == '!' || sXml[nRoot + 1] == '?'))
        nRoot = sXml.find('<', nRoot + 1);
    return nRoot == std::string::npos ? sXml : sXml.insert(nRoot, "<!DOCTYPE r>");
}

void expectBothWaysAlike(const std::string& sXml) {
    EXPECT_EQ(loadedTree(sXml, false), loadedTree(withDocumentType(sXml), false)) << sXml;
}

TEST(ParsingWays, YieldTheSameTree) {
    const std::array<std::string, 20> aTexts{
        "<r/>",
        "<?xml version='1.0'?><r/>",
        "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<!-- c\nd -->\n<?p "
        "q\nr?><r/>\n<!--e--><?f?>",
        "<?xml version='1.0' standalone='no'?><r a='1' b='&lt;&#10;&amp;\n\t x'/>",
        "<r>\n <a>x</a>\n\n<b\n c='d'\n>\n</b>t</r>",
        "<r>a&amp;b&#x20AC;&lt;c\nd&gt;\ne</r>",
        "<r>&#32;</r>",
        "<r> &#32; <a/>\n&amp;\n</r>",
        "<r>a<!--c-->b<?p?>c<![CDATA[d]]>e</r>",
        "<r><![CDATA[a]]><![CDATA[\nb]]> <![CDATA[c]]><![CDATA[]]></r>",
        "<r><![CDATA[]]></r>",
        "<r>\n<![CDATA[\n]]>\n<![CDATA[ ]]></r>",
        "<r> <a xml:space='preserve'> <b> </b><c xml:space='default'> <d/> </c> <e>\n</e> </a> </r>",
        "<r xml:space='preserve'>\n<a/>\n</r>",
        "<p:r xmlns:p='u' xmlns='v' p:a='1' a='2' xml:lang='de'><p:b/><c xmlns=''><d/></c></p:r>",
        "<r xmlns:q='x' q:space='preserve' space='preserve'> <a/> </r>",
        "<r>\r\n<a\r\n/>x\r\ny\r</r>",
        "<r>\xC3\xA4<\xC3\xB6 \xC3\xBC='\xE2\x82\xAC'/></r>",
        "<r><a></a><a ></a ><a\n/></r>",
        "<r>" + std::string(70000, '\n') + "<a/>x" + std::string(5000, 'y') + "\nz</r>",
    };
    for (const auto& sText : aTexts)
        expectBothWaysAlike(sText);
}

TEST(ParsingWays, YieldTheSameTextInManyPieces) {
    std::string sText = "<r>";
    for (int n = 0; n < 3000; ++n)
        sText.append("piece ").append(std::to_string(n)).append(n % 7 == 0 ? "&amp;\n" : "&#x20AC; ");
    expectBothWaysAlike(sText + "</r>");
}

TEST(ParsingWays, TellTheSameErrors) {
    const std::array<std::string, 16> aTexts{
        "<r>\n<a></b></r>",
        "<r>\n&nothing;</r>",
        "<r a='1'\na='2'/>",
        "<r>\n<p:a/></r>",
        "<r p:a='1'/>",
        "<r><a:b:c/></r>",
        "<r/>\n<s/>",
        "<r>\n",
        "<r>&#1;</r>",
        "<r a='<'/>",
        "<r><?xml version='1.0'?></r>",
        "<r>]]></r>",
        "<r><!-- -- --></r>",
        "<r a=b/>",
        "<r>\n<![CDATA[</r>",
        "<r>\n\x01</r>",
    };
    for (const auto& sText : aTexts)
        expectBothWaysAlike(sText);
}

TEST(ParsingWays, LimitTheSameDepth) {
    const auto nested = [](std::size_t nDepth) {
        std::string sText;
        for (std::size_t n = 0; n < nDepth; ++n)
            sText.append("<a>\n");
        for (std::size_t n = 0; n < nDepth; ++n)
            sText.append("</a>");
        return sText;
    };
    for (const std::size_t nDepth : {255U, 256U, 257U, 258U, 259U, 300U, 999U, 1000U, 1001U, 1002U, 3000U})
        expectBothWaysAlike(nested(nDepth));
}

/// A document that declares that many namespaces, each in an element of its own around the next ones.
std::string declarations(std::size_t nOutside, std::size_t nInside) {
    std::string sText = "<r";
    for (std::size_t n = 0; n < nOutside; ++n)
        sText.append(" xmlns:p").append(std::to_string(n)).append("='u'");
    sText += ">";
    for (int nSibling = 0; nSibling < 2; ++nSibling) {
        sText += "<a";
        for (std::size_t n = 0; n < nInside; ++n)
            sText.append(" xmlns:q").append(std::to_string(n)).append("='u'");
        sText += "/>";
    }
    return sText + "</r>";
}

TEST(ParsingWays, LimitTheNamespacesThatAreInForce) {
    const auto oDocument = dom::Document::create();
    for (const std::string sType : {"", "<!DOCTYPE r [<!ELEMENT r ANY>]>"}) {
        EXPECT_TRUE(oDocument->loadXML(sType + declarations(500, 500))) << oDocument->parseError().reason;
        EXPECT_FALSE(oDocument->loadXML(sType + declarations(500, 501)));
        EXPECT_EQ(oDocument->parseError().reason, "more namespace declarations are in force than 1000; make "
                                                  "elements of some attributes");
    }
}

TEST(ParsingWays, LimitTheAttributesThatADocumentTypeDeclaresForAnElement) {
    const auto declared = [](std::size_t nAttributes) {
        std::string sText = "<!DOCTYPE r [";
        for (const char* const sElement : {"r", "s"})
            for (std::size_t n = 0; n < nAttributes; ++n)
                sText.append("<!ATTLIST ")
                    .append(sElement)
                    .append(" a")
                    .append(std::to_string(n))
                    .append(" (x|y) 'x'>");
        return sText + "]><r/>";
    };
    EXPECT_EQ(documentOf(declared(1000))->documentElement().attributes().length(), 1000);
    const auto oDocument = dom::Document::create();
    EXPECT_FALSE(oDocument->loadXML(declared(1001)));
    EXPECT_EQ(oDocument->parseError().reason,
              "an element has more attributes than 1000; make elements of some attributes");
}

TEST(ParsingWays, ValidateADocumentWithoutADocumentTypeAsOneThatKeepsToIt) {
    EXPECT_EQ(loadedTree("<r><a b='c'/></r>", true),
              loadedTree("<!DOCTYPE r [<!ELEMENT r (a)><!ELEMENT a EMPTY><!ATTLIST a b CDATA #IMPLIED>]>"
                         "<r><a b='c'/></r>",
                         true));
}

TEST(ParsingWays, KeepWhatStandsBeforeADocumentTypeOnce) {
    const auto oDocument = documentOf("<?xml version='1.0'?><!--a--><?p?><!DOCTYPE r><!--b--><r/>");
    EXPECT_THAT(namesOf(oDocument->asNode().childNodes()),
                testing::ElementsAre("xml", "#comment", "p", "r", "#comment", "r"));
    EXPECT_EQ(oDocument->memoryUse().nodes, 6U);
}

TEST(ParsingWays, TakeNoMemoryForADocumentThatDoesNotParse) {
    const auto oDocument = dom::Document::create();
    EXPECT_FALSE(oDocument->loadXML("<r><a b='c'>text</a><a></r>"));
    EXPECT_EQ(oDocument->memoryUse().nodes, 0U);
    EXPECT_EQ(oDocument->memoryUse().textBytes, 0U);
}

// The parser's own tree would end such a text in silence, and the document with it.
TEST(ParsingWays, KeepATextOfMoreThanTenMillionBytesOrRefuseItWhereEntitiesAreDeclaredButNeverCutIt) {
    const std::string sHalf(6'000'000, 'x');
    const std::string sXml = "<r><a>" + sHalf + "&amp;" + sHalf + "</a><b/></r>";
    const auto oDocument = dom::Document::create();
    for (const auto& sText : {sXml, withDocumentType(sXml)}) {
        ASSERT_TRUE(oDocument->loadXML(sText)) << oDocument->parseError().reason;
        EXPECT_EQ(oDocument->documentElement().firstChild().text().size(), 12'000'001U);
        EXPECT_EQ(oDocument->documentElement().lastChild().nodeName(), "b");
    }
    EXPECT_FALSE(oDocument->loadXML("<!DOCTYPE r [<!ENTITY e 'x'>]>" + sXml));
    EXPECT_THAT(oDocument->parseError().reason, testing::HasSubstr("huge text"));
}

TEST(ParsingWays, ReadALargeDocumentHoweverItEnds) {
    std::string sText = "<r>" + std::string(9'999'000, ' ') + "<e";
    for (int n = 0; n < 500; ++n)
        sText.append(" a").append(std::to_string(n)).append("='1'");
    sText += "/></r>" + std::string(2000, '\n');
    expectBothWaysAlike(sText);
    EXPECT_EQ(documentOf(sText)->documentElement().firstChild().attributes().length(), 500);
}

TEST(ParsingWays, SelectTheSameNodes) {
    const std::string sXml =
        "<r xmlns:p='u'> <a xml:id='x'>t<![CDATA[u]]></a><p:b c='1'/>  <a d='2'/><!--e--><?f g?></r>";
    const auto oStraight = documentOf(sXml);
    const auto oOver = documentOf(withDocumentType(sXml));
    for (const char* const pXPath :
         {"//a", "//p:b/@c", "id('x')", "//text()", "//comment()", "//processing-instruction('f')", "/r/*[2]",
          "//a[@d='2']", "//a[.='tu']", "/r/node()", "//*[namespace-uri()='u']", "//@*"})
        EXPECT_EQ(namesOf(oStraight->asNode().selectNodes(pXPath)),
                  namesOf(oOver->asNode().selectNodes(pXPath)))
            << pXPath;
}

} // namespace
} // namespace halvane::test
