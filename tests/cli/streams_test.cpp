#include "cli/Samples.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace halvane::test {

namespace {

class StandardStreams : public ExportFixture {
protected:
    [[nodiscard]] RunResult exportTowns(const RunSettings& settings) const {
        return program.run(
            {"export", "--map", "towns.geojson", "--report", "report.json", "control.xml", "out.xml"},
            settings);
    }

    void expectWrittenWithReport() const {
        EXPECT_EQ(document("out.xml"), sTownsDocument);
        const auto report = nlohmann::json::parse(program.read("report.json").value_or(""));
        EXPECT_EQ(report.at("outcome"), "written");
        EXPECT_EQ(program.names(),
                  (std::vector<std::string>{"control.xml", "out.xml", "report.json", "towns.geojson"}));
    }
};

RunSettings without(std::vector<int> descriptors) {
    RunSettings settings;
    settings.closed = std::move(descriptors);
    return settings;
}

RunSettings withoutReader() {
    RunSettings settings;
    settings.bReaderGone = true;
    return settings;
}

} // namespace

TEST_F(StandardStreams, MayLoseTheirReaderBeforeTheEnd) {
    const auto result = exportTowns(withoutReader());
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
    expectWrittenWithReport();
}

TEST_F(StandardStreams, OfADescriptionMayLoseTheirReader) {
    const auto result = program.run({"describe", "towns.geojson"}, withoutReader());
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
}

TEST_F(StandardStreams, ThatAreClosedLeaveTheReportWhole) {
    for (const auto& closed : {std::vector{1}, std::vector{2}, std::vector{1, 2}, std::vector{0, 1, 2}}) {
        const auto result = exportTowns(without(closed));
        EXPECT_EQ(result.lExitCode, 0) << closed.size();
        EXPECT_EQ(result.sErr, "");
        expectWrittenWithReport();
    }
}

TEST_F(StandardStreams, ThatAreClosedLeaveRefusalsTheirExitCode) {
    EXPECT_EQ(program.run({"export", "--no-such"}, without({0, 1, 2})).lExitCode, 2);
    EXPECT_EQ(program.run({"describe", "towns.geojson"}, without({0, 1, 2})).lExitCode, 0);
}

TEST_F(StandardStreams, AreWrittenToByTheProgramAlone) {
    program.write("control.xml", controlWithProcessor("Test.Chatter"));
    const auto result = program.run({"export", "--map", "towns.geojson", "--processor", HALVANE_PROCESSORS,
                                     "--report", "report.json", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "halvane: warning: a library reports: cannot reach a://u:***@host\n"
                           "halvane: warning: a library reports: \\u001B[2Jodd\n");
    const auto report = nlohmann::json::parse(program.read("report.json").value_or(""));
    EXPECT_EQ(report.at("warnings").at(0), "a library reports: cannot reach a://u:***@host");
}

TEST_F(StandardStreams, TellNoMoreLinesOfLibrariesThanAPersonReads) {
    program.write("control.xml", controlWithProcessor("Test.Flood"));
    const auto result = program.run(
        {"export", "--map", "towns.geojson", "--processor", HALVANE_PROCESSORS, "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_TRUE(result.sErr.starts_with("halvane: warning: a library reports: line 0\n"));
    EXPECT_TRUE(
        result.sErr.ends_with("line 49\nhalvane: warning: a library reports: further lines are left out\n"))
        << result.sErr;
}

TEST_F(StandardStreams, ShowWhatAnArgumentHoldsByNumber) {
    expectRefused({"control.xml", "out.xml", "--map", "a\u202Eb"},
                  "halvane: --map: There is no file or folder \"" + program.file("a\\u202Eb") + "\"\n");
}

TEST_F(StandardStreams, GetNoSteeringCharactersFromJson) {
    const std::string sName = "a\u202E\u2028\u0085\u007Fb.geojson";
    program.write(sName, sTowns);
    const auto described = program.run({"describe", sName, "--json"});
    EXPECT_EQ(described.lExitCode, 0);
    EXPECT_THAT(described.sOut, testing::HasSubstr("a\\u202E\\u2028\\u0085\\u007Fb.geojson\""));
    EXPECT_EQ(nlohmann::json::parse(described.sOut).at("map"), program.file(sName));
    EXPECT_EQ(program.run({"export", "--map", sName, "control.xml", "out.xml", "--report", "report.json"})
                  .lExitCode,
              0);
    const std::string sReport = program.read("report.json").value_or("");
    EXPECT_THAT(sReport, testing::HasSubstr("a\\u202E\\u2028\\u0085\\u007Fb.geojson\""));
    EXPECT_EQ(nlohmann::json::parse(sReport).at("map"), program.file(sName));
}

} // namespace halvane::test
