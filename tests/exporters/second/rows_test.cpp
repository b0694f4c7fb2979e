// Rows of tables, related ones and those in an order.

#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {
namespace {

using host::FieldType;
using host::memory::field;
using host::memory::MemoryTable;

class SecondEditionRows : public SecondEditionTest {
protected:
    SecondEditionRows() {
        pBolts = MemoryTable::make("BOLTS", {field("OID", FieldType::Oid), field("KIND", FieldType::String),
                                             field("SIZE", FieldType::Integer)});
        pBolts->addRow({std::int64_t{1}, std::string("Stop"), std::int32_t{8}});
        pBolts->addRow({std::int64_t{2}, std::string("Yield"), std::int32_t{6}});
        pBolts->addRow({std::int64_t{3}, std::string("Stop"), std::int32_t{5}});
        world.pTownMap->addTable(pBolts);
    }
    static std::string related(const std::string& sAttributes, const std::string& sNodes,
                               const std::string& sTable = "SIGNS") {
        return "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='" + sTable +
               "' h:Rows='Each' " + sAttributes + ">" + sNodes + "</s>";
    }
    /// In the layer of the roads.
    std::string inLayer(const std::string& sNodes) {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>" +
                  sNodes + "</l>");
    }

    host::memory::MemoryTablePtr pBolts;
};

TEST_F(SecondEditionRows, StandInTheOrderOfDates) {
    const auto ordered = [&](const std::string& sOrder) {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
                  "<s Name='S' DataSource='Feature' h:Rows='Each' h:OrderBy='" +
                  sOrder + "' h:Text='{OPENED}'/></l>");
    };
    EXPECT_EQ(ordered("OPENED"), "<S/><S>12/31/1999</S><S>02/03/2001</S>");
    EXPECT_EQ(ordered("OPENED desc"), "<S>02/03/2001</S><S>12/31/1999</S><S/>");
}

TEST_F(SecondEditionRows, KnowTheNumbersOfTheRowsAround) {
    EXPECT_EQ(inRoads("<s Name='S' DataSource='Feature' h:Rows='Each' h:Limit='2' "
                      "h:Text='{../$Item}.{$Item}'/>"),
              "<R><S>1.1</S><S>1.2</S></R><R><S>2.1</S><S>2.2</S></R><R><S>3.1</S><S>3.2</S></R>");
    EXPECT_EQ(inRoads("<s Name='S' DataSource='Feature' h:Rows='Each' h:Where='OID = {$Item}' "
                      "h:Text='{NAME}'/>"),
              "<R><S>High Street</S></R><R><S>Mill Lane</S></R><R><S>Quay</S></R>");
    EXPECT_EQ(
        inRoads("<t Name='T' h:ForEach='Map'><s Name='S' DataSource='Feature' h:Rows='Each' h:Limit='1' "
                "h:Text='{../$Item}'/></t>"),
        "<R><T><S>1</S></T><T><S>2</S></T></R><R><T><S>1</S></T><T><S>2</S></T></R>"
        "<R><T><S>1</S></T><T><S>2</S></T></R>")
        << "the loop that the row around is the innermost of, over things, too";
}

TEST_F(SecondEditionRows, AreRefusedForNumbersThatNoRowHas) {
    EXPECT_EQ(
        inRoads("<s Name='S' DataSource='Feature' h:Rows='Each' h:Where='$Item = 1' h:Text='x'/>"),
        "not saved: h:Where=\"$Item = 1\": a row has no \"$Item\" before it is chosen and in its place; "
        "\"{$Item}\" is that of the row around");
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{../$Item}'/>"),
              "not saved: h:Text=\"{../$Item}\": \"Item\" is asked of a row further out than there is any");
    EXPECT_EQ(
        inRoads("<n Name='N' h:Text='{../$Layer}'/>"),
        "not saved: h:Text=\"{../$Layer}\": \"../\" goes to the row around; it stands before a field, $Item "
        "or $Count");
}

TEST_F(SecondEditionRows, LinkGroupsOfRelatedRowsOfTheFirstEdition) {
    const std::string sRoads = "DataSource='RelatedTable' Identity='LayerName' IdentityValue='Roads'";
    EXPECT_EQ(in("<t DataSource='Table' Identity='TableName' IdentityValue='SIGNS' h:Omit='Self'>"
                 "<s Name='S' DataSource='Record' h:Rows='Each'><k Name='K' IdentityValue='KIND'/>"
                 "<g Name='G' " +
                 sRoads +
                 " LinkField='LANES'><n Name='N' DataSource='RelatedRecord' IdentityValue='NAME'/>"
                 "<h Name='H'><n Name='N' DataSource='RelatedRecord' IdentityValue='NAME'/></h></g></s></t>"),
              "<S><K>Stop</K><G><N>High Street</N><H><N>High Street</N></H></G></S>"
              "<S><K>Yield</K><G><N>Quay</N><H><N>Quay</N></H></G></S>");
    EXPECT_EQ(
        inRoads("<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' "
                "h:Rows='Each' LinkField='ROUTE_ID' h:Limit='1'><g Name='G' " +
                sRoads +
                " LinkField='LANES'><n Name='N' DataSource='RelatedRecord' IdentityValue='NAME'/></g></s>"),
        "<R><S><G><N>High Street</N></G></S></R><R/><R><S><G><N>High Street</N></G></S></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionRows, AreAnElementForEachRelatedRow) {
    const std::string sExpected = "<R><S>Stop</S><S>Yield</S></R><R/><R><S>Stop</S><S>Yield</S></R>";
    EXPECT_EQ(inRoads(related("LinkField='ROUTE_ID'  h:Text='{KIND}'", "")), sExpected);
    EXPECT_EQ(inRoads(related("h:Link='ROUTE_ID=ROUTE_ID' h:Text='{KIND}'", "")), sExpected);
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionRows, AreTheCurrentRowOfWhatStandsInThem) {
    EXPECT_EQ(
        inRoads(related(
            "LinkField='ROUTE_ID'",
            "<k Name='k' Target='Attribute' IdentityValue='KIND'/><n Name='N' h:Text='{../NAME} {KIND}'/>"
            "<g Name='G'><h Name='H' DataSource='Feature' IdentityValue='HEIGHT'/></g>")),
        "<R><S k=\"Stop\"><N>High Street Stop</N><G><H>2.5</H></G></S>"
        "<S k=\"Yield\"><N>High Street Yield</N><G><H/></G></S></R><R/>"
        "<R><S k=\"Stop\"><N>Quay Stop</N><G><H>2.5</H></G></S>"
        "<S k=\"Yield\"><N>Quay Yield</N><G><H/></G></S></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionRows, NestToAnyDepth) {
    EXPECT_EQ(
        inRoads(related("LinkField='ROUTE_ID' h:Where='LANES = {LANES}'",
                        "<b Name='B' DataSource='RelatedTable' Identity='LayerName' IdentityValue='BOLTS' "
                        "h:Rows='Each' LinkField='KIND' h:Text='{SIZE} {../KIND} {../../NAME}'/>"
                        "<k Name='K' IdentityValue='KIND'/>")),
        "<R><S><B>8 Stop High Street</B><B>5 Stop High Street</B><K>Stop</K></S></R><R/>"
        "<R><S><B>6 Yield Quay</B><K>Yield</K></S></R>");
}

TEST_F(SecondEditionRows, MatchBySeveralKeys) {
    EXPECT_EQ(inRoads(related("h:Link='ROUTE_ID=ROUTE_ID, LANES = LANES' h:Text='{KIND}'", "")),
              "<R><S>Stop</S></R><R/><R><S>Yield</S></R>");
}

TEST_F(SecondEditionRows, MatchTextsExactlyAndNumbersAsNumbers) {
    const auto pKeys = MemoryTable::make(
        "KEYS", {field("OID", FieldType::Oid), field("T", FieldType::String), field("D", FieldType::Double)});
    pKeys->addRow({std::int64_t{1}, std::string("O'Brien"), 2.0});
    pKeys->addRow({std::int64_t{2}, std::string("x' OR '1'='1"), 4.0});
    pKeys->addRow({std::int64_t{3}, std::string("2"), Null()});
    pKeys->addRow({std::int64_t{4}, Null(), Null()});
    world.pTownMap->addTable(pKeys);
    const std::string sKeys =
        "<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='KEYS' h:Omit='Self'>"
        "<r Name='R' DataSource='Record' Entries='Multiple'>";
    const auto of = [&](const std::string& sLink, const std::string& sTable) {
        return in(sKeys + "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='" +
                  sTable + "' h:Rows='Each' h:Link='" + sLink + "' h:Text='{OBJECTID}'/></r></t>");
    };
    EXPECT_EQ(of("T=T", "KEYS"), "<R><S>1</S></R><R><S>2</S></R><R><S>3</S></R><R/>")
        << "null matches nothing";
    EXPECT_EQ(of("D=LANES", "SIGNS"), "<R><S>1</S></R><R><S>2</S></R><R/><R/>");
    EXPECT_EQ(of("T=LANES", "SIGNS"), "<R/><R/><R/><R/>") << "a text is no number";
}

TEST_F(SecondEditionRows, MayBeFilteredOrderedAndLimited) {
    const std::string sNode = "<r Name='R' DataSource='Feature' Entries='Multiple' h:Text='{NAME}' ";
    EXPECT_EQ(inLayer(sNode + "h:Where='LANES &gt; 1'/>"), "<R>High Street</R><R>Quay</R>");
    EXPECT_EQ(inLayer(sNode + "h:OrderBy='LANES desc'/>"), "<R>Quay</R><R>High Street</R><R>Mill Lane</R>");
    EXPECT_EQ(inLayer(sNode + "h:OrderBy='ROUTE_ID, LANES desc'/>"),
              "<R>Quay</R><R>High Street</R><R>Mill Lane</R>");
    EXPECT_EQ(inLayer(sNode + "h:OrderBy='ROUTE_ID'/>"), "<R>High Street</R><R>Quay</R><R>Mill Lane</R>")
        << "ties keep the order of the data";
    EXPECT_EQ(inLayer(sNode + "h:OrderBy='WIDTH'/>"), "<R>Mill Lane</R><R>High Street</R><R>Quay</R>")
        << "null comes first";
    EXPECT_EQ(inLayer(sNode + "h:Limit='2'/>"), "<R>High Street</R><R>Mill Lane</R>");
    EXPECT_EQ(inLayer(sNode + "h:OrderBy='OPENED' h:Where='OPENED is not null' h:Limit='1'/>"),
              "<R>Quay</R>");
    EXPECT_EQ(inLayer(sNode + "h:Limit='0'/>"), "");
}

TEST_F(SecondEditionRows, KeepTheirNumbersThroughACondition) {
    EXPECT_EQ(inLayer("<r Name='R' DataSource='Feature' Entries='Multiple' h:Where='LANES &gt; 1' "
                      "h:Text='{$Item} {NAME}'/>"),
              "<R>1 High Street</R><R>2 Quay</R>");
}

TEST_F(SecondEditionRows, AreReadByTheirOwnNodeWhereItHasNoChildren) {
    EXPECT_EQ(in("<t DataSource='Table' Identity='TableName' IdentityValue='SIGNS' h:Omit='Self'>"
                 "<s Name='S' DataSource='Record' IdentityValue='OBJECTID' Entries='Multiple' h:Limit='2'/>"
                 "<s Name='S' DataSource='Record' IdentityValue='KIND' Entries='Multiple' h:Limit='1'/></t>"),
              "<S>1</S><S>2</S><S>Stop</S>");
}

TEST_F(SecondEditionRows, AreGoneOverAnewWhereverTheyStand) {
    EXPECT_EQ(inRoads("<o Name='O' DataSource='Feature' Entries='Multiple' h:Where='LANES &lt; {LANES}' "
                      "h:Text='{NAME}'/>"),
              "<R><O>Mill Lane</O></R><R/><R><O>High Street</O><O>Mill Lane</O></R>");
    EXPECT_EQ(in("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'>"
                 "<r Name='R' DataSource='Record' Entries='Multiple'>"
                 "<s Name='S' DataSource='Record' Entries='Multiple' h:Where='KIND &lt;&gt; {KIND}' "
                 "h:Text='{KIND}'/></r></t>"),
              "<T><R><S>Yield</S></R><R><S>Stop</S></R></T>");
}

TEST_F(SecondEditionRows, AreThoseOfALayerFromDiskInsideItsRows) {
    EXPECT_EQ(in("<l DataSource='FeatureLayer' Identity='LayerName' IdentityValue='ROADS' "
                 "DataLocation='C:\\data\\town.mdb' h:Omit='Self'><r Name='R' DataSource='Feature' "
                 "Entries='Multiple'><o Name='O' DataSource='Feature' Entries='Multiple' "
                 "h:Where='LANES &lt; {LANES}' h:Text='{NAME}'/></r></l>"),
              "<R><O>Mill Lane</O></R><R/><R><O>High Street</O><O>Mill Lane</O></R>");
}

TEST_F(SecondEditionRows, LeaveWhatWasCurrentAsItWas) {
    EXPECT_EQ(inRoads(related("LinkField='ROUTE_ID' h:Limit='1'",
                              "<x Name='X' DataSource='MapLayer' Identity='LayerName' "
                              "IdentityValue='Water' h:Omit='Empty'/>") +
                      "<n Name='N' h:Text='{$Layer} {NAME}'/>"),
              "<R><S/><N>Roads High Street</N></R><R><N>Roads Mill Lane</N></R><R><S/><N>Roads Quay</N></R>");
}

TEST_F(SecondEditionRows, BeginEachItemWithWhatIsCurrentForAll) {
    EXPECT_EQ(inRoads(related("LinkField='ROUTE_ID' h:Where='OBJECTID &gt; 0'",
                              "<n Name='N' h:Text='{$Layer}'/><x Name='X' DataSource='MapLayer' "
                              "Identity='LayerName' IdentityValue='Water' DataProperty='LayerName'/>") +
                      "<z Name='Z' h:Text='{$Layer}'/>"),
              "<R><S><N>Roads</N><X>Water</X></S><S><N>Roads</N><X>Water</X></S><Z>Roads</Z></R>"
              "<R><Z>Roads</Z></R>"
              "<R><S><N>Roads</N><X>Water</X></S><S><N>Roads</N><X>Water</X></S><Z>Roads</Z></R>");
}

TEST_F(SecondEditionRows, CompareFieldsOfTypesThatNoClauseNarrowsDown) {
    EXPECT_EQ(
        inLayer(
            "<r Name='R' DataSource='Feature' Entries='Multiple' h:Limit='1'>"
            "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
            "h:Link='OPENED=SET_ON' h:Text='{KIND}'/></r>"),
        "<R/>");
    world.pSigns->addRow(
        {std::int64_t{3}, std::string("New"), std::string("R9"), std::int32_t{1}, Null(), Date{2001, 2, 3}});
    EXPECT_EQ(
        inLayer(
            "<r Name='R' DataSource='Feature' Entries='Multiple' h:Limit='1'>"
            "<s Name='S' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
            "h:Link='OPENED=SET_ON' h:Text='{KIND}'/></r>"),
        "<R><S>New</S></R>");
}

TEST_F(SecondEditionRows, MatchDatesWithTheirTimes) {
    world.pSigns->addRow(
        {std::int64_t{3}, std::string("Day"), std::string("R9"), std::int32_t{1}, Null(), Date{2001, 2, 3}});
    world.pSigns->addRow({std::int64_t{4}, std::string("Hour"), std::string("R9"), std::int32_t{1}, Null(),
                          Date{2001, 2, 3, 13}});
    EXPECT_EQ(inLayer("<r Name='R' DataSource='Feature' Entries='Multiple' h:Limit='1'>" +
                      related("h:Link='OPENED=SET_ON' h:Text='{KIND}'", "") + "</r>"),
              "<R><S>Day</S></R>");
}

TEST_F(SecondEditionRows, MatchByTheIdentifierWhereNoFieldBearsItsName) {
    EXPECT_EQ(inRoads(related("h:Link='OBJECTID=OBJECTID' h:Text='{KIND}'", "")),
              "<R><S>Stop</S></R><R><S>Yield</S></R><R/>");
    EXPECT_EQ(inRoads(related("h:Link='LANES=OBJECTID' h:Text='{KIND}'", "")),
              "<R><S>Yield</S></R><R><S>Stop</S></R><R/>");
    EXPECT_TRUE(observer.aNotices.empty());
}

TEST_F(SecondEditionRows, FollowTheSelection) {
    world.pRoadsLayer->select({3, 1});
    const std::string sNode = "<r Name='R' DataSource='Feature' Entries='Multiple' h:Text='{NAME}' ";
    EXPECT_EQ(inLayer(sNode + "h:Where='1'/>"), "<R>Quay</R><R>High Street</R>");
    EXPECT_EQ(inLayer(sNode + "h:OrderBy='NAME'/>"), "<R>High Street</R><R>Quay</R>");
}

TEST_F(SecondEditionRows, DissolveIntoTheElementAround) {
    EXPECT_EQ(inRoads("<s DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
                      "LinkField='ROUTE_ID' h:Omit='Self'><k Name='K' IdentityValue='KIND'/></s>"),
              "<R><K>Stop</K><K>Yield</K></R><R/><R><K>Stop</K><K>Yield</K></R>");
}

TEST_F(SecondEditionRows, StandInAnElementThatIsHeldBackForThem) {
    EXPECT_EQ(inRoads("<g Name='G' h:Omit='Empty'><o Name='O' DataSource='Feature' Entries='Multiple' "
                      "h:Where='LANES &lt;= {LANES}' h:Text='{LANES}'/></g>"),
              "<R><G><O>2</O><O>1</O></G></R><R><G><O>1</O></G></R>"
              "<R><G><O>2</O><O>1</O><O>4</O></G></R>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionRows, LeaveNothingWhereTheyDissolveWithoutContent) {
    EXPECT_EQ(inRoads("<g Name='G' h:Omit='Empty'><s DataSource='RelatedTable' Identity='LayerName' "
                      "IdentityValue='SIGNS' h:Rows='Each' LinkField='ROUTE_ID' h:Omit='Self'>"
                      "<k Name='K' h:When='../LANES = 4' h:Text='{KIND}'/></s></g>"),
              "<R/><R/><R><G><K>Stop</K><K>Yield</K></G></R>");
}

TEST_F(SecondEditionRows, AreRefusedWithoutWhatTheyNeed) {
    EXPECT_EQ(in("<a Name='A' DataSource='RelatedTable' h:Rows='Each'/>"),
              "not saved: related rows need their keys: add LinkField=\"…\", h:Link=\"…=…\" or "
              "h:Relationship=\"…\"");
    EXPECT_EQ(in("<a Name='A' DataSource='RelatedTable' LinkField='a' Entries='Multiple' h:Where='1'/>"),
              "not saved: the rows of a RelatedTable are gone over with h:Rows=\"Each\"; add it");
    EXPECT_EQ(
        in("<a Name='A' DataSource='MapLayer' h:Where='1'/>"),
        "not saved: a node that goes over rows needs the DataSource Feature, Table, Record or RelatedTable");
    EXPECT_EQ(
        in("<a Name='A' DataSource='Feature' h:Where='1'/>"),
        "not saved: a node that goes over rows is repeated: add Entries=\"Multiple\" or h:Rows=\"Each\"");
    EXPECT_EQ(in("<a Name='A' DataSource='Feature' Entries='Multiple' h:Link='a=b'/>"),
              "not saved: h:Link belongs to a node with the DataSource RelatedTable");
    EXPECT_EQ(in("<a Name='A' DataSource='Feature' Entries='Multiple' h:OrderBy='a b'/>"),
              "not saved: h:OrderBy=\"a b\": an operator or a comma is missing before \"b\"");
    EXPECT_EQ(in("<a Name='A' DataSource='RelatedTable' h:Rows='All' LinkField='a'/>"),
              "not saved: h:Rows=\"All\": it is \"Each\"");
    EXPECT_EQ(in(related("LinkField='KIND'", "<k Name='K'/>")), "");
    EXPECT_EQ(failures(),
              "S: no row is at hand that rows could be related to; put the node inside a repeated node of "
              "rows\n");
}

} // namespace
} // namespace halvane::test
