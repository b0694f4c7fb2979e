// What a control file says in vain is told before the export, at its own line.

#include "cli/Samples.h"
#include "telling/ControlFileLint.h"
#include "xml/dom/Dom.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <utility>

namespace halvane::test {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

/// The findings as lines of "c.xml".
std::vector<std::string> findings(const std::string& sControl) {
    const auto oDocument = dom::Document::create();
    EXPECT_TRUE(oDocument->loadXML(sControl)) << oDocument->parseError().reason;
    std::vector<std::string> lines;
    for (const auto& finding : lintControlFile(oDocument->documentElement()))
        lines.push_back(listed(finding, "c.xml"));
    return lines;
}

/// Below a root, on the second line.
std::vector<std::string> findingsBelow(const std::string& sNodes) {
    return findings("<T Name=\"T\">\n" + sNodes + "\n</T>");
}

class Lint : public ExportFixture {};

} // namespace

TEST(ControlFileLint, TellsAttributesThatAreNotRead) {
    EXPECT_THAT(
        findingsBelow(R"(<A Name="a b" entries="Multiple" DecimalPlaces="2" Colour="red"/>)"),
        ElementsAre("c.xml:2: note: \"ab\": the attribute entries is not read; write Entries",
                    "c.xml:2: note: \"ab\": the attribute DecimalPlaces is not read; write DecimalPlace",
                    "c.xml:2: note: \"ab\": the attribute Colour is not read; remove it"));
}

TEST(ControlFileLint, LeavesAttributesOfNamespacesToOthers) {
    EXPECT_THAT(
        findings(R"(<T Name="T" xmlns="u:t" xmlns:e="u:e"><A Name="a" e:entries="x" xml:lang="de"/></T>)"),
        IsEmpty());
}

TEST(ControlFileLint, TellsKeywordsThatAreNotKnownAtTheNodeThatSaysThem) {
    EXPECT_THAT(
        findingsBelow("<A Name=\"a\" DataSource=\"maplayer\" Identity=\"layername\">\n<B Name=\"b\"/>\n"
                      "<C Name=\"c\" Entries=\"multiple\" Target=\"attribute\"/></A>"),
        ElementsAre("c.xml:2: note: \"a\": Identity=\"layername\" is not known: letter case counts; write "
                    "Identity=\"LayerName\"",
                    "c.xml:2: note: \"a\": DataSource=\"maplayer\" is not known: letter case counts; write "
                    "DataSource=\"MapLayer\"",
                    "c.xml:4: note: \"c\": Entries=\"multiple\" is not known: letter case counts; write "
                    "Entries=\"Multiple\"",
                    "c.xml:4: note: \"c\": Target=\"attribute\" is not known: letter case counts; write "
                    "Target=\"Attribute\""));
    EXPECT_THAT(
        findingsBelow(R"(<A Name="a" Entries="Mutliple"/>)"),
        ElementsAre("c.xml:2: note: \"a\": Entries=\"Mutliple\" is not known; write Entries=\"Multiple\""));
}

TEST(ControlFileLint, LeavesValuesThatSayNothingSpecial) {
    EXPECT_THAT(findingsBelow(R"(<A Name="a" DataSource="RasterLayers"/>)"), IsEmpty())
        << "the export tells of kinds that there are not";
    EXPECT_THAT(findingsBelow(R"(<A Name="a" Entries="Single" Target=" " DataSource="subtypefieldinfo"/>)"),
                IsEmpty());
}

TEST(ControlFileLint, TellsDecimalPlacesThatAreNoNumber) {
    EXPECT_THAT(
        findingsBelow("<A Name=\"a\" DecimalPlace=\"two\">\n<B Name=\"b\"/></A>"),
        ElementsAre("c.xml:2: note: \"a\": DecimalPlace=\"two\" is no number, so values have up to 15 "
                    "decimals; write a whole number"));
    EXPECT_THAT(findingsBelow(R"(<A Name="a" DecimalPlace="-1"><B Name="b" DecimalPlace=" "/></A>)"),
                IsEmpty());
}

TEST(ControlFileLint, TellsRelatedTablesWithoutALinkField) {
    const std::string sNote =
        "note: \"r\": without LinkField no row is related to another; name in LinkField the "
        "field that links both tables";
    EXPECT_THAT(findingsBelow("<R Name=\"r\" DataSource=\"RelatedTable\">\n<G Name=\"g\">\n"
                              "<L Name=\"l\" DataSource=\"RelatedRecord\"/></G></R>"),
                ElementsAre("c.xml:2: " + sNote));
    EXPECT_THAT(findingsBelow("<R Name=\"r\" DataSource=\"RelatedTable\"/>"),
                ElementsAre("c.xml:2: " + sNote));
    EXPECT_THAT(findings("<T Name=\"T\" LinkField=\"ID\">\n<R Name=\"r\" DataSource=\"RelatedTable\"/></T>"),
                ElementsAre("c.xml:2: " + sNote))
        << "the root hands none down";
}

TEST(ControlFileLint, FindsALinkFieldWhereverItIsGiven) {
    EXPECT_THAT(findingsBelow(R"(<G Name="g" LinkField="ID"><R Name="r" DataSource="RelatedTable"/></G>)"),
                IsEmpty());
    EXPECT_THAT(findingsBelow(R"(<R Name="r" DataSource="RelatedTable">
                                   <L Name="l" DataSource="RelatedRecord" LinkField="ID"/></R>)"),
                IsEmpty());
    EXPECT_THAT(
        findingsBelow(R"(<R Name="r" DataSource="RelatedTable"><X Name="x" DataSource="External"/></R>)"),
        IsEmpty())
        << "a processor needs none";
}

TEST(ControlFileLint, WarnsOfARepeatedNodeThatTargetsAnAttribute) {
    EXPECT_THAT(
        findingsBelow(R"(<A Name="a" DataSource="Record" Entries="Multiple" Target="Attribute"/>)"),
        ElementsAre("c.xml:2: warning: \"a\": a repeated node writes elements: at most its first item "
                    "becomes the attribute; remove Target, or repeat a node around it"));
}

TEST(ControlFileLint, TellsRepeatsThatARepeatedTableDoesNotHeed) {
    const std::string sNote =
        "note: \"f\": directly inside a repeated Table or Record node its Entries is not heeded; remove "
        "Entries, or put a group around the node";
    const auto inside = [](const std::string& sAttributes, const std::string& sNodes) {
        return "<R Name=\"r\" " + sAttributes + ">\n" + sNodes + "</R>";
    };
    const std::string sLayer =
        R"(<F Name="f" DataSource="Geometry.Length" Entries="Multiple"><N Name="n"/></F>)";
    EXPECT_THAT(findingsBelow(inside(R"(DataSource="Record" Entries="Multiple")", sLayer)),
                ElementsAre("c.xml:3: " + sNote));
    EXPECT_THAT(findingsBelow(R"(<T Name="t" DataSource="Table">)" + inside(R"(Entries="Multiple")", sLayer) +
                              "</T>"),
                ElementsAre("c.xml:3: " + sNote));
    EXPECT_THAT(findingsBelow(inside(R"(DataSource="Feature" Entries="Multiple")", sLayer)), IsEmpty());
    EXPECT_THAT(findingsBelow(inside(R"(DataSource="Record")", sLayer)), IsEmpty());
    EXPECT_THAT(findingsBelow(
                    inside(R"(DataSource="Record" Entries="Multiple")", "<G Name=\"g\">" + sLayer + "</G>")),
                IsEmpty());
}

TEST(ControlFileLint, TellsFieldsWhoseElementsStayEmpty) {
    EXPECT_THAT(findingsBelow("<F Name=\"f\" DataSource=\"Field\" Entries=\"Multiple\">\n"
                              "<N Name=\"n\" DataProperty=\"FieldName\"/></F>"),
                ElementsAre("c.xml:3: note: \"n\": it is written for each field and stays empty: values come "
                            "from nodes inside it; put a node with the DataProperty inside it"));
    EXPECT_THAT(findingsBelow(R"(<F Name="f" DataSource="SubType" Entries="Multiple">
                                   <N Name="n" DataProperty="SubTypeName"/></F>)"),
                IsEmpty());
}

TEST(ControlFileLint, TellsValuesOfRowsWhereNothingGoesOverRows) {
    const auto note = [](const std::string& sSource) {
        return "note: \"n\": a " + sSource +
               " value is read from a row, and no node around it goes over rows; write Entries=\"Multiple\" "
               "where the rows are to be repeated";
    };
    const std::string sValue = R"(<N Name="n" IdentityValue="NAME"/>)";
    for (const std::string sSource : {"Feature", "FeatureTable", "Record", "RelatedRecord"}) {
        const std::string sGroup = "<E Name=\"e\" DataSource=\"" + sSource + "\"";
        EXPECT_THAT(findingsBelow(sGroup + ">\n" + sValue + "</E>"),
                    ElementsAre("c.xml:3: " + note(sSource)));
        EXPECT_THAT(findingsBelow(sGroup + " Entries=\"Multiple\">\n" + sValue + "</E>"), IsEmpty());
    }
    EXPECT_THAT(findingsBelow(R"(<N Name="n" DataSource="Record" IdentityValue="NAME" Entries="Multiple"/>)"),
                IsEmpty());
    EXPECT_THAT(
        findingsBelow(R"(<N Name="n" DataSource="Record" IdentityValue="a" DataProperty="TableName"/>)"),
        IsEmpty());
    EXPECT_THAT(findingsBelow(R"(<N Name="n" DataSource="Record"/>)"), IsEmpty()) << "it asks for nothing";
}

TEST(ControlFileLint, FindsNothingInTheExamplesButWhatOneShowsOnPurpose) {
    int lControlFiles = 0;
    std::vector<std::string> lines;
    for (const auto& entry : std::filesystem::directory_iterator(HALVANE_EXAMPLES)) {
        const auto oDocument = dom::Document::create();
        if (entry.path().extension() != ".xml" || !oDocument->load(entry.path().string()) ||
            !oDocument->documentElement().getAttribute("Name"))
            continue;
        ++lControlFiles;
        for (const auto& finding : lintControlFile(oDocument->documentElement()))
            lines.push_back(listed(finding, entry.path().filename().string()));
    }
    EXPECT_GT(lControlFiles, 20);
    EXPECT_THAT(lines,
                ElementsAre("decimals.xml:11: note: \"Word\": DecimalPlace=\"many\" is no number, so values "
                            "have up to 15 decimals; write a whole number"));
}

TEST_F(Lint, IsToldBeforeTheExportAndLeavesItsOutcome) {
    program.write("control.xml", "<T Name=\"T\">\n<A Name=\"a\" entries=\"x\"/>\n"
                                 "<X Name=\"x\" DataSource=\"External\" IdentityValue=\"No.Such\"/></T>");
    const auto failed = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(failed.lExitCode, 3);
    EXPECT_THAT(failed.sErr,
                ::testing::StartsWith("control.xml:2: note: \"a\": the attribute entries is not read; "
                                      "write Entries\ncontrol.xml:3: error: "));
    program.write("control.xml", "<T Name=\"T\">\n<A Name=\"a\" entries=\"x\"/></T>");
    const auto written = program.run({"export", "--report", "r.json", "control.xml", "out.xml"});
    EXPECT_EQ(written.lExitCode, 0);
    EXPECT_EQ(written.sErr, "control.xml:2: note: \"a\": the attribute entries is not read; write Entries\n");
    EXPECT_THAT(program.read("r.json").value_or(""), HasSubstr("\"kind\": \"UnknownAttribute\""));
    const auto quiet = program.run({"export", "--quiet", "control.xml", "out.xml"});
    EXPECT_EQ(quiet.sErr, "");
}

TEST_F(Lint, TellsAKindInTheWrongLetterCaseOnce) {
    program.write("control.xml",
                  "<T Name=\"T\">\n<A Name=\"a\" DataSource=\"workspace\">\n<B Name=\"b\"/></A></T>");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.sErr,
              "control.xml:2: note: \"a\": DataSource=\"workspace\" is not known: letter case counts; "
              "write DataSource=\"Workspace\"\n");
}

TEST_F(Lint, CutsLongLists) {
    std::string sControl = "<T Name=\"T\">\n";
    for (int i = 0; i < 52; ++i)
        sControl += "<A Name=\"a\" entries=\"x\"/>\n";
    program.write("control.xml", sControl + "</T>");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(std::count(result.sErr.begin(), result.sErr.end(), '\n'), 51);
    EXPECT_THAT(result.sErr,
                ::testing::EndsWith("control.xml: 2 notes more about the file itself; --report lists all\n"));
}

// ---- What only the export knows

TEST_F(Lint, NamesTheLayerWhoseFieldsAreListedBelowATable) {
    program.write("rivers.csv", sRivers);
    program.write("control.xml", R"(<T Name="T">
<L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns"/>
<R Name="R" DataSource="Table" Identity="TableName" IdentityValue="rivers">
<F Name="F" DataSource="Field" Entries="Multiple"><E Name="E"><N Name="N" DataProperty="FieldName"/></E></F>
</R></T>)");
    program.write("map.xml", R"(<MapDocument><Map name="M"><FeatureLayer name="towns" source="towns.geojson"/>
<Table source="rivers.csv"/></Map></MapDocument>)");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "control.xml:4: note: \"F\": it lists the fields of the layer \"towns\", which is still "
              "current: only the fields of layers are listed; move the node into the layer that it "
              "is about\n");
    EXPECT_THAT(document("out.xml"), HasSubstr("<N>POP</N>"));
}

TEST_F(Lint, TellsRepeatedNodesWithoutALayerOrTableAtTheirOwnLine) {
    const std::string sNoLayer =
        "no layer is current, so no value was written; put the node inside one that finds "
        "a layer\n";
    const std::string sNoTable =
        "no table is current, so no value was written; put the node inside one that finds "
        "a table\n";
    program.write("control.xml", R"(<T Name="T">
<F Name="F" DataSource="Field" Entries="Multiple"><E Name="E"><N Name="N" DataProperty="FieldName"/></E></F>
<G Name="G" DataSource="Geometry.Length" Entries="Multiple"><N Name="N" DataProperty="Geometry.Length"/></G>
<R Name="R" DataSource="Record" Entries="Multiple"><N Name="N" IdentityValue="NAME"/></R>
<S Name="S" DataSource="Record" Entries="Multiple" IdentityValue="NAME"/>
</T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "control.xml:2: note: \"F\": " + sNoLayer + "control.xml:3: note: \"G\": " + sNoLayer +
                  "control.xml:4: note: \"R\": " + sNoTable + "control.xml:5: note: \"S\": " + sNoTable);
}

} // namespace halvane::test
