#include "host/com/ScriptHost.h"

#include "engine/sources/LayerSearch.h"
#include "host/Domains.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Rows.h"
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

TEST_F(ScriptHost, HidesNoLayerBehindOneThatDoesNotTellItsKind) {
    const auto pMap =
        map("delete town.FocusMap.Layers[2].LayerKind; town.FocusMap.Layers.splice(1, 0, null, 7, {});");
    ASSERT_EQ(pMap->layerCount(), 7);
    EXPECT_EQ(pMap->layer(1)->name(), "") << "nothing";
    EXPECT_EQ(pMap->layer(2)->name(), "") << "no object";
    EXPECT_EQ(pMap->layer(3)->name(), "") << "neither a kind nor a name";
    EXPECT_EQ(pMap->layer(5)->name(), "Names");
    EXPECT_EQ(pMap->layer(6)->name(), "Chosen");
    EXPECT_NE(std::dynamic_pointer_cast<GisFeatureLayer>(pMap->layer(6)), nullptr);
}

TEST_F(ScriptHost, HidesNoLayerBehindOneThatDoesNotTellItsName) {
    for (const char* sKind : {"FeatureLayer", "RasterLayer", "TinLayer", "GroupLayer", "Other"}) {
        const auto pMap = map("town.FocusMap.Layers.splice(0, 0, { LayerKind: '" + std::string(sKind) +
                              "', Layers: [] }, { LayerKind: '" + sKind + "', Name: {}, Layers: [] });");
        ASSERT_EQ(pMap->layerCount(), 6);
        EXPECT_EQ(pMap->layer(0)->name(), "") << sKind << ", no name";
        EXPECT_EQ(pMap->layer(1)->name(), "") << sKind << ", no text";
        EXPECT_NE(FindLayerByName(*pMap, "Roads"), nullptr) << sKind;
    }
}

TEST_F(ScriptHost, ReachesTheRowsBehindAnItemThatIsNone) {
    const auto pRows = roads("town.FocusMap.Layers[0].FeatureClass.Search = function (clause) { return ["
                             "makeRow([1, 'A'], null), null, 'two', , makeRow([5, 'E'], null)]; };")
                           ->featureClass()
                           ->search(nullptr);
    EXPECT_EQ(pRows->nextRow()->objectId(), 1);
    const auto pEmpty = pRows->nextRow();
    ASSERT_NE(pEmpty, nullptr);
    EXPECT_EQ(failureOf([&] { return pEmpty->value(2); }),
              "Item 1 of the host application's list, counted from 0, is empty; a Row belongs there");
    EXPECT_EQ(failureNumberOf([&] { return pEmpty->objectId(); }), 13);
    EXPECT_NE(failureOf([&] { return pEmpty->shape(); }), "");
    const auto pText = pRows->nextRow();
    EXPECT_EQ(failureOf([&] { return pText->value(2); }),
              "Item 2 of the host application's list, counted from 0, is no object; a Row belongs there");
    EXPECT_NE(failureOf([&] { return pRows->nextRow()->value(0); }), "") << "a hole";
    EXPECT_EQ(pRows->nextRow()->objectId(), 5);
    EXPECT_EQ(pRows->nextRow(), nullptr);
}

class FailingRows : public ScriptHost {
protected:
    /// @param sRows the search's result, as a script writes it.
    GisCursorPtr search(const std::string& sRows) {
        return roads("var asked = 0; town.FocusMap.Layers[0].FeatureClass.Search = function (clause) { "
                     "return " +
                     sRows + "; };")
            ->featureClass()
            ->search(nullptr);
    }
};

constexpr const char* sScriptFailed = "the script failed, and told its own surroundings why";

TEST_F(FailingRows, OfACursorLeadToTheRowsBehindThem) {
    const auto pRows =
        search("{ NextRow: function () { switch (asked++) { case 0: return makeRow([1, 'A'], null);"
               " case 1: return 7; case 2: return makeRow([3, 'C'], null); } return null; } }");
    EXPECT_EQ(pRows->nextRow()->objectId(), 1);
    const auto pNumber = pRows->nextRow();
    ASSERT_NE(pNumber, nullptr);
    EXPECT_EQ(failureOf([&] { return pNumber->value(2); }),
              "Row 1 of the host application, counted from 0, failed: Cursor.NextRow: Type mismatch");
    EXPECT_EQ(failureNumberOf([&] { return pNumber->objectId(); }), 13);
    EXPECT_EQ(pRows->nextRow()->objectId(), 3);
    EXPECT_EQ(pRows->nextRow(), nullptr);
}

TEST_F(FailingRows, OfACursorThatThrowsEndThere) {
    const auto pRows = search("{ NextRow: function () { throw new Error('lost'); } }");
    EXPECT_EQ(failureOf([&] { return pRows->nextRow(); }), "Cursor.NextRow: " + std::string(sScriptFailed));
}

TEST_F(FailingRows, OfAListLeadToTheRowsBehindThem) {
    const auto pRows =
        search("{ Count: 3, Item: function (index) { if (index == 1) throw new Error('damaged');"
               " return makeRow([index, 'A'], null); } }");
    EXPECT_EQ(pRows->nextRow()->objectId(), 0);
    const auto pThrown = pRows->nextRow();
    ASSERT_NE(pThrown, nullptr);
    EXPECT_EQ(failureOf([&] { return pThrown->value(2); }),
              "Row 1 of the host application, counted from 0, failed: List.Item: " +
                  std::string(sScriptFailed));
    EXPECT_EQ(pRows->nextRow()->objectId(), 2);
    EXPECT_EQ(pRows->nextRow(), nullptr);
}

/// How many rows there are, up to a limit, before the failure that ends them.
int rowsBeforeTheEnd(GisCursor& rows, std::string& sFailure) {
    constexpr int lLimit = 1000;
    int lRows = 0;
    sFailure = failureOf([&] {
        while (lRows < lLimit && rows.nextRow() != nullptr)
            ++lRows;
        return lRows;
    });
    return lRows;
}

TEST_F(FailingRows, EndWhereNothingElseComes) {
    std::string sFailure;
    const auto pRows =
        search("{ NextRow: function () { return asked++ == 3 ? makeRow([3, 'A'], null) : false; } }");
    EXPECT_EQ(rowsBeforeTheEnd(*pRows, sFailure), 3 + 1 + 10) << "the row in between begins anew";
    EXPECT_EQ(sFailure,
              "Row 14 of the host application, counted from 0, failed: Cursor.NextRow: Type mismatch; "
              "so did the 10 before it, and the rows end there");
    EXPECT_EQ(rowsBeforeTheEnd(
                  *search("{ Count: 2000000000, Item: function (i) { throw new Error('no'); } }"), sFailure),
              10);
}

TEST_F(FailingRows, OfASparseListAreAllTold) {
    std::string sFailure;
    EXPECT_EQ(rowsBeforeTheEnd(*search("(function () { var list = []; list[300] = makeRow([1, 'A'], null);"
                                       " return list; })()"),
                               sFailure),
              301);
    EXPECT_EQ(sFailure, "");
}

TEST_F(ScriptHost, ReachesTheDefinitionsBehindAnItemThatIsNone) {
    const auto pWorkspace = workspace("var of = town.FocusMap.Layers[0].FeatureClass.Workspace;"
                                      "of.Domains.unshift(null); of.RelationshipClasses.unshift('none');");
    const auto pDomains = pWorkspace->domainsRole()->domains();
    const auto pAbsent = pDomains->next();
    ASSERT_NE(pAbsent, nullptr);
    EXPECT_EQ(failureOf([&] { return pAbsent->name(); }),
              "Item 0 of the host application's list, counted from 0, is empty; a Domain belongs there");
    EXPECT_EQ(pDomains->next()->name(), "Surface");
    const auto pClasses = pWorkspace->relationshipClasses();
    EXPECT_EQ(failureNumberOf([&] { return pClasses->next()->name(); }), 13);
    EXPECT_EQ(pClasses->next()->name(), "RoadsToSigns");
}

TEST_F(ScriptHost, NamesTheFieldThatIsNone) {
    EXPECT_EQ(
        failureOf([&] {
            return roads("town.FocusMap.Layers[0].FeatureClass.Fields[3] = null;")->featureClass()->fields();
        }),
        "Item 3 of the host application's list, counted from 0, is empty; a Field belongs there");
}

TEST_F(ScriptHost, HidesNoTableOrMapBehindAnItemThatIsNone) {
    const auto pDocument = document("town.FocusMap.StandaloneTables.unshift(1); town.Maps.unshift(null);");
    const auto pMap = pDocument->focusMap();
    ASSERT_EQ(pMap->standaloneTableCount(), 3);
    EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), "");
    EXPECT_NE(failureOf([&] { return pMap->standaloneTable(0)->fields(); }), "");
    EXPECT_EQ(pMap->standaloneTable(1)->datasetName(), "Signs");
    EXPECT_EQ(pMap->standaloneTable(2), nullptr) << "a table whose data is gone";
    ASSERT_EQ(pDocument->mapCount(), 3);
    EXPECT_EQ(pDocument->map(0)->name(), "");
    EXPECT_NE(failureOf([&] { return pDocument->map(0)->layerCount(); }), "");
    EXPECT_EQ(pDocument->map(1)->name(), "Town");
}

} // namespace

} // namespace halvane::test
