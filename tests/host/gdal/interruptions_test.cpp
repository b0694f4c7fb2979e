// What databases compute ends when an orderly end is asked for.

#include "SampleData.h"

#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <atomic>

namespace halvane::tests {
namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): all that a plain function can look at
std::atomic<bool> bEnd = false;

bool ends() noexcept {
    return bEnd;
}

class Interruptions : public ::testing::TestWithParam<const char*> {
protected:
    Interruptions() { host::gdal::GdalHost::endWhen(&ends); }
    ~Interruptions() override {
        host::gdal::GdalHost::endWhen(nullptr);
        bEnd = false;
    }

    /// A database with a view of so many rows that never comes to its end.
    host::GisTablePtr openEndless(const std::string& sRows) {
        const std::string sCity = makeCity(folder);
        sPath = GetParam() == std::string("GPKG") ? sCity : convert(sCity, folder.file("c.sqlite"), "SQLite");
        runSql(sPath,
               {"CREATE VIEW endless AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                "SELECT i FROM n WHERE i <= " +
                sRows});
        if (sPath == sCity)
            runSql(sPath, {"INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('endless', "
                           "'endless', 'attributes')"});
        pWorkspace = openWorkspace(sPath);
        return pWorkspace->openTable("endless");
    }

    TemporaryFolder folder;
    std::string sPath;
    host::GisWorkspacePtr pWorkspace;
};

INSTANTIATE_TEST_SUITE_P(Drivers, Interruptions, ::testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(Interruptions, EndAViewWithoutRows) {
    const auto pTable = openEndless("1");
    const auto pRows = pTable->search(nullptr);
    bEnd = true;
    EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pRows, "i")); }), HasSubstr("interrupted"));
}

TEST_P(Interruptions, EndAViewThatIsReadAhead) {
    const auto pRows = openEndless("3000")->search(nullptr);
    for (int lRow = 0; lRow < 2500; ++lRow)
        ASSERT_NE(pRows->nextRow(), nullptr);
    bEnd = true;
    EXPECT_THAT(failureOf([&] {
                    while (pRows->nextRow() != nullptr) {
                    }
                }),
                HasSubstr("interrupted"));
}

TEST_P(Interruptions, EndAFilterAndLeaveTheDataReadable) {
    openEndless("1");
    const auto pRoads = pWorkspace->openTable("roads");
    const host::GisQueryFilter filter{"(SELECT count(*) FROM endless) > 0"};
    bEnd = true;
    EXPECT_THAT(failureOf([&] { static_cast<void>(pRoads->search(&filter)); }), HasSubstr("interrupted"));
    bEnd = false;
    EXPECT_THAT(texts(*pRoads, "NAME"), SizeIs(5));
}

} // namespace
} // namespace halvane::tests
