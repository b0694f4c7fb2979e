#include "FileSizeLimit.h"
#include "SavingSupport.h"
#include "XmlSupport.h"
#include "support/Platform.h"
#include "support/TemporaryFolder.h"

#include "base/Text.h"

namespace halvane::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(Saving, WritesTheDocumentAndNothingElse) {
    const TemporaryFolder folder;
    documentOf("<r>\xC3\xA4</r>")->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), "<r>\xC3\xA4</r>");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Saving, ReplacesAnOldFile) {
    const TemporaryFolder folder;
    folder.write("a.xml", "an old file that is longer than the new one");
    documentOf("<r/>")->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), "<r/>");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Saving, WritesDocumentsLargerThanItsBuffer) {
    const TemporaryFolder folder;
    const auto oDocument = documentOf("<r/>");
    oDocument->documentElement().setText(std::string(5000000, 'x'));
    oDocument->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), oDocument->xml());
}

TEST(Saving, ReadsBackslashesAsSlashes) {
    const TemporaryFolder folder;
    documentOf("<r/>")->save(replaceAll(folder.file("a.xml"), "/", "\\"));
    EXPECT_EQ(folder.read("a.xml"), "<r/>");
}

TEST(Saving, AcceptsTheLongestFileName) {
    const TemporaryFolder folder;
    const std::string sName = std::string(251, 'n') + ".xml";
    documentOf("<r/>")->save(folder.file(sName));
    EXPECT_EQ(folder.read(sName), "<r/>");
}

TEST(Saving, FailsWithPathAndTextWhenTheFolderIsMissing) {
    const TemporaryFolder folder;
    const Failure failure = failureOfSave(*documentOf("<r/>"), folder.file("missing/a.xml"));
    EXPECT_EQ(failure.description(), folder.file("missing/a.xml") + ": " + textOfMissingFolder());
    EXPECT_EQ(failure.number(), number(FailureNumber::FileNotFound));
}

TEST(Saving, FailsWhenTheFolderIsAFile) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    // To Windows, a folder that is a file is just not there.
    EXPECT_EQ(failureOfSave(*documentOf("<r/>"), folder.file("file/a.xml")).number(),
              number(bWindows ? FailureNumber::FileNotFound : FailureNumber::PathFileAccess));
}

TEST(Saving, RefusesToReplaceAFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder.file("a.xml"));
    EXPECT_THAT(failureOfSave(*documentOf("<r/>"), folder.file("a.xml")).description(),
                HasSubstr(textOfFolder()));
}

TEST(Saving, LeavesTheOldFileAloneOnAFullDisk) {
    if (!FileSizeLimit::isPossible)
        GTEST_SKIP() << FileSizeLimit::whyNot;
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    const auto oDocument = documentOf("<r/>");
    oDocument->documentElement().setText(std::string(3000000, 'x'));
    {
        const FileSizeLimit limit(1500000);
        const Failure failure = failureOfSave(*oDocument, folder.file("a.xml"));
        EXPECT_EQ(failure.number(), number(FailureNumber::DeviceIo));
        EXPECT_THAT(failure.description(), HasSubstr(folder.file("a.xml")));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
    oDocument->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), oDocument->xml());
}

} // namespace
} // namespace halvane::test
