// h:Group.

#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {

namespace {

using namespace host;
using namespace host::memory;

class SecondEditionGroups : public SecondEditionTest {
protected:
    std::string grouped(const std::string& sAttributes, const std::string& sNodes) {
        return in("<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
                  "<g Name='G' DataSource='Feature' Entries='Multiple' " +
                  sAttributes + ">" + sNodes + "</g></l>");
    }
    std::string valuesOf(const std::string& sText) {
        return grouped("h:Group='ROUTE_ID'", "<v Name='V' h:Text='" + sText + "'/>");
    }
};

TEST_F(SecondEditionGroups, AreAnItemForEachValue) {
    EXPECT_EQ(grouped("h:Group='ROUTE_ID'",
                      "<k Name='k' Target='Attribute' h:Text='{ROUTE_ID}'/>"
                      "<r Name='R' DataSource='Feature' h:Rows='Each' h:Text='{NAME} {$Item}'/>"),
              "<G k=\"R17\"><R>High Street 1</R><R>Quay 2</R></G><G k=\"R18\"><R>Mill Lane 1</R></G>");
}

TEST_F(SecondEditionGroups, HaveACountAndAggregates) {
    EXPECT_EQ(
        valuesOf("{$Count} {sum(LANES)} {min(WIDTH)} {max(NAME)} {avg(LANES)} {count(WIDTH)} {count(*)}"),
        "<G><V>2 6 7.25 Quay 3 2 2</V></G><G><V>1 1  Mill Lane 1 0 1</V></G>");
    EXPECT_EQ(valuesOf("{sum(LANES * WIDTH) / $Count + max(1, 2)} {total(WIDTH)}"),
              "<G><V>33.5 19.375</V></G><G><V> 0</V></G>");
    EXPECT_EQ(failures(), "");
}

TEST_F(SecondEditionGroups, AreLeftBySomeThatGoOverAllRows) {
    EXPECT_EQ(
        grouped("h:Group='LANES &gt; 1' h:Limit='1'",
                "<r Name='R' DataSource='Feature' Entries='Multiple' h:OrderBy='NAME' h:Text='{NAME}'/>"),
        "<G><R>High Street</R><R>Mill Lane</R><R>Quay</R></G>");
    const auto pOther = host::memory::MemoryFeatureLayer::make("Again", world.pRoads);
    pOther->select({2});
    world.pTownMap->addLayer(pOther);
    EXPECT_EQ(grouped("h:Group='LANES &gt; 1' h:Limit='1'",
                      "<l DataSource='MapLayer' Identity='LayerName' IdentityValue='Again' h:Omit='Self'>"
                      "<r Name='R' DataSource='Feature' h:Rows='Each' h:Text='{NAME}'/></l>"),
              "<G><R>Mill Lane</R></G>");
}

TEST_F(SecondEditionGroups, AreComputedOverTheWholeGroupInEachOfItsRows) {
    EXPECT_EQ(grouped("h:Group='ROUTE_ID'",
                      "<r Name='R' DataSource='Feature' h:Rows='Each' h:OrderBy='NAME desc' "
                      "h:Where='LANES &gt; 1' h:Text='{NAME} {LANES} of {sum(LANES)}'/>"),
              "<G><R>Quay 4 of 6</R><R>High Street 2 of 6</R></G><G/>");
}

TEST_F(SecondEditionGroups, FollowWhereOrderAndLimit) {
    EXPECT_EQ(grouped("h:Group='ROUTE_ID' h:OrderBy='ROUTE_ID desc'", "<v Name='V' h:Text='{ROUTE_ID}'/>"),
              "<G><V>R18</V></G><G><V>R17</V></G>");
    EXPECT_EQ(grouped("h:Group='ROUTE_ID' h:Limit='1'", "<v Name='V' h:Text='{$Count}'/>"), "<G><V>2</V></G>")
        << "a limit counts groups";
    EXPECT_EQ(
        grouped("h:Group='LANES &gt; 1' h:Where='LANES &lt; 4'", "<v Name='V' h:Text='{$Item} {$Count}'/>"),
        "<G><V>1 1</V></G><G><V>2 1</V></G>");
}

TEST_F(SecondEditionGroups, PutNullsTogether) {
    EXPECT_EQ(grouped("h:Group='WIDTH &gt; 0'", "<v Name='V' h:Text='{$Count}'/>"),
              "<G><V>2</V></G><G><V>1</V></G>");
}

TEST_F(SecondEditionGroups, NestAndStandInRows) {
    EXPECT_EQ(
        inRoads(
            "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='SIGNS' h:Rows='Each' "
            "LinkField='ROUTE_ID' h:Group='LANES &gt; {LANES}'><c Name='c' Target='Attribute' "
            "h:Text='{$Count}{../NAME}'/><s Name='S' DataSource='RelatedTable' Identity='LayerName' "
            "IdentityValue='SIGNS' h:Rows='Each' h:Text='{KIND} {max(LANES)}'/></g>"),
        "<R><G c=\"1High Street\"><S>Stop 2</S></G><G c=\"1High Street\"><S>Yield 4</S></G></R><R/>"
        "<R><G c=\"2Quay\"><S>Stop 4</S><S>Yield 4</S></G></R>");
}

TEST_F(SecondEditionGroups, ComputeOfEachFieldThatIsGoneOver) {
    EXPECT_EQ(grouped("h:Group='1'", "<f Name='F' h:ForEach='Field' h:When='$Item &gt; 4' "
                                     "h:Text='{max($Value)}'/>"),
              "<G><F>4</F><F>12.125</F><F>2001-02-03</F></G>");
}

TEST_F(SecondEditionGroups, TellTheCountOfAGroupFurtherOut) {
    EXPECT_EQ(grouped("h:Group='ROUTE_ID'",
                      "<k Name='K' DataSource='Feature' h:Rows='Each' h:Group='LANES' "
                      "h:Text='{$Count} of {../$Count}'><r Name='R' DataSource='Feature' h:Rows='Each' "
                      "h:Text='{../$Count} of {../../$Count}, {../../$Item}'/></k>"),
              "<G><K>1 of 2<R>1 of 2, 1</R></K><K>1 of 2<R>1 of 2, 1</R></K></G>"
              "<G><K>1 of 1<R>1 of 1, 2</R></K></G>");
    EXPECT_EQ(valuesOf("{../$Count}"),
              "not saved: h:Text=\"{../$Count}\": \"$Count\" is about a group of rows; "
              "the row further out is in none");
}

TEST_F(SecondEditionGroups, TellOfSumsThatAreTooLarge) {
    EXPECT_EQ(valuesOf("{sum(9223372036854775807)}"), "<G/><G><V>9223372036854775807</V></G>");
    EXPECT_EQ(failures(), "V: the sum is larger than a whole number can be\n");
}

TEST_F(SecondEditionGroups, GoOnWithTheirRowsWhereAnAggregateFails) {
    EXPECT_EQ(grouped("h:Group='ROUTE_ID'",
                      "<r Name='R' DataSource='Feature' h:Rows='Each'><s Name='S' "
                      "h:Text='{sum(abs(-9223372036854775807 - "
                      "1))}'/><n Name='N' h:Text='{NAME}'/></r><m Name='M' h:Text='{NAME}'/>"),
              "<G><R><N>High Street</N></R><R><N>Quay</N></R><M>High Street</M></G>"
              "<G><R><N>Mill Lane</N></R><M>Mill Lane</M></G>");
    EXPECT_NE(failures(), "");
}

TEST_F(SecondEditionGroups, AreWhatAggregatesNeed) {
    EXPECT_EQ(
        in("<a Name='A' h:Text='{sum(X)}'/>"),
        "not saved: h:Text=\"{sum(X)}\": \"sum\" is about a group of rows; a node around needs h:Group");
    EXPECT_EQ(
        in("<a Name='A' h:Text='{$Count}'/>"),
        "not saved: h:Text=\"{$Count}\": \"$Count\" is about a group of rows; a node around needs h:Group");
    for (const std::string sBefore : {"h:Where='count(NAME) &gt; 1'", "h:OrderBy='count(NAME)'"})
        EXPECT_THAT(grouped("h:Group='ROUTE_ID' " + sBefore, ""),
                    ::testing::EndsWith(
                        "\"count\" is about a group of rows; rows are chosen and ordered before they are "
                        "grouped"));
    EXPECT_EQ(
        grouped("h:Group='ROUTE_ID'", "<v Name='V' h:Text='{sum(max(LANES))}'/>"),
        "not saved: h:Text=\"{sum(max(LANES))}\": a function of the rows of a group, \"max\", stands in "
        "another one");
}

} // namespace

} // namespace halvane::test
