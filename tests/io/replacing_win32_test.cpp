// Names, attributes and sharing of files as Windows knows them.

#include "IoSupport.h"

#include "base/com/Bstr.h"
#include "io/FileReading.h"
#include "io/Win32File.h"

namespace halvane::test {
namespace {

std::string contentOf(const std::string& sPath) {
    std::string sContent;
    const io::ReadProblem problem = io::readFile(sPath, 100, sContent);
    EXPECT_EQ(problem.sReason, "");
    return sContent;
}

TEST(Replacing, WritesAndReadsNamesBeyondTheSystemsCodePage) {
    const TemporaryFolder folder;
    const std::string sPath = folder.file("\xE6\x97\xA5 \xD0\xB6 \xC3\xA4.xml");
    replace(sPath, "new");
    EXPECT_EQ(contentOf(sPath), "new");
    EXPECT_NE(::GetFileAttributesW(com::wideOf(sPath).c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(Replacing, WritesAndReadsPathsLongerThanTheOldLimit) {
    const TemporaryFolder folder;
    std::string sFolder = folder.path().string();
    for (int n = 0; n < 4; ++n) {
        sFolder += "\\" + std::string(90, static_cast<char>('a' + n));
        ASSERT_NE(::CreateDirectoryW(io::widePath(sFolder).c_str(), nullptr), 0) << sFolder;
    }
    const std::string sPath = sFolder + "/../" + std::string(90, 'd') + "/a.xml";
    replace(sPath, "new");
    EXPECT_EQ(contentOf(sPath), "new");
}

TEST(Replacing, RefusesToReplaceAWriteProtectedFile) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write("a.xml", "old");
    ASSERT_NE(::SetFileAttributesW(com::wideOf(sPath).c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_EQ(failureOfReplacing(sPath).number(), number(FailureNumber::PathFileAccess));
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
    ::SetFileAttributesW(com::wideOf(sPath).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(Replacing, RefusesNamesThatAreTheSystemsOwn) {
    const TemporaryFolder folder;
    const std::string sBegin = folder.path().string() + "\\";
    for (const char* sName :
         {"CON", "con.xml", "Nul .xml", "AUX.a.b", "COM1.xml", "lpt\xC2\xB3.xml", "CONOUT$", "prn:a"}) {
        const Failure failure = failureOfReplacing(sBegin + sName);
        EXPECT_EQ(failure.number(), number(FailureNumber::PathFileAccess)) << sName;
        EXPECT_NE(failure.description().find("is a device on Windows"), std::string::npos)
            << failure.description();
    }
    EXPECT_EQ(failureOfReplacing(sBegin + "a:b.xml").description(),
              sBegin +
                  "a:b.xml: on Windows \":\" in a name leads into another file; choose a name without it");
    for (const char* sName : {"a.xml.", "a.xml ", "...", "a.xml. ."})
        EXPECT_EQ(
            failureOfReplacing(sBegin + sName).description(),
            sBegin + sName +
                ": Windows leaves out points and blanks at the end of a name; choose a name without them");
    for (const std::string& sName : {std::string("a\0b.xml", 7), std::string("a\tb.xml")})
        EXPECT_NE(failureOfReplacing(sBegin + sName).description().find("no control characters in names"),
                  std::string::npos);
    EXPECT_EQ(filesIn(folder), 0U);
}

TEST(Replacing, TakesNamesThatOnlyResembleTheSystemsOwn) {
    const TemporaryFolder folder;
    for (const char* sName : {"CONS.xml", "COM.xml", "COM10.xml", "XCON", "LPT1a.xml", ".xml", "a..xml"}) {
        replace(folder.path().string() + "\\" + sName, "new");
        EXPECT_EQ(folder.read(sName), "new");
    }
}

TEST(Replacing, LeavesAFileAloneThatAnotherKeepsForItself) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write("a.xml", "old");
    {
        const io::FileHandle other(
            ::CreateFileW(com::wideOf(sPath).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(other.isOpen());
        EXPECT_EQ(failureOfReplacing(sPath).number(), number(FailureNumber::PathFileAccess));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

} // namespace
} // namespace halvane::test
