#include "cli/Samples.h"
#include "support/ProjectText.h"

#include <gmock/gmock.h>

namespace halvane::test {

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class Projects : public ExportFixture {
protected:
    Projects() { program.write("rivers.csv", sRivers); }

    const ProjectLayerText towns{"towns", "./towns.geojson", "ogr", "", "type='vector' geometry='Point'"};
    const ProjectLayerText server{"Far",
                                  "dbname='gis' host=h password='hunter2' table=\"t\" (g) sql=", "postgres"};
};

TEST_F(Projects, AreExportedAsMapDocumentsAre) {
    program.write("city.qgs", projectText({towns}));
    const auto result = program.run({"export", "--map", "city.qgs", "control.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_THAT(document("out.xml"), HasSubstr(sTownsDocument));
}

TEST_F(Projects, TellOnceWhatNoMapSaysAlsoInTheReport) {
    program.write("city.qgs", projectText({towns, server}));
    const std::string sWarning = program.file("city.qgs") +
                                 ": layers on database servers are not read; --allow-connections allows it: ";
    const auto result =
        program.run({"export", "--map", "city.qgs", "--report", "report.json", "control.xml", "out.xml"});
    EXPECT_EQ(result.sErr, "halvane: warning: --map: " + sWarning + "\"Far\"\n");
    EXPECT_EQ(result.lExitCode, 0);
    EXPECT_THAT(program.read("report.json").value_or(""), HasSubstr("--map: " + sWarning + "\\\"Far\\\""));
    const auto described = program.run({"describe", "city.qgs"});
    EXPECT_EQ(described.sErr, "halvane: warning: MAP: " + sWarning + "\"Far\"\n");
    EXPECT_EQ(described.lExitCode, 0);
}

TEST_F(Projects, ReachServersOnlyWhereThatIsAllowedAndNeverTellAPassword) {
    program.write("city.qgs", projectText({server}));
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{}, std::vector<std::string>{"--allow-connections"}}) {
        std::vector<std::string> arguments{"describe", "city.qgs"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const auto result = program.run(arguments);
        EXPECT_EQ(result.lExitCode, 0);
        EXPECT_EQ(result.sOut.find("--allow-connections allows to read from there") == std::string::npos,
                  !options.empty());
        EXPECT_THAT(result.sOut + result.sErr, Not(HasSubstr("hunter2")));
    }
}

TEST_F(Projects, ThatAreBrokenAreRefusedWithTheirLine) {
    program.write("city.qgs", "<qgis>\n<title>\n</qgis>");
    const auto result = program.run({"describe", "city.qgs"});
    EXPECT_EQ(result.sOut, "");
    EXPECT_THAT(result.sErr, HasSubstr("halvane: MAP: " + program.file("city.qgs") + ", line 3: "));
    EXPECT_EQ(result.lExitCode, 2);
}

TEST_F(Projects, AreNotReplacedByTheDocumentNorIsTheirData) {
    program.write("city.qgs", projectText({towns}));
    for (const char* pOutput : {"city.qgs", "towns.geojson"}) {
        const auto result =
            program.run({"export", "--map", "city.qgs", "--exact-name", "control.xml", pOutput});
        EXPECT_EQ(result.lExitCode, 2) << pOutput;
        EXPECT_THAT(result.sErr, HasSubstr(pOutput));
    }
    EXPECT_EQ(program.read("towns.geojson"), sTowns);
}

} // namespace

} // namespace halvane::test
