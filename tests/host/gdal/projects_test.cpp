#include "Archives.h"
#include "SampleData.h"
#include "support/ProjectText.h"

#include "base/Text.h"

#include "host/Domains.h"
#include "host/Fields.h"
#include "host/Layers.h"
#include "host/Map.h"
#include "host/Relationships.h"
#include "host/SpatialReference.h"
#include "host/Subtypes.h"
#include "host/Workspace.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace halvane::tests {
namespace {

using test::ProjectLayerText;
using test::projectText;
using test::referenceText;
using test::treeLayer;

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class Project : public ::testing::Test {
protected:
    host::GisMapDocumentPtr open(const std::string& sText) {
        pDocument = pHost->openMapDocument(folder.write("doc/city.qgs", sText));
        return pDocument;
    }
    host::GisMapPtr openMap(const std::vector<ProjectLayerText>& layers, const std::string& sTree = {},
                            const std::string& sRest = {}) {
        return open(projectText(layers, sTree, sRest))->focusMap();
    }
    static host::GisFeatureClassPtr featureClassOf(const host::GisMap& map, std::int32_t lLayer) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(map.layer(lLayer))->featureClass();
    }
    host::GisFeatureLayerPtr openLayer(const ProjectLayerText& layer, const std::string& sRest = {}) {
        return std::dynamic_pointer_cast<host::GisFeatureLayer>(openMap({layer}, {}, sRest)->layer(0));
    }
    std::vector<std::string> remarks() { return pHost->remarks(pDocument); }
    static std::vector<std::string> names(const host::GisMap& map) {
        std::vector<std::string> all;
        for (std::int32_t lLayer = 0; lLayer < map.layerCount(); ++lLayer)
            all.push_back(map.layer(lLayer)->name());
        return all;
    }
    static const host::GisField& fieldOf(host::GisTable& table, std::string_view sName) {
        return table.fields()->field(table.fields()->findField(sName));
    }

    const ProjectLayerText roads{"Roads", "../city.gpkg|layername=roads"};
    const ProjectLayerText signs{"Signs", "../city.gpkg|layername=signs"};
    const ProjectLayerText notes{"Notes", "../city.gpkg|layername=notes", "ogr", "",
                                 "type='vector' geometry='No geometry'"};
    TemporaryFolder folder;
    std::string sCity = makeCity(folder);
    std::shared_ptr<host::gdal::GdalHost> pHost = host::gdal::GdalHost::create();
    host::GisMapDocumentPtr pDocument;
};

TEST_F(Project, IsAMapOfItsLayersNamedByItsTitle) {
    const auto pMap = openMap({signs, roads, notes});
    EXPECT_EQ(pMap->name(), "City");
    EXPECT_THAT(names(*pMap), ElementsAre("Signs", "Roads"));
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(1));
    EXPECT_EQ(pLayer->featureClass()->datasetName(), "roads");
    EXPECT_EQ(pLayer->featureClass()->workspace()->pathName(), sCity);
    ASSERT_EQ(pMap->standaloneTableCount(), 1);
    EXPECT_EQ(pMap->standaloneTable(0)->datasetName(), "Notes");
    EXPECT_THAT(remarks(), IsEmpty());
}

TEST_F(Project, IsNamedByItsFileWhereItHasNoTitle) {
    EXPECT_EQ(open("<qgis><projectlayers/></qgis>")->focusMap()->name(), "city");
}

TEST_F(Project, HasTheGroupsOfItsTree) {
    const auto pMap = openMap({signs, roads}, "<layer-tree-group name='G'>" + treeLayer("Signs") +
                                                  "<layer-tree-group name='H'>" + treeLayer("Roads") +
                                                  "</layer-tree-group></layer-tree-group>");
    ASSERT_THAT(names(*pMap), ElementsAre("G"));
    const auto pGroup = std::dynamic_pointer_cast<host::GisGroupLayer>(pMap->layer(0));
    ASSERT_EQ(pGroup->layerCount(), 2);
    EXPECT_EQ(pGroup->layer(0)->name(), "Signs");
    const auto pInner = std::dynamic_pointer_cast<host::GisGroupLayer>(pGroup->layer(1));
    EXPECT_EQ(pInner->layer(0)->name(), "Roads");
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("two groups deep, and rasters and meshes in groups, are not "
                                                 "found by their names: \"Roads\"")));
}

TEST_F(Project, HasItsReferenceWhereItsWindowHasNone) {
    const auto codeOf = [](const host::GisMap& map) { return map.spatialReference()->authorityCode(); };
    const std::string sCrs = "<projectCrs>" + referenceText("EPSG:3857") + "</projectCrs>";
    EXPECT_EQ(codeOf(*openMap({roads}, {}, sCrs)), "EPSG:3857");
    const std::string sWindow = "<mapcanvas name='theMapCanvas'><destinationsrs>" +
                                referenceText("EPSG:4326") + "</destinationsrs></mapcanvas>";
    EXPECT_EQ(codeOf(*openMap({roads}, {}, sCrs + sWindow)), "EPSG:4326");
}

TEST_F(Project, HasTheMapsOfItsOtherWindowsWithTheirThemes) {
    openMap({signs, roads}, {},
            "<visibility-presets><visibility-preset name='T'><layer id='Roads' visible='1'/>"
            "<layer id='Signs' visible='0'/></visibility-preset><visibility-preset name='U'/>"
            "</visibility-presets><mapcanvas name='theMapCanvas'/><mapcanvas name='Second' theme='T'/>"
            "<mapViewDocks><view name='Second'/><view name='Third'/></mapViewDocks>");
    ASSERT_EQ(pDocument->mapCount(), 3);
    EXPECT_EQ(pDocument->map(1)->name(), "Second");
    EXPECT_THAT(names(*pDocument->map(1)), ElementsAre("Roads"));
    EXPECT_EQ(pDocument->map(2)->name(), "Third");
    EXPECT_THAT(names(*pDocument->map(2)), ElementsAre("Signs", "Roads"));
    EXPECT_EQ(pDocument->focusMap()->name(), "City");
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("themes that no map follows are left out: \"U\"")));
}

TEST_F(Project, HasTheMapsOfItsLayoutsWithTheirThemesAndLayers) {
    openMap({signs, roads}, {},
            "<projectCrs>" + referenceText("EPSG:3857") +
                "</projectCrs><visibility-presets><visibility-preset name='T'><layer id='Signs'/>"
                "</visibility-preset></visibility-presets><Layouts><Layout name='A4'>"
                "<LayoutItem type='65642' id='Legend'/>"
                "<LayoutItem type='65639' id='' keepLayerSet='true'><crs>" +
                referenceText("EPSG:4326") +
                "</crs><LayerSet><Layer>Roads</Layer></LayerSet></LayoutItem>"
                "<LayoutItem type='65639' id='Themed' followPreset='true' followPresetName='T'/>"
                "</Layout></Layouts>");
    ASSERT_EQ(pDocument->mapCount(), 3);
    EXPECT_EQ(pDocument->map(1)->name(), "A4: Themed");
    EXPECT_THAT(names(*pDocument->map(1)), ElementsAre("Signs"));
    EXPECT_EQ(pDocument->map(1)->spatialReference()->authorityCode(), "EPSG:3857");
    EXPECT_EQ(pDocument->map(2)->name(), "A4: Map 2");
    EXPECT_THAT(names(*pDocument->map(2)), ElementsAre("Roads"));
    EXPECT_EQ(pDocument->map(2)->spatialReference()->authorityCode(), "EPSG:4326");
}

TEST_F(Project, SubsetsOfFilesRunToTheEndOfTheirSource) {
    const auto pLayer =
        openLayer({"Roads", "../city.gpkg|layername=roads|subset=\"NAME\" = 'R2' OR NAME='a|b'"});
    EXPECT_THAT(texts(*pLayer->featureClass(), "NAME"), ElementsAre("R2"));
}

TEST_F(Project, SubsetThatIsASelectComputesTheLayer) {
    const auto pLayer = openLayer(
        {"Roads", "../city.gpkg|layername=roads|subset=SELECT * FROM roads WHERE N > 20 ORDER BY N DESC"});
    EXPECT_THAT(texts(*pLayer->featureClass(), "NAME"), ElementsAre("R4", "R3"));
}

TEST_F(Project, SubsetThatOnlyQgisComputesLeavesNoRowsInsteadOfAll) {
    const auto pLayer = openLayer({"Roads", "../city.gpkg|layername=roads|subset=$length > 3"});
    EXPECT_THAT(
        failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
        AllOf(StartsWith(folder.file("doc/city.qgs") + ", line "),
              HasSubstr("its subset is an expression of QGIS, which the data cannot compute: $length > 3")));
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr(
                               "layers whose subsets QGIS alone can compute are not read: \"Roads\"")));
}

TEST_F(Project, FindsADatasetByItsPlaceInTheFile) {
    EXPECT_EQ(openLayer({"L", "../city.gpkg|layerid=1"})->featureClass()->datasetName(), "signs");
}

TEST_F(Project, FindsTheFirstDatasetWhereItNamesNone) {
    EXPECT_EQ(openLayer({"L", "../city.gpkg"})->featureClass()->datasetName(), "roads");
}

TEST_F(Project, ReadsDatabasesOfTheSpatialiteProvider) {
    convertLayer(sCity, "roads", folder.file("city.sqlite"), "SQLite");
    const auto pLayer =
        openLayer({"Roads", "dbname='../city.sqlite' table=\"roads\" (GEOMETRY) sql=N >= 30", "spatialite"});
    EXPECT_THAT(texts(*pLayer->featureClass(), "name"), ElementsAre("R3", "R4"));
}

TEST_F(Project, ReadsPointsFromColumnsOfATextFile) {
    folder.write("doc/p q.csv", "id;east;north\n1;10;50\n2;11;51.5\n");
    const std::string sFields =
        "?type=csv&delimiter=;&detectTypes=yes&xField=east&yField=north&crs=EPSG:4326";
    for (const std::string& sPath : {std::string("./p q.csv"), "file://" + folder.file("doc/p%20q.csv")}) {
        const auto pLayer = openLayer({"P", sPath + sFields + "&subset=id > 1", "delimitedtext"});
        const auto pClass = pLayer->featureClass();
        EXPECT_THAT(texts(*pClass, "north"), ElementsAre("51.5")) << sPath;
        EXPECT_EQ(fieldOf(*pClass, "id").typeCode(), static_cast<std::int32_t>(host::FieldType::Integer));
        EXPECT_EQ(pLayer->spatialReference()->authorityCode(), "EPSG:4326");
    }
}

TEST_F(Project, TextFileOfNumbersHasItsHeadings) {
    folder.write("doc/p.csv", "2019,2020\n1,2\n");
    const auto pMap =
        openMap({{"P", "./p.csv?type=csv", "delimitedtext", "", "type='vector' geometry='No geometry'"}});
    EXPECT_THAT(texts(*pMap->standaloneTable(0), "2020"), ElementsAre("2"));
}

TEST_F(Project, TextFileIsNotReadWithAndWithoutHeadings) {
    folder.write("doc/p.csv", "a,b\n1,2\n");
    const auto pMap = openMap({{"With", "./p.csv?type=csv&xField=a&yField=b", "delimitedtext"},
                               {"Without", "./p.csv?type=csv&useHeader=No", "delimitedtext"}});
    EXPECT_THAT(texts(*featureClassOf(*pMap, 0), "b"), ElementsAre("2"));
    EXPECT_THAT(
        failureOf([&] { static_cast<void>(featureClassOf(*pMap, 1)); }),
        HasSubstr("is read by another layer with a line of headings, and by this one without it; give "
                  "this one a file of its own"));
}

TEST_F(Project, TellsWhatOfATextFileIsReadInAnotherWay) {
    folder.write("doc/p.csv", "a,b\n1,POINT(1 2)\n");
    openMap({{"P", "./p.csv?type=csv&wktField=b&geomType=point&trimFields=Yes&skipEmptyFields=No&maxFields=9",
              "delimitedtext"},
             {"None", "./p.csv?type=csv&geomType=none", "delimitedtext"}});
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("parts of data sources are left out: \"P: geomType=point\", "
                                                 "\"P: trimFields=Yes\", \"P: maxFields=9\"")));
}

TEST_F(Project, TellsWhichTextFilesItCannotRead) {
    folder.write("doc/p.csv", "a#b\n1#2\n");
    const auto pLayer = openLayer({"P", "./p.csv?type=csv&delimiter=%23&xField=a&yField=b", "delimitedtext"});
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                HasSubstr("it is a text with delimiter=#, which is not read here"));
}

TEST_F(Project, HasRastersOfFilesAndOfDatabases) {
    makeRaster(folder, "dem.tif", "GTiff");
    makeRaster(folder, "dem.gpkg", "GPKG");
    const auto pMap =
        openMap({{"File", "../dem.tif", "gdal", "", "type='raster'"},
                 {"Table", "GPKG:" + folder.file("dem.gpkg") + ":dem", "gdal", "", "type='raster'"}});
    for (std::int32_t lLayer : {0, 1}) {
        const auto pRaster = std::dynamic_pointer_cast<host::GisRasterLayer>(pMap->layer(lLayer));
        EXPECT_EQ(pRaster->filePath(), folder.file(lLayer == 0 ? "dem.tif" : "dem.gpkg"));
    }
}

TEST_F(Project, MeshIsATinLayerInTheFolderOfItsFile) {
    folder.write("mesh.2dm", "MESH2D\n");
    const auto pMap = openMap(
        {{"There", "../mesh.2dm", "mdal", "<srs>" + referenceText("EPSG:25832") + "</srs>", "type='mesh'"},
         {"Gone", "../gone.2dm", "mdal", "", "type='mesh'"}});
    const auto pThere = std::dynamic_pointer_cast<host::GisTinLayer>(pMap->layer(0));
    EXPECT_EQ(pThere->dataset()->workspace()->pathName(), folder.path());
    const auto pGone = std::dynamic_pointer_cast<host::GisTinLayer>(pMap->layer(1));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pGone->dataset()); }), HasSubstr("gone.2dm"));
}

TEST_F(Project, AliasesDefaultsAndConstraintsAreThoseOfItsFields) {
    const auto pClass =
        openLayer({"Roads", "../city.gpkg|layername=roads", "ogr",
                   "<aliases><alias field='NAME' name='Street'/><alias field='N' name=''/>"
                   "<alias field='Joined_X' name='Other'/></aliases>"
                   "<defaults><default field='N' expression='7'/>"
                   "<default field='NAME' expression=\"'O''Hara'\"/>"
                   "<default field='LEN' expression='$length'/></defaults>"
                   "<constraints><constraint field='NAME' constraints='1' notnull_strength='1'/>"
                   "<constraint field='N' constraints='1' notnull_strength='2'/></constraints>"
                   "<constraintExpressions><constraint field='N' exp='N > 1'/>"
                   "<constraint field='NAME' exp=''/></constraintExpressions>"})
            ->featureClass();
    EXPECT_EQ(fieldOf(*pClass, "NAME").aliasName(), "Street");
    EXPECT_EQ(fieldOf(*pClass, "N").aliasName(), "N");
    EXPECT_FALSE(fieldOf(*pClass, "NAME").isNullable());
    EXPECT_TRUE(fieldOf(*pClass, "N").isNullable());
    const auto pSubtypes = pClass->subtypes();
    EXPECT_EQ(pSubtypes->defaultValue(0, "N"), Value(7));
    EXPECT_EQ(pSubtypes->defaultValue(0, "NAME"), Value(std::string("O'Hara")));
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("defaults that are computed are left out: \"Roads.LEN\""),
                                       HasSubstr("constraints that are computed are left out: \"Roads.N\"")));
}

std::string valueMap(std::string_view sField, std::string_view sOptions) {
    return "<fieldConfiguration><field name='" + std::string(sField) +
           "'><editWidget type='ValueMap'><config><Option type='Map'><Option name='map' type='List'>" +
           std::string(sOptions) + "</Option></Option></config></editWidget></field></fieldConfiguration>";
}

TEST_F(Project, ListsOfValuesAreDomains) {
    const auto pClass =
        openLayer({"Roads", "../city.gpkg|layername=roads", "ogr",
                   valueMap("N", "<Option type='Map'><Option name='Ten' value='10'/></Option>"
                                 "<Option type='Map'><Option name='Two' value='2'/></Option>"
                                 "<Option type='Map'><Option name='None' "
                                 "value='{2839923C-8B7D-419E-B84B-CA2FE9B80EC7}'/></Option>")})
            ->featureClass();
    const auto pDomain = pClass->subtypes()->domain(0, "N");
    ASSERT_NE(pDomain, nullptr);
    EXPECT_EQ(pDomain->name(), "Roads.N");
    ASSERT_EQ(pDomain->codeCount(), 2);
    EXPECT_EQ(pDomain->code(0).vCode, Value(10));
    EXPECT_EQ(pDomain->code(0).sName, "Ten");
    EXPECT_EQ(pDomain->code(1).vCode, Value(2));
}

TEST_F(Project, LayersOfOneNameHaveTheirOwnListsOfValues) {
    const auto layer = [](const char* pId, const std::string& sCode) {
        return ProjectLayerText{pId, "../city.gpkg|layername=roads", "ogr",
                                valueMap("N", "<Option name='Code' value='" + sCode + "'/>")};
    };
    std::string sText = projectText({layer("Roads", "10"), layer("Twin", "20"), layer("Same", "10")});
    for (const char* pName : {"<layername>Twin<", "<layername>Same<"})
        sText = replaceAll(sText, pName, "<layername>Roads<");
    const auto pMap = open(sText)->focusMap();
    const auto domainOf = [&](std::int32_t lLayer) {
        return featureClassOf(*pMap, lLayer)->subtypes()->domain(0, "N");
    };
    EXPECT_EQ(domainOf(0)->name(), "Roads.N");
    EXPECT_EQ(domainOf(0)->code(0).vCode, Value(10));
    EXPECT_EQ(domainOf(1)->name(), "Roads.N (2)");
    EXPECT_EQ(domainOf(1)->code(0).vCode, Value(20));
    EXPECT_EQ(domainOf(2)->name(), "Roads.N");
}

TEST_F(Project, CodesThatAreNoPlainNumbersAreTexts) {
    const auto pClass = openLayer({"Roads", "../city.gpkg|layername=roads", "ogr",
                                   valueMap("NAME", "<Option name='One' value='01'/>")})
                            ->featureClass();
    EXPECT_EQ(pClass->subtypes()->domain(0, "NAME")->code(0).vCode, Value(std::string("01")));
}

std::string relation(std::string_view sFrom, std::string_view sTo, std::string_view sKey = "ROAD") {
    return "<relations><relation id='r1' name='road notes' strength='Composition' referencedLayer='" +
           std::string(sFrom) + "' referencingLayer='" + std::string(sTo) +
           "'><fieldRef referencedField='N' referencingField='" + std::string(sKey) +
           "'/></relation></relations>";
}

host::GisRelationshipClassPtr relationOf(const host::GisFeatureLayer& layer) {
    return layer.featureClass()->workspace()->relationshipClasses()->next();
}

TEST_F(Project, RelationsAreRelationshipClasses) {
    const auto pMap = openMap({roads, notes}, {}, relation("Roads", "Notes"));
    const auto pClass = relationOf(dynamic_cast<host::GisFeatureLayer&>(*pMap->layer(0)));
    ASSERT_NE(pClass, nullptr);
    EXPECT_EQ(pClass->name(), "road notes");
    EXPECT_EQ(pClass->originClassName(), "roads");
    EXPECT_EQ(pClass->destinationClassName(), "notes");
    EXPECT_EQ(pClass->originPrimaryKey(), "N");
    EXPECT_EQ(pClass->originForeignKey(), "ROAD");
    EXPECT_EQ(pClass->cardinality(), 2);
    EXPECT_TRUE(pClass->isComposite());
}

TEST_F(Project, RelationsOfFilesInOneFolderAreThoseOfTheFolder) {
    folder.write("doc/notes.csv", "ROAD,TEXT\n10,a\n");
    convertLayer(sCity, "roads", folder.file("doc/lines.shp"), "ESRI Shapefile");
    const auto pMap = openMap({{"Lines", "./lines.shp"},
                               {"Notes", "./notes.csv", "ogr", "", "type='vector' geometry='No geometry'"}},
                              {}, relation("Lines", "Notes"));
    const auto pClass = relationOf(dynamic_cast<host::GisFeatureLayer&>(*pMap->layer(0)));
    ASSERT_NE(pClass, nullptr);
    EXPECT_EQ(pClass->originClassName(), "lines");
    EXPECT_EQ(pClass->destinationClassName(), "notes");
}

TEST_F(Project, RelationsBetweenPlacesAreToldAndLeftOut) {
    folder.write("doc/notes.csv", "ROAD,TEXT\n10,a\n");
    const auto pMap = openMap({roads, {"Notes", "./notes.csv"}}, {}, relation("Roads", "Notes"));
    EXPECT_EQ(relationOf(dynamic_cast<host::GisFeatureLayer&>(*pMap->layer(0))), nullptr);
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("relations between databases")));
}

TEST_F(Project, TellsWhatNoMapSays) {
    openMap({{"Roads", "../city.gpkg|layername=roads|geometrytype=LineString", "ogr",
              "<vectorjoins><join joinLayerId='Notes' targetFieldName='N'/></vectorjoins>"
              "<expressionfields><field name='calc'/></expressionfields>"},
             {"Tiles", "x", "vectortile", "", "type='vector-tile'"},
             signs},
            treeLayer("Roads") + "<custom-order enabled='1'/>");
    EXPECT_THAT(remarks(),
                ElementsAre(

                    HasSubstr("parts of data sources are left out: \"Roads: geometrytype\""),
                    HasSubstr("joins are left out; relate the rows, or join them in a view: \"Roads.N\""),
                    HasSubstr("fields that are computed are left out: \"Roads.calc\""),
                    HasSubstr("layers of types that no map has are left out: \"Tiles (vector-tile)\""),
                    HasSubstr("the order of drawing is left out; layers have the order of the tree"),
                    HasSubstr("layers that are not in the tree are in no map: \"Signs\"")));
}

TEST_F(Project, TellsOnceHowManyThingsOfAKindAreLeftOut) {
    std::vector<ProjectLayerText> layers;
    for (int lLayer = 0; lLayer < 12; ++lLayer)
        layers.push_back({"T" + std::to_string(lLayer), "x", "vectortile", "", "type='vector-tile'"});
    openMap(layers);
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("\"T8 (vector-tile)\", \"T9 (vector-tile)\" and 2 more")));
}

TEST_F(Project, TellsReportsThatItLeavesOut) {
    openMap({roads}, {}, "<Layouts><Report name='Yearly'/></Layouts>");
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("reports are left out, with their maps: \"Yearly\"")));
}

TEST_F(Project, LayerWithoutAProviderSaysSoInItsPlace) {
    const auto pLayer = openLayer({"L", "somewhere", ""});
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                HasSubstr("the project does not say which provider has its data; save it as a file"));
}

TEST_F(Project, LayersInMemorySaySoInTheirPlace) {
    const auto pMap = openMap({{"Scratch", "Point?crs=EPSG:4326", "memory"}, roads});
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                HasSubstr("it is kept in the memory of QGIS, and its rows are not in the project"));
    EXPECT_EQ(pMap->layer(1)->name(), "Roads");
    EXPECT_THAT(pHost->problems(pDocument), ElementsAre(HasSubstr("layer \"Scratch\": ")));
}

TEST_F(Project, ServicesAndUnknownProvidersSaySoInTheirPlace) {
    const auto pMap = openMap({{"Web", "url=http://w.invalid&layers=a", "wms", "", "type='raster'"},
                               {"Curl", "/vsicurl/http://w.invalid/a.gpkg"}});
    const auto pRaster = std::dynamic_pointer_cast<host::GisRasterLayer>(pMap->layer(0));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pRaster->filePath()); }),
                HasSubstr("its data comes from the provider \"wms\", which is not read here"));
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(1));
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                HasSubstr("virtual file systems are not read"));
}

TEST_F(Project, FindsDataThatWasMovedWithItAndSaysSo) {
    std::filesystem::create_directories(folder.file("doc/data"));
    makeCity(folder, "doc/data/city.gpkg");
    for (const char* pPath :
         {"/home/someone/data/city.gpkg", "C:/maps/data/city.gpkg", "..\\old\\data\\city.gpkg"}) {
        const auto pLayer = openLayer({"Roads", std::string(pPath) + "|layername=roads"});
        EXPECT_EQ(pLayer->featureClass()->workspace()->pathName(), folder.file("doc/data/city.gpkg"))
            << pPath;
        EXPECT_THAT(remarks(),
                    ElementsAre(HasSubstr("is read from its place beside the project: \"Roads\" from \"" +
                                          folder.file("doc/data/city.gpkg") + "\"")));
    }
}

TEST_F(Project, TellsWhereItLookedForDataThatIsGone) {
    const auto pLayer = openLayer({"Roads", "/home/someone/data/gone.gpkg|layername=roads"});
    EXPECT_THAT(
        failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
        HasSubstr("There is no file or folder \"/home/someone/data/gone.gpkg\", nor, beside the project, \"" +
                  folder.file("doc/home/someone/data/gone.gpkg") + "\", \"" +
                  folder.file("doc/someone/data/gone.gpkg") + "\", \"" + folder.file("doc/data/gone.gpkg") +
                  "\", \"" + folder.file("doc/gone.gpkg") + "\"; put it there"));
}

TEST_F(Project, NamesAServerWithoutItsPasswordAndReadsItOnlyWhereThatIsAllowed) {
    const ProjectLayerText server{"Far",
                                  "dbname='gis' host=127.0.0.1 port=1 user='u' password='se cret' "
                                  "key='id' table=\"s\".\"t\" (geom) sql=a > 1",
                                  "postgres"};
    auto pLayer = openLayer(server);
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                AllOf(HasSubstr("on the database server \"gis@127.0.0.1\""), HasSubstr("--allow-connections"),
                      Not(HasSubstr("cret"))));
    EXPECT_THAT(remarks(), ElementsAre(AllOf(HasSubstr("--allow-connections allows it: \"Far\""),
                                             Not(HasSubstr("cret")))));
    pHost->allowConnections();
    pLayer = openLayer(server);
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                AllOf(HasSubstr("127.0.0.1"), Not(HasSubstr("--allow-connections")), Not(HasSubstr("cret"))));
}

TEST_F(Project, QueriesOnAServerAreNotSentThere) {
    pHost->allowConnections();
    const auto pLayer = openLayer({"Q", "dbname='gis' table=\"(SELECT 1)\" (geom) sql=", "postgres"});
    EXPECT_THAT(failureOf([&] { static_cast<void>(pLayer->featureClass()); }),
                HasSubstr("it is a query on a server"));
}

TEST_F(Project, ReferenceOfALayerCountsWhereTheDataHasAnother) {
    const auto codeOf = [&](std::string_view sCode) {
        return openLayer({"Roads", "../city.gpkg|layername=roads", "ogr",
                          "<srs>" + referenceText(sCode) + "</srs>"})
            ->spatialReference()
            ->authorityCode();
    };
    EXPECT_EQ(codeOf("EPSG:3857"), "EPSG:3857");
    EXPECT_EQ(codeOf("NONE:1"), openLayer(roads)->spatialReference()->authorityCode());
}

TEST_F(Project, LeavesOutWhatStandsInAnotherProject) {
    const auto pMap =
        openMap({roads}, treeLayer("Roads") + "<layer-tree-group name='E' embedded='1' project='x.qgs'/>");
    EXPECT_THAT(names(*pMap), ElementsAre("Roads"));
    EXPECT_THAT(remarks(),
                ElementsAre(HasSubstr("groups that stand in another project are left out: \"E\"")));
}

TEST_F(Project, OfAnArchiveTakesPathsFromTheArchivesFolder) {
    std::filesystem::create_directory(folder.file("doc"));
    const std::string sArchive =
        writeArchive(folder.file("doc/a {b}.qgz"), {{"inner.qgs", projectText({roads})}, {"inner.qgd", "x"}});
    const auto pMap = pHost->openMapDocument(sArchive)->focusMap();
    const auto pLayer = std::dynamic_pointer_cast<host::GisFeatureLayer>(pMap->layer(0));
    EXPECT_EQ(pLayer->featureClass()->workspace()->pathName(), sCity);
}

TEST_F(Project, OfAnArchiveThatIsNoneIsRefused) {
    const auto failure = [&](const std::string& sPath) {
        return failureOf([&] { static_cast<void>(pHost->openMapDocument(sPath)); });
    };
    EXPECT_THAT(failure(folder.write("broken.qgz", "PK\3\4 nothing")),
                HasSubstr("is no archive that can be read"));
    EXPECT_THAT(failure(writeArchive(folder.file("two.qgz"), {{"a.qgs", "<qgis/>"}, {"b.qgs", "<qgis/>"}})),
                HasSubstr("holds 2 files .qgs; an archive of a project has one"));
    EXPECT_THAT(failure(writeArchive(folder.file("other.qgz"), {{"a.qgs", "<other/>"}})),
                HasSubstr("it is no project: its root would be <qgis>"));
    EXPECT_THAT(failure(writeArchive(folder.file("cut.qgz"), {{"a.qgs", "<qgis><title>"}})),
                HasSubstr("cut.qgz, line 1: "));
}

TEST_F(Project, LargerThanTheLimitIsNotReadToItsEnd) {
    const std::string sBomb = writeArchive(folder.file("bomb.qgz"),
                                           {{"a.qgs", "<qgis>" + std::string(std::size_t{129} << 20U, ' ')}});
    EXPECT_LT(std::filesystem::file_size(sBomb), 1U << 20U);
    EXPECT_THAT(failureOf([&] { static_cast<void>(pHost->openMapDocument(sBomb)); }),
                HasSubstr("holds a project of more than 128 MiB, the most that is read"));
}

TEST_F(Project, EntitiesAndAddressesOfItsDocumentTypeAreNotRead) {
    const std::string sSecret = folder.write("secret.txt", "secret");
    EXPECT_THAT(failureOf([&] {
                    open("<!DOCTYPE qgis [<!ENTITY e SYSTEM 'file://" + sSecret +
                         "'>]><qgis><title>&e;</title></qgis>");
                }),
                HasSubstr("a document type declaration is not allowed here"));
    const std::string sType = folder.write("type.dtd", "<!ENTITY e 'declared'>");
    const auto pOpened = open("<!DOCTYPE qgis SYSTEM '" + sType + "'><qgis><title>A</title></qgis>");
    EXPECT_EQ(pOpened->focusMap()->name(), "A");
}

TEST_F(Project, WhoseMapsMultiplyItsLayersBeyondMeasureIsRefused) {
    std::string sAliases = "<aliases>";
    for (int lField = 0; lField < 1000; ++lField)
        sAliases += "<alias field='f" + std::to_string(lField) + "' name='" + std::string(500, 'a') + "'/>";
    std::string sItems = "<Layouts><Layout name='A'>";
    for (int lItem = 0; lItem < 2000; ++lItem)
        sItems += "<LayoutItem type='65639' id='m'/>";
    EXPECT_THAT(failureOf([&] {
                    openMap({{"Roads", "../city.gpkg|layername=roads", "ogr", sAliases + "</aliases>"}}, {},
                            sItems + "</Layout></Layouts>");
                }),
                HasSubstr("hold more layers than there is room for"));
}

TEST_F(Project, NestedBeyondMeasureIsRefused) {
    std::string sDeep;
    for (int lDepth = 0; lDepth < 300; ++lDepth)
        sDeep += "<layer-tree-group name='g'>";
    EXPECT_THAT(failureOf([&] { open("<qgis>" + sDeep); }), HasSubstr("256"));
}

} // namespace
} // namespace halvane::tests
