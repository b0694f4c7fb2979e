#include "SampleData.h"

#include "host/Fields.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;

class CursorsOf : public ::testing::TestWithParam<const char*> {
protected:
    host::GisTablePtr open() {
        const std::string sCity = makeCity(folder);
        const std::string sFile = GetParam();
        const std::string sPath = folder.file(sFile);
        if (sFile.ends_with(".sqlite")) {
            convert(sCity, sPath, "SQLite");
        } else if (sFile.ends_with(".csv")) {
            convertLayer(sCity, "roads", sPath, "CSV");
        } else if (sFile.ends_with(".geojson")) {
            convertLayer(sCity, "roads", sPath, "GeoJSON");
        } else if (sFile.ends_with(".gml")) {
            convertLayer(sCity, "roads", sPath, "GML");
        } else if (sFile.ends_with(".fgb")) {
            convertLayer(sCity, "roads", sPath, "FlatGeobuf");
        }
        return openWorkspace(sPath)->openTable("roads");
    }

    TemporaryFolder folder;
};

INSTANTIATE_TEST_SUITE_P(Formats, CursorsOf,
                         ::testing::Values("city.gpkg", "roads.sqlite", "roads.csv", "roads.geojson",
                                           "roads.gml", "roads.fgb"),
                         [](const auto& test) {
                             const std::string sFile = test.param;
                             return sFile.substr(sFile.find('.') + 1);
                         });

TEST_P(CursorsOf, OneTableDoNotDisturbOneAnother) {
    const auto pTable = open();
    const std::vector<std::string> all = texts(*pTable, "NAME");
    ASSERT_GE(all.size(), 4U);
    std::vector<std::string> outer;
    const auto pOuter = pTable->search(nullptr);
    while (const auto pRow = pOuter->nextRow()) {
        const std::string sName = toText(pRow->value(pRow->fields().findField("NAME")));
        outer.push_back(sName);
        EXPECT_THAT(texts(*pTable, "NAME", "NAME='" + sName + "'"), ElementsAre(sName));
        EXPECT_EQ(texts(*pTable, "NAME"), all);
    }
    EXPECT_EQ(outer, all);
}

TEST_P(CursorsOf, OneTableGiveTheSameOrderEveryTime) {
    const auto pTable = open();
    EXPECT_EQ(texts(*pTable, "NAME"), texts(*pTable, "NAME"));
}

TEST_P(CursorsOf, OneTableYieldNothingAfterTheEndHoweverOftenAsked) {
    const auto pCursor = open()->search(nullptr);
    while (pCursor->nextRow() != nullptr) {
    }
    EXPECT_EQ(pCursor->nextRow(), nullptr);
    EXPECT_EQ(pCursor->nextRow(), nullptr);
}

TEST(Cursors, ThatFailOnTheWayYieldTheRowsBeforeAndThenTheFailure) {
    const TemporaryFolder folder;
    const auto pTable = openWorkspace(makeCity(folder))->openTable("roads");
    const host::GisQueryFilter filter{"abs(CASE N WHEN 40 THEN -9223372036854775808 ELSE N END) > 0"};
    const auto pCursor = pTable->search(&filter);
    std::vector<std::string> names;
    const std::string sFailure = failureOf([&] {
        while (const auto pRow = pCursor->nextRow())
            names.push_back(toText(pRow->value(2)));
    });
    EXPECT_THAT(names, ElementsAre("R1", "R2", "R3"));
    EXPECT_THAT(sFailure, ::testing::HasSubstr("integer overflow"));
    EXPECT_EQ(pCursor->nextRow(), nullptr);
}

TEST(Cursors, YieldEveryRowOfALongTableOnce) {
    const TemporaryFolder folder;
    std::string sRows = "A,B\n";
    for (int lRow = 0; lRow < 1000; ++lRow)
        sRows += std::to_string(lRow) + ",x\n";
    const auto values = texts(*openWorkspace(folder.write("t.csv", sRows))->openTable("t"), "A");
    ASSERT_EQ(values.size(), 1000U);
    for (std::size_t nRow = 0; nRow < values.size(); ++nRow) {
        EXPECT_EQ(values[nRow], std::to_string(nRow));
    }
}

TEST(Cursors, CanBeNestedManyTimes) {
    const TemporaryFolder folder;
    const auto pTable = openWorkspace(makeCity(folder))->openTable("roads");
    std::vector<host::GisCursorPtr> cursors;
    for (int lNumber = 0; lNumber < 100; ++lNumber) {
        cursors.push_back(pTable->search(nullptr));
        static_cast<void>(cursors.back()->nextRow());
    }
    for (const auto& pCursor : cursors) {
        EXPECT_THAT(texts(*pCursor, "NAME"), ElementsAre("R2", "R3", "R4", "R5"));
    }
}

} // namespace
} // namespace halvane::tests
