// A control file is checked without an export, and each finding leads to its place.

#include "cli/Samples.h"
#include "cli/SchemaCheck.h"
#include "telling/check/CheckRules.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace halvane::test {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Check : public ExportFixture {
protected:
    /// Checks the control file over the towns and expects these findings, and this exit code.
    void expectFindings(const std::string& sControl, const std::string& sOut, int lExitCode) const {
        program.write("control.xml", sControl);
        const auto result = program.run({"check", "--quiet", "--map", "towns.geojson", "control.xml"});
        EXPECT_EQ(result.sOut, sOut) << sControl;
        EXPECT_EQ(result.sErr, "");
        EXPECT_EQ(result.lExitCode, lExitCode);
    }
    [[nodiscard]] json inJson(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"check", "--json"});
        const auto result = program.run(arguments);
        const auto value = json::parse(result.sOut);
        EXPECT_THAT(breaches(schema(), value), IsEmpty());
        EXPECT_EQ(value["exitCode"], result.lExitCode);
        return value;
    }

private:
    static json schema() { return json::parse(std::ifstream(HALVANE_SOURCE_DIR "/docs/check.schema.json")); }
};

constexpr const char* sSlips = R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="Town">
    <C Name="Count" DataProperty="FeatureCount"/>
  </L>
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName"
     IdentityValue="towns">
    <E Name="Town" DataSource="Feature" entries="x"
       Entries="Multiple"><F Name="Name" IdentityValue="NAMES"/></E>
  </L>
</T>)";

constexpr const char* sOfSlips =
    R"(control.xml:2:62: warning: "Towns": no MapLayer with LayerName "Town" was found; did you mean "towns"? (so too 1 node inside it) [resolved-to-nothing]
control.xml:7:41: warning: "Town": the attribute entries is not read; write Entries [unknown-attribute]
control.xml:8:42: warning: "Name": there is no field "NAMES", so its value is empty; did you mean "NAME"? The row has the fields "OID", "NAME" and "POP" (3 times) [field-not-found]
)";

} // namespace

TEST_F(Check, TellsNothingOfAControlFileThatIsRight) {
    const auto before = program.names();
    const auto result = program.run({"check", "--map", "towns.geojson", "control.xml"});
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: control.xml: nothing is wrong\n");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(program.names(), before);
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
}

TEST_F(Check, LeadsToTheAttributeThatIsWrong) {
    expectFindings(sSlips, sOfSlips, 1);
}

TEST_F(Check, CountsWhatItFound) {
    program.write("control.xml", sSlips);
    const auto result = program.run({"check", "--map", "towns.geojson", "control.xml"});
    EXPECT_EQ(result.sOut, sOfSlips);
    EXPECT_EQ(result.sErr, "halvane: control.xml: 3 warnings\n");
}

TEST_F(Check, TellsWhatTheControlFileShowsWithoutAMap) {
    program.write("control.xml", sSlips);
    const auto result = program.run({"check", "control.xml"});
    EXPECT_EQ(result.sOut, "control.xml:7:41: warning: \"Town\": the attribute entries is not read; write "
                           "Entries [unknown-attribute]\n");
    EXPECT_EQ(result.sErr, "halvane: control.xml: 1 warning; what it asks of a map was not checked: give a "
                           "map with --map\n");
    EXPECT_EQ(result.lExitCode, 1);
}

TEST_F(Check, NeedsNoMapWhereTheControlFileNamesItsData) {
    program.write("control.xml", R"(<T Name="T"><L Name="L" DataSource="FeatureLayer" Identity="LayerName"
  IdentityValue="twons" DataLocation="."/></T>)");
    const auto result = program.run({"check", "control.xml"});
    EXPECT_THAT(result.sOut, ::testing::StartsWith("control.xml:1:13: error: \"L\": "));
    EXPECT_THAT(result.sOut,
                HasSubstr("has no dataset \"twons\"; did you mean \"towns\"? (error 1004) [node-failed]\n"));
    EXPECT_EQ(result.lExitCode, 1);
}

TEST_F(Check, FindsAllThatMakesAControlFileUnfit) {
    expectFindings(
        "<T Name=\"T\">\n<A/>\n  <B Name=\"1\"/>words\n<C Name=\"p:c\" Target=\"attribute\"/></T>",
        "control.xml:2:1: error: <A> has no Name; add Name=\"…\", the name of what it writes "
        "[missing-name]\n"
        "control.xml:3:6: error: \"1\": Name=\"1\" of <B> is no name that XML allows; begin with a "
        "letter, go on with letters, digits, \"-\", \"_\" and \".\" [invalid-name]\n"
        "control.xml:3: error: text among the control elements (\"words\"); remove it, or make it "
        "a comment [text-among-elements]\n"
        "control.xml:4:4: error: \"p:c\": Name=\"p:c\" of <C>: nothing declares the prefix \"p\"; leave it "
        "out, or "
        "give this element or one around it a node Name=\"xmlns:p\" Target=\"Attribute\" whose value is the "
        "namespace [undeclared-prefix]\n"
        "control.xml:4:15: warning: \"p:c\": Target=\"attribute\" is not known: letter case counts; write "
        "Target=\"Attribute\" [unknown-value]\n",
        1);
}

TEST_F(Check, TellsWhereAControlFileIsNotWellFormed) {
    program.write("control.xml", "<T Name=\"T\">\n<A Name=\"a\"></T>");
    const auto result = program.run({"check", "control.xml"});
    EXPECT_THAT(result.sOut,
                ::testing::MatchesRegex("control.xml:2:[0-9]+: error: .*\\[not-well-formed\\]\n"));
    EXPECT_EQ(result.lExitCode, 1);
}

TEST_F(Check, CannotReadWhatIsNotThere) {
    const auto control = program.run({"check", "none.xml"});
    EXPECT_EQ(control.sErr, "halvane: none.xml: there is no such file\n");
    EXPECT_EQ(control.lExitCode, 2);
    const auto map = program.run({"check", "--map", "none.gpkg", "control.xml"});
    EXPECT_THAT(map.sErr, ::testing::StartsWith("halvane: --map: "));
    EXPECT_EQ(map.lExitCode, 2);
    const auto both = program.run({"check", "--json", "--sarif", "control.xml"});
    EXPECT_THAT(both.sErr, HasSubstr("excludes"));
    EXPECT_EQ(both.lExitCode, 2);
}

TEST_F(Check, ReadsStandardInput) {
    RunSettings settings;
    settings.sInput = "<T Name=\"T\">\n<A Name=\"a\" entries=\"x\"/></T>";
    const auto result = program.run({"check", "-"}, settings);
    EXPECT_EQ(result.sOut,
              "standard input:2: warning: \"a\": the attribute entries is not read; write Entries "
              "[unknown-attribute]\n");
}

TEST_F(Check, TellsOfPartsAtTheirOwnLines) {
    program.write("part.xml", "<P Name=\"p\">\n  <A Name=\"a\" entries=\"x\"/></P>");
    program.write("control.xml",
                  "<T xmlns:h=\"urn:halvane:control:2\" Name=\"T\">\n<I h:Include=\"part.xml\"/>"
                  "<I h:Include=\"part.xml\"/></T>");
    const auto result = program.run({"check", "--quiet", "control.xml"});
    const std::string sLine =
        "part.xml:2:15: warning: \"a\": the attribute entries is not read; write Entries "
        "[unknown-attribute]\n";
    EXPECT_EQ(result.sOut, sLine + sLine);
}

TEST_F(Check, CountsColumnsInCharacters) {
    program.write("control.xml", "<T Name=\"T\"><A Name=\"größe\" entries=\"x\"/></T>");
    const auto result = program.run({"check", "--quiet", "control.xml"});
    EXPECT_THAT(result.sOut, ::testing::StartsWith("control.xml:1:29: warning: "));
    program.write("control.xml",
                  "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><T Name=\"T\"><A Name=\"gr\xF6\" "
                  "entries=\"x\"/></T>");
    const auto inLatin = program.run({"check", "--quiet", "control.xml"});
    EXPECT_THAT(inLatin.sOut, ::testing::StartsWith("control.xml:1: warning: "));
}

TEST_F(Check, TellsOfAllFieldsThatRowsLackAndOfTheRestAsWell) {
    expectFindings(
        "<T xmlns:h=\"urn:halvane:control:2\" Name=\"T\">\n"
        "<L DataSource=\"MapLayer\" Identity=\"LayerName\" IdentityValue=\"towns\" h:Omit=\"Self\">\n"
        "<E Name=\"e\" DataSource=\"Feature\" Entries=\"Multiple\">\n"
        "<A Name=\"a\" h:Text=\"{NAMES}\"/>\n<B Name=\"b\" IdentityValue=\"POPS\"/></E></L></T>",
        "control.xml:4:1: error: \"a\": the rows have no field \"NAMES\"; did you mean \"NAME\"? "
        "[rows-lack-field]\n"
        "control.xml:5:13: warning: \"b\": there is no field \"POPS\", so its value is empty; did "
        "you mean \"POP\"? The row has the fields \"OID\", \"NAME\" and \"POP\" (3 times) "
        "[field-not-found]\n",
        1);
}

TEST_F(Check, TellsOfANodeThatFailsInManyWaysOnce) {
    program.write("people.csv", "NAME,MAYOR\nAbdera,Eve\n");
    program.write("map.xml", R"(<MapDocument><Map name="M"><FeatureLayer source="towns.geojson"/>
        <Table source="people.csv"/></Map></MapDocument>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <R Name="People" DataSource="RelatedTable" Identity="LayerName" IdentityValue="people" LinkField="POP">
        <P Name="Mayor" DataSource="RelatedRecord" IdentityValue="MAYOR"/></R></E></L></T>)");
    const auto result = program.run({"check", "--quiet", "--map", "map.xml", "control.xml"});
    EXPECT_EQ(result.lExitCode, 1);
    EXPECT_EQ(std::ranges::count(result.sOut, '\n'), 1) << result.sOut;
    EXPECT_THAT(result.sOut, ::testing::StartsWith("control.xml:5"));
    EXPECT_THAT(result.sOut, HasSubstr("(2 times more with other messages) [node-failed]\n"));
}

TEST_F(Check, GivesItsFindingsToProgramsAsJson) {
    program.write("control.xml", sSlips);
    const auto value = inJson({"--map", "towns.geojson", "control.xml"});
    EXPECT_EQ(value["control"], program.file("control.xml"));
    EXPECT_EQ(value["map"], program.file("towns.geojson"));
    ASSERT_EQ(value["findings"].size(), 3U);
    EXPECT_EQ(value["findings"][1], (json{{"file", "control.xml"},
                                          {"line", 7},
                                          {"column", 41},
                                          {"severity", "warning"},
                                          {"rule", "unknown-attribute"},
                                          {"element", "E"},
                                          {"name", "Town"},
                                          {"detail", "entries"},
                                          {"message", "the attribute entries is not read"},
                                          {"fix", "write Entries"},
                                          {"why", "What is not read changes nothing in the document."}}));
    EXPECT_EQ(inJson({"none.xml"})["problems"], json::array({"none.xml: there is no such file"}));
}

TEST_F(Check, GivesItsFindingsToProgramsAsSarif) {
    program.write("a control.xml", sSlips);
    const auto result = program.run({"check", "--sarif", "--map", "towns.geojson", "a control.xml"});
    EXPECT_EQ(result.lExitCode, 1);
    const auto log = json::parse(result.sOut);
    EXPECT_EQ(log["version"], "2.1.0");
    const auto& run = log["runs"][0];
    EXPECT_EQ(run["tool"]["driver"]["name"], "halvane");
    EXPECT_EQ(run["invocations"][0]["executionSuccessful"], true);
    ASSERT_EQ(run["results"].size(), 3U);
    for (const auto& one : run["results"]) {
        const auto& rule = run["tool"]["driver"]["rules"][one["ruleIndex"].get<std::size_t>()];
        EXPECT_EQ(rule["id"], one["ruleId"]);
        EXPECT_EQ(rule["defaultConfiguration"]["level"], one["level"]);
    }
    EXPECT_EQ(run["results"][1]["message"]["text"], "the attribute entries is not read; write Entries");
    EXPECT_EQ(run["results"][2]["locations"],
              json::array({{{"physicalLocation",
                             {{"artifactLocation", {{"uri", "a%20control.xml"}}},
                              {"region", {{"startLine", 8}, {"startColumn", 42}}}}}}}));
}

// ---- What an export would not come to

TEST_F(Check, ReadsNodesOfRowsThatThereAreNotYet) {
    program.write("empty.csv", "NO,NAME\n");
    program.write("control.xml", R"(<T Name="T">
<R Name="R" DataSource="Table" Identity="TableName" IdentityValue="empty"><E Name="E" DataSource="Record" Entries="Multiple">
<A Name="a" IdentityValue="NAMES"/>
<B Name="b" DataSource="Recrod" IdentityValue="NO"/>
<C Name="c" IdentityValue="NAME"/></E></R></T>)");
    const auto result = program.run({"check", "--quiet", "--map", "empty.csv", "control.xml"});
    EXPECT_EQ(
        result.sOut,
        "control.xml:3:13: warning: \"a\": there is no field \"NAMES\", so its value is empty; did you mean "
        "\"NAME\"? The row has the fields \"OID\", \"NO\" and \"NAME\" [field-not-found]\n"
        "control.xml:4:13: warning: \"b\": \"Recrod\" is no kind of data source that gives one value; no "
        "value was written: did you mean \"Record\"? [unknown-kind]\n");
}

TEST_F(Check, ReadsNodesOfConditionsThatDoNotHold) {
    expectFindings(
        "<T xmlns:h=\"urn:halvane:control:2\" Name=\"T\">\n<G Name=\"g\" h:When=\"0\">\n"
        "<L Name=\"l\" DataSource=\"MapLayer\" Identity=\"LayerName\" IdentityValue=\"towns\" "
        "DataProperty=\"FeatureCounts\"/></G></T>",
        "control.xml:3:78: warning: \"l\": \"FeatureCounts\" is no property of MapLayer; no value was "
        "written: did you mean \"FeatureCount\"? [unknown-property]\n",
        1);
}

TEST_F(Check, TellsKeysThatNeverMatch) {
    program.write("rivers.csv", "TOWN,RIVER\nx,Nemea\n");
    program.write("control.xml", R"(<T xmlns:h="urn:halvane:control:2" Name="T">
<L DataSource="MapLayer" Identity="LayerName" IdentityValue="towns" h:Omit="Self">
<E Name="e" DataSource="Feature" Entries="Multiple"><R Name="r" DataSource="RelatedTable" Identity="LayerName"
 IdentityValue="rivers" h:Rows="Each" h:Link="POP=TOWN"/>
<S Name="s" DataSource="RelatedTable" Identity="LayerName"
 IdentityValue="rivers" h:Rows="Each" h:Link="NAME=TOWN"/></E></L></T>)");
    const auto result = program.run({"check", "--quiet", "--map", ".", "control.xml"});
    EXPECT_EQ(result.sOut,
              "control.xml:4:39: warning: \"r\": \"POP\" holds numbers and \"TOWN\" of the related rows "
              "texts, so no row belongs to another; link fields of one type, or let a view change the "
              "type of one [keys-differ]\n");
    EXPECT_EQ(result.lExitCode, 1);
}

// ---- Forms that surprise

TEST_F(Check, TellsOfValuesThatAClauseReadsAsSql) {
    program.write("towns.csv", "NAME,POP\nx' OR '1'='1,1\n");
    program.write("rivers.csv", "NAME,RIVER\nx,Nemea\ny,Nestos\n");
    program.write("folder.xml", "<MapDocument><Map name=\"M\"><Table source=\"towns.csv\"/><Table "
                                "source=\"rivers.csv\"/></Map></MapDocument>");
    const std::string sControl =
        R"(<T Name="T"><L Name="L" DataSource="Table" Identity="TableName" IdentityValue="towns">
<E Name="E" DataSource="Record" Entries="Multiple"><R Name="R" DataSource="RelatedTable" Identity="LayerName"
IdentityValue="rivers" LinkField="NAME"><V Name="v" DataSource="RelatedRecord" IdentityValue="RIVER"/></R></E></L></T>)";
    program.write("control.xml", sControl);
    const auto result = program.run({"check", "--quiet", "--map", "folder.xml", "control.xml"});
    EXPECT_EQ(result.sOut,
              "control.xml:3:41: warning: \"v\": the apostrophe in \"x' OR '1'='1\" of \"NAME\" ends the "
              "text of the clause, and what follows it is read as SQL; link by a number or a code, or "
              "by a view that doubles apostrophes [link-value-ends-text]\n");
    EXPECT_EQ(result.lExitCode, 1);
    program.write("towns.csv", "NAME,POP\nx,1\n");
    EXPECT_EQ(program.run({"check", "--quiet", "--map", "folder.xml", "control.xml"}).sOut, "");
}

TEST_F(Check, TellsOfFormsThatSurpriseWithoutAMap) {
    program.write("control.xml", R"(<T Name="T">
<L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
<E Name="E" DataSource="Feature" Entries="Multiple">
<R Name="R" DataSource="RelatedTable" IdentityValue="rivers" LinkField="NAME" Entries="Multiple">
<V Name="v" DataSource="RelatedRecord" IdentityValue="RIVER"/></R></E>
<U Name="u" Target="Attribute" DataProperty="SPATIALREFERENCE.UNITS"/>
</L>
<R Name="Rivers" DataSource="Table" Identity="TableName" IdentityValue="rivers">
<E Name="River" Entries="Multiple"><G Name="g"><N Name="n" IdentityValue="RIVER"/></G></E>
<F Name="F" DataSource="Field" Entries="Multiple"><E Name="E"><N Name="N" DataProperty="FieldName"/></E></F>
</R></T>)");
    const auto result = program.run({"check", "--quiet", "control.xml"});
    EXPECT_EQ(
        result.sOut,
        "control.xml:4:79: warning: \"R\": a repeated RelatedTable node writes nothing; remove Entries: "
        "RelatedRecord leaves in it write an element for each related row [repeat-is-silent]\n"
        "control.xml:6:13: warning: \"u\": the value of \"SPATIALREFERENCE.UNITS\" replaced the content of "
        "the "
        "parent's element; to write an attribute, also set DataLocation=\"Attribute\" "
        "[replaces-parent-content]\n"
        "control.xml:9:60: warning: \"n\": no Table with TableName \"RIVER\" was found; it looks for a "
        "table: "
        "write DataSource=\"Record\" to read a field of the row [resolved-to-nothing]\n"
        "control.xml:10:13: warning: \"F\": it lists the fields of the layer \"towns\", which is still "
        "current: "
        "only the fields of layers are listed; move the node into the layer that it is about "
        "[fields-of-layer]\n");
    EXPECT_EQ(result.lExitCode, 1);
}

// ---- The page

TEST(CheckingPage, ListsEveryRule) {
    std::ifstream file(HALVANE_SOURCE_DIR "/docs/checking.md");
    const std::string sPage{std::istreambuf_iterator<char>(file), {}};
    for (const CheckRule& rule : checkRules())
        EXPECT_THAT(sPage, HasSubstr("| `" + idOf(rule) + "` | " + std::string(wordOf(rule.severity)) +
                                     " | " + std::string(rule.sWhy) + " |\n"));
}

} // namespace halvane::test
