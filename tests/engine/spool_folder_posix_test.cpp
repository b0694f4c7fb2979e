// Where a document goes that is larger than what is kept in memory.

#include "io/Spool.h"
#include "support/ExportTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace halvane::test {
namespace {

/// Whether this process has a file of that folder open that has no name.
bool hasUnnamedFileIn(const std::filesystem::path& folder) {
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone; // the iterator's own
        const std::string sFile = std::filesystem::read_symlink(descriptor, gone).string();
        if (sFile.starts_with(folder.string() + "/") && sFile.ends_with(" (deleted)"))
            return true;
    }
    return false;
}

class WatchesSpool : public RecordingObserver {
public:
    explicit WatchesSpool(std::filesystem::path folder) : folder_(std::move(folder)) {}
    bool itemWritten(dom::Node oControlNode) override {
        bInFolder = bInFolder || hasUnnamedFileIn(folder_);
        return RecordingObserver::itemWritten(oControlNode);
    }

    bool bInFolder = false;

private:
    std::filesystem::path folder_;
};

class SpoolFolder : public ExportTest {
protected:
    /// Exports more than is kept in memory. @returns whether the rest goes to a file of that folder.
    bool spillsTo(const std::filesystem::path& folderOfSpool, const std::string& sOutputPath) {
        world.pRoads->addRow({std::int64_t{4}, Null{}, std::string(io::Spool::memoryLimit + 1, 'x')});
        for (std::int64_t n = 5; n < 9; ++n)
            world.pRoads->addRow({n, Null{}, std::string(1U << 20U, 'x')});
        WatchesSpool watching(folderOfSpool);
        prepare();
        state.options.pObserver = &watching;
        state.sControlPath = folder.write(
            "control.xml", group("<r Name='R' DataSource='Feature' Entries='Multiple' Identity='FieldName' "
                                 "IdentityValue='NAME'/>"));
        state.sOutputPath = sOutputPath;
        ExportEntry(state);
        nItems = watching.lItems;
        return watching.bInFolder;
    }

    int nItems = 0;
};

TEST_F(SpoolFolder, IsThatOfTheDocument) {
    const auto named = folder.path() / "named?";
    std::filesystem::create_directory(named);
    EXPECT_TRUE(spillsTo(named, (named / "out.xml").string()));
    EXPECT_TRUE(std::filesystem::exists(named / "out.xml"));
    EXPECT_EQ(nItems, 8);
}

TEST_F(SpoolFolder, EndsTheItemsOnceItCannotHoldThem) {
    EXPECT_FALSE(spillsTo(folder.path(), (folder.path() / "missing" / "out.xml").string()));
    EXPECT_EQ(nItems, 4) << "the fourth is larger than what is kept in memory";
}

TEST_F(SpoolFolder, IsThatOfADocumentWhoseNameHasAQuestionMark) {
    EXPECT_TRUE(spillsTo(folder.path(), folder.file("out?.xml")));
}

TEST_F(SpoolFolder, IsTheCurrentOneForADocumentWithoutAFolder) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_TRUE(spillsTo(folder.path(), "out.xml"));
    std::filesystem::current_path(before);
}

} // namespace
} // namespace halvane::test
