// Files that end too early or are damaged in the middle: what a driver leaves out in silence is a failure of
// each reading, behind the rows that came.

#include "SampleData.h"

#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

namespace halvane::tests {
namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;

class MissingRows : public ::testing::Test {
protected:
    [[nodiscard]] std::string convertRoads(const std::string& sName, const std::string& sFormat) const {
        return convertLayer(makeCity(folder), "roads", folder.file(sName), sFormat);
    }
    // Leaves the file as long as it is up to the text's last place.
    static void cutBefore(const std::string& sFile, std::string_view sText) {
        std::ifstream file(sFile, std::ios::binary);
        const std::string sContent{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        const std::size_t nPlace = sContent.rfind(sText);
        ASSERT_NE(nPlace, std::string::npos);
        std::filesystem::resize_file(sFile, nPlace);
    }
    // How many rows came before the reading failed, and how.
    static std::pair<int, std::string> read(host::GisTable& table, std::string_view sWhere) {
        int lRows = 0;
        const host::GisQueryFilter filter{std::string(sWhere)};
        std::string sFailure = failureOf([&] {
            const auto pCursor = table.search(sWhere.empty() ? nullptr : &filter);
            while (pCursor->nextRow() != nullptr)
                ++lRows;
        });
        return {lRows, std::move(sFailure)};
    }
    // Each reading fails alike: a handle that told it once is not used again.
    static void expectMissing(const std::string& sPath, const std::string& sDataset, int lRows,
                              const std::string& sReason, const std::string& sWhere = {}) {
        const auto pTable = openWorkspace(sPath)->openTable(sDataset);
        for (int lReading = 0; lReading < 3; ++lReading) {
            const auto [lRead, sFailure] = read(*pTable, sWhere);
            EXPECT_EQ(lRead, lRows);
            EXPECT_THAT(sFailure, HasSubstr("Reading \"" + sDataset + "\" failed"));
            EXPECT_THAT(sFailure, HasSubstr(sReason));
        }
    }
    static void expectNoCount(const std::string& sPath, const std::string& sDataset,
                              const std::string& sReason) {
        const auto pClass = openWorkspace(sPath)->openFeatureClass(sDataset);
        for (int lReading = 0; lReading < 2; ++lReading) {
            EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->featureCount()); }), HasSubstr(sReason));
        }
    }

    TemporaryFolder folder;
};

TEST_F(MissingRows, FailInGmlThatEndsTooEarly) {
    const std::string sPath = convertRoads("roads.gml", "GML");
    cutBefore(sPath, "</ogr:NAME>");
    expectMissing(sPath, "roads", 4, "XML parsing of GML file failed");
    expectNoCount(sPath, "roads", "XML parsing of GML file failed");
}

TEST_F(MissingRows, FailInTracksOfReceiversThatEndTooEarly) {
    // The newer versions of the library do not open a shorter file at all.
    std::string sContent = "<gpx version=\"1.1\" creator=\"x\">";
    for (int lPoint = 0; lPoint < 40000; ++lPoint)
        sContent += "<wpt lat=\"1\" lon=\"2\"><name>A point on the way</name></wpt>";
    const std::string sPath = folder.write("way.gpx", sContent);
    const auto pTable = openWorkspace(sPath)->openTable("waypoints");
    for (int lReading = 0; lReading < 3; ++lReading) {
        EXPECT_THAT(read(*pTable, {}).second, HasSubstr("XML parsing of GPX file failed"));
    }
    expectNoCount(sPath, "waypoints", "XML parsing of GPX file failed");
}

TEST_F(MissingRows, FailInJmlThatEndsTooEarly) {
    const std::string sPath = convertRoads("roads.jml", "JML");
    cutBefore(sPath, "</feature>");
    expectMissing(sPath, "roads", 0, "XML parsing of JML file failed");
    expectNoCount(sPath, "roads", "XML parsing of JML file failed");
}

TEST_F(MissingRows, FailWhereALineIsSkipped) {
    const std::string sRow = R"({"type":"Feature","properties":{"K":7},"geometry":null})";
    const std::string sPath =
        folder.write("lines.geojsonl", sRow + "\n" + sRow + "\n" + sRow.substr(0, 40) + "\n" + sRow + "\n");
    expectMissing(sPath, "lines", 3, "JSON parsing error");
    expectMissing(sPath, "lines", 3, "JSON parsing error", "K = 7");
    expectNoCount(sPath, "lines", "JSON parsing error");
}

TEST_F(MissingRows, FailInASheetThatIsDamaged) {
    const std::string sPath = convertRoads("roads.xlsx", "XLSX");
    std::fstream file(sPath, std::ios::in | std::ios::out | std::ios::binary);
    const std::string sContent{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::string sMember = "xl/worksheets/sheet1.xml";
    file.clear();
    file.seekp(static_cast<std::streamoff>(sContent.find(sMember) + sMember.size() + 200));
    file << std::string(64, '\0');
    file.close();
    const auto pTable = openWorkspace(sPath)->openTable("roads");
    EXPECT_THAT(read(*pTable, {}).second, HasSubstr("Reading \"roads\" failed"));
    EXPECT_THAT(read(*pTable, {}).second, HasSubstr("Reading \"roads\" failed"));
}

TEST_F(MissingRows, FailWhereverAnIndexedFileEnds) {
    const std::string sPath = convertRoads("roads.fgb", "FlatGeobuf");
    int lSilent = 0;
    for (auto lSize = std::filesystem::file_size(sPath) - 10; lSize > 100; lSize -= 10) {
        std::filesystem::resize_file(sPath, lSize);
        host::GisTablePtr pTable;
        const std::string sFailure = failureOf([&] { pTable = openWorkspace(sPath)->openTable("roads"); });
        EXPECT_EQ(pTable == nullptr, !sFailure.empty());
        if (pTable != nullptr) {
            const std::string sReading = read(*pTable, {}).second;
            EXPECT_THAT(sReading, HasSubstr("Reading \"roads\" failed"));
            lSilent += sReading.find(" rows and holds ") == std::string::npos ? 0 : 1;
        }
    }
    EXPECT_GT(lSilent, 0); // else the driver has begun to tell
}

// The driver takes a place of nothing in the list of rows for a row that was deleted.
TEST_F(MissingRows, FailWhereTheListOfAFileDatabaseHasLostThem) {
    const std::string sPath = convertRoads("roads.gdb", "OpenFileGDB");
    std::string sList;
    for (const auto& entry : std::filesystem::directory_iterator(sPath))
        if (entry.path().extension() == ".gdbtablx")
            sList = std::max(sList, entry.path().string());
    std::fstream file(sList, std::ios::in | std::ios::out | std::ios::binary);
    constexpr std::streamoff lFirstRow = 16;
    file.seekp(lFirstRow);
    file << std::string(1000, '\0');
    file.close();
    const auto pTable = openWorkspace(sPath)->openTable("roads");
    EXPECT_THAT(read(*pTable, {}).second,
                AllOf(HasSubstr("Reading \"roads\" failed"), HasSubstr(" rows and holds 0")));
    EXPECT_THAT(read(*pTable, "N > 0").second, HasSubstr("Reading \"roads\" failed"));
}

// A filter does not hide that the file has ended too early.
TEST_F(MissingRows, FailUnderAFilterWhereAnIndexedFileEndsBehindARow) {
    const std::string sPath = convertRoads("roads.fgb", "FlatGeobuf");
    int lSilent = 0;
    for (auto lSize = std::filesystem::file_size(sPath) - 4; lSize > 100; lSize -= 4) {
        std::filesystem::resize_file(sPath, lSize);
        host::GisTablePtr pTable;
        static_cast<void>(failureOf([&] { pTable = openWorkspace(sPath)->openTable("roads"); }));
        if (pTable == nullptr)
            continue;
        for (const char* sWhere : {"N > 0", "N = 10", "N = 10", "N = 10", "NAME = 'R2'", "N > 1000"}) {
            const std::string sReading = read(*pTable, sWhere).second;
            EXPECT_THAT(sReading, HasSubstr("Reading \"roads\" failed")) << lSize << sWhere;
            lSilent += sReading.find(" rows and holds ") == std::string::npos ? 0 : 1;
        }
        const auto pClass = std::dynamic_pointer_cast<host::GisFeatureClass>(pTable);
        EXPECT_NE(failureOf([&] { static_cast<void>(openWorkspace(sPath)->openFeatureClass("roads")); }) +
                      read(*pTable, {}).second,
                  "");
    }
    EXPECT_GT(lSilent, 0);
}

// Lines that hold JSON, but no feature, end the rows of one version's driver and are skipped by another's.
TEST_F(MissingRows, FailWhereALineIsNoFeature) {
    const std::string sRow = R"({"type":"Feature","properties":{"K":7},"geometry":null})";
    for (const char* sLine : {"5", "[1, 2]", "null", R"({"K":7})", R"({"type":"Dot","coordinates":[1, 2]})",
                              R"({"type":"Point","coordinates":["x", 2]})"}) {
        SCOPED_TRACE(sLine);
        const std::string sPath = folder.write("lines.geojsonl", sRow + "\n" + sLine + "\n\n" + sRow + "\n");
        const auto pTable = openWorkspace(sPath)->openTable("lines");
        for (const char* sWhere : {"", "K = 7", "K = 7", "K > 0"}) {
            EXPECT_THAT(read(*pTable, sWhere).second, HasSubstr("Reading \"lines\" failed"));
        }
        const std::string sRecords =
            folder.write("records.geojsons", "\x1E" + sRow + "\n\x1E" + sLine + "\n\x1E" + sRow + "\n");
        EXPECT_NE(read(*openWorkspace(sRecords)->openTable("records"), {}).second, "");
    }
}

TEST_F(MissingRows, FailInAMifWhoseOtherFileHoldsMoreRows) {
    const std::string sPath = convertRoads("roads.mif", "MapInfo File");
    const std::string sRows = folder.file("roads.mid");
    const auto lWhole = std::filesystem::file_size(sRows);
    std::filesystem::resize_file(sRows, lWhole - 1); // without the end of the last line
    EXPECT_EQ(read(*openWorkspace(sPath)->openTable("roads"), {}), std::pair(5, std::string()));
    cutBefore(sPath, "\nPline");
    expectMissing(sPath, "roads", 3, "its file should hold 5 rows and holds 3; the file is damaged");
    expectNoCount(sPath, "roads", "its file should hold 5 rows and holds 3");
    const auto pTable = openWorkspace(sPath)->openTable("roads");
    EXPECT_THAT(read(*pTable, "N = 10").second, HasSubstr("should hold 5 rows"));
}

TEST_F(MissingRows, FailWhereATextOfValuesEndsInsideQuotes) {
    const std::string sPath = folder.write("t.csv", "A,B\n1,\"x\"\n2,\"cut off\n3,5\n");
    const auto pTable = openWorkspace(sPath)->openTable("t");
    for (int lReading = 0; lReading < 3; ++lReading) {
        const auto [lRows, sFailure] = read(*pTable, {});
        EXPECT_THAT(lRows, AnyOf(1, 2)); // some versions leave out the row in which it begins
        EXPECT_THAT(sFailure, AllOf(HasSubstr("Reading \"t\" failed: "),
                                    HasSubstr("the quoted text that begins in line 3 does not end; the file "
                                              "is damaged")));
    }
    expectMissing(sPath, "t", 1, "the quoted text that begins in line 3 does not end", "A = '1'");
    const std::string sMif = convertRoads("roads.mif", "MapInfo File");
    const std::string sRows = folder.file("roads.mid");
    std::filesystem::resize_file(sRows, std::filesystem::file_size(sRows) - 1);
    std::ofstream(sRows, std::ios::app) << "\"Ro";
    EXPECT_THAT(read(*openWorkspace(sMif)->openTable("roads"), {}).second,
                AnyOf(HasSubstr(" does not end"), HasSubstr("Unexpected EOF")));
}

// What a stray quotation mark swallows.
TEST_F(MissingRows, FailWhereRowsAreTakenForPartsOfAValue) {
    for (const char* pText : {"A,B\n1,5\" pipe\n2,6\" pipe\n3,x\n", "A,B\n1, \"5 pipe\n2,6 pipe\n3,x\n"}) {
        const auto pTable = openWorkspace(folder.write("t.csv", pText))->openTable("t");
        const auto [lRows, sFailure] = read(*pTable, {});
        EXPECT_EQ(lRows == 3, sFailure.empty()); // some versions keep the mark as a part of the value
        EXPECT_EQ(read(*pTable, "A = '1'").second, sFailure);
    }
}

TEST_F(MissingRows, FailWhereverADrawingEnds) {
    constexpr int lAll = 5;
    std::string sDrawing = "0\nSECTION\n2\nENTITIES\n";
    for (int lPoint = 0; lPoint < lAll; ++lPoint)
        sDrawing += "0\nPOINT\n8\n0\n10\n1\n20\n2\n";
    const std::string sPath = folder.write("points.dxf", sDrawing + "0\nENDSEC\n0\nEOF\n");
    EXPECT_EQ(read(*openWorkspace(sPath)->openTable("entities"), {}), std::pair(lAll, std::string()));
    int lCut = 0;
    for (int lLine = 0; lLine < 20; ++lLine) {
        cutBefore(sPath, "\n");
        host::GisTablePtr pTable;
        const std::string sFailure = failureOf([&] { pTable = openWorkspace(sPath)->openTable("entities"); });
        const auto [lRows, sReading] = pTable == nullptr ? std::pair(0, sFailure) : read(*pTable, {});
        EXPECT_TRUE(lRows == lAll || !sReading.empty()) << lRows;
        lCut += lRows < lAll ? 1 : 0;
    }
    EXPECT_GT(lCut, 0);
}

TEST_F(MissingRows, AreNotSuspectedInTextsOfManyForms) {
    const std::string sPath = folder.file("t.csv");
    for (const auto& [sText, lRows] : {std::pair("A,B\n1,\"two\nlines, \"\"quoted\"\"\"\n2,\"\"\n\n3,x", 3),
                                       {"A;B\r\n1;\"a, \"\"b\"\"\r\n\"\r\n2;\"\"\"\"\r\n", 2},
                                       {"A\tB\n1\t\"x\"\n", 1},
                                       {"A B\n1 \"x\ny\"\n2 z\n", 2},
                                       {"A\tB,C\n1\t\"x\ny\"\n2\tz,5\n", 2},
                                       {"\"A\",\"B\"\n\"1\",\"2\"\n,\n", 2},
                                       {"\xEF\xBB\xBF\"A\",B\n1,\"x\ny\"\n", 1},
                                       {"A,B\n", 0}}) {
        folder.write("t.csv", sText);
        EXPECT_EQ(read(*openWorkspace(sPath)->openTable("t"), {}), std::pair(lRows, std::string())) << sText;
    }
    const std::string sFeature = R"({"type":"Feature","properties":{"K":"}"},"geometry":null})";
    const std::string sCall = folder.write("call.geojson", "loadGeoJSON(" + sFeature + ");\n");
    std::pair rows(1, std::string());
    const std::string sRefusal =
        failureOf([&] { rows = read(*openWorkspace(sCall)->openTable("call"), {}); });
    EXPECT_EQ(rows, std::pair(1, std::string()));
    // The newer versions of the library read no such file.
    EXPECT_THAT(sRefusal, AnyOf("", HasSubstr("its contents are not of this format")));
    folder.write("t.csv", "A,B\n1, \"x\ny\"\n"); // a text, or two rows that have the marks
    EXPECT_EQ(read(*openWorkspace(sPath)->openTable("t"), {}).second, "");
    folder.write("rs.geojsons", "\x1E{\n \"type\":\"Feature\",\n\"properties\":{\"K\":7},\"geometry\":null}\n"
                                "\x1E{\"type\":\"Point\",\"coordinates\":[1, 2]}\n");
    EXPECT_EQ(read(*openWorkspace(folder.file("rs.geojsons"))->openTable("rs"), {}).second, "");
}

TEST_F(MissingRows, AreNotSoughtInAFileThatIsWhole) {
    for (const auto& [sName, sFormat] :
         {std::pair("roads.gml", "GML"), std::pair("roads.jml", "JML"), std::pair("roads.fgb", "FlatGeobuf"),
          std::pair("roads.geojsonl", "GeoJSONSeq"), std::pair("roads.csv", "CSV"),
          std::pair("roads.mif", "MapInfo File")}) {
        const auto pTable = openWorkspace(convertRoads(sName, sFormat))->openTable("roads");
        EXPECT_EQ(read(*pTable, {}).second, "");
        EXPECT_EQ(read(*pTable, "NAME = 'R9'"), std::pair(0, std::string()));
    }
}

} // namespace
} // namespace halvane::tests
