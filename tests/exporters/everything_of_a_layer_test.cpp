// All facts of a layer in one export, undisturbed and with every host call failing once.

#include "exporters/ExporterTest.h"

#include <algorithm>

namespace halvane::test {
namespace {

using host::CodedValue;
using host::FieldType;
using host::memory::field;
using host::memory::MemoryDomain;
using host::memory::MemoryFeatureClass;
using host::memory::MemoryFeatureLayer;
using host::memory::MemoryGeometry;
using host::memory::MemoryMap;
using host::memory::MemoryMapDocument;
using host::memory::MemoryRelationshipClass;
using host::memory::MemorySpatialReference;
using host::memory::MemorySubtypes;
using host::memory::MemoryWorkspace;
using host::memory::RelationshipDefinition;

constexpr std::string_view controlOfEverything = R"(
<a Name="Out">
  <l Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="Roads" DecimalPlace="2">
    <s Name="Reference">
      <d Name="Datum" DataProperty="SPATIALREFERENCE.DATUM"/>
      <x Name="XMin" DataProperty="SPATIALREFERENCE.XMIN"/>
    </s>
    <g Name="Length" Entries="Multiple" DataSource="Geometry.Length">
      <v Name="Value" DataProperty="Geometry.Length"/>
    </g>
    <g Name="End" Entries="Multiple" DataSource="Geometry.ToNode">
      <v Name="X" DataProperty="Geometry.X"/>
      <v Name="Name" DataSource="FeatureAttributes" DataProperty="NAME"/>
    </g>
    <g Name="Vertex" Entries="Multiple" DataSource="Geometry.Vertice">
      <v Name="Y" DataProperty="Geometry.Y"/>
    </g>
    <f Name="Feature" Entries="Multiple" DataSource="Feature">
      <v Name="Name" Identity="FieldName" IdentityValue="NAME"/>
      <g Name="Vertices" Entries="Multiple" DataSource="Geometry.Vertice">
        <v Name="X" DataProperty="Geometry.X"/>
      </g>
    </f>
    <f Name="Fields" Entries="Multiple" DataSource="Field">
      <t Name="Field">
        <v Name="Name" DataProperty="FieldName"/>
        <v Name="Type" DataProperty="FieldType"/>
      </t>
    </f>
    <s Name="Subtype" Entries="Multiple" DataSource="SubType">
      <v Name="Name" DataProperty="SubTypeName"/>
      <f Name="Info" Entries="Multiple" DataSource="SubTypeFieldInfo">
        <v Name="Name" DataProperty="FieldName"/>
        <v Name="Domain" DataProperty="SubtypeDomain"/>
      </f>
    </s>
    <d Name="Domain" Entries="Multiple" DataSource="WorkspaceDomain">
      <v Name="Name" DataProperty="DomainName"/>
      <c Name="Codes" DataProperty="DomainCodedValues">
        <e Name="Code" Entries="Multiple">
          <v Name="Value" DataProperty="DomainCodeValue"/>
        </e>
      </c>
    </d>
    <r Name="Relationship" Entries="Multiple" DataSource="Relationship">
      <v Name="Name" DataProperty="RelationshipName"/>
      <v Name="Cardinality" DataProperty="Cardinality"/>
    </r>
  </l>
</a>)";

constexpr std::string_view everything =
    "<Out><Layer>"
    "<Reference><Datum>NAD83</Datum><XMin>-0.5</XMin></Reference>"
    "<Length><Value>2</Value></Length><Length><Value>1.41</Value></Length>"
    "<End><X>2</X><Name>High Street</Name></End><End><X>1</X><Name/></End>"
    "<Vertex><Part><Vertex><Y>0</Y></Vertex><Vertex><Y>0</Y></Vertex></Part></Vertex>"
    "<Vertex><Part><Vertex><Y>0</Y></Vertex><Vertex><Y>1</Y></Vertex></Part></Vertex>"
    "<Feature><Name>High Street</Name>"
    "<Vertices><Part><Vertices><X>0</X></Vertices><Vertices><X>2</X></Vertices></Part></Vertices></Feature>"
    "<Feature><Name/>"
    "<Vertices><Part><Vertices><X>0</X></Vertices><Vertices><X>1</X></Vertices></Part></Vertices></Feature>"
    "<Fields><Field><Name>FID</Name><Type>vemiFieldTypeOID</Type></Field>"
    "<Field><Name>Shape</Name><Type>vemiGeometryPolyline</Type></Field>"
    "<Field><Name>NAME</Name><Type>vemiFieldTypeString</Type></Field></Fields>"
    "<Subtype><Name>Highway</Name><Info><Name>NAME</Name><Domain>Names</Domain></Info></Subtype>"
    "<Subtype><Name>Track</Name><Info/><Info><Name>NAME</Name><Domain/></Info></Subtype>"
    "<Domain><Name>Names</Name><Codes><Code><Value>A</Value></Code><Code><Value>B</Value></Code></Codes></"
    "Domain>"
    "<Domain><Name>Speed</Name></Domain>"
    "<Relationship><Name>RoadSigns</Name><Cardinality>vemiRelCardinalityOneToMany</Cardinality></"
    "Relationship>"
    "<Relationship><Name>RoadEvents</Name><Cardinality>vemiRelCardinalityOneToOne</Cardinality></"
    "Relationship>"
    "</Layer></Out>";

class EverythingOfALayer : public ExporterTest {
protected:
    EverythingOfALayer() {
        const auto pNames = MemoryDomain::coded(
            "Names", FieldType::String, {CodedValue{std::string("A"), ""}, CodedValue{std::string("B"), ""}});
        pWorkspace->add(pNames);
        pWorkspace->add(MemoryDomain::range("Speed", FieldType::Integer, 10, 130));
        addRelationship("RoadSigns", 2);
        addRelationship("RoadEvents", 1);
        const auto pSubtypes = MemorySubtypes::make("KIND", 1);
        pSubtypes->addSubtype(1, "Highway");
        pSubtypes->addSubtype(2, "Track");
        pSubtypes->setDomain(1, "NAME", pNames);
        const auto pRoads =
            MemoryFeatureClass::make("Roads", host::ShapeType::Polyline,
                                     {field("FID", FieldType::Oid), field("Shape", FieldType::Geometry),
                                      field("NAME", FieldType::String)});
        pRoads->setSubtypes(pSubtypes);
        pRoads->addRow(
            {1, ObjectPtr(MemoryGeometry::polyline({{{0, 0}, {2, 0}}})), std::string("High Street")});
        pRoads->addRow({2, ObjectPtr(MemoryGeometry::polyline({{{0, 0}, {1, 1}}})), Null{}});
        pWorkspace->add(pRoads);
        const auto pReference = MemorySpatialReference::make("Projection UTM\nDatum NAD83");
        pReference->setXyDomain({-0.5, 0, 0, 0, 0, 0, 0});
        const auto pMap = MemoryMap::make("Main", {MemoryFeatureLayer::make("Roads", pRoads)});
        pMap->setSpatialReference(pReference);
        pMapDoc = MemoryMapDocument::make({pMap});
    }

    void addRelationship(const std::string& sName, std::int32_t lCardinality) {
        RelationshipDefinition definition;
        definition.sName = sName;
        definition.lCardinality = lCardinality;
        pWorkspace->add(MemoryRelationshipClass::make(std::move(definition)));
    }

    host::memory::MemoryWorkspacePtr pWorkspace = MemoryWorkspace::make("D:\\data.mdb", 1);
    host::memory::MemoryMapDocumentPtr pMapDoc;
};

TEST_F(EverythingOfALayer, IsWrittenInTheOrderOfTheControlNodes) {
    EXPECT_EQ(exportWhole(pMapDoc, controlOfEverything), everything);
    EXPECT_EQ(state.lModErrNum, 0) << state.sModErrMsg;
    EXPECT_TRUE(observer.aFailures.empty());
    EXPECT_TRUE(observer.aNotices.empty());
}

/// The tags and texts of a document, an empty element as its two tags.
std::vector<std::string> piecesOf(std::string_view sXml) {
    std::vector<std::string> aPieces;
    while (!sXml.empty()) {
        const auto end = sXml.front() == '<' ? sXml.find('>') + 1 : sXml.find('<');
        std::string sPiece(sXml.substr(0, end));
        sXml.remove_prefix(sPiece.size());
        if (sPiece.ends_with("/>")) {
            sPiece.erase(sPiece.size() - 2);
            aPieces.push_back(sPiece + ">");
            sPiece = "</" + sPiece.substr(1) + ">";
        }
        aPieces.push_back(std::move(sPiece));
    }
    return aPieces;
}

/// Whether one document is the other with pieces left out.
bool isPartOf(std::string_view sPart, std::string_view sWhole) {
    const auto aWhole = piecesOf(sWhole);
    auto position = aWhole.begin();
    for (const auto& sPiece : piecesOf(sPart)) {
        position = std::find(position, aWhole.end(), sPiece);
        if (position == aWhole.end())
            return false;
        ++position;
    }
    return true;
}

TEST_F(EverythingOfALayer, LosesOnlyWhatAFailingHostCallWasToYield) {
    pHost->faults().reset();
    ASSERT_EQ(exportWhole(pMapDoc, controlOfEverything), everything);
    const auto nCalls = pHost->faults().callCount();
    ASSERT_GT(nCalls, 200);
    // The first call is the test's own: it asks for the map that is shown.
    for (std::int64_t n = 2; n <= nCalls; ++n) {
        SCOPED_TRACE("host call " + std::to_string(n));
        observer.aFailures.clear();
        observer.sSavedPath.reset();
        pHost->faults().failAtCall(n);
        const std::string sXml = exportWhole(pMapDoc, controlOfEverything);
        pHost->faults().clear();
        // Others may follow from it: a layer that is missing is missed.
        ASSERT_FALSE(observer.aFailures.empty());
        EXPECT_EQ(observer.aFailures.front().lNumber, 1004);
        EXPECT_EQ(state.lModErrNum, observer.aFailures.back().lNumber);
        EXPECT_TRUE(observer.sSavedPath.has_value());
        EXPECT_TRUE(sXml.starts_with("<Out><Layer")) << sXml;
        EXPECT_TRUE(isPartOf(sXml, everything)) << sXml;
    }
}

TEST_F(EverythingOfALayer, EndsUnsavedWhenTheObserverGivesItUpAtAnyItem) {
    exportWhole(pMapDoc, controlOfEverything);
    const int lItems = observer.lItems;
    ASSERT_GT(lItems, 10);
    for (int lItem = 1; lItem <= lItems; ++lItem) {
        SCOPED_TRACE("item " + std::to_string(lItem));
        observer.lItems = 0;
        observer.lCancelAtItem = lItem;
        EXPECT_EQ(exportWhole(pMapDoc, controlOfEverything), "");
        EXPECT_EQ(observer.lItems, lItem);
    }
}

} // namespace
} // namespace halvane::test
