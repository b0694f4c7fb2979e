// Control files that include parts.

#include "cli/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace halvane::test {

namespace {

using ::testing::HasSubstr;

class IncludedParts : public ExportFixture {
protected:
    void control(const std::string& sNodes) {
        program.write("control.xml",
                      "<T xmlns:h=\"urn:halvane:control:2\" Name=\"Map\">\n" + sNodes + "\n</T>");
    }
    void part(const std::string& sName, const std::string& sAttributes, const std::string& sContent) {
        std::filesystem::create_directories(std::filesystem::path(program.file(sName)).parent_path());
        program.write(sName, "<!-- a part -->\n<P xmlns:h=\"urn:halvane:control:2\" " + sAttributes + ">" +
                                 sContent + "</P>");
    }
    auto run(const std::string& sOutput = "out.xml") {
        return program.run({"export", "--map", "towns.geojson", "control.xml", sOutput});
    }
    void expectRefusal(const std::string& sMessage) {
        const auto result = run("refused.xml");
        EXPECT_THAT(result.sErr, HasSubstr(sMessage));
        EXPECT_EQ(result.sOut, "");
        EXPECT_EQ(result.lExitCode, 2);
        EXPECT_FALSE(std::filesystem::exists(program.file("refused.xml")));
    }
};

} // namespace

TEST_F(IncludedParts, StandInTheirPlaceAndInherit) {
    control("<I h:Include=\"parts/towns.xml\" DataSource=\"MapLayer\" Identity=\"LayerName\" "
            "IdentityValue=\"towns\"/>\n"
            "<I h:Include=\"parts/end.xml\" h:When=\"1 = 2\"/><I h:Include=\"parts/end.xml\"/>");
    part("parts/towns.xml", "Name=\"Towns\"",
         "<C Name=\"count\" DataProperty=\"FeatureCount\"/><I h:Include=\"sub/each.xml\"/>");
    part("parts/sub/each.xml", "Name=\"Town\" DataSource=\"Feature\" Entries=\"Multiple\" h:Limit=\"1\"",
         "<N Name=\"name\" h:Text=\"{NAME}\"/><I h:Include=\"../end.xml\"/>");
    part("parts/end.xml", "Name=\"End\" h:Text=\"end\"", "");
    const auto result = run();
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(document("out.xml"), "<Map>\r\n<Towns>\r\n<count>3</count>\r\n<Town>\r\n<name>Abdera</"
                                   "name>\r\n<End>end</End>\r\n</Town>\r\n"
                                   "</Towns>\r\n<End>end</End>\r\n</Map>");
}

TEST_F(IncludedParts, ResolvePrefixesByTheirOwnDeclarations) {
    control("<A Name=\"p:a\" xmlns:p=\"urn:one\"><I h:Include=\"part.xml\"/></A>");
    part("part.xml", "Name=\"p:b\" xmlns:p=\"urn:two\"", "<C Name=\"p:c\"/>");
    const auto result = run();
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(document("out.xml"),
              "<Map>\r\n<p:a xmlns:p=\"urn:one\">\r\n<p:b xmlns:p=\"urn:two\">\r\n<p:c/>\r\n</p:b>"
              "\r\n</p:a>\r\n</Map>");
    part("part.xml", "Name=\"q:b\"", "");
    control("<A Name=\"q:a\" xmlns:q=\"urn:one\"><I h:Include=\"part.xml\"/></A>");
    expectRefusal("part.xml:2: Name=\"q:b\": nothing declares the prefix \"q\"");
}

TEST_F(IncludedParts, AreNamedWhereSomethingIsWrong) {
    control("<I h:Include=\"parts/a.xml\"/>");
    part("parts/a.xml", "Name=\"A\"", "\n\n<B Name=\"B\" h:Txt=\"1\"/>");
    expectRefusal("parts/a.xml:4: h:Txt=\"1\": is no attribute of the second edition");
    part("parts/a.xml", "Name=\"A\"",
         "\n<B Name=\"B\" DataSource=\"MapLayer\" Identity=\"LayerName\" "
         "IdentityValue=\"towms\" DataProperty=\"LayerName\"/>");
    const auto result = run();
    EXPECT_THAT(result.sErr, HasSubstr("parts/a.xml:3: note: \"B\": "));
}

TEST_F(IncludedParts, AreRefusedOutsideOfTheFolder) {
    const auto refused = [&](const std::string& sPath, const std::string& sMessage) {
        control("<I h:Include=\"" + sPath + "\"/>");
        expectRefusal("control.xml:2: h:Include=\"" + sPath + "\": " + sMessage);
    };
    const std::string sOutside = "parts stand in the control file's folder or below it";
    refused("../part.xml", sOutside);
    refused("a/../../part.xml", sOutside);
    refused("..", sOutside);
    refused("/etc/passwd", sOutside);
    refused("", "it is the path of a file");
    refused("parts/", "it is the path of a file");
    refused("none.xml", "No such file or directory");
    refused("http://localhost/part.xml", "No such file or directory");
    std::filesystem::create_directory(program.file("folder"));
    refused("folder", "this is no file");
    part("part.xml", "Name=\"P\"", "");
    std::filesystem::create_symlink("part.xml", program.file("link.xml"));
    refused("link.xml", "no link is followed to a part");
    std::filesystem::create_directory_symlink(".", program.file("here"));
    refused("here/part.xml", "no link is followed to a part");
}

TEST_F(IncludedParts, AreRefusedInCyclesAndInExcess) {
    control("<I h:Include=\"a.xml\"/>");
    part("a.xml", "Name=\"A\"", "<I h:Include=\"b.xml\"/>");
    part("b.xml", "Name=\"B\"", "<I h:Include=\"./a.xml\"/>");
    expectRefusal("b.xml:2: h:Include=\"./a.xml\": it would include itself");
    part("b.xml", "Name=\"B\"", "<I h:Include=\"control.xml\"/>");
    expectRefusal("b.xml:2: h:Include=\"control.xml\": it would include itself");
    std::string sMany;
    for (int n = 0; n < 20; ++n)
        sMany += "<I h:Include=\"b.xml\"/>";
    part("a.xml", "Name=\"A\"", sMany);
    sMany.clear();
    for (int n = 0; n < 9000; ++n)
        sMany += "<N Name=\"n\"/>";
    part("b.xml", "Name=\"B\"", sMany);
    expectRefusal("the parts have more than 100,000 elements together");
    part("a.xml", "Name=\"A\"", "<I h:Include=\"b.xml\"><N Name=\"n\"/></I>");
    part("b.xml", "Name=\"B\"", "");
    expectRefusal("a.xml:2: h:Include=\"b.xml\": the part takes the place of what stands in the element");
    part("b.xml", "Name=\"B\"", "<N");
    part("a.xml", "Name=\"A\"", "<I h:Include=\"b.xml\"/>");
    expectRefusal("a.xml:2: h:Include=\"b.xml\": b.xml:");
}

TEST_F(IncludedParts, OfStandardInputStandInTheCurrentFolder) {
    part("part.xml", "Name=\"P\"", "");
    RunSettings settings;
    settings.sInput = "<T xmlns:h=\"urn:halvane:control:2\" Name=\"Map\"><I h:Include=\"part.xml\"/></T>";
    const auto result = program.run({"export", "--map", "towns.geojson", "-", "out.xml"}, settings);
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_EQ(document("out.xml"), "<Map>\r\n<P/>\r\n</Map>");
}

} // namespace halvane::test
