#include "SampleData.h"

#include "base/Failure.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

namespace halvane::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class MapDocument : public ::testing::Test {
protected:
    host::GisMapDocumentPtr open(const std::string& sContent) {
        return pHost->openMapDocument(folder.write("doc/map.xml", sContent));
    }
    host::GisMapPtr openMap(const std::string& sLayers) {
        return open("<MapDocument><Map name='M'>" + sLayers + "</Map></MapDocument>")->focusMap();
    }
    host::GisFeatureLayerPtr openLayer(const std::string& sLayer) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(openMap(sLayer)->layer(0));
    }

    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
};

TEST_F(MapDocument, TakesPathsFromItsOwnFolder) {
    const auto pLayer = openLayer("<FeatureLayer name='Streets' source='../city.gpkg' dataset='ROADS'/>");
    EXPECT_EQ(pLayer->name(), "Streets");
    EXPECT_EQ(pLayer->featureClass()->datasetName(), "roads");
    EXPECT_EQ(pLayer->featureClass()->workspace()->pathName(), sCity);
}

TEST_F(MapDocument, ReadsBackslashesInPathsAsSlashes) {
    EXPECT_EQ(
        openLayer("<FeatureLayer source='..\\city.gpkg' dataset='signs'/>")->featureClass()->featureCount(),
        3);
}

TEST_F(MapDocument, MakesItsFolderTheBaseOfLocationsElsewhere) {
    openMap("");
    const auto pFactory = pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default);
    EXPECT_EQ(pFactory->openFromFile("..\\city.gpkg", 0)->pathName(), sCity);
}

TEST_F(MapDocument, NamesALayerAfterItsDatasetOrItsFileWhenItHasNoName) {
    EXPECT_EQ(openLayer("<FeatureLayer source='../city.gpkg' dataset='roads'/>")->name(), "roads");
    EXPECT_EQ(openLayer("<FeatureLayer source='../lines.shp'/>")->name(), "lines");
}

TEST_F(MapDocument, NeedsNoDatasetWhereThereIsOnlyOne) {
    convertLayer(sCity, "signs", folder.file("points.geojson"), "GeoJSON");
    EXPECT_EQ(openLayer("<FeatureLayer source='../points.geojson'/>")->featureClass()->featureCount(), 3);
    const auto pLayer = openLayer("<FeatureLayer source='../city.gpkg'/>");
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                HasSubstr("holds 3 datasets; say which one with dataset="));
}

TEST_F(MapDocument, ShowsTheMapThatSaysSoElseTheFirst) {
    EXPECT_EQ(
        open("<MapDocument><Map name='A'/><Map name='B' shown='true'/></MapDocument>")->focusMap()->name(),
        "B");
    const auto pDocument = open("<MapDocument><Map name='A'/><Map name='B' shown='false'/></MapDocument>");
    EXPECT_EQ(pDocument->focusMap()->name(), "A");
    EXPECT_EQ(pDocument->mapCount(), 2);
    EXPECT_EQ(pDocument->map(1)->name(), "B");
}

TEST_F(MapDocument, KeepsItsLayersInTheirOrderAndOfTheirKinds) {
    makeRaster(folder, "dem.tif", "GTiff");
    makeTin(folder, "tin.gpkg", "ground");
    const auto pMap = openMap("<GroupLayer name='G'><RasterLayer name='R' source='../dem.tif'/>"
                              "<GroupLayer name='H'><FeatureLayer source='../city.gpkg' dataset='roads'/>"
                              "</GroupLayer></GroupLayer>"
                              "<Table source='../city.gpkg' dataset='notes'/>"
                              "<TinLayer name='T' source='../tin.gpkg' dataset='ground'/>");
    ASSERT_EQ(pMap->layerCount(), 2);
    const auto pGroup = std::dynamic_pointer_cast<host::GisGroupLayer>(pMap->layer(0));
    ASSERT_EQ(pGroup->layerCount(), 2);
    const auto pRaster = std::dynamic_pointer_cast<host::GisRasterLayer>(pGroup->layer(0));
    EXPECT_EQ(pRaster->filePath(), folder.file("dem.tif"));
    const auto pInner = std::dynamic_pointer_cast<host::GisGroupLayer>(pGroup->layer(1));
    EXPECT_EQ(pInner->layer(0)->name(), "roads");
    const auto pTin = std::dynamic_pointer_cast<host::GisTinLayer>(pMap->layer(1));
    EXPECT_EQ(pTin->name(), "T");
    EXPECT_EQ(pTin->dataset()->workspace()->pathName(), folder.file("tin.gpkg"));
    EXPECT_EQ(pMap->standaloneTableCount(), 1);
    EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), "notes");
    EXPECT_NE(failureOf([&] { static_cast<void>(pGroup->layer(2)); }), "");
    EXPECT_NE(failureOf([&] { static_cast<void>(pMap->standaloneTable(1)); }), "");
}

TEST_F(MapDocument, FilterDefinesWhatALayerListsAndCounts) {
    const auto pClass = openLayer("<FeatureLayer source='../city.gpkg' dataset='roads' filter='N &gt;= 30'/>")
                            ->featureClass();
    EXPECT_THAT(texts(*pClass, "NAME"), ElementsAre("R3", "R4"));
    EXPECT_EQ(pClass->featureCount(), 2);
    EXPECT_THAT(texts(*pClass, "NAME", "N=40 OR N=10"), ElementsAre("R4"));
    EXPECT_THAT(texts(*pClass, "NAME", "N=40 -- a remark"), ElementsAre("R4"));
}

TEST_F(MapDocument, FilterOfATableGovernsItsRows) {
    const auto pMap = openMap("<Table source='../city.gpkg' dataset='notes' filter='ROAD=1'/>");
    EXPECT_THAT(texts(*pMap->standaloneTable(0), "TEXT"), ElementsAre("first", "second"));
}

TEST_F(MapDocument, FilterThatTheDataRejectsIsAFailureOfCountingAndListing) {
    const auto pClass =
        openLayer("<FeatureLayer source='../city.gpkg' dataset='roads' filter='NOFIELD = 1'/>")
            ->featureClass();
    EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->featureCount()); }), HasSubstr("roads"));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->search(nullptr)); }), HasSubstr("NOFIELD"));
}

TEST_F(MapDocument, FilterOfMoreThanOneExpressionIsAFailureOfCountingAndListing) {
    const auto pClass =
        openLayer("<FeatureLayer source='../city.gpkg' dataset='roads' filter='N=10) OR (N=20'/>")
            ->featureClass();
    EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->featureCount()); }),
                HasSubstr("its brackets do not match"));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->search(nullptr)); }),
                HasSubstr("its brackets do not match"));
}

TEST_F(MapDocument, SelectionListsFeaturesInItsOrderAndCountsNothingElse) {
    const auto pLayer = openLayer("<FeatureLayer source='../city.gpkg' dataset='roads'>"
                                  "<Selection fids=' 4 1&#10;3'/></FeatureLayer>");
    EXPECT_EQ(pLayer->selectionCount(), 3);
    EXPECT_THAT(texts(*pLayer->searchSelection(), "NAME"), ElementsAre("R4", "R1", "R3"));
    EXPECT_EQ(pLayer->featureClass()->featureCount(), 5);
}

TEST_F(MapDocument, SelectionByClauseIsWithinTheFilter) {
    const auto pLayer = openLayer("<FeatureLayer source='../city.gpkg' dataset='roads' filter='N &gt;= 20'>"
                                  "<Selection where='N &lt;= 30'/></FeatureLayer>");
    EXPECT_THAT(texts(*pLayer->searchSelection(), "NAME"), ElementsAre("R2", "R3"));
}

TEST_F(MapDocument, SelectionOfAFeatureOutsideTheFilterIsAFailure) {
    const auto pLayer = openLayer("<FeatureLayer source='../city.gpkg' dataset='roads' filter='N &gt;= 20'>"
                                  "<Selection fids='2 1'/></FeatureLayer>");
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->selectionCount()); }), HasSubstr("no feature 1 "));
}

TEST_F(MapDocument, SelectionMayBeEmpty) {
    const auto pLayer = openLayer("<FeatureLayer source='../city.gpkg' dataset='roads'>"
                                  "<Selection fids=''/></FeatureLayer>");
    EXPECT_EQ(pLayer->selectionCount(), 0);
}

TEST_F(MapDocument, FieldElementsChangeAliasAndEditability) {
    const auto pFields = openLayer("<FeatureLayer source='../city.gpkg' dataset='roads'>"
                                   "<Field name='name' alias='Street'/><Field name='N' editable='false'/>"
                                   "</FeatureLayer>")
                             ->featureClass()
                             ->fields();
    EXPECT_EQ(pFields->field(2).name(), "NAME");
    EXPECT_EQ(pFields->field(2).aliasName(), "Street");
    EXPECT_EQ(pFields->findFieldByAliasName("STREET"), 2);
    EXPECT_EQ(pFields->findFieldByAliasName("NAME"), -1);
    EXPECT_TRUE(pFields->field(2).isEditable());
    EXPECT_FALSE(pFields->field(3).isEditable());
}

TEST_F(MapDocument, FieldElementsOfOneLayerDoNotChangeAnother) {
    const auto pMap = openMap("<FeatureLayer source='../city.gpkg' dataset='roads'>"
                              "<Field name='NAME' alias='Street'/></FeatureLayer>"
                              "<FeatureLayer source='../city.gpkg' dataset='roads'/>");
    const auto aliasOf = [&](std::int32_t lLayer) {
        const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(lLayer));
        return std::string(pLayer->featureClass()->fields()->field(2).aliasName());
    };
    EXPECT_EQ(aliasOf(0), "Street");
    EXPECT_EQ(aliasOf(1), "NAME");
}

TEST_F(MapDocument, FieldElementOfAnUnknownFieldIsAFailureAtItsLine) {
    const auto pClass = openLayer("<FeatureLayer source='../city.gpkg' dataset='roads'>\n"
                                  "<Field name='STREET' alias='x'/></FeatureLayer>")
                            ->featureClass();
    EXPECT_THAT(failureOf([&] { static_cast<void>(pClass->fields()); }),
                HasSubstr("map.xml, line 2: there is no field \"STREET\""));
}

TEST_F(MapDocument, OpensItsDataOnlyWhenItIsAskedFor) {
    const auto pDocument = open("<MapDocument>\n<Map name='M'>\n"
                                "<FeatureLayer name='L' source='none.gpkg' dataset='x'/>\n"
                                "<RasterLayer name='R' source='none.tif'/>\n"
                                "<Table source='../city.gpkg' dataset='none'/>\n"
                                "<Table source='../city.gpkg' dataset='notes'/>\n</Map></MapDocument>");
    const auto pMap = pDocument->focusMap();
    EXPECT_EQ(pMap->layer(0)->name(), "L");
    EXPECT_EQ(pMap->standaloneTable(0), nullptr);
    EXPECT_NE(pMap->standaloneTable(1), nullptr);
    EXPECT_THAT(pHost->problems(pDocument),
                ElementsAre(HasSubstr("map.xml, line 3: There is no file or folder"),
                            HasSubstr("map.xml, line 4: There is no file or folder"),
                            HasSubstr("map.xml, line 5: \"" + sCity + "\" has no dataset \"none\"")));
}

TEST_F(MapDocument, ProblemsIncludeFiltersAndSelectionsThatTheDataRejects) {
    const auto pDocument =
        open("<MapDocument><Map name='M'>\n"
             "<FeatureLayer source='../city.gpkg' dataset='roads' filter='NOFIELD=1'/>\n"
             "<FeatureLayer source='../city.gpkg' dataset='roads'><Selection fids='77'/>"
             "</FeatureLayer>\n<Table source='../city.gpkg' dataset='notes' filter='NONE=1'/>"
             "</Map></MapDocument>");
    EXPECT_THAT(
        pHost->problems(pDocument),
        ElementsAre(HasSubstr("map.xml, line 2: The filter \"NOFIELD=1\" is not valid for \"roads\": "
                              "no such column: NOFIELD"),
                    HasSubstr("map.xml, line 3: The layer \"roads (city.gpkg)\" has no feature 77"),
                    HasSubstr("map.xml, line 4: The filter \"NONE=1\" is not valid for \"notes\": ")));
}

TEST_F(MapDocument, FiltersAreTestedWithoutReadingRows) {
    // The first row that is looked at makes the expression fail.
    const auto pDocument =
        open("<MapDocument><Map name='M'><FeatureLayer source='../city.gpkg' dataset='roads' "
             "filter='abs(-9223372036854775807 - 1 + N - N) > 0'/></Map></MapDocument>");
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pDocument->focusMap()->layer(0));
    EXPECT_THAT(failureOf([&] { texts(*pLayer->asTable(), "NAME"); }), HasSubstr("integer overflow"));
    EXPECT_THAT(pHost->problems(pDocument), ElementsAre());
}

TEST_F(MapDocument, TheClauseThatTheDataRejectsIsNamedOfTwo) {
    const auto pTable = std::dynamic_pointer_cast<host::GisFeatureLayer>(
                            open("<MapDocument><Map name='M'>\n<FeatureLayer source='../city.gpkg' "
                                 "dataset='roads' filter='NONE=1'/></Map></MapDocument>")
                                ->focusMap()
                                ->layer(0))
                            ->asTable();
    const host::GisQueryFilter filter{"N > 1"};
    EXPECT_THAT(failureOf([&] { static_cast<void>(pTable->search(&filter)); }),
                HasSubstr("map.xml, line 2: The filter \"NONE=1\" is not valid"));
    EXPECT_THAT(failureOf([&] {
                    static_cast<void>(
                        std::dynamic_pointer_cast<host::GisFeatureClass>(pTable)->featureCount());
                }),
                HasSubstr("map.xml, line 2: The filter \"NONE=1\" is not valid"));
}

TEST_F(MapDocument, LayersAreFoundForSelectionInGroupsOfTheShownMap) {
    const auto pDocument =
        open("<MapDocument><Map name='M'><GroupLayer name='G'>"
             "<FeatureLayer name='Deep' source='../city.gpkg' dataset='roads'/></GroupLayer>"
             "</Map><Map name='N'><FeatureLayer name='Other' source='../city.gpkg' "
             "dataset='roads'/></Map></MapDocument>");
    pHost->selectFeatures(pDocument, "deep", "2");
    const auto pGroup = std::dynamic_pointer_cast<host::GisGroupLayer>(pDocument->focusMap()->layer(0));
    EXPECT_EQ(std::dynamic_pointer_cast<host::GisFeatureLayer>(pGroup->layer(0))->selectionCount(), 1);
    EXPECT_NE(failureOf([&] { pHost->selectFeatures(pDocument, "Other", "2"); }), "");
}

TEST_F(MapDocument, IsRecognisedByItsRootWhateverItsEncoding) {
    const std::string sText =
        "<?xml version='1.0' encoding='UTF-16'?><MapDocument><Map name='\xE9'/></MapDocument>";
    std::string sUtf16 = "\xFF\xFE";
    for (const char c : sText) {
        sUtf16 += c;
        sUtf16 += '\0';
    }
    EXPECT_EQ(open(sUtf16)->focusMap()->name(), "\xC3\xA9");
    EXPECT_EQ(open("\xEF\xBB\xBF<!-- a map -->\n<MapDocument><Map name='\xC3\xA9'/></MapDocument>")
                  ->focusMap()
                  ->name(),
              "\xC3\xA9");
}

TEST_F(MapDocument, ThatIsDataInMarkupIsReadAsData) {
    const std::string sPath = convertLayer(sCity, "roads", folder.file("lines.gml"), "GML");
    EXPECT_EQ(pHost->openMapDocument(sPath)->focusMap()->layerCount(), 1);
}

TEST_F(MapDocument, ThatIsOtherMarkupSaysWhatItShouldBe) {
    EXPECT_THAT(failureOf([&] { open("<Settings/>"); }), HasSubstr("its root would be <MapDocument>"));
}

struct BadDocument {
    const char* pName;
    const char* pContent;
    std::vector<const char*> expected; // parts of the failure's text
};

std::ostream& operator<<(std::ostream& out, const BadDocument& bad) {
    return out << bad.pName;
}

class BadMapDocument : public ::testing::TestWithParam<BadDocument> {};

TEST_P(BadMapDocument, IsAFailureThatTellsFileLineAndRemedy) {
    const TemporaryFolder folder;
    const std::string sPath = folder.write("map.xml", GetParam().pContent);
    const std::string sFailure =
        failureOf([&] { static_cast<void>(host::gdal::GdalHost::create()->openMapDocument(sPath)); });
    EXPECT_THAT(sFailure, HasSubstr(sPath));
    for (const char* pExpected : GetParam().expected) {
        EXPECT_THAT(sFailure, HasSubstr(pExpected));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, BadMapDocument,
    ::testing::Values(
        BadDocument{"NotWellFormed", "<MapDocument>\n<Map name='M'>\n</MapDocument>", {"line 3"}},
        BadDocument{"BrokenBeforeItsRoot", "<?xml version='1.0'?>\n<", {"line 2"}},
        BadDocument{"UnknownElement",
                    "<MapDocument>\n<Map name='M'>\n<FeatureLayr/></Map></MapDocument>",
                    {"line 3", "'FeatureLayr'", "not expected", "FeatureLayer"}},
        BadDocument{"UnknownAttribute",
                    "<MapDocument>\n<Map name='M' visible='1'/></MapDocument>",
                    {"line 2", "'visible'", "not allowed"}},
        BadDocument{"MissingName", "<MapDocument>\n<Map/></MapDocument>", {"line 2", "'name'", "required"}},
        BadDocument{"BlankName", "<MapDocument>\n<Map name=' '/></MapDocument>", {"line 2", "'name'"}},
        BadDocument{"BadTruthValue",
                    "<MapDocument>\n<Map name='M' shown='yes'/></MapDocument>",
                    {"line 2", "'yes'", "xs:boolean"}},
        BadDocument{"BadIdentifier",
                    "<MapDocument><Map name='M'><FeatureLayer source='a.csv'>\n<Selection fids='1,2'/>"
                    "</FeatureLayer></Map></MapDocument>",
                    {"line 2", "'1,2'"}},
        BadDocument{
            "SelectionBothWays",
            "<MapDocument><Map name='M'><FeatureLayer source='a.csv'>\n<Selection fids='1' where='N=1'/>"
            "</FeatureLayer></Map></MapDocument>",
            {"line 2", "either fids"}},
        BadDocument{"TwoSelections",
                    "<MapDocument><Map name='M'><FeatureLayer source='a.csv'><Selection fids='1'/>\n"
                    "<Selection fids='1'/></FeatureLayer></Map></MapDocument>",
                    {"line 2", "second <Selection>"}},
        BadDocument{"NoSource",
                    "<MapDocument><Map name='M'>\n<FeatureLayer name='L'/></Map></MapDocument>",
                    {"line 2", "either source"}},
        BadDocument{"SourceAndConnection",
                    "<MapDocument><Connection name='c' database='PG:'/><Map name='M'>\n"
                    "<Table source='a.csv' connection='c'/></Map></MapDocument>",
                    {"line 2", "either source"}},
        BadDocument{"UnknownConnection",
                    "<MapDocument><Map name='M'>\n<Table connection='c' dataset='t'/></Map></MapDocument>",
                    {"line 2", "no <Connection name=\"c\">"}},
        BadDocument{"ConnectionOfAnotherKind",
                    "<MapDocument>\n<Connection name='c' database='MYSQL:db'/><Map name='M'/></MapDocument>",
                    {"line 2", "PostgreSQL"}},
        BadDocument{
            "TwoConnectionsOfOneName",
            "<MapDocument><Connection name='c' database='PG:'/>\n<Connection name='C' database='PG:'/>"
            "<Map name='M'/></MapDocument>",
            {"line 2", "rename one"}},
        BadDocument{
            "RefusedSource",
            "<MapDocument><Map name='M'>\n<FeatureLayer source='/vsicurl/http://x/a'/></Map></MapDocument>",
            {"line 2", "is refused"}},
        BadDocument{"ServerAsSource",
                    "<MapDocument><Map name='M'>\n<FeatureLayer source='PG:dbname=x'/></Map></MapDocument>",
                    {"line 2", "is refused", "<Connection>"}},
        BadDocument{"NoMap",
                    "<MapDocument>\n<Workspace source='a'><TextDomain name='d'/></Workspace></MapDocument>",
                    {"line 1", "no map"}},
        BadDocument{"TwoShownMaps",
                    "<MapDocument><Map name='A' shown='true'/>\n<Map name='B' shown='1'/></MapDocument>",
                    {"line 2", "shown"}},
        BadDocument{"FieldTwice",
                    "<MapDocument><Map name='M'><Table source='a.csv'><Field name='A' alias='x'/>\n"
                    "<Field name='a' alias='y'/></Table></Map></MapDocument>",
                    {"line 2", "second <Field>"}},
        BadDocument{
            "SubtypeCodeTwice",
            "<MapDocument><Map name='M'><FeatureLayer source='a.csv'><Subtypes field='K'>"
            "<Subtype code='1' name='x'/>\n<Subtype code='1' name='y'/></Subtypes></FeatureLayer></Map>"
            "</MapDocument>",
            {"line 2", "code 1"}},
        BadDocument{
            "UnknownDefaultSubtype",
            "<MapDocument><Map name='M'><FeatureLayer source='a.csv'>\n<Subtypes field='K' default='7'>"
            "<Subtype code='1' name='x'/></Subtypes></FeatureLayer></Map></MapDocument>",
            {"line 2", "default code 7"}},
        BadDocument{"DomainTwice",
                    "<MapDocument><Map name='M'/><Workspace source='a'><TextDomain name='d'/>\n"
                    "<TextDomain name='D'/></Workspace></MapDocument>",
                    {"line 2", "second <TextDomain>"}},
        BadDocument{
            "UnknownCardinality",
            "<MapDocument><Map name='M'/><Workspace source='a'>\n<RelationshipClass name='r' origin='a' "
            "destination='b' originPrimaryKey='i' originForeignKey='j' cardinality='manyToOne'/>"
            "</Workspace></MapDocument>",
            {"line 2", "'manyToOne'", "manyToMany"}},
        BadDocument{
            "ReversedExtent",
            "<MapDocument><Map name='M'><SpatialReference>\n<XYDomain xMin='2' yMin='0' xMax='1' yMax='1'/>"
            "</SpatialReference></Map></MapDocument>",
            {"line 2", "above the greatest"}},
        BadDocument{
            "ReferenceOfNothing",
            "<MapDocument><Map name='M'>\n<SpatialReference definition='nonsense'/></Map></MapDocument>",
            {"line 2", "\"nonsense\" is not a spatial reference", "EPSG:25832"}},
        BadDocument{"ReferenceOfALayerOfNothing",
                    "<MapDocument><Map name='M'><FeatureLayer source='a.csv'>\n"
                    "<SpatialReference definition='EPSG:0'/></FeatureLayer></Map></MapDocument>",
                    {"line 2", "\"EPSG:0\" is not a spatial reference"}},
        BadDocument{"Namespace", "<MapDocument xmlns='urn:x'><Map name='M'/></MapDocument>", {"line 1"}},
        BadDocument{"ExternalEntity",
                    "<!DOCTYPE MapDocument [<!ENTITY e SYSTEM '/etc/hostname'>]>\n"
                    "<MapDocument><Map name='&e;'/></MapDocument>",
                    {}},
        BadDocument{"DocumentType",
                    "<!DOCTYPE MapDocument>\n<MapDocument><Map name='M'/></MapDocument>",
                    {"<!DOCTYPE"}}),
    [](const auto& test) { return test.param.pName; });

TEST_F(MapDocument, GivesTwinsNamesOfTheirOwnWhereItDoesNotNameThem) {
    folder.write("doc/a/t.csv", "N,V\n1,x\n");
    folder.write("doc/b/t.csv", "N,V\n2,x\n");
    const auto pMap =
        open("<MapDocument><Map name='M'><FeatureLayer source='../city.gpkg' dataset='roads'/>"
             "<FeatureLayer source='../city.gpkg' dataset='ROADS'/>"
             "<FeatureLayer name='signs' source='../city.gpkg' dataset='roads'/>"
             "<GroupLayer name='g'><FeatureLayer source='../city.gpkg' dataset='roads'/></GroupLayer>"
             "<FeatureLayer source='../city.gpkg' dataset='signs'/>"
             "<RasterLayer source='roads.tif'/><Table source='a/t.csv'/><Table "
             "source='b/t.csv'/></Map></MapDocument>")
            ->focusMap();
    std::vector<std::string> names;
    for (std::int32_t lIndex = 0; lIndex < pMap->layerCount(); ++lIndex)
        names.push_back(pMap->layer(lIndex)->name());
    EXPECT_THAT(names, ElementsAre("roads", "ROADS (city.gpkg)", "signs", "g", "signs (city.gpkg)", "roads"));
    EXPECT_EQ(dynamic_cast<const host::GisGroupLayer&>(*pMap->layer(3)).layer(0)->name(), "roads");
    EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), "t");
    EXPECT_EQ(pMap->standaloneTable(1)->datasetName(), "t (t.csv)");
    EXPECT_THAT(texts(*pMap->standaloneTable(1), "N"), ElementsAre("2"));
}

TEST_F(MapDocument, RemarksOnALayerThatItsNameDoesNotFind) {
    const auto pDocument =
        open("<MapDocument><Map name='M'>\n<FeatureLayer name='a' source='../city.gpkg' dataset='roads'/>\n"
             "<FeatureLayer name='A' source='../city.gpkg' dataset='signs'/>\n"
             "<RasterLayer name='a' source='a.tif'/>\n<RasterLayer name='b' source='b.tif'/>\n"
             "<FeatureLayer name='b' source='../city.gpkg' dataset='roads'/>\n"
             "<FeatureLayer source='../city.gpkg' dataset='roads'/>\n"
             "<GroupLayer name='g'><FeatureLayer name='a' source='../city.gpkg' dataset='roads'/>\n"
             "<FeatureLayer name='a' source='../city.gpkg' dataset='signs'/></GroupLayer>\n"
             "</Map><Map name='N'><FeatureLayer name='a' source='../city.gpkg' dataset='roads'/></Map>"
             "</MapDocument>");
    const auto remark = [&](int lLine, const std::string& sName, int lOther) {
        return folder.file("doc/map.xml") + ", line " + std::to_string(lLine) + ": the layer \"" + sName +
               "\" has the name of another one (line " + std::to_string(lOther) +
               "), which alone is found by it; give one of them another name";
    };
    EXPECT_THAT(pHost->remarks(pDocument),
                ElementsAre(remark(3, "A", 2), remark(6, "b", 5), remark(9, "a", 8)));
}

TEST_F(MapDocument, TellsOfElementsThatAreNestedTooDeep) {
    const auto nested = [](int lGroups) {
        std::string sGroups;
        for (int n = 0; n < lGroups; ++n)
            sGroups = "<GroupLayer name='g'>" + sGroups + "</GroupLayer>";
        return "<MapDocument>\n<Map name='M'>" + sGroups + "</Map></MapDocument>";
    };
    EXPECT_EQ(failureOf([&] { open(nested(254)); }), "");
    EXPECT_THAT(failureOf([&] { open(nested(300)); }),
                ::testing::EndsWith(
                    "map.xml, line 2: the depth of its elements is more than 256; nest them less deeply"));
}

TEST_F(MapDocument, TellsEveryLineThatBreaksTheSchema) {
    const std::string sFailure = failureOf([&] { open("<MapDocument>\n<Map/>\n<Map/>\n</MapDocument>"); });
    EXPECT_THAT(sFailure, HasSubstr("line 2"));
    EXPECT_THAT(sFailure, HasSubstr("line 3"));
}

TEST_F(MapDocument, ConnectionThatFailsDoesNotShowItsPassword) {
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(
        open("<MapDocument><Connection name='c' database='PG:host=127.0.0.1 port=1 user=u password=hush "
             "dbname=d'/>"
             "<Map name='M'><FeatureLayer connection='C' dataset='t'/></Map></MapDocument>")
            ->focusMap()
            ->layer(0));
    const std::string sFailure = failureOf([&] { static_cast<void>(pLayer->featureClass()); });
    EXPECT_THAT(sFailure, HasSubstr("password=***"));
    EXPECT_THAT(sFailure, Not(HasSubstr("hush")));
}

TEST_F(MapDocument, ConnectionIsKnownToLocationsByItsNameOnly) {
    open("<MapDocument><Connection name='c' database='PG:host=127.0.0.1 port=1 dbname=d'/><Map name='M'/>"
         "</MapDocument>");
    const auto pFactory = pHost->newWorkspaceFactory(host::WorkspaceFactoryKind::Default);
    EXPECT_THAT(failureOf([&] { static_cast<void>(pFactory->openFromFile("C", 0)); }),
                HasSubstr("cannot be opened"));
    EXPECT_THAT(
        failureOf([&] { static_cast<void>(pFactory->openFromFile("PG:host=127.0.0.1 port=1 dbname=d", 0)); }),
        HasSubstr("is refused"));
}

} // namespace
} // namespace halvane::tests
