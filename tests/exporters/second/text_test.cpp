#include "exporters/second/SecondEditionTest.h"

#include <gmock/gmock.h>

namespace halvane::test {
namespace {

using ::testing::HasSubstr;

class SecondEditionTexts : public SecondEditionTest {};

TEST_F(SecondEditionTexts, AreConstants) {
    EXPECT_EQ(in("<a Name='A' h:Text='plain'/><b Name='B' h:Text='{{b}'/><c Name='C' h:Text=''/>"),
              "<A>plain</A><B>{b}</B><C/>");
    EXPECT_EQ(in("<a Name='A'><b Name='b' Target='Attribute' h:Text='&lt;1&gt;'/></a>"),
              "<A b=\"&lt;1&gt;\"/>");
}

TEST_F(SecondEditionTexts, HoldTheFieldsOfTheRow) {
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{NAME}'/>"),
              "<R><N>High Street</N></R><R><N>Mill Lane</N></R><R><N>Quay</N></R>");
    EXPECT_EQ(inRoads("<n Name='n' Target='Attribute' h:Text='{NAME}: {LANES}'/>"),
              "<R n=\"High Street: 2\"/><R n=\"Mill Lane: 1\"/><R n=\"Quay: 4\"/>");
}

TEST_F(SecondEditionTexts, WriteAFieldAsTheFirstEditionDoes) {
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{WIDTH}'/><o Name='O' h:Text='{OPENED}'/>"),
              inRoads("<n Name='N' IdentityValue='WIDTH'/><o Name='O' IdentityValue='OPENED'/>"));
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{OBJECTID}' />"), "<R><N>1</N></R><R><N>2</N></R><R><N>3</N></R>");
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{WIDTH}' DecimalPlace='1'/>"),
              inRoads("<n Name='N' IdentityValue='WIDTH' DecimalPlace='1'/>"));
}

TEST_F(SecondEditionTexts, ComputeWhatIsNoPlainField) {
    EXPECT_EQ(inRoads("<n Name='N' h:Text=\"{upper(NAME)}-{printf('%03d', LANES * 2)}\"/>"),
              "<R><N>HIGH STREET-004</N></R><R><N>MILL LANE-002</N></R><R><N>QUAY-008</N></R>");
    EXPECT_EQ(inRoads("<n Name='N' h:Text=\"{coalesce(WIDTH, 'unknown')}\"/>"),
              "<R><N>7.25</N></R><R><N>unknown</N></R><R><N>12.125</N></R>");
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{WIDTH / 3}' DecimalPlace='2'/>"),
              "<R><N>2.42</N></R><R><N/></R><R><N>4.04</N></R>");
    EXPECT_EQ(inRoads("<n Name='N' h:Text=\"{coalesce(OPENED, '-')}\"/>"),
              "<R><N>2001-02-03</N></R><R><N>-</N></R><R><N>1999-12-31</N></R>");
}

TEST_F(SecondEditionTexts, KnowTheObjectsAtHand) {
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<t Name='T' h:Text='{$Layer} of {$Map} on {$Date} at {$DateTime} by {$who}'/></l>"),
              "<L><T>Roads of Town Map on 2023-11-14 at 2023-11-14T22:13:20Z by O'Brien</T></L>");
    EXPECT_EQ(inRoads("<n Name='n' Target='Attribute' h:Text='{$Item}'/>"),
              "<R n=\"1\"/><R n=\"2\"/><R n=\"3\"/>");
    EXPECT_EQ(in("<t Name='T' h:Text='{$Layer}{$Table}'/>"), "<T/>");
    EXPECT_EQ(in("<t Name='T' h:Text=\"{length($who) || substr($Date, 1, 4)}\"/>"), "<T>72023</T>");
}

TEST_F(SecondEditionTexts, StandBetweenAttributesAndElements) {
    const char* const sExpected = "<A b=\"1\">text<C/></A>";
    EXPECT_EQ(in("<a Name='A' h:Text='text'><c Name='C'/><b Name='b' Target='Attribute' h:Text='1'/></a>"),
              sExpected);
    EXPECT_EQ(
        inRoads("<b Name='b' Target='Attribute' h:Text='1'/><x Name='X' h:Text='{NAME}'><c Name='C'/></x>"),
        "<R b=\"1\"><X>High Street<C/></X></R><R b=\"1\"><X>Mill Lane<C/></X></R><R "
        "b=\"1\"><X>Quay<C/></X></R>");
}

TEST_F(SecondEditionTexts, StandInEachItemOfARepeatedNode) {
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<n Name='N' DataSource='Feature' Entries='Multiple' h:Text='{NAME}'/></l>"),
              "<L><N>High Street</N><N>Mill Lane</N><N>Quay</N></L>");
    EXPECT_EQ(in("<t Name='T' DataSource='Table' Identity='TableName' IdentityValue='SIGNS'>"
                 "<s Name='S' DataSource='Record' Entries='Multiple' h:Text='{KIND}'><k Name='K' "
                 "h:Text='{$Table}'/></s></t>"),
              "<T><S>Stop<K>SIGNS</K></S><S>Yield<K>SIGNS</K></S></T>");
}

TEST_F(SecondEditionTexts, FillTheAttributeOfARepeatedNode) {
    EXPECT_EQ(
        inRoads("<n Name='n' Target='Attribute' DataSource='Feature' Entries='Multiple' h:Text='{NAME}'/>"),
        "<R n=\"High Street\"/><R n=\"Mill Lane\"/><R n=\"Quay\"/>");
}

TEST_F(SecondEditionTexts, TellOfFieldsThatTheRowLacks) {
    EXPECT_EQ(inRoads("<n Name='N' h:Text='{NAMES}'/>"), "<R><N/></R><R><N/></R><R><N/></R>");
    EXPECT_TRUE(observer.noticed("N", Notice::FieldNotFound));
    EXPECT_EQ(in("<n Name='N' h:Text='{NAME}'/>"), "");
    EXPECT_EQ(failures(), "N: no row is at hand that \"NAME\" could be a field of\n");
}

TEST_F(SecondEditionTexts, BindNothing) {
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<x Name='X' DataSource='MapLayer' Identity='LayerName' IdentityValue='Nowhere' h:Text='x'/>"
                 "<n Name='N' DataProperty='LayerName'/></l>"),
              "<L><X>x</X><N>Roads</N></L>");
}

TEST_F(SecondEditionTexts, AreRefusedBeforeAnythingIsWritten) {
    EXPECT_EQ(in("<a Name='A' h:Text='{a b}'/>"),
              "not saved: h:Text=\"{a b}\": an operator or the closing brace is missing before \"b}\"");
    EXPECT_EQ(in("<a Name='A' h:Text='{$Dat}'/>"),
              "not saved: h:Text=\"{$Dat}\": \"$Dat\" has no value: did you mean \"Date\"?");
    EXPECT_EQ(in("<a Name='A' h:Test='a'/>"),
              "not saved: h:Test=\"a\": is no attribute of the second edition: did you mean \"Text\"?");
    EXPECT_THAT(out("<a Name='A'/>", "h:Text='a'"), HasSubstr("the root is always written"));
}

TEST_F(SecondEditionTexts, AreNothingToTheFirstEdition) {
    const std::string sControl = "<c xmlns:h='urn:halvane:control:2' Name='Out'><a Name='A' h:Text='{'/></c>";
    EXPECT_EQ(run(sControl), "<Out><A/></Out>");
    state.options.pSecondEdition = &edition;
    EXPECT_EQ(run("<c xmlns:h='urn:halvane:control:1' Name='Out'><a Name='A' h:Text='{'/></c>"),
              "<Out><A/></Out>");
}

} // namespace
} // namespace halvane::test
