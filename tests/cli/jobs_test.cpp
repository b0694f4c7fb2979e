#include "cli/Samples.h"
#include "cli/SchemaCheck.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace halvane::test {

using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Jobs : public ExportFixture {
protected:
    [[nodiscard]] RunResult runList(std::string_view sList, std::vector<std::string> options = {}) const {
        program.write("list", sList);
        options.insert(options.begin(), {"export", "--jobs", "list"});
        return program.run(options);
    }

    /// Runs a list with a report, which keeps to its schema.
    [[nodiscard]] json report(std::string_view sList, std::vector<std::string> options, int lExitCode) const {
        options.insert(options.end(), {"--report", "report.json"});
        const auto result = runList(sList, options);
        EXPECT_EQ(result.lExitCode, lExitCode) << result.sErr;
        const auto value = json::parse(program.read("report.json").value_or("null"));
        const auto schema = json::parse(std::ifstream(HALVANE_SOURCE_DIR "/docs/jobs-report.schema.json"));
        EXPECT_THAT(breaches(schema, value), IsEmpty());
        EXPECT_EQ(value["exitCode"], lExitCode);
        return value;
    }

    static std::vector<std::string> outcomes(const json& report) {
        std::vector<std::string> all;
        for (const auto& job : report["jobs"])
            all.push_back(job["outcome"]);
        return all;
    }

    void expectListRefused(std::string_view sList, const std::string& sErr) const {
        const auto result = runList(sList);
        EXPECT_EQ(result.sErr, sErr);
        EXPECT_EQ(result.lExitCode, 2);
        EXPECT_EQ(result.sOut, "");
        EXPECT_THAT(program.names(), ElementsAre("control.xml", "list", "out.xml", "towns.geojson"));
        EXPECT_EQ(program.read("out.xml"), "<Old/>");
    }

    void writeProcessorControl(const std::string& sProgId) const {
        program.write("signals.xml", controlWithProcessor(sProgId));
    }

    static std::string processorLine(std::string_view sControl, std::string_view sOutput) {
        return json{{"map", "towns.geojson"},
                    {"control", sControl},
                    {"output", sOutput},
                    {"options", {"--processor", HALVANE_PROCESSORS}}}
                   .dump() +
               "\n";
    }

    std::vector<std::string> oneByOne{"--processes", "1"};
    const std::string sTwo = "map,control,output\n"
                             "towns.geojson,control.xml,a.xml\n"
                             "towns.geojson,control.xml,b.xml\n";
};

std::vector<std::string> sortedLines(const std::string& sText) {
    std::vector<std::string> lines;
    std::istringstream stream(sText);
    for (std::string sLine; std::getline(stream, sLine);)
        lines.push_back(sLine);
    std::ranges::sort(lines);
    return lines;
}

} // namespace

TEST_F(Jobs, OfACsvFileAreExported) {
    const auto result = runList(
        "output;control;options;map\r\n"
        "a.xml;control.xml;;towns.geojson\r\n"
        "\r\n"
        "\"b;2\";control.xml;\"--select \"\"towns=NAME = 'Byblos'\"\" --exact-name\";towns.geojson\r\n",
        oneByOne);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.sOut, "list:2: Wrote " + program.file("a.xml") + " (3 items)\n" + "list:4: Wrote " +
                               program.file("b;2") + " (1 item)\n" + "2 exports: 2 written\n");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(document("a.xml"), sTownsDocument);
    EXPECT_THAT(document("b;2"), HasSubstr("<Name>Byblos</Name>"));
}

TEST_F(Jobs, OfJsonLinesAreExported) {
    const auto result = runList(R"({"map": "towns.geojson", "control": "control.xml", "output": "a.xml"}

{"control": "control.xml", "output": "b.xml", "options": ["--map", "towns.geojson", "--select", "towns=1,2"]}
)",
                                oneByOne);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.sOut, "list:1: Wrote " + program.file("a.xml") + " (3 items)\n" + "list:3: Wrote " +
                               program.file("b.xml") + " (2 items)\n" + "2 exports: 2 written\n");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(Jobs, SideBySideAreAllExported) {
    std::string sList = "map,control,output\n";
    std::vector<std::string> expected{"40 exports: 40 written"};
    for (int i = 0; i < 40; ++i) {
        const std::string sOutput = "out" + std::to_string(i) + ".xml";
        sList += "towns.geojson,control.xml," + sOutput + "\n";
        expected.push_back("list:" + std::to_string(i + 2) + ": Wrote " + program.file(sOutput) +
                           " (3 items)");
    }
    std::ranges::sort(expected);
    const auto result = runList(sList, {"--processes", "7"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(sortedLines(result.sOut), expected);
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(document("out" + std::to_string(i) + ".xml"), sTownsDocument);
}

TEST_F(Jobs, TakeTheOptionsOfTheCommandLineToo) {
    program.write("control.xml", R"(<T xmlns:h="urn:halvane:control:2" Name="Map">
<A Name="A" h:Text="{$one} {$two} {$three}"/></T>)");
    const auto result =
        runList(R"({"control": "control.xml", "output": "a", "options": ["--set", "three=3"]})",
                {"--set", "one=1", "--set", "two=-- 2 'x'", "--exact-name"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_THAT(document("a"), HasSubstr("<A>1 -- 2 'x' 3</A>"));
}

TEST_F(Jobs, ThatFailStopNoOther) {
    writeProcessorControl("Test.InterruptTwice");
    program.write("empty.xml", "<T Name=\"T\"/>");
    program.write("part.xml", controlWithProcessor("Test.Missing"));
    const std::string sList =
        "{\"control\": \"none.xml\", \"output\": \"a.xml\"}\n"
        "{\"control\": \"empty.xml\", \"output\": \"b.xml\"}\n" +
        processorLine("signals.xml", "c.xml") +
        "{\"map\": \"towns.geojson\", \"control\": \"part.xml\", \"output\": \"d.xml\"}\n" +
        processorLine("control.xml", "e.xml");
    const auto value = report(sList, oneByOne, 4);
    EXPECT_THAT(outcomes(value), ElementsAre("refused", "not written", "crashed", "incomplete", "written"));
    EXPECT_EQ(value["jobs"][2]["reason"], "the export was ended by signal 2 (Interrupt)");
    EXPECT_EQ(value["jobs"][4]["report"]["items"], 3);
    const auto result = runList(sList, oneByOne);
    EXPECT_EQ(result.sOut, "list:4: Wrote " + program.file("d.xml") + " (3 items)\n" + "list:5: Wrote " +
                               program.file("e.xml") + " (3 items)\n" +
                               "5 exports: 1 written, 1 incomplete, 1 refused, 1 not written, 1 crashed\n");
    EXPECT_THAT(result.sErr, HasSubstr("list:1: halvane: none.xml: there is no such file\n"));
    EXPECT_THAT(result.sErr, HasSubstr("list:3: halvane: the export was ended by signal 2 (Interrupt)\n"));
    EXPECT_THAT(result.sErr, HasSubstr("list:4: part.xml:4: error: "));
}

TEST_F(Jobs, OfWhichOneIsIncompleteEndWithThat) {
    program.write("part.xml", controlWithProcessor("Test.Missing"));
    const auto value = report("map,control,output\n"
                              "towns.geojson,part.xml,a.xml\n"
                              "towns.geojson,control.xml,b.xml\n",
                              {}, 3);
    EXPECT_THAT(outcomes(value), ElementsAre("incomplete", "written"));
}

TEST_F(Jobs, TellFailuresAloneWhereThatIsWanted) {
    const auto result = runList(sTwo + "none.gpkg,control.xml,c.xml\n", {"--quiet"});
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr,
              "list:4: halvane: --map: There is no file or folder \"" + program.file("none.gpkg") + "\"\n");
    EXPECT_EQ(result.lExitCode, 4);
}

TEST_F(Jobs, ThatCannotBeReadAreToldWithTheirLines) {
    expectListRefused(
        R"({"control": "control.xml", "output": "a.xml", "options": ["--bogus"]}
{"controll": "control.xml", "output": "b.xml"}
{"output": "c.xml"}
{"control": "control.xml", "output": 4}
{"control": "control.xml", "output": "d.xml", "options": "--exact-name"}
["control.xml"]
{"control": "control.xml", "output": "e.xml", "options": ["--report", "e.json"]}
{"control": "control.xml", "output": "-"}
)",
        "halvane: list:1: The following argument was not expected: --bogus\n"
        "halvane: list:2: \"controll\" is not known; there are map, control, output and "
        "options; did you mean \"control\"?\n"
        "halvane: list:3: the control file is missing\n"
        "halvane: list:4: \"output\" is not a text\n"
        "halvane: list:5: \"options\" is not a list of texts\n"
        "halvane: list:6: this is not a JSON object on a line of its own\n"
        "halvane: list:7: --report is for the whole list, whose report holds that of each "
        "export\n"
        "halvane: list:8: \"-\" is no file; the exports of a list share the standard streams\n");
    expectListRefused("control,output\ncontrol.xml,a.xml,more\n,b.xml\ncontrol.xml,\n\"control.xml,c.xml\n",
                      "halvane: list:2: there are 3 values for 2 columns; quote a value that holds a "
                      "separator\n"
                      "halvane: list:3: the control file is missing\n"
                      "halvane: list:4: the output is missing\n"
                      "halvane: list:5: a quote is left open\n");
    expectListRefused("map,output\n", "halvane: list:1: the first line names no column \"control\"\n");
    expectListRefused("control,output\n", "halvane: list: the list has no export\n");
    expectListRefused(" \n", "halvane: list: the list is empty\n");
}

TEST_F(Jobs, ThatWouldWriteOrReadEachOthersFilesAreRefused) {
    std::filesystem::create_symlink(".", program.file("link"));
    program.write("list", "");
    const auto result = runList("map,control,output\n"
                                "towns.geojson,control.xml,a\n"
                                "towns.geojson,control.xml,link/a.xml\n"
                                "towns.geojson,a.xml,b.xml\n"
                                "b.xml,control.xml,c.xml\n"
                                "towns.geojson,control.xml,list.state\n"
                                "towns.geojson,control.xml,r.json\n",
                                {"--report", "r.json", "--exact-name"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sErr,
              "halvane: list:4: its control file is the output of line 3; the exports of a list run side by "
              "side\n"
              "halvane: list:5: its map is the output of line 4; the exports of a list run side by side\n"
              "halvane: list:6: the output \"list.state\" is the state of the list; give another name\n"
              "halvane: list:7: the output \"r.json\" is the report; give another name\n");
    EXPECT_EQ(runList("map,control,output\n"
                      "towns.geojson,control.xml,a\n"
                      "towns.geojson,control.xml,link/a.xml\n")
                  .sErr,
              "halvane: list:3: the output \"link/a.xml\" is the output of line 2; give another name\n");
    EXPECT_THAT(program.names(), ElementsAre("control.xml", "link", "list", "out.xml", "towns.geojson"));
}

TEST_F(Jobs, EndWithTheListAndLeaveNothingBehind) {
    writeProcessorControl("Test.EndsParent");
    const std::string sList = processorLine("control.xml", "a.xml") +
                              processorLine("signals.xml", "out.xml") + processorLine("control.xml", "c.xml");
    const auto value = report(sList, oneByOne, 4);
    EXPECT_THAT(outcomes(value), ElementsAre("written", "cancelled", "not started"));
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
    EXPECT_THAT(program.names(), ElementsAre("a.xml", "control.xml", "list", "list.state", "out.xml",
                                             "report.json", "signals.xml", "towns.geojson"));
}

TEST_F(Jobs, AreAskedToEndWhenASignalCameToAllAlready) {
    writeProcessorControl("Test.EndsParentAndItself");
    const auto value = report(processorLine("signals.xml", "out.xml"), oneByOne, 4);
    EXPECT_THAT(outcomes(value), ElementsAre("cancelled"));
    EXPECT_EQ(value["jobs"][0]["report"]["outcome"], "cancelled");
}

TEST_F(Jobs, ThatAreDoneAndUnchangedAreSkipped) {
    EXPECT_THAT(outcomes(report(sTwo, {}, 0)), ElementsAre("written", "written"));
    const auto result = runList(sTwo + "towns.geojson,control.xml,c.xml\n", {"--resume"});
    EXPECT_EQ(result.sOut,
              "list:4: Wrote " + program.file("c.xml") + " (3 items)\n3 exports: 1 written, 2 skipped\n");
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(Jobs, AreDoneAgainWithoutTheWordToResume) {
    EXPECT_EQ(runList(sTwo).lExitCode, 0);
    EXPECT_THAT(outcomes(report(sTwo, {}, 0)), ElementsAre("written", "written"));
}

TEST_F(Jobs, WhoseDocumentsChangedAreDoneAgain) {
    EXPECT_EQ(runList(sTwo).lExitCode, 0);
    program.write("a.xml", "<Other/>");
    EXPECT_THAT(outcomes(report(sTwo, {"--resume"}, 0)), ElementsAre("written", "skipped"));
    EXPECT_EQ(document("a.xml"), sTownsDocument);
    std::filesystem::remove(program.file("b.xml"));
    EXPECT_THAT(outcomes(report(sTwo, {"--resume"}, 0)), ElementsAre("skipped", "written"));
}

TEST_F(Jobs, WhoseInputsChangedAreDoneAgain) {
    program.write("other.xml", sTownsControl);
    program.write("rivers.csv", sRivers);
    const std::string sList = "map,control,output,options\n"
                              "towns.geojson,control.xml,a.xml,\n"
                              "towns.geojson,other.xml,b.xml,\n"
                              "rivers.csv,other.xml,c.xml,\n";
    EXPECT_EQ(runList(sList).lExitCode, 0);
    program.write("other.xml", std::string(sTownsControl) + "\n");
    EXPECT_THAT(outcomes(report(sList, {"--resume"}, 0)), ElementsAre("skipped", "written", "written"));
    program.write("towns.geojson", std::string(sTowns) + "\n");
    EXPECT_THAT(outcomes(report(sList, {"--resume"}, 0)), ElementsAre("written", "written", "skipped"));
    program.write("rivers.csvt", "String,Integer\n"); // read beside the data
    EXPECT_THAT(outcomes(report(sList, {"--resume"}, 0)), ElementsAre("skipped", "skipped", "written"));
    EXPECT_THAT(outcomes(report(sList, {"--resume", "--item-limit", "100"}, 0)),
                ElementsAre("written", "written", "written"));
}

TEST_F(Jobs, OverAFolderAreDoneAgainWhereAFileInItChanges) {
    std::filesystem::create_directory(program.file("data"));
    program.write("data/towns.geojson", sTowns);
    const std::string sList = "map,control,output\ndata,control.xml,data/a.xml\n";
    EXPECT_EQ(runList(sList).lExitCode, 0);
    EXPECT_THAT(outcomes(report(sList, {"--resume"}, 0)), ElementsAre("skipped"));
    program.write("data/rivers.csv", sRivers);
    EXPECT_THAT(outcomes(report(sList, {"--resume"}, 0)), ElementsAre("written"));
}

TEST_F(Jobs, ThatAreIncompleteOrUseProcessorsAreDoneAgain) {
    program.write("part.xml", controlWithProcessor("Test.Missing"));
    const std::string sList =
        processorLine("control.xml", "a.xml") +
        "{\"map\": \"towns.geojson\", \"control\": \"part.xml\", \"output\": \"b.xml\"}\n";
    EXPECT_EQ(runList(sList).lExitCode, 3);
    EXPECT_THAT(outcomes(report(sList, {"--resume"}, 3)), ElementsAre("written", "incomplete"));
}

TEST_F(Jobs, KeepTheirStateWhereItIsWanted) {
    EXPECT_EQ(runList(sTwo, {"--state", "state.json"}).lExitCode, 0);
    EXPECT_EQ(program.read("list.state"), std::nullopt);
    EXPECT_THAT(outcomes(report(sTwo, {"--state", "state.json", "--resume"}, 0)),
                ElementsAre("skipped", "skipped"));
    const auto result = runList(sTwo, {"--state", "control.xml"});
    EXPECT_EQ(result.sErr, "halvane: list:2: its control file is the state of the list; the exports of a "
                           "list run side by side\n"
                           "halvane: list:3: its control file is the state of the list; the exports of a "
                           "list run side by side\n");
    const auto other = runList(sTwo, {"--state", "out.xml"});
    EXPECT_EQ(other.sErr, "halvane: --state: " + program.file("out.xml") +
                              " is not the state of a list; give another name\n");
    EXPECT_EQ(other.lExitCode, 2);
    EXPECT_EQ(runList(sTwo, {"--state", "none/state"}).lExitCode, 2);
}

TEST_F(Jobs, OfAShardAreThoseAlone) {
    std::string sList = "map,control,output\n";
    for (const char* sOutput : {"a.xml", "b.xml", "c.xml", "d.xml", "e.xml"})
        sList += std::string("towns.geojson,control.xml,") + sOutput + "\n";
    const auto value = report(sList, {"--shard", "2/3"}, 0);
    EXPECT_EQ(value["jobs"].size(), 2);
    EXPECT_EQ(value["jobs"][0]["output"], "b.xml");
    EXPECT_EQ(value["jobs"][1]["output"], "e.xml");
    EXPECT_THAT(program.names(), ElementsAre("b.xml", "control.xml", "e.xml", "list", "list.2-of-3.state",
                                             "out.xml", "report.json", "towns.geojson"));
    EXPECT_EQ(runList(sTwo, {"--shard", "3/3"}).sOut, "0 exports\n");
}

TEST_F(Jobs, HaveOptionsThatOneExportHasNot) {
    const auto expectRefusedWith = [&](std::vector<std::string> arguments, const std::string& sWhy) {
        arguments.insert(arguments.begin(), "export");
        const auto result = program.run(arguments);
        EXPECT_EQ(result.sErr, "halvane: " + sWhy + "\nSee: halvane export --help\n");
        EXPECT_EQ(result.lExitCode, 2);
    };
    expectRefusedWith({"--resume", "control.xml", "a.xml"}, "--resume requires --jobs");
    expectRefusedWith({"--shard", "1/2", "control.xml", "a.xml"}, "--shard requires --jobs");
    expectRefusedWith({"--jobs", "list", "control.xml", "a.xml"}, "CONTROL excludes --jobs");
    for (const char* sShard : {"0/2", "3/2", "2", "1/", "a/b", "1/2/3"})
        expectRefusedWith({"--jobs", "list", "--shard", sShard},
                          std::string("--shard: \"") + sShard +
                              "\" is not I/N, a part of N, as in 1/8 to 8/8");
    expectRefusedWith({"--jobs", "list", "--processes", "0"},
                      "--processes: \"0\" is not a whole number from 1 to 512");
}

} // namespace halvane::test
