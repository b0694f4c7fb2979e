#include "cli/Samples.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <ogrsf_frmts.h>

namespace halvane::test {

using ::testing::MatchesRegex;

namespace {

/// An export of three towns that takes about a second.
class Progress : public ExportFixture {
protected:
    [[nodiscard]] RunResult runSlowly(std::vector<std::string> options, const RunSettings& settings) const {
        program.write("control.xml", controlWithProcessor("Test.Slow"));
        return runWith(std::move(options), settings);
    }
    [[nodiscard]] RunResult runWith(std::vector<std::string> options, const RunSettings& settings) const {
        std::vector<std::string> arguments{"export", "--processor", HALVANE_PROCESSORS, "--map",
                                           "towns.geojson"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), {"control.xml", "out.xml"});
        const auto result = program.run(arguments, settings);
        EXPECT_EQ(result.lExitCode, 0) << result.sErr;
        return result;
    }

    RunSettings onTerminal{{{"TERM", "xterm"}}, {}, true};
};

} // namespace

TEST_F(Progress, IsOneLineOnATerminalThatIsWipedAtTheEnd) {
    const auto result = runSlowly({}, onTerminal);
    EXPECT_THAT(result.sErr, MatchesRegex("(\r[12] items?, [0-9]+[.][0-9] s\x1B\\[K)*"
                                          "\r3 items, [0-9]+[.][0-9] s\x1B\\[K\r\x1B\\[K"));
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (3 items)\n");
}

TEST_F(Progress, IsNotShownForAShortExport) {
    EXPECT_EQ(runWith({}, onTerminal).sErr, "");
}

TEST_F(Progress, IsNotShownWhereThereIsNoTerminal) {
    EXPECT_EQ(runSlowly({"--progress", "auto"}, {}).sErr, "");
}

TEST_F(Progress, IsNotShownOnATerminalThatCannotRewriteALine) {
    EXPECT_EQ(runSlowly({}, {{{"TERM", "dumb"}}, {}, true}).sErr, "");
}

TEST_F(Progress, ForProgramsIsALineAtLeast) {
    const auto result = runWith({"--progress", "json", "--quiet"}, {});
    const auto line = nlohmann::json::parse(result.sErr);
    EXPECT_EQ(line["event"], "progress");
    EXPECT_EQ(line["items"], 3);
}

TEST_F(Progress, TellsTheRowsOfAFileThatSaysHowManyItHas) {
    GDALAllRegister();
    const auto pTowns =
        GDALDatasetUniquePtr(GDALDataset::Open(program.file("towns.geojson").c_str(), GDAL_OF_VECTOR));
    auto* const pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
    {
        const auto pCopy = GDALDatasetUniquePtr(
            pDriver->Create(program.file("towns.gpkg").c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        ASSERT_NE(pCopy->CopyLayer(pTowns->GetLayer(0), "towns"), nullptr);
    }
    program.write("control.xml", controlWithProcessor("Test.Slow"));
    const auto result = program.run({"export", "--processor", HALVANE_PROCESSORS, "--map", "towns.gpkg",
                                     "--progress", "json", "control.xml", "out.xml"});
    const auto line = nlohmann::json::parse(result.sErr.substr(0, result.sErr.find('\n')));
    EXPECT_EQ(line["of"], "towns");
    EXPECT_EQ(line["all"], 3);
    EXPECT_GE(line["done"], 1);
}

TEST_F(Progress, IsOfAListOnATerminalToo) {
    program.write("list", "map,control,output\ntowns.geojson,control.xml,a.xml\n");
    program.write("control.xml", controlWithProcessor("Test.Slow"));
    const auto result =
        program.run({"export", "--jobs", "list", "--processor", HALVANE_PROCESSORS}, onTerminal);
    EXPECT_EQ(result.sErr, "\r[####################] 100 %, 1 of 1 exports\x1B[K\r\x1B[K");
}

TEST_F(Progress, IsNotShownWhenItIsNotWanted) {
    EXPECT_EQ(runSlowly({"--progress", "never"}, onTerminal).sErr, "");
    EXPECT_EQ(runSlowly({"--quiet"}, onTerminal).sErr, "");
}

} // namespace halvane::test
