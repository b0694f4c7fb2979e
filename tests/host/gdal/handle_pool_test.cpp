// Which handles stay open while nobody uses them, and how long what was read from them is kept.

#include "SampleData.h"

#include "host/gdal/objects/Table.h"
#include "host/gdal/source/DataFiles.h"
#include "host/gdal/source/Drivers.h"
#include "host/gdal/source/HandlePool.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

namespace halvane::tests {
namespace {

using namespace host::gdal;

std::string makeTables(const TemporaryFolder& folder, const std::string& sName, int lTables) {
    const std::string sFile = folder.file(sName);
    sqlite3* pDatabase = nullptr;
    EXPECT_EQ(sqlite3_open(sFile.c_str(), &pDatabase), SQLITE_OK);
    for (int lTable = 0; lTable < lTables; ++lTable) {
        const std::string sSql = "CREATE TABLE t" + std::to_string(lTable) + " (a INTEGER, b TEXT)";
        EXPECT_EQ(sqlite3_exec(pDatabase, sSql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    }
    sqlite3_close(pDatabase);
    return sFile;
}

class HandlePoolTest : public ::testing::Test {
protected:
    HandlePoolTest() { prepareLibrary(); }

    /// Opens so many files, each of so many tables, and gives their handles back.
    void useFiles(int lFiles, int lTables) {
        for (int lFile = 0; lFile < lFiles; ++lFile) {
            const std::string sFile = makeTables(folder, std::to_string(lFile) + ".sqlite", lTables);
            ASSERT_NE(featureSourceOf(*pPool, sFile), nullptr);
        }
    }

    TemporaryFolder folder;
    std::shared_ptr<HandlePool> pPool = std::make_shared<HandlePool>();
};

TEST_F(HandlePoolTest, KeepsManyHandlesOnFilesOfFewTables) {
    useFiles(20, 2);
    EXPECT_EQ(pPool->idleCount(), 20U);
}

TEST_F(HandlePoolTest, KeepsFewHandlesOnFilesOfManyTables) {
    useFiles(12, 60);
    EXPECT_EQ(pPool->idleCount(), 6U);
}

TEST_F(HandlePoolTest, KeepsSomeHandlesHoweverManyTablesTheirFileHas) {
    useFiles(1, 500);
    const SourcePtr pSource = featureSourceOf(*pPool, folder.file("0.sqlite"));
    {
        const Handle first = pPool->acquire(pSource);
        const Handle second = pPool->acquire(pSource);
        const Handle third = pPool->acquire(pSource);
    }
    EXPECT_GE(pPool->idleCount(), 3U);
}

TEST_F(HandlePoolTest, GivesTheSameHandleAgainWhileItIsIdle) {
    useFiles(1, 2);
    const SourcePtr pSource = featureSourceOf(*pPool, folder.file("0.sqlite"));
    const GDALDataset* const pFirst = &pPool->acquire(pSource).dataset();
    EXPECT_EQ(&pPool->acquire(pSource).dataset(), pFirst);
}

TEST_F(HandlePoolTest, LetsTheFieldsOfTablesGoThatWereReadLongAgo) {
    const SourcePtr pSource = featureSourceOf(*pPool, makeTables(folder, "many.sqlite", 70));
    std::vector<std::unique_ptr<TableData>> tables;
    std::vector<std::weak_ptr<const GdalFields>> fields;
    for (const DatasetEntry& entry : datasetsOf(*pPool, pSource)) {
        tables.push_back(std::make_unique<TableData>(pPool, entry));
        fields.push_back(tables.back()->fields());
    }
    ASSERT_EQ(tables.size(), 70U);
    EXPECT_TRUE(fields.front().expired());
    EXPECT_EQ(tables.back()->fields(), fields.back().lock());
    EXPECT_EQ(tables.front()->fields()->count(), 3);
    const GdalFieldsPtr pUsed = tables.front()->fields();
    for (std::size_t n = 1; n < tables.size(); ++n)
        static_cast<void>(tables[n]->fields());
    EXPECT_EQ(tables.front()->fields(), pUsed) << "who uses them has them";
}

} // namespace
} // namespace halvane::tests
