// What a control file says that cannot be meant is refused before anything is written.

#include "engine/second/FieldCheck.h"
#include "engine/second/SecondControl.h"
#include "exporters/second/SecondEditionTest.h"
#include "host/memory/Relationship.h"

#include <gmock/gmock.h>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Refusals : public SecondEditionTest {
protected:
    static std::string inLayer(const std::string& sNodes) {
        return "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>" + sNodes +
               "</l>";
    }
    /// What the fields of the rows are told to lack before an export: "name: what", a line each.
    std::string missingFields(const std::string& sNodes) {
        const auto oControl = dom::Document::create();
        EXPECT_TRUE(oControl->loadXML("<c xmlns:h='urn:halvane:control:2' Name='Out'>" + sNodes + "</c>"));
        std::string sAll;
        for (const auto& problem : checkSecondRows(oControl->documentElement(), edition, world.pMapDocument))
            sAll += ClsXMLNode(problem.oControlNode).TagName() + ": " + problem.sText + "\n";
        return sAll;
    }
};

TEST_F(Refusals, OfWhatPropertiesOfDefinitionsWouldNotFollow) {
    for (const std::string sSource : {"Field", "SubType", "WorkspaceDomain", "Relationship",
                                      "Geometry.Vertice", "Geometry.Length", "Geometry.FromNode"}) {
        const auto written = [&](const std::string& sProperty) {
            return in(inLayer("<f Name='F' Entries='Multiple' DataSource='" + sSource + "'><g Name='G'>" +
                              sProperty + "</g></f>"));
        };
        for (const std::string sAttribute :
             {"h:When=\"0\"", "h:Text=\"x\"", "h:Omit=\"Empty\"", "h:ForEach=\"Map\"", "h:Geometry=\"WKT\""})
            EXPECT_EQ(
                written("<n Name='N' " + sAttribute + "/>"),
                "not saved: " + sAttribute +
                    ": in a repeated node of definitions or of points of shapes, nodes write properties "
                    "and nothing else; take it away, or repeat the node around by h:ForEach")
                << sSource;
        EXPECT_THAT(written("<n Name='N' h:Format='xs' h:Axes='xy'/>"), StartsWith("<L>")) << sSource;
    }
    EXPECT_EQ(in(inLayer("<f Name='F' DataSource='Field' h:When='0' Entries='Multiple'><g Name='G'>"
                         "<n Name='N' DataProperty='FieldName'/></g></f>")),
              "<L/>")
        << "the repeated node itself may have them";
    EXPECT_EQ(in(inLayer("<f Name='F' DataSource='Field'><n Name='N' h:When='0'/></f>")), "<L><F/></L>")
        << "so may what stands in a node that is not repeated";
}

TEST_F(Refusals, OfRelationshipsAndDirectionsThatAreNone) {
    const std::string sNode = "<s Name='S' DataSource='RelatedTable' h:Rows='Each' ";
    EXPECT_EQ(in(sNode + "h:Relationship=' '/>"),
              "not saved: h:Relationship=\" \": it is the name of a relationship class");
    EXPECT_EQ(in(sNode + "h:Relationship='a' h:Direction='Both'/>"),
              "not saved: h:Direction=\"Both\": it is \"Forward\" or \"Backward\"");
}

TEST_F(Refusals, OfRowsInAttributes) {
    EXPECT_EQ(in(inLayer("<r Name='r' Target='Attribute' DataSource='Feature' h:Rows='Each' "
                         "h:Text='{NAME}'/>")),
              "not saved: rows go into elements, not into an attribute; take Target away");
}

TEST_F(Refusals, OfDeclarationsThatNodesWouldWrite) {
    for (const std::string sName : {"xmlns", "xmlns:a"})
        EXPECT_THAT(
            in("<n Name='" + sName + "' Target='Attribute' h:Text='urn:a'/>"),
            EndsWith("prefixes are declared by the control file's own declarations; leave the node out"))
            << sName;
    EXPECT_EQ(in("<n Name='xml:lang' Target='Attribute' h:Text='de'/>"), "<Out xml:lang=\"de\"/>");
}

TEST_F(Refusals, OfReferencesWhereNoneCanBeNamed) {
    edition.fnReferenceOf = nullptr;
    EXPECT_EQ(in("<n Name='N' h:Crs='EPSG:4326' h:Text='x'/>"),
              "not saved: h:Crs=\"EPSG:4326\": no spatial references can be looked up here");
    EXPECT_EQ(in(inLayer("<r Name='R' DataSource='Feature' Entries='Multiple' h:Geometry='KML'/>")),
              "not saved: no spatial references can be looked up here")
        << "KML is longitude and latitude";
}

TEST_F(Refusals, AreNoneForTheFirstEdition) {
    const auto oFirst = dom::Document::create();
    ASSERT_TRUE(oFirst->loadXML("<c Name='Out'><a Name='A'/></c>"));
    EXPECT_TRUE(checkSecondEdition(oFirst->documentElement(), edition).empty());
    EXPECT_TRUE(checkSecondRows(oFirst->documentElement(), edition, world.pMapDocument).empty());
    EXPECT_FALSE(undeclaredEdition(oFirst->documentElement()).has_value());
    const auto oUndeclared = dom::Document::create();
    ASSERT_TRUE(oUndeclared->loadXML("<c Name='Out'><!-- b --><a Name='A'><b xmlns:h='urn:halvane:control:2' "
                                     "xmlns:i='urn:other' i:When='1' h:When='0'/></a></c>"));
    const auto problem = undeclaredEdition(oUndeclared->documentElement());
    ASSERT_TRUE(problem.has_value());
    EXPECT_EQ(problem->oControlNode.nodeName(), "b");
    EXPECT_THAT(problem->sText,
                StartsWith("h:When=\"0\": attributes of the second edition are read where the "
                           "root declares their namespace; add xmlns:h="));
}

TEST_F(Refusals, OfFieldsThatTheRowsLack) {
    const auto inRows = [](const std::string& sNodes, const std::string& sAttributes = "") {
        return inLayer("<r Name='R' DataSource='Feature' Entries='Multiple' " + sAttributes + ">" + sNodes +
                       "</r>");
    };
    EXPECT_EQ(missingFields(inRows("<n Name='N' h:Text='{NAME} {OBJECTID} {$Item}'/>")), "");
    EXPECT_EQ(missingFields(inRows("<n Name='N' h:Text='{NAMES}'/>")),
              "N: the rows have no field \"NAMES\"; did you mean \"NAME\"?\n");
    EXPECT_EQ(missingFields(inRows("<n Name='N' h:When='upper(NAMED) = 1'/>", "h:Where='LANE = 1'")),
              "R: the rows have no field \"LANE\"; did you mean \"LANES\"?\n"
              "N: the rows have no field \"NAMED\"; did you mean \"NAME\"?\n");
    EXPECT_EQ(missingFields(inRows("<n Name='N' h:Text='{sum(LANE) + max(WIDTH)}'/>",
                                   "h:Group='ROUTE' h:OrderBy='OPEN'")),
              "R: the rows have no field \"ROUTE\"\n"
              "R: the rows have no field \"OPEN\"; did you mean \"OPENED\"?\n"
              "N: the rows have no field \"LANE\"; did you mean \"LANES\"?\n");
    const std::string sSigns = "<s Name='S' DataSource='RelatedTable' Identity='LayerName' "
                               "IdentityValue='SIGNS' h:Rows='Each' h:Link='";
    EXPECT_EQ(missingFields(inRows(sSigns + "ROUTES=KINDS'><n Name='N' h:Text='{KIND} {../NAMES}'/></s>")),
              "S: the rows have no field \"ROUTES\"\n"
              "S: the rows have no field \"KINDS\"; did you mean \"KIND\"?\n"
              "N: the rows have no field \"NAMES\"; did you mean \"NAME\"?\n");
    EXPECT_EQ(missingFields(inRows("<g Name='G' h:Geometry='GML' h:Id='{NAMES}'/>")),
              "G: the rows have no field \"NAMES\"; did you mean \"NAME\"?\n");
}

TEST_F(Refusals, OfFieldsAreLeftWhereTheRowsAreNotKnown) {
    const std::string sNode = "<n Name='N' h:Text='{NAMES}'/>";
    const std::string sRows = "<r Name='R' DataSource='Feature' Entries='Multiple'>" + sNode + "</r>";
    EXPECT_EQ(missingFields(sNode), "");
    EXPECT_EQ(missingFields(sRows), "");
    EXPECT_EQ(missingFields("<l Name='L' h:ForEach='Layer'>" + sRows + "</l>"), "");
    EXPECT_EQ(missingFields("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Photo'>" +
                            sRows + "</l>"),
              "");
    EXPECT_EQ(
        missingFields("<l Name='L' DataSource='FeatureLayer' Identity='LayerName' IdentityValue='ROADS' "
                      "DataLocation='C:\\data\\town.mdb'>" +
                      sRows + "</l>"),
        "");
    EXPECT_EQ(
        missingFields(inLayer("<x Name='X' DataSource='External' IdentityValue='Test.Processor'/>" + sRows)),
        "")
        << "a processor may make anything current";
    EXPECT_EQ(missingFields(inLayer("<g Name='G' DataSource='MapLayer' Identity='LayerName' "
                                    "IdentityValue='Water' h:When='$who = 1'/>" +
                                    sRows)),
              "N: the rows have no field \"NAMES\"; did you mean \"NAME\"?\n")
        << "either layer is of the same class";
    world.pHost->faults().failAlways("GisTable.fields");
    EXPECT_EQ(missingFields(inLayer(sRows)), "");
    world.pHost->faults().clear();
    world.pMapDocument->setFocusMap(nullptr);
    EXPECT_EQ(missingFields(inLayer(sRows)), "");
}

TEST_F(Refusals, OfRelationshipClassesThatDoNotLeadFromTheRows) {
    world.pWorkspace->add(MemoryRelationshipClass::make({.sName = "RoadSigns",
                                                         .lCardinality = 2,
                                                         .sOriginClassName = "ROADS",
                                                         .sDestinationClassName = "SIGNS",
                                                         .sOriginPrimaryKey = "ROUTE_ID",
                                                         .sOriginForeignKey = "ROUTE_ID"}));
    world.pWorkspace->add(world.pSigns);
    const auto followed = [&](const std::string& sClass) {
        return missingFields(inLayer("<r Name='R' DataSource='Feature' Entries='Multiple'><s Name='S' "
                                     "DataSource='RelatedTable' h:Rows='Each' h:Relationship='" +
                                     sClass + "'><n Name='N' h:Text='{KINDS}'/></s></r>"));
    };
    EXPECT_EQ(followed("RoadSigns"), "N: the rows have no field \"KINDS\"; did you mean \"KIND\"?\n");
    EXPECT_EQ(followed("RoadSign"), "S: the data of the row around knows no relationship class \"RoadSign\"; "
                                    "did you mean \"RoadSigns\"?\n");
    EXPECT_EQ(missingFields("<s Name='S' DataSource='RelatedTable' h:Rows='Each' h:Relationship='RoadSigns'>"
                            "<n Name='N' h:Text='{KINDS}'/></s>"),
              "")
        << "no row is around";
}

} // namespace

} // namespace halvane::test
