// What the disk holds while a file is replaced: the order of syncing and renaming, and what ended processes
// leave.

#include "FailingCall.h"
#include "IoSupport.h"

#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace halvane::test {

namespace {

namespace fs = std::filesystem;

/// Hears of every call of fsync() of this process while it lives.
class Syncs {
public:
    /// @param look what is noted at each call, after what is synced ("file" or "folder").
    explicit Syncs(std::function<std::string()> look) : look_(std::move(look)) { pListening = this; }
    Syncs(const Syncs&) = delete;
    Syncs& operator=(const Syncs&) = delete;
    ~Syncs() { pListening = nullptr; }

    [[nodiscard]] const std::vector<std::string>& heard() const { return heard_; }

    static void hear(int nDescriptor) {
        if (pListening == nullptr)
            return;
        struct stat status = {};
        ::fstat(nDescriptor, &status);
        const char* sWhat = S_ISDIR(status.st_mode) ? "folder, with " : "file, with ";
        pListening->heard_.push_back(sWhat + pListening->look_());
    }

private:
    static inline Syncs* pListening = nullptr;
    std::function<std::string()> look_;
    std::vector<std::string> heard_;
};

} // namespace

} // namespace halvane::test

// In place of the system's.
extern "C" int fsync(int nDescriptor) {
    halvane::test::Syncs::hear(nDescriptor);
    if (halvane::test::FailingCall::strikes("fsync"))
        return -1;
    return static_cast<int>(::syscall(SYS_fsync, nDescriptor));
}

namespace halvane::test {

namespace {

class Syncing : public ::testing::Test {
protected:
    Syncing() { folder.write("a.xml", "old"); }

    [[nodiscard]] std::string target() const { return folder.file("a.xml"); }

    TemporaryFolder folder;
    Syncs syncs{[this] { return folder.read("a.xml").value_or("none"); }};
};

using LeftBehind = Syncing;

} // namespace

TEST_F(Syncing, BringsTheFileToTheDiskBeforeItsNameAndThenTheName) {
    replace(target(), "new", io::Durability::OnDisk);
    EXPECT_EQ(syncs.heard(), (std::vector<std::string>{"file, with old", "folder, with new"}));
}

TEST_F(Syncing, DoesSoForATemporaryFileThatTakesThePlaceToo) {
    replaceByTemporaryFile(target(), "new", io::Durability::OnDisk);
    EXPECT_EQ(syncs.heard(), (std::vector<std::string>{"file, with old", "folder, with new"}));
}

TEST_F(Syncing, IsLeftToTheSystemUnlessAskedFor) {
    replace(target(), "new");
    EXPECT_EQ(syncs.heard(), std::vector<std::string>());
}

TEST_F(Syncing, NeedsNoDiskWhereThereIsNone) {
    for (const int nError : {EINVAL, ENOTSUP, EROFS}) {
        const FailingCall failing("fsync", nError);
        replace(target(), "new", io::Durability::OnDisk);
        EXPECT_EQ(failing.struck(), 2);
        EXPECT_EQ(folder.read("a.xml"), "new");
    }
}

TEST_F(Syncing, LeavesTheOldFileAloneWhereTheDiskFails) {
    const auto pFile = io::ReplacingFile::create(target());
    pFile->write("new");
    const FailingCall failing("fsync", EIO);
    EXPECT_EQ(failureOf([&] { (void)pFile->commit(io::Durability::OnDisk); }),
              number(FailureNumber::DeviceIo));
    EXPECT_EQ(folder.read("a.xml"), "old");
}

TEST_F(Syncing, TellsThatOnlyTheNameMayBeLost) {
    const auto pFile = io::ReplacingFile::create(target());
    pFile->write("new");
    const FailingCall failing("fsync", EIO, FailingCall::always, 1);
    EXPECT_EQ(pFile->commit(io::Durability::OnDisk), "Input/output error");
    EXPECT_EQ(folder.read("a.xml"), "new");
}

TEST_F(Syncing, LeavesTheNameToTheSystemWhereTheFolderCannotBeRead) {
    const auto pFile = io::ReplacingFile::create(target());
    pFile->write("new");
    {
        // The first eight look for names beside the target.
        const FailingCall failing("open", EACCES, FailingCall::always, 8);
        EXPECT_EQ(pFile->commit(io::Durability::OnDisk), "");
    }
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(syncs.heard(), (std::vector<std::string>{"file, with old"}));
}

TEST_F(Syncing, LeavesTheOldFileAloneWhereTheFolderCannotBeOpened) {
    const auto pFile = io::ReplacingFile::create(target());
    pFile->write("new");
    {
        const FailingCall failing("open", EMFILE, FailingCall::always, 8);
        EXPECT_EQ(failureOf([&] { (void)pFile->commit(io::Durability::OnDisk); }),
                  number(FailureNumber::DeviceIo));
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
}

TEST_F(LeftBehind, FilesOfEndedProcessesAreRemoved) {
    folder.write(".a.xml.1.tmp", "half");
    folder.write(".a.xml.3.tmp", "half");
    folder.write(".b.xml.1.tmp", "of another target");
    replace(target(), "new");
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(folder.read(".a.xml.1.tmp"), std::nullopt);
    EXPECT_EQ(folder.read(".a.xml.3.tmp"), std::nullopt);
    EXPECT_EQ(folder.read(".b.xml.1.tmp"), "of another target");
}

TEST_F(LeftBehind, FilesThatAreStillWrittenStay) {
    const std::string sPath = folder.write(".a.xml.1.tmp", "half");
    const int nDescriptor = ::open(sPath.c_str(), O_RDONLY | O_CLOEXEC); // NOLINT(*-vararg)
    ASSERT_EQ(::flock(nDescriptor, LOCK_EX), 0);
    replace(target(), "new");
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(folder.read(".a.xml.1.tmp"), "half");
    EXPECT_EQ(filesIn(folder), 2U);
    ::close(nDescriptor);
    replace(target(), "newer");
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST_F(LeftBehind, WhatIsNoFileOfOursStays) {
    folder.write("data", "kept");
    fs::create_symlink("data", folder.file(".a.xml.1.tmp"));
    fs::create_directory(folder.file(".a.xml.2.tmp"));
    replace(target(), "new");
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(folder.read("data"), "kept");
    EXPECT_TRUE(fs::is_symlink(folder.file(".a.xml.1.tmp")));
    EXPECT_TRUE(fs::is_directory(folder.file(".a.xml.2.tmp")));
}

} // namespace halvane::test
