#include "cli/Samples.h"
#include "cli/SchemaCheck.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace halvane::test {

using nlohmann::json;
using ::testing::IsEmpty;

namespace {

class Report : public ExportFixture {
protected:
    /// Runs an export with a report, expects the exit code and a report that keeps to the schema; returns it.
    json report(std::vector<std::string> arguments, int lExitCode, const RunSettings& settings = {}) const {
        arguments.insert(arguments.begin(), {"export", "--report", "report.json"});
        const auto result = program.run(arguments, settings);
        EXPECT_EQ(result.lExitCode, lExitCode) << result.sErr;
        const auto value = json::parse(program.read("report.json").value_or("null"));
        EXPECT_THAT(breaches(schema(), value), IsEmpty());
        EXPECT_EQ(value["exitCode"], lExitCode);
        EXPECT_EQ(value["program"], "halvane " HALVANE_VERSION);
        return value;
    }

private:
    static json schema() { return json::parse(std::ifstream(HALVANE_SOURCE_DIR "/docs/report.schema.json")); }
};

} // namespace

TEST_F(Report, TellsOfADocumentWritten) {
    const auto value = report({"--map", "towns.geojson", "control.xml", "out"}, 0);
    EXPECT_EQ(value["outcome"], "written");
    EXPECT_EQ(value["document"], program.file("out.xml"));
    EXPECT_EQ(value["control"], program.file("control.xml"));
    EXPECT_EQ(value["map"], program.file("towns.geojson"));
    EXPECT_EQ(value["items"], 3);
    EXPECT_EQ(value["characterRepairs"], (json{{"dropped", 0}, {"replaced", 0}}));
    EXPECT_GT(value["durationSeconds"], 0);
    for (const char* sList : {"problems", "warnings", "lostShapes", "failures", "notices"})
        EXPECT_EQ(value[sList], json::array()) << sList;
}

TEST_F(Report, TellsWhatWasRead) {
    const auto sources = report({"--map", "towns.geojson", "control.xml", "out"}, 0)["sources"];
    const auto sTownsPath = program.file("towns.geojson");
    EXPECT_EQ(sources, (json{{"files", {program.file("control.xml"), sTownsPath}},
                             {"data", {sTownsPath}},
                             {"elsewhere", false}}));
}

TEST_F(Report, TellsThatMoreWasReadThanFilesHold) {
    const auto sources = report(
        {"--processor", HALVANE_PROCESSORS, "--map", "towns.geojson", "control.xml", "out"}, 0)["sources"];
    EXPECT_EQ(sources["elsewhere"], true);
}

TEST_F(Report, TellsOfDataThatAControlFileOpens) {
    program.write("rivers.csv", sRivers);
    program.write("control.xml", R"(<T Name="T"><W Name="W" DataSource="Table" Identity="TableName"
 IdentityValue="rivers" DataLocation="rivers.csv"><R Name="R" DataSource="Record" Entries="Multiple"/></W></T>)");
    EXPECT_EQ(report({"control.xml", "out"}, 0)["sources"]["data"], json{program.file("rivers.csv")});
}

TEST_F(Report, ListsFailuresAndNotices) {
    program.write("control.xml", R"(<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple">
      <F Name="Na me" IdentityValue="NAM"/>
      <X Name="Zone" DataSource="External" IdentityValue="Acme.Zone"/></E></L></T>)");
    const auto value = report({"--map", "towns.geojson", "control.xml", "out.xml"}, 3);
    EXPECT_EQ(value["outcome"], "incomplete");
    EXPECT_EQ(value["document"], program.file("out.xml"));
    EXPECT_EQ(value["notices"],
              json::array({{{"line", 4},
                            {"element", "F"},
                            {"name", "Name"},
                            {"kind", "FieldNotFound"},
                            {"detail", "NAM"},
                            {"message", "there is no field \"NAM\", so its value is empty; did you "
                                        "mean \"NAME\"? The row has the fields \"OID\", \"NAME\" and "
                                        "\"POP\""},
                            {"count", 3}}}));
    EXPECT_EQ(value["failures"],
              json::array({{{"line", 5},
                            {"element", "X"},
                            {"name", "Zone"},
                            {"number", 429},
                            {"description", "The component \"Acme.Zone\" cannot be created: no "
                                            "processor of that name is registered"},
                            {"message", "The component \"Acme.Zone\" cannot be created: no processor of "
                                        "that name is registered (error 429); check the ProgID in "
                                        "IdentityValue, and load its library with --processor"},
                            {"count", 3}}}));
}

TEST_F(Report, IsNotCutWhereTheListOnTheTerminalIs) {
    std::string sControl = "<T Name=\"T\">\n";
    for (int i = 0; i < 60; ++i)
        sControl += "<X Name=\"x\" DataSource=\"External\" IdentityValue=\"Acme.Zone\"/>\n";
    program.write("control.xml", sControl + "</T>");
    const auto value = report({"control.xml", "out.xml"}, 3);
    ASSERT_EQ(value["failures"].size(), 60);
    EXPECT_EQ(value["failures"][59]["line"], 61);
}

TEST_F(Report, TellsWhyAnInputWasRefused) {
    const auto value = report({"none.xml", "out.xml"}, 2);
    EXPECT_EQ(value["outcome"], "refused");
    EXPECT_EQ(value["document"], nullptr);
    EXPECT_EQ(value["map"], nullptr);
    EXPECT_EQ(value["problems"], json::array({"none.xml: there is no such file"}));
}

TEST_F(Report, TellsWhyNothingWasWritten) {
    program.write("control.xml", "<T Name=\"T\"/>");
    const auto value = report({"control.xml", "out.xml"}, 4);
    EXPECT_EQ(value["outcome"], "not written");
    EXPECT_EQ(value["document"], nullptr);
    EXPECT_EQ(value["problems"], json::array({"the control file's root has no children"}));
}

TEST_F(Report, TellsThatTheExportWasCancelled) {
    program.write("control.xml", controlWithProcessor("Test.Interrupt"));
    const auto value =
        report({"--processor", HALVANE_PROCESSORS, "--map", "towns.geojson", "control.xml", "out.xml"}, 4);
    EXPECT_EQ(value["outcome"], "cancelled");
    EXPECT_EQ(value["problems"], json::array({"cancelled"}));
    EXPECT_EQ(value["items"], 1);
}

TEST_F(Report, KeepsTenMessagesOfANodeAndCountsTheOthers) {
    std::string sRows = "NAME,A\n";
    for (int i = 0; i < 30; ++i)
        sRows += "x,1\n";
    program.write("rows.csv", sRows);
    program.write("control.xml", R"(<T Name="Map">
        <R Name="Row" DataSource="Table" Identity="TableName" IdentityValue="rows" Entries="Multiple">
          <X Name="Value" DataSource="External" IdentityValue="Test.Moody"/></R></T>)");
    const auto value =
        report({"--processor", HALVANE_PROCESSORS, "--map", "rows.csv", "control.xml", "out.xml"}, 3);
    ASSERT_EQ(value["failures"].size(), 11);
    EXPECT_EQ(value["failures"][9]["description"], "mood 10");
    EXPECT_EQ(value["failures"][9]["count"], 1);
    EXPECT_EQ(value["failures"][10]["description"], "further messages that differ");
    EXPECT_EQ(value["failures"][10]["count"], 20);
}

TEST_F(Report, HoldsWhatIsNoUtf8AsReplaced) {
    const auto value = report({"n\xFFne.xml", "out.xml"}, 2);
    EXPECT_EQ(value["problems"], json::array({"n\uFFFDne.xml: there is no such file"}));
}

TEST_F(Report, MasksPasswords) {
    const auto value =
        report({"--map", "PG:host=db password='hunter2 hunter3'", "control.xml", "out.xml"}, 2);
    EXPECT_EQ(value.dump().find("hunter"), std::string::npos);
}

TEST_F(Report, ReplacesAnOlderOneAndLeavesNothingElse) {
    program.write("report.json", std::string(100000, ' '));
    report({"--map", "towns.geojson", "control.xml", "out.xml"}, 0);
    EXPECT_EQ(program.names(),
              (std::vector<std::string>{"control.xml", "out.xml", "report.json", "towns.geojson"}));
}

TEST_F(Report, GoesWhereALinkLeads) {
    program.write("real.json", "");
    std::filesystem::create_symlink("real.json", program.file("report.json"));
    report({"--map", "towns.geojson", "control.xml", "out.xml"}, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(program.file("report.json")));
}

TEST_F(Report, HasTheRightsOfAnOrdinaryFile) {
    const mode_t lMask = ::umask(022);
    report({"--map", "towns.geojson", "control.xml", "out.xml"}, 0);
    ::umask(lMask);
    struct stat status = {};
    ASSERT_EQ(::stat(program.file("report.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST_F(Report, KeepsTheRightsOfTheFileThatItReplaces) {
    report({"--map", "towns.geojson", "control.xml", "out.xml"}, 0);
    ASSERT_EQ(::chmod(program.file("report.json").c_str(), 0600), 0);
    report({"--map", "towns.geojson", "control.xml", "out.xml"}, 0);
    struct stat status = {};
    ASSERT_EQ(::stat(program.file("report.json").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(Report, IsRefusedWhereRightsAreMissingWithWhatToDo) {
    std::filesystem::create_directory(program.file("closed"));
    std::filesystem::permissions(program.file("closed"), static_cast<std::filesystem::perms>(0555));
    RunSettings settings;
    settings.bOrdinaryUser = true;
    const auto result = program.run(
        {"export", "--report", "closed/report.json", "--map", "towns.geojson", "control.xml", "out.xml"},
        settings);
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: --report: " + program.file("closed/report.json") +
                               ": Permission denied; change the rights of the file and its folder, or choose "
                               "another place\n");
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
}

TEST_F(Report, NeverReplacesADevice) {
    const auto result =
        program.run({"export", "--report", "/dev/full", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 3);
    EXPECT_EQ(result.sErr, "halvane: --report: /dev/full: No space left on device\n");
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (3 items)\n");
    EXPECT_FALSE(std::filesystem::is_regular_file("/dev/full"));
}

TEST_F(Report, NeverReplacesAnInputOrTheDocument) {
    const auto expectKept = [&](const std::string& sReport, const std::string& sWhat) {
        expectRefused({"--report", sReport, "--map", "towns.geojson", "control.xml", "out.xml"},
                      "halvane: --report: \"" + program.file(sReport) + "\" is " + sWhat +
                          "; give another name\n");
    };
    expectKept("control.xml", "the control file");
    expectKept("towns.geojson", "the map");
    expectKept("out.xml", "OUTPUT");
    EXPECT_EQ(program.read("control.xml"), sTownsControl);
    EXPECT_EQ(program.read("towns.geojson"), sTowns);
}

TEST_F(Report, NeverReplacesAFileThatIsNoReport) {
    program.write("data.geojson", sTowns);
    expectRefused({"--report", "data.geojson", "control.xml", "out.xml"},
                  "halvane: --report: \"" + program.file("data.geojson") +
                      "\" is a file that is no report of an earlier run; give another name\n");
    EXPECT_EQ(program.read("data.geojson"), sTowns);
}

TEST_F(Report, ReplacesAReportOfAnEarlierRun) {
    report({"--map", "towns.geojson", "control.xml", "first.xml"}, 0);
    // Longer than the next one, which must not end in the rest of it.
    program.write("report.json", *program.read("report.json") + std::string(10000, '\n'));
    const auto value = report({"--map", "towns.geojson", "control.xml", "second.xml"}, 0);
    EXPECT_EQ(value["document"], program.file("second.xml"));
    EXPECT_LT(program.read("report.json")->size(), 10000U);
}

TEST_F(Report, IsNotWhereTheDocumentWillBe) {
    expectRefused({"--report", "new.xml", "--map", "towns.geojson", "control.xml", "new"},
                  "halvane: --report: \"" + program.file("new.xml") + "\" is OUTPUT; give another name\n");
}

} // namespace halvane::test
