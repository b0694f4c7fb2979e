// What the things that h:ForEach goes over are asked for, where they have it and where they lack it.

#include "exporters/second/SecondEditionTest.h"
#include "host/Explanations.h"
#include "host/memory/Relationship.h"

#include <gmock/gmock.h>

#include <memory>
#include <utility>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;
using ::testing::HasSubstr;

/// A layer of no kind that anything is known of.
class SketchLayer final : public GisLayer {
public:
    [[nodiscard]] std::string name() const override { return "Sketch"; }
};

/// A table that knows the rules of its fields.
class RuledTable final : public MemoryTableOf<GisTable>, public FieldRules {
public:
    RuledTable(std::string sName, std::vector<FieldDefinition> aFields, GisSubtypesPtr pRules)
        : MemoryTableOf(std::move(sName), std::move(aFields)), pRules_(std::move(pRules)) {}
    [[nodiscard]] GisSubtypesPtr fieldRules() const override { return pRules_; }

private:
    GisSubtypesPtr pRules_;
};

class ThingsOfAMap : public SecondEditionTest {
protected:
    void showLayers(std::vector<GisLayerPtr> layers) {
        pMap = MemoryMap::make("M", std::move(layers));
        world.pMapDocument = MemoryMapDocument::make({pMap});
    }
    /// The values of a property, one after the other.
    std::string valuesOf(const std::string& sThing, const std::string& sProperty,
                         const std::string& sFurther = "") {
        return in("<t Name='T' h:ForEach='" + sThing + "' DataProperty='" + sProperty + "' " + sFurther +
                  "/>");
    }
    static std::string loop(const std::string& sThing, const std::string& sProperty) {
        return "<x Name='" + sThing.substr(0, 1) + "' h:ForEach='" + sThing + "' DataProperty='" + sProperty +
               "'/>";
    }
    static MemoryTablePtr points(const std::string& sName) {
        return MemoryTable::make(sName, {field("OID", FieldType::Oid)});
    }
    static MemoryFeatureClassPtr stops() {
        return MemoryFeatureClass::make("STOPS", ShapeType::Point,
                                        {field("OID", FieldType::Oid), field("SHAPE", FieldType::Geometry)});
    }

    MemoryMapPtr pMap;
};

TEST_F(ThingsOfAMap, AreNothingWhereTheMapShowsDataThatIsGone) {
    showLayers({MemoryFeatureLayer::make("Gone", nullptr), MemoryTinLayer::make("Bare", nullptr),
                MemoryTinLayer::make("Lost", MemoryDataset::make(nullptr)),
                MemoryFeatureLayer::make("Loose", stops()), MemoryRasterLayer::make("Photo", "p.img")});
    pMap->addTable(nullptr);
    pMap->addTable(points("FREE"));
    EXPECT_EQ(valuesOf("Workspace", "Path"), "");
    EXPECT_EQ(valuesOf("Domain", "DomainName"), "");
    EXPECT_EQ(valuesOf("Relationship", "RelationshipName"), "");
    EXPECT_EQ(valuesOf("Table", "TableName"), "<T>FREE</T>");
    EXPECT_EQ(valuesOf("Layer", "GeometryType"), "<T/><T/><T/><T>vemiGeometryPoint</T><T/>");
    EXPECT_EQ(failures(), "");
}

TEST_F(ThingsOfAMap, HaveNoFieldsDomainsOrSubtypesWithoutRows) {
    showLayers({MemoryFeatureLayer::make("Gone", nullptr), MemoryTinLayer::make("Bare", nullptr),
                MemoryRasterLayer::make("Photo", "p.img")});
    EXPECT_EQ(in("<l Name='L' h:ForEach='Layer'>" + loop("Field", "FieldName") +
                 loop("Subtype", "SubTypeName") + loop("Code", "DomainCodeName") + "</l>"),
              "<L/><L/><L/>");
    EXPECT_EQ(failures(), "");
}

TEST_F(ThingsOfAMap, HideNoOthersWhereTheirDataCannotBeOpened) {
    world.pHost->faults().failAt("GisFeatureLayer.featureClass");
    EXPECT_EQ(valuesOf("Workspace", "Path"), "<T>C:\\data\\town.mdb</T><T>E:\\tins</T>");
    EXPECT_EQ(failures(), "T: featureClass failed by request\n");
    world.pHost->faults().failAlways("GisTable.workspace");
    EXPECT_EQ(valuesOf("Workspace", "Path"), "<T>E:\\tins</T>");
    EXPECT_THAT(failures(), HasSubstr("T: workspace failed by request\n"));
}

TEST_F(ThingsOfAMap, AreNoneWithoutAMapOrADocument) {
    prepare();
    world.pMapDocument->setFocusMap(nullptr);
    EXPECT_EQ(valuesOf("Layer", "LayerName") + valuesOf("Table", "TableName") + valuesOf("Workspace", "Path"),
              "");
    EXPECT_EQ(valuesOf("Map", "MapName"), "<T>Town Map</T><T>Harbour Map</T>") << "the document has them";
    EXPECT_EQ(in("<t Name='T' h:Text='{$Map}|{$Crs}|{$Layer}|{$Table}'/>"), "<T>|||</T>");

    state.options.pSecondEdition = &edition;
    prepare();
    state.pMapDoc = nullptr;
    state.sControlPath = folder.write(
        "control.xml", "<c xmlns:h='urn:halvane:control:2' Name='Out'><m Name='M' h:ForEach='Map'/></c>");
    state.sOutputPath = folder.file("none.xml");
    ExportEntry(state);
    EXPECT_EQ(folder.read("none.xml"), "<Out/>");
    EXPECT_EQ(failures(), "");
}

TEST_F(ThingsOfAMap, TellWhatALayerIs) {
    showLayers({std::make_shared<SketchLayer>(), world.pTinLayer, world.pRasterLayer, world.pRoadsLayer});
    EXPECT_EQ(valuesOf("Layer", "LayerType"), "<T/><T>TIN</T><T>Raster</T><T>Feature</T>");
    EXPECT_EQ(valuesOf("Layer", "GeometryType"), "<T/><T/><T/><T>vemiGeometryPolyline</T>");
    EXPECT_EQ(valuesOf("Layer", "Path", "h:When=\"$Layer = 'Photo'\""), "<T>D:\\data\\</T>");
    EXPECT_EQ(valuesOf("Layer", "LayerName", "h:When=\"$Layer = 'Relief'\""), "<T>Relief</T>");
    EXPECT_EQ(failures(), "");
}

TEST_F(ThingsOfAMap, TellTheReferenceOfEachMap) {
    EXPECT_EQ(valuesOf("Map", "SPATIALREFERENCE.ZONE"), "<T>15</T><T/>");
    EXPECT_EQ(valuesOf("Map", "NAME"), "<T/><T/>");
    EXPECT_THAT(failures(), HasSubstr("T: "));
    auto pReference = MemorySpatialReference::make("Zone 15");
    pReference->setCode("EPSG:26915");
    world.pTownMap->setSpatialReference(pReference);
    EXPECT_EQ(in("<t Name='T' h:ForEach='Map' h:Text='{$Map} {$Crs}'/>"),
              "<T>Town Map EPSG:26915</T><T>Harbour Map </T>");
    EXPECT_EQ(in("<t Name='T' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<c Name='C' h:Text='{$Crs}'/><d Name='D' h:Crs='EPSG:1' h:Text='{$Crs}'/></t>"),
              "not saved: h:Crs=\"EPSG:1\": no reference is registered as \"EPSG:1\"")
        << "the host is asked for it";
    EXPECT_EQ(in("<t Name='T' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<c Name='C' h:Text='{$Crs}'/></t>"),
              "<T><C/></T>")
        << "that of the layer, whose code nobody knows";
}

TEST_F(ThingsOfAMap, TellTheDomainsAndClassesOfTheDatabaseAround) {
    world.pWorkspace->add(MemoryDomain::coded("Kinds", FieldType::String, {{std::string("k"), "Kind"}}));
    world.pWorkspace->add(MemoryRelationshipClass::make({.sName = "Pairs"}));
    const std::string sBoth = loop("Domain", "DomainName") + loop("Relationship", "RelationshipName");
    EXPECT_EQ(in(sBoth), "<D>Kinds</D><R>Pairs</R>") << "of all of the map";
    EXPECT_EQ(in("<w Name='W' h:ForEach='Workspace'>" + sBoth + "</w>"),
              "<W><D>Kinds</D><R>Pairs</R></W><W/>");
    EXPECT_EQ(in("<l Name='L' h:ForEach='Layer' h:When=\"$Layer in ('Deep', 'Relief')\">" + sBoth + "</l>"),
              "<L><D>Kinds</D><R>Pairs</R></L><L><D>Kinds</D><R>Pairs</R></L>")
        << "a layer without a table has all of the map around it";
    EXPECT_EQ(in("<t Name='T' h:ForEach='Table'>" + sBoth + "</t>"), "<T/>") << "the table is of no database";
    EXPECT_EQ(in("<d Name='D' h:ForEach='Domain'>" + loop("Code", "DomainCodeValue") + "</d>"),
              "<D><C>k</C></D>");
    world.pWorkspace->refuseDomains();
    EXPECT_EQ(in(sBoth), "<R>Pairs</R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(ThingsOfAMap, TellTheRulesOfATable) {
    auto pRules = MemorySubtypes::make("KIND", 1);
    pRules->setDomain(0, "KIND", MemoryDomain::coded("Kinds", FieldType::String, {{std::string("k"), "K"}}));
    const auto pTable = std::make_shared<RuledTable>(
        "RULED", std::vector{field("OID", FieldType::Oid), field("KIND", FieldType::String)}, pRules);
    showLayers({});
    pMap->addTable(pTable);
    pMap->addTable(points("PLAIN"));
    EXPECT_EQ(in("<t Name='T' h:ForEach='Table'><f Name='F' h:ForEach='Field' DataProperty='FieldDomain'/>" +
                 loop("Subtype", "SubTypeName") + "</t>"),
              "<T><F/><F>Kinds</F></T><T><F/></T>");
    pRules->addSubtype(7, "Seven");
    EXPECT_EQ(in("<t Name='T' h:ForEach='Table'>" + loop("Subtype", "SubTypeName") + "</t>"),
              "<T><S>Seven</S></T><T/>");
}

TEST_F(ThingsOfAMap, TellAllOfSubtypesAndCodes) {
    auto pSubtypes = MemorySubtypes::make("LANES", 4);
    pSubtypes->addSubtype(2, "Street");
    pSubtypes->addSubtype(4, "Avenue");
    pSubtypes->setDomain(2, "ROUTE_ID",
                         MemoryDomain::coded("Inner", FieldType::String, {{std::int32_t{1}, "One"}}));
    pSubtypes->setDomain(4, "ROUTE_ID", MemoryDomain::coded("Outer", FieldType::String, {}));
    world.pRoads->setSubtypes(pSubtypes);
    const auto inLayer = [&](const std::string& sNodes) {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>" +
                  sNodes + "</l>");
    };
    EXPECT_EQ(inLayer(loop("Subtype", "SubTypeFieldName") + loop("Subtype", "DefaultSubTypeCode")),
              "<S>LANES</S><S>LANES</S><S>4</S><S>4</S>");
    EXPECT_EQ(inLayer("<f Name='F' h:ForEach='Field' h:When='$Item = 4'><d Name='D' "
                      "DataProperty='FieldDomain'/><c Name='C' h:ForEach='Code'><v Name='V' "
                      "DataProperty='DomainCodeValue'/><n Name='N' DataProperty='domaincodename'/></c></f>"),
              "<F><D>Inner, Outer</D><C><V>1</V><N>One</N></C></F>");
    EXPECT_TRUE(observer.aNotices.empty());
    EXPECT_EQ(inLayer(loop("Subtype", "SubTypeColour")), "<S/><S/>");
    EXPECT_TRUE(observer.noticed("S", Notice::UnknownProperty));
    EXPECT_EQ(inLayer("<f Name='F' h:ForEach='Field' h:When='$Item = 4'>" + loop("Code", "DomainCodeColour") +
                      "</f>"),
              "<F><C/></F>");
    EXPECT_TRUE(observer.noticed("C", Notice::UnknownProperty));
    world.pRoads->setSubtypes(nullptr);
    EXPECT_EQ(inLayer(loop("Subtype", "SubTypeName") + "<f Name='F' h:ForEach='Field' h:When='$Item = 4' "
                                                       "DataProperty='FieldDomain'/>"),
              "<F/>");
    EXPECT_EQ(failures(), "");
}

TEST_F(ThingsOfAMap, TellAllOfAVertex) {
    const auto pStops = stops();
    pStops->addRow({std::int64_t{1}, ObjectPtr(MemoryGeometry::point({1.5, 2.25, 3.125, 40}))});
    pStops->addRow({std::int64_t{2}, ObjectPtr(MemoryGeometry::point({1, 2}))});
    showLayers({MemoryFeatureLayer::make("Stops", pStops)});
    const auto ofVertices = [&](const std::string& sProperty) {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Stops' h:Omit='Self'>"
                  "<r Name='R' DataSource='Feature' Entries='Multiple'><v Name='V' h:ForEach='Vertex' "
                  "DecimalPlace='1' DataProperty='" +
                  sProperty + "'/></r></l>");
    };
    for (const std::string sX : {"X", "x", "Geometry.X"})
        EXPECT_EQ(ofVertices(sX), "<R><V>1.5</V></R><R><V>1</V></R>") << sX;
    for (const std::string sY : {"Y", "GEOMETRY.Y"})
        EXPECT_EQ(ofVertices(sY), "<R><V>2.3</V></R><R><V>2</V></R>") << sY;
    for (const std::string sZ : {"Z", "Geometry.Z"})
        EXPECT_EQ(ofVertices(sZ), "<R><V>3.1</V></R><R><V/></R>") << sZ;
    for (const std::string sM : {"M", "Geometry.Measure"})
        EXPECT_EQ(ofVertices(sM), "<R><V>40</V></R><R><V/></R>") << sM;
    EXPECT_TRUE(observer.aNotices.empty());
    EXPECT_EQ(ofVertices("W"), "<R><V/></R><R><V/></R>");
    EXPECT_TRUE(observer.noticed("V", Notice::UnknownProperty));
}

TEST_F(ThingsOfAMap, TellNothingOfAPart) {
    EXPECT_EQ(inRoads("<p Name='P' h:ForEach='Part' DataProperty='X'/>"),
              "<R><P/></R><R><P/></R><R><P/></R>");
    EXPECT_TRUE(observer.noticed("P", Notice::UnknownProperty));
}

TEST_F(ThingsOfAMap, AreVerticesInTheirOrderHoweverManyAreReadAtOnce) {
    Part vertices;
    for (int n = 0; n < 600; ++n)
        vertices.push_back({static_cast<double>(n), 0});
    const auto pLine = MemoryGeometry::polyline({vertices});
    const auto pLines = MemoryFeatureClass::make(
        "LINES", ShapeType::Polyline, {field("OID", FieldType::Oid), field("SHAPE", FieldType::Geometry)});
    pLines->addRow({std::int64_t{1}, ObjectPtr(pLine)});
    showLayers({MemoryFeatureLayer::make("Lines", pLines)});
    const auto written = [&] {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Lines' h:Omit='Self'>"
                  "<r Name='R' DataSource='Feature' Entries='Multiple'><v Name='V' h:ForEach='Vertex' "
                  "DataProperty='X'/></r></l>");
    };
    std::string sExpected;
    for (int n = 0; n < 600; ++n)
        sExpected += "<V>" + std::to_string(n) + "</V>";
    EXPECT_EQ(written(), "<R>" + sExpected + "</R>");
    for (const std::size_t nAtHand : {1U, 100U, 1000U}) {
        pLine->keepAtHand(nAtHand);
        EXPECT_EQ(written(), "<R>" + sExpected + "</R>") << nAtHand;
    }
}

TEST_F(ThingsOfAMap, AreInTheCoordinatesOfTheNode) {
    auto pOfLayer = MemorySpatialReference::make("Here");
    pOfLayer->setPlace({1000, 0, 1});
    world.pRoadsLayer->setSpatialReference(pOfLayer);
    world.pRoads->setSpatialReference(pOfLayer);
    auto pTarget = MemorySpatialReference::make("There");
    edition.fnReferenceOf = [pTarget](std::string_view) { return pTarget; };
    EXPECT_EQ(inRoads("<v Name='V' h:ForEach='Vertex' DataProperty='X' h:Crs='EPSG:4326'/>"),
              "<R><V>1000</V><V>1003</V></R><R><V>1000</V><V>1004</V></R><R><V>1000</V><V>1005</V></R>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(in("<p Name='P' h:ForEach='Part' h:Crs='EPSG:4326'/>"), "");
    EXPECT_THAT(failures(), HasSubstr("no row is at hand whose shape could be gone over"));
}

TEST_F(ThingsOfAMap, AreLeftWhereTheObserverEndsTheExport) {
    observer.lCancelAtVisit = 4;
    EXPECT_THAT(in(loop("Layer", "LayerName")), HasSubstr("not saved"));
    observer.lCancelAtVisit = -1;
}

TEST_F(ThingsOfAMap, NeedNoObserver) {
    state.options.pSecondEdition = &edition;
    prepare();
    state.options.pObserver = nullptr;
    state.sControlPath = folder.write(
        "control.xml", "<c xmlns:h='urn:halvane:control:2' Name='Out'><m Name='M' h:ForEach='Map' "
                       "DataProperty='MapName'/><t Name='T' DataSource='Table' Identity='TableName' "
                       "IdentityValue='SIGNS' Entries='Multiple' h:Rows='Each' h:Text='{KIND}'/></c>");
    state.sOutputPath = folder.file("quiet.xml");
    ExportEntry(state);
    EXPECT_EQ(replaceAll(folder.read("quiet.xml").value_or(""), ">\r\n<", "><"),
              "<Out><M>Town Map</M><M>Harbour Map</M><T>Stop</T><T>Yield</T></Out>");
}

} // namespace

} // namespace halvane::test
