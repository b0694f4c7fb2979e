// Schemas that the XML library compiles, and documents that it validates by them.

#include "SchemaFolder.h"
#include "SchemaListening.h"
#include "support/OpenCounter.h"

#include <memory>

namespace halvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SchemaCompiling : public SchemaFolder {
protected:
    /// Compiles a schema of the folder, whose files can be read.
    std::unique_ptr<dom::Schema> compile(std::string_view sName) {
        const auto files = filesFrom(sName);
        EXPECT_THAT(problems, IsEmpty());
        return dom::Schema::compile(files, problems);
    }
    /// The problem of a schema with that content.
    std::string problemOf(std::string_view sContent) {
        problems.clear();
        folder.write("root.xsd", schemaOf(sContent));
        EXPECT_EQ(compile("root.xsd"), nullptr);
        EXPECT_EQ(problems.size(), 1U);
        return problems.empty() ? "" : problems.front();
    }
};

TEST_F(SchemaCompiling, TellsTheFirstErrorWithItsPlace) {
    EXPECT_THAT(problemOf("\n<xs:element name=\"a\" type=\"NoSuchType\"/>"),
                testing::StartsWith(path("root.xsd") + ":2: "));
    EXPECT_THAT(problems.front(), HasSubstr("NoSuchType"));
    EXPECT_THAT(problems.front(), testing::Not(HasSubstr("more")));
    EXPECT_THAT(problems.front(), testing::Not(HasSubstr("\n")));
}

TEST_F(SchemaCompiling, CountsTheOtherErrors) {
    std::string sElements;
    for (const char* pName : {"a", "b", "c"})
        sElements += "\n<xs:element name=\"" + std::string(pName) + "\" type=\"NoSuchType\"/>";
    EXPECT_THAT(problemOf(sElements), testing::StartsWith(path("root.xsd") + ":2: "));
    EXPECT_THAT(problems.front(), testing::EndsWith(" (and 2 more)"));
}

TEST_F(SchemaCompiling, TellsErrorsOfItsPartsWithTheirPlaces) {
    folder.write("part.xsd", schemaOf("\n\n<xs:element name=\"a\" type=\"NoSuchType\"/>"));
    EXPECT_THAT(problemOf("<xs:include schemaLocation=\"part.xsd\"/>"),
                testing::StartsWith(path("part.xsd") + ":3: "));
}

TEST_F(SchemaCompiling, GoesOnWhereTheLibraryMerelyWarns) {
    // The second import of a namespace is left out, one without a location leads nowhere.
    folder.write("a.xsd", schemaOf("<xs:element name=\"a\"/>", "n"));
    folder.write("b.xsd", schemaOf("<xs:element name=\"b\"/>", "n"));
    folder.write("root.xsd", schemaOf(R"(<xs:import namespace="urn:n" schemaLocation="a.xsd"/>
<xs:import namespace="urn:n" schemaLocation="b.xsd"/><xs:import namespace="urn:m"/>
<xs:import namespace="urn:o" schemaLocation=" "/><xs:element name="r"/>)"));
    EXPECT_NE(compile("root.xsd"), nullptr);
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(SchemaCompiling, OpensNothingThatWasNotReadBefore) {
    folder.write("root.xsd", schemaOf("<xs:include schemaLocation=\"part.xsd\"/>"));
    folder.write("part.xsd", schemaOf("<xs:element name=\"a\"/>"));
    const auto files = filesFrom("root.xsd");
    folder.write("part.xsd", "no schema at all");
    const OpenCounter counter(folder.path());
    ASSERT_TRUE(counter.works());
    EXPECT_NE(dom::Schema::compile(files, problems), nullptr);
    EXPECT_EQ(counter.opens(), 0);
    EXPECT_THAT(problems, IsEmpty());
}

TEST_F(SchemaCompiling, RefusesFilesWithoutARoot) {
    const dom::SchemaFiles files("http://a/no.xsd", "shown", dom::SchemaCatalog(), problems);
    problems.clear();
    EXPECT_EQ(dom::Schema::compile(files, problems), nullptr);
    EXPECT_EQ(problems.size(), 1U);
    EXPECT_THAT(problems, ElementsAre(testing::StartsWith("http://a/no.xsd: ")));
}

class SchemaValidation : public SchemaCompiling {
protected:
    /// The document <r> whose content and attributes are declared so.
    void declare(std::string_view sContent, std::string_view sBehindElement = {}) {
        folder.write("root.xsd",
                     schemaOf("<xs:element name=\"r\"><xs:complexType><xs:sequence>" + std::string(sContent) +
                              "</xs:element>" + std::string(sBehindElement)));
        pSchema = compile("root.xsd");
        ASSERT_NE(pSchema, nullptr);
    }
    /// What is told of a document that comes in pieces of that many bytes.
    std::vector<std::string> told(std::string_view sXml, std::size_t nPiece = std::string_view::npos) const {
        SchemaProtocol protocol;
        const auto pValidation = pSchema->validate(protocol);
        for (std::size_t n = 0; n < sXml.size(); n += std::min(nPiece, sXml.size()))
            pValidation->write(sXml.substr(n, nPiece));
        pValidation->finish();
        return protocol.lines();
    }

    std::unique_ptr<dom::Schema> pSchema;
};

constexpr const char* sNumbers =
    R"(<xs:element name="a" type="xs:integer" maxOccurs="unbounded"/></xs:sequence>
<xs:attribute name="k" type="xs:integer"/></xs:complexType>)";

TEST_F(SchemaValidation, TellsTheElementsInTheirOrder) {
    declare(sNumbers);
    const std::string_view sXml = "<?xml version=\"1.0\"?>\n<r k=\"1\"><a>1</a><a>2</a></r>\n";
    EXPECT_THAT(told(sXml), ElementsAre("<r", "<a", ">", "<a", ">"));
    EXPECT_EQ(told(sXml, 1), told(sXml));
}

TEST_F(SchemaValidation, TellsErrorsWithinTheirElement) {
    declare(sNumbers);
    const std::string sMessage = "is not a valid value of the atomic type 'xs:integer'.";
    EXPECT_THAT(told("<r>\n<a\n>x</a>\n<a>2</a><b/></r>"),
                ElementsAre("<r", "<a", "2: Element 'a': 'x' " + sMessage, ">", "<a", ">", "<b",
                            "4: Element 'b': This element is not expected. Expected is ( a ).", ">"));
}

TEST_F(SchemaValidation, TellsWhatIsMissingAtTheEndOfAnElement) {
    declare("<xs:element name=\"a\"><xs:complexType><xs:sequence><xs:element name=\"b\"/></xs:sequence>"
            "</xs:complexType></xs:element></xs:sequence></xs:complexType>");
    EXPECT_THAT(told("<r>\n<a/></r>"),
                ElementsAre("<r", "<a", "2: Element 'a': Missing child element(s). Expected is ( b ).", ">"));
}

TEST_F(SchemaValidation, NamesTheAttributeThatIsWrong) {
    declare(sNumbers);
    EXPECT_THAT(told("<r\n k='x'><a>1</a></r>"),
                ElementsAre("<r",
                            "1 @k: Element 'r', attribute 'k': 'x' is not a valid value of the atomic "
                            "type 'xs:integer'.",
                            "<a", ">"));
    EXPECT_THAT(
        told("<r xmlns:p='urn:p' p:q='x'><a>1</a></r>"),
        ElementsAre("<r", testing::StartsWith("1 @q: Element 'r', attribute '{urn:p}q': "), "<a", ">"));
}

TEST_F(SchemaValidation, TakesNoTextForAnAttribute) {
    declare(sNumbers);
    EXPECT_THAT(told("<r><a>x', attribute 'k': y</a></r>"),
                ElementsAre("<r", "<a",
                            "1: Element 'a': 'x', attribute 'k': y' is not a valid value of the atomic type "
                            "'xs:integer'.",
                            ">"));
}

TEST_F(SchemaValidation, TellsAnErrorInOneLineWhateverIsInTheValue) {
    declare(R"(<xs:element name="a"><xs:simpleType><xs:restriction base="xs:string"><xs:pattern value="y"/>
</xs:restriction></xs:simpleType></xs:element></xs:sequence></xs:complexType>)");
    EXPECT_THAT(
        told("<r><a>x&#13;&#10;x</a></r>"),
        ElementsAre("<r", "<a",
                    "1: Element 'a': [facet 'pattern'] The value 'x  x' is not accepted by the pattern "
                    "'y'.",
                    ">"));
}

TEST_F(SchemaValidation, NamesElementsWithTheirPrefixes) {
    declare("<xs:any processContents=\"skip\" maxOccurs=\"unbounded\"/></xs:sequence></xs:complexType>");
    EXPECT_THAT(told("<r><p:a xmlns:p='urn:p'><b/></p:a><c xmlns='urn:c'/></r>"),
                ElementsAre("<r", "<p:a", "<b", ">", ">", "<c", ">"));
}

TEST_F(SchemaValidation, ChecksKeys) {
    folder.write("root.xsd", schemaOf(R"(<xs:element name="r"><xs:complexType><xs:sequence>
<xs:element name="a" type="xs:string" maxOccurs="unbounded"/></xs:sequence></xs:complexType>
<xs:unique name="u"><xs:selector xpath="a"/><xs:field xpath="."/></xs:unique></xs:element>)"));
    pSchema = compile("root.xsd");
    ASSERT_NE(pSchema, nullptr);
    const auto lines = told("<r><a>1</a>\n<a>1</a><a>2</a></r>");
    EXPECT_THAT(lines,
                testing::Contains(HasSubstr("Duplicate key-sequence ['1'] in unique identity-constraint")));
}

TEST_F(SchemaValidation, ReadsTextsOfMoreThanAMegabyte) {
    declare("<xs:element name=\"a\" type=\"xs:string\"/></xs:sequence></xs:complexType>");
    const std::string sLong(std::size_t{5} << 19U, 'x');
    EXPECT_THAT(told("<r><a>" + sLong + "</a></r>"), ElementsAre("<r", "<a", ">"));
    EXPECT_THAT(told("<r><a>" + sLong + "</a>\n<b/></r>"),
                ElementsAre("<r", "<a", ">", "<b", "2: Element 'b': This element is not expected.", ">"));
}

TEST_F(SchemaValidation, TellsOnceThatADocumentIsNotWellFormed) {
    declare(sNumbers);
    const auto lines = told("<r><a>1</b>\n</a><a>x</a></r>", 5);
    EXPECT_THAT(lines, ElementsAre("<r", "<a", "1: Opening and ending tag mismatch: a line 1 and b"));
}

TEST_F(SchemaValidation, TellsThatADocumentEndsTooEarly) {
    declare(sNumbers);
    EXPECT_THAT(told("<r><a>1</a>"), testing::Contains("1: Extra content at the end of the document"));
    EXPECT_THAT(told(""), ElementsAre(testing::StartsWith("1: ")));
}

TEST_F(SchemaValidation, OpensNothingThatADocumentNames) {
    declare(sNumbers);
    const std::string sFile = folder.url("entity.txt");
    folder.write("entity.txt", "1");
    const OpenCounter counter(folder.path());
    const auto lines = told("<!DOCTYPE r [<!ENTITY e SYSTEM \"" + sFile + "\">]><r><a>&e;</a></r>");
    EXPECT_EQ(counter.opens(), 0);
    EXPECT_THAT(lines, ElementsAre("<r", "<a", "1: Entity 'e' not defined"));
}

TEST_F(SchemaValidation, OfOneSchemaMayGoOnBesideEachOther) {
    declare(sNumbers);
    SchemaProtocol first;
    SchemaProtocol second;
    const auto pFirst = pSchema->validate(first);
    const auto pSecond = pSchema->validate(second);
    pFirst->write("<r><a>1");
    pSecond->write("<r><a>x");
    pFirst->write("</a></r>");
    pSecond->write("</a></r>");
    pFirst->finish();
    pSecond->finish();
    EXPECT_EQ(first.errors(), 0U);
    EXPECT_EQ(second.errors(), 1U);
}

TEST_F(SchemaValidation, MayBeGivenUp) {
    declare(sNumbers);
    SchemaProtocol protocol;
    pSchema->validate(protocol)->write("<r><a>1</a>");
    EXPECT_THAT(protocol.lines(), ElementsAre("<r", "<a"));
}

} // namespace
} // namespace halvane::test
