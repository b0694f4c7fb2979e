// Control files of the second edition, as those who run the program meet them.

#include "cli/Samples.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace halvane::test {

namespace {

class SecondEditionExports : public ExportFixture {
protected:
    /// A control file of the second edition over the towns.
    static std::string control(const std::string& sNodes) {
        return "<T xmlns:h=\"urn:halvane:control:2\" Name=\"Map\">\n"
               "<L DataSource=\"MapLayer\" Identity=\"LayerName\" IdentityValue=\"towns\" "
               "h:Omit=\"Self\">\n" +
               sNodes + "\n</L></T>";
    }
    static std::string towns(const std::string& sNodes) {
        return control("<E Name=\"Town\" DataSource=\"Feature\" Entries=\"Multiple\">\n" + sNodes + "\n</E>");
    }
    /// Banks and rivers of a folder, with a table of links that its map document names.
    void writeRivers() {
        std::filesystem::create_directory(program.file("water"));
        program.write("water/rivers.csv", "ID,NAME\nn,Nemea\na,Asopos\n");
        program.write("water/banks.csv", "ID,NAME\n1,North\n2,South\n");
        program.write("water/lies.csv", "BANK,RIVER\n1,n\n1,a\n2,n\n");
        program.write("map.xml",
                      "<MapDocument><Map name=\"M\"><Table source=\"water\" dataset=\"banks\"/></Map>"
                      "<Workspace source=\"water\">"
                      "<RelationshipClass name=\"flows\" origin=\"banks\" destination=\"rivers\" "
                      "cardinality=\"manyToMany\" originPrimaryKey=\"ID\" originForeignKey=\"BANK\" "
                      "destinationPrimaryKey=\"ID\" destinationForeignKey=\"RIVER\" linkTable=\"lies\"/>"
                      "<RelationshipClass name=\"joins\" origin=\"banks\" destination=\"banks\" "
                      "originPrimaryKey=\"ID\" originForeignKey=\"ID\"/></Workspace></MapDocument>");
    }
    /// A control file over the banks.
    static std::string rivers(const std::string& sNodes) {
        return "<T xmlns:h=\"urn:halvane:control:2\" Name=\"Map\">\n"
               "<L DataSource=\"Table\" Identity=\"TableName\" IdentityValue=\"banks\" h:Omit=\"Self\">\n"
               "<E Name=\"Bank\" DataSource=\"Record\" h:Rows=\"Each\">\n\n" +
               sNodes + "</E></L></T>";
    }
    static const std::vector<std::string>& arguments() {
        static const std::vector<std::string> all{"export", "--map", "towns.geojson", "second.xml",
                                                  "out.xml"};
        return all;
    }
};

} // namespace

TEST_F(SecondEditionExports, WriteTextsConditionsAndValuesOfThePerson) {
    program.write(
        "second.xml",
        towns(
            R"(<N Name="name" h:Text="{upper(NAME)} by {$who}"/><B Name="big" h:When="POP &gt; $limit + 0" h:Text=""/>)"));
    const auto result = program.run({"export", "--map", "towns.geojson", "--set", "who=Jo=Ann", "--set",
                                     "limit=300", "second.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.sOut, "Wrote " + program.file("out.xml") + " (3 items)\n");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(document("out.xml"), "<Map>\r\n<Town>\r\n<name>ABDERA by Jo=Ann</name>\r\n</Town>\r\n"
                                   "<Town>\r\n<name>BYBLOS by Jo=Ann</name>\r\n<big/>\r\n</Town>\r\n"
                                   "<Town>\r\n<name>CORINTH by Jo=Ann</name>\r\n<big/>\r\n</Town>\r\n</Map>");
}

TEST_F(SecondEditionExports, WriteRelatedRowsInAnOrder) {
    program.write("rivers.csv", "TOWN,RIVER\nCorinth,Nemea\nAbdera,Nestos\nCorinth,Asopos\n");
    program.write(
        "second.xml",
        towns("<R Name=\"river\" DataSource=\"RelatedTable\" Identity=\"LayerName\" IdentityValue=\"rivers\" "
              "h:Rows=\"Each\" h:Link=\"NAME=TOWN\" h:OrderBy=\"RIVER\" h:Text=\"{RIVER} at {../NAME}\"/>"));
    const auto result = program.run({"export", "--map", ".", "second.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(
        document("out.xml"),
        "<Map>\r\n<Town>\r\n<river>Nestos at Abdera</river>\r\n</Town>\r\n<Town/>\r\n"
        "<Town>\r\n<river>Asopos at Corinth</river>\r\n<river>Nemea at Corinth</river>\r\n</Town>\r\n</Map>");
}

TEST_F(SecondEditionExports, TellTheBeginningOfTheExport) {
    program.write("second.xml", control(R"(<D Name="d" h:Text="{$DateTime} {$Date} {date('now')}"/>)"));
    RunSettings settings;
    settings.environment = {{"SOURCE_DATE_EPOCH", "1700000000"}};
    const auto result = program.run(arguments(), settings);
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(document("out.xml"), "<Map>\r\n<d>2023-11-14T22:13:20Z 2023-11-14 2023-11-14</d>\r\n</Map>");
}

TEST_F(SecondEditionExports, AreRefusedForFieldsThatTheRowsLack) {
    const auto refused = [&](const std::string& sNodes, const std::string& sMessage) {
        program.write("second.xml", control(sNodes));
        const auto result = program.run({"export", "--map", ".", "second.xml", "new.xml"});
        EXPECT_EQ(result.sErr, "halvane: second.xml:3: the rows have no field " + sMessage + "\n") << sNodes;
        EXPECT_EQ(result.lExitCode, 2);
    };
    program.write("rivers.csv", "TOWN,RIVER\nCorinth,Nemea\n");
    const std::string sTown = "<E Name=\"Town\" DataSource=\"Feature\" Entries=\"Multiple\" ";
    refused(sTown + "><N Name=\"n\" h:Text=\"{NAMES}\"/></E>", "\"NAMES\"; did you mean \"NAME\"?");
    refused(sTown + "h:Where=\"POPS &gt; 1\"/>", "\"POPS\"; did you mean \"POP\"?");
    refused(sTown + "h:OrderBy=\"POP, X\"/>", "\"X\"");
    refused(sTown + "h:Group=\"upper(NAM)\"/>", "\"NAM\"; did you mean \"NAME\"?");
    const std::string sRiver = "<R Name=\"r\" DataSource=\"RelatedTable\" Identity=\"LayerName\" "
                               "IdentityValue=\"rivers\" h:Rows=\"Each\" ";
    refused(sTown + ">" + sRiver + "h:Link=\"NAME=TOWNS\"/></E>", "\"TOWNS\"; did you mean \"TOWN\"?");
    refused(sTown + ">" + sRiver + "h:Link=\"NAM=TOWN\"/></E>", "\"NAM\"; did you mean \"NAME\"?");
    refused(sTown + ">" + sRiver + "h:Link=\"NAME=TOWN\" h:Text=\"{../RIVER}\"/></E>", "\"RIVER\"");
    refused(sTown + ">" + sRiver + "h:Link=\"NAME=TOWN\" h:Text=\"{NAME}\"/></E>", "\"NAME\"");
}

TEST_F(SecondEditionExports, TellWhichFieldARowLacksThatOnlyTheMapTells) {
    program.write("second.xml", "<T xmlns:h=\"urn:halvane:control:2\" Name=\"Map\">\n<L h:ForEach=\"Layer\" "
                                "h:Omit=\"Self\">\n<E Name=\"Town\" DataSource=\"Feature\" h:Rows=\"Each\" "
                                "h:Text=\"{NAMES}{oid}\"/></L></T>");
    const auto result = program.run(arguments());
    EXPECT_EQ(
        result.sErr,
        "second.xml:3: note: \"Town\": there is no field \"NAMES\", so its value is empty; did you mean "
        "\"NAME\"? The row has the fields \"OID\", \"NAME\" and \"POP\" (3 times)\n");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(SecondEditionExports, TellAnExpressionThatCannotBeComputed) {
    program.write("second.xml", towns("<N Name=\"name\" h:Text=\"{abs(-9223372036854775807 - POP)}\"/>"));
    const auto result = program.run(arguments());
    EXPECT_EQ(result.lExitCode, 0) << "a number too large becomes one with a fraction";
    program.write("second.xml", towns("<N Name=\"name\" h:Text=\"{NAME like 'a' escape 'bb'}\"/>"));
    const auto failed = program.run(arguments());
    EXPECT_EQ(failed.sErr,
              "second.xml:4: error: \"name\": ESCAPE takes one character (error 1004) (3 times)\n"
              "halvane: 1 control node failed; the document is incomplete\n");
    EXPECT_EQ(failed.lExitCode, 3);
}

TEST_F(SecondEditionExports, AreRefusedWithTheLineOfWhatIsWrong) {
    program.write("second.xml",
                  towns("<N Name=\"name\" h:Text=\"{NAME\"/>\n<N Name=\"gml:n\" h:Texd=\"a\"/>"));
    expectRefused(
        {"--map", "towns.geojson", "second.xml", "out.xml"},
        "halvane: second.xml:4: h:Text=\"{NAME\": an operator or the closing brace is missing at its end\n"
        "halvane: second.xml:5: h:Texd=\"a\": is no attribute of the second edition: did you mean \"Text\"?\n"
        "halvane: second.xml:5: Name=\"gml:n\": nothing declares the prefix \"gml\"; add xmlns:gml=\"…\" to "
        "the control file's root\n");
}

TEST_F(SecondEditionExports, AreRefusedWhereTheRootDoesNotTellTheEdition) {
    const std::string sDeclared = "xmlns:s=\"urn:halvane:control:2\"";
    program.write("second.xml", "<T Name=\"Map\">\n<A Name=\"A\"/>\n<B Name=\"B\" " + sDeclared +
                                    ">\n<C Name=\"C\" s:Text=\"x\"/><D Name=\"D\" s:Text=\"y\"/></B></T>");
    const std::string sWhat =
        "s:Text=\"x\": attributes of the second edition are read where the root declares "
        "their namespace; add " +
        sDeclared + " to <T>";
    expectRefused({"--map", "towns.geojson", "second.xml", "out.xml"},
                  "halvane: second.xml:4: " + sWhat + "\n");
    const auto checked = program.run({"check", "--map", "towns.geojson", "second.xml"});
    EXPECT_EQ(checked.sOut, "second.xml:4:13: error: \"C\": " + sWhat + " [second-edition]\n");
    EXPECT_EQ(checked.lExitCode, 1);
}

TEST_F(SecondEditionExports, MayDeclareItsNamespaceWhereNothingAsksForIt) {
    program.write("second.xml",
                  "<T Name=\"Map\"><A Name=\"A\" xmlns:s=\"urn:halvane:control:2\"/><B Name=\"B\"/></T>");
    const auto result = program.run(arguments());
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(document("out.xml"), "<Map>\r\n<A/>\r\n<B/>\r\n</Map>");
}

TEST_F(SecondEditionExports, FollowARelationshipClassOfTheMapDocumentThroughItsTableOfLinks) {
    writeRivers();
    program.write(
        "second.xml",
        rivers("<R Name=\"river\" DataSource=\"RelatedTable\" h:Rows=\"Each\" h:Relationship=\"flows\" "
               "h:OrderBy=\"NAME\" h:Text=\"{NAME}\"/>"));
    const auto result = program.run({"export", "--map", "map.xml", "second.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(document("out.xml"),
              "<Map>\r\n<Bank>\r\n<river>Asopos</river>\r\n<river>Nemea</river>\r\n</Bank>"
              "\r\n<Bank>\r\n<river>Nemea</river>\r\n</Bank>\r\n</Map>");
}

TEST_F(SecondEditionExports, AreRefusedForRelationshipClassesThatDoNotLeadFromTheRows) {
    writeRivers();
    program.write("second.xml",
                  rivers("<R Name=\"a\" DataSource=\"RelatedTable\" h:Rows=\"Each\" h:Relationship=\"flow\" "
                         "h:Text=\"x\"/>\n"
                         "<R Name=\"b\" DataSource=\"RelatedTable\" h:Rows=\"Each\" h:Relationship=\"joins\" "
                         "h:Text=\"x\"/>\n"
                         "<R Name=\"c\" DataSource=\"RelatedTable\" h:Rows=\"Each\" h:Relationship=\"flows\" "
                         "h:Text=\"{NAMES}\"/>"));
    const std::string sUnknown =
        "the data of the row around knows no relationship class \"flow\"; did you mean "
        "\"flows\"?";
    const std::string sItself = "the relationship class \"joins\" relates a table with itself; add "
                                "h:Direction=\"Forward\" or \"Backward\"";
    expectRefused({"--map", "map.xml", "second.xml", "out.xml"},
                  "halvane: second.xml:5: " + sUnknown + "\nhalvane: second.xml:6: " + sItself +
                      "\nhalvane: second.xml:7: the rows have no field \"NAMES\"; did you mean \"NAME\"?\n");
    const auto checked = program.run({"check", "--map", "map.xml", "second.xml"});
    EXPECT_EQ(checked.sOut,
              "second.xml:5:1: error: \"a\": " + sUnknown +
                  " [relationship-not-followed]\nsecond.xml:6:1: error: \"b\": " + sItself +
                  " [relationship-not-followed]\nsecond.xml:7:1: error: \"c\": the rows have no field "
                  "\"NAMES\"; did you mean \"NAME\"? [rows-lack-field]\n");
}

TEST_F(SecondEditionExports, TellOfValuesThatTheControlFileDoesNotAskFor) {
    program.write("second.xml", towns("<N Name=\"name\" h:Text=\"{NAME}\"/><O Name=\"o\" h:Limit=\"$most\" "
                                      "DataSource=\"Feature\" h:Rows=\"Each\" h:Text=\"\"/>"));
    const auto result = program.run({"export", "--map", "towns.geojson", "--set", "auther=Jo", "--set",
                                     "most=1", "second.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "halvane: warning: --set: second.xml has no \"$auther\"\n");
    EXPECT_EQ(result.lExitCode, 0);
}

TEST_F(SecondEditionExports, RefuseValuesWithoutAName) {
    expectRefused(
        {"--set", "=1", "control.xml", "out.xml"},
        "halvane: --set: \"=1\" is not NAME=VALUE, as in author=Jo; a name is made of letters, digits and "
        "\"_\"\n");
    expectRefused({"--set", "Date=1", "control.xml", "out.xml"},
                  "halvane: --set: \"$Date\" has a meaning already; use another name\n");
}

} // namespace halvane::test
