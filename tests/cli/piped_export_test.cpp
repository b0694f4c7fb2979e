#include "cli/Samples.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

class PipedExport : public ExportFixture {
protected:
    [[nodiscard]] RunResult exportTowns(std::vector<std::string> arguments,
                                        const RunSettings& settings = {}) const {
        arguments.insert(arguments.begin(), {"export", "--map", "towns.geojson"});
        return program.run(arguments, settings);
    }
};

using ExactName = PipedExport;

RunSettings withInput(std::string_view sInput) {
    RunSettings settings;
    settings.sInput = sInput;
    return settings;
}

} // namespace

TEST_F(ExactName, WritesTheDocumentUnderTheNameAsItStands) {
    const auto result = exportTowns({"--exact-name", "control.xml", "towns.gpx"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.sOut, "Wrote " + program.file("towns.gpx") + " (3 items)\n");
    EXPECT_EQ(document("towns.gpx"), sTownsDocument);
    EXPECT_EQ(program.read("towns.gpx.xml"), std::nullopt);
}

TEST_F(ExactName, IsNotAskedForByDefault) {
    EXPECT_EQ(exportTowns({"control.xml", "towns.gpx"}).lExitCode, 0);
    EXPECT_EQ(program.read("towns.gpx"), std::nullopt);
    EXPECT_EQ(document("towns.gpx.xml"), sTownsDocument);
}

TEST_F(ExactName, LeavesWhatStandsUnderTheLongerNameAlone) {
    std::filesystem::create_directory(program.file("towns.gpx.xml"));
    EXPECT_EQ(exportTowns({"--exact-name", "control.xml", "towns.gpx"}).lExitCode, 0);
    EXPECT_EQ(document("towns.gpx"), sTownsDocument);
}

TEST_F(ExactName, NeverReplacesData) {
    expectRefused({"--map", "towns.geojson", "--exact-name", "control.xml", "towns.geojson"},
                  "halvane: OUTPUT: \"" + program.file("towns.geojson") +
                      "\" is the map; give another name\n");
}

TEST_F(ExactName, IsRefusedForStandardOutput) {
    expectRefused({"--exact-name", "control.xml", "-"},
                  "halvane: --exact-name: standard output has no name; leave one of the two out\n");
}

TEST_F(PipedExport, WritesTheDocumentAloneToStandardOutput) {
    const auto before = program.names();
    const auto result = exportTowns({"control.xml", "-"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, sTownsDocument);
    EXPECT_EQ(result.sErr, "halvane: Wrote standard output (3 items)\n");
    EXPECT_EQ(program.names(), before);
}

TEST_F(PipedExport, SaysNothingWhenItIsToBeQuiet) {
    const auto result = exportTowns({"--quiet", "control.xml", "-"});
    EXPECT_EQ(result.sOut, sTownsDocument);
    EXPECT_EQ(result.sErr, "");
}

TEST_F(PipedExport, WritesDocumentsLargerThanMemoryHolds) {
    std::string sRows = "NAME,TEXT\n";
    for (int n = 0; n < 30'000; ++n)
        sRows += "n" + std::to_string(n) + "," + std::string(400, 'x') + "\n";
    program.write("many.csv", sRows);
    program.write("many.xml", R"(<T Name="Map"><G Name="G" DataSource="Table" Identity="TableName"
        IdentityValue="many"><R Name="R" DataSource="Record" Entries="Multiple"><F Name="N" IdentityValue="NAME"/>
        <F Name="T" IdentityValue="TEXT"/></R></G></T>)");
    const auto toFile = program.run({"export", "--map", "many.csv", "many.xml", "file.xml"});
    const auto toStream = program.run({"export", "--map", "many.csv", "many.xml", "-"});
    EXPECT_EQ(toFile.lExitCode, 0);
    EXPECT_EQ(toStream.lExitCode, 0);
    EXPECT_GT(toStream.sOut.size(), 12U << 20U);
    EXPECT_TRUE(toStream.sOut == program.read("file.xml"));
}

TEST_F(PipedExport, WritesNothingWhenThereIsNoDocument) {
    program.write("control.xml", R"(<T Name="Map"/>)");
    const auto result = exportTowns({"control.xml", "-"});
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: nothing was written to \"standard output\": the control file's root has "
                           "no children\n");
}

TEST_F(PipedExport, WritesNothingWhenItIsCancelled) {
    program.write("control.xml", controlWithProcessor("Test.Terminate"));
    const auto result = exportTowns({"--processor", HALVANE_PROCESSORS, "control.xml", "-"});
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: nothing was written to \"standard output\": cancelled\n");
}

TEST_F(PipedExport, KeepsWhatLibrariesPrintOutOfTheDocument) {
    program.write("control.xml", controlWithProcessor("Test.Talker"));
    const auto result = exportTowns({"--processor", HALVANE_PROCESSORS, "control.xml", "-"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_THAT(result.sOut, StartsWith("<Map>\r\n"));
    EXPECT_TRUE(result.sOut.ends_with("</Map>")) << result.sOut;
    EXPECT_EQ(result.sOut.find("by the way"), std::string::npos);
    EXPECT_EQ(result.sErr, "halvane: warning: a library reports: by the way\n"
                           "halvane: Wrote standard output (3 items)\n");
}

TEST_F(PipedExport, MindsNoReaderWhoHasGoneAway) {
    RunSettings settings;
    settings.bReaderGone = true;
    const auto result = exportTowns({"--report", "report.json", "control.xml", "-"}, settings);
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "halvane: Wrote standard output (3 items)\n");
    const auto report = nlohmann::json::parse(program.read("report.json").value_or(""));
    EXPECT_EQ(report.at("document"), "standard output");
    EXPECT_EQ(report.at("outcome"), "written");
}

TEST_F(PipedExport, SaysThatWhatADeviceTookIsNotTheWholeDocument) {
    RunSettings settings;
    settings.sOutputFile = "/dev/full";
    const auto result = exportTowns({"control.xml", "-"}, settings);
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_THAT(result.sErr, StartsWith("halvane: what was written is not the whole document: standard "
                                        "output: No space left on device"));
}

TEST_F(PipedExport, IsRefusedWhereStandardOutputLeadsToData) {
    RunSettings settings;
    settings.sOutputFile = program.file("towns.geojson");
    const auto result = exportTowns({"control.xml", "-"}, settings);
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sErr,
              "halvane: OUTPUT: \"" + program.file("towns.geojson") + "\" is the map; give another name\n");
    EXPECT_EQ(program.read("towns.geojson"), sTowns);
}

TEST_F(PipedExport, SharesStandardOutputWithNoReport) {
    const auto result = exportTowns({"--report", "/dev/stdout", "control.xml", "-"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: --report: \"/dev/stdout\" is standard output, where the document goes; "
                           "give another name\n");
}

TEST_F(PipedExport, ReadsTheControlFileFromStandardInput) {
    const auto result = exportTowns({"-", "new.xml"}, withInput(sTownsControl));
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(document("new.xml"), sTownsDocument);
}

TEST_F(PipedExport, GoesFromStandardInputToStandardOutput) {
    const auto result = exportTowns({"--report", "report.json", "-", "-"}, withInput(sTownsControl));
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, sTownsDocument);
    const auto report = nlohmann::json::parse(program.read("report.json").value_or(""));
    EXPECT_EQ(report.at("control"), "standard input");
}

TEST_F(PipedExport, HeedsTheEncodingThatTheControlFileDeclares) {
    const auto result =
        exportTowns({"-", "new.xml"}, withInput("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
                                                "<T Name=\"M\xE4p\"><F Name=\"A\"/></T>"));
    EXPECT_EQ(result.lExitCode, 0) << result.sErr;
    EXPECT_THAT(program.read("new.xml").value_or(""), StartsWith("<M\u00E4p>"));
}

TEST_F(PipedExport, TellsLinesOfStandardInput) {
    const auto refused = exportTowns({"-", "out.xml"}, withInput("<T Name=\"Map\">\n  <F/>\n</T>"));
    EXPECT_EQ(refused.lExitCode, 2);
    EXPECT_EQ(refused.sErr, "halvane: standard input:2: <F> has no Name; add Name=\"…\", the name of what it "
                            "writes\n");
    const auto broken = exportTowns({"-", "out.xml"}, withInput("<T Name=\"Map\">\n"));
    EXPECT_EQ(broken.lExitCode, 2);
    EXPECT_THAT(broken.sErr, StartsWith("halvane: standard input:2:1: "));
    const auto noted = exportTowns(
        {"-", "new.xml"}, withInput("<T Name=\"Map\">\n<L Name=\"L\" DataSource=\"MapLayer\" "
                                    "Identity=\"LayerName\" IdentityValue=\"town\"><F Name=\"F\"/></L></T>"));
    EXPECT_EQ(noted.lExitCode, 0);
    EXPECT_THAT(noted.sErr, StartsWith("standard input:2: note: \"L\": no MapLayer"));
    EXPECT_EQ(document("out.xml"), "<Old/>");
}

TEST_F(PipedExport, TakesPartsOfStandardInputFromTheCurrentFolder) {
    program.write("part.xml", R"(<P Name="Part" xmlns:h="urn:halvane:control:2" h:Text="here"/>)");
    const auto result =
        exportTowns({"-", "new.xml"}, withInput("<T Name=\"Map\" xmlns:h=\"urn:halvane:control:2\">"
                                                "<P h:Include=\"part.xml\"/></T>"));
    EXPECT_EQ(result.lExitCode, 0) << result.sErr;
    EXPECT_THAT(program.read("new.xml").value_or(""), HasSubstr("<Part>here</Part>"));
}

TEST_F(PipedExport, RefusesMoreInputThanAControlFileMayHave) {
    program.write("large.xml",
                  "<T Name=\"Map\"><!--" + std::string(65U << 20U, 'x') + "--><F Name=\"A\"/></T>");
    RunSettings settings;
    settings.sInputFile = program.file("large.xml");
    const auto result = exportTowns({"-", "out.xml"}, settings);
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sErr, "halvane: standard input: the text is larger than the largest document\n");
}

TEST_F(PipedExport, TakesAFileOfThatNameByItsPath) {
    program.write("-", sTownsControl);
    EXPECT_EQ(exportTowns({"./-", "new.xml"}).lExitCode, 0);
    EXPECT_EQ(document("new.xml"), sTownsDocument);
}

} // namespace halvane::test
