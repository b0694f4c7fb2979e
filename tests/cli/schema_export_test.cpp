#include "cli/Samples.h"
#include "cli/SchemaCheck.h"
#include "support/OpenCounter.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace halvane::test {

using ::testing::HasSubstr;

namespace {

/// The document of sTownsControl; its namespace and the type of <Name> are placeholders.
std::string townsSchema(std::string_view sTypeOfName, std::string_view sBefore = {}) {
    return R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">)" + std::string(sBefore) +
           R"(<xs:simpleType name="Capital"><xs:restriction base="xs:string"><xs:pattern value="[A-B].*"/>
</xs:restriction></xs:simpleType>
<xs:element name="Map"><xs:complexType><xs:sequence><xs:element name="Towns"><xs:complexType><xs:sequence>
<xs:element name="Town" maxOccurs="unbounded"><xs:complexType><xs:sequence>
<xs:element name="Name" type=")" +
           std::string(sTypeOfName) + R"("/>
</xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType>
</xs:element></xs:schema>)";
}

/// A schema of <Map> whose children are named, each of one type.
std::string schemaOf(const std::vector<std::pair<std::string, std::string>>& children) {
    std::string sSchema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:element name="Map"><xs:complexType><xs:sequence>)";
    for (const auto& [sName, sType] : children)
        sSchema += "<xs:element name=\"" + sName + "\" type=\"" + sType + "\" maxOccurs=\"unbounded\"/>";
    return sSchema + "</xs:sequence></xs:complexType></xs:element></xs:schema>";
}

class ExportWithSchema : public ExportFixture {
protected:
    ExportWithSchema() { program.write("towns.xsd", townsSchema("xs:string")); }

    [[nodiscard]] RunResult exportTowns(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"export", "--map", "towns.geojson"});
        return program.run(arguments);
    }
    /// Exports by a control file and a schema of their own, and gives what stands on standard error.
    [[nodiscard]] std::string errorsOf(const std::string& sControl, const std::string& sSchema) const {
        program.write("own.xml", sControl);
        program.write("own.xsd", sSchema);
        const auto result = exportTowns({"--schema", "own.xsd", "own.xml", "own.out.xml"});
        EXPECT_EQ(result.lExitCode, 3);
        return result.sErr;
    }
    /// Expects a refusal of the schema before anything is written.
    void expectSchemaRefused(const std::string& sErr, std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments{"--map",     "towns.geojson", "--schema",
                                           "towns.xsd", "control.xml",   "out.xml"};
        arguments.insert(arguments.begin(), more.begin(), more.end());
        expectRefused(arguments, sErr);
    }
    [[nodiscard]] std::string out() const { return program.file("own.out.xml"); }
};

constexpr const char* sRoot = R"(<T Name="Map" xmlns:h="urn:halvane:control:2">)";

} // namespace

TEST_F(ExportWithSchema, SaysThatTheDocumentIsValid) {
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (3 items), valid against \"towns.xsd\"\n");
    EXPECT_EQ(document("out.xml"), sTownsDocument);
}

TEST_F(ExportWithSchema, TellsTheLineAndTheControlNodeAndLeavesTheDocument) {
    program.write("towns.xsd", townsSchema("Capital"));
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sErr,
              program.file("out.xml") +
                  ":10: error: Element 'Name': [facet 'pattern'] The value 'Corinth' is not accepted by the "
                  "pattern '[A-B].*'; written by \"Name\" of control.xml:4\n"
                  "halvane: the document is written, but not valid against \"towns.xsd\": 1 error\n");
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (3 items)\n");
    EXPECT_EQ(document("out.xml"), sTownsDocument);
}

TEST_F(ExportWithSchema, ChecksWhatGoesToStandardOutput) {
    program.write("towns.xsd", townsSchema("Capital"));
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "-"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sOut, sTownsDocument);
    EXPECT_THAT(result.sErr, HasSubstr("standard output:10: error: Element 'Name'"));
    EXPECT_EQ(exportTowns({"--schema", "towns.xsd", "control.xml", "-"}).lExitCode, 3);
}

TEST_F(ExportWithSchema, CountsErrorsOfOneNodeThatAreAlike) {
    program.write("towns.xsd",
                  R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"><xs:element name="Map">
<xs:complexType><xs:sequence><xs:element name="Towns"><xs:complexType><xs:sequence>
<xs:element name="Town" maxOccurs="unbounded"/></xs:sequence><xs:attribute name="n" use="required"/>
</xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element></xs:schema>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="Name" IdentityValue="NAME"/>
    </E>
  </L>
  <B Name="More"/>
  <B Name="More"/>
</T>)");
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_THAT(result.sErr,
                HasSubstr(":2: error: Element 'Towns': The attribute 'n' is required but missing; "
                          "written by \"Towns\" of control.xml:2\n"));
    EXPECT_THAT(result.sErr, HasSubstr("Element 'More': This element is not expected; written by \"More\" of "
                                       "control.xml:7\n"));
}

TEST_F(ExportWithSchema, ListsFewErrorsAndCountsTheOthers) {
    std::string sNodes;
    for (int n = 0; n < 60; ++n)
        sNodes += "<N Name=\"N" + std::to_string(n) + "\"/>\n";
    std::vector<std::pair<std::string, std::string>> children;
    for (int n = 0; n < 60; ++n)
        children.emplace_back("N" + std::to_string(n), "xs:integer");
    const std::string sErr = errorsOf("<T Name=\"Map\">\n" + sNodes + "</T>", schemaOf(children));
    EXPECT_THAT(sErr,
                HasSubstr("\"N49\" of own.xml:51\n" + out() + ": 10 errors more; --report lists them\n"));
    EXPECT_EQ(sErr.find("\"N50\""), std::string::npos);
    EXPECT_THAT(sErr, HasSubstr("not valid against \"own.xsd\": 60 errors\n"));
}

TEST_F(ExportWithSchema, KeepsNoMoreThanAFewValuesOfANode) {
    std::string sRows = "NAME,A\n";
    for (int n = 0; n < 100; ++n)
        sRows += "n" + std::to_string(n) + ",x\n";
    program.write("rows.csv", sRows);
    program.write("rows.xml", R"(<T Name="Map"><G Name="G" DataSource="Table" Identity="TableName"
        IdentityValue="rows"><R Name="R" DataSource="Record" Entries="Multiple"><F Name="N" IdentityValue="NAME"/>
        </R></G></T>)");
    program.write("rows.xsd",
                  R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"><xs:element name="Map">
<xs:complexType><xs:sequence><xs:element name="G"><xs:complexType><xs:sequence><xs:element name="R"
maxOccurs="unbounded"><xs:complexType><xs:sequence><xs:element name="N" type="xs:integer"/></xs:sequence>
</xs:complexType></xs:element></xs:sequence></xs:complexType></xs:element></xs:sequence></xs:complexType>
</xs:element></xs:schema>)");
    const auto result = program.run(
        {"export", "--map", "rows.csv", "--schema", "rows.xsd", "--report", "r.json", "rows.xml", "out.xml"});
    EXPECT_THAT(result.sErr,
                HasSubstr("further errors that differ; written by \"N\" of rows.xml:2 (90 times)"));
    const auto report = nlohmann::json::parse(program.read("r.json").value_or(""));
    EXPECT_EQ(report.at("schemaErrors").size(), 11U);
}

TEST_F(ExportWithSchema, TellsTheNodeOfAnAttribute) {
    const std::string sErr = errorsOf(
        std::string(sRoot) + "\n<A Name=\"n\" Target=\"Attribute\" h:Text=\"x\"/></T>",
        R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"><xs:element name="Map"><xs:complexType>
<xs:attribute name="n" type="xs:integer"/></xs:complexType></xs:element></xs:schema>)");
    EXPECT_THAT(sErr, HasSubstr("written by \"n\" of own.xml:2\n"));
}

TEST_F(ExportWithSchema, TellsNodesOfOneNameApartByTheirOrder) {
    const std::string sErr = errorsOf(std::string(sRoot) + R"(
<A Name="A" h:Text="1"/>
<A Name="A" h:Text="x"/>
<A Name="A" h:Text="3"/></T>)",
                                      schemaOf({{"A", "xs:integer"}}));
    EXPECT_THAT(sErr,
                HasSubstr("'x' is not a valid value of the atomic type 'xs:integer'; written by \"A\" of "
                          "own.xml:3\n"));
}

TEST_F(ExportWithSchema, TellsAllNodesThatMayHaveWrittenAnElement) {
    const std::string sErr = errorsOf(std::string(sRoot) + R"(
<A Name="A" h:When="1 = 2" h:Text="1"/>
<A Name="A" h:Text="x"/></T>)",
                                      schemaOf({{"A", "xs:integer"}}));
    EXPECT_THAT(sErr, HasSubstr("written by \"A\" of own.xml:2 or line 3\n"));
}

TEST_F(ExportWithSchema, SeesThroughNodesThatWriteNoElement) {
    const std::string sErr = errorsOf(std::string(sRoot) + R"(
<G h:Omit="Self"><G h:Omit="Self">
<A Name="A" h:Text="x"/></G></G></T>)",
                                      schemaOf({{"A", "xs:integer"}}));
    EXPECT_THAT(sErr, HasSubstr("written by \"A\" of own.xml:3\n"));
}

TEST_F(ExportWithSchema, TellsTheNodeWithoutAnElementWhoseTextIsXml) {
    EXPECT_EQ(errorsOf(std::string(sRoot) + R"(
<A Name="A"/>
<B Name="b" h:Omit="Self" h:As="xml" h:Text="&lt;N>x&lt;/N>"/></T>)",
                       schemaOf({{"A", "xs:string"}, {"N", "xs:integer"}})),
              out() + ":3: error: Element 'N': 'x' is not a valid value of the atomic type 'xs:integer'; "
                      "written by \"b\" of own.xml:3\n"
                      "halvane: the document is written, but not valid against \"own.xsd\": 1 error\n");
}

TEST_F(ExportWithSchema, LeavesNamespacesOutWhereAllNamesAreOfOne) {
    const std::string sErr = errorsOf(
        R"(<T Name="Map" xmlns="urn:a" xmlns:h="urn:halvane:control:2"><A Name="B" h:Text="x"/></T>)",
        R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:a"
elementFormDefault="qualified"><xs:element name="Map"><xs:complexType><xs:sequence><xs:element name="A"/>
</xs:sequence></xs:complexType></xs:element></xs:schema>)");
    EXPECT_THAT(sErr, HasSubstr("Element 'B': This element is not expected. Expected is ( A );"));
}

TEST_F(ExportWithSchema, ShowsNamespacesWhereTheyDiffer) {
    const std::string sErr = errorsOf(
        R"(<T Name="Map"><A Name="B"/></T>)",
        R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:a"><xs:element name="Map"/>
</xs:schema>)");
    EXPECT_THAT(sErr, HasSubstr("Element 'Map': No matching global declaration"));
}

TEST_F(ExportWithSchema, TellsBothThatNodesFailedAndThatTheDocumentIsNotValid) {
    program.write("towns.xsd", townsSchema("Capital"));
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <X Name="Name" DataSource="External" IdentityValue="No.Such"/></E></L></T>)");
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr, HasSubstr("halvane: 1 control node failed; the document is incomplete\n"));
    EXPECT_THAT(result.sErr, HasSubstr("not valid against \"towns.xsd\""));
}

TEST_F(ExportWithSchema, ReportsWhatItFound) {
    program.write("towns.xsd", townsSchema("Capital"));
    EXPECT_EQ(
        exportTowns({"--schema", "towns.xsd", "--report", "r.json", "control.xml", "out.xml"}).lExitCode, 3);
    const auto report = nlohmann::json::parse(program.read("r.json").value_or(""));
    EXPECT_EQ(report.at("outcome"), "incomplete");
    EXPECT_EQ(report.at("schema"), program.file("towns.xsd"));
    EXPECT_EQ(report.at("schemaErrors"),
              nlohmann::json::parse(R"([{"documentLine": 10, "line": 4, "element": "F", "name": "Name",
"otherLines": [], "message": "Element 'Name': [facet 'pattern'] The value 'Corinth' is not accepted by the pattern '[A-B].*'",
"count": 1}])"));
}

// ---- Which files are opened

TEST_F(ExportWithSchema, HeedsNoLocationThatTheDocumentNames) {
    const std::string sRootWithLocation =
        R"(<T Name="Map" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:h="urn:halvane:control:2">
<A Name="xsi:noNamespaceSchemaLocation" Target="Attribute" h:Text="bait/other.xsd"/>
<A Name="xsi:schemaLocation" Target="Attribute" h:Text="urn:b bait/other.xsd"/>
<B Name="A" h:Text="x"/></T>)";
    std::filesystem::create_directory(program.file("bait"));
    program.write("bait/other.xsd", schemaOf({{"A", "xs:string"}}));
    const OpenCounter counter(program.file("bait"));
    ASSERT_TRUE(counter.works());
    const std::string sErr = errorsOf(sRootWithLocation, schemaOf({{"A", "xs:integer"}}));
    EXPECT_THAT(sErr, HasSubstr("'x' is not a valid value"));
    EXPECT_THAT(program.read("own.out.xml").value_or(""), HasSubstr("bait/other.xsd"));
    EXPECT_EQ(counter.opens(), 0);
}

TEST_F(ExportWithSchema, FollowsImportsAndIncludesToLocalFiles) {
    std::filesystem::create_directories(program.file("parts/deep"));
    program.write("towns.xsd", townsSchema("Short", R"(<xs:include schemaLocation="parts/a%20b.xsd"/>
<xs:import namespace="urn:c" schemaLocation="parts/c.xsd"/>)"));
    program.write("parts/a b.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:include schemaLocation="../parts/deep/short.xsd"/></xs:schema>)");
    program.write("parts/deep/short.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:include schemaLocation="../a%20b.xsd"/><xs:simpleType name="Short"><xs:restriction base="xs:string">
<xs:maxLength value="6"/></xs:restriction></xs:simpleType></xs:schema>)");
    program.write("parts/c.xsd",
                  R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:c"/>)");
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr, HasSubstr("[facet 'maxLength'] The value has a length of '7'"));
    EXPECT_THAT(result.sErr, HasSubstr("1 error\n"));
}

TEST_F(ExportWithSchema, NamesTheAddressThatIsNoLocalFile) {
    program.write("part.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">

<xs:import namespace="urn:c" schemaLocation="http://127.0.0.1:9/c.xsd"/></xs:schema>)");
    program.write("towns.xsd", townsSchema("xs:string", R"(<xs:include schemaLocation="part.xsd"/>)"));
    expectSchemaRefused(
        "halvane: --schema: " + program.file("part.xsd") +
        ":3: \"http://127.0.0.1:9/c.xsd\" is no local file, and nothing else is opened; map it "
        "to one with --schema-catalog\n");
}

TEST_F(ExportWithSchema, RefusesAddressesOfOtherKinds) {
    for (const char* sAddress : {"ftp://a/c.xsd", "https://a/c.xsd", "file://host/c.xsd", "//host/c.xsd",
                                 "urn:c", "jar:file:/c.jar!/c.xsd"}) {
        program.write("towns.xsd",
                      townsSchema("xs:string", "<xs:import namespace=\"urn:c\" schemaLocation=\"" +
                                                   std::string(sAddress) + "\"/>"));
        expectSchemaRefused("halvane: --schema: towns.xsd:1: \"" + std::string(sAddress) +
                            "\" is no local file, and nothing else is opened; map it to one with "
                            "--schema-catalog\n");
    }
}

TEST_F(ExportWithSchema, FindsFilesOfAddressesByTheCatalogue) {
    std::filesystem::create_directories(program.file("local/gml"));
    program.write(
        "towns.xsd",
        townsSchema("xs:string", R"(<xs:import namespace="urn:a" schemaLocation="http://a.example/a.xsd"/>
<xs:import namespace="urn:b" schemaLocation="http://b.example/gml/b.xsd"/>
<xs:import namespace="urn:c" schemaLocation="https://c.example/x/c.xsd"/>)"));
    const auto part = [](const char* sNamespace, const char* sMore = "") {
        return std::string(R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace=")") +
               sNamespace + "\">" + sMore + "</xs:schema>";
    };
    program.write("local/a.xsd", part("urn:a"));
    // Its own relative include is beside it.
    program.write("local/gml/b.xsd", part("urn:b", R"(<xs:include schemaLocation="b2.xsd"/>)"));
    program.write("local/gml/b2.xsd", part("urn:b"));
    program.write("local/c.xsd", part("urn:c"));
    program.write("catalog.xml", R"(<?xml version="1.0"?>
<!DOCTYPE catalog PUBLIC "-//OASIS//DTD Entity Resolution XML Catalog V1.0//EN" "http://127.0.0.1:9/catalog.dtd">
<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog">
<group xml:base="local/"><system systemId="http://a.example/a.xsd" uri="a.xsd"/></group>
<rewriteURI uriStartString="http://b.example/" rewritePrefix="local/"/>
<nextCatalog catalog="next.xml"/></catalog>)");
    program.write("next.xml", R"(<c:catalog xmlns:c="urn:oasis:names:tc:entity:xmlns:xml:catalog">
<c:uriSuffix uriSuffix="/c.xsd" uri="local/c.xsd"/><c:nextCatalog catalog="catalog.xml"/></c:catalog>)");
    const auto result =
        exportTowns({"--schema", "towns.xsd", "--schema-catalog", "catalog.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    // Neither is the schema's own address a file.
    program.write("next.xml", R"(<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog">
<uri name="http://d.example/towns.xsd" uri="towns.xsd"/><uriSuffix uriSuffix="/c.xsd" uri="local/c.xsd"/></catalog>)");
    EXPECT_EQ(exportTowns({"--schema", "http://d.example/towns.xsd", "--schema-catalog", "catalog.xml",
                           "control.xml", "out.xml"})
                  .lExitCode,
              0);
}

TEST_F(ExportWithSchema, RefusesACatalogueThatIsNone) {
    expectSchemaRefused("halvane: --schema-catalog: no.xml: there is no such file\n",
                        {"--schema-catalog", "no.xml"});
    expectSchemaRefused(
        "halvane: --schema-catalog: control.xml: this is no XML catalogue; its root is <catalog> "
        "of the namespace urn:oasis:names:tc:entity:xmlns:xml:catalog\n",
        {"--schema-catalog", "control.xml"});
    program.write("catalog.xml", R"(<catalog xmlns="urn:oasis:names:tc:entity:xmlns:xml:catalog">
<uri name="a" uri="http://127.0.0.1:9/a"/></catalog>)");
    expectSchemaRefused("halvane: --schema-catalog: " + program.file("catalog.xml") +
                            ":2: <uri> leads to \"http://127.0.0.1:9/a\", which is no local file\n",
                        {"--schema-catalog", "catalog.xml"});
}

TEST_F(ExportWithSchema, NeedsASchemaForACatalogue) {
    expectRefused({"--schema-catalog", "c.xml", "control.xml", "out.xml"},
                  "halvane: --schema-catalog needs --schema: the schema whose addresses it maps\n");
}

TEST_F(ExportWithSchema, RefusesASchemaThatCannotBeRead) {
    expectRefused({"--schema", "no.xsd", "control.xml", "out.xml"},
                  "halvane: --schema: no.xsd: there is no such file\n");
    expectRefused({"--schema", ".", "control.xml", "out.xml"}, "halvane: --schema: .: this is no file\n");
    expectRefused({"--schema", "http://127.0.0.1:9/a.xsd", "control.xml", "out.xml"},
                  "halvane: --schema: http://127.0.0.1:9/a.xsd: this is no local file, and nothing else is "
                  "opened; map it to one with --schema-catalog\n");
    program.write("towns.xsd", townsSchema("xs:string", R"(<xs:include schemaLocation="no.xsd"/>)"));
    expectSchemaRefused("halvane: --schema: towns.xsd:1: there is no file \"" + program.file("no.xsd") +
                        "\"\n");
}

TEST_F(ExportWithSchema, RefusesWhatIsNoSchema) {
    expectRefused(
        {"--schema", "control.xml", "control.xml", "out.xml"},
        "halvane: --schema: control.xml: this is no XML Schema; its root is <schema> of the namespace "
        "http://www.w3.org/2001/XMLSchema\n");
    program.write("towns.xsd", townsSchema("NoSuchType"));
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_THAT(result.sErr, HasSubstr("halvane: --schema: " + program.file("towns.xsd") + ":5: "));
    EXPECT_THAT(result.sErr, HasSubstr("NoSuchType"));
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
}

TEST_F(ExportWithSchema, OpensNoEntitiesOfASchema) {
    std::filesystem::create_directory(program.file("bait"));
    program.write("bait/entity.txt", "secret");
    program.write("towns.xsd", "<!DOCTYPE xs:schema [<!ENTITY e SYSTEM \"bait/entity.txt\">]>" +
                                   townsSchema("xs:string", "<xs:annotation><xs:documentation>&e;"
                                                            "</xs:documentation></xs:annotation>"));
    const OpenCounter counter(program.file("bait"));
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_THAT(result.sErr, HasSubstr("halvane: --schema: towns.xsd:1:"));
    EXPECT_EQ(counter.opens(), 0);
}

TEST_F(ExportWithSchema, ReplacesNoPartOfTheSchema) {
    program.write("part.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"/>)");
    program.write("towns.xsd", townsSchema("xs:string", R"(<xs:include schemaLocation="part.xsd"/>)"));
    const std::string sPart = program.read("part.xsd").value_or("");
    for (const auto& [sName, sWhat] :
         {std::pair{"towns.xsd", "the schema"}, std::pair{"part.xsd", "a part of the schema"}}) {
        const auto result = exportTowns({"--exact-name", "--schema", "towns.xsd", "control.xml", sName});
        EXPECT_EQ(result.lExitCode, 2);
        EXPECT_THAT(result.sErr, HasSubstr("OUTPUT: \"" + program.file(sName) + "\" is " + sWhat +
                                           "; give another name\n"));
    }
    EXPECT_EQ(program.read("part.xsd"), sPart);
}

TEST_F(ExportWithSchema, ChecksKeysAndReferences) {
    const std::string sErr = errorsOf(std::string(sRoot) + R"(
<A Name="A" h:Text="1"/>
<A Name="A" h:Text="1"/></T>)",
                                      R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:element name="Map"><xs:complexType><xs:sequence><xs:element name="A" type="xs:string" maxOccurs="2"/></xs:sequence>
</xs:complexType><xs:key name="k"><xs:selector xpath="A"/><xs:field xpath="."/></xs:key></xs:element></xs:schema>)");
    EXPECT_THAT(sErr, HasSubstr("Duplicate key-sequence ['1']"));
}

TEST_F(ExportWithSchema, IsNotAskedForWhereNothingIsWritten) {
    program.write("control.xml", R"(<T Name="Map"/>)");
    const auto result = exportTowns({"--schema", "towns.xsd", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_EQ(result.sErr.find("valid"), std::string::npos);
}

} // namespace halvane::test
