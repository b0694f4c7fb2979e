#include "cli/Samples.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

namespace {

const std::vector<std::string> aSubcommands{"export", "check",  "preview", "describe",
                                            "init",   "schema", "dialog",  "help"};

void expectRefused(const std::vector<std::string>& arguments, const std::string& sErr) {
    const auto result = Program().run(arguments);
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, sErr);
}

class Verbosity : public ExportFixture {};

} // namespace

TEST(Help, IsThatOfTheProgram) {
    const auto result = Program().run({"help"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.sOut, Program().run({"--help"}).sOut);
    EXPECT_THAT(result.sOut, HasSubstr("\"halvane help SUBCOMMAND\" explains"));
}

TEST(Help, IsThatOfASubcommand) {
    for (const auto& sSubcommand : aSubcommands) {
        const auto result = Program().run({"help", sSubcommand});
        EXPECT_EQ(result.lExitCode, 0) << sSubcommand;
        EXPECT_EQ(result.sErr, "");
        EXPECT_EQ(result.sOut, Program().run({sSubcommand, "--help"}).sOut);
        EXPECT_THAT(result.sOut, HasSubstr("halvane " + sSubcommand + " ")) << sSubcommand;
    }
}

TEST(Help, IsNotThereForWhatTheProgramCannotDo) {
    expectRefused(
        {"help", "exprt"},
        "halvane: there is no subcommand \"exprt\"; did you mean \"export\"?\nSee: halvane --help\n");
}

TEST(MistypedSubcommand, BringsTheNearestOne) {
    expectRefused(
        {"chekc", "control.xml"},
        "halvane: there is no subcommand \"chekc\"; did you mean \"check\"?\nSee: halvane --help\n");
}

TEST(MistypedOption, BringsTheNearestOne) {
    expectRefused({"export", "--mpa", "control.xml", "out.xml"},
                  "halvane: The following argument was not expected: --mpa; did you mean \"--map\"?\n"
                  "See: halvane export --help\n");
    expectRefused({"describe", "x.gpkg", "--jsn=1"},
                  "halvane: The following argument was not expected: --jsn=1; did you mean \"--json\"?\n"
                  "See: halvane describe --help\n");
    expectRefused({"--verson"},
                  "halvane: The following argument was not expected: --verson; did you mean \"--version\"?\n"
                  "See: halvane --help\n");
}

TEST(Version, HasAShortName) {
    const auto result = Program().run({"-V"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, "halvane " HALVANE_VERSION "\n");
    EXPECT_EQ(result.sErr, "");
}

TEST_F(Verbosity, IsKnownToAllThatWriteToATerminal) {
    for (const auto& sSubcommand : {"export", "check", "preview", "describe", "init"}) {
        const auto result = program.run({sSubcommand, "--help"});
        EXPECT_THAT(result.sOut, HasSubstr("  -q,--quiet ")) << sSubcommand;
        EXPECT_THAT(result.sOut, HasSubstr("  --verbose ")) << sSubcommand;
    }
}

TEST_F(Verbosity, OfTheShortNameIsNone) {
    const auto result = program.run({"export", "-q", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(program.run({"init", "-q", "towns.geojson", "-o", "new.xml"}).sOut, "");
}

TEST_F(Verbosity, TellsWhatWasReadAndHowLongItTook) {
    const auto result =
        program.run({"export", "--verbose", "--map", "towns.geojson", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (3 items)\n");
    EXPECT_THAT(result.sErr, MatchesRegex("halvane: read \"[^\n]*/control.xml\"\n"
                                          "halvane: read \"[^\n]*/towns.geojson\"\n"
                                          "halvane: took [0-9]+[.][0-9]{3} s\n"));
    for (const auto& sSubcommand : {"describe", "init"})
        EXPECT_THAT(program.run({sSubcommand, "--verbose", "towns.geojson"}).sErr,
                    MatchesRegex("halvane: took [0-9]+[.][0-9]{3} s\n"));
}

TEST_F(Verbosity, OfAListTellsWhyAnExportRuns) {
    program.write("list", "map,control,output\ntowns.geojson,control.xml,a.xml\n");
    EXPECT_THAT(program.run({"export", "--jobs", "list", "--resume", "--verbose"}).sErr,
                HasSubstr("list:2: runs, since it is not known to be done\n"));
    program.write("control.xml", std::string(sTownsControl) + "\n");
    EXPECT_THAT(program.run({"export", "--jobs", "list", "--resume", "--verbose"}).sErr,
                HasSubstr("list:2: runs, since \"" + program.file("control.xml") + "\" has changed\n"));
}

TEST(Quiet, AndVerboseContradictEachOther) {
    expectRefused({"describe", "-q", "--verbose", "x.gpkg"},
                  "halvane: --quiet excludes --verbose\nSee: halvane describe --help\n");
}

} // namespace halvane::test
