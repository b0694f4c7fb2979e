// What "halvane schema" prints is what docs holds.

#include "cli/Program.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

TEST(Schema, ListsWhatDocsHolds) {
    const auto result = Program().run({"schema"});
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(result.sErr, "");
    EXPECT_THAT(result.sOut, StartsWith("control-file.rng              control files of both editions"));
    std::size_t nSchemas = 0;
    for (const auto& entry : std::filesystem::directory_iterator(HALVANE_SOURCE_DIR "/docs")) {
        const std::string sName = entry.path().filename();
        if (!sName.ends_with(".xsd") && !sName.ends_with(".rng") && !sName.ends_with(".schema.json"))
            continue;
        ++nSchemas;
        EXPECT_THAT(result.sOut, HasSubstr(sName + " ")) << "a row of the program's list is missing";
        const auto printed = Program().run({"schema", sName});
        EXPECT_EQ(printed.lExitCode, 0) << sName;
        EXPECT_EQ(printed.sErr, "") << sName;
        EXPECT_EQ(printed.sOut, bytesOf(entry.path())) << sName;
    }
    EXPECT_EQ(std::count(result.sOut.begin(), result.sOut.end(), '\n'), nSchemas);
}

TEST(Schema, OfAnotherNameIsRefused) {
    const auto result = Program().run({"schema", "control-file.rnc"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr,
              "halvane: there is no schema \"control-file.rnc\": did you mean \"control-file.rng\"?\n"
              "See: halvane schema\n");
}

} // namespace halvane::test
