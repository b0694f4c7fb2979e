// Names, attributes and sharing of files as Windows knows them.

#include "SavingSupport.h"

#include "base/com/Bstr.h"
#include "io/Win32File.h"

namespace halvane::test {
namespace {

TEST(Saving, WritesAndReadsNamesBeyondTheSystemsCodePage) {
    const TemporaryFolder folder;
    const std::string sPath = folder.file("\xE6\x97\xA5 \xD0\xB6 \xC3\xA4.xml");
    documentOf("<r/>")->save(sPath);
    const auto oDocument = dom::Document::create();
    EXPECT_TRUE(oDocument->load(sPath)) << oDocument->parseError().reason;
    EXPECT_EQ(oDocument->xml(), "<r/>");
    EXPECT_NE(::GetFileAttributesW(com::wideOf(sPath).c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(Saving, WritesAndReadsPathsLongerThanTheOldLimit) {
    const TemporaryFolder folder;
    std::string sFolder = folder.path().string();
    for (int n = 0; n < 4; ++n) {
        sFolder += "\\" + std::string(90, static_cast<char>('a' + n));
        ASSERT_NE(::CreateDirectoryW(io::widePath(sFolder).c_str(), nullptr), 0) << sFolder;
    }
    const std::string sPath = sFolder + "/../" + std::string(90, 'd') + "/a.xml";
    documentOf("<r/>")->save(sPath);
    const auto oDocument = dom::Document::create();
    EXPECT_TRUE(oDocument->load(sPath)) << oDocument->parseError().reason;
}

TEST(Saving, RefusesToReplaceAWriteProtectedFile) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write("a.xml", "old");
    ASSERT_NE(::SetFileAttributesW(com::wideOf(sPath).c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_EQ(failureOfSave(*documentOf("<r/>"), sPath).number(), number(FailureNumber::PathFileAccess));
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
    ::SetFileAttributesW(com::wideOf(sPath).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(Saving, LeavesAFileAloneThatAnotherKeepsForItself) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write("a.xml", "old");
    {
        const io::FileHandle other(
            ::CreateFileW(com::wideOf(sPath).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(other.isOpen());
        EXPECT_EQ(failureOfSave(*documentOf("<r/>"), sPath).number(), number(FailureNumber::PathFileAccess));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

} // namespace
} // namespace halvane::test
