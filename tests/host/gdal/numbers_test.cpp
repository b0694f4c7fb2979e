// Whole numbers that the types of their fields cannot hold: they are failures of the values, not other
// numbers.

#include "SampleData.h"

#include "host/Fields.h"
#include "host/Workspace.h"

#include <cpl_vsi.h>
#include <gmock/gmock.h>

#include <fstream>
#include <limits>
#include <map>
#include <utility>

namespace halvane::tests {
namespace {

using ::testing::IsEmpty;

// What of the rows' values in a field fails, by row; the others come as texts.
struct Values {
    std::vector<std::int64_t> failed;
    std::map<std::int64_t, std::string> read;
};

Values valuesOf(host::GisCursor& cursor, std::int32_t lField, const std::string& sField) {
    Values values;
    while (const auto pRow = cursor.nextRow()) {
        std::string sText;
        const std::string sFailure = failureOf([&] {
            const ValueView value = pRow->value(lField);
            if (const auto* pWhole = std::get_if<std::int32_t>(&value)) {
                sText = std::to_string(*pWhole);
            } else if (const auto* pLong = std::get_if<std::int64_t>(&value)) {
                sText = std::to_string(*pLong);
            } else if (const auto* pDouble = std::get_if<double>(&value)) {
                sText = std::to_string(*pDouble);
            }
        });
        if (sFailure.empty()) {
            values.read[pRow->objectId()] = sText;
            continue;
        }
        values.failed.push_back(pRow->objectId());
        EXPECT_EQ(sFailure, "The number in \"" + sField + "\" of row " + std::to_string(pRow->objectId()) +
                                " is too large for the field's type; give the field a larger one");
    }
    return values;
}

Values valuesOf(const std::string& sPath, const std::string& sTable, const std::string& sField,
                const std::string& sWhere = {}) {
    const auto pTable = openWorkspace(sPath)->openTable(sTable);
    const host::GisQueryFilter filter{sWhere};
    const auto pCursor = pTable->search(sWhere.empty() ? nullptr : &filter);
    return valuesOf(*pCursor, pTable->fields()->findField(sField), sField);
}

using Ids = std::vector<std::int64_t>;

class LargeNumbersOf : public ::testing::TestWithParam<const char*> {
protected:
    // Rows 1 to 3000; in some of them the columns of numbers hold more than their types.
    [[nodiscard]] std::string makeNumbers() const {
        const std::string sFormat = GetParam();
        const std::string sPath = folder.file(sFormat == "GPKG" ? "n.gpkg" : "n.sqlite");
        convertLayer(makeCity(folder), "notes", sPath, sFormat);
        // Each format's own name of the type.
        const std::string sLong = sFormat == "GPKG" ? "INTEGER" : "BIGINT";
        runSql(sPath,
               {"DELETE FROM notes", "ALTER TABLE notes ADD COLUMN m MEDIUMINT",
                "ALTER TABLE notes ADD COLUMN s SMALLINT", "ALTER TABLE notes ADD COLUMN i " + sLong,
                "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 3000) INSERT INTO "
                "notes (fid, road, m, s, i) SELECT i, i % 10, i, i, i FROM c",
                "UPDATE notes SET m = 5000000000 WHERE fid IN (2, 2500)",
                "UPDATE notes SET m = -5000000000, s = -9e18 WHERE fid = 4",
                "UPDATE notes SET m = 2147483647, i = 9223372036854775807 WHERE fid = 5",
                "UPDATE notes SET m = -2147483648, i = -9223372036854775808 WHERE fid = 6",
                "UPDATE notes SET m = 4294967297, i = 1e30 WHERE fid = 7",
                "UPDATE notes SET m = NULL, s = 2147483648 WHERE fid = 8"});
        return sPath;
    }

    TemporaryFolder folder;
};

TEST_P(LargeNumbersOf, FailByFieldAndRowHoweverRowsAreRead) {
    const std::string sPath = makeNumbers();
    const Values values = valuesOf(sPath, "notes", "m");
    EXPECT_EQ(values.failed, (Ids{2, 4, 7, 2500}));
    EXPECT_EQ(values.read.size(), 2996U);
    EXPECT_EQ(values.read.at(5), "2147483647");
    EXPECT_EQ(values.read.at(6), "-2147483648");
    EXPECT_EQ(values.read.at(8), "");
    EXPECT_EQ(values.read.at(3000), "3000");
    EXPECT_EQ(valuesOf(sPath, "notes", "s").failed, (Ids{4, 8}));
    const Values longs = valuesOf(sPath, "notes", "i");
    EXPECT_EQ(longs.failed, (Ids{7}));
    EXPECT_EQ(longs.read.at(5), "9223372036854775807");
    EXPECT_EQ(longs.read.at(6), "-9223372036854775808");
}

TEST_P(LargeNumbersOf, FailAmongFilteredRelatedAndSelectedRows) {
    const std::string sPath = makeNumbers();
    EXPECT_EQ(valuesOf(sPath, "notes", "m", "road >= 0").failed, (Ids{2, 4, 7, 2500}));
    const auto pTable = openWorkspace(sPath)->openTable("notes");
    const std::int32_t lField = pTable->fields()->findField("m");
    const host::GisQueryFilter filter{"road=2"};
    for (int lTime = 0; lTime < 4; ++lTime) {
        EXPECT_EQ(valuesOf(*pTable->search(&filter), lField, "m").failed, Ids{2});
    }
}

TEST_P(LargeNumbersOf, FailInViews) {
    const std::string sPath = makeNumbers();
    const bool bPackage = std::string_view(GetParam()) == "GPKG";
    runSql(sPath, {"CREATE VIEW plain AS SELECT fid AS OGC_FID, m FROM notes",
                   "CREATE VIEW grouped AS SELECT min(fid) AS OGC_FID, m FROM notes GROUP BY m"});
    if (bPackage) {
        runSql(sPath, {"INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('plain', "
                       "'plain', 'attributes'), ('grouped', 'grouped', 'attributes')"});
    }
    EXPECT_EQ(valuesOf(sPath, "plain", "m").failed.size(), 4U);
    EXPECT_EQ(valuesOf(sPath, "grouped", "m").failed.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(Databases, LargeNumbersOf, ::testing::Values("GPKG", "SQLite"));

class LargeNumbers : public ::testing::Test {
protected:
    TemporaryFolder folder;
};

TEST_F(LargeNumbers, FailInTextsOfTypedColumns) {
    folder.write("t.csvt", "Integer,Integer64,String");
    const std::string sPath =
        folder.write("t.csv", "A,B,C\n5000000000,1,x\n2147483647,9223372036854775807,x\n"
                              "-5000000000,99999999999999999999,x\n,,y\n");
    const Values values = valuesOf(sPath, "t", "A");
    EXPECT_EQ(values.failed, (Ids{1, 3}));
    EXPECT_EQ(values.read.at(2), "2147483647");
    EXPECT_EQ(valuesOf(sPath, "t", "B").failed, (Ids{3}));
    for (int lTime = 0; lTime < 3; ++lTime) {
        EXPECT_EQ(valuesOf(sPath, "t", "B", "C='x'").failed, (Ids{3}));
    }
}

TEST_F(LargeNumbers, FailInAMifFile) {
    folder.write("m.mid", "5,\"x\"\n5000000000,\"y\"\n-99999999999999999999,\"z\"\n2147483647,\"x\"\n");
    const std::string sPath = folder.write(
        "m.mif", "Version 300\nCharset \"WindowsLatin1\"\nDelimiter \",\"\nCoordSys Earth Projection 1, 0\n"
                 "Columns 2\n  A Integer\n  B Char(5)\nData\n\nPoint 1 2\nPoint 1 3\nPoint 1 4\nPoint 1 5\n");
    const Values values = valuesOf(sPath, "m", "A");
    EXPECT_EQ(values.failed, (Ids{2, 3}));
    EXPECT_EQ(values.read.at(1), "5");
    EXPECT_EQ(values.read.at(4), "2147483647");
}

TEST_F(LargeNumbers, FailInJson) {
    const auto feature = [](const std::string& sNumber) {
        return R"({"type":"Feature","properties":{"K":)" + sNumber + R"(,"T":"9"},"geometry":null})";
    };
    const std::string sMost = std::to_string(std::numeric_limits<std::int64_t>::max());
    const std::vector<std::string> rows{feature("1"), feature("99999999999999999999"),
                                        feature("-99999999999999999999"), feature("17")};
    const std::string sObject = R"({"type":"FeatureCollection","features":[)";
    EXPECT_EQ(valuesOf(folder.write("a.geojson",
                                    sObject + rows[0] + "," + rows[1] + "," + rows[2] + "," + rows[3] + "]}"),
                       "a", "K")
                  .failed,
              (Ids{1, 2}));
    EXPECT_EQ(valuesOf(folder.write("b.geojsonl",
                                    rows[0] + "\n" + rows[1] + "\n" + rows[2] + "\n" + rows[3] + "\n"),
                       "b", "K")
                  .failed,
              (Ids{1, 2}));
    const Values most = valuesOf(
        folder.write("c.geojson", sObject + feature(sMost) + "," +
                                      R"({"type":"Feature","properties":{"K":1,"T":"99999999999999999999"},)"
                                      R"("geometry":null}]})"),
        "c", "K");
    EXPECT_THAT(most.failed, IsEmpty());
    EXPECT_EQ(most.read.at(0), sMost);
}

/// A file of the ZIP format with these members.
std::string writeMembers(const std::string& sPath,
                         const std::vector<std::pair<std::string, std::string>>& members) {
    VSILFILE* pArchive = VSIFOpenL(("/vsizip/{" + sPath + "}").c_str(), "wb");
    for (const auto& [sName, sText] : members) {
        VSILFILE* pMember = VSIFOpenL(("/vsizip/{" + sPath + "}/" + sName).c_str(), "wb");
        VSIFWriteL(sText.data(), 1, sText.size(), pMember);
        VSIFCloseL(pMember);
    }
    VSIFCloseL(pArchive);
    return sPath;
}

// Some programs write all digits of a number, however many.
TEST_F(LargeNumbers, FailInAnExcelSheet) {
    const std::string sOffice = "http://schemas.openxmlformats.org/";
    const std::string sMost = std::to_string(std::numeric_limits<std::int64_t>::max());
    const auto makeSheet = [&](const std::string& sName, const std::string& sSecond) {
        return writeMembers(
            folder.file(sName),
            {{"[Content_Types].xml",
              "<Types xmlns=\"" + sOffice +
                  "package/2006/content-types\"><Override PartName=\"/xl/workbook.xml\" "
                  "ContentType=\"application/"
                  "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
                  "<Override PartName=\"/xl/worksheets/sheet1.xml\" "
                  "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml\"/"
                  ">"
                  "</Types>"},
             {"xl/workbook.xml", "<workbook xmlns:r='" + sOffice +
                                     "officeDocument/2006/relationships'><sheets><sheet name='S' sheetId='1' "
                                     "r:id='rId1'/></sheets></workbook>"},
             {"xl/_rels/workbook.xml.rels", "<Relationships><Relationship Id='rId1' Type='" + sOffice +
                                                "officeDocument/2006/relationships/worksheet' "
                                                "Target='worksheets/sheet1.xml'/></Relationships>"},
             {"xl/worksheets/sheet1.xml", "<worksheet><sheetData><row r='1'><c r='A1' "
                                          "t='inlineStr'><is><t>N</t></is></c></row><row r='2'><c "
                                          "r='A2'><v>1</v></c></row><row r='3'><c r='A3'><v>" +
                                              sSecond + "</v></c></row></sheetData></worksheet>"}});
    };
    const Values large = valuesOf(makeSheet("l.xlsx", "99999999999999999999"), "S", "N");
    EXPECT_EQ(large.failed, Ids{3});
    EXPECT_EQ(large.read.at(2), "1");
    const Values most = valuesOf(makeSheet("m.xlsx", sMost), "S", "N");
    EXPECT_THAT(most.failed, IsEmpty());
    EXPECT_EQ(most.read.at(3), sMost);
}

TEST_F(LargeNumbers, FailInAnOpenDocumentSheet) {
    const std::string sOffice = "urn:oasis:names:tc:opendocument:xmlns:";
    const auto cell = [](const std::string& sNumber) {
        return "<table:table-row><table:table-cell office:value-type=\"float\" office:value=\"" + sNumber +
               "\"/></table:table-row>";
    };
    const std::string sPath =
        writeMembers(folder.file("l.ods"),
                     {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet"},
                      {"content.xml",
                       "<office:document-content xmlns:office='" + sOffice + "office:1.0' xmlns:table='" +
                           sOffice + "table:1.0' xmlns:text='" + sOffice +
                           "text:1.0'><office:body><office:spreadsheet><table:table table:name='S'>"
                           "<table:table-row><table:table-cell office:value-type='string'><text:p>N</text:p>"
                           "</table:table-cell></table:table-row>" +
                           cell("1") + cell("-99999999999999999999") +
                           "</table:table></office:spreadsheet></office:body></office:document-content>"}});
    const Values values = valuesOf(sPath, "S", "N");
    EXPECT_EQ(values.failed, Ids{3});
    EXPECT_EQ(values.read.at(2), "1");
}

TEST_F(LargeNumbers, FailInTheLastOfManyColumns) {
    const std::string sPath = makeCity(folder);
    std::string sColumns;
    for (int lColumn = 1; lColumn <= 1500; ++lColumn)
        sColumns += ", c" + std::to_string(lColumn) + " MEDIUMINT";
    runSql(sPath, {"CREATE TABLE wide (fid INTEGER PRIMARY KEY" + sColumns + ")",
                   "INSERT INTO wide (fid, c1500) VALUES (1, 5), (2, 5000000000)",
                   "INSERT INTO gpkg_contents (table_name, identifier, data_type) VALUES ('wide', 'wide', "
                   "'attributes')"});
    EXPECT_EQ(valuesOf(sPath, "wide", "c1500").failed, Ids{2});
}

// A field of whole numbers of 19 digits or more is one of floating-point numbers.
TEST_F(LargeNumbers, AreFloatingPointNumbersInWideColumnsOfDbase) {
    constexpr std::size_t nWidth = 19;
    const auto number = [](unsigned lNumber, int lBytes) {
        std::string sBytes;
        for (int lByte = 0; lByte < lBytes; ++lByte)
            sBytes += static_cast<char>((lNumber >> (8U * static_cast<unsigned>(lByte))) & 0xFFU);
        return sBytes;
    };
    std::string sFile = "\x03\x78\x01\x01" + number(2, 4) + number(65, 2) + number(1 + nWidth, 2);
    sFile += std::string(20, '\0') + "N" + std::string(10, '\0') + "N" + std::string(4, '\0');
    sFile += number(nWidth, 1) + std::string(15, '\0') + "\r";
    sFile += " 9999999999999999999 " + std::string(nWidth - 2, ' ') + "17\x1A";
    const Values values = valuesOf(folder.write("n.dbf", sFile), "n", "N");
    EXPECT_THAT(values.failed, IsEmpty());
    EXPECT_EQ(values.read.at(0), std::to_string(9999999999999999999.0));
    EXPECT_EQ(values.read.at(1), std::to_string(17.0));
}

} // namespace
} // namespace halvane::tests
