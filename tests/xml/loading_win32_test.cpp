// Files that are none, as Windows knows them.

#include "XmlSupport.h"

#include <windows.h>

namespace halvane::test {
namespace {

using testing::HasSubstr;

TEST(LoadingOddFiles, ReadsNoPipe) {
    const std::string sName = R"(\\.\pipe\halvane-test-)" + std::to_string(::GetCurrentProcessId());
    void* const hPipe =
        ::CreateNamedPipeA(sName.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr);
    ASSERT_NE(hPipe, INVALID_HANDLE_VALUE);
    const auto oDocument = dom::Document::create();
    EXPECT_FALSE(oDocument->load(sName));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("a pipe is not read"));
    ::CloseHandle(hPipe);
}

TEST(LoadingOddFiles, ReadsNoDevice) {
    const auto oDocument = dom::Document::create();
    EXPECT_FALSE(oDocument->load(R"(\\.\NUL)"));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("a device is not read"));
}

} // namespace
} // namespace halvane::test
