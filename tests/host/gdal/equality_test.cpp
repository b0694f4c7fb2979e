#include "SampleData.h"

#include "host/Geometry.h"
#include "host/Workspace.h"
#include "host/gdal/objects/Table.h"
#include "host/gdal/rows/EqualityClause.h"
#include "host/gdal/source/Drivers.h"

#include <gmock/gmock.h>
#include <ogrsf_frmts.h>

#include <random>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

TEST(Equality, IsAFieldWithAPlainLiteral) {
    const auto number = host::gdal::parseEquality(" link_1 = -17 ");
    ASSERT_TRUE(number);
    EXPECT_EQ(number->sField, "LINK_1");
    EXPECT_FALSE(number->bText);
    EXPECT_EQ(number->lNumber, -17);
    const auto text = host::gdal::parseEquality("NAME='a = b '");
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->bText);
    EXPECT_EQ(text->sText, "a = b ");
    EXPECT_EQ(host::gdal::parseEquality("NAME='it''s'")->sText, "it's");
}

TEST(Equality, IsNoClauseThatADatabaseMightReadInAnotherWay) {
    using namespace std::string_literals;
    for (const std::string& sWhere : {"F=ABC"s,
                                      "F="s,
                                      "F=1.0"s,
                                      "F=01"s,
                                      "F=+1"s,
                                      "F=-0"s,
                                      "F=1e3"s,
                                      "F=0x10"s,
                                      "F=1234567890123456789"s,
                                      "F='it'''s'"s,
                                      "F='a\\'"s,
                                      "F='a"s,
                                      "F=a'"s,
                                      "F='a\0b'"s,
                                      "F=\"a\""s,
                                      "F==1"s,
                                      "F>=1"s,
                                      "F!=1"s,
                                      "F=1 OR 1=1"s,
                                      "F='a' OR 'b'='b'"s,
                                      "1=1"s,
                                      "=1"s,
                                      "F G=1"s,
                                      "\"F\"=1"s,
                                      "abs(F)=1"s,
                                      "F"s,
                                      ""s}) {
        EXPECT_FALSE(host::gdal::parseEquality(sWhere)) << sWhere;
    }
}

struct EqualityFormat {
    const char* pDriver;
    const char* pFile;
};

std::ostream& operator<<(std::ostream& out, const EqualityFormat& format) {
    return out << format.pDriver;
}

const std::vector<std::string> aTexts{"1",
                                      "1.0",
                                      "01",
                                      "abc",
                                      "ABC",
                                      "Abc",
                                      "abc ",
                                      " abc",
                                      "a  b",
                                      "",
                                      "\xC3\xA4"
                                      "b",
                                      "\xC3\x84"
                                      "b",
                                      "it",
                                      "NULL",
                                      "-1",
                                      "-1 "};

std::string describeFound(const host::GisRow& row) {
    std::string sAll = std::to_string(row.objectId());
    for (std::int32_t lIndex = 0; lIndex < row.fields().count(); ++lIndex) {
        const ValueView view = row.value(lIndex);
        sAll += "|" + std::to_string(view.index()) + ":" +
                (std::holds_alternative<ObjectPtr>(view) ? "" : toText(view));
    }
    const host::GisGeometryPtr pShape = row.shape();
    return sAll + (pShape == nullptr ? "|-" : "|" + std::to_string(pShape->fromPoint()->x()));
}

std::vector<std::string> rowsOf(host::GisTable& table, const std::string& sWhere) {
    std::vector<std::string> all;
    const host::GisQueryFilter filter{sWhere};
    const auto pCursor = table.search(&filter);
    while (const auto pRow = pCursor->nextRow())
        all.push_back(describeFound(*pRow));
    return all;
}

class RelatedRowsOf : public ::testing::TestWithParam<EqualityFormat> {
protected:
    void SetUp() override {
        host::gdal::prepareLibrary();
        const GDALDatasetUniquePtr pDataset(GetGDALDriverManager()
                                                ->GetDriverByName(GetParam().pDriver)
                                                ->Create(sPath.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRLayer& layer = *pDataset->CreateLayer("related", nullptr, wkbPoint, nullptr);
        for (const auto& [pName, type] : {std::pair{"NUM", OFTInteger}, std::pair{"BIG", OFTInteger64},
                                          std::pair{"TXT", OFTString}, std::pair{"NOTE", OFTString}}) {
            OGRFieldDefn field(pName, type);
            layer.CreateField(&field);
        }
        pDataset->StartTransaction();
        for (int lRow = 0; lRow < 1500; ++lRow) {
            OGRFeature feature(layer.GetLayerDefn());
            fill(feature, lRow);
            ASSERT_EQ(layer.CreateFeature(&feature), OGRERR_NONE);
        }
        pDataset->CommitTransaction();
    }

    void fill(OGRFeature& feature, int lRow) {
        if (random() % 6 != 0)
            feature.SetField("NUM", static_cast<int>(random() % 50) - 5);
        if (random() % 6 != 0)
            feature.SetField("BIG", GIntBig{9007199254740990} + static_cast<int>(random() % 9));
        if (random() % 6 != 0)
            feature.SetField("TXT", aTexts[random() % aTexts.size()].c_str());
        feature.SetField("NOTE", ("row " + std::to_string(lRow)).c_str());
        OGRPoint point(static_cast<double>(random() % 1000), static_cast<double>(random() % 1000));
        feature.SetGeometry(&point);
    }

    [[nodiscard]] host::GisTablePtr open() const { return openWorkspace(sPath)->openTable("related"); }

    // Asked for the first time, a new host has only the format's own filter.
    [[nodiscard]] std::vector<std::string> plainRows(const std::string& sWhere) const {
        return rowsOf(*open(), sWhere);
    }

    TemporaryFolder folder;
    std::string sPath = folder.file(GetParam().pFile);
    std::mt19937 random{11};
};

INSTANTIATE_TEST_SUITE_P(Formats, RelatedRowsOf,
                         ::testing::Values(EqualityFormat{"GPKG", "related.gpkg"},
                                           EqualityFormat{"SQLite", "related.sqlite"},
                                           EqualityFormat{"ESRI Shapefile", "related.shp"},
                                           EqualityFormat{"CSV", "related.csv"},
                                           EqualityFormat{"GeoJSON", "related.geojson"},
                                           EqualityFormat{"FlatGeobuf", "related.fgb"}),
                         [](const auto& test) {
                             std::string sName = test.param.pDriver;
                             std::erase(sName, ' ');
                             return sName;
                         });

TEST_P(RelatedRowsOf, AFormatAreTheSameInTheSameOrderWithAndWithoutAnIndex) {
    std::vector<std::string> clauses;
    for (const std::string& sText : aTexts) {
        clauses.push_back("TXT='" + sText + "'");
        clauses.push_back("txt = '" + sText + "  '");
    }
    clauses.insert(clauses.end(), {"TXT='aBC'", "TXT='no such'", "NOTE='ROW 7'", "NOTE='row 7'"});
    for (int lNumber = -6; lNumber < 50; lNumber += 5)
        clauses.push_back("NUM=" + std::to_string(lNumber));
    for (std::int64_t lNumber = 9007199254740990; lNumber < 9007199254741000; ++lNumber)
        clauses.push_back("BIG = " + std::to_string(lNumber));
    clauses.insert(clauses.end(),
                   {"NUM=4294967297", "NUM='1'", "BIG='9007199254740993'", "NUM='x'", "TXT=1"});
    const auto pTable = open();
    std::size_t nFound = 0;
    for (int lPass = 0; lPass < 2; ++lPass) {
        for (const std::string& sWhere : clauses) {
            std::vector<std::string> plain;
            std::vector<std::string> indexed;
            const std::string sPlainFailure = failureOf([&] { plain = plainRows(sWhere); });
            const std::string sFailure = failureOf([&] { indexed = rowsOf(*pTable, sWhere); });
            EXPECT_EQ(indexed, plain) << sWhere;
            EXPECT_EQ(sFailure, sPlainFailure) << sWhere;
            nFound += indexed.size();
        }
    }
    EXPECT_GT(nFound, 1000U);
}

TEST_P(RelatedRowsOf, AFormatAreFailuresWheneverTheClauseIsOne) {
    const auto pTable = open();
    for (int lTime = 0; lTime < 4; ++lTime) {
        EXPECT_THAT(failureOf([&] { rowsOf(*pTable, "TXT = abc"); }), HasSubstr("TXT = abc"));
        EXPECT_THAT(failureOf([&] { rowsOf(*pTable, "NOFIELD = 1"); }), HasSubstr("NOFIELD = 1"));
        rowsOf(*pTable, "TXT = 'abc'");
    }
}

TEST_P(RelatedRowsOf, AFormatComeFromAnIndexThatReadsTheTableOnce) {
    using namespace host::gdal;
    const auto pPool = std::make_shared<HandlePool>();
    const SourcePtr pSource = featureSourceOf(*pPool, sPath);
    TableData data(pPool, datasetsOf(*pPool, pSource).front());
    int lReadings = 0;
    const auto openLayer = [&] {
        ++lReadings;
        return data.openLayer();
    };
    const bool bNumbers = std::string_view(GetParam().pDriver) != "CSV"; // its values are texts
    const auto clauseOf = [&](int lNumber) {
        return *parseEquality(bNumbers ? "NUM=" + std::to_string(lNumber)
                                       : "NOTE='row " + std::to_string(lNumber) + "'");
    };
    EqualityIndexes indexes;
    EXPECT_EQ(indexes.search(clauseOf(1), data.fields(), openLayer), nullptr);
    EXPECT_EQ(lReadings, 0);
    indexes.noteAnswered(clauseOf(1));
    std::size_t nRows = 0;
    for (int lNumber = 0; lNumber < 40; ++lNumber) {
        const auto pCursor = indexes.search(clauseOf(lNumber), data.fields(), openLayer);
        ASSERT_NE(pCursor, nullptr) << lNumber;
        while (pCursor->nextRow() != nullptr)
            ++nRows;
    }
    EXPECT_EQ(lReadings, 1);
    EXPECT_GE(nRows, 40U);
}

TEST_P(RelatedRowsOf, AFormatCanBeReadWhileOtherReadingsGoOn) {
    const auto pTable = open();
    const auto expected = plainRows("TXT='abc'");
    ASSERT_GE(expected.size(), 3U);
    rowsOf(*pTable, "TXT='1'");
    const host::GisQueryFilter filter{"TXT='abc'"};
    const auto pOuter = pTable->search(&filter);
    std::vector<std::string> outer;
    while (const auto pRow = pOuter->nextRow()) {
        outer.push_back(describeFound(*pRow));
        EXPECT_EQ(rowsOf(*pTable, "TXT='abc'"), expected);
    }
    EXPECT_EQ(outer, expected);
}

class RelatedRows : public ::testing::Test {
protected:
    // Rows of a table "t" with the columns fid and V, asked for often enough to be answered by an index.
    std::vector<std::vector<std::string>> answers(const std::vector<std::string>& clauses) {
        const auto pTable = openWorkspace(sPath)->openTable("t");
        std::vector<std::vector<std::string>> all;
        for (const std::string& sWhere : clauses) {
            rowsOf(*pTable, sWhere);
            all.push_back(rowsOf(*pTable, sWhere));
            EXPECT_EQ(all.back(), rowsOf(*openWorkspace(sPath)->openTable("t"), sWhere)) << sWhere;
        }
        return all;
    }
    void makeTable(const std::string& sColumns, const std::vector<std::string>& values,
                   const std::vector<std::string>& more = {}) {
        makeCity(folder);
        std::vector<std::string> statements{
            "CREATE TABLE t (fid INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, " + sColumns + ")",
            "INSERT INTO gpkg_contents(table_name, data_type, identifier) VALUES ('t', 'attributes', 't')"};
        for (const std::string& sValue : values)
            statements.push_back("INSERT INTO t(V) VALUES (" + sValue + ")");
        statements.insert(statements.end(), more.begin(), more.end());
        runSql(sPath, statements);
    }

    TemporaryFolder folder;
    std::string sPath = folder.file("city.gpkg");
};

TEST_F(RelatedRows, AreTheDatabasesOwnWhereAColumnHoldsValuesOfAnotherType) {
    makeTable("V INTEGER", {"1", "'1'", "1.0", "1.5", "'one'", "NULL", "x'31'", "2"});
    const auto found = answers({"V=1", "V=2", "V='1'", "V='one'"});
    EXPECT_EQ(found[0].size(), 3U);
    EXPECT_EQ(found[3].size(), 1U);
}

TEST_F(RelatedRows, AreTheDatabasesOwnWhereTextsHoldBytesOrNul) {
    makeTable("V TEXT", {"1", "'1'", "'1 '", "'a'", "'A'", "'a' || char(0) || 'b'", "NULL"});
    const auto found = answers({"V=1", "V='1'", "V='a'", "V='A'", "V=''"});
    EXPECT_EQ(found[1].size(), 2U);
    EXPECT_EQ(found[2].size(), 1U);
    EXPECT_THAT(found[4], IsEmpty());
}

TEST_F(RelatedRows, CompareAsTheColumnsCollationDoes) {
    makeTable("V TEXT COLLATE NOCASE", {"'a'", "'A'", "'b'"});
    EXPECT_EQ(answers({"V='a'"}).front().size(), 2U);
}

TEST_F(RelatedRows, KeepTheOrderOfTheKeyBesideAnIndexThatTheDatabaseUses) {
    makeTable("V INTEGER, W INTEGER", {"1", "1", "1", "2"},
              {"UPDATE t SET W = 10 - fid", "CREATE INDEX i ON t(V, W)"});
    EXPECT_THAT(answers({"V=1"}).front(), ElementsAre(StartsWith("1|"), StartsWith("2|"), StartsWith("3|")));
}

TEST_F(RelatedRows, AreTheSameOfATableThatIsTooLargeToBeKept) {
    std::vector<std::string> values;
    for (int lRow = 0; lRow < 120; ++lRow)
        values.push_back(std::to_string(lRow % 3));
    makeTable("V INTEGER, W BLOB", values, {"UPDATE t SET W = zeroblob(500000)"});
    EXPECT_EQ(answers({"V=1", "V=2", "V=7"})[1].size(), 40U);
}

TEST_F(RelatedRows, AreFoundBesideRowsThatWereDeleted) {
    makeTable("V INTEGER", {"1", "2", "1", "1", "2"}, {"DELETE FROM t WHERE fid = 3"});
    EXPECT_THAT(answers({"V=1"}).front(), ElementsAre(StartsWith("1|"), StartsWith("4|")));
}

TEST_F(RelatedRows, AreThoseOfAWriteAheadLogAsItIsNow) {
    makeTable("V INTEGER", {"1", "2", "1"}, {"PRAGMA journal_mode = WAL"});
    const auto pTable = openWorkspace(sPath)->openTable("t");
    for (int lTime = 0; lTime < 3; ++lTime)
        EXPECT_EQ(rowsOf(*pTable, "V=1").size(), 2U);
    runSql(sPath, {"INSERT INTO t(V) VALUES (1)"});
    for (int lTime = 0; lTime < 3; ++lTime)
        EXPECT_EQ(rowsOf(*pTable, "V=1").size(), 3U);
}

TEST_F(RelatedRows, AreThoseOfTheDataAsItIsNow) {
    makeTable("V INTEGER", {"1", "2", "1"});
    const auto pTable = openWorkspace(sPath)->openTable("t");
    for (int lTime = 0; lTime < 3; ++lTime) {
        EXPECT_EQ(rowsOf(*pTable, "V=1").size(), 2U);
    }
    runSql(sPath, {"INSERT INTO t(V) VALUES (1)"});
    for (int lTime = 0; lTime < 3; ++lTime) {
        EXPECT_EQ(rowsOf(*pTable, "V=1").size(), 3U);
    }
}

} // namespace
} // namespace halvane::tests
