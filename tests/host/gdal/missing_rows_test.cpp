// Files that end too early or are damaged in the middle: what a driver leaves out in silence is a failure of
// each reading, behind the rows that came.

#include "SampleData.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace halvane::tests {
namespace {

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
        const std::size_t lPlace = sContent.rfind(sText);
        ASSERT_NE(lPlace, std::string::npos);
        std::filesystem::resize_file(sFile, lPlace);
    }
    // How many rows came before the reading failed, and how.
    static std::pair<int, std::string> read(host::GisTable& table, std::string_view sWhere) {
        int lRows = 0;
        const host::GisQueryFilter filter{std::string(sWhere)};
        std::string sFailure = failureOf([&] {
            const auto pCursor = table.search(sWhere.empty() ? nullptr : &filter);
            while (pCursor->nextRow() != nullptr) {
                ++lRows;
            }
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
    std::string sContent = "<gpx version=\"1.1\" creator=\"x\">";
    for (int lPoint = 0; lPoint < 300; ++lPoint) {
        sContent += "<wpt lat=\"1\" lon=\"2\"><name>A point on the way</name></wpt>";
    }
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

TEST_F(MissingRows, AreNotSoughtInAFileThatIsWhole) {
    for (const auto& [sName, sFormat] :
         {std::pair("roads.gml", "GML"), std::pair("roads.jml", "JML"), std::pair("roads.fgb", "FlatGeobuf"),
          std::pair("roads.geojsonl", "GeoJSONSeq")}) {
        const auto pTable = openWorkspace(convertRoads(sName, sFormat))->openTable("roads");
        EXPECT_EQ(read(*pTable, {}).second, "");
        EXPECT_EQ(read(*pTable, "N > 1000"), std::pair(0, std::string()));
    }
}

} // namespace
} // namespace halvane::tests
