// h:ForEach.

#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;

class SecondEditionLoops : public SecondEditionTest {
protected:
    std::string names(const std::string& sThing, const std::string& sProperty) {
        return in("<t Name='T' h:ForEach='" + sThing + "'><n Name='n' Target='Attribute' DataProperty='" +
                  sProperty + "'/></t>");
    }
};

TEST_F(SecondEditionLoops, GoOverMaps) {
    EXPECT_EQ(
        in("<m Name='M' h:ForEach='Map'><n Name='N' DataProperty='MapName'/><l Name='L' h:ForEach='Layer' "
           "h:When=\"$Layer in ('Piers', 'Photo')\" h:Text='{$Item} {$Layer}'/><i Name='I' h:Text='{$Item} "
           "{$Map}'/>"
           "</m><x Name='X' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' "
           "h:Text='{$Map}'/>"),
        "<M><N>Town Map</N><L>8 Photo</L><I>1 Town Map</I></M><M><N>Harbour Map</N><L>1 Piers</L><I>2 "
        "Harbour "
        "Map</I></M><X>Town Map</X>");
}

TEST_F(SecondEditionLoops, GoOverLayersDepthFirstWithoutGroups) {
    EXPECT_EQ(names("Layer", "LayerName"),
              "<T n=\"Roads\"/><T n=\"Water\"/><T n=\"Paper\"/><T n=\"Twin\"/><T n=\"TWIN\"/><T n=\"Deep\"/>"
              "<T n=\"Roads\"/><T n=\"Photo\"/><T n=\"Relief\"/><T n=\"Water\"/>");
    EXPECT_EQ(
        in("<t Name='T' h:ForEach='Layer' h:When=\"$Layer like 'P%' or $Layer in ('Relief', 'Deep')\"><a "
           "Name='A' DataProperty='LayerType'/><g Name='G' DataProperty='GeometryType'/></t>"),
        "<T><A>Raster</A><G/></T><T><A>Feature</A><G>vemiGeometryPolyline</G></T><T><A>Raster</A><G/></T>"
        "<T><A>TIN</A><G/></T>");
}

TEST_F(SecondEditionLoops, ReadTheItemWhateverElseIsCurrent) {
    EXPECT_EQ(in("<t Name='T' h:ForEach='Layer' h:When=\"$Layer = 'Deep'\"><g Name='G' DataSource='MapLayer' "
                 "Identity='LayerName' IdentityValue='Water'><n Name='N' DataProperty='LayerName'/></g>"
                 "<n Name='N' DataProperty='LayerName'/><c Name='C' DataProperty='FeatureCount'/>"
                 "<z Name='Z' DataProperty='SPATIALREFERENCE.ZONE'/></t>"),
              "<T><G><N>Water</N></G><N>Deep</N><C>3</C><Z>15</Z></T>");
}

TEST_F(SecondEditionLoops, WriteTheRowsOfEachLayer) {
    EXPECT_EQ(
        in("<t Name='T' h:ForEach='Layer' DataSource='Feature' Entries='Multiple' h:Where=\"NAME = 'Quay'\" "
           "h:When=\"$Layer like 't%'\"><n Name='N' h:Text='{$Layer} {NAME} {$Item}'/></t>"),
        "<T><N>Twin Quay 1</N></T><T><N>TWIN Quay 1</N></T>");
}

TEST_F(SecondEditionLoops, GoOverFieldsOfTheRowElseTheLayerElseTheTable) {
    const std::string sFields =
        "<f Name='F' h:ForEach='Field' h:When='$Item &lt; 4'><n Name='n' Target='Attribute' "
        "DataProperty='FieldName'/><v Name='v' Target='Attribute' h:Omit='Empty' "
        "h:Text='{$Value}'/></f>";
    EXPECT_EQ(
        in("<t DataSource='Table' Identity='TableName' IdentityValue='SIGNS' Entries='Multiple' h:Limit='1' "
           "h:Omit='Self'>" +
           sFields + "</t>"),
        "<F n=\"OID\" v=\"1\"/><F n=\"KIND\" v=\"Stop\"/><F n=\"ROUTE_ID\" v=\"R17\"/>");
    EXPECT_EQ(
        in("<t h:ForEach='Table' h:Omit='Self'><n Name='N' DataProperty='TableName'/>" + sFields + "</t>"),
        "<N>SIGNS</N><F n=\"OID\"/><F n=\"KIND\"/><F n=\"ROUTE_ID\"/>");
    EXPECT_THAT(inRoads("<t h:ForEach='Table' h:Omit='Self'>" + sFields + "</t>"),
                ::testing::StartsWith("<R><F n=\"OID\"/><F n=\"KIND\"/><F n=\"ROUTE_ID\"/></R><R>"))
        << "the table is nearer than the row";
}

TEST_F(SecondEditionLoops, TellAllOfAField) {
    EXPECT_EQ(
        in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
           "<f Name='F' h:ForEach='Field' h:When=\"$Item in (2, 3)\"><a Name='A' DataProperty='FieldAlias'/>"
           "<t Name='T' DataProperty='FieldType'/><d Name='D' DataProperty='FieldDomain'/></f></l>"),
        "<F><A>SHAPE</A><T>vemiGeometryPolyline</T><D/></F><F><A>Street "
        "name</A><T>vemiFieldTypeString</T><D/></F>");
}

TEST_F(SecondEditionLoops, GoOverDomainsCodesAndSubtypes) {
    auto pSubtypes = std::make_shared<MemorySubtypes>("LANES", 2);
    pSubtypes->addSubtype(2, "Street");
    pSubtypes->addSubtype(4, "Avenue");
    const auto pDomain = MemoryDomain::coded("Routes", FieldType::String,
                                             {{std::string("R17"), "Ring"}, {std::string("R18"), "Radius"}});
    pSubtypes->setDomain(2, "ROUTE_ID", pDomain);
    pSubtypes->setDomain(4, "ROUTE_ID", pDomain);
    world.pRoads->setSubtypes(pSubtypes);
    EXPECT_EQ(
        in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
           "<s Name='S' h:ForEach='Subtype'><c Name='c' Target='Attribute' DataProperty='SubTypeCode'/>"
           "<n Name='n' Target='Attribute' DataProperty='SubTypeName'/></s>"
           "<f h:ForEach='Field' h:Omit='Self'><d Name='D' h:ForEach='Domain'><n Name='n' Target='Attribute' "
           "DataProperty='DomainName'/><c Name='C' h:ForEach='Code'><v Name='V' "
           "DataProperty='DomainCodeValue'/><n Name='N' DataProperty='DomainCodeName'/></c></d></f></l>"),
        "<S c=\"2\" n=\"Street\"/><S c=\"4\" n=\"Avenue\"/><D n=\"Routes\"><C><V>R17</V><N>Ring</N></C>"
        "<C><V>R18</V><N>Radius</N></C></D>");
}

TEST_F(SecondEditionLoops, TellTheDomainsOfTheTableThatHasTheField) {
    auto pSubtypes = std::make_shared<MemorySubtypes>("LANES", 2);
    pSubtypes->addSubtype(2, "Street");
    pSubtypes->setDomain(2, "ROUTE_ID", MemoryDomain::coded("Routes", FieldType::String, {}));
    world.pRoads->setSubtypes(pSubtypes);
    const std::string sField =
        "<f Name='F' h:ForEach='Field' h:When='$Item = 3'><n Name='n' Target='Attribute' "
        "DataProperty='FieldName'/><d Name='d' Target='Attribute' "
        "DataProperty='FieldDomain'/><e Name='D' h:ForEach='Domain'/></f>";
    EXPECT_EQ(inRoads("<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                      "h:Rows='Each' h:Link='LANES=LANES' h:Where='{LANES} = 4'>" +
                      sField + "</s>"),
              "<R/><R/><R><S><F n=\"ROUTE_ID\" d=\"\"/></S></R>");
}

TEST_F(SecondEditionLoops, GoOverTheWorkspacesOfTheMapEachOnce) {
    EXPECT_EQ(names("Workspace", "Path"), "<T n=\"C:\\data\\town.mdb\"/><T n=\"E:\\tins\"/>");
}

TEST_F(SecondEditionLoops, GoOverThePartsAndVerticesOfTheRowsShape) {
    const std::string sVertex =
        "<v Name='V' h:ForEach='Vertex'><x Name='x' Target='Attribute' DataProperty='X'/><y Name='y' "
        "Target='Attribute' DataProperty='Geometry.Y' DecimalPlace='1'/><z Name='z' "
        "Target='Attribute' h:Omit='Empty' DataProperty='Z'/></v>";
    const auto pParts = MemoryFeatureClass::make(
        "PARTS", ShapeType::Polyline, {field("OID", FieldType::Oid), field("SHAPE", FieldType::Geometry)});
    pParts->addRow(
        {std::int64_t{1}, ObjectPtr(MemoryGeometry::polyline({{{0, 0}, {1.5, 2.25}}, {{3, 4}, {5, 6}}}))});
    pParts->addRow({std::int64_t{2}, Null()});
    const auto pMap = MemoryMap::make("M", {MemoryFeatureLayer::make("Parts", pParts)});
    world.pMapDocument = MemoryMapDocument::make({pMap});
    const auto inParts = [&](const std::string& sNodes) {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Parts' h:Omit='Self'>"
                  "<r Name='R' DataSource='Feature' Entries='Multiple'>" +
                  sNodes + "</r></l>");
    };
    EXPECT_EQ(inParts("<p Name='P' h:ForEach='Part'><n Name='n' Target='Attribute' h:Text='{$Item}'/>" +
                      sVertex + "</p>"),
              "<R><P n=\"1\"><V x=\"0\" y=\"0\"/><V x=\"1.5\" y=\"2.3\"/></P><P n=\"2\"><V x=\"3\" y=\"4\"/>"
              "<V x=\"5\" y=\"6\"/></P></R><R/>");
    EXPECT_EQ(
        inParts("<g Name='G' h:Omit='Empty'>" + sVertex + "</g>"),
        "<R><G><V x=\"0\" y=\"0\"/><V x=\"1.5\" y=\"2.3\"/><V x=\"3\" y=\"4\"/><V x=\"5\" y=\"6\"/></G></R>"
        "<R/>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(in("<v Name='V' h:ForEach='Vertex'/>"), "");
    EXPECT_THAT(failures(), ::testing::HasSubstr("no row is at hand whose shape could be gone over"));
}

TEST_F(SecondEditionLoops, MayBeALeafThatReadsItsThing) {
    EXPECT_EQ(in("<t Name='T' h:ForEach='Table' DataProperty='TableName'/>"), "<T>SIGNS</T>");
    EXPECT_EQ(
        inRoads("<f Name='F' h:ForEach='Field' h:When='$Item &lt; 4' h:Text='{$Value}' h:Omit='Empty'/>"),
        "<R><F>1</F><F>High Street</F></R><R><F>2</F><F>Mill Lane</F></R><R><F>3</F><F>Quay</F></R>")
        << "a shape has no text";
    EXPECT_EQ(
        in("<t Name='T' h:ForEach='Layer' h:When=\"$Layer = 'Deep'\" DataSource='Feature' h:Rows='Each' "
           "h:Limit='1' h:Format='0.00' h:Text='{NAME}'/>"),
        "<T>High Street</T>")
        << "a limit is not written in a form";
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_F(SecondEditionLoops, LeaveNothingWhereThereIsNothing) {
    EXPECT_EQ(names("Code", "DomainCodeName") + names("Domain", "DomainName") + names("Field", "FieldName"),
              "");
    EXPECT_TRUE(failures().empty());
}

TEST_F(SecondEditionLoops, TellOfPropertiesThatTheThingLacks) {
    EXPECT_EQ(names("Table", "LayerName"), "<T n=\"\"/>");
    EXPECT_TRUE(observer.noticed("n", Notice::UnknownProperty));
}

TEST_F(SecondEditionLoops, AreRefusedWhereTheyAreNone) {
    EXPECT_EQ(in("<a Name='A' h:ForEach='Layers'/>"), "not saved: h:ForEach=\"Layers\": it is Map, Layer, "
                                                      "Table, Field, Domain, Relationship, Workspace, Code, "
                                                      "Subtype, Part or Vertex; did you mean \"Layer\"?");
    EXPECT_EQ(in("<a Name='A' Target='Attribute' h:ForEach='Layer'/>"),
              "not saved: h:ForEach makes elements, not an attribute; take Target away");
}

} // namespace

} // namespace halvane::test
