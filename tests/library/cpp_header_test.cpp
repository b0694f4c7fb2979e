#include "halvane.hpp"

#include "cli/Samples.h"

#include <gmock/gmock.h>

#include <optional>

namespace halvane::test {

using ::testing::HasSubstr;

namespace {

class LibraryInCpp : public ExportFixture {
protected:
    Export run{program.file("control.xml"), program.file("out.xml")};
    LibraryInCpp() { run.map(program.file("towns.geojson")); }
};

struct Enough : std::exception {};

} // namespace

TEST_F(LibraryInCpp, Exports) {
    std::optional<std::uint64_t> lItems;
    std::string sResult;
    run.onProgress([&](std::uint64_t lSoFar) {
        lItems = lSoFar;
        return true;
    });
    run.onMessage([&](Level level, std::string_view sText) {
        if (level == Level::Result)
            sResult = sText;
    });
    EXPECT_EQ(run.run(), Outcome::Written);
    EXPECT_EQ(lItems, 3U);
    EXPECT_EQ(sResult, "Wrote " + program.file("out.xml") + " (3 items)");
    EXPECT_EQ(run.error(), "");
    EXPECT_THAT(run.report(), HasSubstr("\"items\": 3"));
    EXPECT_EQ(document("out.xml"), sTownsDocument);
}

TEST_F(LibraryInCpp, SetsWhatTheLibrarySets) {
    run.select("towns=3").itemLimit(2).sync(false);
    EXPECT_EQ(run.run(), Outcome::Written);
    EXPECT_THAT(run.report(), HasSubstr("\"items\": 1"));
    run.tags(program.file("none.xml"), "//Tag");
    EXPECT_EQ(run.run(), Outcome::Refused);
    EXPECT_THAT(run.error(), HasSubstr("none.xml"));
}

TEST_F(LibraryInCpp, ThrowsWhereTheLibraryDoesNotTakeAValue) {
    EXPECT_THROW(run.itemLimit(0), Error);
    EXPECT_EQ(run.run(), Outcome::Refused);
}

TEST_F(LibraryInCpp, IsCancelledByAProgressThatSaysSo) {
    run.onProgress([](std::uint64_t) { return false; });
    EXPECT_EQ(run.run(), Outcome::NotWritten);
    EXPECT_EQ(run.error(), "cancelled");
    EXPECT_EQ(document("out.xml"), "<Old/>");
}

TEST_F(LibraryInCpp, ThrowsOnWhatAProgressThrew) {
    run.onProgress([](std::uint64_t) -> bool { throw Enough(); });
    EXPECT_THROW(static_cast<void>(run.run()), Enough);
    EXPECT_EQ(document("out.xml"), "<Old/>");
    run.onProgress({});
    EXPECT_EQ(run.run(), Outcome::Written);
}

TEST_F(LibraryInCpp, ThrowsOnWhatAMessageThrew) {
    run.onMessage([](Level, std::string_view) { throw Enough(); });
    EXPECT_THROW(static_cast<void>(run.run()), Enough);
    EXPECT_EQ(document("out.xml"), sTownsDocument);
}

TEST_F(LibraryInCpp, StaysWhatItIsWhereItIsMoved) {
    int nCalls = 0;
    run.onProgress([&](std::uint64_t) { return ++nCalls > 0; });
    Export moved = std::move(run);
    EXPECT_EQ(moved.run(), Outcome::Written);
    EXPECT_GT(nCalls, 0);
}

TEST_F(LibraryInCpp, Describes) {
    const std::string sMap = program.file("towns.geojson");
    EXPECT_EQ(describe(sMap), program.run({"describe", "--json", sMap}).sOut);
    EXPECT_THROW(static_cast<void>(describe(program.file("none.gpkg"))), Error);
}

TEST_F(LibraryInCpp, TellsTheVersion) {
    EXPECT_EQ(version(), halvane_version());
}

} // namespace halvane::test
