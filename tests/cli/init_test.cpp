// A control file to begin with runs as it is, and a check finds nothing in it.

#include "cli/Samples.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class Init : public ExportFixture {
protected:
    /// Expects that an export with the control file tells nothing, and that a check finds nothing.
    void expectFit(const std::string& sMap, const std::string& sControl) const {
        const auto exported = program.run({"export", "--map", sMap, "--exact-name", sControl, "started.xml"});
        EXPECT_EQ(exported.sErr, "") << sMap;
        EXPECT_EQ(exported.lExitCode, 0) << sMap;
        const auto checked = program.run({"check", "--map", sMap, sControl});
        EXPECT_EQ(checked.sOut, "") << sMap;
        EXPECT_EQ(checked.lExitCode, 0) << sMap;
    }
};

} // namespace

TEST_F(Init, MakesAControlFileForALayer) {
    const auto result = program.run({"init", "towns.geojson"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(
        result.sOut,
        R"(<!-- A control file to begin with. Each element becomes an element or an attribute of the document; take out what is not wanted, and rename by Name. -->
<Template xmlns:h="urn:halvane:control:2" Name="towns" h:Declaration="UTF-8" h:Indent="2" h:Format="xs">
  <Attribute Name="written" Target="Attribute" h:Text="{$Date}"/> <!-- the day of the export -->
  <!-- Layer "towns": point, 3 features -->
  <Layer Name="towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <Attribute Name="features" Target="Attribute" DataProperty="FeatureCount"/>
    <Attribute Name="crs" Target="Attribute" h:Text="{$Crs}" h:Omit="Empty"/>
    <Each Name="Feature" DataSource="Feature" Entries="Multiple">
      <Attribute Name="id" Target="Attribute" h:Text="{OBJECTID}"/> <!-- the object identifier -->
      <Field Name="NAME" IdentityValue="NAME"/> <!-- text -->
      <Field Name="POP" IdentityValue="POP"/> <!-- integer -->
      <Value Name="shape" h:Geometry="WKT" h:Omit="Empty"/> <!-- or GML, KML, GeoJSON … -->
    </Each>
  </Layer>
  <!-- Where the data lies, with its domains and relationship classes -->
  <Node Name="Workspace" h:ForEach="Workspace">
    <Attribute Name="path" Target="Attribute" DataProperty="Path"/>
    <Attribute Name="type" Target="Attribute" DataProperty="WorkspaceType"/>
    <Node Name="Domain" h:ForEach="Domain">
      <Attribute Name="name" Target="Attribute" DataProperty="DomainName"/>
      <Attribute Name="type" Target="Attribute" DataProperty="DomainType"/>
      <Node Name="Code" h:ForEach="Code">
        <Attribute Name="code" Target="Attribute" DataProperty="DomainCodeValue"/>
        <Attribute Name="name" Target="Attribute" DataProperty="DomainCodeName"/>
      </Node>
    </Node>
    <Node Name="Relationship" h:ForEach="Relationship">
      <Attribute Name="name" Target="Attribute" DataProperty="RelationshipName"/>
      <Attribute Name="cardinality" Target="Attribute" DataProperty="Cardinality"/>
      <Attribute Name="origin" Target="Attribute" DataProperty="OriginClassName"/>
      <Attribute Name="destination" Target="Attribute" DataProperty="DestinationClassName"/>
      <Attribute Name="originKey" Target="Attribute" DataProperty="OriginPrimaryKey"/>
      <Attribute Name="destinationKey" Target="Attribute" DataProperty="OriginForeignKey"/>
    </Node>
  </Node>
</Template>
)");
}

TEST_F(Init, WritesAFileThatIsNotThereYet) {
    const auto result = program.run({"init", "towns.geojson", "-o", "new.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.sOut, "Wrote new.xml\n");
    EXPECT_EQ(result.lExitCode, 0);
    expectFit("towns.geojson", "new.xml");
    const std::string sDocument = document("started.xml");
    EXPECT_THAT(sDocument, HasSubstr("<NAME>Byblos</NAME>"));
    EXPECT_THAT(sDocument, HasSubstr("<POP>340</POP>"));
    EXPECT_THAT(sDocument, HasSubstr("<shape>POINT (3 4)</shape>"));
    const auto again = program.run({"init", "towns.geojson", "-o", "control.xml"});
    EXPECT_EQ(again.sErr, "halvane: --output: \"control.xml\": this is there already; give another name\n");
    EXPECT_EQ(again.lExitCode, 2);
    EXPECT_EQ(program.read("control.xml"), sTownsControl);
}

TEST_F(Init, IsAboutTheLayersThatAreAskedFor) {
    program.write("rivers.csv", sRivers);
    const auto rivers = program.run({"init", ".", "--layer", "RIVERS"});
    EXPECT_EQ(rivers.lExitCode, 0) << rivers.sErr;
    EXPECT_THAT(rivers.sOut, HasSubstr("IdentityValue=\"rivers\""));
    EXPECT_THAT(rivers.sOut, Not(HasSubstr("towns")));
    const auto unknown = program.run({"init", ".", "--layer", "river"});
    EXPECT_EQ(unknown.sErr,
              "halvane: --layer: the map has no layer or table \"river\": did you mean \"rivers\"? The "
              "map has the layers and tables \"towns\" and \"rivers\"\n");
    EXPECT_EQ(unknown.sOut, "");
    EXPECT_EQ(unknown.lExitCode, 2);
}

TEST_F(Init, MakesNamesOfWhatIsNoName) {
    program.write("1 & 2--3.csv", "a b,OBJECTID,<x>,größe,\"--\"\n1,2,3,4,5\n");
    EXPECT_EQ(program.run({"init", "1 & 2--3.csv", "-o", "new.xml"}).sErr, "");
    expectFit("1 & 2--3.csv", "new.xml");
    const std::string sDocument = document("started.xml");
    EXPECT_THAT(sDocument, HasSubstr("<a_b>1</a_b>"));
    EXPECT_THAT(sDocument, HasSubstr("<OBJECTID>2</OBJECTID>"));
    EXPECT_THAT(sDocument, HasSubstr("<größe>4</größe>"));
    EXPECT_THAT(sDocument, HasSubstr("<field>5</field>"));
}

TEST_F(Init, LeavesOutFieldsWhoseNamesAreNoUtf8) {
    program.write("latin.csv", "n\xE4me,b\n1,2\n");
    EXPECT_EQ(program.run({"init", "latin.csv", "-o", "new.xml"}).sErr, "");
    EXPECT_THAT(program.read("new.xml").value_or(""),
                HasSubstr("<!-- \"n\\xE4me\": its name has characters that are no UTF-8 "
                          "or that XML forbids -->"));
    expectFit("latin.csv", "new.xml");
    EXPECT_THAT(document("started.xml"), HasSubstr("<b>2</b>"));
}

TEST_F(Init, SaysWhatCannotBeAskedForByItsName) {
    program.write("map.xml", R"(<MapDocument><Map name="M">
<FeatureLayer name="towns" source="towns.geojson"/><FeatureLayer name="a:b" source="towns.geojson"/><FeatureLayer name="gone" source="gone.geojson"/>
<GroupLayer name="G"><FeatureLayer name="inside" source="towns.geojson"/>
<GroupLayer name="H"><FeatureLayer name="deep" source="towns.geojson"/></GroupLayer></GroupLayer></Map></MapDocument>)");
    const auto result = program.run({"init", "map.xml", "-o", "new.xml"});
    EXPECT_EQ(result.lExitCode, 0) << result.sErr;
    const std::string sControl = document("new.xml");
    EXPECT_THAT(sControl,
                HasSubstr("It cannot be asked for by its name: a \":\" parts a group from its member."));
    EXPECT_THAT(sControl, HasSubstr("IdentityValue=\"G:inside\""));
    EXPECT_THAT(sControl, HasSubstr("stands in a group of a group"));
    EXPECT_THAT(sControl, HasSubstr("not readable"));
    expectFit("map.xml", "new.xml");
    program.write("twice.xml",
                  R"(<MapDocument><Map name="M"><FeatureLayer name="towns" source="towns.geojson"/>
<FeatureLayer name="Towns" source="towns.geojson"/></Map></MapDocument>)");
    EXPECT_THAT(program.run({"init", "twice.xml"}).sOut,
                HasSubstr("It cannot be asked for by its name: others have the same name."));
}

TEST_F(Init, RunsForEveryMapOfTheExamples) {
    const std::filesystem::path examples = HALVANE_EXAMPLES;
    int lMaps = 0;
    for (const char* sMap : {"city.xml", "world.xml", "data", "data/city.gpkg", "data/world.gpkg",
                             "data/census.csv", "data/heights.tif"}) {
        const std::string sControl = "init" + std::to_string(++lMaps) + ".xml";
        const std::string sPath = (examples / sMap).string();
        EXPECT_EQ(program.run({"init", sPath, "-o", sControl}).lExitCode, 0) << sMap;
        expectFit(sPath, sControl);
    }
}

TEST_F(Init, BeginsWithWhatASchemaRequires) {
    program.write("towns.xsd",
                  R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns="urn:t" xmlns:o="urn:o"
    targetNamespace="urn:t" elementFormDefault="qualified">
  <xs:element name="town" type="Town"/>
  <xs:element name="towns"><xs:complexType><xs:sequence>
    <xs:element name="note" type="xs:string" minOccurs="0"/>
    <xs:element ref="town" maxOccurs="unbounded"/>
    <xs:choice><xs:element name="end" type="xs:date"/><xs:element name="open"/></xs:choice>
  </xs:sequence><xs:attribute name="version" use="required" fixed="1.0"/><xs:attribute name="by"/></xs:complexType></xs:element>
  <xs:complexType name="Named"><xs:sequence><xs:element name="name" type="xs:string"/></xs:sequence></xs:complexType>
  <xs:complexType name="Town"><xs:complexContent><xs:extension base="Named"><xs:sequence>
    <xs:element name="kind"><xs:simpleType><xs:restriction base="xs:string"><xs:enumeration value="old"/>
      <xs:enumeration value="new"/></xs:restriction></xs:simpleType></xs:element>
  </xs:sequence></xs:extension></xs:complexContent></xs:complexType>
</xs:schema>)");
    const auto broken = program.run({"init", "towns.geojson", "--schema", "control.xml"});
    EXPECT_THAT(broken.sErr, ::testing::StartsWith("halvane: --schema: "));
    EXPECT_EQ(broken.lExitCode, 2);
    const auto result = program.run({"init", "towns.geojson", "--schema", "towns.xsd", "-o", "new.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(
        document("new.xml"),
        R"(<!-- A control file to begin with. What the schema requires stands here; fill it with values, such as h:Text="{name}" in a node that goes over rows. -->
<!-- Layer "towns", point, 3 features: OID, NAME, POP -->
<Template xmlns:h="urn:halvane:control:2" Name="towns" h:Declaration="UTF-8" h:Indent="2" h:Format="xs" xmlns="urn:t">
  <!-- Documents may also begin with town. -->
  <!-- In this order: note?, town+, end, open? -->
  <Attribute Name="version" Target="Attribute" h:Text="1.0"/>
  <Node Name="town">
    <!-- one or more -->
    <!-- In this order: name, kind -->
    <Node Name="name" h:Text=""/> <!-- string -->
    <Node Name="kind" h:Text="old"/> <!-- old | new -->
  </Node>
  <Node Name="end" h:Text=""/> <!-- date -->
  <!-- Optional: -->
  <!-- <Attribute Name="by" Target="Attribute" h:Text=""/> -->
  <!-- <Node Name="note" h:Text=""/> --> <!-- string -->
  <!-- <Node Name="open" h:Text=""/> -->
</Template>
)");
    expectFit("towns.geojson", "new.xml");
    EXPECT_EQ(document("started.xml"), R"(<?xml version="1.0" encoding="UTF-8"?>
<towns xmlns="urn:t" version="1.0">
  <town>
    <name/>
    <kind>old</kind>
  </town>
  <end/>
</towns>)");
}

} // namespace halvane::test
