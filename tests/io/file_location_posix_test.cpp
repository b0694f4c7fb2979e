#include "support/TemporaryFolder.h"

#include "io/FileLocation.h"

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

TEST(NativePath, ReadsBackslashesAsSlashes) {
    EXPECT_EQ(io::nativePath("\\tmp\\a/b"), "/tmp/a/b");
    EXPECT_EQ(io::nativePath(""), "");
}

TEST(PathOfName, TakesAPlainNameAsAPath) {
    EXPECT_EQ(io::pathOfName("a\\b.xml"), "a/b.xml");
    EXPECT_EQ(io::pathOfName("/a%20b.xml"), "/a%20b.xml");
}

TEST(PathOfName, RootsWhatComesAfterTheFileScheme) {
    EXPECT_EQ(io::pathOfName("file:///no/such.xml"), "/no/such.xml");
    EXPECT_EQ(io::pathOfName("file:////no/such.xml"), "/no/such.xml");
    EXPECT_EQ(io::pathOfName("FILE:///no/such.xml"), "/no/such.xml");
    EXPECT_EQ(io::pathOfName("file:///\\no\\such.xml"), "/no/such.xml");
}

TEST(PathOfName, DecodesAUrlWhoseFileDoesNotExistAsItStands) {
    const TemporaryFolder folder;
    const std::string sPlain = folder.write("a b.xml", "x");
    const std::string sEncoded = "file://" + folder.file("a%20b.xml");
    EXPECT_EQ(io::pathOfName(sEncoded), sPlain);
    const std::string sLiteral = folder.write("a%20b.xml", "x");
    EXPECT_EQ(io::pathOfName(sEncoded), sLiteral);
    EXPECT_EQ(io::pathOfName("file:///no/such%20file%"), "/no/such%20file%");
    const std::string sOdd = folder.write("%zz%4 b.xml", "x");
    EXPECT_EQ(io::pathOfName("file://" + folder.file("%zz%4%20b.xml")), sOdd);
}

} // namespace
} // namespace halvane::test
