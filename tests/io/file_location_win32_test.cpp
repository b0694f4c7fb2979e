#include "support/TemporaryFolder.h"

#include "io/FileLocation.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

TEST(NativePath, IsThePathAsItStands) {
    EXPECT_EQ(io::nativePath("C:\\tmp\\a/b"), "C:\\tmp\\a/b");
}

TEST(PathOfName, TakesAPlainNameAsAPath) {
    EXPECT_EQ(io::pathOfName("a\\b%20.xml"), "a\\b%20.xml");
}

TEST(PathOfName, IsWhatComesAfterTheFileScheme) {
    EXPECT_EQ(io::pathOfName("file:///C:/no/such.xml"), "C:/no/such.xml");
    EXPECT_EQ(io::pathOfName("FILE:///C:\\no\\such.xml"), "C:\\no\\such.xml");
}

TEST(PathOfName, DecodesAUrlWhoseFileDoesNotExistAsItStands) {
    const TemporaryFolder folder;
    const std::string sPlain = folder.write("a b.xml", "x");
    EXPECT_EQ(io::pathOfName(folder.url("a%20b.xml")), sPlain);
    const std::string sLiteral = folder.write("a%20b.xml", "x");
    EXPECT_EQ(io::pathOfName(folder.url("a%20b.xml")), sLiteral);
    EXPECT_EQ(io::pathOfName("file:///C:/no/such%20file%"), "C:/no/such%20file%");
}

} // namespace
} // namespace halvane::test
