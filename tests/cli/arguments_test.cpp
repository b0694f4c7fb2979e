#include "cli/Program.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;

namespace {

struct Refusal {
    std::vector<std::string> arguments;
    std::string sMessage;
};

void expectRefused(const Refusal& refusal) {
    const Program program;
    const auto result = program.run(refusal.arguments);
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: " + refusal.sMessage + "\nSee: halvane export --help\n");
}

} // namespace

TEST(CommandLine, PrintsItsVersion) {
    const auto result = Program().run({"--version"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sOut, "halvane " HALVANE_VERSION "\n");
    EXPECT_EQ(result.sErr, "");
}

TEST(CommandLine, ListsItsSubcommandsInTheHelp) {
    const auto result = Program().run({"--help"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_THAT(result.sOut, HasSubstr("Usage: halvane [OPTIONS] [SUBCOMMAND]\n"));
    EXPECT_THAT(result.sOut,
                HasSubstr("export                      Write the document that a control file prescribes\n"));
    EXPECT_EQ(result.sErr, "");
}

TEST(CommandLine, ExplainsEveryOptionOfAnExportWithExamplesAndExitCodes) {
    const auto result = Program().run({"export", "--help"});
    EXPECT_EQ(result.lExitCode, 0);
    for (const char* sPart :
         {"Usage: halvane export [OPTIONS] CONTROL OUTPUT\n", "--map MAP ", "--xml DOC ",
          "--node-path XPATH ", "--select LAYER=FIDS|WHERE ", "--processor LIBRARY ", "--report FILE.json ",
          "--item-limit N ", "--progress auto|json|never ", "--quiet ", "\nExamples:\n", "\nExit codes:\n"})
        EXPECT_THAT(result.sOut, HasSubstr(sPart));
    EXPECT_EQ(result.sErr, "");
}

TEST(CommandLine, AsksWhatToDoWhenNothingIsSaid) {
    const auto result = Program().run({});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: say what to do: export, check, preview, describe, init, schema, "
                           "dialog or help\nSee: halvane --help\n");
}

TEST(CommandLine, RefusesASubcommandThatDoesNotExist) {
    const auto result = Program().run({"import"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr,
              "halvane: there is no subcommand \"import\"; did you mean \"export\"?\nSee: halvane --help\n");
}

TEST(CommandLine, ListsTheSubcommandsWhereNoneIsNear) {
    EXPECT_EQ(
        Program().run({"frobnicate"}).sErr,
        "halvane: there is no subcommand \"frobnicate\"; there are export, check, preview, describe, init, "
        "schema, dialog and help\nSee: halvane --help\n");
}

TEST(CommandLine, RefusesAnExportWithoutControlFile) {
    expectRefused({{"export"}, "CONTROL is required"});
}

TEST(CommandLine, RefusesAnExportWithoutOutput) {
    expectRefused({{"export", "control.xml"}, "OUTPUT is required"});
}

TEST(CommandLine, RefusesAThirdName) {
    expectRefused({{"export", "control.xml", "out.xml", "more.xml"},
                   "The following argument was not expected: more.xml"});
}

TEST(CommandLine, RefusesAnUnknownOption) {
    expectRefused(
        {{"export", "control.xml", "out.xml", "--fast"}, "The following argument was not expected: --fast"});
}

TEST(CommandLine, RefusesAnOptionWithoutItsValue) {
    expectRefused({{"export", "control.xml", "out.xml", "--map"}, "--map: 1 required MAP missing"});
}

TEST(CommandLine, RefusesTwoMaps) {
    expectRefused({{"export", "--map", "a", "--map", "b", "control.xml", "out.xml"},
                   "--map: At Most 1 required but received 2"});
}

TEST(CommandLine, TakesOnlyWholeNumbersFromOneOnAsItemLimit) {
    for (const char* sLimit : {"0", "-5", "many", "1.5", "99999999999999999999", ""})
        expectRefused({{"export", "--item-limit", sLimit, "control.xml", "out.xml"},
                       std::string("--item-limit: \"") + sLimit + "\" is not a whole number from 1 on"});
}

TEST(CommandLine, KnowsThreeWaysOfShowingProgress) {
    expectRefused({{"export", "--progress", "always", "control.xml", "out.xml"},
                   "--progress: \"always\" is none of \"auto\", \"json\" and \"never\""});
}

TEST(CommandLine, KeepsAPasswordInAnUnknownArgumentToItself) {
    const auto result = Program().run({"export", "c", "o", "PG:host=db password=hunter2 user=me"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_THAT(result.sErr, HasSubstr("PG:host=db password=*** user=me"));
}

} // namespace halvane::test
