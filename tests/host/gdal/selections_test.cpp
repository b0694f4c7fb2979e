#include "SampleData.h"

#include "host/Layers.h"
#include "host/Map.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Selection : public ::testing::Test {
protected:
    std::vector<std::string> select(std::string_view sChoice) {
        pHost->selectFeatures(pDocument, "ROADS", sChoice);
        return texts(*pLayer->searchSelection(), "NAME");
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
    host::GisMapDocumentPtr pDocument = pHost->openMapDocument(sCity);
    host::GisFeatureLayerPtr pLayer =
        std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
};

TEST_F(Selection, OfIdentifiersKeepsTheirOrder) {
    EXPECT_THAT(select("4, 1,3"), ElementsAre("R4", "R1", "R3"));
    EXPECT_EQ(pLayer->selectionCount(), 3);
}

TEST_F(Selection, CountsAFeatureOnce) {
    EXPECT_THAT(select("2,2,1"), ElementsAre("R2", "R1"));
    EXPECT_EQ(pLayer->selectionCount(), 2);
}

TEST_F(Selection, ByClauseIsInTheOrderOfTheData) {
    EXPECT_THAT(select("N >= 20"), ElementsAre("R2", "R3", "R4"));
    EXPECT_EQ(pLayer->selectionCount(), 3);
}

TEST_F(Selection, OfNothingIsAFailureSinceALayerWithoutASelectionYieldsAllItsFeatures) {
    EXPECT_ANY_THROW(select("N > 1000"));
    EXPECT_ANY_THROW(select("4;8"));
    EXPECT_ANY_THROW(select("99999999999999999999"));
}

TEST_F(Selection, ByAClauseCannotLeaveItsBrackets) {
    EXPECT_ANY_THROW(select("N=1) OR (1=1"));
    EXPECT_ANY_THROW(select("N=1; DROP TABLE roads"));
    EXPECT_EQ(select("NAME <> ';)' AND N > 0").empty(), false);
}

TEST_F(Selection, LeavesTheFeatureClassAsItIs) {
    select("4");
    EXPECT_EQ(pLayer->featureClass()->featureCount(), 5);
    EXPECT_EQ(texts(*pLayer->featureClass(), "NAME").size(), 5U);
}

TEST_F(Selection, IsReadWhileTheClassIsRead) {
    select("4,1");
    const auto pOuter = pLayer->searchSelection();
    std::vector<std::string> names;
    while (const auto pRow = pOuter->nextRow()) {
        names.push_back(toText(pRow->value(2)));
        EXPECT_EQ(texts(*pLayer->featureClass(), "NAME").size(), 5U);
        EXPECT_THAT(texts(*pLayer->searchSelection(), "NAME"), ElementsAre("R4", "R1"));
    }
    EXPECT_THAT(names, ElementsAre("R4", "R1"));
}

TEST_F(Selection, OfWhatIsNotThereIsAFailure) {
    EXPECT_THAT(failureOf([&] { select("1,99"); }), HasSubstr("99"));
    EXPECT_THAT(failureOf([&] { select("NOFIELD=1"); }), HasSubstr("NOFIELD"));
    EXPECT_NE(failureOf([&] { select(" "); }), "");
    EXPECT_THAT(failureOf([&] { pHost->selectFeatures(pDocument, "rivers", "1"); }), HasSubstr("rivers"));
}

TEST(SelectionOfCsv, IsReadInItsOrderAlthoughTheFormatIsSequential) {
    const TemporaryFolder folder;
    const std::string sCity = makeCity(folder);
    const std::string sPath = convertLayer(sCity, "roads", folder.file("roads.gml"), "GML");
    const auto pHost = host::gdal::GdalHost::create();
    const auto pDocument = pHost->openMapDocument(sPath);
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
    std::vector<std::int64_t> ids;
    const auto pCursor = pLayer->featureClass()->search(nullptr);
    while (const auto pRow = pCursor->nextRow())
        ids.push_back(pRow->objectId());
    pHost->selectFeatures(pDocument, "roads", std::to_string(ids[3]) + "," + std::to_string(ids[1]));
    EXPECT_THAT(texts(*pLayer->searchSelection(), "NAME"), ElementsAre("R4", "R2"));
}

} // namespace
} // namespace halvane::tests
