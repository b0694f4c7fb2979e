// Clients in the script languages of the system. A script ends with the code 7 when all that it checks holds;
// otherwise its output tells what does not.

#include "Client.h"

#include <gtest/gtest.h>

namespace halvane::client {
namespace {

constexpr DWORD nAllHolds = 7;

std::wstring scriptPath(const std::string& sName) {
    return (std::filesystem::path(HALVANE_SOURCE_DIR) / "tests/component/com/scripts" / sName)
        .make_preferred()
        .wstring();
}

class Script : public ::testing::TestWithParam<std::string> {};

TEST_P(Script, FindsThatAllHolds) {
    const Folder folder;
    const Finished finished = run(L"cscript.exe", {L"//nologo", scriptPath(GetParam()), folder.path()});
    EXPECT_EQ(finished.nCode, nAllHolds) << finished.sOutput;
    EXPECT_EQ(finished.sOutput, "all holds\r\n");
}

std::string nameOf(const ::testing::TestParamInfo<std::string>& info) {
    std::string sName = info.param;
    for (char& c : sName) {
        if (c == '.' || c == '-')
            c = '_';
    }
    return sName;
}

INSTANTIATE_TEST_SUITE_P(Clients, Script,
                         ::testing::Values("collection.js", "collection.vbs", "ending.js", "ending.vbs",
                                           "export.js", "export.vbs", "processor.js", "processor.vbs"),
                         nameOf);

} // namespace
} // namespace halvane::client
