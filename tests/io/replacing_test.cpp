#include "IoSupport.h"
#include "support/FileSizeLimit.h"
#include "support/Platform.h"

#include "base/Text.h"

namespace halvane::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(Replacing, PutsAFileInItsPlaceAndNothingElse) {
    const TemporaryFolder folder;
    replace(folder.file("a.xml"), "new");
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Replacing, ReplacesAnOldFile) {
    const TemporaryFolder folder;
    folder.write("a.xml", "an old file that is longer than the new one");
    replace(folder.file("a.xml"), "new");
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Replacing, ReadsBackslashesAsSlashes) {
    const TemporaryFolder folder;
    replace(replaceAll(folder.file("a.xml"), "/", "\\"), "new");
    EXPECT_EQ(folder.read("a.xml"), "new");
}

TEST(Replacing, AcceptsTheLongestFileName) {
    const TemporaryFolder folder;
    const std::string sName = std::string(251, 'n') + ".xml";
    replace(folder.file(sName), "new");
    EXPECT_EQ(folder.read(sName), "new");
}

TEST(Replacing, FailsWithPathAndTextWhenTheFolderIsMissing) {
    const TemporaryFolder folder;
    const Failure failure = failureOfReplacing(folder.file("missing/a.xml"));
    EXPECT_EQ(failure.description(), folder.file("missing/a.xml") + ": " + textOfMissingFolder());
    EXPECT_EQ(failure.number(), number(FailureNumber::FileNotFound));
}

TEST(Replacing, FailsWhenTheFolderIsAFile) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    // To Windows, a folder that is a file is just not there.
    EXPECT_EQ(failureOfReplacing(folder.file("file/a.xml")).number(),
              number(bWindows ? FailureNumber::FileNotFound : FailureNumber::PathFileAccess));
}

TEST(Replacing, RefusesToReplaceAFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder.file("a.xml"));
    EXPECT_THAT(failureOfReplacing(folder.file("a.xml")).description(), HasSubstr(textOfFolder()));
}

TEST(Replacing, LeavesTheOldFileAloneOnAFullDisk) {
    if (!FileSizeLimit::isPossible)
        GTEST_SKIP() << FileSizeLimit::whyNot;
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    const std::string sText(3000000, 'x');
    {
        const FileSizeLimit limit(1500000);
        const Failure failure = failureOfReplacing(folder.file("a.xml"), sText);
        EXPECT_EQ(failure.number(), number(FailureNumber::DeviceIo));
        EXPECT_THAT(failure.description(), HasSubstr(folder.file("a.xml")));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
    replace(folder.file("a.xml"), sText);
    EXPECT_EQ(folder.read("a.xml"), sText);
}

TEST(Replacing, LeavesTheOldFileAloneUntilItIsCommitted) {
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    {
        const auto pFile = io::ReplacingFile::create(folder.file("a.xml"));
        pFile->write("half");
        EXPECT_EQ(folder.read("a.xml"), "old");
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

} // namespace
} // namespace halvane::test
