// A node that is repeated for each row of a table.

#include "MultipleTest.h"

namespace halvane::test {
namespace {

using RepeatedRows = MultipleTest;

TEST_F(RepeatedRows, WritesOneElementPerRowOfATable) {
    EXPECT_EQ(run("<a Name='Out'><s Name='Sign' DataSource='Table' Identity='TableName' "
                  "IdentityValue='signs' Entries='Multiple'>"
                  "<k Name='K' IdentityValue='KIND'/><o Name='id' Target='Attribute' "
                  "IdentityValue='OID'/></s></a>"),
              "<Out><Sign id=\"1\"><K>Stop</K></Sign><Sign id=\"2\"><K>Yield</K></Sign></Out>");
    EXPECT_EQ(
        belowSigns(
            "<s Name='Sign' DataSource='Record' Entries='Multiple'><k Name='K' IdentityValue='KIND'/></s>"),
        "<Out><T><Sign><K>Stop</K></Sign><Sign><K>Yield</K></Sign></T></Out>");
}

TEST_F(RepeatedRows, DoesNotBindATableAnewWhileARecordIsHandedDown) {
    EXPECT_EQ(run("<a Name='Out'><s Name='Sign' DataSource='Table' Identity='TableName' "
                  "IdentityValue='SIGNS' Entries='Multiple'>"
                  "<k Name='K' DataSource='Table' IdentityValue='KIND'/><t Name='T' "
                  "DataProperty='TableName'/></s></a>"),
              "<Out><Sign><K>Stop</K><T>SIGNS</T></Sign><Sign><K>Yield</K><T>SIGNS</T></Sign></Out>");
}

TEST_F(RepeatedRows, TreatsANestedMultipleOfARecordAsAnOrdinaryChild) {
    EXPECT_EQ(
        belowSigns("<s Name='Sign' DataSource='Record' Entries='Multiple'>"
                   "<k Name='K' Entries='Multiple' IdentityValue='KIND'/>"
                   "<g Name='G' Entries='Multiple'><o Name='O' IdentityValue='OID'/></g></s>"),
        "<Out><T><Sign><K>Stop</K><G><O>1</O></G></Sign><Sign><K>Yield</K><G><O>2</O></G></Sign></T></Out>");
}

TEST_F(RepeatedRows, BindsATableNodeInsideAGroupOfARecordAnew) {
    EXPECT_EQ(belowSigns("<s Name='Sign' DataSource='Table' Entries='Multiple'><g Name='G'>"
                         "<k Name='K' IdentityValue='KIND'/></g></s>"),
              "<Out><T><Sign><G><K/></G></Sign><Sign><G><K/></G></Sign></T></Out>")
        << "the walker looks for a table named KIND; Record is the kind for leaves in groups";
}

TEST_F(RepeatedRows, HandsARowOfATableOnAsRowToo) {
    EXPECT_EQ(belowSigns("<s Name='Sign' DataSource='Record' Entries='Multiple'>"
                         "<g Name='G' DataSource='RelatedTable' Identity='LayerName' IdentityValue='Roads' "
                         "LinkField='ROUTE_ID'>"
                         "<n Name='Road' DataSource='RelatedRecord' IdentityValue='NAME'/></g></s>"),
              "<Out><T><Sign><G><Road>High Street</Road><Road>Quay</Road></G></Sign>"
              "<Sign><G><Road>High Street</Road><Road>Quay</Road></G></Sign></T></Out>");
}

TEST_F(RepeatedRows, ReadsNoRowsWithoutACurrentTable) {
    EXPECT_EQ(run("<a Name='Out'><s Name='S' DataSource='Record' Entries='Multiple'><k Name='K'/></s>"
                  "<v Name='V' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/></a>"),
              "<Out><S/><V/></Out>");
    EXPECT_EQ(state.lModErrNum, 0);
}

TEST_F(RepeatedRows, TellsOfARepeatedRecordWithoutATable) {
    below("<v Name='Leaf' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/>"
          "<v Name='Group' DataSource='Record' Entries='Multiple'><n Name='N' IdentityValue='KIND'/></v>");
    EXPECT_TRUE(observer.noticed("Leaf", Notice::NoCurrentTable));
    EXPECT_TRUE(observer.noticed("Group", Notice::NoCurrentTable));
    observer.aNotices.clear();
    belowSigns("<v Name='Leaf' DataSource='Record' Entries='Multiple' IdentityValue='KIND'/>");
    EXPECT_FALSE(observer.noticed("Leaf", Notice::NoCurrentTable));
}

TEST_F(RepeatedRows, HeedsMultipleBelowAGroupOfARecord) {
    EXPECT_EQ(belowSigns("<s Name='Sign' DataSource='Record' Entries='Multiple'><g Name='G'>"
                         "<k Name='K' Entries='Multiple'><v Name='V' IdentityValue='KIND'/></k></g></s>"),
              "<Out><T><Sign><G><K><V>Stop</V></K><K><V>Yield</V></K></G></Sign>"
              "<Sign><G><K><V>Stop</V></K><K><V>Yield</V></K></G></Sign></T></Out>");
}

TEST_F(RepeatedRows, LosesTheCurrentTableToALeafInAGroupThatNamesNone) {
    EXPECT_EQ(belowSigns(
                  "<s Name='S' DataSource='Table' Entries='Multiple'><b Name='B' IdentityValue='KIND'/>"
                  "<g Name='G'><k Name='K' IdentityValue='KIND'/></g><c Name='C' IdentityValue='KIND'/></s>"),
              "<Out><T><S><B>Stop</B><G><K/></G><C/></S><S><B/><G><K/></G><C/></S></T></Out>");
}

} // namespace
} // namespace halvane::test
