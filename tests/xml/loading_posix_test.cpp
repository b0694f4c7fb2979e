// Files that are none, as POSIX knows them.

#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

#include <sys/stat.h>

namespace halvane::test {
namespace {

using testing::HasSubstr;

TEST(LoadingOddFiles, DoesNotWaitForAPipe) {
    const auto oDocument = dom::Document::create();
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(oDocument->load(folder.file("pipe")));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("pipe"));
}

TEST(LoadingOddFiles, StopsAtTheLimitOfAFileWithoutEnd) {
    const auto oDocument = dom::Document::create();
    EXPECT_FALSE(oDocument->load("/dev/zero"));
    EXPECT_THAT(oDocument->parseError().reason, HasSubstr("larger than 64 MiB"));
}

} // namespace
} // namespace halvane::test
