#include "cli/Samples.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

namespace {

class Notes : public ExportFixture {};

} // namespace

TEST_F(Notes, NameANodeThatResolvedToNothingAndCountThoseInsideIt) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="tovns">
    <C Name="a" DataProperty="LayerName"/>
    <C Name="b" DataProperty="LayerName"/>
  </L>
</T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (0 items)\n");
    EXPECT_EQ(result.sErr,
              "control.xml:2: note: \"Towns\": no MapLayer with LayerName \"tovns\" was found; did "
              "you mean \"towns\"? (so too 2 nodes inside it)\n");
}

TEST_F(Notes, SuggestAMapWhenThereIsNone) {
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(
        result.sErr,
        MatchesRegex("control.xml:2: error: \"Towns\": .* [(]error 91[)]; give a map with --map, or check "
                     "its DataSource\n"
                     "control.xml:3: note: \"Town\": no Feature was found; put the node inside one that "
                     "finds a layer, or check that one, or give a map with --map\n"
                     "halvane: 1 control node failed; the document is incomplete\n"));
}

TEST_F(Notes, NameAFieldThatIsNotThere) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="Name" IdentityValue="NAM"/></E></L></T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "control.xml:4: note: \"Name\": there is no field \"NAM\", so its value is empty; did "
              "you mean \"NAME\"? The row has the fields \"OID\", \"NAME\" and \"POP\" (3 times)\n");
}

TEST_F(Notes, NameAnAttributeThatIsHiddenByTheIdentifier) {
    const auto point = [](int lNumber) {
        return R"({"type":"Feature","properties":{"ObjectId":)" + std::to_string(lNumber) +
               R"(,"id":"a"},"geometry":{"type":"Point","coordinates":[1,2]}})";
    };
    program.write("odd.geojson",
                  R"({"type":"FeatureCollection","features":[)" + point(70) + "," + point(80) + "]}");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Odd" DataSource="MapLayer" Identity="LayerName" IdentityValue="odd">
    <E Name="Row" DataSource="Feature" Entries="Multiple">
      <F Name="O" DataSource="Feature" IdentityValue="OBJECTID"/>
      <F Name="I" DataSource="Feature" IdentityValue="oid"/>
      <F Name="A" DataSource="Feature" IdentityValue="id"/></E></L></T>)");
    const auto result = program.run({"export", "--map", "odd.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "control.xml:4: note: \"O\": \"OBJECTID\" wrote the object identifier, not the attribute "
              "of that name; to write the attribute, give it another name in the data or in a view "
              "of it\n");
    EXPECT_THAT(document("out.xml"), HasSubstr("<O>0</O>\r\n<I>0</I>\r\n<A>a</A>"));
}

TEST_F(Notes, NameAKindThatIsNotKnown) {
    program.write("control.xml", "<T Name=\"T\"><L Name=\"l\" DataSource=\"Mapp\"/></T>");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "control.xml:1: note: \"l\": \"Mapp\" is no kind of data source that gives one value; "
              "no value was written: did you mean \"Map\"?\n");
}

TEST_F(Notes, NameAPropertyThatIsNotKnown) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns" DataProperty="Colour"/></T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "control.xml:2: note: \"Towns\": \"Colour\" is no property of MapLayer; no value was "
              "written: correct DataProperty\n");
}

TEST_F(Notes, SuggestThePropertyThatWasMeant) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <A Name="A" DataProperty="FeatureCuont"/>
    <B Name="B" DataProperty="SPATIALREFERENCE.X_MIN"/>
    <C Name="C" DataProperty="FieldName"/></L></T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    const std::string sNo = "is no property of MapLayer; no value was written: ";
    EXPECT_EQ(result.sErr, "control.xml:3: note: \"A\": \"FeatureCuont\" " + sNo +
                               "did you mean \"FeatureCount\"?\n"
                               "control.xml:4: note: \"B\": \"SPATIALREFERENCE.X_MIN\" " +
                               sNo +
                               "did you mean \"SPATIALREFERENCE.XMIN\"?\n"
                               "control.xml:5: note: \"C\": \"FieldName\" " +
                               sNo + "correct DataProperty\n");
}

TEST_F(Notes, NameAMapThatIsNotThere) {
    program.write("control.xml", R"(<T Name="Map"><L Name="Towns" DataSource="MapLayer" DataFrame="Moon"
        Identity="LayerName" IdentityValue="towns" DataProperty="LayerName"/></T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr,
                HasSubstr("control.xml:1: note: \"Towns\": the map document has no map \"Moon\"; the "
                          "map document has only the map \"towns\"\n"));
}

TEST_F(Notes, NameARepeatedNodeThatCannotWrite) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple"/></L></T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "control.xml:3: note: \"Town\": a Feature node of this form cannot be repeated; no value was "
              "written: see \"Repeated nodes\" in docs/control-file.md\n");
}

TEST_F(Notes, SuggestTheKindThatWasMeantAndAskForOneWhereThereIsNone) {
    program.write("control.xml", R"(<T Name="Map">
  <A Name="A" DataSource="MapLayers" DataProperty="LayerName"/>
  <B Name="B" DataSource="Recrod" Entries="Multiple"><X Name="X" IdentityValue="NAME"/></B>
  <C Name="C" Entries="Multiple"><X Name="X" DataProperty="LayerName"/></C></T>)");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(
        result.sErr,
        "control.xml:2: note: \"A\": \"MapLayers\" is no kind of data source that gives one value; no "
        "value was written: did you mean \"MapLayer\"?\n"
        "control.xml:3: note: \"B\": a Recrod node of this form cannot be repeated; no value was "
        "written: did you mean \"Record\"?\n"
        "control.xml:4: note: \"C\": a node without a DataSource cannot be repeated; no value was written: "
        "say in DataSource what it goes over, or remove Entries\n");
}

TEST_F(Notes, NameALocationThatCannotBeOpened) {
    program.write("control.xml", R"(<T Name="Map">
  <R Name="River" DataSource="Table" Identity="TableName" IdentityValue="rivers" DataLocation="none.gpkg"/></T>)");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_THAT(result.sErr,
                HasSubstr("control.xml:2: note: \"River\": its data at \"none.gpkg\" could not be opened: "));
}

TEST_F(Notes, MaskThePasswordOfALocation) {
    program.write("control.xml", R"(<T Name="Map">
  <R Name="River" DataSource="Table" Identity="TableName" IdentityValue="rivers"
     DataLocation="PG:host=db password=hunter2"/></T>)");
    const auto result = program.run({"export", "--report", "r.json", "control.xml", "out.xml"});
    EXPECT_THAT(result.sErr, HasSubstr("PG:host=db password=***"));
    EXPECT_THAT(result.sErr, Not(HasSubstr("hunter2")));
    EXPECT_THAT(program.read("r.json").value(), Not(HasSubstr("hunter2")));
    EXPECT_THAT(program.read("out.xml").value(), Not(HasSubstr("hunter2")));
}

TEST_F(Notes, QuoteOnlyTheBeginningOfALongName) {
    program.write("control.xml", "<T Name=\"T\"><L Name=\"l\" DataSource=\"MapLayer\" Identity=\"LayerName\" "
                                 "DataProperty=\"LayerName\" IdentityValue=\"" +
                                     std::string(50000, 'x') + "\"/></T>");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "control.xml:1: note: \"l\": no MapLayer with LayerName \"" +
                               std::string(100, 'x') +
                               "…\" was found; the map has only the feature layer \"towns\"\n");
}

TEST_F(Notes, TellWhatDataOfTheMapCannotBeOpenedWhereNodesFindNothing) {
    program.write("map.xml", R"(<MapDocument><Map name="M"><Table source="none.csv"/></Map></MapDocument>)");
    program.write("control.xml", R"(<T Name="Map">
  <R Name="Lost" DataSource="Table" Identity="TableName" IdentityValue="lost"/></T>)");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_THAT(result.sErr, StartsWith("halvane: warning: --map: table \"none\": "));
    EXPECT_THAT(result.sErr,
                HasSubstr("control.xml:2: note: \"Lost\": no Table with TableName \"lost\" was found; "
                          "correct IdentityValue\n"));
}

TEST_F(Notes, WarnOfANodePathThatSelectsNothing) {
    program.write("tags.xml", "<T/>");
    const auto result = program.run({"export", "--xml", "tags.xml", "--node-path", "//QvLayer/", "--map",
                                     "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(
        result.sErr,
        "halvane: warning: --node-path: \"//QvLayer/\" selects nothing in tags.xml; no tags are known\n");
}

TEST_F(Notes, WarnOfNodesThatAreNotReadAsTags) {
    program.write("tags.xml", "<T>\n<Q TagName=\"a\" Alias=\"b\"/>\n<Q TagName=\"c\"/>\n</T>");
    const auto result = program.run({"export", "--xml", "tags.xml", "--node-path", "//Q", "--map",
                                     "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr,
              "halvane: warning: tags.xml:3: <Q> has no Alias; this node and those after it are not read as "
              "tags\n");
}

TEST_F(Notes, PlaceSelectedAttributesAndTextsWhereTheirElementsStand) {
    program.write("tags.xml", "<T>\n<Q TagName=\"a\" Alias=\"b\">\nx</Q>\n</T>");
    const auto told = [&](const std::string& sPath) {
        const auto result = program.run({"export", "--xml", "tags.xml", "--node-path", sPath, "--map",
                                         "towns.geojson", "control.xml", "out.xml"});
        EXPECT_EQ(result.lExitCode, 0);
        return result.sErr;
    };
    EXPECT_EQ(
        told("//Q/@TagName"),
        "halvane: warning: tags.xml:2: the path selects the attribute TagName, not an element with TagName "
        "and Alias; this node and those after it are not read as tags\n");
    EXPECT_EQ(told("//Q/text()"),
              "halvane: warning: tags.xml:2: the path selects a text, not an element with TagName "
              "and Alias; this node and those after it are not read as tags\n");
    EXPECT_EQ(told("/."),
              "halvane: warning: tags.xml: the path selects the document itself, not an element with "
              "TagName and Alias; this node and those after it are not read as tags\n");
}

TEST_F(Notes, TellHowManyCharactersHadToBeChanged) {
    program.write("rivers.csv", "NAME,A\nAche\x01\x02ron,1\nSt\xFFyx,2\n");
    program.write("control.xml", R"(<T Name="Map">
        <R Name="River" DataSource="Table" Identity="TableName" IdentityValue="rivers" Entries="Multiple">
          <F Name="Name" DataSource="Record" IdentityValue="NAME"/></R></T>)");
    const auto result = program.run({"export", "--map", "rivers.csv", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "halvane: warning: 2 characters that XML forbids were dropped from the data\n"
                           "halvane: warning: 1 piece of the data is no UTF-8 and was replaced by U+FFFD\n");
}

} // namespace halvane::test
