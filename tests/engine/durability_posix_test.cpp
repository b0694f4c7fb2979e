// A document whose folder cannot be brought to the disk.

#include "support/ExportTest.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace halvane::test {
namespace {

/// Lets the system fail to sync folders while it lives.
class UnsyncedFolders {
public:
    UnsyncedFolders() { bLives = true; }
    UnsyncedFolders(const UnsyncedFolders&) = delete;
    UnsyncedFolders& operator=(const UnsyncedFolders&) = delete;
    ~UnsyncedFolders() { bLives = false; }

    static bool isAbout(int nDescriptor) {
        struct stat status = {};
        return bLives && ::fstat(nDescriptor, &status) == 0 && S_ISDIR(status.st_mode);
    }

private:
    static inline bool bLives = false;
};

} // namespace
} // namespace halvane::test

// In place of the system's.
extern "C" int fsync(int nDescriptor) {
    if (halvane::test::UnsyncedFolders::isAbout(nDescriptor)) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_fsync, nDescriptor));
}

namespace halvane::test {
namespace {

class HearsOfDurability : public RecordingObserver {
public:
    void documentNotDurable(std::string_view sReason) override { sWhyNotDurable = std::string(sReason); }
    std::string sWhyNotDurable;
};

class Durability : public ExportTest {
protected:
    /// @returns what the observer hears of the document's durability.
    std::string heard(io::Durability durability) {
        HearsOfDurability hearing;
        prepare();
        state.options.pObserver = &hearing;
        state.options.durability = durability;
        state.sControlPath = folder.write("control.xml", "<a Name='Out'><b Name='B'/></a>");
        state.sOutputPath = folder.file("out.xml");
        ExportEntry(state);
        EXPECT_EQ(hearing.sSavedPath, state.sOutputPath);
        return hearing.sWhyNotDurable;
    }
};

TEST_F(Durability, IsNotToldOfWhereItIsHad) {
    EXPECT_EQ(heard(io::Durability::OnDisk), "");
}

TEST_F(Durability, IsToldToFailWhereTheFolderCannotBeSynced) {
    const UnsyncedFolders unsynced;
    EXPECT_NE(heard(io::Durability::OnDisk), "");
    EXPECT_EQ(heard(io::Durability::LeftToSystem), "") << "nothing was to be synced";
}

} // namespace
} // namespace halvane::test
