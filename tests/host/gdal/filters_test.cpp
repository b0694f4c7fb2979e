#include "SampleData.h"

#include "host/Workspace.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Format {
    const char* pName;
    const char* pFile;
};

std::ostream& operator<<(std::ostream& out, const Format& format) {
    return out << format.pName;
}

// The same features in several formats, whose drivers reject filters in different ways and at different
// times.
class FiltersOf : public ::testing::TestWithParam<Format> {
protected:
    host::GisFeatureClassPtr open() {
        const std::string sCity = makeCity(folder);
        const std::string sPath = folder.file(GetParam().pFile);
        if (sPath != sCity)
            convertLayer(sCity, "roads", sPath, GetParam().pName);
        return openWorkspace(sPath)->openFeatureClass("roads");
    }

    // This format does not keep the feature that has no shape.
    static std::size_t featureCount() { return std::string_view(GetParam().pName) == "FlatGeobuf" ? 4 : 5; }

    TemporaryFolder folder;
};

INSTANTIATE_TEST_SUITE_P(Formats, FiltersOf,
                         ::testing::Values(Format{"GPKG", "city.gpkg"}, Format{"SQLite", "roads.sqlite"},
                                           Format{"ESRI Shapefile", "roads.shp"},
                                           Format{"GeoJSON", "roads.geojson"},
                                           Format{"FlatGeobuf", "roads.fgb"}, Format{"GML", "roads.gml"}),
                         [](const auto& test) {
                             std::string sName = test.param.pName;
                             std::erase(sName, ' ');
                             return sName;
                         });

TEST_P(FiltersOf, ChooseRows) {
    const auto pRoads = open();
    EXPECT_THAT(texts(*pRoads, "NAME", "N=20"), ElementsAre("R2"));
    EXPECT_THAT(texts(*pRoads, "NAME", "NAME='R3'"), ElementsAre("R3"));
    EXPECT_THAT(texts(*pRoads, "NAME", "N > 1000"), IsEmpty());
}

TEST_P(FiltersOf, ThatAreBlankChooseAllRows) {
    EXPECT_EQ(texts(*open(), "NAME", "  ").size(), featureCount());
}

TEST_P(FiltersOf, ThatAreRejectedAreFailuresAndNeverAllRows) {
    const auto pRoads = open();
    for (const char* pWhere : {"NAME = ABC", "NOFIELD=1", "NAME='it's'", "N=", "two words=1", "(N=1"}) {
        const host::GisQueryFilter filter{pWhere};
        const std::string sFailure = failureOf([&] { static_cast<void>(pRoads->search(&filter)); });
        EXPECT_THAT(sFailure, HasSubstr(pWhere));
        EXPECT_THAT(sFailure, HasSubstr("roads"));
    }
    // A rejected filter leaves nothing behind on the handle that is used next.
    EXPECT_EQ(texts(*pRoads, "NAME").size(), featureCount());
}

TEST_P(FiltersOf, DoNotStayOnTheHandleForTheNextReader) {
    const auto pRoads = open();
    EXPECT_EQ(texts(*pRoads, "NAME", "N=20").size(), 1U);
    EXPECT_EQ(texts(*pRoads, "NAME").size(), featureCount());
    EXPECT_EQ(pRoads->featureCount(), static_cast<std::int64_t>(featureCount()));
}

TEST(Filters, ThatAreRejectedTellTheDriversReason) {
    const TemporaryFolder folder;
    const auto pRoads = openWorkspace(makeCity(folder))->openFeatureClass("roads");
    const host::GisQueryFilter filter{"NOFIELD=1"};
    EXPECT_THAT(failureOf([&] { static_cast<void>(pRoads->search(&filter)); }),
                HasSubstr("no such column: NOFIELD"));
}

TEST(Filters, OnTextsOfCsvFilesNeedQuotesSinceTheirValuesAreTexts) {
    const TemporaryFolder folder;
    const auto pTable = openWorkspace(folder.write("t.csv", "N,V\n17,a\n007,b\n"))->openTable("t");
    EXPECT_THAT(texts(*pTable, "V", "N='17'"), ElementsAre("a"));
    EXPECT_THAT(texts(*pTable, "N"), ElementsAre("17", "007"));
}

} // namespace
} // namespace halvane::tests
