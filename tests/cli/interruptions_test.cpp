// What ends at the first signal although the data never comes to an end.

#include "cli/Samples.h"

#include <ogrsf_frmts.h>

namespace halvane::test {
namespace {

class Endless : public ExportFixture, public ::testing::WithParamInterface<const char*> {
protected:
    Endless() {
        GDALAllRegister();
        const std::string sDriver = GetParam();
        GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName(sDriver.c_str());
        const GDALDatasetUniquePtr pData(pDriver->Create(sData.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRLayer* pLayer = pData->CreateLayer("towns", nullptr, wkbNone);
        OGRFieldDefn name("name", OFTString);
        EXPECT_EQ(pLayer->CreateField(&name), OGRERR_NONE);
        OGRFeature feature(pLayer->GetLayerDefn());
        feature.SetField(0, "Ada");
        EXPECT_EQ(pLayer->CreateFeature(&feature), OGRERR_NONE);
        addView(*pData, "endless",
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                "SELECT i AS name FROM n WHERE i < 0");
        program.write("old.xml", "<Old/>");
    }

    static void run(GDALDataset& data, const char* pSql) {
        data.ReleaseResultSet(data.ExecuteSQL(pSql, nullptr, nullptr));
    }

    static void addView(GDALDataset& data, const std::string& sName, const std::string& sQuery) {
        run(data, ("CREATE VIEW " + sName + " AS " + sQuery).c_str());
        if (GetParam() == std::string("GPKG"))
            run(data, ("INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('" + sName +
                       "', '" + sName + "', 'attributes')")
                          .c_str());
    }

    std::string control(const std::string& sTable) {
        return program.write("endless.xml", R"(<T Name="T"><A Name="A" DataSource="Table" Identity="TableName"
 IdentityValue=")" + sTable + R"("><R Name="R" DataSource="Record" Entries="Multiple">
 <F Name="name" IdentityValue="name"/></R></A></T>)");
    }

    RunResult runUntilTerm(const std::vector<std::string>& arguments) const {
        RunSettings settings;
        settings.sTermWhileReading = sData;
        return program.run(arguments, settings);
    }

    void expectCancelled(const RunResult& result) const {
        EXPECT_EQ(result.lExitCode, 4);
        EXPECT_EQ(result.sOut, "");
        EXPECT_EQ(result.sErr,
                  "halvane: nothing was written to \"" + program.file("old.xml") + "\": cancelled\n");
        EXPECT_EQ(program.read("old.xml"), "<Old/>");
    }

    std::string sData = program.file(GetParam() == std::string("GPKG") ? "data.gpkg" : "data.sqlite");
    static constexpr const char* pFilter =
        "(WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n) > 0";
};

INSTANTIATE_TEST_SUITE_P(Drivers, Endless, ::testing::Values("GPKG", "SQLite"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(Endless, ViewIsLeftAtTheFirstSignalOfAnExport) {
    control("endless");
    expectCancelled(runUntilTerm({"export", "--map", sData, "endless.xml", "old.xml"}));
}

TEST_P(Endless, SelectionIsLeftAtTheFirstSignal) {
    control("towns");
    program.write("map.xml", R"(<MapDocument><Map name="M"><Table source=")" + sData +
                                 R"(" dataset="towns" filter=")" +
                                 std::string(pFilter).replace(std::string(pFilter).find('>'), 1, "&gt;") +
                                 R"("/></Map></MapDocument>)");
    expectCancelled(runUntilTerm({"export", "--map", "map.xml", "endless.xml", "old.xml"}));
}

TEST_P(Endless, ViewIsLeftAtTheFirstSignalOfADescription) {
    const auto result = runUntilTerm({"describe", sData});
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr, "halvane: nothing was described: the description was cancelled\n");
}

TEST_P(Endless, FunctionIsEndedSomeSecondsAfterTheFirstSignal) {
    // One call, which the database cannot end before it returns.
    const GDALDatasetUniquePtr pData(GDALDataset::Open(sData.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    addView(*pData, "slow", "SELECT instr(hex(zeroblob(4000000)), hex(zeroblob(2000000)) || '1') AS name");
    pData->FlushCache();
    control("slow");
    const auto result =
        runUntilTerm({"export", "--map", sData, "endless.xml", "old.xml", "--report", "r.json"});
    EXPECT_EQ(result.lExitCode, 4);
    EXPECT_EQ(result.sOut, "");
    EXPECT_EQ(result.sErr,
              "halvane: cancelled while the data library, which cannot be interrupted there, was "
              "busy on \"" +
                  sData + "\" in its driver \"" + GetParam() + "\"; nothing was written\n");
    EXPECT_EQ(program.read("old.xml"), "<Old/>");
    EXPECT_EQ(program.read("r.json"), std::nullopt);
}

} // namespace
} // namespace halvane::test
