#include "cli/FailingLeaf.h"
#include "cli/Samples.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>
#include <proj.h>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

constexpr const char* sNoProcessor = "The component \"Acme.Zone\" cannot be created: no processor of that "
                                     "name is registered (error 429); check the "
                                     "ProgID in IdentityValue, and load its library with --processor";

class Failures : public ExportFixture {};

} // namespace

TEST_F(Failures, AreListedWithLineNumberAndDescriptionWhileTheDocumentIsWritten) {
    program.write("control.xml", "<T Name=\"T\">\n" + failingLeaf("Zone") + "\n<A Name=\"a\"/>\n</T>");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (0 items)\n");
    EXPECT_EQ(result.sErr, std::string("control.xml:2: error: \"Zone\": ") + sNoProcessor +
                               "\nhalvane: 1 control node failed; the document is incomplete\n");
    EXPECT_EQ(document("out.xml"), "<T>\r\n<Zone/>\r\n<a/>\r\n</T>");
}

TEST_F(Failures, OfTheRegisterOfCoordinateSystemsLeaveBoundsOut) {
    program.write("bounds.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <X Name="Left" DataProperty="SPATIALREFERENCE.XMIN"/>
    <X Name="Right" DataProperty="SPATIALREFERENCE.XMAX"/>
    <X Name="Top" DataProperty="SPATIALREFERENCE.YMAX"/>
  </L>
</T>)");
    const std::vector<std::string> arguments{"export", "--map", "towns.geojson", "bounds.xml",
                                             "bounds-document.xml"};
    EXPECT_EQ(program.run(arguments).lExitCode, 0);
    EXPECT_THAT(program.read("bounds-document.xml").value_or(""), HasSubstr("<Left>-180</Left>"));

    namespace fs = std::filesystem;
    RunSettings settings;
    settings.bOrdinaryUser = true;
    const auto runWith = [&](const char* sFolder) {
        settings.environment = {{"PROJ_DATA", program.file(sFolder)}, {"PROJ_LIB", program.file(sFolder)}};
        return program.run(arguments, settings);
    };
    for (const char* sFolder : {"broken", "denied"})
        fs::create_directory(program.file(sFolder));
    program.write("broken/proj.db", "no database");
    const std::string sRegister = program.file("denied/proj.db");
    ASSERT_TRUE(fs::copy_file(proj_context_get_database_path(nullptr), sRegister));
    fs::remove(program.file("bounds-document.xml")); // another user's
    EXPECT_EQ(runWith("denied").lExitCode, 0);
    EXPECT_THAT(program.read("bounds-document.xml").value_or(""), HasSubstr("<Left>-180</Left>"));
    fs::permissions(sRegister, fs::perms::none);
    for (const char* sFolder : {"none", "broken", "denied"}) {
        SCOPED_TRACE(sFolder);
        const auto result = runWith(sFolder);
        EXPECT_EQ(result.lExitCode, 3);
        // One reason, however many nodes it costs their values.
        EXPECT_EQ(
            result.sErr,
            "bounds.xml:3: error: \"Left\": The register of coordinate systems (proj.db) cannot be read, so "
            "that bounds are not known; install the data of the PROJ library, let this user read it, or name "
            "its folder in PROJ_DATA (error 1004) (so too at lines 4 and 5)\n"
            "halvane: 3 control nodes failed; the document is incomplete\n");
        EXPECT_EQ(document("bounds-document.xml"),
                  "<Map>\r\n<Towns>\r\n<Left/>\r\n<Right/>\r\n<Top/>\r\n</Towns>\r\n</Map>");
    }
}

// Before that it cannot be told whether a definition is one.
TEST_F(Failures, OfTheRegisterOfCoordinateSystemsAreOfTheNodeThatAsksForADefinition) {
    program.write("bounds.xml", R"(<T Name="Map">
  <X Name="System" DataSource="Map" DataProperty="SPATIALREFERENCE.PROJECTION"/>
</T>)");
    const std::string sLayer = R"(<FeatureLayer source="towns.geojson">)";
    const std::string sReference = R"(<SpatialReference definition="EPSG:25832"/>)";
    program.write("of-map.xml", R"(<MapDocument><Map name="M">)" + sLayer + "</FeatureLayer>" + sReference +
                                    "</Map></MapDocument>");
    program.write("of-layer.xml", R"(<MapDocument><Map name="M">)" + sLayer + sReference +
                                      "</FeatureLayer></Map></MapDocument>");
    RunSettings settings;
    for (const std::string sMap : {"of-map.xml", "of-layer.xml"}) {
        SCOPED_TRACE(sMap);
        const std::vector<std::string> arguments{"export", "--map", sMap, "bounds.xml", "system.xml"};
        settings.environment = {};
        EXPECT_EQ(program.run(arguments, settings).lExitCode, 0);
        EXPECT_THAT(program.read("system.xml").value_or(""), HasSubstr("UTM"));
        settings.environment = {{"PROJ_DATA", program.file("none")}, {"PROJ_LIB", program.file("none")}};
        const auto result = program.run(arguments, settings);
        EXPECT_EQ(result.lExitCode, 3);
        EXPECT_EQ(result.sErr,
                  "bounds.xml:2: error: \"System\": The register of coordinate systems (proj.db) cannot be "
                  "read, so that \"EPSG:25832\" is not known; install the data of the PROJ library, let this "
                  "user read it, or name its folder in PROJ_DATA (error 1004)\n"
                  "halvane: 1 control node failed; the document is incomplete\n");
    }
}

TEST_F(Failures, OfAReferenceThatIsNoneAreToldBeforeTheExport) {
    program.write("map.xml",
                  "<MapDocument><Map name=\"M\"><FeatureLayer source=\"towns.geojson\">\n"
                  "<SpatialReference definition=\"nonsense\"/></FeatureLayer></Map></MapDocument>");
    program.write("control.xml", "<T Name=\"T\"/>");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_THAT(result.sErr,
                HasSubstr("map.xml, line 2: \"nonsense\" is not a spatial reference; give a code "
                          "such as \"EPSG:25832\", well-known text or a PROJ string"));
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
}

TEST_F(Failures, OfATableWhoseDataIsBrokenAreOfTheNodeThatReachesIt) {
    std::filesystem::create_directory(program.file("data"));
    program.write("data/lakes.xlsx", "no sheets");
    program.write("data/rivers.csv", "NAME,LENGTH\nStyx,9\n");
    program.write("map.xml", R"(<MapDocument><Map name="M"><Table source="data/lakes.xlsx"/>
<Table source="data/rivers.csv"/></Map></MapDocument>)");
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Lakes" DataSource="Table" Identity="TableName" IdentityValue="lakes">
    <E Name="Lake" DataSource="Record" Entries="Multiple">
      <N Name="Name" IdentityValue="NAME"/></E></L>
  <R Name="Rivers" DataSource="Table" Identity="TableName" IdentityValue="rivers">
    <E Name="River" DataSource="Record" Entries="Multiple">
      <N Name="Name" IdentityValue="NAME"/></E></R></T>)");
    for (const std::string sMap : {"data", "map.xml"}) {
        const auto result = program.run({"export", "--map", sMap, "control.xml", "out.xml"});
        EXPECT_EQ(result.lExitCode, 3) << sMap;
        EXPECT_THAT(result.sErr,
                    HasSubstr("control.xml:2: error: \"Lakes\": " +
                              (sMap == "data" ? "" : program.file("map.xml") + ", line 1: ") + "\"" +
                              program.file("data/lakes.xlsx") +
                              "\" cannot be read by the driver \"XLSX\": its contents are not of this format "
                              "(error 1004)\n"));
        EXPECT_THAT(result.sErr, HasSubstr("halvane: 1 control node failed; the document is incomplete\n"));
        EXPECT_THAT(program.read("out.xml").value(), HasSubstr("<Name>Styx</Name>"));
    }
}

TEST_F(Failures, OfAViewThatSqliteCannotParseAreOfTheNodeThatReachesIt) {
    GDALAllRegister();
    {
        GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
        const GDALDatasetUniquePtr pData(
            pDriver->Create(program.file("data.gpkg").c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        static_cast<void>(pData->CreateLayer("towns", nullptr, wkbNone));
        for (const char* pSql :
             {"INSERT INTO towns DEFAULT VALUES", "CREATE VIEW broken AS SELECT 1",
              "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('broken', 'broken', "
              "'attributes')"})
            pData->ReleaseResultSet(pData->ExecuteSQL(pSql, nullptr, nullptr));
    }
    std::string sBytes = program.read("data.gpkg").value();
    sBytes.replace(sBytes.find("AS SELECT 1") + 10, 1, ".");
    program.write("data.gpkg", sBytes);
    const auto write = [&](const std::string& sTable) {
        program.write("control.xml", "<T Name=\"T\">\n<A Name=\"A\" DataSource=\"Table\" "
                                     "Identity=\"TableName\" IdentityValue=\"" +
                                         sTable +
                                         "\">\n<R Name=\"R\" DataSource=\"Record\" Entries=\"Multiple\">"
                                         "<F Name=\"fid\" IdentityValue=\"fid\"/></R></A></T>");
        return program.run({"export", "--map", "data.gpkg", "control.xml", "out.xml"});
    };
    const auto spared = write("towns");
    EXPECT_EQ(spared.lExitCode, 0);
    EXPECT_EQ(spared.sErr, "");
    EXPECT_EQ(spared.sOut, "Wrote " + program.file("out.xml") + " (1 item)\n");
    EXPECT_THAT(program.read("out.xml").value(), HasSubstr("<fid>1</fid>"));
    const auto reached = write("broken");
    EXPECT_EQ(reached.lExitCode, 3);
    EXPECT_EQ(reached.sErr, "control.xml:3: error: \"R\": \"" + program.file("data.gpkg") +
                                "\": SQLite cannot parse the definition of \"broken\": near \".\": syntax "
                                "error (error 1004)\n"
                                "halvane: 1 control node failed; the document is incomplete\n");
    EXPECT_EQ(reached.sOut, "Wrote " + program.file("out.xml") + " (0 items)\n");
}

TEST_F(Failures, OfOneNodeAreCounted) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      )" + failingLeaf("Zone") + "</E></L></T>");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (3 items)\n");
    EXPECT_EQ(result.sErr, std::string("control.xml:4: error: \"Zone\": ") + sNoProcessor +
                               " (3 times)\nhalvane: 1 control node failed; the document is incomplete\n");
}

TEST_F(Failures, OfOneLeafAreCountedOnceThoughItsSourceIsAskedForTwice) {
    program.write("control.xml", "<T Name=\"T\">\n<L Name=\"L\" DataSource=\"FeatureLayer\" "
                                 "Identity=\"LayerName\" IdentityValue=\"towns\"/></T>");
    const auto result = program.run({"export", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr, StartsWith("control.xml:2: error: \"L\": there is no workspace"));
    EXPECT_THAT(result.sErr, ::testing::Not(HasSubstr("times")));
}

TEST_F(Failures, OfAttributesWithOneNameAreErrorsOfTheLaterNode) {
    program.write("control.xml", "<T Name=\"T\">\n<A Name=\"a\" Target=\"Attribute\"/>\n"
                                 "<A Name=\"a\" Target=\"Attribute\" DataSource=\"Time\"/></T>");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(
        result.sErr,
        "control.xml:3: error: \"a\": another node writes the attribute \"a\" of the same element, too; "
        "only the value written last stays (error 457)\n"
        "halvane: 1 control node failed; the document is incomplete\n");
}

TEST_F(Failures, AreListedInTheOrderOfTheControlFile) {
    program.write("control.xml",
                  "<T Name=\"T\">" + failingLeaf("b") + failingLeaf("a") + "\n" + failingLeaf("c") + "</T>");
    const auto result = program.run({"export", "--quiet", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sErr, std::string("control.xml:1: error: \"b\": ") + sNoProcessor +
                               "\ncontrol.xml:1: error: \"a\": " + sNoProcessor +
                               "\ncontrol.xml:2: error: \"c\": " + sNoProcessor + "\n");
}

TEST_F(Failures, AreToldEvenWhenQuietButNothingElseIs) {
    program.write("control.xml", "<T Name=\"T\">" + failingLeaf("Zone") +
                                     "<L Name=\"L\" DataSource=\"MapLayer\" Identity=\"LayerName\" "
                                     "IdentityValue=\"none\" DataProperty=\"LayerName\"/></T>");
    const auto result =
        program.run({"export", "--quiet", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, std::string("control.xml:1: error: \"Zone\": ") + sNoProcessor + "\n");
}

TEST_F(Failures, AreCutAfterFiftyLines) {
    std::string sControl = "<T Name=\"T\">\n";
    for (int i = 0; i < 60; ++i)
        sControl += failingLeaf("X" + std::to_string(i)) + "\n";
    program.write("control.xml", sControl + "</T>");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr, HasSubstr("\ncontrol.xml:51: error: \"X49\": "));
    EXPECT_THAT(result.sErr, Not(HasSubstr("\"X50\"")));
    EXPECT_THAT(result.sErr,
                HasSubstr("\ncontrol.xml: 10 errors more; --report lists all\nhalvane: 60 control "
                          "nodes failed; the document is incomplete\n"));
}

TEST_F(Failures, EndARepeatedNodeAtTheItemLimit) {
    const auto result =
        program.run({"export", "--item-limit", "1", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (2 items)\n");
    EXPECT_EQ(result.sErr,
              "control.xml:3: error: \"Town\": Overflow: more items than the limit allows (error 6); raise "
              "--item-limit\nhalvane: 1 control node failed; the document is incomplete\n");
    EXPECT_EQ(
        document("out.xml"),
        "<Map>\r\n<Towns>\r\n<Town>\r\n<Name>Abdera</Name>\r\n</Town>\r\n<Town>\r\n<Name>Byblos</Name>\r\n"
        "</Town>\r\n</Towns>\r\n</Map>");
}

TEST_F(Failures, DoNotBringControlCharactersToTheTerminal) {
    program.write("control.xml", "<T Name=\"T\"><X Name=\"x\" DataSource=\"External\" "
                                 "IdentityValue=\"a&#10;b&#9;c&#127;d\"/></T>");
    const auto result = program.run({"export", "--quiet", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_THAT(result.sErr,
                StartsWith("control.xml:1: error: \"x\": The component \"a b c\\u007Fd\" cannot"));
}

TEST_F(Failures, TellWhyATableOfTheMapCannotBeFound) {
    program.write("map.xml", R"(<MapDocument><Map name="M"><Table source="none.csv"/></Map></MapDocument>)");
    program.write("control.xml", R"(<T Name="Map">
  <R Name="None" DataSource="Table" Identity="TableName" IdentityValue="none"/></T>)");
    const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sErr, "control.xml:2: error: \"None\": " + program.file("map.xml") +
                               ", line 1: There is no file or folder \"" + program.file("none.csv") +
                               "\" (error 53)\n"
                               "halvane: 1 control node failed; the document is incomplete\n");
}

TEST_F(Failures, TellAClauseThatTheDataRejectsAndWhereItIsWritten) {
    program.write("control.xml", sTownsControl);
    const auto expectPlace = [&](const std::string& sLayer, const char* sLine, const char* sWhere) {
        program.write("map.xml", "<MapDocument><Map name=\"M\">\n" + sLayer + "</Map></MapDocument>");
        const auto result = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
        EXPECT_EQ(result.lExitCode, 3);
        EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (0 items)\n");
        EXPECT_THAT(result.sErr,
                    StartsWith("control.xml:3: error: \"Town\": " + program.file("map.xml") + ", line " +
                               sLine + ": The filter \"" + sWhere + "\" is not valid for \"towns\": "));
        EXPECT_THAT(result.sErr, Not(HasSubstr("map.xml, line 2: " + program.file("map.xml"))));
    };
    expectPlace(R"(<FeatureLayer name="towns" source="towns.geojson" filter="PEOPLE > 5"/>)", "2",
                "PEOPLE > 5");
    expectPlace(R"(<FeatureLayer name="towns" source="towns.geojson">
        <Selection where="PEOPLE > 5"/></FeatureLayer>)",
                "3", "PEOPLE > 5");
    expectPlace(R"(<FeatureLayer name="towns" source="towns.geojson" filter="PEOPLE > 5">
        <Selection where="POP > 5"/></FeatureLayer>)",
                "2", "PEOPLE > 5");
}

} // namespace halvane::test
