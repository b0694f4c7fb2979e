#include "host/com/ScriptHost.h"

#include "host/Layers.h"
#include "host/Map.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"

namespace halvane::test {

namespace {

using namespace host;

TEST_F(ScriptHost, NamesAMemberThatIsMissingAndItsKind) {
    const auto pMap = map("delete town.FocusMap.Layers;");
    EXPECT_EQ(failureOf([&] { return pMap->layerCount(); }),
              "The host application's Map has no member \"Layers\"");
    EXPECT_EQ(failureNumberOf([&] { return pMap->layerCount(); }), 438);
    EXPECT_EQ(pMap->name(), "Town") << "the others are there";
}

TEST_F(ScriptHost, TellsLetterCaseApartWhereTheObjectDoes) {
    EXPECT_NE(
        failureOf([&] { return map("var m = town.FocusMap; m.NAME = m.Name; delete m.Name;")->name(); }), "");
}

TEST_F(ScriptHost, NamesAMemberThatAnswersWithTheWrongType) {
    EXPECT_EQ(failureOf([&] { return map("town.FocusMap.Name = {};")->name(); }), "Map.Name: Type mismatch");
    EXPECT_EQ(failureOf([&] { return map("town.FocusMap.SpatialReference = 7;")->spatialReference(); }),
              "Map.SpatialReference: Type mismatch");
    EXPECT_EQ(failureOf([&] {
                  return roads("town.FocusMap.Layers[0].SelectionCount = 'many';")->selectionCount();
              }),
              "FeatureLayer.SelectionCount: Type mismatch");
    EXPECT_EQ(failureNumberOf([&] { return map("town.FocusMap.Layers = 'none';")->layerCount(); }), 13);
    EXPECT_EQ(failureOf([&] {
                  return workspace("town.FocusMap.Layers[0].FeatureClass.Workspace.OpenTable = function () "
                                   "{ return null; };")
                      ->openTable("Signs");
              }),
              "Workspace.OpenTable: Type mismatch");
}

TEST_F(ScriptHost, TakesNumbersAndYesOrNoHoweverTheyAreWritten) {
    EXPECT_EQ(map("town.FocusMap.Name = 12.5;")->name(), "12.5");
    EXPECT_EQ(roads("town.FocusMap.Layers[0].SelectionCount = '3';")->selectionCount(), 3);
    EXPECT_TRUE(roads("town.FocusMap.Layers[0].FeatureClass.Subtypes.HasSubtypes = 1;")
                    ->featureClass()
                    ->subtypes()
                    ->hasSubtypes());
    EXPECT_EQ(roads("town.FocusMap.Layers[0].FeatureClass.FeatureCount = 5000000000;")
                  ->featureClass()
                  ->featureCount(),
              5000000000);
    EXPECT_EQ(failureNumberOf([&] {
                  return roads("town.FocusMap.Layers[0].FeatureClass.FeatureCount = 1e300;")
                      ->featureClass()
                      ->featureCount();
              }),
              13);
}

TEST_F(ScriptHost, FailsWhereAScriptThrows) {
    const GisQueryFilter filter{"no clause at all"};
    const auto pSigns = map()->standaloneTable(0);
    EXPECT_EQ(failureNumberOf([&] { return pSigns->search(&filter); }), 1004);
    EXPECT_EQ(failureOf([&] { return pSigns->search(&filter); }),
              "Table.Search: the script failed, and told its own surroundings why");
}

TEST_F(ScriptHost, FailsWhereALayerDoesNotTellItsKind) {
    EXPECT_EQ(failureOf([&] { return map("delete town.FocusMap.Layers[2].LayerKind;")->layerCount(); }),
              "The host application's Layer has no member \"LayerKind\"");
}

} // namespace

} // namespace halvane::test
