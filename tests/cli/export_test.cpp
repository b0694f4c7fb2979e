#include "cli/Samples.h"

#include <filesystem>

namespace halvane::test {

namespace {

class Export : public ExportFixture {
protected:
    /// Expects that the document was written under that name with nothing to tell, and returns it.
    std::string expectWritten(std::vector<std::string> arguments, const std::string& sName,
                              int lItems) const {
        arguments.insert(arguments.begin(), "export");
        const auto result = program.run(arguments);
        EXPECT_EQ(result.sErr, "");
        EXPECT_EQ(result.sOut, "Wrote " + program.file(sName) + " (" + std::to_string(lItems) +
                                   (lItems == 1 ? " item)\n" : " items)\n"));
        EXPECT_EQ(result.lExitCode, 0);
        return document(sName);
    }
};

} // namespace

TEST_F(Export, WritesTheDocumentAndTellsItsPathAndItems) {
    EXPECT_EQ(expectWritten({"--map", "towns.geojson", "control.xml", "out.xml"}, "out.xml", 3),
              sTownsDocument);
}

TEST_F(Export, TellsThePathThatTheDocumentReallyHas) {
    EXPECT_EQ(expectWritten({"--map", "towns.geojson", "control.xml", "towns.txt"}, "towns.txt.xml", 3),
              sTownsDocument);
    EXPECT_EQ(expectWritten({"--map", "towns.geojson", "control.xml", "XmlTowns.txt"}, "XmlTowns.txt", 3),
              sTownsDocument);
}

TEST_F(Export, TakesRelativePathsFromTheCurrentFolder) {
    std::filesystem::create_directory(program.file("sub"));
    EXPECT_EQ(expectWritten({"--map", "./towns.geojson", "sub/../control.xml", "sub/../sub/out.xml"},
                            "sub/out.xml", 3),
              sTownsDocument);
}

TEST_F(Export, ReadsBackslashesAsSlashes) {
    std::filesystem::create_directory(program.file("sub"));
    EXPECT_EQ(
        expectWritten({"--map", "towns.geojson", "sub\\..\\control.xml", "sub\\out.xml"}, "sub/out.xml", 3),
        sTownsDocument);
}

TEST_F(Export, RunsInAFolderWhoseNameHoldsABackslash) {
    std::filesystem::create_directory(program.file("a\\b"));
    for (const char* sName : {"towns.geojson", "control.xml"})
        std::filesystem::copy_file(program.file(sName), program.file("a\\b/") + sName);
    program.write("a\\b/map.xml", R"(<MapDocument><Map name="M"><FeatureLayer source="towns.geojson"/></Map>
</MapDocument>)");
    RunSettings settings;
    settings.sFolder = "a\\b";
    for (const char* sMap : {"towns.geojson", "map.xml", "."}) {
        const auto result = program.run(
            {"export", "--report", "r.json", "--map", sMap, "control.xml", ".\\out.xml"}, settings);
        EXPECT_EQ(result.sErr, "");
        EXPECT_EQ(result.lExitCode, 0);
        EXPECT_EQ(result.sOut, "Wrote ./out.xml (3 items)\n");
        EXPECT_EQ(document("a\\b/out.xml"), sTownsDocument);
        EXPECT_TRUE(program.read("a\\b/r.json"));
        std::filesystem::remove(program.file("a\\b/out.xml"));
    }
}

TEST_F(Export, TakesNamesWithBlanksAndSignsAsTheyAre) {
    program.write("a b#1%20.xml", sTownsControl);
    EXPECT_EQ(expectWritten({"--map", "towns.geojson", "a b#1%20.xml", "c d#2%20.xml"}, "c d#2%20.xml", 3),
              sTownsDocument);
}

TEST_F(Export, TakesNamesThatBeginWithADashAfterTwoDashes) {
    program.write("-control.xml", sTownsControl);
    EXPECT_EQ(expectWritten({"--map", "towns.geojson", "--", "-control.xml", "-out.xml"}, "-out.xml", 3),
              sTownsDocument);
}

TEST_F(Export, LoadsAControlFileByItsAddress) {
    EXPECT_EQ(expectWritten({"--map", "towns.geojson", "file:///" + program.file("control.xml"), "out.xml"},
                            "out.xml", 3),
              sTownsDocument);
}

TEST_F(Export, ReplacesAnOlderDocument) {
    program.write("out.xml", std::string(100000, 'x'));
    EXPECT_EQ(expectWritten({"--map", "towns.geojson", "control.xml", "out.xml"}, "out.xml", 3),
              sTownsDocument);
    EXPECT_EQ(program.names(), (std::vector<std::string>{"control.xml", "out.xml", "towns.geojson"}));
}

TEST_F(Export, SkipsCommentsBetweenControlElements) {
    program.write("control.xml",
                  "<!-- first --><T Name=\"T\"><!-- second --><A Name=\"a\"><!-- third --></A><?p i?></T>");
    EXPECT_EQ(expectWritten({"control.xml", "out.xml"}, "out.xml", 0), "<T>\r\n<a/>\r\n</T>");
}

TEST_F(Export, SelectsFeaturesInTheOrderGiven) {
    EXPECT_EQ(
        expectWritten({"--map", "towns.geojson", "--select", "TOWNS=3,1", "control.xml", "out.xml"},
                      "out.xml", 2),
        "<Map>\r\n<Towns>\r\n<Town>\r\n<Name>Corinth</Name>\r\n</Town>\r\n<Town>\r\n<Name>Abdera</Name>\r\n"
        "</Town>\r\n</Towns>\r\n</Map>");
}

TEST_F(Export, SelectsFeaturesByAClauseThatHoldsEqualSigns) {
    EXPECT_EQ(expectWritten(
                  {"--map", "towns.geojson", "--select", "towns=NAME = 'Byblos'", "control.xml", "out.xml"},
                  "out.xml", 1),
              "<Map>\r\n<Towns>\r\n<Town>\r\n<Name>Byblos</Name>\r\n</Town>\r\n</Towns>\r\n</Map>");
}

TEST_F(Export, TakesAFolderAsAMapOfAllItsData) {
    program.write("rivers.csv", sRivers);
    program.write("control.xml", R"(<T Name="Map">
        <R Name="River" DataSource="Table" Identity="TableName" IdentityValue="rivers" Entries="Multiple">
          <F Name="Name" DataSource="Record" IdentityValue="NAME"/>
        </R></T>)");
    EXPECT_EQ(expectWritten({"--map", ".", "control.xml", "out.xml"}, "out.xml", 2),
              "<Map>\r\n<River>\r\n<Name>Acheron</Name>\r\n</River>\r\n<River>\r\n<Name>Styx</Name>\r\n</"
              "River>\r\n</Map>");
}

TEST_F(Export, FindsLayersAndFieldsByTheTagsOfASecondDocument) {
    program.write("tags.xml", R"(<V><QvLayer TagName="PLACES" Alias="Towns"><QvFields>
        <QvField TagName="TITLE" Alias="Name"/></QvFields></QvLayer></V>)");
    program.write("control.xml", R"(<T Name="Map">
        <L Name="Towns" DataSource="MapLayer" Identity="TagName" IdentityValue="Places">
          <C Name="count" Target="Attribute" DataProperty="FeatureCount"/>
          <E Name="Town" DataSource="Feature" Entries="Multiple">
            <F Name="Name" Identity="TagName" IdentityValue="Title"/></E>
        </L></T>)");
    EXPECT_EQ(
        expectWritten({"--map", "towns.geojson", "--select", "towns=2", "--xml", "tags.xml", "--node-path",
                       "//QvLayer", "control.xml", "out.xml"},
                      "out.xml", 1),
        "<Map>\r\n<Towns count=\"3\">\r\n<Town>\r\n<Name>Byblos</Name>\r\n</Town>\r\n</Towns>\r\n</Map>");
}

TEST_F(Export, AsksTheProcessorsThatItLoaded) {
    program.write("control.xml", "<T Name=\"T\"><X Name=\"x\" DataSource=\"External\" "
                                 "IdentityValue=\"TEST.greeting\"/></T>");
    EXPECT_EQ(expectWritten({"--processor", HALVANE_PROCESSORS, "control.xml", "out.xml"}, "out.xml", 0),
              "<T>\r\n<x>good morning</x>\r\n</T>");
}

TEST_F(Export, WritesPointsAsDecimalSignsWhateverTheLocaleOfTheShell) {
    program.write("levels.csv", "LEVEL,SIGN\n1.5,a\n");
    program.write("levels.csvt", "Real,String\n");
    program.write("control.xml", R"(<T Name="Map">
        <R Name="Level" DataSource="Table" Identity="TableName" IdentityValue="levels" Entries="Multiple">
          <F Name="Value" DataSource="Record" IdentityValue="LEVEL"/></R></T>)");
    RunSettings settings;
    settings.environment = {{"LC_ALL", "de_DE.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}};
    const auto result = program.run({"export", "--map", "levels.csv", "control.xml", "out.xml"}, settings);
    EXPECT_EQ(result.lExitCode, 0) << result.sErr;
    EXPECT_EQ(document("out.xml"), "<Map>\r\n<Level>\r\n<Value>1.5</Value>\r\n</Level>\r\n</Map>");
}

TEST_F(Export, SaysNothingWhenQuiet) {
    const auto result =
        program.run({"export", "--quiet", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(document("out.xml"), sTownsDocument);
}

TEST_F(Export, RunsWithoutAMap) {
    program.write("rivers.csv", sRivers);
    program.write("control.xml", R"(<T Name="Map" DataLocation="rivers.csv">
        <R Name="River" DataSource="Table" Identity="TableName" IdentityValue="rivers" Entries="Multiple">
          <F Name="Name" DataSource="Record" IdentityValue="NAME"/></R></T>)");
    EXPECT_EQ(expectWritten({"control.xml", "out.xml"}, "out.xml", 2),
              "<Map>\r\n<River>\r\n<Name>Acheron</Name>\r\n</River>\r\n<River>\r\n<Name>Styx</Name>\r\n</"
              "River>\r\n</Map>");
}

} // namespace halvane::test
