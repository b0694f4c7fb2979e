// Layers and tables whose order or reference a map document says.

#include "SampleData.h"

#include "host/Layers.h"
#include "host/Map.h"
#include "host/SpatialReference.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* sTowns = R"({"type": "FeatureCollection", "name": "towns", "features": [
{"type": "Feature", "id": 7, "properties": {"NAME": "B", "POP": 10, "KIND": null}, "geometry": {"type": "Point", "coordinates": [10, 50]}},
{"type": "Feature", "id": 3, "properties": {"NAME": "A", "POP": 9, "KIND": "x"}, "geometry": {"type": "Point", "coordinates": [11, 51]}},
{"type": "Feature", "id": 5, "properties": {"NAME": "C", "POP": 10, "KIND": "y"}, "geometry": {"type": "Point", "coordinates": [12, 52]}}
]})";

class LayersOfMaps : public ::testing::Test {
protected:
    LayersOfMaps() { folder.write("towns.geojson", sTowns); }

    host::GisFeatureLayerPtr layer(const std::string& sSource, const std::string& sMore) {
        folder.write("map.xml", "<MapDocument><Map name=\"M\">\n<FeatureLayer name=\"L\" source=\"" +
                                    sSource + "\" " + sMore + "</FeatureLayer></Map></MapDocument>");
        pHost = host::gdal::GdalHost::create();
        pDocument = pHost->openMapDocument(folder.file("map.xml"));
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
    }
    std::string refusal(const std::string& sSource, const std::string& sMore) {
        return failureOf([&] { static_cast<void>(layer(sSource, sMore)); });
    }
    std::vector<std::string> names(const host::GisFeatureLayerPtr& pLayer, std::string_view sWhere = {}) {
        return texts(*pLayer->featureClass(), "NAME", sWhere);
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost;
    host::GisMapDocumentPtr pDocument;
};

using OrderedLayers = LayersOfMaps;
using TransformedLayers = LayersOfMaps;

TEST_F(OrderedLayers, HaveTheirRowsByTheirKeys) {
    EXPECT_THAT(names(layer("towns.geojson", "orderBy=\"POP desc, NAME\">")), ElementsAre("B", "C", "A"));
    EXPECT_THAT(names(layer("towns.geojson", "orderBy=\"NAME\">")), ElementsAre("A", "B", "C"));
    EXPECT_THAT(names(layer("city.gpkg", "dataset=\"roads\" orderBy=\"NAME DESC\">")),
                ElementsAre("R5", "R4", "R3", "R2", "R1"));
}

TEST_F(OrderedLayers, KeepTheOrderOfTheDataWhereKeysAreAlike) {
    EXPECT_THAT(names(layer("towns.geojson", "orderBy=\"POP desc\">")), ElementsAre("B", "C", "A"));
}

TEST_F(OrderedLayers, HaveMissingValuesFirst) {
    EXPECT_THAT(names(layer("towns.geojson", "orderBy=\"KIND\">")), ElementsAre("B", "A", "C"));
    EXPECT_THAT(names(layer("towns.geojson", "orderBy=\"KIND desc\">")), ElementsAre("C", "A", "B"));
}

TEST_F(OrderedLayers, CompareNumbersAsNumbers) {
    EXPECT_THAT(names(layer("towns.geojson", "orderBy=\"pop asc , NAME desc\">")),
                ElementsAre("A", "C", "B"));
}

TEST_F(OrderedLayers, KeepTheirIdentifiersAndTheirNumber) {
    const auto pLayer = layer("towns.geojson", "orderBy=\"NAME\">");
    EXPECT_THAT(texts(*pLayer->featureClass(), "OID"), ElementsAre("3", "7", "5"));
    EXPECT_EQ(pLayer->featureClass()->featureCount(), 3);
}

TEST_F(OrderedLayers, HaveTheOrderUnderAClauseAndAFilterToo) {
    const auto pLayer = layer("towns.geojson", "orderBy=\"NAME desc\" filter=\"POP = 10\">");
    EXPECT_THAT(names(pLayer), ElementsAre("C", "B"));
    EXPECT_THAT(names(layer("towns.geojson", "orderBy=\"NAME desc\">"), "POP = 10"), ElementsAre("C", "B"));
    EXPECT_THAT(names(layer("city.gpkg", "dataset=\"roads\" orderBy=\"N desc\">"), "N > 20"),
                ElementsAre("R4", "R3"));
}

TEST_F(OrderedLayers, OrderSelectionsByAClauseButNotByIdentifiers) {
    const auto pLayer = layer("towns.geojson", "orderBy=\"NAME desc\">");
    pHost->selectFeatures(pDocument, "L", "POP = 10");
    EXPECT_THAT(texts(*pLayer->searchSelection(), "NAME"), ElementsAre("C", "B"));
    pHost->selectFeatures(pDocument, "L", "3,7");
    EXPECT_THAT(texts(*pLayer->searchSelection(), "NAME"), ElementsAre("A", "B"));
}

TEST_F(OrderedLayers, YieldTheSameRowsHoweverOftenTheyAreRead) {
    const auto pLayer = layer("city.gpkg", "dataset=\"roads\" orderBy=\"N desc, NAME\">");
    const auto first = names(pLayer);
    EXPECT_EQ(first.size(), 5U);
    EXPECT_EQ(names(pLayer), first);
    std::vector<std::string> withoutShapes;
    const auto pRows = pLayer->featureClass()->searchWithoutShapes();
    EXPECT_EQ(texts(*pRows, "NAME"), first);
}

TEST_F(OrderedLayers, MayBeComputedBySql) {
    EXPECT_THAT(
        names(layer("towns.geojson", "sql=\"SELECT NAME, POP, geom FROM towns\" orderBy=\"NAME desc\">")),
        ElementsAre("C", "B", "A"));
}

TEST_F(OrderedLayers, MayBeTables) {
    folder.write("map.xml", "<MapDocument><Map name=\"M\"><Table source=\"city.gpkg\" dataset=\"notes\" "
                            "orderBy=\"ROAD desc, TEXT\"/></Map></MapDocument>");
    const auto pOpened = host::gdal::GdalHost::create();
    const auto pMap = pOpened->openMapDocument(folder.file("map.xml"))->focusMap();
    EXPECT_THAT(texts(*pMap->standaloneTable(0), "ROAD"), ElementsAre("2", "1", "1"));
}

TEST_F(OrderedLayers, TakeNamesBetweenQuotationMarks) {
    folder.write("odd.csv", "\"a b, c\",NAME\n2,x\n1,y\n");
    folder.write("map.xml", "<MapDocument><Map name=\"M\"><Table source=\"odd.csv\" "
                            "orderBy=\"&quot;a b, c&quot; asc\"/></Map></MapDocument>");
    const auto pOpened = host::gdal::GdalHost::create();
    const auto pMap = pOpened->openMapDocument(folder.file("map.xml"))->focusMap();
    EXPECT_THAT(texts(*pMap->standaloneTable(0), "NAME"), ElementsAre("y", "x"));
}

TEST_F(OrderedLayers, AreRefusedForWhatIsNoFieldOrNoOrder) {
    const std::string sPlace = folder.file("map.xml") + ", line 2: orderBy: ";
    EXPECT_THAT(refusal("towns.geojson", "orderBy=\"NAM\">"),
                HasSubstr(sPlace + "there is no field \"NAM\"; did you mean \"NAME\"?"));
    EXPECT_THAT(refusal("towns.geojson", "orderBy=\"NAME up\">"),
                HasSubstr(sPlace + "\"up\" is neither asc nor desc"));
    EXPECT_THAT(refusal("towns.geojson", "orderBy=\"NAME,\">"), HasSubstr(sPlace + "a field is missing"));
    EXPECT_THAT(refusal("towns.geojson", "orderBy=\"NAME desc POP\">"), HasSubstr(sPlace));
    EXPECT_THAT(refusal("towns.geojson", "orderBy=\"SHAPE\">"), HasSubstr("no order by their shapes"));
    EXPECT_THAT(refusal("towns.geojson", "orderBy=\"random()\">"),
                HasSubstr("there is no field \"random()\""));
}

TEST_F(TransformedLayers, HaveTheirShapesInTheOtherReference) {
    const auto pLayer = layer("towns.geojson", "crs=\"EPSG:3857\">");
    const auto pRow = pLayer->featureClass()->search(nullptr)->nextRow();
    const auto pPoint = pRow->shape()->fromPoint();
    EXPECT_NEAR(pPoint->x(), 1113194.9, 0.1);
    EXPECT_NEAR(pPoint->y(), 6446275.8, 0.1);
    EXPECT_EQ(pLayer->spatialReference()->authorityCode(), "EPSG:3857");
    EXPECT_EQ(pLayer->featureClass()->spatialReference()->authorityCode(), "EPSG:3857");
    EXPECT_EQ(pDocument->focusMap()->spatialReference()->authorityCode(), "EPSG:3857");
}

TEST_F(TransformedLayers, HaveEveryVertexMoved) {
    runSql(sCity,
           {"UPDATE gpkg_geometry_columns SET srs_id = 4326", "UPDATE gpkg_contents SET srs_id = 4326"});
    const auto plain = layer("city.gpkg", "dataset=\"roads\">")->featureClass()->search(nullptr)->nextRow();
    const auto moved = layer("city.gpkg", "dataset=\"roads\" crs=\"EPSG:3857\">")
                           ->featureClass()
                           ->search(nullptr)
                           ->nextRow();
    const auto pPlain = plain->shape();
    const auto pMoved = moved->shape();
    ASSERT_EQ(pMoved->partCount(), pPlain->partCount());
    for (std::int32_t lPart = 0; lPart < pPlain->partCount(); ++lPart) {
        ASSERT_EQ(pMoved->pointCount(lPart), pPlain->pointCount(lPart));
        for (std::int32_t n = 0; n < pPlain->pointCount(lPart); ++n)
            EXPECT_NEAR(pMoved->point(lPart, n)->x(), pPlain->point(lPart, n)->x() * 111319.490793, 0.1);
    }
}

TEST_F(TransformedLayers, HaveEveryRowOfALongTableMoved) {
    std::string sRows = R"({"type": "FeatureCollection", "name": "many", "features": [)";
    for (int n = 0; n < 3000; ++n)
        sRows +=
            std::string(n == 0 ? "" : ",") +
            R"({"type": "Feature", "properties": {}, "geometry": {"type": "Point", "coordinates": [10, 0]}})";
    convertLayer(folder.write("many.geojson", sRows + "]}"), "many", folder.file("many.gpkg"), "GPKG");
    const auto pRows = layer("many.gpkg", "crs=\"EPSG:3857\">")->featureClass()->search(nullptr);
    int lRows = 0;
    for (auto pRow = pRows->nextRow(); pRow != nullptr; pRow = pRows->nextRow(), ++lRows)
        ASSERT_NEAR(pRow->shape()->fromPoint()->x(), 1113194.9, 0.1) << lRows;
    EXPECT_EQ(lRows, 3000);
}

TEST_F(TransformedLayers, TakeTheReferenceThatTheDocumentSaysTheDataHas) {
    folder.write("bare.csv", "WKT,N\n\"POINT (500000 0)\",1\n");
    folder.write("bare.csvt", "WKT,Integer\n");
    const auto pLayer = layer("bare.csv", "crs=\"EPSG:4326\"><SpatialReference definition=\"EPSG:32632\"/>");
    const auto pPoint = pLayer->featureClass()->search(nullptr)->nextRow()->shape()->fromPoint();
    EXPECT_NEAR(pPoint->x(), 9, 1e-9);
    EXPECT_NEAR(pPoint->y(), 0, 1e-9);
    EXPECT_EQ(pLayer->spatialReference()->authorityCode(), "EPSG:4326");
}

TEST_F(TransformedLayers, LeaveShapesAloneThatAreInTheReferenceAlready) {
    const auto pPoint = layer("towns.geojson", "crs=\"EPSG:4326\">")
                            ->featureClass()
                            ->search(nullptr)
                            ->nextRow()
                            ->shape()
                            ->fromPoint();
    EXPECT_EQ(pPoint->x(), 10);
    EXPECT_EQ(pPoint->y(), 50);
}

TEST_F(TransformedLayers, FailForAShapeWithoutAPlaceAsOftenAsItIsAskedFor) {
    folder.write("pole.geojson", R"({"type": "FeatureCollection", "name": "pole", "features": [
{"type": "Feature", "properties": {}, "geometry": {"type": "Point", "coordinates": [0, 100]}}]})");
    const auto pRow = layer("pole.geojson", "crs=\"EPSG:3857\">")->featureClass()->search(nullptr)->nextRow();
    EXPECT_NE(failureOf([&] { static_cast<void>(pRow->shape()); }), "");
    EXPECT_NE(failureOf([&] { static_cast<void>(pRow->shape()); }), "");
}

TEST_F(TransformedLayers, AreRefusedForWhatIsNoReference) {
    const std::string sPlace = folder.file("map.xml") + ", line 2: ";
    EXPECT_THAT(refusal("towns.geojson", "crs=\"EPSG:99999\">"), HasSubstr(sPlace));
    EXPECT_THAT(refusal("towns.geojson", "crs=\"/etc/passwd\">"),
                HasSubstr("is no code of a spatial reference"));
    EXPECT_THAT(refusal("towns.geojson", "crs=\"+proj=longlat\">"),
                HasSubstr("is no code of a spatial reference"));
    folder.write("bare.csv", "WKT,N\n\"POINT (1 2)\",1\n");
    folder.write("bare.csvt", "WKT,Integer\n");
    EXPECT_THAT(
        refusal("bare.csv", "crs=\"EPSG:4326\">"),
        HasSubstr(sPlace + "crs=\"EPSG:4326\": nothing says which reference the data of \"bare\" has"));
}

} // namespace
} // namespace halvane::tests
