#include "SampleData.h"

#include "host/Fields.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;

class Rows : public ::testing::Test {
protected:
    host::GisRowPtr firstRoad() { return pRoads->search(nullptr)->nextRow(); }
    static ValueView valueOf(const host::GisRow& row, std::string_view sField) {
        return row.value(row.fields().findField(sField));
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    host::GisFeatureClassPtr pRoads = openWorkspace(sCity)->openFeatureClass("roads");
};

TEST_F(Rows, YieldValuesInTheTypesOfTheirFields) {
    const host::GisRowPtr pRow = firstRoad();
    EXPECT_EQ(std::get<std::string_view>(valueOf(*pRow, "NAME")), "R1");
    EXPECT_EQ(std::get<std::int32_t>(valueOf(*pRow, "N")), 10);
    EXPECT_EQ(std::get<double>(valueOf(*pRow, "LEN")), 1.5);
    EXPECT_EQ(std::get<float>(valueOf(*pRow, "W")), 2.25F);
    EXPECT_EQ(std::get<std::int32_t>(valueOf(*pRow, "SMALL")), 1);
    EXPECT_EQ(std::get<std::int32_t>(valueOf(*pRow, "OPEN")), 1);
    EXPECT_EQ(std::get<Date>(valueOf(*pRow, "BUILT")), (Date{1991, 2, 3, 0, 0, 0}));
    EXPECT_EQ(std::get<Date>(valueOf(*pRow, "SEEN")), (Date{2001, 12, 31, 23, 58, 59, 500}));
    const auto bytes = std::get<Bytes>(valueOf(*pRow, "RAW"));
    EXPECT_THAT(std::vector<std::byte>(bytes.begin(), bytes.end()),
                ElementsAre(std::byte{1}, std::byte{0}, std::byte{255}));
}

TEST_F(Rows, KeepEveryDigitOfA64BitInteger) {
    // 2^53 + 2 has a neighbour that a floating-point number cannot tell from it.
    EXPECT_EQ(toText(valueOf(*firstRoad(), "BIG")), "9007199254740994");
    EXPECT_THAT(texts(*pRoads, "BIG", "NAME IN ('R2', 'R3')"),
                ElementsAre("9007199254740995", "9007199254740996"));
}

TEST_F(Rows, TellTheirObjectIdentifierAndItsFieldAlike) {
    const host::GisRowPtr pRow = firstRoad();
    EXPECT_EQ(pRow->objectId(), 1);
    EXPECT_EQ(std::get<std::int64_t>(pRow->value(0)), 1);
}

TEST_F(Rows, AreNullWhereTheDataIs) {
    const auto pCursor = pRoads->search(nullptr);
    host::GisRowPtr pRow;
    for (int lNumber = 1; lNumber <= 5; ++lNumber)
        pRow = pCursor->nextRow();
    EXPECT_EQ(toText(valueOf(*pRow, "NAME")), "R5");
    for (const auto* pField : {"N", "BIG", "LEN", "W", "SMALL", "OPEN", "BUILT", "SEEN", "RAW"}) {
        EXPECT_TRUE(isNull(valueOf(*pRow, pField))) << pField;
    }
}

TEST_F(Rows, KeepTheirValuesAfterTheCursorHasMovedOnAndGone) {
    auto pCursor = pRoads->search(nullptr);
    const host::GisRowPtr pFirst = pCursor->nextRow();
    const ValueView vName = valueOf(*pFirst, "NAME");
    const host::GisRowPtr pSecond = pCursor->nextRow();
    while (pCursor->nextRow() != nullptr) {
    }
    pCursor.reset();
    pRoads.reset();
    EXPECT_EQ(std::get<std::string_view>(vName), "R1");
    EXPECT_EQ(toText(valueOf(*pSecond, "NAME")), "R2");
}

TEST_F(Rows, ThatNobodyHoldsAnyMoreAreUsedAgain) {
    const auto pCursor = pRoads->search(nullptr);
    const host::GisRow* pFirst = pCursor->nextRow().get();
    const host::GisRowPtr pSecond = pCursor->nextRow();
    EXPECT_EQ(pSecond.get(), pFirst);
    EXPECT_NE(pCursor->nextRow().get(), pSecond.get());
    EXPECT_EQ(toText(valueOf(*pSecond, "NAME")), "R2");
}

TEST_F(Rows, HandOnBytesThatAreNotValidText) {
    const std::string sPath = folder.write("raw.csv", "A,B\nx\xff\xfey,2\n");
    const auto pTable = openWorkspace(sPath)->openTable("raw");
    EXPECT_THAT(texts(*pTable, "A"), ElementsAre("x\xff\xfey"));
}

TEST_F(Rows, WriteListsAsText) {
    const std::string sPath =
        folder.write("lists.geojson", R"({"type":"FeatureCollection","features":[{"type":"Feature",)"
                                      R"("properties":{"l":[1,20],"s":["a","b"]},"geometry":null}]})");
    const auto pTable = openWorkspace(sPath)->openTable("lists");
    EXPECT_EQ(pTable->fields()->field(pTable->fields()->findField("l")).typeCode(), 4);
    EXPECT_THAT(texts(*pTable, "l"), ElementsAre("[ 1, 20 ]"));
    EXPECT_THAT(texts(*pTable, "s"), ElementsAre(R"([ "a", "b" ])"));
}

TEST_F(Rows, TellWhatTheDataKnowsOfTimes) {
    const std::string sPath = folder.write("times.csv", "M,D,B\n2024-05-01 12:30:00.250+05:30,2024-05-01,1\n"
                                                        "2024-05-01 12:30:00,2024-05-01,0\n");
    folder.write("times.csvt", "\"DateTime\",\"Date\",\"Integer(Boolean)\"\n");
    const auto pCursor = openWorkspace(sPath)->openTable("times")->search(nullptr);
    const auto pRow = pCursor->nextRow();
    EXPECT_EQ(std::get<Date>(valueOf(*pRow, "M")), (Date{2024, 5, 1, 12, 30, 0, 250, 330}));
    EXPECT_EQ(std::get<Date>(valueOf(*pCursor->nextRow(), "M")), (Date{2024, 5, 1, 12, 30}));
    const auto roleOf = [&](std::string_view sField) {
        return pRow->fields().field(pRow->fields().findField(sField)).valueRole();
    };
    EXPECT_EQ(roleOf("M"), host::ValueRole::DateTime);
    EXPECT_EQ(roleOf("D"), host::ValueRole::Date);
    EXPECT_EQ(roleOf("B"), host::ValueRole::Boolean);
}

TEST_F(Rows, OfATimeOfDayHaveNoDate) {
    const std::string sPath = folder.write("times.csv", "T,N\n12:34:56,1\n");
    folder.write("times.csvt", "\"Time\",\"Integer\"\n");
    const auto pRow = openWorkspace(sPath)->openTable("times")->search(nullptr)->nextRow();
    EXPECT_EQ(std::get<Date>(valueOf(*pRow, "T")), (Date{0, 0, 0, 12, 34, 56}));
}

TEST_F(Rows, OfATimeOfDayInASheetHaveNoDate) {
    for (const auto& [pFormat, pFile] : {std::pair{"XLSX", "times.xlsx"}, {"ODS", "times.ods"}}) {
        const std::string sPath = folder.file(pFile);
        {
            const GDALDatasetUniquePtr pDataset(GetGDALDriverManager()->GetDriverByName(pFormat)->Create(
                sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
            OGRLayer& layer = *pDataset->CreateLayer("times", nullptr, wkbNone, nullptr);
            for (const auto& [pName, type] : {std::pair{"T", OFTTime}, {"D", OFTDate}}) {
                OGRFieldDefn field(pName, type);
                ASSERT_EQ(layer.CreateField(&field), OGRERR_NONE);
            }
            OGRFeature feature(layer.GetLayerDefn());
            feature.SetField("T", 2000, 1, 1, 12, 34, 56.0F, 0);
            feature.SetField("D", 2020, 2, 3);
            ASSERT_EQ(layer.CreateFeature(&feature), OGRERR_NONE);
        }
        const auto pRow = openWorkspace(sPath)->openTable("times")->search(nullptr)->nextRow();
        EXPECT_EQ(std::get<Date>(valueOf(*pRow, "T")), (Date{0, 0, 0, 12, 34, 56})) << pFormat;
        EXPECT_EQ(std::get<Date>(valueOf(*pRow, "D")), (Date{2020, 2, 3, 0, 0, 0})) << pFormat;
    }
}

TEST_F(Rows, OfATimeOfDayAmongDatesOfAnExcelSheetHaveNoDate) {
    const std::string sPath = folder.file("times.xlsx");
    {
        const GDALDatasetUniquePtr pDataset(GetGDALDriverManager()->GetDriverByName("XLSX")->Create(
            sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRLayer& layer = *pDataset->CreateLayer("times", nullptr, wkbNone, nullptr);
        OGRFieldDefn field("T", OFTDateTime);
        ASSERT_EQ(layer.CreateField(&field), OGRERR_NONE);
        OGRFeature feature(layer.GetLayerDefn());
        feature.SetField(0, 1899, 12, 30, 12, 34, 56.0F, 0); // as the sheet stores a time of day
        ASSERT_EQ(layer.CreateFeature(&feature), OGRERR_NONE);
        OGRFeature other(layer.GetLayerDefn());
        other.SetField(0, 2020, 2, 3, 1, 2, 3.0F, 0);
        ASSERT_EQ(layer.CreateFeature(&other), OGRERR_NONE);
    }
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("times"), "T"), ElementsAre("12:34:56", "02/03/2020"));
}

TEST_F(Rows, OfTextsThatAreNoDatesHaveNone) {
    folder.write("m.mid", "\"\"\n\"********\"\n\"20200203\"\n");
    const std::string sPath = folder.write(
        "m.mif", "Version 300\nCharset \"WindowsLatin1\"\nDelimiter \",\"\nCoordSys Earth Projection 1, 0\n"
                 "Columns 1\n  D Date\nData\n\nPoint 1 2\nPoint 1 3\nPoint 1 4\n");
    EXPECT_THAT(texts(*openWorkspace(sPath)->openTable("m"), "D"), ElementsAre("", "", "02/03/2020"));
}

TEST(InfiniteNumbers, AreToldByFieldAndRowAndLeaveTheOthers) {
    const TemporaryFolder folder;
    const std::string sPath = makeCity(folder);
    runSql(sPath,
           {"CREATE TABLE sizes (fid INTEGER PRIMARY KEY, n REAL)",
            "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 3000) INSERT INTO "
            "sizes SELECT i, CASE WHEN i IN (2, 2500) THEN -9e999 ELSE i + 0.5 END FROM c",
            "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('sizes', 'sizes', "
            "'attributes')"});
    const auto pTable = openWorkspace(sPath)->openTable("sizes");
    const std::int32_t lField = pTable->fields()->findField("n");
    const auto pRows = pTable->search(nullptr);
    std::vector<std::string> told;
    int lRead = 0;
    while (const auto pRow = pRows->nextRow()) {
        const std::string sFailure = failureOf([&] { static_cast<void>(pRow->value(lField)); });
        if (sFailure.empty())
            ++lRead;
        else
            told.push_back(sFailure);
    }
    EXPECT_EQ(lRead, 2998);
    EXPECT_THAT(
        told, ::testing::ElementsAre("The number in \"n\" of row 2 is infinite, or too large to be read",
                                     "The number in \"n\" of row 2500 is infinite, or too large to be read"));
}

class TablesWithoutRowNumbers : public ::testing::Test {
protected:
    // A table of a GeoPackage whose rows stand in the order of its key, in the database too.
    [[nodiscard]] host::GisTablePtr make(const std::string& sKeyType, const std::string& sKey) const {
        const std::string sPath = makeCity(folder);
        runSql(sPath, {"CREATE TABLE t (id " + sKeyType + " PRIMARY KEY, n MEDIUMINT) WITHOUT ROWID",
                       "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 3000) "
                       "INSERT INTO t SELECT " +
                           sKey + ", i FROM c",
                       "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('t', 't', "
                       "'attributes')"});
        return openWorkspace(sPath)->openTable("t");
    }

    TemporaryFolder folder;
};

TEST_F(TablesWithoutRowNumbers, AreReadByAKeyOfWholeNumbers) {
    const auto pTable = make("INTEGER", "3001 - i");
    const std::int32_t lField = pTable->fields()->findField("n");
    const auto pRows = pTable->search(nullptr);
    std::int32_t lRows = 0;
    while (const auto pRow = pRows->nextRow()) {
        EXPECT_EQ(pRow->objectId(), ++lRows);
        EXPECT_EQ(std::get<std::int32_t>(pRow->value(lField)), 3001 - lRows);
    }
    EXPECT_EQ(lRows, 3000);
    EXPECT_EQ(texts(*pTable, "id", "n = 2").size(), 1U);
}

TEST_F(TablesWithoutRowNumbers, FailByAKeyOfTexts) {
    const auto pTable = make("TEXT", "'k' || i");
    for (const char* sWhere : {"", "n = 2", "n = 2", "n = 2"}) {
        EXPECT_THAT(failureOf([&] { static_cast<void>(texts(*pTable, "n", sWhere)); }),
                    ::testing::HasSubstr("\"t\" failed"));
    }
}

TEST(Drawings, HaveTheirLayersAndWordsAsFields) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write("plan.dxf", "0\nSECTION\n2\nENTITIES\n"
                                                       "0\nPOINT\n8\nwalls\n10\n1\n20\n2\n"
                                                       "0\nTEXT\n8\nwords\n10\n1\n20\n2\n40\n1\n1\nHall\n"
                                                       "0\nENDSEC\n0\nEOF\n");
    const auto pTable = openWorkspace(sPath)->openTable("entities");
    EXPECT_THAT(texts(*pTable, "Layer"), ::testing::ElementsAre("walls", "words"));
    EXPECT_THAT(texts(*pTable, "Text"), ::testing::ElementsAre(::testing::_, "Hall"));
}

} // namespace
} // namespace halvane::tests
