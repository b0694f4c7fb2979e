#include "host/com/ScriptHost.h"

#include <cmath>

namespace halvane::test {

namespace {

using namespace host;

TEST_F(ScriptHost, TellsItsMaps) {
    const auto pDocument = document();
    EXPECT_EQ(pDocument->focusMap()->name(), "Town");
    ASSERT_EQ(pDocument->mapCount(), 2);
    EXPECT_EQ(pDocument->map(1)->name(), "Region");
    EXPECT_EQ(failureNumberOf([&] { return pDocument->map(2); }), 9);
}

TEST_F(ScriptHost, HasNoShownMapWhereThereIsNone) {
    EXPECT_EQ(document("town.FocusMap = null;")->focusMap(), nullptr);
}

TEST_F(ScriptHost, TellsLayersByTheirKind) {
    const auto pMap = map();
    ASSERT_EQ(pMap->layerCount(), 3);
    EXPECT_NE(std::dynamic_pointer_cast<GisFeatureLayer>(pMap->layer(0)), nullptr);
    const auto pGroup = std::dynamic_pointer_cast<GisGroupLayer>(pMap->layer(1));
    ASSERT_NE(pGroup, nullptr);
    ASSERT_EQ(pGroup->layerCount(), 2);
    const auto pRaster = std::dynamic_pointer_cast<GisRasterLayer>(pGroup->layer(0));
    ASSERT_NE(pRaster, nullptr);
    EXPECT_EQ(pRaster->filePath(), "C:\\photo.tif");
    const auto pTin = std::dynamic_pointer_cast<GisTinLayer>(pGroup->layer(1));
    ASSERT_NE(pTin, nullptr);
    EXPECT_EQ(pTin->dataset()->workspace()->pathName(), "C:\\town.mdb");
    EXPECT_EQ(pMap->layer(2)->name(), "Names");
    EXPECT_EQ(std::dynamic_pointer_cast<GisFeatureLayer>(pMap->layer(2)), nullptr);
}

TEST_F(ScriptHost, CountsALayerAddedMeanwhile) {
    const auto pMap = map();
    ASSERT_EQ(pMap->layerCount(), 3);
    engine_.run("town.FocusMap.Layers.push({ LayerKind: 'X', Name: 'New' });");
    ASSERT_EQ(pMap->layerCount(), 4);
    EXPECT_EQ(pMap->layer(3)->name(), "New");
}

TEST_F(ScriptHost, HasTablesWhoseDataIsGone) {
    const auto pMap = map();
    ASSERT_EQ(pMap->standaloneTableCount(), 2);
    EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), "Signs");
    EXPECT_EQ(pMap->standaloneTable(1), nullptr);
}

TEST_F(ScriptHost, TellsFields) {
    const auto pFields = roads()->featureClass()->fields();
    ASSERT_EQ(pFields->count(), 7);
    const GisField& field = pFields->field(1);
    EXPECT_EQ(field.name(), "NAME");
    EXPECT_EQ(field.aliasName(), "Name of road");
    EXPECT_EQ(field.typeCode(), 4);
    EXPECT_EQ(field.length(), 40);
    EXPECT_EQ(field.precision(), 0);
    EXPECT_TRUE(field.isNullable());
    EXPECT_TRUE(field.isEditable());
    EXPECT_FALSE(pFields->field(0).isEditable());
    EXPECT_EQ(pFields->field(0).aliasName(), "OBJECTID") << "the name stands for an alias that is not there";
    EXPECT_EQ(pFields->findField("width"), 4);
    EXPECT_EQ(pFields->findField("Name of road"), -1);
    EXPECT_EQ(pFields->findFieldByAliasName("name of ROAD"), 1);
    EXPECT_EQ(failureNumberOf([&] { return pFields->field(7).name(); }), 9);
}

TEST_F(ScriptHost, YieldsRowsWithTheirValues) {
    const auto pCursor = roads()->featureClass()->search(nullptr);
    const auto pRow = pCursor->nextRow();
    ASSERT_NE(pRow, nullptr);
    EXPECT_EQ(pRow->objectId(), 1);
    EXPECT_EQ(toText(pRow->value(1)), "Mill Lane");
    EXPECT_EQ(toText(pRow->value(2)), "1");
    EXPECT_EQ(toText(pRow->value(4)), "6.5");
    const auto pSecond = pCursor->nextRow();
    EXPECT_EQ(toText(pSecond->value(1)), "\xC3\x84hrenweg <north>");
    EXPECT_TRUE(isNull(pSecond->value(5)));
    EXPECT_EQ(pCursor->nextRow(), nullptr);
    EXPECT_EQ(toText(pRow->value(1)), "Mill Lane") << "a row outlives its cursor's moves";
    EXPECT_EQ(failureNumberOf([&] { return pRow->value(7); }), 9);
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

TEST_F(ScriptHost, SearchesWithTheClause) {
    const auto pSigns = map()->standaloneTable(0);
    const GisQueryFilter filter{"ROAD = 1"};
    const auto pCursor = pSigns->search(&filter);
    EXPECT_EQ(toText(pCursor->nextRow()->value(2)), "Stop");
    EXPECT_EQ(toText(pCursor->nextRow()->value(2)), "Give way");
    EXPECT_EQ(pCursor->nextRow(), nullptr);
}

TEST_F(ScriptHost, LeavesShapesUnreadWhereItCan) {
    const std::string sChange = "town.FocusMap.Layers[0].FeatureClass.SearchWithoutShapes = function () "
                                "{ return [{ ObjectId: 42 }]; };";
    EXPECT_EQ(roads(sChange)->featureClass()->searchWithoutShapes()->nextRow()->objectId(), 42);
    EXPECT_EQ(roads()->featureClass()->searchWithoutShapes()->nextRow()->objectId(), 1);
}

TEST_F(ScriptHost, YieldsTheSelectionInItsOrder) {
    const auto pLayer =
        roads("var layer = town.FocusMap.Layers[0]; layer.SelectionCount = 2;"
              "layer.SearchSelection = function () { return [{ ObjectId: 9 }, { ObjectId: 3 }]; };");
    EXPECT_EQ(pLayer->selectionCount(), 2);
    const auto pCursor = pLayer->searchSelection();
    EXPECT_EQ(pCursor->nextRow()->objectId(), 9);
    EXPECT_EQ(pCursor->nextRow()->objectId(), 3);
    EXPECT_EQ(pCursor->nextRow(), nullptr);
}

TEST_F(ScriptHost, SeesALayerAsItsFeatureClassUnlessItHasATable) {
    EXPECT_NE(std::dynamic_pointer_cast<GisFeatureClass>(roads()->asTable()), nullptr);
    EXPECT_EQ(
        roads("town.FocusMap.Layers[0].Table = town.FocusMap.StandaloneTables[0];")->asTable()->datasetName(),
        "Signs");
}

TEST_F(ScriptHost, TellsShapesByTheirParts) {
    const auto pClass = roads()->featureClass();
    EXPECT_EQ(pClass->featureCount(), 2);
    EXPECT_EQ(pClass->shapeType(), 3);
    const auto pCursor = pClass->search(nullptr);
    static_cast<void>(pCursor->nextRow());
    const auto pShape = pCursor->nextRow()->shape();
    EXPECT_EQ(pShape->geometryType(), 3);
    EXPECT_EQ(pShape->length(), 7);
    ASSERT_EQ(pShape->partCount(), 2);
    EXPECT_EQ(pShape->pointCount(1), 2);
    const auto pPoint = pShape->point(1, 0);
    EXPECT_EQ(pPoint->x(), 10);
    EXPECT_EQ(pPoint->y(), 10);
    EXPECT_EQ(pPoint->z(), 3);
    EXPECT_EQ(pPoint->m(), 30);
    EXPECT_EQ(pShape->fromPoint()->m(), 10);
    EXPECT_EQ(pShape->toPoint()->x(), 14);
}

TEST_F(ScriptHost, HasNoHeightWhereAPointHasNone) {
    const auto pPoint = roads()->featureClass()->search(nullptr)->nextRow()->shape()->point(0, 1);
    EXPECT_EQ(pPoint->y(), 4);
    EXPECT_TRUE(std::isnan(pPoint->z()));
    EXPECT_TRUE(std::isnan(pPoint->m()));
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

TEST_F(ScriptHost, HasTheGeometryInItsField) {
    const auto pRow = roads()->featureClass()->search(nullptr)->nextRow();
    const Value vShape = toValue(pRow->value(6));
    ASSERT_NE(objectAs<GisGeometry>(vShape), nullptr);
    EXPECT_EQ(objectAs<GisGeometry>(vShape)->length(), 5);
}

TEST_F(ScriptHost, TellsReferencesAndTheirDomains) {
    const auto pReference = map()->spatialReference();
    EXPECT_EQ(pReference->description(), "PROJECTION GEOGRAPHIC\nUNITS DD");
    ASSERT_TRUE(pReference->xyDomain().has_value());
    EXPECT_EQ(pReference->xyDomain()->dXMin, -180);
    EXPECT_EQ(pReference->xyDomain()->dYMax, 90);
    EXPECT_EQ(pReference->xyDomain()->dScale, 1000000);
    EXPECT_FALSE(pReference->zDomain().has_value());
    ASSERT_TRUE(pReference->mDomain().has_value());
    EXPECT_EQ(pReference->mDomain()->dMax, 1000);
    EXPECT_EQ(pReference->mDomain()->dScale, 10);
    EXPECT_EQ(document()->map(1)->spatialReference(), nullptr);
    EXPECT_EQ(roads()->spatialReference()->xyDomain()->dFalseX, -400);
    EXPECT_EQ(roads()->featureClass()->spatialReference()->xyDomain()->dFalseY, -400);
}

TEST_F(ScriptHost, TellsSubtypes) {
    const auto pSubtypes = roads()->featureClass()->subtypes();
    EXPECT_TRUE(pSubtypes->hasSubtypes());
    EXPECT_EQ(pSubtypes->subtypeFieldName(), "KIND");
    EXPECT_EQ(pSubtypes->defaultSubtypeCode(), 1);
    ASSERT_EQ(pSubtypes->subtypeCount(), 2);
    EXPECT_EQ(pSubtypes->subtypeCode(1), 2);
    EXPECT_EQ(pSubtypes->subtypeName(2), "path");
    EXPECT_EQ(pSubtypes->domain(1, "SURFACE")->name(), "Surface");
    EXPECT_EQ(pSubtypes->domain(1, "WIDTH"), nullptr);
    EXPECT_EQ(toText(pSubtypes->defaultValue(2, "SURFACE")), "2");
    EXPECT_TRUE(std::holds_alternative<Null>(pSubtypes->defaultValue(2, "WIDTH")));
}

TEST_F(ScriptHost, TellsDomains) {
    const auto pDomains = workspace()->domainsRole()->domains();
    const auto pCoded = pDomains->next();
    EXPECT_EQ(pCoded->name(), "Surface");
    EXPECT_EQ(pCoded->description(), "what a road is made of");
    EXPECT_EQ(pCoded->fieldType(), 1);
    EXPECT_EQ(pCoded->mergePolicy(), 3);
    EXPECT_EQ(pCoded->splitPolicy(), 2);
    EXPECT_EQ(pCoded->domainType(), 2);
    ASSERT_EQ(pCoded->codeCount(), 2);
    EXPECT_EQ(toText(pCoded->code(1).vCode), "2");
    EXPECT_EQ(pCoded->code(1).sName, "asphalt");
    const auto pRange = pDomains->next();
    EXPECT_EQ(toText(pRange->minValue()), "1");
    EXPECT_EQ(toText(pRange->maxValue()), "8");
    EXPECT_EQ(pDomains->next(), nullptr);
}

TEST_F(ScriptHost, MayHaveWorkspacesThatHoldNoDomains) {
    const std::string sWorkspace = "town.FocusMap.Layers[0].FeatureClass.Workspace";
    EXPECT_EQ(workspace("delete " + sWorkspace + ".Domains;")->domainsRole(), nullptr);
    EXPECT_EQ(workspace(sWorkspace + ".Domains = null;")->domainsRole(), nullptr);
    const auto pRole = workspace(sWorkspace + ".Domains = [];")->domainsRole();
    ASSERT_NE(pRole, nullptr) << "no domains are not the lack of a place for them";
    EXPECT_EQ(pRole->domains()->next(), nullptr);
}

TEST_F(ScriptHost, TellsRelationshipClasses) {
    const auto pClasses = workspace()->relationshipClasses();
    const auto pClass = pClasses->next();
    EXPECT_EQ(pClass->name(), "RoadsToSigns");
    EXPECT_EQ(pClass->forwardPathLabel(), "has signs");
    EXPECT_EQ(pClass->backwardPathLabel(), "stands at");
    EXPECT_EQ(pClass->featureDatasetName(), "");
    EXPECT_FALSE(pClass->isAttributed());
    EXPECT_TRUE(pClass->isComposite());
    EXPECT_EQ(pClass->notification(), 2);
    EXPECT_EQ(pClass->cardinality(), 2);
    EXPECT_EQ(pClass->originClassName(), "Roads");
    EXPECT_EQ(pClass->destinationClassName(), "Signs");
    EXPECT_EQ(pClass->originPrimaryKey(), "OBJECTID");
    EXPECT_EQ(pClass->originForeignKey(), "ROAD");
    EXPECT_EQ(pClass->destinationPrimaryKey(), "");
    EXPECT_EQ(pClass->destinationForeignKey(), "");
    EXPECT_EQ(pClasses->next(), nullptr);
}

TEST_F(ScriptHost, OpensWorkspacesAndWhatIsInThem) {
    const auto pHost = application();
    const auto pProperties = pHost->newPropertySet();
    pProperties->setProperty("DATABASE", std::string("C:\\town.mdb"));
    EXPECT_EQ(toText(pProperties->property("DATABASE")), "C:\\town.mdb");
    const auto pFactory = pHost->newWorkspaceFactory(WorkspaceFactoryKind::LocalDatabase);
    const auto pWorkspace = pFactory->open(*pProperties, 0);
    EXPECT_EQ(pWorkspace->typeCode(), 1);
    EXPECT_EQ(pWorkspace->openFeatureClass("Roads")->featureCount(), 2);
    EXPECT_EQ(pWorkspace->openTable("Signs")->datasetName(), "Signs");
    EXPECT_NE(failureOf([&] { return pWorkspace->openFeatureClass("Nowhere"); }), "");
    EXPECT_EQ(pFactory->openFromFile("C:\\town.mdb", 0)->pathName(), "C:\\town.mdb");
    EXPECT_NE(failureOf([&] { return pFactory->openFromFile("C:\\village.mdb", 0); }), "");
}

TEST_F(ScriptHost, GivesANewLayerItsFeatureClass) {
    const auto pHost = application();
    const auto pLayer = pHost->newFeatureLayer();
    EXPECT_EQ(pLayer->featureClass(), nullptr);
    pLayer->setFeatureClass(roads()->featureClass());
    EXPECT_EQ(pLayer->featureClass()->datasetName(), "Roads");
}

} // namespace

} // namespace halvane::test
