// Permissions, links and devices as POSIX knows them.

#include "FailingCall.h"
#include "IoSupport.h"

#include <sys/stat.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif
#include <unistd.h>

namespace halvane::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(Replacing, KeepsThePermissionsOfAReplacedFile) {
    const TemporaryFolder folder;
    const auto sPath = folder.write("a.xml", "old");
    ASSERT_EQ(::chmod(sPath.c_str(), 0600), 0);
    replace(sPath, "new");
    struct stat status = {};
    ASSERT_EQ(::stat(sPath.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

/// The process acts as another user, as the system's administrator can.
class OtherUser {
public:
    explicit OtherUser(::uid_t nUser) {
        EXPECT_EQ(::setegid(nUser), 0);
        EXPECT_EQ(::seteuid(nUser), 0);
    }
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;
    ~OtherUser() {
        EXPECT_EQ(::seteuid(0), 0);
        EXPECT_EQ(::setegid(0), 0);
    }
};

constexpr ::uid_t nSomebody = 12001;
constexpr ::gid_t nTeam = 12002;

struct stat statusOf(const std::string& sPath) {
    struct stat status = {};
    EXPECT_EQ(::stat(sPath.c_str(), &status), 0);
    return status;
}

#ifdef __linux__

/// An access list as the system stores it, for a file or for what is made in a folder: the owner reads and
/// writes, the user 12003 reads, the group has the rights that are given, everybody else has none.
std::string accessList(char nGroupRights) {
    const auto entry = [](char nTag, char nRights, const std::string& sId = "\xFF\xFF\xFF\xFF") {
        return std::string{nTag, '\0', nRights, '\0'} + sId;
    };
    const std::string sVersion{'\2', '\0', '\0', '\0'};
    const std::string sNamed{'\xE3', '\x2E', '\0', '\0'};
    return sVersion + entry(1, 6) + entry(2, 4, sNamed) + entry(4, nGroupRights) + entry(16, 4) +
           entry(32, 0);
}

bool setList(const std::string& sPath, const char* pKind, const std::string& sList) {
    return ::setxattr(sPath.c_str(), pKind, sList.data(), sList.size(), 0) == 0;
}

std::string listOf(const std::string& sPath) {
    std::string sList(1024, '\0');
    const auto nSize = ::getxattr(sPath.c_str(), "system.posix_acl_access", sList.data(), sList.size());
    return nSize < 0 ? "" : sList.substr(0, static_cast<std::size_t>(nSize));
}

TEST(Replacing, KeepsTheAccessListOfAReplacedFile) {
    const TemporaryFolder folder;
    for (const auto fnReplace : {+[](const std::string& sPath) { replace(sPath, "new"); },
                                 +[](const std::string& sPath) { replaceByTemporaryFile(sPath, "new"); }}) {
        const auto sPath = folder.write("a.xml", "old");
        if (!setList(sPath, "system.posix_acl_access", accessList(0)))
            GTEST_SKIP() << "the folder's file system knows no access lists";
        fnReplace(sPath);
        EXPECT_EQ(listOf(sPath), accessList(0));
        EXPECT_EQ(statusOf(sPath).st_mode & 07777U, 0640U); // the list's bound in the place of the group's
    }
}

TEST(Replacing, GivesTheGroupNothingWhereTheAccessListCannotBeKept) {
    const TemporaryFolder folder;
    // The first reading tells the size of the list.
    for (const auto& [sCall, nSkipped] : {std::pair{"fsetxattr", 0}, std::pair{"getxattr", 1}}) {
        const auto sPath = folder.write("a.xml", "old");
        if (!setList(sPath, "system.posix_acl_access", accessList(0)))
            GTEST_SKIP() << "the folder's file system knows no access lists";
        const FailingCall failing(sCall, EIO, FailingCall::always, nSkipped);
        replace(sPath, "new");
        EXPECT_EQ(listOf(sPath), "") << sCall;
        EXPECT_EQ(statusOf(sPath).st_mode & 07777U, 0600U)
            << "what the list granted is the group's in its bits";
    }
}

TEST(Replacing, TakesNoAccessListFromTheFolderInThePlaceOfAFileWithoutOne) {
    const TemporaryFolder folder;
    const auto sPath = folder.write("a.xml", "old");
    ASSERT_EQ(::chmod(sPath.c_str(), 0640), 0);
    if (!setList(folder.path().string(), "system.posix_acl_default", accessList(4)))
        GTEST_SKIP() << "the folder's file system knows no access lists";
    replace(sPath, "new");
    EXPECT_EQ(listOf(sPath), "");
    EXPECT_EQ(statusOf(sPath).st_mode & 07777U, 0640U);
}

TEST(Replacing, GivesAGroupNothingThatAnAccessListGrantedToOthers) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the administrator may act as somebody else";
    const TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms::all);
    const auto sPath = folder.write("a.xml", "old");
    ASSERT_EQ(::chown(sPath.c_str(), nSomebody, nTeam), 0);
    if (!setList(sPath, "system.posix_acl_access", accessList(0)))
        GTEST_SKIP() << "the folder's file system knows no access lists";
    {
        const OtherUser somebody(nSomebody); // who is not in the team, and cannot give it the file
        replace(sPath, "new");
    }
    EXPECT_EQ(listOf(sPath), "");
    EXPECT_EQ(statusOf(sPath).st_mode & 07777U, 0600U);
}

#endif

TEST(Replacing, KeepsTheOwnerAndTheGroupOfAReplacedFile) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the administrator may give files away";
    const TemporaryFolder folder;
    const auto sPath = folder.write("a.xml", "old");
    const auto expectKept = [&] {
        const struct stat status = statusOf(sPath);
        EXPECT_EQ(status.st_uid, nSomebody);
        EXPECT_EQ(status.st_gid, nTeam);
        EXPECT_EQ(status.st_mode & 07777U, 0660U);
        EXPECT_EQ(folder.read("a.xml"), "new");
    };
    ASSERT_EQ(::chown(sPath.c_str(), nSomebody, nTeam), 0);
    ASSERT_EQ(::chmod(sPath.c_str(), 0660), 0);
    replace(sPath, "new");
    expectKept();
    replaceByTemporaryFile(sPath, "new");
    expectKept();
}

TEST(Replacing, GivesNobodyMoreRightsWhereTheGroupCannotBeKept) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only the administrator may act as another user";
    const TemporaryFolder folder;
    const auto sPath = folder.write("a.xml", "old");
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    ASSERT_EQ(::chown(sPath.c_str(), nSomebody, nTeam), 0);
    ASSERT_EQ(::chmod(sPath.c_str(), 0664), 0);
    {
        const OtherUser user(nSomebody);
        replace(sPath, "new");
    }
    const struct stat status = statusOf(sPath);
    EXPECT_EQ(status.st_gid, nSomebody) << "the group of who writes";
    EXPECT_EQ(status.st_mode & 07777U, 0644U) << "its members read, as everybody does";
}

TEST(Replacing, GivesTheFileTheDefaultPermissions) {
    const TemporaryFolder folder;
    const auto mask = ::umask(027);
    replace(folder.file("a.xml"), "new");
    ::umask(mask);
    EXPECT_EQ(fs::status(folder.file("a.xml")).permissions(), static_cast<fs::perms>(0640));
}

TEST(Replacing, FollowsASymbolicLink) {
    const TemporaryFolder folder;
    folder.write("real.xml", "old");
    fs::create_directory(folder.path() / "in");
    fs::create_symlink("../real.xml", folder.path() / "in" / "link.xml");
    fs::create_symlink("in/link.xml", folder.file("link.xml"));
    replace(folder.file("link.xml"), "new");
    EXPECT_EQ(folder.read("real.xml"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.file("link.xml")));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "in" / "link.xml"));
}

TEST(Replacing, CreatesWhatADanglingLinkNames) {
    const TemporaryFolder folder;
    fs::create_symlink("new.xml", folder.file("link.xml"));
    replace(folder.file("link.xml"), "new");
    EXPECT_EQ(folder.read("new.xml"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.file("link.xml")));
}

TEST(Replacing, FailsOnALinkThatLeadsToItself) {
    const TemporaryFolder folder;
    fs::create_symlink("link.xml", folder.file("link.xml"));
    EXPECT_EQ(failureOfReplacing(folder.file("link.xml")).number(), number(FailureNumber::PathFileAccess));
}

TEST(Replacing, RefusesToReplaceADevice) {
    EXPECT_THAT(failureOfReplacing("/dev/null").description(), HasSubstr("not a regular file"));
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

TEST(Replacing, FailsInAFolderThatCannotBeWritten) {
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    fs::permissions(folder.file("a.xml"), fs::perms::all);
    fs::permissions(folder.path(), static_cast<fs::perms>(0555));
    {
        const OrdinaryUser user;
        EXPECT_EQ(failureOfReplacing(folder.file("a.xml")).description(),
                  folder.file("a.xml") +
                      ": Permission denied; change the rights of the file and its folder, or "
                      "choose another place");
        EXPECT_EQ(failureOfReplacing(folder.file("new.xml")).number(), number(FailureNumber::PathFileAccess));
    }
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Replacing, RefusesToReplaceAWriteProtectedFile) {
    const TemporaryFolder folder;
    folder.write("a.xml", "old");
    fs::permissions(folder.file("a.xml"), static_cast<fs::perms>(0444));
    fs::permissions(folder.path(), fs::perms::all);
    {
        const OrdinaryUser user;
        EXPECT_EQ(failureOfReplacing(folder.file("a.xml")).number(), number(FailureNumber::PathFileAccess));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Replacing, LooksFurtherForAFreeNameWhereManyAreTaken) {
    const TemporaryFolder folder;
    for (int n = 1; n <= 10; ++n)
        fs::create_directory(folder.file(".a.xml." + std::to_string(n) + ".tmp"));
    const FailingCall failing("open unnamed", EOPNOTSUPP);
    const auto pFile = io::ReplacingFile::create(folder.file("a.xml"));
    EXPECT_EQ(folder.read(".a.xml.11.tmp"), "");
    pFile->write("new");
    EXPECT_EQ(pFile->commit(io::Durability::LeftToSystem), "");
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(filesIn(folder), 11U);
}

} // namespace
} // namespace halvane::test
