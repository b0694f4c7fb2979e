#include "XmlSupport.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

namespace halvane::test {
namespace {

std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

TEST(Saving, WritesTheDocumentAndNothingElse) {
    const TemporaryFolder folder;
    documentOf("<r>\xC3\xA4</r>")->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), "<r>\xC3\xA4</r>");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Saving, WritesDocumentsLargerThanItsBuffer) {
    const TemporaryFolder folder;
    const auto oDocument = documentOf("<r/>");
    oDocument->documentElement().setText(std::string(5000000, 'x'));
    oDocument->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), oDocument->xml());
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
        EXPECT_EQ(failureOf([&] { oDocument->save(folder.file("a.xml")); }), number(FailureNumber::DeviceIo));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
    oDocument->save(folder.file("a.xml"));
    EXPECT_EQ(folder.read("a.xml"), oDocument->xml());
}

} // namespace
} // namespace halvane::test
