// Conditions, and what is left out without content.

#include "exporters/second/SecondEditionTest.h"
#include "host/memory/Subtypes.h"

#include <gmock/gmock.h>

namespace halvane::test {
namespace {

class LeavingOut : public SecondEditionTest {
protected:
    void addSubtypes() {
        auto pSubtypes = std::make_shared<host::memory::MemorySubtypes>("LANES", 2);
        pSubtypes->addSubtype(2, "Street");
        pSubtypes->addSubtype(4, "Avenue");
        world.pRoads->setSubtypes(pSubtypes);
    }
};

TEST_F(LeavingOut, WritesANodeOnlyWhereItsConditionHolds) {
    EXPECT_EQ(inRoads("<n Name='N' h:When=\"LANES &gt; 1 and ROUTE_ID in ('R17', 'R19')\" h:Text='{NAME}'/>"),
              "<R><N>High Street</N></R><R/><R><N>Quay</N></R>");
    EXPECT_EQ(inRoads("<g Name='G' h:When='WIDTH &gt; 8'><n Name='N' IdentityValue='NAME'/></g>"),
              "<R/><R/><R><G><N>Quay</N></G></R>")
        << "nothing for an unknown width";
    EXPECT_EQ(in("<a Name='A' h:When='1'/><b Name='B' h:When='null'/><c Name='C' h:When='0'/>"), "<A/>");
    EXPECT_EQ(inRoads("<n Name='n' Target='Attribute' h:When='LANES = 1' h:Text='{NAME}'/>"),
              "<R/><R n=\"Mill Lane\"/><R/>");
}

TEST_F(LeavingOut, BindsNothingWhereTheConditionDoesNotHold) {
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:When='0'/>"
                 "<n Name='N' h:Text='{$Layer}'/>"),
              "<N/>");
}

TEST_F(LeavingOut, LeavesTheMeaningOfALeafInARowAsItIs) {
    EXPECT_EQ(in("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'>"
                 "<r Name='R' DataSource='Table' Entries='Multiple'>"
                 "<k Name='K' IdentityValue='KIND' h:When='1'/><l Name='L' IdentityValue='LANES'/></r></t>"),
              "<T><R><K>Stop</K><L>2</L></R><R><K>Yield</K><L>4</L></R></T>");
    EXPECT_EQ(inRoads("<k Name='K' DataSource='Relationship' h:When='1'/>"),
              "<R><K/></R><R><K/></R><R><K/></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(LeavingOut, TestsARepeatedNodeOnceBeforeItsItems) {
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<r Name='R' DataSource='Feature' Entries='Multiple' h:When=\"$Layer = 'Roads'\">"
                 "<n Name='N' IdentityValue='LANES'/></r></l>"),
              "<L><R><N>2</N></R><R><N>1</N></R><R><N>4</N></R></L>");
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<r Name='R' DataSource='Feature' Entries='Multiple' h:When='0'/></l>"),
              "<L/>");
}

TEST_F(LeavingOut, TellsOfAConditionThatCannotBeComputed) {
    EXPECT_EQ(in("<a Name='A' h:When='nowhere = 1'/><b Name='B'/>"), "<B/>");
    EXPECT_EQ(failures(), "A: no row is at hand that \"nowhere\" could be a field of\n");
}

TEST_F(LeavingOut, OmitsElementsAndAttributesWithoutContent) {
    EXPECT_EQ(inRoads("<w Name='W' IdentityValue='WIDTH' h:Omit='Empty'/>"),
              "<R><W>7.25</W></R><R/><R><W>12.125</W></R>");
    EXPECT_EQ(inRoads("<w Name='w' Target='Attribute' IdentityValue='WIDTH' h:Omit='Empty'/>"),
              "<R w=\"7.25\"/><R/><R w=\"12.125\"/>");
    EXPECT_EQ(
        inRoads(
            "<w Name='w' Target='Attribute' h:Text='{WIDTH}' h:Omit='Empty'/><v Name='V' h:Text='{WIDTH}' "
            "h:Omit='Empty'/>"),
        "<R w=\"7.25\"><V>7.25</V></R><R/><R w=\"12.125\"><V>12.125</V></R>");
}

TEST_F(LeavingOut, OmitsAnAttributeWhoseLastValueIsEmpty) {
    const auto zoneOf = [&](const std::string& sDescription) {
        world.pTownMap->setSpatialReference(host::memory::MemorySpatialReference::make(sDescription));
        return in("<m Name='M' h:ForEach='Map' h:When=\"$Map = 'Town Map'\">"
                  "<z Name='z' Target='Attribute' DataProperty='SPATIALREFERENCE.ZONE' h:Omit='Empty'/></m>");
    };
    EXPECT_EQ(zoneOf("Zone 15"), "<M z=\"15\"/>");
    EXPECT_EQ(zoneOf("Zone 15\nZone"), "<M/>");
    EXPECT_EQ(zoneOf("Zone\nZone 15"), "<M z=\"15\"/>");
}

TEST_F(LeavingOut, OmitsElementsWhoseChildrenAreOmitted) {
    const std::string sInner = "<g Name='G' h:Omit='Empty'><u Name='u' Target='Attribute' h:Text='m'/>"
                               "<w Name='W' h:Text='{WIDTH}' h:Omit='Empty'/></g>";
    EXPECT_EQ(inRoads(sInner), "<R><G u=\"m\"><W>7.25</W></G></R><R/><R><G u=\"m\"><W>12.125</W></G></R>");
    EXPECT_EQ(inRoads("<o Name='O' h:Omit='Empty'>" + sInner + "</o>"),
              "<R><O><G u=\"m\"><W>7.25</W></G></O></R><R/><R><O><G u=\"m\"><W>12.125</W></G></O></R>");
}

TEST_F(LeavingOut, TakesADefinitionThatIsEmptyForNoContent) {
    addSubtypes();
    const std::string sRoads = "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' "
                               "h:Omit='Self'>";
    const std::string sEmpty =
        "<s Name='s' Target='Attribute' DataSource='SubType' DataProperty='FieldName'/>";
    EXPECT_EQ(in(sRoads + "<g Name='G' h:Omit='Empty'>" + sEmpty + "</g></l>"), "");
    EXPECT_EQ(in(sRoads + "<g Name='G' h:Omit='Empty' DataSource='SubType' Entries='Multiple'>" + sEmpty +
                 "</g></l>"),
              "");
    EXPECT_EQ(in(sRoads + "<g Name='G' h:Omit='Empty'><s Name='s' Target='Attribute' DataSource='SubType' "
                          "DataProperty='SubTypeFieldName'/></g></l>"),
              "<G s=\"LANES\"/>");
}

TEST_F(LeavingOut, WritesDefinitionsIntoTheElementAroundADissolvedNode) {
    addSubtypes();
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<s Name='S' DataSource='SubType' Entries='Multiple' h:Omit='Self'>"
                 "<n Name='N' DataProperty='SubTypeCode'/></s></l>"),
              "<L><N>2</N><N>4</N></L>");
}

TEST_F(LeavingOut, CountsAWrittenChildAndAnAttributeOfAValueAsContent) {
    EXPECT_EQ(in("<a Name='A' h:Omit='Empty'><b Name='B'/></a>"), "<A><B/></A>");
    EXPECT_EQ(inRoads("<g Name='G' h:Omit='Empty'><w Name='w' Target='Attribute' h:Text='{WIDTH}'/></g>"),
              "<R><G w=\"7.25\"/></R><R/><R><G w=\"12.125\"/></R>");
    EXPECT_EQ(in("<a Name='A' h:Omit='Empty'><b Name='b' Target='Attribute' h:Text='constant'/></a>"), "");
}

TEST_F(LeavingOut, OmitsItemsWithoutContent) {
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<w Name='W' DataSource='Feature' Entries='Multiple' h:Text='{WIDTH}' h:Omit='Empty'/></l>"),
              "<L><W>7.25</W><W>12.125</W></L>");
    EXPECT_EQ(
        in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
           "<r Name='R' DataSource='Feature' Entries='Multiple' h:Omit='Empty'><w Name='W' h:Text='{WIDTH}' "
           "h:Omit='Empty'/></r></l>"),
        "<L><R><W>7.25</W></R><R><W>12.125</W></R></L>");
}

TEST_F(LeavingOut, WritesWhatStandsInADissolvedNodeIntoTheElementAround) {
    EXPECT_EQ(
        in("<a Name='A'><b h:Omit='Self'><c Name='c' Target='Attribute' h:Text='1'/><d Name='D'/></b></a>"),
        "<A c=\"1\"><D/></A>");
    EXPECT_EQ(
        in("<a Name='A'><b h:Omit='Self' h:Text='one '/><c Name='C'/><b h:Omit='Self' h:Text=' two'/></a>"),
        "<A>one <C/> two</A>");
    EXPECT_EQ(
        in("<l Name='L' h:Omit='Self' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
           "<r h:Omit='Self' DataSource='Feature' Entries='Multiple'><n Name='N' h:Text='{NAME}'/></r></l>"),
        "<N>High Street</N><N>Mill Lane</N><N>Quay</N>");
}

TEST_F(LeavingOut, PutsNoLineBreakBesideATextOfItemsThatDissolve) {
    const std::string sLayer = "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                               "<r DataSource='Feature' Entries='Multiple' h:Omit='Self' ";
    EXPECT_EQ(in(sLayer + "h:Text='{LANES} '><n Name='N'/></r></l>"), "<L>2 <N/>1 <N/>4 <N/></L>");
    EXPECT_EQ(in(sLayer + "><n Name='N'/><t h:Omit='Self' h:Text=' {LANES}'/></r></l>"),
              "<L><N/> 2<N/> 1<N/> 4</L>");
}

TEST_F(LeavingOut, MakesNoElementOfARepeatedNodeBeforeItsFirstItem) {
    const std::string sTable = "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='POSTS'>";
    world.pTownMap->addTable(world.pPosts);
    EXPECT_EQ(in(sTable + "<r Name='R' DataSource='Record' Entries='Multiple'><n Name='N'/></r></t>"),
              "<T><R/></T>");
    EXPECT_EQ(
        in(sTable + "<r Name='R' DataSource='Record' Entries='Multiple' h:When='1'><n Name='N'/></r></t>"),
        "<T/>");
}

TEST_F(LeavingOut, TakesTheRowAtHandForTheItemOfANodeThatRepeatsIt) {
    const std::string sLeaf = "<w Name='W' DataSource='Feature' Entries='Multiple' Identity='FieldName' "
                              "IdentityValue='WIDTH'";
    EXPECT_EQ(inRoads(sLeaf + " h:When='1'/>"), inRoads(sLeaf + "/>"));
    EXPECT_EQ(inRoads(sLeaf + " h:Omit='Empty'/>"), "<R><W>7.25</W></R><R/><R><W>12.125</W></R>");
    EXPECT_EQ(inRoads("<g Name='G' Entries='Multiple' h:When='1'><n Name='N' h:When='0'/></g>"),
              "<R><G/></R><R><G/></R><R><G/></R>");
}

TEST_F(LeavingOut, MakesNoElementForDefinitionsThatThereAreNone) {
    const auto inLayer = [&](const std::string& sNode) {
        return in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>" + sNode +
                  "<n Name='N'/></x></l>");
    };
    const std::string sNode = "<x Name='X' Entries='Multiple' DataSource=";
    EXPECT_EQ(inLayer(sNode + "'SubType'>"), "<L><X/></L>");
    EXPECT_EQ(inLayer(sNode + "'SubType' h:When='1'>"), "<L/>");
    EXPECT_EQ(inLayer(sNode + "'WorkspaceDomain' h:When='1'>"), "<L/>");
    EXPECT_EQ(inLayer(sNode + "'Relationship' h:When='1'>"), "<L/>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(in(sNode + "'Relationship' h:When='1'><n Name='N'/></x>"), "");
    EXPECT_THAT(failures(), ::testing::StartsWith("X: there is no workspace"));
}

TEST_F(LeavingOut, StreamsItems) {
    const std::string sLayer = "<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                               "<r Name='R' DataSource='Feature' Entries='Multiple'>";
    const std::string sText =
        "<n Name='n' Target='Attribute' h:Text='{NAME}'/><w Name='W' h:Omit='Empty' h:Text='{WIDTH}'/>"
        "<s h:Omit='Self' h:When='LANES &gt; 1'><l Name='L' h:Text='{LANES}'/></s>";
    EXPECT_EQ(in(sLayer + sText + "</r></l>"),
              "<L><R n=\"High Street\"><W>7.25</W><L>2</L></R><R n=\"Mill Lane\"/>"
              "<R n=\"Quay\"><W>12.125</W><L>4</L></R></L>");
    const auto oDocument = dom::Document::create();
    ASSERT_TRUE(
        oDocument->loadXML("<c xmlns:h='urn:halvane:control:2' Name='O'>" + sLayer + sText + "</r></l></c>"));
    const ControlTree tree(oDocument->documentElement(), ControlTree::Root::OfDocument, *oDocument, true, {},
                           &edition);
    EXPECT_TRUE(tree.root().pFirstChild->pFirstChild->bItemsStream);
}

TEST_F(LeavingOut, PutsAValueBehindWhatTheElementAroundHolds) {
    const std::string sRoads = "DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' ";
    EXPECT_EQ(in("<a Name='A'><t h:Omit='Self' h:Text='n='/><w Name='W' h:Text='w'/><b h:Omit='Self' " +
                 sRoads + "DataProperty='FeatureCount'/><c h:Omit='Self' " + sRoads +
                 "DataProperty='FeatureCount'/></a>"),
              "<A>n=<W>w</W>33</A>");
    EXPECT_EQ(
        inRoads("<t h:Omit='Self' h:Text='x'/><n h:Omit='Self' IdentityValue='NAME'/><m Name='M' h:Text='y'/>"
                "<o h:Omit='Self' IdentityValue='LANES'/>")
            .substr(0, 35),
        "<R>xHigh Street<M>y</M>2</R><R>xMil");
    EXPECT_EQ(failures(), "");
}

TEST_F(LeavingOut, LetsTwoNodesWithOppositeConditionsWriteOneAttribute) {
    EXPECT_EQ(in("<a Name='A'><b Name='k' Target='Attribute' h:When='0' h:Text='one'/>"
                 "<c Name='k' Target='Attribute' h:When='1' h:Text='other'/></a>"),
              "<A k=\"other\"/>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(in("<a Name='A'><b Name='k' Target='Attribute' h:When='1' h:Text='one'/>"
                 "<c Name='k' Target='Attribute' h:Text='other'/></a>"),
              "<A k=\"other\"/>");
    EXPECT_NE(failures(), "") << "both are written";
    EXPECT_EQ(in("<a Name='A'><g h:Omit='Self'><b Name='k' Target='Attribute' h:When='0' h:Text='one'/></g>"
                 "<g h:Omit='Self'><c Name='k' Target='Attribute' h:When='1' h:Text='other'/></g></a>"),
              "<A k=\"other\"/>");
}

} // namespace

TEST_F(LeavingOut, RefusesAttributesThatWouldComeTooLateOrTwice) {
    const std::string sAttribute = "<k Name='k' Target='Attribute' h:Text='1'/>";
    const std::string sLate =
        "not saved: Name=\"k\": the attribute would follow content of its element; put its node "
        "before what writes that";
    const std::string sTwice =
        "not saved: Name=\"k\": its element would get the attribute twice; leave one of them out";
    EXPECT_EQ(in("<a Name='A'><b Name='B' h:Text=''/><d h:Omit='Self'>" + sAttribute + "</d></a>"), sLate);
    EXPECT_EQ(in("<a Name='A'><d h:Omit='Self' h:Text='x'/><d h:Omit='Self'>" + sAttribute + "</d></a>"),
              sLate);
    EXPECT_EQ(in("<a Name='A'><d h:Omit='Self'><b Name='B' h:Text=''/>" + sAttribute + "</d></a>"), sLate);
    EXPECT_EQ(in("<a Name='A'>" + sAttribute + "<d h:Omit='Self'>" + sAttribute + "</d></a>"), sTwice);
    EXPECT_EQ(in("<a Name='A'><d h:Omit='Self' h:ForEach='Layer'>" + sAttribute + "</d></a>"), sTwice);
    EXPECT_EQ(in("<a Name='A'><d h:Omit='Self' h:Text='x'><b Name='B' h:Text=''/>" + sAttribute + "</d></a>"),
              "<A k=\"1\">x<B/></A>")
        << "attributes stand before the text of their node";
}

TEST_F(LeavingOut, RefusesToClimbFurtherThanThereAreRows) {
    const std::string sRefused = "\"NAME\" is asked of a row further out than there is any";
    EXPECT_THAT(inRoads("<n Name='N' h:Text='{../NAME}'/>"), ::testing::HasSubstr(sRefused));
    EXPECT_THAT(inRoads("<n Name='N' h:When='../NAME is null' h:Text='x'/>"), ::testing::HasSubstr(sRefused));
    EXPECT_THAT(
        inRoads(
            "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
            "LinkField='ROUTE_ID' h:Where=\"KIND = {../NAME}\" h:Text='x'/>"),
        ::testing::HasSubstr(sRefused));
    EXPECT_THAT(
        inRoads(
            "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
            "LinkField='ROUTE_ID' h:When='../NAME = 1' h:Text='{../NAME}'/>"),
        ::testing::HasSubstr(sRefused));
}

} // namespace halvane::test
