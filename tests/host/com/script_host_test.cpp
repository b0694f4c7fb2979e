#include "host/com/ScriptHost.h"

#include "host/Application.h"
#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Geometry.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/Rows.h"
#include "host/SpatialReference.h"
#include "host/Subtypes.h"
#include "host/Tables.h"
#include "host/Workspace.h"

#include <cmath>

namespace halvane::test {

namespace {

using namespace host;

TEST_F(ScriptHost, HasNoShownMapWhereThereIsNone) {
    EXPECT_EQ(document("town.FocusMap = null;")->focusMap(), nullptr);
}

TEST_F(ScriptHost, CountsALayerAddedMeanwhile) {
    const auto pMap = map();
    ASSERT_EQ(pMap->layerCount(), 4);
    engine_.run("town.FocusMap.Layers.push({ LayerKind: 'X', Name: 'New' });");
    ASSERT_EQ(pMap->layerCount(), 5);
    EXPECT_EQ(pMap->layer(4)->name(), "New");
}

TEST_F(ScriptHost, AsksForAValueOnce) {
    const auto pClass = roads("var asked = 0; var roads = town.FocusMap.Layers[0].FeatureClass;"
                              "roads.Search = function (clause) { return [{ ObjectId: 7, Value: function (i) "
                              "{ ++asked; return i + asked * 100; } }]; };")
                            ->featureClass();
    const auto pRow = pClass->search(nullptr)->nextRow();
    EXPECT_EQ(toText(pRow->value(2)), "102");
    EXPECT_EQ(toText(pRow->value(2)), "102");
    EXPECT_EQ(toText(pRow->value(3)), "203");
}

TEST_F(ScriptHost, LeavesShapesUnreadWhereItCan) {
    const std::string sChange = "town.FocusMap.Layers[0].FeatureClass.SearchWithoutShapes = function () "
                                "{ return [{ ObjectId: 42 }]; };";
    EXPECT_EQ(roads(sChange)->featureClass()->searchWithoutShapes()->nextRow()->objectId(), 42);
    EXPECT_EQ(roads()->featureClass()->searchWithoutShapes()->nextRow()->objectId(), 1);
}

TEST_F(ScriptHost, SeesALayerAsItsFeatureClassUnlessItHasATable) {
    EXPECT_NE(std::dynamic_pointer_cast<GisFeatureClass>(roads()->asTable()), nullptr);
    EXPECT_EQ(
        roads("town.FocusMap.Layers[0].Table = town.FocusMap.StandaloneTables[0];")->asTable()->datasetName(),
        "Signs");
}

TEST_F(ScriptHost, ReadsVerticesAtOnceWhereTheShapeOffersThat) {
    const auto pRow = roads("var shape = town.FocusMap.Layers[0].FeatureClass.Search('').NextRow().Shape;"
                            "shape.ReadPoints = function (part, first, count) "
                            "{ return [part, first, null, count, 5, 6, 7, 8]; };")
                          ->featureClass()
                          ->search(nullptr)
                          ->nextRow();
    std::array<PointValues, 3> aPoints;
    ASSERT_EQ(pRow->shape()->readPoints(4, 2, aPoints), 2u);
    EXPECT_EQ(aPoints[0].dX, 4);
    EXPECT_EQ(aPoints[0].dY, 2);
    EXPECT_TRUE(std::isnan(aPoints[0].dZ));
    EXPECT_EQ(aPoints[0].dM, 3);
    EXPECT_EQ(aPoints[1].dM, 8);
    EXPECT_EQ(failureNumberOf([&] { return pRow->shape()->readPoints(0, 0, std::span(aPoints).first(1)); }),
              13)
        << "more vertices than were asked for";
}

TEST_F(ScriptHost, MayHaveWorkspacesThatHoldNoDomains) {
    const std::string sWorkspace = "town.FocusMap.Layers[0].FeatureClass.Workspace";
    EXPECT_EQ(workspace("delete " + sWorkspace + ".Domains;")->domainsRole(), nullptr);
    EXPECT_EQ(workspace(sWorkspace + ".Domains = null;")->domainsRole(), nullptr);
    const auto pRole = workspace(sWorkspace + ".Domains = [];")->domainsRole();
    ASSERT_NE(pRole, nullptr) << "no domains are not the lack of a place for them";
    EXPECT_EQ(pRole->domains()->next(), nullptr);
}

} // namespace

} // namespace halvane::test
