#include "cli/Samples.h"
#include "xml/dom/Dom.h"

#include <gmock/gmock.h>

#include <ogrsf_frmts.h>
#include <sys/stat.h>

namespace halvane::test {

namespace {

class Inputs : public ExportFixture {};

} // namespace

// ---- The control file

TEST_F(Inputs, RefuseAControlFileThatIsMissing) {
    expectRefused({"none.xml", "out.xml"}, "halvane: none.xml: there is no such file\n");
}

TEST_F(Inputs, RefuseADeviceOrPipeAsControlFile) {
    expectRefused({"/dev/null", "out.xml"},
                  "halvane: /dev/null: this is no file; give the path of an XML file\n");
}

TEST_F(Inputs, RefuseASelectionThatMatchesNothing) {
    const auto result = program.run(
        {"export", "--map", "towns.geojson", "--select", "towns=NAME = 'Nowhere'", "control.xml", "out.xml"});
    EXPECT_EQ(result.lExitCode, 2);
    EXPECT_EQ(program.read("out.xml"), "<Old/>");
}

TEST_F(Inputs, RefuseAFolderAsControlFile) {
    expectRefused({".", "out.xml"}, "halvane: .: this is a folder; give the path of an XML file\n");
}

TEST_F(Inputs, RefuseAnEmptyNameOfAControlFile) {
    expectRefused({"", "out.xml"}, "halvane: CONTROL: the path is empty; give the path of a control file\n");
}

TEST_F(Inputs, TellTheLineAndColumnWhereAControlFileIsNotWellFormed) {
    program.write("bad.xml", "<T Name=\"T\">\n  <A Name=\"a\">\n</T>\n");
    expectRefused({"bad.xml", "out.xml"},
                  "halvane: bad.xml:3:5: Opening and ending tag mismatch: A line 2 and T\n");
}

TEST_F(Inputs, RefuseAControlFileWithoutContent) {
    program.write("bad.xml", "");
    expectRefused({"bad.xml", "out.xml"}, "halvane: bad.xml:1:1: Document is empty\n");
}

TEST_F(Inputs, RefuseTextAmongTheControlElementsWithItsLine) {
    program.write("bad.xml", "<T Name=\"T\">\n  <A Name=\"a\"/>\n  some words\n  <B Name=\"b\"/>\n</T>\n");
    expectRefused({"bad.xml", "out.xml"},
                  "halvane: bad.xml:3: text among the control elements (\"some words\"); "
                  "remove it, or make it a comment\n");
}

TEST_F(Inputs, CountTheEmptyLinesBeforeAText) {
    program.write("bad.xml", "<T Name=\"T\">\r\n\r\n\r\n  words\r\n  <B Name=\"b\"/>\r\n</T>\r\n");
    expectRefused({"bad.xml", "out.xml"}, "halvane: bad.xml:4: text among the control elements (\"words\"); "
                                          "remove it, or make it a comment\n");
}

TEST_F(Inputs, RefuseANodePathThatSelectsNoNodes) {
    program.write("tags.xml", "<T/>");
    expectRefused(
        {"--xml", "tags.xml", "--node-path", "count(//x)", "control.xml", "out.xml"},
        "halvane: --node-path: \"count(//x)\" is no XPath that selects nodes; an example: //QvLayer\n");
}

TEST_F(Inputs, RefuseTextInsideALeaf) {
    program.write("bad.xml", "<T Name=\"T\">\n  <A Name=\"a\">value</A>\n</T>\n");
    expectRefused({"bad.xml", "out.xml"}, "halvane: bad.xml:2: text among the control elements (\"value\"); "
                                          "remove it, or make it a comment\n");
}

TEST_F(Inputs, RefuseACdataSectionAsText) {
    program.write("bad.xml", "<T Name=\"T\">\n  <A Name=\"a\"/><![CDATA[x]]>\n</T>\n");
    expectRefused({"bad.xml", "out.xml"}, "halvane: bad.xml:2: text among the control elements (\"x\"); "
                                          "remove it, or make it a comment\n");
}

TEST_F(Inputs, RefuseWhiteSpaceThatIsKeptOnPurpose) {
    program.write("bad.xml", "<T Name=\"T\" xml:space=\"preserve\"><A Name=\"a\"/> </T>\n");
    expectRefused({"bad.xml", "out.xml"}, "halvane: bad.xml:1: white space that xml:space=\"preserve\" keeps "
                                          "counts as text among the control elements; remove xml:space\n");
}

TEST_F(Inputs, RefuseACdataSectionOfWhiteSpaceAsOne) {
    program.write("bad.xml", "<T Name=\"T\">\n  <A Name=\"a\"><![CDATA[ \n ]]></A>\n</T>\n");
    expectRefused({"bad.xml", "out.xml"},
                  "halvane: bad.xml:2: a CDATA section counts as text among the control "
                  "elements, even of white space; remove it\n");
}

TEST_F(Inputs, ShortenLongTexts) {
    program.write("bad.xml", "<T Name=\"T\">" + std::string(200, 'x') + "</T>");
    expectRefused({"bad.xml", "out.xml"}, "halvane: bad.xml:1: text among the control elements (\"" +
                                              std::string(40, 'x') +
                                              "…\"); remove it, or make it a comment\n");
}

TEST_F(Inputs, NameEveryControlElementWithoutAName) {
    program.write("bad.xml", "<T>\n  <A Name=\"\"/>\n  <B Name=\" \"/>\n</T>\n");
    expectRefused({"bad.xml", "out.xml"},
                  "halvane: bad.xml:1: <T> has no Name; add Name=\"…\", the name of what it writes\n"
                  "halvane: bad.xml:2: <A> has no Name; add Name=\"…\", the name of what it writes\n"
                  "halvane: bad.xml:3: <B> has no Name; add Name=\"…\", the name of what it writes\n");
}

TEST_F(Inputs, RefuseNamesThatXmlDoesNotAllow) {
    program.write("bad.xml", "<T Name=\"T\">\n  <A Name=\"1st\"/>\n</T>\n");
    expectRefused(
        {"bad.xml", "out.xml"},
        "halvane: bad.xml:2: Name=\"1st\" of <A> is no name that XML allows; begin with a letter, go on "
        "with letters, digits, \"-\", \"_\" and \".\"\n");
}

TEST_F(Inputs, RefusePrefixesThatNothingDeclares) {
    const std::string sNone =
        ": nothing declares the prefix \"g\"; leave it out, or give this element or one "
        "around it a node Name=\"xmlns:g\" Target=\"Attribute\" whose value is the "
        "namespace\n";
    program.write("bad.xml", R"(<T Name="T">
  <A Name="g:a"><D Name="xmlns:h" Target="Attribute" DataSource="Time"/></A>
  <B Name="b"><C Name=" g : c " Target="Attribute"/></B>
  <E Name="e"><D Name="xmlns:g" Target="Attribute" DataSource="Time"/></E>
  <F Name="g:f"/>
</T>)");
    expectRefused({"bad.xml", "out.xml"}, "halvane: bad.xml:2: Name=\"g:a\" of <A>" + sNone +
                                              "halvane: bad.xml:3: Name=\" g : c \" of <C>" + sNone +
                                              "halvane: bad.xml:5: Name=\"g:f\" of <F>" + sNone);
}

TEST_F(Inputs, RefuseDeclarationsOfPrefixesThatDeclareNothing) {
    program.write("bad.xml", R"(<T Name="T">
  <A Name="xmlns:g" DataSource="Time"/>
  <A Name="xmlns:xmlns" Target="Attribute" DataSource="Time"/>
  <A Name="xmlns:g" Target="Attribute" DataSource=" "/>
</T>)");
    expectRefused(
        {"bad.xml", "out.xml"},
        "halvane: bad.xml:2: Name=\"xmlns:g\" of <A>: only an attribute declares a prefix; add "
        "Target=\"Attribute\"\n"
        "halvane: bad.xml:3: Name=\"xmlns:xmlns\" of <A>: no document may declare the prefix "
        "\"xmlns\"; use another one\n"
        "halvane: bad.xml:4: Name=\"xmlns:g\" of <A>: without a DataSource its value is empty, which "
        "declares nothing; add a DataSource that yields the address of the namespace \"g\"\n");
}

TEST_F(Inputs, KnowThePrefixesThatAnElementOrOneAroundItDeclares) {
    program.write("control.xml", R"(<T Name="g:T">
  <G Name="groups" Target="Attribute"><D Name="xml ns:g" Target="Attribute" DataSource="Time"/></G>
  <A Name="g:a" DataSource="Time"><B Name="g:b" Target="Attribute"/><C Name="xml:lang" Target="Attribute"/></A>
</T>)");
    const auto result = program.run({"export", "control.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_TRUE(dom::Document::create()->load(program.file("out.xml"))) << document("out.xml");
}

/// A control file of nested elements with the attributes, `nDepth` of them with root, layer and leaf.
std::string nestedControl(std::size_t nDepth, const std::string& sAttributes) {
    std::string sControl = "<T Name=\"T\"><L Name=\"L\" DataSource=\"MapLayer\" Identity=\"LayerName\" "
                           "IdentityValue=\"towns\">";
    std::string sEnd = "</L></T>";
    for (std::size_t l = 3; l < nDepth; ++l) {
        sControl += "<A Name=\"a\"" + sAttributes + ">";
        sEnd.insert(0, "</A>");
    }
    return sControl + "<F Name=\"Deepest\" DataSource=\"Feature\" IdentityValue=\"NAME\"/>" + sEnd;
}

TEST_F(Inputs, RefuseElementsThatAreNestedTooDeeply) {
    program.write("bad.xml", "<!-- comment -->\n" + nestedControl(1001, ""));
    expectRefused({"bad.xml", "out.xml"},
                  "halvane: bad.xml:2: the depth of its elements is more than 1000; nest them less deeply\n");
}

TEST_F(Inputs, RefuseElementsWithTooManyAttributes) {
    std::string sControl = "<!-- comment -->\n<T Name=\"T\"";
    for (int n = 0; n < 100'000; ++n)
        sControl.append(" a").append(std::to_string(n)).append("=\"\"");
    program.write("bad.xml", sControl + "/>");
    expectRefused({"bad.xml", "out.xml"},
                  "halvane: bad.xml:2: an element has more attributes than 1000; make "
                  "elements of some attributes\n");
}

TEST_F(Inputs, RefuseANulBehindADocument) {
    using std::string_view_literals::operator""sv;
    program.write("bad.xml", "<T Name=\"T\"/>\n\0garbage"sv);
    expectRefused(
        {"bad.xml", "out.xml"},
        "halvane: bad.xml:2:1: a NUL character stands in the document or behind it; XML allows none\n");
}

// In a build that guards each variable on the stack the walk takes several times as much of it.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
constexpr std::size_t nSmallStack = 1U << 20U;
#else
constexpr std::size_t nSmallStack = 8U << 20U;
#endif

TEST_F(Inputs, MayBeNestedAsDeeplyAsASmallStackAllows) {
    RunSettings settings;
    settings.lStack = nSmallStack;
    for (const std::string sAttributes : {"", R"( DataSource="Feature" Entries="Multiple")"}) {
        program.write("control.xml", nestedControl(1000, sAttributes));
        const auto result = program.run(
            {"export", "--map", "towns.geojson", "--select", "towns=2", "control.xml", "out.xml"}, settings);
        EXPECT_EQ(result.lExitCode, 0) << result.sErr;
        const std::string sDocument = document("out.xml");
        EXPECT_EQ(sDocument.find("<Deepest>Byblos</Deepest>") == std::string::npos, sAttributes.empty());
        EXPECT_NE(sDocument.find("<Deepest"), std::string::npos);
    }
}

TEST_F(Inputs, EndALongListOfProblems) {
    std::string sControl = "<T Name=\"T\">\n";
    std::string sExpected;
    for (int i = 0; i < 40; ++i) {
        sControl += "<A/>\n";
        if (i < 19)
            sExpected += "halvane: bad.xml:" + std::to_string(i + 2) +
                         ": <A> has no Name; add Name=\"…\", the name of what it writes\n";
    }
    program.write("bad.xml", sControl + "</T>");
    expectRefused({"bad.xml", "out.xml"},
                  sExpected + "halvane: bad.xml: there may be more problems after these\n");
}

// ---- The output

TEST_F(Inputs, RefuseAnOutputFolderThatIsMissing) {
    expectRefused({"control.xml", "none/out.xml"},
                  "halvane: OUTPUT: there is no folder \"" + program.file("none") + "\"; create it first\n");
}

TEST_F(Inputs, RefuseAFileInThePlaceOfTheOutputFolder) {
    expectRefused({"control.xml", "control.xml/out.xml"}, "halvane: OUTPUT: there is no folder \"" +
                                                              program.file("control.xml") +
                                                              "\"; create it first\n");
}

TEST_F(Inputs, RefuseAFolderAsOutput) {
    ::mkdir(program.file("folder").c_str(), 0777);
    const std::string sErr = "halvane: OUTPUT: \"" + program.file("folder");
    expectRefused({"control.xml", "folder"}, sErr + "\" is a folder; add the name of a file\n");
    expectRefused({"control.xml", "folder/"}, sErr + "/\" is a folder; add the name of a file\n");
    expectRefused({"control.xml", "folder\\"}, sErr + "/\" is a folder; add the name of a file\n");
}

TEST_F(Inputs, RefuseAFolderThatHasTheNameOfTheDocument) {
    ::mkdir(program.file("folder.xml").c_str(), 0777);
    expectRefused({"control.xml", "folder"}, "halvane: OUTPUT: \"" + program.file("folder.xml") +
                                                 "\" is a folder; add the name of a file\n");
}

TEST_F(Inputs, RefuseAPipeAsOutput) {
    ::mkfifo(program.file("pipe.xml").c_str(), 0666);
    expectRefused({"control.xml", "pipe.xml"}, "halvane: OUTPUT: \"" + program.file("pipe.xml") +
                                                   "\" is not a regular file; give another name\n");
}

TEST_F(Inputs, RefuseAnEmptyOutput) {
    expectRefused({"control.xml", ""}, "halvane: OUTPUT: \"\" is not the path of a file\n");
}

TEST_F(Inputs, AreNeverReplacedByTheDocument) {
    expectRefused({"control.xml", "control.xml"}, "halvane: OUTPUT: \"" + program.file("control.xml") +
                                                      "\" is the control file; give another name\n");
    program.write("tags.xml", "<T/>");
    expectRefused({"--xml", "tags.xml", "--node-path", "//x", "control.xml", "tags.xml"},
                  "halvane: OUTPUT: \"" + program.file("tags.xml") +
                      "\" is the document of --xml; give another name\n");
    program.write("map.xml", "<Map/>");
    expectRefused({"--map", "map.xml", "control.xml", "./map.xml"},
                  "halvane: OUTPUT: \"" + program.file("map.xml") + "\" is the map; give another name\n");
    EXPECT_EQ(program.read("control.xml"), sTownsControl);
}

TEST_F(Inputs, AreFoundBehindLinksToo) {
    ASSERT_EQ(::symlink(program.file("control.xml").c_str(), program.file("link.xml").c_str()), 0);
    expectRefused({"control.xml", "link.xml"}, "halvane: OUTPUT: \"" + program.file("link.xml") +
                                                   "\" is the control file; give another name\n");
}

TEST_F(Inputs, AreNotReplacedWhenTheNameGetsItsEnding) {
    program.write("towns.xml", sTownsControl);
    expectRefused({"towns.xml", "towns"}, "halvane: OUTPUT: \"" + program.file("towns.xml") +
                                              "\" is the control file; give another name\n");
}

TEST_F(Inputs, OfDataAreNeverReplaced) {
    std::filesystem::create_directory(program.file("data"));
    for (const char* sName : {"data/xml.csv", "data/xml.csvt", "data/other.xml"})
        program.write(sName, "a,b\n1,2\n");
    const auto expectPartOf = [&](const std::string& sData, const std::vector<std::string>& arguments) {
        const std::string sOutput = program.file(arguments.back());
        expectRefused(arguments, "halvane: OUTPUT: \"" + sOutput + "\" is part of the data \"" +
                                     program.file(sData) + "\"; give another name\n");
    };
    program.write("map.xml",
                  R"(<MapDocument><Map name="M"><Table source="data/xml.csv"/></Map></MapDocument>)");
    expectPartOf("data/xml.csv", {"--map", "map.xml", "control.xml", "data/xml.csv"});
    expectPartOf("data/xml.csv", {"--map", "map.xml", "control.xml", "data/xml.csvt"});
    expectPartOf("data", {"--map", "data", "control.xml", "data/xml.csv"});
    expectPartOf("data", {"--map", "data", "control.xml", "data/xml.csvt"});
    program.write("located.xml",
                  R"(<T Name="M"><A Name="a" DataSource="Record" DataLocation="data/xml.csv"/></T>)");
    expectPartOf("data/xml.csv", {"located.xml", "data/xml.csv"});
    EXPECT_EQ(program.read("data/xml.csv"), "a,b\n1,2\n");
}

TEST_F(Inputs, OfDatabasesAreNotWrittenBeside) {
    program.write("map.xml",
                  R"(<MapDocument><Map name="M"><Table source="xml.gpkg" dataset="t"/></Map></MapDocument>)");
    for (const char* sEnd : {"-wal", "-shm", "-journal"}) {
        expectRefused({"--map", "map.xml", "control.xml", std::string("xml.gpkg") + sEnd},
                      "halvane: OUTPUT: \"" + program.file("xml.gpkg") + sEnd + "\" is part of the data \"" +
                          program.file("xml.gpkg") + "\"; give another name\n");
    }
}

TEST_F(Inputs, OfAFolderLetItsOtherFilesBeReplaced) {
    std::filesystem::create_directory(program.file("data"));
    program.write("data/xml.csv", "a,b\n1,2\n");
    for (const char* sName : {"data/out.xml", "data/xml.csv.xml"}) {
        for (int n = 0; n < 2; ++n) {
            const auto result = program.run({"export", "--map", "data", "control.xml", sName});
            EXPECT_EQ(result.lExitCode, 0) << result.sErr;
            EXPECT_NE(program.read(sName), std::nullopt);
        }
    }
}

TEST_F(Inputs, OfConnectionsAreNeverReplaced) {
    program.write("pass.xml", "secret");
    program.write("map.xml", R"(<MapDocument><Connection name="c" database="PG:dbname=d passfile=)" +
                                 program.file("pass.xml") + R"("/><Map name="M"/></MapDocument>)");
    expectRefused({"--map", "map.xml", "control.xml", "pass.xml"},
                  "halvane: OUTPUT: \"" + program.file("pass.xml") +
                      "\" is part of the data \"C\"; give another name\n");
}

TEST_F(Inputs, OfDataAreNotReplacedByTheReport) {
    program.write("xml.geojson", sTowns);
    std::filesystem::create_symlink("xml.geojson", program.file("report.json"));
    expectRefused({"--map", "xml.geojson", "--report", "xml.geojson-wal", "control.xml", "out.xml"},
                  "halvane: --report: \"" + program.file("xml.geojson-wal") + "\" is part of the data \"" +
                      program.file("xml.geojson") + "\"; give another name\n");
}

TEST_F(Inputs, WithTwoLayersOfOneNameAreToldAndTaken) {
    program.write("map.xml",
                  "<MapDocument><Map name='M'>\n<FeatureLayer name='towns' source='towns.geojson'/>\n"
                  "<FeatureLayer name='Towns' source='towns.geojson'/></Map></MapDocument>");
    const std::string sRemark = program.file("map.xml") +
                                ", line 3: the layer \"Towns\" has the name of another one (line 2), which "
                                "alone is found by it; give one of them another name\n";
    const auto exported = program.run({"export", "--map", "map.xml", "control.xml", "out.xml"});
    EXPECT_EQ(exported.lExitCode, 0);
    EXPECT_EQ(exported.sErr, "halvane: warning: --map: " + sRemark);
    EXPECT_EQ(exported.sOut, "Wrote " + program.file("out.xml") + " (3 items)\n");
    const auto described = program.run({"describe", "map.xml"});
    EXPECT_EQ(described.lExitCode, 0);
    EXPECT_EQ(described.sErr, "halvane: warning: MAP: " + sRemark);
    EXPECT_THAT(described.sOut, ::testing::HasSubstr("LAYER Towns"));
}

TEST_F(Inputs, DoNotMatterWhereADatabaseWouldBeReplaced) {
    GDALAllRegister();
    const std::string sDatabase = program.file("xml.gpkg");
    GDALDriver* pDriver = GetGDALDriverManager()->GetDriverByName("GPKG");
    static_cast<void>(
        GDALDatasetUniquePtr(pDriver->Create(sDatabase.c_str(), 0, 0, 0, GDT_Unknown, nullptr)));
    program.write("map.xml", "<MapDocument>"); // unreadable: it does not tell which files are data
    program.write("xml.gpkg-shm", "");
    std::filesystem::create_symlink("xml.gpkg-wal", program.file("link.json"));
    const auto belongs = [&](const std::string& sOption, const std::string& sName) {
        return "halvane: " + sOption + ": \"" + program.file(sName) + "\" belongs to the database \"" +
               sDatabase + "\"; give another name\n";
    };
    for (const std::string sName : {"xml.gpkg-wal", "xml.gpkg-shm", "xml.gpkg-journal", "link.json"})
        expectRefused({"--map", "map.xml", "--report", sName, "control.xml", "out.xml"},
                      belongs("--report", sName));
    expectRefused({"--map", "map.xml", "--report", "xml.gpkg", "control.xml", "out.xml"},
                  "halvane: --report: \"" + sDatabase + "\" is a database; give another name\n");
    expectRefused({"--map", "towns.geojson", "control.xml", "xml.gpkg-wal"},
                  belongs("OUTPUT", "xml.gpkg-wal"));
    expectRefused({"--map", "towns.geojson", "control.xml", "xml.gpkg"},
                  "halvane: OUTPUT: \"" + sDatabase + "\" is a database; give another name\n");
}

// ---- The second document

TEST_F(Inputs, ADocumentNeedsAPathIntoIt) {
    expectRefused({"--xml", "tags.xml", "control.xml", "out.xml"},
                  "halvane: --xml needs --node-path: the XPath of the nodes with TagName and Alias\n");
}

TEST_F(Inputs, APathNeedsADocument) {
    expectRefused({"--node-path", "//QvLayer", "control.xml", "out.xml"},
                  "halvane: --node-path needs --xml: the document that the path leads into\n");
}

TEST_F(Inputs, RefuseASecondDocumentThatIsMissing) {
    expectRefused({"--xml", "none.xml", "--node-path", "//QvLayer", "control.xml", "out.xml"},
                  "halvane: none.xml: there is no such file\n");
}

TEST_F(Inputs, TellTheLineAndColumnWhereASecondDocumentIsNotWellFormed) {
    program.write("tags.xml", "<T>\n<U></T>");
    expectRefused({"--xml", "tags.xml", "--node-path", "//QvLayer", "control.xml", "out.xml"},
                  "halvane: tags.xml:2:8: Opening and ending tag mismatch: U line 2 and T\n");
}

TEST_F(Inputs, RefuseANodePathThatIsNoXPath) {
    program.write("tags.xml", "<T/>");
    expectRefused({"--xml", "tags.xml", "--node-path", "//[", "control.xml", "out.xml"},
                  "halvane: --node-path: \"//[\" is no XPath that selects nodes; an example: //QvLayer\n");
}

TEST_F(Inputs, RefuseABlankNodePath) {
    program.write("tags.xml", "<T/>");
    expectRefused(
        {"--xml", "tags.xml", "--node-path", "  ", "control.xml", "out.xml"},
        "halvane: --node-path: the path is blank; give the XPath of the nodes with TagName and Alias\n");
}

// ---- The map, selections, processors, the report

TEST_F(Inputs, RefuseAMapThatIsMissing) {
    expectRefused({"--map", "none.gpkg", "control.xml", "out.xml"},
                  "halvane: --map: There is no file or folder \"" + program.file("none.gpkg") + "\"\n");
}

TEST_F(Inputs, RefuseAMapThatIsNoMap) {
    program.write("words.txt", "no data");
    expectRefused(
        {"--map", "words.txt", "control.xml", "out.xml"},
        "halvane: --map: \"" + program.file("words.txt") +
            "\" is neither a map document (its root would be <MapDocument>), nor a QGIS project, nor "
            "data in a format that is read here\n");
}

TEST_F(Inputs, RefuseAMapOnTheNetworkAndMaskItsPassword) {
    expectRefused(
        {"--map", "PG:host=db password=hunter2", "control.xml", "out.xml"},
        "halvane: --map: The location \"PG:host=db password=***\" is refused: services are not read, and "
        "of servers only a PostgreSQL database by the name of a <Connection> of a map document; save "
        "a service's data as a file and give its path\n");
}

TEST_F(Inputs, RefuseASelectionWithoutAMap) {
    expectRefused({"--select", "towns=1", "control.xml", "out.xml"},
                  "halvane: --select needs --map: the map whose layer it selects in\n");
}

TEST_F(Inputs, RefuseASelectionThatNamesNoLayer) {
    for (const std::string sSelection : {"towns", "=1"})
        expectRefused({"--map", "towns.geojson", "--select", sSelection, "control.xml", "out.xml"},
                      "halvane: --select: \"" + sSelection +
                          "\" is not LAYER=FIDS or LAYER=WHERE, as in Cities=4,8 or \"Cities=POP > 1000\"\n");
}

TEST_F(Inputs, RefuseASelectionInAnUnknownLayer) {
    expectRefused({"--map", "towns.geojson", "--select", "villages=1", "control.xml", "out.xml"},
                  "halvane: --select: The map \"towns\" has no feature layer \"villages\"; it has only the "
                  "feature layer "
                  "\"towns\"\n");
    expectRefused(
        {"--map", "towns.geojson", "--select", "tovns=1", "control.xml", "out.xml"},
        "halvane: --select: The map \"towns\" has no feature layer \"tovns\"; did you mean \"towns\"?\n");
}

TEST_F(Inputs, RefuseASelectionOfAnUnknownFeature) {
    expectRefused({"--map", "towns.geojson", "--select", "towns=99", "control.xml", "out.xml"},
                  "halvane: --select: The layer \"towns\" has no feature 99 to select\n");
}

TEST_F(Inputs, RefuseASelectionWhoseClauseIsRejected) {
    expectRefused({"--map", "towns.geojson", "--select", "towns=NOPE > 1", "control.xml", "out.xml"},
                  "halvane: --select: The filter \"NOPE > 1\" is not valid for \"towns\": \"NOPE\" not "
                  "recognised as an available field.\n");
}

TEST_F(Inputs, TellToDoubleAnApostropheInsideATextOfAClause) {
    for (const char* sClause : {"NAME = 'O'Hara'", "NAME = 'O'Hara or O'Neil'", "NAME = 'd'Or' OR POP > 1"}) {
        const auto result = program.run({"export", "--map", "towns.geojson", "--select",
                                         std::string("towns=") + sClause, "control.xml", "out.xml"});
        EXPECT_EQ(result.lExitCode, 2);
        EXPECT_THAT(
            result.sErr,
            ::testing::AllOf(::testing::StartsWith("halvane: --select: The filter \"" + std::string(sClause) +
                                                   "\" is not valid for \"towns\": "),
                             ::testing::EndsWith("; an apostrophe inside a text must be doubled: 'O''Hara' "
                                                 "for O'Hara\n")));
    }
    for (const char* sClause : {"NOPE = 'x' OR NOPE = 'O''Hara'", "NOPE > 1"}) {
        const auto result = program.run({"export", "--map", "towns.geojson", "--select",
                                         std::string("towns=") + sClause, "control.xml", "out.xml"});
        EXPECT_EQ(result.lExitCode, 2);
        EXPECT_THAT(result.sErr, ::testing::Not(::testing::HasSubstr("apostrophe")));
    }
}

TEST_F(Inputs, RefuseAProcessorThatIsMissing) {
    expectRefused({"--processor", "none.so", "control.xml", "out.xml"},
                  "halvane: --processor: The processor library \"" + program.file("none.so") +
                      "\" cannot be loaded: " + program.file("none.so") +
                      ": cannot open shared object file: No such file or directory\n");
}

TEST_F(Inputs, RefuseALibraryThatHoldsNoProcessors) {
    program.write("words.so", "no library");
    expectRefused({"--processor", "words.so", "control.xml", "out.xml"},
                  "halvane: --processor: The processor library \"" + program.file("words.so") +
                      "\" cannot be loaded: " + program.file("words.so") + ": file too short\n");
}

TEST_F(Inputs, RefuseAPlaceForTheReportThatCannotBeWritten) {
    expectRefused({"--report", "none/report.json", "control.xml", "out.xml"},
                  "halvane: --report: " + program.file("none/report.json") + ": No such file or directory\n");
    expectRefused({"--report", ".", "control.xml", "out.xml"},
                  "halvane: --report: \".\" is not the path of a file\n");
}

TEST_F(Inputs, AreToldTogetherWhereOneIsAsGoodAsTheOther) {
    expectRefused({"--xml", "tags.xml", "--select", "towns=1", "control.xml", "none/out.xml"},
                  "halvane: --xml needs --node-path: the XPath of the nodes with TagName and Alias\n"
                  "halvane: --select needs --map: the map whose layer it selects in\n"
                  "halvane: OUTPUT: there is no folder \"" +
                      program.file("none") + "\"; create it first\n");
}

TEST_F(Inputs, AreRefusedAloudEvenWhenQuiet) {
    expectRefused({"--quiet", "none.xml", "out.xml"}, "halvane: none.xml: there is no such file\n");
}

} // namespace halvane::test
