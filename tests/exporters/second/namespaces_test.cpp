#include "exporters/second/SecondEditionTest.h"

namespace halvane::test {
namespace {

class SecondEditionNamespaces : public SecondEditionTest {};

TEST_F(SecondEditionNamespaces, AreDeclaredByWhatDefinitionsWrite) {
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads' h:Omit='Self'>"
                 "<f Name='F' DataSource='Field' Entries='Multiple'><n xmlns:q='urn:q' Name='q:n'>"
                 "<m Name='q:m' DataProperty='FieldName'/></n></f></l>")
                  .substr(0, 51),
              "<F><q:n xmlns:q=\"urn:q\"><q:m>OID</q:m></q:n><q:n xm");
}

TEST_F(SecondEditionNamespaces, OfTheRootAreDeclaredOnTheDocumentsRoot) {
    EXPECT_EQ(out("<a Name='A'/>", "xmlns='urn:d' xmlns:p='urn:p'"),
              "<Out xmlns=\"urn:d\" xmlns:p=\"urn:p\"><A/></Out>");
    EXPECT_EQ(out("<a Name='p:A'><b Name='p:b' Target='Attribute' h:Text='1'/></a>", "xmlns:p='urn:p'"),
              "<Out xmlns:p=\"urn:p\"><p:A p:b=\"1\"/></Out>");
}

TEST_F(SecondEditionNamespaces, OfTheControlFileAreNotThoseOfTheDocument) {
    prepare();
    state.options.pSecondEdition = &edition;
    EXPECT_EQ(run("<c xmlns='urn:halvane:control:2' xmlns:h='urn:halvane:control:2' Name='Out'>"
                  "<a Name='A' h:Text='a'/></c>"),
              "<Out><A>a</A></Out>");
}

TEST_F(SecondEditionNamespaces, OfOtherElementsAreDeclaredWhereTheyAreUsed) {
    EXPECT_EQ(out("<g Name='G' xmlns:p='urn:p'><a Name='p:A'><b Name='p:B'/></a><c Name='p:C'/></g>"),
              "<Out><G><p:A xmlns:p=\"urn:p\"><p:B/></p:A><p:C xmlns:p=\"urn:p\"/></G></Out>");
    EXPECT_EQ(out("<g Name='G' xmlns:p='urn:p'><a Name='p:a' Target='Attribute' h:Text='1'/>"
                  "<b Name='p:b' Target='Attribute' h:Text='2'/><c Name='p:C'/></g>"),
              "<Out><G xmlns:p=\"urn:p\" p:a=\"1\" p:b=\"2\"><p:C/></G></Out>");
}

TEST_F(SecondEditionNamespaces, ThatAreBoundAgainAreDeclaredAtTheElement) {
    EXPECT_EQ(out("<a Name='p:A' xmlns:p='urn:q'><b Name='p:B'/></a><c Name='p:C'/>", "xmlns:p='urn:p'"),
              "<Out xmlns:p=\"urn:p\"><p:A xmlns:p=\"urn:q\"><p:B/></p:A><p:C/></Out>");
    EXPECT_EQ(out("<a Name='A' xmlns=''><b Name='B' xmlns='urn:e'/></a>", "xmlns='urn:d'"),
              "<Out xmlns=\"urn:d\"><A xmlns=\"\"><B xmlns=\"urn:e\"/></A></Out>");
}

TEST_F(SecondEditionNamespaces, ThatAreBoundAgainLeaveARepeatedNodeOfTheFirstEditionAsItIs) {
    EXPECT_EQ(out("<a Name='p:A' Entries='Multiple' xmlns:p='urn:q'/>", "xmlns:p='urn:p'"),
              "<Out xmlns:p=\"urn:p\"><p:A xmlns:p=\"urn:q\"/></Out>")
        << "its element stands before there is an item";
    EXPECT_EQ(out("<a Name='p:A' Entries='Multiple' xmlns:p='urn:q' h:When='1'/>", "xmlns:p='urn:p'"),
              "<Out xmlns:p=\"urn:p\"/>");
}

TEST_F(SecondEditionNamespaces, OfADissolvedNodeAreDeclaredAtWhatItHolds) {
    EXPECT_EQ(out("<a h:Omit='Self' xmlns:p='urn:p'><b Name='p:B'/></a>"),
              "<Out><p:B xmlns:p=\"urn:p\"/></Out>");
    EXPECT_EQ(out("<w Name='W'><a h:Omit='Self' xmlns:p='urn:p'><b Name='p:b' Target='Attribute' "
                  "h:Text='1'/></a></w>"),
              "<Out><W xmlns:p=\"urn:p\" p:b=\"1\"/></Out>");
}

TEST_F(SecondEditionNamespaces, OfVerticesAreDeclaredOnceAroundThem) {
    const auto written = [&](const std::string& sAttributes) {
        return in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'><w Name='W'>"
                  "<v Name='p:V' xmlns:p='urn:p' DataSource='Geometry.Vertice' Entries='Multiple' " +
                  sAttributes + "><x Name='X'/></v></w></l>")
            .substr(0, 60);
    };
    EXPECT_EQ(written(""), "<L><W><p:V xmlns:p=\"urn:p\"><Part><p:V><X/></p:V><p:V><X/></p");
    EXPECT_EQ(written("h:Omit='Self'"), "<L><W><Part><p:V xmlns:p=\"urn:p\"><X/></p:V><p:V xmlns:p=\"urn");
}

TEST_F(SecondEditionNamespaces, AreDeclaredAtEachItem) {
    EXPECT_EQ(inRoads("").empty(), false);
    EXPECT_EQ(in("<l Name='L' DataSource='MapLayer' Identity='LayerName' IdentityValue='Roads'>"
                 "<r Name='p:R' xmlns:p='urn:p' DataSource='Feature' Entries='Multiple'>"
                 "<n Name='p:N' h:Text='{LANES}'/></r></l>"),
              "<L><p:R xmlns:p=\"urn:p\"><p:N>2</p:N></p:R><p:R xmlns:p=\"urn:p\"><p:N>1</p:N></p:R>"
              "<p:R xmlns:p=\"urn:p\"><p:N>4</p:N></p:R></L>");
}

TEST_F(SecondEditionNamespaces, AreRefusedWhereNothingDeclaresThem) {
    EXPECT_EQ(in("<a Name='gml:A'/>"), "not saved: Name=\"gml:A\": nothing declares the prefix \"gml\"; add "
                                       "xmlns:gml=\"…\" to the control file's root");
    EXPECT_EQ(in("<a Name='h:A'/>"),
              "not saved: Name=\"h:A\": no document is written with the control file's namespace");
    EXPECT_EQ(in("<a Name='xmlns:a' Target='Attribute' h:Text='urn:a'/>"),
              "not saved: Name=\"xmlns:a\": prefixes are declared by the control file's own declarations; "
              "leave the "
              "node out");
    EXPECT_EQ(in("<g Name='G'><a Name='p:a' Target='Attribute' xmlns:p='urn:a'/>"
                 "<b Name='p:b' Target='Attribute' xmlns:p='urn:b'/></g>"),
              "not saved: Name=\"p:b\": the prefix stands for another namespace at the element of the "
              "attribute; use "
              "another prefix");
    EXPECT_EQ(in("<a Name='A'><b Name='xml:lang' Target='Attribute' h:Text='en'/></a>"),
              "<A xml:lang=\"en\"/>");
}

} // namespace
} // namespace halvane::test
