#include "FileSizeLimit.h"
#include "XmlSupport.h"
#include "support/TemporaryFolder.h"

#include "collection/Text.h"

#include <sys/stat.h>
#include <unistd.h>

namespace halvane::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.path()), {}));
}

Failure failureOfSave(dom::Document& document, std::string_view sPath) {
    try {
        document.save(sPath);
    } catch (const Failure& failure) {
        return failure;
    }
    ADD_FAILURE() << "saved";
    return Failure::of(FailureNumber::InternalError);
}

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

TEST(Saving, KeepsThePermissionsOfAReplacedFile) {
    const TemporaryFolder folder;
    const auto sPath = folder.write("a.xml", "<old/>");
    ASSERT_EQ(::chmod(sPath.c_str(), 0600), 0);
    documentOf("<r/>")->save(sPath);
    struct stat status {};
    ASSERT_EQ(::stat(sPath.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST(Saving, AcceptsTheLongestFileName) {
    const TemporaryFolder folder;
    const std::string sName = std::string(251, 'n') + ".xml";
    documentOf("<r/>")->save(folder.file(sName));
    EXPECT_EQ(folder.read(sName), "<r/>");
}

TEST(Saving, GivesTheFileTheDefaultPermissions) {
    const TemporaryFolder folder;
    const auto mask = ::umask(027);
    documentOf("<r/>")->save(folder.file("a.xml"));
    ::umask(mask);
    EXPECT_EQ(fs::status(folder.file("a.xml")).permissions(), static_cast<fs::perms>(0640));
}

TEST(Saving, FollowsASymbolicLink) {
    const TemporaryFolder folder;
    folder.write("real.xml", "old");
    fs::create_directory(folder.path() / "in");
    fs::create_symlink("../real.xml", folder.path() / "in" / "link.xml");
    fs::create_symlink("in/link.xml", folder.file("link.xml"));
    documentOf("<r/>")->save(folder.file("link.xml"));
    EXPECT_EQ(folder.read("real.xml"), "<r/>");
    EXPECT_TRUE(fs::is_symlink(folder.file("link.xml")));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "in" / "link.xml"));
}

TEST(Saving, CreatesWhatADanglingLinkNames) {
    const TemporaryFolder folder;
    fs::create_symlink("new.xml", folder.file("link.xml"));
    documentOf("<r/>")->save(folder.file("link.xml"));
    EXPECT_EQ(folder.read("new.xml"), "<r/>");
    EXPECT_TRUE(fs::is_symlink(folder.file("link.xml")));
}

TEST(Saving, FailsOnALinkThatLeadsToItself) {
    const TemporaryFolder folder;
    fs::create_symlink("link.xml", folder.file("link.xml"));
    EXPECT_EQ(failureOfSave(*documentOf("<r/>"), folder.file("link.xml")).number(),
              number(FailureNumber::PathFileAccess));
}

TEST(Saving, FailsWithPathAndTextWhenTheFolderIsMissing) {
    const TemporaryFolder folder;
    const Failure failure = failureOfSave(*documentOf("<r/>"), folder.file("missing/a.xml"));
    EXPECT_EQ(failure.description(), folder.file("missing/a.xml") + ": No such file or directory");
    EXPECT_EQ(failure.number(), number(FailureNumber::FileNotFound));
}

TEST(Saving, FailsWhenTheFolderIsAFile) {
    const TemporaryFolder folder;
    folder.write("file", "x");
    EXPECT_EQ(failureOfSave(*documentOf("<r/>"), folder.file("file/a.xml")).number(),
              number(FailureNumber::PathFileAccess));
}

TEST(Saving, RefusesToReplaceAFolderOrADevice) {
    const TemporaryFolder folder;
    fs::create_directory(folder.file("a.xml"));
    EXPECT_THAT(failureOfSave(*documentOf("<r/>"), folder.file("a.xml")).description(),
                HasSubstr("Is a directory"));
    EXPECT_THAT(failureOfSave(*documentOf("<r/>"), "/dev/null").description(),
                HasSubstr("not a regular file"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

/// The superuser writes everywhere: as long as it lives, the process has another user's rights.
class OrdinaryUser {
public:
    OrdinaryUser() { change(::geteuid() == 0 ? 65534 : ::geteuid()); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() { change(old_); }

private:
    static void change(uid_t user) { EXPECT_EQ(::seteuid(user), 0); }

    uid_t old_ = ::geteuid();
};

TEST(Saving, FailsInAFolderThatCannotBeWritten) {
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    const auto oDocument = documentOf("<r/>");
    fs::permissions(folder.file("a.xml"), fs::perms::all);
    fs::permissions(folder.path(), static_cast<fs::perms>(0555));
    {
        const OrdinaryUser user;
        EXPECT_EQ(failureOfSave(*oDocument, folder.file("a.xml")).description(),
                  folder.file("a.xml") + ": Permission denied");
        EXPECT_EQ(failureOfSave(*oDocument, folder.file("new.xml")).number(),
                  number(FailureNumber::PathFileAccess));
    }
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Saving, RefusesToReplaceAWriteProtectedFile) {
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    const auto oDocument = documentOf("<r/>");
    fs::permissions(folder.file("a.xml"), static_cast<fs::perms>(0444));
    fs::permissions(folder.path(), fs::perms::all);
    {
        const OrdinaryUser user;
        EXPECT_EQ(failureOfSave(*oDocument, folder.file("a.xml")).number(),
                  number(FailureNumber::PathFileAccess));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Saving, LeavesTheOldFileAloneOnAFullDisk) {
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
