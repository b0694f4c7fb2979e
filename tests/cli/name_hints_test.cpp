// What a person is told of names that are not there.

#include "telling/NameHints.h"

#include "cli/Samples.h"
#include "host/memory/Memory.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;

namespace {

/// A map of two towns' layers, a raster, a table, and a layer two groups deep.
constexpr std::string_view sMap = R"(<MapDocument><Map name="World">
  <FeatureLayer name="Towns" source="towns.geojson"/>
  <RasterLayer name="Heights" source="heights.asc"/>
  <GroupLayer name="Outer">
    <FeatureLayer name="Villages" source="towns.geojson"/>
    <RasterLayer name="Depths" source="heights.asc"/>
    <GroupLayer name="Inner"><FeatureLayer name="Hamlets" source="towns.geojson"/></GroupLayer>
  </GroupLayer>
  <Table source="rivers.csv"/>
</Map></MapDocument>)";

constexpr std::string_view sHeights = "ncols 2\nnrows 1\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2\n";

class NameHints : public ExportFixture {
protected:
    NameHints() {
        program.write("rivers.csv", sRivers);
        program.write("heights.asc", sHeights);
        program.write("map.xml", sMap);
    }

    /// What is told of one node of the map, without its place.
    [[nodiscard]] std::string told(const std::string& sAttributes, int lExitCode = 0) const {
        program.write("control.xml", "<T Name=\"T\"><N Name=\"n\" " + sAttributes + "/></T>");
        const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
        EXPECT_EQ(result.lExitCode, lExitCode) << result.sErr;
        const auto lEnd = result.sErr.find('\n');
        const std::string sPlace =
            lExitCode == 0 ? "control.xml:1: note: \"n\": " : "control.xml:1: error: \"n\": ";
        EXPECT_TRUE(result.sErr.starts_with(sPlace)) << result.sErr;
        return result.sErr.substr(std::min(sPlace.size(), lEnd), lEnd - std::min(sPlace.size(), lEnd));
    }
    /// The same of a node that looks for a name.
    [[nodiscard]] std::string toldOf(const std::string& sKind, const std::string& sIdentity,
                                     const std::string& sName, int lExitCode = 0) const {
        return told("DataSource=\"" + sKind + "\" Identity=\"" + sIdentity + "\" IdentityValue=\"" + sName +
                        "\"",
                    lExitCode);
    }
};

} // namespace

TEST_F(NameHints, SuggestTheNearestLayerAndListThemWhereTheyAreFew) {
    EXPECT_EQ(
        toldOf("MapLayer", "LayerName", "tovns"),
        "no MapLayer with LayerName \"tovns\" was found; did you mean \"Towns\"? The map has the feature "
        "layers \"Towns\" and \"Villages\"");
    EXPECT_EQ(
        toldOf("MapLayer", "LayerName", "Streets"),
        "no MapLayer with LayerName \"Streets\" was found; the map has the feature layers \"Towns\" and "
        "\"Villages\"");
    EXPECT_EQ(
        toldOf("MapLayer", "LayerName", "Outer:Vilages"),
        "no MapLayer with LayerName \"Outer:Vilages\" was found; did you mean \"Outer:Villages\"? The map "
        "has the feature layers \"Towns\" and \"Outer:Villages\"");
}

TEST_F(NameHints, SuggestTheOnlyOneWithoutAList) {
    EXPECT_EQ(toldOf("RasterLayer", "LayerName", "Hights"),
              "no RasterLayer with LayerName \"Hights\" was found; did you mean \"Heights\"?");
    EXPECT_EQ(toldOf("Table", "TableName", "lakes"),
              "no Table with TableName \"lakes\" was found; the map has only the table \"rivers\"");
    EXPECT_EQ(toldOf("TinLayer", "LayerName", "Surface"),
              "no TinLayer with LayerName \"Surface\" was found; the map has no TIN layers");
}

TEST_F(NameHints, TellHowToAskForAThingOfAnotherKind) {
    EXPECT_EQ(toldOf("MapLayer", "LayerName", "RIVERS"),
              "no MapLayer with LayerName \"RIVERS\" was found; \"rivers\" is a table: ask for it with "
              "DataSource=\"Table\" Identity=\"TableName\"");
    EXPECT_EQ(toldOf("Table", "TableName", "Towns"),
              "no Table with TableName \"Towns\" was found; \"Towns\" is a feature layer: ask for it with "
              "DataSource=\"MapLayer\" Identity=\"LayerName\"");
    EXPECT_EQ(
        toldOf("RasterLayer", "LayerName", "Outer"),
        "no RasterLayer with LayerName \"Outer\" was found; \"Outer\" is a group layer: name a layer in it; "
        "one in a group of a group is not found");
}

TEST_F(NameHints, TellWhichLayersStandTooDeepInGroups) {
    EXPECT_EQ(
        toldOf("MapLayer", "LayerName", "Hamlets"),
        "no MapLayer with LayerName \"Hamlets\" was found; the feature layer \"Hamlets\" stands in the group "
        "\"Outer:Inner\": feature layers are found in no group of a group, so move it up");
    EXPECT_EQ(
        toldOf("MapLayer", "LayerName", "Outer:Inner:Hamlets", 3),
        "Type mismatch: \"Inner\" is a group layer: name a layer in it; one in a group of a group is not "
        "found (error 13)");
    EXPECT_THAT(toldOf("MapLayer", "LayerName", "Outer:Hamlets"),
                HasSubstr("was found; the feature layer \"Hamlets\" stands in the group \"Outer:Inner\""));
    EXPECT_THAT(toldOf("RasterLayer", "LayerName", "Outer:Depths"),
                HasSubstr("was found; the raster layer \"Depths\" stands in the group \"Outer\""));
    EXPECT_EQ(
        toldOf("RasterLayer", "LayerName", "Depths"),
        "no RasterLayer with LayerName \"Depths\" was found; the raster layer \"Depths\" stands in the group "
        "\"Outer\": raster layers are found outside of groups only, so move it up");
}

TEST_F(NameHints, TellTheIdentityByWhichAKindIsFound) {
    EXPECT_EQ(
        toldOf("Table", "LayerName", "rivers"),
        "no Table with LayerName \"rivers\" was found; write Identity=\"TableName\", by which a Table is "
        "found");
    EXPECT_EQ(toldOf("MapLayer", "", "Towns"),
              "no MapLayer with IdentityValue \"Towns\" was found; write Identity=\"LayerName\", by which a "
              "MapLayer is found");
}

TEST_F(NameHints, TellWhatAMapLayerIsThatIsNone) {
    EXPECT_EQ(toldOf("MapLayer", "LayerName", "heights", 3),
              "Type mismatch: \"Heights\" is a raster layer: ask for it with DataSource=\"RasterLayer\" "
              "Identity=\"LayerName\" (error 13)");
    EXPECT_EQ(
        toldOf("MapLayer", "LayerName", "Outer", 3),
        "Type mismatch: \"Outer\" is a group layer: name a layer in it; one in a group of a group is not "
        "found (error 13)");
}

TEST_F(NameHints, SuggestDatasetsOfALocation) {
    EXPECT_EQ(
        told("DataSource=\"FeatureLayer\" Identity=\"LayerName\" IdentityValue=\"tovns\" DataLocation=\".\"",
             3),
        "\"" + program.file("").substr(0, program.file("").size() - 1) +
            "\" has no dataset \"tovns\"; did you mean \"towns\"? It has the datasets \"rivers\" and "
            "\"towns\" "
            "(error 1004)");
    EXPECT_THAT(told("DataSource=\"FeatureLayer\" Identity=\"LayerName\" IdentityValue=\"castles\" "
                     "DataLocation=\".\"",
                     3),
                HasSubstr("\" has no dataset \"castles\"; it has the datasets \"rivers\" and \"towns\" "));
}

TEST_F(NameHints, SuggestMaps) {
    EXPECT_THAT(told("DataSource=\"Map\" IdentityValue=\"Wold\" DataProperty=\"SPATIALREFERENCE.XMIN\""),
                HasSubstr("; did you mean \"World\"?"));
}

TEST_F(NameHints, TellWhichOtherMapHasTheLayer) {
    program.write("map.xml", R"(<MapDocument><Map name="World"><FeatureLayer source="towns.geojson"/></Map>
        <Map name="Plan"><FeatureLayer name="Piers" source="towns.geojson"/><GroupLayer name="Outer">
        <FeatureLayer name="Posts" source="towns.geojson"/></GroupLayer></Map></MapDocument>)");
    const std::string sHint = "; the map \"Plan\" has it: write DataFrame=\"Plan\"";
    for (const std::string sName : {"piers", "posts", "outer:posts"})
        EXPECT_THAT(toldOf("MapLayer", "LayerName", sName), HasSubstr(sHint));
    for (const std::string sName : {"outer", "piers2"})
        EXPECT_THAT(toldOf("MapLayer", "LayerName", sName), ::testing::Not(HasSubstr(sHint)));
}

TEST_F(NameHints, SuggestFieldsAndTellAliases) {
    program.write("map.xml",
                  R"(<MapDocument><Map name="World"><FeatureLayer name="towns" source="towns.geojson">
        <Field name="POP" alias="Inhabitants"/></FeatureLayer></Map></MapDocument>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="a" IdentityValue="NAM"/>
      <F Name="b" IdentityValue="inhabitants"/>
      <F Name="c" IdentityValue="Colour"/></E></L></T>)");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(
        result.sErr,
        "control.xml:4: note: \"a\": there is no field \"NAM\", so its value is empty; did you mean "
        "\"NAME\"? The row has the fields \"OID\", \"NAME\" and \"POP\" (3 times)\n"
        "control.xml:5: note: \"b\": there is no field \"inhabitants\", so its value is empty; that is the "
        "alias of the field \"POP\": write its name (3 times)\n"
        "control.xml:6: note: \"c\": there is no field \"Colour\", so its value is empty; the row has the "
        "fields \"OID\", \"NAME\" and \"POP\" (3 times)\n");
}

TEST_F(NameHints, SuggestTagsOfLayersAndOfFields) {
    program.write("tags.xml", R"(<T><Q TagName="PLACES" Alias="Towns"><QvFields>
        <QvField TagName="TITLE" Alias="NAME"/><QvField TagName="SIZE" Alias="Population"/></QvFields></Q>
        <Q TagName="WOODS" Alias="Forests"/></T>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="a" DataSource="MapLayer" Identity="TagName" IdentityValue="PLACE"/>
  <L Name="b" DataSource="MapLayer" Identity="TagName" IdentityValue="WOODS"/>
  <L Name="c" DataSource="MapLayer" Identity="TagName" IdentityValue="PLACES">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="d" IdentityValue="TITEL"/>
      <F Name="e" IdentityValue="SIZE"/></E></L></T>)");
    const auto result = program.run(
        {"export", "--xml", "tags.xml", "--node-path", "//Q", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(
        result.sErr,
        "control.xml:2: note: \"a\": no MapLayer with TagName \"PLACE\" was found; there is no tag "
        "\"PLACE\": "
        "did you mean \"PLACES\"? The tag document has the tags \"PLACES\" and \"WOODS\"\n"
        "control.xml:3: note: \"b\": no MapLayer with TagName \"WOODS\" was found; the tag stands for "
        "\"FORESTS\": the map has the feature layers \"Towns\" and \"Villages\"\n"
        "control.xml:6: note: \"d\": there is no field \"TITEL\", so its value is empty; the current tag's "
        "node lists no such tag: did you mean \"TITLE\"? The tag's node has the fields \"TITLE\" and "
        "\"SIZE\" (3 times)\n"
        "control.xml:7: note: \"e\": there is no field \"SIZE\", so its value is empty; the tag stands for "
        "the alias \"Population\": the row has the aliases \"OID\", \"NAME\" and \"POP\" (3 times)\n");
}

TEST_F(NameHints, TellWhichValueOfWhatDoesNotFit) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <G Name="Vertex" DataSource="Geometry.Vertice" Entries="Multiple" MeasureField="NAME">
      <M Name="m" DataProperty="Geometry.Measure"/></G></L></T>)");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr,
                HasSubstr("control.xml:3: error: \"Vertex\": Type mismatch: the field \"NAME\" of row 1 "
                          "holds the text \"Abdera\", not a number (error 13)"));
}

TEST_F(NameHints, TellWhatARejectedClauseIsMadeOf) {
    program.write("people.csv", "NAME,MAYOR\nByblos,Eve\nL'Aquila,Ada\n");
    program.write("towns.csv", "NAME,WKT\nL'Aquila,POINT(1 2)\nByblos,POINT(3 4)\n");
    program.write("map.xml", R"(<MapDocument><Map name="World"><FeatureLayer source="towns.csv"/>
        <Table source="people.csv"/></Map></MapDocument>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <R Name="People" DataSource="RelatedTable" Identity="LayerName" IdentityValue="people" LinkField="NAME">
        <P Name="Mayor" DataSource="RelatedRecord" IdentityValue="MAYOR"/></R></E></L></T>)");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr, HasSubstr("control.xml:5: error: \"Mayor\": "));
    EXPECT_THAT(
        result.sErr,
        HasSubstr(
            ": it is made of LinkField=\"NAME\" in line 4 and the row's value as "
            "it is, and the apostrophe in it ends the text: link by a field without apostrophes, or let a "
            "view of "
            "the linking data double them (error "));
    EXPECT_THAT(program.read("out.xml").value(), HasSubstr("<Mayor>Eve</Mayor>"));
}

TEST_F(NameHints, TellThatTheRelatedTableHasNoSuchLinkField) {
    program.write("mayors.csv", "CITY,MAYOR\nAbdera,Eve\n");
    program.write("map.xml", R"(<MapDocument><Map name="World"><FeatureLayer source="towns.geojson"/>
        <Table source="mayors.csv"/></Map></MapDocument>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <R Name="People" DataSource="RelatedTable" Identity="LayerName" IdentityValue="mayors" LinkField="NAME">
        <P Name="Mayor" DataSource="RelatedRecord" IdentityValue="MAYOR"/></R></E></L></T>)");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr, HasSubstr("control.xml:5: error: \"Mayor\": The filter \"NAME='Abdera'\" is not "
                                       "valid for \"mayors\": "));
    EXPECT_THAT(result.sErr,
                HasSubstr(": it is made of LinkField=\"NAME\" in line 4 and the row's value as it "
                          "is: the related table needs a field of that name (error 1004)"));
}

TEST_F(NameHints, CountManyInsteadOfListingThem) {
    std::string sLayers;
    for (int i = 0; i < 9; ++i)
        sLayers += "<FeatureLayer name=\"Layer " + std::to_string(i) + "\" source=\"towns.geojson\"/>";
    program.write("map.xml", "<MapDocument><Map name=\"World\">" + sLayers + "</Map></MapDocument>");
    EXPECT_EQ(
        toldOf("MapLayer", "LayerName", "Streets"),
        "no MapLayer with LayerName \"Streets\" was found; the map has 9 feature layers, none of a similar "
        "name");
    EXPECT_EQ(toldOf("MapLayer", "LayerName", "Layr 4"),
              "no MapLayer with LayerName \"Layr 4\" was found; did you mean \"Layer 4\"?");
}

TEST(NameHint, AsksNoTableOfManyForItsNameWhereALayerIsSought) {
    const auto pHost = host::memory::MemoryHost::make();
    const auto pMap = host::memory::MemoryMap::make("M");
    for (int i = 0; i < 51; ++i)
        pMap->addTable(host::memory::MemoryTable::make("T" + std::to_string(i), {}));
    ControlNodeFacts facts;
    facts.sIdentity = "LayerName";
    facts.sIdentityValue = "T1";
    Surroundings around;
    around.pMap = pMap.get();
    pHost->faults().reset();
    EXPECT_EQ(nameHint(facts, Notice::ResolvedToNothing, "MapLayer", around),
              "the map has no feature layers");
    EXPECT_EQ(pHost->faults().callCount("datasetName"), 0);
    facts.sIdentity = "TableName";
    facts.sIdentityValue = "Rivers";
    EXPECT_EQ(nameHint(facts, Notice::ResolvedToNothing, "Table", around),
              "the map has 51 tables, none of a similar name");
}

TEST(NameHint, IsAskedForOnceHoweverManyRowsLackTheField) {
    const auto pHost = host::memory::MemoryHost::make();
    const auto pTable =
        host::memory::MemoryTable::make("T", {host::memory::field("NAME", host::FieldType::String)});
    const auto pFields = pTable->fields();
    const auto oControl = dom::Document::create();
    ASSERT_TRUE(oControl->loadXML("<T Name='T'/>"));
    Surroundings around;
    around.pFields = pFields.get();
    NoProgress progress;
    ExportLog log(progress);
    pHost->faults().reset();
    for (int i = 0; i < 1000; ++i)
        log.nodeNoticed(oControl->documentElement(), Notice::FieldNotFound, "NAM", around);
    const auto& events = log.records().at(1).events;
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].lCount, 1000U);
    EXPECT_EQ(events[0].sHint, "did you mean \"NAME\"?");
    EXPECT_LE(pHost->faults().callCount("GisField.name"), 2);
}

TEST(NameHint, IsNoneWhereTheHostFails) {
    const auto pHost = host::memory::MemoryHost::make();
    const auto pTable =
        host::memory::MemoryTable::make("T", {host::memory::field("NAME", host::FieldType::String)});
    const auto pFields = pTable->fields();
    Surroundings around;
    around.pFields = pFields.get();
    NoProgress progress;
    ExportLog log(progress);
    pHost->faults().failAlways("GisField.aliasName");
    log.nodeNoticed({}, Notice::FieldNotFound, "NAM", around);
    ASSERT_EQ(log.records().at(0).events.size(), 1U);
    EXPECT_EQ(log.records().at(0).events[0].sHint, "");
}

} // namespace halvane::test
